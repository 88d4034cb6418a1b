#include "SoakWindow.h"

#include <algorithm>
#include <iterator>
#include <random>
#include <vector>

namespace NSSoak {

namespace {

constexpr TViewDrawMode kDrawModes[] = {kViewDrawDirect, kViewDrawTemporary16, kViewDrawTemporary32,
                                        kViewDrawPermanent16, kViewDrawPermanent32};
constexpr TAutoInvalidation kAutoInvalidations[] = {kAutoInvalidationNone, kAutoInvalidationFull,
                                                    kAutoInvalidationDifference,
                                                    kAutoInvalidationDifferenceTopLeft};
// A handful, so that buffers of several sizes are kept and met again.
constexpr TSize kWindowSizes[] = {{400, 300}, {500, 350}, {360, 420}};

class CSoakView : public CDefaultViewBehavior {
 public:
  CSoakView(IView& view, COLORREF colour) : fView(view), fColour(colour) {}
  TError IViewBehavior_Draw(IDrawTools& tools) override {
    ++fDrawCount;
    const TRect rect = RectOf(fView);
    const RECT box = {rect.fLeft, rect.fTop, rect.fRight, rect.fBottom};
    const COpenPort port(tools);
    const HBRUSH brush = CreateSolidBrush(fColour);
    FillRect(port, &box, brush);
    DeleteObject(brush);
    SetBkMode(port, TRANSPARENT);
    TextOutW(port, box.left + 2, box.top + 2, L"Soak", 4);
    return kOK;
  }
  TError IViewBehavior_PostProcessDraw(IDrawTools& tools) override {
    void* region = nullptr;
    return tools.IDrawTools_GetDirtyRegion(region);
  }
  int DrawCount() const { return fDrawCount; }

 private:
  IView& fView;
  COLORREF fColour;
  int fDrawCount = 0;
};

// The views of one window, and what is done to them.
class CScene {
 public:
  CScene(IMorvane& morvane, IDocumentWindow& window, unsigned seed)
      : fMorvane(morvane), fRandom(seed), fSize(kWindowSizes[seed % std::size(kWindowSizes)]) {
    ThrowIfFailed(ChangeState(window, [this](TDocumentWindowState& state) {
      CopyText(state.fTitle, u"Soak");
      state.fIdealClientSize = fSize;
      state.fPlacement.fZoomState = kWindowStateIdeal;
    }));
    TNativeWindow native = {};
    ThrowIfFailed(WindowOf(window).IWindow_GetNativeWindow(native));
    fHwnd = native.fHwnd;
    MakeViews(RootViewOf(window), seed);
    ThrowIfFailed(fMorvane.IMorvane_InvalidateView(*fBase.View(), WholeRect()));
    UpdateWindow(fHwnd);
    RequirePainted(0);
  }

  void Repaint() {
    const int before = fBase->DrawCount();
    IView& view = *fViews[Random(fViews.size())].View();
    Change(view);
    // Changes need not show: this does.
    const std::int32_t left = static_cast<std::int32_t>(Random(static_cast<std::size_t>(fSize.fWidth) - 40));
    const std::int32_t top = static_cast<std::int32_t>(Random(static_cast<std::size_t>(fSize.fHeight) - 40));
    ThrowIfFailed(fMorvane.IMorvane_InvalidateView(*fBase.View(), {left, top, left + 40, top + 40}));
    UpdateWindow(fHwnd);
    RequirePainted(before);
  }

 private:
  TRect WholeRect() const { return {0, 0, fSize.fWidth, fSize.fHeight}; }
  std::size_t Random(std::size_t limit) { return fRandom() % limit; }

