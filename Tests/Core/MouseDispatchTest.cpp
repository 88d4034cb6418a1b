// What views hear of the mouse, and in which order.
#include "Component/Portable/Windows/MouseDispatch.h"

#include <stdexcept>

#include "Tests/Support/DispatchFixture.h"

using namespace NSMorvaneTest;

namespace {

constexpr TPoint kOverABC = {40, 40};
constexpr TPoint kOverAll = {90, 90};
constexpr TPoint kOverD = {150, 150};

Hook Fails() { return Handles(1, kClientError); }

class MouseDispatch : public DispatchFixture {
 protected:
  MouseDispatch() {
    for (const auto& [name, rect, superView] : kMouseViews) MakeView(name, rect, superView);
  }
  // Each case begins with the mouse inside a, b and c, who then answer differently.
  using AnswerCase = std::pair<std::map<std::string, Hook>, std::string>;
  void ExpectAnswers(const std::vector<AnswerCase>& cases, const std::function<void()>& action) {
    for (const auto& [hooks, words] : cases) {
      fHooks.clear();
      Tracked(kNowhere);
      Tracked(kOverABC);
      fHooks = hooks;
      EXPECT_EQ(CallsOf(action), words) << (hooks.empty() ? "" : hooks.begin()->first);
    }
    fHooks.clear();
    Tracked(kNowhere);
  }
  // How many lines with such a text there have been.
  int CountLines(const std::string& text) {
    return static_cast<int>(std::count_if(fOutput.fLines.begin(), fOutput.fLines.end(),
                                          [&](const std::string& line) { return Has(line, text); }));
  }
};

}  // namespace

TEST_F(MouseDispatch, ViewsAreWalkedToTheFrontAndBack) {
  EXPECT_EQ(Tracked(kOverABC), kEnterABC);
  EXPECT_EQ(fShown, kMouseShapeArrow);
  // A still mouse over still views is nobody's business; a movement is.
  EXPECT_EQ(Tracked(kOverABC), "");
  EXPECT_EQ(Moved(), kTrackedABC + kShapesOfABC);
  EXPECT_EQ(fViewRecord.fTracking.fTimeMS, 4711u);
  EXPECT_EQ(fViewRecord.fShapeRequest.fPosition.fX, kOverABC.fX);
  EXPECT_EQ(Tracked(kOverAll), "a<bcd b<cd c<d d< d+ d. c. b. a. a?< b?< c?< d?< d? c? b? a?");
  EXPECT_EQ(Tracked(kOverD), "d< d. c- b- a- d?< d?");
  EXPECT_EQ(Tracked(kNowhere), "d-");

  // Neither a view without hit rectangles nor one that cannot be tracked; what is behind is found.
  MakeView("e", {20, 20, 100, 100}, "c").fIsTransparent = true;
  MakeView("f", {20, 20, 60, 60}, "e", kViewEnabled);
  EXPECT_EQ(Tracked(kOverABC), kEnterABC);
  SetFlags("f", kTrackable);
  EXPECT_EQ(Ticked(), "a<bcf b<cf c<f f< f+ f. c. b. a. a?< b?< c?< f?< f? c? b? a?");
  // Disabling takes the whole subtree along.
  SetFlags("b", kViewMouseTrackable);
  EXPECT_EQ(Ticked(), "a< a. f- c- b- a?< a?");
  SetFlags("b", kTrackable);
  SetFlags("f", kViewEnabled);
  SetFlags("b", kViewEnabled);
  EXPECT_EQ(Ticked(), "a<c c< c+ c. a. a?< c?< c? a?");
  // A click asks who is enabled, and nothing else.
  EXPECT_EQ(Clicked(), "a47/1<bcf b47/1<cf c47/1<f f47/1< f44/1 c44/1 b44/1 a44/1");
  SetFlags("c", kViewMouseTrackable);
  EXPECT_EQ(Clicked(kMouseEventClick, 2), "a47/2<bcf b47/2<cf b44/2 a44/2");
}

