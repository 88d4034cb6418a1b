// Arithmetic on points and rectangles. Coordinates may have any 32-bit value. Results that would leave that
// range are computed in 64 bits and clamped.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "Interface/MorvaneMonitors.h"
#include "Interface/MorvaneTypes.h"

namespace NSMorvane {

using TRectList = std::vector<TRect>;

inline bool operator==(const TPoint& a, const TPoint& b) { return a.fX == b.fX && a.fY == b.fY; }
inline bool operator==(const TSize& a, const TSize& b) {
  return a.fWidth == b.fWidth && a.fHeight == b.fHeight;
}
inline bool operator==(const TRect& a, const TRect& b) {
  return a.fLeft == b.fLeft && a.fTop == b.fTop && a.fRight == b.fRight && a.fBottom == b.fBottom;
}

// Clamps to 32 bits.
inline std::int32_t ToCoordinate(std::int64_t value) {
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, std::numeric_limits<std::int32_t>::min(),
                                                            std::numeric_limits<std::int32_t>::max()));
}

// Negative for a rectangle turned inside out.
inline std::int64_t RectWidth(const TRect& rect) {
  return static_cast<std::int64_t>(rect.fRight) - rect.fLeft;
}
inline std::int64_t RectHeight(const TRect& rect) {
  return static_cast<std::int64_t>(rect.fBottom) - rect.fTop;
}

inline bool IsEmptyRect(const TRect& rect) { return !(rect.fLeft < rect.fRight && rect.fTop < rect.fBottom); }

// Cuts `inOutRect` to `other`; true if something is left. After false `inOutRect` may be partly cut and must
// not be read.
inline bool IntersectRect(TRect& inOutRect, const TRect& other) {
  if (inOutRect.fTop < other.fTop) inOutRect.fTop = other.fTop;
  if (inOutRect.fTop >= inOutRect.fBottom) return false;
  if (other.fBottom < inOutRect.fBottom) inOutRect.fBottom = other.fBottom;
  if (inOutRect.fTop >= inOutRect.fBottom) return false;
  if (inOutRect.fLeft < other.fLeft) inOutRect.fLeft = other.fLeft;
  if (inOutRect.fLeft >= inOutRect.fRight) return false;
  if (other.fRight < inOutRect.fRight) inOutRect.fRight = other.fRight;
  return inOutRect.fLeft < inOutRect.fRight;
}

// True if IntersectRect would leave something. An empty rectangle meets none.
inline bool DoRectsMeet(const TRect& a, const TRect& b) {
  return std::max(a.fTop, b.fTop) < std::min(a.fBottom, b.fBottom) &&
         std::max(a.fLeft, b.fLeft) < std::min(a.fRight, b.fRight);
}

inline bool IsPointInRect(const TPoint& point, const TRect& rect) {
  return rect.fLeft <= point.fX && point.fX < rect.fRight && rect.fTop <= point.fY && point.fY < rect.fBottom;
}

// `rect` moved by (dx, dy).
inline TRect OffsetRectBy(const TRect& rect, std::int64_t dx, std::int64_t dy) {
  return {ToCoordinate(rect.fLeft + dx), ToCoordinate(rect.fTop + dy), ToCoordinate(rect.fRight + dx),
          ToCoordinate(rect.fBottom + dy)};
}

// As much of (dx, dy) as `rect` can be moved by, at its full size, without leaving the range of coordinates.
inline TPoint LimitOffset(const TRect& rect, std::int32_t dx, std::int32_t dy) {
  const auto limit = [](std::int32_t distance, std::int64_t a, std::int64_t b) {
    const std::int64_t lowest = std::numeric_limits<std::int32_t>::min() - std::min(a, b);
    const std::int64_t highest = std::numeric_limits<std::int32_t>::max() - std::max(a, b);
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(distance, lowest, highest));
  };
  return {limit(dx, rect.fLeft, rect.fRight), limit(dy, rect.fTop, rect.fBottom)};
}

// `moveRect` shifted to lie inside `biggerRect`. It must fit; if it does not, that is reported, and its right
// and bottom edges end inside.
TRect MoveRectInside(const TRect& moveRect, const TRect& biggerRect);

// `rect` brought into the work area of `monitor`, cut down if it is larger. It is never made narrower or
// lower than the parts of `minimumSize` that are above 0, even if it then sticks out.
TRect ConstrainRectToMonitor(const TMonitor& monitor, const TRect& rect, const TSize& minimumSize);

// The index of the monitor whose work area shows the most of `rect`. If several show the same, the first of
// them; if none shows any of it, 0.
std::uint32_t FindBestMonitor(const TMonitorList& monitors, const TRect& rect);

}  // namespace NSMorvane
