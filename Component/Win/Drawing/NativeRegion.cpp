// Regions over GDI.
#include "Component/Portable/Surfaces/NativeRegion.h"

#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <vector>

#include "Component/Portable/Base/MorvaneImplUtils.h"

namespace NSMorvane {

namespace {

TRect ToRect(const RECT& rect) { return {rect.left, rect.top, rect.right, rect.bottom}; }

constexpr int NativeMode(TRegionOperation operation) {
  switch (operation) {
    case kRegionUnion:
      return RGN_OR;
    case kRegionDifference:
      return RGN_DIFF;
    case kRegionIntersection:
      return RGN_AND;
  }
  return 0;
}

}  // namespace

bool DeleteNativeRegion(TNativeRegion region) { return DeleteObject(region) != 0; }

TNativeRegionOwner MakeNativeRegion(const TRect& rect) {
  // CreateRectRgn would swap the sides of an inverted rectangle instead of making an empty region.
  const bool empty = IsEmptyRect(rect);
  TNativeRegionOwner region(empty ? CreateRectRgn(0, 0, 0, 0)
                                  : CreateRectRgn(rect.fLeft, rect.fTop, rect.fRight, rect.fBottom));
  if (region == nullptr) MORVANE_THROW(XOutOfMemory());
  return region;
}

TNativeRegionOwner CopyNativeRegion(TNativeRegion regionToCopy) {
  MORVANE_ASSERT(regionToCopy != NULL);
  TNativeRegionOwner copy(CreateRectRgn(0, 0, 0, 0));
  if (copy == nullptr) MORVANE_THROW(std::exception());
  if (CombineRgn(copy.get(), regionToCopy, nullptr, RGN_COPY) == ERROR) MORVANE_THROW(std::exception());
  return copy;
}

void CombineNativeRegion(TNativeRegion region, TNativeRegion other, TRegionOperation operation) {
  if (CombineRgn(region, region, other, NativeMode(operation)) == ERROR) MORVANE_THROW(std::exception());
}

void OffsetNativeRegion(TNativeRegion region, std::int32_t dx, std::int32_t dy) {
  if (OffsetRgn(region, dx, dy) == ERROR) MORVANE_THROW(std::exception());
}

TRect GetNativeRegionBounds(TNativeRegion region) {
  RECT box = {};
  switch (GetRgnBox(region, &box)) {
    case NULLREGION:
      return {};
    case SIMPLEREGION:
    case COMPLEXREGION:
      return ToRect(box);
    case ERROR:
      MORVANE_THROW(std::exception());
  }
  MORVANE_UNREACHED();
  return {};
}

TRectList GetNativeRegionRects(TNativeRegion region) {
  TRectList result;
  RECT regionBox = {};
  switch (GetRgnBox(region, &regionBox)) {
    case NULLREGION:
      break;
    case SIMPLEREGION: {
      const TRect box = ToRect(regionBox);
      result.push_back(IsEmptyRect(box) ? TRect{} : box);
      break;
    }
    case COMPLEXREGION: {
      const DWORD size = GetRegionData(region, 0, nullptr);
      if (size < sizeof(RGNDATAHEADER)) break;
      // RGNDATA wants the alignment of a DWORD, which storage from new has.
      std::vector<std::byte> buffer(size);
      RGNDATA* const regionData = reinterpret_cast<RGNDATA*>(buffer.data());
      if (GetRegionData(region, size, regionData) == 0 || regionData->rdh.iType != RDH_RECTANGLES) break;
      MORVANE_ASSERT(regionData->rdh.rcBound.left == regionBox.left);
      MORVANE_ASSERT(regionData->rdh.rcBound.top == regionBox.top);
      MORVANE_ASSERT(regionData->rdh.rcBound.right == regionBox.right);
      MORVANE_ASSERT(regionData->rdh.rcBound.bottom == regionBox.bottom);
      const std::size_t count =
          std::min<std::size_t>(regionData->rdh.nCount, (size - sizeof(RGNDATAHEADER)) / sizeof(RECT));
      result.reserve(count + 1);
      for (std::size_t i = 0; i < count; ++i) {
        RECT rect;
        std::memcpy(&rect, regionData->Buffer + i * sizeof(RECT), sizeof(RECT));
        result.push_back(ToRect(rect));
      }
      break;
    }
    default:
      MORVANE_UNREACHED();
      break;
  }
  return result;
}

}  // namespace NSMorvane
