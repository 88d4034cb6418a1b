// Mouse dispatch of windows: tracking, shapes, clicks, the wheel, and the capture.
//
// The views under the mouse are walked twice for each event: from the root to the front, where a view can
// claim the event from those in front of it, and then from the front to the root. While a capture is in
// force, its object alone is called. The list of views is taken beforehand and keeps them alive, so that
// whatever they do to the tree, to the window or to each other, the walk comes to its end.
#include <windows.h>
// After the above.
#include <commctrl.h>

#include <algorithm>
#include <optional>

#include "Component/Portable/Views/ViewImpl.h"
#include "Component/Win/Input/WinKeyboard.h"
#include "Component/Win/Input/WinMouseShape.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Window/WindowHost.h"
#include "Component/Win/Window/WinWindow.h"

namespace NSMorvane {

HCURSOR gOverrideCursor = nullptr;

namespace {

using TViews = std::vector<TViewImplPtr>;

constexpr std::int32_t kUnitsPerNotch = 120;

// What the lines about ignored exceptions call the passes.
constexpr char kPreTrackingPass[] = "pre pass of CWinWindow::DispatchMouseTracking.";
constexpr char kNormalTrackingPass[] = "normal pass of CWinWindow::DispatchMouseTracking.";
constexpr char kExitPass[] = "exits of CWinWindow::DispatchMouseTracking.";
constexpr char kPreShapePhase[] = "pre phase of CWinWindow::RefreshMouseShape.";
constexpr char kNormalShapePhase[] = "normal phase of CWinWindow::RefreshMouseShape.";
constexpr char kClickPhase[] = "pre-click phase of CMacRootViewBehavior::HandleClick.";  // both of them; sic

// One view's turn in a pass. If it fails, the next view gets its turn as if this one had not handled the
// event. True if it has.
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

// What is known of the window system may be wrong once a client has been called. It stands in front of the
// list of views that it is about: whoever goes with that is a client, too.
class CForgetScope : CNotCopied {
 public:
  explicit CForgetScope(CMouseGlance& glance) : fGlance(glance) {}
  ~CForgetScope() { fGlance.Forget(); }

