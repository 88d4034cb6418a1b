// How Sketch looks: colours, sizes and fonts of everything around the drawing.
#pragma once

#include "SketchGdi.h"

namespace NSSketch {

// --- Colours
constexpr TSketchColor kBarColor = 0xF4F5F7;      // dialogs, palette, side panel, status bar
constexpr TSketchColor kBarEdgeColor = 0xD4D7DC;  // the line between them and the canvas
constexpr TSketchColor kDeskColor = 0xE3E6EA;     // around the sheet
constexpr TSketchColor kSheetEdgeColor = 0xC2C7CE;
constexpr TSketchColor kSheetShadowColor = 0xD3D7DD;
constexpr TSketchColor kTextColor = 0x23272E;
constexpr TSketchColor kQuietTextColor = 0x6A717C;
constexpr TSketchColor kAccentColor = 0x2F6FDE;
constexpr TSketchColor kAccentTintColor = 0xDCE8FB;  // behind what is chosen
constexpr TSketchColor kToolColor = 0x4A515C;        // pictures of tools
constexpr TSketchColor kMarkColor = 0xE8590C;        // what keys are about: a marked shape, a current point
constexpr TSketchColor kWarningColor = 0xD9822B;

// --- Sizes, in pixels
constexpr int kSidePanelWidth = 208;
constexpr int kStatusHeight = 26;

// --- Fonts, in the face that the system uses for its own texts
HFONT TextFont();
HFONT BoldFont();
HFONT TitleFont();

}  // namespace NSSketch
