#include "Component/Win/Window/WinWindowFocus.h"

#include <utility>

#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Window/WindowEvents.h"
#include "Component/Win/Window/WindowHost.h"
#include "Component/Win/Window/WinWindowTooltips.h"

namespace NSMorvane {

// --- What the focus asks

// Views of the focus chain add to the menu bar, so that it follows the focus.
void CWinWindowFocus::IFocusWindow_OnFocusChanged() { fWindow.fHost->RequestMenuBars(); }

// The system still takes a window for the active one while it tells it that it is no longer.
bool CWinWindowFocus::IFocusWindow_IsActive() { return IsActive() && !fIsDeactivating; }

// The keyboard stays on the window itself for views without a control, so that it gets the key messages.
void CWinWindowFocus::IFocusWindow_GiveKeyboard(const TNativeWindow& control) {
  if (control.fHwnd)
    WinSetFocus(control.fHwnd);
  else if (::GetFocus() != fWindow.fHwnd && fWindow.IsVisible())
    WinSetFocus(fWindow.fHwnd);
}

// --- Messages

void CWinWindowFocus::OnActivated() {
  const bool wasActive = IsActive();
  const bool wasToldActive = fIsToldActive;
  // A view that fails does not keep the others from learning of it.
  const TError error = ErrorOf([this] { fFocus.OnActivated(); });
  // A view can have activated another window, or opened a dialog that is through by now.
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
  // One that a dialog blocks may not have been told that it was active.
  const bool wasToldActive = std::exchange(fIsToldActive, false);
  const TError activationError =
      wasToldActive ? ErrorOf([this] { fEvents.OnActivationChanged(false); }) : kOK;
  // Without a focus view the window does not hold the keyboard for anybody.
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
