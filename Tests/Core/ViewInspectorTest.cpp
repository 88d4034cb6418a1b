// What the view inspector tells of views, and that every view gets its own tooltip back.
#include "Component/Portable/Views/ViewInspector.h"

#include <iomanip>
#include <sstream>

#include "Tests/Support/FakeViewWindow.h"
#include "Tests/Support/PixelSet.h"
#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;

namespace {

class ViewInspectorTest : public ReportingTest {
 protected:
  ~ViewInspectorTest() override { fWindow.ReleaseViews(); }
  CViewImpl& Make(CViewImpl& superView, const std::string& name, const TRect& rect = {0, 0, 10, 10}) {
    return fWindow.MakeView(superView, rect, name);
  }

  FakeViewWindow fWindow{{0, 0, 60, 60}};
  CViewImpl& fRoot = fWindow.Root();
};

std::string Utf8(const TString& text) { return NSTextPackage::StringToUTF8(text, false); }

std::string Address(const void* address) {
  std::ostringstream text;
  text << std::hex << std::uppercase << std::setfill('0') << std::setw(2 * sizeof(address))
       << reinterpret_cast<std::uintptr_t>(address);
  return text.str();
}

}  // namespace

TEST_F(ViewInspectorTest, Descriptions) {
  CViewImpl& outer = Make(fRoot, "outer");
  CViewImpl& nameless = Make(outer, "");
  CViewImpl& leaf = Make(nameless, "a \xC3\xA4");
  CViewImpl& broken = Make(fRoot, "b \xFF");
  const std::pair<std::string, CViewImpl*> views[] = {
      {"root", &fRoot}, {"outer", &outer}, {"nameless", &nameless}, {"leaf", &leaf}, {"broken", &broken}};
  // "@name" stands for the address of a view, "#name" for that of its behaviour.
  const Rows<CViewImpl*, TViewParams, std::string> rows = {
      {&fRoot, fRoot.GetParams(),
       "Root view\nView: @root\nBehavior: #root\nClip bounds: {0, 0, 60, 60}\n"
       "View flags: Enabled, Non-focusable, Non-mouse trackable\nAuto-invalidation mode: none"},
      {&outer,
       {kViewEnabled | kViewFocusable | kViewMouseTrackable,
        {-5, 1, kMax, 40},
        kViewDrawDirect,
        kAutoInvalidationFull},
       "outer\nView: @outer\nBehavior: #outer\nClip bounds: {-5, 1, 2147483647, 40}\n"
       "View flags: Enabled, Focusable, Mouse trackable\nAuto-invalidation mode: all\n"
       "Super views: Root view @root"},
      {&nameless,
       {kViewFocusable, {}, kViewDrawPermanent32, kAutoInvalidationDifference},
       "View: @nameless\nBehavior: #nameless\nClip bounds: {0, 0, 0, 0}\n"
       "View flags: Disabled, Focusable, Non-mouse trackable\nAuto-invalidation mode: difference\n"
       "Super views: outer @outer, Root view @root"},
      {&leaf,
       {kViewMouseTrackable, {1, 2, 3, 4}, kViewDrawDirect, kAutoInvalidationDifferenceTopLeft},
       "a \xC3\xA4\nView: @leaf\nBehavior: #leaf\nClip bounds: {1, 2, 3, 4}\n"
       "View flags: Disabled, Non-focusable, Mouse trackable\n"
       "Auto-invalidation mode: difference, top-left anchor\n"
       "Super views: @nameless, outer @outer, Root view @root"},
      {&broken, broken.GetParams(),
       "b ?\nView: @broken\nBehavior: #broken\nClip bounds: {0, 0, 10, 10}\n"
       "View flags: Enabled, Non-focusable, Non-mouse trackable\nAuto-invalidation mode: none\n"
       "Super views: Root view @root"},
  };
  for (const auto& [view, params, description] : rows) {
    std::string text = description;
    if (view != &fRoot) {
      EXPECT_EQ(view->IView_SetParams(params), kOK);
    }
    for (const auto& [name, other] : views) {
      const auto replace = [&](const std::string& mark, const std::string& by) {
        for (std::size_t at; (at = text.find(mark)) != text.npos;) text.replace(at, mark.size(), by);
      };
      replace("@" + name, Address(static_cast<IView*>(other)));
      replace("#" + name, Address(other->GetBehavior()));
    }
    EXPECT_EQ(text, Utf8(DescribeView(*view)));
  }
}

