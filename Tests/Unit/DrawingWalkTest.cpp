// The drawing walk, judged by pixels: modes, clips, order, and what one view may do to another.
#include <cstdlib>

#include "Tests/Support/Drawing.h"

using namespace NSMorvaneTest;

namespace {

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

// Every view fills more than its bounds: itself with one colour, and after its subviews its top left corner
// with another.
struct TPlannedView {
  TRect fBounds;
  TViewDrawMode fMode;
  int fSuperView;  // -1: the root view
  int fColour;

  TRect Corner() const { return {fBounds.fLeft - 3, fBounds.fTop - 3, fBounds.fLeft + 4, fBounds.fTop + 4}; }
};

// The slow way to draw a tree.
std::uint32_t SlowPixel(const std::vector<TPlannedView>& plan, int superView, const TPoint& point,
                        std::uint32_t pixel) {
  for (const TPlannedView& view : plan) {
    if (view.fSuperView != superView || !IsPointInRect(point, view.fBounds)) continue;
    pixel = PixelOf(ColourOf(view.fColour));
    pixel = SlowPixel(plan, static_cast<int>(&view - plan.data()), point, pixel);
    if (IsPointInRect(point, view.Corner())) pixel = PixelOf(ColourOf(view.fColour + 1));
  }
  return pixel;
}

}  // namespace

using DrawingWalk = ReportingTest;

TEST_F(DrawingWalk, AnyTreeInAnyModesGivesThePixelsOfItsViews) {
  constexpr int kWidth = 60, kHeight = 50;
  const TRect rootBounds = {2, 1, 55, 48};
  Random random(31415);
  for (int round = 0; round < 60; ++round) {
    std::vector<TPlannedView> plan;
    for (int i = 0; i < 12; ++i)
      plan.push_back({random.Rect(-5, 50, 35), round < 5 ? kModes[round] : kModes[random(0, 4)],
                      random(-1, i - 1), random(0, 30) * 2 + 1});
    CRegion dirty;
    for (int i = round % 5; i >= 0; --i) dirty.UnionRect(random.Rect(-10, 40, 40));
    DrawingTree tree(rootBounds);
    std::vector<CViewImpl*> views;
    for (const TPlannedView& planned : plan) {
      CViewImpl& superView = planned.fSuperView < 0 ? tree.Root() : *views[planned.fSuperView];
      views.push_back(&tree.Add(superView, planned.fBounds, planned.fMode));
      BehaviorOf(*views.back()).fOnDraw = Filling(kEverything, ColourOf(planned.fColour));
      BehaviorOf(*views.back()).fOnPostProcess = Filling(planned.Corner(), ColourOf(planned.fColour + 1));
    }
    CBufferBitmap surface({kWidth, kHeight}, 32);
    Fill(surface, {0, 0, kWidth, kHeight}, RGB(1, 2, 3));
    tree.Draw(surface, dirty);
    const std::vector<std::uint32_t> drawn = PixelsOf(surface);
    for (int y = 0; y < kHeight; ++y)
      for (int x = 0; x < kWidth; ++x) {
        const bool isDrawn = PtInRegion(dirty.GetNativeRegion(), x, y) && IsPointInRect({x, y}, rootBounds);
        const std::uint32_t before = PixelOf(RGB(1, 2, 3));
        ASSERT_TRUE(
            IsNearlySame(isDrawn ? SlowPixel(plan, -1, {x, y}, before) : before, drawn[y * kWidth + x]))
            << "round " << round << " at " << x << ", " << y;
      }
  }
  EXPECT_FALSE(fOutput.HasLine("Ignored"));
}

