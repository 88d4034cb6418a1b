// Views: life and death, parameters, enabling, tooltips, order, hit test.
#include "Component/Portable/Surfaces/BufferBitmap.h"
#include "Tests/Support/FakeViewWindow.h"
#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;

namespace {

constexpr std::uint32_t kFocusable = kViewEnabled | kViewFocusable;

class ViewTest : public ReportingTest {
 protected:
  ~ViewTest() override { fWindow.ReleaseViews(); }
  CViewImpl& Make(CViewImpl& superView, const char* name, const TRect& rect = {0, 0, 10, 10},
                  std::uint32_t flags = kViewEnabled) {
    return fWindow.MakeView(superView, rect, name, flags);
  }
  std::string TakeLog() { return Joined(std::exchange(fWindow.fLog, {})); }

  FakeViewWindow fWindow;
  CViewImpl& fRoot = fWindow.Root();
};

}  // namespace

TEST_F(ViewTest, FactoryThatFailsLeavesNothing) {
  struct Factory : IViewBehaviorFactory {
    IViewBehavior* IViewBehaviorFactory_CreateBehavior(IView&, TError& outError) override {
      outError = fError;
      return fBehavior;
    }
    IViewBehavior* fBehavior = nullptr;
    TError fError = 100007;
  } factory;
  const auto make = [&] { return CViewImpl::MakeSubView(factory, fRoot, std::string(300, 'n')); };
  EXPECT_THROW(make(), std::exception);
  factory.fBehavior = new RecordingViewBehavior("made", fWindow.fSharedLog);
  EXPECT_THROW(make(), std::exception);
  EXPECT_EQ("made Deleted", TakeLog());
  EXPECT_TRUE(fRoot.GetRawSubViews().empty());
}

TEST_F(ViewTest, SuperViewLivesAsLongAsItsSubViews) {
  CViewImpl& group = Make(fRoot, "group", {0, 0, 90, 90});
  CViewImpl& a = Make(group, "a", {0, 0, 40, 40});
  CViewImpl& b = Make(group, "b", {40, 0, 90, 40});
  EXPECT_EQ(kOK, group.IView_Release());
  EXPECT_EQ("", TakeLog());
  EXPECT_TRUE(fRoot.GetSubViews().empty());
  EXPECT_EQ(std::vector<CViewImpl*>{&group}, fRoot.GetRawSubViews());
  // It is not seen any more.
  EXPECT_EQ((TRectList{{0, 0, 90, 90}}), fWindow.fInvalid.GetRects());
  fWindow.fInvalid = CRegion();
  EXPECT_THROW(Make(group, "late"), std::invalid_argument);
  EXPECT_NE("", TakeReports());
  a.IView_Release();
  b.IView_Release();
  EXPECT_EQ("a Deleted; b Deleted; group Deleted", TakeLog());
  EXPECT_TRUE(fRoot.GetRawSubViews().empty());
  EXPECT_EQ((TRect{0, 0, 90, 90}), fWindow.fInvalid.GetBounds());
}

TEST_F(ViewTest, EndOfAViewStepByStep) {
  CViewImpl& other = Make(fRoot, "other", {0, 0, 5, 5}, kFocusable);
  CViewImpl& view = Make(fRoot, "view", {380, 0, 450, 20}, kFocusable);
  fWindow.fTabViews = {&view, &other};
  fWindow.fFocus.SetView(&view);
  view.IView_SetTooltipText(u"tip");
  Texts steps;
  // Losing the focus, the question for the native target when the tool goes, the end of the behaviour.
  BehaviorOf(view).fOnCall = BehaviorOf(view).fOnDeleted = [&] {
    steps.push_back((fWindow.fTabViews.size() == 1 ? "out of tabs, " : "in tabs, ") +
                    std::string(fWindow.FocusView() == &other ? "focus moved, " : "has focus, ") +
                    (fWindow.fInvalidRects.empty() ? "clean, " : "invalid, ") +
                    (fWindow.fTools.empty() ? "no tool, " : "tool, ") +
                    (fRoot.GetRawSubViews().size() == 2 ? "in tree" : "out of tree"));
  };
  TakeLines();
  view.IView_Release();
  EXPECT_EQ(
      "out of tabs, has focus, clean, tool, in tree; out of tabs, focus moved, invalid, tool, in tree; "
      "out of tabs, focus moved, invalid, no tool, in tree",
      Joined(steps));
  EXPECT_EQ((std::vector<TRect>{{380, 0, 400, 20}}), fWindow.fInvalidRects);
  EXPECT_EQ(std::vector<CViewImpl*>{&other}, fRoot.GetRawSubViews());
  EXPECT_EQ("Ejecting focus from view being deleted...", TakeLines());

  // It goes through even if the next view refuses the focus.
  CViewImpl& next = Make(fRoot, "next", {0, 0, 20, 20}, kFocusable);
  fWindow.fTabViews = {&next, &other};
  fWindow.fFocus.SetView(&next);
  BehaviorOf(other).fError = 100002;
  EXPECT_EQ(kOK, next.IView_Release());
  EXPECT_EQ(nullptr, fWindow.FocusView());
}

