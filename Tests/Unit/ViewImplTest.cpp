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
constexpr TPoint kInside = {5, 5};

class ViewTest : public testing::Test {
 protected:
  FakeViewWindow fWindow;
  CViewImpl& fRoot = fWindow.Root();
  RecordingDebugOutput fOutput;
};

class CallbackFactory : public IViewBehaviorFactory {
 public:
  explicit CallbackFactory(std::function<IViewBehavior*(IView&, TError&)> make) : fMake(std::move(make)) {}
  IViewBehavior* IViewBehaviorFactory_CreateBehavior(IView& view, TError& outError) override {
    return fMake(view, outError);
  }

 private:
  std::function<IViewBehavior*(IView&, TError&)> fMake;
};

TEST_F(ViewTest, FactoryThatFailsLeavesNothing) {
  const std::pair<TError, bool> rows[] = {{100007, false}, {kOtherError, true}};
  for (const auto& [error, withBehavior] : rows) {
    CallbackFactory factory([&](IView&, TError& outError) -> IViewBehavior* {
      outError = error;
      return withBehavior ? new RecordingViewBehavior("made", fWindow.fLog) : nullptr;
    });
    fWindow.Reset();
    EXPECT_THROW(CViewImpl::MakeSubView(nullptr, factory, fRoot, "view"), std::exception);
    EXPECT_EQ(withBehavior ? Log{"made Deleted"} : Log{}, fWindow.fLog);
    EXPECT_TRUE(fRoot.GetRawSubViews().empty());
  }
  CallbackFactory nothing([](IView&, TError& outError) -> IViewBehavior* {
    outError = kOK;
    return nullptr;
  });
  fOutput.Reset();
  const TViewImplPtr bare = CViewImpl::MakeSubView(nullptr, nothing, fRoot, std::string(300, 'n'));
  EXPECT_EQ(std::vector<std::string>{"behavior != NULL"}, fOutput.fAssertions);
  EXPECT_EQ(std::string(255, 'n'), bare->GetDebugName());
  bare->IView_Release();
}

