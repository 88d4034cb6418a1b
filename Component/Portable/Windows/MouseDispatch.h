// Passes mouse events to the views of one window, and to its capture: tracking, shapes, clicks and the wheel.
//
// For each event the views under the mouse are walked twice: from the root to the front, where a view can
// claim the event from those in front of it, and then from the front to the root, where a view can keep it
// from those behind it. While a capture is in force, only the capture is called. The list of views is made
// beforehand and keeps them alive, so that the walk can be completed whatever they do to the tree, to the
// window or to each other. The caller keeps the window alive.
#pragma once

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>
#include <memory>
#include <utility>
#include <vector>

#include "Component/Portable/Base/LentList.h"
#include "Component/Portable/Base/Scopes.h"
#include "Component/Portable/Views/ViewImpl.h"
#include "Component/Portable/Windows/WindowFocus.h"
#include "Interface/MorvaneMouse.h"

namespace NSMorvane {

// Who has captured the mouse, for the window system.
enum class TMouseHolder { kNobody, kThisWindow, kAnother };

// What mouse dispatch needs of the window.
class IMouseWindow {
 public:
  virtual CViewImpl& IMouseWindow_GetRootView() = 0;
  // Whether no other window lies above this one at a point in client coordinates.
  virtual bool IMouseWindow_IsOnTopAt(const TPoint& point) = 0;
  virtual TMouseHolder IMouseWindow_GetHolder() = 0;
  // Called after a client callback, which may have changed the answers of the two operations above.
  virtual void IMouseWindow_ForgetAnswers() = 0;
  // The given position, with the buttons and modifier keys that are down now, and the current time.
  virtual TMouseTracking IMouseWindow_Sample(const TPoint& position) = 0;
  // A look at the views under the mouse begins, at a point in client coordinates. The window may call
  // clients, and then forgets its answers by itself.
  virtual void IMouseWindow_OnLook(const TPoint& point) = 0;
  // Null shows the usual pointer, unless the position, where the mouse is, is not this window's.
  virtual void IMouseWindow_ShowShape(const IMouseShape* shape, const TPoint& position) = 0;

 protected:
  virtual ~IMouseWindow() = default;
};

class CMouseDispatch : CNotCopied {
 public:
  CMouseDispatch(IMouseWindow& window, CWindowFocus& focus) : fWindow(window), fFocus(focus) {}

  // --- What happens to the mouse; all positions are in client coordinates

  void DispatchMove(const TMouseTracking& event);
  // Called while the mouse rests: another view may have come under it.
  void CheckTracking(const TPoint& point);
  // If not, it would do nothing: a capture is in force, or such a check is under way.
  bool CanCheckTracking() const { return !fIsChecking && !fCapture; }
  // If not, it would find nothing, wherever the mouse is: the window has no views but its root view, and none
  // was under the mouse at the last look.
  bool HasViewsToCheck(const CViewImpl& rootView) const {
    return !rootView.GetRawSubViews().empty() || !fLastHitViews.empty();
  }
  // A press, or a context click.
  void DispatchClick(TMouseEvent event);
  void DispatchRelease(const TMouseEvent& event);
  // True if a view has handled it.
  bool DispatchWheel(const TMouseWheelEvent& event);
  // Asks for the shape of the mouse, and shows it.
  void RefreshShape(const TMouseShapeRequest& request);

  // --- The capture

  // From here on only `capture` gets the mouse events of the window.
  void SetCapture(const boost::shared_ptr<IMouseCapture>& capture) { fCapture = capture; }
  // Ends the capture, if there is one, and returns it. The object is deleted with the last reference to it.
  boost::shared_ptr<IMouseCapture> TakeCapture() { return std::exchange(fCapture, nullptr); }
  // Null if none is in force.
  const boost::shared_ptr<IMouseCapture>& GetCapture() const { return fCapture; }

 private:
  using TViews = std::vector<TViewImplPtr>;
  using TViewList = CLentList<TViewImplPtr>;
  using TWeakViews = std::vector<boost::weak_ptr<CViewImpl>>;

  void FindTrackableViews(const TPoint& point, TViews& outViews);
  void DispatchTracking(const TMouseTracking& event);
  void SendExits(const TViews& newInsideViews);
  std::unique_ptr<IMouseShape> AskForShape(const TMouseShapeRequest& request);
  bool PreClick(TMouseEvent& event, const TViews& hitViews);
  void HandleClick(TMouseEvent& event, const TViews& hitViews);
  void AssertThatWeHoldTheMouse();

  IMouseWindow& fWindow;
  CWindowFocus& fFocus;
  boost::shared_ptr<IMouseCapture> fCapture;
  CListMemory<TViewImplPtr> fListMemory;
  CListMemory<IView*> fClientListMemory;
  TWeakViews fInsideViews;   // the views that the mouse has entered
  TWeakViews fLastHitViews;  // the views that were under it at the last tracking
  bool fIsChecking = false;
  bool fIsTracking = false;
  bool fIsRefreshingShape = false;
};

}  // namespace NSMorvane
