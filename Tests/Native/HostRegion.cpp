// Regions as lists of rectangles: the stand-in for those of the platform, slow and obvious.
#include <algorithm>
#include <exception>
#include <utility>

#include "Component/Portable/Surfaces/NativeRegion.h"

using NSMorvane::TRect;
using NSMorvane::TRectList;

// In bands, as GetNativeRegionRects gives them.
struct HRGN__ {
  TRectList fRects;
};

namespace NSMorvane {

namespace {

using TSpan = std::pair<std::int32_t, std::int32_t>;

void AddEdges(const TRectList& rects, std::int32_t TRect::*first, std::int32_t TRect::*last,
              std::vector<std::int32_t>& edges) {
  for (const TRect& rect : rects) edges.insert(edges.end(), {rect.*first, rect.*last});
}

void SortEdges(std::vector<std::int32_t>& edges) {
  std::sort(edges.begin(), edges.end());
  edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
}

// Those that the line crosses.
TRectList At(const TRectList& rects, std::int32_t y) {
  TRectList found;
  for (const TRect& rect : rects)
    if (rect.fTop <= y && y < rect.fBottom) found.push_back(rect);
  return found;
}

bool Covers(const TRectList& rects, std::int32_t x) {
  return std::any_of(rects.begin(), rects.end(),
                     [x](const TRect& rect) { return rect.fLeft <= x && x < rect.fRight; });
}

// What `isIn` keeps of a line, in spans that do not touch.
template <class TIsIn>
std::vector<TSpan> SpansOf(const TRectList& a, const TRectList& b, const TIsIn& isIn) {
  std::vector<std::int32_t> edges;
  AddEdges(a, &TRect::fLeft, &TRect::fRight, edges);
  AddEdges(b, &TRect::fLeft, &TRect::fRight, edges);
  SortEdges(edges);
  std::vector<TSpan> spans;
  for (std::size_t i = 0; i + 1 < edges.size(); ++i) {
    if (!isIn(Covers(a, edges[i]), Covers(b, edges[i]))) continue;
    if (!spans.empty() && spans.back().second == edges[i])
      spans.back().second = edges[i + 1];
    else
      spans.push_back({edges[i], edges[i + 1]});
  }
  return spans;
}

// A band that goes on like the one above becomes part of it.
template <class TIsIn>
TRectList Combine(const TRectList& a, const TRectList& b, const TIsIn& isIn) {
  std::vector<std::int32_t> edges;
  AddEdges(a, &TRect::fTop, &TRect::fBottom, edges);
  AddEdges(b, &TRect::fTop, &TRect::fBottom, edges);
  SortEdges(edges);
  TRectList result;
  std::vector<TSpan> above;
  for (std::size_t i = 0; i + 1 < edges.size(); ++i) {
    const std::vector<TSpan> spans = SpansOf(At(a, edges[i]), At(b, edges[i]), isIn);
    if (!spans.empty() && spans == above) {
      for (std::size_t k = 1; k <= spans.size(); ++k) result[result.size() - k].fBottom = edges[i + 1];
    } else {
      for (const TSpan& span : spans) result.push_back({span.first, edges[i], span.second, edges[i + 1]});
    }
    above = spans;
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
