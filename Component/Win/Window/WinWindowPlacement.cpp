#include "Component/Win/Window/WinWindowPlacement.h"

#include <algorithm>
#include <utility>

#include "Component/Portable/Views/ViewImpl.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Window/WindowEvents.h"
#include "Component/Win/Window/WindowHost.h"

namespace NSMorvane {

namespace {

TNativePlacement PlacementFromNative(const WINDOWPLACEMENT& wp) {
  return {FromNative(wp.rcNormalPosition), FromNative(wp.ptMinPosition), FromNative(wp.ptMaxPosition)};
}

}  // namespace

// --- What the native window says

TSize CWinWindowPlacement::GetClientSize() const {
  RECT client = {};
  if (!GetClientRect(fWindow.fHwnd, &client)) MORVANE_CHECK_LAST_ERROR();
  return {client.right, client.bottom};
}

TFrameInsets CWinWindowPlacement::GetFrameInsets() const {
  RECT client = {};
  GetClientRect(fWindow.fHwnd, &client);
  if (!IsEmptyRect(FromNative(client)) && fWindow.IsVisible()) {
    RECT frame = {};
    GetWindowRect(fWindow.fHwnd, &frame);
    POINT topLeft = {client.left, client.top};
    POINT bottomRight = {client.right, client.bottom};
    ClientToScreen(fWindow.fHwnd, &topLeft);
    ClientToScreen(fWindow.fHwnd, &bottomRight);
    return {topLeft.x - frame.left, topLeft.y - frame.top, frame.right - bottomRight.x,
            frame.bottom - bottomRight.y};
  }
  const RECT inner = {100, 100, 200, 200};
  RECT outer = inner;
  AdjustWindowRectEx(&outer, static_cast<DWORD>(GetWindowLongW(fWindow.fHwnd, GWL_STYLE)),
                     fWindow.fWindowKind == kWindowKindDocument,
                     static_cast<DWORD>(GetWindowLongW(fWindow.fHwnd, GWL_EXSTYLE)));
  return {inner.left - outer.left, inner.top - outer.top, outer.right - inner.right,
          outer.bottom - inner.bottom};
}

TRect CWinWindowPlacement::GetFrameRect() const {
  const auto shownRect = [this] {
    RECT rect = {};
    if (!GetWindowRect(fWindow.fHwnd, &rect)) MORVANE_CHECK_LAST_ERROR();
    return FromNative(rect);
  };
  // The placement is not asked for here, which is costly on some systems. It would not do for a window that
  // the system has placed at an edge of the screen where the user has dragged it: that has the normal
  // rectangle of before.
  const LONG style = GetWindowLongW(fWindow.fHwnd, GWL_STYLE);
  if (!(style & (WS_MINIMIZE | WS_MAXIMIZE)) && fWindow.IsVisible()) {
    const TPoint offset = OffsetToNativePlacement();
    return OffsetRectBy(shownRect(), offset.fX, offset.fY);
  }
  const WINDOWPLACEMENT wp = GetPlacement(fWindow.fHwnd);
  return wp.showCmd == SW_SHOWMAXIMIZED ? shownRect() : FromNative(wp.rcNormalPosition);
}

TRect CWinWindowPlacement::GetNormalRect(bool minimized, bool maximized) const {
  return GetNormalRect(GetPlacement(fWindow.fHwnd), minimized, maximized);
}

TRect CWinWindowPlacement::GetNormalRect(const WINDOWPLACEMENT& wp, bool minimized, bool maximized) const {
  if (fWindow.IsVisible()) {
    // A minimized window reports SW_SHOWMINIMIZED and never SW_MINIMIZE; NormalRect knows it by its empty
    // client area.
    minimized = wp.showCmd == SW_MINIMIZE;
    maximized = wp.showCmd == SW_SHOWMAXIMIZED;
  }
  const TSize client = GetClientSize();
  return NormalRect(PlacementFromNative(wp), minimized, maximized,
                    IsEmptyRect({0, 0, client.fWidth, client.fHeight}));
}

void CWinWindowPlacement::TakeInitialState() {
  const WINDOWPLACEMENT wp = GetPlacement(fWindow.fHwnd);
  const TSize client = GetClientSize();
  fState.fUserRect =
      NormalRect(PlacementFromNative(wp), wp.showCmd == SW_MINIMIZE, wp.showCmd == SW_SHOWMAXIMIZED,
                 IsEmptyRect({0, 0, client.fWidth, client.fHeight}));
  fState.fClientSize = client;
  SetRootViewSize(client);
}

TPoint CWinWindowPlacement::OffsetToNativePlacement() const {
  if (GetWindowLongW(fWindow.fHwnd, GWL_EXSTYLE) & WS_EX_TOOLWINDOW) return {0, 0};
  return fWindow.fHost->GetPlacementOffset();
}

// --- Zoom state and placement

bool CWinWindowPlacement::IsIdeal(const TRect& frameRect) const {
  return IsClientSizeIdeal(frameRect, fState.fIdealClientSize, GetFrameInsets());
}

TZoomState CWinWindowPlacement::GetZoomState() const {
  if (fState.fMinimized || fState.fMaximized) return kWindowStateUser;
  return IsIdeal(GetNormalRect(false, false)) ? kWindowStateIdeal : kWindowStateUser;
}

void CWinWindowPlacement::RememberPlacementRect(const TRect& frameRect) {
  if (fState.fMinimized || fState.fMaximized) return;
  (IsIdeal(frameRect) ? fState.fIdealRect : fState.fUserRect) = frameRect;
}

TWindowPlacement CWinWindowPlacement::BuildPlacement(const TRect& normalRect) const {
  TWindowPlacement placement;
  placement.fMinimized = fState.fMinimized;
  placement.fMaximized = fState.fMaximized;
  placement.fUserRect = fState.fUserRect;
  placement.fIdealRect = fState.fIdealRect;
  const bool isIdeal = !fState.fMinimized && !fState.fMaximized && IsIdeal(normalRect);
  placement.fZoomState = isIdeal ? kWindowStateIdeal : kWindowStateUser;
  return placement;
}

// --- Telling the kind

void CWinWindowPlacement::SetRootViewSize(const TSize& size) {
  if (fWindow.fRootView) fWindow.fRootView->SetBounds({0, 0, size.fWidth, size.fHeight});
}

namespace {

// Stores a changed value and tells it. The value is stored first, since the kind may change size and
// placement again while it is told. If nobody was told or the call failed, the old value is put back, so that
// the change is told next time.
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

void CWinWindowPlacement::ReportClientSize(const TSize& size) {
  if (!(size == fToldClientSize)) SetRootViewSize(size);
  TellChange(fToldClientSize, size, [this](const TSize& oldSize, const TSize& newSize) {
    return fEvents.OnClientSizeChanged(oldSize, newSize);
  });
}

void CWinWindowPlacement::ReportPlacement(const TWindowPlacement& placement) {
  TellChange(fToldPlacement, placement,
             [this](const TWindowPlacement& oldValue, const TWindowPlacement& newValue) {
               return fEvents.OnPlacementChanged(oldValue, newValue);
             });
}

void CWinWindowPlacement::ReportClientSize() { ReportClientSize(fState.fClientSize); }

void CWinWindowPlacement::ReportPlacement() {
  ReportPlacement(BuildPlacement(GetNormalRect(fState.fMinimized, fState.fMaximized)));
}

int CWinWindowPlacement::GetShowCommand() const {
  if (fState.fMinimized) return SW_SHOWMINIMIZED;
  return fState.fMaximized ? SW_SHOWMAXIMIZED : SW_SHOWNORMAL;
}

// --- Following the native window

// Takes over whether the native window is minimized or maximized, and returns its normal rectangle. The
// placement, which is costly on some systems, is asked for once for both.
TRect CWinWindowPlacement::AdoptNativePlacement() {
  const WINDOWPLACEMENT wp = GetPlacement(fWindow.fHwnd);
  if (fWindow.IsVisible()) {
    fState.fMinimized = wp.showCmd == SW_SHOWMINIMIZED;
    fState.fMaximized = wp.showCmd == SW_SHOWMAXIMIZED;
    // A window without a client area is not minimized for that.
    if (!fState.fMinimized && !fState.fMaximized) return FromNative(wp.rcNormalPosition);
  }
  return GetNormalRect(wp, fState.fMinimized, fState.fMaximized);
}

void CWinWindowPlacement::OnWindowPosChanged() {
  const TRect normalRect = AdoptNativePlacement();
  if (!fWindow.fIsHidden) {
    SyncShown(normalRect);
  } else if (!fState.fMinimized) {
    fState.fClientSize = GetClientSize();
    SetRootViewSize(fState.fClientSize);
  }
}

void CWinWindowPlacement::OnSize() {
  if (!fWindow.fIsHidden) SyncShown(AdoptNativePlacement());
}

void CWinWindowPlacement::SyncShown(const TRect& normalRect) {
  RememberPlacementRect(normalRect);
  if (!fState.fMinimized && fWindow.IsVisible()) fState.fClientSize = GetClientSize();
  const TWindowPlacement placement = BuildPlacement(normalRect);
  if (fWindow.fIsHidden) return;
  ReportPlacement(placement);
  if (!fWindow.fIsHidden) ReportClientSize(fState.fClientSize);  // unless that has released the window
}

// --- The state as the kinds see it

TWindowStateRecord CWinWindowPlacement::Get() const {
  TWindowStateRecord state;
  state.fMinimumClientSize = fState.fMinimumClientSize;
  state.fMaximumClientSize = fState.fMaximumClientSize;
  state.fIdealClientSize = fState.fIdealClientSize;
  state.fModified = fState.fModified;
  state.fTitle = fState.fTitle.substr(0, kTitleChars);
  state.fPlacement.fMinimized = fState.fMinimized;
  state.fPlacement.fMaximized = fState.fMaximized;
  state.fPlacement.fUserRect = fState.fUserRect;
  state.fPlacement.fIdealRect = fState.fIdealRect;
  state.fPlacement.fZoomState = GetZoomState();
  return state;
}

void CWinWindowPlacement::Set(const TWindowStateRecord& state) {
  MORVANE_ASSERT(state.fPlacement.fZoomState==kWindowStateIdeal || state.fPlacement.fZoomState==kWindowStateUser);
  MORVANE_ASSERT((state.fMinimumClientSize.fHeight <= state.fMaximumClientSize.fHeight) || (0==state.fMaximumClientSize.fHeight));
  MORVANE_ASSERT((state.fMinimumClientSize.fWidth <= state.fMaximumClientSize.fWidth) || (0==state.fMaximumClientSize.fWidth));
  MORVANE_ASSERT(!(state.fPlacement.fMinimized && state.fPlacement.fMaximized));

  const TWindowPlacement newWindowPlacement = FitPlacement(state, fState, GetZoomState(), GetFrameInsets());
  const WINDOWPLACEMENT nativePlacement = GetPlacement(fWindow.fHwnd);
  // While the window is minimized or maximized, the state does not tell whether it had its ideal size before.
  // What the state does not change then, the window keeps.
  const bool keepsPlace = (fState.fMinimized || fState.fMaximized) &&
                          newWindowPlacement.fZoomState == kWindowStateUser &&
                          newWindowPlacement.fUserRect == fState.fUserRect;
  fState.fMinimumClientSize = state.fMinimumClientSize;
  fState.fMaximumClientSize = state.fMaximumClientSize;
  fState.fIdealClientSize = state.fIdealClientSize;
  fState.fMinimized = newWindowPlacement.fMinimized;
  fState.fMaximized = newWindowPlacement.fMaximized;
  fState.fUserRect = newWindowPlacement.fUserRect;
  fState.fIdealRect = newWindowPlacement.fIdealRect;
  if (!keepsPlace) MoveNativeWindow(newWindowPlacement, nativePlacement);

  if (state.fTitle != fState.fTitle || state.fModified != fState.fModified) {
    SetNativeTitle(state.fModified ? state.fTitle + u"*" : state.fTitle);
    fState.fTitle = state.fTitle;
    fState.fModified = state.fModified;
    fWindow.fHost->RequestMenuBars();
  }
}

void CWinWindowPlacement::MoveNativeWindow(const TWindowPlacement& newWindowPlacement, WINDOWPLACEMENT wp) {
  wp.showCmd = SW_RESTORE;
  if (!fWindow.IsVisible())
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
  // Only a different rectangle moves the window; a change of minimized or maximized alone does not.
  if (!(target == FromNative(wp.rcNormalPosition))) {
    wp.rcNormalPosition = ToNative(target);
    SetPlacement(fWindow.fHwnd, wp);
  }
}

// --- Size limits

void CWinWindowPlacement::LimitSizes(MINMAXINFO& info) const {
  const TSize& minimum = fState.fMinimumClientSize;
  const TSize& maximum = fState.fMaximumClientSize;
  if (minimum == TSize{} && maximum == TSize{}) return;
  const TFrameInsets insets = GetFrameInsets();
  const TSize minimumFrame = ClientSizeToFrameSize(minimum, insets);
  const TSize maximumFrame = ClientSizeToFrameSize(maximum, insets);
  if (minimum.fWidth != 0) info.ptMinTrackSize.x = minimumFrame.fWidth;
  if (minimum.fHeight != 0) info.ptMinTrackSize.y = minimumFrame.fHeight;
  if (maximum.fWidth != 0) info.ptMaxTrackSize.x = maximumFrame.fWidth;
  if (maximum.fHeight != 0) info.ptMaxTrackSize.y = maximumFrame.fHeight;
}

bool CWinWindowPlacement::MaximizeWithinLimits() {
  TMonitorList monitors;
  ThrowError(fWindow.fHost->GetMorvane().IMorvane_GetMonitors(monitors));
  const TRect& start = GetZoomState() == kWindowStateIdeal ? fState.fIdealRect : fState.fUserRect;
  const std::optional<TRect> rect =
      LimitedMaximum(monitors, start, fState, GetFrameInsets(), OffsetToNativePlacement());
  if (!rect) return false;
  WINDOWPLACEMENT wp = GetPlacement(fWindow.fHwnd);
  wp.rcNormalPosition = ToNative(*rect);
  if (wp.showCmd == SW_SHOWMINIMIZED) wp.showCmd = SW_RESTORE;
  SetPlacement(fWindow.fHwnd, wp);
  return true;
}

// --- Title

void CWinWindowPlacement::SetNativeTitle(const TString& text) {
  if (fWindow.IsVisible()) PumpPaintMessages();
  if (!SetWindowTextW(fWindow.fHwnd, WinText(text))) MORVANE_CHECK_LAST_ERROR();
}

}  // namespace NSMorvane
