// The behaviour of every root view: it draws nothing, takes nothing and cannot be hit.
#pragma once

#include "Interface/MorvaneView.h"

namespace NSMorvane {

class CWinRootViewBehavior : public IViewBehavior {
 public:
  TError IViewBehavior_Draw(IDrawTools& tools) override;
  TError IViewBehavior_PostProcessDraw(IDrawTools& tools) override;
  // Root views do not move: kOtherError.
  TError IViewBehavior_OnOffset(std::int32_t dx, std::int32_t dy) override;
  TError IViewBehavior_OnEffectivelyEnabledChanged(TFlag enabled) override;
  TError IViewBehavior_OnOnDutyFocusChanged(TFlag gained) override;
  TError IViewBehavior_HandleClick(const TMouseEvent& event, TFlag& outHandled) override;
  TError IViewBehavior_GetHitRects(IRectsGetter& out) override;
  TError IViewBehavior_OnMouseWheel(const TMouseWheelEvent& event, TFlag& outHandled) override;
  TError IViewBehavior_OnMouseTracking(const TMouseTracking& event, TMousePhase phase,
                                       TFlag& outHandled) override;
  TError IViewBehavior_OnMouseEnterExit(TFlag entered) override;
  IMouseShape* IViewBehavior_GetMouseShape(const TMouseShapeRequest& request, TMousePhase phase,
                                           TFlag& outHandled, TError& outError) override;
  TError IViewBehavior_HandleKeyDown(const TKeyEvent& event, TFlag& outHandled) override;
  TError IViewBehavior_OnSetupMenuBar(IMenuBarState& state) override;
  TError IViewBehavior_OnMenuCommand(const TMenuCommandEvent& event, TFlag& outHandled) override;
  TError IViewBehavior_GetNativeFocusTarget(TNativeWindow& out) override;
};

}  // namespace NSMorvane
