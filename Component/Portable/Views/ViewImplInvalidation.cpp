// Views: bounds, invalidation, moving.
#include <utility>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Surfaces/BufferBitmap.h"
#include "Component/Portable/Surfaces/Region.h"
#include "Component/Portable/Views/ViewImpl.h"
#include "Component/Portable/Views/ViewWindow.h"

namespace NSMorvane {

namespace {

// False, with the region unchanged, if it would leave the range of coordinates.
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

bool HaveSameSize(const TRect& a, const TRect& b) {
  return RectWidth(a) == RectWidth(b) && RectHeight(a) == RectHeight(b);
}

// The same operations for the two kinds of areas. CutArea returns whether anything is left.

bool CutArea(TRect& area, const TRect& rect) { return IntersectRect(area, rect); }
void AddArea(CRegion& region, const TRect& area) { region.UnionRect(area); }
void InvalidateArea(IViewWindow& window, const TRect& area) { window.InvalidateRect(area); }

bool CutArea(CRegion& area, const TRect& rect) {
  area.IntersectRect(rect);
  return !area.IsEmpty();
}
void AddArea(CRegion& region, const CRegion& area) { region.UnionRegion(area); }
void InvalidateArea(IViewWindow& window, const CRegion& area) { window.InvalidateRegion(area); }

// Two places, the old one and the new one, are one request to the system, which costs as much as a small
// paint.
class CInvalidations : CNotCopied {
 public:
  explicit CInvalidations(IViewWindow* window) : fWindow(window) {
    if (fWindow) fWindow->BeginInvalidations();
  }
  ~CInvalidations() {
    if (fWindow) fWindow->EndInvalidations();
  }

