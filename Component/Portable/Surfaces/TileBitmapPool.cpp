#include "Component/Portable/Surfaces/TileBitmapPool.h"

#include <boost/make_shared.hpp>

namespace NSMorvane {

namespace {

constexpr TSize kTileSize = {800, 400};

}  // namespace

CTileBitmapPool& CTileBitmapPool::ForDepth(std::int32_t depth) {
  // Process-wide, since the views of all windows share the tiles. Never destroyed, since the end of the
  // process is too late for calls of the platform.
  static CTileBitmapPool& pool16 = *new CTileBitmapPool(16);
  static CTileBitmapPool& pool32 = *new CTileBitmapPool(32);
  return depth == 16 ? pool16 : pool32;
}

boost::shared_ptr<CBufferBitmap> CTileBitmapPool::Take() {
  if (fBitmaps.empty()) return boost::make_shared<CBufferBitmap>(kTileSize, fDepth);
  const boost::shared_ptr<CBufferBitmap> bitmap = fBitmaps.back();
  fBitmaps.pop_back();
  return bitmap;
}

void CTileBitmapPool::PutBack(const boost::shared_ptr<CBufferBitmap>& bitmap) {
  // A view whose mode changed while it was drawn may give back the permanent bitmap that it had before.
  const TBufferBitmapInfo& info = bitmap->GetInfo();
  if (info.fBitDepth == fDepth && info.fWidth == kTileSize.fWidth && info.fHeight == kTileSize.fHeight)
    fBitmaps.push_back(bitmap);
}

}  // namespace NSMorvane
