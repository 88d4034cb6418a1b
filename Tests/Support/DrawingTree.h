// A tree of views that draws without any native window.
#pragma once

#include <boost/weak_ptr.hpp>
#include <functional>
#include <vector>

#include "Component/Portable/MorvaneImplUtilsDrawing.h"
#include "Component/Portable/ViewImpl.h"
#include "Tests/Support/Drawing.h"
#include "Tests/Support/FakeViewWindow.h"

namespace NSMorvaneTest {

// Counts, and does what a test wants of it.
class DrawingBehavior : public CDefaultViewBehavior {
 public:
  using TAction = std::function<TError(IDrawTools&)>;

  TError IViewBehavior_Draw(IDrawTools& tools) override {
    ++fDraws;
    return fOnDraw ? fOnDraw(tools) : kOK;
  }
  TError IViewBehavior_PostProcessDraw(IDrawTools& tools) override {
    ++fPostProcesses;
    return fOnPostProcess ? fOnPostProcess(tools) : kOK;
  }

  TAction fOnDraw;
  TAction fOnPostProcess;
  int fDraws = 0;
  int fPostProcesses = 0;
};

// Fills a rectangle through the native port.
inline TError FillThroughPort(IDrawTools& tools, const TRect& rect, COLORREF colour) {
  TNativePort port = {};
  const TError error = tools.IDrawTools_OpenNativePort(port);
  if (error != kOK) return error;
  Fill(port.fHDC, rect, colour);
  return tools.IDrawTools_CloseNativePort();
}

// One view with its behaviour. Both belong to the tree.
struct TDrawnView {
  CViewImpl* fView;
  DrawingBehavior* fBehavior;

  void SetMode(TViewDrawMode mode) const {
    TViewParams params = fView->GetParams();
    params.fDrawMode = mode;
    fView->IView_SetParams(params);
  }
};

// Whatever views are left at the end are released, the last made first.
class DrawingTree {
 public:
  explicit DrawingTree(const TRect& bounds) : DrawingTree(bounds, new DrawingBehavior) {}
  ~DrawingTree() {
    while (!fViews.empty()) {
      if (const TViewImplPtr view = fViews.back().lock()) {
        if (view->IsLive()) view->IView_Release();
      }
      fViews.pop_back();
    }
  }

  TDrawnView Add(CViewImpl& superView, const TRect& bounds, TViewDrawMode mode = kViewDrawDirect) {
    TViewImplPtr view(new CViewImpl(nullptr, superView, "view"));
    boost::shared_ptr<DrawingBehavior> behavior(new DrawingBehavior);
    view->SetClientsViewReference(view);
    view->SetBehavior(behavior);
    fViews.push_back(view);
    view->SetBounds(bounds);
    const TDrawnView drawn = {view.get(), behavior.get()};
    drawn.SetMode(mode);
    return drawn;
  }
  // A subview of the root view.
  TDrawnView Add(const TRect& bounds, TViewDrawMode mode = kViewDrawDirect) {
    return Add(*fRoot.fView, bounds, mode);
  }

  // As a window paints: onto a surface whose first pixel is at (0, 0), clipped to what is dirty.
  void Draw(CBufferBitmap& surface, const CRegion& dirty, const TDebugSettings& settings = {}) {
    const HDC hdc = surface.GetNativePort().fHDC;
    SelectClipRgn(hdc, dirty.GetNativeRegion());
    PlainTools tools(hdc, dirty.GetNativeRegion());
    DrawWith(tools, settings);
    SelectClipRgn(hdc, nullptr);
  }
  void DrawWith(IDrawTools& tools, const TDebugSettings& settings = {}) {
    TDrawBracket bracket(&fRunBehavior, tools);
    DrawView(&fRunBehavior, bracket, *fRoot.fView, fRoot.fView->GetBounds(), tools, settings);
  }

  FakeViewWindow fWindow;
  DrawingRunBehavior fRunBehavior;
  TDrawnView fRoot;

 private:
  DrawingTree(const TRect& bounds, DrawingBehavior* rootBehavior)
      : fWindow(bounds, rootBehavior), fRoot{&fWindow.Root(), rootBehavior} {}

  std::vector<boost::weak_ptr<CViewImpl>> fViews;
};

}  // namespace NSMorvaneTest
