// Views that fail, throw, or change the tree while it is being drawn.
#include <set>

#include "Component/Portable/Surfaces/TileBitmapPool.h"
#include "Tests/Support/Pictures.h"

using namespace NSMorvaneTest;

namespace {

// Three views side by side, the middle one with a subview, on a surface.
class DrawingFailures : public ReportingTest {
 protected:
  DrawingFailures() {
    for (CViewImpl* view : {&fLeft, &fMiddle, &fBelowMiddle, &fRight})
      BehaviorOf(*view).fOnDraw = Filling(kEverything, kRed);
    BehaviorOf(fTree.Root()).fOnPostProcess = Filling({-1000, 30, 1000, 1000}, kGreen);
  }
  // Whether the neighbours and the super view came out right, all within their bounds.
  void ExpectOthersUnharmed() {
    Fill(fSurface, fMiddle.GetBounds(), kBlue);
    EXPECT_EQ(
        "", DifferenceOf(fSurface,
                         {{{0, 0, 30, 10}, kRed}, {fMiddle.GetBounds(), kBlue}, {{0, 30, 40, 40}, kGreen}}));
  }
  // Begin and end in turn for each tools, and every one of them ended.
  void ExpectBalancedBrackets(DrawingTree& tree) {
    std::set<std::string> open;
    for (const std::string& event : std::exchange(tree.fRunBehavior.fEvents, {})) {
      if (event[0] == 'r') continue;
      const std::string tools = event.substr(event.find(' '));
      EXPECT_TRUE(event[0] == 'b' ? open.insert(tools).second : open.erase(tools) == 1) << event;
    }
    EXPECT_TRUE(open.empty());
  }

  DrawingTree fTree{TRect{0, 0, 40, 40}};
  CViewImpl& fLeft = fTree.Add({0, 0, 10, 10});
  CViewImpl& fMiddle = fTree.Add({10, 0, 20, 10});
  CViewImpl& fBelowMiddle = fTree.Add(fMiddle, {12, 2, 16, 8});
  CViewImpl& fRight = fTree.Add({20, 0, 30, 10});
  CBufferBitmap fSurface{{100, 100}, 32};
};

}  // namespace

TEST_F(DrawingFailures, CodesOfBehavioursAreLoggedAndDropped) {
  RecordingViewBehavior& behavior = BehaviorOf(fMiddle);
  behavior.fOnDraw = [](IDrawTools&) { return kOtherError; };
  behavior.fOnPostProcess = [](IDrawTools&) { return 4294967295u; };
  TakeLines();
  fTree.Draw(fSurface);
  const auto address = reinterpret_cast<std::intptr_t>(static_cast<IViewBehavior*>(&behavior));
  const auto line = [&](const char* what) {
    return "The view behavior " + std::to_string(address) + "returned the error " + what +
           " was called. The error has been ignored to avoid disrupting the drawing of other views.";
  };
  EXPECT_EQ(line("12007 when IViewBehavior_Draw") + "; " + line("-1 when IViewBehavior_PostProcessDraw"),
            TakeLines());
  EXPECT_EQ(1, BehaviorOf(fBelowMiddle).fDraws);
  EXPECT_EQ(1, behavior.fPostProcesses);
  ExpectOthersUnharmed();
}

TEST_F(DrawingFailures, ExceptionsStopAtTheirView) {
  const Rows<void (*)(), std::string> rows = {
      {[] { throw std::runtime_error("boom"); }, "Ignored an exception (boom) in DrawSubViews."},
      {[] { throw 7; }, "Ignored an unknown exception in DrawSubViews."}};
  for (const TViewDrawMode mode : kModes)
    for (const auto& [raise, line] : rows) {
      SetMode(fMiddle, kViewDrawDirect);
      SetMode(fMiddle, mode);
      BehaviorOf(fMiddle).fOnDraw = Drawing([raise = raise](HDC) { raise(); });
      TakeLines();
      fTree.Draw(fSurface);
      EXPECT_EQ(line, TakeLines());
      EXPECT_EQ("!fNativePortIsOpen", TakeReports()) << mode;
      ExpectOthersUnharmed();
      ExpectBalancedBrackets(fTree);
    }
  EXPECT_EQ(0, BehaviorOf(fBelowMiddle).fDraws + BehaviorOf(fMiddle).fPostProcesses);
}

