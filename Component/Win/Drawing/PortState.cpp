#include "Component/Portable/Surfaces/PortState.h"

#include <windows.h>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Surfaces/Region.h"
#include "Component/Win/Platform/UtilsWinHandles.h"

namespace NSMorvane {

namespace {

// Each leaves `out` unchanged if the call of the platform fails.
void ReadViewportOrigin(HDC hdc, TPoint& out) {
  POINT origin = {};
  if (GetViewportOrgEx(hdc, &origin)) out = {origin.x, origin.y};
}
void ReadWindowOrigin(HDC hdc, TPoint& out) {
  POINT origin = {};
  if (GetWindowOrgEx(hdc, &origin)) out = {origin.x, origin.y};
}

constexpr UINT NativeType(TSelection selection) {
  switch (selection) {
    case kSelectedFont:
      return OBJ_FONT;
    case kSelectedPen:
      return OBJ_PEN;
    case kSelectedBrush:
      return OBJ_BRUSH;
    case kSelectedBitmap:
      return OBJ_BITMAP;
  }
  return 0;
}

// Requires that `rect` lies in one rectangle of what can be drawn, that the context has the mapping, and that
// the mapping is in pixels.
int SelectRect(HDC hdc, const TRect& rect, const CPortMapping& mapping) {
  const TPoint shift = mapping.GetShift();
  const HRGN region = CClipRegions::GetInstance().GetNext(OffsetRectBy(rect, shift.fX, shift.fY));
  if (region != nullptr) return SelectClipRgn(hdc, region);
  SelectClipRgn(hdc, nullptr);
  return IntersectClipRect(hdc, rect.fLeft, rect.fTop, rect.fRight, rect.fBottom);
}

}  // namespace

// --- CStateRestorer

CStateRestorer::CStateRestorer(HDC__* hdc) : fHDC(hdc), fClipRegion(nullptr), fWindowOrigin() {
  POINT origin = {};
  if (!GetWindowOrgEx(fHDC, &origin)) MORVANE_THROW(std::exception());
  fWindowOrigin = {origin.x, origin.y};
  CGdiObject<HRGN> region(CreateRectRgn(0, 0, 0, 0));
  if (region.Get() == nullptr) MORVANE_THROW(XOutOfMemory());
  const int result = GetClipRgn(fHDC, region.Get());
  if (result == 1) {
    fClipRegion = region.Detach();
  } else if (result != 0) {
    MORVANE_ASSERT(result == -1);
    MORVANE_THROW(std::exception());
  }
}

CStateRestorer::~CStateRestorer() {
  Restore();
  if (fClipRegion != nullptr) DeleteObject(fClipRegion);
}

void CStateRestorer::Restore() const {
  SetWindowOrgEx(fHDC, fWindowOrigin.fX, fWindowOrigin.fY, nullptr);
  SelectClipRgn(fHDC, fClipRegion);
}

// --- CPortMapping

CPortMapping::CPortMapping(HDC hdc)
    : fGraphicsMode(GetGraphicsMode(hdc)),
      fMapMode(GetMapMode(hdc)),
      fLayout(GetLayout(hdc)),
      fViewportOrigin(),
      fWindowOrigin() {
  ReadViewportOrigin(hdc, fViewportOrigin);
  ReadWindowOrigin(hdc, fWindowOrigin);
}

void CPortMapping::Restore(HDC hdc) const {
  if (GetGraphicsMode(hdc) != fGraphicsMode) {
    // The compatible mode cannot be set while there is a world transform.
    ModifyWorldTransform(hdc, nullptr, MWT_IDENTITY);
    SetGraphicsMode(hdc, fGraphicsMode);
  }
  if (GetMapMode(hdc) != fMapMode) SetMapMode(hdc, fMapMode);
  TPoint origin = fViewportOrigin;
  ReadViewportOrigin(hdc, origin);
  if (!(origin == fViewportOrigin)) SetViewportOrgEx(hdc, fViewportOrigin.fX, fViewportOrigin.fY, nullptr);
  origin = fWindowOrigin;
  ReadWindowOrigin(hdc, origin);
  if (!(origin == fWindowOrigin)) SetWindowOrgEx(hdc, fWindowOrigin.fX, fWindowOrigin.fY, nullptr);
}

bool CPortMapping::IsPixelMapping() const {
  return fGraphicsMode == GM_COMPATIBLE && fMapMode == MM_TEXT && fLayout == 0;
}

// --- Fonts

bool IsFont(HFONT font) { return GetObjectType(font) == OBJ_FONT; }
HFONT GetSelectedFont(HDC hdc) { return static_cast<HFONT>(GetCurrentObject(hdc, OBJ_FONT)); }
void SelectFont(HDC hdc, HFONT font) { SelectObject(hdc, font); }

// --- CSelectionGuard

CSelectionGuard::CSelectionGuard(HDC__* hdc, TSelection selection)
    : fHDC(hdc), fSelection(selection), fObject(GetCurrentObject(hdc, NativeType(selection))) {}

CSelectionGuard::~CSelectionGuard() {
  if (GetCurrentObject(fHDC, NativeType(fSelection)) != fObject) SelectObject(fHDC, fObject);
}

// --- CPortGuard

CPortGuard::CPortGuard(HDC hdc)
    : fHDC(hdc),
      fMapping(hdc),
      fTextColour(GetTextColor(hdc)),
      fBackgroundColour(GetBkColor(hdc)),
      fBackgroundMode(GetBkMode(hdc)),
      fRasterOperation(GetROP2(hdc)),
      fTextAlign(GetTextAlign(hdc)),
      fFont(hdc, kSelectedFont),
      fPen(hdc, kSelectedPen),
      fBrush(hdc, kSelectedBrush) {}

CPortGuard::~CPortGuard() {
  SetTextColor(fHDC, fTextColour);
  SetBkColor(fHDC, fBackgroundColour);
  SetBkMode(fHDC, fBackgroundMode);
  SetROP2(fHDC, fRasterOperation);
  SetTextAlign(fHDC, fTextAlign);
  fMapping.Restore(fHDC);
}

// --- CWholeStateGuard

CWholeStateGuard::CWholeStateGuard(HDC hdc) : fHDC(hdc), fLevel(SaveDC(hdc)) {
  if (fLevel == 0) MORVANE_THROW(std::exception());
}

CWholeStateGuard::~CWholeStateGuard() { RestoreDC(fHDC, fLevel); }

// --- CClipRegions

CClipRegions& CClipRegions::GetInstance() {
  // Process-wide, since all device contexts share these regions. Never destroyed, since the end of the
  // process is too late for calls of the platform.
  static CClipRegions& regions = *new CClipRegions;
  return regions;
}

HRGN CClipRegions::GetNext(const TRect& deviceRect) {
  if (fNext == kMaxRegions) return nullptr;
  if (fNext == fEntries.size()) {
    fEntries.push_back({TRect{}, nullptr});
    fEntries.back().fRegion = CreateRectRgn(0, 0, 0, 0);
  }
  TEntry& entry = fEntries[fNext++];
  if (!(entry.fRect == deviceRect)) {
    entry.fRect = TRect{};
    if (!SetRectRgn(entry.fRegion, deviceRect.fLeft, deviceRect.fTop, deviceRect.fRight, deviceRect.fBottom))
      return nullptr;
    entry.fRect = deviceRect;
  }
  return entry.fRegion;
}

// --- CKnownPort

void CKnownPort::RestoreMapping(const CPortMapping& mapping) {
  fClip.reset();
  if (fMapping == mapping) return;
  mapping.Restore(fHDC);
  fMapping = mapping;
}

void CKnownPort::SelectClip() const { SelectRect(fHDC, *fClip, *fMapping); }

// --- CPortClip

CPortClip::CPortClip(HDC hdc, CKnownPort* knownPort)
    : fHDC(hdc),
      fKnownPort(knownPort),
      fMapping(knownPort != nullptr && knownPort->GetMapping() ? *knownPort->GetMapping()
                                                               : CPortMapping(hdc)),
      fShape(kNothing),
      fBox(),
      fIsIntact(true) {
  if (fKnownPort != nullptr && fKnownPort->GetClip()) {
    fShape = kOneRect;
    fBox = *fKnownPort->GetClip();
    return;
  }
  RECT box = {};
  const int complexity = GetClipBox(hdc, &box);
  if (complexity == ERROR || complexity == NULLREGION) return;
  fBox = {box.left, box.top, box.right, box.bottom};
  if (IsEmptyRect(fBox)) return;
  if (complexity == SIMPLEREGION && fMapping.IsPixelMapping()) {
    fShape = kOneRect;
    return;
  }
  fShape = kUnknown;
  fState.emplace(hdc);
  // The clip region of a memory context alone determines what is visible, since its bitmap is one rectangle.
  // The visible part of a window may have any shape.
  if (fState->GetClipRegion() == nullptr || !fMapping.IsPixelMapping() || GetObjectType(hdc) != OBJ_MEMDC)
    return;
  const TPoint shift = fMapping.GetShift();
  for (const TRect& rect : GetNativeRegionRects(fState->GetClipRegion())) {
    TRect logical =
        OffsetRectBy(rect, -static_cast<std::int64_t>(shift.fX), -static_cast<std::int64_t>(shift.fY));
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
  if (fKnownPort != nullptr) {
    fKnownPort->RestoreMapping(fMapping);
  } else {
    fMapping.Restore(fHDC);
  }
  fIsIntact = false;
}

// Requires that `rect` lies in one rectangle of the shape and overlaps no other, and that the mapping is in
// pixels.
bool CPortClip::Select(const TRect& rect) {
  fIsIntact = false;
  if (fKnownPort != nullptr) {
    fKnownPort->SetClip(rect, fMapping);
    return true;
  }
  const int complexity = SelectRect(fHDC, rect, fMapping);
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
