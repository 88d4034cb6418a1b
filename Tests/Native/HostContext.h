// A drawing context of the host: what it draws into, where its coordinates begin, and what can be drawn of
// it.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "Component/Portable/Surfaces/BufferBitmap.h"
#include "Component/Portable/Surfaces/Region.h"

struct HDC__ {
  NSMorvane::TBufferBitmapInfo fInfo;
  std::vector<std::uint8_t> fPixels;
  NSMorvane::TPoint fOrigin;                // the logical coordinates of the first pixel
  std::optional<NSMorvane::CRegion> fClip;  // in pixels
};
