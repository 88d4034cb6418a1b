#include "SketchCanvasView.h"

#include <algorithm>

#include "SketchPainter.h"
#include "SketchSmoothing.h"
#include "SketchTheme.h"

namespace NSSketch {

using namespace NSMorvane;

namespace {

// The sheet is in the middle of its desk.
TRect SheetRect(const TRect& desk, const CSketchDocument& document) {
  const TSketchSize size = document.CanvasSize();
  const std::int32_t left = desk.fLeft + (WidthOf(desk) - size.fWidth) / 2;
  const std::int32_t top = desk.fTop + (HeightOf(desk) - size.fHeight) / 2;
  return {left, top, left + size.fWidth, top + size.fHeight};
}

}  // namespace

TError CSketchDeskView::IViewBehavior_Draw(IDrawTools& tools) {
  const TRect desk = RectOf(fView);
  const RECT sheet = NativeRect(SheetRect(desk, fDocument));
  const COpenPort port(tools);
  FillArea(port, NativeRect(desk), kDeskColor);
  FillArea(port, {sheet.left + 2, sheet.top + 2, sheet.right + 3, sheet.bottom + 3}, kSheetShadowColor);
  FrameArea(port, {sheet.left - 1, sheet.top - 1, sheet.right + 1, sheet.bottom + 1}, kSheetEdgeColor);
  return kOK;
}

TError CSketchShapesView::IViewBehavior_Draw(IDrawTools& tools) {
  return Guarded([&] {
    const TRect sheet = RectOf(fView);
    const COpenPort port(tools);
    RECT dirty;
    if (::GetClipBox(port, &dirty) == NULLREGION) return TError{kOK};
    DrawSmoothly(port, dirty, [&](HDC hdc, const RECT& band) {
      const TSketchPlacement placement = {kSmoothFactor,
                                          static_cast<double>(kSmoothFactor * (sheet.fLeft - band.left)),
                                          static_cast<double>(kSmoothFactor * (sheet.fTop - band.top))};
      CSketchPainter(hdc, placement).PaintShapes(fDocument);
    });
    return TError{kOK};
  });
}

void CSketchCanvas::Create(IMorvane& morvane, IView& superView) {
  ThrowIfFailed(fCanvasView.Create(morvane, superView, "Canvas",
                                   ViewParams(kViewDrawPermanent32, kAutoInvalidationDifferenceTopLeft)));
  ThrowIfFailed(fDeskView.Create(morvane, *fCanvasView.View(), "Desk", ViewParams(), fDocument));
  ThrowIfFailed(fGridView.Create(morvane, *fDeskView.View(), "Grid", ViewParams(), fDocument));
  ThrowIfFailed(fShapesView.Create(morvane, *fDeskView.View(), "Shapes", ViewParams(), fDocument));
}

void CSketchCanvas::SetArea(const TRect& area) {
  const TSketchSize size = fDocument.CanvasSize();
  const std::int32_t deskWidth = std::max(WidthOf(area), size.fWidth + 2 * kDeskMargin);
  const std::int32_t deskHeight = std::max(HeightOf(area), size.fHeight + 2 * kDeskMargin);
  const TRect desk = {area.fLeft, area.fTop, area.fLeft + deskWidth, area.fTop + deskHeight};
  const TRect sheet = SheetRect(desk, fDocument);
  ThrowIfFailed(SetRect(*fCanvasView.View(), area));
  ThrowIfFailed(SetRect(*fDeskView.View(), desk));
  ThrowIfFailed(SetRect(*fGridView.View(), sheet));
  ThrowIfFailed(SetRect(*fShapesView.View(), sheet));
}

}  // namespace NSSketch
