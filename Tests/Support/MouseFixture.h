// Views that pass under a mouse that stays where it is: the pointer of the system takes its time, and does
// not always go straight. What is sent to the window goes through its message function at once, so that every
// word has its place; the road of real input has a test of its own.
#pragma once

#include "Support/ClientWindows.h"

namespace NSMorvaneTest {

class MouseFixture : public ClientWindowTest {
 protected:
  static constexpr std::uint32_t kTrackable = kViewEnabled | kViewMouseTrackable;
  static constexpr POINT kNowhere = {230, 230};

  void OpenUnderMouse() {
    Open(kWindowResizableBit);
    PutMouse(OnScreen(fMouse));
  }
  // Views whose rectangles are told as if they had never been moved.
  TestView& MakeTracked(const std::string& name, const TRect& rect, const std::string& superView = "",
                        std::uint32_t flags = kTrackable) {
    return MakeView(
        name, {rect.fLeft + fMoved.x, rect.fTop + fMoved.y, rect.fRight + fMoved.x, rect.fBottom + fMoved.y},
        View(superView), flags);
  }
  // No hooks, and no view under the mouse.
  void StartOver() {
    fViewRecord.fHooks.clear();
    fViewRecord.fShapes.clear();
    Tracked(kNowhere);
  }
  // Moves the views until this point of theirs, as they were made, is under the mouse.
  void PutUnderMouse(const POINT& point) {
    const POINT moved = {fMouse.x - point.x, fMouse.y - point.y};
    for (const auto& [name, view] : std::vector(fViews)) {
      IView* superView = nullptr;
      EXPECT_EQ(view->IView_GetSuperView(superView), kOK);
      if (superView != &RootViewOf(*fRecord.fDocument)) continue;
      EXPECT_EQ(view->IView_Offset(moved.x - fMoved.x, moved.y - fMoved.y), kOK);
    }
    fMoved = moved;
  }
  LRESULT SendMouse(UINT message, WPARAM wParam = 0) {
    return Send(message, wParam, MAKELPARAM(fMouse.x, fMouse.y));
  }
  // The check that the timer of the window makes.
  void Tick() { Send(WM_TIMER, 0x1234); }

  // What they make the views write.
  std::string Ticked(const std::function<void()>& after = [] {}) {
    return ViewCallsOf([&] { after(), Tick(); });
  }
  std::string Tracked(const POINT& point) {
    PutUnderMouse(point);
    return Ticked();
  }
  std::string Sent(UINT message, WPARAM wParam = 0) {
    return ViewCallsOf([=, this] { SendMouse(message, wParam); });
  }

  // What shapes load has other handles than what LoadCursorW gives.
  static bool PointerIs(const wchar_t* systemCursor) {
    return GetCursor() == LoadImageW(nullptr, systemCursor, IMAGE_CURSOR, 0, 0, LR_SHARED);
  }
  static bool PointerIsArrow() { return GetCursor() == LoadCursorW(nullptr, IDC_ARROW); }

  const POINT fMouse = {150, 120};
  POINT fMoved = {0, 0};
};

}  // namespace NSMorvaneTest
