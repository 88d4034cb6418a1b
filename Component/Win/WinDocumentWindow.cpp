#include "Component/Win/WinDocumentWindow.h"

#include <algorithm>

#include "Component/Portable/ViewImpl.h"
#include "Component/Win/MorvaneImplWin.h"
#include "Component/Win/UtilsWin.h"

namespace NSMorvane {

namespace {

DWORD DocumentWindowStyle(TStyleFlags styleFlags) {
  DWORD style = WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN;
  style |= styleFlags & kWindowResizableBit ? WS_THICKFRAME | WS_MINIMIZEBOX : WS_BORDER | WS_MINIMIZEBOX;
  if (styleFlags & kWindowZoomableBit) style |= WS_MAXIMIZEBOX;
  return style;
}

// Between the coordinates of native placements and those of the client.
TRect RectForClient(const TRect& rect, const TPoint& offset) {
  return OffsetRectBy(rect, -static_cast<std::int64_t>(offset.fX), -static_cast<std::int64_t>(offset.fY));
}
TRect RectFromClient(const TRect& rect, const TPoint& offset) {
  return OffsetRectBy(rect, offset.fX, offset.fY);
}

TDocumentWindowPlacement PlacementForClient(const TWindowPlacement& placement, const TPoint& offset) {
  TDocumentWindowPlacement out = {};
  out.fMinimized = placement.fMinimized ? 1 : 0;
  out.fMaximized = placement.fMaximized ? 1 : 0;
  out.fZoomState = placement.fZoomState;
  out.fUserRect = RectForClient(placement.fUserRect, offset);
  out.fIdealRect = RectForClient(placement.fIdealRect, offset);
  return out;
}

}  // namespace

CDocumentWindowImpl::CDocumentWindowImpl(CMorvaneImpl* morvane, TStyleFlags styleFlags,
                                         bool listedInWindowMenu)
    : CWinWindow(morvane, kWindowKindDocument, nullptr, DocumentWindowStyle(styleFlags), 0,
                 (styleFlags & kWindowStyleBit23) != 0, listedInWindowMenu, true),
      fRunBehavior(morvane->GetBehavior()) {
  ++gDocumentWindowCount;
}

CDocumentWindowImpl::~CDocumentWindowImpl() {
  PrepareDestruction();
  fBehavior.reset();
  --gDocumentWindowCount;
}

void CDocumentWindowImpl::SetBehavior(std::unique_ptr<IDocumentWindowBehavior> behavior) {
  MORVANE_ASSERT_TEXT("0==fBehavior", !fBehavior);
  MORVANE_ASSERT_TEXT("0!=behavior", behavior != nullptr);
  fBehavior = std::move(behavior);
}

// --- The contract

TError CDocumentWindowImpl::IDocumentWindow_SetState(const TDocumentWindowState& state) {
  const boost::shared_ptr<CWinWindow> keepAlive = LockClientsWindowReference();
  return CDocumentWindowGlue::IDocumentWindow_SetState(state);
}

TError CDocumentWindowImpl::IDocumentWindow_FocusNow() {
  const boost::shared_ptr<CWinWindow> keepAlive = LockClientsWindowReference();
  return CDocumentWindowGlue::IDocumentWindow_FocusNow();
}

bool CDocumentWindowImpl::CDocumentWindowGlue_CheckInvariant() const { return CheckInvariant(); }

TPoint CDocumentWindowImpl::ClientOffset() const {
  const TRect origin = ScreenRectToWorkspace({0, 0, 0, 0}, *fMorvane);
  return {origin.fLeft, origin.fTop};
}

TDocumentWindowState CDocumentWindowImpl::CDocumentWindowGlue_GetState() {
  const TWindowStateRecord own = GetWindowState();
  TDocumentWindowState state = {};
  state.fMinimumClientSize = own.fMinimumClientSize;
  state.fMaximumClientSize = own.fMaximumClientSize;
  state.fIdealClientSize = own.fIdealClientSize;
  state.fModified = own.fModified ? 1 : 0;
  std::copy_n(own.fTitle.begin(), std::min<std::size_t>(own.fTitle.size(), kTitleChars), state.fTitle);
  state.fPlacement = PlacementForClient(own.fPlacement, ClientOffset());
  return state;
}

void CDocumentWindowImpl::CDocumentWindowGlue_SetState(const TDocumentWindowState& state) {
  const TPoint offset = ClientOffset();
  TWindowStateRecord own;
  own.fMinimumClientSize = state.fMinimumClientSize;
  own.fMaximumClientSize = state.fMaximumClientSize;
  own.fIdealClientSize = state.fIdealClientSize;
  own.fModified = state.fModified == 1;
  own.fTitle.assign(state.fTitle, std::find(state.fTitle, state.fTitle + kTitleChars, u'\0'));
  own.fPlacement.fMinimized = state.fPlacement.fMinimized == 1;
  own.fPlacement.fMaximized = state.fPlacement.fMaximized == 1;
  own.fPlacement.fZoomState = state.fPlacement.fZoomState;
  own.fPlacement.fUserRect = RectFromClient(state.fPlacement.fUserRect, offset);
  own.fPlacement.fIdealRect = RectFromClient(state.fPlacement.fIdealRect, offset);
  SetWindowState(own);
}

IWindow* CDocumentWindowImpl::CDocumentWindowGlue_GetWindow() { return this; }

IModalOwner* CDocumentWindowImpl::CDocumentWindowGlue_GetModalOwner() { return this; }

void CDocumentWindowImpl::CDocumentWindowGlue_FocusNow() { FocusNow(); }

IDocumentWindowBehavior* CDocumentWindowImpl::CDocumentWindowGlue_GetBehavior() { return fBehavior.get(); }

void CDocumentWindowImpl::CDocumentWindowGlue_Release() { ReleaseWindow(); }

// --- What the window asks of its kind

bool CDocumentWindowImpl::OnClientSizeChanged(const TSize& oldSize, const TSize& newSize) {
  if (!fBehavior) return false;
  MORVANE_CHECK(fBehavior->IDocumentWindowBehavior_OnClientSizeChanged(oldSize, newSize));
  return true;
}

bool CDocumentWindowImpl::OnPlacementChanged(const TWindowPlacement& oldPlacement,
                                             const TWindowPlacement& newPlacement) {
  if (!fBehavior) return false;
  const TPoint offset = ClientOffset();
  MORVANE_CHECK(fBehavior->IDocumentWindowBehavior_OnPlacementChanged(
      PlacementForClient(oldPlacement, offset), PlacementForClient(newPlacement, offset)));
  return true;
}

void CDocumentWindowImpl::OnActivationChanged(bool active) {
  if (fBehavior) MORVANE_CHECK(fBehavior->IDocumentWindowBehavior_OnActivationChanged(active ? 1 : 0));
}

bool CDocumentWindowImpl::OnKeyDown(const TKeyEvent& event) {
  if (!fBehavior) return false;
  TFlag handled = 0;
  MORVANE_CHECK(fBehavior->IDocumentWindowBehavior_HandleKeyDown(event, handled));
  return handled == 1;
}

void CDocumentWindowImpl::OnKeyboardFocusChanged(bool focused) {
  if (fBehavior) MORVANE_CHECK(fBehavior->IDocumentWindowBehavior_OnKeyboardFocusChanged(focused ? 1 : 0));
}

bool CDocumentWindowImpl::OnHelpRequested() {
  if (!fBehavior) return false;
  TFlag handled = 0;
  MORVANE_CHECK(fBehavior->IDocumentWindowBehavior_OnHelpRequested(handled));
  return handled == 1;
}

void CDocumentWindowImpl::RequestClose(TCloseReason reason) {
  if (!fBehavior) {
    DebugPrint("RequestClose for a behavior-less document window!!!");
    ReleaseWindow();
    return;
  }
  MORVANE_ASSERT(CheckInvariant());
  MORVANE_CHECK(fBehavior->IDocumentWindowBehavior_OnRequestClose(reason));
}

void CDocumentWindowImpl::RequestMenuBarSetup(CMenuBarState& state) {
  if (!fBehavior) {
    DebugPrint("RequestMenuBarSetup for a behavior-less document window!!!");
    return;
  }
  MORVANE_CHECK(fBehavior->IDocumentWindowBehavior_OnSetupMenuBar(state));
}

bool CDocumentWindowImpl::OnMenuCommand(const TMenuCommandEvent& event) {
  TFlag handled = 0;
  for (const TViewImplPtr& view : ViewChain(fFocusView)) {
    IViewBehavior* const behavior = view->GetBehavior();
    if (!behavior) break;  // the walk ends here, this view is not passed over
    MORVANE_CHECK(behavior->IViewBehavior_OnMenuCommand(event, handled));
    if (handled) return true;
  }
  if (fBehavior) {
    MORVANE_CHECK(fBehavior->IDocumentWindowBehavior_OnMenuCommand(event, handled));
    if (handled) return true;
  }
  MORVANE_CHECK(fRunBehavior->IMorvaneRunBehavior_OnMenuCommand(event, handled));
  return handled != 0;
}

}  // namespace NSMorvane
