#include "Component/Win/WindowKinds/WinFloatingWindow.h"

namespace NSMorvane {

namespace {

DWORD FloatingWindowStyle(TStyleFlags styleFlags) {
  DWORD style = WS_POPUP | WS_CLIPCHILDREN | WS_CAPTION | WS_SYSMENU;
  style |= styleFlags & kWindowResizableBit ? WS_THICKFRAME : WS_BORDER;
  if (styleFlags & kWindowZoomableBit) style |= WS_MAXIMIZEBOX;
  return style;
}

constexpr DWORD kFloatingWindowExStyle = WS_EX_WINDOWEDGE | WS_EX_TOOLWINDOW | WS_EX_TOPMOST;

}  // namespace

CFloatingWindowImpl::CFloatingWindowImpl(IWindowHost* host, TStyleFlags styleFlags)
    : CWinWindowKind(host, kWindowKindFloating, nullptr, FloatingWindowStyle(styleFlags),
                     kFloatingWindowExStyle, (styleFlags & kWindowStyleBit24) != 0, false,
                     (styleFlags & kWindowStyleBit23) != 0) {}

CFloatingWindowImpl::~CFloatingWindowImpl() { EndKind(); }

}  // namespace NSMorvane