TEST_F(ViewTest, SuperViewLivesAsLongAsItsSubViews) {
  CViewImpl& group = fWindow.MakeView(fRoot, {0, 0, 90, 90}, "group");
  CViewImpl& a = fWindow.MakeView(group, {0, 0, 40, 40}, "a");
  CViewImpl& b = fWindow.MakeView(group, {40, 0, 90, 40}, "b");
  EXPECT_EQ(kOK, group.IView_Release());
  EXPECT_TRUE(fWindow.fLog.empty());
  EXPECT_TRUE(fRoot.GetSubViews().empty());
  EXPECT_EQ(std::vector<CViewImpl*>{&group}, fRoot.GetRawSubViews());
  EXPECT_THROW(fWindow.MakeView(group, {0, 0, 9, 9}, "late"), std::invalid_argument);
  a.IView_Release();
  EXPECT_EQ(Log{"a Deleted"}, fWindow.fLog);
  b.IView_Release();
  EXPECT_EQ((Log{"a Deleted", "b Deleted", "group Deleted"}), fWindow.fLog);
  EXPECT_TRUE(fRoot.GetRawSubViews().empty());
  EXPECT_EQ((TRect{0, 0, 90, 90}), fWindow.fInvalid.GetBounds());
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
  EXPECT_TRUE(fOutput.fAssertions.empty());
  other.IView_Release();
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

TEST_F(ViewTest, EndGoesThroughWhateverBehavioursSay) {
  CViewImpl& other = fWindow.MakeView(fRoot, {0, 0, 5, 5}, "other", kFocusable);
  CViewImpl& view = fWindow.MakeView(fRoot, {0, 0, 20, 20}, "view", kFocusable);
  view.IView_SetTooltipText(u"tip");
  fWindow.fTabViews = {&view, &other};
  fWindow.fFocusView = &view;
  BehaviorOf(view).fError = 100001;   // refuses to have its tool removed
  BehaviorOf(other).fError = 100002;  // refuses the focus
  EXPECT_EQ(kOK, view.IView_Release());
  EXPECT_EQ(nullptr, fWindow.fFocusView);
  EXPECT_TRUE(fWindow.fTools.empty());
  EXPECT_EQ(std::vector<CViewImpl*>{&other}, fRoot.GetRawSubViews());
  EXPECT_EQ("view Deleted", fWindow.fLog.back());
  other.IView_Release();
}

TEST_F(ViewTest, ViewsCanEndInTheirOwnCallbacks) {
  const std::function<void(CViewImpl&, CViewImpl&)> rows[] = {
      [](CViewImpl&, CViewImpl& view) { view.IView_SetTooltipText(u"tip"); },
      [](CViewImpl& group, CViewImpl&) { group.HitTest(kInside); },
      [](CViewImpl& group, CViewImpl&) { group.IView_Offset(1, 1); },
      [](CViewImpl& group, CViewImpl&) { SetFlags(group, 0); },
  };
  for (const auto& call : rows) {
    CViewImpl& group = fWindow.MakeView(fRoot, {0, 0, 90, 90}, "group");
    CViewImpl& view = fWindow.MakeView(group, {0, 0, 10, 10}, "view");
    CViewImpl& sibling = fWindow.MakeView(group, {0, 0, 10, 10}, "sibling");
    BehaviorOf(view).fOnCall = [&] {
      if (!view.IsLive()) return;
      for (CViewImpl* each : {&group, &sibling, &view}) each->IView_Release();
    };
    call(group, view);
    EXPECT_TRUE(fRoot.GetRawSubViews().empty()) << &call - rows;
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
}

// --- Parameters

TEST_F(ViewTest, BuffersFollowTheDrawMode) {
  constexpr std::int32_t kFar = std::numeric_limits<std::int32_t>::max();
  CViewImpl& view = fWindow.MakeView(fRoot, {0, 0, 0, 0}, "view");
  TViewParams params = {1, {5, 5, 5, 15}, kViewDrawPermanent16, kAutoInvalidationNone};
  EXPECT_EQ(kOK, view.IView_SetParams(params));
  const boost::shared_ptr<CBufferBitmap> bitmap = view.GetBitmapForDrawing();
  EXPECT_EQ((TSize{1, 10}), (TSize{bitmap->GetInfo().fWidth, bitmap->GetInfo().fHeight}));
  // A bitmap that cannot be had changes nothing.
  params.fRect = {-kFar, -kFar, kFar, kFar};
  params.fDrawMode = kViewDrawPermanent32;
  EXPECT_EQ(kOutOfMemoryError, view.IView_SetParams(params));
  EXPECT_EQ((TRect{5, 5, 5, 15}), view.GetBounds());
  EXPECT_EQ(kViewDrawPermanent16, view.GetDrawMode());
  EXPECT_EQ(bitmap, view.GetBitmapForDrawing());
  view.IView_Release();
}

TEST_F(ViewTest, SubViewsInAnotherOrder) {
  CViewImpl& a = fWindow.MakeView(fRoot, {0, 0, 10, 10}, "a");
  CViewImpl& gone = fWindow.MakeView(fRoot, {0, 0, 10, 10}, "gone");
  CViewImpl& b = fWindow.MakeView(fRoot, {0, 0, 10, 10}, "b");
  CViewImpl& leaf = fWindow.MakeView(gone, {0, 0, 10, 10}, "leaf");
  gone.IView_Release();
  IView* const order[] = {&b, &a, &gone};
  EXPECT_EQ(kBadInputProgrammingError, fRoot.IView_SetSubViewOrder(order, 3));
  EXPECT_EQ(kOK, fRoot.IView_SetSubViewOrder(order, 2));
  // The view that is gone has kept its place somewhere in the list.
  for (CViewImpl* view : {&leaf, &a, &b}) view->IView_Release();
  EXPECT_TRUE(fRoot.GetRawSubViews().empty());
}

TEST_F(ViewTest, EnablingIsHandedDown) {
  CViewImpl& group = fWindow.MakeView(fRoot, {0, 0, 90, 90}, "group");
  CViewImpl& off = fWindow.MakeView(group, {0, 0, 10, 10}, "off", 0);
  CViewImpl& below = fWindow.MakeView(off, {0, 0, 10, 10}, "below", kViewEnabled | kViewMouseTrackable);
  CViewImpl& on = fWindow.MakeView(group, {0, 0, 10, 10}, "on", kFocusable | kViewMouseTrackable);
  BehaviorOf(on).fError = 100001;  // the code is not looked at
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
  for (CViewImpl* view : {&below, &off, &on, &group}) view->IView_Release();
}

TEST_F(ViewTest, TooltipFollowsTheText) {
  CallbackFactory factory([&](IView& view, TError&) {
    EXPECT_EQ(kOK, view.IView_SetTooltipText(u"early"));
    EXPECT_TRUE(fWindow.fTools.empty());  // not before the behaviour is there
    return new RecordingViewBehavior("view", fWindow.fLog);
  });
  const TViewImplPtr view = CViewImpl::MakeSubView(nullptr, factory, fRoot, "view");
  EXPECT_EQ(1u, view->GetTooltipHandle());
  EXPECT_EQ(kOK, view->IView_SetTooltipText(u""));
  EXPECT_TRUE(fWindow.fTools.empty());
  fWindow.fAddToolFails = true;
  EXPECT_EQ(kOutOfMemoryError, view->IView_SetTooltipText(u"d"));
  EXPECT_EQ(u"", view->GetTooltipText());
  view->IView_Release();
}

// --- Hit test

TEST_F(ViewTest, HitsAreOutermostFirst) {
  BehaviorOf(fRoot).fHitRects = {fRoot.GetBounds()};
  CViewImpl& group = fWindow.MakeView(fRoot, {10, 10, 100, 100}, "group");  // transparent
  CViewImpl& a = fWindow.MakeView(group, {20, 20, 60, 60}, "a");
  CViewImpl& b = fWindow.MakeView(group, {40, 20, 200, 60}, "b");
  BehaviorOf(a).fHitRects = {{0, 0, 0, 0}, {20, 20, 30, 30}, {25, 25, 60, 60}};
  BehaviorOf(b).fHitRects = {b.GetBounds()};
  const auto hits = [&](std::int32_t x, std::int32_t y) {
    std::string names;
    for (const TViewImplPtr& view : fRoot.HitTest({x, y})) names += view->GetDebugName() + ' ';
    return names;
  };
  EXPECT_EQ("Root view a ", hits(22, 22));
  EXPECT_EQ("Root view a b ", hits(50, 50));
  EXPECT_EQ("Root view b ", hits(99, 50));
  EXPECT_EQ("Root view ", hits(100, 50));
  BehaviorOf(a).fError = 100001;
  EXPECT_THROW(hits(50, 50), XApplicationError);
  // What is gone is passed over, with all below it.
  group.IView_Release();
  EXPECT_EQ("Root view ", hits(50, 50));
  a.IView_Release();
  b.IView_Release();
}

TEST_F(ViewTest, RectangleListThatIsNotThere) {
  struct Behavior : CDefaultViewBehavior {
    TError IViewBehavior_GetHitRects(IRectsGetter& out) override {
      EXPECT_EQ(kOK, out.IRectsGetter_AddRects(nullptr, 0));
      return out.IRectsGetter_AddRects(nullptr, 3);
    }
  };
  CallbackFactory factory([](IView&, TError&) { return new Behavior; });
  const TViewImplPtr view = CViewImpl::MakeSubView(nullptr, factory, fRoot, "view");
  SetRect(*view, {0, 0, 10, 10});
  EXPECT_THROW(view->HitTest({5, 5}), std::invalid_argument);
  view->IView_Release();
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
  const std::vector<TViewImplPtr> hit = fRoot.HitTest({5, 5});
  EXPECT_TRUE(hit.size() == 2 && hit[0].get() == &a && hit[1].get() == &c);
  while (!fRoot.GetSubViews().empty()) fRoot.GetSubViews().front()->IView_Release();
}

}  // namespace
}  // namespace NSMorvane
