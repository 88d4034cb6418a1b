// The contract members of a view.
#include <set>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Contract/MorvaneGlueContract.h"
#include "Component/Portable/Contract/MorvaneGlueValidators.h"
#include "Component/Portable/Contract/MorvaneGlueView.h"

namespace NSMorvane {

TError CViewGlue::IView_GetBehavior(IViewBehavior*& out) {
  MORVANE_ENTER("IView_GetBehavior()", CViewGlue_CheckInvariant());
  out = NULL;
  TError outError;
  CallHook(outError, [&] { out = CViewGlue_GetBehavior(); });
  MORVANE_AFTER(CViewGlue_CheckInvariant());
  return outError;
}

TError CViewGlue::IView_GetMotherWindow(IWindow*& outWindow) {
  MORVANE_ENTER("IView_GetMotherWindow()", CViewGlue_CheckInvariant());
  outWindow = NULL;
  TError outError;
  CallHook(outError, [&] { outWindow = CViewGlue_GetMotherWindow(); });
  MORVANE_AFTER(CViewGlue_CheckInvariant());
  MORVANE_ASSERT(outWindow != NULL);
  return outError;
}

TError CViewGlue::IView_GetSuperView(IView*& out) {
  MORVANE_ENTER("IView_GetSuperView()", CViewGlue_CheckInvariant());
  out = NULL;
  TError outError;
  CallHook(outError, [&] { out = CViewGlue_GetSuperView(); });
  MORVANE_AFTER(CViewGlue_CheckInvariant());
  return outError;
}

TError CViewGlue::IView_IsEffectivelyEnabled(TFlag& outEnabledFlag) {
  MORVANE_ENTER("IView_IsEffectivelyEnabled()", CViewGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] { outEnabledFlag = CViewGlue_IsEffectivelyEnabled() ? 1 : 0; });
  MORVANE_AFTER(CViewGlue_CheckInvariant());
  return outError;
}

// Tests the record before the object, the reverse of the usual order. The client's record may change during
// callbacks, so a copy of it is validated and set.
TError CViewGlue::IView_SetParams(const TViewParams& clientsParams) {
  const TViewParams params = clientsParams;
  MORVANE_REQUIRE("IView_SetParams()", ValidateViewParams(params));
  MORVANE_ENTER("IView_SetParams()", CViewGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] { CViewGlue_SetParams(params); });
  MORVANE_AFTER(CViewGlue_CheckInvariant());
  return outError;
}

TError CViewGlue::IView_GetParams(TViewParams& params) {
  MORVANE_ENTER("IView_GetParams()", CViewGlue_CheckInvariant());
  Poison(params);
  TError outError;
  CallHook(outError, [&] { params = CViewGlue_GetParams(); });
  MORVANE_AFTER(CViewGlue_CheckInvariant());
  if (outError == kOK) MORVANE_ASSERT(ValidateViewParams(params));
  return outError;
}

TError CViewGlue::IView_GetDebugName(char* out) {
  MORVANE_ENTER("IView_GetDebugName()", CViewGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] {
    if (!out) MORVANE_THROW(std::invalid_argument(""));
    const std::string debugName = CViewGlue_GetDebugName();
    MORVANE_ASSERT(debugName.length() <= kDebugNameChars);
    out[debugName.copy(out, kDebugNameChars)] = 0;
  });
  MORVANE_AFTER(CViewGlue_CheckInvariant());
  return outError;
}

TError CViewGlue::IView_GetTooltipText(TChar* out) {
  MORVANE_ENTER("IView_GetTooltipText()", CViewGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] {
    if (!out) MORVANE_THROW(std::invalid_argument(""));
    const TString tooltipText = CViewGlue_GetTooltipText();
    MORVANE_ASSERT(tooltipText.length() <= kTooltipTextChars);
    out[tooltipText.copy(out, kTooltipTextChars)] = 0;
  });
  MORVANE_AFTER(CViewGlue_CheckInvariant());
  return outError;
}

TError CViewGlue::IView_SetTooltipText(const TChar* text) {
  MORVANE_ENTER("IView_SetTooltipText()", CViewGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] { CViewGlue_SetTooltipText(CheckedText(text)); });
  MORVANE_AFTER(CViewGlue_CheckInvariant());
  return outError;
}

TError CViewGlue::IView_Offset(std::int32_t dx, std::int32_t dy) {
  MORVANE_ENTER("IView_Offset()", CViewGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] { CViewGlue_Offset(dx, dy); });
  MORVANE_AFTER(CViewGlue_CheckInvariant());
  return outError;
}

TError CViewGlue::IView_GetSubViewOrder(IViewListReceiver& out) {
  MORVANE_ENTER("IView_GetSubViewOrder()", CViewGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] {
    const std::vector<IView*> subViews = CViewGlue_GetSubViewOrder();
    out.IViewListReceiver_ReceiveViews(subViews.data(), static_cast<std::uint32_t>(subViews.size()));
  });
  MORVANE_AFTER(CViewGlue_CheckInvariant());
  return outError;
}

TError CViewGlue::IView_SetSubViewOrder(IView* const* subViews, std::uint32_t count) {
  MORVANE_ENTER("IView_SetSubViewOrder()", CViewGlue_CheckInvariant());
  std::vector<IView*> newSubViews;
  bool areTheSame = false;
  TError outError;
  CallHook(outError, [&] {
    const std::vector<IView*> oldSubViews = CViewGlue_GetSubViewOrder();
    newSubViews = CheckedArray(subViews, count);
    areTheSame = std::set<IView*>(oldSubViews.begin(), oldSubViews.end()) ==
                 std::set<IView*>(newSubViews.begin(), newSubViews.end());
  });
  if (outError != kOK) return outError;
  MORVANE_REQUIRE_TEXT("IView_SetSubViewOrder()",
                       "(std::set<IView*>(oldSubViews.begin(), oldSubViews.end()) == "
                       "std::set<IView*>(newSubViews.begin(), newSubViews.end()))",
                       areTheSame);
  CallHook(outError, [&] { CViewGlue_SetSubViewOrder(newSubViews); });
  MORVANE_AFTER(CViewGlue_CheckInvariant());
  return outError;
}

// The object is not kept alive, and may be gone after the call.
TError CViewGlue::IView_Release() {
  MORVANE_REQUIRE("IView_Release()", CViewGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] { CViewGlue_Release(); });
  MORVANE_ASSERT(IsValidError(outError));
  return outError;
}

}  // namespace NSMorvane
