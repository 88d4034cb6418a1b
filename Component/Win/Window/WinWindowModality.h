// Dialogs that block windows: the stack of those that block the whole application, which window can be used,
// and the order of windows that follows from it.
#pragma once

#include <windows.h>

#include <vector>

namespace NSMorvane {

// The dialogs that block the application. The newest, which is the one that can be used, is at the front.
extern std::vector<HWND> gAppModalDialogStack;

// Puts a dialog on the stack, disables the other windows, and brings the dialog to the front and activates
// it.
void PushAppModal(HWND hWnd);
// Takes it off again: the other windows can be used again, or those that the next dialog leaves. Nothing for
// a window that is not on the stack.
void PopAppModal(HWND hWnd);

// The same for destructors: what goes wrong is delivered later.
void PopAppModalQuietly(HWND hWnd) noexcept;

// Enables the owner of a dialog that has gone. Not while another dialog blocks it, or the whole application:
// the end of that one will. An owner that is not a window of the library's does not wait for the latter.
void EnableOwner(HWND owner);

// Disables the library's windows under the front of the stack.
void EnforceAppModality();
// Puts the windows in modal order and activates the front one.
void RefreshAppModality();

// Brings a window to the front and activates it, with its owners behind it. If a dialog blocks it, that is
// the one that comes to the front and is activated: the last, if dialogs block dialogs. What is minimized of
// all these is restored.
void BringWindowToFront(HWND hWnd);
// Only to the front, with its owners behind it: not every system does so for a window that becomes active.
void RaiseWithOwners(HWND hWnd);

// A window is about to be activated, or has been clicked; true if the message that told so must be swallowed.
bool OnModalActivationAttempt(HWND hWnd);
bool OnModalClickAttempt(HWND hWnd);

// A dialog that is not a window of the library's own stands on the stack for as long as this lives.
class IWinAppModalInstance {
 public:
  virtual ~IWinAppModalInstance() = default;
};

class CAppModalInstance : public IWinAppModalInstance {
 public:
  explicit CAppModalInstance(HWND hWnd);
  ~CAppModalInstance() override { PopAppModalQuietly(fHwnd); }
  CAppModalInstance(const CAppModalInstance&) = delete;
  CAppModalInstance& operator=(const CAppModalInstance&) = delete;

 private:
  HWND fHwnd;
};

// One that the library has hidden, natively or by moving it above the screen.
bool IsWindowHidden(HWND hWnd);

}  // namespace NSMorvane
