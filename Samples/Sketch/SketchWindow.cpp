#include "SketchWindow.h"

#include <windows.h>

#include <algorithm>
#include <utility>

#include "SketchApplication.h"
#include "SketchTextMeasure.h"
#include "SketchTheme.h"

namespace NSSketch {

using namespace NSMorvane;

namespace {

constexpr TSize kMinimumSize = {480, 400};
constexpr std::int32_t kLeastWidthWithSidePanel = 680;
constexpr std::int32_t kDeskMargin = 32;  // above and below the sheet
constexpr std::int32_t kDeskSide = 72;    // beside it; the palette has room there

constexpr std::int32_t kScreenMargin = 24;  // left free around a new window

// As large as the sheet with some desk around it needs it.
TSize IdealSize(const CSketchDocument& document) {
  const TSketchSize sheet = document.CanvasSize();
  return {sheet.fWidth + 2 * kDeskSide + kSidePanelWidth, sheet.fHeight + 2 * kDeskMargin + kStatusHeight};
}

// Gives a new window its title, its least size, and its first size: `ideal`, as far as the main monitor has
// room for it.
void SetUpWindow(IMorvane& morvane, IDocumentWindow& window, const std::u16string& title, TSize ideal) {
  TMonitorList monitors;
  ThrowIfFailed(morvane.IMorvane_GetMonitors(monitors));
  const TRect& screen = monitors.fMonitors[monitors.fMainMonitorIndex].fWorkArea;
  TRect frame = {0, 0, 0, 0};  // around an empty client area
  ThrowIfFailed(WindowOf(window).IWindow_ClientRectToFrameRect({0, 0, 0, 0}, frame));
  const TSize room = {WidthOf(screen) - WidthOf(frame) - 2 * kScreenMargin,
                      HeightOf(screen) - HeightOf(frame) - 2 * kScreenMargin};
  ideal.fWidth = std::max(std::min(ideal.fWidth, room.fWidth), kMinimumSize.fWidth);
  ideal.fHeight = std::max(std::min(ideal.fHeight, room.fHeight), kMinimumSize.fHeight);

  ThrowIfFailed(ChangeState(window, [&](TDocumentWindowState& state) {
    CopyText(state.fTitle, title);
    state.fMinimumClientSize = kMinimumSize;
    state.fIdealClientSize = ideal;
    state.fPlacement.fZoomState = kWindowStateIdeal;
  }));
}

}  // namespace

CSketchWindow::CSketchWindow(IDocumentWindow& window, IMorvane& morvane, CSketchApplication& application,
                             std::unique_ptr<CSketchDocument> document, const std::u16string& path,
                             const std::u16string& name)
    : CDefaultDocumentWindowBehavior(window),
      fMorvane(morvane),
      fApplication(application),
      fPath(path),
      fName(name),
      fEditor(std::move(document), TextMeasure()),
      fCanvas(morvane, fEditor, *this) {
  IView& root = RootViewOf(window);
  fCanvas.Create(Window(), root);
  ThrowIfFailed(fSidePanel.Create(morvane, root, "Side panel", ViewParams(), fEditor.Document()));
  ThrowIfFailed(fPreview.Create(morvane, *fSidePanel.View(), "Preview", ViewParams(), fEditor.Document()));
  ThrowIfFailed(fStatus.Create(morvane, root, "Status", ViewParams(kViewDrawTemporary32), fEditor, fName));
  fCanvas.SetTool(application.Tool());
  SetUpWindow(morvane, window, name, IdealSize(fEditor.Document()));
  fEditor.SetListener(this);
  fApplication.AddWindow(*this);
}

CSketchWindow::~CSketchWindow() {
  fEditor.SetListener(nullptr);
  fApplication.RemoveWindow(*this);
}

// --- The window

bool CSketchWindow::IsBlocked() const {
  TNativeWindow native = {nullptr};
  ThrowIfFailed(Window().IWindow_GetNativeWindow(native));
  return !::IsWindowEnabled(native.fHwnd) || !::IsWindowVisible(native.fHwnd);
}

TDialogPlace CSketchWindow::DialogPlace() const {
  IModalOwner* owner = nullptr;
  ThrowIfFailed(fWindow.IDocumentWindow_GetModalOwner(owner));
  return {fMorvane, owner};
}

TError CSketchWindow::IDocumentWindowBehavior_OnClientSizeChanged(const TSize&, const TSize& newSize) {
  return Guarded([&] {
    LayOut(newSize);
    return TError{kOK};
  });
}

// Status line at the bottom, side panel at the right if the window is wide enough; the canvas gets the rest.
void CSketchWindow::LayOut(const TSize& clientSize) {
  const std::int32_t barTop = std::max(clientSize.fHeight - kStatusHeight, 0);
  const std::int32_t panelLeft =
      clientSize.fWidth >= kLeastWidthWithSidePanel ? clientSize.fWidth - kSidePanelWidth : clientSize.fWidth;
  const TRect panel = {panelLeft, 0, clientSize.fWidth, barTop};
  fCanvas.SetArea({0, 0, panelLeft, barTop});
  ThrowIfFailed(SetRect(*fSidePanel.View(), panel));
  ThrowIfFailed(SetRect(*fPreview.View(), CSketchSidePanelView::PreviewRect(panel, fEditor.Document())));
  ThrowIfFailed(SetRect(*fStatus.View(), {0, barTop, clientSize.fWidth, clientSize.fHeight}));
}

void CSketchWindow::Invalidate(IView& view) { fMorvane.IMorvane_InvalidateView(view, RectOf(view)); }

TError CSketchWindow::IDocumentWindowBehavior_OnActivationChanged(TFlag active) {
  return Guarded([&] {
    if (active == 1) fApplication.SetFront(*this);
    fApplication.KeepPaletteAbove();
    return TError{kOK};
  });
}

// --- What has changed

void CSketchWindow::OnAreaChanged(const TSketchRect& area) { fCanvas.InvalidateArea(area); }

void CSketchWindow::OnCanvasChanged() {
  fCanvas.OnCanvasChanged();
  const TRect panel = RectOf(*fSidePanel.View());
  ThrowIfFailed(SetRect(*fPreview.View(), CSketchSidePanelView::PreviewRect(panel, fEditor.Document())));
}

// The overview waits for the end of a drag.
void CSketchWindow::OnStateChanged() {
  fCanvas.CheckCurrentHandle();
  fCanvas.CheckText();
  if (!fEditor.IsInGesture()) Invalidate(*fSidePanel.View());
  Invalidate(*fStatus.View());
  if (fEditor.IsModified() != fIsModified) {
    fIsModified = fEditor.IsModified();
    ThrowIfFailed(
        ChangeState(fWindow, [&](TDocumentWindowState& state) { state.fModified = fIsModified ? 1 : 0; }));
  }
  UpdateMenus();
  // While the mouse is dragging the library asks with each move.
  if (!fEditor.IsInGesture() || fCanvas.TextEditing().IsActive())
    fMorvane.IMorvane_RequestMouseShapeArbitration();
  fApplication.OnDocumentChanged(*this);
}

void CSketchWindow::OnPointerMoved(std::optional<TSketchPoint> position) {
  if (!fStatus || !fStatus->SetPosition(position)) return;
  Invalidate(*fStatus.View());
}

void CSketchWindow::OnCanvasStateChanged() {
  if (fStatus->SetZoom(fCanvas.Viewport().Percent())) Invalidate(*fStatus.View());
  UpdateMenus();
  fMorvane.IMorvane_RequestMouseShapeArbitration();
}

void CSketchWindow::OnToolChanged() {
  fCanvas.SetTool(fApplication.Tool());
  UpdateMenus();
}

void CSketchWindow::ChooseTool(TSketchTool tool) {
  if (tool != fApplication.Tool()) fApplication.ChooseTool(tool);
}

const TShape& CSketchWindow::StyleOfNewShapes() { return fApplication.Style(); }

void CSketchWindow::ShowProperties() { fApplication.ShowProperties(); }

void CSketchWindow::OnDraggedBeyond() { fApplication.KeepScrolling(*this); }

}  // namespace NSSketch
