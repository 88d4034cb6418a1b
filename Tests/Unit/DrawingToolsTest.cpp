// The pieces of the drawing walk, each alone.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>
#include <limits>
#include <random>

#include "Component/Portable/MorvaneImplUtilsDrawing.h"
#include "Component/Portable/MorvaneImplUtilsPortState.h"
#include "Tests/Support/Drawing.h"
#include "Tests/Support/PrintGeometry.h"
#include "Tests/Support/RecordingDebugOutput.h"

namespace NSMorvane {
namespace {

using namespace NSMorvaneTest;
using TTexts = std::vector<std::string>;

TRectList TilesOf(const TRect& bounds, const TSize& size) {
  TRectList tiles;
  TTileIterator iterator(bounds, size);
  TRect tile;
  while (tiles.size() < 100 && iterator.GetNextTile(tile)) tiles.push_back(tile);
  return tiles;
}

TEST(DrawingTools, TilesGoRowByRow) {
  constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
  constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
  const struct {
    TRect bounds;
    TRectList tiles;
  } rows[] = {
      {{0, 0, 800, 400}, {{0, 0, 800, 400}}},
      {{-10, -20, 791, 381},
       {{-10, -20, 790, 380}, {790, -20, 791, 380}, {-10, 380, 790, 381}, {790, 380, 791, 381}}},
      {{kMax - 900, 0, kMax, 10}, {{kMax - 900, 0, kMax - 100, 10}, {kMax - 100, 0, kMax, 10}}},
      {{0, kMin, 1, kMin + 401}, {{0, kMin, 1, kMin + 400}, {0, kMin + 400, 1, kMin + 401}}},
      {{0, 0, 0, 10}, {}},
  };
  for (const auto& row : rows)
    EXPECT_EQ(row.tiles, TilesOf(row.bounds, {800, 400})) << testing::PrintToString(row.bounds);
  EXPECT_EQ((TRectList{}), TilesOf({0, 0, 10, 10}, {0, 5}));
}

TEST(DrawingTools, BracketsTellBeginAndEnd) {
  RecordingDebugOutput output;
  DrawingRunBehavior run;
  CBufferBitmap surface({4, 4}, 32);
  PlainTools tools(surface.GetNativePort().fHDC, nullptr);
  {
    TDrawBracket bracket(&run, tools);
    bracket.Pause();
    bracket.Pause();
    bracket.Resume();
    EXPECT_EQ((TTexts{"begin 0", "end 0"}), run.fEvents);
    bracket.Resume();
  }
  EXPECT_EQ((TTexts{"begin 0", "end 0", "begin 0", "end 0"}), run.fEvents);
  EXPECT_TRUE(output.fAssertions.empty());

  // What fails to begin does not end.
  run.fEvents.clear();
  run.fBeginError = 100001;
  EXPECT_THROW(TDrawBracket(&run, tools), XApplicationError);
  EXPECT_EQ((TTexts{"begin 0"}), run.fEvents);
  EXPECT_TRUE(output.HasLine("Component/Portable/MorvaneImplUtilsDrawTools.cpp("));

  // An end that fails, and one that comes in a pause, are reported only.
  output.Reset();
  run.fBeginError = kOK;
  run.fEndError = kOtherError;
  {
    TDrawBracket bracket(&run, tools);
    bracket.Pause();
    EXPECT_EQ((TTexts{"error == kOK"}), output.fAssertions);
    output.Reset();
  }
  EXPECT_EQ((TTexts{"0==fPauseCount", "error == kOK"}), output.fAssertions);

  output.Reset();
  { TDrawBracket nobody(nullptr, tools); }
  EXPECT_TRUE(output.fAssertions.empty());
}

TEST(DrawingTools, ABitmapIsDrawnToInWindowCoordinates) {
  RecordingDebugOutput output;
  for (std::int32_t depth : {16, 32}) {
    CBufferBitmap bitmap({20, 10}, depth);
    CRegion region(TRect{0, 0, 1000, 1000});
    region.SubtractRect({105, 200, 107, 1000});
    {
      CBufferBitmapDrawTools tools(&bitmap, region.GetNativeRegion(), {100, 200}, nullptr);
      TNativePort port = {};
      ASSERT_EQ(kOK, tools.IDrawTools_OpenNativePort(port));
      Fill(port.fHDC, {103, 204, 110, 1000}, RGB(255, 0, 0));
      ASSERT_EQ(kOK, tools.IDrawTools_CloseNativePort());

      TRawPixels pixels = {};
      ASSERT_EQ(kOK, tools.IDrawTools_OpenRawPixels(pixels));
      EXPECT_EQ(100, pixels.fOriginX);
      EXPECT_EQ(200, pixels.fOriginY);
      for (int y = 0; y < 10; ++y)
        for (int x = 0; x < 20; ++x) {
          const std::uint32_t pixel =
              depth == 16 ? pixels.fPixels16[y * 20 + x] : pixels.fPixels32[y * 20 + x];
          EXPECT_EQ(x >= 3 && x < 10 && x != 5 && x != 6 && y >= 4, pixel != 0) << x << " " << y;
        }
      ASSERT_EQ(kOK, tools.IDrawTools_CloseRawPixels());
    }
    // Origin and clip are back.
    Fill(bitmap, {0, 0, 1000, 1000}, RGB(255, 255, 255));
    EXPECT_EQ((TRect{0, 0, 20, 10}), PaintedPixels(bitmap));
  }
  EXPECT_TRUE(output.fAssertions.empty());
}

TEST(DrawingTools, PixelsLeftOpenAreReportedAndClosed) {
  RecordingDebugOutput output;
  CBufferBitmap bitmap({20, 10}, 32);
  {
    CBufferBitmapDrawTools tools(&bitmap, CRegion(TRect{0, 0, 9, 9}).GetNativeRegion(), {1, 2}, nullptr);
    TRawPixels pixels = {};
    ASSERT_EQ(kOK, tools.IDrawTools_OpenRawPixels(pixels));
  }
  EXPECT_EQ((TTexts{"fPixelPtr == NULL", "!fRawPixelsAreOpen"}), output.fAssertions);
}

TEST(DrawingTools, AFlushGoesUpThroughAllParents) {
  CBufferBitmap surface({40, 40}, 32), outerBitmap({30, 30}, 16), innerBitmap({10, 10}, 32);
  const CRegion all(TRect{0, 0, 1000, 1000});
  PlainTools screen(surface.GetNativePort().fHDC, all.GetNativeRegion());
  CBufferBitmapDrawTools outer(&outerBitmap, all.GetNativeRegion(), {5, 5}, &screen);
  CBufferBitmapDrawTools inner(&innerBitmap, all.GetNativeRegion(), {20, 10}, &outer);
  Fill(innerBitmap, {0, 0, 1000, 1000}, RGB(255, 0, 0));
  inner.CDrawToolsGlue_FlushToScreen(true);
  EXPECT_EQ((std::vector<bool>{true}), screen.fFlushes);
  EXPECT_EQ((TRect{15, 5, 25, 15}), PaintedPixels(outerBitmap));
  EXPECT_EQ((TRect{20, 10, 30, 20}), PaintedPixels(surface));
  outer.CDrawToolsGlue_FlushToScreen(false);
  EXPECT_EQ((std::vector<bool>{true, false}), screen.fFlushes);
  CBufferBitmap aloneBitmap({10, 10}, 32);
  CBufferBitmapDrawTools alone(&aloneBitmap, all.GetNativeRegion(), {0, 0}, nullptr);
  alone.CDrawToolsGlue_FlushToScreen(true);
}

// --- The state of a context

void SpoilState(HDC hdc, int what) {
  static constexpr XFORM kDoubled = {2, 0, 0, 2, 10, 10};
  if (what == 0) SelectClipRgn(hdc, nullptr);
  if (what == 1) IntersectClipRect(hdc, 3, 3, 5, 6);
  if (what == 2) SetWindowOrgEx(hdc, 31, -7, nullptr);
  if (what == 3) SetViewportOrgEx(hdc, 5, 5, nullptr);
  if (what == 4) SetMapMode(hdc, MM_LOMETRIC);
  if (what == 5) {
    SetGraphicsMode(hdc, GM_ADVANCED);
    SetWorldTransform(hdc, &kDoubled);
  }
  if (what == 6) {
    SetTextColor(hdc, 0x112233);
    SetBkMode(hdc, TRANSPARENT);
    SetROP2(hdc, R2_NOT);
    SelectObject(hdc, GetStockObject(GRAY_BRUSH));
  }
}

// For any clip region and origin: what can be drawn after Enter is what the platform's own intersection
// leaves, whatever the view before has done to the context, and in the end the clip is the old one.
TEST(DrawingTools, ClipsOfViewsAreThoseOfThePlatform) {
  constexpr TSize kSize = {24, 20};
  std::mt19937 random(90125);
  const auto number = [&](int low, int high) { return low + static_cast<int>(random() % (high - low + 1)); };
  const auto anyRect = [&](int offset) {
    const int left = number(-5, 22), top = number(-5, 18);
    return TRect{left + offset, top + offset, left + number(0, 20) + offset, top + number(0, 18) + offset};
  };
  CBufferBitmap tested(kSize, 32), reference(kSize, 32);
  const HDC hdc = tested.GetNativePort().fHDC, referenceHdc = reference.GetNativePort().fHDC;
  int shown = 0;
  for (int round = 0; round < 300; ++round) {
    // The second half goes without regions that are kept.
    if (round < 150) CClipRegions::GetInstance().StartOver();
    while (round == 150 && CClipRegions::GetInstance().GetNext({0, 0, 1, 1}) != nullptr) continue;
    const int rectCount = round % 4;
    const int origin = round % 3 == 0 ? number(-100, 100) : 0;
    CRegion region;
    for (int i = 0; i < rectCount; ++i) region.UnionRect(anyRect(0));
    for (HDC dc : {hdc, referenceHdc}) {
      SelectClipRgn(dc, rectCount == 0 ? nullptr : region.GetNativeRegion());
      SetWindowOrgEx(dc, origin, origin, nullptr);
      // A mapping that only the platform knows.
      SetMapMode(dc, round % 7 == 0 ? MM_ANISOTROPIC : MM_TEXT);
    }
    const CStateRestorer untouched(referenceHdc);
    {
      CPortClip clip(hdc);
      for (int view = 0; view < 6; ++view) {
        const TRect bounds = anyRect(origin);
        untouched.Restore();
        IntersectClipRect(referenceHdc, bounds.fLeft, bounds.fTop, bounds.fRight, bounds.fBottom);
        const bool entered = clip.Enter(bounds);
        std::memset(tested.OpenPixels(), 0, kSize.fHeight * tested.GetInfo().fRowBytes);
        std::memset(reference.OpenPixels(), 0, kSize.fHeight * reference.GetInfo().fRowBytes);
        if (entered && view == 2) {
          SpoilState(hdc, 0);
          clip.Renew(bounds);
        }
        if (entered) Fill(tested, {-1000, -1000, 1000, 1000}, 1);
        Fill(reference, {-1000, -1000, 1000, 1000}, 1);
        ASSERT_EQ(PixelsOf(reference), PixelsOf(tested)) << round << " " << view;
        ASSERT_EQ(entered, PaintedPixels(reference).fRight > 0);
        shown += entered;
        if (entered) {
          // A mapping of its own, once changed, is beyond repair.
          SpoilState(hdc, number(0, round % 7 == 0 ? 3 : 7));
          clip.Leave();
        }
      }
    }
    untouched.Restore();
    std::memset(tested.OpenPixels(), 0, kSize.fHeight * tested.GetInfo().fRowBytes);
    std::memset(reference.OpenPixels(), 0, kSize.fHeight * reference.GetInfo().fRowBytes);
    Fill(tested, {-1000, -1000, 1000, 1000}, 1);
    Fill(reference, {-1000, -1000, 1000, 1000}, 1);
    ASSERT_EQ(PixelsOf(reference), PixelsOf(tested)) << round;
  }
  EXPECT_GT(shown, 100);
}

TEST(DrawingTools, AttributesAndObjectsComeBack) {
  CBufferBitmap surface({10, 10}, 32);
  const HDC hdc = surface.GetNativePort().fHDC;
  const auto describe = [&] {
    POINT windowOrigin = {}, viewportOrigin = {};
    GetWindowOrgEx(hdc, &windowOrigin);
    GetViewportOrgEx(hdc, &viewportOrigin);
    return std::vector<long long>{
        windowOrigin.x,    viewportOrigin.x,
        GetMapMode(hdc),   GetGraphicsMode(hdc),
        GetTextColor(hdc), GetBkMode(hdc),
        GetROP2(hdc),      reinterpret_cast<std::intptr_t>(GetCurrentObject(hdc, OBJ_BRUSH))};
  };
  SetWindowOrgEx(hdc, 4, 3, nullptr);
  SetViewportOrgEx(hdc, 1, 2, nullptr);
  SetTextColor(hdc, 0x010203);
  const std::vector<long long> before = describe();
  {
    const CPortGuard guard(hdc);
    for (int what = 2; what < 7; ++what) SpoilState(hdc, what);
    EXPECT_NE(before, describe());
  }
  EXPECT_EQ(before, describe());
}

}  // namespace
}  // namespace NSMorvane
