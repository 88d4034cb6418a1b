// Views: their rectangles, a view that ends with its owner, and defaults for its behaviour.
#pragma once

#include <utility>

#include "Factories.h"

namespace NSMorvane {

// The parameters of an enabled view, with an empty rectangle.
inline TViewParams ViewParams(TViewDrawMode drawMode = kViewDrawDirect,
                              TAutoInvalidation autoInvalidation = kAutoInvalidationFull) {
  return {kViewEnabled, {0, 0, 0, 0}, drawMode, autoInvalidation};
}

// The rectangle of a view, in window client coordinates; empty if the view is broken.
inline TRect RectOf(IView& view) {
  TViewParams params = ViewParams();
  return view.IView_GetParams(params) == kOK ? params.fRect : TRect{0, 0, 0, 0};
}

inline TError SetRect(IView& view, const TRect& rect) {
  TViewParams params = ViewParams();
  const TError error = view.IView_GetParams(params);
  if (error != kOK) return error;
  params.fRect = rect;
  return view.IView_SetParams(params);
}

// A view with a behaviour of the type TBehavior. The view ends with its owner:
//   CViewOf<CGridView> fGrid;
//   ThrowIfFailed(fGrid.Create(morvane, RootViewOf(window), "Grid", ViewParams(), document));
//   fGrid->SetSpacing(20);
// The owner can be the window's behaviour, for example. It must not be the behaviour of a super view: a super
// view lives as long as its subviews, so neither would ever end. Declare super views before their subviews.
template <class TBehavior>
class CViewOf {
 public:
  // Makes the view under `superView`. Its behaviour is made from the view and `arguments`.
  template <class... TArguments>
  TError Create(IMorvane& morvane, IView& superView, const char* debugName, const TViewParams& params,
                TArguments&&... arguments) {
    CViewFactory<TBehavior, TArguments&&...> factory(std::forward<TArguments>(arguments)...);
    TError error = kOK;
    CReleasePtr<IView> view(morvane.IMorvane_CreateView(factory, superView, debugName, error));
    if (!view) return error;
    error = view->IView_SetParams(params);
    if (error != kOK) return error;
    fView = std::move(view);
    fBehavior = factory.Made();
    return kOK;
  }
  // The view, or null before Create.
  IView* View() const { return fView.get(); }
  // Its behaviour, or null.
  TBehavior* operator->() const { return fBehavior; }
  explicit operator bool() const { return fView != nullptr; }

 private:
  CReleasePtr<IView> fView;
  TBehavior* fBehavior = nullptr;
};

// --- Defaults

// Transparent to the mouse: override GetHitRects, or derive from CDefaultHitViewBehavior.
class CDefaultViewBehavior : public IViewBehavior {
 public:
  CDefaultViewBehavior() = default;
  explicit CDefaultViewBehavior(IView&) {}  // used by factories, for a view that only holds others
  TError IViewBehavior_Draw(IDrawTools&) override { return kOK; }
  TError IViewBehavior_PostProcessDraw(IDrawTools&) override { return kOK; }
  TError IViewBehavior_OnOffset(std::int32_t, std::int32_t) override { return kOK; }
  TError IViewBehavior_OnEffectivelyEnabledChanged(TFlag) override { return kOK; }
  TError IViewBehavior_OnOnDutyFocusChanged(TFlag) override { return kOK; }
  TError IViewBehavior_HandleClick(const TMouseEvent&, TFlag& outHandled) override {
    outHandled = 0;
    return kOK;
  }
  TError IViewBehavior_GetHitRects(IRectsGetter&) override { return kOK; }
  TError IViewBehavior_OnMouseWheel(const TMouseWheelEvent&, TFlag& outHandled) override {
    outHandled = 0;
    return kOK;
  }
  TError IViewBehavior_OnMouseTracking(const TMouseTracking&, TMousePhase, TFlag& outHandled) override {
    outHandled = 0;
    return kOK;
  }
  TError IViewBehavior_OnMouseEnterExit(TFlag) override { return kOK; }
  IMouseShape* IViewBehavior_GetMouseShape(const TMouseShapeRequest&, TMousePhase, TFlag& outHandled,
                                           TError& outError) override {
    outHandled = 0;
    outError = kOK;
    return nullptr;
  }
  TError IViewBehavior_HandleKeyDown(const TKeyEvent&, TFlag& outHandled) override {
    outHandled = 0;
    return kOK;
  }
  TError IViewBehavior_OnSetupMenuBar(IMenuBarState&) override { return kOK; }
  TError IViewBehavior_OnMenuCommand(const TMenuCommandEvent&, TFlag& outHandled) override {
    outHandled = 0;
    return kOK;
  }
  TError IViewBehavior_GetNativeFocusTarget(TNativeWindow& out) override {
    out.fHwnd = nullptr;
    return kOK;
  }
};

// Can be hit everywhere in its rectangle.
class CDefaultHitViewBehavior : public CDefaultViewBehavior {
 public:
  explicit CDefaultHitViewBehavior(IView& view) : fView(view) {}
  TError IViewBehavior_GetHitRects(IRectsGetter& out) override {
    TViewParams params;
    const TError error = fView.IView_GetParams(params);
    return error == kOK ? out.IRectsGetter_AddRects(&params.fRect, 1) : error;
  }

 protected:
  IView& fView;
};

}  // namespace NSMorvane
