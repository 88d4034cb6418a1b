// Errors that could not be thrown any further, because they occurred in a callback of the system or in a
// destructor.
#pragma once

#include "Interface/MorvaneTypes.h"

namespace NSMorvane {

// Keeps an error for the next delivery. The oldest is delivered, the others are dropped. Main thread only.
void KeepPendingError(TError error) noexcept;

// Returns the error that is to be delivered, and forgets it; kOK if there is none.
TError TakePendingError() noexcept;

bool IsErrorPending() noexcept;

}  // namespace NSMorvane
