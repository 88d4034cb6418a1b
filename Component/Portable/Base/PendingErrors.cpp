#include "Component/Portable/Base/PendingErrors.h"

#include <utility>

#include "Interface/MorvaneTypes.h"

namespace NSMorvane {

namespace {

// Process-wide: code that keeps an error, such as the destructor of a window, may not know a root object.
TError gPendingError = kOK;

}  // namespace

void KeepPendingError(TError error) noexcept {
  if (gPendingError == kOK) gPendingError = error;
}

TError TakePendingError() noexcept { return std::exchange(gPendingError, kOK); }

bool IsErrorPending() noexcept { return gPendingError != kOK; }

}  // namespace NSMorvane
