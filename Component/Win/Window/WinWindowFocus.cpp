// Activation and focus of a window.
//
// A view is on duty when it is the focus view and its window is active and has the keyboard.
#include <windows.h>

#include <utility>

#include "Component/Portable/Views/ViewImpl.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Window/Blocking.h"
#include "Component/Win/Window/WindowHost.h"
#include "Component/Win/Window/WinWindow.h"

namespace NSMorvane {

// Views of the focus chain add to the menu bar, so that it follows the focus.
void CWinWindow::IFocusWindow_OnFocusChanged() { fHost->RequestMenuBars(); }

// The system still takes a window for the active one while it tells it that it is no longer.
bool CWinWindow::IFocusWindow_IsActive() { return CWindowGlue_IsActive() && !fIsDeactivating; }

// The keyboard stays on the window itself for views without a control, so that it gets the key messages.
void CWinWindow::IFocusWindow_GiveKeyboard(const TNativeWindow& control) {
  if (control.fHwnd)
    WinSetFocus(control.fHwnd);
  else if (GetFocus() != fHwnd && IsVisible())
    WinSetFocus(fHwnd);
}

// --- The focus view

bool CWinWindow::CWindowGlue_IsActive() { return GetActiveWindow() == fHwnd; }

CViewImpl* CWinWindow::CWindowGlue_GetConceptualFocusView() { return fFocus.GetView(); }

CViewImpl* CWinWindow::CWindowGlue_GetOnDutyFocusView() {
  return CWindowGlue_IsActive() ? fFocus.GetView() : nullptr;
}

CViewImpl* CWinWindow::CWindowGlue_GetRootView() { return fRootView; }

std::vector<CViewImpl*> CWinWindow::CWindowGlue_GetTabViews() { return fTabViews; }

void CWinWindow::CWindowGlue_SetTabViews(const std::vector<CViewImpl*>& tabViews) { fTabViews = tabViews; }

void CWinWindow::IImplFocusTools_SetTabViews(std::vector<CViewImpl*> tabViews) { fTabViews.swap(tabViews); }

void CWinWindow::IImplFocusTools_SetConceptualFocusView(CViewImpl* view) {
  const boost::shared_ptr<CWinWindow> keepAlive = fClientsWindowReference;
  fFocus.PassOn(view);
}

TError CWinWindow::IWindow_SetConceptualFocusView(IView* newConceptualFocusView) {
  const boost::shared_ptr<CWinWindow> keepAlive = fClientsWindowReference;
  return CWindowGlue::IWindow_SetConceptualFocusView(newConceptualFocusView);
}

TError CWinWindow::IWindow_GetTabViews(IViewListReceiver& out) {
  const boost::shared_ptr<CWinWindow> keepAlive = fClientsWindowReference;
  return CWindowGlue::IWindow_GetTabViews(out);
}

void CWinWindow::CWindowGlue_SetConceptualFocusView(CViewImpl* view) { fFocus.SetView(view); }

void CWinWindow::SetFocusFromNative(CViewImpl* view) {
  const boost::shared_ptr<CWinWindow> keepAlive = fClientsWindowReference;
  fFocus.OnControlFocused(view);
}

// --- Tooltips

std::uint32_t CWinWindow::AddTool(CViewImpl& view, const TString& text) {
  const boost::shared_ptr<CWinWindow> keepAlive = fClientsWindowReference;
  return fTooltips.Add(view, text, fMouse.IsCaptured());
}

void CWinWindow::RemoveTool(std::uint32_t tool, CViewImpl& view) {
  const boost::shared_ptr<CWinWindow> keepAlive = fClientsWindowReference;
  fTooltips.Remove(tool, view);
}

// --- Activation

void CWinWindow::OnActivated(bool& outHandled) {
  DebugPrint("CWinWindow::IWindowListener_OnActivated " + HandleText(fHwnd));
  fBlocking->RaiseWithOwners(fHwnd);
  // While a window that blocks the application is active, floating windows are out of the way.
  fHost->ShowFloatingWindows(!CBlocking::BansFloatingWindows(*this));
  const bool wasActive = CWindowGlue_IsActive();
  const bool wasToldActive = fIsToldActive;
  // A view that fails does not keep the others from learning of it.
  const TError error = ErrorOf([this] { fFocus.OnActivated(); });
  // A view can have activated another window, or opened a dialog that is through by now.
  const bool isLeft = wasActive && !CWindowGlue_IsActive();
  const bool isToldMeanwhile = !wasToldActive && fIsToldActive;
  if (!isLeft && !isToldMeanwhile) {
    fTooltips.Activate(true);
    fIsToldActive = true;
    OnActivationChanged(true);
  }
  fHost->RequestMenuBars();
  MORVANE_CHECK(error);
  // The default handling would move the keyboard behind the library's back.
  outHandled = true;
}

void CWinWindow::OnDeactivated() {
  DebugPrint("CWinWindow::IWindowListener_OnDeactivated " + HandleText(fHwnd));
  const CFlagScope scope(fIsDeactivating);
  // One that a dialog blocks may not have been told that it was active.
  const bool wasToldActive = std::exchange(fIsToldActive, false);
  const TError activationError = wasToldActive ? ErrorOf([this] { OnActivationChanged(false); }) : kOK;
  // Without a focus view the window does not hold the keyboard for anybody.
  const bool holdsKeyboard = fFocus.GetView() != nullptr;
  fFocus.OnDeactivated();
  const TError releaseError = holdsKeyboard ? fHost->AbandonKeyReleases() : kOK;
  fTooltips.Activate(false);
  fHost->RequestMenuBars();
  MORVANE_CHECK(activationError);
  MORVANE_CHECK(releaseError);
}

void CWinWindow::OnReceivedFocus() {
  DebugPrint("CWinWindow::IWindowListener_OnReceivedFocus " + HandleText(fHwnd));
  OnKeyboardFocusChanged(true);
  fFocus.OnKeyboardReturned();
  IFocusWindow_OnFocusChanged();
}

void CWinWindow::OnLostFocus() {
  DebugPrint("CWinWindow::IWindowListener_OnLostFocus " + HandleText(fHwnd));
  // A window that is still active has lost the keyboard to a control of its own.
  if (!CWindowGlue_IsActive())
    OnKeyboardFocusChanged(false);
  else
    fFocus.OnKeyboardLost();
  IFocusWindow_OnFocusChanged();
}

}  // namespace NSMorvane