TEST_F(ViewTest, EndOfADeepTree) {
  constexpr int kDepth = 50000;
  std::vector<CViewImpl*> chain = {&fRoot};
  for (int i = 0; i < kDepth; ++i) chain.push_back(&Make(*chain.back(), "", TRect{}));
  for (int i = 1; i < kDepth; ++i) chain[i]->IView_Release();
  EXPECT_EQ(1u, fRoot.GetRawSubViews().size());
  chain[kDepth]->IView_Release();
  EXPECT_TRUE(fRoot.GetRawSubViews().empty());
}

TEST_F(ViewTest, ViewsOutliveTheirWindow) {
  CViewImpl& group = Make(fRoot, "group", {0, 0, 90, 90}, kFocusable);
  CViewImpl& view = Make(group, "view", {0, 0, 10, 10}, kFocusable);
  view.IView_SetTooltipText(u"tip");
  fWindow.fTabViews = {&view};
  fWindow.fFocus.SetView(&view);
  fWindow.EndRootView();
  EXPECT_EQ(nullptr, view.GetMotherWindow());
  fWindow.Reset();
  for (const TError error : {SetRect(view, {0, 0, 20, 20}), SetFlags(group, 0), group.IView_Offset(1, 1),
                             view.IView_SetTooltipText(u"other tip"), group.IView_Release()})
    EXPECT_EQ(kOK, error);
  view.IView_Release();
  EXPECT_EQ("root Deleted", fWindow.fLog.back());
  EXPECT_TRUE(fWindow.fInvalidRects.empty());
}

// --- Parameters

TEST_F(ViewTest, BuffersFollowTheDrawMode) {
  CViewImpl& view = Make(fRoot, "view");
  TViewParams params = {1, {5, 5, 5, 15}, kViewDrawPermanent16, kAutoInvalidationNone};
  EXPECT_EQ(kOK, view.IView_SetParams(params));
  const boost::shared_ptr<CBufferBitmap> bitmap = view.GetBitmapForDrawing();
  EXPECT_EQ((TSize{1, 10}), (TSize{bitmap->GetInfo().fWidth, bitmap->GetInfo().fHeight}));
  // A bitmap that cannot be had changes nothing.
  params.fRect = {-kMax, -kMax, kMax, kMax};
  params.fDrawMode = kViewDrawPermanent32;
  EXPECT_EQ(kOutOfMemoryError, view.IView_SetParams(params));
  EXPECT_EQ((TRect{5, 5, 5, 15}), view.GetBounds());
  EXPECT_EQ(kViewDrawPermanent16, view.GetDrawMode());
  EXPECT_EQ(bitmap, view.GetBitmapForDrawing());
}

// What IView_SetParams leaves to be drawn in the bitmap of a view.
TEST_F(ViewTest, ABitmapMovesAlongOnlyWithItsWholePicture) {
  for (const auto& [from, to, hasSubView, invalidation, isKept] :
       Rows<TRect, TRect, bool, TAutoInvalidation, bool>{
           {{5, 5, 15, 15}, {6, 7, 16, 17}, false, kAutoInvalidationNone, true},
           {{5, 5, 15, 15}, {6, 7, 16, 17}, true, kAutoInvalidationNone, false},
           {{5, 5, 15, 15}, {6, 7, 16, 17}, false, kAutoInvalidationDifference, false},
           {{5, 5, 5, 15}, {5, 5, 6, 15}, false, kAutoInvalidationNone, false}}) {
    CViewImpl& view = fWindow.MakeView(fRoot, from, "view", kViewEnabled, kViewDrawPermanent16);
    if (hasSubView) Make(view, "sub");
    view.TakeDirtyRegion();
    EXPECT_EQ(kOK, view.IView_SetParams({1, to, kViewDrawPermanent16, invalidation}));
    EXPECT_EQ(isKept ? TRect{} : to, view.GetDirtyRegion()->GetBounds());
    fWindow.ReleaseViews();
  }
}

