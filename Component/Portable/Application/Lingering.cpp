#include "Component/Portable/Application/Lingering.h"

#include "Component/Portable/Base/MorvaneImplUtils.h"

namespace NSMorvane {

bool CLingering::Decide(bool keepRunning) {
  if (keepRunning) {
    if (IsOn()) {
      DebugPrint("Cancelling lingering mode...");
      Stop();
    }
    fIsExpired = false;
    return true;
  }
  if (fIsExpired || fDurationMS == 0) return false;
  if (!IsOn()) {
    DebugPrint("Entering lingering mode...");
    fTimerId = fTimer.StartTimer(fDurationMS);
    fIsExpired = false;
  }
  return true;
}

void CLingering::OnTimer(std::uintptr_t timer) {
  if (!IsOn() || timer != fTimerId) return;
  DebugPrint("Lingering complete, exiting...");
  Stop();
  fIsExpired = true;
}

void CLingering::Abort() {
  if (!IsOn()) return;
  DebugPrint("Lingering aborted...");
  Stop();
}

void CLingering::Stop() {
  fTimer.StopTimer(fTimerId);
  fTimerId = 0;
}

}  // namespace NSMorvane
