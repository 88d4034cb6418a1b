// Where the mouse was in a tick. Whose it is, is in the client tests.
#include "Component/Win/Input/WinMouseQueries.h"

#include "Tests/Support/NativeTestWindow.h"
#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;

namespace {

void PutMouseAt(LONG x) {
  EXPECT_TRUE(PumpUntil([x] {
    POINT place = {};
    return SetCursorPos(x, 120) && GetCursorPos(&place) && place.x == x;
  }));
}

LONG CursorFor(HWND window, UINT message, const MSG* tick = nullptr) {
  std::optional<CDispatchScope> scope;
  if (tick) scope.emplace(*tick);
  return GetCursorForMessage({false, window, message, 0, 0}).value_or(POINT{-1, -1}).x;
}

}  // namespace

// A tick that tells of no movement is believed for a quarter of a second, and until another message has seen
// the mouse somewhere else.
TEST(WinMouseQueries, TheLimitsOfWhatIsRemembered) {
  const NativeTestWindow window(WS_POPUP);
  MSG tick = {};
  tick.hwnd = window;
  tick.message = WM_TIMER;
  for (const bool isSeenElsewhere : {false, true}) {
    // Again, if the machine was too busy for it.
    DWORD start = 0;
    LONG remembered = 0;
    do {
      PutMouseAt(120);
      PumpUntil([at = GetTickCount()] { return GetTickCount() - at > 250; });
      start = GetTickCount();
      tick.pt = {tick.pt.x + 1, 120};
      EXPECT_EQ(CursorFor(window, WM_TIMER, &tick), 120);
      PutMouseAt(180);
      if (isSeenElsewhere) {
        EXPECT_EQ(CursorFor(window, WM_MOUSEMOVE), 180);
        PutMouseAt(240);
      }
      remembered = CursorFor(window, WM_TIMER, &tick);
    } while (GetTickCount() - start >= 250);
    EXPECT_EQ(remembered, isSeenElsewhere ? 240 : 120);
    EXPECT_TRUE(PumpUntil([=] { return GetTickCount() - start > 250; }));
    EXPECT_EQ(CursorFor(window, WM_TIMER, &tick), isSeenElsewhere ? 240 : 180);
  }
}

TEST(WinMouseQueries, TicksTellOfMovements) {
  const NativeTestWindow window(WS_POPUP);
  MSG msg = {};
  msg.hwnd = window;
  msg.message = WM_TIMER;
  for (const LONG x : {120, 180, 120}) {
    PutMouseAt(x);
    msg.pt = {x, 120};
    EXPECT_EQ(CursorFor(window, WM_TIMER, &msg), x);
  }
}
