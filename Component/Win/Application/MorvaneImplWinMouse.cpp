// The root object's services around the mouse: its state, its shape, the capture, and whether a press becomes
// a drag.
#include <boost/make_shared.hpp>

#include "Component/Win/Application/MorvaneImplWin.h"
#include "Component/Win/Input/WinKeyboard.h"
#include "Component/Win/Input/WinMouseShape.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Window/WindowRegistry.h"
#include "Component/Win/Window/WinWindow.h"

namespace NSMorvane {

namespace {

enum : std::int32_t { kUnknownPosition = -15000 };

// A press becomes a drag when the mouse leaves the box around it. After the limit it counts as held and can
// become neither a click nor a drag.
enum : std::int32_t { kDragBoxHalfWidth = 3 };
constexpr std::int32_t kDragLimitMS = 500;
constexpr DWORD kDragPollMS = 5;

// Whether more than the limit has passed since `then`. The 32-bit difference stays right when the clock wraps
// around after 49 days.
bool HasPassedDragLimit(std::uint64_t now, std::uint64_t then) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(now) - static_cast<std::uint32_t>(then)) >
         kDragLimitMS;
}

// The range of messages that are looked at. WM_MOUSEHWHEEL lies behind it and stays in the queue.
enum : UINT { kFirstMouseMessage = WM_MOUSEFIRST, kLastMouseMessage = WM_XBUTTONDBLCLK };

HWND HwndOf(IWindow& window) {
  TNativeWindow native = {};
  ThrowError(window.IWindow_GetNativeWindow(native));
  return native.fHwnd;
}

// Throws unless the window is one of the library's and has not been released. Clients can implement IWindow
// too.
boost::shared_ptr<CWinWindow> LiveWindowOf(IWindow& window) {
  const CWinWindow* const winWindow = dynamic_cast<CWinWindow*>(&window);
  boost::shared_ptr<CWinWindow> reference;
  if (winWindow) reference = winWindow->LockClientsWindowReference();
  if (!reference) MORVANE_THROW(std::invalid_argument(""));
  return reference;
}

TMouseShapeRequest ShapeRequest(const TMouseState& state) {
  TMouseShapeRequest request = {};
  request.fButtons = state.fButtons;
  request.fPosition = state.fPosition;
  request.fModifiers = state.fModifiers;
  return request;
}

// The message may be that of a child window, in the child's coordinates.
bool IsNearPress(const TPoint& press, HWND hwnd, const MSG& move) {
  POINT position = {static_cast<std::int16_t>(LOWORD(move.lParam)),
                    static_cast<std::int16_t>(HIWORD(move.lParam))};
  if (move.hwnd != hwnd) MapWindowPoints(move.hwnd, hwnd, &position, 1);
  const std::int64_t dx = std::int64_t{position.x} - press.fX;
  const std::int64_t dy = std::int64_t{position.y} - press.fY;
  const auto isInside = [](std::int64_t d) { return d >= -kDragBoxHalfWidth && d < kDragBoxHalfWidth; };
  return isInside(dx) && isInside(dy);
}

bool IsButtonUp(UINT message) {
  return message == WM_LBUTTONUP || message == WM_RBUTTONUP || message == WM_MBUTTONUP ||
         message == WM_XBUTTONUP;
}

}  // namespace

// --- State and shape

TMouseState CMorvaneImpl::CMorvaneGlue_SampleMouseState(IWindow* window) {
  TMouseState state = {};
  state.fModifiers = GetAsyncModifiers();
  state.fButtons = GetAsyncMouseButtons();
  POINT position;
  if (!GetCursorPos(&position)) {
    state.fPosition = {kUnknownPosition, kUnknownPosition};
    return state;
  }
  if (window && !ScreenToClient(HwndOf(*window), &position)) MORVANE_CHECK_LAST_ERROR();
  state.fPosition = FromNative(position);
  return state;
}

void CMorvaneImpl::CMorvaneGlue_SetOverrideMouseShape(IMouseShape* overrideShape) {
  SetOverrideCursor(overrideShape ? NativeCursorOf(*overrideShape) : nullptr);
}

void CMorvaneImpl::CMorvaneGlue_RequestMouseShapeArbitration() {
  const auto refresh = [&](CWinWindow& window) {
    window.GetMouse().RefreshShape(ShapeRequest(CMorvaneGlue_SampleMouseState(&window)));
  };
  if (const boost::shared_ptr<CWinWindow> captureWindow = fMouseCaptureWindow.lock()) {
    refresh(*captureWindow);
    return;
  }
  POINT cursor;
  if (!GetCursorPos(&cursor)) return;
  for (const boost::shared_ptr<CWinWindow>& window : fWindows->GetVisibleWindowsZ()) {
    RECT rect = {};
    if (!GetWindowRect(window->GetHwnd(), &rect)) MORVANE_CHECK_LAST_ERROR();
    if (!PtInRect(&rect, cursor)) continue;
    refresh(*window);
    return;
  }
}

