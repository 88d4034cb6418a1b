// The list of due times.
#include "Component/Portable/Base/IdleSchedule.h"

#include <set>

#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;

// Who is woken up again and again, and asks each time to be left alone, leaves no heap of times behind, and
// is called to the millisecond.
TEST(IdleSchedule, AWishTakesThePlaceOfTheOneBefore) {
  constexpr std::int64_t kTwoHours = 2 * 3600 * 1000;
  CIdleSchedule schedule;
  schedule.Schedule(5000);  // nobody's wish
  for (std::int64_t now = 1; now < 4000; now += 25) {
    schedule.ScheduleNext(now, now + kTwoHours);
    ASSERT_EQ(schedule.Times(), (std::list<std::int64_t>{5000, now + kTwoHours}));
  }
  // What has come already is still to be told of.
  schedule.ScheduleNext(4000, 4010);
  schedule.ScheduleNext(4010, 4020);
  EXPECT_EQ(schedule.Times(), (std::list<std::int64_t>{4010, 4020, 5000}));
}

TEST(IdleSchedule, AgreesWithASet) {
  Random random(4711);
  CIdleSchedule schedule;
  std::set<std::int64_t> expected;
  for (int i = 0; i < 5000; ++i) {
    const std::int64_t time = random(0, 49);
    switch (random(0, 3)) {
      case 0:
        EXPECT_EQ(expected.empty() || *expected.begin() <= time - 40, schedule.RemoveDueTimes(time - 40));
        expected.erase(expected.begin(), expected.upper_bound(time - 40));
        break;
      case 1:
        if (expected.empty()) expected.insert(time + 1000);
        EXPECT_EQ(*expected.begin(), schedule.NextDueTime(time));
        break;
      default:
        schedule.Schedule(time);
        expected.insert(time);
    }
    ASSERT_TRUE(
        std::equal(expected.begin(), expected.end(), schedule.Times().begin(), schedule.Times().end()));
  }
}
