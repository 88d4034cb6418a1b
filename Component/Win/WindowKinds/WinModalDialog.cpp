#include "Component/Win/WindowKinds/WinModalDialog.h"

namespace NSMorvane {

namespace {

DWORD ModalDialogStyle(TStyleFlags styleFlags) {
  DWORD style = WS_POPUP | WS_CLIPSIBLINGS | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME;
  if (styleFlags & kWindowResizableBit) style |= WS_THICKFRAME;
  return style;
}

constexpr DWORD kModalDialogExStyle = WS_EX_CONTROLPARENT | WS_EX_WINDOWEDGE | WS_EX_DLGMODALFRAME;

}  // namespace

// A dialog with a close command is also listed in the window menu.
CModalDialogImpl::CModalDialogImpl(IWindowHost* host, IModalOwner* owner, TStyleFlags styleFlags)
    : CWinWindowKind(host, kWindowKindModalDialog, owner, ModalDialogStyle(styleFlags), kModalDialogExStyle,
                     (styleFlags & kWindowStyleBit22) != 0, (styleFlags & kWindowStyleBit23) != 0,
                     (styleFlags & kWindowStyleBit23) != 0) {}

CModalDialogImpl::~CModalDialogImpl() { EndKind(); }

}  // namespace NSMorvane
