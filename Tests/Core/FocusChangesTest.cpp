// Where the focus goes: the search along the tab list, and who is told of changes, also when those who are
// told bring about the next one.
#include "Component/Portable/Windows/WindowFocus.h"

#include <set>
#include <sstream>

#include "Component/Portable/Views/FocusSearch.h"
#include "Tests/Support/FakeViewWindow.h"
#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;

namespace {

constexpr std::uint32_t kFocusable = kViewEnabled | kViewFocusable;
constexpr TError kRefusal = 100008;

// What views are told, as "a+" for on duty and "a-" for off duty.
std::string TakeTold(FakeViewWindow& window) {
  std::string told;
  for (const std::string& line : std::exchange(window.fLog, {}))
    if (const std::size_t at = line.find(" Focus "); at != std::string::npos)
      told += (told.empty() ? "" : " ") + line.substr(0, at) + (line.back() == '1' ? "+" : "-");
  return told;
}

// root
//   a
//     b
//       c
//   d
//   e
// All but a can have the focus. Tab order: c, d, e.
class FocusChanges : public ReportingTest {
 protected:
  FocusChanges() {
    fWindow.fTabViews = {&c, &d, &e};
    for (CViewImpl* const view : {&fWindow.Root(), &a, &b, &c, &d, &e})
      BehaviorOf(*view).fOnCall = [this] { RunHook(); };
  }
  ~FocusChanges() override {
    fHooks.clear();
    fWindow.ReleaseViews();
  }
  // Once for each; the key is the line of the log.
  void RunHook() {
    const auto hook = fWindow.fLog.empty() ? fHooks.end() : fHooks.find(fWindow.fLog.back());
    if (hook != fHooks.end()) fHooks.extract(hook).mapped()();
  }
  std::string Told(const std::function<void()>& action) {
    TakeTold(fWindow);
    action();
    return TakeTold(fWindow);
  }
  std::string ToldOf(CViewImpl* view) {
    return Told([&] { EXPECT_EQ(kOK, fWindow.IWindow_SetConceptualFocusView(view)); });
  }
  std::function<void()> Sets(CViewImpl* view) {
    return [=, this] { fWindow.IWindow_SetConceptualFocusView(view); };
  }
  static std::function<void()> SetsFlags(CViewImpl& view, std::uint32_t flags) {
    return [&view, flags] { SetFlags(view, flags); };
  }
  static std::function<void()> Releases(CViewImpl& view) {
    return [&view] { view.IView_Release(); };
  }
  // Each view, and those found from there in both directions.
  void ExpectNeighbours(const Rows<CViewImpl*, CViewImpl*, CViewImpl*>& rows) {
    for (const auto& [anchor, next, previous] : rows) {
      EXPECT_EQ(next, FindNextFocusView(anchor, fWindow));
      EXPECT_EQ(previous, FindPreviousFocusView(anchor, fWindow));
    }
  }
  void Activate(bool active) {
    fWindow.fIsActive = active;
    active ? fWindow.fFocus.OnActivated() : fWindow.fFocus.OnDeactivated();
  }

  FakeViewWindow fWindow;
  CWindowFocus& fFocus = fWindow.fFocus;
  std::map<std::string, std::function<void()>> fHooks;
  CViewImpl& a = fWindow.MakeView(fWindow.Root(), {0, 0, 9, 9}, "a");
  CViewImpl& b = fWindow.MakeView(a, {0, 0, 9, 9}, "b", kFocusable);
  CViewImpl& c = fWindow.MakeView(b, {0, 0, 9, 9}, "c", kFocusable);
  CViewImpl& d = fWindow.MakeView(fWindow.Root(), {0, 0, 9, 9}, "d", kFocusable);
  CViewImpl& e = fWindow.MakeView(fWindow.Root(), {0, 0, 9, 9}, "e", kFocusable);
};

}  // namespace

// --- The search

