// What messages, menus and windows cost, beside plain windows that are asked the same.
#pragma once

#include <Morvane.h>
#include <MorvaneDefaults.h>

#include "Measure.h"

namespace NSBench {

using namespace NSMorvane;

// Mouse moves, clicks, keys and ticks, and how they grow with the number of views.
void MeasureEvents(IMorvane& morvane, const TOptions& options);
// Menu bars, opening and closing, modality.
void MeasureWindows(IMorvane& morvane, const TOptions& options);

// Fills the menu bar of every window while menu bars are measured; for the run behaviour to call.
TError FillMenuBar(IMenuBarState& state);

}  // namespace NSBench
