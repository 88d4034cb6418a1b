// The contract members of a window, of whatever kind.
#include <algorithm>
#include <set>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Contract/MorvaneGlueContract.h"
#include "Component/Portable/Contract/MorvaneGlueValidators.h"
#include "Component/Portable/Views/ViewImpl.h"
#include "Component/Portable/Windows/MorvaneGlueWindow.h"

namespace NSMorvane {

namespace {

// The window that a view belongs to, or null if the view fails to tell.
IWindow* GetMotherWindow(IView& view) {
  IWindow* window = NULL;
  return view.IView_GetMotherWindow(window) == kOK ? window : NULL;
}

// The compiler assumes that the address of a reference is not null. The volatile parameter keeps it from
// dropping the comparison.
bool IsThere(const volatile void* address) { return address != NULL; }

// Whether the view is below `root`, with nothing but live views on the way.
bool IsLiveBelow(const CViewImpl& view, const CViewImpl& root) {
  const CViewImpl* superView = &view;
  while (superView && superView != &root && superView->IsLive()) superView = superView->GetSuperView().get();
  return superView == &root && &view != &root;
}

}  // namespace

bool AreValidTabViews(const std::vector<CViewImpl*>& tabViews, IWindow* window) {
  if (std::set<CViewImpl*>(tabViews.begin(), tabViews.end()).size() != tabViews.size()) return false;
  IView* rootView = NULL;
  if (window->IWindow_GetRootView(rootView) != kOK) return false;
  const CViewImpl* const root = dynamic_cast<CViewImpl*>(rootView);
  return root && std::all_of(tabViews.begin(), tabViews.end(),
                             [&](const CViewImpl* view) { return view && IsLiveBelow(*view, *root); });
}

CWindowGlue::CWindowGlue() {
  DebugPrint("CWindowGlue::CWindowGlue()");
  DebugIndentScope indent;
}

CWindowGlue::~CWindowGlue() {
  DebugPrint("CWindowGlue::~CWindowGlue()");
  DebugIndentScope indent;
}

TError CWindowGlue::IWindow_GetNativeWindow(TNativeWindow& outNativeWindow) {
  MORVANE_ENTER("IWindow_GetNativeWindow()", CWindowGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] { outNativeWindow = CWindowGlue_GetNativeWindow(); });
  MORVANE_AFTER(CWindowGlue_CheckInvariant());
  if (outError == kOK) MORVANE_ASSERT(IsValidNativeWindow(outNativeWindow));
  return outError;
}

TError CWindowGlue::IWindow_GetOnDutyFocusView(IView*& out) {
  MORVANE_ENTER("IWindow_GetOnDutyFocusView()", CWindowGlue_CheckInvariant());
  out = NULL;
  TError outError;
  CallHook(outError, [&] { out = CWindowGlue_GetOnDutyFocusView(); });
  MORVANE_AFTER(CWindowGlue_CheckInvariant());
  return outError;
}

TError CWindowGlue::IWindow_GetConceptualFocusView(IView*& out) {
  MORVANE_ENTER("IWindow_GetConceptualFocusView()", CWindowGlue_CheckInvariant());
  out = NULL;
  TError outError;
  CallHook(outError, [&] { out = CWindowGlue_GetConceptualFocusView(); });
  MORVANE_AFTER(CWindowGlue_CheckInvariant());
  return outError;
}

TError CWindowGlue::IWindow_SetConceptualFocusView(IView* newConceptualFocusView) {
  MORVANE_ENTER("IWindow_SetConceptualFocusView()", CWindowGlue_CheckInvariant());
  MORVANE_REQUIRE("IWindow_SetConceptualFocusView()", ((newConceptualFocusView == NULL) || (GetMotherWindow(*newConceptualFocusView) == static_cast<IWindow*>(this))));
  // A client can implement IView too. The library does not know such a view.
  CViewImpl* const viewImpl = dynamic_cast<CViewImpl*>(newConceptualFocusView);
  MORVANE_REQUIRE_TEXT("IWindow_SetConceptualFocusView()",
                       "((newConceptualFocusView == NULL) || "
                       "dynamic_cast<CViewImpl*>(newConceptualFocusView)->CanBeFocusTargetNow())",
                       newConceptualFocusView == NULL || (viewImpl && viewImpl->CanBeFocusTargetNow()));
  TError outError;
  CallHook(outError, [&] { CWindowGlue_SetConceptualFocusView(viewImpl); });
  MORVANE_AFTER(CWindowGlue_CheckInvariant());
  return outError;
}

