// The walk along the focus chain: from the focus view up to the root view, until a view handles what is
// offered.
#pragma once

#include <vector>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Views/ViewImpl.h"

namespace NSMorvane {

// What is offered. It decides what ends the walk before a view has handled it.
enum class TFocusWalk {
  kKey,      // a view that is released in its own turn
  kWheel,    // nothing
  kCommand,  // a view that has no behaviour
};

// Calls `offer(behavior, outHandled)` for one view after the other; true if one of them has handled it. Views
// that have been released, and that only their subviews keep in memory, are skipped. The walk keeps the chain
// alive, since views can end themselves and each other. If `focusView` is null or released, no view is asked.
template <class TOffer>
bool OfferAlongFocusChain(const CViewImpl* focusView, TFocusWalk walk, TOffer&& offer) {
  if (!focusView || !focusView->IsLive()) return false;
  const TViewImplPtr heldView = focusView->GetClientsViewReference();
  for (const CViewImpl* view = heldView.get(); view; view = view->GetSuperView().get()) {
    if (!view->IsLive()) continue;
    IViewBehavior* const behavior = view->GetBehavior();
    if (!behavior) {
      if (walk == TFocusWalk::kCommand) return false;
      continue;
    }
    TFlag handled = 0;
    offer(*behavior, handled);
    if (handled != 0) return true;
    if (walk == TFocusWalk::kKey && !view->IsLive()) return false;
  }
  return false;
}

// The views from `focusView` up to the root view, nearest first. The list ends before the first view that has
// been released.
inline std::vector<TViewImplPtr> LiveFocusChain(const CViewImpl* focusView) {
  std::vector<TViewImplPtr> chain;
  for (const CViewImpl* view = focusView; view && view->IsLive(); view = view->GetSuperView().get())
    chain.push_back(view->GetClientsViewReference());
  return chain;
}

}  // namespace NSMorvane
