// Device contexts, the offscreen buffer and its surfaces, the draw tools of a window.
#include "Component/Win/Drawing/WinDeviceContext.h"

#include "Component/Win/Drawing/WinDrawTools.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Tests/Support/NativeTestWindow.h"
#include "Tests/Support/Pictures.h"

using namespace NSMorvaneTest;

namespace {

constexpr COLORREF kWhite = RGB(255, 255, 255);

// A picture to draw on, white at first.
class Canvas {
 public:
  Canvas() {
    fContext.Attach(fSurface.GetHDC());
    fContext.FillSolidRect(fAll, kWhite);
  }
  ~Canvas() { fContext.Detach(); }

  COLORREF At(int x, int y) const { return GetPixel(fSurface.GetHDC(), x, y); }
  // The smallest rectangle that holds all pixels of a colour.
  TRect BoundsOf(COLORREF color) const {
    return BoxOf(100 * 80, 100, [&](int i) { return At(i % 100, i / 100) == color; });
  }

  const TRect fAll = {0, 0, 100, 80};
  COffscreenSurface fSurface{nullptr, {100, 80}, 32};
  CDeviceContext fContext;
};

// What shows that something has been left behind.
auto StateOf(HDC hdc) {
  POINT place = {100, 100};
  LPtoDP(hdc, &place, 1);
  const CRegion clip;
  return std::make_tuple(place.x, place.y, GetMapMode(hdc), GetGraphicsMode(hdc), GetTextColor(hdc),
                         GetROP2(hdc), EndPath(hdc), GetCurrentObject(hdc, OBJ_FONT),
                         GetCurrentObject(hdc, OBJ_BITMAP), GetMetaRgn(hdc, clip.GetNativeRegion()),
                         GetClipRgn(hdc, clip.GetNativeRegion()));
}

}  // namespace

using WinDeviceContext = ReportingTest;

TEST_F(WinDeviceContext, AFrameStaysInItsRectangle) {
  Canvas canvas;
  canvas.fContext.FrameRect({40, 30, 60, 50}, kBlue, PS_SOLID);
  EXPECT_EQ((TRect{40, 30, 60, 50}), canvas.BoundsOf(kBlue));
  EXPECT_EQ(kWhite, canvas.At(41, 31));
}

TEST_F(WinDeviceContext, RegionOfAPaintIsWhatIsDirtyAndSeen) {
  const NativeTestWindow window(WS_POPUP | WS_VISIBLE);
  const auto paint = [&](std::vector<RECT> dirty, TRect excluded = {-9, -9, -9, -9}) {
    ValidateRect(window, nullptr);
    for (const RECT& rect : dirty) InvalidateRect(window, &rect, FALSE);
    return CPaintContext(window, excluded).GetRegion().GetRects();
  };
  ASSERT_TRUE(PumpUntil([&] { return IsWindowVisible(window); }));
  EXPECT_EQ((TRectList{{10, 20, 30, 25}, {60, 70, 90, 80}}), paint({{10, 20, 30, 25}, {60, 70, 90, 80}}));
  EXPECT_EQ((TRectList{{20, 20, 50, 60}}), paint({{10, 20, 50, 60}}, {0, 0, 20, 200}));
  EXPECT_TRUE(paint({{10, 20, 50, 60}}, {0, 0, 200, 200}).empty());
  // What lies under a child that is cut out is not seen.
  SetWindowLongPtrW(window, GWL_STYLE, GetWindowLongPtrW(window, GWL_STYLE) | WS_CLIPCHILDREN);
  CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE, 0, 0, 30, 200, window, nullptr, nullptr, nullptr);
  EXPECT_EQ((TRectList{{30, 20, 50, 60}}), paint({{10, 20, 50, 60}}));
}

// --- Surfaces

TEST_F(WinDeviceContext, SurfacesArePooled) {
  COffscreenSurfacePool pool;
  auto first = pool.Take(nullptr, {40, 30}, 32);
  const HBITMAP firstDIB = first->GetDIB();
  EXPECT_NE(firstDIB, pool.Take(nullptr, {40, 30}, 32)->GetDIB());
  const TSize size = first->GetSize();
  pool.GiveBack(std::move(first));
  // Neither a larger one nor another depth, but whatever fits.
  const Rows<TSize, int, bool> fits = {{{size.fWidth + 1, 30}, 32, false},
                                       {{40, size.fHeight + 1}, 32, false},
                                       {{40, 30}, 16, false},
                                       {{40, 30}, 32, true},
                                       {size, 32, true},
                                       {{1, 1}, 32, true}};
  for (const auto& [wanted, depth, isTheFirst] : fits) {
    auto surface = pool.Take(nullptr, wanted, depth);
    EXPECT_EQ(isTheFirst, surface->GetDIB() == firstDIB) << wanted.fWidth << " by " << wanted.fHeight;
    EXPECT_GE(surface->GetSize().fWidth, wanted.fWidth);
    EXPECT_GE(surface->GetSize().fHeight, wanted.fHeight);
    if (isTheFirst) pool.GiveBack(std::move(surface));
  }
  // The smallest that fits.
  pool.GiveBack(std::make_unique<COffscreenSurface>(nullptr, TSize{10, 9}, 32));
  pool.GiveBack(std::make_unique<COffscreenSurface>(nullptr, TSize{900, 900}, 32));
  EXPECT_EQ(10, pool.Take(nullptr, {5, 5}, 32)->GetSize().fWidth);
  pool.Clear();
  // Few are kept: a large one pushes the others out, and one beyond the limit is never kept.
  const Rows<TSize, std::size_t> rows = {{{1, 9}, 1}, {{2, 9}, 2}, {{3, 9}, 3},       {{4, 9}, 4},
                                         {{5, 9}, 4}, {{6, 9}, 4}, {{3840, 2176}, 1}, {{3840, 2177}, 1}};
  for (const auto& [wanted, kept] : rows) {
    pool.GiveBack(std::make_unique<COffscreenSurface>(nullptr, wanted, 32));
    EXPECT_EQ(kept, pool.GetCount()) << wanted.fWidth;
  }
}

