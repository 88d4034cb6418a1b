// Views: life and death, parameters, enabling, tooltips, order, hit test.
#include "Component/Portable/Surfaces/BufferBitmap.h"
#include "Tests/Support/FakeViewWindow.h"
#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;

namespace {

constexpr std::uint32_t kFocusable = kViewEnabled | kViewFocusable;

using Views = std::vector<CViewImpl*>;

// root
//   group  0..90
//     a    0..40
//     b   40..90
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
  CViewImpl& group = Make(fRoot, "group", {0, 0, 90, 90});
  CViewImpl& a = Make(group, "a", {0, 0, 40, 40});
  CViewImpl& b = Make(group, "b", {40, 0, 90, 40});
};

struct Factory : IViewBehaviorFactory {
  explicit Factory(IViewBehavior* behavior, TError error = kOK) : fBehavior(behavior), fError(error) {}
  IViewBehavior* IViewBehaviorFactory_CreateBehavior(IView&, TError& outError) override {
    outError = fError;
    return fBehavior;
  }
  IViewBehavior* fBehavior;
  TError fError;
};

}  // namespace

TEST_F(ViewTest, FactoryThatFailsLeavesNothing) {
  for (const bool hasMade : {false, true}) {
    Factory factory(hasMade ? new RecordingViewBehavior("made", fWindow.fSharedLog) : nullptr, 100007);
    EXPECT_THROW(CViewImpl::MakeSubView(factory, a, std::string(300, 'n')), std::exception);
    EXPECT_EQ(hasMade ? "made Deleted" : "", TakeLog());
    EXPECT_TRUE(a.GetRawSubViews().empty());
  }
}

TEST_F(ViewTest, SuperViewLivesAsLongAsItsSubViews) {
  EXPECT_EQ(kOK, group.IView_Release());
  EXPECT_EQ("", TakeLog());
  EXPECT_TRUE(fRoot.GetSubViews().empty());
  EXPECT_EQ(Views{&group}, fRoot.GetRawSubViews());
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
  CViewImpl& other = Make(a, "other", {0, 0, 5, 5}, kFocusable);
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
  EXPECT_EQ(Views{&group}, fRoot.GetRawSubViews());
  EXPECT_EQ("Ejecting focus from view being deleted...", TakeLines());

  // It goes through even if the next view refuses the focus.
  BehaviorOf(other).fError = 100002;
  CViewImpl& next = Make(fRoot, "next", {0, 0, 20, 20}, kFocusable);
  fWindow.fTabViews = {&next, &other};
  fWindow.fFocus.SetView(&next);
  EXPECT_EQ(kOK, next.IView_Release());
  EXPECT_EQ(nullptr, fWindow.FocusView());
}

TEST_F(ViewTest, EndOfADeepTree) {
  constexpr int kDepth = 50000;
  Views chain = {&a};
  for (int i = 0; i < kDepth; ++i) chain.push_back(&Make(*chain.back(), "", TRect{}));
  for (int i = 1; i < kDepth; ++i) chain[i]->IView_Release();
  EXPECT_EQ(1u, a.GetRawSubViews().size());
  chain[kDepth]->IView_Release();
  EXPECT_TRUE(a.GetRawSubViews().empty());
}

TEST_F(ViewTest, ViewsOutliveTheirWindow) {
  for (CViewImpl* const view : {&group, &a}) SetFlags(*view, kFocusable);
  a.IView_SetTooltipText(u"tip");
  fWindow.fTabViews = {&a};
  fWindow.fFocus.SetView(&a);
  fWindow.EndRootView();
  EXPECT_EQ(nullptr, a.GetMotherWindow());
  fWindow.Reset();
  for (const TError error : {SetRect(a, {0, 0, 20, 20}), SetFlags(group, 0), group.IView_Offset(1, 1),
                             a.IView_SetTooltipText(u"other tip"), group.IView_Release(), b.IView_Release()})
    EXPECT_EQ(kOK, error);
  a.IView_Release();
  EXPECT_EQ("root Deleted", fWindow.fLog.back());
  EXPECT_TRUE(fWindow.fInvalidRects.empty());
}

// --- Parameters

