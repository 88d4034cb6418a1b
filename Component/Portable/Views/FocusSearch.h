// The search for the view that gets the focus next.
#pragma once

#include <cstdint>
#include <vector>

#include "Component/Portable/Views/ViewWindow.h"

namespace NSMorvane {

class CViewImpl;

enum TFocusDirection : std::uint32_t { kFindNext = 0, kFindPrevious = 1 };

// The window's tab list without the views that cannot have the focus now.
std::vector<CViewImpl*> GetFocusableTabViews(IImplFocusTools& tools);

// The neighbour of `anchorView` in the list, past the ends to the other end. An anchor that is null or not in
// the list is nobody's neighbour: the first view follows it, the last one goes before it. Null only for an
// empty list.
CViewImpl* FindFocusView(const std::vector<CViewImpl*>& views, CViewImpl* anchorView,
                         TFocusDirection direction);
// The same among the focusable tab views of the window.
CViewImpl* FindNextFocusView(CViewImpl* anchorView, IImplFocusTools& tools);
CViewImpl* FindPreviousFocusView(CViewImpl* anchorView, IImplFocusTools& tools);

// Whether the view that gets the keys now is `view` or lies under it; never while the window is inactive.
bool IsFocusInSubtree(const CViewImpl& view);

// Whether no other view of the window could have the focus now.
bool IsOnlyFocusCandidate(const CViewImpl& view, IImplFocusTools& tools);

// Moves the focus from the view that has it to the next one, or to none if there is no other.
void EjectFocus(IImplFocusTools& tools);

}  // namespace NSMorvane