std::unique_ptr<IMouseShape> CMorvaneImpl::CMorvaneGlue_LoadResourceMouseShape(const std::string& key) {
  return LoadMouseShape(key);
}

std::unique_ptr<IMouseShape> CMorvaneImpl::CMorvaneGlue_CreateBuiltInMouseShape(
    TBuiltInMouseShape mouseShape) {
  return MakeBuiltInMouseShape(mouseShape);
}

// --- Capture

void CMorvaneImpl::CMorvaneGlue_AllocateMouseCapture(IWindow* window, IMouseCapture* capture) {
  MORVANE_ASSERT(capture != 0);
  MORVANE_ASSERT(window != 0);
  if (!fMouseCaptureWindow.expired()) {
    DebugPrint("There can only be one mouse capture at a time.");
    MORVANE_UNREACHED();
    MORVANE_THROW(XIllegalCallSequence());
  }
  const boost::shared_ptr<CWinWindow> captureWindow = LiveWindowOf(*window);
  // A failure before this point leaves the object to the client. From here on nothing fails, and the library
  // owns it.
  const auto owner = boost::make_shared<std::unique_ptr<IMouseCapture>>();
  owner->reset(capture);
  // Set before AttachCapture, so that a client called from within it finds the mouse captured.
  fMouseCaptureWindow = captureWindow;
  captureWindow->GetMouse().AttachCapture(boost::shared_ptr<IMouseCapture>(owner, capture));
  // Such a client may have released the capture before it was attached, which has reset this.
  if (captureWindow->LockClientsWindowReference()) fMouseCaptureWindow = captureWindow;
}

void CMorvaneImpl::CMorvaneGlue_ReleaseMouseCapture() {
  if (const boost::shared_ptr<CWinWindow> captureWindow = fMouseCaptureWindow.lock())
    captureWindow->GetMouse().DetachCapture();
  fMouseCaptureWindow.reset();
}

// --- Click or drag

TClickDragResult CMorvaneImpl::CMorvaneGlue_CheckForClickDragOperation(IWindow& window,
                                                                       const TMouseEvent& event) {
  const HWND hwnd = HwndOf(window);
  const bool isClick = event.fType == kMouseEventClick;
  const bool leftActive = event.fButtons == 1 && (isClick || event.fType == kMouseEventDoubleClick);
  const bool rightActive = event.fButtons == 2 && isClick;
  if (!leftActive && !rightActive) return kClickDragNotApplicable;
  // With a null handle PeekMessageW would look at all windows of the thread.
  if (!IsWindow(hwnd)) MORVANE_THROW(std::invalid_argument(""));
  // PeekMessageW delivers sent messages, which may end the window or change the client's record.
  const TPoint press = event.fPosition;
  const std::uint64_t pressTime = event.fTimeMS;
  const std::uint64_t start = CMorvaneGlue_GetCurrentMS();
  while (true) {
    MSG msg;
    bool isNews = false;
    if (PeekMessageW(&msg, hwnd, kFirstMouseMessage, kLastMouseMessage, PM_NOREMOVE)) {
      if (msg.message == WM_LBUTTONUP && leftActive) return kClickDragReleased;
      if (msg.message == WM_RBUTTONUP && rightActive) return kClickDragReleased;
      if (msg.message == WM_MOUSEMOVE) {
        PeekMessageW(&msg, hwnd, WM_MOUSEMOVE, WM_MOUSEMOVE, PM_REMOVE);
        MORVANE_ASSERT(msg.message == WM_MOUSEMOVE);
        if (!IsNearPress(press, hwnd, msg)) return kClickDragDragged;
        isNews = true;
      } else if (!IsButtonUp(msg.message)) {
        PeekMessageW(&msg, hwnd, msg.message, msg.message, PM_REMOVE);
        isNews = true;
      }
    }
    if (!isNews) MsgWaitForMultipleObjectsEx(0, nullptr, kDragPollMS, QS_MOUSE, 0);
    // The time since the loop began counts too, since the time of the event may lie in the future.
    const std::uint64_t now = CMorvaneGlue_GetCurrentMS();
    if (HasPassedDragLimit(now, pressTime) || HasPassedDragLimit(now, start)) return kClickDragHeld;
  }
}

}  // namespace NSMorvane