TEST_F(ViewTest, BuffersFollowTheDrawMode) {
  TViewParams params = {1, {5, 5, 5, 15}, kViewDrawPermanent16, kAutoInvalidationNone};
  EXPECT_EQ(kOK, a.IView_SetParams(params));
  const boost::shared_ptr<CBufferBitmap> bitmap = a.GetBitmapForDrawing();
  EXPECT_EQ((TSize{1, 10}), (TSize{bitmap->GetInfo().fWidth, bitmap->GetInfo().fHeight}));
  // A bitmap that cannot be had changes nothing.
  params.fRect = {-kMax, -kMax, kMax, kMax};
  params.fDrawMode = kViewDrawPermanent32;
  EXPECT_EQ(kOutOfMemoryError, a.IView_SetParams(params));
  EXPECT_EQ((TRect{5, 5, 5, 15}), a.GetBounds());
  EXPECT_EQ(kViewDrawPermanent16, a.GetDrawMode());
  EXPECT_EQ(bitmap, a.GetBitmapForDrawing());
}

// What IView_SetParams leaves to be drawn in the bitmap of a view.
TEST_F(ViewTest, ABitmapMovesAlongOnlyWithItsWholePicture) {
  const TRect start = {5, 5, 15, 15}, moved = {6, 7, 16, 17};
  const TRect empty = {5, 5, 5, 15}, onePixelWide = {5, 5, 6, 15};  // their bitmaps have the same size
  const Rows<const char*, TRect, TRect, bool, TAutoInvalidation, bool> rows = {
      {"moved", start, moved, false, kAutoInvalidationNone, true},
      {"with a subview", start, moved, true, kAutoInvalidationNone, false},
      {"to be invalidated", start, moved, false, kAutoInvalidationDifference, false},
      {"of another size", empty, onePixelWide, false, kAutoInvalidationNone, false}};
  for (const auto& [name, from, to, hasSubView, invalidation, isKept] : rows) {
    CViewImpl& view = fWindow.MakeView(fRoot, from, "view", kViewEnabled, kViewDrawPermanent16);
    if (hasSubView) Make(view, "sub");
    view.TakeDirtyRegion();
    EXPECT_EQ(kOK, view.IView_SetParams({1, to, kViewDrawPermanent16, invalidation}));
    EXPECT_EQ(isKept ? TRect{} : to, view.GetDirtyRegion()->GetBounds()) << name;
  }
}

TEST_F(ViewTest, AnOrderNamesEachSubViewOnce) {
  const std::string clause =
      "Bad Input to IView_SetSubViewOrder(): (std::set<IView*>(oldSubViews.begin(), oldSubViews.end()) == "
      "std::set<IView*>(newSubViews.begin(), newSubViews.end()))";
  const Rows<std::vector<IView*>, std::string> rows = {{{&a}, clause},
                                                       {{&a, &group}, clause},
                                                       {{&a, nullptr, &b}, clause},
                                                       {{&b, &a, &a}, ""},  // refused behind the wall
                                                       {{&b, &b, &a}, ""}};
  for (const auto& [order, report] : rows) {
    const auto count = static_cast<std::uint32_t>(order.size());
    EXPECT_EQ(kBadInputProgrammingError, group.IView_SetSubViewOrder(order.data(), count));
    EXPECT_EQ(report, TakeReports());
  }
  EXPECT_EQ(kBadInputProgrammingError, group.IView_SetSubViewOrder(nullptr, 2));
  EXPECT_EQ((Views{&a, &b}), group.GetRawSubViews());
  // One that is gone has no place in it, though it lives on behind its subview.
  CViewImpl& gone = Make(group, "gone");
  CViewImpl& leaf = Make(gone, "leaf");
  gone.IView_Release();
  IView* const order[] = {&b, &a};
  EXPECT_EQ(kOK, group.IView_SetSubViewOrder(order, 2));
  leaf.IView_Release();
  EXPECT_EQ((Views{&b, &a}), group.GetRawSubViews());
}

