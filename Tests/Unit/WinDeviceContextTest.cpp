// Device contexts, the offscreen buffer and its surfaces, and the draw tools of a window.
#include "Component/Win/WinDeviceContext.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <functional>
#include <vector>

#include "Component/Win/UtilsWin.h"
#include "Component/Win/WinDrawTools.h"
#include "Tests/Support/NativeTestWindow.h"
#include "Tests/Support/PrintGeometry.h"
#include "Tests/Support/RecordingDebugOutput.h"

using namespace NSMorvane;
using NSMorvaneTest::NativeTestWindow;
using NSMorvaneTest::PumpUntil;
using NSMorvaneTest::RecordingDebugOutput;

namespace {

constexpr COLORREF kRed = RGB(255, 0, 0);
constexpr COLORREF kGreen = RGB(0, 255, 0);
constexpr COLORREF kBlue = RGB(0, 0, 255);
constexpr COLORREF kWhite = RGB(255, 255, 255);

// A picture to draw on, white at first.
class Canvas {
 public:
  explicit Canvas(int width = 100, int height = 80)
      : fSurface(nullptr, {width, height}, 32), fAll{0, 0, width, height} {
    fContext.Attach(fSurface.GetHDC());
    fContext.FillSolidRect(fAll, kWhite);
  }
  ~Canvas() { fContext.Detach(); }

  COLORREF At(int x, int y) const { return GetPixel(fSurface.GetHDC(), x, y); }
  // The smallest rectangle that holds all pixels of a colour.
  TRect BoundsOf(COLORREF color) const {
    TRect result = {};
    for (int y = fAll.fTop; y < fAll.fBottom; ++y)
      for (int x = fAll.fLeft; x < fAll.fRight; ++x) {
        if (At(x, y) != color) continue;
        if (IsEmptyRect(result)) result = {x, y, x + 1, y + 1};
        result = {std::min(result.fLeft, x), result.fTop, std::max(result.fRight, x + 1), y + 1};
      }
    return result;
  }

  COffscreenSurface fSurface;
  TRect fAll;
  CDeviceContext fContext;
};

// A window that hands its WM_PAINT to the function.
class PaintedWindow {
 public:
  explicit PaintedWindow(std::function<void(HWND)> paint) {
    fPaint = std::move(paint);
    SetWindowLongPtrW(fWindow, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Procedure));
    ShowWindow(fWindow, SW_SHOW);
    UpdateWindow(fWindow);
  }
  operator HWND() const { return fWindow; }

 private:
  static LRESULT CALLBACK Procedure(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_ERASEBKGND) return 1;
    if (message != WM_PAINT) return DefWindowProcW(hwnd, message, wParam, lParam);
    fPaint(hwnd);
    return 0;
  }

  static inline std::function<void(HWND)> fPaint;
  NativeTestWindow fWindow;
};

constexpr TRect kNothing = {-10000, -10000, -10000, -10000};

}  // namespace

// --- CDeviceContext

