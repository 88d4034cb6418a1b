// When the client is due for its next idle call: a list of times.
#pragma once

#include <cstdint>
#include <list>

namespace NSMorvane {

// Due times in milliseconds of a clock that never goes back. Not thread-safe.
class CIdleSchedule {
 public:
  // An empty list gets a due time this far ahead.
  static constexpr std::int64_t kHeartbeatMS = 1000;

  // Keeps the list ascending; a time that is in it already is not added again.
  void Schedule(std::int64_t time);
  // The same for the time that the client has asked for. It replaces the time that the client asked for
  // before, unless that has come already. Otherwise a client that is mostly woken up, and asks for a long
  // delay in each call, would leave an entry behind each time.
  void ScheduleNext(std::int64_t now, std::int64_t time);
  // The first due time, which stays in the list. An empty list first gets the heartbeat.
  std::int64_t NextDueTime(std::int64_t now);
  // Removes everything at or before now. True if the client must be called: something was removed, or the
  // list was empty, which counts as due.
  bool RemoveDueTimes(std::int64_t now);

  const std::list<std::int64_t>& Times() const { return fTimes; }

 private:
  std::list<std::int64_t> fTimes;
  std::int64_t fNext = 0;  // the client's last request; 0 before the first
};

}  // namespace NSMorvane
