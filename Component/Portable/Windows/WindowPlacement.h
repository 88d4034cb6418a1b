// Where a window is and how large: the state that a window remembers, and the arithmetic on it. Nothing here
// touches a window. All rectangles are frame rectangles in the coordinates of native placements, which begin
// at the work area of the main monitor but for tool windows, unless told otherwise, and may be anything that
// 32 bits hold.
#pragma once

#include <cstdint>
#include <optional>

#include "Component/Portable/Base/Geometry.h"
#include "Component/Portable/Text/TextPackage.h"
#include "Interface/MorvaneMonitors.h"
#include "Interface/MorvaneWindow.h"

namespace NSMorvane {

class IMorvane;
using NSTextPackage::TString;

// What a window and its kind tell each other.
struct TWindowPlacement {
  bool fMinimized = false;
  bool fMaximized = false;
  TZoomState fZoomState{};
  TRect fUserRect{};
  TRect fIdealRect{};

  friend bool operator==(const TWindowPlacement&, const TWindowPlacement&) = default;
};

// What a window remembers about itself.
struct TWinWindowState {
  TSize fMinimumClientSize{};  // 0 in a dimension: no limit there
  TSize fMaximumClientSize{};  // 0 in a dimension: no limit there
  TSize fIdealClientSize{};    // both 0: none
  bool fModified = false;
  bool fMinimized = false;
  bool fMaximized = false;
  TString fTitle;
  TRect fUserRect{};
  TRect fIdealRect{};
  TSize fClientSize{};
};

// What a window is told by its kind, and tells it.
struct TWindowStateRecord {
  TSize fMinimumClientSize{};
  TSize fMaximumClientSize{};
  TSize fIdealClientSize{};
  bool fModified = false;
  TString fTitle;  // at most kTitleChars when it comes from a window
  TWindowPlacement fPlacement;
};

// What the platform tells of a window: the rectangle to come back to, and where its corner is meanwhile.
struct TNativePlacement {
  TRect fNormalRect;
  TPoint fMinimizedCorner;
  TPoint fMaximizedCorner;
};

// How far the client area lies inside the frame, on each side.
struct TFrameInsets {
  std::int32_t fLeft;
  std::int32_t fTop;
  std::int32_t fRight;
  std::int32_t fBottom;
};

TRect FrameRectToClientRect(const TRect& frameRect, const TFrameInsets& insets);
TRect ClientRectToFrameRect(const TRect& clientRect, const TFrameInsets& insets);
// The size of the frame around a client area.
TSize ClientSizeToFrameSize(const TSize& clientSize, const TFrameInsets& insets);

// Whether the client area in this frame is off the ideal size by less than five pixels in both dimensions.
bool IsClientSizeIdeal(const TRect& frameRect, const TSize& idealSize, const TFrameInsets& insets);

// Where the window stands when it is neither minimized nor maximized, with its corner at the place that it
// has while it is. An empty client area counts as minimized.
TRect NormalRect(const TNativePlacement& native, bool minimized, bool maximized, bool clientIsEmpty);

// The placement to give to a window in the state `current`, which is now in `currentZoomState`, so that it
// comes as near to `wanted` as the sizes in `wanted` allow.
TWindowPlacement FitPlacement(const TWindowStateRecord& wanted, const TWinWindowState& current,
                              TZoomState currentZoomState, const TFrameInsets& insets);

// What to add to a rectangle in screen coordinates to get one in those of the native placement of a window.
// They begin at the work area of the main monitor, but for tool windows, whose placement is in screen
// coordinates.
TPoint OffsetToNativePlacement(IMorvane& morvane, bool isToolWindow);

// Between native placements and those of the client, which are in screen coordinates; `offset` is what
// OffsetToNativePlacement gives.
//
// The kinds differ in the flags that their placements have. One that is not there is not told, and false.
template <class TPlacement>
TPlacement PlacementForClient(const TWindowPlacement& placement, const TPoint& offset) {
  const std::int64_t dx = -static_cast<std::int64_t>(offset.fX);
  const std::int64_t dy = -static_cast<std::int64_t>(offset.fY);
  TPlacement out = {};
  if constexpr (requires { out.fMinimized; }) out.fMinimized = placement.fMinimized ? 1 : 0;
  if constexpr (requires { out.fMaximized; }) out.fMaximized = placement.fMaximized ? 1 : 0;
  out.fZoomState = placement.fZoomState;
  out.fUserRect = OffsetRectBy(placement.fUserRect, dx, dy);
  out.fIdealRect = OffsetRectBy(placement.fIdealRect, dx, dy);
  return out;
}

template <class TPlacement>
TWindowPlacement PlacementFromClient(const TPlacement& placement, const TPoint& offset) {
  TWindowPlacement out;
  if constexpr (requires { placement.fMinimized; }) out.fMinimized = placement.fMinimized == 1;
  if constexpr (requires { placement.fMaximized; }) out.fMaximized = placement.fMaximized == 1;
  out.fZoomState = placement.fZoomState;
  out.fUserRect = OffsetRectBy(placement.fUserRect, offset.fX, offset.fY);
  out.fIdealRect = OffsetRectBy(placement.fIdealRect, offset.fX, offset.fY);
  return out;
}

// Where the maximize command takes a window whose size is limited and which now stands at `start`: as large
// as the limits in `state` allow, at the same corner if it can stay in the work area of its monitor there.
// Nothing if the limits are none for that monitor. `toNative` is what OffsetToNativePlacement gives.
std::optional<TRect> LimitedMaximum(const TMonitorList& monitors, const TRect& start,
                                    const TWinWindowState& state, const TFrameInsets& insets,
                                    const TPoint& toNative);

}  // namespace NSMorvane
