#include "Component/Win/Application/IdleThread.h"

#include "Component/Portable/Base/MorvaneImplUtils.h"

namespace NSMorvane {

namespace {

constexpr std::int64_t kFirstWakeUpMS = 1;
constexpr DWORD kStopPollMS = 10;

std::int64_t TickCount() { return static_cast<std::int64_t>(GetTickCount64()); }

}  // namespace

CIdleThread::CIdleThread(IIdleThreadOwner* owner)
    : fOwner(owner),
      fMutex(CreateMutexW(nullptr, FALSE, nullptr)),
      fWakeUpEvent(CreateEventW(nullptr, FALSE, TRUE, nullptr)),
      fExitEvent(CreateEventW(nullptr, FALSE, FALSE, nullptr)) {
  if (!fMutex.Get() || !fWakeUpEvent.Get() || !fExitEvent.Get()) MORVANE_THROW(XOutOfMemory());
  fThread.Reset(CreateThread(nullptr, 0, ThreadProc, this, CREATE_SUSPENDED, nullptr));
  if (!fThread.Get()) MORVANE_THROW(XOutOfMemory());
  ResumeThread(fThread.Get());
  try {
    Schedule(TickCount() + kFirstWakeUpMS);
  } catch (...) {
    Stop();  // the thread must not outlive the object
    throw;
  }
}

CIdleThread::~CIdleThread() { Stop(); }

void CIdleThread::Stop() {
  SetEvent(fExitEvent.Get());
  while (WaitForSingleObject(fThread.Get(), kStopPollMS) == WAIT_TIMEOUT) {
    fOwner->DrainIdleMessages();
    // Set again in every pass as a precaution: the event stays set until the wait of the thread takes it.
    SetEvent(fExitEvent.Get());
  }
}

template <class TChange>
void CIdleThread::ChangeDueTimes(TChange&& change) {
  if (WaitForSingleObject(fMutex.Get(), INFINITE) != WAIT_OBJECT_0) MORVANE_THROW(std::exception());
  try {
    change();
  } catch (...) {
    ReleaseMutex(fMutex.Get());
    MORVANE_RETHROW();
  }
  ReleaseMutex(fMutex.Get());
}

void CIdleThread::Schedule(std::int64_t time) {
  ChangeDueTimes([&] {
    fDueTimes.Schedule(time);
    SetEvent(fWakeUpEvent.Get());
  });
}

void CIdleThread::ScheduleNext(std::int64_t delay) {
  ChangeDueTimes([&] {
    const std::int64_t now = TickCount();
    fDueTimes.ScheduleNext(now, now + delay);
    SetEvent(fWakeUpEvent.Get());
  });
}

std::int64_t CIdleThread::NextDueTime() {
  std::int64_t next = 0;
  ChangeDueTimes([&] { next = fDueTimes.NextDueTime(TickCount()); });
  return next;
}

bool CIdleThread::RemoveDueTimes(std::int64_t now) {
  bool isDue = false;
  ChangeDueTimes([&] { isDue = fDueTimes.RemoveDueTimes(now); });
  return isDue;
}

DWORD WINAPI CIdleThread::ThreadProc(void* argument) {
  CIdleThread* const threadInfo = static_cast<CIdleThread*>(argument);
  MORVANE_ASSERT(0!=threadInfo);
  const HANDLE events[] = {threadInfo->fExitEvent.Get(), threadInfo->fWakeUpEvent.Get()};
  MORVANE_ASSERT_TEXT("0!=threadInfo->fExitEvent", events[0] != nullptr);
  MORVANE_ASSERT_TEXT("0!=threadInfo->fWakeUpEvent", events[1] != nullptr);
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
