// The mouse shapes of the tools.
#pragma once

#include <Morvane.h>

#include "SketchTools.h"

namespace NSSketch {

// As IViewBehavior_GetMouseShape wants it: the library deletes it. Null, with `outError`, on failure.
NSMorvane::IMouseShape* MakeMouseShape(NSMorvane::IMorvane& morvane, TSketchCursor cursor,
                                       NSMorvane::TError& outError);

}  // namespace NSSketch
