// Errors that could not be thrown on because the system's stack was in between, or a destructor.
#pragma once

#include "Interface/MorvaneTypes.h"

namespace NSMorvane {

// Keeps an error for the next delivery. The oldest is delivered, the others are dropped. Main thread only.
void KeepPendingError(TError error) noexcept;

// The error that is to be delivered, and kOK from then on.
TError TakePendingError() noexcept;

}  // namespace NSMorvane
