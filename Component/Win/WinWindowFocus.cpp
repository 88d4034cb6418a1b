// Activation and focus of a window.
//
// A view is on duty when it is the focus view and its window is active and has the keyboard.
#include <windows.h>
// After the above.
#include <commctrl.h>

#include <utility>

#include "Component/Portable/ViewImpl.h"
#include "Component/Win/MorvaneImplWin.h"
#include "Component/Win/UtilsWin.h"
#include "Component/Win/WinWindow.h"
#include "Component/Win/WinWindowModality.h"

namespace NSMorvane {

namespace {

// Whatever the behaviour answers, the walk goes on: changes of focus must run to their end.
void NotifyOnDutyFocus(const CViewImpl& view, TFlag gained) {
  IViewBehavior* const behavior = view.GetBehavior();
  if (!behavior) return;
  const TError error = behavior->IViewBehavior_OnOnDutyFocusChanged(gained);
  if (error != kOK)
    DebugPrint("Ignored error (" + NumberText(static_cast<std::int32_t>(error)) +
               ") returned from IViewBehavior_OnOnDutyFocusChanged");
}

// Nearest first. They live as long as this list, whatever the behaviours do.
std::vector<TViewImplPtr> SuperViews(const CViewImpl& view) {
  std::vector<TViewImplPtr> superViews;
  for (TViewImplPtr superView = view.GetSuperView(); superView; superView = superView->GetSuperView())
    superViews.push_back(superView);
  return superViews;
}

// A view that has been released lives behind its subviews. Empty for one without any: it is on its way out.
TViewImplPtr Hold(const CViewImpl* view) {
  if (!view) return TViewImplPtr();
  if (view->IsLive()) return view->GetClientsViewReference();
  for (const CViewImpl* subView : view->GetRawSubViews())
    if (subView->GetSuperView().get() == view) return subView->GetSuperView();
  return TViewImplPtr();
}

// False for none. Whoever is told of a change may release or disable the view that is about to get the focus.
bool CanTakeFocus(const CViewImpl* view) { return view && view->IsLive() && view->CanBeFocusTargetNow(); }

}  // namespace

// --- On duty and off

void CWinWindow::SendOnDutyFocusGained(CViewImpl* view) {
  const TViewImplPtr keepAlive = Hold(view);
  const std::vector<TViewImplPtr> superViews = SuperViews(*view);
  // One that those before it have released is not told any more.
  for (auto it = superViews.rbegin(); it != superViews.rend(); ++it)
    if ((*it)->IsLive()) NotifyOnDutyFocus(**it, 1);
  if (view->IsLive()) NotifyOnDutyFocus(*view, 1);
}

void CWinWindow::SendOnDutyFocusLost(CViewImpl* view) {
  const TViewImplPtr keepAlive = Hold(view);
  const std::vector<TViewImplPtr> superViews = SuperViews(*view);
  NotifyOnDutyFocus(*view, 0);
  for (const TViewImplPtr& superView : superViews) NotifyOnDutyFocus(*superView, 0);
}

HWND CWinWindow::GetNativeFocusTarget(CViewImpl* view) {
  const TViewImplPtr keepAlive = Hold(view);
  IViewBehavior* const behavior = view->GetBehavior();
  if (!behavior) return nullptr;
  TNativeWindow native = {};
  MORVANE_CHECK(behavior->IViewBehavior_GetNativeFocusTarget(native));
  return native.fHwnd;
}

// Views of the focus chain add to the menu bar, so that it follows the focus.
void CWinWindow::RequestMenuBarsAfterFocusChange() { fMorvane->RebuildAllMenuBars(); }

// --- The focus view

bool CWinWindow::CWindowGlue_IsActive() { return GetActiveWindow() == fHwnd; }

CViewImpl* CWinWindow::CWindowGlue_GetConceptualFocusView() { return fFocusView; }

CViewImpl* CWinWindow::CWindowGlue_GetOnDutyFocusView() {
  return CWindowGlue_IsActive() ? fFocusView : nullptr;
}

CViewImpl* CWinWindow::CWindowGlue_GetRootView() { return fRootView; }

std::vector<CViewImpl*> CWinWindow::CWindowGlue_GetTabViews() { return fTabViews; }

void CWinWindow::CWindowGlue_SetTabViews(const std::vector<CViewImpl*>& tabViews) { fTabViews = tabViews; }

void CWinWindow::IImplFocusTools_SetTabViews(std::vector<CViewImpl*> tabViews) { fTabViews.swap(tabViews); }

void CWinWindow::IImplFocusTools_SetConceptualFocusView(CViewImpl* view) {
  const boost::shared_ptr<CWinWindow> keepAlive = fClientsWindowReference;
  CWindowGlue_SetConceptualFocusView(view);
}

TError CWinWindow::IWindow_SetConceptualFocusView(IView* newConceptualFocusView) {
  const boost::shared_ptr<CWinWindow> keepAlive = fClientsWindowReference;
  return CWindowGlue::IWindow_SetConceptualFocusView(newConceptualFocusView);
}

TError CWinWindow::IWindow_GetTabViews(IViewListReceiver& out) {
  const boost::shared_ptr<CWinWindow> keepAlive = fClientsWindowReference;
  return CWindowGlue::IWindow_GetTabViews(out);
}

void CWinWindow::CWindowGlue_SetConceptualFocusView(CViewImpl* view) {
  if (view == fFocusView) return;
  const TViewImplPtr keepAlive = Hold(view);
  if (fFocusView && CWindowGlue_IsActive()) {
    CViewImpl* const oldView = fFocusView;
    SendOnDutyFocusLost(oldView);
    // The old view may have ended itself, and so passed its focus on.
    if (view == fFocusView) return;
    if (fFocusView && fFocusView != oldView && CWindowGlue_IsActive()) SendOnDutyFocusLost(fFocusView);
    if (!CanTakeFocus(view)) view = nullptr;
  }
  if (!view) {
    fFocusView = nullptr;
    if (CWindowGlue_IsActive() && IsVisible()) WinSetFocus(fHwnd);
  } else {
    // In a window that is not active only the field changes.
    CViewImpl* const viewBefore = fFocusView;
    const HWND native = CWindowGlue_IsActive() ? GetNativeFocusTarget(view) : nullptr;
    if (CWindowGlue_IsActive()) {
      // The keyboard stays on the window itself, so that it gets the key messages. In a window that is not
      // active it stays where it is: taking it would activate the window.
      if (!native && GetFocus() != fHwnd && IsVisible()) WinSetFocus(fHwnd);
      if (native) WinSetFocus(native);
    }
    // Whoever was asked, or told of the keyboard, may have moved the focus already, or activated another
    // window.
    if (fFocusView != view) {
      if (fFocusView && fFocusView != viewBefore && CWindowGlue_IsActive()) SendOnDutyFocusLost(fFocusView);
      if (!CanTakeFocus(view)) view = nullptr;
      fFocusView = view;
      if (view && CWindowGlue_IsActive()) SendOnDutyFocusGained(view);
    }
  }
  RequestMenuBarsAfterFocusChange();
}

void CWinWindow::SetFocusFromNative(CViewImpl* view) {
  const boost::shared_ptr<CWinWindow> keepAliveWindow = fClientsWindowReference;
  if (view == fFocusView) return;
  const TViewImplPtr keepAlive = Hold(view);
  if (CViewImpl* const oldView = fFocusView) {
    SendOnDutyFocusLost(oldView);
    if (view == fFocusView) return;
    if (fFocusView && fFocusView != oldView) SendOnDutyFocusLost(fFocusView);
  }
  // When a control loses the keyboard, the focus view stays what it was.
  if (CanTakeFocus(view)) {
    fFocusView = view;
    SendOnDutyFocusGained(view);
  }
  RequestMenuBarsAfterFocusChange();
}

// --- Activation

void CWinWindow::OnActivated(bool& outHandled) {
  DebugPrint("CWinWindow::IWindowListener_OnActivated " + HandleText(fHwnd));
  RaiseWithOwners(fHwnd);
  // While a window that blocks the application is active, floating windows are out of the way.
  fMorvane->ShowFloatingWindows(fWindowKind != kWindowKindAlertBox &&
                                !(fWindowKind == kWindowKindModalDialog && !fOwnerHwnd));
  if (CViewImpl* const view = fFocusView) {
    const TViewImplPtr keepAlive = Hold(view);
    const HWND native = GetNativeFocusTarget(view);
    // A view that was given the focus meanwhile has been told, and has the keyboard.
    if (fFocusView == view) WinSetFocus(native ? native : fHwnd);
    if (fFocusView == view) SendOnDutyFocusGained(view);
  }
  if (fTooltipHwnd) SendMessageW(fTooltipHwnd, TTM_ACTIVATE, TRUE, 0);
  fIsToldActive = true;
  OnActivationChanged(true);
  fMorvane->RebuildAllMenuBars();
  // The default handling would move the keyboard behind the library's back.
  outHandled = true;
}

void CWinWindow::OnDeactivated() {
  DebugPrint("CWinWindow::IWindowListener_OnDeactivated " + HandleText(fHwnd));
  // One that a dialog blocks may not have been told that it was active.
  if (std::exchange(fIsToldActive, false)) OnActivationChanged(false);
  if (fFocusView) {
    SendOnDutyFocusLost(fFocusView);
    fMorvane->AbandonKeyReleases();
  }
  if (fTooltipHwnd) SendMessageW(fTooltipHwnd, TTM_ACTIVATE, FALSE, 0);
  fMorvane->RebuildAllMenuBars();
}

void CWinWindow::OnReceivedFocus() {
  DebugPrint("CWinWindow::IWindowListener_OnReceivedFocus " + HandleText(fHwnd));
  OnKeyboardFocusChanged(true);
  RequestMenuBarsAfterFocusChange();
}

void CWinWindow::OnLostFocus() {
  DebugPrint("CWinWindow::IWindowListener_OnLostFocus " + HandleText(fHwnd));
  // A window that is still active has lost the keyboard to a control of its own.
  if (!CWindowGlue_IsActive())
    OnKeyboardFocusChanged(false);
  else if (fFocusView)
    SendOnDutyFocusLost(fFocusView);
  RequestMenuBarsAfterFocusChange();
}

}  // namespace NSMorvane