TEST_F(FocusChanges, NeighboursInTheTabList) {
  ExpectNeighbours({{nullptr, &c, &e}, {&c, &d, &e}, {&d, &e, &c}, {&e, &c, &d}, {&a, &c, &e}});
  EXPECT_EQ(nullptr, FindFocusView({}, &c, kFindNext));
  EXPECT_EQ("", TakeReports());
  EXPECT_EQ(&d, FindFocusView({&c, &d}, nullptr, static_cast<TFocusDirection>(2)));
  EXPECT_EQ("direction == kFindPrevious", TakeReports());
  // Views that cannot have the focus are skipped, and an anchor that cannot is nowhere in the list.
  SetFlags(d, kViewEnabled);
  ExpectNeighbours({{&c, &e, &e}, {&d, &c, &e}});
  SetFlags(b, 0);
  ExpectNeighbours({{nullptr, &e, &e}});
  SetFlags(e, kViewFocusable);
  ExpectNeighbours({{nullptr, nullptr, nullptr}, {&c, nullptr, nullptr}});
  // Nor does one that has been released, and lives on behind its subview, nor that subview.
  for (CViewImpl* const view : {&b, &d}) SetFlags(*view, kFocusable);
  fWindow.fTabViews = {&c, &b, &d};
  ExpectNeighbours({{nullptr, &c, &d}});
  b.IView_Release();
  ExpectNeighbours({{nullptr, &d, &d}, {&c, &d, &d}});
}

// Three ways to lose the focus, each with others in the tab list and with none.
TEST_F(FocusChanges, WhoeverCannotKeepTheFocusHandsItOn) {
  enum TEnd { kUnfocusable, kDisabled, kDeleted };
  for (const auto& [end, next] :
       Rows<TEnd, CViewImpl*>{{kUnfocusable, &e},  // it still has its place in the list: the next one follows
                              {kDisabled, &c},     // it has left the list: the first one follows
                              {kDeleted, &c}}) {
    for (const bool isOnlyOne : {false, true}) {
      CViewImpl& view = fWindow.MakeView(a, {0, 0, 10, 10}, "view", kFocusable);
      fWindow.fTabViews = {&view};
      if (!isOnlyOne) fWindow.fTabViews = {&c, &d, &view, &e};
      EXPECT_EQ(kOK, fWindow.IWindow_SetConceptualFocusView(&view));
      if (end != kDeleted) SetFlags(view, end == kUnfocusable ? kViewEnabled : kViewFocusable);
      if (end == kDeleted) view.IView_Release();
      EXPECT_EQ(isOnlyOne ? nullptr : next, fWindow.FocusView()) << end;
      if (end != kDeleted) view.IView_Release();
      if (end != kUnfocusable) TakeReports();
    }
  }
  EXPECT_TRUE(fWindow.fTabViews.empty());
}

TEST_F(FocusChanges, EnablingAndDisablingMoveIt) {
  fFocus.SetView(&c);
  EXPECT_TRUE(IsFocusInSubtree(fWindow.Root()) && IsFocusInSubtree(a) && IsFocusInSubtree(c));
  EXPECT_FALSE(IsFocusInSubtree(d) || IsFocusInSubtree(e));
  SetFlags(a, 0);
  EXPECT_EQ(&d, fWindow.FocusView());
  // Away from a view that has got it while it was disabled, too.
  SetFlags(a, kViewEnabled);
  SetFlags(d, kViewFocusable);
  fFocus.OnControlFocused(&d);
  SetFlags(d, kFocusable);
  EXPECT_EQ(&e, fWindow.FocusView());
}

// --- Changes

// The focus goes from `from` to `to`, and somebody does something when told of it.
TEST_F(FocusChanges, ThoseWhoAreToldMoveItAgain) {
  for (const auto& [from, to, line, hook, told, focus] :
       Rows<CViewImpl*, CViewImpl*, const char*, std::function<void()>, std::string, CViewImpl*>{
           {&d, &c, "", {}, "d- root- root+ a+ b+ c+", &c},
           // On the way in: nobody below is told any more.
           {nullptr, &c, "a Focus 1", Sets(&d), "root+ a+ a- root- root+ d+", &d},
           {nullptr, &c, "a Focus 1", SetsFlags(b, kViewFocusable), "root+ a+ a- root- root+ d+", &d},
           {nullptr, &c, "a Focus 1", Sets(nullptr), "root+ a+ a- root-", nullptr},
           {nullptr, &c, "c Focus 1", SetsFlags(c, kViewEnabled), "root+ a+ b+ c+ c- b- a- root- root+ d+",
            &d},
           // On the way out: the last wish holds, also that it stays.
           {&c, &d, "c Focus 0", Sets(&e), "c- b- a- root- root+ e+", &e},
           {&c, &d, "a Focus 0", Sets(&c), "c- b- a- root- root+ a+ b+ c+", &c},
           {&c, nullptr, "b Focus 0", Sets(&b), "c- b- a- root- root+ a+ b+", &b},
           // The next one cannot have it any more: it goes on from there, to the first one.
           {&c, &d, "c Focus 0", SetsFlags(d, kViewFocusable), "c- b- a- root- root+ a+ b+ c+", &c},
           // That the old one cannot keep it is of no account.
           {&c, &e, "c Focus 0", SetsFlags(b, kViewFocusable), "c- b- a- root- root+ e+", &e},
       }) {
    for (CViewImpl* const view : {&b, &c, &d, &e}) SetFlags(*view, kFocusable);
    fFocus.SetView(from);
    fHooks = {{line, hook}};
    EXPECT_EQ(told, ToldOf(to)) << line;
    EXPECT_EQ(focus, fWindow.FocusView()) << line;
    fHooks.clear();
    SetFlags(b, kFocusable);
    fFocus.SetView(nullptr);
  }
}

