#include "Component/Win/Window/WinWindowMouse.h"

#include "Component/Win/Input/WinKeyboard.h"
#include "Component/Win/Input/WinMouseShape.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Window/WindowHost.h"
#include "Component/Win/Window/WinViewInspector.h"
#include "Component/Win/Window/WinWindowTooltips.h"

namespace NSMorvane {

// --- Records

namespace {

constexpr std::int32_t kUnitsPerNotch = 120;

TMouseTracking MakeTracking(std::uint64_t timeMS, const TPoint& position) {
  TMouseTracking event = {};
  event.fTimeMS = timeMS;
  event.fState.fButtons = GetAsyncMouseButtons();
  event.fState.fPosition = position;
  event.fState.fModifiers = GetAsyncModifiers();
  return event;
}

TMouseEvent MakeClick(TMouseEventType type, std::int32_t button, const TPoint& position) {
  TMouseEvent event = {};
  event.fType = type;
  event.fTimeMS = GetMessageTimeMS();
  event.fButtons = button == kNoButton ? 0 : 1u << (button - 1);
  event.fPosition = position;
  event.fModifiers = GetAsyncModifiers();
  return event;
}

TMouseWheelEvent MakeWheel(std::int32_t notches, const TPoint& position) {
  TMouseWheelEvent event = {};
  event.fType = kMouseEventWheel;
  event.fDeltaNotches = notches;
  event.fButtons = GetAsyncMouseButtons();
  event.fPosition = position;
  event.fModifiers = GetAsyncModifiers();
  event.fTimeMS = GetMessageTimeMS();
  return event;
}

}  // namespace

// --- Messages

void CWinWindowMouse::OnMove(const TPoint& position) {
  fIsOverControl = false;
  OnMoveWithin(position);
  ArmLeave();
}

void CWinWindowMouse::OnMoveOverControl(const TPoint& position, bool isInside) {
  fIsOverControl = isInside;
  OnMoveWithin(position);
}

void CWinWindowMouse::OnMoveWithin(const TPoint& position) {
  fDispatch.DispatchMove(MakeTracking(GetMessageTimeMS(), position));
}

void CWinWindowMouse::OnLeave(const TPoint& screenPosition) {
  fIsOverControl = IsChild(GetHwnd(), WindowFromPoint(ToNative(screenPosition))) != 0;
  try {
    OnMoveWithin(ScreenToClientChecked(GetHwnd(), screenPosition));
  } catch (...) {
    fIsLeaveArmed = false;
    MORVANE_RETHROW();
  }
  fIsLeaveArmed = false;
}

bool CWinWindowMouse::CanCheckTracking() const {
  return fDispatch.CanCheckTracking() && fWindow.fRootView &&
         (!fInspector.IsIdle() || fDispatch.HasViewsToCheck(*fWindow.fRootView));
}

void CWinWindowMouse::ArmLeave() {
  if (fIsLeaveArmed) return;
  TRACKMOUSEEVENT request = {};
  request.cbSize = sizeof(request);
  request.dwFlags = TME_LEAVE;
  request.hwndTrack = fWindow.fHwnd;
  if (!TrackMouseEvent(&request)) MORVANE_CHECK_LAST_ERROR();
  fIsLeaveArmed = true;
}

void CWinWindowMouse::OnPress(std::int32_t clickCount, std::int32_t button, const TPoint& position) {
  fDispatch.DispatchClick(
      MakeClick(clickCount == 2 ? kMouseEventDoubleClick : kMouseEventClick, button, position));
}

void CWinWindowMouse::OnRelease(std::int32_t button, const TPoint& position) {
  if (IsCaptured()) fDispatch.DispatchRelease(MakeClick(kMouseEventClick, button, position));
}

void CWinWindowMouse::OnContextClick(const TPoint& position) {
  fDispatch.DispatchClick(MakeClick(kMouseEventContextClick, kNoButton, position));
}

bool CWinWindowMouse::OnWheel(std::int32_t delta, const TPoint& position) {
  if ((delta < 0) != (fWheelRest < 0)) fWheelRest = 0;
  const std::int32_t units = fWheelRest + delta;
  fWheelRest = units % kUnitsPerNotch;
  return fDispatch.DispatchWheel(MakeWheel(units / kUnitsPerNotch, position));
}

// --- The pointer

void CWinWindowMouse::RefreshShape(const TMouseShapeRequest& request) {
  ForgetAnswers();
  fDispatch.RefreshShape(request);
}

void CWinWindowMouse::IMouseWindow_ShowShape(const IMouseShape* shape, const TPoint& position) {
  static const HCURSOR arrow = LoadCursorW(nullptr, IDC_ARROW);
  fCursor = shape ? NativeCursorOf(*shape) : arrow;
  fIsShapeGiven = shape != nullptr;
  // No view gives a shape when the mouse has left the window: the pointer is another window's then, or the
  // frame's.
  if (!shape && (fIsOverControl || !IsOverClientArea(position))) return;
  if (!gOverrideCursor && fCursor) fGlance.ShowCursor(fCursor);
}

bool CWinWindowMouse::IsOverClientArea(const TPoint& position) {
  RECT client = {};
  return GetClientRect(GetHwnd(), &client) && PtInRect(&client, ToNative(position)) &&
         IMouseWindow_IsOnTopAt(position);
}

bool CWinWindowMouse::OnSetCursor(WORD hitTest) {
  HCURSOR cursor = nullptr;
  if (hitTest == HTGROWBOX)
    cursor = LoadCursorW(nullptr, IDC_SIZENWSE);
  else if (hitTest == HTCLIENT)
    cursor = gOverrideCursor ? gOverrideCursor : fCursor;
  if (hitTest != HTGROWBOX && !cursor) return false;
  fGlance.ShowCursor(cursor);
  return true;
}

bool CWinWindowMouse::OnSetCursorInChild(WORD hitTest) {
  return hitTest == HTCLIENT && (gOverrideCursor || (fIsOverControl && fIsShapeGiven)) &&
         OnSetCursor(hitTest);
}

// --- The capture

void CWinWindowMouse::AttachCapture(const boost::shared_ptr<IMouseCapture>& capture) {
  MORVANE_ASSERT(capture != 0);
  MORVANE_ASSERT(::GetCapture() != GetHwnd());
  fTooltips.Activate(false);
  SetCapture(GetHwnd());
  MORVANE_ASSERT(::GetCapture() == GetHwnd());
  fDispatch.SetCapture(capture);
}

void CWinWindowMouse::DetachCapture() {
  // The object is taken first, so that the window ignores the WM_CAPTURECHANGED that follows.
  const boost::shared_ptr<IMouseCapture> capture = fDispatch.TakeCapture();
  const BOOL result = ReleaseCapture();
  fTooltips.Activate(true);
  MORVANE_ASSERT(result);
}

// The client's object is deleted without another call.
void CWinWindowMouse::OnCaptureLost() {
  fWindow.fHost->ForgetMouseCaptureWindow();
  const boost::shared_ptr<IMouseCapture> capture = fDispatch.TakeCapture();
  // Tooltips stay off in an inactive window: mostly the capture is lost because another window becomes
  // active.
  if (GetActiveWindow() == GetHwnd()) fTooltips.Activate(true);
}

// --- What the dispatch asks

TMouseHolder CWinWindowMouse::IMouseWindow_GetHolder() {
  const HWND holder = fGlance.GetCaptureWindow();
  if (!holder) return TMouseHolder::kNobody;
  return holder == GetHwnd() ? TMouseHolder::kThisWindow : TMouseHolder::kAnother;
}

TMouseTracking CWinWindowMouse::IMouseWindow_Sample(const TPoint& position) {
  std::uint64_t now = 0;
  MORVANE_CHECK(fWindow.fHost->GetMorvane().IMorvane_GetCurrentMS(now));
  return MakeTracking(now, position);
}

void CWinWindowMouse::IMouseWindow_OnLook(const TPoint& point) {
  // What is under another window is not under the mouse.
  const bool isUnderMouse = !fInspector.IsOn() || fGlance.IsOver(fWindow.fHwnd, point);
  if (fInspector.Follow(point, isUnderMouse)) ForgetAnswers();
}

}  // namespace NSMorvane