TEST_F(DrawingWalk, LargeViewsAreDrawnTileByTile) {
  const TRect bounds = {10, 20, 1610, 820};
  CRegion dirty(TRect{0, 0, 500, 500});  // the clip ends within tiles
  dirty.UnionRect({700, 300, 900, 600});
  std::vector<std::uint32_t> expected;
  for (TViewDrawMode mode : kModes) {
    DrawingTree tree({0, 0, 2000, 2000});
    CViewImpl& view = tree.Add(bounds, mode);
    std::vector<TPoint> origins;
    BehaviorOf(view).fOnDraw = [&](IDrawTools& tools) {
      TRawPixels pixels = {};
      if (tools.IDrawTools_OpenRawPixels(pixels) == kOK) tools.IDrawTools_CloseRawPixels();
      origins.push_back({pixels.fOriginX, pixels.fOriginY});
      Filling(bounds, ColourOf(7))(tools);  // a buffer comes with old pixels
      for (int i = 0; i < 160; ++i) Filling({10 + 10 * i, 20 + 5 * i, 25 + 10 * i, 825}, ColourOf(i))(tools);
      return kOK;
    };
    BehaviorOf(tree.Add(view, {400, 100, 1300, 500})).fOnDraw = Filling({0, 0, 2000, 2000}, ColourOf(5));
    CBufferBitmap surface({900, 650}, 32);
    tree.Draw(surface, dirty);
    const std::vector<std::uint32_t> pixels = PixelsOf(surface);
    if (mode == kViewDrawDirect) expected = pixels;
    for (std::size_t i = 0; i < pixels.size(); ++i)
      ASSERT_TRUE(IsNearlySame(expected[i], pixels[i])) << mode << " at " << i % 900 << ", " << i / 900;
    if (mode == kViewDrawTemporary16 || mode == kViewDrawTemporary32) {
      EXPECT_EQ((std::vector<TPoint>{{10, 20}, {810, 20}, {10, 420}, {810, 420}}), origins);
      EXPECT_EQ(4, BehaviorOf(view).fPostProcesses);
    } else {
      EXPECT_EQ(1, BehaviorOf(view).fDraws);
    }
  }
}

// A buffer is begun and ended inside what it is copied to, which pauses for the copy.
TEST_F(DrawingWalk, BracketsOfNestedBuffers) {
  for (TViewDrawMode mode : {kViewDrawTemporary32, kViewDrawPermanent16}) {
    DrawingTree tree({0, 0, 100, 100});
    tree.Add(tree.Add({0, 0, 50, 50}, mode), {10, 10, 40, 40}, mode);
    CBufferBitmap surface({100, 100}, 32);
    tree.Draw(surface);
    EXPECT_EQ("begin 0; begin 1; begin 2; end 2; end 1; begin 1; end 1; end 0; begin 0; end 0",
              tree.fRunBehavior.TakeEvents());
  }
}

TEST_F(DrawingWalk, APermanentBufferIsDrawnOnlyWhereItIsDirty) {
  for (TViewDrawMode mode : {kViewDrawPermanent16, kViewDrawPermanent32}) {
    DrawingTree tree({0, 0, 100, 100});
    CViewImpl& view = tree.Add({10, 10, 90, 90}, mode);
    RecordingViewBehavior& inner = BehaviorOf(tree.Add(view, {20, 20, 30, 30}));
    COLORREF colour = kRed;
    TRectList drawn;
    BehaviorOf(view).fOnDraw = [&](IDrawTools& tools) {
      void* region = nullptr;
      EXPECT_EQ(kOK, tools.IDrawTools_GetDirtyRegion(region));
      drawn = CRegion(static_cast<TNativeRegion>(region), true).GetRects();
      return Filling(kEverything, colour)(tools);
    };
    CBufferBitmap first({100, 100}, 32), second({100, 100}, 32), third({100, 100}, 32);
    tree.Draw(first);
    EXPECT_EQ((TRectList{{10, 10, 90, 90}}), drawn);
    EXPECT_EQ((TRect{10, 10, 90, 90}), PaintedPixels(first));
    // Clean: no behaviour is called, here or below, and the pixels come all the same.
    tree.Draw(second);
    EXPECT_EQ(PixelsOf(first), PixelsOf(second));
    EXPECT_EQ(1, BehaviorOf(view).fPostProcesses);
    EXPECT_EQ(1, inner.fDraws);
    // Partly dirty: the rest keeps its old pixels.
    view.InvalidateRect({0, 0, 15, 50});
    colour = kGreen;
    tree.Draw(third);
    EXPECT_EQ((TRectList{{10, 10, 15, 50}}), drawn);
    EXPECT_EQ(1, inner.fDraws);
    EXPECT_EQ(kGreen, GetPixel(third.GetNativePort().fHDC, 14, 49));
    EXPECT_EQ(kRed, GetPixel(third.GetNativePort().fHDC, 15, 49));
  }
}

