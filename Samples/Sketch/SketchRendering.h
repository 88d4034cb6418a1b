// Documents as pictures, without a window.
#pragma once

#include "SketchDocument.h"
#include "SketchPicture.h"

namespace NSSketch {

// A part of the sheet, drawn smoothly at the size of the picture. Throws std::bad_alloc,
// also for more than 64 million pixels.
TSketchPicture PictureOf(const CSketchDocument& document, const TSketchRect& area, const TSketchSize& size);

}  // namespace NSSketch
