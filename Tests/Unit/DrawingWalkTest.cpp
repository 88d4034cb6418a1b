// The drawing walk: which views are called, how often and with what, and the pixels of tiles and buffers.
// That any tree in any modes looks as it should is tried by ViewPicturesTest.
#include "Component/Win/Platform/UtilsWinHandles.h"
#include "Tests/Support/Pictures.h"

using namespace NSMorvaneTest;

namespace {

int CallsOf(CViewImpl& view) { return BehaviorOf(view).fDraws + BehaviorOf(view).fPostProcesses; }

TRectList DirtyRegionOf(IDrawTools& tools) {
  void* region = nullptr;
  EXPECT_EQ(kOK, tools.IDrawTools_GetDirtyRegion(region));
  return CRegion(static_cast<TNativeRegion>(region), true).GetRects();
}

}  // namespace

using DrawingWalk = ReportingTest;

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
    if (mode == kViewDrawDirect) expected = PixelsOf(surface);
    EXPECT_TRUE(expected == PixelsOf(surface)) << mode;
    const bool hasTiles = mode == kViewDrawTemporary16 || mode == kViewDrawTemporary32;
    EXPECT_EQ(hasTiles ? 8 : 2, CallsOf(view)) << mode;
    if (hasTiles) {
      EXPECT_EQ((std::vector<TPoint>{{10, 20}, {810, 20}, {10, 420}, {810, 420}}), origins);
    }
  }
}

// However large a view is, only the tiles in sight are drawn, where they would be if all of them were.
TEST_F(DrawingWalk, TilesOutOfSightAreNotDrawn) {
  DrawingTree tree({0, 0, 100, 100});
  CViewImpl& frame = tree.Add({20, 20, 100, 100});
  CViewImpl& view = tree.Add(frame, {0, 0, 10, 10}, kViewDrawTemporary32);
  std::vector<TPoint> origins;
  BehaviorOf(view).fOnDraw = [&](IDrawTools& tools) {
    TRawPixels pixels = {};
    if (tools.IDrawTools_OpenRawPixels(pixels) == kOK) tools.IDrawTools_CloseRawPixels();
    origins.push_back({pixels.fOriginX, pixels.fOriginY});
    if (origins.size() > 10) throw std::runtime_error("there would be no end");
    return Filling(kEverything, kRed)(tools);
  };
  for (const auto& [bounds, dirty, expected] : Rows<TRect, TRect, std::vector<TPoint>>{
           {{0, 0, kMax, kMax}, {0, 0, 100, 100}, {{0, 0}}},
           {{kMin, kMin, kMax, kMax}, {0, 0, 100, 100}, {{-448, -48}}},
           {{-750, -350, kMax, kMax}, {0, 0, 100, 100}, {{-750, -350}, {50, -350}, {-750, 50}, {50, 50}}},
           {{-750, -350, kMax, 60}, {50, 0, 70, 51}, {{50, -350}, {50, 50}}},
           {{-780, -380, kMax, kMax}, {0, 0, 30, 30}, {{20, 20}}}}) {  // the frame begins there
    SetRect(view, bounds);
    origins.clear();
    CBufferBitmap surface({100, 100}, 32);
    tree.Draw(surface, CRegion(dirty));
    EXPECT_EQ(expected, origins) << testing::PrintToString(bounds);
    TRect visible = dirty;
    EXPECT_TRUE(IntersectRect(visible, frame.GetBounds()) && IntersectRect(visible, bounds));
    EXPECT_EQ(visible, PaintedPixels(surface)) << testing::PrintToString(bounds);
  }
}

