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

  // What all windows share. A window that is in the middle of a message can outlive the host, so it keeps
  // them.
  virtual const boost::shared_ptr<CWindowRegistry>& GetWindowRegistry() const = 0;
  virtual const boost::shared_ptr<CBlocking>& GetBlocking() const = 0;
  // The application's icon, or null if it has none.
  virtual HICON GetAppIcon() = 0;
  // The owner of windows that have none; null outside IMorvane_Run.
  virtual HWND GetHiderWindow() const = 0;

  // Asks for the menu bars of all document windows to be filled anew, once the message has been handled.
  virtual void RequestMenuBars() = 0;
  // Asked for, and not yet done.
  virtual bool MenuBarsAreStale() const = 0;

  // A modifier key has gone down or up.
  virtual void NotifyModifierKeyListeners(const TModifierKeysEvent& previous,
                                          const TModifierKeysEvent& now) = 0;
  // Calls and forgets what waits for the release of this key. Throws the first failure when all are called.
  virtual void OnKeyReleased(const TPhysicalKeySpec& key) = 0;
  // Calls and forgets all that waits for a release: the keyboard has gone elsewhere. The first failure.
  virtual TError AbandonKeyReleases() = 0;

  // The window that has the mouse capture has lost it.
  virtual void ForgetMouseCaptureWindow() = 0;

  // Another application, of which `threadId` is a thread, has got or lost the activation.
  virtual void OnAppActivation(bool flag, DWORD threadId) = 0;

  virtual void RunIdleIfDue() = 0;

  // The user or the system wants the application to quit.
  virtual void DispatchQuitEvent() = 0;
  // Runs a loop of its own until all windows have gone or quitting has been stopped; true if the session may
  // end.
  virtual bool OnQueryEndSession() = 0;
  // Whether a message is the system's question about starting a program of inserted media, and that is
  // suppressed. The window then answers 1 and handles the message no further.
  virtual bool IsAutoPlayQuery(UINT message) = 0;

 protected:
  ~IWindowHost() = default;
};

}  // namespace NSMorvane
