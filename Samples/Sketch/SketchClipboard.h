// Shapes on the clipboard of the system. They go there in Sketch's own format, as a text if they have any,
// and as a picture; what comes back are shapes of Sketch, the lines of a text, or a picture.
#pragma once

#include <Morvane.h>

#include <vector>

#include "SketchDocument.h"

namespace NSSketch {

// False if another program has the clipboard open. Otherwise throws XFailed.
bool CopyShapes(NSMorvane::IMorvane& morvane, const std::vector<TShape>& shapes, TSketchColor background);

bool CanPasteShapes(NSMorvane::IMorvane& morvane);

// The shapes, with the background that they were copied from. None if there is nothing to paste, or a picture
// that is too large. Lines of a text become text shapes in this style.
CSketchDocument PastedShapes(NSMorvane::IMorvane& morvane, const TShape& style);

}  // namespace NSSketch