TError CWindowGlue::IWindow_GetTabViews(IViewListReceiver& out) {
  MORVANE_ENTER("IWindow_GetTabViews()", CWindowGlue_CheckInvariant());
  TError outError;
  CallHookForError(outError, [&] {
    const std::vector<CViewImpl*> viewImpls = CWindowGlue_GetTabViews();
    const std::vector<IView*> views(viewImpls.begin(), viewImpls.end());
    return out.IViewListReceiver_ReceiveViews(views.data(), static_cast<std::uint32_t>(views.size()));
  });
  MORVANE_AFTER(CWindowGlue_CheckInvariant());
  return outError;
}

TError CWindowGlue::IWindow_SetTabViews(IView* const* tabViews, std::uint32_t count) {
  MORVANE_ENTER("IWindow_SetTabViews()", CWindowGlue_CheckInvariant());
  std::vector<CViewImpl*> viewImpls;
  bool areValid = false;
  TError outError;
  CallHook(outError, [&] {
    for (IView* view : CheckedArray(tabViews, count)) {
      CViewImpl* const viewImplPointer = dynamic_cast<CViewImpl*>(view);
      MORVANE_ASSERT(viewImplPointer != NULL);
      viewImpls.push_back(viewImplPointer);
    }
    areValid = AreValidTabViews(viewImpls, this);
  });
  if (outError != kOK) return outError;
  MORVANE_REQUIRE_TEXT("IWindow_SetTabViews()", "AreValidTabViews(tabViews, this)", areValid);
  CallHook(outError, [&] { CWindowGlue_SetTabViews(viewImpls); });
  MORVANE_AFTER(CWindowGlue_CheckInvariant());
  return outError;
}

TError CWindowGlue::IWindow_GetRootView(IView*& outRootView) {
  MORVANE_ENTER("IWindow_GetRootView()", CWindowGlue_CheckInvariant());
  outRootView = NULL;
  TError outError;
  CallHook(outError, [&] { outRootView = CWindowGlue_GetRootView(); });
  MORVANE_AFTER(CWindowGlue_CheckInvariant());
  MORVANE_ASSERT(outRootView != NULL);
  return outError;
}

TError CWindowGlue::IWindow_IsActive(TFlag& outActiveFlag) {
  MORVANE_ENTER("IWindow_IsActive()", CWindowGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] { outActiveFlag = CWindowGlue_IsActive() ? 1 : 0; });
  MORVANE_AFTER(CWindowGlue_CheckInvariant());
  return outError;
}

TError CWindowGlue::IWindow_GetFrameRect(TRect& out) {
  MORVANE_ENTER("IWindow_GetFrameRect()", CWindowGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] { out = CWindowGlue_GetFrameRect(); });
  MORVANE_AFTER(CWindowGlue_CheckInvariant());
  return outError;
}

TError CWindowGlue::IWindow_FrameRectToClientRect(const TRect& in, TRect& out) {
  MORVANE_ENTER("IWindow_FrameRectToClientRect()", CWindowGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] { out = CWindowGlue_FrameRectToClientRect(in); });
  MORVANE_AFTER(CWindowGlue_CheckInvariant());
  return outError;
}

TError CWindowGlue::IWindow_ClientRectToFrameRect(const TRect& in, TRect& out) {
  MORVANE_ENTER("IWindow_ClientRectToFrameRect()", CWindowGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] { out = CWindowGlue_ClientRectToFrameRect(in); });
  MORVANE_AFTER(CWindowGlue_CheckInvariant());
  return outError;
}

TError CWindowGlue::IWindow_GetGlobalAlpha(std::uint8_t& outAlpha) {
  MORVANE_ENTER("IWindow_GetGlobalAlpha()", CWindowGlue_CheckInvariant());
  MORVANE_REQUIRE_TEXT("IWindow_GetGlobalAlpha()", "&outAlpha != NULL", IsThere(&outAlpha));
  TError outError;
  CallHook(outError, [&] { outAlpha = CWindowGlue_GetGlobalAlpha(); });
  MORVANE_AFTER(CWindowGlue_CheckInvariant());
  return outError;
}

TError CWindowGlue::IWindow_SetGlobalAlpha(std::uint8_t alpha) {
  MORVANE_ENTER("IWindow_SetGlobalAlpha()", CWindowGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] { CWindowGlue_SetGlobalAlpha(alpha); });
  MORVANE_AFTER(CWindowGlue_CheckInvariant());
  return outError;
}

}  // namespace NSMorvane
