#include "Component/Win/Window/WinWindowFocus.h"

#include <utility>

#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Window/WindowEvents.h"
#include "Component/Win/Window/WindowHost.h"
#include "Component/Win/Window/WinWindowTooltips.h"

namespace NSMorvane {

// --- What the focus asks

// The menu bar depends on the focus, since the views of the focus chain add to it.
void CWinWindowFocus::IFocusWindow_OnFocusChanged() { fWindow.fHost->RequestMenuBars(); }

// The system still reports a window as active while it tells the window of its deactivation.
bool CWinWindowFocus::IFocusWindow_IsActive() { return IsActive() && !fIsDeactivating; }

// For views without a native control the window itself keeps the keyboard, so that it gets the key messages.
// A control may have passed the keyboard on to a window inside it.
void CWinWindowFocus::IFocusWindow_GiveKeyboard(const TNativeWindow& control) {
  const HWND focus = ::GetFocus();
  const HWND target = control.fHwnd ? control.fHwnd : fWindow.fHwnd;
  if (focus == target || (control.fHwnd && IsChild(control.fHwnd, focus))) return;
  if (control.fHwnd || fWindow.IsVisible()) WinSetFocus(target);
}

// --- Messages

void CWinWindowFocus::OnActivated() {
  const bool wasActive = IsActive();
  const bool wasToldActive = fIsToldActive;
  // A view that fails must not keep the client from hearing of the activation.
  const TError error = ErrorOf([this] { fFocus.OnActivated(); });
  // A view may have activated another window, or opened a dialog that has ended by now.
  const bool isLeft = wasActive && !IsActive();
  const bool isToldMeanwhile = !wasToldActive && fIsToldActive;
  if (!isLeft && !isToldMeanwhile) {
    fTooltips.Activate(true);
    fIsToldActive = true;
    fEvents.OnActivationChanged(true);
  }
  fWindow.fHost->RequestMenuBars();
  MORVANE_CHECK(error);
}

void CWinWindowFocus::OnDeactivated() {
  DebugPrint("CWinWindow::IWindowListener_OnDeactivated " + HandleText(fWindow.fHwnd));
  const CFlagScope scope(fIsDeactivating);
  // A window that a dialog blocks may not have been told that it was active.
  const bool wasToldActive = std::exchange(fIsToldActive, false);
  const TError activationError =
      wasToldActive ? ErrorOf([this] { fEvents.OnActivationChanged(false); }) : kOK;
  // Without a focus view nobody in this window waits for the release of a key.
  const bool holdsKeyboard = fFocus.GetView() != nullptr;
  fFocus.OnDeactivated();
  const TError releaseError = holdsKeyboard ? fWindow.fHost->AbandonKeyReleases() : kOK;
  fTooltips.Activate(false);
  fWindow.fHost->RequestMenuBars();
  MORVANE_CHECK(activationError);
  MORVANE_CHECK(releaseError);
}

void CWinWindowFocus::OnReceivedKeyboard() {
  DebugPrint("CWinWindow::IWindowListener_OnReceivedFocus " + HandleText(fWindow.fHwnd));
  fEvents.OnKeyboardFocusChanged(true);
  fFocus.OnKeyboardReturned();
  fWindow.fHost->RequestMenuBars();
}

void CWinWindowFocus::OnLostKeyboard() {
  DebugPrint("CWinWindow::IWindowListener_OnLostFocus " + HandleText(fWindow.fHwnd));
  // A window that is still active has lost the keyboard to a control of its own.
  if (!IsActive())
    fEvents.OnKeyboardFocusChanged(false);
  else
    fFocus.OnKeyboardLost();
  fWindow.fHost->RequestMenuBars();
}

}  // namespace NSMorvane
