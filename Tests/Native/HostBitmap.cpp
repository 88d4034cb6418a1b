// Bitmaps in plain memory: the stand-in for those of the platform, as far as views and tiles need them.
#include <boost/make_shared.hpp>
#include <cstring>
#include <memory>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Surfaces/PortState.h"
#include "Tests/Native/HostContext.h"

namespace NSMorvane {

namespace {

// In pixels of the context.
bool CanDraw(const HDC__& context, const TPoint& pixel) {
  if (!IsPointInRect(pixel, {0, 0, context.fInfo.fWidth, context.fInfo.fHeight})) return false;
  if (!context.fClip) return true;
  for (const TRect& rect : context.fClip->GetRects())
    if (IsPointInRect(pixel, rect)) return true;
  return false;
}

std::size_t OffsetOf(const TBufferBitmapInfo& info, const TPoint& pixel) {
  return static_cast<std::size_t>(pixel.fY) * info.fRowBytes +
         static_cast<std::size_t>(pixel.fX) * info.fBitDepth / 8;
}

}  // namespace

// --- CStateRestorer

CStateRestorer::CStateRestorer(HDC__* hdc) : fHDC(hdc), fClipRegion(nullptr), fWindowOrigin(hdc->fOrigin) {
  if (hdc->fClip) fClipRegion = CopyNativeRegion(hdc->fClip->GetNativeRegion()).release();
}

CStateRestorer::~CStateRestorer() {
  Restore();
  if (fClipRegion != nullptr) DeleteNativeRegion(fClipRegion);
}

void CStateRestorer::Restore() const {
  fHDC->fOrigin = fWindowOrigin;
  fHDC->fClip.reset();
  if (fClipRegion != nullptr) fHDC->fClip = CRegion(CopyNativeRegion(fClipRegion).release(), false);
}

// --- CBufferBitmap

CBufferBitmap::CBufferBitmap(TSize size, std::int32_t depth)
    : fCurrentOrigin(),
      fHDC(nullptr),
      fHBitmap(nullptr),
      fOldBitmap(nullptr),
      fPixelPtr(nullptr),
      fSaveStateCount(0),
      fInfo() {
  if (!IsPossibleBitmapSize(size, depth)) throw XOutOfMemory();
  fInfo = {size.fWidth, size.fHeight, (size.fWidth * depth + 31) / 32 * 4, depth, false};
  auto context = std::make_unique<HDC__>();
  context->fInfo = fInfo;
  context->fPixels.resize(static_cast<std::size_t>(fInfo.fRowBytes) * fInfo.fHeight);
  context->fClip = CRegion(TRect{0, 0, size.fWidth, size.fHeight});
  fPixelPtr = context->fPixels.data();
  fHDC = context.release();
}

CBufferBitmap::~CBufferBitmap() {
  MORVANE_ASSERT(fSaveStateCount == 0);
  fSavedStateStack.clear();
  delete fHDC;
}

void* CBufferBitmap::OpenPixels() { return fPixelPtr; }

void CBufferBitmap::ClosePixels(void* pixelPtr) { MORVANE_ASSERT((NULL==pixelPtr) || (pixelPtr==fPixelPtr)); }

void CBufferBitmap::SaveState() {
  MORVANE_ASSERT(fSaveStateCount == 0);
  fSavedStateStack.push_back(boost::make_shared<CStateRestorer>(fHDC));
  ++fSaveStateCount;
}

void CBufferBitmap::RestoreState() {
  MORVANE_ASSERT(fSaveStateCount == 1);
  fSavedStateStack.pop_back();
  fCurrentOrigin = fHDC->fOrigin;
  --fSaveStateCount;
}

// The clip lies in pixels, so it stays where it is on the way to other coordinates only if it moves.
TPoint CBufferBitmap::SetOrigin(TPoint newOrigin) {
  const TPoint oldOrigin = std::exchange(fCurrentOrigin, newOrigin);
  fHDC->fOrigin = newOrigin;
  if (fHDC->fClip) fHDC->fClip->Offset(oldOrigin.fX - newOrigin.fX, oldOrigin.fY - newOrigin.fY);
  return oldOrigin;
}

void CBufferBitmap::ClipToRegion(TNativeRegion nativeRegion) {
  fHDC->fClip = CRegion(CopyNativeRegion(nativeRegion).release(), false);
  fHDC->fClip->Offset(-fCurrentOrigin.fX, -fCurrentOrigin.fY);
}

// Between bitmaps of one depth.
void CBufferBitmap::CopyToPort(const TNativePort& port, TPoint destPoint, const TRect& sourceRect) {
  HDC__& target = *port.fHDC;
  MORVANE_ASSERT(target.fInfo.fBitDepth == fInfo.fBitDepth);
  const std::vector<std::uint8_t> source = fHDC->fPixels;  // the target may be this one
  TRect visible =
      OffsetRectBy(sourceRect, -std::int64_t{fCurrentOrigin.fX}, -std::int64_t{fCurrentOrigin.fY});
  const TPoint shift = {destPoint.fX - target.fOrigin.fX - visible.fLeft,
                        destPoint.fY - target.fOrigin.fY - visible.fTop};
  if (!IntersectRect(visible, {0, 0, fInfo.fWidth, fInfo.fHeight})) return;
  for (TPoint from{0, visible.fTop}; from.fY < visible.fBottom; ++from.fY)
    for (from.fX = visible.fLeft; from.fX < visible.fRight; ++from.fX) {
      const TPoint to = {from.fX + shift.fX, from.fY + shift.fY};
      if (CanDraw(target, to))
        std::memcpy(target.fPixels.data() + OffsetOf(target.fInfo, to), source.data() + OffsetOf(fInfo, from),
                    static_cast<std::size_t>(fInfo.fBitDepth) / 8);
    }
}

}  // namespace NSMorvane
