// Lingering: after its last window has gone, the application stays for a while, in case it is needed again.
#pragma once

#include <cstdint>

#include "Component/Portable/Base/Scopes.h"

namespace NSMorvane {

// Timers of the platform, identified by a number; 0 is none.
class ILingerTimer {
 public:
  virtual std::uintptr_t StartTimer(std::uint32_t delayMS) = 0;
  virtual void StopTimer(std::uintptr_t timer) = 0;

 protected:
  ~ILingerTimer() = default;
};

// Lingering is off until Decide finds no reason to run. It is then on until its timer comes, after which it
// has expired, or until there is a reason to run again, after which it is off.
class CLingering : CNotCopied {
 public:
  explicit CLingering(ILingerTimer& timer) : fTimer(timer) {}

  // With 0 the application never lingers.
  void SetDuration(std::uint32_t durationMS) { fDurationMS = durationMS; }
  // Called at the end of each turn of the main loop, with whether the application has a reason to run.
  // Returns whether there is to be another turn.
  bool Decide(bool keepRunning);
  // Called when a timer has come. Ignores all timers but its own.
  void OnTimer(std::uintptr_t timer);
  // Called when the application is needed again.
  void Abort();

  bool IsOn() const { return fTimerId != 0; }
  // The time is over: the main loop ends.
  bool IsExpired() const { return fIsExpired; }

 private:
  void Stop();

  ILingerTimer& fTimer;
  std::uintptr_t fTimerId = 0;
  std::uint32_t fDurationMS = 0;
  bool fIsExpired = false;
};

}  // namespace NSMorvane
