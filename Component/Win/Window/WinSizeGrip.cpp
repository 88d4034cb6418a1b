#include "Component/Win/Window/WinSizeGrip.h"

#include "Component/Portable/Base/MorvaneImplUtils.h"

namespace NSMorvane {

void CWinSizeGrip::Make(HWND window) {
  fHwnd = CreateWindowExW(
      WS_EX_NOPARENTNOTIFY, L"SCROLLBAR", nullptr,
      WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | WS_CLIPCHILDREN | SBS_SIZEGRIP | SBS_SIZEBOXBOTTOMRIGHTALIGN,
      0, 0, 0, 0, window, nullptr, GetModuleHandleW(nullptr), nullptr);
  if (!fHwnd) MORVANE_THROW(XOutOfMemory());
}

void CWinSizeGrip::Place() {
  RECT grip;
  RECT client;
  if (!fHwnd || !GetWindowRect(fHwnd, &grip) || !GetClientRect(GetParent(fHwnd), &client)) return;
  const int width = grip.right - grip.left;
  const int height = grip.bottom - grip.top;
  MoveWindow(fHwnd, client.right - width, client.bottom - height, width, height, TRUE);
}

void CWinSizeGrip::Adapt(bool isZoomed) {
  if (!fHwnd) return;
  const bool canSize = !isZoomed;
  const auto enable = [&](bool flag) {
    if ((IsWindowEnabled(fHwnd) != FALSE) != flag) EnableWindow(fHwnd, flag);
  };
  if (canSize) enable(true);
  const LONG style = GetWindowLongW(fHwnd, GWL_STYLE);
  const LONG newStyle =
      canSize ? (style & ~SBS_SIZEBOX) | SBS_SIZEGRIP : (style & ~SBS_SIZEGRIP) | SBS_SIZEBOX;
  if (newStyle != style) SetWindowLongW(fHwnd, GWL_STYLE, newStyle);
  if (!canSize) enable(false);
}

}  // namespace NSMorvane
