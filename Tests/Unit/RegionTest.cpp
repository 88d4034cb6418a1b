// Regions against a grid of pixels, and what is copied when.
#include <gtest/gtest.h>
#include <windows.h>

#include <bitset>
#include <functional>
#include <random>
#include <vector>

#include "Component/Portable/Region.h"
#include "Tests/Support/PrintGeometry.h"
#include "Tests/Support/RecordingDebugOutput.h"

namespace NSMorvane {
namespace {

using NSMorvaneTest::RecordingDebugOutput;

constexpr int kSide = 40;    // of the grid
constexpr int kOffset = 10;  // the grid's first pixel is (-kOffset, -kOffset)

// The slow answer: one bit for each pixel.
class CPixelSet {
 public:
  bool At(int x, int y) const { return fBits[Index(x, y)]; }
  template <class Function>
  void Change(Function function) {
    for (int y = -kOffset; y < kSide - kOffset; ++y)
      for (int x = -kOffset; x < kSide - kOffset; ++x) fBits[Index(x, y)] = function(x, y, At(x, y));
  }
  TRect Bounds() const {
    TRect bounds = {};
    for (int y = -kOffset; y < kSide - kOffset; ++y)
      for (int x = -kOffset; x < kSide - kOffset; ++x) {
        if (!At(x, y)) continue;
        if (IsEmptyRect(bounds)) bounds = {x, y, x + 1, y + 1};
        bounds = {std::min(bounds.fLeft, x), std::min(bounds.fTop, y), std::max(bounds.fRight, x + 1),
                  std::max(bounds.fBottom, y + 1)};
      }
    return bounds;
  }
  // False if a rectangle leaves the grid or meets another one.
  bool FillFrom(const TRectList& rects) {
    fBits.reset();
    for (const TRect& rect : rects)
      for (int y = rect.fTop; y < rect.fBottom; ++y)
        for (int x = rect.fLeft; x < rect.fRight; ++x) {
          if (x < -kOffset || y < -kOffset || x >= kSide - kOffset || y >= kSide - kOffset || At(x, y))
            return false;
          fBits[Index(x, y)] = true;
        }
    return true;
  }
  bool operator==(const CPixelSet& other) const = default;

 private:
  static std::size_t Index(int x, int y) {
    return static_cast<std::size_t>((y + kOffset) * kSide + x + kOffset);
  }
  std::bitset<kSide * kSide> fBits;
};

// From the top, and from the left within a band; the rectangles of a band have the same top and bottom.
bool AreBandsInOrder(const TRectList& rects) {
  for (std::size_t i = 1; i < rects.size(); ++i) {
    const TRect& before = rects[i - 1];
    const TRect& rect = rects[i];
    const bool sameBand =
        rect.fTop == before.fTop && rect.fBottom == before.fBottom && rect.fLeft > before.fRight;
    if (!sameBand && rect.fTop < before.fBottom) return false;
  }
  return true;
}

void ExpectSame(const CPixelSet& expected, const CRegion& region) {
  const TRectList rects = region.GetRects();
  CPixelSet pixels;
  ASSERT_TRUE(pixels.FillFrom(rects));
  ASSERT_EQ(expected, pixels);
  ASSERT_TRUE(AreBandsInOrder(rects));
  ASSERT_EQ(expected.Bounds(), region.GetBounds());
  ASSERT_EQ(IsEmptyRect(expected.Bounds()), region.IsEmpty());
}

// Several regions that are assigned, copied and changed at random: whatever they share, each must stay what
// its own history made of it.
TEST(Region, EveryOperationAgreesWithPixels) {
  RecordingDebugOutput output;
  std::mt19937 random(4711);
  const auto number = [&](int low, int high) { return low + static_cast<int>(random() % (high - low + 1)); };
  const auto anyRect = [&] {
    const TRect rect = {number(0, 20), number(0, 20), number(0, 20), number(0, 20)};
    return rect;
  };
  constexpr int kRegions = 5;
  std::vector<CRegion> regions(kRegions);
  std::vector<CPixelSet> pixels(kRegions);
  for (int round = 0; round < 1500; ++round) {
    const int i = number(0, kRegions - 1);
    const int j = number(0, kRegions - 1);
    const TRect rect = anyRect();
    const auto inRect = [&](int x, int y) { return IsPointInRect({x, y}, rect); };
    switch (number(0, 7)) {
      case 0:
      case 1:
        regions[i].UnionRect(rect);
        pixels[i].Change([&](int x, int y, bool old) { return old || inRect(x, y); });
        break;
      case 2:
        regions[i].SubtractRect(rect);
        pixels[i].Change([&](int x, int y, bool old) { return old && !inRect(x, y); });
        break;
      case 3:
        regions[i].IntersectRect(rect);
        pixels[i].Change([&](int x, int y, bool old) { return old && inRect(x, y); });
        break;
      case 4:
        regions[i].UnionRegion(regions[j]);
        pixels[i].Change([&](int x, int y, bool old) { return old || pixels[j].At(x, y); });
        break;
      case 5: {
        // Never out of the grid, and back to the middle.
        const TRect bounds = pixels[i].Bounds();
        const int dx = number(-5, 5) - bounds.fLeft, dy = number(-5, 5) - bounds.fTop;
        const CPixelSet old = pixels[i];
        regions[i].Offset(dx, dy);
        pixels[i].Change([&](int x, int y, bool) {
          const int fromX = x - dx, fromY = y - dy;
          return IsPointInRect({fromX, fromY}, bounds) && old.At(fromX, fromY);
        });
        break;
      }
      case 6:
        regions[i] = regions[j];
        pixels[i] = pixels[j];
        break;
      case 7: {
        const CRegion copy(regions[j]);
        regions[i] = CRegion(rect);
        regions[i].UnionRegion(copy);
        const CPixelSet other = pixels[j];
        pixels[i].Change([&](int x, int y, bool) { return inRect(x, y) || other.At(x, y); });
        break;
      }
    }
    for (int k = 0; k < kRegions; ++k) ASSERT_NO_FATAL_FAILURE(ExpectSame(pixels[k], regions[k])) << round;
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
