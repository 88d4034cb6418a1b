#include "Component/Portable/Windows/WindowPlacement.h"

#include <cstdlib>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Interface/MorvaneRoot.h"

namespace NSMorvane {

namespace {

enum : std::int32_t { kIdealTolerance = 5 };

// The frame for a client area of another size, with its corner at that of the client area of `frameRect`.
TRect WithClientSize(const TRect& frameRect, const TSize& clientSize, const TFrameInsets& insets) {
  TRect clientRect = FrameRectToClientRect(frameRect, insets);
  clientRect.fRight = ToCoordinate(static_cast<std::int64_t>(clientRect.fLeft) + clientSize.fWidth);
  clientRect.fBottom = ToCoordinate(static_cast<std::int64_t>(clientRect.fTop) + clientSize.fHeight);
  return ClientRectToFrameRect(clientRect, insets);
}

void SetWidth(TRect& rect, std::int64_t width) { rect.fRight = ToCoordinate(rect.fLeft + width); }
void SetHeight(TRect& rect, std::int64_t height) { rect.fBottom = ToCoordinate(rect.fTop + height); }

}  // namespace

TRect FrameRectToClientRect(const TRect& frameRect, const TFrameInsets& insets) {
  return {ToCoordinate(static_cast<std::int64_t>(frameRect.fLeft) + insets.fLeft),
          ToCoordinate(static_cast<std::int64_t>(frameRect.fTop) + insets.fTop),
          ToCoordinate(static_cast<std::int64_t>(frameRect.fRight) - insets.fRight),
          ToCoordinate(static_cast<std::int64_t>(frameRect.fBottom) - insets.fBottom)};
}

TRect ClientRectToFrameRect(const TRect& clientRect, const TFrameInsets& insets) {
  return {ToCoordinate(static_cast<std::int64_t>(clientRect.fLeft) - insets.fLeft),
          ToCoordinate(static_cast<std::int64_t>(clientRect.fTop) - insets.fTop),
          ToCoordinate(static_cast<std::int64_t>(clientRect.fRight) + insets.fRight),
          ToCoordinate(static_cast<std::int64_t>(clientRect.fBottom) + insets.fBottom)};
}

TSize ClientSizeToFrameSize(const TSize& clientSize, const TFrameInsets& insets) {
  const TRect frameRect = ClientRectToFrameRect({0, 0, clientSize.fWidth, clientSize.fHeight}, insets);
  return {ToCoordinate(RectWidth(frameRect)), ToCoordinate(RectHeight(frameRect))};
}

bool IsClientSizeIdeal(const TRect& frameRect, const TSize& idealSize, const TFrameInsets& insets) {
  const TRect clientRect = FrameRectToClientRect(frameRect, insets);
  return std::abs(RectWidth(clientRect) - idealSize.fWidth) < kIdealTolerance &&
         std::abs(RectHeight(clientRect) - idealSize.fHeight) < kIdealTolerance;
}

TRect NormalRect(const TNativePlacement& native, bool minimized, bool maximized, bool clientIsEmpty) {
  const TRect& rect = native.fNormalRect;
  if (clientIsEmpty) minimized = true;
  if (!minimized && !maximized) return rect;
  const TPoint& corner = minimized ? native.fMinimizedCorner : native.fMaximizedCorner;
  return {corner.fX, corner.fY, ToCoordinate(corner.fX + RectWidth(rect)),
          ToCoordinate(corner.fY + RectHeight(rect))};
}

TWindowPlacement FitPlacement(const TWindowStateRecord& wanted, const TWinWindowState& current,
                              TZoomState currentZoomState, const TFrameInsets& insets) {
  TWindowPlacement placement = wanted.fPlacement;
  const TSize& ideal = wanted.fIdealClientSize;
  const bool hasIdeal = ideal.fWidth != 0 && ideal.fHeight != 0;
  // A new place of the ideal size, as a client gives it that has saved one, stays.
  const bool hasPlace = hasIdeal && !(placement.fIdealRect == current.fIdealRect) &&
                        IsClientSizeIdeal(placement.fIdealRect, ideal, insets);
  if (!hasPlace && hasIdeal && !(ideal == current.fIdealClientSize))
    placement.fIdealRect = WithClientSize(current.fIdealRect, ideal, insets);
  // Without an ideal size the window stays as large as it is.
  if (!hasPlace && placement.fZoomState != currentZoomState && placement.fZoomState == kWindowStateIdeal)
    placement.fIdealRect =
        hasIdeal ? WithClientSize(placement.fUserRect, ideal, insets) : placement.fUserRect;

  const TSize minimum = ClientSizeToFrameSize(wanted.fMinimumClientSize, insets);
  const TSize maximum = ClientSizeToFrameSize(wanted.fMaximumClientSize, insets);
  for (TRect* const rect : {&placement.fUserRect, &placement.fIdealRect}) {
    if (wanted.fMinimumClientSize.fWidth != 0 && RectWidth(*rect) < minimum.fWidth)
      SetWidth(*rect, minimum.fWidth);
    if (wanted.fMinimumClientSize.fHeight != 0 && RectHeight(*rect) < minimum.fHeight)
      SetHeight(*rect, minimum.fHeight);
    if (wanted.fMaximumClientSize.fWidth != 0 && RectWidth(*rect) > maximum.fWidth)
      SetWidth(*rect, maximum.fWidth);
    if (wanted.fMaximumClientSize.fHeight != 0 && RectHeight(*rect) > maximum.fHeight)
      SetHeight(*rect, maximum.fHeight);
  }
  return placement;
}

TPoint OffsetToNativePlacement(IMorvane& morvane, bool isToolWindow) {
  if (isToolWindow) return {0, 0};
  TMonitorList monitors;
  ThrowError(morvane.IMorvane_GetMonitors(monitors));
  const std::uint32_t mainMonitorIndex = monitors.fMainMonitorIndex;
  MORVANE_ASSERT(mainMonitorIndex < monitors.fMonitorCount);
  if (mainMonitorIndex >= kMaxMonitors) return {0, 0};  // there is no such monitor
  const TMonitor& monitor = monitors.fMonitors[mainMonitorIndex];
  return {monitor.fBounds.fLeft - monitor.fWorkArea.fLeft, monitor.fBounds.fTop - monitor.fWorkArea.fTop};
}

std::optional<TRect> LimitedMaximum(const TMonitorList& monitors, const TRect& start,
                                    const TWinWindowState& state, const TFrameInsets& insets,
                                    const TPoint& toNative) {
  TSize size = state.fMaximumClientSize;
  if (size.fWidth <= 0 && size.fHeight <= 0) return std::nullopt;
  // Monitors are in screen coordinates.
  const TRect onScreen = OffsetRectBy(start, -std::int64_t{toNative.fX}, -std::int64_t{toNative.fY});
  const TMonitor& monitor = monitors.fMonitors[FindBestMonitor(monitors, onScreen)];
  const std::int64_t workWidth = RectWidth(monitor.fWorkArea);
  const std::int64_t workHeight = RectHeight(monitor.fWorkArea);
  if (size.fWidth >= workWidth && size.fHeight >= workHeight) return std::nullopt;

  if (size.fWidth == 0) size.fWidth = ToCoordinate(2 * workWidth);
  if (size.fHeight == 0) size.fHeight = ToCoordinate(2 * workHeight);
  const TSize frameSize = ClientSizeToFrameSize(size, insets);
  TRect frame = onScreen;
  SetWidth(frame, frameSize.fWidth);
  SetHeight(frame, frameSize.fHeight);
  const TSize minimum = ClientSizeToFrameSize(state.fMinimumClientSize, insets);
  return OffsetRectBy(ConstrainRectToMonitor(monitor, frame, minimum), toNative.fX, toNative.fY);
}

}  // namespace NSMorvane
