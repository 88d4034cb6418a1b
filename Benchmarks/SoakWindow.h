// One window of the long run.
#pragma once

#include <windows.h>

#include <Morvane.h>
#include <MorvaneDefaults.h>

namespace NSSoak {

using namespace NSMorvane;

// Opens a document window with views of all draw and invalidation modes, paints it, repaints parts of it so
// many times while views move, grow and change their modes and their order, and closes it. `number` is the
// seed. Throws XFailed, with kOtherError if a repaint did not paint.
void RunWindow(IMorvane& morvane, unsigned number, int repaints);

}  // namespace NSSoak
