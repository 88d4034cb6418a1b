#include "Component/Portable/Base/Geometry.h"

#include "Component/Portable/Base/MorvaneImplUtils.h"

namespace NSMorvane {

TRect MoveRectInside(const TRect& moveRect, const TRect& biggerRect) {
  MORVANE_ASSERT_TEXT("(moveRect.fRight-moveRect.fLeft) <= (biggerRect.fRight-biggerRect.fLeft)", RectWidth(moveRect) <= RectWidth(biggerRect));
  MORVANE_ASSERT_TEXT("(moveRect.fBottom-moveRect.fTop) <= (biggerRect.fBottom-biggerRect.fTop)", RectHeight(moveRect) <= RectHeight(biggerRect));
  // In 64 bits, since an edge may leave the 32-bit range on the way to its final place.
  const std::int64_t width = RectWidth(moveRect);
  const std::int64_t height = RectHeight(moveRect);
  std::int64_t left = moveRect.fLeft;
  std::int64_t top = moveRect.fTop;
  if (left < biggerRect.fLeft) left = biggerRect.fLeft;
  if (top < biggerRect.fTop) top = biggerRect.fTop;
  if (left + width > biggerRect.fRight) left = biggerRect.fRight - width;
  if (top + height > biggerRect.fBottom) top = biggerRect.fBottom - height;
  return {ToCoordinate(left), ToCoordinate(top), ToCoordinate(left + width), ToCoordinate(top + height)};
}

TRect ConstrainRectToMonitor(const TMonitor& monitor, const TRect& rect, const TSize& minimumSize) {
  const TRect& workArea = monitor.fWorkArea;
  TRect result = rect;
  if (RectWidth(result) > RectWidth(workArea))
    result.fRight = ToCoordinate(result.fLeft + RectWidth(workArea));
  if (RectHeight(result) > RectHeight(workArea))
    result.fBottom = ToCoordinate(result.fTop + RectHeight(workArea));
  result = MoveRectInside(result, workArea);
  if (minimumSize.fWidth > 0 && RectWidth(result) < minimumSize.fWidth)
    result.fRight = ToCoordinate(static_cast<std::int64_t>(result.fLeft) + minimumSize.fWidth);
  if (minimumSize.fHeight > 0 && RectHeight(result) < minimumSize.fHeight)
    result.fBottom = ToCoordinate(static_cast<std::int64_t>(result.fTop) + minimumSize.fHeight);
  return result;
}

std::uint32_t FindBestMonitor(const TMonitorList& monitors, const TRect& rect) {
  std::uint32_t best = 0;
  std::uint64_t bestArea = 0;
  const std::uint32_t count = std::min<std::uint32_t>(monitors.fMonitorCount, kMaxMonitors);
  for (std::uint32_t i = 0; i < count; ++i) {
    TRect shown = rect;
    if (!IntersectRect(shown, monitors.fMonitors[i].fWorkArea)) continue;
    // The product of two sides of 32 bits needs all 64 bits.
    const std::uint64_t area =
        static_cast<std::uint64_t>(RectWidth(shown)) * static_cast<std::uint64_t>(RectHeight(shown));
    if (area > bestArea) {
      best = i;
      bestArea = area;
    }
  }
  return best;
}

}  // namespace NSMorvane
