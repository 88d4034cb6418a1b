#include "Component/Portable/Windows/MouseDispatch.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Views/FocusChain.h"
#include "Component/Portable/Views/IgnoredErrors.h"

namespace NSMorvane {

namespace {

using TViews = std::vector<TViewImplPtr>;

// The names of the passes in the lines about ignored exceptions.
constexpr char kPreTrackingPass[] = "pre pass of CWinWindow::DispatchMouseTracking.";
constexpr char kNormalTrackingPass[] = "normal pass of CWinWindow::DispatchMouseTracking.";
constexpr char kExitPass[] = "exits of CWinWindow::DispatchMouseTracking.";
constexpr char kPreShapePhase[] = "pre phase of CWinWindow::RefreshMouseShape.";
constexpr char kNormalShapePhase[] = "normal phase of CWinWindow::RefreshMouseShape.";
constexpr char kClickPhase[] = "pre-click phase of CMacRootViewBehavior::HandleClick.";  // sic, both passes

// Runs one view's turn in a pass. True if the view has handled the event. A failure counts as not handled,
// and the next view gets its turn.
template <class TTurn>
bool TakeTurn(const char* passName, TTurn&& turn) {
  try {
    return turn();
  } catch (const std::exception& e) {
    DebugPrint(std::string("Ignored an exception (") + e.what() + ") in " + passName);
  } catch (...) {
    DebugPrint(std::string("Ignored an unknown exception in ") + passName);
  }
  return false;
}

// What the window remembers about the window system may be wrong after a client callback, so this scope makes
// it forget. Declare it before the list of views, since the destruction of a view calls a client too.
class CForgetScope : CNotCopied {
 public:
  explicit CForgetScope(IMouseWindow& window) : fWindow(window) {}
  ~CForgetScope() { fWindow.IMouseWindow_ForgetAnswers(); }

