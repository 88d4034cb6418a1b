// When the client is due for its next idle call: a list of times.
#pragma once

#include <cstdint>
#include <list>

namespace NSMorvane {

// Due times in milliseconds of GetTickCount, which is widened to 64 bits; its wrap is not handled. Knows
// nothing of threads.
class CIdleSchedule {
 public:
  // After this, an empty list has its next due time.
  static constexpr std::int64_t kHeartbeatMS = 1000;

  // Keeps the list ascending; a time that is in it already is not added again.
  void Schedule(std::int64_t time);
  // The same for the time that the client has asked for, in the place of what it asked for the last time: one
  // that mostly waits to be woken up asks for a long delay with each call, and would leave an entry behind
  // each time. A time that has come already stays.
  void ScheduleNext(std::int64_t now, std::int64_t time);
  // The first due time, which stays in the list. An empty list first gets the heartbeat.
  std::int64_t NextDueTime(std::int64_t now);
  // Removes everything at or before now. True if the client is to be told: something was removed, or the list
  // was empty, which counts as due.
  bool RemoveDueTimes(std::int64_t now);

  const std::list<std::int64_t>& Times() const { return fTimes; }

 private:
  std::list<std::int64_t> fTimes;
  std::int64_t fNext = 0;  // the client's last wish; 0 before the first
};

}  // namespace NSMorvane
