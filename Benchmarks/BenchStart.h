// How long it takes from the start of a process to its first paint.
#pragma once

#include "Measure.h"

namespace NSBench {

// The row `start`. Starts two programs that stand beside this one, one with the library and one without.
void MeasureStart(const TOptions& options);

}  // namespace NSBench
