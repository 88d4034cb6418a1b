// Views that fail, throw, spoil the context, or change the tree while it is being drawn.
#include <gtest/gtest.h>
#include <windows.h>

#include <set>
#include <stdexcept>

#include "Tests/Support/DrawingTree.h"
#include "Tests/Support/PrintGeometry.h"
#include "Tests/Support/RecordingDebugOutput.h"

namespace NSMorvane {
namespace {

using namespace NSMorvaneTest;
using TTexts = std::vector<std::string>;

constexpr TViewDrawMode kModes[] = {kViewDrawDirect, kViewDrawTemporary16, kViewDrawTemporary32,
                                    kViewDrawPermanent16, kViewDrawPermanent32};

const TRect kEverything = {-1000, -1000, 1000, 1000};

// Three views side by side, the middle one with a subview, on a surface.
class DrawingFailures : public testing::Test {
 protected:
  DrawingFailures() {
    for (const TDrawnView& view : {fLeft, fMiddle, fBelowMiddle, fRight})
      view.fBehavior->fOnDraw = [](IDrawTools& tools) {
        return FillThroughPort(tools, kEverything, RGB(255, 0, 0));
      };
    fTree.fRoot.fBehavior->fOnPostProcess = [](IDrawTools& tools) {
      return FillThroughPort(tools, {-1000, 30, 1000, 1000}, RGB(0, 255, 0));
    };
  }
  void Draw() { fTree.Draw(fSurface, CRegion(TRect{0, 0, 100, 100})); }
  // Whether the neighbours and the super view came out right, all within their bounds.
  void ExpectOthersUnharmed() {
    const HDC hdc = fSurface.GetNativePort().fHDC;
    for (int x = 0; x < 100; ++x) {
      if (x >= 10 && x < 20) continue;
      EXPECT_EQ(x < 10 || (x >= 20 && x < 30) ? RGB(255, 0, 0) : RGB(0, 0, 0), GetPixel(hdc, x, 9)) << x;
      EXPECT_EQ(RGB(0, 0, 0), GetPixel(hdc, x, 10)) << x;
      EXPECT_EQ(x < 40 ? RGB(0, 255, 0) : RGB(0, 0, 0), GetPixel(hdc, x, 30)) << x;
    }
  }

