#include "SketchWindow.h"

#include <algorithm>
#include <utility>

#include "SketchApplication.h"
#include "SketchTheme.h"

namespace NSSketch {

using namespace NSMorvane;

namespace {

constexpr TSize kMinimumSize = {480, 400};
constexpr std::int32_t kLeastWidthWithSidePanel = 680;
constexpr std::int32_t kScreenMargin = 24;   // left free around a new window
constexpr std::int32_t kCascadeStep = 28;    // from one new window to the next
constexpr std::int32_t kCascadeWindows = 8;  // before it starts again

// As large as the sheet with some desk around it needs it.
TSize IdealSize(const CSketchDocument& document) {
  const TSketchSize sheet = document.CanvasSize();
  return {sheet.fWidth + 2 * kDeskMargin + kToolStripWidth + kSidePanelWidth,
          sheet.fHeight + 2 * kDeskMargin + kStatusHeight};
}

}  // namespace

void SetUpWindow(IMorvane& morvane, IDocumentWindow& window, const std::u16string& title,
                 const TSize& minimum, TSize ideal) {
  static std::int32_t windowsSoFar = 0;
  TMonitorList monitors;
  ThrowIfFailed(morvane.IMorvane_GetMonitors(monitors));
  const TRect& screen = monitors.fMonitors[monitors.fMainMonitorIndex].fWorkArea;
  TRect frame = {0, 0, 0, 0};  // around an empty client area
  ThrowIfFailed(WindowOf(window).IWindow_ClientRectToFrameRect({0, 0, 0, 0}, frame));
  const TSize room = {WidthOf(screen) - WidthOf(frame) - 2 * kScreenMargin,
                      HeightOf(screen) - HeightOf(frame) - 2 * kScreenMargin};
  ideal.fWidth = std::max(std::min(ideal.fWidth, room.fWidth), minimum.fWidth);
  ideal.fHeight = std::max(std::min(ideal.fHeight, room.fHeight), minimum.fHeight);
  const std::int32_t shift = kCascadeStep * (windowsSoFar++ % kCascadeWindows);
  const std::int32_t left = kScreenMargin + std::clamp(room.fWidth - ideal.fWidth, 0, shift);
  const std::int32_t top = kScreenMargin + std::clamp(room.fHeight - ideal.fHeight, 0, shift);

  ThrowIfFailed(ChangeState(window, [&](TDocumentWindowState& state) {
    CopyText(state.fTitle, title);
    state.fMinimumClientSize = minimum;
    state.fIdealClientSize = ideal;
    // The ideal rectangle gets the ideal size, at the place of the user's rectangle.
    state.fPlacement.fUserRect = {left, top, left + WidthOf(state.fPlacement.fUserRect),
                                  top + HeightOf(state.fPlacement.fUserRect)};
    state.fPlacement.fZoomState = kWindowStateIdeal;
  }));
}

CSketchWindow::CSketchWindow(IDocumentWindow& window, IMorvane& morvane, CSketchApplication& application,
                             std::unique_ptr<CSketchDocument> document, const std::u16string& path,
                             const std::u16string& name)
    : CDefaultDocumentWindowBehavior(window),
      fApplication(application),
      fPath(path),
      fDocument(std::move(document)),
      fCanvas(*fDocument) {
  IView& root = RootViewOf(window);
  ThrowIfFailed(fToolStrip.Create(morvane, root, "Tool strip", ViewParams()));
  fCanvas.Create(morvane, root);
  ThrowIfFailed(fSidePanel.Create(morvane, root, "Side panel", ViewParams(), *fDocument));
  ThrowIfFailed(fPreview.Create(morvane, *fSidePanel.View(), "Preview", ViewParams(), *fDocument));
  ThrowIfFailed(fStatus.Create(morvane, root, "Status", ViewParams(kViewDrawTemporary32), *fDocument, name));
  SetUpWindow(morvane, window, name, kMinimumSize, IdealSize(*fDocument));
  fApplication.AddWindow(*this);
}

CSketchWindow::~CSketchWindow() { fApplication.RemoveWindow(*this); }

TError CSketchWindow::IDocumentWindowBehavior_OnClientSizeChanged(const TSize&, const TSize& newSize) {
  return Guarded([&] {
    LayOut(newSize);
    return TError{kOK};
  });
}

// Tool strip at the left, status line at the bottom, side panel at the right if the window is wide enough;
// the canvas gets the rest.
void CSketchWindow::LayOut(const TSize& clientSize) {
  const std::int32_t barTop = std::max(clientSize.fHeight - kStatusHeight, 0);
  const std::int32_t canvasLeft = std::min<std::int32_t>(kToolStripWidth, clientSize.fWidth);
  const std::int32_t panelLeft =
      clientSize.fWidth >= kLeastWidthWithSidePanel ? clientSize.fWidth - kSidePanelWidth : clientSize.fWidth;
  const TRect panel = {panelLeft, 0, clientSize.fWidth, barTop};
  ThrowIfFailed(SetRect(*fToolStrip.View(), {0, 0, canvasLeft, barTop}));
  fCanvas.SetArea({canvasLeft, 0, panelLeft, barTop});
  ThrowIfFailed(SetRect(*fSidePanel.View(), panel));
  ThrowIfFailed(SetRect(*fPreview.View(), CSketchSidePanelView::PreviewRect(panel, *fDocument)));
  ThrowIfFailed(SetRect(*fStatus.View(), {0, barTop, clientSize.fWidth, clientSize.fHeight}));
}

}  // namespace NSSketch