// root            0..60
//   a             0..30
//     b          10..50
//       c        20..25
//   d            20..40
//     e          22..24
TEST_F(ViewInspectorTest, LeafViews) {
  CViewImpl& a = Make(fRoot, "a", {0, 0, 30, 30});
  CViewImpl& b = Make(a, "b", {10, 10, 50, 50});
  Make(b, "c", {20, 20, 25, 25});
  CViewImpl& d = Make(fRoot, "d", {20, 20, 40, 40});
  CViewImpl& e = Make(d, "e", {22, 22, 24, 24});
  const auto leafAt = [&](std::int32_t place) {
    const TViewImplPtr leaf = FindLeafView(fRoot, {place, place});
    return leaf ? leaf->GetDebugName() : "";
  };
  const auto expect = [&](std::vector<std::pair<std::int32_t, const char*>> rows) {
    for (const auto& [place, name] : rows) EXPECT_EQ(name, leafAt(place)) << place;
  };
  expect({{-1, ""}, {0, "a"}, {9, "a"}, {10, "b"}, {19, "b"}, {20, "d"}, {23, "e"}, {24, "d"}, {39, "d"}});
  expect({{40, ""}, {45, ""}, {59, ""}, {60, ""}});
  e.IView_Release();
  EXPECT_EQ("d", leafAt(23));
  d.IView_Release();
  expect({{20, "c"}, {25, "b"}, {29, "b"}, {30, ""}});
  // It lives on for its subview, out of sight.
  b.IView_Release();
  EXPECT_EQ("a", leafAt(20));
}

TEST_F(ViewInspectorTest, VisibleRegionAgreesWithPixels) {
  Random random(5);
  for (int round = 0; round < 100; ++round) {
    std::vector<TViewImplPtr> views = {fRoot.GetClientsViewReference()};
    for (int i = 0; i < 8; ++i) {
      CViewImpl& superView = *views[random(0, static_cast<int>(views.size()) - 1)];
      views.push_back(Make(superView, "view", random.Rect(-5, 30, 30)).GetClientsViewReference());
    }
    for (int i = 0; i < 2; ++i)
      if (CViewImpl& view = *views[random(1, 8)]; view.IsLive()) view.IView_Release();
    for (const TViewImplPtr& view : views) {
      PixelSet expected;
      expected.Set([&](const TPoint& p) {
        for (const CViewImpl* above = view.get(); above; above = above->GetSuperView().get())
          if (!IsPointInRect(p, above->GetBounds())) return false;
        bool isInFront = false;
        for (const TViewImplPtr& other : views) {
          isInFront |= other == view;
          const bool covers = other->GetSuperView() == view ||
                              (isInFront && other != view && other->GetSuperView() == view->GetSuperView());
          if (covers && other->IsLive() && IsPointInRect(p, other->GetBounds())) return false;
        }
        return true;
      });
      ASSERT_EQ(PixelSet(FindVisibleRegion(*view)), expected) << "round " << round;
    }
    views.clear();
    fWindow.ReleaseViews();
  }
}

// --- The tooltip on loan

namespace {

// Steps: "a" inspects the view of this name, "-" none; "a=text" is the client's word, "a!" its release.
class Loans : public ViewInspectorTest {
 protected:
  Loans() { fB.lock()->IView_SetTooltipText(u"own"); }
  void Do(const std::string& step) {
    const TViewImplPtr view = step[0] == '-' ? nullptr : (step[0] == 'a' ? fA : fB).lock();
    if (step.size() == 1)
      fAnswers += fInspector.Inspect(view) ? "1" : "0";
    else if (step[1] == '!')
      view->IView_Release();
    else
      view->IView_SetTooltipText(TString(step.begin() + 2, step.end()).c_str());
  }
  // The tooltips of the views that there are. "*" is the description.
  std::string Tooltips() const {
    std::string texts;
    for (const auto& weak : {fA, fB}) {
      const TViewImplPtr view = weak.lock();
      if (!view) continue;
      const TString& text = view->GetTooltipText();
      const auto tool = fWindow.fTools.find(view->GetTooltipHandle());
      EXPECT_EQ(text, tool == fWindow.fTools.end() ? TString() : tool->second);
      texts += " " + view->GetDebugName() + ":" + (text == DescribeView(*view) ? "*" : Utf8(text));
    }
    return texts;
  }

