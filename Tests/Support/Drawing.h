// What the tests of drawing share: pixels, fills, a run behaviour that records, tools that record flushes.
#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "Component/Portable/BufferBitmap.h"
#include "Component/Portable/MorvaneGlue.h"
#include "Interface/MorvaneDefaults.h"

namespace NSMorvaneTest {

using namespace NSMorvane;

// The pixel in column x and row y of the bitmap, whatever its origin.
inline std::uint32_t PixelAt(CBufferBitmap& bitmap, int x, int y) {
  const TBufferBitmapInfo& info = bitmap.GetInfo();
  void* const pixels = bitmap.OpenPixels();
  const char* const row = static_cast<const char*>(pixels) + y * info.fRowBytes;
  const std::uint32_t pixel = info.fBitDepth == 16 ? reinterpret_cast<const std::uint16_t*>(row)[x]
                                                   : reinterpret_cast<const std::uint32_t*>(row)[x];
  bitmap.ClosePixels(pixels);
  return pixel;
}

// All of them, row by row.
inline std::vector<std::uint32_t> PixelsOf(CBufferBitmap& bitmap) {
  std::vector<std::uint32_t> pixels;
  for (int y = 0; y < bitmap.GetInfo().fHeight; ++y)
    for (int x = 0; x < bitmap.GetInfo().fWidth; ++x) pixels.push_back(PixelAt(bitmap, x, y));
  return pixels;
}

inline void Fill(HDC hdc, const TRect& rect, COLORREF colour) {
  const HBRUSH brush = CreateSolidBrush(colour);
  const RECT native = {rect.fLeft, rect.fTop, rect.fRight, rect.fBottom};
  FillRect(hdc, &native, brush);
  DeleteObject(brush);
}

inline void Fill(CBufferBitmap& bitmap, const TRect& rect, COLORREF colour) {
  Fill(bitmap.GetNativePort().fHDC, rect, colour);
}

// The box of the pixels that differ from 0, in columns and rows of the bitmap.
inline TRect PaintedPixels(CBufferBitmap& bitmap) {
  CRegion painted;
  for (int y = 0; y < bitmap.GetInfo().fHeight; ++y)
    for (int x = 0; x < bitmap.GetInfo().fWidth; ++x)
      if (PixelAt(bitmap, x, y) != 0) painted.UnionRect({x, y, x + 1, y + 1});
  return painted.GetBounds();
}

// Writes down which tools drawing begins and ends with, numbered in the order in which they come up.
class DrawingRunBehavior : public CDefaultRunBehavior {
 public:
  TError IMorvaneRunBehavior_OnBeginDraw(IDrawTools& tools) override {
    fEvents.push_back("begin " + NumberOf(tools));
    return fBeginError;
  }
  TError IMorvaneRunBehavior_OnEndDraw(IDrawTools& tools) override {
    fEvents.push_back("end " + NumberOf(tools));
    if (fOnEnd) fOnEnd(tools);
    return fEndError;
  }

  std::vector<std::string> fEvents;
  TError fBeginError = kOK;
  TError fEndError = kOK;
  std::function<void(IDrawTools&)> fOnEnd;

 private:
  std::string NumberOf(IDrawTools& tools) {
    for (std::size_t i = 0; i < fTools.size(); ++i)
      if (fTools[i] == &tools) return std::to_string(i);
    fTools.push_back(&tools);
    return std::to_string(fTools.size() - 1);
  }
  std::vector<IDrawTools*> fTools;
};

// Tools on a context, with no buffer of their own.
class PlainTools : public CDrawToolsGlue {
 public:
  PlainTools(HDC hdc, TNativeRegion region) : CDrawToolsGlue({hdc}, region) {}

  TNativePort CDrawToolsGlue_GetNativePort() override { return fNativePort; }
  void CDrawToolsGlue_CloseNativePort() override {}
  TRawPixels CDrawToolsGlue_OpenRawPixels() override { return {}; }
  void CDrawToolsGlue_CloseRawPixels() override {}
  void CDrawToolsGlue_FlushToScreen(bool delayFlag) override { fFlushes.push_back(delayFlag); }

  std::vector<bool> fFlushes;
};

}  // namespace NSMorvaneTest
