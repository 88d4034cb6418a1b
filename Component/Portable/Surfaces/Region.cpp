#include "Component/Portable/Surfaces/Region.h"

#include <cstddef>

#include "Component/Portable/Base/MorvaneImplUtils.h"

namespace NSMorvane {

namespace {

// The wrapper has one reference, which the caller owns.
CNativeRegionWrapper* Wrap(TNativeRegionOwner region) {
  CNativeRegionWrapper* const wrapper = new CNativeRegionWrapper(region.get(), false);
  static_cast<void>(region.release());
  wrapper->AddReference();
  return wrapper;
}

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
    const bool ok = DeleteNativeRegion(fNativeRegion);
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
  fCachedBounds = GetNativeRegionBounds(fNativeRegion);
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

CRegion::CRegion(const TRect& rect) : fNativeRegionWrapper(Wrap(MakeNativeRegion(rect))) {
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
  return GetNativeRegionRects(fNativeRegionWrapper->GetNativeRegion());
}

// --- CRegion: writing

void CRegion::UnionRect(const TRect& rect) {
  MORVANE_ASSERT(DebugValidate());
  if (IsEmptyRect(rect)) return;
  CombineWithRect(rect, kRegionUnion);
}

void CRegion::SubtractRect(const TRect& rect) {
  MORVANE_ASSERT(DebugValidate());
  if (IsEmptyRect(rect)) return;
  CombineWithRect(rect, kRegionDifference);
}

void CRegion::IntersectRect(const TRect& rect) {
  MORVANE_ASSERT(DebugValidate());
  CombineWithRect(rect, kRegionIntersection);
}

void CRegion::UnionRegion(const CRegion& other) {
  MORVANE_ASSERT(DebugValidate());
  CombineWith(other.GetNativeRegion(), kRegionUnion);
}

void CRegion::Offset(std::int32_t dx, std::int32_t dy) {
  MORVANE_ASSERT(DebugValidate());
  MakeUnique();
  OffsetNativeRegion(fNativeRegionWrapper->GetNativeRegion(), dx, dy);
  fNativeRegionWrapper->InvalidateCachedBounds();
  MORVANE_ASSERT(DebugValidate());
}

void CRegion::CombineWithRect(const TRect& rect, TRegionOperation operation) {
  const TNativeRegionOwner rectangleRegion = MakeNativeRegion(rect);
  MORVANE_ASSERT(rectangleRegion != NULL);
  CombineWith(rectangleRegion.get(), operation);
}

void CRegion::CombineWith(TNativeRegion nativeRegion, TRegionOperation operation) {
  MakeUnique();
  CombineNativeRegion(fNativeRegionWrapper->GetNativeRegion(), nativeRegion, operation);
  fNativeRegionWrapper->InvalidateCachedBounds();
  MORVANE_ASSERT(DebugValidate());
}

}  // namespace NSMorvane