TEST_F(MouseDispatch, ViewsClaimEventsAndFail) {
  ExpectAnswers(
      {
          {{{"b<", Handles()}}, "a<bc b<c b. a. c-" + kShapesOfABC},
          {{{"a<", Handles()}}, "a<bc a. c- b-" + kShapesOfABC},
          {{{"b.", Handles()}}, "a<bc b<c c< c. b. a-" + kShapesOfABC},
          {{{"b<", Handles()}, {"b.", Handles()}}, "a<bc b<c b. c- a-" + kShapesOfABC},
          {{{"b?<", Handles()}}, kTrackedABC + " a?< b?<"},
          {{{"b?", Handles()}}, kTrackedABC + " a?< b?< c?< c? b?"},
          // A failure costs a view its turn, and what it has claimed, but not the rest.
          {{{"b<", Fails()}, {"c.", Fails()}}, kTrackedABC + kShapesOfABC},
          {{{"b?<", Fails()}, {"c?", Fails()}}, kTrackedABC + kShapesOfABC},
          {{{"b.", Handles()}, {"a-", Fails()}}, "a<bc b<c c< c. b. a-" + kShapesOfABC},
      },
      [this] { Move(); });
  const std::string tracking = "of CWinWindow::DispatchMouseTracking.",
                    shape = "of CWinWindow::RefreshMouseShape.";
  for (const std::string& place :
       {"pre pass " + tracking, "normal pass " + tracking, "pre phase " + shape, "normal phase " + shape})
    EXPECT_EQ(CountLines("Ignored an exception (std::exception) in " + place), 1) << place;
  EXPECT_EQ(CountLines("returned the error 100001 when IViewBehavior_OnMouseEnterExit was called. The error "
                       "will be ignored in order to not disrupt the mouse tracking."),
            1);

  // Who fails to enter has no turn, but counts as entered.
  fHooks = {{"b+", Fails()}};
  EXPECT_EQ(Tracked(kOverABC), "a<bc b<c c< c+ c. b+ a+ a." + kShapesOfABC);
  EXPECT_EQ(Tracked(kNowhere), "c- b- a-");
  // Any other value counts as handled, and is reported.
  fHooks = {{"b<", Handles(2)}, {"b.", Handles()}};
  EXPECT_EQ(Tracked(kOverABC), "a<bc b<c b+ b." + kShapesOfABC);
  EXPECT_EQ(TakeReports(), "(handled == 0) || (handled == 1)");
  // Even what no client should do.
  fHooks = {{"b.", [] { throw std::runtime_error("text"); }}, {"c?", [] { throw 5; }}};
  EXPECT_EQ(Moved(), "a<bc b<c c< c+ c. b. a+ a." + kShapesOfABC);
  EXPECT_EQ(CountLines("Ignored an exception (text) in normal pass " + tracking), 1);
  EXPECT_EQ(CountLines("Ignored an unknown exception in normal phase " + shape), 1);
  fHooks = {{"b-", [] { throw 5; }}};
  EXPECT_EQ(Tracked(kNowhere), "c- b- a-");
  EXPECT_EQ(Tracked(kNowhere), "");
}

// Who cannot tell where it can be hit is not there for the mouse. Those behind it, below it and in front are.
TEST_F(MouseDispatch, AViewFailsToTellWhereItIs) {
  struct Behavior : CDefaultHitViewBehavior {
    explicit Behavior(IView& view) : CDefaultHitViewBehavior(view) {}
    TError IViewBehavior_GetHitRects(IRectsGetter& out) override {
      CDefaultHitViewBehavior::IViewBehavior_GetHitRects(out);
      if (fThrows) throw std::runtime_error("text");
      return kClientError;
    }
    bool fThrows = false;
  };
  CViewFactory<Behavior> factory;
  const TViewImplPtr view = CViewImpl::MakeSubView(factory, *View("b"), "failing");
  SetRect(*view, {0, 0, 200, 200});
  NSMorvaneTest::SetFlags(*view, kTrackable);
  MakeView("below", {0, 0, 200, 200}, "b");
  EXPECT_EQ(Tracked({15, 15}),
            "a<bbelow b<below below< below+ below. b+ b. a+ a. a?< b?< below?< below? b? a?");
  EXPECT_EQ(Clicked(), "a47/1<bbelow b47/1<below below47/1< below44/1 b44/1 a44/1");
  EXPECT_GT(CountLines("returned the error 100001 when IViewBehavior_GetHitRects was called. The error will "
                       "be ignored in order to not disrupt the mouse tracking."),
            0);
  factory.Made()->fThrows = true;
  EXPECT_EQ(Ticked(), "");
  EXPECT_EQ(CountLines("returned the error 12007 when IViewBehavior_GetHitRects was called."), 1);
  view->IView_Release();
}

