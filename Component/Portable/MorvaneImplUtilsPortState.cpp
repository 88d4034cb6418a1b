#include "Component/Portable/MorvaneImplUtilsPortState.h"

#include <algorithm>

namespace NSMorvane {

namespace {

bool operator!=(const POINT& a, const POINT& b) { return a.x != b.x || a.y != b.y; }

}  // namespace

// --- CPortAttributes
// ----------------------------------------------------------------------------------------

CPortAttributes::CPortAttributes(HDC hdc)
    : fGraphicsMode(GetGraphicsMode(hdc)),
      fMapMode(GetMapMode(hdc)),
      fLayout(GetLayout(hdc)),
      fViewportOrigin(),
      fWindowOrigin(),
      fTextColour(GetTextColor(hdc)),
      fBackgroundColour(GetBkColor(hdc)),
      fBackgroundMode(GetBkMode(hdc)),
      fRasterOperation(GetROP2(hdc)),
      fTextAlign(GetTextAlign(hdc)) {
  GetViewportOrgEx(hdc, &fViewportOrigin);
  GetWindowOrgEx(hdc, &fWindowOrigin);
}

void CPortAttributes::Restore(HDC hdc) const {
  // The mapping from the inside out: a mode that changes resets what depends on it.
  if (GetGraphicsMode(hdc) != fGraphicsMode) {
    ModifyWorldTransform(hdc, nullptr, MWT_IDENTITY);
    SetGraphicsMode(hdc, fGraphicsMode);
  }
  if (GetLayout(hdc) != fLayout) SetLayout(hdc, fLayout);
  if (GetMapMode(hdc) != fMapMode) SetMapMode(hdc, fMapMode);
  POINT origin = fViewportOrigin;
  GetViewportOrgEx(hdc, &origin);
  if (origin != fViewportOrigin) SetViewportOrgEx(hdc, fViewportOrigin.x, fViewportOrigin.y, nullptr);
  origin = fWindowOrigin;
  GetWindowOrgEx(hdc, &origin);
  if (origin != fWindowOrigin) SetWindowOrgEx(hdc, fWindowOrigin.x, fWindowOrigin.y, nullptr);

  if (GetTextColor(hdc) != fTextColour) SetTextColor(hdc, fTextColour);
  if (GetBkColor(hdc) != fBackgroundColour) SetBkColor(hdc, fBackgroundColour);
  if (GetBkMode(hdc) != fBackgroundMode) SetBkMode(hdc, fBackgroundMode);
  if (GetROP2(hdc) != fRasterOperation) SetROP2(hdc, fRasterOperation);
  if (GetTextAlign(hdc) != fTextAlign) SetTextAlign(hdc, fTextAlign);
}

bool CPortAttributes::IsPixelMapping() const {
  return fGraphicsMode == GM_COMPATIBLE && fMapMode == MM_TEXT && fLayout == 0;
}

// --- CPortGuard
// ---------------------------------------------------------------------------------------------

CPortGuard::CPortGuard(HDC hdc) : fHDC(hdc), fAttributes(hdc), fObjects() {
  for (std::size_t i = 0; i < std::size(kObjectTypes); ++i)
    fObjects[i] = GetCurrentObject(fHDC, kObjectTypes[i]);
}

CPortGuard::~CPortGuard() {
  for (std::size_t i = 0; i < std::size(kObjectTypes); ++i)
    if (GetCurrentObject(fHDC, kObjectTypes[i]) != fObjects[i]) SelectObject(fHDC, fObjects[i]);
  fAttributes.Restore(fHDC);
}

// --- CPortClip
// ----------------------------------------------------------------------------------------------

CPortClip::CPortClip(HDC hdc) : fHDC(hdc), fAttributes(hdc), fShape(kNothing), fBox(), fIsIntact(true) {
  RECT box = {};
  const int complexity = GetClipBox(hdc, &box);
  if (complexity == ERROR || complexity == NULLREGION) return;
  fBox = {box.left, box.top, box.right, box.bottom};
  if (IsEmptyRect(fBox)) return;
  if (complexity == SIMPLEREGION && fAttributes.IsPixelMapping()) {
    fShape = kOneRect;
    return;
  }
  fShape = kUnknown;
  fState.emplace(hdc);
  // The surface of a memory context is one rectangle, so its clip region alone makes the shape. What can be
  // drawn of a window may have any shape.
  if (fState->GetClipRegion() == nullptr || !fAttributes.IsPixelMapping() || GetObjectType(hdc) != OBJ_MEMDC)
    return;
  POINT shift = {0, 0};
  if (!DPtoLP(hdc, &shift, 1)) return;
  for (const TRect& rect : CRegion(fState->GetClipRegion(), true).GetRects()) {
    TRect logical = OffsetRectBy(rect, shift.x, shift.y);
    if (NSMorvane::IntersectRect(logical, fBox)) fRects.push_back(logical);
  }
  fShape = kRects;
}

CPortClip::~CPortClip() {
  if (!fIsIntact) BringBack();
}

bool CPortClip::Enter(const TRect& bounds) {
  switch (fShape) {
    case kOneRect: {
      TRect visible = bounds;
      if (!NSMorvane::IntersectRect(visible, fBox)) return false;
      return (fIsIntact && visible == fBox) || Select(visible);
    }
    case kRects:
      return SelectWithinRects(bounds);
    case kUnknown:
      return SelectByPlatform(bounds);
    case kNothing:
      break;
  }
  return false;
}

void CPortClip::Renew(const TRect& bounds) {
  fIsIntact = false;
  Enter(bounds);
}

void CPortClip::Leave() {
  fAttributes.Restore(fHDC);
  fIsIntact = false;
}

// `rect` lies in one rectangle of the shape and meets no other.
bool CPortClip::Select(const TRect& rect) {
  if (!fIsIntact) SelectClipRgn(fHDC, nullptr);
  fIsIntact = false;
  const int complexity = IntersectClipRect(fHDC, rect.fLeft, rect.fTop, rect.fRight, rect.fBottom);
  return complexity != ERROR && complexity != NULLREGION;
}

bool CPortClip::SelectWithinRects(const TRect& bounds) {
  TRect found = {};
  for (const TRect& rect : fRects) {
    if (rect.fTop >= bounds.fBottom) break;
    TRect visible = bounds;
    if (!NSMorvane::IntersectRect(visible, rect)) continue;
    if (!IsEmptyRect(found)) return SelectByPlatform(bounds);
    found = visible;
    if (found == bounds) break;
  }
  return !IsEmptyRect(found) && Select(found);
}

bool CPortClip::SelectByPlatform(const TRect& bounds) {
  if (!fIsIntact) BringBack();
  const RECT native = {bounds.fLeft, bounds.fTop, bounds.fRight, bounds.fBottom};
  if (!RectVisible(fHDC, &native)) return false;
  fIsIntact = false;
  if (IntersectClipRect(fHDC, bounds.fLeft, bounds.fTop, bounds.fRight, bounds.fBottom) == NULLREGION)
    return false;
  RECT box = {};
  const int complexity = GetClipBox(fHDC, &box);
  return complexity != ERROR && complexity != NULLREGION && box.left < box.right && box.top < box.bottom;
}

void CPortClip::BringBack() {
  if (fState) {
    fState->Restore();
  } else if (fShape == kOneRect) {
    Select(fBox);
  }
  fIsIntact = true;
}

}  // namespace NSMorvane
