// The drawing walk, judged by pixels: modes, clips, order, and what one view may do to another.
#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <cstdlib>
#include <random>

#include "Tests/Support/DrawingTree.h"
#include "Tests/Support/PrintGeometry.h"
#include "Tests/Support/RecordingDebugOutput.h"

namespace NSMorvane {
namespace {

using namespace NSMorvaneTest;
using TTexts = std::vector<std::string>;

constexpr TViewDrawMode kModes[] = {kViewDrawDirect, kViewDrawTemporary16, kViewDrawTemporary32,
                                    kViewDrawPermanent16, kViewDrawPermanent32};

TRect Grown(const TRect& rect, int by) {
  return {rect.fLeft - by, rect.fTop - by, rect.fRight + by, rect.fBottom + by};
}

// Far enough from each other that five bits for each colour keep them apart.
COLORREF ColourOf(int number) { return RGB(number % 4 * 80, number / 4 % 4 * 80, 15 + number / 16 % 4 * 80); }

// What 5 bits for each colour may make of a pixel.
bool IsNearlySame(std::uint32_t a, std::uint32_t b) {
  for (int shift : {0, 8, 16})
    if (std::abs(static_cast<int>(a >> shift & 255) - static_cast<int>(b >> shift & 255)) > 8) return false;
  return true;
}

std::uint32_t PixelOf(COLORREF colour) {
  return RGB(GetBValue(colour), GetGValue(colour), GetRValue(colour));
}

// --- A random tree and the slow way to draw it

// Every view fills more than its bounds: itself with one colour, and after its subviews its top left corner
// with another.
struct TPlannedView {
  TRect fBounds;
  TViewDrawMode fMode;
  int fSuperView;  // -1: the root view
  int fColour;
};

TRect CornerOf(const TRect& bounds) {
  return {bounds.fLeft - 3, bounds.fTop - 3, bounds.fLeft + 4, bounds.fTop + 4};
}

std::uint32_t SlowPixel(const std::vector<TPlannedView>& plan, const TRect& rootBounds, int superView,
                        const TPoint& point, std::uint32_t pixel) {
  for (std::size_t i = 0; i < plan.size(); ++i) {
    const TPlannedView& view = plan[i];
    if (view.fSuperView != superView || !IsPointInRect(point, view.fBounds)) continue;
    pixel = PixelOf(ColourOf(view.fColour));
    pixel = SlowPixel(plan, rootBounds, static_cast<int>(i), point, pixel);
    if (IsPointInRect(point, CornerOf(view.fBounds))) pixel = PixelOf(ColourOf(view.fColour + 1));
  }
  return pixel;
}

TEST(DrawingWalk, AnyTreeInAnyModesGivesThePixelsOfItsViews) {
  RecordingDebugOutput output;
  constexpr int kWidth = 60, kHeight = 50;
  const TRect rootBounds = {2, 1, 55, 48};
  std::mt19937 random(31415);
  const auto number = [&](int low, int high) { return low + static_cast<int>(random() % (high - low + 1)); };
  for (int round = 0; round < 60; ++round) {
    std::vector<TPlannedView> plan;
    for (int i = 0; i < 12; ++i) {
      const int left = number(-5, 50), top = number(-5, 40);
      plan.push_back({{left, top, left + number(0, 35), top + number(0, 30)},
                      round < 5 ? kModes[round] : kModes[number(0, 4)],
                      number(-1, i - 1),
                      number(0, 30) * 2 + 1});
    }
    CRegion dirty;
    for (int i = round % 5; i >= 0; --i) {
      const int left = number(-10, 40), top = number(-10, 30);
      dirty.UnionRect({left, top, left + number(5, 40), top + number(5, 40)});
    }

    DrawingTree tree(rootBounds);
    std::vector<CViewImpl*> views;
    for (const TPlannedView& planned : plan) {
      CViewImpl& superView = planned.fSuperView < 0 ? *tree.fRoot.fView : *views[planned.fSuperView];
      const TDrawnView view = tree.Add(superView, planned.fBounds, planned.fMode);
      view.fBehavior->fOnDraw = [=](IDrawTools& tools) {
        return FillThroughPort(tools, Grown(planned.fBounds, 20), ColourOf(planned.fColour));
      };
      view.fBehavior->fOnPostProcess = [=](IDrawTools& tools) {
        return FillThroughPort(tools, CornerOf(planned.fBounds), ColourOf(planned.fColour + 1));
      };
      views.push_back(view.fView);
    }
    CBufferBitmap surface({kWidth, kHeight}, 32);
    Fill(surface, {0, 0, kWidth, kHeight}, RGB(1, 2, 3));
    tree.Draw(surface, dirty);
    for (int y = 0; y < kHeight; ++y)
      for (int x = 0; x < kWidth; ++x) {
        const bool isDrawn = PtInRegion(dirty.GetNativeRegion(), x, y) && IsPointInRect({x, y}, rootBounds);
        const std::uint32_t expected =
            isDrawn ? SlowPixel(plan, rootBounds, -1, {x, y}, PixelOf(RGB(1, 2, 3))) : PixelOf(RGB(1, 2, 3));
        ASSERT_TRUE(IsNearlySame(expected, PixelAt(surface, x, y)))
            << "round " << round << " at " << x << ", " << y;
      }
  }
  EXPECT_EQ(TTexts(), output.fAssertions);
  EXPECT_FALSE(output.HasLine("Ignored"));
}

// --- Buffers

TEST(DrawingWalk, LargeViewsAreDrawnTileByTile) {
  RecordingDebugOutput output;
  const TRect bounds = {10, 20, 1610, 820};
  CRegion dirty(TRect{0, 0, 500, 500});  // the clip ends within tiles
  dirty.UnionRect({700, 300, 900, 600});
  std::vector<std::uint32_t> expected;
  for (TViewDrawMode mode : kModes) {
    DrawingTree tree({0, 0, 2000, 2000});
    const TDrawnView view = tree.Add(bounds, mode);
    std::vector<TPoint> origins;
    view.fBehavior->fOnDraw = [&](IDrawTools& tools) {
      TRawPixels pixels = {};
      if (tools.IDrawTools_OpenRawPixels(pixels) == kOK) tools.IDrawTools_CloseRawPixels();
      origins.push_back({pixels.fOriginX, pixels.fOriginY});
      FillThroughPort(tools, bounds, ColourOf(7));  // a buffer comes with old pixels
      for (int i = 0; i < 160; ++i)
        FillThroughPort(tools, {10 + 10 * i, 20 + 5 * i, 25 + 10 * i, 825}, ColourOf(i));
      return kOK;
    };
    const TDrawnView inner = tree.Add(*view.fView, {400, 100, 1300, 500});
    inner.fBehavior->fOnDraw = [&](IDrawTools& tools) {
      return FillThroughPort(tools, {0, 0, 2000, 2000}, ColourOf(5));
    };
    CBufferBitmap surface({900, 650}, 32);
    tree.Draw(surface, dirty);
    const std::vector<std::uint32_t> pixels = PixelsOf(surface);
    if (mode == kViewDrawDirect) {
      expected = pixels;
    } else {
      for (std::size_t i = 0; i < pixels.size(); ++i)
        ASSERT_TRUE(IsNearlySame(expected[i], pixels[i])) << mode << " at " << i % 900 << ", " << i / 900;
    }
    if (mode == kViewDrawTemporary16 || mode == kViewDrawTemporary32) {
      EXPECT_EQ((std::vector<TPoint>{{10, 20}, {810, 20}, {10, 420}, {810, 420}}), origins);
      EXPECT_EQ(4, view.fBehavior->fPostProcesses);
      EXPECT_EQ(18u, tree.fRunBehavior.fEvents.size());
    } else {
      EXPECT_EQ(1, view.fBehavior->fDraws);
    }
  }
  EXPECT_EQ(TTexts(), output.fAssertions);
}

TEST(DrawingWalk, APermanentBufferIsDrawnOnlyWhereItIsDirty) {
  for (TViewDrawMode mode : {kViewDrawPermanent16, kViewDrawPermanent32}) {
    DrawingTree tree({0, 0, 100, 100});
    const TDrawnView view = tree.Add({10, 10, 90, 90}, mode);
    const TDrawnView inner = tree.Add(*view.fView, {20, 20, 30, 30});
    COLORREF colour = RGB(255, 0, 0);
    TRectList drawn;
    view.fBehavior->fOnDraw = [&](IDrawTools& tools) {
      void* region = nullptr;
      EXPECT_EQ(kOK, tools.IDrawTools_GetDirtyRegion(region));
      drawn = CRegion(static_cast<TNativeRegion>(region), true).GetRects();
      return FillThroughPort(tools, {0, 0, 100, 100}, colour);
    };
    const CRegion all(TRect{0, 0, 100, 100});
    CBufferBitmap first({100, 100}, 32);
    tree.Draw(first, all);
    EXPECT_EQ((TRectList{{10, 10, 90, 90}}), drawn);
    EXPECT_EQ((TRect{10, 10, 90, 90}), PaintedPixels(first));

    // Clean: no behaviour is called, here or below, and the pixels come all the same.
    CBufferBitmap second({100, 100}, 32);
    tree.Draw(second, all);
    EXPECT_EQ(PixelsOf(first), PixelsOf(second));
    EXPECT_EQ(1, view.fBehavior->fPostProcesses);
    EXPECT_EQ(1, inner.fBehavior->fDraws);

    // Partly dirty: the rest keeps its old pixels.
    view.fView->InvalidateRect({0, 0, 15, 50}, view.fView->GetClipBounds());
    colour = RGB(0, 255, 0);
    CBufferBitmap third({100, 100}, 32);
    tree.Draw(third, all);
    EXPECT_EQ((TRectList{{10, 10, 15, 50}}), drawn);
    EXPECT_EQ(1, inner.fBehavior->fDraws);
    EXPECT_EQ(RGB(0, 255, 0), GetPixel(third.GetNativePort().fHDC, 14, 49));
    EXPECT_EQ(RGB(255, 0, 0), GetPixel(third.GetNativePort().fHDC, 15, 49));
  }
}

TEST(DrawingWalk, FlushesForTheEye) {
  const struct {
    TFlag flushViews, drawPaintsRed;
    std::vector<bool> flushes;
  } rows[] = {{0, 0, {}}, {1, 0, {true, true, true}}, {0, 1, {true, true}}};
  for (const auto& row : rows) {
    DrawingTree tree({0, 0, 100, 100});
    tree.Add({0, 0, 50, 50}, kViewDrawTemporary32);
    tree.Add({0, 0, 50, 50}, kViewDrawPermanent16);
    CBufferBitmap surface({100, 100}, 32);
    const CRegion all(TRect{0, 0, 100, 100});
    PlainTools tools(surface.GetNativePort().fHDC, all.GetNativeRegion());
    TDebugSettings settings = {};
    settings.fFlushViews = row.flushViews;
    settings.fDrawPaintsRed = row.drawPaintsRed;
    settings.fDelayAfterFlushing = 1;
    tree.DrawWith(tools, settings);
    EXPECT_EQ(row.flushes, tools.fFlushes);
  }
}

// --- Who is called

TEST(DrawingWalk, OnlyWhatIsDirtyAndInSightIsCalled) {
  DrawingTree tree({0, 0, 100, 100});
  const TDrawnView covered = tree.Add({0, 0, 100, 100});  // subviews of its own lie behind each other
  const TDrawnView inside = tree.Add(*covered.fView, {10, 10, 20, 20});
  const TDrawnView atTheEdge = tree.Add(*covered.fView, {40, 10, 60, 20});
  const TDrawnView outside = tree.Add({50, 50, 80, 80});
  const TDrawnView belowOutside = tree.Add(*outside.fView, {0, 0, 100, 100});
  const TDrawnView outOfSuperView = tree.Add(*inside.fView, {21, 10, 30, 20});
  const TDrawnView empty = tree.Add({10, 10, 10, 20});
  CBufferBitmap surface({100, 100}, 32);
  tree.Draw(surface, CRegion(TRect{0, 0, 41, 50}));
  for (const TDrawnView& view : {tree.fRoot, covered, inside, atTheEdge}) {
    EXPECT_EQ(1, view.fBehavior->fDraws);
    EXPECT_EQ(1, view.fBehavior->fPostProcesses);
  }
  for (const TDrawnView& view : {outside, belowOutside, outOfSuperView, empty}) {
    EXPECT_EQ(0, view.fBehavior->fDraws);
    EXPECT_EQ(0, view.fBehavior->fPostProcesses);
  }
}

// The tools of someone else: the walk asks them for the port, once for each view.
TEST(DrawingWalk, ForeignToolsAreOpenedForEachView) {
  RecordingDebugOutput output;
  class ForeignTools : public IDrawTools {
   public:
    explicit ForeignTools(HDC hdc) : fHDC(hdc) {}
    TError IDrawTools_GetDirtyRegion(void*& out) override {
      out = fRegion.GetNativeRegion();
      return kOK;
    }
    TError IDrawTools_OpenNativePort(TNativePort& out) override {
      if (++fOpened == fFailAt) return 100007;
      out.fHDC = fHDC;
      return kOK;
    }
    TError IDrawTools_CloseNativePort() override {
      ++fClosed;
      return kOK;
    }
    TError IDrawTools_OpenRawPixels(TRawPixels&) override { return kUnsupported; }
    TError IDrawTools_CloseRawPixels() override { return kUnsupported; }
    CRegion fRegion{TRect{0, 0, 100, 100}};
    HDC fHDC;
    int fOpened = 0, fClosed = 0, fFailAt = 0;
  };
  DrawingTree tree({0, 0, 100, 100});
  const TDrawnView first = tree.Add({0, 0, 20, 20}, kViewDrawTemporary32);
  const TDrawnView second = tree.Add({20, 0, 40, 20});
  tree.Add({200, 0, 240, 20});
  for (const TDrawnView& view : {first, second})
    view.fBehavior->fOnDraw = [](IDrawTools& tools) { return FillThroughPort(tools, {0, 0, 100, 100}, 255); };
  CBufferBitmap surface({100, 100}, 32);
  ForeignTools tools(surface.GetNativePort().fHDC);
  tree.DrawWith(tools);
  // Three views; the copy of a tile; what the second one draws.
  EXPECT_EQ(5, tools.fOpened);
  EXPECT_EQ(5, tools.fClosed);
  EXPECT_EQ((TRect{0, 0, 40, 20}), PaintedPixels(surface));

  tools.fOpened = 0;
  tools.fFailAt = 2;  // the first subview
  tree.DrawWith(tools);
  EXPECT_EQ(1, first.fBehavior->fDraws);
  EXPECT_EQ(2, second.fBehavior->fDraws);
  EXPECT_TRUE(output.HasLine("Ignored an exception ("));
  tools.fOpened = 0;
  tools.fFailAt = 1;
  EXPECT_THROW(tree.DrawWith(tools), XApplicationError);
  EXPECT_EQ(TTexts(), output.fAssertions);
}

}  // namespace
}  // namespace NSMorvane
