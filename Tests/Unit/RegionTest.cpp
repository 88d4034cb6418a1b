// Regions against a grid of pixels, and what is copied when.
#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <climits>
#include <functional>
#include <random>
#include <set>
#include <vector>

#include "Component/Portable/Region.h"
#include "Tests/Support/PrintGeometry.h"
#include "Tests/Support/RecordingDebugOutput.h"

namespace NSMorvane {
namespace {

using NSMorvaneTest::RecordingDebugOutput;

// The slow answer: every pixel, by row and column.
using TPixels = std::set<std::pair<int, int>>;

TPixels PixelsOf(const TRectList& rects) {
  TPixels pixels;
  for (const TRect& rect : rects)
    for (int y = rect.fTop; y < rect.fBottom; ++y)
      for (int x = rect.fLeft; x < rect.fRight; ++x)
        EXPECT_TRUE(pixels.emplace(y, x).second) << "in two rectangles";
  return pixels;
}

TRect BoundsOf(const TPixels& pixels) {
  if (pixels.empty()) return {};
  TRect bounds = {INT_MAX, pixels.begin()->first, -INT_MAX, pixels.rbegin()->first + 1};
  for (const auto& [y, x] : pixels) {
    bounds.fLeft = std::min(bounds.fLeft, x);
    bounds.fRight = std::max(bounds.fRight, x + 1);
  }
  return bounds;
}

// From the top, and from the left within a band; the rectangles of a band have the same top and bottom.
bool AreBandsInOrder(const TRectList& rects) {
  return std::adjacent_find(rects.begin(), rects.end(), [](const TRect& before, const TRect& rect) {
           const bool sameBand =
               rect.fTop == before.fTop && rect.fBottom == before.fBottom && rect.fLeft > before.fRight;
           return !sameBand && rect.fTop < before.fBottom;
         }) == rects.end();
}

// Several regions that are assigned, copied and changed at random: whatever they share, each must stay what
// its own history made of it.
TEST(Region, EveryOperationAgreesWithPixels) {
  RecordingDebugOutput output;
  std::mt19937 random(4711);
  const auto number = [&](int low, int high) { return low + static_cast<int>(random() % (high - low + 1)); };
  constexpr int kRegions = 5;
  std::vector<CRegion> regions(kRegions);
  std::vector<TPixels> expected(kRegions);
  for (int round = 0; round < 1000; ++round) {
    CRegion& region = regions[number(0, kRegions - 1)];
    TPixels& pixels = expected[&region - regions.data()];
    const int other = number(0, kRegions - 1);
    const TPixels otherPixels = expected[other];
    const int left = number(0, 20), top = number(0, 20);
    const TRect rect = {left, top, number(0, 20), number(0, 20)};  // inside out now and then
    TPixels rectPixels = PixelsOf({rect});
    switch (number(0, 7)) {
      case 0:
      case 1:
        region.UnionRect(rect);
        pixels.merge(rectPixels);
        break;
      case 2:
        region.SubtractRect(rect);
        std::erase_if(pixels, [&](const auto& pixel) { return rectPixels.contains(pixel); });
        break;
      case 3:
        region.IntersectRect(rect);
        std::erase_if(pixels, [&](const auto& pixel) { return !rectPixels.contains(pixel); });
        break;
      case 4:
        region.UnionRegion(regions[other]);
        pixels.insert(otherPixels.begin(), otherPixels.end());
        break;
      case 5: {
        const TPixels old = std::exchange(pixels, {});
        region.Offset(left - 10, top - 10);
        for (const auto& [y, x] : old) pixels.emplace(y + top - 10, x + left - 10);
        break;
      }
      case 6:
        region = regions[other];
        pixels = otherPixels;
        break;
      case 7: {
        const CRegion copy(regions[other]);
        region = CRegion(rect);
        region.UnionRegion(copy);
        pixels = otherPixels;
        pixels.merge(rectPixels);
        break;
      }
    }
    for (int k = 0; k < kRegions; ++k) {
      const TRectList rects = regions[k].GetRects();
      ASSERT_EQ(expected[k], PixelsOf(rects)) << round;
      ASSERT_TRUE(AreBandsInOrder(rects));
      ASSERT_EQ(BoundsOf(expected[k]), regions[k].GetBounds());
      ASSERT_EQ(expected[k].empty(), regions[k].IsEmpty());
    }
  }
  EXPECT_TRUE(output.fAssertions.empty());
  EXPECT_TRUE(output.fLines.empty());
}

TEST(Region, ACopyIsMadeByTheFirstWriteOnly) {
  const TRect some = {2, 2, 4, 4}, distant = {0, 0, 1, 1}, empty = {5, 5, 5, 6}, insideOut = {6, 6, 5, 5};
  const struct {
    const char* name;
    std::function<void(CRegion&)> write;
    bool copies;
  } rows[] = {
      {"union", [&](CRegion& r) { r.UnionRect(distant); }, true},
      {"union with nothing new", [&](CRegion& r) { r.UnionRect(some); }, true},
      {"union with an empty rectangle", [&](CRegion& r) { r.UnionRect(empty); }, false},
      {"subtraction", [&](CRegion& r) { r.SubtractRect(distant); }, true},
      {"subtraction of an empty rectangle", [&](CRegion& r) { r.SubtractRect(insideOut); }, false},
      {"intersection", [&](CRegion& r) { r.IntersectRect(some); }, true},
      {"intersection with an empty rectangle", [&](CRegion& r) { r.IntersectRect(empty); }, true},
      {"offset", [](CRegion& r) { r.Offset(1, 1); }, true},
      {"reading", [](CRegion& r) { r.GetBounds(), r.GetRects(), r.IsEmpty(); }, false},
      {"assignment to itself", [](CRegion& r) { r = *&r; }, false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const CRegion original(some);
    const TNativeRegion handle = original.GetNativeRegion();
    CRegion copy(original), assigned;
    assigned = copy;
    EXPECT_EQ(handle, copy.GetNativeRegion());
    row.write(copy);
    EXPECT_EQ(row.copies, copy.GetNativeRegion() != handle);
    for (const CRegion* other : {&original, static_cast<const CRegion*>(&assigned)}) {
      EXPECT_EQ(handle, other->GetNativeRegion());
      EXPECT_EQ((TRectList{some}), other->GetRects());
    }
    // Alone again, it is changed in place.
    const TNativeRegion own = copy.GetNativeRegion();
    copy.UnionRect({10, 10, 12, 12});
    EXPECT_EQ(row.copies, own == copy.GetNativeRegion());
  }
}

TEST(Region, AnExternalHandleIsReadAndNeverWritten) {
  const HRGN handle = CreateRectRgn(1, 1, 20, 20);
  {
    CRegion wrapped(handle, true);
    EXPECT_EQ(handle, wrapped.GetNativeRegion());
    EXPECT_EQ((TRect{1, 1, 20, 20}), wrapped.GetBounds());
    wrapped.SubtractRect({0, 0, 10, 10});
    EXPECT_NE(handle, wrapped.GetNativeRegion());
    EXPECT_EQ(2u, wrapped.GetRects().size());
    const CRegion again(handle, true);
    EXPECT_EQ((TRectList{{1, 1, 20, 20}}), again.GetRects());
  }
  EXPECT_EQ(static_cast<DWORD>(OBJ_REGION), GetObjectType(handle));
  { CRegion owned(handle, false); }
  EXPECT_EQ(0u, GetObjectType(handle));
}

// More regions than the system has handles for, one after the other.
TEST(Region, NoHandleIsLeftBehind) {
  for (int i = 0; i < 70000; ++i) {
    const CRegion original(TRect{0, 0, 10, 10});
    CRegion copy(original);
    copy.SubtractRect({2, 2, 4, 4});
    copy = original;
  }
  EXPECT_EQ((TRectList{{0, 0, 3, 3}}), CRegion(TRect{0, 0, 3, 3}).GetRects());
}

TEST(Region, ABrokenHandleIsReportedAndThrows) {
  RecordingDebugOutput output;
  {
    CRegion broken(nullptr, false);
    EXPECT_EQ("DebugValidate()", output.fAssertions.at(0));
    EXPECT_FALSE(broken.DebugValidate());
    EXPECT_THROW(broken.GetBounds(), std::exception);
    EXPECT_TRUE(output.HasLine("Component/Portable/Region.cpp("));
    output.Reset();
    EXPECT_THROW(broken.UnionRect({0, 0, 1, 1}), std::exception);
    EXPECT_TRUE(output.HasLine("Exception thrown at"));
    output.Reset();
    EXPECT_TRUE(broken.GetRects().empty());
    EXPECT_TRUE(output.HasAssertion("false"));
    output.Reset();
  }
  EXPECT_TRUE(output.HasAssertion("ok"));
}

}  // namespace
}  // namespace NSMorvane
