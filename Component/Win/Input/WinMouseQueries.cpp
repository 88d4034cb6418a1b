#include "Component/Win/Input/WinMouseQueries.h"

#include <utility>

#include "Component/Win/Platform/UtilsWin.h"

namespace NSMorvane {

namespace {

// The message that the loop has handed to the system, until its window has got it. Process-wide, as the queue
// of the main thread is, and the mouse below.
const MSG* gDispatchedMessage = nullptr;

// How long a position may stand in for the real one.
enum : DWORD { kCursorMemoryMS = 250 };

struct TCursorMemory {
  POINT fCursor;      // the last answer of the system
  POINT fTickCursor;  // what the last tick that asked for it brought along
  DWORD fTime;        // of that tick
  bool fIsValid;
};
TCursorMemory gCursorMemory = {};

bool IsSamePoint(const POINT& a, const POINT& b) { return a.x == b.x && a.y == b.y; }

// The message under way in the loop, if this is it and not one that was sent in the meantime.
const MSG* TakeDispatchedMessage(const TWinMessage& message) {
  const MSG* const msg = gDispatchedMessage;
  if (!msg || msg->hwnd != message.fHwnd || msg->message != message.fMessage ||
      msg->wParam != message.fWParam || msg->lParam != message.fLParam)
    return nullptr;
  gDispatchedMessage = nullptr;
  return msg;
}

}  // namespace

bool IsMouseOverWindow(HWND hwnd, const TPoint& point) {
  POINT screenPoint = ToNative(point);
  if (!ClientToScreen(hwnd, &screenPoint)) MORVANE_CHECK_LAST_ERROR();
  HWND windowUnderPoint = WindowFromPoint(screenPoint);
  while (windowUnderPoint && (GetWindowLongW(windowUnderPoint, GWL_STYLE) & WS_CHILD))
    windowUnderPoint = GetParent(windowUnderPoint);
  return windowUnderPoint == hwnd;
}

TPoint ScreenToClientChecked(HWND hwnd, const TPoint& point) {
  POINT result = ToNative(point);
  if (!ScreenToClient(hwnd, &result)) MORVANE_CHECK_LAST_ERROR();
  return FromNative(result);
}

// --- The position

CDispatchScope::CDispatchScope(const MSG& message)
    : fOuterMessage(std::exchange(gDispatchedMessage, &message)) {}

CDispatchScope::~CDispatchScope() { gDispatchedMessage = fOuterMessage; }

std::optional<POINT> GetCursorForMessage(const TWinMessage& message) {
  // Only a tick is made in the moment in which the loop fetches it; other messages may have waited, and tell
  // where the mouse was before that.
  const MSG* const tick = message.fMessage == WM_TIMER ? TakeDispatchedMessage(message) : nullptr;
  const DWORD now = GetTickCount();
  if (tick && gCursorMemory.fIsValid && IsSamePoint(tick->pt, gCursorMemory.fTickCursor) &&
      now - gCursorMemory.fTime < kCursorMemoryMS)
    return gCursorMemory.fCursor;
  POINT cursor;
  if (!GetCursorPos(&cursor)) {
    gCursorMemory.fIsValid = false;
    return std::nullopt;
  }
  // What the next tick would be answered with is the position of the last tick, and of no other message.
  if (!tick && !IsSamePoint(cursor, gCursorMemory.fCursor)) gCursorMemory.fIsValid = false;
  gCursorMemory.fCursor = cursor;
  if (tick) {
    gCursorMemory.fTickCursor = tick->pt;
    gCursorMemory.fTime = now;
    gCursorMemory.fIsValid = true;
  }
  return cursor;
}

// --- CMouseGlance

void CMouseGlance::Forget() {
  fIsOver.reset();
  fCaptureWindow.reset();
}

bool CMouseGlance::IsOver(HWND hwnd, const TPoint& point) {
  if (!fIsOver || fPoint.fX != point.fX || fPoint.fY != point.fY) {
    fIsOver.reset();
    fIsOver = IsMouseOverWindow(hwnd, point);
    fPoint = point;
  }
  return *fIsOver;
}

HWND CMouseGlance::GetCaptureWindow() {
  if (!fCaptureWindow) fCaptureWindow = GetCapture();
  return *fCaptureWindow;
}

}  // namespace NSMorvane