  // A base that covers everything; on it a view of each draw mode; in each of them either one higher than it
  // is, to be scrolled, or two beside each other.
  void MakeViews(IView& root, unsigned seed) {
    TViewParams params = ViewParams();
    params.fRect = WholeRect();
    ThrowIfFailed(fBase.Create(fMorvane, root, "Base", params, RGB(250, 250, 250)));
    for (std::size_t i = 0; i < std::size(kDrawModes); ++i) {
      const std::int32_t top = static_cast<std::int32_t>(10 + 55 * i);
      IView& band = MakeView(*fBase.View(), {10, top, fSize.fWidth - 10, top + 50}, i, i + seed);
      if ((i + seed) % 2 == 0) {
        MakeView(band, {10, top, fSize.fWidth - 10, top + 150}, seed, i);
      } else {
        MakeView(band, {20, top + 5, 120, top + 40}, seed + i, i);
        MakeView(band, {100, top + 10, 300, top + 60}, seed + i + 1, i + 1);
      }
    }
  }

  IView& MakeView(IView& superView, const TRect& rect, std::size_t mode, std::size_t invalidation) {
    TViewParams params = ViewParams(kDrawModes[mode % std::size(kDrawModes)],
                                    kAutoInvalidations[invalidation % std::size(kAutoInvalidations)]);
    params.fRect = rect;
    fViews.emplace_back();
    const BYTE shade = static_cast<BYTE>(100 + fViews.size() * 9);
    ThrowIfFailed(fViews.back().Create(fMorvane, superView, "View", params, RGB(shade, 200, 255 - shade)));
    return *fViews.back().View();
  }

  void Change(IView& view) {
    TViewParams params = ViewParams();
    ThrowIfFailed(view.IView_GetParams(params));
    switch (Random(8)) {
      case 0:  // up and down again: views stay where they are in the long run
        ThrowIfFailed(view.IView_Offset(0, -8));
        UpdateWindow(fHwnd);
        ThrowIfFailed(view.IView_Offset(0, 8));
        break;
      case 1:
        ThrowIfFailed(view.IView_Offset(3, 5));
        ThrowIfFailed(view.IView_Offset(-3, -5));
        break;
      case 2:
        params.fRect.fRight += params.fRect.fRight % 2 == 0 ? 15 : -15;
        ThrowIfFailed(view.IView_SetParams(params));
        break;
      case 3:
        params.fDrawMode = kDrawModes[Random(std::size(kDrawModes))];
        ThrowIfFailed(view.IView_SetParams(params));
        break;
      case 4:
        params.fAutoInvalidation = kAutoInvalidations[Random(std::size(kAutoInvalidations))];
        ThrowIfFailed(view.IView_SetParams(params));
        break;
      case 5: {
        CVectorViewReceiver order;
        ThrowIfFailed(fBase.View()->IView_GetSubViewOrder(order));
        std::rotate(order.fViews.begin(), order.fViews.begin() + 1, order.fViews.end());
        ThrowIfFailed(fBase.View()->IView_SetSubViewOrder(order.fViews.data(),
                                                          static_cast<std::uint32_t>(order.fViews.size())));
        break;
      }
      default:
        ThrowIfFailed(fMorvane.IMorvane_InvalidateView(view, params.fRect));
        break;
    }
  }

  void RequirePainted(int countBefore) const {
    if (fBase->DrawCount() == countBefore) throw XFailed{kOtherError};
  }

  IMorvane& fMorvane;
  std::mt19937 fRandom;
  TSize fSize;
  HWND fHwnd = nullptr;
  CViewOf<CSoakView> fBase;
  std::vector<CViewOf<CSoakView>> fViews;  // super views before their subviews
};

}  // namespace

void RunWindow(IMorvane& morvane, unsigned number, int repaints) {
  CDocumentWindowFactory<CDefaultDocumentWindowBehavior> factory;
  TError error = kOK;
  const CReleasePtr<IDocumentWindow> window(
      morvane.IMorvane_CreateDocumentWindow(factory, kWindowResizableBit, 1, error));
  ThrowIfFailed(error);
  CScene scene(morvane, *window, number);
  for (int i = 0; i < repaints; ++i) scene.Repaint();
}

}  // namespace NSSoak
