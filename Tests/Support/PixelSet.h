// A set of pixels, slow and obvious, which regions are compared with.
#pragma once

#include <algorithm>
#include <vector>

#include "Component/Portable/Base/Geometry.h"
#include "Component/Portable/Surfaces/Region.h"

namespace NSMorvaneTest {

using namespace NSMorvane;

class PixelSet {
 public:
  // The pixels that it knows, in both directions.
  static constexpr std::int32_t kFirst = -36;
  static constexpr std::int32_t kEnd = 72;

  static auto In(const TRect& rect) {
    return [rect](const TPoint& p) { return IsPointInRect(p, rect); };
  }
  PixelSet() : fPixels((kEnd - kFirst) * (kEnd - kFirst)) {}
  explicit PixelSet(const CRegion& region) : PixelSet() {
    for (const TRect& rect : region.GetRects())
      for (std::int32_t y = std::max(rect.fTop, kFirst); y < std::min(rect.fBottom, kEnd); ++y)
        for (std::int32_t x = std::max(rect.fLeft, kFirst); x < std::min(rect.fRight, kEnd); ++x)
          fPixels[Index({x, y})] = 1;
  }
  bool operator()(const TPoint& p) const { return IsKnown(p) && fPixels[Index(p)]; }
  bool operator==(const PixelSet& other) const = default;

  // Each pixel becomes what `isIn` says of it.
  template <class TIsIn>
  void Set(TIsIn isIn) {
    char* pixel = fPixels.data();
    for (TPoint p{0, kFirst}; p.fY < kEnd; ++p.fY)
      for (p.fX = kFirst; p.fX < kEnd; ++p.fX) *pixel++ = isIn(p);
  }
  template <class TIsIn>
  void Add(const TIsIn& isIn) {
    Set([&, pixel = fPixels.data()](const TPoint& p) mutable { return *pixel++ || isIn(p); });
  }
  void Move(std::int32_t dx, std::int32_t dy) {
    Set([&, old = *this](const TPoint& p) { return old({p.fX - dx, p.fY - dy}); });
  }
  // True if it would still be known after a move of so much in any direction.
  static bool HasRoom(const TRect& rect, std::int32_t distance) {
    return IsKnown({rect.fLeft - distance, rect.fTop - distance}) &&
           IsKnown({rect.fRight + distance, rect.fBottom + distance});
  }

 private:
  static bool IsKnown(const TPoint& p) { return IsPointInRect(p, {kFirst, kFirst, kEnd, kEnd}); }
  static std::size_t Index(const TPoint& p) { return (p.fY - kFirst) * (kEnd - kFirst) + (p.fX - kFirst); }

  std::vector<char> fPixels;
};

}  // namespace NSMorvaneTest
