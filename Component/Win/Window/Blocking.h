// What modal dialogs block: which windows they disable, enable, raise and flash, which window can be used
// instead, and the z-order that follows from it.
#pragma once

#include <windows.h>

#include <boost/shared_ptr.hpp>
#include <vector>

#include "Component/Win/Platform/UtilsWinHandles.h"
#include "Component/Win/Platform/WinMsgEventListener.h"

namespace NSMorvane {

class CWindowRegistry;
class CWinWindow;

// A dialog of the system, on any thread, that blocks its owner only. The main thread asks it.
class IOwnedForeignDialog {
 public:
  virtual HWND GetBlockedOwner() const = 0;
  // Null before the dialog has a window, and when it has none any more.
  virtual HWND GetFrameHwnd() const = 0;

 protected:
  ~IOwnedForeignDialog() = default;
};

// A modal dialog with an owner blocks that window. A modal dialog without an owner blocks the application and
// is put on a stack. Only the front of the stack, or a dialog that it owns, can be used.
//
// Nearly everything here may call the client, who may end windows, open dialogs and come back here.
class CBlocking : CNotCopied {
 public:
  explicit CBlocking(boost::shared_ptr<const CWindowRegistry> windows);

  // --- Windows that come and go

  // A window has been shown. A modal dialog begins to block. If a dialog blocks the application, the windows
  // that it blocks are disabled.
  void OnShown(const CWinWindow& window);
  // A window is about to be hidden. A modal dialog stops blocking, and the windows that it blocked can be
  // used again unless another dialog blocks them.
  void OnHiding(const CWinWindow& window);
  // The same, called by the destructor for a window that has not been hidden. A failure is delivered later.
  void OnEnding(const CWinWindow& window) noexcept;

  // A dialog of the system, on any thread, blocks the application until it is popped. A dialog can be pushed
  // once only.
  void PushForeignDialog(HWND dialog);
  void PopForeignDialog(HWND dialog);
  // Pops all foreign dialogs that are left.
  void PopForeignDialogs();
  // One that blocks its owner only, from here on and until it is removed. It is not owned.
  void AddOwnedForeignDialog(const IOwnedForeignDialog* dialog);
  void RemoveOwnedForeignDialog(const IOwnedForeignDialog* dialog);
  // A dialog that blocked this window only has ended: the window can be used again, unless another dialog
  // blocks it. If that cannot be found out it can be used, and the failure is delivered later. The system may
  // have enabled it before, whatever else blocks it. Null is allowed.
  void SettleOwner(HWND owner) noexcept;

  // --- What is blocked

  // Whether a dialog blocks the whole application.
  bool IsAppBlocked() const { return !fStack.empty(); }
  // The dialogs that block the application, newest first. The first can be used, or a dialog that it owns.
  const std::vector<HWND>& GetStack() const { return fStack; }
  // Whether floating windows are hidden while this window is active, whatever else blocks the application.
  static bool BansFloatingWindows(const CWinWindow& window);
  // False for a dialog that blocks the application, or whose native parent is `hiderWindow`.
  static bool MayMinimize(const CWinWindow& window, HWND hiderWindow);

  // --- Attempts to use what is blocked

  // Whether a message tries to activate or click a window that a dialog blocks. Such a message must be
  // swallowed; the windows have been brought into the right order by then.
  bool SwallowsMessage(const TWinMessage& message);
  // A window is about to be activated. True if a dialog blocks it, so that the message must be swallowed.
  bool OnActivationAttempt(HWND hWnd);
  // The same for a click. The dialog that can be used instead flashes.
  bool OnClickAttempt(HWND hWnd);

  // --- To the front

  // Brings a window to the front, with its owners behind it, and activates it. If a dialog blocks the window,
  // that dialog is activated instead, or the last one if dialogs block dialogs. Minimized windows among these
  // are restored.
  void BringToFront(HWND hWnd);
  // Only brings the window to the front, with its owners behind it. Not every system does this for a window
  // that becomes active.
  void RaiseWithOwners(HWND hWnd) const;
  // Disables again what the system has enabled behind a dialog of its own, puts all windows in the order that
  // blocking asks for, and activates the front one.
  void Refresh();

 private:
  void Push(HWND hWnd);
  void Pop(HWND hWnd);
  void PopQuietly(HWND hWnd) noexcept;
  void DisableUnderFront();
  void EnableUsableInPlaceOf(HWND hWnd);

  HWND FindDialogOver(HWND owner) const;
  bool IsBlockedByOwnedDialog(HWND owner) const;
  std::vector<HWND> DialogChain(HWND hWnd) const;
  bool IsBlockedByApp(HWND hWnd) const;
  HWND FindUsable(HWND hWnd) const;
  HWND FindUsableOfGroup(HWND window, HWND goingDialog) const;

  void RestoreOrder();
  std::vector<HWND> MergeOrder(const std::vector<HWND>& windows) const;
  std::size_t CountToRaise(const std::vector<HWND>& order) const;
  std::vector<HWND> FindWindowsToRestore(const std::vector<HWND>& order) const;
  void ApplyOrder(const std::vector<HWND>& order, bool activateFront);
  void BringAppToFront(const std::vector<HWND>& order, bool activateFront);

  const boost::shared_ptr<const CWindowRegistry> fWindows;
  std::vector<HWND> fStack;           // the newest first
  std::vector<HWND> fForeignDialogs;  // those of the stack that are not windows of the library's
  std::vector<const IOwnedForeignDialog*> fOwnedForeignDialogs;
};

}  // namespace NSMorvane