TEST_F(FocusChanges, ARefusedFocusComesBack) {
  BehaviorOf(d).fError = kRefusal;
  fFocus.SetView(&c);
  TakeTold(fWindow);
  EXPECT_EQ(kRefusal, fWindow.IWindow_SetConceptualFocusView(&d));
  EXPECT_EQ("c- b- a- root- root+ a+ b+ c+", TakeTold(fWindow));
  EXPECT_EQ(&c, fWindow.FocusView());
  // Unless the old view cannot have it any more: then the window takes the keyboard from its control.
  fHooks["c Focus 0"] = SetsFlags(c, kViewFocusable);
  fWindow.fKeyboardGifts = 0;
  EXPECT_EQ(kRefusal, fWindow.IWindow_SetConceptualFocusView(&d));
  EXPECT_EQ("c- b- a- root-", TakeTold(fWindow));
  EXPECT_EQ(nullptr, fWindow.FocusView());
  EXPECT_EQ(1, fWindow.fKeyboardGifts);
  // A view that cannot have it any more does not get it, nor does one that has been asked for its control.
  SetFlags(c, kFocusable);
  BehaviorOf(d).fError = kOK;
  for (CViewImpl* const from : {&e, static_cast<CViewImpl*>(nullptr)}) {
    fFocus.SetView(from);
    fWindow.fLog = {"asked"};
    fHooks[from ? "e Focus 0" : "asked"] = [this] { Activate(false), SetFlags(d, kViewFocusable); };
    EXPECT_EQ(kOK, fWindow.IWindow_SetConceptualFocusView(&d));
    EXPECT_EQ(&c, fWindow.FocusView());
    Activate(true);
    SetFlags(d, kFocusable);
  }
}

// The window is on its way out, and its focus has not heard of it yet.
TEST_F(FocusChanges, NobodyGetsTheKeyboardOfAWindowThatIsLeft) {
  for (CViewImpl* const next : {&d, static_cast<CViewImpl*>(nullptr)}) {
    fWindow.fIsActive = true;
    fFocus.SetView(&c);
    fWindow.fKeyboardGifts = 0;
    fWindow.fIsActive = false;
    EXPECT_EQ("c- b- a- root-", ToldOf(next));
    Activate(false);
    EXPECT_EQ(0, fWindow.fKeyboardGifts);
  }
}

// Two views that hand the focus to each other are stopped.
TEST_F(FocusChanges, EndlessWishes) {
  std::function<void()> toC, toD;
  toC = [&] { fHooks["c Focus 1"] = toD, Sets(&c)(); };
  toD = [&] { fHooks["d Focus 1"] = toC, Sets(&d)(); };
  fHooks["c Focus 1"] = toD;
  const std::string told = ToldOf(&c);
  EXPECT_TRUE(told.size() > 300 && told.size() < 1000) << told;
  EXPECT_NE(nullptr, fWindow.FocusView());
  // The next change begins anew.
  fHooks.clear();
  fFocus.SetView(nullptr);
  EXPECT_EQ("root+ e+", ToldOf(&e));
}

// It lives on behind its subview, but not with the focus; nor does it get it back.
TEST_F(FocusChanges, AReleasedView) {
  fFocus.SetView(&b);
  fHooks["b Focus 0"] = [&] { EXPECT_THROW(fFocus.SetView(&b), std::invalid_argument); };
  EXPECT_EQ("b- a- root- root+ d+", Told([&] {
              fWindow.fTabViews = {&b, &d};
              b.IView_Release();
            }));
  TakeReports();
  // Its subview can have the focus still; super views that are gone are not told.
  EXPECT_EQ("d- root- root+ a+ c+", ToldOf(&c));
  EXPECT_EQ("c- a- root-", Told([&] { c.IView_Release(); }).substr(0, 11));
}

