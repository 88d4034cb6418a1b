#include "Component/Win/IdleThread.h"

#include "Component/Portable/MorvaneImplUtils.h"

namespace NSMorvane {

namespace {

constexpr std::int64_t kFirstWakeUpMS = 1;
constexpr DWORD kStopPollMS = 10;

std::int64_t TickCount() { return GetTickCount(); }

// A handle that nothing else closes: the call for drawing objects leaves a kernel object open until the
// process ends. Where the system would take its small number for that of a drawing object, it is not called
// at all.
void GiveUp(HANDLE& handle) {
  if (GetObjectType(handle) == 0) DeleteObject(handle);
  handle = nullptr;
}

}  // namespace

// --- CIdleSchedule

std::int64_t CIdleSchedule::DueTime(std::int64_t now, std::int64_t delay) {
  constexpr std::int64_t kHourMS = 3600 * 1000;
  constexpr std::int64_t kGrainMS = 0x10000;
  const std::int64_t time = now + delay;
  return delay <= kHourMS ? time : (time | (kGrainMS - 1));
}

void CIdleSchedule::Schedule(std::int64_t time) {
  auto it = fTimes.begin();
  while (it != fTimes.end() && *it < time) ++it;
  if (it == fTimes.end() || *it > time) fTimes.insert(it, time);
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

// --- CIdleThread

CIdleThread::CIdleThread(IIdleThreadOwner* owner)
    : fOwner(owner), fMutex(nullptr), fWakeUpEvent(nullptr), fExitEvent(nullptr), fThread(nullptr) {
  fMutex = CreateMutexW(nullptr, FALSE, nullptr);
  if (!fMutex) MORVANE_THROW(XOutOfMemory());
  fWakeUpEvent = CreateEventW(nullptr, FALSE, TRUE, nullptr);
  if (!fWakeUpEvent) MORVANE_THROW(XOutOfMemory());
  fExitEvent = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  if (!fExitEvent) MORVANE_THROW(XOutOfMemory());
  fThread = CreateThread(nullptr, 0, ThreadProc, this, CREATE_SUSPENDED, nullptr);
  if (!fThread) MORVANE_THROW(XOutOfMemory());
  ResumeThread(fThread);
  try {
    Schedule(TickCount() + kFirstWakeUpMS);
  } catch (...) {
    Stop();  // the thread must not outlive the object
    throw;
  }
}

CIdleThread::~CIdleThread() {
  Stop();
  GiveUp(fMutex);
  GiveUp(fWakeUpEvent);
  GiveUp(fExitEvent);
}

void CIdleThread::Stop() {
  SetEvent(fExitEvent);
  while (WaitForSingleObject(fThread, kStopPollMS) == WAIT_TIMEOUT) {
    fOwner->DrainIdleMessages();
    // Again, as the thread may have gone through its wait just before.
    SetEvent(fExitEvent);
  }
}

void CIdleThread::LockDueTimes() {
  if (WaitForSingleObject(fMutex, INFINITE) != WAIT_OBJECT_0) MORVANE_THROW(std::exception());
}

void CIdleThread::Schedule(std::int64_t time) {
  LockDueTimes();
  try {
    fDueTimes.Schedule(time);
  } catch (...) {
    ReleaseMutex(fMutex);
    MORVANE_RETHROW();
  }
  SetEvent(fWakeUpEvent);
  ReleaseMutex(fMutex);
}

std::int64_t CIdleThread::NextDueTime() {
  LockDueTimes();
  try {
    const std::int64_t next = fDueTimes.NextDueTime(TickCount());
    ReleaseMutex(fMutex);
    return next;
  } catch (...) {
    ReleaseMutex(fMutex);
    MORVANE_RETHROW();
  }
}

bool CIdleThread::RemoveDueTimes(std::int64_t now) {
  LockDueTimes();
  const bool isDue = fDueTimes.RemoveDueTimes(now);
  ReleaseMutex(fMutex);
  return isDue;
}

DWORD WINAPI CIdleThread::ThreadProc(void* argument) {
  CIdleThread* const threadInfo = static_cast<CIdleThread*>(argument);
  MORVANE_ASSERT(0!=threadInfo);
  MORVANE_ASSERT(0!=threadInfo->fExitEvent);
  MORVANE_ASSERT(0!=threadInfo->fWakeUpEvent);
  const HANDLE events[] = {threadInfo->fExitEvent, threadInfo->fWakeUpEvent};
  bool running = true;
  while (running) {
    const std::int64_t now = TickCount();
    std::int64_t next = threadInfo->NextDueTime();
    while (next <= now) {
      if (threadInfo->RemoveDueTimes(now)) threadInfo->fOwner->NotifyIdleDue();
      next = threadInfo->NextDueTime();
    }
    const std::int64_t delay = next - now;
    MORVANE_ASSERT(delay > 0);
    const DWORD result = WaitForMultipleObjectsEx(2, events, FALSE, static_cast<DWORD>(delay), TRUE);
    if (result == WAIT_OBJECT_0) running = false;
  }
  return 0;
}

}  // namespace NSMorvane
