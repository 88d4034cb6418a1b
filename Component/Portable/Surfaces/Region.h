// A set of pixels, as a value. Copies share one native region until one of them is written to.
#pragma once

#include <cstdint>

#include "Component/Portable/Base/Geometry.h"
#include "Component/Portable/Base/Scopes.h"
#include "Component/Portable/Surfaces/NativeRegion.h"
#include "Interface/MorvaneTypes.h"

namespace NSMorvane {

// The native region that several CRegion objects share, with their reference count. Only CRegion uses it.
class CNativeRegionWrapper : CNotCopied {
 public:
  // Made on the heap, with a count of 0. An `external` region belongs to someone else, who keeps it alive; it
  // is never written to or deleted here.
  CNativeRegionWrapper(TNativeRegion nativeRegion, bool external);

  bool DebugValidate() const {
    return fNativeRegion != nullptr && (fIsExternal == 0 || fIsExternal == 1) && fReferenceCount >= 0;
  }
  void AddReference();
  // The last release deletes the wrapper.
  void Release();
  TNativeRegion GetNativeRegion() const;
  // Whether a write would be seen by someone else.
  bool IsShared() const;
  // The bounding box. An empty region has the zero rectangle.
  TRect GetBounds();
  // Must be called after every write to the native region.
  void InvalidateCachedBounds();

 private:
  ~CNativeRegionWrapper();

  TNativeRegion fNativeRegion;
  std::int32_t fIsExternal;
  std::int32_t fReferenceCount;
  TRect fCachedBounds;
  bool fCachedBoundsAreValid;
};

// Not thread-safe: the count is a plain number. Every operation that fails leaves the region as it was.
class CRegion {
 public:
  // Empty.
  CRegion();
  explicit CRegion(const TRect& rect);
  CRegion(const CRegion& other);
  // If `external` is false, this object owns the handle once the constructor has succeeded. Otherwise the
  // caller keeps the ownership, and must keep the handle alive and unchanged as long as this region or a copy
  // of it may be read.
  CRegion(TNativeRegion nativeRegion, bool external);
  ~CRegion();
  CRegion& operator=(const CRegion& other);

  bool DebugValidate() const {
    return fNativeRegionWrapper != nullptr && fNativeRegionWrapper->DebugValidate();
  }

  // The bounding box, remembered until the next write. The zero rectangle for an empty region.
  TRect GetBounds() const;
  // The region keeps the ownership. The handle is valid until the region is written to, assigned to or
  // destroyed. It must not be changed.
  TNativeRegion GetNativeRegion() const;
  bool IsEmpty() const;
  // The region cut into rectangles: band by band from the top, each band from the left.
  TRectList GetRects() const;

  // These two do nothing for an empty rectangle.
  void UnionRect(const TRect& rect);
  void SubtractRect(const TRect& rect);
  void IntersectRect(const TRect& rect);
  void UnionRegion(const CRegion& other);
  void Offset(std::int32_t dx, std::int32_t dy);

 private:
  void MakeUnique();
  void CombineWithRect(const TRect& rect, TRegionOperation operation);
  void CombineWith(TNativeRegion nativeRegion, TRegionOperation operation);

  CNativeRegionWrapper* fNativeRegionWrapper;
};

}  // namespace NSMorvane
