// Views: life and death, parameters, enabling, tooltips, order, hit test.
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "Component/Portable/BufferBitmap.h"
#include "Tests/Support/FakeViewWindow.h"
#include "Tests/Support/PrintGeometry.h"
#include "Tests/Support/RecordingDebugOutput.h"

namespace NSMorvane {
namespace {

using namespace NSMorvaneTest;

constexpr std::uint32_t kFocusable = kViewEnabled | kViewFocusable;

std::vector<std::string> NamesOf(const std::vector<TViewImplPtr>& views) {
  std::vector<std::string> names;
  for (const TViewImplPtr& view : views) names.push_back(view->GetDebugName());
  return names;
}

class ViewTest : public testing::Test {
 protected:
  FakeViewWindow fWindow;
  CViewImpl& fRoot = fWindow.Root();
  RecordingDebugOutput fOutput;
};

// --- Life

class CallbackFactory : public IViewBehaviorFactory {
 public:
  explicit CallbackFactory(std::function<IViewBehavior*(IView&, TError&)> make) : fMake(std::move(make)) {}
  IViewBehavior* IViewBehaviorFactory_CreateBehavior(IView& view, TError& outError) override {
    return fMake(view, outError);
  }

 private:
  std::function<IViewBehavior*(IView&, TError&)> fMake;
};

TEST_F(ViewTest, NewViewHangsUnderItsSuperView) {
  SetFlags(fRoot, 0);
  CViewImpl& view = fWindow.MakeView(fRoot, {1, 2, 3, 4}, std::string(300, 'n'));
  const TViewParams params = view.GetParams();
  EXPECT_EQ(1u, params.fFlags);
  EXPECT_EQ(kViewDrawDirect, params.fDrawMode);
  EXPECT_EQ(kAutoInvalidationNone, params.fAutoInvalidation);
  EXPECT_EQ(std::string(255, 'n'), view.GetDebugName());
  IView* superView = nullptr;
  EXPECT_EQ(kOK, view.IView_GetSuperView(superView));
  EXPECT_EQ(&fRoot, superView);
  EXPECT_EQ(&fWindow, view.GetMotherWindow());
  TFlag enabled = 2;
  EXPECT_EQ(kOK, view.IView_IsEffectivelyEnabled(enabled));
  EXPECT_EQ(0u, enabled);
  view.IView_Release();
  EXPECT_EQ(kOK, fRoot.IView_GetSuperView(superView));
  EXPECT_EQ(nullptr, superView);
  EXPECT_TRUE(fOutput.fAssertions.empty());
}

TEST_F(ViewTest, FactoryThatFailsLeavesNothing) {
  const struct {
    TError error;
    bool withBehavior;
  } rows[] = {{100007, false}, {100007, true}, {kOtherError, true}};
  for (const auto& row : rows) {
    CallbackFactory factory([&](IView&, TError& outError) -> IViewBehavior* {
      outError = row.error;
      return row.withBehavior ? new RecordingViewBehavior("made", fWindow.fLog) : nullptr;
    });
    fWindow.Reset();
    try {
      CViewImpl::MakeSubView(nullptr, factory, fRoot, "view");
      ADD_FAILURE();
    } catch (const std::exception& e) {
      EXPECT_EQ(row.error, ErrorFromException(&e));
    }
    EXPECT_EQ(row.withBehavior ? Log{"made Deleted"} : Log{}, fWindow.fLog);
    EXPECT_TRUE(fRoot.GetRawSubViews().empty());
  }
  CallbackFactory nothing([](IView&, TError& outError) -> IViewBehavior* {
    outError = kOK;
    return nullptr;
  });
  fOutput.Reset();
  const TViewImplPtr bare = CViewImpl::MakeSubView(nullptr, nothing, fRoot, "bare");
  EXPECT_EQ(std::vector<std::string>{"behavior != NULL"}, fOutput.fAssertions);
  EXPECT_EQ(kOK, SetRect(*bare, {0, 0, 10, 10}));
  EXPECT_EQ(kOK, bare->IView_Offset(1, 1));
  EXPECT_EQ(kOK, bare->IView_SetTooltipText(u"text"));
  EXPECT_TRUE(bare->HitTest({5, 5}).empty());
  bare->IView_Release();
}

TEST_F(ViewTest, NoViewsUnderOneThatIsGone) {
  CViewImpl& group = fWindow.MakeView(fRoot, {0, 0, 9, 9}, "group");
  CViewImpl& leaf = fWindow.MakeView(group, {0, 0, 9, 9}, "leaf");
  group.IView_Release();
  EXPECT_THROW(fWindow.MakeView(group, {0, 0, 9, 9}, "late"), std::invalid_argument);
  EXPECT_EQ(std::vector<CViewImpl*>{&leaf}, group.GetRawSubViews());
  leaf.IView_Release();
}

TEST_F(ViewTest, SuperViewLivesAsLongAsItsSubViews) {
  CViewImpl& group = fWindow.MakeView(fRoot, {0, 0, 90, 90}, "group");
  CViewImpl& a = fWindow.MakeView(group, {0, 0, 40, 40}, "a");
  CViewImpl& b = fWindow.MakeView(group, {40, 0, 90, 40}, "b");
  EXPECT_EQ(kOK, group.IView_Release());
  EXPECT_TRUE(fWindow.fLog.empty());
  EXPECT_TRUE(fRoot.GetSubViews().empty());
  EXPECT_EQ(std::vector<CViewImpl*>{&group}, fRoot.GetRawSubViews());
  a.IView_Release();
  EXPECT_EQ(Log{"a Deleted"}, fWindow.fLog);
  b.IView_Release();
  EXPECT_EQ((Log{"a Deleted", "b Deleted", "group Deleted"}), fWindow.fLog);
  EXPECT_TRUE(fRoot.GetRawSubViews().empty());
  EXPECT_EQ((TRect{0, 0, 90, 90}), fWindow.fInvalid.GetBounds());
  EXPECT_TRUE(fOutput.fAssertions.empty());
}

TEST_F(ViewTest, EndOfAViewStepByStep) {
  CViewImpl& other = fWindow.MakeView(fRoot, {0, 0, 5, 5}, "other", kFocusable);
  CViewImpl& view = fWindow.MakeView(fRoot, {380, 0, 450, 20}, "view", kFocusable);
  fWindow.fTabViews = {&view, &other};
  fWindow.fFocusView = &view;
  view.IView_SetTooltipText(u"tip");
  std::vector<std::string> steps;
  const auto state = [&] {
    return (fWindow.fTabViews.size() == 1 ? "out of tabs, " : "in tabs, ") +
           std::string(fWindow.fFocusView == &other ? "focus moved, " : "has focus, ") +
           (fWindow.fInvalidRects.empty() ? "clean, " : "invalid, ") +
           (fWindow.fTools.empty() ? "no tool, " : "tool, ") +
           (fRoot.GetRawSubViews().size() == 2 ? "in tree" : "out of tree");
  };
  // Losing the focus, the question for the native target when the tool goes, the end of the behaviour.
  BehaviorOf(view).fOnCall = [&] { steps.push_back(state()); };
  BehaviorOf(view).fOnDeleted = [&] { steps.push_back(state()); };
  fOutput.Reset();
  view.IView_Release();
  EXPECT_EQ((std::vector<std::string>{"out of tabs, has focus, clean, tool, in tree",
                                      "out of tabs, focus moved, invalid, tool, in tree",
                                      "out of tabs, focus moved, invalid, no tool, in tree"}),
            steps);
  EXPECT_EQ((std::vector<TRect>{{380, 0, 400, 20}}), fWindow.fInvalidRects);
  EXPECT_EQ(std::vector<CViewImpl*>{&other}, fRoot.GetRawSubViews());
  EXPECT_EQ(std::vector<std::string>{"[Morvane] Ejecting focus from view being deleted..."}, fOutput.fLines);
  EXPECT_EQ(1, fOutput.fIndents);
  EXPECT_TRUE(fOutput.fAssertions.empty());
  other.IView_Release();
}

TEST_F(ViewTest, EndGoesThroughWhateverBehavioursSay) {
  CViewImpl& other = fWindow.MakeView(fRoot, {0, 0, 5, 5}, "other", kFocusable);
  CViewImpl& view = fWindow.MakeView(fRoot, {0, 0, 20, 20}, "view", kFocusable);
  view.IView_SetTooltipText(u"tip");
  fWindow.fTabViews = {&view, &other};
  fWindow.fFocusView = &view;
  BehaviorOf(view).fError = 100001;   // refuses to have its tool removed
  BehaviorOf(other).fError = 100002;  // refuses the focus
  BehaviorOf(view).fOnCall = [&] {
    EXPECT_EQ(kBadInputProgrammingError, fWindow.IWindow_SetConceptualFocusView(&view));
  };
  EXPECT_EQ(kOK, view.IView_Release());
  EXPECT_EQ(nullptr, fWindow.fFocusView);
  EXPECT_TRUE(fWindow.fTools.empty());
  EXPECT_EQ(std::vector<CViewImpl*>{&other}, fRoot.GetRawSubViews());
  EXPECT_EQ("view Deleted", fWindow.fLog.back());
  other.IView_Release();

  EXPECT_THROW(fRoot.RemoveSubView(&fRoot), std::logic_error);
  EXPECT_TRUE(fOutput.HasLine("RemoveSubView called with a view that isn't a sub view!"));
}

TEST_F(ViewTest, EndOfADeepTree) {
  constexpr int kDepth = 50000;
  std::vector<CViewImpl*> chain = {&fRoot};
  for (int i = 0; i < kDepth; ++i) {
    CallbackFactory factory([&](IView&, TError&) { return new CDefaultViewBehavior; });
    chain.push_back(CViewImpl::MakeSubView(nullptr, factory, *chain.back(), "").get());
  }
  for (int i = 1; i < kDepth; ++i) chain[i]->IView_Release();
  EXPECT_EQ(1u, fRoot.GetRawSubViews().size());
  chain[kDepth]->IView_Release();
  EXPECT_TRUE(fRoot.GetRawSubViews().empty());
}

// The destructors of chain and bystander run in one another.
TEST_F(ViewTest, BehavioursEndOtherViewsFromTheirDestructors) {
  CViewImpl& group = fWindow.MakeView(fRoot, {0, 0, 9, 9}, "group");
  CViewImpl& leaf = fWindow.MakeView(group, {0, 0, 9, 9}, "leaf");
  CViewImpl& otherGroup = fWindow.MakeView(fRoot, {0, 0, 9, 9}, "other group");
  CViewImpl& otherLeaf = fWindow.MakeView(otherGroup, {0, 0, 9, 9}, "other leaf");
  BehaviorOf(group).fOnDeleted = [&] { otherLeaf.IView_Release(); };
  BehaviorOf(otherLeaf).fOnDeleted = [&] { EXPECT_TRUE(otherGroup.CheckInvariant()); };
  group.IView_Release();
  otherGroup.IView_Release();
  leaf.IView_Release();
  EXPECT_EQ((Log{"leaf Deleted", "group Deleted", "other leaf Deleted", "other group Deleted"}),
            fWindow.fLog);
  EXPECT_TRUE(fRoot.GetRawSubViews().empty());
}

TEST_F(ViewTest, ViewsCanEndInTheirOwnCallbacks) {
  const struct {
    const char* name;
    std::function<void(CViewImpl&)> call;
  } rows[] = {
      {"offset", [](CViewImpl& view) { view.IView_Offset(1, 1); }},
      {"disable", [](CViewImpl& view) { SetFlags(view, 0); }},
      {"tooltip", [](CViewImpl& view) { view.IView_SetTooltipText(u"tip"); }},
      {"hit test",
       [](CViewImpl& view) {
         view.GetSuperView()->HitTest(TPoint{5, 5});
       }},
      {"super view offset", [](CViewImpl& view) { view.GetSuperView()->IView_Offset(1, 1); }},
      {"super view disable", [](CViewImpl& view) { SetFlags(*view.GetSuperView(), 0); }},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    CViewImpl& group = fWindow.MakeView(fRoot, {0, 0, 90, 90}, "group");
    CViewImpl& view = fWindow.MakeView(group, {0, 0, 10, 10}, "view");
    CViewImpl& sibling = fWindow.MakeView(group, {0, 0, 10, 10}, "sibling");
    BehaviorOf(view).fOnCall = [&] {
      if (!view.IsLive()) return;
      for (CViewImpl* each : {&group, &sibling, &view}) each->IView_Release();
    };
    row.call(view);
    EXPECT_TRUE(fRoot.GetRawSubViews().empty());
    EXPECT_EQ("group Deleted", fWindow.fLog.back());
  }
}

TEST_F(ViewTest, ViewsOutliveTheirWindow) {
  CViewImpl& group = fWindow.MakeView(fRoot, {0, 0, 90, 90}, "group", kFocusable);
  CViewImpl& view = fWindow.MakeView(group, {0, 0, 10, 10}, "view", kFocusable);
  view.IView_SetTooltipText(u"tip");
  fWindow.fTabViews = {&view};
  fWindow.fFocusView = &view;
  fWindow.EndRootView();
  EXPECT_EQ(nullptr, view.GetMotherWindow());
  fWindow.Reset();
  EXPECT_EQ(kOK, SetRect(view, {0, 0, 20, 20}));
  SetFlags(group, 0);
  EXPECT_EQ(kOK, group.IView_Offset(1, 1));
  EXPECT_EQ(kOK, view.IView_SetTooltipText(u"other tip"));
  group.IView_Release();
  view.IView_Release();
  EXPECT_EQ("root Deleted", fWindow.fLog.back());
  EXPECT_TRUE(fWindow.fInvalidRects.empty());
  EXPECT_EQ(0, fWindow.fToolRectsMarked);
}

// --- Parameters

TEST_F(ViewTest, BuffersFollowTheDrawMode) {
  const struct {
    TViewDrawMode mode;
    TRect rect;
    std::int32_t width, height, depth;  // 0: no bitmap
  } rows[] = {{kViewDrawPermanent32, {5, 5, 5, 5}, 1, 1, 32},
              {kViewDrawPermanent32, {5, 5, 25, 15}, 20, 10, 32},
              {kViewDrawPermanent16, {5, 5, 25, 15}, 20, 10, 16},
              {kViewDrawPermanent16, {5, 5, 5, 15}, 1, 10, 16},
              {kViewDrawTemporary16, {5, 5, 25, 15}, 0, 0, 0},
              {kViewDrawPermanent32, {0, 0, 3, 4}, 3, 4, 32},
              {kViewDrawDirect, {0, 0, 3, 4}, 0, 0, 0}};
  CViewImpl& view = fWindow.MakeView(fRoot, {0, 0, 0, 0}, "view");
  for (const auto& row : rows) {
    EXPECT_EQ(kOK, view.IView_SetParams({1, row.rect, row.mode, kAutoInvalidationNone}));
    const bool permanent = row.depth != 0;
    const boost::shared_ptr<CBufferBitmap> bitmap = permanent ? view.GetBitmapForDrawing() : nullptr;
    if (permanent) {
      ASSERT_NE(nullptr, bitmap.get());
      EXPECT_EQ(row.width, bitmap->GetInfo().fWidth);
      EXPECT_EQ(row.height, bitmap->GetInfo().fHeight);
      EXPECT_EQ(row.depth, bitmap->GetInfo().fBitDepth);
      EXPECT_EQ(IsEmptyRect(row.rect) ? TRect{} : row.rect, view.TakeDirtyRegion().GetBounds());
      // Again: nothing happens.
      fWindow.Reset();
      EXPECT_EQ(kOK, view.IView_SetParams(view.GetParams()));
      EXPECT_EQ(bitmap, view.GetBitmapForDrawing());
      EXPECT_TRUE(view.TakeDirtyRegion().IsEmpty());
      EXPECT_TRUE(fWindow.fInvalidRects.empty());
      EXPECT_EQ(0, fWindow.fToolRectsMarked);
    } else {
      EXPECT_THROW(view.TakeDirtyRegion(), std::exception);
    }
  }
  view.IView_Release();
}

TEST_F(ViewTest, BitmapThatCannotBeHadChangesNothing) {
  constexpr std::int32_t kFar = std::numeric_limits<std::int32_t>::max();
  CViewImpl& view = fWindow.MakeView(fRoot, {0, 0, 10, 10}, "view");
  TViewParams params = {1, {-kFar, -kFar, kFar, kFar}, kViewDrawPermanent32, kAutoInvalidationNone};
  EXPECT_EQ(kOutOfMemoryError, view.IView_SetParams(params));
  EXPECT_EQ(kViewDrawDirect, view.GetDrawMode());
  EXPECT_EQ(nullptr, view.GetBitmapForDrawing().get());
  params.fRect = {0, 0, 10, 10};
  EXPECT_EQ(kOK, view.IView_SetParams(params));
  const boost::shared_ptr<CBufferBitmap> bitmap = view.GetBitmapForDrawing();
  params.fRect = {-kFar, -kFar, kFar, kFar};
  EXPECT_EQ(kOutOfMemoryError, view.IView_SetParams(params));
  EXPECT_EQ((TRect{0, 0, 10, 10}), view.GetBounds());
  EXPECT_EQ(bitmap, view.GetBitmapForDrawing());
  view.IView_Release();
}

TEST_F(ViewTest, TilesComeFromAPoolOfTheirDepth) {
  CViewImpl& view = fWindow.MakeView(fRoot, {0, 0, 10, 10}, "view");
  SetModes(view, kViewDrawTemporary16, kAutoInvalidationNone);
  const boost::shared_ptr<CBufferBitmap> tile16 = view.GetBitmapForDrawing();
  EXPECT_EQ(16, tile16->GetInfo().fBitDepth);
  EXPECT_NE(tile16, view.GetBitmapForDrawing());
  // The mode changes while the view is being drawn.
  SetModes(view, kViewDrawTemporary32, kAutoInvalidationNone);
  view.ReleaseBitmapForDrawing(tile16);
  const boost::shared_ptr<CBufferBitmap> tile32 = view.GetBitmapForDrawing();
  EXPECT_EQ(32, tile32->GetInfo().fBitDepth);
  EXPECT_EQ(800, tile32->GetInfo().fWidth);
  EXPECT_EQ(400, tile32->GetInfo().fHeight);
  view.ReleaseBitmapForDrawing(tile32);
  SetModes(view, kViewDrawTemporary16, kAutoInvalidationNone);
  EXPECT_EQ(tile16, view.GetBitmapForDrawing());
  SetModes(view, kViewDrawPermanent16, kAutoInvalidationNone);
  const boost::shared_ptr<CBufferBitmap> permanent = view.GetBitmapForDrawing();
  SetModes(view, kViewDrawTemporary16, kAutoInvalidationNone);
  view.ReleaseBitmapForDrawing(permanent);
  EXPECT_NE(permanent, view.GetBitmapForDrawing());
  view.ReleaseBitmapForDrawing(tile16);
  view.IView_Release();
}

// --- Enabling

TEST_F(ViewTest, EnablingIsHandedDown) {
  CViewImpl& group = fWindow.MakeView(fRoot, {0, 0, 90, 90}, "group");
  CViewImpl& off = fWindow.MakeView(group, {0, 0, 10, 10}, "off", 0);
  CViewImpl& below = fWindow.MakeView(off, {0, 0, 10, 10}, "below", kViewEnabled | kViewMouseTrackable);
  CViewImpl& on = fWindow.MakeView(group, {0, 0, 10, 10}, "on", kFocusable | kViewMouseTrackable);
  const struct {
    CViewImpl& view;
    std::uint32_t flags;
    Log log;
  } rows[] = {
      // What is told is what each view makes of it; a view below a disabled one hears nothing new.
      {group, 0, {"off Enabled 0", "on Enabled 0", "group Enabled 0"}},
      {off, kViewEnabled, {"off Enabled 0"}},
      {off, kViewEnabled, {}},
      {group, kViewEnabled, {"below Enabled 1", "off Enabled 1", "on Enabled 1", "group Enabled 1"}},
      {group, kFocusable, {}},
  };
  for (const auto& row : rows) {
    fWindow.Reset();
    SetFlags(row.view, row.flags);
    EXPECT_EQ(row.log, fWindow.fLog);
  }
  EXPECT_TRUE(on.CanBeFocusTargetNow() && on.IsMouseTrackable() && below.IsMouseTrackable());
  EXPECT_FALSE(below.CanBeFocusTargetNow());
  SetFlags(group, 0);
  EXPECT_FALSE(on.CanBeFocusTargetNow() || on.IsMouseTrackable() || below.IsMouseTrackable());
  // The code is not looked at.
  BehaviorOf(on).fError = 100001;
  EXPECT_EQ(kOK, group.IView_SetParams({1, {0, 0, 90, 90}, kViewDrawDirect, kAutoInvalidationNone}));
  for (CViewImpl* view : {&below, &off, &on, &group}) view->IView_Release();
}

// --- Tooltips

TEST_F(ViewTest, TooltipFollowsTheText) {
  CViewImpl& view = fWindow.MakeView(fRoot, {0, 0, 10, 10}, "view");
  const auto tools = [&] {
    std::u16string texts;
    for (const auto& [number, text] : fWindow.fTools) texts += text + u";";
    return texts;
  };
  const struct {
    const char16_t* text;
    const char16_t* tools;
    std::uint32_t handle;
  } rows[] = {{u"", u"", 0}, {u"a", u"a;", 1}, {u"b", u"b;", 1}, {u"", u"", 0}, {u"c", u"c;", 2}};
  for (const auto& row : rows) {
    EXPECT_EQ(kOK, view.IView_SetTooltipText(row.text));
    EXPECT_EQ(row.tools, tools());
    EXPECT_EQ(row.handle, view.GetTooltipHandle());
    TChar text[kTooltipTextChars + 1];
    EXPECT_EQ(kOK, view.IView_GetTooltipText(text));
    EXPECT_EQ(std::u16string(row.text), text);
  }
  EXPECT_EQ(kOK, view.IView_SetTooltipText(u""));
  fWindow.fAddToolFails = true;
  EXPECT_EQ(kOutOfMemoryError, view.IView_SetTooltipText(u"d"));
  EXPECT_EQ(u"", view.GetTooltipText());
  view.IView_Release();
}

TEST_F(ViewTest, TooltipSetBeforeTheBehaviourIsRegisteredWithIt) {
  CallbackFactory factory([&](IView& view, TError& outError) {
    EXPECT_EQ(kOK, view.IView_SetTooltipText(u"early"));
    EXPECT_TRUE(fWindow.fTools.empty());
    outError = kOK;
    return new RecordingViewBehavior("view", fWindow.fLog);
  });
  const TViewImplPtr view = CViewImpl::MakeSubView(nullptr, factory, fRoot, "view");
  EXPECT_EQ(1u, fWindow.fTools.size());
  EXPECT_EQ(1u, view->GetTooltipHandle());
  view->IView_Release();
}

// --- Order of subviews

TEST_F(ViewTest, SubViewsInAnotherOrder) {
  CViewImpl& a = fWindow.MakeView(fRoot, {0, 0, 10, 10}, "a");
  CViewImpl& gone = fWindow.MakeView(fRoot, {0, 0, 10, 10}, "gone");
  CViewImpl& b = fWindow.MakeView(fRoot, {0, 0, 10, 10}, "b");
  CViewImpl& leaf = fWindow.MakeView(gone, {0, 0, 10, 10}, "leaf");
  gone.IView_Release();
  fWindow.Reset();
  IView* const good[] = {&b, &a};
  IView* const bad[][3] = {{&b, &a, &leaf}, {&b, &a, &gone}, {&b, &a, &a}, {&b, &a, nullptr}};
  EXPECT_EQ(kOK, fRoot.IView_SetSubViewOrder(good, 2));
  for (const auto& order : bad) EXPECT_EQ(kBadInputProgrammingError, fRoot.IView_SetSubViewOrder(order, 3));
  CVectorViewReceiver receiver;
  EXPECT_EQ(kOK, fRoot.IView_GetSubViewOrder(receiver));
  EXPECT_EQ((std::vector<IView*>{&b, &a}), receiver.fViews);
  EXPECT_TRUE(fWindow.fInvalidRects.empty());
  // The view that is gone has kept its place somewhere in the list.
  fOutput.Reset();
  for (CViewImpl* view : {&leaf, &a, &b}) view->IView_Release();
  EXPECT_TRUE(fRoot.GetRawSubViews().empty());
  EXPECT_TRUE(fOutput.fLines.empty());
}

// --- Hit test

TEST_F(ViewTest, HitsAreOutermostFirst) {
  BehaviorOf(fRoot).fHitRects = {fRoot.GetBounds()};
  CViewImpl& group = fWindow.MakeView(fRoot, {10, 10, 100, 100}, "group");  // transparent
  CViewImpl& a = fWindow.MakeView(group, {20, 20, 60, 60}, "a");
  CViewImpl& b = fWindow.MakeView(group, {40, 20, 200, 60}, "b");
  BehaviorOf(a).fHitRects = {{0, 0, 0, 0}, {20, 20, 30, 30}, {25, 25, 60, 60}};
  BehaviorOf(b).fHitRects = {b.GetBounds()};
  const struct {
    TPoint point;
    std::vector<std::string> names;
  } rows[] = {{{5, 5}, {"Root view"}},
              {{22, 22}, {"Root view", "a"}},
              {{22, 40}, {"Root view"}},
              {{50, 50}, {"Root view", "a", "b"}},
              {{60, 50}, {"Root view", "b"}},
              {{50, 60}, {"Root view"}},
              {{99, 50}, {"Root view", "b"}},
              {{100, 50}, {"Root view"}},
              {{400, 5}, {}},
              {{-1, 5}, {}}};
  for (const auto& row : rows) EXPECT_EQ(row.names, NamesOf(fRoot.HitTest(row.point))) << row.point.fX;
  BehaviorOf(a).fError = 100001;
  EXPECT_THROW(fRoot.HitTest({50, 50}), XApplicationError);
  EXPECT_EQ((std::vector<std::string>{"Root view"}), NamesOf(fRoot.HitTest({5, 5})));
  // What is gone is passed over, with all below it.
  group.IView_Release();
  EXPECT_EQ((std::vector<std::string>{"Root view"}), NamesOf(fRoot.HitTest({50, 50})));
  a.IView_Release();
  b.IView_Release();
}

TEST_F(ViewTest, HitTestSurvivesChangesOfTheTree) {
  CViewImpl& a = fWindow.MakeView(fRoot, {0, 0, 50, 50}, "a");
  CViewImpl& b = fWindow.MakeView(fRoot, {0, 0, 50, 50}, "b");
  CViewImpl& c = fWindow.MakeView(fRoot, {0, 0, 50, 50}, "c");
  for (CViewImpl* view : {&a, &b, &c}) BehaviorOf(*view).fHitRects = {view->GetBounds()};
  BehaviorOf(b).fOnCall = [] { ADD_FAILURE() << "asked although it is gone"; };
  BehaviorOf(a).fOnCall = [&] {
    BehaviorOf(a).fOnCall = nullptr;
    b.IView_Release();
    for (int i = 0; i < 100; ++i) fWindow.MakeView(fRoot, {0, 0, 50, 50}, "new");
  };
  EXPECT_EQ((std::vector<std::string>{"a", "c"}), NamesOf(fRoot.HitTest({5, 5})));
  while (!fRoot.GetSubViews().empty()) fRoot.GetSubViews().front()->IView_Release();
}

TEST_F(ViewTest, RectangleListThatIsNotThere) {
  struct Behavior : CDefaultViewBehavior {
    TError IViewBehavior_GetHitRects(IRectsGetter& out) override {
      fNoRects = out.IRectsGetter_AddRects(nullptr, 0);
      return fMissingRects = out.IRectsGetter_AddRects(nullptr, 3);
    }
    TError fNoRects = 0, fMissingRects = 0;
  }* behavior = new Behavior;
  CallbackFactory factory([&](IView&, TError&) { return behavior; });
  const TViewImplPtr view = CViewImpl::MakeSubView(nullptr, factory, fRoot, "view");
  SetRect(*view, {0, 0, 10, 10});
  EXPECT_THROW(view->HitTest({5, 5}), std::invalid_argument);
  EXPECT_EQ(kOK, behavior->fNoRects);
  EXPECT_EQ(kBadInputProgrammingError, behavior->fMissingRects);
  view->IView_Release();
}

}  // namespace
}  // namespace NSMorvane
