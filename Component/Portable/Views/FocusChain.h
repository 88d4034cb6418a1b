// The walk along the focus chain: from the focus view up to the root view, until a view takes what is
// offered.
#pragma once

#include <vector>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Views/ViewImpl.h"

namespace NSMorvane {

// What is offered decides what ends the walk before somebody takes it.
enum class TFocusWalk {
  kKey,      // a view that is released in its own turn
  kWheel,    // nothing
  kCommand,  // a view that has no behaviour
};

// Calls `offer(behavior, outHandled)` for one view after the other; true if one of them has taken it. Views
// that have been released live on behind their subviews only, and are passed over. The chain is held for the
// walk, since views can end themselves and each other. `focusView` may be null or released: then nobody is
// asked.
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

// The views from `focusView` up to the root view, as long as they have not been released, nearest first.
inline std::vector<TViewImplPtr> LiveFocusChain(const CViewImpl* focusView) {
  std::vector<TViewImplPtr> chain;
  for (const CViewImpl* view = focusView; view && view->IsLive(); view = view->GetSuperView().get())
    chain.push_back(view->GetClientsViewReference());
  return chain;
}

}  // namespace NSMorvane
