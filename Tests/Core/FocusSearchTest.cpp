// The search along the tab list, and where the focus goes when its view cannot keep it.
#include "Component/Portable/Views/FocusSearch.h"
#include "Tests/Support/FakeViewWindow.h"
#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;

namespace {

constexpr std::uint32_t kFocusable = kViewEnabled | kViewFocusable;

// root
//   group
//     a
//     b
//   c
// Tab order: c, a, b.
class FocusSearch : public ReportingTest {
 protected:
  FocusSearch() { fWindow.fTabViews = {&c, &a, &b}; }
  ~FocusSearch() override { fWindow.ReleaseViews(); }

  FakeViewWindow fWindow;
  CViewImpl& group = fWindow.MakeView(fWindow.Root(), {0, 0, 100, 100}, "group");
  CViewImpl& a = fWindow.MakeView(group, {0, 0, 50, 50}, "a", kFocusable);
  CViewImpl& b = fWindow.MakeView(group, {50, 0, 100, 50}, "b", kFocusable);
  CViewImpl& c = fWindow.MakeView(fWindow.Root(), {200, 0, 300, 50}, "c", kFocusable);
};

}  // namespace

TEST_F(FocusSearch, NeighboursBothWays) {
  using Views = std::vector<CViewImpl*>;
  const auto check = [&](const Rows<CViewImpl*, CViewImpl*, CViewImpl*>& rows) {
    for (const auto& [anchor, next, previous] : rows) {
      EXPECT_EQ(next, FindNextFocusView(anchor, fWindow));
      EXPECT_EQ(previous, FindPreviousFocusView(anchor, fWindow));
    }
  };
  check({{nullptr, &c, &b}, {&c, &a, &b}, {&a, &b, &c}, {&b, &c, &a}, {&group, &c, &b}});
  EXPECT_EQ(nullptr, FindFocusView({}, &a, kFindNext));
  EXPECT_EQ("", TakeReports());
  EXPECT_EQ(&b, FindFocusView({&a, &b}, nullptr, static_cast<TFocusDirection>(2)));
  EXPECT_EQ("direction == kFindPrevious", TakeReports());
  // Views that cannot have the focus are skipped, and an anchor that cannot is nowhere in the list.
  SetFlags(a, kViewEnabled);
  EXPECT_EQ((Views{&c, &b}), GetFocusableTabViews(fWindow));
  check({{&a, &c, &b}});
  SetFlags(group, 0);
  EXPECT_EQ(Views{&c}, GetFocusableTabViews(fWindow));
  SetFlags(c, kViewFocusable);
  check({{nullptr, nullptr, nullptr}, {&a, nullptr, nullptr}});
  // Nor does one that has been released, and lives on behind its subview.
  SetFlags(group, kFocusable);
  SetFlags(a, kFocusable);
  fWindow.fTabViews = {&a, &group, &b};
  group.IView_Release();
  check({{&a, &b, &b}});
}

// Three ways to lose the focus, each with others in the tab list and with none.
TEST_F(FocusSearch, WhoeverCannotKeepTheFocusHandsItOn) {
  enum TEnd { kUnfocusable, kDisabled, kDeleted };
  for (const auto& [end, isOnlyOne, expected] : Rows<TEnd, bool, CViewImpl*>{
           // While it loses the flag it still has its place in the list: the next one follows.
           {kUnfocusable, false, &b},
           {kUnfocusable, true, nullptr},
           // The others have left the list: the first one follows.
           {kDisabled, false, &c},
           {kDisabled, true, nullptr},
           {kDeleted, false, &c},
           {kDeleted, true, nullptr}}) {
    CViewImpl& view = fWindow.MakeView(group, {0, 0, 10, 10}, "view", kFocusable);
    fWindow.fTabViews = {&view};
    if (!isOnlyOne) fWindow.fTabViews = {&c, &a, &view, &b};
    EXPECT_EQ(kOK, fWindow.IWindow_SetConceptualFocusView(&view));
    if (end != kDeleted) SetFlags(view, end == kUnfocusable ? kViewEnabled : kViewFocusable);
    if (end == kDeleted) view.IView_Release();
    EXPECT_EQ(expected, fWindow.FocusView()) << end;
    if (end != kDeleted) view.IView_Release();
    if (end != kUnfocusable) TakeReports();
  }
  EXPECT_TRUE(fWindow.fTabViews.empty());
}

TEST_F(FocusSearch, DisablingASuperViewMovesTheFocusOutOfIt) {
  fWindow.fTabViews = {&a, &b, &c};
  fWindow.fFocus.SetView(&a);
  EXPECT_TRUE(IsFocusInSubtree(fWindow.Root()) && IsFocusInSubtree(group) && IsFocusInSubtree(a));
  EXPECT_FALSE(IsFocusInSubtree(b) || IsFocusInSubtree(c));
  SetFlags(group, 0);
  EXPECT_EQ(&c, fWindow.FocusView());
  // Enabling moves it as well, away from a view that has got it while it was disabled.
  SetFlags(group, kViewEnabled);
  SetFlags(b, kViewFocusable);
  fWindow.fFocus.OnControlFocused(&b);
  SetFlags(b, kFocusable);
  EXPECT_EQ(&c, fWindow.FocusView());
}
