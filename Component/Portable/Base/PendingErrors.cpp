#include "Component/Portable/Base/PendingErrors.h"

#include <utility>

#include "Interface/MorvaneTypes.h"

namespace NSMorvane {

namespace {

// Process-wide: whoever keeps an error, down to the destructor of a window, may know of no root object.
TError gPendingError = kOK;

}  // namespace

void KeepPendingError(TError error) noexcept {
  if (gPendingError == kOK) gPendingError = error;
}

TError TakePendingError() noexcept { return std::exchange(gPendingError, kOK); }

}  // namespace NSMorvane
