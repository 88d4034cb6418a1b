#include "Component/Portable/Views/FocusSearch.h"

#include <algorithm>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Views/ViewImpl.h"
#include "Interface/MorvaneWindow.h"

namespace NSMorvane {

namespace {

// Whether neither the view nor a super view of it has been released.
bool IsLiveUpToTheRoot(const CViewImpl* view) {
  while (view && view->IsLive()) view = view->GetSuperView().get();
  return !view;
}

}  // namespace

std::vector<CViewImpl*> GetFocusableTabViews(IImplFocusTools& tools) {
  std::vector<CViewImpl*> views;
  tools.IImplFocusTools_GetTabViews(views);
  std::erase_if(
      views, [](const CViewImpl* view) { return !IsLiveUpToTheRoot(view) || !view->CanBeFocusTargetNow(); });
  return views;
}

CViewImpl* FindFocusView(const std::vector<CViewImpl*>& views, CViewImpl* anchorView,
                         TFocusDirection direction) {
  if (views.empty()) return nullptr;
  const bool next = direction == kFindNext;
  if (!next) MORVANE_ASSERT(direction == kFindPrevious);
  // An anchor that is not in the list counts as its end.
  auto place = anchorView ? std::find(views.begin(), views.end(), anchorView) : views.end();
  if (next) {
    if (place != views.end()) ++place;
    if (place == views.end()) place = views.begin();
  } else {
    if (place == views.begin()) place = views.end();
    --place;
  }
  CViewImpl* const view = *place;
  MORVANE_ASSERT(view != NULL);
  MORVANE_ASSERT(view != anchorView);
  return view;
}

CViewImpl* FindNextFocusView(CViewImpl* anchorView, IImplFocusTools& tools) {
  return FindFocusView(GetFocusableTabViews(tools), anchorView, kFindNext);
}

CViewImpl* FindPreviousFocusView(CViewImpl* anchorView, IImplFocusTools& tools) {
  return FindFocusView(GetFocusableTabViews(tools), anchorView, kFindPrevious);
}

bool IsFocusInSubtree(const CViewImpl& view) {
  IWindow* const motherWindow = view.GetMotherWindow();
  MORVANE_ASSERT(motherWindow != NULL);
  IImplFocusTools* const tools = view.GetFocusTools();
  TFlag isActive = 0;
  if (!motherWindow || !tools || motherWindow->IWindow_IsActive(isActive) != kOK || !isActive) return false;
  // The walk up ends at the root view at the latest, which has no super view.
  const CViewImpl* current = tools->IImplFocusTools_GetOnDutyFocusView();
  while (current && current != &view) current = current->GetSuperView().get();
  return current == &view;
}

bool IsOnlyFocusCandidate(const CViewImpl& view, IImplFocusTools& tools) {
  const std::vector<CViewImpl*> views = GetFocusableTabViews(tools);
  return views.size() == 1 && views[0] == &view;
}

void EjectFocus(IImplFocusTools& tools) {
  const boost::shared_ptr<void> keptAlive = tools.IImplFocusTools_KeepAlive();
  CViewImpl* const currentFocusView = tools.IImplFocusTools_GetConceptualFocusView();
  if (!currentFocusView) return;
  CViewImpl* const newFocusView = FindNextFocusView(currentFocusView, tools);
  MORVANE_ASSERT(newFocusView != currentFocusView);
  tools.IImplFocusTools_SetConceptualFocusView(newFocusView);
  CViewImpl* const newCurrentFocusView = tools.IImplFocusTools_GetConceptualFocusView();
  MORVANE_ASSERT(newCurrentFocusView != currentFocusView);
}

}  // namespace NSMorvane
