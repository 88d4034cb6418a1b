// The mouse moves often, and so what it costs on the way to the views must not include memory.
#include "Tests/Support/DispatchFixture.h"
#include "Tests/Support/FailingAllocations.h"

using namespace NSMorvaneTest;

namespace {

class MouseAllocations : public DispatchFixture {
 protected:
  void IMouseWindow_OnLook(const TPoint&) override {}

  // Enters, leaves and stays; one of three views that lie in each other, or several.
  void MoveAround() {
    for (const std::int32_t x : {5, 15, 25, 90, 15}) {
      fMouse.CheckTracking({x, 5});
      fMouse.DispatchMove(IMouseWindow_Sample({x, 5}));
      fMouse.DispatchMove(IMouseWindow_Sample({x + 60, 5}));
    }
  }
};

}  // namespace

TEST_F(MouseAllocations, AMovementNeedsNone) {
  CViewImpl* superView = &fWindow.Root();
  for (const TRect& rect : {TRect{0, 0, 80, 80}, {10, 0, 80, 80}, {20, 0, 80, 80}}) {
    superView = &fWindow.MakeView(*superView, rect, "view", kTrackable);
    static_cast<RecordingViewBehavior*>(superView->GetBehavior())->fHitRects = {rect};
  }
  MoveAround();
  gAllocationsLeft = 0;
  MoveAround();
  EXPECT_EQ(gAllocationsLeft, 0);
  gAllocationsLeft = -1;
  fWindow.ReleaseViews();
}
