// Pictures that tests of drawing compare, and what spoils a drawing context.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "Tests/Support/Drawing.h"

namespace NSMorvaneTest {

// Rectangles, in the order in which they are filled.
using Fills = std::vector<std::pair<TRect, COLORREF>>;

// The box of the pixels in rows of a width for which `isIn` holds, asked by their number.
template <class TIsIn>
TRect BoxOf(std::size_t count, int width, const TIsIn& isIn) {
  CRegion box;
  for (int i = 0; i < static_cast<int>(count); ++i)
    if (isIn(i)) box.UnionRect({i % width, i / width, i % width + 1, i / width + 1});
  return box.GetBounds();
}

// "", or where a bitmap differs from a black one that has been filled so.
inline std::string DifferenceOf(CBufferBitmap& bitmap, const Fills& fills) {
  const TBufferBitmapInfo& info = bitmap.GetInfo();
  CBufferBitmap filled({info.fWidth, info.fHeight}, 32);
  for (const auto& [rect, colour] : fills) Fill(filled, rect, colour);
  const std::vector<std::uint32_t> actual = PixelsOf(bitmap), expected = PixelsOf(filled);
  if (actual == expected) return "";
  return testing::PrintToString(
      BoxOf(actual.size(), info.fWidth, [&](int i) { return actual[i] != expected[i]; }));
}

// One of 125 that 5 bits for each part keep.
inline COLORREF ColourOf(int number) {
  static constexpr int kShades[] = {0, 66, 132, 198, 255};
  return RGB(kShades[number % 5], kShades[number / 5 % 5], kShades[number / 25 % 5]);
}

// What a view may leave behind in a context: first clips and origins, then what the walk puts right as well,
// then what only a pool does.
using Spoiler = void (*)(HDC);
inline const Spoiler kSpoilers[] = {
    [](HDC hdc) { SelectClipRgn(hdc, nullptr); },
    [](HDC hdc) { IntersectClipRect(hdc, 3, 3, 5, 6); },
    [](HDC hdc) { SetWindowOrgEx(hdc, 31, -7, nullptr); },
    [](HDC hdc) { SetViewportOrgEx(hdc, 5, 5, nullptr); },
    [](HDC hdc) { SetMapMode(hdc, MM_LOMETRIC); },
    [](HDC hdc) {
      static constexpr XFORM kDoubled = {2, 0, 0, 2, 10, 10};
      SetGraphicsMode(hdc, GM_ADVANCED), SetWorldTransform(hdc, &kDoubled);
    },
    [](HDC hdc) { SelectObject(hdc, GetStockObject(GRAY_BRUSH)), SetBkMode(hdc, TRANSPARENT); },
    [](HDC hdc) { SetTextColor(hdc, kRed); },
    [](HDC hdc) { SetROP2(hdc, R2_NOT); },
    [](HDC hdc) { SelectObject(hdc, GetStockObject(ANSI_FIXED_FONT)); },
    [](HDC hdc) { BeginPath(hdc); },
    [](HDC hdc) { IntersectClipRect(hdc, 9, 10, 12, 13), SetMetaRgn(hdc); },
};
constexpr int kPlaceSpoilers = 4, kWalkSpoilers = 9, kAllSpoilers = 12;

}  // namespace NSMorvaneTest
