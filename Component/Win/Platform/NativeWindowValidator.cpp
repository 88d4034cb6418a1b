// The validator of native windows, which only the platform knows.
#include <windows.h>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Contract/MorvaneGlueValidators.h"

namespace NSMorvane {

bool IsValidNativeWindow(const TNativeWindow& window) {
  if (::IsWindow(window.fHwnd) == 1) return true;
  MORVANE_UNREACHED();
  return false;
}

}  // namespace NSMorvane
