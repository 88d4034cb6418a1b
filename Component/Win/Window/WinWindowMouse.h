// The mouse of a window on the side of the system: positions, the native capture, and the pointer. What its
// views hear is decided in MouseDispatch.
#pragma once

#include <windows.h>

#include <boost/shared_ptr.hpp>
#include <cstdint>

#include "Component/Portable/Base/Scopes.h"
#include "Component/Portable/Windows/MouseDispatch.h"
#include "Component/Win/Input/WinMouseQueries.h"
#include "Component/Win/Window/WinWindowCore.h"

namespace NSMorvane {

class CWinWindowTooltips;

enum : std::int32_t { kNoButton = 0, kLeftButton = 1, kRightButton = 2 };

class CWinWindowMouse : private IMouseWindow, CNotCopied {
 public:
  // All of them belong to the same window.
  CWinWindowMouse(const TWindowCore& window, CWindowFocus& focus, CWinWindowTooltips& tooltips)
      : fWindow(window), fTooltips(tooltips), fDispatch(*this, focus) {}

  const CMouseDispatch& GetDispatch() const { return fDispatch; }
  bool IsCaptured() const { return fDispatch.GetCapture() != nullptr; }

  // At the beginning of each message, and after whoever may have changed what the system says.
  void ForgetAnswers() { fGlance.Forget(); }

  // --- Messages; positions are in client coordinates, unless told otherwise

  void OnMove(const TPoint& position);
  // The same over a native control, which has got the message, and from which no departure is reported.
  void OnMoveWithin(const TPoint& position);
  void OnLeave(const TPoint& screenPosition);
  // One click or two.
  void OnPress(std::int32_t clickCount, std::int32_t button, const TPoint& position);
  void OnRelease(std::int32_t button, const TPoint& position);
  void OnContextClick(const TPoint& position);
  // In the units of the system, 120 to a notch. True if a view has taken it.
  bool OnWheel(std::int32_t delta, const TPoint& position);
  // True if the pointer has been set.
  bool OnSetCursor(WORD hitTest);
  // Somebody else has taken the mouse.
  void OnCaptureLost();

  // After whatever may have moved another view under the mouse.
  void CheckTracking(const TPoint& position) { fDispatch.CheckTracking(position); }
  // Asks for the shape of the mouse, and shows it.
  void RefreshShape(const TMouseShapeRequest& request);

  // --- The capture

  // From here to the end of the capture the object alone gets the mouse of the window.
  void AttachCapture(const boost::shared_ptr<IMouseCapture>& capture);
  void DetachCapture();

 private:
  CViewImpl& IMouseWindow_GetRootView() override { return *fWindow.fRootView; }
  bool IMouseWindow_IsOnTopAt(const TPoint& point) override { return fGlance.IsOver(fWindow.fHwnd, point); }
  TMouseHolder IMouseWindow_GetHolder() override;
  void IMouseWindow_ForgetAnswers() override { fGlance.Forget(); }
  TMouseTracking IMouseWindow_Sample(const TPoint& position) override;
  void IMouseWindow_ShowShape(const IMouseShape* shape) override;

  HWND GetHwnd() const { return fWindow.fHwnd; }
  // Has the next departure of the mouse reported by WM_MOUSELEAVE.
  void ArmLeave();

  const TWindowCore& fWindow;
  CWinWindowTooltips& fTooltips;
  CMouseDispatch fDispatch;
  CMouseGlance fGlance;
  HCURSOR fCursor = nullptr;  // as the last answer to the question for the shape has it
  bool fIsLeaveArmed = false;
};

}  // namespace NSMorvane
