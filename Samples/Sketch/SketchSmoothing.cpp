#include "SketchSmoothing.h"

#include <algorithm>

namespace NSSketch {

namespace {

constexpr int kBandHeight = 128;

// Makes each pixel a square.
void Enlarge(const CPixelBitmap& from, CPixelBitmap& to, int width, int height) {
  for (int y = 0; y < height; ++y) {
    const std::uint32_t* const source = from.Row(y);
    std::uint32_t* const first = to.Row(y * kSmoothFactor);
    for (int x = 0; x < width; ++x) std::fill_n(first + x * kSmoothFactor, kSmoothFactor, source[x]);
    for (int i = 1; i < kSmoothFactor; ++i)
      std::copy_n(first, width * kSmoothFactor, to.Row(y * kSmoothFactor + i));
  }
}

// Makes each square a pixel: a box filter. A square of one colour keeps it exactly.
void Reduce(const CPixelBitmap& from, CPixelBitmap& to, int width, int height) {
  constexpr std::uint32_t kCount = kSmoothFactor * kSmoothFactor;
  constexpr std::uint32_t kHalf = kCount / 2;
  for (int y = 0; y < height; ++y) {
    const std::uint32_t* rows[kSmoothFactor];
    for (int i = 0; i < kSmoothFactor; ++i) rows[i] = from.Row(y * kSmoothFactor + i);
    std::uint32_t* const result = to.Row(y);
    for (int x = 0; x < width; ++x) {
      std::uint32_t redBlue = kHalf << 16 | kHalf;  // two sums of 16 bits each
      std::uint32_t green = kHalf;
      for (const std::uint32_t*& row : rows) {
        for (int i = 0; i < kSmoothFactor; ++i) {
          redBlue += row[i] & 0xFF00FF;
          green += (row[i] >> 8) & 0xFF;
        }
        row += kSmoothFactor;
      }
      result[x] = ((redBlue / kCount) & 0xFF00FF) | (green / kCount) << 8;
    }
  }
}

void DrawBand(HDC hdc, const RECT& band, CPixelBitmap& large, CPixelBitmap& small,
              const std::function<void(HDC, const RECT&)>& draw) {
  const int width = band.right - band.left;
  const int height = band.bottom - band.top;
  ::BitBlt(small.Context(), 0, 0, width, height, hdc, band.left, band.top, SRCCOPY);
  ::GdiFlush();
  Enlarge(small, large, width, height);
  {
    const CSavedContext saved(large.Context());
    ::IntersectClipRect(large.Context(), 0, 0, width * kSmoothFactor, height * kSmoothFactor);
    draw(large.Context(), band);
  }
  ::GdiFlush();
  Reduce(large, small, width, height);
  ::BitBlt(hdc, band.left, band.top, width, height, small.Context(), 0, 0, SRCCOPY);
}

}  // namespace

void DrawSmoothly(HDC hdc, const RECT& area, const std::function<void(HDC, const RECT& band)>& draw) {
  if (area.left >= area.right || area.top >= area.bottom) return;
  static CPixelBitmap large;
  static CPixelBitmap small;
  const int width = area.right - area.left;
  const int bandHeight = std::min(kBandHeight, static_cast<int>(area.bottom - area.top));
  if (!small.Reserve(width, bandHeight) || !large.Reserve(width * kSmoothFactor, bandHeight * kSmoothFactor))
    return;
  for (int top = area.top; top < area.bottom; top += bandHeight) {
    const RECT band = {area.left, top, area.right, std::min<LONG>(top + bandHeight, area.bottom)};
    DrawBand(hdc, band, large, small, draw);
  }
}

}  // namespace NSSketch
