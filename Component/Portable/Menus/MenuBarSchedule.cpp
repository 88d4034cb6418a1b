#include "Component/Portable/Menus/MenuBarSchedule.h"

#include <algorithm>
#include <string>
#include <utility>

#include "Component/Portable/Base/MorvaneImplUtils.h"

namespace NSMorvane {

void CMenuBarSchedule::Request() {
  // Sic: the name is output.
  if (fRequests == 0) DebugPrint("CMorvaneImpl::CMorvaneGlue_RequestMenuBarsSetup requested");
  ++fRequests;
}

bool CMenuBarSchedule::TakeRequests() {
  if (fRequests == 0) return false;
  if (fRequests > 1) DebugPrint("Collapsed " + std::to_string(fRequests) + " rebuild menubar requests...");
  fRequests = 0;
  return true;
}

void CMenuBarSchedule::SetUp(const void* window, const std::function<void()>& setUp) {
  if (std::find(fInSetUp.begin(), fInSetUp.end(), window) != fInSetUp.end()) {
    fIsOneWaiting = true;
    return;
  }
  fInSetUp.push_back(window);
  const TError error = ErrorOf(setUp);
  fInSetUp.pop_back();
  if (fInSetUp.empty() && std::exchange(fIsOneWaiting, false)) Request();
  ThrowError(error);
}

}  // namespace NSMorvane
