// Lingering: with its last window gone the application stays for a while, in case it is wanted again.
#pragma once

#include <cstdint>

namespace NSMorvane {

// Timers of the platform, told apart by number; 0 is none.
class ILingerTimer {
 public:
  virtual std::uintptr_t StartTimer(std::uint32_t delayMS) = 0;
  virtual void StopTimer(std::uintptr_t timer) = 0;

 protected:
  ~ILingerTimer() = default;
};

// Off, until Decide finds nothing to run for; on, until the timer comes or there is something to run for
// again; then expired or off.
class CLingering {
 public:
  explicit CLingering(ILingerTimer& timer) : fTimer(timer) {}
  CLingering(const CLingering&) = delete;
  CLingering& operator=(const CLingering&) = delete;

  // With 0 the application never lingers.
  void SetDuration(std::uint32_t durationMS) { fDurationMS = durationMS; }
  // The end of a pass of the main loop: whether there is to be another one, given whether the application has
  // something to run for.
  bool Decide(bool keepRunning);
  // A timer has come; nothing for any but its own.
  void OnTimer(std::uintptr_t timer);
  // The application is wanted again.
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
