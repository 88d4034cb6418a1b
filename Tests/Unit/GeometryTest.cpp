// Rectangle arithmetic against answers found pixel by pixel or by search.
#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "Component/Portable/MorvaneImplUtilsGeometry.h"
#include "Tests/Support/PrintGeometry.h"
#include "Tests/Support/RecordingDebugOutput.h"

namespace NSMorvane {

namespace {

using NSMorvaneTest::RecordingDebugOutput;

constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();

// At a place within `position` of zero, and up to `size` wide and high.
TRect RandomRect(std::mt19937& random, int position, int size) {
  const auto number = [&](int low, int high) { return low + static_cast<int>(random() % (high - low + 1)); };
  const int left = number(-position, position);
  const int top = number(-position, position);
  return {left, top, left + number(0, size), top + number(0, size)};
}

// The shift of least length that brings [low, high) into [outerLow, outerHigh).
int ShortestShift(int low, int high, int outerLow, int outerHigh) {
  for (int distance = 0;; ++distance)
    for (int shift : {distance, -distance})
      if (low + shift >= outerLow && high + shift <= outerHigh) return shift;
}

TMonitorList MonitorsWithWorkAreas(std::initializer_list<TRect> workAreas) {
  TMonitorList monitors = {};
  for (const TRect& area : workAreas) monitors.fMonitors[monitors.fMonitorCount++] = {area, area, 32};
  return monitors;
}

TEST(Geometry, IntersectionHoldsThePointsOfBoth) {
  std::mt19937 random(20240);
  int overlaps = 0;
  for (int round = 0; round < 3000; ++round) {
    const TRect a = RandomRect(random, 3, 5), b = RandomRect(random, 3, 5);
    TRect both = a;
    const bool overlap = IntersectRect(both, b);
    bool anyPoint = false;
    for (int i = 0; i < 18 * 18; ++i) {
      const TPoint point = {i % 18 - 9, i / 18 - 9};
      const bool expected = IsPointInRect(point, a) && IsPointInRect(point, b);
      anyPoint |= expected;
      if (overlap) {
        ASSERT_EQ(expected, IsPointInRect(point, both));
      }
    }
    ASSERT_EQ(anyPoint, overlap) << testing::PrintToString(a) << testing::PrintToString(b);
    overlaps += overlap;
  }
  EXPECT_GT(overlaps, 200);
  for (const TRect& insideOut : {TRect{5, 0, 0, 9}, TRect{0, 5, 9, 0}}) {
    TRect both = {0, 0, 9, 9};
    EXPECT_FALSE(IntersectRect(both, insideOut));
  }
}

TEST(Geometry, MovingInsideTakesTheShortestWay) {
  RecordingDebugOutput output;
  std::mt19937 random(77);
  for (int round = 0; round < 2000; ++round) {
    const TRect outer = RandomRect(random, 20, 30);
    TRect inner = RandomRect(random, 60, 30);
    inner.fRight = std::min(inner.fRight, inner.fLeft + (outer.fRight - outer.fLeft));
    inner.fBottom = std::min(inner.fBottom, inner.fTop + (outer.fBottom - outer.fTop));
    const int dx = ShortestShift(inner.fLeft, inner.fRight, outer.fLeft, outer.fRight);
    const int dy = ShortestShift(inner.fTop, inner.fBottom, outer.fTop, outer.fBottom);
    const TRect expected = {inner.fLeft + dx, inner.fTop + dy, inner.fRight + dx, inner.fBottom + dy};
    ASSERT_EQ(expected, MoveRectInside(inner, outer))
        << testing::PrintToString(inner) << testing::PrintToString(outer);
  }
  EXPECT_TRUE(output.fAssertions.empty());
}

TEST(Geometry, MovingInsideWhatIsTooSmallIsReportedAndEndsAtRightAndBottom) {
  RecordingDebugOutput output;
  EXPECT_EQ((TRect{-10, 5, 10, 15}), MoveRectInside({-3, 0, 17, 10}, {0, 5, 10, 25}));
  EXPECT_EQ((TRect{0, -10, 5, 10}), MoveRectInside({0, 50, 5, 70}, {0, 0, 10, 10}));
  EXPECT_EQ(
      (std::vector<std::string>{"(moveRect.fRight-moveRect.fLeft) <= (biggerRect.fRight-biggerRect.fLeft)",
                                "(moveRect.fBottom-moveRect.fTop) <= (biggerRect.fBottom-biggerRect.fTop)"}),
      output.fAssertions);
}

TEST(Geometry, CoordinatesAtTheEndOfTheRange) {
  EXPECT_EQ((TRect{0, 0, 10, 10}), MoveRectInside({kMin, kMin, kMin + 10, kMin + 10}, {0, 0, 100, 100}));
  EXPECT_EQ((TRect{90, 90, 100, 100}), MoveRectInside({kMax - 10, kMax - 10, kMax, kMax}, {0, 0, 100, 100}));
  EXPECT_EQ((TRect{kMin, kMin, kMax, kMax}),
            MoveRectInside({kMin, kMin, kMax, kMax}, {kMin, kMin, kMax, kMax}));
  const TMonitor monitor = {{0, 0, 100, 80}, {0, 0, 100, 70}, 32};
  EXPECT_EQ((TRect{0, 0, 100, 70}), ConstrainRectToMonitor(monitor, {kMin, kMin, kMax, kMax}, {0, 0}));
  EXPECT_EQ((TRect{100, 70, kMax, kMax}), ConstrainRectToMonitor(monitor, {100, 70, 100, 70}, {kMax, kMax}));
  EXPECT_EQ((TRect{kMax, kMin, kMax, kMin}), OffsetRectBy({kMax - 3, kMin + 3, kMax, kMin + 5}, 5, -9));
  // The area of the second one does not fit into 63 bits.
  EXPECT_EQ(1u, FindBestMonitor(MonitorsWithWorkAreas({{0, 0, kMax, kMax}, {kMin, kMin, kMax, kMax}}),
                                {kMin, kMin, kMax, kMax}));
}

TEST(Geometry, ConstrainingToAMonitor) {
  const TMonitor monitor = {{1000, 0, 1800, 600}, {1000, 20, 1800, 580}, 32};
  const struct {
    TRect rect;
    TSize minimum;
    TRect expected;
  } rows[] = {
      {{1100, 100, 1200, 200}, {0, 0}, {1100, 100, 1200, 200}},      // inside already
      {{0, 0, 100, 100}, {0, 0}, {1000, 20, 1100, 120}},             // moved, not cut
      {{1750, 550, 1850, 650}, {0, 0}, {1700, 480, 1800, 580}},      // over right and bottom
      {{1700, 500, 2700, 1500}, {0, 0}, {1000, 20, 1800, 580}},      // too large both ways
      {{1100, 100, 1200, 200}, {300, 90}, {1100, 100, 1400, 200}},   // widened only
      {{1700, 500, 1750, 550}, {200, 200}, {1700, 500, 1900, 700}},  // widened out of the work area
      {{0, 0, 2000, 50}, {900, -1}, {1000, 20, 1900, 70}},           // cut, then widened again
  };
  for (const auto& row : rows)
    EXPECT_EQ(row.expected, ConstrainRectToMonitor(monitor, row.rect, row.minimum))
        << testing::PrintToString(row.rect);
}

TEST(Geometry, TheBestMonitorShowsMost) {
  const TMonitorList monitors =
      MonitorsWithWorkAreas({{0, 0, 100, 100}, {100, 0, 200, 100}, {200, 0, 300, 100}});
  const std::vector<std::pair<TRect, std::uint32_t>> rows = {
      {{10, 10, 20, 20}, 0},   {{150, 10, 160, 20}, 1}, {{250, 50, 400, 400}, 2}, {{90, 10, 110, 20}, 0},
      {{89, 10, 111, 20}, 0},  {{90, 10, 111, 20}, 1},  {{150, 0, 250, 100}, 1},  {{500, 500, 600, 600}, 0},
      {{210, 20, 205, 10}, 0}, {{50, 0, 250, 100}, 1}};
  for (const auto& [rect, expected] : rows)
    EXPECT_EQ(expected, FindBestMonitor(monitors, rect)) << testing::PrintToString(rect);
  EXPECT_EQ(0u, FindBestMonitor(MonitorsWithWorkAreas({}), {0, 0, 10, 10}));
  // A count that is out of bounds is not believed.
  TMonitorList broken = MonitorsWithWorkAreas({{0, 0, 10, 10}});
  broken.fMonitorCount = 0xFFFFFFFF;
  EXPECT_EQ(0u, FindBestMonitor(broken, {0, 0, 10, 10}));
}

}  // namespace
}  // namespace NSMorvane
