#include "SketchSidePanelView.h"

#include "SketchPreviewView.h"
#include "SketchTheme.h"

namespace NSSketch {

using namespace NSMorvane;

namespace {

constexpr int kMargin = 16;
constexpr int kHeadingHeight = 40;
constexpr int kRowHeight = 22;
constexpr int kPreviewHeight = 132;

constexpr const char16_t* kKindLabels[kShapeKindCount] = {u"Lines",     u"Rectangles", u"Ellipses",
                                                          u"Polylines", u"Texts",      u"Pictures"};

void DrawHeading(HDC hdc, const RECT& panel, LONG top, const std::u16string& text) {
  DrawTextLine(hdc, text, {panel.left + kMargin, top, panel.right - kMargin, top + kHeadingHeight},
               BoldFont(), kTextColor, DT_LEFT | DT_VCENTER);
}

// A label at the left and a number at the right.
void DrawRow(HDC hdc, const RECT& panel, LONG top, const std::u16string& label, std::size_t number) {
  const RECT row = {panel.left + kMargin, top, panel.right - kMargin, top + kRowHeight};
  DrawTextLine(hdc, label, row, TextFont(), kQuietTextColor, DT_LEFT | DT_VCENTER);
  DrawTextLine(hdc, AsciiText(std::to_string(number)), row, TextFont(), kTextColor, DT_RIGHT | DT_VCENTER);
}

}  // namespace

TRect CSketchSidePanelView::PreviewRect(const TRect& panel, const CSketchDocument& document) {
  const TSize box = {WidthOf(panel) - 2 * kMargin, kPreviewHeight};
  if (box.fWidth <= 0) return {panel.fLeft, panel.fTop, panel.fLeft, panel.fTop};
  const TSize size = CSketchPreviewView::FittingSize(document, box);
  const std::int32_t left = panel.fLeft + kMargin + (box.fWidth - size.fWidth) / 2;
  const std::int32_t top = panel.fTop + kHeadingHeight + (box.fHeight - size.fHeight) / 2;
  return {left, top, left + size.fWidth, top + size.fHeight};
}

TError CSketchSidePanelView::IViewBehavior_Draw(IDrawTools& tools) {
  return Guarded([&] {
    const RECT panel = NativeRect(RectOf(fView));
    const COpenPort port(tools);
    FillArea(port, panel, kBarColor);
    FillArea(port, {panel.left, panel.top, panel.left + 1, panel.bottom}, kBarEdgeColor);
    DrawHeading(port, panel, panel.top, u"Overview");
    LONG top = panel.top + kHeadingHeight + kPreviewHeight + kMargin;
    FillArea(port, {panel.left + kMargin, top, panel.right - kMargin, top + 1}, kBarEdgeColor);
    DrawHeading(port, panel, top, u"Shapes");
    top += kHeadingHeight;
    for (std::size_t i = 0; i < kShapeKindCount; ++i, top += kRowHeight)
      DrawRow(port, panel, top, kKindLabels[i], fDocument.CountOfKind(static_cast<TShapeKind>(i)));
    return TError{kOK};
  });
}

}  // namespace NSSketch