TEST_F(FocusChanges, TheWindowGoesAndComes) {
  Activate(false);
  EXPECT_EQ("", ToldOf(&c));
  // In a window that is not active the focus stays; it goes on when it is needed.
  SetFlags(b, 0);
  EXPECT_EQ(&c, fWindow.FocusView());
  EXPECT_EQ("root+ d+", Told([this] { Activate(true); }));
  SetFlags(b, kFocusable);
  // In the middle of a walk.
  fHooks = {{"a Focus 1", [this] { Activate(false); }}};
  EXPECT_EQ("d- root- root+ a+ a- root-", ToldOf(&c));
  fHooks = {{"b Focus 1", [this] { Activate(false), Activate(true); }}};
  EXPECT_EQ("root+ a+ b+ b- a- root- root+ a+ b+ c+", Told([this] { Activate(true); }));
  fHooks = {{"b Focus 0", [this] { Activate(true); }}};
  EXPECT_EQ("c- b- a- root- root+ a+ b+ c+", Told([this] { Activate(false); }));
  fHooks = {{"b Focus 0", Sets(&d)}};
  EXPECT_EQ("c- b- a- root-", Told([this] { Activate(false); }));
  EXPECT_EQ(&d, fWindow.FocusView());
  // The focus view is asked for its control, and may move the focus there.
  TakeTold(fWindow);
  fHooks = {{"", {}}};
  BehaviorOf(d).fError = kRefusal;
  EXPECT_THROW(Activate(true), XApplicationError);
  EXPECT_EQ("", TakeTold(fWindow));
}

// Somebody else in the window has the keyboard, say a control that no view knows.
TEST_F(FocusChanges, TheKeyboardGoesAndComes) {
  const auto lose = [this] { fFocus.OnKeyboardLost(); };
  const auto regain = [this] { fFocus.OnKeyboardReturned(); };
  fFocus.SetView(&b);
  EXPECT_EQ("b- a- root-", Told(lose));
  EXPECT_EQ("", Told(lose));
  EXPECT_EQ("root+ a+ b+", Told(regain));
  EXPECT_EQ("", Told(regain));
  Told(lose);
  EXPECT_EQ("root+ a+ b+", ToldOf(&b)) << "who asks for the keyboard gets it back";
  Told(lose);
  EXPECT_EQ("root+ d+", ToldOf(&d));
  // The control of a view, focusable or not.
  EXPECT_EQ("d- root- root+ a+", Told([this] { fFocus.OnControlFocused(&a); }));
  EXPECT_EQ("", Told([this] { fFocus.OnControlFocused(&a); }));
  EXPECT_EQ("a- root-", Told([this] { fFocus.OnControlFocused(nullptr); }));
  EXPECT_EQ(&a, fWindow.FocusView());
  EXPECT_EQ("root+ a+", Told([this] { fFocus.OnControlFocused(&a); }));
  EXPECT_EQ("a- root-", Told([this] { Activate(false); }));
  EXPECT_EQ("", Told(regain)) << "it is another window that is active";
  EXPECT_EQ("root+ a+", Told([this] { Activate(true); })) << "such a view keeps the focus";
  // It is asked for its control again, whoever has the keyboard now, but only once at a time.
  EXPECT_EQ("a- root- root+ a+ b+", ToldOf(&b));
  fWindow.fKeyboardGifts = 0;
  BehaviorOf(b).fOnCall = [this] { fFocus.SetView(&b); };
  EXPECT_EQ("", ToldOf(&b));
  EXPECT_EQ(1, fWindow.fKeyboardGifts);
  BehaviorOf(b).fOnCall = nullptr;
  // A view that was disabled while the window was not active does not keep it.
  Told([this] { fFocus.OnControlFocused(&a); });
  Activate(false);
  SetFlags(a, 0);
  EXPECT_EQ("root+ d+", Told([this] { Activate(true); }));
}

// --- Random trees, whose behaviours do anything

namespace {

class RandomFocus {
 public:
  explicit RandomFocus(std::uint32_t seed)
      : fRandom(seed), fIsEndless(seed % 4 == 0), fHasControls(seed % 3 == 0) {
    const int count = fRandom(3, 9);
    for (int i = 0; i < count; ++i) {
      CViewImpl& superView = i == 0 ? fWindow.Root() : *AnyView();
      CViewImpl& view = fWindow.MakeView(superView, {0, 0, 9, 9}, "v" + std::to_string(i),
                                         fRandom(0, 4) ? kFocusable : kViewEnabled);
      fViews.push_back(view.GetClientsViewReference());
      if (fRandom(0, 2)) fWindow.fTabViews.push_back(&view);
      BehaviorOf(view).fOnCall = [this, &view] { OnCall(view); };
    }
  }
  ~RandomFocus() {
    fIsQuiet = true;
    fWindow.ReleaseViews();
  }

