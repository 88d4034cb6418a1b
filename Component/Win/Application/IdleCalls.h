// The client's idle calls: when one is due, and the thread that finds it out.
#pragma once

#include <windows.h>

#include <memory>

#include "Component/Win/Application/IdleThread.h"
#include "Component/Win/Platform/UtilsWinHandles.h"

namespace NSMorvane {

class CMessageTarget;
class IMorvaneRunBehavior;

class CIdleCalls : public IIdleThreadOwner, CNotCopied {
 public:
  // The news of the thread go to `target`, as kMsgIdleDue that carries `sign`.
  CIdleCalls(const CMessageTarget& target, WPARAM sign) : fTarget(target), fSign(sign) {}

  void StartThread();
  // It sends messages to the target, which goes after it.
  void EndThread();

  // News of the thread.
  void OnDue() { fIsDue = true; }
  bool IsDue() const { return fIsDue; }
  // Calls the behaviour, if it is time to and the thread runs, and puts the next call on the schedule. A
  // failure is thrown; nothing is scheduled then, and the heartbeat of the thread goes on.
  void RunIfDue(IMorvaneRunBehavior* behavior);
  // The next call is due at once. Any thread may come here; nothing while the idle thread does not run.
  void WakeUp();

  void NotifyIdleDue() override;
  void DrainIdleMessages() override;

 private:
  const CMessageTarget& fTarget;
  const WPARAM fSign;
  bool fIsDue = false;
  SRWLOCK fThreadLock = SRWLOCK_INIT;  // for other threads, which may wake the idle thread at any time
  std::unique_ptr<CIdleThread> fThread;
};

}  // namespace NSMorvane
