// The pieces of the drawing walk, each alone.
#include <cstring>

#include "Component/Portable/Surfaces/PortState.h"
#include "Tests/Support/Pictures.h"

using namespace NSMorvaneTest;

using DrawingTools = ReportingTest;

TEST_F(DrawingTools, TilesGoRowByRow) {
  const auto tilesOf = [](const TRect& bounds, const TSize& size = {800, 400}) {
    TRectList tiles;
    TTileIterator iterator(bounds, size);
    TRect tile;
    while (tiles.size() < 100 && iterator.GetNextTile(tile)) tiles.push_back(tile);
    return tiles;
  };
  EXPECT_EQ((TRectList{{0, 0, 800, 400}}), tilesOf({0, 0, 800, 400}));
  EXPECT_EQ(
      (TRectList{{-10, -20, 790, 380}, {790, -20, 791, 380}, {-10, 380, 790, 381}, {790, 380, 791, 381}}),
      tilesOf({-10, -20, 791, 381}));
  EXPECT_EQ((TRectList{{kMax - 900, 0, kMax - 100, 10}, {kMax - 100, 0, kMax, 10}}),
            tilesOf({kMax - 900, 0, kMax, 10}));
  EXPECT_EQ(TRectList{}, tilesOf({0, 0, 0, 10}));
  EXPECT_EQ(TRectList{}, tilesOf({0, 0, 10, 10}, {0, 5}));
}

// The part begins in the second of two columns of tiles, and ends at the end of the second of three rows.
TEST_F(DrawingTools, APartIsCutWhereTilesBegin) {
  const TSize size = {800, 400};
  EXPECT_EQ((TRect{810, 20, 1000, 820}), CutToTiles({10, 20, 1000, 1000}, size, {810, 419, 5000, 820}));
  EXPECT_EQ((TRect{-448, -48, 100, 100}), CutToTiles({kMin, kMin, kMax, kMax}, size, {0, 0, 100, 100}));
  EXPECT_EQ((TRect{kMax - 95, kMax - 95, kMax, kMax}),
            CutToTiles({kMin, kMin, kMax, kMax}, size, {kMax - 1, kMax - 1, kMax, kMax}));
  EXPECT_EQ(TRect{}, CutToTiles({10, 20, 1000, 1000}, size, {1000, 20, 1200, 30}));
}

TEST_F(DrawingTools, BracketsTellBeginAndEnd) {
  DrawingRunBehavior run;
  CBufferBitmap surface({4, 4}, 32);
  PlainTools tools(surface.GetNativePort().fHDC, nullptr);
  {
    TDrawBracket bracket(&run, tools);
    bracket.Pause();
    bracket.Pause();
    bracket.Resume();
    EXPECT_EQ("begin 0; end 0", run.TakeEvents());
    bracket.Resume();
    run.fEndError = kOtherError;  // reported only
  }
  EXPECT_EQ("begin 0; end 0", run.TakeEvents());
  EXPECT_EQ("error == kOK", TakeReports());
  // What fails to begin does not end.
  run.fBeginError = 100001;
  EXPECT_THROW(TDrawBracket(&run, tools), XApplicationError);
  run.fEndError = kOK;
  EXPECT_EQ("refuse 0", run.TakeEvents());
  // Nor what fails to go on; but that may be tried again.
  {
    TDrawBracket bracket(&run, tools);
    for (int i = 0; i < 2; ++i) {
      bracket.Pause();
      run.fBeginError = 100001;
      EXPECT_THROW(bracket.Resume(), XApplicationError);
    }
  }
  EXPECT_EQ("begin 0; end 0; refuse 0; refuse 0", run.TakeEvents());
}

TEST_F(DrawingTools, ABitmapIsDrawnToInWindowCoordinates) {
  for (std::int32_t depth : {16, 32}) {
    CBufferBitmap bitmap({20, 10}, depth);
    CRegion region(TRect{0, 0, 1000, 1000});
    region.SubtractRect({105, 200, 107, 1000});
    {
      CBufferBitmapDrawTools tools(&bitmap, region.GetNativeRegion(), {100, 200}, nullptr);
      EXPECT_EQ(kOK, Filling({103, 204, 110, 1000}, kRed)(tools));
      TRawPixels pixels = {};
      ASSERT_EQ(kOK, tools.IDrawTools_OpenRawPixels(pixels));
      EXPECT_EQ((TPoint{100, 200}), (TPoint{pixels.fOriginX, pixels.fOriginY}));
      const void* const first = depth == 16 ? static_cast<void*>(pixels.fPixels16) : pixels.fPixels32;
      EXPECT_EQ(bitmap.OpenPixels(), first);
      ASSERT_EQ(kOK, tools.IDrawTools_CloseRawPixels());
      EXPECT_EQ((TRect{3, 4, 10, 10}), PaintedPixels(bitmap));
      for (const int x : {4, 5, 6, 7}) EXPECT_EQ(x == 5 || x == 6, PixelAt(bitmap, x, 9) == 0) << x;
    }
    // Origin and clip are back.
    Fill(bitmap, {0, 0, 1000, 1000}, RGB(255, 255, 255));
    EXPECT_EQ((TRect{0, 0, 20, 10}), PaintedPixels(bitmap));
  }
}

