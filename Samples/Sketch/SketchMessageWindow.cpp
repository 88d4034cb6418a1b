#include "SketchMessageWindow.h"

#include "SketchApplication.h"
#include "SketchDialogs.h"
#include "SketchFiles.h"
#include "SketchPainter.h"
#include "SketchSmoothing.h"
#include "SketchTheme.h"
#include "SketchWindow.h"

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
    : CDefaultDocumentWindowBehavior(window), fMorvane(morvane), fApplication(application), fPath(path) {
  const std::u16string name = NameOfPath(path);
  ThrowIfFailed(fMessageView.Create(morvane, RootViewOf(window), "Message", ViewParams(kViewDrawTemporary32),
                                    name + u" cannot be opened", message, path));
  SetUpWindow(morvane, window, name, kMinimumSize, kIdealSize);
}

TError CSketchMessageWindow::IDocumentWindowBehavior_OnClientSizeChanged(const TSize&, const TSize& newSize) {
  return SetRect(*fMessageView.View(), {0, 0, newSize.fWidth, newSize.fHeight});
}

// --- Commands

bool CSketchMessageWindow::IsCommandEnabled(TSketchCommand command) const {
  return command == kCommandAbout || command == kCommandNew || command == kCommandOpen;
}

void CSketchMessageWindow::Perform(TSketchCommand command) {
  switch (command) {
    case kCommandAbout:
      fApplication.ShowAbout();
      break;
    case kCommandNew:
      fApplication.OpenUntitled();
      break;
    case kCommandOpen: {
      IModalOwner* owner = nullptr;
      ThrowIfFailed(fWindow.IDocumentWindow_GetModalOwner(owner));
      AskForPath({fMorvane, owner, MiddleOf(WindowOf(fWindow))}, u"Open", u"Open", fPath,
                 [&application = fApplication](const std::u16string& path) { application.OpenFile(path); });
      break;
    }
    case kCommandClose:
      ThrowIfFailed(fWindow.IDocumentWindow_Release());
      break;
    default:
      break;
  }
}

TError CSketchMessageWindow::IDocumentWindowBehavior_HandleKeyDown(const TKeyEvent& event,
                                                                   TFlag& outHandled) {
  outHandled = 0;
  return Guarded([&] {
    const TSketchKey key = MeaningOf(fMorvane, event);
    if (!key.fControl || key.fAlt || key.fCharacter != u'w') return TError{kOK};
    outHandled = 1;
    Perform(kCommandClose);
    return TError{kOK};
  });
}

TError CSketchMessageWindow::IDocumentWindowBehavior_OnSetupMenuBar(IMenuBarState& state) {
  return Guarded([&] {
    FillMenuBar(state, *this);
    return TError{kOK};
  });
}

TError CSketchMessageWindow::IDocumentWindowBehavior_OnMenuCommand(const TMenuCommandEvent& event,
                                                                   TFlag& outHandled) {
  outHandled = 1;
  return Guarded([&] {
    if (!IsBlockedWindow(WindowOf(fWindow))) Perform(static_cast<TSketchCommand>(event.fCommand));
    return TError{kOK};
  });
}

}  // namespace NSSketch
