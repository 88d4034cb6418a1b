#include "Component/Win/Window/WinRootViewBehavior.h"

#include "Interface/MorvaneWindow.h"

namespace NSMorvane {

TError CWinRootViewBehavior::IViewBehavior_Draw(IDrawTools&) { return kOK; }

TError CWinRootViewBehavior::IViewBehavior_PostProcessDraw(IDrawTools&) { return kOK; }

TError CWinRootViewBehavior::IViewBehavior_OnOffset(std::int32_t, std::int32_t) { return kOtherError; }

TError CWinRootViewBehavior::IViewBehavior_OnEffectivelyEnabledChanged(TFlag) { return kOK; }

TError CWinRootViewBehavior::IViewBehavior_OnOnDutyFocusChanged(TFlag) { return kOK; }

TError CWinRootViewBehavior::IViewBehavior_HandleClick(const TMouseEvent&, TFlag& outHandled) {
  outHandled = 0;
  return kOK;
}

TError CWinRootViewBehavior::IViewBehavior_GetHitRects(IRectsGetter& out) {
  return out.IRectsGetter_AddRects(nullptr, 0);
}

TError CWinRootViewBehavior::IViewBehavior_OnMouseWheel(const TMouseWheelEvent&, TFlag& outHandled) {
  outHandled = 0;
  return kOK;
}

TError CWinRootViewBehavior::IViewBehavior_OnMouseTracking(const TMouseTracking&, TMousePhase,
                                                           TFlag& outHandled) {
  outHandled = 0;
  return kOK;
}

TError CWinRootViewBehavior::IViewBehavior_OnMouseEnterExit(TFlag) { return kOK; }

IMouseShape* CWinRootViewBehavior::IViewBehavior_GetMouseShape(const TMouseShapeRequest&, TMousePhase,
                                                               TFlag& outHandled, TError& outError) {
  outHandled = 0;
  outError = kOK;
  return nullptr;
}

TError CWinRootViewBehavior::IViewBehavior_HandleKeyDown(const TKeyEvent&, TFlag& outHandled) {
  outHandled = 0;
  return kOK;
}

TError CWinRootViewBehavior::IViewBehavior_OnSetupMenuBar(IMenuBarState&) { return kOK; }

TError CWinRootViewBehavior::IViewBehavior_OnMenuCommand(const TMenuCommandEvent&, TFlag& outHandled) {
  outHandled = 0;
  return kOK;
}

TError CWinRootViewBehavior::IViewBehavior_GetNativeFocusTarget(TNativeWindow& out) {
  out.fHwnd = nullptr;
  return kOK;
}

}  // namespace NSMorvane
