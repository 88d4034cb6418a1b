// How long it takes from the start of a process to its first paint.
#pragma once

#include "Measure.h"

namespace NSBench {

// The row `start`. Starts this program with the option below, and the plain one beside it.
void MeasureStart(const TOptions& options);

// The option that makes this program show one window of the library, and signal the event whose name follows
// once it has been painted. It looks like an option of the library's command line.
constexpr char kStartOption[] = "/signal:";

// What the program does then; its exit code.
int RunAsStarted(const char* eventName);

}  // namespace NSBench
