// What the views of one window, and its capture, hear of the mouse: tracking, shapes, clicks and the wheel.
//
// The views under the mouse are walked twice for each event: from the root to the front, where a view can
// claim the event from those in front of it, and then from the front to the root, where a view can keep it
// from those behind it. While a capture is in force, its object alone is called. The list of views is taken
// beforehand and keeps them alive, so that whatever they do to the tree, to the window or to each other, the
// walk comes to its end. The window itself is kept alive by whoever calls in here.
#pragma once

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>
#include <memory>
#include <utility>
#include <vector>

#include "Component/Portable/Base/Scopes.h"
#include "Component/Portable/Views/ViewImpl.h"
#include "Component/Portable/Windows/WindowFocus.h"
#include "Interface/MorvaneMouse.h"

namespace NSMorvane {

// Who gets the mouse by the window system's will.
enum class TMouseHolder { kNobody, kThisWindow, kAnother };

// The window as its mouse sees it.
class IMouseWindow {
 public:
  virtual CViewImpl& IMouseWindow_GetRootView() = 0;
  // Whether no other window lies above this one at a point in client coordinates.
  virtual bool IMouseWindow_IsOnTopAt(const TPoint& point) = 0;
  virtual TMouseHolder IMouseWindow_GetHolder() = 0;
  // A client has been called, who may have changed the answers to the two questions above.
  virtual void IMouseWindow_ForgetAnswers() = 0;
  // What is held down now, with the time of now.
  virtual TMouseTracking IMouseWindow_Sample(const TPoint& position) = 0;
  // Null: the usual pointer.
  virtual void IMouseWindow_ShowShape(const IMouseShape* shape) = 0;

 protected:
  virtual ~IMouseWindow() = default;
};

class CMouseDispatch : CNotCopied {
 public:
  CMouseDispatch(IMouseWindow& window, CWindowFocus& focus) : fWindow(window), fFocus(focus) {}

  // --- What happens to the mouse; all positions are in client coordinates

  void DispatchMove(const TMouseTracking& event);
  // A view, or another one, may have come under a mouse that rests.
  void CheckTracking(const TPoint& point);
  // A press, or a context click.
  void DispatchClick(TMouseEvent event);
  void DispatchRelease(const TMouseEvent& event);
  // True if a view has taken it.
  bool DispatchWheel(const TMouseWheelEvent& event);
  // Asks for the shape of the mouse, and shows it.
  void RefreshShape(const TMouseShapeRequest& request);

  // --- The capture

  // From here on the object alone gets the mouse of the window.
  void SetCapture(const boost::shared_ptr<IMouseCapture>& capture) { fCapture = capture; }
  // The end of the capture, if there is one. The object goes with the result, at the latest.
  boost::shared_ptr<IMouseCapture> TakeCapture() { return std::exchange(fCapture, nullptr); }
  // Null: none is in force.
  const boost::shared_ptr<IMouseCapture>& GetCapture() const { return fCapture; }

 private:
  using TViews = std::vector<TViewImplPtr>;
  using TWeakViews = std::vector<boost::weak_ptr<CViewImpl>>;

  TViews FindTrackableViews(const TPoint& point);
  void DispatchTracking(const TMouseTracking& event);
  void SendExits(const TViews& newInsideViews);
  std::unique_ptr<IMouseShape> AskForShape(const TMouseShapeRequest& request);
  bool PreClick(TMouseEvent& event, const TViews& hitViews);
  void HandleClick(TMouseEvent& event, const TViews& hitViews);
  void AssertThatWeHoldTheMouse();

  IMouseWindow& fWindow;
  CWindowFocus& fFocus;
  boost::shared_ptr<IMouseCapture> fCapture;
  TWeakViews fInsideViews;   // those that the mouse is inside of
  TWeakViews fLastHitViews;  // those that were under it when they were last told
  bool fIsChecking = false;
  bool fIsTracking = false;
  bool fIsRefreshingShape = false;
};

}  // namespace NSMorvane