// Failures change nothing but the result, which is the first of them.
TEST_F(ViewTest, OffsetIsToldFromTheTop) {
  Make(a, "below a");
  EXPECT_EQ(kOK, group.IView_Offset(3, -1));
  EXPECT_EQ("group Offset 3 -1; a Offset 3 -1; below a Offset 3 -1; b Offset 3 -1", TakeLog());
  EXPECT_EQ((TRect{43, -1, 93, 39}), b.GetBounds());
  fWindow.fToolRectMarks = 0;
  BehaviorOf(a).fError = 100001;
  BehaviorOf(b).fError = 100002;
  EXPECT_EQ(100001u, group.IView_Offset(1, 0));
  EXPECT_EQ("group Offset 1 0; a Offset 1 0; below a Offset 1 0; b Offset 1 0", TakeLog());
  EXPECT_EQ((TRect{4, -1, 44, 39}), a.GetBounds());
  EXPECT_EQ((TRect{44, -1, 94, 39}), b.GetBounds());
  EXPECT_EQ(1, fWindow.fToolRectMarks);
  BehaviorOf(a).fOnCall = [] { throw 5; };
  EXPECT_EQ(kOtherError, group.IView_Offset(1, 0));
  EXPECT_EQ((TRect{45, -1, 95, 39}), b.GetBounds());
}

// Each view is told how far it has come.
TEST_F(ViewTest, OffsetEndsAtTheEdgeOfTheWorld) {
  const auto told = [](const char* name, std::int32_t dx) {
    return std::string(name) + " Offset " + std::to_string(dx) + " 0";
  };
  EXPECT_EQ(kOK, group.IView_Offset(kMax, 0));
  EXPECT_EQ(Joined({told("group", kMax - 90), told("a", kMax - 40), told("b", kMax - 90)}), TakeLog());
  EXPECT_EQ(kOK, group.IView_Offset(1, 0));
  EXPECT_EQ(Joined({told("group", 0), told("a", 0), told("b", 0)}), TakeLog());
}

TEST_F(ViewTest, ATooltipThatCannotBeHadChangesNothing) {
  fWindow.fAddToolFails = true;
  EXPECT_EQ(kOutOfMemoryError, a.IView_SetTooltipText(u"tip"));
  EXPECT_EQ(u"", a.GetTooltipText());
}

// What is told is what each view makes of it; a view below a disabled one hears nothing new.
TEST_F(ViewTest, EnablingIsHandedDown) {
  Make(a, "below", {0, 0, 10, 10}, kViewEnabled | kViewMouseTrackable);
  SetFlags(a, 0);
  SetFlags(b, kFocusable | kViewMouseTrackable);
  BehaviorOf(b).fError = 100001;  // the code is not looked at
  for (const auto& [view, flags, log] : Rows<CViewImpl*, std::uint32_t, std::string>{
           {&group, 0, "a Enabled 0; b Enabled 0; group Enabled 0"},
           {&a, kViewEnabled, "a Enabled 0"},
           {&a, kViewEnabled, ""},
           {&group, kViewEnabled, "below Enabled 1; a Enabled 1; b Enabled 1; group Enabled 1"},
           {&group, kFocusable, ""}}) {
    fWindow.Reset();
    SetFlags(*view, flags);
    EXPECT_EQ(log, TakeLog());
  }
}

// A subview answers the first word that it hears of the group with another change of the group.
TEST_F(ViewTest, TheLastWordOnEnablingHolds) {
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
  CViewImpl& other = Make(fRoot, "other", {0, 0, 10, 10}, kFocusable);
  SetFlags(a, kFocusable);
  fWindow.fTabViews = {&a, &other};
  fWindow.fFocus.SetView(&a);
  BehaviorOf(other).fError = 100009;
  TakeLog();
  EXPECT_EQ(100009u, group.IView_SetParams({0, {1, 2, 3, 4}, kViewDrawDirect, kAutoInvalidationNone}));
  EXPECT_EQ((TRect{1, 2, 3, 4}), group.GetBounds());
  const std::string log = TakeLog();
  EXPECT_TRUE(Has(log, "a Enabled 0") && Has(log, "group Enabled 0")) << log;
  EXPECT_EQ(nullptr, fWindow.FocusView());
}

// --- Hit test

