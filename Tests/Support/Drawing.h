// What the tests of drawing share: pixels, fills, and a tree of views that draws without any native window.
#pragma once

#include <windows.h>

#include "Component/Portable/Contract/MorvaneGlueDrawTools.h"
#include "Component/Portable/Drawing/DrawingWalk.h"
#include "Component/Portable/Surfaces/BufferBitmap.h"
#include "Tests/Support/FakeViewWindow.h"
#include "Tests/Support/UnitTest.h"

namespace NSMorvaneTest {

constexpr COLORREF kRed = RGB(255, 0, 0);
constexpr COLORREF kGreen = RGB(0, 255, 0);
constexpr COLORREF kBlue = RGB(0, 0, 255);
constexpr TRect kEverything = {-1000, -1000, 1000, 1000};
constexpr TViewDrawMode kModes[] = {kViewDrawDirect, kViewDrawTemporary16, kViewDrawTemporary32,
                                    kViewDrawPermanent16, kViewDrawPermanent32};

// All of them, row by row.
inline std::vector<std::uint32_t> PixelsOf(CBufferBitmap& bitmap) {
  const TBufferBitmapInfo& info = bitmap.GetInfo();
  std::vector<std::uint32_t> pixels;
  pixels.reserve(static_cast<std::size_t>(info.fWidth) * info.fHeight);
  void* const opened = bitmap.OpenPixels();
  for (int y = 0; y < info.fHeight; ++y) {
    const char* const row = static_cast<const char*>(opened) + y * info.fRowBytes;
    for (int x = 0; x < info.fWidth; ++x)
      pixels.push_back(info.fBitDepth == 16 ? reinterpret_cast<const std::uint16_t*>(row)[x]
                                            : reinterpret_cast<const std::uint32_t*>(row)[x]);
  }
  bitmap.ClosePixels(opened);
  return pixels;
}

// The pixel in column x and row y of the bitmap, whatever its origin.
inline std::uint32_t PixelAt(CBufferBitmap& bitmap, int x, int y) {
  return PixelsOf(bitmap)[static_cast<std::size_t>(y) * bitmap.GetInfo().fWidth + x];
}

// The box of the pixels that differ from 0, in columns and rows of the bitmap.
inline TRect PaintedPixels(CBufferBitmap& bitmap) {
  const std::vector<std::uint32_t> pixels = PixelsOf(bitmap);
  const int width = bitmap.GetInfo().fWidth;
  CRegion painted;
  for (int i = 0; i < static_cast<int>(pixels.size()); ++i)
    if (pixels[i] != 0) painted.UnionRect({i % width, i / width, i % width + 1, i / width + 1});
  return painted.GetBounds();
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

// What a view draws: something in its native port.
template <class TAction>
auto Drawing(TAction action) {
  return [action](IDrawTools& tools) -> TError {
    TNativePort port = {};
    if (const TError error = tools.IDrawTools_OpenNativePort(port); error != kOK) return error;
    action(port.fHDC);
    return tools.IDrawTools_CloseNativePort();
  };
}
inline auto Filling(const TRect& rect, COLORREF colour) {
  return Drawing([=](HDC hdc) { Fill(hdc, rect, colour); });
}

// Writes down which tools drawing begins and ends with, and refuses to, numbered in the order in which they
// come up.
class DrawingRunBehavior : public CDefaultRunBehavior {
 public:
  TError IMorvaneRunBehavior_OnBeginDraw(IDrawTools& tools) override {
    fEvents.push_back((fBeginError == kOK ? "begin " : "refuse ") + NumberOf(tools));
    return std::exchange(fBeginError, kOK);
  }
  TError IMorvaneRunBehavior_OnEndDraw(IDrawTools& tools) override {
    fEvents.push_back("end " + NumberOf(tools));
    return fEndError;
  }
  std::string TakeEvents() { return Joined(std::exchange(fEvents, {})); }

  Texts fEvents;
  TError fBeginError = kOK;  // once
  TError fEndError = kOK;

 private:
  std::string NumberOf(IDrawTools& tools) {
    const auto it = std::find(fTools.begin(), fTools.end(), &tools);
    const auto number = it - fTools.begin();
    if (it == fTools.end()) fTools.push_back(&tools);
    return std::to_string(number);
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

class DrawingTree : public FakeViewWindow {
 public:
  using FakeViewWindow::FakeViewWindow;
  ~DrawingTree() override { ReleaseViews(); }
  CViewImpl& Add(CViewImpl& superView, const TRect& bounds, TViewDrawMode mode = kViewDrawDirect) {
    return MakeView(superView, bounds, "view", kViewEnabled, mode);
  }
  // A subview of the root view.
  CViewImpl& Add(const TRect& bounds, TViewDrawMode mode = kViewDrawDirect) {
    return Add(Root(), bounds, mode);
  }
  // What is invalid, as a window paints it until nothing is.
  void DrawInvalid(CBufferBitmap& surface) {
    for (int i = 0; i < 5 && !fInvalid.IsEmpty(); ++i) Draw(surface, std::exchange(fInvalid, CRegion()));
  }
  // As a window paints: onto a surface whose first pixel is at (0, 0), clipped to what is dirty.
  void Draw(CBufferBitmap& surface, const CRegion& dirty = CRegion(TRect{0, 0, 100, 100})) {
    const HDC hdc = surface.GetNativePort().fHDC;
    SelectClipRgn(hdc, dirty.GetNativeRegion());
    PlainTools tools(hdc, dirty.GetNativeRegion());
    DrawWith(tools);
    SelectClipRgn(hdc, nullptr);
  }
  void DrawWith(IDrawTools& tools, const TDebugSettings& settings = {}) {
    TDrawBracket bracket(&fRunBehavior, tools);
    DrawView(&fRunBehavior, bracket, Root(), Root().GetBounds(), tools, settings);
  }

  DrawingRunBehavior fRunBehavior;
};

}  // namespace NSMorvaneTest
