#include "SketchOverlayView.h"

#include "SketchCanvas.h"
#include "SketchTheme.h"

namespace NSSketch {

using namespace NSMorvane;

namespace {

constexpr LONG kHandleRadius = 4;

void DrawHandle(HDC port, const TPoint& point, TSketchColor color, bool isCurrent) {
  const RECT box = {point.fX - kHandleRadius, point.fY - kHandleRadius, point.fX + kHandleRadius + 1,
                    point.fY + kHandleRadius + 1};
  FillArea(port, box, isCurrent ? kMarkColor : 0xFFFFFF);
  FrameArea(port, box, color);
}

RECT Grown(const TRect& rect, LONG by) {
  return {rect.fLeft - by, rect.fTop - by, rect.fRight + by, rect.fBottom + by};
}

}  // namespace

TError CSketchOverlayView::IViewBehavior_Draw(IDrawTools& tools) {
  return Guarded([&] {
    const COpenPort port(tools);
    if (fCanvas.TextEditing().IsActive())
      DrawTextFrame(port);
    else
      DrawSelection(port);
    DrawMark(port);
    if (const auto band = fCanvas.Band())
      FrameArea(port, Grown(fCanvas.Viewport().ToWindow(*band), 0), kAccentColor);
    return TError{kOK};
  });
}

// One shape has handles, or else a frame; several have frames.
void CSketchOverlayView::DrawSelection(HDC port) const {
  const CSketchEditor& editor = fCanvas.Editor();
  const CSketchViewport& viewport = fCanvas.Viewport();
  const TSketchColor color = fCanvas.IsOnDuty() ? kAccentColor : kQuietTextColor;
  for (const std::size_t index : editor.Selection()) {
    const TShape& shape = editor.Shape(index);
    const std::vector<THandle> handles = HandlesOf(shape);
    if (handles.empty() || editor.Selection().size() > 1)
      FrameArea(port, Grown(viewport.ToWindow(FrameOf(shape, editor.Measure())), handles.empty() ? 2 : 0),
                color);
    if (editor.Selection().size() > 1) continue;
    const std::optional<std::size_t> current = fCanvas.CurrentHandle();
    for (std::size_t i = 0; i < handles.size(); ++i)
      DrawHandle(port, viewport.ToWindow(handles[i].fPosition), color, current == i);
  }
}

// Around the selection's own frame, so that both can be seen.
void CSketchOverlayView::DrawMark(HDC port) const {
  const std::optional<std::size_t> mark = fCanvas.Editor().Mark();
  if (!mark) return;
  const TSketchRect frame = FrameOf(fCanvas.Editor().Shape(*mark), fCanvas.Editor().Measure());
  const RECT box = Grown(fCanvas.Viewport().ToWindow(frame), 5);
  FrameArea(port, box, kMarkColor);
  FrameArea(port, {box.left + 1, box.top + 1, box.right - 1, box.bottom - 1}, kMarkColor);
}

void CSketchOverlayView::DrawTextFrame(HDC port) const {
  FrameArea(port, Grown(fCanvas.TextRect(), 3), kAccentColor);
}

}  // namespace NSSketch