TEST_F(WinDeviceContext, PooledContextsAreAsNew) {
  const CGdiObject<HBITMAP> other(CreateBitmap(5, 5, 1, 1, nullptr));
  COffscreenSurfacePool pool;
  auto surface = pool.Take(nullptr, {40, 30}, 32);
  const HDC hdc = surface->GetHDC();
  const auto asNew = StateOf(hdc);
  for (int i = 0; i < 300; ++i) {
    const int spoiler = i % 25;
    if (spoiler < kAllSpoilers) kSpoilers[spoiler](hdc);
    if (spoiler == kAllSpoilers) SelectObject(hdc, other.Get());
    // Saved states that are never restored do not pile up for long.
    ASSERT_LT(SaveDC(hdc), 100);
    pool.GiveBack(std::move(surface));
    surface = pool.Take(nullptr, {40, 30}, 32);
    ASSERT_EQ(hdc, surface->GetHDC());
    ASSERT_EQ(asNew, StateOf(hdc)) << spoiler;
  }
  // One that cannot be put right is not kept.
  RestoreDC(hdc, 1);
  SetTextColor(hdc, kRed);
  pool.GiveBack(std::move(surface));
  EXPECT_EQ(0u, pool.GetCount());
}

// --- COffscreenContext

TEST_F(WinDeviceContext, OffscreenDrawsInTheCoordinatesAndTheClipOfTheTarget) {
  Canvas canvas;
  {
    COffscreenContext buffer(canvas.fContext, {20, 10, 50, 40});
    RECT clip;
    EXPECT_EQ(SIMPLEREGION, GetClipBox(buffer.GetBuffer().GetHDC(), &clip));
    EXPECT_EQ((TRect{20, 10, 50, 40}), FromNative(clip));
    buffer.GetBuffer().FillSolidRect({0, 0, 100, 100}, kRed);
    buffer.CopyToTarget({22, 12, 40, 30});
  }
  EXPECT_EQ((TRect{22, 12, 40, 30}), canvas.BoundsOf(kRed));
  SelectClipRgn(canvas.fSurface.GetHDC(), CRegion(TRect{30, 20, 35, 66}).GetNativeRegion());
  COffscreenContext buffer(canvas.fContext, {20, 10, 50, 40});
  RECT box;
  EXPECT_EQ(SIMPLEREGION, GetClipBox(buffer.GetBuffer().GetHDC(), &box));
  EXPECT_EQ((TRect{30, 20, 35, 40}), FromNative(box));
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

TEST_F(WinDeviceContext, RawPixelsAreThoseOfTheBuffer) {
  for (const int depth : {16, 32}) {
    SCOPED_TRACE(depth);
    ToolsOnCanvas on(depth);
    TRawPixels pixels;
    ASSERT_EQ(kOK, on.fTools.IDrawTools_OpenRawPixels(pixels));
    EXPECT_EQ((TPoint{20, 10}), (TPoint{pixels.fOriginX, pixels.fOriginY}));
    EXPECT_EQ((TPoint{31, 30}), (TPoint{pixels.fWidth, pixels.fHeight}));
    EXPECT_LE(31 * depth / 8, pixels.fRowBytes);
    // The pixel at (21, 12).
    if (depth == 16) pixels.fPixels16[2 * pixels.fRowBytes / 2 + 1] = 0x001F;
    if (depth == 32) pixels.fPixels32[2 * pixels.fRowBytes / 4 + 1] = 0x0000FF;
    ASSERT_EQ(kOK, on.fTools.IDrawTools_CloseRawPixels());
    on.fBuffer.CopyToTarget({20, 10, 51, 40});
    EXPECT_EQ((TRect{21, 12, 22, 13}), on.fCanvas.BoundsOf(kBlue));
  }
}

TEST_F(WinDeviceContext, FlushCopiesTheDirtyRegionOfTheCurrentView) {
  ToolsOnCanvas on;
  const TRect view = {25, 0, 45, 100};
  on.fTools.PushViewBounds(view);
  on.fTools.CDrawToolsGlue_FlushToScreen(false);
  on.fTools.PopViewBounds(view);
  EXPECT_EQ((TRect{25, 10, 45, 40}), on.fCanvas.BoundsOf(kRed));
  on.fTools.CDrawToolsGlue_FlushToScreen(false);
  EXPECT_EQ((TRect{20, 10, 51, 40}), on.fCanvas.BoundsOf(kRed));
  EXPECT_EQ(kWhite, on.fCanvas.At(35, 25));
}
