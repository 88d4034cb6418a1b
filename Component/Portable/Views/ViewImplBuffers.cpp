// Views: bitmaps and their dirty regions.
#include <algorithm>
#include <utility>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Surfaces/BufferBitmap.h"
#include "Component/Portable/Surfaces/Region.h"
#include "Component/Portable/Surfaces/TileBitmapPool.h"
#include "Component/Portable/Views/ViewImpl.h"

namespace NSMorvane {

// A permanent bitmap is never smaller than one pixel.
TSize CViewImpl::BufferSize(const TRect& rect) {
  return {ToCoordinate(std::max<std::int64_t>(1, RectWidth(rect))),
          ToCoordinate(std::max<std::int64_t>(1, RectHeight(rect)))};
}

bool CViewImpl::IsBufferBeingDrawn() const {
  return fPermanentOffscreenBitmap && fPermanentOffscreenBitmap->IsBeingDrawnInto();
}

// Empty for the other modes. A new bitmap is dirty everywhere.
CViewImpl::TPermanentBuffer CViewImpl::MakePermanentBuffer(TViewDrawMode mode, const TRect& rect) {
  TPermanentBuffer buffer;
  if (!IsPermanentMode(mode)) return buffer;
  buffer.fDirtyRegion = std::make_unique<CRegion>(rect);
  buffer.fBitmap.reset(new CBufferBitmap(BufferSize(rect), mode == kViewDrawPermanent16 ? 16 : 32));
  return buffer;
}

void CViewImpl::SetPermanentBuffer(TPermanentBuffer buffer) {
  fPermanentOffscreenBitmap.swap(buffer.fBitmap);
  fCollapsedDirtyRegion.swap(buffer.fDirtyRegion);
}

boost::shared_ptr<CBufferBitmap> CViewImpl::GetBitmapForDrawing() {
  switch (fDrawMode) {
    case kViewDrawDirect:
      return {};
    case kViewDrawTemporary16:
      return CTileBitmapPool::ForDepth(16).Take();
    case kViewDrawTemporary32:
      return CTileBitmapPool::ForDepth(32).Take();
    case kViewDrawPermanent16:
    case kViewDrawPermanent32:
      return fPermanentOffscreenBitmap;
  }
  MORVANE_UNREACHED();
  MORVANE_THROW(std::exception());
}

CRegion CViewImpl::TakeDirtyRegion() {
  if (!IsPermanentMode(fDrawMode)) {
    MORVANE_UNREACHED();
    MORVANE_THROW(std::exception());
  }
  MORVANE_ASSERT(fCollapsedDirtyRegion != NULL);
  // What lies outside the super view cannot have reached the screen: it stays dirty.
  CRegion rest;
  if (fSuperView) {
    rest.UnionRect(fRect);
    rest.SubtractRect(fSuperView->fRect);
  }
  CRegion result = *fCollapsedDirtyRegion;
  *fCollapsedDirtyRegion = rest;
  return result;
}

void CViewImpl::PutBackDirtyRegion(const CRegion& region) {
  // Mode and place may have changed since.
  if (!fCollapsedDirtyRegion) return;
  CRegion part = region;
  part.IntersectRect(fRect);
  fCollapsedDirtyRegion->UnionRegion(part);
}

void CViewImpl::RecordFailedDrawing() noexcept {
  try {
    TRect part = fRect;
    for (CViewImpl* view = this; view && IntersectRect(part, view->fRect); view = view->fSuperView.get())
      if (view->IsBufferBeingDrawn()) view->fCollapsedDirtyRegion->UnionRect(part);
  } catch (...) {
    // The failure of the drawing itself is reported elsewhere.
  }
}

}  // namespace NSMorvane