  void Run() {
    for (int step = 0; step < 12; ++step) {
      fActionsLeft = fRandom(0, 12);
      Act(fRandom(0, 9));
      CheckCalls();
      CheckEnd();
    }
  }

 private:
  // Null if that one is gone.
  TViewImplPtr AnyView() {
    return fViews[static_cast<std::size_t>(fRandom(0, static_cast<int>(fViews.size()) - 1))].lock();
  }
  void OnCall(CViewImpl& view) {
    if (fIsQuiet) return;
    if (!fWindow.fLog.empty() && Has(fWindow.fLog.back(), " Focus 1") && &view == fFocus.GetView())
      CheckFocusView(view);
    // At times it passes the focus on whenever it is called.
    if (fIsEndless && fRandom(0, 2)) Act(0);
    if (fActionsLeft > 0 && fRandom(0, 2) == 0) --fActionsLeft, Act(fRandom(0, 9));
  }
  void CheckFocusView(const CViewImpl& view) {
    EXPECT_TRUE(view.IsLive() && (view.CanBeFocusTargetNow() || fHasControls)) << view.GetDebugName();
  }
  void Act(int action) {
    const TViewImplPtr view = AnyView();
    if (!view) return;
    const bool isLive = view->IsLive();
    if (action <= 2 && isLive && view->CanBeFocusTargetNow())
      fWindow.IWindow_SetConceptualFocusView(view.get());
    if (action == 3) fWindow.IWindow_SetConceptualFocusView(nullptr);
    if ((action == 4 || action == 5) && isLive) SetFlags(*view, view->GetFlags() ^ kViewEnabled);
    if (action == 6 && isLive) SetFlags(*view, view->GetFlags() ^ kViewFocusable);
    if (action == 7 && isLive && fRandom(0, 2) == 0) view->IView_Release();
    if (action == 8) Activate(fRandom(0, 2) != 0);
    if (action == 9 && fHasControls) fFocus.OnControlFocused(view.get());
    if (action == 9 && !fHasControls) BehaviorOf(*view).fError = fRandom(0, 1) ? kRefusal : kOK;
  }
  void Activate(bool active) {
    fWindow.fIsActive = active;
    try {
      active ? fFocus.OnActivated() : fFocus.OnDeactivated();
    } catch (const XApplicationError&) {
      fFocus.OnKeyboardReturned();  // the system gives the keyboard to the window
    }
  }
  // In turns, and not too often.
  void CheckCalls() {
    int count = 0;
    std::istringstream words(TakeTold(fWindow));
    for (std::string word; words >> word; ++count) {
      const std::string name = word.substr(0, word.size() - 1);
      EXPECT_TRUE(word.back() == '+' ? fOnDuty.insert(name).second : fOnDuty.erase(name) == 1) << word;
    }
    EXPECT_LT(count, 2000);
  }
  // The focus view and its super views have the last word that they are on duty, and nobody else.
  void CheckEnd() {
    const CViewImpl* const focusView = fFocus.GetView();
    EXPECT_EQ(focusView, fFocus.GetNextView());
    if (focusView && fWindow.fIsActive) CheckFocusView(*focusView);
    std::set<std::string> chain;
    for (const CViewImpl* view = fWindow.fIsActive ? focusView : nullptr; view;
         view = view->GetSuperView().get()) {
      const std::string name = view == &fWindow.Root() ? "root" : view->GetDebugName();
      // One that has been released has been told before, or is passed over.
      if (view->IsLive() || fOnDuty.contains(name)) chain.insert(name);
    }
    EXPECT_EQ(chain, fOnDuty);
  }

  Random fRandom;
  const bool fIsEndless;
  const bool fHasControls;
  bool fIsQuiet = false;
  int fActionsLeft = 0;
  FakeViewWindow fWindow;
  CWindowFocus& fFocus = fWindow.fFocus;
  std::vector<boost::weak_ptr<CViewImpl>> fViews;
  std::set<std::string> fOnDuty;  // as told last
};

}  // namespace

TEST_F(FocusChanges, RandomTrees) {
  for (std::uint32_t seed = 0; seed < 3000 && !HasFailure(); ++seed) {
    SCOPED_TRACE(seed);
    RandomFocus(seed).Run();
    TakeReports();
    fOutput.fLines.clear();
  }
}