TEST_F(DrawingFailures, AnExceptionOfTheFirstViewComesOutAndTheContextIsAsBefore) {
  BehaviorOf(fTree.Root()).fOnDraw = [](IDrawTools& tools) -> TError {
    Drawing([](HDC hdc) { SelectClipRgn(hdc, nullptr), SetTextColor(hdc, kRed), SetROP2(hdc, R2_NOT); })(
        tools);
    throw std::runtime_error("boom");
  };
  const CRegion clip(TRect{5, 5, 50, 50});
  const HDC hdc = fSurface.GetNativePort().fHDC;
  SelectClipRgn(hdc, clip.GetNativeRegion());
  PlainTools tools(hdc, clip.GetNativeRegion());
  EXPECT_THROW(fTree.DrawWith(tools), std::runtime_error);
  EXPECT_EQ(0u, GetTextColor(hdc));
  EXPECT_EQ(R2_COPYPEN, GetROP2(hdc));
  Fill(fSurface, kEverything, kRed);
  EXPECT_EQ((TRect{5, 5, 50, 50}), PaintedPixels(fSurface));
  ExpectBalancedBrackets(fTree);
}

// A buffer must not take for drawn what was not: it is tried again with the next paint, and only once it is
// there no longer.
TEST_F(DrawingFailures, WhatABufferLacksIsDrawnWithTheNextPaint) {
  enum { kDrawThrows, kDrawReturnsACode, kPostProcessReturnsACode, kBracketFails, kAll };
  for (const TViewDrawMode outerMode : kModes)
    for (const TViewDrawMode mode : kModes)
      for (int failure = 0; failure < kAll; ++failure) {
        SCOPED_TRACE(std::to_string(outerMode) + " " + std::to_string(mode) + " " + std::to_string(failure));
        DrawingTree tree({0, 0, 100, 100});
        CViewImpl& outer = tree.Add({10, 10, 60, 60}, outerMode);
        CViewImpl& inner = tree.Add(outer, {20, 20, 40, 40}, mode);
        bool fails = true;
        BehaviorOf(outer).fOnDraw = [&](IDrawTools& tools) {
          if (fails && failure == kBracketFails) tree.fRunBehavior.fBeginError = 100001;
          return Filling(kEverything, kRed)(tools);
        };
        BehaviorOf(inner).fOnDraw = [&](IDrawTools& tools) -> TError {
          if (fails && failure == kDrawThrows) throw std::runtime_error("boom");
          if (fails && failure == kDrawReturnsACode) return kOtherError;
          return Filling(kEverything, kGreen)(tools);
        };
        BehaviorOf(inner).fOnPostProcess = [&](IDrawTools& tools) -> TError {
          if (fails && failure == kPostProcessReturnsACode) return kOtherError;
          return Filling({-1000, 30, 1000, 1000}, kBlue)(tools);
        };
        BehaviorOf(outer).fOnPostProcess = Filling({-1000, 38, 1000, 1000}, kRed | kGreen);
        CBufferBitmap surface({100, 100}, 32), again({100, 100}, 32);
        tree.Draw(surface);
        fails = false;
        tree.fRunBehavior.fBeginError = kOK;
        tree.Draw(again);
        EXPECT_EQ("", DifferenceOf(again, {{{10, 10, 60, 60}, kRed},
                                           {{20, 20, 40, 30}, kGreen},
                                           {{20, 30, 40, 40}, kBlue},
                                           {{10, 38, 60, 60}, kRed | kGreen}}));
        ExpectBalancedBrackets(tree);
        const int draws = BehaviorOf(inner).fDraws;
        tree.Draw(again);
        const bool isKept = outer.GetDirtyRegion() || inner.GetDirtyRegion();
        EXPECT_EQ(draws + (isKept ? 0 : 1), BehaviorOf(inner).fDraws);
      }
}

// The run behaviour refuses to go on after a tile was copied. The views that follow are drawn in a bracket
// all the same.
TEST_F(DrawingFailures, ABracketThatBreaksIsBegunAgain) {
  SetMode(fMiddle, kViewDrawTemporary32);
  BehaviorOf(fMiddle).fOnPostProcess = [&](IDrawTools&) {
    fTree.fRunBehavior.fBeginError = 100001;
    return kOK;
  };
  BehaviorOf(fRight).fOnDraw = [&](IDrawTools& tools) {
    fTree.fRunBehavior.fEvents.push_back("draw");
    return Filling(kEverything, kRed)(tools);
  };
  fTree.Draw(fSurface);
  EXPECT_EQ("begin 0; begin 1; end 1; end 0; refuse 0; begin 0; draw; end 0",
            fTree.fRunBehavior.TakeEvents());
  ExpectOthersUnharmed();
  // It was the last one: what its super view draws on top is inside a bracket too.
  fRight.IView_Release();
  fTree.Draw(fSurface);
  EXPECT_EQ("begin 0; begin 1; end 1; end 0; refuse 0; begin 0; end 0", fTree.fRunBehavior.TakeEvents());
}

