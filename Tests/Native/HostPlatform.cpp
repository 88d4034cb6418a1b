// What else the portable half has from the platform half.
#include "Component/Portable/Contract/MorvaneGlueValidators.h"
#include "Tests/Support/Contract.h"

namespace {

int gWindow = 0;

}  // namespace

namespace NSMorvane {

bool IsValidNativeWindow(const TNativeWindow& window) {
  return static_cast<void*>(window.fHwnd) == static_cast<void*>(&gWindow);
}

}  // namespace NSMorvane

namespace NSMorvaneTest {

TNativeWindow AnyNativeWindow() { return {reinterpret_cast<HWND__*>(&gWindow)}; }

}  // namespace NSMorvaneTest
