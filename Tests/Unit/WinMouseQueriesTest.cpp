// Whose the mouse is, and where it was in a tick.
#include "Component/Win/WinMouseQueries.h"

#include "Tests/Support/NativeTestWindow.h"
#include "Tests/Support/Pointer.h"
#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;

namespace {

struct Window : NativeTestWindow {
  Window(DWORD style, const RECT& rect, HWND parent = nullptr)
      : NativeTestWindow(style | WS_VISIBLE, parent, L"", WS_EX_TOPMOST | WS_EX_NOACTIVATE) {
    SetWindowPos(*this, nullptr, rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top,
                 SWP_NOACTIVATE | SWP_NOZORDER);
  }
};

void PutMouse(const POINT& point) {
  EXPECT_TRUE(PutPointer(
      point, [](const POINT& place) { SetCursorPos(place.x, place.y); }, PumpUntil));
}

}  // namespace

TEST(WinMouseQueries, ChildrenCountAsTheirWindowAndOthersDoNot) {
  const Window window(WS_POPUP, {100, 100, 300, 300});
  const Window child(WS_CHILD, {0, 0, 50, 50}, window);
  EXPECT_TRUE(IsMouseOverWindow(window, {10, 10}));
  EXPECT_TRUE(IsMouseOverWindow(window, {100, 100}));
  EXPECT_FALSE(IsMouseOverWindow(window, {-10, 10}));
  EXPECT_FALSE(IsMouseOverWindow(child, {10, 10}));
  {
    const Window other(WS_POPUP, {150, 150, 250, 250});
    CMouseGlance glance;
    EXPECT_FALSE(glance.IsOver(window, {100, 100}));
    EXPECT_TRUE(glance.IsOver(window, {10, 10}));
    const Window third(WS_POPUP, {100, 100, 300, 300});
    EXPECT_TRUE(glance.IsOver(window, {10, 10}));  // as it was
    EXPECT_FALSE(glance.IsOver(window, {11, 10}));
    EXPECT_FALSE(glance.IsOver(window, {10, 10}));
    EXPECT_EQ(glance.GetCaptureWindow(), nullptr);
    SetCapture(window);
    EXPECT_EQ(glance.GetCaptureWindow(), nullptr);
    glance.Forget();
    EXPECT_EQ(glance.GetCaptureWindow(), window);
    ReleaseCapture();
  }
  EXPECT_TRUE(IsMouseOverWindow(window, {100, 100}));
  EXPECT_ANY_THROW(IsMouseOverWindow(reinterpret_cast<HWND>(0x1234), {0, 0}));
}

TEST(WinMouseQueries, TicksTellOfMovements) {
  const Window window(WS_POPUP, {100, 100, 300, 300});
  const POINT a = {120, 120}, b = {180, 180};
  MSG msg = {};
  msg.hwnd = window;
  msg.message = WM_TIMER;
  const TWinMessage message = {false, window, WM_TIMER, 0, 0};
  const auto ask = [&] { return GetCursorForMessage(message).value_or(POINT{-1, -1}).x; };
  // As the loop has fetched it, when the mouse was there.
  const auto askInTick = [&](const POINT& point) {
    msg.pt = point;
    const CDispatchScope scope(msg);
    return ask();
  };
  PutMouse(a);
  EXPECT_EQ(ask(), a.x);
  EXPECT_EQ(askInTick(a), a.x);
  // No movement, no question; but not for long, so that a slow machine may take several attempts.
  bool hasRemembered = false;
  for (int attempt = 0; attempt < 20 && !hasRemembered; ++attempt) {
    PutMouse(b);
    EXPECT_EQ(ask(), b.x);  // one that is sent
    EXPECT_EQ(askInTick(b), b.x);
    SetCursorPos(a.x, a.y);
    hasRemembered = askInTick(b) == b.x;
  }
  EXPECT_TRUE(hasRemembered);
  PutMouse(a);
  // A message in the middle of the tick is none of the loop's.
  msg.pt = b;
  const CDispatchScope scope(msg);
  ask();
  EXPECT_EQ(ask(), a.x);
  EXPECT_EQ(askInTick(b), a.x);  // what has become known meanwhile
  EXPECT_EQ(askInTick(a), a.x);
}
