#include "Component/Win/Input/WinMouseQueries.h"

#include <utility>

#include "Component/Portable/Base/Scopes.h"
#include "Component/Win/Platform/UtilsWin.h"

namespace NSMorvane {

namespace {

// The message that the loop has handed to the system, until its window has got it. Process-wide, since the
// main thread has one queue.
const MSG* gDispatchedMessage = nullptr;

// How long a remembered position may be used.
enum : DWORD { kCursorMemoryMS = 250 };

struct TCursorMemory {
  POINT fCursor;      // the last answer of the system
  POINT fTickCursor;  // the position that the last such tick carried
  DWORD fTime;        // of that tick
  bool fIsValid;
};
// Process-wide, since there is one mouse.
TCursorMemory gCursorMemory = {};

bool IsSamePoint(const POINT& a, const POINT& b) { return a.x == b.x && a.y == b.y; }

// The message that the loop is dispatching, if `message` is that one and not one that was sent meanwhile. It
// is given out once.
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
  // Only WM_TIMER is made when the loop fetches it. Other messages may have waited in the queue and carry an
  // old position.
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
  // The memory answers for the position of the last tick. It is invalid once another message finds the mouse
  // elsewhere.
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
  fShownCursor = nullptr;
}

void CMouseGlance::OnMessage(UINT message) {
  if (!fIsAsking || message != WM_NCHITTEST) Forget();
}

bool CMouseGlance::IsOver(HWND hwnd, const TPoint& point) {
  if (!fIsOver || fPoint.fX != point.fX || fPoint.fY != point.fY) {
    fIsOver.reset();
    const CFlagScope scope(fIsAsking);
    fIsOver = IsMouseOverWindow(hwnd, point);
    fPoint = point;
  }
  return *fIsOver;
}

HWND CMouseGlance::GetCaptureWindow() {
  if (!fCaptureWindow) fCaptureWindow = GetCapture();
  return *fCaptureWindow;
}

void CMouseGlance::ShowCursor(HCURSOR cursor) {
  if (cursor == fShownCursor) return;
  SetCursor(cursor);
  fShownCursor = cursor;
}

}  // namespace NSMorvane
