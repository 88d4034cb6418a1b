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

LONG CursorFor(HWND window, UINT message) {
  return GetCursorForMessage({false, window, message, 0, 0}).value_or(POINT{-1, -1}).x;
}

// In a tick that has found the mouse at such a place.
LONG CursorForTick(HWND window, LONG x) {
  MSG tick = {};
  tick.hwnd = window;
  tick.message = WM_TIMER;
  tick.pt = {x, 120};
  const CDispatchScope scope(tick);
  return CursorFor(window, WM_TIMER);
}

}  // namespace

// A tick that tells of no movement is believed for a quarter of a second, and until another message has seen
// the mouse somewhere else.
TEST(WinMouseQueries, TheLimitsOfWhatIsRemembered) {
  const NativeTestWindow window(WS_POPUP);
  LONG told = 0;
  for (const bool isSeenElsewhere : {false, true}) {
    // Again, if the machine was too busy for it.
    DWORD start = 0;
    LONG remembered = 0;
    do {
      PutMouseAt(120);
      PumpUntil([at = GetTickCount()] { return GetTickCount() - at > 250; });
      start = GetTickCount();
      EXPECT_EQ(CursorForTick(window, ++told), 120);
      PutMouseAt(180);
      if (isSeenElsewhere) {
        EXPECT_EQ(CursorFor(window, WM_MOUSEMOVE), 180);
        PutMouseAt(240);
      }
      remembered = CursorForTick(window, told);
    } while (GetTickCount() - start >= 250);
    EXPECT_EQ(remembered, isSeenElsewhere ? 240 : 120);
    EXPECT_TRUE(PumpUntil([=] { return GetTickCount() - start > 250; }));
    EXPECT_EQ(CursorForTick(window, told), isSeenElsewhere ? 240 : 180);
  }
}

TEST(WinMouseQueries, TicksTellOfMovements) {
  const NativeTestWindow window(WS_POPUP);
  for (const LONG x : {120, 180, 120}) {
    PutMouseAt(x);
    EXPECT_EQ(CursorForTick(window, x), x);
  }
}