TEST(DeviceContext, DrawingHelpersStayInTheirRectangles) {
  Canvas canvas;
  SetBkColor(canvas.fSurface.GetHDC(), kGreen);
  canvas.fContext.FillSolidRect({10, 12, 30, 20}, kRed);
  EXPECT_EQ((TRect{10, 12, 30, 20}), canvas.BoundsOf(kRed));
  EXPECT_EQ(kRed, canvas.At(20, 15));
  EXPECT_EQ(kGreen, GetBkColor(canvas.fSurface.GetHDC()));

  canvas.fContext.FrameRect({40, 30, 60, 50}, kBlue, PS_SOLID);
  EXPECT_EQ((TRect{40, 30, 60, 50}), canvas.BoundsOf(kBlue));
  EXPECT_EQ(kWhite, canvas.At(41, 31));
  EXPECT_EQ(kWhite, canvas.At(58, 48));
  for (const TPoint& corner : {TPoint{40, 30}, {59, 30}, {59, 49}, {40, 49}})
    EXPECT_EQ(kBlue, canvas.At(corner.fX, corner.fY));

  canvas.fContext.DrawLine({0, 70}, {10, 70}, kGreen, PS_SOLID);
  EXPECT_EQ((TRect{0, 70, 10, 71}), canvas.BoundsOf(kGreen));

  // The text is cut to the rectangle, and the context is left as it was.
  SetTextColor(canvas.fSurface.GetHDC(), kBlue);
  const HGDIOBJ font = GetCurrentObject(canvas.fSurface.GetHDC(), OBJ_FONT);
  canvas.fContext.FillSolidRect(canvas.fAll, kWhite);
  canvas.fContext.DrawLabel({70, 40}, {70, 40, 82, 48}, u"MMMMMM", RGB(1, 2, 3));
  const TRect inked = canvas.BoundsOf(RGB(1, 2, 3));
  EXPECT_FALSE(IsEmptyRect(inked));
  EXPECT_GE(inked.fLeft, 70);
  EXPECT_GE(inked.fTop, 40);
  EXPECT_LE(inked.fRight, 82);
  EXPECT_LE(inked.fBottom, 48);
  EXPECT_EQ(kBlue, GetTextColor(canvas.fSurface.GetHDC()));
  EXPECT_EQ(OPAQUE, GetBkMode(canvas.fSurface.GetHDC()));
  EXPECT_EQ(font, GetCurrentObject(canvas.fSurface.GetHDC(), OBJ_FONT));
}

// --- CPaintContext

TEST(PaintContext, RegionIsWhatIsDirtyAndSeen) {
  std::vector<TRectList> regions;
  TRect excluded = kNothing;
  PaintedWindow window([&](HWND hwnd) {
    const CPaintContext context(hwnd, excluded);
    EXPECT_EQ(hwnd, context.GetHwnd());
    EXPECT_NE(nullptr, context.GetHDC());
    regions.push_back(context.GetRegion().GetRects());
  });
  const auto paint = [&](std::vector<RECT> dirty) {
    regions.clear();
    for (const RECT& rect : dirty) InvalidateRect(window, &rect, FALSE);
    UpdateWindow(window);
    EXPECT_EQ(1u, regions.size());
    return regions.empty() ? TRectList() : regions[0];
  };
  ASSERT_TRUE(PumpUntil([&] { return IsWindowVisible(window); }));

  EXPECT_EQ((TRectList{{10, 20, 50, 60}}), paint({{10, 20, 50, 60}}));
  EXPECT_EQ((TRectList{{10, 20, 30, 25}, {60, 70, 90, 80}}), paint({{10, 20, 30, 25}, {60, 70, 90, 80}}));
  excluded = {0, 0, 20, 200};
  EXPECT_EQ((TRectList{{20, 20, 50, 60}}), paint({{10, 20, 50, 60}}));
  excluded = {0, 0, 200, 200};
  EXPECT_TRUE(paint({{10, 20, 50, 60}}).empty());
  excluded = kNothing;

  // What lies under a child that is cut out is not seen.
  SetWindowLongPtrW(window, GWL_STYLE, GetWindowLongPtrW(window, GWL_STYLE) | WS_CLIPCHILDREN);
  const HWND child = CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE, 0, 0, 30, 200, window, nullptr,
                                     GetModuleHandleW(nullptr), nullptr);
  ASSERT_NE(nullptr, child);
  EXPECT_EQ((TRectList{{30, 20, 50, 60}}), paint({{10, 20, 50, 60}}));
}

// --- Surfaces

TEST(OffscreenSurfacePool, GivesEachUserItsOwnOfTheRightSize) {
  COffscreenSurfacePool pool;
  auto first = pool.Take(nullptr, {40, 30}, 32);
  auto second = pool.Take(nullptr, {40, 30}, 32);
  EXPECT_NE(first->GetDIB(), second->GetDIB());
  EXPECT_NE(first->GetHDC(), second->GetHDC());
  const HBITMAP firstDIB = first->GetDIB();
  pool.GiveBack(std::move(first));
  EXPECT_EQ(1u, pool.GetCount());
  // Neither of another size nor of another depth.
  for (const auto& [size, depth] : {std::pair(TSize{30, 40}, 32), {TSize{40, 30}, 16}}) {
    const auto other = pool.Take(nullptr, size, depth);
    EXPECT_NE(firstDIB, other->GetDIB());
    EXPECT_EQ(size, other->GetSize());
    BITMAP bitmap;
    GetObjectW(other->GetDIB(), sizeof(bitmap), &bitmap);
    EXPECT_EQ(size, (TSize{bitmap.bmWidth, bitmap.bmHeight}));
    EXPECT_EQ(depth, bitmap.bmBitsPixel);
    EXPECT_EQ(bitmap.bmBits, other->GetPixels());
    EXPECT_EQ(other->GetDIB(), GetCurrentObject(other->GetHDC(), OBJ_BITMAP));
  }
  EXPECT_EQ(1u, pool.GetCount());
  EXPECT_EQ(firstDIB, pool.Take(nullptr, {40, 30}, 32)->GetDIB());
  EXPECT_EQ(0u, pool.GetCount());
}