 private:
  IMouseWindow& fWindow;
};

bool IsSameView(const boost::weak_ptr<CViewImpl>& a, const TViewImplPtr& b) {
  return !a.owner_before(b) && !b.owner_before(a);
}

// The views as the client gets them.
void AppendClientViews(const TViews& views, std::vector<IView*>& list) {
  for (const TViewImplPtr& view : views) list.push_back(view.get());
}

// Sets the views in front of the one at `index`, in a TMouseEvent or a TMouseShapeRequest.
template <class TRecord>
void SetViewsInFront(TRecord& record, const std::vector<IView*>& views, std::size_t index) {
  record.fViewCount = static_cast<std::uint32_t>(views.size() - index - 1);
  record.fViews = record.fViewCount > 0 ? &views[index + 1] : nullptr;
}

template <class TRecord>
void SetNoViewsInFront(TRecord& record) {
  record.fViewCount = 0;
  record.fViews = nullptr;
}

// The three types of the pre-click pass follow those of the normal pass.
void ToPreClick(TMouseEvent& event) {
  if (event.fType >= kMouseEventClick && event.fType <= kMouseEventContextClick)
    event.fType += kMouseEventPreClick - kMouseEventClick;
  else
    MORVANE_UNREACHED();
}

void ToNormalClick(TMouseEvent& event) {
  if (event.fType >= kMouseEventPreClick && event.fType <= kMouseEventPreContextClick)
    event.fType -= kMouseEventPreClick - kMouseEventClick;
  else
    MORVANE_UNREACHED();
}

}  // namespace

// --- The views under the mouse

// `outViews` is empty.
void CMouseDispatch::FindTrackableViews(const TPoint& point, TViews& outViews) {
  const CViewImpl& rootView = fWindow.IMouseWindow_GetRootView();
  // Without a view at the point, it does not matter what lies on top of the window.
  if (!rootView.HasSubViewAt(point) || !fWindow.IMouseWindow_IsOnTopAt(point)) return;
  outViews = rootView.HitTest(point, std::move(outViews));
  std::erase_if(outViews, [](const TViewImplPtr& view) { return !view->IsMouseTrackable(); });
}

// --- Tracking

namespace {

// The pass from the root to the front. Returns the index of the view that claims the event from those in
// front of it, or of the front-most view if none does.
std::ptrdiff_t RunPreTrackingPass(const TViews& hitViews, const std::vector<IView*>& clientViews,
                                  TMouseTracking record) {
  std::ptrdiff_t nodeViewIndex = static_cast<std::ptrdiff_t>(hitViews.size()) - 1;
  MORVANE_ASSERT((nodeViewIndex >= 0) && (static_cast<std::vector<TViewImplPtr>::size_type>(nodeViewIndex) < hitViews.size()));
  for (std::size_t i = 0; i < hitViews.size(); ++i) {
    SetViewsInFront(record.fState, clientViews, i);
    const bool isHandled = TakeTurn(kPreTrackingPass, [&] {
      IViewBehavior* const behavior = hitViews[i]->GetBehavior();
      if (!behavior) return false;
      TFlag handled = 0;
      MORVANE_CHECK(behavior->IViewBehavior_OnMouseTracking(record, kMousePhasePre, handled));
      MORVANE_ASSERT((handled == 0) || (handled == 1));
      return handled != 0;
    });
    if (!isHandled) continue;
    nodeViewIndex = static_cast<std::ptrdiff_t>(i);
    MORVANE_ASSERT((nodeViewIndex >= 0) && (static_cast<std::vector<TViewImplPtr>::size_type>(nodeViewIndex) < hitViews.size()));
    break;
  }
  return nodeViewIndex;
}

// The pass from that view back to the root. Returns the index of the view that keeps the event from those
// behind it, or of the root-most view if none does. The mouse is already inside `insideViews`.
std::ptrdiff_t RunNormalTrackingPass(const TViews& hitViews, std::ptrdiff_t nodeViewIndex,
                                     const std::vector<boost::weak_ptr<CViewImpl>>& insideViews,
                                     TMouseTracking record) {
  SetNoViewsInFront(record.fState);
  std::ptrdiff_t rootViewIndex = 0;
  for (std::ptrdiff_t i = nodeViewIndex; i >= 0; --i) {
    const bool isHandled = TakeTurn(kNormalTrackingPass, [&] {
      const TViewImplPtr& view = hitViews[static_cast<std::size_t>(i)];
      IViewBehavior* const behavior = view->GetBehavior();
      if (!behavior) return false;
      const bool isInside = std::any_of(insideViews.begin(), insideViews.end(),
                                        [&](const auto& inside) { return IsSameView(inside, view); });
      if (!isInside) MORVANE_CHECK(behavior->IViewBehavior_OnMouseEnterExit(1));
      TFlag handled = 0;
      MORVANE_CHECK(behavior->IViewBehavior_OnMouseTracking(record, kMousePhaseNormal, handled));
      MORVANE_ASSERT((handled == 0) || (handled == 1));
      return handled != 0;
    });
    if (!isHandled) continue;
    rootViewIndex = i;
    MORVANE_ASSERT((rootViewIndex >= 0) && (static_cast<std::vector<TViewImplPtr>::size_type>(rootViewIndex) < hitViews.size()));
    break;
  }
  return rootViewIndex;
}

}  // namespace

void CMouseDispatch::DispatchMove(const TMouseTracking& event) {
  DispatchTracking(event);
  RefreshShape(event.fState);
}

void CMouseDispatch::CheckTracking(const TPoint& point) {
  if (!CanCheckTracking()) return;
  const CFlagScope scope(fIsChecking);
  try {
    fWindow.IMouseWindow_OnLook(point);
    std::optional<CForgetScope> forgetScope;
    TViewList hitViews(fListMemory);
    FindTrackableViews(point, *hitViews);
    std::erase_if(fLastHitViews, [](const auto& view) { return view.expired(); });
    if (std::equal(fLastHitViews.begin(), fLastHitViews.end(), hitViews->begin(), hitViews->end(),
                   IsSameView))
      return;
    DispatchMove(fWindow.IMouseWindow_Sample(point));
    // A view that has been released meanwhile ends with the list.
    if (!std::all_of(hitViews->begin(), hitViews->end(), [](const auto& view) { return view->IsLive(); }))
      forgetScope.emplace(fWindow);
  } catch (...) {
    MORVANE_RETHROW();
  }
}

void CMouseDispatch::DispatchTracking(const TMouseTracking& event) {
  if (fIsTracking) return;
  const CFlagScope scope(fIsTracking);
  if (const boost::shared_ptr<IMouseCapture> capture = fCapture) {
    const CForgetScope forgetScope(fWindow);
    MORVANE_CHECK(capture->IMouseCapture_OnMouseMove(event));
    return;
  }
  // A menu, a control, or another window of the client holds the mouse.
  if (fWindow.IMouseWindow_GetHolder() != TMouseHolder::kNobody) return;

  std::optional<CForgetScope> forgetScope;
  TViewList hitList(fListMemory);
  FindTrackableViews(event.fState.fPosition, *hitList);
  const TViews& hitViews = *hitList;
  fLastHitViews.assign(hitViews.begin(), hitViews.end());
  if (hitViews.empty() && fInsideViews.empty()) return;
  forgetScope.emplace(fWindow);
  // The views that take part in the normal pass.
  TViewList newInsideViews(fListMemory);
  if (!hitViews.empty()) {
    CLentList<IView*> clientViews(fClientListMemory);
    AppendClientViews(hitViews, *clientViews);
    const std::ptrdiff_t nodeViewIndex = RunPreTrackingPass(hitViews, *clientViews, event);
    const std::ptrdiff_t rootViewIndex = RunNormalTrackingPass(hitViews, nodeViewIndex, fInsideViews, event);
    MORVANE_ASSERT(nodeViewIndex >= rootViewIndex);
    newInsideViews->assign(hitViews.begin() + rootViewIndex, hitViews.begin() + nodeViewIndex + 1);
  }
  SendExits(*newInsideViews);
}

void CMouseDispatch::SendExits(const TViews& newInsideViews) {
  // A view that is released in the exit callback of another view still gets its own exit.
  TViewList oldInsideViews(fListMemory);
  for (const boost::weak_ptr<CViewImpl>& inside : fInsideViews)
    if (const TViewImplPtr view = inside.lock()) oldInsideViews->push_back(view);
  for (auto view = oldInsideViews->rbegin(); view != oldInsideViews->rend(); ++view) {
    IViewBehavior* const behavior = (*view)->GetBehavior();
    if (!behavior || std::find(newInsideViews.begin(), newInsideViews.end(), *view) != newInsideViews.end())
      continue;
    TError error = kOK;
    TakeTurn(kExitPass, [&] {
      error = behavior->IViewBehavior_OnMouseEnterExit(0);
      return error == kOK;
    });
    if (error != kOK) PrintIgnoredMouseError(behavior, error, "IViewBehavior_OnMouseEnterExit");
  }
  fInsideViews.assign(newInsideViews.begin(), newInsideViews.end());
}

// --- The shape

void CMouseDispatch::RefreshShape(const TMouseShapeRequest& request) {
  if (fIsRefreshingShape) return;
  const CFlagScope scope(fIsRefreshingShape);
  const std::unique_ptr<IMouseShape> shape = AskForShape(request);
  if (shape || (!fCapture && fWindow.IMouseWindow_GetHolder() == TMouseHolder::kNobody))
    fWindow.IMouseWindow_ShowShape(shape.get(), request.fPosition);
}

std::unique_ptr<IMouseShape> CMouseDispatch::AskForShape(const TMouseShapeRequest& request) {
  std::unique_ptr<IMouseShape> shape;
  if (const boost::shared_ptr<IMouseCapture> capture = fCapture) {
    AssertThatWeHoldTheMouse();
    const CForgetScope forgetScope(fWindow);
    TError error = kOK;
    shape.reset(capture->IMouseCapture_GetMouseShape(request, error));
    MORVANE_CHECK(error);
    return shape;
  }
  if (fWindow.IMouseWindow_GetHolder() != TMouseHolder::kNobody) return nullptr;

  std::optional<CForgetScope> forgetScope;
  TViewList hitList(fListMemory);
  FindTrackableViews(request.fPosition, *hitList);
  const TViews& hitViews = *hitList;
  if (hitViews.empty()) return nullptr;
  forgetScope.emplace(fWindow);
  // The answer of the last view that was asked counts, whether it has handled the request or not.
  const auto ask = [&](const TViewImplPtr& view, TMousePhase phase) {
    return TakeTurn(phase == kMousePhasePre ? kPreShapePhase : kNormalShapePhase, [&] {
      IViewBehavior* const behavior = view->GetBehavior();
      if (!behavior) {
        shape.reset();
        return false;
      }
      TFlag handled = 0;
      TError error = kOK;
      std::unique_ptr<IMouseShape> answer(
          behavior->IViewBehavior_GetMouseShape(request, phase, handled, error));
      MORVANE_CHECK(error);
      MORVANE_ASSERT((handled == 0) || (handled == 1));
      shape = std::move(answer);
      return handled != 0;
    });
  };
  for (const TViewImplPtr& view : hitViews)
    if (ask(view, kMousePhasePre)) return shape;
  for (auto view = hitViews.rbegin(); view != hitViews.rend(); ++view)
    if (ask(*view, kMousePhaseNormal)) return shape;
  return shape;
}

// --- Clicks

void CMouseDispatch::DispatchClick(TMouseEvent event) {
  if (const boost::shared_ptr<IMouseCapture> capture = fCapture) {
    const CForgetScope forgetScope(fWindow);
    MORVANE_CHECK(capture->IMouseCapture_OnMouseDown(event));
    return;
  }
  const TViews hitViews = fWindow.IMouseWindow_GetRootView().HitTest(event.fPosition);
  if (!PreClick(event, hitViews)) HandleClick(event, hitViews);
}

// Releases are passed to a capture only.
void CMouseDispatch::DispatchRelease(const TMouseEvent& event) {
  const boost::shared_ptr<IMouseCapture> capture = fCapture;
  if (!capture) return;
  AssertThatWeHoldTheMouse();
  const CForgetScope forgetScope(fWindow);
  MORVANE_CHECK(capture->IMouseCapture_OnMouseUp(event));
}

// The only place where a click moves the focus. It goes to the front-most view that can have it, among the
// views that the click reaches until one handles it.
bool CMouseDispatch::PreClick(TMouseEvent& event, const TViews& hitViews) {
  ToPreClick(event);
  CLentList<IView*> clientViews(fClientListMemory);
  AppendClientViews(hitViews, *clientViews);
  CViewImpl* focusTarget = nullptr;
  bool changeFocus = false;
  bool isHandled = false;
  for (std::size_t i = 0; i < hitViews.size() && !isHandled; ++i) {
    isHandled = TakeTurn(kClickPhase, [&] {
      CViewImpl& view = *hitViews[i];
      if (!view.IsEffectivelyEnabled()) return false;
      if (view.CanBeFocusTargetNow()) {
        changeFocus = true;
        focusTarget = &view;
      }
      SetViewsInFront(event, *clientViews, i);
      if (const std::uint32_t numViews = event.fViewCount; event.fViews) MORVANE_ASSERT(numViews > 0);
      IViewBehavior* const behavior = view.GetBehavior();
      if (!behavior) return false;
      const CViewImpl* const oldFocusView = fFocus.GetView();
      TFlag handled = 0;
      MORVANE_CHECK(behavior->IViewBehavior_HandleClick(event, handled));
      // The behaviour may have moved the focus itself.
      if (fFocus.GetView() != oldFocusView) changeFocus = false;
      return handled != 0;
    });
  }
  // The view may have been released or disabled meanwhile.
  if (changeFocus && focusTarget->IsLive() && focusTarget->CanBeFocusTargetNow()) fFocus.PassOn(focusTarget);
  return isHandled;
}

void CMouseDispatch::HandleClick(TMouseEvent& event, const TViews& hitViews) {
  ToNormalClick(event);
  SetNoViewsInFront(event);
  for (auto view = hitViews.rbegin(); view != hitViews.rend(); ++view) {
    const bool isHandled = TakeTurn(kClickPhase, [&] {
      IViewBehavior* const behavior = (*view)->GetBehavior();
      if (!(*view)->IsEffectivelyEnabled() || !behavior) return false;
      TFlag handled = 0;
      MORVANE_CHECK(behavior->IViewBehavior_HandleClick(event, handled));
      return handled != 0;
    });
    if (isHandled) return;
  }
}

// --- The wheel

bool CMouseDispatch::DispatchWheel(const TMouseWheelEvent& event) {
  TFlag handled = 0;
  if (const boost::shared_ptr<IMouseCapture> capture = fCapture) {
    AssertThatWeHoldTheMouse();
    const CForgetScope forgetScope(fWindow);
    MORVANE_CHECK(capture->IMouseCapture_OnMouseWheel(event, handled));
  }
  // A capture that handles the wheel keeps it from the views, but not from the system.
  if (handled) return false;
  return OfferAlongFocusChain(fFocus.GetView(), TFocusWalk::kWheel,
                              [&](IViewBehavior& behavior, TFlag& outHandled) {
                                MORVANE_CHECK(behavior.IViewBehavior_OnMouseWheel(event, outHandled));
                              });
}

// --- The capture

void CMouseDispatch::AssertThatWeHoldTheMouse() {
  MORVANE_ASSERT_TEXT("::GetCapture() == GetHwnd()",
                      fWindow.IMouseWindow_GetHolder() == TMouseHolder::kThisWindow);
}

}  // namespace NSMorvane
