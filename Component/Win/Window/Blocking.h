// What dialogs block: the windows that a modal dialog disables, enables, raises and flashes, for its owner
// and for the whole application, which window can be used instead, and the order that follows from it.
#pragma once

#include <windows.h>

#include <boost/shared_ptr.hpp>
#include <vector>

#include "Component/Win/Platform/UtilsWinHandles.h"
#include "Component/Win/Platform/WinMsgEventListener.h"

namespace NSMorvane {

class CWindowRegistry;
class CWinWindow;

// A modal dialog with an owner blocks that window. One without blocks the application: it stands on a stack,
// of which only the front can be used, or the dialogs that it owns itself.
//
// Nearly everything here can call the client, who may end windows, open dialogs and come back here.
class CBlocking : CNotCopied {
 public:
  explicit CBlocking(boost::shared_ptr<const CWindowRegistry> windows);

  // --- Windows that come and go

  // A window has been shown: a modal dialog begins to block. What is blocked by the application's dialog is
  // disabled from here on.
  void OnShown(const CWinWindow& window);
  // A window is about to be hidden: a modal dialog ends to block, and what it has blocked can be used again,
  // unless another dialog blocks it.
  void OnHiding(const CWinWindow& window);
  // The same from the destructor of a window, for one that has not been hidden. What goes wrong is delivered
  // later.
  void OnEnding(const CWinWindow& window);

  // A dialog of the system's, of whatever thread, blocks the application until it is popped. Once for each.
  void PushForeignDialog(HWND dialog);
  void PopForeignDialog(HWND dialog);
  // All that are left.
  void PopForeignDialogs();

  // --- What is blocked

  // Whether a dialog blocks the whole application.
  bool IsAppBlocked() const { return !fStack.empty(); }
  // The dialogs that do. The newest, which is the one that can be used, is at the front.
  const std::vector<HWND>& GetStack() const { return fStack; }
  // Whether floating windows are out of the way while this window is active.
  static bool BansFloatingWindows(const CWinWindow& window);
  // A window that blocks the application stays where it is. `hiderWindow` owns those without an owner.
  static bool MayMinimize(const CWinWindow& window, HWND hiderWindow);

  // --- Attempts to use what is blocked

  // Whether a message tries to activate or to click a window that a dialog blocks. It is to be swallowed; the
  // windows that block have been brought to the front.
  bool SwallowsMessage(const TWinMessage& message);
  // A window is about to be activated; true if the message that told so must be swallowed.
  bool OnActivationAttempt(HWND hWnd);

  // --- To the front

  // Brings a window to the front and activates it, with its owners behind it. If a dialog blocks it, that is
  // the one that comes to the front and is activated: the last, if dialogs block dialogs. What is minimized
  // of all these is restored.
  void BringToFront(HWND hWnd);
  // Only to the front, with its owners behind it: not every system does so for a window that becomes active.
  void RaiseWithOwners(HWND hWnd) const;
  // Puts all windows in the order that blocking asks for, and activates the front one.
  void RestoreOrder();

 private:
  void Push(HWND hWnd);
  void Pop(HWND hWnd);
  void PopQuietly(HWND hWnd) noexcept;
  void EnableOwner(HWND owner);
  void DisableUnderFront();
  void EnableUsableInPlaceOf(HWND hWnd);

  HWND FindDialogOver(HWND owner) const;
  std::vector<HWND> DialogChain(HWND hWnd) const;
  bool IsBlockedByApp(HWND hWnd) const;
  HWND FindUsable(HWND hWnd) const;
  HWND FindUsableOfGroup(HWND window, HWND goingDialog) const;

  bool OnClickAttempt(HWND hWnd);
  std::vector<HWND> MergeOrder(const std::vector<HWND>& windows) const;
  std::size_t CountToRaise(const std::vector<HWND>& order) const;
  std::vector<HWND> FindWindowsToRestore(const std::vector<HWND>& order) const;
  void ApplyOrder(const std::vector<HWND>& order, bool activateFront);
  void BringAppToFront(const std::vector<HWND>& order, bool activateFront);

  const boost::shared_ptr<const CWindowRegistry> fWindows;
  std::vector<HWND> fStack;           // the newest first
  std::vector<HWND> fForeignDialogs;  // those of the stack that are not windows of the library's
};

}  // namespace NSMorvane
