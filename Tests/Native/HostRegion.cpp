// Regions as lists of rectangles: the stand-in for those of the platform, slow and obvious.
#include <algorithm>
#include <exception>
#include <set>
#include <vector>

#include "Component/Portable/Surfaces/NativeRegion.h"

using NSMorvane::TRect;
using NSMorvane::TRectList;

// In bands, as GetNativeRegionRects gives them; neighbours among these may look the same.
struct HRGN__ {
  TRectList fRects;
};

namespace NSMorvane {

namespace {

// All of them, from low to high.
std::vector<std::int32_t> EdgesOf(const TRectList& a, const TRectList& b, std::int32_t TRect::*low,
                                  std::int32_t TRect::*high) {
  std::set<std::int32_t> edges;
  for (const TRectList* const rects : {&a, &b})
    for (const TRect& rect : *rects) edges.insert({rect.*low, rect.*high});
  return {edges.begin(), edges.end()};
}

bool Covers(const TRectList& rects, const TPoint& point) {
  return std::any_of(rects.begin(), rects.end(),
                     [&](const TRect& rect) { return IsPointInRect(point, rect); });
}

// What `isIn` says of the cells that all the edges make, band by band.
template <class TIsIn>
TRectList Combine(const TRectList& a, const TRectList& b, const TIsIn& isIn) {
  const std::vector<std::int32_t> x = EdgesOf(a, b, &TRect::fLeft, &TRect::fRight);
  const std::vector<std::int32_t> y = EdgesOf(a, b, &TRect::fTop, &TRect::fBottom);
  TRectList result;
  for (std::size_t row = 0; row + 1 < y.size(); ++row) {
    for (std::size_t column = 0; column + 1 < x.size(); ++column) {
      const TPoint corner = {x[column], y[row]};
      if (!isIn(Covers(a, corner), Covers(b, corner))) continue;
      if (result.empty() || result.back().fTop != corner.fY || result.back().fRight != corner.fX)
        result.push_back({corner.fX, corner.fY, corner.fX, y[row + 1]});
      result.back().fRight = x[column + 1];
    }
  }
  return result;
}

}  // namespace

bool DeleteNativeRegion(TNativeRegion region) {
  delete region;
  return region != nullptr;
}

TNativeRegionOwner MakeNativeRegion(const TRect& rect) {
  return TNativeRegionOwner(new HRGN__{IsEmptyRect(rect) ? TRectList() : TRectList{rect}});
}

TNativeRegionOwner CopyNativeRegion(TNativeRegion regionToCopy) {
  return TNativeRegionOwner(new HRGN__(*regionToCopy));
}

void CombineNativeRegion(TNativeRegion region, TNativeRegion other, TRegionOperation operation) {
  region->fRects = Combine(region->fRects, other->fRects, [operation](bool a, bool b) {
    return operation == kRegionUnion ? a || b : operation == kRegionDifference ? a && !b : a && b;
  });
}

void OffsetNativeRegion(TNativeRegion region, std::int32_t dx, std::int32_t dy) {
  for (const TRect& rect : region->fRects)
    if (!(LimitOffset(rect, dx, dy) == TPoint{dx, dy})) throw std::exception();
  for (TRect& rect : region->fRects) rect = OffsetRectBy(rect, dx, dy);
}

TRect GetNativeRegionBounds(TNativeRegion region) {
  const TRectList& rects = region->fRects;
  if (rects.empty()) return {};
  TRect box = rects.front();
  for (const TRect& rect : rects)
    box = {std::min(box.fLeft, rect.fLeft), box.fTop, std::max(box.fRight, rect.fRight), rect.fBottom};
  return box;
}

TRectList GetNativeRegionRects(TNativeRegion region) { return region->fRects; }

}  // namespace NSMorvane