TEST_F(MouseDispatch, ViewsGoAndComeDuringAPass) {
  // One that has been released has its turn all the same, and is told no more afterwards.
  fHooks = {{"b<", Releases("c")}};
  EXPECT_EQ(Tracked(kOverABC), "a<bc b<c c< c+ c. b+ b. a+ a. a?< b?< b? a? c:x");
  fHooks = {{"b.", Releases("b")}};
  EXPECT_EQ(Moved(), "a<b b< b. a. b:x a?< a?");
  fHooks = {{"a-", Releases("a")}};
  EXPECT_EQ(Tracked(kOverD), "d< d+ d. a- a:x d?< d?");
  fHooks = {{"d47/1<", Releases("d")}};
  EXPECT_EQ(Clicked(), "d47/1< d44/1 d:x");
  EXPECT_EQ(Moved(), "");
  // Exits of views that release each other.
  MakeView("e", {0, 0, 120, 120});
  MakeView("f", {0, 0, 120, 120}, "e");
  MakeView("g", {0, 0, 120, 120}, "f");
  Tracked(kOverABC);
  fHooks = {{"g-", [this] { ReleaseView("g"), ReleaseView("f"); }}};
  EXPECT_EQ(Tracked(kNowhere), "g- f- e- g:x f:x");
  // Messages in the middle of a pass find it under way.
  Tracked(kOverABC);
  fHooks = {{"e<", [this] { Move(), Tick(); }}, {"e?", [this] { Tick(); }}};
  EXPECT_EQ(Moved(), "e< e?< e? e. e?< e?");
  Tracked(kNowhere);
  // The end of one may change anything, also after everybody has been told.
  int forgotten = 0;
  fHooks = {{"e?<", Releases("e")}, {"e:x", [&] { forgotten = fForgotten; }}};
  EXPECT_EQ(Tracked(kOverABC), "e< e+ e. e?< e? e:x");
  EXPECT_GT(fForgotten, forgotten);
}

// The window is told of each look before it finds any views, and may change them.
TEST_F(MouseDispatch, TheWindowIsToldOfLooks) {
  fOnLook = [this] { ReleaseView("c"); };
  EXPECT_EQ(Tracked(kOverABC), "c:x a<b b< b+ b. a+ a. a?< b?< b? a?");
  EXPECT_EQ(fLooks, std::vector<TPoint>{kOverABC});
  fOnLook = [this] { Tick(); };
  fHooks = {{"a<", [this] { Tick(); }}};
  Tracked(kNowhere);
  Tracked(kOverABC);
  EXPECT_EQ(fLooks.size(), 3u) << "none within another";
  fOnLook = nullptr;
  fMouse.SetCapture(boost::shared_ptr<IMouseCapture>(new RecordingCapture(fViewRecord)));
  Tracked(kNowhere);
  EXPECT_EQ(fLooks.size(), 3u);
  fMouse.TakeCapture();
}

TEST_F(MouseDispatch, AnotherWindowTakesTheMouse) {
  Tracked(kOverABC);
  fIsOnTop = false;
  EXPECT_EQ(Ticked(), "c- b- a-");
  EXPECT_EQ(Clicked().substr(0, 9), "a47/1<bc ");  // clicks do not ask
  fIsOnTop = true;
  EXPECT_EQ(Ticked(), kEnterABC);
  // A captured mouse is the other's alone. The shape that it has shown stays.
  fHolder = TMouseHolder::kAnother;
  fShown = 0;
  EXPECT_EQ(Moved() + Tracked(kNowhere), "");
  EXPECT_EQ(fShown, 0u);
  fHolder = TMouseHolder::kNobody;
  // What has been asked once may be wrong after each walk.
  fForgotten = 0;
  EXPECT_EQ(Ticked(), "c- b- a-");
  EXPECT_GT(fForgotten, 0);
}

TEST_F(MouseDispatch, ClicksGoToTheFrontAndBack) {
  const std::string pre = "a47/1<bc b47/1<c c47/1< ";
  ExpectAnswers(
      {
          {{}, pre + "c44/1 b44/1 a44/1"},
          {{{"b47/1<", Handles()}}, "a47/1<bc b47/1<c"},
          {{{"c47/1<", Handles()}}, "a47/1<bc b47/1<c c47/1<"},
          {{{"b44/1", Handles(7)}}, pre + "c44/1 b44/1"},
          {{{"a47/1<", [] { throw 5; }}, {"c44/1", Fails()}}, pre + "c44/1 b44/1 a44/1"},
      },
      [this] { Click(); });
  // Both passes have the same words for it.
  for (const std::string what : {"exception (std::exception)", "unknown exception"})
    EXPECT_EQ(CountLines(what + " in pre-click phase of CMacRootViewBehavior::HandleClick."), 1);
  // Each type has its own one in the pre-click pass.
  Tracked(kOverD);
  EXPECT_EQ(Clicked(kMouseEventDoubleClick), "d48/1< d45/1");
  EXPECT_EQ(Clicked(kMouseEventContextClick, 0), "d49/0< d46/0");
}

