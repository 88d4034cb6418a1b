#include "SketchToolStripView.h"

#include <array>
#include <vector>

#include "SketchPainter.h"
#include "SketchSmoothing.h"
#include "SketchTheme.h"

namespace NSSketch {

using namespace NSMorvane;

namespace {

constexpr int kButtonSize = 36;
constexpr int kButtonDistance = 40;  // from the top of one to the top of the next
constexpr int kFirstButtonTop = 8;
constexpr int kPictureSize = 24;
constexpr int kCornerDiameter = 10;

TShape Part(TShapeKind kind, std::vector<TSketchPoint> points, int width) {
  TShape shape;
  shape.fKind = kind;
  shape.fPoints = std::move(points);
  shape.fWidth = width;
  return shape;
}

// A little square on a point, like the handles of a selected shape.
TShape Handle(int x, int y) {
  TShape shape = Part(TShapeKind::kRectangle, {{x - 2, y - 2}, {x + 3, y + 3}}, 0);
  shape.fFill = 0;
  return shape;
}

using TPicture = std::vector<TShape>;

// The pictures, in a box of kPictureSize; colours come later.
const std::array<TPicture, kSketchToolCount>& Pictures() {
  static const std::array<TPicture, kSketchToolCount> pictures = [] {
    TShape arrow = Part(TShapeKind::kPolyline,
                        {{7, 3}, {7, 19}, {11, 16}, {14, 21}, {16, 20}, {14, 15}, {18, 14}, {7, 3}}, 1);
    arrow.fFill = 0;
    return std::array<TPicture, kSketchToolCount>{
        TPicture{arrow},
        TPicture{Part(TShapeKind::kLine, {{5, 19}, {19, 5}}, 2), Handle(4, 19), Handle(19, 4)},
        TPicture{Part(TShapeKind::kRectangle, {{3, 5}, {21, 19}}, 2)},
        TPicture{Part(TShapeKind::kEllipse, {{2, 4}, {22, 20}}, 2)},
        TPicture{Part(TShapeKind::kPolyline, {{3, 18}, {9, 6}, {15, 16}, {21, 5}}, 2)},
        TPicture{Part(TShapeKind::kPolyline, {{4, 7}, {4, 4}, {20, 4}, {20, 7}}, 2),
                 Part(TShapeKind::kLine, {{12, 4}, {12, 20}}, 2),
                 Part(TShapeKind::kLine, {{9, 20}, {15, 20}}, 2)}};
  }();
  return pictures;
}

RECT ButtonBox(const RECT& strip, std::size_t index) {
  const LONG left = strip.left + (kToolStripWidth - 1 - kButtonSize) / 2;
  const LONG top = strip.top + kFirstButtonTop + kButtonDistance * static_cast<LONG>(index);
  return {left, top, left + kButtonSize, top + kButtonSize};
}

// The round-cornered field behind the current tool, in a smoothed band.
void DrawField(HDC hdc, const RECT& band, const RECT& box) {
  const CSavedContext saved(hdc);
  ::SelectObject(hdc, ::GetStockObject(NULL_PEN));
  ::SelectObject(hdc, ::GetStockObject(DC_BRUSH));
  ::SetDCBrushColor(hdc, NativeColor(kAccentTintColor));
  ::RoundRect(hdc, kSmoothFactor * (box.left - band.left), kSmoothFactor * (box.top - band.top),
              kSmoothFactor * (box.right - band.left) + 1, kSmoothFactor * (box.bottom - band.top) + 1,
              kSmoothFactor * kCornerDiameter, kSmoothFactor * kCornerDiameter);
}

void DrawPicture(HDC hdc, const RECT& band, const RECT& box, const TPicture& picture, TSketchColor color) {
  const int margin = (kButtonSize - kPictureSize) / 2;
  CSketchPainter painter(hdc,
                         {kSmoothFactor, static_cast<double>(kSmoothFactor * (box.left + margin - band.left)),
                          static_cast<double>(kSmoothFactor * (box.top + margin - band.top))});
  for (TShape part : picture) {
    part.fColor = color;
    if (part.fFill) part.fFill = color;
    painter.PaintShape(part);
  }
}

}  // namespace

TError CSketchToolStripView::IViewBehavior_Draw(IDrawTools& tools) {
  return Guarded([&] {
    const RECT strip = NativeRect(RectOf(fView));
    const COpenPort port(tools);
    FillArea(port, strip, kBarColor);
    FillArea(port, {strip.right - 1, strip.top, strip.right, strip.bottom}, kBarEdgeColor);
    for (std::size_t i = 0; i < kSketchToolCount; ++i) {
      const RECT box = ButtonBox(strip, i);
      if (!::RectVisible(port, &box)) continue;
      const bool isCurrent = i == static_cast<std::size_t>(fTool);
      DrawSmoothly(port, box, [&](HDC hdc, const RECT& band) {
        if (isCurrent) DrawField(hdc, band, box);
        DrawPicture(hdc, band, box, Pictures()[i], isCurrent ? kAccentColor : kToolColor);
      });
    }
    return TError{kOK};
  });
}

}  // namespace NSSketch