  DrawingTree fTree{TRect{0, 0, 40, 40}};
  TDrawnView fLeft = fTree.Add({0, 0, 10, 10});
  TDrawnView fMiddle = fTree.Add({10, 0, 20, 10});
  TDrawnView fBelowMiddle = fTree.Add(*fMiddle.fView, {12, 2, 16, 8});
  TDrawnView fRight = fTree.Add({20, 0, 30, 10});
  CBufferBitmap fSurface{{100, 100}, 32};
  RecordingDebugOutput fOutput;
};

// Begin and end in turn for each tools, and every one of them ended.
bool AreBracketsBalanced(const TTexts& events) {
  std::set<std::string> open;
  for (const std::string& event : events) {
    const std::string tools = event.substr(event.find(' '));
    if (event[0] == 'b' ? !open.insert(tools).second : open.erase(tools) == 0) return false;
  }
  return open.empty();
}

TEST_F(DrawingFailures, CodesOfBehavioursAreLoggedAndDropped) {
  const std::string address =
      std::to_string(reinterpret_cast<std::intptr_t>(static_cast<IViewBehavior*>(fMiddle.fBehavior)));
  fMiddle.fBehavior->fOnDraw = [](IDrawTools&) { return kOtherError; };
  fMiddle.fBehavior->fOnPostProcess = [](IDrawTools&) { return 4294967295u; };
  Draw();
  EXPECT_EQ(
      (TTexts{
          "[Morvane] The view behavior " + address +
              "returned the error 12007 when IViewBehavior_Draw was called. The error has been ignored to "
              "avoid disrupting the drawing of other views.",
          "[Morvane] The view behavior " + address +
              "returned the error -1 when IViewBehavior_PostProcessDraw was called. The error has been "
              "ignored to avoid disrupting the drawing of other views."}),
      fOutput.fLines);
  EXPECT_EQ(1, fBelowMiddle.fBehavior->fDraws);
  EXPECT_EQ(1, fMiddle.fBehavior->fPostProcesses);
  ExpectOthersUnharmed();
  EXPECT_EQ(TTexts(), fOutput.fAssertions);
}

TEST_F(DrawingFailures, ExceptionsStopAtTheirView) {
  const std::pair<void (*)(), const char*> rows[] = {
      {[] { throw std::runtime_error("boom"); }, "[Morvane] Ignored an exception (boom) in DrawSubViews."},
      {[] { throw 7; }, "[Morvane] Ignored an unknown exception in DrawSubViews."}};
  for (const TViewDrawMode mode : kModes) {
    for (const auto& [raise, line] : rows) {
      fMiddle.SetMode(kViewDrawDirect);
      fMiddle.SetMode(mode);
      fMiddle.fBehavior->fOnDraw = [&](IDrawTools& tools) {
        TNativePort port = {};
        tools.IDrawTools_OpenNativePort(port);
        raise();
        return kOK;
      };
      fOutput.Reset();
      fTree.fRunBehavior.fEvents.clear();
      Draw();
      EXPECT_EQ((TTexts{line}), fOutput.fLines);
      EXPECT_EQ((TTexts{"!fNativePortIsOpen"}), fOutput.fAssertions) << mode;
      ExpectOthersUnharmed();
      EXPECT_TRUE(AreBracketsBalanced(fTree.fRunBehavior.fEvents)) << mode;
    }
  }
  EXPECT_EQ(0, fBelowMiddle.fBehavior->fDraws);
  EXPECT_EQ(0, fMiddle.fBehavior->fPostProcesses);
}

TEST_F(DrawingFailures, AnExceptionOfTheFirstViewComesOutAndTheContextIsAsBefore) {
  for (const TViewDrawMode mode : kModes) {
    fTree.fRoot.SetMode(mode);
    fTree.fRoot.fBehavior->fOnDraw = [](IDrawTools& tools) -> TError {
      TNativePort port = {};
      tools.IDrawTools_OpenNativePort(port);
      SelectClipRgn(port.fHDC, nullptr);
      SetWindowOrgEx(port.fHDC, 77, 77, nullptr);
      tools.IDrawTools_CloseNativePort();
      throw std::runtime_error("boom");
    };
    const HDC hdc = fSurface.GetNativePort().fHDC;
    CRegion clip(TRect{0, 0, 50, 50});
    clip.SubtractRect({10, 10, 20, 200});
    SelectClipRgn(hdc, clip.GetNativeRegion());
    SetWindowOrgEx(hdc, 3, 4, nullptr);
    fTree.fRunBehavior.fEvents.clear();
    PlainTools tools(hdc, clip.GetNativeRegion());
    EXPECT_THROW(fTree.DrawWith(tools), std::runtime_error);
    const CRegion found;
    ASSERT_EQ(1, GetClipRgn(hdc, found.GetNativeRegion()));
    EXPECT_TRUE(EqualRgn(clip.GetNativeRegion(), found.GetNativeRegion()));
    POINT origin = {};
    GetWindowOrgEx(hdc, &origin);
    EXPECT_EQ((TPoint{3, 4}), (TPoint{origin.x, origin.y}));
    EXPECT_TRUE(AreBracketsBalanced(fTree.fRunBehavior.fEvents)) << mode;
  }
  EXPECT_EQ(TTexts(), fOutput.fAssertions);
}

TEST_F(DrawingFailures, ASpoiltContextIsMendedBehindTheView) {
  void (*const spoilers[])(HDC) = {
      [](HDC hdc) { SelectClipRgn(hdc, nullptr); },
      [](HDC hdc) { IntersectClipRect(hdc, 500, 500, 501, 501); },
      [](HDC hdc) { SetWindowOrgEx(hdc, 5, 9, nullptr); },
      [](HDC hdc) { SaveDC(hdc); },
      [](HDC hdc) { RestoreDC(hdc, -1); },
  };
  for (const TViewDrawMode mode : {kViewDrawDirect, kViewDrawTemporary16, kViewDrawPermanent32}) {
    for (void (*const spoil)(HDC) : spoilers) {
      fMiddle.SetMode(kViewDrawDirect);
      fMiddle.SetMode(mode);
      fBelowMiddle.fBehavior->fOnDraw = [&](IDrawTools& tools) {
        TNativePort port = {};
        tools.IDrawTools_OpenNativePort(port);
        spoil(port.fHDC);
        return tools.IDrawTools_CloseNativePort();
      };
      fMiddle.fBehavior->fOnPostProcess = fBelowMiddle.fBehavior->fOnDraw;
      Fill(fSurface, {0, 0, 100, 100}, RGB(0, 0, 0));
      SaveDC(fSurface.GetNativePort().fHDC);
      Draw();
      RestoreDC(fSurface.GetNativePort().fHDC, 1);
      ExpectOthersUnharmed();
    }
  }
  EXPECT_EQ(TTexts(), fOutput.fAssertions);
}

// What a view sets in a shared bitmap does not wait there for the next view.
TEST_F(DrawingFailures, SharedBitmapsComeBackClean) {
  fMiddle.SetMode(kViewDrawTemporary16);
  const HBITMAP foreign = CreateBitmap(1, 1, 1, 1, nullptr);
  fMiddle.fBehavior->fOnDraw = [&](IDrawTools& tools) {
    TNativePort port = {};
    tools.IDrawTools_OpenNativePort(port);
    SelectObject(port.fHDC, foreign);
    SetTextColor(port.fHDC, 0x123456);
    return tools.IDrawTools_CloseNativePort();
  };
  const boost::shared_ptr<CBufferBitmap> tile = CTileBitmapPool::ForDepth(16).Take();
  CTileBitmapPool::ForDepth(16).PutBack(tile);
  Draw();
  EXPECT_EQ(tile, CTileBitmapPool::ForDepth(16).Take());
  EXPECT_EQ(0u, GetTextColor(tile->GetNativePort().fHDC));
  EXPECT_TRUE(DeleteObject(foreign));
  Fill(*tile, {0, 0, 800, 400}, RGB(255, 255, 255));
  EXPECT_EQ(0x7FFFu, PixelAt(*tile, 799, 399));
  CTileBitmapPool::ForDepth(16).PutBack(tile);
}

// --- The tree changes under the walk

// Views of another window take their places in memory, where the heap gives a place out twice.
TEST_F(DrawingFailures, ViewsMayEndWhileTheyAreDrawn) {
  DrawingTree otherWindow({0, 0, 100, 100});
  std::vector<TDrawnView> others;
  for (const TViewDrawMode mode : kModes) {
    DrawingTree tree({0, 0, 100, 100});
    const TDrawnView before = tree.Add({0, 0, 10, 10});
    const TDrawnView view = tree.Add({10, 0, 20, 10}, mode);
    const TDrawnView below = tree.Add(*view.fView, {10, 0, 20, 10});
    const TDrawnView after = tree.Add({20, 0, 30, 10});
    const TDrawnView last = tree.Add({30, 0, 40, 10});
    below.fBehavior->fOnDraw = [](IDrawTools&) {
      ADD_FAILURE() << "drawn after its end";
      return kOK;
    };
    view.fBehavior->fOnDraw = [&](IDrawTools& tools) {
      for (const TDrawnView& each : {view, before, after, below}) each.fView->IView_Release();
      for (int i = 0; i < 20; ++i) others.push_back(otherWindow.Add({0, 0, 100, 100}));
      return FillThroughPort(tools, kEverything, RGB(255, 0, 0));
    };
    last.fBehavior->fOnDraw = [](IDrawTools& tools) {
      return FillThroughPort(tools, kEverything, RGB(0, 255, 0));
    };
    CBufferBitmap surface({100, 100}, 32);
    for (int draws = 1; draws <= 2; ++draws) {
      tree.Draw(surface, CRegion(TRect{0, 0, 100, 100}));
      EXPECT_EQ(draws, last.fBehavior->fDraws);
    }
    EXPECT_EQ(RGB(255, 0, 0), GetPixel(surface.GetNativePort().fHDC, 19, 9));
    EXPECT_EQ(RGB(0, 255, 0), GetPixel(surface.GetNativePort().fHDC, 30, 0));
  }
  for (const TDrawnView& other : others) EXPECT_EQ(0, other.fBehavior->fDraws);
  EXPECT_EQ(TTexts(), fOutput.fAssertions);
}

TEST_F(DrawingFailures, TheFirstViewMayEndWhileItIsDrawn) {
  FakeViewWindow window;
  TViewImplPtr view(new CViewImpl(nullptr, &window));
  view->SetClientsViewReference(view);
  boost::shared_ptr<DrawingBehavior> behavior(new DrawingBehavior);
  DrawingBehavior& recorder = *behavior;
  view->SetBehavior(behavior);
  behavior.reset();
  view->SetBounds({0, 0, 10, 10});
  CViewImpl& viewItself = *view;
  view.reset();
  recorder.fOnDraw = [&](IDrawTools& tools) {
    viewItself.IView_Release();
    return FillThroughPort(tools, kEverything, RGB(255, 0, 0));
  };
  const CRegion all(TRect{0, 0, 100, 100});
  PlainTools tools(fSurface.GetNativePort().fHDC, all.GetNativeRegion());
  TDrawBracket bracket(nullptr, tools);
  DrawView(nullptr, bracket, viewItself, {0, 0, 10, 10}, tools, {});
  EXPECT_EQ((TRect{0, 0, 10, 10}), PaintedPixels(fSurface));
}

TEST_F(DrawingFailures, ReorderingDrawsEachViewOnce) {
  DrawingTree tree({0, 0, 100, 100});
  std::vector<TDrawnView> views;
  for (int i = 0; i < 6; ++i) views.push_back(tree.Add({10 * i, 0, 10 * i + 10, 10}));
  TDrawnView added = {};
  views[2].fBehavior->fOnDraw = [&](IDrawTools&) {
    std::vector<IView*> reversed;
    for (auto i = views.rbegin(); i != views.rend(); ++i) reversed.push_back(i->fView);
    EXPECT_EQ(kOK, tree.fRoot.fView->IView_SetSubViewOrder(reversed.data(), 6));
    added = tree.Add({60, 0, 70, 10});
    return kOK;
  };
  tree.Draw(fSurface, CRegion(TRect{0, 0, 100, 100}));
  for (const TDrawnView& view : views) EXPECT_EQ(1, view.fBehavior->fDraws);
  EXPECT_EQ(0, added.fBehavior->fDraws);
}

TEST_F(DrawingFailures, AViewMayChangeItsModeAndSizeWhileItIsDrawn) {
  for (const TViewDrawMode from : kModes) {
    for (const TViewDrawMode to : kModes) {
      DrawingTree tree({0, 0, 100, 100});
      const TDrawnView view = tree.Add({10, 10, 20, 20}, from);
      view.fBehavior->fOnDraw = [&](IDrawTools& tools) {
        view.SetMode(to);
        view.fView->SetBounds({10, 10, 50, 50});
        return FillThroughPort(tools, kEverything, RGB(255, 0, 0));
      };
      for (const int edge : {20, 50}) {
        CBufferBitmap surface({100, 100}, 32);
        tree.Draw(surface, CRegion(TRect{0, 0, 100, 100}));
        EXPECT_EQ((TRect{10, 10, edge, edge}), PaintedPixels(surface)) << from << " to " << to;
      }
    }
  }
}

// A behaviour that handles messages can be painted again in the middle of its own drawing.
TEST_F(DrawingFailures, DrawingMayBeginAgainInTheMiddle) {
  for (const TViewDrawMode mode : kModes) {
    DrawingTree tree({0, 0, 100, 100});
    const TDrawnView view = tree.Add({10, 10, 60, 60}, mode);
    const TDrawnView inner = tree.Add(*view.fView, {20, 20, 40, 40}, mode);
    const CRegion all(TRect{0, 0, 100, 100});
    CBufferBitmap surface({100, 100}, 32), nested({100, 100}, 32);
    int depth = 0;
    view.fBehavior->fOnDraw = [](IDrawTools& tools) {
      return FillThroughPort(tools, kEverything, RGB(255, 0, 0));
    };
    inner.fBehavior->fOnDraw = [&](IDrawTools& tools) {
      if (depth++ == 0) tree.Draw(nested, all);
      return FillThroughPort(tools, kEverything, RGB(0, 255, 0));
    };
    tree.Draw(surface, all);
    const HDC hdc = surface.GetNativePort().fHDC;
    EXPECT_EQ(RGB(0, 255, 0), GetPixel(hdc, 39, 39)) << mode;
    EXPECT_EQ(RGB(255, 0, 0), GetPixel(hdc, 40, 40)) << mode;
    EXPECT_EQ((TRect{10, 10, 60, 60}), PaintedPixels(surface)) << mode;
    EXPECT_TRUE(AreBracketsBalanced(tree.fRunBehavior.fEvents)) << mode;
    CBufferBitmap again({100, 100}, 32);
    tree.Draw(again, all);
    EXPECT_EQ(PixelsOf(surface), PixelsOf(again)) << mode;
  }
}

}  // namespace
}  // namespace NSMorvane