TEST_F(DrawingWalk, OnlyWhatIsDirtyAndInSightIsCalled) {
  DrawingTree tree({0, 0, 100, 100});
  CViewImpl& covered = tree.Add({0, 0, 100, 100});  // subviews of its own lie behind each other
  CViewImpl& inside = tree.Add(covered, {10, 10, 20, 20});
  CViewImpl& atTheEdge = tree.Add(covered, {40, 10, 60, 20});
  CViewImpl& outside = tree.Add({50, 50, 80, 80});
  CViewImpl& belowOutside = tree.Add(outside, {0, 0, 100, 100});
  CViewImpl& outOfSuperView = tree.Add(inside, {21, 10, 30, 20});
  CViewImpl& empty = tree.Add({10, 10, 10, 20});
  CBufferBitmap surface({100, 100}, 32);
  tree.Draw(surface, CRegion(TRect{0, 0, 41, 50}));
  const auto callsOf = [](CViewImpl* view) {
    return BehaviorOf(*view).fDraws + BehaviorOf(*view).fPostProcesses;
  };
  for (CViewImpl* view : {&tree.Root(), &covered, &inside, &atTheEdge}) EXPECT_EQ(2, callsOf(view));
  for (CViewImpl* view : {&outside, &belowOutside, &outOfSuperView, &empty}) EXPECT_EQ(0, callsOf(view));
}

// The last one ends on top, for the eye and for the mouse.
TEST_F(DrawingWalk, TheOrderOfSubViewsCanBeChanged) {
  DrawingTree tree({0, 0, 100, 100});
  std::vector<IView*> order;
  std::vector<CViewImpl*> views;
  const COLORREF colours[] = {kRed, kGreen, kBlue};
  for (const COLORREF colour : colours) {
    views.push_back(&tree.Add({10, 10, 20, 20}));
    order.push_back(views.back());
    BehaviorOf(*views.back()).fOnDraw = Filling(kEverything, colour);
    BehaviorOf(*views.back()).fHitRects = {{10, 10, 20, 20}};
  }
  for (const int top : {2, 0, 1}) {
    std::rotate(order.begin(), std::find(order.begin(), order.end(), views[top]) + 1, order.end());
    EXPECT_EQ(kOK, tree.Root().IView_SetSubViewOrder(order.data(), 3));
    CBufferBitmap surface({100, 100}, 32);
    tree.Draw(surface);
    EXPECT_EQ(colours[top], GetPixel(surface.GetNativePort().fHDC, 15, 15));
    EXPECT_EQ(views[top], tree.Root().HitTest({15, 15}).back().get());
  }
}

TEST_F(DrawingWalk, EachViewIsToldItsPartOfWhatIsDirty) {
  for (const TViewDrawMode mode : {kViewDrawDirect, kViewDrawTemporary32}) {
    DrawingTree tree({0, 0, 100, 100});
    CViewImpl& outer = tree.Add({10, 10, 60, 60}, mode);
    CViewImpl& inner = tree.Add(outer, {30, 20, 80, 50});
    std::vector<TRectList> told;
    const auto note = [&](IDrawTools& tools) {
      void* region = nullptr;
      EXPECT_EQ(kOK, tools.IDrawTools_GetDirtyRegion(region));
      told.push_back(CRegion(static_cast<TNativeRegion>(region), true).GetRects());
      return kOK;
    };
    for (CViewImpl* view : {&tree.Root(), &outer, &inner})
      BehaviorOf(*view).fOnDraw = BehaviorOf(*view).fOnPostProcess = note;
    CRegion dirty(TRect{0, 0, 50, 30});
    dirty.UnionRect({40, 30, 70, 40});
    CBufferBitmap surface({100, 100}, 32);
    tree.Draw(surface, dirty);
    const TRectList ofRoot = {{0, 0, 50, 30}, {40, 30, 70, 40}},
                    ofOuter = {{10, 10, 50, 30}, {40, 30, 60, 40}},
                    ofInner = {{30, 20, 50, 30}, {40, 30, 60, 40}};
    EXPECT_EQ((std::vector<TRectList>{ofRoot, ofOuter, ofInner, ofInner, ofOuter, ofRoot}), told);
  }
}

