// The search along the tab list, and where the focus goes when its view cannot keep it.
#include <gtest/gtest.h>

#include "Component/Portable/MorvaneImplUtilsFocus.h"
#include "Tests/Support/FakeViewWindow.h"
#include "Tests/Support/RecordingDebugOutput.h"

namespace NSMorvane {
namespace {

using NSMorvaneTest::FakeViewWindow;
using NSMorvaneTest::RecordingDebugOutput;
using NSMorvaneTest::SetFlags;

constexpr std::uint32_t kFocusable = kViewEnabled | kViewFocusable;

// root
//   group
//     a
//     b
//   c
// Tab order: c, a, b.
class FocusSearch : public testing::Test {
 protected:
  FocusSearch() { fWindow.fTabViews = {&c, &a, &b}; }
  ~FocusSearch() override {
    for (CViewImpl* view : {&a, &b, &c, &group})
      if (view->IsLive()) view->IView_Release();
  }

  FakeViewWindow fWindow;
  CViewImpl& group = fWindow.MakeView(fWindow.Root(), {0, 0, 100, 100}, "group");
  CViewImpl& a = fWindow.MakeView(group, {0, 0, 50, 50}, "a", kFocusable);
  CViewImpl& b = fWindow.MakeView(group, {50, 0, 100, 50}, "b", kFocusable);
  CViewImpl& c = fWindow.MakeView(fWindow.Root(), {200, 0, 300, 50}, "c", kFocusable);
  RecordingDebugOutput fOutput;
};

TEST_F(FocusSearch, NeighboursBothWays) {
  const struct {
    CViewImpl* anchor;
    CViewImpl* next;
    CViewImpl* previous;
  } rows[] = {{nullptr, &c, &b}, {&c, &a, &b}, {&a, &b, &c}, {&b, &c, &a}, {&group, &c, &b}};
  for (const auto& row : rows) {
    EXPECT_EQ(row.next, FindNextFocusView(row.anchor, fWindow));
    EXPECT_EQ(row.previous, FindPreviousFocusView(row.anchor, fWindow));
  }
  EXPECT_TRUE(fOutput.fAssertions.empty());
  EXPECT_EQ(nullptr, FindFocusView({}, &a, kFindNext));
  EXPECT_EQ(&b, FindFocusView({&a, &b}, nullptr, static_cast<TFocusDirection>(2)));
  EXPECT_EQ(std::vector<std::string>{"direction == kFindPrevious"}, fOutput.fAssertions);
}

TEST_F(FocusSearch, ViewsThatCannotHaveTheFocusAreSkipped) {
  SetFlags(a, kViewEnabled);
  EXPECT_EQ((std::vector<CViewImpl*>{&c, &b}), GetFocusableTabViews(fWindow));
  // An anchor that cannot be the target any more is nowhere in the list.
  EXPECT_EQ(&c, FindNextFocusView(&a, fWindow));
  EXPECT_EQ(&b, FindPreviousFocusView(&a, fWindow));
  SetFlags(group, 0);
  EXPECT_EQ(std::vector<CViewImpl*>{&c}, GetFocusableTabViews(fWindow));
  SetFlags(c, kViewFocusable);
  EXPECT_EQ(nullptr, FindNextFocusView(nullptr, fWindow));
  EXPECT_EQ(nullptr, FindPreviousFocusView(&a, fWindow));
}

TEST_F(FocusSearch, FocusInSubtree) {
  fWindow.fFocusView = &a;
  for (CViewImpl* view : {&a, &group, &fWindow.Root()}) EXPECT_TRUE(IsFocusInSubtree(*view));
  for (CViewImpl* view : {&b, &c}) EXPECT_FALSE(IsFocusInSubtree(*view));
  // Nobody gets the keys in an inactive window.
  fWindow.fActive = false;
  EXPECT_FALSE(IsFocusInSubtree(a));
  EXPECT_FALSE(IsFocusInSubtree(fWindow.Root()));
  fWindow.fActive = true;
  fWindow.fFocusView = nullptr;
  EXPECT_FALSE(IsFocusInSubtree(fWindow.Root()));
}

TEST_F(FocusSearch, EjectedFocusGoesToTheNextView) {
  EjectFocus(fWindow);
  EXPECT_EQ(nullptr, fWindow.fFocusView);
  fWindow.fFocusView = &b;
  fWindow.fActive = false;
  EjectFocus(fWindow);
  EXPECT_EQ(&c, fWindow.fFocusView);
  EXPECT_TRUE(fWindow.fLog.empty());
  EXPECT_TRUE(fOutput.fAssertions.empty());
  fWindow.fTabViews = {&c};
  EjectFocus(fWindow);
  EXPECT_EQ(&c, fWindow.fFocusView);
  EXPECT_EQ((std::vector<std::string>{"view != anchorView", "newFocusView != currentFocusView",
                                      "newCurrentFocusView != currentFocusView"}),
            fOutput.fAssertions);
}

// Three ways to lose the focus. Each row: the tab list, who has the focus, who has it afterwards.
TEST_F(FocusSearch, WhoeverCannotKeepTheFocusHandsItOn) {
  const auto unfocusable = [](CViewImpl& view) { SetFlags(view, kViewEnabled); };
  const auto disabled = [](CViewImpl& view) { SetFlags(view, kViewFocusable); };
  const auto deleted = [](CViewImpl& view) { view.IView_Release(); };
  const struct {
    const char* name;
    void (*end)(CViewImpl&);
    CViewImpl* expected;
  } rows[] = {// While it loses the flag it still has its place in the list: the next one follows.
              {"unfocusable", +unfocusable, &b},
              // The others have left the list: the first one follows.
              {"disabled", +disabled, &c},
              {"deleted", +deleted, &c}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    for (const bool isOnlyOne : {false, true}) {
      CViewImpl& view = fWindow.MakeView(group, {0, 0, 10, 10}, "view", kFocusable);
      fWindow.fTabViews =
          isOnlyOne ? std::vector<CViewImpl*>{&view} : std::vector<CViewImpl*>{&c, &a, &view, &b};
      EXPECT_EQ(kOK, fWindow.IWindow_SetConceptualFocusView(&view));
      fWindow.Reset();
      fOutput.Reset();
      row.end(view);
      EXPECT_EQ(isOnlyOne ? nullptr : row.expected, fWindow.fFocusView);
      EXPECT_EQ(row.end == +deleted, fOutput.HasLine("Ejecting focus from view being deleted..."));
      if (row.end != +deleted) view.IView_Release();
    }
  }
  EXPECT_EQ((std::vector<CViewImpl*>{}), fWindow.fTabViews);
}

TEST_F(FocusSearch, DisablingASuperViewMovesTheFocusOutOfIt) {
  fWindow.fTabViews = {&a, &b, &c};
  fWindow.fFocusView = &a;
  SetFlags(group, 0);
  EXPECT_EQ(&c, fWindow.fFocusView);
  // Enabling moves it as well.
  SetFlags(group, kViewEnabled);
  fWindow.fFocusView = &b;
  SetFlags(b, kViewFocusable);
  EXPECT_EQ(&a, fWindow.fFocusView);
  fWindow.fFocusView = &b;
  SetFlags(b, kFocusable);
  EXPECT_EQ(&c, fWindow.fFocusView);
}

TEST_F(FocusSearch, WindowEndsWhileTheFocusMoves) {
  for (const bool byRelease : {false, true}) {
    boost::shared_ptr<FakeViewWindow> window(new FakeViewWindow);
    window->fSelf = window;
    CViewImpl& outer = window->MakeView(window->Root(), {0, 0, 9, 9}, "outer");
    CViewImpl& inner = window->MakeView(outer, {0, 0, 9, 9}, "inner", kFocusable);
    window->fTabViews = {&inner};
    window->fFocusView = &inner;
    NSMorvaneTest::BehaviorOf(inner).fOnCall = [&] { window.reset(); };
    if (byRelease)
      inner.IView_Release();
    else
      SetFlags(outer, 0);
    EXPECT_EQ(nullptr, outer.GetMotherWindow());
    if (!byRelease) inner.IView_Release();
    outer.IView_Release();
  }
}

}  // namespace
}  // namespace NSMorvane