TEST_F(ViewTest, AViewThatIsGoneHasNoPlaceInTheOrder) {
  CViewImpl& a = Make(fRoot, "a");
  CViewImpl& gone = Make(fRoot, "gone");
  CViewImpl& b = Make(fRoot, "b");
  Make(gone, "leaf");
  gone.IView_Release();
  IView* const order[] = {&b, &a};
  EXPECT_EQ(kOK, fRoot.IView_SetSubViewOrder(order, 2));
  fWindow.ReleaseViews();
  EXPECT_TRUE(fRoot.GetRawSubViews().empty());
}

TEST_F(ViewTest, AnOrderNamesEachSubViewOnce) {
  CViewImpl& a = Make(fRoot, "a");
  CViewImpl& b = Make(fRoot, "b");
  IView* const orders[][3] = {{&b, &a, &a}, {&b, &b, &a}, {&a, nullptr, &b}};
  for (const auto& order : orders) {
    EXPECT_EQ(kBadInputProgrammingError, fRoot.IView_SetSubViewOrder(order, 3));
    EXPECT_EQ((std::vector<CViewImpl*>{&a, &b}), fRoot.GetRawSubViews());
  }
  TakeReports();
}

TEST_F(ViewTest, OffsetIsToldFromTheTopAndStopsAtAFailure) {
  CViewImpl& group = Make(fRoot, "group");
  CViewImpl& a = Make(group, "a");
  Make(a, "below a");
  CViewImpl& b = Make(group, "b");
  EXPECT_EQ(kOK, group.IView_Offset(3, -1));
  EXPECT_EQ("group Offset 3 -1; a Offset 3 -1; below a Offset 3 -1; b Offset 3 -1", TakeLog());
  EXPECT_EQ((TRect{3, -1, 13, 9}), b.GetBounds());
  fWindow.fToolRectMarks = 0;
  BehaviorOf(a).fError = 100001;
  EXPECT_EQ(100001u, group.IView_Offset(1, 0));
  EXPECT_EQ("group Offset 1 0; a Offset 1 0", TakeLog());
  EXPECT_EQ((TRect{4, -1, 14, 9}), a.GetBounds());
  EXPECT_EQ((TRect{3, -1, 13, 9}), b.GetBounds());
  EXPECT_EQ(1, fWindow.fToolRectMarks);  // some have moved
}

TEST_F(ViewTest, ATooltipThatCannotBeHadChangesNothing) {
  CViewImpl& view = Make(fRoot, "view");
  fWindow.fAddToolFails = true;
  EXPECT_EQ(kOutOfMemoryError, view.IView_SetTooltipText(u"tip"));
  EXPECT_EQ(u"", view.GetTooltipText());
}

TEST_F(ViewTest, EnablingIsHandedDown) {
  CViewImpl& group = Make(fRoot, "group");
  CViewImpl& off = Make(group, "off", {0, 0, 10, 10}, 0);
  Make(off, "below", {0, 0, 10, 10}, kViewEnabled | kViewMouseTrackable);
  CViewImpl& on = Make(group, "on", {0, 0, 10, 10}, kFocusable | kViewMouseTrackable);
  BehaviorOf(on).fError = 100001;  // the code is not looked at
  for (const auto& [view, flags, log] : Rows<CViewImpl*, std::uint32_t, std::string>{
           // What is told is what each view makes of it; a view below a disabled one hears nothing new.
           {&group, 0, "off Enabled 0; on Enabled 0; group Enabled 0"},
           {&off, kViewEnabled, "off Enabled 0"},
           {&off, kViewEnabled, ""},
           {&group, kViewEnabled, "below Enabled 1; off Enabled 1; on Enabled 1; group Enabled 1"},
           {&group, kFocusable, ""}}) {
    fWindow.Reset();
    SetFlags(*view, flags);
    EXPECT_EQ(log, TakeLog());
  }
}

// A subview answers the first word that it hears of the group with another change of the group.
TEST_F(ViewTest, TheLastWordOnEnablingHolds) {
  CViewImpl& group = Make(fRoot, "group");
  CViewImpl& a = Make(group, "a");
  CViewImpl& b = Make(group, "b");
  for (const auto& [from, to, answer, end, log] :
       Rows<std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t, std::string>{
           {1, 0, 1, 1, "a Enabled 0; a Enabled 1"},
           {0, 3, 0, 2, "a Enabled 1; a Enabled 0"},
           {1, 2, 4, 6, "a Enabled 0; b Enabled 0; group Enabled 0"}}) {
    SetFlags(group, from);
    TakeLog();
    BehaviorOf(a).fOnCall = [&, answer = answer] {
      BehaviorOf(a).fOnCall = nullptr;
      SetFlags(group, answer);
    };
    SetFlags(group, to);
    EXPECT_EQ(log, TakeLog());
    EXPECT_EQ(end, group.GetFlags());
    for (CViewImpl* view : {&group, &a, &b}) EXPECT_EQ((end & 1) != 0, view->IsEffectivelyEnabled());
  }
}

