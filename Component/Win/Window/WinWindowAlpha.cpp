#include "Component/Win/Window/WinWindowAlpha.h"

#include <exception>

#include "Component/Win/Platform/UtilsWin.h"

namespace NSMorvane {

std::uint8_t CWinWindowAlpha::Get() const {
  const bool isLayered = GetWindowLongPtrW(fWindow.fHwnd, GWL_EXSTYLE) & WS_EX_LAYERED;
  return isLayered ? fAlpha : 255;
}

void CWinWindowAlpha::Set(std::uint8_t alpha) {
  const bool wanted = alpha != 255;
  const LONG_PTR style = GetWindowLongPtrW(fWindow.fHwnd, GWL_EXSTYLE);
  const bool isLayered = style & WS_EX_LAYERED;
  if (wanted != isLayered) {
    if (!wanted && fAlpha != 255) SetLayeredWindowAttributes(fWindow.fHwnd, 0, 255, LWA_ALPHA);
    const LONG_PTR newStyle = wanted ? style | WS_EX_LAYERED : style & ~LONG_PTR{WS_EX_LAYERED};
    SetWindowLongPtrW(fWindow.fHwnd, GWL_EXSTYLE, newStyle);
    if (GetWindowLongPtrW(fWindow.fHwnd, GWL_EXSTYLE) != newStyle) MORVANE_THROW(std::exception());
    // What the system has kept of the window goes with the style.
    if (!wanted)
      RedrawWindow(fWindow.fHwnd, nullptr, nullptr, RDW_ERASE | RDW_INVALIDATE | RDW_FRAME | RDW_ALLCHILDREN);
  }
  if (wanted && !SetLayeredWindowAttributes(fWindow.fHwnd, 0, alpha, LWA_ALPHA)) MORVANE_CHECK_LAST_ERROR();
  fAlpha = alpha;
}

}  // namespace NSMorvane