TEST_F(MouseDispatch, AClickMovesTheFocus) {
  constexpr std::uint32_t kFlags = kViewEnabled | kViewFocusable;
  const Hook focusD = [this] { SetFocus("d"); };
  const std::pair<std::map<std::string, Hook>, std::string> cases[] = {
      {{}, "b"},
      {{{"a47/1<", Handles()}}, "a"},
      {{{"b47/1<", Fails()}, {"b44/1", Handles()}}, "b"},
      {{{"a47/1<", focusD}}, "b"},  // b comes later
      {{{"c47/1<", focusD}}, "d"},
      {{{"b47/1<", [this] { SetFocus(""); }}}, "b"},  // nothing has changed by that
      {{{"a47/1<", [this] { SetFlags("b", kViewFocusable); }}}, "a"},
      {{{"b47/1<", [this] { ReleaseView("c"), ReleaseView("b"); }}}, ""},
  };
  fPosition = kOverABC;
  for (const auto& [hooks, focus] : cases) {
    for (const char* name : {"a", "b", "d"}) SetFlags(name, kFlags);
    fHooks = hooks;
    SetFocus("");
    Click();
    EXPECT_EQ(Focus(), focus) << (hooks.empty() ? "" : hooks.begin()->first);
  }
}

TEST_F(MouseDispatch, TheWheelGoesAlongTheFocusChain) {
  TMouseWheelEvent event = {};
  event.fDeltaNotches = 2;
  bool isTaken = false;
  const auto wheel = [&] { return CallsOf([&] { isTaken = fMouse.DispatchWheel(event); }); };
  EXPECT_EQ(wheel(), "");
  SetFlags("c", kViewEnabled | kViewFocusable);
  SetFocus("c");
  EXPECT_EQ(wheel(), "cW2 bW2 aW2");
  EXPECT_FALSE(isTaken);
  fHooks = {{"bW", Handles()}};
  EXPECT_EQ(wheel(), "cW2 bW2");
  EXPECT_TRUE(isTaken);
  // A view that is released in its turn does not end the walk, unlike with a key.
  fHooks = {{"cW", Releases("c")}};
  EXPECT_EQ(wheel(), "cW2 c:off b:off a:off bW2 aW2 c:x");
}

TEST_F(MouseDispatch, TheCaptureGetsEverything) {
  TMouseWheelEvent wheel = {};
  wheel.fDeltaNotches = 2;
  bool isWheelTaken = false;
  const auto turn = [&] { isWheelTaken = fMouse.DispatchWheel(wheel); };
  const auto release = [this] { fMouse.DispatchRelease(Event(kMouseEventClick, 2)); };
  Tracked(kOverABC);
  SetFlags("a", kTrackable | kViewFocusable);
  SetFocus("a");
  EXPECT_EQ(CallsOf(release), "");  // only a capture hears of it
  fMouse.SetCapture(boost::shared_ptr<IMouseCapture>(new RecordingCapture(fViewRecord)));
  fHolder = TMouseHolder::kThisWindow;
  fShown = 0;
  EXPECT_EQ(Moved(), "@. @?");
  EXPECT_EQ(fShown, 0u);             // it does not care
  EXPECT_EQ(Tracked(kNowhere), "");  // moving views are not its business
  EXPECT_EQ(Clicked(kMouseEventDoubleClick), "@45/1");
  EXPECT_EQ(CallsOf(release), "@^44/2");
  EXPECT_EQ(CallsOf(turn), "@W2 aW2");
  // What it takes stays from the views, but not from the system.
  fHooks = {{"@W", Handles()}};
  EXPECT_EQ(CallsOf(turn), "@W2");
  EXPECT_FALSE(isWheelTaken);
  fViewRecord.fShapes = {{"@?", kMouseShapeWait}};
  Move();
  EXPECT_EQ(fShown, kMouseShapeWait);
  // It lives to the end of the call that it is taken out in.
  fHooks = {{"@^44/2", [this] { fMouse.TakeCapture(); }}};
  EXPECT_EQ(CallsOf(release), "@^44/2 @:x");
  fHolder = TMouseHolder::kNobody;
  EXPECT_EQ(Moved(), "c- b- a-");
}
