#include "Component/Win/WindowKinds/WinModelessDialog.h"

namespace NSMorvane {

namespace {

DWORD ModelessDialogStyle(TStyleFlags styleFlags) {
  DWORD style = WS_POPUP | WS_CLIPCHILDREN;
  if (styleFlags & kModelessDialogBorderlessBit) return style;
  style |= WS_CAPTION | WS_SYSMENU;
  style |= styleFlags & kWindowResizableBit ? WS_THICKFRAME : WS_BORDER;
  if (styleFlags & kWindowZoomableBit) style |= WS_MAXIMIZEBOX;
  return style;
}

}  // namespace

CModelessDialogImpl::CModelessDialogImpl(IWindowHost* host, TStyleFlags styleFlags, bool listedInWindowMenu)
    : CWinWindowKind(host, kWindowKindModelessDialog, nullptr, ModelessDialogStyle(styleFlags), 0,
                     (styleFlags & kWindowStyleBit24) != 0, listedInWindowMenu,
                     (styleFlags & kWindowStyleBit23) != 0) {}

CModelessDialogImpl::~CModelessDialogImpl() { EndKind(); }

}  // namespace NSMorvane