 private:
  CMouseGlance& fGlance;
};

bool IsSameView(const boost::weak_ptr<CViewImpl>& a, const TViewImplPtr& b) {
  return !a.owner_before(b) && !b.owner_before(a);
}

// The views as the client gets them.
std::vector<IView*> ClientViews(const TViews& views) {
  std::vector<IView*> result;
  result.reserve(views.size());
  for (const TViewImplPtr& view : views) result.push_back(view.get());
  return result;
}

// In TMouseEvent and TMouseShapeRequest: the views in front of the one at `index`.
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

// --- Records

TMouseTracking MakeTracking(std::uint64_t timeMS, const TPoint& position) {
  TMouseTracking event = {};
  event.fTimeMS = timeMS;
  event.fState.fButtons = GetAsyncMouseButtons();
  event.fState.fPosition = position;
  event.fState.fModifiers = GetAsyncModifiers();
  return event;
}

TMouseEvent MakeClick(TMouseEventType type, std::int32_t button, const TPoint& position) {
  TMouseEvent event = {};
  event.fType = type;
  event.fTimeMS = GetMessageTimeMS();
  event.fButtons = button == kNoButton ? 0 : 1u << (button - 1);
  event.fPosition = position;
  event.fModifiers = GetAsyncModifiers();
  return event;
}

TMouseWheelEvent MakeWheel(std::int32_t delta, const TPoint& position) {
  TMouseWheelEvent event = {};
  event.fType = kMouseEventWheel;
  event.fDeltaNotches = delta / kUnitsPerNotch;
  event.fButtons = GetAsyncMouseButtons();
  event.fPosition = position;
  event.fModifiers = GetAsyncModifiers();
  event.fTimeMS = GetMessageTimeMS();
  return event;
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

TViews CWinWindow::FindTrackableViews(const TPoint& point) {
  // Without a view there, it does not matter what lies on top of the window.
  if (!fRootView->HasSubViewAt(point) || !fMouseGlance.IsOver(fHwnd, point)) return TViews();
  TViews hitViews = fRootView->HitTest(point);
  std::erase_if(hitViews, [](const TViewImplPtr& view) { return !view->IsMouseTrackable(); });
  return hitViews;
}

// --- Tracking

namespace {

// From the root to the front. The view at the result claims the event from those in front of it; it is the
// front-most one if none does.
std::ptrdiff_t RunPreTrackingPass(const TViews& hitViews, TMouseTracking record) {
  const std::vector<IView*> clientViews = ClientViews(hitViews);
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

// From there back to the root. The view at the result keeps the event from those behind it. `insideViews`
// have the mouse inside already.
std::ptrdiff_t RunNormalTrackingPass(const TViews& hitViews, std::ptrdiff_t nodeViewIndex,
                                     const std::list<boost::weak_ptr<CViewImpl>>& insideViews,
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

void CWinWindow::DispatchMouseMove(const TMouseMessage& message) {
  const TMouseTracking event = MakeTracking(GetMessageTimeMS(), message.fPosition);
  DispatchMouseTracking(event);
  RefreshMouseShapeInMessage(event.fState);
}

void CWinWindow::CheckMouseTracking(const TPoint& point) {
  if (fInMouseTrackingCheck || fMouseCapture) return;
  const CFlagScope scope(fInMouseTrackingCheck);
  try {
    std::optional<CForgetScope> forgetScope;
    // The view inspector is not built yet: here it will follow the mouse.
    const TViews hitViews = FindTrackableViews(point);
    std::erase_if(fLastHitViews, [](const auto& view) { return view.expired(); });
    if (std::equal(fLastHitViews.begin(), fLastHitViews.end(), hitViews.begin(), hitViews.end(), IsSameView))
      return;
    forgetScope.emplace(fMouseGlance);
    std::uint64_t now = 0;
    MORVANE_CHECK(fHost->GetMorvane().IMorvane_GetCurrentMS(now));
    const TMouseTracking event = MakeTracking(now, point);
    DispatchMouseTracking(event);
    RefreshMouseShapeInMessage(event.fState);
  } catch (...) {
    MORVANE_RETHROW();
  }
}

void CWinWindow::DispatchMouseTracking(const TMouseTracking& event) {
  if (fInDispatchMouseTracking) return;
  const CFlagScope scope(fInDispatchMouseTracking);
  if (const boost::shared_ptr<IMouseCapture> capture = fMouseCapture) {
    const CForgetScope forgetScope(fMouseGlance);
    MORVANE_CHECK(capture->IMouseCapture_OnMouseMove(event));
    return;
  }
  // A menu, a control, or another window of the client.
  if (fMouseGlance.GetCaptureWindow()) return;

  std::optional<CForgetScope> forgetScope;
  const TViews hitViews = FindTrackableViews(event.fState.fPosition);
  fLastHitViews.assign(hitViews.begin(), hitViews.end());
  if (hitViews.empty() && fMouseTrackingViews.empty()) return;
  forgetScope.emplace(fMouseGlance);
  std::ptrdiff_t nodeViewIndex = -1;
  std::ptrdiff_t rootViewIndex = -1;
  if (!hitViews.empty()) {
    nodeViewIndex = RunPreTrackingPass(hitViews, event);
    rootViewIndex = RunNormalTrackingPass(hitViews, nodeViewIndex, fMouseTrackingViews, event);
  }
  // Those that took part in the normal pass.
  TViews newMouseTrackingViews;
  if (nodeViewIndex >= 0 && rootViewIndex >= 0) {
    MORVANE_ASSERT(nodeViewIndex >= rootViewIndex);
    newMouseTrackingViews.assign(hitViews.begin() + rootViewIndex, hitViews.begin() + nodeViewIndex + 1);
    MORVANE_ASSERT(newMouseTrackingViews.size() > 0);
  }
  SendMouseExits(newMouseTrackingViews);
}

void CWinWindow::SendMouseExits(const TViews& newMouseTrackingViews) {
  std::erase_if(fMouseTrackingViews, [](const auto& view) { return view.expired(); });
  // One that another one's exit releases still gets its own.
  TViews insideViews;
  for (const boost::weak_ptr<CViewImpl>& view : fMouseTrackingViews) insideViews.push_back(view.lock());
  auto view = insideViews.rbegin();
  for (auto i = fMouseTrackingViews.rbegin(); i != fMouseTrackingViews.rend(); ++i, ++view) {
    MORVANE_ASSERT(!(i->expired()));
    const auto& views = newMouseTrackingViews;
    IViewBehavior* const behavior = (*view)->GetBehavior();
    if (!behavior || std::find(views.begin(), views.end(), *view) != views.end()) continue;
    TError error = kOK;
    TakeTurn(kExitPass, [&] {
      error = behavior->IViewBehavior_OnMouseEnterExit(0);
      return error == kOK;
    });
    if (error != kOK)
      DebugPrint("The view behavior " + HandleText(behavior) + "returned the error " +
                 NumberText(static_cast<std::int32_t>(error)) +
                 " when IViewBehavior_OnMouseEnterExit was called. The error will be ignored in order to not "
                 "disrupt the mouse tracking.");
  }
  fMouseTrackingViews.assign(newMouseTrackingViews.begin(), newMouseTrackingViews.end());
}

void CWinWindow::ArmMouseLeave() {
  if (fMouseLeaveArmed) return;
  TRACKMOUSEEVENT request = {};
  request.cbSize = sizeof(request);
  request.dwFlags = TME_LEAVE;
  request.hwndTrack = fHwnd;
  if (!TrackMouseEvent(&request)) MORVANE_THROW_LAST_ERROR();
  fMouseLeaveArmed = true;
}

// --- The shape

void CWinWindow::RefreshMouseShape(const TMouseShapeRequest& request) {
  fMouseGlance.Forget();
  RefreshMouseShapeInMessage(request);
}

void CWinWindow::RefreshMouseShapeInMessage(const TMouseShapeRequest& request) {
  if (fInRefreshMouseShape) return;
  const CFlagScope scope(fInRefreshMouseShape);
  if (const std::unique_ptr<IMouseShape> shape = AskForMouseShape(request)) {
    SetCurrentCursor(NativeCursorOf(*shape));
  } else if (!fMouseGlance.GetCaptureWindow()) {
    static const HCURSOR arrow = LoadCursorW(nullptr, IDC_ARROW);
    SetCurrentCursor(arrow);
  }
}

std::unique_ptr<IMouseShape> CWinWindow::AskForMouseShape(const TMouseShapeRequest& request) {
  std::unique_ptr<IMouseShape> shape;
  if (const boost::shared_ptr<IMouseCapture> capture = fMouseCapture) {
    MORVANE_ASSERT_TEXT("::GetCapture() == GetHwnd()", fMouseGlance.GetCaptureWindow() == GetHwnd());
    const CForgetScope forgetScope(fMouseGlance);
    TError error = kOK;
    shape.reset(capture->IMouseCapture_GetMouseShape(request, error));
    MORVANE_CHECK(error);
    return shape;
  }
  if (fMouseGlance.GetCaptureWindow()) return nullptr;

  std::optional<CForgetScope> forgetScope;
  const TViews hitViews = FindTrackableViews(request.fPosition);
  if (hitViews.empty()) return nullptr;
  forgetScope.emplace(fMouseGlance);
  // The answer of the last view that was asked stands, handled or not.
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

void CWinWindow::SetCurrentCursor(HCURSOR cursor) {
  fCurrentCursor = cursor;
  if (!gOverrideCursor && cursor) SetCursor(cursor);
}

void SetOverrideCursor(HCURSOR cursor) {
  gOverrideCursor = cursor;
  if (cursor) SetCursor(cursor);
}

// --- Clicks

void CWinWindow::DispatchMouseDown(const TMouseMessage& message) {
  TMouseEvent event = MakeClick(message.fClickCount == 2 ? kMouseEventDoubleClick : kMouseEventClick,
                                message.fButton, message.fPosition);
  DispatchClick(event);
}

void CWinWindow::DispatchContextClick(const TMouseMessage& message) {
  TMouseEvent event = MakeClick(kMouseEventContextClick, kNoButton, message.fPosition);
  DispatchClick(event);
}

// Only a capture hears of it.
void CWinWindow::DispatchMouseUp(const TMouseMessage& message) {
  const boost::shared_ptr<IMouseCapture> capture = fMouseCapture;
  if (!capture) return;
  MORVANE_ASSERT_TEXT("::GetCapture() == GetHwnd()", GetCapture() == GetHwnd());
  MORVANE_CHECK(
      capture->IMouseCapture_OnMouseUp(MakeClick(kMouseEventClick, message.fButton, message.fPosition)));
}

// True if somebody took it.
bool CWinWindow::DispatchClick(TMouseEvent& event) {
  if (const boost::shared_ptr<IMouseCapture> capture = fMouseCapture) {
    MORVANE_CHECK(capture->IMouseCapture_OnMouseDown(event));
    return true;
  }
  const TViews hitViews = fRootView->HitTest(event.fPosition);
  return PreClick(event, hitViews) || HandleClick(event, hitViews);
}

// The only place where a click moves the focus: to the front-most view that can have it, among those that
// nobody has stopped the click before.
bool CWinWindow::PreClick(TMouseEvent& event, const TViews& hitViews) {
  ToPreClick(event);
  const std::vector<IView*> clientViews = ClientViews(hitViews);
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
      SetViewsInFront(event, clientViews, i);
      if (const std::uint32_t numViews = event.fViewCount; event.fViews) MORVANE_ASSERT(numViews > 0);
      IViewBehavior* const behavior = view.GetBehavior();
      if (!behavior) return false;
      const CViewImpl* const oldFocusView = fFocus.GetView();
      TFlag handled = 0;
      MORVANE_CHECK(behavior->IViewBehavior_HandleClick(event, handled));
      // The behaviour may have seen to the focus itself.
      if (fFocus.GetView() != oldFocusView) changeFocus = false;
      return handled != 0;
    });
  }
  // It may have been released or disabled meanwhile.
  if (changeFocus && focusTarget->IsLive() && focusTarget->CanBeFocusTargetNow())
    IImplFocusTools_SetConceptualFocusView(focusTarget);
  return isHandled;
}

bool CWinWindow::HandleClick(TMouseEvent& event, const TViews& hitViews) {
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
    if (isHandled) return true;
  }
  return false;
}

// --- The wheel

bool CWinWindow::DispatchMouseWheel(const TMouseMessage& message) {
  const TMouseWheelEvent event = MakeWheel(message.fWheelDelta, message.fPosition);
  TFlag handled = 0;
  if (const boost::shared_ptr<IMouseCapture> capture = fMouseCapture) {
    MORVANE_ASSERT_TEXT("::GetCapture() == GetHwnd()", GetCapture() == GetHwnd());
    MORVANE_CHECK(capture->IMouseCapture_OnMouseWheel(event, handled));
  }
  // A capture keeps it from the views, but not from the system.
  if (handled) return false;
  return OfferAlongFocusChain(false, [&](IViewBehavior& behavior, TFlag& outHandled) {
    MORVANE_CHECK(behavior.IViewBehavior_OnMouseWheel(event, outHandled));
  });
}

// --- The capture

void CWinWindow::AttachMouseCapture(const boost::shared_ptr<IMouseCapture>& capture) {
  MORVANE_ASSERT(capture != 0);
  MORVANE_ASSERT(::GetCapture() != GetHwnd());
  ActivateTooltips(false);
  SetCapture(fHwnd);
  MORVANE_ASSERT(::GetCapture() == GetHwnd());
  fMouseCapture = capture;
}

void CWinWindow::DetachMouseCapture() {
  // Without its object, the window takes no notice of the loss that follows.
  boost::shared_ptr<IMouseCapture> capture;
  capture.swap(fMouseCapture);
  const BOOL result = ReleaseCapture();
  ActivateTooltips(true);
  MORVANE_ASSERT(result);
}

// Somebody else has taken the mouse. The client's object simply drops out.
void CWinWindow::OnMouseCaptureLost() {
  fHost->ForgetMouseCaptureWindow();
  boost::shared_ptr<IMouseCapture> capture;
  capture.swap(fMouseCapture);
  // In a window that is not active they stay off; mostly the capture goes because another one is.
  if (CWindowGlue_IsActive()) ActivateTooltips(true);
}

void CWinWindow::ActivateTooltips(bool active) {
  if (fTooltipHwnd) SendMessageW(fTooltipHwnd, TTM_ACTIVATE, active ? TRUE : FALSE, 0);
}

}  // namespace NSMorvane
