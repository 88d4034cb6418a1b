// Smooth edges for GDI, which knows only hard ones: a drawing is made four times as large in a bitmap, and
// the average of each 16 pixels becomes one.
#pragma once

#include <functional>

#include "SketchGdi.h"

namespace NSSketch {

constexpr int kSmoothFactor = 4;

// Draws on the part `area` of `hdc`, over what is there. `draw` is called for one band of the area after the
// other, from top to bottom, with a context in which that band is kSmoothFactor times as large and starts at
// (0, 0).
void DrawSmoothly(HDC hdc, const RECT& area, const std::function<void(HDC, const RECT& band)>& draw);

}  // namespace NSSketch
