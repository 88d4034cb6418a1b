#include "SketchStatusView.h"

#include <algorithm>

#include "SketchTheme.h"

namespace NSSketch {

using namespace NSMorvane;

namespace {

constexpr int kSideMargin = 14;
constexpr int kGap = 12;  // on both sides of a divider

std::u16string Number(std::size_t number) { return AsciiText(std::to_string(number)); }

}  // namespace

TError CSketchStatusView::IViewBehavior_Draw(IDrawTools& tools) {
  return Guarded([&] {
    const RECT bar = NativeRect(RectOf(fView));
    const COpenPort port(tools);
    FillArea(port, bar, kBarColor);
    FillArea(port, {bar.left, bar.top, bar.right, bar.top + 1}, kBarEdgeColor);

    const TSketchSize size = fEditor.Document().CanvasSize();
    const std::size_t count = fEditor.Document().Shapes().size();
    const std::size_t selected = fEditor.Selection().size();
    const std::u16string details[] = {
        Number(static_cast<std::size_t>(size.fWidth)) + u" \u00D7 " +
            Number(static_cast<std::size_t>(size.fHeight)) + u" pixels",
        selected > 0 ? Number(selected) + u" of " + Number(count) + u" selected"
        : count == 1 ? u"1 shape"
                     : Number(count) + u" shapes",
        Number(static_cast<std::size_t>(fZoom)) + u" %",
        fPosition ? AsciiText(std::to_string(fPosition->fX) + ", " + std::to_string(fPosition->fY))
                  : std::u16string()};

    // From the right: the details, a divider in front of each; the name gets the rest.
    LONG right = bar.right - kSideMargin;
    for (const std::u16string& detail : details) {
      if (detail.empty()) continue;
      const LONG left = right - WidthOfText(port, detail, TextFont());
      DrawTextLine(port, detail, {left, bar.top + 1, right + 1, bar.bottom}, TextFont(), kQuietTextColor,
                   DT_LEFT | DT_VCENTER);
      FillArea(port, {left - kGap - 1, bar.top + 7, left - kGap, bar.bottom - 6}, kBarEdgeColor);
      right = left - 2 * kGap - 1;
    }
    DrawTextLine(port, fName, {bar.left + kSideMargin, bar.top + 1, std::max(right, bar.left), bar.bottom},
                 BoldFont(), kTextColor, DT_LEFT | DT_VCENTER | DT_END_ELLIPSIS);
    return TError{kOK};
  });
}

}  // namespace NSSketch
