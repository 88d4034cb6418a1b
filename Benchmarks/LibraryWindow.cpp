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

TRect ToRect(const RECT& rect) { return {rect.left, rect.top, rect.right, rect.bottom}; }

}  // namespace

CCellScene::CCellScene(IMorvane& morvane, IDocumentWindow& window, TArrangement arrangement,
                       CCellPainter& painter, int cellCount)
    : fMorvane(morvane), fHwnd(HwndOf(window)), fRoot(RootViewOf(window)) {
  IView* superView = &fRoot;
  if (arrangement != TArrangement::kDirect) {
    TRect rect = kClient;
    if (arrangement == TArrangement::kScrolled) rect.fBottom = kScrolledHeight;
    ThrowIfFailed(fBuffer.Create(morvane, *superView, "Buffer", ParamsFor(rect, kViewDrawPermanent32)));
    superView = fBuffer.View();
  }
  if (arrangement == TArrangement::kScrolled) {
    ThrowIfFailed(fContent.Create(morvane, *superView, "Content", ParamsFor(kClient)));
    superView = fContent.View();
  }
  fCells.resize(static_cast<std::size_t>(cellCount));
  int index = 0;
  for (auto& cell : fCells) {
    const RECT rect = CellRect(index);
    ThrowIfFailed(cell.Create(morvane, *superView, "Cell", ParamsFor(ToRect(rect)), painter, rect, index));
    ++index;
  }
  PaintAll();
}

void CCellScene::PaintAll() {
  IView& view = fContent ? *fContent.View() : fBuffer ? *fBuffer.View() : fRoot;
  ThrowIfFailed(fMorvane.IMorvane_InvalidateView(view, kClient));
  UpdateWindow(fHwnd);
}

void CCellScene::PaintOne() {
  ThrowIfFailed(fMorvane.IMorvane_InvalidateView(*fCells[kDirtyCell].View(), ToRect(CellRect(kDirtyCell))));
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
  RECT client;
  GetClientRect(HwndOf(*window), &client);
  Require(client.right == kClientWidth && client.bottom == kClientHeight,
          "the window is " + std::to_string(client.right) + " by " + std::to_string(client.bottom));
  return *window;
}

HWND HwndOf(IDocumentWindow& window) {
  TNativeWindow native = {};
  ThrowIfFailed(WindowOf(window).IWindow_GetNativeWindow(native));
  return native.fHwnd;
}

}  // namespace NSBench
