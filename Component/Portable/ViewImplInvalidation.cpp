// Views: bounds, invalidation, moving.
#include <utility>

#include "Component/Portable/BufferBitmap.h"
#include "Component/Portable/ViewImpl.h"

namespace NSMorvane {

namespace {

// False, with the region where it was, if it would leave the range of coordinates.
bool OffsetRegion(CRegion& region, std::int64_t dx, std::int64_t dy) {
  if (region.IsEmpty()) return true;
  const TRect bounds = region.GetBounds();
  const TRect moved = OffsetRectBy(bounds, dx, dy);
  if (moved.fLeft != bounds.fLeft + dx || moved.fTop != bounds.fTop + dy ||
      moved.fRight != bounds.fRight + dx || moved.fBottom != bounds.fBottom + dy)
    return false;
  if (ToCoordinate(dx) != dx || ToCoordinate(dy) != dy) return false;
  region.Offset(static_cast<std::int32_t>(dx), static_cast<std::int32_t>(dy));
  return true;
}

bool HaveSameTopLeft(const TRect& a, const TRect& b) { return a.fLeft == b.fLeft && a.fTop == b.fTop; }

}  // namespace

// --- Invalidation

TRect CViewImpl::GetClipBounds() const {
  TRect clip = fRect;
  for (const CViewImpl* view = fSuperView.get(); view; view = view->fSuperView.get())
    if (!IntersectRect(clip, view->fRect)) return {};
  return clip;
}

void CViewImpl::InvalidateRect(const TRect& rect, const TRect& clipRect) {
  TRect dirty = rect;
  if (!IntersectRect(dirty, clipRect)) return;
  if (CViewImpl* const buffered = FindNearestBufferedView()) {
    TRect part = dirty;
    if (IntersectRect(part, buffered->fRect)) buffered->fCollapsedDirtyRegion->UnionRect(part);
  }
  // Also when a buffer has recorded it: its pixels have to get to the screen.
  if (fViewWindow) fViewWindow->InvalidateRect(dirty);
}

void CViewImpl::InvalidateRegion(const CRegion& region, const TRect& clipRect) {
  CRegion dirty = region;
  dirty.IntersectRect(clipRect);
  if (dirty.IsEmpty()) return;
  if (CViewImpl* const buffered = FindNearestBufferedView()) {
    CRegion part = dirty;
    part.IntersectRect(buffered->fRect);
    if (!part.IsEmpty()) buffered->fCollapsedDirtyRegion->UnionRegion(part);
  }
  if (fViewWindow) fViewWindow->InvalidateRegion(dirty);
}

CViewImpl* CViewImpl::FindNearestBufferedView() {
  CViewImpl* view = this;
  while (view && !view->fCollapsedDirtyRegion) view = view->fSuperView.get();
  return view;
}

// What is in exactly one of the two rectangles. They are cut first: no region gets larger than the clip.
void CViewImpl::InvalidateDifference(const TRect& a, const TRect& b, const TRect& clipRect) {
  TRect partOfA = a;
  if (!IntersectRect(partOfA, clipRect)) partOfA = {};
  TRect partOfB = b;
  if (!IntersectRect(partOfB, clipRect)) partOfB = {};
  CRegion difference(partOfA);
  difference.UnionRect(partOfB);
  TRect common = partOfA;
  if (IntersectRect(common, partOfB)) difference.SubtractRect(common);
  InvalidateRegion(difference, clipRect);
}

// --- Bounds

void CViewImpl::SetBounds(const TRect& rect) {
  if (rect == fRect) return;
  const TRect oldRect = fRect;
  // Made first: a bitmap that cannot be had leaves the view as it was.
  TPermanentBuffer newBuffer;
  if (IsPermanentMode(fDrawMode) && !(BufferSize(rect) == BufferSize(oldRect)))
    newBuffer = MakePermanentBuffer(fDrawMode, rect);
  fRect = rect;
  if (newBuffer.fBitmap)
    SetPermanentBuffer(std::move(newBuffer));
  else
    MoveDirtyRegion(static_cast<std::int64_t>(rect.fLeft) - oldRect.fLeft,
                    static_cast<std::int64_t>(rect.fTop) - oldRect.fTop);
  BoundsChanged(oldRect);
  MarkToolRectsDirty();
}

void CViewImpl::BoundsChanged(const TRect& oldRect) {
  if (!fSuperView) return;
  const TRect clip = fSuperView->GetClipBounds();
  switch (ResolveAutoInvalidation(oldRect)) {
    case kAutoInvalidationFull:
      InvalidateRect(oldRect, clip);
      InvalidateRect(fRect, clip);
      break;
    case kAutoInvalidationDifference:
      InvalidateDifference(fRect, oldRect, clip);
      break;
    default:
      break;
  }
  // Subviews must not leave stale pixels in the part that changed hands.
  if (fAutoInvalidation == kAutoInvalidationNone && !fSubViews.empty())
    InvalidateDifference(fRect, oldRect, clip);
}

// None, full or difference, for a view that was at `oldRect`.
TAutoInvalidation CViewImpl::ResolveAutoInvalidation(const TRect& oldRect) const {
  switch (fAutoInvalidation) {
    case kAutoInvalidationNone:
    case kAutoInvalidationFull:
    case kAutoInvalidationDifference:
      return fAutoInvalidation;
    case kAutoInvalidationDifferenceTopLeft:
      return HaveSameTopLeft(fRect, oldRect) ? kAutoInvalidationDifference : kAutoInvalidationFull;
  }
  MORVANE_UNREACHED();
  return kAutoInvalidationNone;
}

// Pixels that wait to be drawn move with the bitmap that they are in.
void CViewImpl::MoveDirtyRegion(std::int64_t dx, std::int64_t dy) {
  if (fCollapsedDirtyRegion && !OffsetRegion(*fCollapsedDirtyRegion, dx, dy))
    *fCollapsedDirtyRegion = CRegion(fRect);
}

void CViewImpl::MarkToolRectsDirty() {
  if (fViewWindow) fViewWindow->MarkToolRectsDirty();
}

// --- Moving

void CViewImpl::CViewGlue_Offset(std::int32_t dx, std::int32_t dy) {
  CViewImpl* const superView = fSuperView.get();
  MORVANE_ASSERT(superView != NULL);
  if (!superView) MORVANE_THROW(std::invalid_argument(""));
  const TPoint distance = LimitOffset(fRect, dx, dy);
  bool handled = false;
  if (IsPermanentMode(fDrawMode)) {
    superView->InvalidateRect(fRect, superView->fRect);
    superView->InvalidateRect(OffsetRectBy(fRect, distance.fX, distance.fY), superView->fRect);
    MORVANE_ASSERT(fCollapsedDirtyRegion != NULL);
    handled = true;
  } else if (IsPermanentMode(superView->fDrawMode) && IsOnlySubView()) {
    ScrollInSuperView(distance);
    handled = true;
  }
  MoveSubtree(dx, dy, superView->GetClipBounds(), handled);
  MarkToolRectsDirty();
}

bool CViewImpl::IsOnlySubView() const {
  for (const CViewImpl* view : fSuperView->fSubViews)
    if (view != this && view->IsLive()) return false;
  return true;
}

// The super view is buffered, and shows nothing but this view: its pixels move inside the bitmap, and only
// the strip that comes into sight is dirty.
void CViewImpl::ScrollInSuperView(const TPoint& distance) {
  CViewImpl& superView = *fSuperView;
  const TRect superRect = superView.fRect;
  TRect oldVisible = fRect;
  if (!IntersectRect(oldVisible, superRect)) oldVisible = {};
  TRect newVisible = OffsetRectBy(oldVisible, distance.fX, distance.fY);
  if (IntersectRect(newVisible, superRect)) {
    const boost::shared_ptr<CBufferBitmap> bufferBitmap = superView.GetBitmapForDrawing();
    MORVANE_ASSERT(bufferBitmap != NULL);
    const TPoint origin = bufferBitmap->GetOrigin();
    MORVANE_ASSERT((origin.fX == 0) && (origin.fY == 0));
    const TRect destination = OffsetRectBy(newVisible, -static_cast<std::int64_t>(superRect.fLeft),
                                           -static_cast<std::int64_t>(superRect.fTop));
    const TRect source = OffsetRectBy(destination, -static_cast<std::int64_t>(distance.fX),
                                      -static_cast<std::int64_t>(distance.fY));
    bufferBitmap->CopyToPort(bufferBitmap->GetNativePort(), {destination.fLeft, destination.fTop}, source);
    superView.ReleaseBitmapForDrawing(bufferBitmap);
  } else {
    newVisible = {};
  }

  MORVANE_ASSERT(superView.fCollapsedDirtyRegion != NULL);
  CRegion& dirty = *superView.fCollapsedDirtyRegion;
  if (!OffsetRegion(dirty, distance.fX, distance.fY)) dirty = CRegion();
  if (oldVisible.fLeft >= oldVisible.fRight && oldVisible.fTop >= oldVisible.fBottom) {
    TRect comesIntoSight = OffsetRectBy(fRect, distance.fX, distance.fY);
    if (IntersectRect(comesIntoSight, superRect)) dirty.UnionRect(comesIntoSight);
  } else {
    CRegion uncovered(oldVisible);
    uncovered.SubtractRect(newVisible);
    dirty.UnionRegion(uncovered);
  }

  CViewImpl* const bufferedViewsSuperView = superView.fSuperView.get();
  MORVANE_ASSERT(NULL != bufferedViewsSuperView);
  if (bufferedViewsSuperView)
    bufferedViewsSuperView->InvalidateRect(superRect, bufferedViewsSuperView->fRect);
  else if (fViewWindow)
    fViewWindow->InvalidateRect(superRect);
}

// `clip` is for what the views leave behind. With `handled` their pixels are taken care of already.
void CViewImpl::MoveSubtree(std::int32_t dx, std::int32_t dy, const TRect& clip, bool handled) {
  const TRect oldRect = fRect;
  const TPoint distance = LimitOffset(oldRect, dx, dy);
  fRect = OffsetRectBy(oldRect, distance.fX, distance.fY);
  MoveDirtyRegion(distance.fX, distance.fY);
  if (!handled) {
    switch (ResolveAutoInvalidation(oldRect)) {
      case kAutoInvalidationFull:
        InvalidateRect(oldRect, clip);
        InvalidateRect(fRect, GetClipBounds());
        handled = fAutoInvalidation == kAutoInvalidationFull;
        break;
      case kAutoInvalidationDifference:
        InvalidateDifference(fRect, oldRect, clip);
        break;
      default:
        break;
    }
  }
  if (fBehavior) MORVANE_CHECK(fBehavior->IViewBehavior_OnOffset(dx, dy));
  if (fSubViews.empty()) return;
  for (const TViewImplPtr& subView : GetSubViews())
    if (subView->IsLive()) subView->MoveSubtree(dx, dy, clip, handled);
}

}  // namespace NSMorvane
