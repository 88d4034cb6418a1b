// Regions against a grid of pixels, and handles of others.
#include "Tests/Support/PixelSet.h"
#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;

namespace {

// From the top, and from the left within a band; the rectangles of a band have the same top and bottom.
bool AreBandsInOrder(const TRectList& rects) {
  return std::adjacent_find(rects.begin(), rects.end(), [](const TRect& before, const TRect& rect) {
           const bool sameBand =
               rect.fTop == before.fTop && rect.fBottom == before.fBottom && rect.fLeft > before.fRight;
           return !sameBand && rect.fTop < before.fBottom;
         }) == rects.end();
}

}  // namespace

using Region = ReportingTest;

// Several regions that are assigned, copied and changed at random: whatever they share, each must stay what
// its own history made of it.
TEST_F(Region, EveryOperationAgreesWithPixels) {
  Random random(4711);
  std::vector<CRegion> regions(5);
  std::vector<PixelSet> expected(5);
  for (int round = 0; round < 500; ++round) {
    const int which = random(0, 4), other = random(0, 4);
    CRegion& region = regions[which];
    PixelSet& pixels = expected[which];
    const PixelSet otherPixels = expected[other];
    const TRect rect = {random(0, 20), random(0, 20), random(0, 20), random(0, 20)};  // often inside out
    const auto inRect = PixelSet::In(rect);
    const auto setWhere = [&](const auto& isIn) {
      pixels.Set([&, old = pixels](const TPoint& p) { return isIn(old(p), inRect(p)); });
    };
    switch (random(0, 7)) {
      case 0:
        region.UnionRect(rect);
        setWhere([](bool old, bool isInRect) { return old || isInRect; });
        break;
      case 1:
        region.SubtractRect(rect);
        setWhere([](bool old, bool isInRect) { return old && !isInRect; });
        break;
      case 2:
        region.IntersectRect(rect);
        setWhere([](bool old, bool isInRect) { return old && isInRect; });
        break;
      case 3:
        region = CRegion(rect);
        pixels.Set(inRect);
        break;
      case 4:
        region = regions[other];
        pixels = otherPixels;
        break;
      case 5:
        if (!PixelSet::HasRoom(region.GetBounds(), 10)) break;
        region.Offset(rect.fLeft - 10, rect.fTop - 10);
        pixels.Move(rect.fLeft - 10, rect.fTop - 10);
        break;
      default:
        region.UnionRegion(regions[other]);
        pixels.Add(otherPixels);
    }
    for (int k = 0; k < 5; ++k) {
      const TRectList rects = regions[k].GetRects();
      ASSERT_EQ(expected[k], PixelSet(regions[k])) << round;
      ASSERT_TRUE(AreBandsInOrder(rects));
      ASSERT_EQ(rects.empty(), regions[k].IsEmpty());
      TRect box = rects.empty() ? TRect{} : rects[0];
      for (const TRect& each : rects)
        box = {std::min(box.fLeft, each.fLeft), box.fTop, std::max(box.fRight, each.fRight), each.fBottom};
      ASSERT_EQ(box, regions[k].GetBounds());
    }
  }
  EXPECT_EQ("", TakeLines());
}

TEST_F(Region, ACopyIsMadeOnceAndOnlyToBeWrittenTo) {
  CRegion region(TRect{0, 0, 20, 20});
  const TNativeRegion handle = region.GetNativeRegion();
  {
    CRegion copy = region;
    copy.UnionRect({});
    copy.SubtractRect({5, 5, 5, 9});
    EXPECT_EQ(handle, copy.GetNativeRegion());
    copy.UnionRect({20, 0, 30, 20});
    const TNativeRegion own = copy.GetNativeRegion();
    EXPECT_NE(handle, own);
    copy.SubtractRect({0, 0, 5, 5});
    copy.Offset(1, 1);
    EXPECT_EQ(own, copy.GetNativeRegion());
    const CRegion third = copy;
    copy.IntersectRect({});
    EXPECT_NE(own, copy.GetNativeRegion());
    EXPECT_EQ(own, third.GetNativeRegion());
  }
  // Nobody shares it any more.
  region.UnionRect({0, 0, 30, 30});
  EXPECT_EQ(handle, region.GetNativeRegion());
}

TEST_F(Region, AnExternalHandleIsReadAndNeverWritten) {
  TNativeRegionOwner owner = MakeNativeRegion({1, 1, 20, 20});
  const TNativeRegion handle = owner.get();
  {
    CRegion wrapped(handle, true);
    EXPECT_EQ((TRect{1, 1, 20, 20}), wrapped.GetBounds());
    wrapped.SubtractRect({0, 0, 10, 10});
    EXPECT_NE(handle, wrapped.GetNativeRegion());
    EXPECT_EQ((TRectList{{1, 1, 20, 20}}), CRegion(handle, true).GetRects());
  }
  EXPECT_TRUE(DeleteNativeRegion(owner.release())) << "it is still there";
}