// A picture that looks different if anything of the context's state is unusual.
std::vector<std::uint32_t> DrawWithAllState(const COffscreenSurface& surface) {
  const HDC hdc = surface.GetHDC();
  const auto [width, height] = surface.GetSize();
  const RECT all = {0, 0, width, height};
  memset(surface.GetPixels(), 0, surface.GetByteCount());
  SelectClipRgn(hdc, nullptr);
  FillRect(hdc, &all, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
  LineTo(hdc, 30, 4);
  TextOutW(hdc, 10, 6, L"a b", 3);
  const POINT star[] = {{20, 0}, {32, 28}, {2, 10}, {38, 10}, {8, 28}};
  const CGdiObject<HBRUSH> hatch(CreateHatchBrush(HS_CROSS, kRed));
  {
    const CObjectSelection brush(hdc, hatch.Get());
    Polygon(hdc, star, 5);
  }
  Rectangle(hdc, 28, 20, 36, 28);
  Arc(hdc, 2, 2, 18, 18, 18, 10, 10, 2);
  const RECT corner = {0, 24, 6, 30};
  FillRect(hdc, &corner, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
  {
    const CObjectSelection pen(hdc, GetStockObject(DC_PEN));
    MoveToEx(hdc, 0, 20, nullptr);
    LineTo(hdc, 10, 20);
  }
  StretchBlt(hdc, 30, 0, 5, 5, hdc, 0, 0, 13, 11, SRCCOPY);
  GdiFlush();
  const auto* const pixels = static_cast<const std::uint32_t*>(surface.GetPixels());
  return std::vector<std::uint32_t>(pixels, pixels + width * height);
}

TEST(OffscreenSurfacePool, ReturnsContextsAsNew) {
  const CGdiObject<HFONT> font(CreateFontW(30, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, L"Tahoma"));
  const struct {
    const char* fName;
    std::function<void(HDC)> fSpoil;
  } cases[] = {
      {"nothing at all", nullptr},
      {"current position", [](HDC hdc) { MoveToEx(hdc, 5, 25, nullptr); }},
      {"window origin", [](HDC hdc) { SetWindowOrgEx(hdc, 7, 8, nullptr); }},
      {"viewport origin", [](HDC hdc) { SetViewportOrgEx(hdc, 7, 8, nullptr); }},
      {"mapping", [](HDC hdc) { SetMapMode(hdc, MM_LOENGLISH); }},
      {"world transform",
       [](HDC hdc) {
         const XFORM twice = {2, 0, 0, 2, 0, 0};
         SetGraphicsMode(hdc, GM_ADVANCED);
         SetWorldTransform(hdc, &twice);
       }},
      {"meta region",
       [](HDC hdc) {
         IntersectClipRect(hdc, 9, 10, 12, 13);
         SetMetaRgn(hdc);
       }},
      {"path", [](HDC hdc) { BeginPath(hdc); }},
      {"text colour", [](HDC hdc) { SetTextColor(hdc, kRed); }},
      {"background", [](HDC hdc) { SetBkColor(hdc, kRed); }},
      {"background mode", [](HDC hdc) { SetBkMode(hdc, TRANSPARENT); }},
      {"text alignment", [](HDC hdc) { SetTextAlign(hdc, TA_RIGHT); }},
      {"character spacing", [](HDC hdc) { SetTextCharacterExtra(hdc, 4); }},
      {"justification", [](HDC hdc) { SetTextJustification(hdc, 9, 1); }},
      {"raster operation", [](HDC hdc) { SetROP2(hdc, R2_NOT); }},
      {"filling of polygons", [](HDC hdc) { SetPolyFillMode(hdc, WINDING); }},
      {"direction of arcs", [](HDC hdc) { SetArcDirection(hdc, AD_CLOCKWISE); }},
      {"stretching", [](HDC hdc) { SetStretchBltMode(hdc, COLORONCOLOR); }},
      {"brush origin", [](HDC hdc) { SetBrushOrgEx(hdc, 3, 2, nullptr); }},
      {"colour of the brush", [](HDC hdc) { SetDCBrushColor(hdc, kRed); }},
      {"colour of the pen", [](HDC hdc) { SetDCPenColor(hdc, kRed); }},
      {"font", [&](HDC hdc) { SelectObject(hdc, font.Get()); }},
      {"pen", [](HDC hdc) { SelectObject(hdc, GetStockObject(WHITE_PEN)); }},
      {"brush", [](HDC hdc) { SelectObject(hdc, GetStockObject(BLACK_BRUSH)); }},
  };
  COffscreenSurfacePool pool;
  auto surface = pool.Take(nullptr, {40, 30}, 32);
  const HDC hdc = surface->GetHDC();
  const std::vector<std::uint32_t> picture = DrawWithAllState(*surface);
  for (const auto& test : cases) {
    SCOPED_TRACE(test.fName);
    pool.GiveBack(std::move(surface));
    surface = pool.Take(nullptr, {40, 30}, 32);
    if (test.fSpoil) {
      test.fSpoil(hdc);
      EXPECT_NE(picture, DrawWithAllState(*surface));
      pool.GiveBack(std::move(surface));
      surface = pool.Take(nullptr, {40, 30}, 32);
      // What the picture itself has moved.
      test.fSpoil(hdc);
    }
    pool.GiveBack(std::move(surface));
    surface = pool.Take(nullptr, {40, 30}, 32);
    ASSERT_EQ(hdc, surface->GetHDC());
    EXPECT_EQ(picture, DrawWithAllState(*surface));
  }
}

TEST(OffscreenSurfacePool, ClearsWhatCannotBeSeenInAPicture) {
  COffscreenSurfacePool pool;
  auto surface = pool.Take(nullptr, {40, 30}, 32);
  const HDC hdc = surface->GetHDC();
  const CGdiObject<HBITMAP> otherBitmap(CreateCompatibleBitmap(hdc, 5, 5));
  const CGdiObject<HRGN> clip(CreateRectRgn(0, 0, 0, 0));
  for (int i = 0; i < 300; ++i) {
    if (i % 100 == 50) SelectObject(hdc, otherBitmap.Get());
    IntersectClipRect(hdc, 9, 10, 12, 13);
    // Saved states that are never restored do not pile up for long.
    ASSERT_LT(SaveDC(hdc), 100);
    pool.GiveBack(std::move(surface));
    surface = pool.Take(nullptr, {40, 30}, 32);
    ASSERT_EQ(hdc, surface->GetHDC());
    ASSERT_EQ(surface->GetDIB(), GetCurrentObject(hdc, OBJ_BITMAP));
    ASSERT_EQ(0, GetClipRgn(hdc, clip.Get()));
  }

  // One that cannot be put right is not kept.
  RecordingDebugOutput output;
  RestoreDC(hdc, 1);
  SetTextColor(hdc, kRed);
  pool.GiveBack(std::move(surface));
  EXPECT_EQ(0u, pool.GetCount());
  EXPECT_TRUE(output.fAssertions.empty());
}

TEST(OffscreenSurfacePool, KeepsFewAndNotTooLarge) {
  COffscreenSurfacePool pool;
  const auto use = [&](TSize size) { pool.GiveBack(pool.Take(nullptr, size, 32)); };
  for (int width = 1; width <= 6; ++width) use({width, 10});
  EXPECT_EQ(4u, pool.GetCount());
  use({3, 10});
  EXPECT_EQ(4u, pool.GetCount());
  // A large one pushes the others out, and one beyond the limit is never kept.
  use({3840, 2160});
  EXPECT_EQ(1u, pool.GetCount());
  use({3840, 2161});
  EXPECT_EQ(1u, pool.GetCount());
  use({20, 20});
  EXPECT_EQ(1u, pool.GetCount());
}

// --- COffscreenContext

TEST(OffscreenContext, DrawsInTheCoordinatesOfTheTarget) {
  RecordingDebugOutput output;
  Canvas canvas;
  {
    COffscreenContext buffer(canvas.fContext, {20, 10, 50, 40});
    EXPECT_TRUE(buffer.CheckInvariant());
    EXPECT_EQ((TRect{20, 10, 50, 40}), buffer.GetDrawRect());
    EXPECT_EQ((TSize{30, 30}), buffer.GetSurface().GetSize());
    EXPECT_EQ(32, buffer.GetSurface().GetBitDepth());
    EXPECT_EQ(120, buffer.GetSurface().GetRowBytes());
    buffer.GetBuffer().FillSolidRect({0, 0, 100, 100}, kRed);
    buffer.GetBuffer().FillSolidRect({25, 15, 30, 20}, kBlue);
    EXPECT_EQ(kWhite, canvas.At(25, 15));
    buffer.CopyToTarget({22, 12, 40, 30});
  }
  EXPECT_EQ((TRect{22, 12, 40, 30}), canvas.BoundsOf(kRed));
  EXPECT_EQ((TRect{25, 15, 30, 20}), canvas.BoundsOf(kBlue));
  EXPECT_TRUE(output.fAssertions.empty());
}

TEST(OffscreenContext, TakesOverTheClip) {
  Canvas canvas;
  const CGdiObject<HRGN> clip(CreateRectRgn(30, 20, 35, 26));
  SelectClipRgn(canvas.fSurface.GetHDC(), clip.Get());
  {
    COffscreenContext buffer(canvas.fContext, {20, 10, 50, 40});
    RECT box;
    EXPECT_EQ(SIMPLEREGION, GetClipBox(buffer.GetBuffer().GetHDC(), &box));
    EXPECT_EQ((TRect{30, 20, 35, 26}), FromNative(box));
  }
  SelectClipRgn(canvas.fSurface.GetHDC(), nullptr);
  COffscreenContext buffer(canvas.fContext, {20, 10, 50, 40});
  const CGdiObject<HRGN> none(CreateRectRgn(0, 0, 0, 0));
  EXPECT_EQ(0, GetClipRgn(buffer.GetBuffer().GetHDC(), none.Get()));
}

TEST(OffscreenContext, NestsAndReportsAForeignBitmap) {
  RecordingDebugOutput output;
  Canvas canvas;
  const CGdiObject<HBITMAP> foreign(CreateCompatibleBitmap(canvas.fSurface.GetHDC(), 5, 5));
  {
    COffscreenContext outer(canvas.fContext, {0, 0, 10, 10});
    COffscreenContext inner(canvas.fContext, {0, 0, 10, 10});
    EXPECT_NE(outer.GetSurface().GetPixels(), inner.GetSurface().GetPixels());
    SelectObject(inner.GetBuffer().GetHDC(), foreign.Get());
  }
  EXPECT_EQ(std::vector<std::string>{"prevObject == fDIB"}, output.fAssertions);
  EXPECT_TRUE(COffscreenContext(canvas.fContext, {0, 0, 10, 10}).CheckInvariant());
}

TEST(OffscreenContext, ReportsAnEmptyRectangleAndAFailedCopy) {
  RecordingDebugOutput output;
  Canvas canvas;
  EXPECT_ANY_THROW(COffscreenContext(canvas.fContext, {10, 10, 10, 10}));
  EXPECT_EQ(
      std::vector<std::string>{"(drawRect.fRight > drawRect.fLeft) || (drawRect.fBottom > drawRect.fTop)"},
      output.fAssertions);

  CDeviceContext target;
  target.Attach(CreateCompatibleDC(nullptr));
  COffscreenContext buffer(target, {0, 0, 10, 10});
  DeleteDC(target.Detach());
  output.Reset();
  buffer.CopyToTarget({0, 0, 5, 5});
  EXPECT_TRUE(output.HasLine("[Morvane] BitBlt failed. Probably due to screensaver...?"));
}

TEST(OffscreenContext, DepthFollowsTheDevice) {
  for (const auto& [device, buffer] : {std::pair(8, 16), {15, 16}, {16, 16}, {24, 32}, {32, 32}})
    EXPECT_EQ(buffer, BufferBitDepth(device)) << device;
}

// --- CWinDrawTools

namespace {

struct ToolsOnCanvas {
  explicit ToolsOnCanvas(int bitDepth = 32)
      : fBuffer(fCanvas.fContext, {20, 10, 51, 40}, bitDepth),
        fRegion(TRect{20, 10, 30, 20}),
        fTools((fRegion.UnionRect({40, 30, 51, 40}), TNativePort{fBuffer.GetBuffer().GetHDC()}), fRegion,
               fBuffer) {
    fBuffer.GetBuffer().FillSolidRect({0, 0, 100, 100}, kRed);
  }

  Canvas fCanvas;
  COffscreenContext fBuffer;
  CRegion fRegion;
  CWinDrawTools fTools;
};

}  // namespace

TEST(WinDrawTools, RawPixelsAreThoseOfTheBuffer) {
  for (const int depth : {16, 32}) {
    SCOPED_TRACE(depth);
    ToolsOnCanvas on(depth);
    TRawPixels pixels;
    ASSERT_EQ(kOK, on.fTools.IDrawTools_OpenRawPixels(pixels));
    EXPECT_EQ(20, pixels.fOriginX);
    EXPECT_EQ(10, pixels.fOriginY);
    EXPECT_EQ(31, pixels.fWidth);
    EXPECT_EQ(30, pixels.fHeight);
    EXPECT_EQ(depth == 16 ? 64 : 124, pixels.fRowBytes);
    EXPECT_EQ(0u, pixels.fFlags);
    // The pixel at (21, 12).
    if (depth == 16) {
      ASSERT_EQ(nullptr, pixels.fPixels32);
      std::uint16_t& pixel = pixels.fPixels16[2 * pixels.fRowBytes / 2 + 1];
      EXPECT_EQ(0x7C00, pixel);
      pixel = 0x001F;
    } else {
      ASSERT_EQ(nullptr, pixels.fPixels16);
      std::uint32_t& pixel = pixels.fPixels32[2 * pixels.fRowBytes / 4 + 1];
      EXPECT_EQ(0xFF0000u, pixel & 0xFFFFFF);
      pixel = 0x0000FF;
    }
    ASSERT_EQ(kOK, on.fTools.IDrawTools_CloseRawPixels());
    on.fBuffer.CopyToTarget({20, 10, 51, 40});
    EXPECT_EQ((TRect{21, 12, 22, 13}), on.fCanvas.BoundsOf(kBlue));
  }
}

TEST(WinDrawTools, FlushCopiesTheDirtyRegionOfTheCurrentView) {
  RecordingDebugOutput output;
  ToolsOnCanvas on;
  const TRect view = {25, 0, 45, 100};
  on.fTools.PushViewBounds(view);
  on.fTools.CDrawToolsGlue_FlushToScreen(false);
  on.fTools.PopViewBounds(view);
  EXPECT_EQ(kRed, on.fCanvas.At(25, 10));
  EXPECT_EQ(kRed, on.fCanvas.At(44, 39));
  EXPECT_EQ(kWhite, on.fCanvas.At(24, 10));
  EXPECT_EQ(kWhite, on.fCanvas.At(45, 39));
  EXPECT_EQ(kWhite, on.fCanvas.At(35, 25));

  on.fTools.CDrawToolsGlue_FlushToScreen(false);
  EXPECT_EQ(kRed, on.fCanvas.At(20, 10));
  EXPECT_EQ(kRed, on.fCanvas.At(50, 39));
  EXPECT_EQ(kWhite, on.fCanvas.At(35, 25));

  const auto start = std::chrono::steady_clock::now();
  on.fTools.CDrawToolsGlue_FlushToScreen(true);
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(29));
  EXPECT_TRUE(output.fAssertions.empty());
}
