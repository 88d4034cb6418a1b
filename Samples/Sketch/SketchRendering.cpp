#include "SketchRendering.h"

#include <cstdint>
#include <new>

#include "SketchPainter.h"
#include "SketchSmoothing.h"

namespace NSSketch {

TSketchPicture PictureOf(const CSketchDocument& document, const TSketchRect& area, const TSketchSize& size) {
  constexpr std::int64_t kMaxPixels = 64 * 1024 * 1024;
  CPixelBitmap bitmap;
  if (std::int64_t{size.fWidth} * size.fHeight > kMaxPixels || !bitmap.Reserve(size.fWidth, size.fHeight))
    throw std::bad_alloc();
  const RECT whole = {0, 0, size.fWidth, size.fHeight};
  FillArea(bitmap.Context(), whole, document.Background());
  const double scale = kSmoothFactor * static_cast<double>(size.fWidth) / (area.fRight - area.fLeft);
  DrawSmoothly(bitmap.Context(), whole, [&](HDC hdc, const RECT& band) {
    CSketchPainter(hdc, {scale, -scale * area.fLeft - kSmoothFactor * band.left,
                         -scale * area.fTop - kSmoothFactor * band.top})
        .PaintShapes(document);
  });
  ::GdiFlush();
  TSketchPicture picture = {
      static_cast<std::uint32_t>(size.fWidth), static_cast<std::uint32_t>(size.fHeight), {}};
  for (int y = 0; y < size.fHeight; ++y)
    picture.fPixels.insert(picture.fPixels.end(), bitmap.Row(y), bitmap.Row(y) + size.fWidth);
  return picture;
}

}  // namespace NSSketch