// The subviews are those behind the question.
TEST_F(ViewTest, ABehaviorMayMoveAndEndViewsWhenAskedForItsRectangles) {
  BehaviorOf(b).fHitRects = {{0, 0, 100, 100}};
  BehaviorOf(group).fOnCall = [&] { SetRect(b, {0, 0, 10, 10}); };
  EXPECT_EQ(1u, fRoot.HitTest({5, 5}).size());
  BehaviorOf(group).fOnCall = [&] { group.IView_Release(); };
  EXPECT_EQ(0u, fRoot.HitTest({5, 5}).size());
}

TEST_F(ViewTest, HitsAreOutermostFirst) {
  SetRect(b, {20, 0, 120, 40});
  BehaviorOf(fRoot).fHitRects = {fRoot.GetBounds()};
  BehaviorOf(a).fHitRects = {{0, 0, 0, 0}, {0, 0, 10, 10}, {5, 5, 40, 40}};
  BehaviorOf(b).fHitRects = {b.GetBounds()};
  const auto hits = [&](std::int32_t x, std::int32_t y) {
    Texts names;
    for (const TViewImplPtr& view : fRoot.HitTest({x, y})) names.push_back(view->GetDebugName());
    return Joined(names);
  };
  EXPECT_EQ("Root view; a", hits(2, 2));
  EXPECT_EQ("Root view; a; b", hits(30, 30));
  EXPECT_EQ("Root view; b", hits(89, 30));
  EXPECT_EQ("Root view", hits(90, 30));  // the super view ends here
  // Who fails to answer is not hit; what is below it may be.
  BehaviorOf(Make(a, "below")).fHitRects = {a.GetBounds()};
  BehaviorOf(a).fError = 100001;
  EXPECT_EQ("Root view; below", hits(5, 5));
  EXPECT_EQ("Root view; b", hits(30, 30));
  // What is gone is passed over, with all below it.
  group.IView_Release();
  EXPECT_EQ("Root view", hits(30, 30));
}

// What was found for a point is used again for the same point, until something has changed.
TEST_F(ViewTest, HitsAfterEveryChange) {
  constexpr TPoint kPoint = {30, 30};
  BehaviorOf(fRoot).fHitRects = {fRoot.GetBounds()};
  const auto expectHits = [&](const std::string& names) {
    Texts found;
    for (const TViewImplPtr& view : fRoot.HitTest(kPoint)) found.push_back(view->GetDebugName());
    EXPECT_EQ(names, Joined(found));
    EXPECT_EQ(names != "Root view", fRoot.HasSubViewAt(kPoint));
  };
  for (CViewImpl* view : {&group, &a, &b}) BehaviorOf(*view).fHitRects = {{0, 0, 900, 900}};
  expectHits("Root view; group; a");
  SetRect(b, {0, 0, 40, 40});
  expectHits("Root view; group; a; b");
  IView* const order[] = {&b, &a};
  EXPECT_EQ(kOK, group.IView_SetSubViewOrder(order, 2));
  expectHits("Root view; group; b; a");
  EXPECT_EQ(kOK, a.IView_Offset(40, 0));
  expectHits("Root view; group; b");
  CViewImpl& c = Make(group, "c", {20, 20, 40, 40});
  BehaviorOf(c).fHitRects = {{0, 0, 900, 900}};
  expectHits("Root view; group; b; c");
  EXPECT_EQ(kOK, b.IView_Release());
  expectHits("Root view; group; c");
  EXPECT_EQ(kOK, group.IView_Offset(-20, 0));
  expectHits("Root view; group; a");
  SetRect(group, {40, 40, 90, 90});
  expectHits("Root view");
}

TEST_F(ViewTest, RectangleListThatIsNotThere) {
  struct Behavior : CDefaultViewBehavior {
    TError IViewBehavior_GetHitRects(IRectsGetter& out) override {
      const TRect rect = {0, 0, 10, 10};
      EXPECT_EQ(kOK, out.IRectsGetter_AddRects(&rect, 1));
      EXPECT_EQ(kBadInputProgrammingError, out.IRectsGetter_AddRects(nullptr, 1));
      return kOK;
    }
  };
  Factory factory(new Behavior);
  const TViewImplPtr view = CViewImpl::MakeSubView(factory, fRoot, "view");
  SetRect(*view, {0, 0, 10, 10});
  EXPECT_EQ(1u, view->HitTest({5, 5}).size());
  view->IView_Release();
}
