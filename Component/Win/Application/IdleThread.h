// When the client is due for its next idle call: a list of times, and the thread that sleeps until the first
// of them. The thread runs no client code and never waits for the main thread.
#pragma once

#include <windows.h>

#include <cstdint>
#include <list>

#include "Component/Win/Platform/UtilsWinHandles.h"

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

// What the idle thread needs from the root object.
class IIdleThreadOwner {
 public:
  // On the idle thread: tells the main thread, without waiting for it, that idle time is due.
  virtual void NotifyIdleDue() = 0;
  // On the main thread, while it waits for the idle thread to end: handles such news that are under way.
  virtual void DrainIdleMessages() = 0;

 protected:
  ~IIdleThreadOwner() = default;
};

// The thread runs from construction to destruction, both on the main thread. Every operation throws
// std::exception if the list cannot be locked.
class CIdleThread {
 public:
  // The first news comes after 1 ms. Throws std::bad_alloc if the system refuses the thread or its objects.
  explicit CIdleThread(IIdleThreadOwner* owner);
  ~CIdleThread();
  CIdleThread(const CIdleThread&) = delete;
  CIdleThread& operator=(const CIdleThread&) = delete;

  // Adds a due time, in milliseconds of GetTickCount, and wakes the thread. A time in the past is due at
  // once.
  void Schedule(std::int64_t time);
  // The time of the client's next call, `delay` milliseconds from now, and no longer the one before.
  void ScheduleNext(std::int64_t delay);

 private:
  template <class TChange>
  void ChangeDueTimes(TChange&& change);
  static DWORD WINAPI ThreadProc(void* argument);
  std::int64_t NextDueTime();
  bool RemoveDueTimes(std::int64_t now);
  void Stop();

  IIdleThreadOwner* fOwner;  // not owned
  CKernelHandle fMutex;      // guards fDueTimes, and is held for the list operation only
  CKernelHandle fWakeUpEvent;
  CKernelHandle fExitEvent;
  CKernelHandle fThread;
  CIdleSchedule fDueTimes;
};

}  // namespace NSMorvane
