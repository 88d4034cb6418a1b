// What a window needs of the application around it. The root object implements it; a window holds a plain
// pointer to it from its construction on.
#pragma once

#include <windows.h>

#include <boost/shared_ptr.hpp>

#include "Interface/Morvane.h"

namespace NSMorvane {

class CBlocking;
class CWindowRegistry;
struct TStartupStrings;

class IWindowHost {
 public:
  // The root object as clients see it, for operations that clients have too.
  virtual IMorvane& GetMorvane() = 0;
  // Null outside IMorvane_Run, and in a run without a behaviour.
  virtual IMorvaneRunBehavior* GetBehavior() const = 0;
  virtual const TDebugSettings& GetDebugSettings() const = 0;
  virtual const TStartupStrings& GetStartupStrings() const = 0;

  // Shared by all windows. A window holds them, since it can outlive the host in the middle of a message.
  virtual const boost::shared_ptr<CWindowRegistry>& GetWindowRegistry() const = 0;
  virtual const boost::shared_ptr<CBlocking>& GetBlocking() const = 0;
  // The application's icon, or null if it has none.
  virtual HICON GetAppIcon() = 0;
  // The owner of windows that have no other; null outside IMorvane_Run.
  virtual HWND GetHiderWindow() const = 0;

  // OffsetToNativePlacement of windows that are no tool windows. The answer is kept for the rest of the
  // message that the loop handles, or until it is forgotten.
  virtual TPoint GetPlacementOffset() = 0;
  virtual void ForgetPlacementOffset() = 0;

  // Has the menu bars of all document windows filled anew after the current message.
  virtual void RequestMenuBars() = 0;
  // Whether such a request is waiting.
  virtual bool MenuBarsAreStale() const = 0;

  // A modifier key has gone down or up.
  virtual void NotifyModifierKeyListeners(const TModifierKeysEvent& previous,
                                          const TModifierKeysEvent& now) = 0;
  // Calls and removes the callbacks for the release of this key. Throws the first failure after all are
  // called.
  virtual void OnKeyReleased(const TPhysicalKeySpec& key) = 0;
  // Calls and removes all callbacks for key releases, since the keyboard has gone elsewhere. Returns the
  // first failure.
  virtual TError AbandonKeyReleases() = 0;

  // The window that has the mouse capture has lost it.
  virtual void ForgetMouseCaptureWindow() = 0;

  // On WM_ACTIVATEAPP: `flag` tells whether this application becomes active, `threadId` is the thread of the
  // other window concerned.
  virtual void OnAppActivation(bool flag, DWORD threadId) = 0;

  virtual void RunIdleIfDue() = 0;
  // Takes over the command line of a later launch; false if none is waiting.
  virtual bool NoticeCommandLine() = 0;

  // The user or the system wants the application to quit.
  virtual void DispatchQuitEvent() = 0;
  // Runs a loop of its own until all windows have gone or quitting has been stopped; true if the session may
  // end.
  virtual bool OnQueryEndSession() = 0;
  // Whether the message is the system's AutoPlay query and AutoPlay is suppressed. The window then answers 1
  // and does nothing else.
  virtual bool IsAutoPlayQuery(UINT message) = 0;

 protected:
  ~IWindowHost() = default;
};

}  // namespace NSMorvane