// --- The tree changes under the walk

// Views of another window take their places in memory, where the heap gives a place out twice.
TEST_F(DrawingFailures, ViewsMayEndWhileTheyAreDrawn) {
  DrawingTree otherWindow({0, 0, 100, 100});
  std::vector<CViewImpl*> others;
  for (const TViewDrawMode mode : kModes) {
    DrawingTree tree({0, 0, 100, 100});
    CViewImpl& before = tree.Add({0, 0, 10, 10});
    CViewImpl& view = tree.Add({10, 0, 20, 10}, mode);
    CViewImpl& below = tree.Add(view, {10, 0, 20, 10});
    CViewImpl& after = tree.Add({20, 0, 30, 10});
    BehaviorOf(tree.Add({30, 0, 40, 10})).fOnDraw = Filling(kEverything, kGreen);
    BehaviorOf(below).fOnDraw = [](IDrawTools&) -> TError { throw std::logic_error("drawn after its end"); };
    BehaviorOf(view).fOnDraw = [&](IDrawTools& tools) {
      for (CViewImpl* each : {&view, &before, &after, &below}) each->IView_Release();
      for (int i = 0; i < 20; ++i) others.push_back(&otherWindow.Add({0, 0, 100, 100}));
      return Filling(kEverything, kRed)(tools);
    };
    CBufferBitmap surface({100, 100}, 32);
    tree.Draw(surface);
    EXPECT_EQ("", DifferenceOf(surface, {{{10, 0, 20, 10}, kRed}, {{30, 0, 40, 10}, kGreen}}));
  }
  for (CViewImpl* other : others) EXPECT_EQ(0, BehaviorOf(*other).fDraws);
  EXPECT_FALSE(fOutput.HasLine("drawn after its end"));
}

// What is made meanwhile comes with the next paint; what is moved is drawn where it is now.
TEST_F(DrawingFailures, ViewsMayComeAndMoveWhileOneIsDrawn) {
  for (const bool oneEnds : {false, true}) {
    DrawingTree tree({0, 0, 100, 100});
    CViewImpl& first = tree.Add({0, 0, 10, 10});
    CViewImpl& ended = tree.Add({10, 0, 20, 10});
    CViewImpl& moved = tree.Add({20, 50, 30, 60});
    CViewImpl* made = nullptr;
    BehaviorOf(moved).fOnDraw = Filling(kEverything, kGreen);
    BehaviorOf(first).fOnDraw = [&](IDrawTools&) -> TError {
      if (made) return kOK;
      made = &tree.Add({30, 0, 40, 10});
      if (oneEnds) ended.IView_Release();
      SetRect(moved, {20, 0, 30, 10});
      return kOK;
    };
    CBufferBitmap surface({100, 20}, 32);
    tree.Draw(surface);
    EXPECT_EQ(0, BehaviorOf(*made).fDraws);
    EXPECT_EQ("", DifferenceOf(surface, {{{20, 0, 30, 10}, kGreen}}));
    tree.Draw(surface);
    EXPECT_EQ(1, BehaviorOf(*made).fDraws);
  }
}

TEST_F(DrawingFailures, AViewMayChangeItsModeAndSizeWhileItIsDrawn) {
  for (const TViewDrawMode from : kModes)
    for (const TViewDrawMode to : kModes) {
      DrawingTree tree({0, 0, 100, 100});
      CViewImpl& view = tree.Add({10, 10, 20, 20}, from);
      BehaviorOf(view).fOnDraw = [&](IDrawTools& tools) {
        SetMode(view, to);
        view.SetBounds({10, 10, 50, 50});
        return Filling(kEverything, kRed)(tools);
      };
      for (const int edge : {20, 50}) {
        CBufferBitmap surface({100, 100}, 32);
        tree.Draw(surface);
        TakeReports();  // some changes are told
        EXPECT_EQ((TRect{10, 10, edge, edge}), PaintedPixels(surface)) << from << " to " << to;
      }
    }
}