  boost::weak_ptr<CViewImpl> fA = Make(fRoot, "a").GetClientsViewReference();
  boost::weak_ptr<CViewImpl> fB = Make(fRoot, "b").GetClientsViewReference();
  CViewInspector fInspector;
  std::string fAnswers;
};

}  // namespace

TEST_F(Loans, AreGivenBackInEveryOrder) {
  const Rows<std::string, std::string, std::string> rows = {
      {"-", "0", " a: b:own"},
      {"a", "1", " a:* b:own"},
      {"b b", "10", " a: b:*"},
      {"a b", "11", " a: b:*"},
      {"b a", "11", " a:* b:own"},
      {"b -", "11", " a: b:own"},
      {"a b a b - -", "111110", " a: b:own"},
      // The client's word stays, whatever it is.
      {"b b=new", "1", " a: b:new"},
      {"b b=new b -", "101", " a: b:new"},
      {"b b=new a", "11", " a:* b:new"},
      {"b b= -", "11", " a: b:"},
      {"b b=own -", "11", " a: b:own"},
      {"a a=new - a a=newer b -", "11111", " a:newer b:own"},
      {"b - b=new b -", "1111", " a: b:new"},
      // The view ends.
      {"b b! -", "10", " a:"},
      {"b b! a", "11", " a:*"},
      {"a b! -", "11", " a:"},
      {"a b b! a a! -", "1110", ""},
  };
  for (const auto& [steps, answers, tooltips] : rows) {
    SCOPED_TRACE(steps);
    fAnswers.clear();
    std::istringstream words(steps);
    for (std::string step; words >> step;) Do(step);
    EXPECT_EQ(answers, fAnswers);
    EXPECT_EQ(tooltips, Tooltips());
    // As at the start.
    fInspector.Inspect(nullptr);
    EXPECT_TRUE(fInspector.IsIdle());
    fWindow.ReleaseViews();
    EXPECT_TRUE(fWindow.fTools.empty());
    fA = Make(fRoot, "a").GetClientsViewReference();
    fB = Make(fRoot, "b").GetClientsViewReference();
    fB.lock()->IView_SetTooltipText(u"own");
  }
}

TEST_F(Loans, ViewsMayRefuseTheirTooltips) {
  const TViewImplPtr a = fA.lock(), b = fB.lock();
  fWindow.fAddToolFails = true;
  Do("a");
  fWindow.fAddToolFails = false;
  EXPECT_EQ(" a: b:own", Tooltips());
  EXPECT_EQ(a, fInspector.GetView()) << "inspected all the same";
  Do("-");
  EXPECT_TRUE(fInspector.IsIdle());

  // What a view does not take back now is offered again.
  Do("a");
  BehaviorOf(*a).fError = 100001;
  Do("b");
  EXPECT_EQ(" a:* b:own", Tooltips());
  EXPECT_EQ(b, fInspector.GetView());
  Do("-");
  EXPECT_FALSE(fInspector.IsIdle());
  BehaviorOf(*a).fError = kOK;
  Do("-");
  EXPECT_EQ(" a: b:own", Tooltips());
  EXPECT_TRUE(fInspector.IsIdle());

  // Then the next one gets its description too.
  Do("a");
  BehaviorOf(*a).fError = 100001;
  Do("b");
  BehaviorOf(*a).fError = kOK;
  Do("b");
  EXPECT_EQ(" a: b:*", Tooltips());
  Do("-");

  // A view that ends while another one gets its tooltip back.
  Do("a");
  BehaviorOf(*a).fOnCall = [&] { b->IView_Release(); };
  fInspector.Inspect(b);
  BehaviorOf(*a).fOnCall = nullptr;
  EXPECT_EQ(" a: b:own", Tooltips());
  EXPECT_FALSE(fInspector.IsIdle());
  Do("-");
  EXPECT_TRUE(fInspector.IsIdle());
}

// No longer than what a client can read back without complaint.
TEST_F(Loans, LongDescriptionsAreCut) {
  CViewImpl* view = &fRoot;
  for (int i = 0; i < 6; ++i) view = &Make(*view, std::string(200, 'n'));
  fInspector.Inspect(view->GetClientsViewReference());
  TChar text[kTooltipTextChars + 1] = {};
  EXPECT_EQ(view->IView_GetTooltipText(text), kOK);
  EXPECT_EQ(TString(text), DescribeView(*view).substr(0, kTooltipTextChars));
  fInspector.Inspect(nullptr);
  EXPECT_EQ(TString(), view->GetTooltipText());
}
