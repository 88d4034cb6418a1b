// Where the mouse was in a tick. Whose it is, is in the client tests.
#include "Component/Win/WinMouseQueries.h"

#include "Tests/Support/NativeTestWindow.h"
#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;

TEST(WinMouseQueries, TicksTellOfMovements) {
  const NativeTestWindow window(WS_POPUP);
  MSG msg = {};
  msg.hwnd = window;
  msg.message = WM_TIMER;
  for (const LONG x : {120, 180, 120}) {
    EXPECT_TRUE(PumpUntil([x] {
      POINT place = {};
      return SetCursorPos(x, 120) && GetCursorPos(&place) && place.x == x;
    }));
    msg.pt = {x, 120};
    const CDispatchScope scope(msg);
    EXPECT_EQ(GetCursorForMessage({false, window, WM_TIMER, 0, 0}).value_or(POINT{-1, -1}).x, x);
  }
}
