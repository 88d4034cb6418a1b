#include "SketchShapesView.h"

#include "SketchPainter.h"
#include "SketchSmoothing.h"
#include "SketchTheme.h"

namespace NSSketch {

using namespace NSMorvane;

TError CSketchDeskView::IViewBehavior_Draw(IDrawTools& tools) {
  const RECT sheet = NativeRect(fViewport.Sheet());
  const COpenPort port(tools);
  FillArea(port, NativeRect(fViewport.Desk()), kDeskColor);
  FillArea(port, {sheet.left + 2, sheet.top + 2, sheet.right + 3, sheet.bottom + 3}, kSheetShadowColor);
  FrameArea(port, {sheet.left - 1, sheet.top - 1, sheet.right + 1, sheet.bottom + 1}, kSheetEdgeColor);
  return kOK;
}

TError CSketchShapesView::IViewBehavior_Draw(IDrawTools& tools) {
  return Guarded([&] {
    const TRect sheet = fViewport.Sheet();
    const COpenPort port(tools);
    RECT dirty;
    if (::GetClipBox(port, &dirty) == NULLREGION) return TError{kOK};
    DrawSmoothly(port, dirty, [&](HDC hdc, const RECT& band) {
      const TSketchPlacement placement = {kSmoothFactor * fViewport.Scale(),
                                          static_cast<double>(kSmoothFactor * (sheet.fLeft - band.left)),
                                          static_cast<double>(kSmoothFactor * (sheet.fTop - band.top))};
      CSketchPainter(hdc, placement).PaintShapes(fDocument);
    });
    return TError{kOK};
  });
}

}  // namespace NSSketch
