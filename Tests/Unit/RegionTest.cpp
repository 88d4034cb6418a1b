// Regions against a grid of pixels, and what is copied when.
#include <windows.h>

#include <functional>

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
    switch (random(0, 7)) {
      case 0:
      case 1:
        region.UnionRect(rect);
        pixels.Add(inRect);
        break;
      case 2:
        region.SubtractRect(rect);
        pixels.Set([&, old = pixels](const TPoint& p) { return old(p) && !inRect(p); });
        break;
      case 3:
        region.IntersectRect(rect);
        pixels.Set([&, old = pixels](const TPoint& p) { return old(p) && inRect(p); });
        break;
      case 4:
        region.UnionRegion(regions[other]);
        pixels.Add(otherPixels);
        break;
      case 5:
        if (!PixelSet::HasRoom(region.GetBounds(), 10)) break;
        region.Offset(rect.fLeft - 10, rect.fTop - 10);
        pixels.Move(rect.fLeft - 10, rect.fTop - 10);
        break;
      case 6:
        region = regions[other];
        pixels = otherPixels;
        break;
      case 7:
        region = CRegion(rect);
        pixels.Set(inRect);
        break;
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

TEST_F(Region, ACopyIsMadeByTheFirstWriteOnly) {
  const TRect some = {2, 2, 4, 4}, distant = {0, 0, 1, 1}, empty = {5, 5, 5, 6}, insideOut = {6, 6, 5, 5};
  for (const auto& [name, write, copies] : Rows<const char*, std::function<void(CRegion&)>, bool>{
           {"union", [&](CRegion& r) { r.UnionRect(distant); }, true},
           {"union with an empty rectangle", [&](CRegion& r) { r.UnionRect(empty); }, false},
           {"subtraction", [&](CRegion& r) { r.SubtractRect(distant); }, true},
           {"subtraction of an empty rectangle", [&](CRegion& r) { r.SubtractRect(insideOut); }, false},
           {"intersection", [&](CRegion& r) { r.IntersectRect(some); }, true},
           {"offset", [](CRegion& r) { r.Offset(1, 1); }, true},
           {"reading", [](CRegion& r) { r.GetBounds(), r.GetRects(), r.IsEmpty(); }, false},
           {"assignment to itself", [](CRegion& r) { r = *&r; }, false}}) {
    SCOPED_TRACE(name);
    const CRegion original(some);
    const TNativeRegion handle = original.GetNativeRegion();
    CRegion copy(original), assigned;
    assigned = copy;
    write(copy);
    EXPECT_EQ(copies, copy.GetNativeRegion() != handle);
    for (const CRegion* other : {&original, static_cast<const CRegion*>(&assigned)})
      EXPECT_EQ((TRectList{some}), other->GetRects());
    // Alone again, it is changed in place.
    const TNativeRegion own = copy.GetNativeRegion();
    copy.UnionRect({10, 10, 12, 12});
    EXPECT_EQ(copies, own == copy.GetNativeRegion());
  }
}

TEST_F(Region, AnExternalHandleIsReadAndNeverWritten) {
  const HRGN handle = CreateRectRgn(1, 1, 20, 20);
  {
    CRegion wrapped(handle, true);
    EXPECT_EQ((TRect{1, 1, 20, 20}), wrapped.GetBounds());
    wrapped.SubtractRect({0, 0, 10, 10});
    EXPECT_NE(handle, wrapped.GetNativeRegion());
    EXPECT_EQ((TRectList{{1, 1, 20, 20}}), CRegion(handle, true).GetRects());
  }
  EXPECT_EQ(static_cast<DWORD>(OBJ_REGION), GetObjectType(handle));
  { CRegion owned(handle, false); }
  EXPECT_EQ(0u, GetObjectType(handle));
}