 private:
  IViewWindow* fWindow;
};

}  // namespace

// --- Invalidation

TRect CViewImpl::GetClipBounds() const {
  TRect clip = fRect;
  for (const CViewImpl* view = fSuperView.get(); view; view = view->fSuperView.get())
    if (!IntersectRect(clip, view->fRect)) return {};
  return clip;
}

// Every view clips the area for its own buffer and for the views around it, but not for those inside it. So
// what a buffer records may be out of sight.
template <class TArea>
void CViewImpl::Invalidate(TArea area, bool inAllBuffers) {
  bool isRecorded = false;
  for (CViewImpl* view = this; view; view = view->fSuperView.get()) {
    if (!CutArea(area, view->fRect)) return;
    if (!view->fCollapsedDirtyRegion || (isRecorded && !inAllBuffers)) continue;
    AddArea(*view->fCollapsedDirtyRegion, area);
    isRecorded = true;
  }
  // Also when a buffer has recorded the area: its pixels must still be copied to the screen.
  if (fViewWindow) InvalidateArea(*fViewWindow, area);
}

void CViewImpl::InvalidateRect(const TRect& rect) { Invalidate(rect, false); }

void CViewImpl::InvalidatePicture(const TRect& rect) { Invalidate(rect, true); }

// Invalidates `rect`, where this view is or was, in the picture around it.
void CViewImpl::InvalidateAround(const TRect& rect) {
  if (fSuperView)
    fSuperView->InvalidatePicture(rect);
  else if (fViewWindow && !IsEmptyRect(rect))
    fViewWindow->InvalidateRect(rect);
}

// Invalidates what is in exactly one of the two rectangles. They are clipped first, so that no region gets
// larger than the view.
void CViewImpl::InvalidateDifference(const TRect& a, const TRect& b) {
  TRect partOfA = a;
  if (!IntersectRect(partOfA, fRect)) partOfA = {};
  TRect partOfB = b;
  if (!IntersectRect(partOfB, fRect)) partOfB = {};
  CRegion difference(partOfA);
  difference.UnionRect(partOfB);
  TRect common = partOfA;
  if (IntersectRect(common, partOfB)) difference.SubtractRect(common);
  Invalidate(difference, true);
}

// --- Bounds

void CViewImpl::SetBounds(const TRect& rect) {
  if (rect == fRect) return;
  const TRect oldRect = fRect;
  // Made first: if the bitmap cannot be made, the view stays as it was.
  TPermanentBuffer newBuffer;
  if (IsPermanentMode(fDrawMode) && !(BufferSize(rect) == BufferSize(oldRect)))
    newBuffer = MakePermanentBuffer(fDrawMode, rect);
  fRect = rect;
  PassOnBounds();
  if (newBuffer.fBitmap)
    SetPermanentBuffer(std::move(newBuffer));
  else if (fAutoInvalidation == kAutoInvalidationNone && GetRawSubViews().empty() &&
           HaveSameSize(rect, oldRect))
    MoveDirtyRegion(static_cast<std::int64_t>(rect.fLeft) - oldRect.fLeft,
                    static_cast<std::int64_t>(rect.fTop) - oldRect.fTop);
  else if (fCollapsedDirtyRegion)
    // The subviews, for example, are at other places in the bitmap now.
    *fCollapsedDirtyRegion = CRegion(fRect);
  BoundsChanged(oldRect);
  MarkToolRectsDirty();
}

void CViewImpl::BoundsChanged(const TRect& oldRect) {
  if (!fSuperView) return;
  switch (ResolveAutoInvalidation(oldRect)) {
    case kAutoInvalidationFull: {
      const CInvalidations both(fViewWindow);
      fSuperView->InvalidatePicture(oldRect);
      fSuperView->InvalidatePicture(fRect);
      break;
    }
    case kAutoInvalidationDifference:
      fSuperView->InvalidateDifference(fRect, oldRect);
      break;
    default:
      break;
  }
  // Subviews must not leave stale pixels where the view has appeared or disappeared.
  if (fAutoInvalidation == kAutoInvalidationNone && !GetRawSubViews().empty())
    fSuperView->InvalidateDifference(fRect, oldRect);
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

// The dirty region moves with the view's bitmap. If the bitmap is being drawn into right now, that drawing
// lands at the old place, so all of it becomes dirty.
void CViewImpl::MoveDirtyRegion(std::int64_t dx, std::int64_t dy) {
  if (!fCollapsedDirtyRegion) return;
  if (IsBufferBeingDrawn() || !OffsetRegion(*fCollapsedDirtyRegion, dx, dy))
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
    const CInvalidations both(fViewWindow);
    superView->InvalidatePicture(fRect);
    superView->InvalidatePicture(OffsetRectBy(fRect, distance.fX, distance.fY));
    MORVANE_ASSERT(fCollapsedDirtyRegion != NULL);
    handled = true;
  } else if (IsPermanentMode(superView->fDrawMode) && IsOnlySubView()) {
    ScrollInSuperView(distance);
    handled = true;
  }
  try {
    MoveSubtree(dx, dy, *superView, handled);
  } catch (...) {
    MarkToolRectsDirty();
    MORVANE_RETHROW();
  }
  MarkToolRectsDirty();
}

bool CViewImpl::IsOnlySubView() const {
  for (const CViewImpl* view : fSuperView->GetRawSubViews())
    if (view != this && view->IsLive()) return false;
  return true;
}

// Fills `destination`, in window coordinates, with the pixels that are `distance` before it. False if the
// bitmap is being drawn into, so that this is not possible.
bool CViewImpl::ScrollPixelsInSuperView(const TPoint& distance, const TRect& destination) {
  CViewImpl* const superView = fSuperView.get();
  if (superView->IsBufferBeingDrawn()) return false;
  const boost::shared_ptr<CBufferBitmap> bufferBitmap = superView->GetBitmapForDrawing();
  MORVANE_ASSERT(bufferBitmap != NULL);
  const TPoint origin = bufferBitmap->GetOrigin();
  MORVANE_ASSERT((origin.fX == 0) && (origin.fY == 0));
  const TRect inBitmap = OffsetRectBy(destination, -static_cast<std::int64_t>(superView->fRect.fLeft),
                                      -static_cast<std::int64_t>(superView->fRect.fTop));
  const TRect source = OffsetRectBy(inBitmap, -static_cast<std::int64_t>(distance.fX),
                                    -static_cast<std::int64_t>(distance.fY));
  bufferBitmap->CopyToPort(bufferBitmap->GetNativePort(), {inBitmap.fLeft, inBitmap.fTop}, source);
  return true;
}

// For a super view that is buffered and shows only this view: its pixels move inside the bitmap, and only
// what they leave and what comes into sight becomes dirty.
void CViewImpl::ScrollInSuperView(const TPoint& distance) {
  CViewImpl* const superView = fSuperView.get();
  const TRect superRect = superView->fRect;
  MORVANE_ASSERT(superView->fCollapsedDirtyRegion != NULL);
  CRegion& dirty = *superView->fCollapsedDirtyRegion;
  TRect oldVisible = fRect;
  if (!IntersectRect(oldVisible, superRect)) oldVisible = {};
  TRect newVisible = OffsetRectBy(fRect, distance.fX, distance.fY);
  if (!IntersectRect(newVisible, superRect)) newVisible = {};
  TRect moved = OffsetRectBy(oldVisible, distance.fX, distance.fY);
  if (!IntersectRect(moved, superRect)) moved = {};
  if (IsEmptyRect(moved) || ScrollPixelsInSuperView(distance, moved)) {
    // Dirty pixels stay dirty at their new place. The old dirty region stays too, since it may lie beside the
    // view.
    CRegion movedDirt = dirty;
    if (OffsetRegion(movedDirt, distance.fX, distance.fY)) {
      movedDirt.IntersectRect(superRect);
      dirty.UnionRegion(movedDirt);
    }
    CRegion uncovered(oldVisible);
    uncovered.UnionRect(newVisible);
    uncovered.SubtractRect(moved);
    dirty.UnionRegion(uncovered);
  } else {
    dirty = CRegion(superRect);
  }
  CViewImpl* const bufferedViewsSuperView = superView->fSuperView.get();
  MORVANE_ASSERT(NULL != bufferedViewsSuperView);
  superView->InvalidateAround(superRect);
}

// `around`, the super view of the subtree, shows what the views leave behind. With `handled`, their pixels
// have been taken care of already. If behaviours fail, the first code is thrown at the end: the pixels may
// have moved all at once, so the views must do so too.
void CViewImpl::MoveSubtree(std::int32_t dx, std::int32_t dy, CViewImpl& around, bool handled) {
  const TRect oldRect = fRect;
  const TPoint distance = LimitOffset(oldRect, dx, dy);
  fRect = OffsetRectBy(oldRect, distance.fX, distance.fY);
  PassOnBounds();
  MoveDirtyRegion(distance.fX, distance.fY);
  if (!handled) {
    switch (ResolveAutoInvalidation(oldRect)) {
      case kAutoInvalidationFull: {
        const CInvalidations both(fViewWindow);
        around.InvalidatePicture(oldRect);
        InvalidatePicture(fRect);
        handled = fAutoInvalidation == kAutoInvalidationFull;
        break;
      }
      case kAutoInvalidationDifference:
        around.InvalidateDifference(fRect, oldRect);
        break;
      default:
        break;
    }
  }
  TError firstError = kOK;
  if (fBehavior)
    firstError = ErrorOf([&] { MORVANE_CHECK(fBehavior->IViewBehavior_OnOffset(distance.fX, distance.fY)); });
  if (!GetRawSubViews().empty()) {
    for (const TViewImplPtr& subView : GetSubViews()) {
      if (!subView->IsLive()) continue;
      const TError error = ErrorOf([&] { subView->MoveSubtree(dx, dy, around, handled); });
      if (firstError == kOK) firstError = error;
    }
  }
  ThrowError(firstError);
}

}  // namespace NSMorvane
