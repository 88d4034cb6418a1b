#include "Component/Win/WindowKinds/WinDocumentWindow.h"

#include "Component/Portable/Views/FocusChain.h"
#include "Component/Win/Window/WindowHost.h"
#include "Component/Win/Window/WindowRegistry.h"

namespace NSMorvane {

namespace {

DWORD DocumentWindowStyle(TStyleFlags styleFlags) {
  DWORD style = WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN | WS_MINIMIZEBOX;
  style |= styleFlags & kWindowResizableBit ? WS_THICKFRAME : WS_BORDER;
  if (styleFlags & kWindowZoomableBit) style |= WS_MAXIMIZEBOX;
  return style;
}

}  // namespace

CDocumentWindowImpl::CDocumentWindowImpl(IWindowHost* host, TStyleFlags styleFlags, bool listedInWindowMenu)
    : CWinWindowKind(host, kWindowKindDocument, nullptr, DocumentWindowStyle(styleFlags), WS_EX_ACCEPTFILES,
                     (styleFlags & kWindowStyleBit23) != 0, listedInWindowMenu, true) {
  GetRegistry().CountDocumentWindow(1);
}

CDocumentWindowImpl::~CDocumentWindowImpl() {
  EndKind();
  GetRegistry().CountDocumentWindow(-1);
}

bool CDocumentWindowImpl::OnMenuCommand(const TMenuCommandEvent& event) {
  const bool isTaken = OfferAlongFocusChain(
      GetFocusView(), TFocusWalk::kCommand, [&](IViewBehavior& behavior, TFlag& outHandled) {
        MORVANE_CHECK(behavior.IViewBehavior_OnMenuCommand(event, outHandled));
      });
  if (isTaken) return true;
  TFlag handled = 0;
  if (fBehavior) {
    MORVANE_CHECK(fBehavior->IDocumentWindowBehavior_OnMenuCommand(event, handled));
    if (handled) return true;
  }
  // Fetched from the host, since the run and its behaviour may have ended before the window.
  IMorvaneRunBehavior* const runBehavior = GetHost().GetBehavior();
  if (!runBehavior) return false;
  MORVANE_CHECK(runBehavior->IMorvaneRunBehavior_OnMenuCommand(event, handled));
  return handled != 0;
}

}  // namespace NSMorvane
