// The operations on the platform's regions that CRegion needs. The functions are in the platform half. An
// operation that fails throws, and leaves the regions as they were.
#pragma once

#include <cstdint>
#include <memory>

#include "Component/Portable/Base/Geometry.h"

struct HRGN__;

namespace NSMorvane {

// The platform's handle of a region, an HRGN.
using TNativeRegion = HRGN__*;

// False, with nothing deleted, for an invalid handle.
bool DeleteNativeRegion(TNativeRegion region);

struct TNativeRegionDeleter {
  void operator()(TNativeRegion region) const { DeleteNativeRegion(region); }
};
using TNativeRegionOwner = std::unique_ptr<HRGN__, TNativeRegionDeleter>;

// Every empty rectangle, including one that is inside out, gives the same empty region.
TNativeRegionOwner MakeNativeRegion(const TRect& rect);
TNativeRegionOwner CopyNativeRegion(TNativeRegion regionToCopy);

enum TRegionOperation { kRegionUnion, kRegionDifference, kRegionIntersection };

// `region` becomes the result. `other` may be the same one.
void CombineNativeRegion(TNativeRegion region, TNativeRegion other, TRegionOperation operation);
void OffsetNativeRegion(TNativeRegion region, std::int32_t dx, std::int32_t dy);

// The bounding box; the zero rectangle for an empty region.
TRect GetNativeRegionBounds(TNativeRegion region);
// Band by band from the top, each band from the left. No two rectangles of a band touch.
TRectList GetNativeRegionRects(TNativeRegion region);

}  // namespace NSMorvane
