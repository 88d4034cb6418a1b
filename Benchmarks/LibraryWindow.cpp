#include "LibraryWindow.h"

#include "Measure.h"

namespace NSBench {

namespace {

constexpr TRect kClient = {0, 0, kClientWidth, kClientHeight};

TViewParams ParamsFor(const TRect& rect, TViewDrawMode drawMode = kViewDrawDirect) {
  TViewParams params = ViewParams(drawMode, kAutoInvalidationNone);
  params.fRect = rect;
  return params;
}

void RequireClientSize(HWND hwnd, int width, int height) {
  RECT client;
  GetClientRect(hwnd, &client);
  Require(client.right == width && client.bottom == height,
          "the window is " + std::to_string(client.right) + " by " + std::to_string(client.bottom));
}

TRect ToRect(const RECT& rect) { return {rect.left, rect.top, rect.right, rect.bottom}; }

}  // namespace

CCellScene::CCellScene(IMorvane& morvane, IDocumentWindow& window, TArrangement arrangement,
                       CCellPainter& painter, const TCells& cells)
    : fMorvane(morvane), fHwnd(HwndOf(window)), fRoot(RootViewOf(window)) {
  IView* superView = &fRoot;
  if (arrangement == TArrangement::kBuffered || arrangement == TArrangement::kScrolled) {
    TRect rect = kClient;
    if (arrangement == TArrangement::kScrolled) rect.fBottom = kScrolledHeight;
    ThrowIfFailed(fBuffer.Create(morvane, *superView, "Buffer", ParamsFor(rect, kViewDrawPermanent32)));
    superView = fBuffer.View();
  }
  if (arrangement == TArrangement::kScrolled) {
    ThrowIfFailed(fContent.Create(morvane, *superView, "Content", ParamsFor(kClient)));
    superView = fContent.View();
  }
  fCells.resize(cells.size());
  for (std::size_t i = 0; i < cells.size(); ++i) {
    const bool isInTheOneBefore = arrangement == TArrangement::kStacked && i % kStackHeight != 0;
    IView& holder = isInTheOneBefore ? *fCells[i - 1].View() : *superView;
    TViewParams params = ParamsFor(ToRect(cells[i]));
    if (arrangement == TArrangement::kDragged && i + 1 == cells.size())
      params.fAutoInvalidation = kAutoInvalidationFull;
    ThrowIfFailed(fCells[i].Create(morvane, holder, "Cell", params, painter, cells[i], static_cast<int>(i)));
  }
  PaintAll();
}

void CCellScene::PaintAll() {
  IView& view = fContent ? *fContent.View() : fBuffer ? *fBuffer.View() : fRoot;
  ThrowIfFailed(fMorvane.IMorvane_InvalidateView(view, kClient));
  UpdateWindow(fHwnd);
}

void CCellScene::Invalidate(std::size_t cell) {
  TViewParams params = {};
  ThrowIfFailed(fCells[cell].View()->IView_GetParams(params));
  ThrowIfFailed(fMorvane.IMorvane_InvalidateView(*fCells[cell].View(), params.fRect));
}

void CCellScene::PaintOne() {
  Invalidate(kDirtyCell);
  UpdateWindow(fHwnd);
}

void CCellScene::PaintFirstAndLast() {
  Invalidate(0);
  Invalidate(fCells.size() - 1);
  UpdateWindow(fHwnd);
}

void CCellScene::MoveLastCell(int dx, int dy) {
  ThrowIfFailed(fCells.back().View()->IView_Offset(dx, dy));
  UpdateWindow(fHwnd);
}

void CCellScene::Resize(int width, int height) {
  ResizeClient(fHwnd, width, height);
  const TCells cells = CellsFor(width, height);
  for (std::size_t i = 0; i < cells.size(); ++i) {
    ThrowIfFailed(fCells[i].View()->IView_SetParams(ParamsFor(ToRect(cells[i]))));
    fCells[i]->SetRect(cells[i]);
  }
  ThrowIfFailed(fMorvane.IMorvane_InvalidateView(fRoot, {0, 0, width, height}));
  UpdateWindow(fHwnd);
}

void CCellScene::Scroll(int dy) {
  ThrowIfFailed(fContent.View()->IView_Offset(0, dy));
  UpdateWindow(fHwnd);
}

IDocumentWindow& CreateLibraryWindow(IMorvane& morvane) {
  CDocumentWindowFactory<CDefaultDocumentWindowBehavior> factory;
  TError error = kOK;
  IDocumentWindow* const window = morvane.IMorvane_CreateDocumentWindow(factory, 0, 0, error);
  ThrowIfFailed(error);
  ThrowIfFailed(ChangeState(*window, [](TDocumentWindowState& state) {
    CopyText(state.fTitle, u"Library");
    state.fIdealClientSize = {kClientWidth, kClientHeight};
    state.fPlacement.fZoomState = kWindowStateIdeal;
  }));
  RequireClientSize(HwndOf(*window), kClientWidth, kClientHeight);
  return *window;
}

void ResizeClient(HWND hwnd, int width, int height) {
  RECT frame, client;
  GetWindowRect(hwnd, &frame);
  GetClientRect(hwnd, &client);
  SetWindowPos(hwnd, nullptr, 0, 0, frame.right - frame.left - client.right + width,
               frame.bottom - frame.top - client.bottom + height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  RequireClientSize(hwnd, width, height);
}

HWND HwndOf(IDocumentWindow& window) {
  TNativeWindow native = {};
  ThrowIfFailed(WindowOf(window).IWindow_GetNativeWindow(native));
  return native.fHwnd;
}

}  // namespace NSBench
