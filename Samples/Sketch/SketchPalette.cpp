#include "SketchPalette.h"

#include <vector>

#include "SketchApplication.h"
#include "SketchCommands.h"
#include "SketchDialogs.h"
#include "SketchPainter.h"
#include "SketchSmoothing.h"
#include "SketchTheme.h"

namespace NSSketch {

using namespace NSMorvane;

namespace {

constexpr int kButtonSize = 36;
constexpr int kMargin = 3;
constexpr int kPictureSize = 24;
constexpr int kCornerDiameter = 10;
constexpr int kSide = 8;  // beside the buttons; the caption needs the width
constexpr TSize kClientSize = {kButtonSize + 2 * kSide,
                               (kButtonSize + kMargin) * static_cast<int>(kSketchToolCount) + kMargin};

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

// The round-cornered field behind a tool, in a smoothed band.
void DrawField(HDC hdc, const RECT& band, const RECT& box, TSketchColor color) {
  const CSavedContext saved(hdc);
  ::SelectObject(hdc, ::GetStockObject(NULL_PEN));
  ::SelectObject(hdc, ::GetStockObject(DC_BRUSH));
  ::SetDCBrushColor(hdc, NativeColor(color));
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

// --- A button

CSketchToolButton::CSketchToolButton(IView& view, IMorvane& morvane, CSketchApplication& application,
                                     TSketchTool tool)
    : CDefaultHitViewBehavior(view), fMorvane(morvane), fApplication(application), fTool(tool) {}

TError CSketchToolButton::IViewBehavior_Draw(IDrawTools& tools) {
  return Guarded([&] {
    const RECT box = NativeRect(RectOf(fView));
    const bool isCurrent = fApplication.Tool() == fTool;
    const COpenPort port(tools);
    DrawSmoothly(port, box, [&](HDC hdc, const RECT& band) {
      if (isCurrent || fIsHot) DrawField(hdc, band, box, isCurrent ? kAccentTintColor : kBarEdgeColor);
      DrawPicture(hdc, band, box, Pictures()[static_cast<std::size_t>(fTool)],
                  isCurrent ? kAccentColor : kToolColor);
    });
    return TError{kOK};
  });
}

// After the choice the document has the keys again.
TError CSketchToolButton::IViewBehavior_HandleClick(const TMouseEvent& event, TFlag& outHandled) {
  outHandled = event.fType == kMouseEventClick || event.fType == kMouseEventDoubleClick ? 1 : 0;
  if (outHandled == 0 || event.fButtons != 1) return kOK;
  return Guarded([&] {
    fApplication.ChooseTool(fTool);
    fApplication.FocusFront();
    return TError{kOK};
  });
}

TError CSketchToolButton::IViewBehavior_OnMouseTracking(const TMouseTracking&, TMousePhase phase,
                                                        TFlag& outHandled) {
  outHandled = phase == kMousePhaseNormal ? 1 : 0;
  return kOK;
}

TError CSketchToolButton::IViewBehavior_OnMouseEnterExit(TFlag entered) {
  fIsHot = entered == 1;
  Invalidate();
  return kOK;
}

void CSketchToolButton::Invalidate() { fMorvane.IMorvane_InvalidateView(fView, RectOf(fView)); }

// --- The window

CSketchPalette::CSketchPalette(IFloatingWindow& window, IMorvane& morvane, CSketchApplication& application)
    : CDefaultFloatingWindowBehavior(window), fMorvane(morvane), fApplication(application) {
  TViewParams background = ViewParams(kViewDrawTemporary32);
  background.fRect = {0, 0, kClientSize.fWidth, kClientSize.fHeight};
  ThrowIfFailed(fBackground.Create(morvane, RootViewOf(window), "Palette", background));
  int top = kMargin;
  for (std::size_t i = 0; i < kSketchToolCount; ++i, top += kButtonSize + kMargin) {
    const auto tool = static_cast<TSketchTool>(i);
    TViewParams params = ViewParams();
    params.fFlags |= kViewMouseTrackable;
    params.fRect = {kSide, top, kSide + kButtonSize, top + kButtonSize};
    ThrowIfFailed(
        fButtons[i].Create(morvane, *fBackground.View(), "Tool", params, morvane, application, tool));
    const auto letter = static_cast<char16_t>(LetterOfTool(tool) - u'a' + u'A');
    const std::u16string tip = NameOfTool(tool) + u" (" + letter + u")";
    ThrowIfFailed(fButtons[i].View()->IView_SetTooltipText(tip.c_str()));
  }
  TRect frame = {0, 0, 0, 0};
  ThrowIfFailed(WindowOf(window).IWindow_ClientRectToFrameRect(background.fRect, frame));
  PlaceDialog(window, u"Tools", kClientSize, application.PlaceOfPalette({WidthOf(frame), HeightOf(frame)}));
}

CSketchPalette::~CSketchPalette() { fApplication.OnPaletteClosed(*this); }

void CSketchPalette::Close() {
  fApplication.OnPaletteClosed(*this);
  ThrowIfFailed(fWindow.IFloatingWindow_Release());
}

void CSketchPalette::OnToolChanged() {
  for (CViewOf<CSketchToolButton>& button : fButtons) button->Invalidate();
}

void CSketchPalette::StayAbove() {
  TNativeWindow native = {nullptr};
  if (WindowOf(fWindow).IWindow_GetNativeWindow(native) == kOK)
    ::SetWindowPos(native.fHwnd, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

TError CSketchPalette::IFloatingWindowBehavior_OnRequestClose(TCloseReason reason) {
  return fApplication.OnRequestClose(reason, nullptr, [this] { Close(); });
}

// Nothing is typed here, so all shortcuts are those of the document in front, which gets the keys back with
// Escape.
TError CSketchPalette::IFloatingWindowBehavior_HandleKeyDown(const TKeyEvent& event, TFlag& outHandled) {
  outHandled = 0;
  return Guarded([&] {
    if (MeaningOf(fMorvane, event).fCharacter == kKeyEscape) {
      outHandled = 1;
      fApplication.FocusFront();
    } else if (fApplication.PerformShortcut(event, true)) {
      outHandled = 1;
    }
    return TError{kOK};
  });
}

}  // namespace NSSketch
