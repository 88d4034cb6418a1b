#include "Component/Portable/Base/IdleSchedule.h"

namespace NSMorvane {

void CIdleSchedule::Schedule(std::int64_t time) {
  auto it = fTimes.begin();
  while (it != fTimes.end() && *it < time) ++it;
  if (it == fTimes.end() || *it > time) fTimes.insert(it, time);
}

void CIdleSchedule::ScheduleNext(std::int64_t now, std::int64_t time) {
  Schedule(time);
  if (fNext > now && fNext != time) fTimes.remove(fNext);
  fNext = time;
}

std::int64_t CIdleSchedule::NextDueTime(std::int64_t now) {
  if (fTimes.empty()) fTimes.push_back(now + kHeartbeatMS);
  return fTimes.front();
}

bool CIdleSchedule::RemoveDueTimes(std::int64_t now) {
  if (fTimes.empty()) return true;
  bool removed = false;
  while (!fTimes.empty() && fTimes.front() <= now) {
    fTimes.pop_front();
    removed = true;
  }
  return removed;
}

}  // namespace NSMorvane
