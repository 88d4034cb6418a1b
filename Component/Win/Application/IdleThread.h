// The thread that sleeps until the client is due for its next idle call. It runs no client code and never
// waits for the main thread.
#pragma once

#include <windows.h>

#include <cstdint>

#include "Component/Portable/Base/IdleSchedule.h"
#include "Component/Portable/Base/Scopes.h"
#include "Component/Win/Platform/UtilsWinHandles.h"

namespace NSMorvane {

// What the idle thread needs from the root object.
class IIdleThreadOwner {
 public:
  // On the idle thread: tells the main thread, without waiting for it, that idle time is due.
  virtual void NotifyIdleDue() = 0;
  // On the main thread, while it waits for the idle thread to end: handles the notifications that are under
  // way.
  virtual void DrainIdleMessages() = 0;

 protected:
  ~IIdleThreadOwner() = default;
};

// The thread runs from construction to destruction, both on the main thread. Every operation throws
// std::exception if the list cannot be locked.
class CIdleThread : CNotCopied {
 public:
  // The first notification comes after 1 ms. Throws std::bad_alloc if the system refuses the thread or its
  // objects.
  explicit CIdleThread(IIdleThreadOwner* owner);
  ~CIdleThread();

  // Adds a due time, in milliseconds of GetTickCount64, and wakes the thread. A time in the past is due at
  // once.
  void Schedule(std::int64_t time);
  // Sets the client's next call to `delay` milliseconds from now, in place of the one set before.
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