TEST_F(DrawingTools, AFlushGoesUpThroughAllParents) {
  CBufferBitmap surface({40, 40}, 32), outerBitmap({30, 30}, 16), innerBitmap({10, 10}, 32);
  const CRegion all(TRect{0, 0, 1000, 1000});
  PlainTools screen(surface.GetNativePort().fHDC, all.GetNativeRegion());
  CBufferBitmapDrawTools outer(&outerBitmap, all.GetNativeRegion(), {5, 5}, &screen);
  CBufferBitmapDrawTools inner(&innerBitmap, all.GetNativeRegion(), {20, 10}, &outer);
  Fill(innerBitmap, kEverything, kRed);
  // It is clipped as the views are, and not as others have left the contexts.
  const auto setClip = [](CDrawToolsGlue& tools, const TRect& clip) {
    const HDC hdc = tools.CDrawToolsGlue_GetNativePort().fHDC;
    IntersectClipRect(hdc, 24, 14, 25, 15);
    tools.GetKnownPort().SetClip(clip, CPortMapping(hdc));
  };
  setClip(outer, {0, 0, 29, 100});
  setClip(screen, {21, 0, 100, 100});
  inner.CDrawToolsGlue_FlushToScreen(true);
  EXPECT_EQ((std::vector<bool>{true}), screen.fFlushes);
  EXPECT_EQ((TRect{15, 5, 24, 15}), PaintedPixels(outerBitmap));
  EXPECT_EQ((TRect{21, 10, 29, 20}), PaintedPixels(surface));
}

// --- The state of a context

// For any clip region and origin: what can be drawn after Enter is what the platform's own intersection
// leaves, whatever the view before has done to the context, and in the end the clip is the old one. So it is
// if the clips are selected at once, and if they wait for the next use.
TEST_F(DrawingTools, ClipsOfViewsAreThoseOfThePlatform) {
  Random random(90125);
  CBufferBitmap tested({24, 20}, 32), reference({24, 20}, 32);
  const HDC hdc = tested.GetNativePort().fHDC, referenceHdc = reference.GetNativePort().fHDC;
  const auto clear = [&] {
    for (CBufferBitmap* each : {&tested, &reference})
      std::memset(each->OpenPixels(), 0, 20 * each->GetInfo().fRowBytes);
  };
  int shown = 0;
  for (int round = 0; round < 300; ++round) {
    // The second half goes without regions that are kept.
    if (round < 150) CClipRegions::GetInstance().StartOver();
    while (round == 150 && CClipRegions::GetInstance().GetNext({0, 0, 1, 1}) != nullptr) continue;
    const int rectCount = round % 4;
    const int origin = round % 3 == 0 ? random(-100, 100) : 0;
    CRegion region;
    for (int i = 0; i < rectCount; ++i) region.UnionRect(random.Rect(-5, 22, 20));
    for (HDC dc : {hdc, referenceHdc}) {
      SelectClipRgn(dc, rectCount == 0 ? nullptr : region.GetNativeRegion());
      SetWindowOrgEx(dc, origin, origin, nullptr);
      // A mapping that only the platform knows.
      SetMapMode(dc, round % 7 == 0 ? MM_ANISOTROPIC : MM_TEXT);
    }
    const CStateRestorer untouched(referenceHdc);
    CKnownPort knownPort(hdc);
    {
      CPortClip clip(hdc, round % 5 < 3 ? &knownPort : nullptr);
      for (int view = 0; view < 6; ++view) {
        const TRect bounds = OffsetRectBy(random.Rect(-5, 22, 20), origin, origin);
        untouched.Restore();
        IntersectClipRect(referenceHdc, bounds.fLeft, bounds.fTop, bounds.fRight, bounds.fBottom);
        const bool entered = clip.Enter(bounds);
        clear();
        if (entered && view == 2) {
          SelectClipRgn(hdc, nullptr);
          clip.Renew(bounds);
        }
        knownPort.Use();
        if (entered) Fill(tested, kEverything, 1);
        Fill(reference, kEverything, 1);
        ASSERT_EQ(PixelsOf(reference), PixelsOf(tested)) << round << " " << view;
        ASSERT_EQ(entered, PaintedPixels(reference).fRight > 0);
        if (!entered) continue;
        ++shown;
        // A mapping of its own, once changed, is beyond repair.
        const int spoiler = random(0, round % 7 == 0 ? kPlaceSpoilers - 1 : kWalkSpoilers);
        if (spoiler < kWalkSpoilers) kSpoilers[spoiler](hdc);
        clip.Leave();
      }
    }
    knownPort.Use();
    untouched.Restore();
    clear();
    for (CBufferBitmap* each : {&tested, &reference}) Fill(*each, kEverything, 1);
    ASSERT_EQ(PixelsOf(reference), PixelsOf(tested)) << round;
  }
  EXPECT_GT(shown, 100);
}
