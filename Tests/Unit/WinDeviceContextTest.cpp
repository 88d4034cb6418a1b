// Device contexts, the offscreen buffer and its surfaces, and the draw tools of a window.
#include "Component/Win/WinDeviceContext.h"

#include <gtest/gtest.h>

#include <chrono>
#include <vector>

#include "Component/Portable/MorvaneImplUtilsGeometry.h"
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
  // The text is cut to the rectangle.
  canvas.fContext.DrawLabel({70, 40}, {70, 40, 82, 48}, u"MMMMMM", kGreen);
  TRect inked = canvas.BoundsOf(kGreen);
  EXPECT_FALSE(IsEmptyRect(inked));
  const TRect all = inked;
  IntersectRect(inked, {70, 40, 82, 48});
  EXPECT_EQ(all, inked);
}

// --- CPaintContext

TEST(PaintContext, RegionIsWhatIsDirtyAndSeen) {
  const NativeTestWindow window(WS_POPUP | WS_VISIBLE);
  TRect excluded = kNothing;
  const auto paint = [&](std::vector<RECT> dirty) {
    ValidateRect(window, nullptr);
    for (const RECT& rect : dirty) InvalidateRect(window, &rect, FALSE);
    return CPaintContext(window, excluded).GetRegion().GetRects();
  };
  ASSERT_TRUE(PumpUntil([&] { return IsWindowVisible(window); }));

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
  }
  EXPECT_EQ(1u, pool.GetCount());
  EXPECT_EQ(firstDIB, pool.Take(nullptr, {40, 30}, 32)->GetDIB());
  EXPECT_EQ(0u, pool.GetCount());
}

std::vector<long long> StateOf(HDC hdc) {
  POINT places[5] = {{0, 0}, {100, 100}};
  LPtoDP(hdc, places, 2);
  GetCurrentPositionEx(hdc, &places[2]);
  GetBrushOrgEx(hdc, &places[3]);
  std::vector<long long> state = {GetTextAlign(hdc)};
  for (int(WINAPI* const get)(HDC) : {GetMapMode, GetGraphicsMode, GetBkMode, GetROP2, GetPolyFillMode,
                                      GetArcDirection, GetStretchBltMode, GetTextCharacterExtra, EndPath})
    state.push_back(get(hdc));
  for (COLORREF(WINAPI* const get)(HDC) : {GetTextColor, GetBkColor, GetDCBrushColor, GetDCPenColor})
    state.push_back(get(hdc));
  for (const POINT& place : places) state.insert(state.end(), {place.x, place.y});
  for (const UINT type : {OBJ_FONT, OBJ_PEN, OBJ_BRUSH})
    state.push_back(reinterpret_cast<std::intptr_t>(GetCurrentObject(hdc, type)));
  const CGdiObject<HRGN> meta(CreateRectRgn(0, 0, 0, 0));
  state.push_back(GetMetaRgn(hdc, meta.Get()));
  return state;
}

TEST(OffscreenSurfacePool, ReturnsContextsAsNew) {
  void (*const spoilers[])(HDC) = {
      [](HDC hdc) {
        MoveToEx(hdc, 5, 25, nullptr);
        SetTextColor(hdc, kRed);
        SetBkColor(hdc, kRed);
        SetBkMode(hdc, TRANSPARENT);
        SetTextAlign(hdc, TA_RIGHT);
        SetTextCharacterExtra(hdc, 4);
        SetROP2(hdc, R2_NOT);
        SetPolyFillMode(hdc, WINDING);
        SetArcDirection(hdc, AD_CLOCKWISE);
        SetStretchBltMode(hdc, COLORONCOLOR);
        SetBrushOrgEx(hdc, 3, 2, nullptr);
        SetDCBrushColor(hdc, kRed);
        SetDCPenColor(hdc, kRed);
        for (const int object : {ANSI_FIXED_FONT, WHITE_PEN, BLACK_BRUSH})
          SelectObject(hdc, GetStockObject(object));
        BeginPath(hdc);
      },
      [](HDC hdc) {
        SetMapMode(hdc, MM_LOENGLISH);
        SetWindowOrgEx(hdc, 7, 8, nullptr);
        SetViewportOrgEx(hdc, 9, 10, nullptr);
      },
      [](HDC hdc) {
        const XFORM twice = {2, 0, 0, 2, 0, 0};
        SetGraphicsMode(hdc, GM_ADVANCED);
        SetWorldTransform(hdc, &twice);
      },
      [](HDC hdc) {
        IntersectClipRect(hdc, 9, 10, 12, 13);
        SetMetaRgn(hdc);
      },
  };
  COffscreenSurfacePool pool;
  auto surface = pool.Take(nullptr, {40, 30}, 32);
  const HDC hdc = surface->GetHDC();
  const std::vector<long long> asNew = StateOf(hdc);
  for (void (*const spoil)(HDC) : spoilers) {
    spoil(hdc);
    pool.GiveBack(std::move(surface));
    surface = pool.Take(nullptr, {40, 30}, 32);
    ASSERT_EQ(hdc, surface->GetHDC());
    EXPECT_EQ(asNew, StateOf(hdc));
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
      pixels.fPixels16[2 * pixels.fRowBytes / 2 + 1] = 0x001F;
    } else {
      pixels.fPixels32[2 * pixels.fRowBytes / 4 + 1] = 0x0000FF;
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
  EXPECT_EQ((TRect{25, 10, 45, 40}), on.fCanvas.BoundsOf(kRed));
  EXPECT_EQ(kWhite, on.fCanvas.At(35, 25));

  on.fTools.CDrawToolsGlue_FlushToScreen(false);
  EXPECT_EQ((TRect{20, 10, 51, 40}), on.fCanvas.BoundsOf(kRed));
  EXPECT_EQ(kWhite, on.fCanvas.At(35, 25));

  const auto start = std::chrono::steady_clock::now();
  on.fTools.CDrawToolsGlue_FlushToScreen(true);
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(29));
  EXPECT_TRUE(output.fAssertions.empty());
}
