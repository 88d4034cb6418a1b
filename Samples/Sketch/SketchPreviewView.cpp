#include "SketchPreviewView.h"

#include <algorithm>
#include <cstddef>

#include "SketchRendering.h"
#include "SketchTheme.h"

namespace NSSketch {

using namespace NSMorvane;

namespace {

TRect Intersection(const TRect& a, const TRect& b) {
  return {std::max(a.fLeft, b.fLeft), std::max(a.fTop, b.fTop), std::min(a.fRight, b.fRight),
          std::min(a.fBottom, b.fBottom)};
}

// The rectangles that a region is made of.
std::vector<TRect> RectsOf(HRGN region) {
  const DWORD bytes = ::GetRegionData(region, 0, nullptr);
  if (bytes == 0) return {};
  // As wide as needed, and aligned like what will be in it.
  std::vector<RGNDATAHEADER> buffer(bytes / sizeof(RGNDATAHEADER) + 1);
  auto* const data = reinterpret_cast<RGNDATA*>(buffer.data());
  if (::GetRegionData(region, bytes, data) == 0) return {};
  const auto* const native = reinterpret_cast<const RECT*>(data->Buffer);
  std::vector<TRect> rects;
  for (DWORD i = 0; i < data->rdh.nCount; ++i)
    rects.push_back({native[i].left, native[i].top, native[i].right, native[i].bottom});
  return rects;
}

std::uint16_t To16Bits(std::uint32_t pixel) {
  return static_cast<std::uint16_t>((pixel >> 9 & 0x7C00) | (pixel >> 6 & 0x03E0) | (pixel >> 3 & 0x001F));
}

// The whole sheet, with a frame.
TSketchPicture MakePicture(const CSketchDocument& document, const TSize& size) {
  const TSketchSize sheet = document.CanvasSize();
  TSketchPicture picture =
      PictureOf(document, {0, 0, sheet.fWidth, sheet.fHeight}, {size.fWidth, size.fHeight});
  for (std::uint32_t y = 0; y < picture.fHeight; ++y)
    for (std::uint32_t x = 0; x < picture.fWidth; ++x)
      if (x == 0 || y == 0 || x + 1 == picture.fWidth || y + 1 == picture.fHeight)
        picture.fPixels[y * picture.fWidth + x] = kSheetEdgeColor;
  return picture;
}

}  // namespace

TSize CSketchPreviewView::FittingSize(const CSketchDocument& document, const TSize& box) {
  const std::int64_t width = document.CanvasSize().fWidth;
  const std::int64_t height = document.CanvasSize().fHeight;
  const auto atLeastOne = [](std::int64_t side) {
    return static_cast<std::int32_t>(std::max<std::int64_t>(side, 1));
  };
  if (width * box.fHeight > height * box.fWidth) return {box.fWidth, atLeastOne(box.fWidth * height / width)};
  return {atLeastOne(box.fHeight * width / height), box.fHeight};
}

TError CSketchPreviewView::IViewBehavior_Draw(IDrawTools& tools) {
  return Guarded([&] {
    fRect = RectOf(fView);
    UpdatePicture({WidthOf(fRect), HeightOf(fRect)});
    void* region = nullptr;
    ThrowIfFailed(tools.IDrawTools_GetDirtyRegion(region));
    const COpenPixels pixels(tools);
    if (!pixels) return TError{kOtherError};
    for (const TRect& dirty : RectsOf(static_cast<HRGN>(region))) CopyPixels(*pixels, dirty);
    return TError{kOK};
  });
}

void CSketchPreviewView::UpdatePicture(const TSize& size) {
  const bool isGood = fRevision == fDocument.Revision() &&
                      static_cast<std::int32_t>(fPicture.fWidth) == size.fWidth &&
                      static_cast<std::int32_t>(fPicture.fHeight) == size.fHeight;
  if (isGood) return;
  fPicture = MakePicture(fDocument, size);
  fRevision = fDocument.Revision();
}

void CSketchPreviewView::CopyPixels(const TRawPixels& target, const TRect& part) const {
  const TRect surface = {target.fOriginX, target.fOriginY, target.fOriginX + target.fWidth,
                         target.fOriginY + target.fHeight};
  const TRect copied = Intersection(Intersection(part, fRect), surface);
  for (std::int32_t y = copied.fTop; y < copied.fBottom && copied.fLeft < copied.fRight; ++y) {
    const std::uint32_t* const source = fPicture.fPixels.data() +
                                        static_cast<std::ptrdiff_t>(y - fRect.fTop) * fPicture.fWidth +
                                        (copied.fLeft - fRect.fLeft);
    const std::ptrdiff_t row = static_cast<std::ptrdiff_t>(y - target.fOriginY) * target.fRowBytes;
    const std::ptrdiff_t column = copied.fLeft - target.fOriginX;
    const std::int32_t width = WidthOf(copied);
    if (target.fPixels32) {
      std::copy_n(source, width, target.fPixels32 + row / 4 + column);
    } else if (target.fPixels16) {
      std::transform(source, source + width, target.fPixels16 + row / 2 + column, To16Bits);
    }
  }
}

}  // namespace NSSketch
