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

// The neighbour of `anchorView` in the list, which wraps around at its ends. If the anchor is null or not in
// the list, the next view is the first one, and the previous view is the last one. Null only for an empty
// list.
CViewImpl* FindFocusView(const std::vector<CViewImpl*>& views, CViewImpl* anchorView,
                         TFocusDirection direction);
// The same among the focusable tab views of the window.
CViewImpl* FindNextFocusView(CViewImpl* anchorView, IImplFocusTools& tools);
CViewImpl* FindPreviousFocusView(CViewImpl* anchorView, IImplFocusTools& tools);

// Whether the view that gets the keys now is `view` or lies below it; false while the window is inactive.
bool IsFocusInSubtree(const CViewImpl& view);

// Whether `view` is the only view in the window's tab list that can have the focus now.
bool IsOnlyFocusCandidate(const CViewImpl& view, IImplFocusTools& tools);

// Moves the focus from the view that has it to the next one, or to none if there is no other.
void EjectFocus(IImplFocusTools& tools);

}  // namespace NSMorvane