// What it is drawn through by then does not matter.
TEST_F(DrawingFailures, ATileGoesBackToWhereItCameFrom) {
  for (const auto& [from, depth] :
       Rows<TViewDrawMode, std::int32_t>{{kViewDrawTemporary16, 16}, {kViewDrawTemporary32, 32}})
    for (const TViewDrawMode to : kModes) {
      CViewImpl& view = fTree.Add({10, 10, 20, 20}, from);
      HDC port = nullptr;
      BehaviorOf(view).fOnDraw = Drawing([&, to = to](HDC hdc) {
        port = hdc;
        SetMode(view, to);
      });
      fTree.Draw(fSurface);
      EXPECT_EQ("", TakeReports()) << from << " to " << to;
      const boost::shared_ptr<CBufferBitmap> tile = CTileBitmapPool::ForDepth(depth).Take();
      EXPECT_EQ(port, tile->GetNativePort().fHDC) << from << " to " << to;
      CTileBitmapPool::ForDepth(depth).PutBack(tile);
      view.IView_Release();
    }
}

// With all the views on the way down being drawn into their buffers at this moment.
TEST_F(DrawingFailures, AViewMayMoveWhileItIsDrawn) {
  for (const TViewDrawMode frameMode : kModes)
    for (const TViewDrawMode mode : kModes)
      for (const bool bySetParams : {false, true}) {
        SCOPED_TRACE(std::to_string(frameMode) + " " + std::to_string(mode));
        DrawingTree tree({0, 0, 100, 100});
        CViewImpl& frame = tree.Add({10, 10, 60, 60}, frameMode);
        CViewImpl& page = tree.Add(frame, {20, 15, 45, 40}, mode);
        CViewImpl& item = tree.Add(page, {28, 22, 33, 27});
        SetInvalidation(page, bySetParams ? kAutoInvalidationNone : kAutoInvalidationFull);
        BehaviorOf(frame).fOnDraw = Filling(kEverything, kRed);
        BehaviorOf(item).fOnDraw = Filling(kEverything, kBlue);
        bool moves = true;
        BehaviorOf(page).fOnDraw = [&](IDrawTools& tools) {
          if (std::exchange(moves, false)) {
            if (!bySetParams) page.IView_Offset(5, 3);
            // The subview stays, and a view without automatic invalidation sees to itself.
            if (bySetParams) SetRect(page, {25, 18, 50, 43});
            if (bySetParams) frame.InvalidateRect(frame.GetBounds());
          }
          return Filling(kEverything, kGreen)(tools);
        };
        CBufferBitmap surface({100, 100}, 32);
        tree.fInvalid = CRegion(TRect{0, 0, 100, 100});
        tree.DrawInvalid(surface);
        EXPECT_EQ("", DifferenceOf(surface, {{frame.GetBounds(), kRed},
                                             {{25, 18, 50, 43}, kGreen},
                                             {item.GetBounds(), kBlue}}));
      }
}

// A behaviour that handles messages can be painted again in the middle of its own drawing.
TEST_F(DrawingFailures, DrawingMayBeginAgainInTheMiddle) {
  for (const TViewDrawMode mode : kModes) {
    SCOPED_TRACE(mode);
    DrawingTree tree({0, 0, 100, 100});
    CViewImpl& view = tree.Add({10, 10, 60, 60}, mode);
    CViewImpl& inner = tree.Add(view, {20, 20, 40, 40}, mode);
    CBufferBitmap surface({100, 100}, 32), nested({100, 100}, 32), again({100, 100}, 32);
    int depth = 0;
    BehaviorOf(view).fOnDraw = Filling(kEverything, kRed);
    BehaviorOf(inner).fOnDraw = [&](IDrawTools& tools) {
      if (depth++ == 0) tree.Draw(nested);
      return Filling(kEverything, kGreen)(tools);
    };
    tree.Draw(surface);
    ExpectBalancedBrackets(tree);
    TakeReports();  // a buffer that is used twice is told
    tree.Draw(again);
    const Fills both = {{{10, 10, 60, 60}, kRed}, {{20, 20, 40, 40}, kGreen}};
    for (CBufferBitmap* each : {&surface, &again}) EXPECT_EQ("", DifferenceOf(*each, both));
    // A bitmap of the view's own shows what has been drawn into it so far.
    EXPECT_EQ("", DifferenceOf(nested, view.GetDirtyRegion() ? Fills{both[0]} : both));
  }
}