// For the eye of a developer: what is drawn shows at once, and slowly if wanted.
TEST_F(DrawingWalk, DebugSettingsFlushWhatIsDrawn) {
  DrawingTree tree({0, 0, 100, 100});
  tree.Add({10, 10, 20, 20});
  CViewImpl& view = tree.Add({30, 30, 40, 40});
  for (const auto& [mode, flushes, red, delay, expected] :
       Rows<TViewDrawMode, TFlag, TFlag, TFlag, std::vector<bool>>{
           {kViewDrawDirect, 0, 0, 1, {}},
           {kViewDrawDirect, 1, 0, 0, {false, false, false}},
           {kViewDrawDirect, 1, 0, 1, {true, true, true}},
           {kViewDrawDirect, 0, 1, 1, {}},
           {kViewDrawTemporary16, 0, 1, 0, {false}},
           {kViewDrawPermanent32, 0, 1, 1, {true}},
           {kViewDrawPermanent32, 1, 1, 0, {false, false, false, false}}}) {
    SetMode(view, kViewDrawDirect);
    SetMode(view, mode);
    CBufferBitmap surface({100, 100}, 32);
    const CRegion all(tree.Root().GetBounds());
    PlainTools tools(surface.GetNativePort().fHDC, all.GetNativeRegion());
    TDebugSettings settings = {};
    settings.fFlushViews = flushes;
    settings.fDrawPaintsRed = red;
    settings.fDelayAfterFlushing = delay;
    tree.DrawWith(tools, settings);
    EXPECT_EQ(expected, tools.fFlushes) << mode << " " << flushes << red << delay;
  }
}

// The tools of someone else: the walk asks them for the port, once for each view.
TEST_F(DrawingWalk, ForeignToolsAreOpenedForEachView) {
  class ForeignTools : public IDrawTools {
   public:
    TError IDrawTools_GetDirtyRegion(void*& out) override {
      out = fRegion.GetNativeRegion();
      return kOK;
    }
    TError IDrawTools_OpenNativePort(TNativePort& out) override {
      out = fSurface.GetNativePort();
      ++fOpened;
      return kOK;
    }
    TError IDrawTools_CloseNativePort() override {
      ++fClosed;
      return kOK;
    }
    TError IDrawTools_OpenRawPixels(TRawPixels&) override { return kUnsupported; }
    TError IDrawTools_CloseRawPixels() override { return kUnsupported; }
    CRegion fRegion{TRect{0, 0, 100, 100}};
    CBufferBitmap fSurface{{100, 100}, 32};
    int fOpened = 0, fClosed = 0;
  } tools;
  DrawingTree tree({0, 0, 100, 100});
  RecordingViewBehavior& first = BehaviorOf(tree.Add({0, 0, 20, 20}, kViewDrawTemporary32));
  RecordingViewBehavior& second = BehaviorOf(tree.Add({20, 0, 40, 20}));
  first.fOnDraw = second.fOnDraw = Filling(kEverything, kRed);
  tree.DrawWith(tools);
  // Three views; the copy of a tile; what the second one draws.
  EXPECT_EQ(5, tools.fOpened);
  EXPECT_EQ(5, tools.fClosed);
  EXPECT_EQ((TRect{0, 0, 40, 20}), PaintedPixels(tools.fSurface));
}

// What the super view hides is not drawn into the bitmap each time.
TEST_F(DrawingWalk, OfABitmapOnlyWhatIsInSightIsDrawn) {
  DrawingTree tree({0, 0, 50, 50});
  CViewImpl& content = tree.Add(tree.Root(), {0, 0, 50, 500}, kViewDrawPermanent32);
  CViewImpl& seen = tree.Add(content, {0, 40, 50, 60}, kViewDrawDirect);
  CViewImpl& hidden = tree.Add(content, {0, 60, 50, 80}, kViewDrawDirect);
  CBufferBitmap surface({50, 50}, 32);
  tree.Draw(surface, CRegion(TRect{0, 0, 10, 10}));
  EXPECT_EQ(1, BehaviorOf(seen).fDraws);
  EXPECT_EQ(0, BehaviorOf(hidden).fDraws);
}
