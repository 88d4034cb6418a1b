// The native side of the mouse of a window: positions, the capture and the pointer. MouseDispatch decides
// what the views hear.
#pragma once

#include <windows.h>

#include <boost/shared_ptr.hpp>
#include <cstdint>

#include "Component/Portable/Base/Scopes.h"
#include "Component/Portable/Windows/MouseDispatch.h"
#include "Component/Win/Input/WinMouseQueries.h"
#include "Component/Win/Window/WinWindowCore.h"

namespace NSMorvane {

class CWinViewInspector;
class CWinWindowTooltips;

enum : std::int32_t { kNoButton = 0, kLeftButton = 1, kRightButton = 2 };

class CWinWindowMouse : private IMouseWindow, CNotCopied {
 public:
  // All of them belong to the same window.
  CWinWindowMouse(const TWindowCore& window, CWindowFocus& focus, CWinWindowTooltips& tooltips,
                  CWinViewInspector& inspector)
      : fWindow(window), fTooltips(tooltips), fInspector(inspector), fDispatch(*this, focus) {}

  const CMouseDispatch& GetDispatch() const { return fDispatch; }
  bool IsCaptured() const { return fDispatch.GetCapture() != nullptr; }

  // Called at the beginning of each message.
  void OnMessage(UINT message) { fGlance.OnMessage(message); }
  // Called after calls that may have changed what the system answers.
  void ForgetAnswers() { fGlance.Forget(); }

  // --- Messages; positions are in client coordinates, unless told otherwise

  void OnMove(const TPoint& position);
  // The same over a native control, which has got the message, or when the mouse has left it. WM_MOUSELEAVE
  // is not requested there.
  void OnMoveOverControl(const TPoint& position, bool isInside);
  void OnLeave(const TPoint& screenPosition);
  // `clickCount` is 2 for a double click.
  void OnPress(std::int32_t clickCount, std::int32_t button, const TPoint& position);
  void OnRelease(std::int32_t button, const TPoint& position);
  void OnContextClick(const TPoint& position);
  // `delta` is in the units of the system, 120 to a notch. What is less than a notch waits for the next turn
  // in the same direction, as long as the window is active. True if a view has handled it.
  bool OnWheel(std::int32_t delta, const TPoint& position);
  void OnDeactivated() { fWheelRest = 0; }
  // True if the pointer has been set.
  bool OnSetCursor(WORD hitTest);
  // The same for a child window, which shows its own pointer otherwise.
  bool OnSetCursorInChild(WORD hitTest);
  // The window has lost the native capture.
  void OnCaptureLost();

  // Called after anything that may have moved another view under the mouse.
  void CheckTracking(const TPoint& position) { fDispatch.CheckTracking(position); }
  // If not, it would do nothing.
  bool CanCheckTracking() const;
  // Asks the views for the mouse shape and shows it.
  void RefreshShape(const TMouseShapeRequest& request);

  // --- The capture

  // Until the end of the capture the object alone gets the mouse events of the window.
  void AttachCapture(const boost::shared_ptr<IMouseCapture>& capture);
  void DetachCapture();

 private:
  CViewImpl& IMouseWindow_GetRootView() override { return *fWindow.fRootView; }
  bool IMouseWindow_IsOnTopAt(const TPoint& point) override { return fGlance.IsOver(fWindow.fHwnd, point); }
  TMouseHolder IMouseWindow_GetHolder() override;
  void IMouseWindow_ForgetAnswers() override { fGlance.Forget(); }
  TMouseTracking IMouseWindow_Sample(const TPoint& position) override;
  void IMouseWindow_OnLook(const TPoint& point) override;
  void IMouseWindow_ShowShape(const IMouseShape* shape, const TPoint& position) override;

  HWND GetHwnd() const { return fWindow.fHwnd; }
  void OnMoveWithin(const TPoint& position);
  bool IsOverClientArea(const TPoint& position);
  // Requests WM_MOUSELEAVE for the next time that the mouse leaves the window.
  void ArmLeave();

  const TWindowCore& fWindow;
  CWinWindowTooltips& fTooltips;
  CWinViewInspector& fInspector;
  CMouseDispatch fDispatch;
  CMouseGlance fGlance;
  HCURSOR fCursor = nullptr;    // the shape that the views gave last, or the arrow
  std::int32_t fWheelRest = 0;  // units that no view has been told of
  bool fIsLeaveArmed = false;
  bool fIsShapeGiven = false;   // fCursor is that of a view
  bool fIsOverControl = false;  // which shows its own pointer, unless a view gives a shape
};

}  // namespace NSMorvane
