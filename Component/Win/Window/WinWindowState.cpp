// Sizes, placement and title of a window.
#include <algorithm>
#include <utility>

#include "Component/Portable/Views/ViewImpl.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Window/WindowHost.h"
#include "Component/Win/Window/WinWindow.h"

namespace NSMorvane {

// --- What the native window says

TSize CWinWindow::GetClientSize() const {
  RECT client = {};
  if (!GetClientRect(fHwnd, &client)) MORVANE_THROW_LAST_ERROR();
  return {client.right, client.bottom};
}

TFrameInsets CWinWindow::GetFrameInsets() const {
  RECT client = {};
  GetClientRect(fHwnd, &client);
  if (!IsEmptyRect(FromNative(client)) && IsVisible()) {
    RECT frame = {};
    GetWindowRect(fHwnd, &frame);
    POINT topLeft = {client.left, client.top};
    POINT bottomRight = {client.right, client.bottom};
    ClientToScreen(fHwnd, &topLeft);
    ClientToScreen(fHwnd, &bottomRight);
    return {topLeft.x - frame.left, topLeft.y - frame.top, frame.right - bottomRight.x,
            frame.bottom - bottomRight.y};
  }
  WINDOWINFO info = {};
  info.cbSize = sizeof(info);
  GetWindowInfo(fHwnd, &info);
  const RECT inner = {100, 100, 200, 200};
  RECT outer = inner;
  AdjustWindowRectEx(&outer, info.dwStyle, fWindowKind == kWindowKindDocument, info.dwExStyle);
  return {inner.left - outer.left, inner.top - outer.top, outer.right - inner.right,
          outer.bottom - inner.bottom};
}

TRect CWinWindow::CWindowGlue_GetFrameRect() {
  const WINDOWPLACEMENT wp = GetPlacement(fHwnd);
  RECT rect = wp.rcNormalPosition;
  if (wp.showCmd == SW_SHOWMAXIMIZED && !GetWindowRect(fHwnd, &rect)) MORVANE_THROW_LAST_ERROR();
  return FromNative(rect);
}

TRect CWinWindow::CWindowGlue_FrameRectToClientRect(const TRect& rect) {
  return FrameRectToClientRect(rect, GetFrameInsets());
}

TRect CWinWindow::CWindowGlue_ClientRectToFrameRect(const TRect& rect) {
  return ClientRectToFrameRect(rect, GetFrameInsets());
}

TRect CWinWindow::GetNormalRect(bool minimized, bool maximized) const {
  return GetNormalRect(GetPlacement(fHwnd), minimized, maximized);
}

TRect CWinWindow::GetNormalRect(const WINDOWPLACEMENT& wp, bool minimized, bool maximized) const {
  if (IsVisible()) {
    // An iconic window reports SW_SHOWMINIMIZED and never this; it is known by its empty client area.
    minimized = wp.showCmd == SW_MINIMIZE;
    maximized = wp.showCmd == SW_SHOWMAXIMIZED;
  }
  const TSize client = GetClientSize();
  return NormalRect(wp, minimized, maximized, IsEmptyRect({0, 0, client.fWidth, client.fHeight}));
}

void CWinWindow::TakeInitialState() {
  const WINDOWPLACEMENT wp = GetPlacement(fHwnd);
  const TSize client = GetClientSize();
  fWindowState.fUserRect = NormalRect(wp, wp.showCmd == SW_MINIMIZE, wp.showCmd == SW_SHOWMAXIMIZED,
                                      IsEmptyRect({0, 0, client.fWidth, client.fHeight}));
  fWindowState.fClientSize = client;
  SetRootViewSize(client);
}

TPoint CWinWindow::OffsetToNativePlacement() const {
  return NSMorvane::OffsetToNativePlacement(fHost->GetMorvane(),
                                            GetWindowLongW(fHwnd, GWL_EXSTYLE) & WS_EX_TOOLWINDOW);
}

// --- Zoom state and placement

bool CWinWindow::IsIdeal(const TRect& frameRect) const {
  return IsClientSizeIdeal(frameRect, fWindowState.fIdealClientSize, GetFrameInsets());
}

TZoomState CWinWindow::GetZoomState() const {
  if (fWindowState.fMinimized || fWindowState.fMaximized) return kWindowStateUser;
  return IsIdeal(GetNormalRect(false, false)) ? kWindowStateIdeal : kWindowStateUser;
}

void CWinWindow::RememberPlacementRect(const TRect& frameRect) {
  if (fWindowState.fMinimized || fWindowState.fMaximized) return;
  (IsIdeal(frameRect) ? fWindowState.fIdealRect : fWindowState.fUserRect) = frameRect;
}

TWindowPlacement CWinWindow::BuildPlacement(const TRect& normalRect) const {
  TWindowPlacement placement;
  placement.fMinimized = fWindowState.fMinimized;
  placement.fMaximized = fWindowState.fMaximized;
  placement.fUserRect = fWindowState.fUserRect;
  placement.fIdealRect = fWindowState.fIdealRect;
  const bool isIdeal = !fWindowState.fMinimized && !fWindowState.fMaximized && IsIdeal(normalRect);
  placement.fZoomState = isIdeal ? kWindowStateIdeal : kWindowStateUser;
  return placement;
}

// --- Telling the kind

void CWinWindow::SetRootViewSize(const TSize& size) {
  if (fRootView) fRootView->SetBounds({0, 0, size.fWidth, size.fHeight});
}

namespace {

// The kind may change size and placement again while it is being told, so the new value stands before that.
// What nobody was told, or what failed, is taken back, and so told again next time.
template <class TValue, class TTell>
void TellChange(TValue& field, const TValue newValue, TTell&& tell) {
  if (newValue == field) return;
  const TValue oldValue = std::exchange(field, newValue);
  bool wasTold = false;
  try {
    wasTold = tell(oldValue, newValue);
  } catch (...) {
    if (field == newValue) field = oldValue;
    throw;
  }
  if (!wasTold && field == newValue) field = oldValue;
}

}  // namespace

void CWinWindow::SetClientSize(const TSize& size) {
  if (!(size == fClientSize)) SetRootViewSize(size);
  TellChange(fClientSize, size, [this](const TSize& oldSize, const TSize& newSize) {
    return OnClientSizeChanged(oldSize, newSize);
  });
}

void CWinWindow::SetPlacement(const TWindowPlacement& placement) {
  TellChange(fPlacement, placement,
             [this](const TWindowPlacement& oldValue, const TWindowPlacement& newValue) {
               return OnPlacementChanged(oldValue, newValue);
             });
}

// --- Following the native window

// Takes over what the native window shows, and returns its normal rectangle. One look at the placement, which
// is costly on some systems, serves both.
TRect CWinWindow::AdoptNativePlacement() {
  const WINDOWPLACEMENT wp = GetPlacement(fHwnd);
  if (IsVisible()) {
    fWindowState.fMinimized = wp.showCmd == SW_SHOWMINIMIZED;
    fWindowState.fMaximized = wp.showCmd == SW_SHOWMAXIMIZED;
  }
  return GetNormalRect(wp, fWindowState.fMinimized, fWindowState.fMaximized);
}

void CWinWindow::SyncWindowState() {
  const TRect normalRect = AdoptNativePlacement();
  if (!fIsHidden) {
    SyncShownWindowState(normalRect);
  } else if (!fWindowState.fMinimized) {
    fWindowState.fClientSize = GetClientSize();
    SetRootViewSize(fWindowState.fClientSize);
  }
}

void CWinWindow::SyncWindowStateOnSize() {
  if (!fIsHidden) SyncShownWindowState(AdoptNativePlacement());
}

void CWinWindow::SyncShownWindowState(const TRect& normalRect) {
  RememberPlacementRect(normalRect);
  if (!fWindowState.fMinimized && IsVisible()) fWindowState.fClientSize = GetClientSize();
  const TWindowPlacement placement = BuildPlacement(normalRect);
  if (fIsHidden) return;
  SetPlacement(placement);
  SetClientSize(fWindowState.fClientSize);
}

// --- The state as the kinds see it

TWindowStateRecord CWinWindow::GetWindowState() const {
  MORVANE_ASSERT(CheckInvariant());
  TWindowStateRecord state;
  state.fMinimumClientSize = fWindowState.fMinimumClientSize;
  state.fMaximumClientSize = fWindowState.fMaximumClientSize;
  state.fIdealClientSize = fWindowState.fIdealClientSize;
  state.fModified = fWindowState.fModified;
  state.fTitle = fWindowState.fTitle.substr(0, kTitleChars);
  state.fPlacement.fMinimized = fWindowState.fMinimized;
  state.fPlacement.fMaximized = fWindowState.fMaximized;
  state.fPlacement.fUserRect = fWindowState.fUserRect;
  state.fPlacement.fIdealRect = fWindowState.fIdealRect;
  state.fPlacement.fZoomState = GetZoomState();
  return state;
}

void CWinWindow::SetWindowState(const TWindowStateRecord& state) {
  MORVANE_ASSERT(CheckInvariant());
  MORVANE_ASSERT(state.fPlacement.fZoomState==kWindowStateIdeal || state.fPlacement.fZoomState==kWindowStateUser);
  MORVANE_ASSERT((state.fMinimumClientSize.fHeight <= state.fMaximumClientSize.fHeight) || (0==state.fMaximumClientSize.fHeight));
  MORVANE_ASSERT((state.fMinimumClientSize.fWidth <= state.fMaximumClientSize.fWidth) || (0==state.fMaximumClientSize.fWidth));
  MORVANE_ASSERT(!(state.fPlacement.fMinimized && state.fPlacement.fMaximized));
  const boost::shared_ptr<CWinWindow> keepAlive = fClientsWindowReference;

  const TWindowPlacement newWindowPlacement =
      FitPlacement(state, fWindowState, GetZoomState(), GetFrameInsets());
  WINDOWPLACEMENT wp = GetPlacement(fHwnd);
  fWindowState.fMinimumClientSize = state.fMinimumClientSize;
  fWindowState.fMaximumClientSize = state.fMaximumClientSize;
  fWindowState.fIdealClientSize = state.fIdealClientSize;
  fWindowState.fMinimized = newWindowPlacement.fMinimized;
  fWindowState.fMaximized = newWindowPlacement.fMaximized;
  fWindowState.fUserRect = newWindowPlacement.fUserRect;
  fWindowState.fIdealRect = newWindowPlacement.fIdealRect;

  wp.showCmd = SW_RESTORE;
  if (!IsVisible())
    wp.showCmd = SW_HIDE;
  else if (newWindowPlacement.fMinimized)
    wp.showCmd = SW_MINIMIZE;
  else if (newWindowPlacement.fMaximized)
    wp.showCmd = SW_SHOWMAXIMIZED;
  TRect target = newWindowPlacement.fIdealRect;
  if (newWindowPlacement.fZoomState != kWindowStateIdeal) {
    MORVANE_ASSERT(newWindowPlacement.fZoomState==kWindowStateUser);
    target = newWindowPlacement.fUserRect;
  }
  // Only another rectangle moves the window; a change of minimized or maximized alone does not.
  if (!(target == FromNative(wp.rcNormalPosition))) {
    wp.rcNormalPosition = ToNative(target);
    NSMorvane::SetPlacement(fHwnd, wp);
  }

  if (state.fTitle != fWindowState.fTitle || state.fModified != fWindowState.fModified) {
    SetNativeTitle(state.fModified ? state.fTitle + u"*" : state.fTitle);
    fWindowState.fTitle = state.fTitle;
    fWindowState.fModified = state.fModified;
    fHost->RequestMenuBars();
  }
}

// --- Title

void CWinWindow::SetNativeTitle(const TString& text) {
  if (IsVisible()) PumpPaintMessages();
  if (!SetWindowTextW(fHwnd, WinText(text))) MORVANE_THROW_LAST_ERROR();
}

TString CWinWindow::GetNativeTitle() const {
  const int length = GetWindowTextLengthW(fHwnd);
  if (length <= 0) return TString();
  TString text(static_cast<std::size_t>(length) + 1, u'\0');
  const int copied = GetWindowTextW(fHwnd, WinBuffer(text.data()), length + 1);
  text.resize(static_cast<std::size_t>(std::clamp(copied, 0, length)));
  return text;
}

}  // namespace NSMorvane