// The view that is to get the focus fails. The code is the result, and all the rest is done.
TEST_F(ViewTest, AFocusThatIsRefusedStopsNothing) {
  CViewImpl& group = Make(fRoot, "group");
  CViewImpl& sub = Make(group, "sub");
  CViewImpl& other = Make(fRoot, "other");
  for (CViewImpl* view : {&sub, &other}) SetFlags(*view, kViewEnabled | kViewFocusable);
  fWindow.fTabViews = {&sub, &other};
  fWindow.fFocus.SetView(&sub);
  BehaviorOf(other).fError = 100009;
  TakeLog();
  TViewParams params = group.GetParams();
  params.fFlags = 0;
  params.fRect = {1, 2, 3, 4};
  EXPECT_EQ(100009u, group.IView_SetParams(params));
  EXPECT_EQ(params.fRect, group.GetBounds());
  const std::string log = TakeLog();
  EXPECT_NE(log.npos, log.find("sub Enabled 0"));
  EXPECT_NE(log.npos, log.find("group Enabled 0"));
  EXPECT_EQ(nullptr, fWindow.FocusView());
}

// A walk holds a view that ends itself; nobody draws it any more.
TEST_F(ViewTest, AReleasedViewIsInvalidatedAtOnce) {
  CViewImpl& view = Make(fRoot, "view", {10, 10, 20, 20});
  const TViewImplPtr held = view.GetClientsViewReference();
  fWindow.Reset();
  EXPECT_EQ(kOK, view.IView_Release());
  EXPECT_FALSE(fWindow.fInvalid.IsEmpty());
}

// --- Hit test

// The subviews are those behind the question.
TEST_F(ViewTest, ABehaviorMayMoveAndEndViewsWhenAskedForItsRectangles) {
  CViewImpl& group = Make(fRoot, "group");
  CViewImpl& sub = Make(group, "sub", {50, 50, 60, 60});
  BehaviorOf(sub).fHitRects = {{0, 0, 100, 100}};
  BehaviorOf(group).fOnCall = [&] { SetRect(sub, {0, 0, 10, 10}); };
  EXPECT_EQ(1u, fRoot.HitTest({5, 5}).size());
  BehaviorOf(group).fOnCall = [&] { group.IView_Release(); };
  EXPECT_EQ(0u, fRoot.HitTest({5, 5}).size());
}

TEST_F(ViewTest, HitsAreOutermostFirst) {
  BehaviorOf(fRoot).fHitRects = {fRoot.GetBounds()};
  CViewImpl& group = Make(fRoot, "group", {10, 10, 100, 100});  // transparent
  CViewImpl& a = Make(group, "a", {20, 20, 60, 60});
  CViewImpl& b = Make(group, "b", {40, 20, 200, 60});
  BehaviorOf(a).fHitRects = {{0, 0, 0, 0}, {20, 20, 30, 30}, {25, 25, 60, 60}};
  BehaviorOf(b).fHitRects = {b.GetBounds()};
  const auto hits = [&](std::int32_t x, std::int32_t y) {
    Texts names;
    for (const TViewImplPtr& view : fRoot.HitTest({x, y})) names.push_back(view->GetDebugName());
    return Joined(names);
  };
  EXPECT_EQ("Root view; a", hits(22, 22));
  EXPECT_EQ("Root view; a; b", hits(50, 50));
  EXPECT_EQ("Root view; b", hits(99, 50));
  EXPECT_EQ("Root view", hits(100, 50));
  BehaviorOf(a).fError = 100001;
  EXPECT_THROW(hits(50, 50), XApplicationError);
  // What is gone is passed over, with all below it.
  group.IView_Release();
  EXPECT_EQ("Root view", hits(50, 50));
}

TEST_F(ViewTest, RectangleListThatIsNotThere) {
  struct Behavior : CDefaultViewBehavior {
    TError IViewBehavior_GetHitRects(IRectsGetter& out) override {
      return out.IRectsGetter_AddRects(nullptr, 3);
    }
  };
  struct Factory : IViewBehaviorFactory {
    IViewBehavior* IViewBehaviorFactory_CreateBehavior(IView&, TError& outError) override {
      outError = kOK;
      return new Behavior;
    }
  } factory;
  const TViewImplPtr view = CViewImpl::MakeSubView(factory, fRoot, "view");
  SetRect(*view, {0, 0, 10, 10});
  EXPECT_THROW(view->HitTest({5, 5}), std::invalid_argument);
  view->IView_Release();
}
