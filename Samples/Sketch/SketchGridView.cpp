#include "SketchGridView.h"

#include <algorithm>
#include <cmath>

#include "SketchCanvas.h"
#include "SketchGdi.h"

namespace NSSketch {

using namespace NSMorvane;

namespace {

constexpr int kSpacing = 20;
constexpr int kStrongEvery = 5;
constexpr double kLeastDistance = 8;  // in the window; lines that come closer are left out

// Lines that can be seen, but only just, on a light sheet as well as on a dark one.
TSketchColor LineColor(TSketchColor background, bool strong) {
  const std::uint32_t brightness =
      2 * ((background >> 16) & 0xFF) + 5 * ((background >> 8) & 0xFF) + (background & 0xFF);
  const TSketchColor ink = brightness > 8 * 110 ? 0x3A4A63 : 0xFFFFFF;
  return MixColors(background, ink, strong ? 32 : 14);
}

// The lines of one strength that meet the clip: those at every `spacing` document pixels.
void DrawLines(HDC hdc, const RECT& sheet, const RECT& clip, double scale, int spacing, TSketchColor color) {
  const double step = spacing * scale;
  const auto first = [step](LONG start, LONG clipStart) {
    return std::max(1, static_cast<int>((clipStart - start) / step));
  };
  const auto place = [step](LONG start, int i) { return start + static_cast<LONG>(std::floor(i * step)); };
  for (int i = first(sheet.left, clip.left); place(sheet.left, i) < std::min(sheet.right, clip.right); ++i)
    FillArea(hdc, {place(sheet.left, i), clip.top, place(sheet.left, i) + 1, clip.bottom}, color);
  for (int i = first(sheet.top, clip.top); place(sheet.top, i) < std::min(sheet.bottom, clip.bottom); ++i)
    FillArea(hdc, {clip.left, place(sheet.top, i), clip.right, place(sheet.top, i) + 1}, color);
}

}  // namespace

TError CSketchGridView::IViewBehavior_Draw(IDrawTools& tools) {
  const RECT sheet = NativeRect(fCanvas.Viewport().Sheet());
  const double scale = fCanvas.Viewport().Scale();
  const COpenPort port(tools);
  RECT clip;
  if (::GetClipBox(port, &clip) == NULLREGION) return kOK;
  const TSketchColor background = fCanvas.Editor().Document().Background();
  FillArea(port, sheet, background);
  if (!fCanvas.IsGridShown()) return kOK;
  if (kSpacing * scale >= kLeastDistance)
    DrawLines(port, sheet, clip, scale, kSpacing, LineColor(background, false));
  DrawLines(port, sheet, clip, scale, kSpacing * kStrongEvery, LineColor(background, true));
  return kOK;
}

}  // namespace NSSketch
