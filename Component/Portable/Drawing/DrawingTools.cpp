// The pieces of the drawing walk: tiles, brackets, tools that draw into a bitmap.
#include <cstddef>
#include <utility>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Drawing/DrawingWalk.h"

namespace NSMorvane {

// --- TTileIterator

bool TTileIterator::GetNextTile(TRect& outTile) {
  if (IsEmptyRect(fBounds) || fTileSize.fWidth < 1 || fTileSize.fHeight < 1) return false;
  TPoint start = {fBounds.fLeft, fBounds.fTop};
  if (!IsEmptyRect(fCurrent)) {
    start = {fCurrent.fRight, fCurrent.fTop};
    if (start.fX >= fBounds.fRight) start = {fBounds.fLeft, fCurrent.fBottom};
    if (start.fY >= fBounds.fBottom) return false;
  }
  fCurrent = {start.fX, start.fY, fBounds.fRight, fBounds.fBottom};
  if (RectWidth(fCurrent) > fTileSize.fWidth) fCurrent.fRight = fCurrent.fLeft + fTileSize.fWidth;
  if (RectHeight(fCurrent) > fTileSize.fHeight) fCurrent.fBottom = fCurrent.fTop + fTileSize.fHeight;
  outTile = fCurrent;
  return true;
}

TRect CutToTiles(const TRect& bounds, const TSize& tileSize, const TRect& part) {
  TRect cut = bounds;
  if (!IntersectRect(cut, part)) return {};
  const auto edgeBefore = [](std::int64_t place, std::int64_t start, std::int64_t size) {
    return ToCoordinate(place - (place - start) % size);
  };
  cut.fLeft = edgeBefore(cut.fLeft, bounds.fLeft, tileSize.fWidth);
  cut.fTop = edgeBefore(cut.fTop, bounds.fTop, tileSize.fHeight);
  return cut;
}

// --- TDrawBracket

TDrawBracket::TDrawBracket(IMorvaneRunBehavior* runBehavior, IDrawTools& tools)
    : fRunBehavior(runBehavior), fTools(tools), fPauseCount(0), fIsBegun(false) {
  Begin();
}

TDrawBracket::~TDrawBracket() {
  MORVANE_ASSERT(0==fPauseCount);
  End();
}

void TDrawBracket::Pause() {
  if (fPauseCount++ == 0) End();
}

void TDrawBracket::Resume() {
  if (--fPauseCount == 0) Begin();
}

bool TDrawBracket::BeginAgain() {
  if (fIsBegun) return false;
  Begin();
  return true;
}

void TDrawBracket::Begin() {
  if (fRunBehavior != nullptr) MORVANE_CHECK(fRunBehavior->IMorvaneRunBehavior_OnBeginDraw(fTools));
  fIsBegun = true;
}

// Also called while an exception is passing through, so it throws nothing itself.
void TDrawBracket::End() {
  if (!std::exchange(fIsBegun, false) || fRunBehavior == nullptr) return;
  TError error = kOtherError;
  try {
    error = fRunBehavior->IMorvaneRunBehavior_OnEndDraw(fTools);
  } catch (...) {
    // Counts as kOtherError.
  }
  MORVANE_ASSERT(error == kOK);
}

// --- CBufferBitmapDrawTools

CBufferBitmapDrawTools::CBufferBitmapDrawTools(CBufferBitmap* bitmap, TNativeRegion region, TPoint origin,
                                               CDrawToolsGlue* parentTools)
    : CDrawToolsGlue(bitmap->GetNativePort(), region),
      fBitmap(bitmap),
      fOrigin(origin),
      fOpenPixelPtr(nullptr),
      fParentTools(parentTools) {
  const TPoint oldOrigin = fBitmap->GetOrigin();
  MORVANE_ASSERT((oldOrigin.fX == 0) && (oldOrigin.fY == 0));
  fBitmap->SaveState();
  try {
    fBitmap->SetOrigin(fOrigin);
    fBitmap->ClipToRegion(region);
  } catch (...) {
    fBitmap->RestoreState();
    throw;
  }
}

CBufferBitmapDrawTools::~CBufferBitmapDrawTools() {
  MORVANE_ASSERT_TEXT("fPixelPtr == NULL", fOpenPixelPtr == NULL);
  fBitmap->RestoreState();
  const TPoint origin = fBitmap->GetOrigin();
  MORVANE_ASSERT((origin.fX == 0) && (origin.fY == 0));
}

TNativePort CBufferBitmapDrawTools::CDrawToolsGlue_GetNativePort() { return fBitmap->GetNativePort(); }

void CBufferBitmapDrawTools::CDrawToolsGlue_CloseNativePort() {}

TRawPixels CBufferBitmapDrawTools::CDrawToolsGlue_OpenRawPixels() {
  const TBufferBitmapInfo& info = fBitmap->GetInfo();
  fOpenPixelPtr = fBitmap->OpenPixels();
  TRawPixels pixels = {};
  pixels.fOriginX = fOrigin.fX;
  pixels.fOriginY = fOrigin.fY;
  pixels.fWidth = info.fWidth;
  pixels.fHeight = info.fHeight;
  pixels.fRowBytes = info.fRowBytes;
  if (info.fBitDepth == 16) {
    pixels.fPixels16 = static_cast<std::uint16_t*>(fOpenPixelPtr);
  } else if (info.fBitDepth == 32) {
    pixels.fPixels32 = static_cast<std::uint32_t*>(fOpenPixelPtr);
  } else {
    MORVANE_UNREACHED();
  }
  pixels.fFlags = info.fTopDown ? 1 : 0;
  return pixels;
}

void CBufferBitmapDrawTools::CDrawToolsGlue_CloseRawPixels() {
  fBitmap->ClosePixels(fOpenPixelPtr);
  fOpenPixelPtr = nullptr;
}

void CBufferBitmapDrawTools::CDrawToolsGlue_FlushToScreen(bool delayFlag) {
  if (fParentTools == nullptr) return;
  const TBufferBitmapInfo& info = fBitmap->GetInfo();
  const TRect content = OffsetRectBy({0, 0, info.fWidth, info.fHeight}, fOrigin.fX, fOrigin.fY);
  fBitmap->CopyToPort(fParentTools->UsePort(), fOrigin, content);
  fParentTools->CDrawToolsGlue_FlushToScreen(delayFlag);
}

}  // namespace NSMorvane
