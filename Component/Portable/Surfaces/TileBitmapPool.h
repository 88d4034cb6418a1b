// The bitmaps that views share for the length of one drawing.
#pragma once

#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <vector>

#include "Component/Portable/Surfaces/BufferBitmap.h"

namespace NSMorvane {

// The bitmaps for views that are drawn through a shared bitmap, kept for the life of the process. Several are
// in use when such views are nested.
class CTileBitmapPool {
 public:
  // `depth` is 16 or 32.
  static CTileBitmapPool& ForDepth(std::int32_t depth);

  // The bitmap that was put back last, or a new one.
  boost::shared_ptr<CBufferBitmap> Take();
  void PutBack(const boost::shared_ptr<CBufferBitmap>& bitmap);

 private:
  explicit CTileBitmapPool(std::int32_t depth) : fDepth(depth) {}

  std::int32_t fDepth;
  std::vector<boost::shared_ptr<CBufferBitmap>> fBitmaps;
};

}  // namespace NSMorvane
