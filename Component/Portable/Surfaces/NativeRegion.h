// The platform's regions, as far as CRegion stands on them. The platform half has the functions; what cannot
// be done throws, and leaves the regions as they were.
#pragma once

#include <cstdint>
#include <memory>

#include "Component/Portable/Base/Geometry.h"

struct HRGN__;

namespace NSMorvane {

// The platform's handle of a region, an HRGN.
using TNativeRegion = HRGN__*;

// False, and nothing is deleted, for a handle that is none.
bool DeleteNativeRegion(TNativeRegion region);

struct TNativeRegionDeleter {
  void operator()(TNativeRegion region) const { DeleteNativeRegion(region); }
};
using TNativeRegionOwner = std::unique_ptr<HRGN__, TNativeRegionDeleter>;

// Every empty rectangle, one that is inside out among them, is the same empty region.
TNativeRegionOwner MakeNativeRegion(const TRect& rect);
TNativeRegionOwner CopyNativeRegion(TNativeRegion regionToCopy);

enum TRegionOperation { kRegionUnion, kRegionDifference, kRegionIntersection };

// `region` becomes the result. `other` may be the same one.
void CombineNativeRegion(TNativeRegion region, TNativeRegion other, TRegionOperation operation);
void OffsetNativeRegion(TNativeRegion region, std::int32_t dx, std::int32_t dy);

// The bounding box; the zero rectangle for an empty region.
TRect GetNativeRegionBounds(TNativeRegion region);
// Band by band from the top, each band from the left. No two of a band touch.
TRectList GetNativeRegionRects(TNativeRegion region);

}  // namespace NSMorvane