// Neither the view that is drawn through a tile next nor the next paint finds them.
TEST_F(DrawingWalk, AttributesStayWithTheirPass) {
  const auto attributesOf = [](HDC hdc) {
    POINT origin = {};
    GetBrushOrgEx(hdc, &origin);
    return std::vector<std::int64_t>{GetTextCharacterExtra(hdc),
                                     GetStretchBltMode(hdc),
                                     GetPolyFillMode(hdc),
                                     GetArcDirection(hdc),
                                     GetDCBrushColor(hdc),
                                     GetDCPenColor(hdc),
                                     origin.x,
                                     origin.y,
                                     GetLayout(hdc)};
  };
  for (TViewDrawMode mode : kModes) {
    if (mode == kViewDrawDirect) continue;
    DrawingTree tree({0, 0, 100, 100});
    std::vector<std::vector<std::int64_t>> found;
    for (const TRect& bounds : {TRect{0, 0, 20, 20}, TRect{20, 0, 40, 20}})
      BehaviorOf(tree.Add(bounds, mode)).fOnDraw = Drawing([&](HDC hdc) {
        found.push_back(attributesOf(hdc));
        SetTextCharacterExtra(hdc, 7), SetStretchBltMode(hdc, HALFTONE), SetPolyFillMode(hdc, WINDING);
        SetArcDirection(hdc, AD_CLOCKWISE), SetDCBrushColor(hdc, kRed), SetDCPenColor(hdc, kGreen);
        SetBrushOrgEx(hdc, 3, 5, nullptr), SetLayout(hdc, LAYOUT_RTL);
        EXPECT_NE(found[0], attributesOf(hdc));
      });
    CBufferBitmap surface({100, 100}, 32);
    for (int i = 0; i < 2; ++i) {
      tree.Root().InvalidateRect({0, 0, 100, 100});
      for (CViewImpl* view : tree.Root().GetRawSubViews()) view->InvalidateRect({0, 0, 100, 100});
      tree.Draw(surface);
    }
    ASSERT_EQ(4u, found.size()) << mode;
    CBufferBitmap fresh({100, 100}, 32);
    for (const auto& attributes : found)
      EXPECT_EQ(attributesOf(fresh.GetNativePort().fHDC), attributes) << mode;
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
    CViewImpl& inner = tree.Add(view, {20, 20, 30, 30});
    COLORREF colour = kRed;
    TRectList drawn;
    BehaviorOf(view).fOnDraw = [&](IDrawTools& tools) {
      drawn = DirtyRegionOf(tools);
      return Filling(kEverything, colour)(tools);
    };
    const auto draw = [&] {
      CBufferBitmap surface({100, 100}, 32);
      tree.Draw(surface);
      return DifferenceOf(surface, {{{10, 10, 90, 90}, kRed}, {{10, 10, 15, 50}, colour}});
    };
    EXPECT_EQ("", draw());
    EXPECT_EQ((TRectList{{10, 10, 90, 90}}), drawn);
    // Clean: no behaviour is called, here or below, and the pixels come all the same.
    EXPECT_EQ("", draw());
    EXPECT_EQ(2, CallsOf(view));
    // Partly dirty: the rest keeps its old pixels.
    view.InvalidateRect({0, 0, 15, 50});
    colour = kGreen;
    EXPECT_EQ("", draw());
    EXPECT_EQ((TRectList{{10, 10, 15, 50}}), drawn);
    EXPECT_EQ(2, CallsOf(inner));
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
  // A bitmap is drawn as far as its super view shows it, dirty on the screen or not.
  CViewImpl& bitmap = tree.Add({0, 0, 50, 500}, kViewDrawPermanent32);
  CViewImpl& shown = tree.Add(bitmap, {0, 90, 50, 110});
  CViewImpl& hidden = tree.Add(bitmap, {0, 110, 50, 130});
  CBufferBitmap surface({100, 100}, 32);
  tree.Draw(surface, CRegion(TRect{0, 0, 41, 50}));
  for (CViewImpl* view : {&tree.Root(), &covered, &inside, &atTheEdge, &bitmap, &shown})
    EXPECT_EQ(2, CallsOf(*view)) << testing::PrintToString(view->GetBounds());
  for (CViewImpl* view : {&outside, &belowOutside, &outOfSuperView, &empty, &hidden})
    EXPECT_EQ(0, CallsOf(*view)) << testing::PrintToString(view->GetBounds());
}

TEST_F(DrawingWalk, EachViewIsToldItsPartOfWhatIsDirty) {
  for (const TViewDrawMode mode : {kViewDrawDirect, kViewDrawTemporary32}) {
    DrawingTree tree({0, 0, 100, 100});
    CViewImpl& outer = tree.Add({10, 10, 60, 60}, mode);
    CViewImpl& inner = tree.Add(outer, {30, 20, 80, 50});
    std::vector<TRectList> told;
    const auto note = [&](IDrawTools& tools) { return told.push_back(DirtyRegionOf(tools)), kOK; };
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

// Each view finds the font that it wants, and one that wants none the font of the surface.
TEST_F(DrawingWalk, FontsOfViews) {
  const CGdiObject<HFONT> first(CreateFontW(-11, 0, 0, 0, 400, 0, 0, 0, 0, 0, 0, 0, 0, L"Arial"));
  const CGdiObject<HFONT> second(CreateFontW(-15, 0, 0, 0, 400, 0, 0, 0, 0, 0, 0, 0, 0, L"Arial"));
  CBufferBitmap surface({100, 100}, 32);
  const HDC hdc = surface.GetNativePort().fHDC;
  const auto selected = [](HDC context) { return static_cast<HFONT>(GetCurrentObject(context, OBJ_FONT)); };
  const HFONT before = selected(hdc);
  for (TViewDrawMode mode : kModes) {
    DrawingTree tree({0, 0, 100, 100});
    CViewImpl& holder = tree.Add({0, 0, 100, 100}, mode);
    std::vector<HFONT> found;
    const std::vector<HFONT> wanted = {first.Get(), first.Get(), nullptr, second.Get(), first.Get(), nullptr};
    for (int i = 0; i < 6; ++i)
      BehaviorOf(tree.Add(holder, {0, 10 * i, 100, 10 * i + 10})).fOnDraw = [&, i](IDrawTools& tools) {
        TNativePort port = {};
        EXPECT_EQ(kOK, wanted[i] == nullptr ? tools.IDrawTools_OpenNativePort(port)
                                            : tools.IDrawTools_OpenNativePortWithFont(wanted[i], port));
        found.push_back(selected(port.fHDC));
        return tools.IDrawTools_CloseNativePort();
      };
    tree.Draw(surface);
    std::vector<HFONT> expected = wanted;
    for (HFONT& font : expected)
      if (font == nullptr) font = before;
    EXPECT_EQ(expected, found) << mode;
    EXPECT_EQ(before, selected(hdc)) << mode;
  }
}

namespace {

constexpr TRect kRootView = {2, 1, 58, 46}, kOtherView = {8, 8, 30, 20};
constexpr RECT kNativeRoot = {2, 1, 58, 46};

// What the view of a tree does to its port, and what it finds there. It may also leave the port alone.
struct PortUser {
  TRect fBounds;
  TViewDrawMode fMode = kViewDrawDirect;  // another one only without subviews
  bool fThrows = false;
  bool fDrawsOther = false;  // another view, with the same tools, before everything else
  int fDrawSpoiler = -1;     // -1 for none
  int fPostProcessSpoiler = -1;
  COLORREF fColour = 0;  // 0: the port stays closed in Draw
  COLORREF fPostProcessColour = 0;
  std::vector<PortUser> fSubViews = {};
};

// A buffer is made for what can be seen where the super view's place is its own, so there are either buffers
// or spoilers.
PortUser RandomPortUser(Random& random, bool hasBuffers, int depth = 0) {
  const auto someColour = [&] { return random(0, 1) == 0 ? 0 : ColourOf(random(1, 124)); };
  const auto someSpoiler = [&] {
    return !hasBuffers && random(0, 2) == 0 ? random(0, kPlaceSpoilers - 1) : -1;
  };
  PortUser user = {.fBounds = random.Rect(-5, 40, 50)};
  user.fThrows = depth > 0 && random(0, 9) == 0;
  user.fDrawsOther = random(0, 5) == 0;
  user.fDrawSpoiler = someSpoiler();
  user.fPostProcessSpoiler = someSpoiler();
  user.fColour = someColour();
  user.fPostProcessColour = someColour();
  if (depth == 0) user.fBounds = kRootView;
  if (depth < 3)
    for (int i = random(0, 3); i > 0; --i)
      user.fSubViews.push_back(RandomPortUser(random, hasBuffers, depth + 1));
  if (hasBuffers && depth > 0 && user.fSubViews.empty() && random(0, 2) == 0)
    user = {.fBounds = user.fBounds, .fMode = kModes[random(1, 4)], .fColour = ColourOf(random(1, 124))};
  return user;
}

std::string UsePort(HDC hdc, COLORREF colour, int spoiler) {
  RECT box = {};
  POINT origin = {};
  GetClipBox(hdc, &box);
  GetWindowOrgEx(hdc, &origin);
  Fill(hdc, kEverything, colour);
  if (spoiler >= 0) kSpoilers[spoiler](hdc);
  return testing::PrintToString(TRect{box.left, box.top, box.right, box.bottom}) + " " +
         testing::PrintToString(TPoint{origin.x, origin.y});
}

// The walk as slow and simple as it can be.
void DrawSimply(const PortUser& user, HDC hdc, Texts& found) {
  const RECT native = {user.fBounds.fLeft, user.fBounds.fTop, user.fBounds.fRight, user.fBounds.fBottom};
  RECT box = {}, common = {};
  GetClipBox(hdc, &box);
  IntersectRect(&box, &box, &kNativeRoot);  // also where a super view has moved the origin
  if (!IntersectRect(&common, &box, &native) || !RectVisible(hdc, &native)) return;
  const int level = SaveDC(hdc);
  IntersectClipRect(hdc, native.left, native.top, native.right, native.bottom);
  if (user.fDrawsOther) DrawSimply({.fBounds = kOtherView, .fColour = kGreen}, hdc, found);
  if (user.fMode != kViewDrawDirect) {
    Fill(hdc, kEverything, user.fColour);
  } else if (user.fColour != 0) {
    found.push_back(UsePort(hdc, user.fColour, user.fDrawSpoiler));
  }
  if (!user.fThrows) {
    for (const PortUser& subView : user.fSubViews) DrawSimply(subView, hdc, found);
    if (user.fPostProcessColour != 0)
      found.push_back(UsePort(hdc, user.fPostProcessColour, user.fPostProcessSpoiler));
  }
  RestoreDC(hdc, level);
}

}  // namespace

// Wherever a view opens its port, and whatever others have done with it or have left undone, it finds the
// clip and the origin that it should.
TEST_F(DrawingWalk, EachOpeningFindsItsPlace) {
  int openings = 0;
  for (int seed = 1; seed <= 250; ++seed) {
    SCOPED_TRACE(seed);
    Random random(seed);
    const PortUser root = RandomPortUser(random, seed % 2 == 0);
    CRegion dirty(TRect{0, 0, 60, 50});
    if (seed % 3 == 0) dirty.SubtractRect(random.Rect(0, 40, 20));
    Texts expected, found;
    CBufferBitmap reference({60, 50}, 32), surface({60, 50}, 32);
    SelectClipRgn(reference.GetNativePort().fHDC, dirty.GetNativeRegion());
    DrawSimply(root, reference.GetNativePort().fHDC, expected);

    DrawingTree tree(root.fBounds), otherTree(kOtherView);
    BehaviorOf(otherTree.Root()).fOnDraw = [&](IDrawTools& tools) {
      return Drawing([&](HDC hdc) { found.push_back(UsePort(hdc, kGreen, -1)); })(tools);
    };
    const std::function<void(CViewImpl&, const PortUser&)> build = [&](CViewImpl& view,
                                                                       const PortUser& user) {
      BehaviorOf(view).fOnDraw = [&](IDrawTools& tools) -> TError {
        if (user.fDrawsOther) otherTree.DrawWith(tools);
        if (user.fMode != kViewDrawDirect) return Filling(kEverything, user.fColour)(tools);
        const auto use = [&](HDC hdc) { found.push_back(UsePort(hdc, user.fColour, user.fDrawSpoiler)); };
        const TError error = user.fColour != 0 ? Drawing(use)(tools) : kOK;
        if (user.fThrows) throw std::runtime_error("boom");
        return error;
      };
      if (user.fPostProcessColour != 0)
        BehaviorOf(view).fOnPostProcess = [&](IDrawTools& tools) {
          TNativePort port = {};
          EXPECT_EQ(kOK, tools.IDrawTools_OpenNativePortWithFont(
                             static_cast<HFONT>(GetStockObject(SYSTEM_FONT)), port));
          found.push_back(UsePort(port.fHDC, user.fPostProcessColour, user.fPostProcessSpoiler));
          return tools.IDrawTools_CloseNativePort();
        };
      for (const PortUser& each : user.fSubViews) build(tree.Add(view, each.fBounds, each.fMode), each);
    };
    build(tree.Root(), root);
    tree.Draw(surface, dirty);
    EXPECT_EQ(expected, found);
    EXPECT_EQ(PixelsOf(reference), PixelsOf(surface));
    openings += static_cast<int>(found.size());
  }
  EXPECT_GT(openings, 500);
}

// A view draws others with tools that pass all on to the library's, and one of them draws another one with
// those. What comes next has its own clip.
TEST_F(DrawingWalk, PassesOverOneContextMayAlternate) {
  class PassingTools : public IDrawTools {
   public:
    explicit PassingTools(IDrawTools& tools) : fTools(tools) {}
    TError IDrawTools_GetDirtyRegion(void*& out) override { return fTools.IDrawTools_GetDirtyRegion(out); }
    TError IDrawTools_OpenNativePort(TNativePort& out) override {
      return fTools.IDrawTools_OpenNativePort(out);
    }
    TError IDrawTools_CloseNativePort() override { return fTools.IDrawTools_CloseNativePort(); }
    TError IDrawTools_OpenRawPixels(TRawPixels&) override { return kUnsupported; }
    TError IDrawTools_CloseRawPixels() override { return kUnsupported; }
    TError IDrawTools_OpenNativePortWithFont(HFONT__*, TNativePort&) override { return kUnsupported; }

   private:
    IDrawTools& fTools;
  };
  DrawingTree tree({0, 0, 100, 100}), outer({0, 0, 100, 100}), inner({0, 0, 100, 100});
  IDrawTools* libraryTools = nullptr;
  BehaviorOf(tree.Root()).fOnDraw = [&](IDrawTools& tools) {
    libraryTools = &tools;
    PassingTools passing(tools);
    outer.DrawWith(passing);
    return kOK;
  };
  BehaviorOf(outer.Add({0, 0, 20, 20})).fOnDraw = [&](IDrawTools&) {
    inner.DrawWith(*libraryTools);
    return kOK;
  };
  BehaviorOf(outer.Add({40, 0, 60, 20})).fOnDraw = Filling(kEverything, kRed);
  CBufferBitmap surface({100, 100}, 32);
  tree.Draw(surface);
  EXPECT_EQ((TRect{40, 0, 60, 20}), PaintedPixels(surface));
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
    TError IDrawTools_OpenNativePortWithFont(HFONT__*, TNativePort&) override { return kUnsupported; }
    CRegion fRegion{TRect{0, 0, 100, 100}};
    CBufferBitmap fSurface{{100, 100}, 32};
    int fOpened = 0, fClosed = 0;
  } tools;
  DrawingTree tree({0, 0, 100, 100});
  for (CViewImpl* view : {&tree.Add({0, 0, 20, 20}, kViewDrawTemporary32), &tree.Add({20, 0, 40, 20})})
    BehaviorOf(*view).fOnDraw = Filling(kEverything, kRed);
  tree.DrawWith(tools);
  // Three views; the copy of a tile; what the second one draws.
  EXPECT_EQ(5, tools.fOpened);
  EXPECT_EQ(5, tools.fClosed);
  EXPECT_EQ((TRect{0, 0, 40, 20}), PaintedPixels(tools.fSurface));
}
