#include "SketchGridView.h"

#include <algorithm>

#include "SketchGdi.h"

namespace NSSketch {

using namespace NSMorvane;

namespace {

constexpr int kSpacing = 20;
constexpr int kStrongEvery = 5;

// Lines that can be seen, but only just, on a light sheet as well as on a dark one.
TSketchColor LineColor(TSketchColor background, bool strong) {
  const std::uint32_t brightness =
      2 * ((background >> 16) & 0xFF) + 5 * ((background >> 8) & 0xFF) + (background & 0xFF);
  const TSketchColor ink = brightness > 8 * 110 ? 0x3A4A63 : 0xFFFFFF;
  return MixColors(background, ink, strong ? 32 : 14);
}

// The lines of one strength that meet the clip: all those at `from`, `from` + `step` and so on.
void DrawLines(HDC hdc, const RECT& sheet, const RECT& clip, int step, TSketchColor color) {
  const auto first = [step](LONG start, LONG clipStart) {
    return start + std::max<LONG>(1, (clipStart - start + step - 1) / step) * step;
  };
  for (LONG x = first(sheet.left, clip.left); x < std::min(sheet.right, clip.right); x += step)
    FillArea(hdc, {x, clip.top, x + 1, clip.bottom}, color);
  for (LONG y = first(sheet.top, clip.top); y < std::min(sheet.bottom, clip.bottom); y += step)
    FillArea(hdc, {clip.left, y, clip.right, y + 1}, color);
}

}  // namespace

TError CSketchGridView::IViewBehavior_Draw(IDrawTools& tools) {
  const RECT sheet = NativeRect(RectOf(fView));
  const COpenPort port(tools);
  RECT clip;
  if (::GetClipBox(port, &clip) == NULLREGION) return kOK;
  const TSketchColor background = fDocument.Background();
  FillArea(port, sheet, background);
  DrawLines(port, sheet, clip, kSpacing, LineColor(background, false));
  DrawLines(port, sheet, clip, kSpacing * kStrongEvery, LineColor(background, true));
  return kOK;
}

}  // namespace NSSketch
