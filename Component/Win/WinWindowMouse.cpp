// Mouse dispatch of windows.
#include "Component/Win/UtilsWin.h"
#include "Component/Win/WinWindow.h"

namespace NSMorvane {

HCURSOR gOverrideCursor = nullptr;

// Mouse dispatch is not built yet: nobody is told of the mouse.

void CWinWindow::CheckMouseTracking(const TPoint&) {}

void CWinWindow::DispatchMouseMove(const TMouseMessage&) {}

void CWinWindow::DispatchMouseDown(const TMouseMessage&) {}

void CWinWindow::DispatchMouseUp(const TMouseMessage&) {}

void CWinWindow::DispatchContextClick(const TMouseMessage&) {}

bool CWinWindow::DispatchMouseWheel(const TMouseMessage&) { return false; }

void CWinWindow::ArmMouseLeave() {
  if (fMouseLeaveArmed) return;
  TRACKMOUSEEVENT request = {};
  request.cbSize = sizeof(request);
  request.dwFlags = TME_LEAVE;
  request.hwndTrack = fHwnd;
  if (!TrackMouseEvent(&request)) MORVANE_THROW_LAST_ERROR();
  fMouseLeaveArmed = true;
}

}  // namespace NSMorvane
