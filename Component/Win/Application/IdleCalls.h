// The client's idle calls, and the thread that finds out when one is due.
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
  // The thread reports to `target` with kMsgIdleDue, whose wParam is `sign`.
  CIdleCalls(const CMessageTarget& target, WPARAM sign) : fTarget(target), fSign(sign) {}

  void StartThread();
  // Must be called before the target ends, since the thread sends messages to it.
  void EndThread();

  // The thread has reported that a call is due.
  void OnDue() { fIsDue = true; }
  bool IsDue() const { return fIsDue; }
  // Calls the behaviour if a call is due and the thread runs, and schedules the next call. A failure of the
  // behaviour is thrown; nothing is scheduled then, and the next call is due at the heartbeat of the thread.
  void RunIfDue(IMorvaneRunBehavior* behavior);
  // Makes the next call due at once. Any thread may call this. Does nothing while the idle thread does not
  // run.
  void WakeUp();

  void NotifyIdleDue() override;
  void DrainIdleMessages() override;

 private:
  const CMessageTarget& fTarget;
  const WPARAM fSign;
  bool fIsDue = false;
  SRWLOCK fThreadLock = SRWLOCK_INIT;  // other threads may call WakeUp at any time
  std::unique_ptr<CIdleThread> fThread;
};

}  // namespace NSMorvane
