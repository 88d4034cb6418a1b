// Where a window is and how large it is: the state that a window remembers, and the arithmetic on it. Nothing
// here touches a window. Unless a comment says otherwise, all rectangles are frame rectangles in the
// coordinates of native placements. These begin at the work area of the main monitor, except for tool
// windows. Coordinates may have any 32-bit value.
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

// The placement that a window and its kind pass to each other.
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

// The state that a window and its kind pass to each other.
struct TWindowStateRecord {
  TSize fMinimumClientSize{};
  TSize fMaximumClientSize{};
  TSize fIdealClientSize{};
  bool fModified = false;
  TString fTitle;  // at most kTitleChars when it comes from a window
  TWindowPlacement fPlacement;
};

// The platform's placement of a window: the normal rectangle, and the corner that the window has while it is
// minimized or maximized.
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

// Whether the client area in this frame differs from the ideal size by less than five pixels in both
// dimensions.
bool IsClientSizeIdeal(const TRect& frameRect, const TSize& idealSize, const TFrameInsets& insets);

// The normal rectangle of the window. While the window is minimized or maximized, the rectangle has the
// corner of that state. An empty client area counts as minimized.
TRect NormalRect(const TNativePlacement& native, bool minimized, bool maximized, bool clientIsEmpty);

// The placement for a window whose state is `current` and whose zoom state is `currentZoomState`: as close to
// `wanted` as the sizes in `wanted` allow. A new ideal rectangle of another size may be replaced.
TWindowPlacement FitPlacement(const TWindowStateRecord& wanted, const TWinWindowState& current,
                              TZoomState currentZoomState, const TFrameInsets& insets);

// The offset from screen coordinates to those of the native placement of a window. Native placements begin at
// the work area of the main monitor, except for tool windows, whose placements are in screen coordinates.
TPoint OffsetToNativePlacement(IMorvane& morvane, bool isToolWindow);

// Conversion between native placements and those of the client, which are in screen coordinates. `offset` is
// the result of OffsetToNativePlacement.
//
// The placements of the kinds have different flags. A flag that a kind does not have is left out on the way
// to the client, and false on the way back.
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

// The rectangle for the maximize command of a window whose size is limited, and which is now at `start`: as
// large as the limits in `state` allow, and with the same corner if it then stays in the work area of its
// monitor. Nothing if the limits have no effect on that monitor. `toNative` is the result of
// OffsetToNativePlacement.
std::optional<TRect> LimitedMaximum(const TMonitorList& monitors, const TRect& start,
                                    const TWinWindowState& state, const TFrameInsets& insets,
                                    const TPoint& toNative);

}  // namespace NSMorvane
