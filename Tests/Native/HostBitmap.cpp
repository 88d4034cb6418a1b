// Bitmaps in plain memory: the stand-in for those of the platform, as far as views and tiles need them.
// Nobody draws into them with tools, so that neither origin nor clip is ever another one.
#include <cstring>
#include <memory>
#include <vector>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Surfaces/BufferBitmap.h"
#include "Component/Portable/Surfaces/PortState.h"

struct HDC__ {
  NSMorvane::TBufferBitmapInfo fInfo;
  std::vector<std::uint8_t> fPixels;

  std::uint8_t* At(std::int64_t x, std::int64_t y) {
    return fPixels.data() + y * fInfo.fRowBytes + x * fInfo.fBitDepth / 8;
  }
};

namespace NSMorvane {

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
  fPixelPtr = context->fPixels.data();
  fHDC = context.release();
}

CBufferBitmap::~CBufferBitmap() { delete fHDC; }

void* CBufferBitmap::OpenPixels() { return fPixelPtr; }

void CBufferBitmap::ClosePixels(void* pixelPtr) { MORVANE_ASSERT((NULL==pixelPtr) || (pixelPtr==fPixelPtr)); }

// Between bitmaps of one depth.
void CBufferBitmap::CopyToPort(const TNativePort& port, TPoint destPoint, const TRect& sourceRect) {
  HDC__& target = *port.fHDC;
  MORVANE_ASSERT(target.fInfo.fBitDepth == fInfo.fBitDepth);
  HDC__ source = *fHDC;  // the target may be this one
  const std::int64_t dx = std::int64_t{destPoint.fX} - sourceRect.fLeft;
  const std::int64_t dy = std::int64_t{destPoint.fY} - sourceRect.fTop;
  TRect seen = sourceRect;
  if (!IntersectRect(seen, {0, 0, fInfo.fWidth, fInfo.fHeight}) ||
      !IntersectRect(seen, OffsetRectBy({0, 0, target.fInfo.fWidth, target.fInfo.fHeight}, -dx, -dy)))
    return;
  for (std::int32_t y = seen.fTop; y < seen.fBottom; ++y)
    std::memcpy(target.At(seen.fLeft + dx, y + dy), source.At(seen.fLeft, y),
                static_cast<std::size_t>(RectWidth(seen)) * fInfo.fBitDepth / 8);
}

}  // namespace NSMorvane
