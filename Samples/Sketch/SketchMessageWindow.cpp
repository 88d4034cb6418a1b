#include "SketchMessageWindow.h"

#include "SketchFiles.h"
#include "SketchPainter.h"
#include "SketchSmoothing.h"
#include "SketchTheme.h"

namespace NSSketch {

using namespace NSMorvane;

namespace {

constexpr TSize kMinimumSize = {360, 180};
constexpr TSize kIdealSize = {560, 220};
constexpr int kMargin = 32;
constexpr int kSignSize = 40;

// A triangle with an exclamation mark.
void DrawWarningSign(HDC port, LONG left, LONG top) {
  TShape triangle;
  triangle.fKind = TShapeKind::kPolyline;
  triangle.fPoints = {{20, 5}, {37, 35}, {3, 35}, {20, 5}};
  triangle.fWidth = 4;
  triangle.fColor = kWarningColor;
  triangle.fFill = kWarningColor;
  TShape mark;
  mark.fPoints = {{20, 15}, {20, 24}};
  mark.fWidth = 4;
  mark.fColor = kBarColor;
  TShape dot = mark;
  dot.fPoints = {{20, 31}, {20, 31}};
  DrawSmoothly(port, {left, top, left + kSignSize, top + kSignSize}, [&](HDC hdc, const RECT& band) {
    CSketchPainter painter(hdc, {kSmoothFactor, static_cast<double>(kSmoothFactor * (left - band.left)),
                                 static_cast<double>(kSmoothFactor * (top - band.top))});
    for (const TShape& shape : {triangle, mark, dot}) painter.PaintShape(shape);
  });
}

}  // namespace

TError CSketchMessageView::IViewBehavior_Draw(IDrawTools& tools) {
  return Guarded([&] {
    const RECT box = NativeRect(RectOf(fView));
    const COpenPort port(tools);
    FillArea(port, box, kBarColor);
    DrawWarningSign(port, box.left + kMargin, box.top + kMargin);

    const LONG left = box.left + kMargin + kSignSize + 20;
    const LONG right = box.right - kMargin;
    LONG top = box.top + kMargin - 2;
    DrawTextLine(port, fHeading, {left, top, right, top + 28}, TitleFont(), kTextColor,
                 DT_LEFT | DT_VCENTER | DT_END_ELLIPSIS);
    top += 42;
    DrawTextLine(port, fMessage, {left, top, right, top + 20}, TextFont(), kTextColor,
                 DT_LEFT | DT_VCENTER | DT_END_ELLIPSIS);
    top += 28;
    DrawTextLine(port, fPath, {left, top, right, top + 20}, TextFont(), kQuietTextColor,
                 DT_LEFT | DT_VCENTER | DT_PATH_ELLIPSIS);
    return TError{kOK};
  });
}

CSketchMessageWindow::CSketchMessageWindow(IDocumentWindow& window, IMorvane& morvane,
                                           CSketchApplication& application, const std::u16string& path,
                                           const std::u16string& message)
    : CSketchCommandWindow(window, morvane, application, path) {
  const std::u16string name = NameOfPath(path);
  ThrowIfFailed(fMessageView.Create(morvane, RootViewOf(window), "Message", ViewParams(kViewDrawTemporary32),
                                    name + u" cannot be opened", message, path));
  SetUpWindow(morvane, window, name, kMinimumSize, kIdealSize);
}

TError CSketchMessageWindow::IDocumentWindowBehavior_OnClientSizeChanged(const TSize&, const TSize& newSize) {
  return SetRect(*fMessageView.View(), {0, 0, newSize.fWidth, newSize.fHeight});
}

}  // namespace NSSketch
