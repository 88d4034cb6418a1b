#include "Component/Portable/Surfaces/Region.h"

#include <windows.h>

#include <cstddef>
#include <cstring>
#include <vector>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Surfaces/NativeOwners.h"

namespace NSMorvane {

namespace {

// The platform would turn a rectangle that is inside out; here every empty one is the same empty region.
TRegionOwner MakeRectRegion(const TRect& rect) {
  const bool empty = IsEmptyRect(rect);
  TRegionOwner region(empty ? CreateRectRgn(0, 0, 0, 0)
                            : CreateRectRgn(rect.fLeft, rect.fTop, rect.fRight, rect.fBottom));
  if (region == nullptr) MORVANE_THROW(XOutOfMemory());
  return region;
}

TRegionOwner CopyNativeRegion(HRGN regionToCopy) {
  MORVANE_ASSERT(regionToCopy != NULL);
  TRegionOwner copy(CreateRectRgn(0, 0, 0, 0));
  if (copy == nullptr) MORVANE_THROW(std::exception());
  if (CombineRgn(copy.get(), regionToCopy, nullptr, RGN_COPY) == ERROR) MORVANE_THROW(std::exception());
  return copy;
}

// With one reference for the caller.
CNativeRegionWrapper* Wrap(TRegionOwner region) {
  CNativeRegionWrapper* const wrapper = new CNativeRegionWrapper(region.get(), false);
  static_cast<void>(region.release());
  wrapper->AddReference();
  return wrapper;
}

TRect ToRect(const RECT& rect) { return {rect.left, rect.top, rect.right, rect.bottom}; }

}  // namespace

// --- CNativeRegionWrapper

CNativeRegionWrapper::CNativeRegionWrapper(TNativeRegion nativeRegion, bool external)
    : fNativeRegion(nativeRegion),
      fIsExternal(external ? 1 : 0),
      fReferenceCount(0),
      fCachedBounds(),
      fCachedBoundsAreValid(false) {
  MORVANE_ASSERT(DebugValidate());
}

CNativeRegionWrapper::~CNativeRegionWrapper() {
  MORVANE_ASSERT(fReferenceCount == 0);
  MORVANE_ASSERT(DebugValidate());
  if (fIsExternal == 0) {
    const BOOL ok = DeleteObject(fNativeRegion);
    MORVANE_ASSERT(ok);
  }
  PoisonField(fNativeRegion, nullptr);
  PoisonField(fReferenceCount, -1);
}

void CNativeRegionWrapper::AddReference() {
  MORVANE_ASSERT(DebugValidate());
  ++fReferenceCount;
  MORVANE_ASSERT(DebugValidate());
}

void CNativeRegionWrapper::Release() {
  MORVANE_ASSERT(DebugValidate());
  MORVANE_ASSERT(fReferenceCount > 0);
  if (--fReferenceCount < 1) delete this;
}

TNativeRegion CNativeRegionWrapper::GetNativeRegion() const {
  MORVANE_ASSERT(DebugValidate());
  return fNativeRegion;
}

bool CNativeRegionWrapper::IsShared() const {
  MORVANE_ASSERT(DebugValidate());
  return fIsExternal == 1 || fReferenceCount > 1;
}

TRect CNativeRegionWrapper::GetBounds() {
  MORVANE_ASSERT(DebugValidate());
  if (fCachedBoundsAreValid) return fCachedBounds;
  RECT box = {};
  switch (GetRgnBox(fNativeRegion, &box)) {
    case NULLREGION:
      fCachedBounds = {};
      break;
    case SIMPLEREGION:
    case COMPLEXREGION:
      fCachedBounds = ToRect(box);
      break;
    case ERROR:
      MORVANE_THROW(std::exception());
    default:
      MORVANE_UNREACHED();
      return {};
  }
  fCachedBoundsAreValid = true;
  MORVANE_ASSERT(DebugValidate());
  return fCachedBounds;
}

void CNativeRegionWrapper::InvalidateCachedBounds() {
  MORVANE_ASSERT(DebugValidate());
  fCachedBoundsAreValid = false;
}

// --- CRegion: life and sharing

CRegion::CRegion() : CRegion(TRect{}) {}

CRegion::CRegion(const TRect& rect) : fNativeRegionWrapper(Wrap(MakeRectRegion(rect))) {
  MORVANE_ASSERT(DebugValidate());
}

CRegion::CRegion(const CRegion& other) : fNativeRegionWrapper(other.fNativeRegionWrapper) {
  MORVANE_ASSERT(other.DebugValidate());
  fNativeRegionWrapper->AddReference();
  MORVANE_ASSERT(DebugValidate());
}

CRegion::CRegion(TNativeRegion nativeRegion, bool external)
    : fNativeRegionWrapper(new CNativeRegionWrapper(nativeRegion, external)) {
  fNativeRegionWrapper->AddReference();
  MORVANE_ASSERT(DebugValidate());
}

CRegion::~CRegion() {
  MORVANE_ASSERT(DebugValidate());
  fNativeRegionWrapper->Release();
  PoisonField(fNativeRegionWrapper, nullptr);
}

CRegion& CRegion::operator=(const CRegion& other) {
  MORVANE_ASSERT(DebugValidate());
  MORVANE_ASSERT(other.DebugValidate());
  MORVANE_ASSERT(fNativeRegionWrapper != NULL);
  MORVANE_ASSERT(other.fNativeRegionWrapper != NULL);
  if (fNativeRegionWrapper != other.fNativeRegionWrapper) {
    CNativeRegionWrapper* const old = fNativeRegionWrapper;
    other.fNativeRegionWrapper->AddReference();
    fNativeRegionWrapper = other.fNativeRegionWrapper;
    old->Release();
  }
  MORVANE_ASSERT(DebugValidate());
  return *this;
}

void CRegion::MakeUnique() {
  if (!fNativeRegionWrapper->IsShared()) return;
  CNativeRegionWrapper* const old = fNativeRegionWrapper;
  fNativeRegionWrapper = Wrap(CopyNativeRegion(old->GetNativeRegion()));
  old->Release();
}

// --- CRegion: reading

TRect CRegion::GetBounds() const {
  MORVANE_ASSERT(DebugValidate());
  return fNativeRegionWrapper->GetBounds();
}

TNativeRegion CRegion::GetNativeRegion() const {
  MORVANE_ASSERT(DebugValidate());
  return fNativeRegionWrapper->GetNativeRegion();
}

bool CRegion::IsEmpty() const {
  MORVANE_ASSERT(DebugValidate());
  return IsEmptyRect(fNativeRegionWrapper->GetBounds());
}

TRectList CRegion::GetRects() const {
  MORVANE_ASSERT(DebugValidate());
  const HRGN region = fNativeRegionWrapper->GetNativeRegion();
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

// --- CRegion: writing

void CRegion::UnionRect(const TRect& rect) {
  MORVANE_ASSERT(DebugValidate());
  if (IsEmptyRect(rect)) return;
  CombineWithRect(rect, RGN_OR);
}

void CRegion::SubtractRect(const TRect& rect) {
  MORVANE_ASSERT(DebugValidate());
  if (IsEmptyRect(rect)) return;
  CombineWithRect(rect, RGN_DIFF);
}

void CRegion::IntersectRect(const TRect& rect) {
  MORVANE_ASSERT(DebugValidate());
  CombineWithRect(rect, RGN_AND);
}

void CRegion::UnionRegion(const CRegion& other) {
  MORVANE_ASSERT(DebugValidate());
  CombineWith(other.GetNativeRegion(), RGN_OR);
}

void CRegion::Offset(std::int32_t dx, std::int32_t dy) {
  MORVANE_ASSERT(DebugValidate());
  MakeUnique();
  if (OffsetRgn(fNativeRegionWrapper->GetNativeRegion(), dx, dy) == ERROR) MORVANE_THROW(std::exception());
  fNativeRegionWrapper->InvalidateCachedBounds();
  MORVANE_ASSERT(DebugValidate());
}

void CRegion::CombineWithRect(const TRect& rect, int mode) {
  const TRegionOwner rectangleRegion = MakeRectRegion(rect);
  MORVANE_ASSERT(rectangleRegion != NULL);
  CombineWith(rectangleRegion.get(), mode);
}

void CRegion::CombineWith(TNativeRegion nativeRegion, int mode) {
  MakeUnique();
  const HRGN region = fNativeRegionWrapper->GetNativeRegion();
  if (CombineRgn(region, region, nativeRegion, mode) == ERROR) MORVANE_THROW(std::exception());
  fNativeRegionWrapper->InvalidateCachedBounds();
  MORVANE_ASSERT(DebugValidate());
}

}  // namespace NSMorvane
