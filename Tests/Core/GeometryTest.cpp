// Rectangle arithmetic against answers found pixel by pixel or by search.
#include "Component/Portable/Base/Geometry.h"
#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;

namespace {

TMonitorList MonitorsWithWorkAreas(std::initializer_list<TRect> workAreas) {
  TMonitorList monitors = {};
  for (const TRect& area : workAreas) monitors.fMonitors[monitors.fMonitorCount++] = {area, area, 32};
  return monitors;
}

}  // namespace

using Geometry = ReportingTest;

TEST_F(Geometry, IntersectionHoldsThePointsOfBoth) {
  Random random(20240);
  int overlaps = 0;
  for (int round = 0; round < 3000; ++round) {
    const TRect a = random.Rect(-3, 3, 5), b = random.Rect(-3, 3, 5);
    TRect both = a;
    const bool overlap = IntersectRect(both, b);
    bool anyPoint = false;
    for (TPoint p = {-9, -9}; p.fY < 9; p = p.fX < 9 ? TPoint{p.fX + 1, p.fY} : TPoint{-9, p.fY + 1}) {
      const bool expected = IsPointInRect(p, a) && IsPointInRect(p, b);
      anyPoint |= expected;
      ASSERT_TRUE(!overlap || expected == IsPointInRect(p, both));
    }
    ASSERT_EQ(anyPoint, overlap) << testing::PrintToString(a) << testing::PrintToString(b);
    overlaps += overlap;
  }
  EXPECT_GT(overlaps, 200);
}

TEST_F(Geometry, MovingInside) {
  const TRect outer = {0, 0, 30, 20};
  EXPECT_EQ((TRect{3, 4, 13, 14}), MoveRectInside({3, 4, 13, 14}, outer)) << "it is inside already";
  EXPECT_EQ((TRect{0, 0, 30, 20}), MoveRectInside({-7, 9, 23, 29}, outer)) << "it just fits";
  EXPECT_EQ("", TakeReports());
  // Where there is no room, right and bottom are at the edge.
  EXPECT_EQ((TRect{-10, -15, 10, 5}), MoveRectInside({-3, 50, 17, 70}, {0, 0, 10, 5}));
  EXPECT_EQ(
      "(moveRect.fRight-moveRect.fLeft) <= (biggerRect.fRight-biggerRect.fLeft); "
      "(moveRect.fBottom-moveRect.fTop) <= (biggerRect.fBottom-biggerRect.fTop)",
      TakeReports());
}

TEST_F(Geometry, CoordinatesAtTheEndOfTheRange) {
  EXPECT_EQ((TRect{90, 90, 100, 100}), MoveRectInside({kMax - 10, kMax - 10, kMax, kMax}, {0, 0, 100, 100}));
  EXPECT_EQ((TRect{kMin, kMin, kMax, kMax}),
            MoveRectInside({kMin, kMin, kMax, kMax}, {kMin, kMin, kMax, kMax}));
  EXPECT_EQ((TRect{kMax, kMin, kMax, kMin}), OffsetRectBy({kMax - 3, kMin + 3, kMax, kMin + 5}, 5, -9));
  // The area of the second one does not fit into 63 bits.
  EXPECT_EQ(1u, FindBestMonitor(MonitorsWithWorkAreas({{0, 0, kMax, kMax}, {kMin, kMin, kMax, kMax}}),
                                {kMin, kMin, kMax, kMax}));
}

TEST_F(Geometry, ConstrainingToAMonitor) {
  const TMonitor monitor = {{1000, 0, 1800, 600}, {1000, 20, 1800, 580}, 32};
  for (const auto& [rect, minimum, expected] : Rows<TRect, TSize, TRect>{
           {{0, 0, 100, 100}, {0, 0}, {1000, 20, 1100, 120}},             // moved, not cut
           {{1750, 550, 1850, 650}, {0, 0}, {1700, 480, 1800, 580}},      // over right and bottom
           {{1100, 100, 1200, 200}, {300, 90}, {1100, 100, 1400, 200}},   // widened only
           {{1700, 500, 1750, 550}, {200, 200}, {1700, 500, 1900, 700}},  // widened out of the work area
           {{0, 0, 2000, 50}, {900, -1}, {1000, 20, 1900, 70}},           // cut, then widened again
           {{kMin, kMin, kMax, kMax}, {0, 0}, {1000, 20, 1800, 580}},
           {{1800, 580, 1800, 580}, {kMax, kMax}, {1800, 580, kMax, kMax}}})
    EXPECT_EQ(expected, ConstrainRectToMonitor(monitor, rect, minimum)) << testing::PrintToString(rect);
}

TEST_F(Geometry, TheBestMonitorShowsMost) {
  TMonitorList monitors = MonitorsWithWorkAreas({{0, 0, 100, 100}, {100, 0, 200, 100}, {200, 0, 300, 100}});
  const Rows<TRect, std::uint32_t> rows = {{{250, 50, 400, 400}, 2}, {{90, 10, 110, 20}, 0},
                                           {{90, 10, 111, 20}, 1},   {{500, 500, 600, 600}, 0},
                                           {{210, 20, 205, 10}, 0},  {{50, 0, 250, 100}, 1}};
  for (const auto& [rect, expected] : rows)
    EXPECT_EQ(expected, FindBestMonitor(monitors, rect)) << testing::PrintToString(rect);
  EXPECT_EQ(0u, FindBestMonitor(MonitorsWithWorkAreas({}), {0, 0, 10, 10}));
  // A count that is out of bounds is not believed.
  monitors.fMonitorCount = 0xFFFFFFFF;
  EXPECT_EQ(0u, FindBestMonitor(monitors, {0, 0, 10, 10}));
}
