// What views hear of the mouse, and in which order.
//
// The views of most tests; the later of two that overlap is in front:
//
//   root
//     a        0..120
//       b     10..110
//         c   20..100
//     d       80..200
#include "Support/RecordingMouse.h"

#include <stdexcept>

namespace NSMorvaneTest {

namespace {

constexpr POINT kOverABC = {40, 40};
constexpr POINT kOverAll = {90, 90};
constexpr POINT kOverD = {150, 150};

// What a fresh look at a, b and c gives, and a look at them with the mouse inside.
constexpr char kEnterABC[] = "a<bc b<c c< c+ c. b+ b. a+ a. a?< b?< c?< c? b? a?";
constexpr char kStayABC[] = "a<bc b<c c< c. b. a. a?< b?< c?< c? b? a?";

constexpr TError kClientError = 100001;

MouseAnswer Handles() { return {1, kOK, nullptr, false}; }
MouseAnswer Fails() { return {1, kClientError, nullptr, false}; }
MouseAnswer Does(std::function<void()> action) { return {0, kOK, std::move(action), false}; }

}  // namespace

class MouseTest : public MouseClientTest {
 protected:
  void RunWithABCD(Steps steps) {
    RunWithMouse([this] { MakeABCD(); }, std::move(steps));
  }
  void MakeABCD() {
    IView& root = RootViewOf(Window());
    Make("a", root, {0, 0, 120, 120});
    Make("b", View("a"), {10, 10, 110, 110});
    Make("c", View("b"), {20, 20, 100, 100});
    Make("d", root, {80, 80, 200, 200});
  }
  // Each case begins with the mouse inside a, b and c, who then answer differently.
  struct AnswerCase {
    MouseAnswers fAnswers;
    std::string fWords;
  };
  void ExpectAnswers(const std::vector<AnswerCase>& cases, UINT message, const POINT& point) {
    for (const AnswerCase& testCase : cases) {
      fRecorder.fAnswers.clear();
      Tracked(kNowhere);
      Tracked(point);
      fRecorder.fAnswers = testCase.fAnswers;
      std::string who;
      for (const auto& answer : testCase.fAnswers) who += answer.first + " ";
      EXPECT_EQ(Sent(message), testCase.fWords) << who;
    }
  }
};

TEST_F(MouseTest, ViewsAreWalkedToTheFrontAndBack) {
  RunWithABCD({[&] {
    EXPECT_EQ(Tracked(kOverABC), kEnterABC);
    // A still mouse over still views is nobody's business; a movement is.
    EXPECT_EQ(Tracked(kOverABC), "");
    EXPECT_EQ(Sent(WM_MOUSEMOVE), kStayABC);
    EXPECT_EQ(fRecorder.fLastTracking.fTimeMS, static_cast<DWORD>(GetMessageTime()));
    EXPECT_EQ(fRecorder.fLastTracking.fState.fPosition.fX, fMouse.x);
    EXPECT_EQ(fRecorder.fLastTracking.fState.fPosition.fY, fMouse.y);
    EXPECT_EQ(fRecorder.fLastRequest.fPosition.fX, fMouse.x);
    EXPECT_EQ(fRecorder.fLastRequest.fViewCount, 0u);

    EXPECT_EQ(Tracked(kOverAll), "a<bcd b<cd c<d d< d+ d. c. b. a. a?< b?< c?< d?< d? c? b? a?");
    EXPECT_EQ(Tracked(kOverD), "d< d. c- b- a- d?< d?");
    EXPECT_EQ(Tracked(kNowhere), "d-");
    EXPECT_TRUE(PointerIsArrow());
    EXPECT_EQ(Sent(WM_MOUSEMOVE), "");
  }});
}

TEST_F(MouseTest, ViewsClaimEventsAndFail) {
  const std::string kShapes = " a?< b?< c?< c? b? a?";
  const std::string kTracked = "a<bc b<c c< c. b. a.";
  RunWithABCD({[&] {
    ExpectAnswers(
        {
            {{}, kTracked + kShapes},
            {{{"b<", Handles()}}, "a<bc b<c b. a. c-" + kShapes},
            {{{"a<", Handles()}}, "a<bc a. c- b-" + kShapes},
            {{{"b.", Handles()}}, "a<bc b<c c< c. b. a-" + kShapes},
            {{{"b<", Handles()}, {"b.", Handles()}}, "a<bc b<c b. c- a-" + kShapes},
            {{{"b?<", Handles()}}, kTracked + " a?< b?<"},
            {{{"b?", Handles()}}, kTracked + " a?< b?< c?< c? b?"},
            // A failure costs a view its turn, and what it has claimed, but not the rest.
            {{{"b<", Fails()}}, kTracked + kShapes},
            {{{"c.", Fails()}}, kTracked + kShapes},
            {{{"b?<", Fails()}, {"c?", Fails()}}, kTracked + kShapes},
            {{{"b.", Handles()}, {"a-", Fails()}}, "a<bc b<c c< c. b. a-" + kShapes},
        },
        WM_MOUSEMOVE, kOverABC);
    const std::string kText = "Ignored an exception (std::exception) in ";
    EXPECT_EQ(fOutput.CountLines(kText + "pre pass of CWinWindow::DispatchMouseTracking."), 1u);
    EXPECT_EQ(fOutput.CountLines(kText + "normal pass of CWinWindow::DispatchMouseTracking."), 1u);
    EXPECT_EQ(fOutput.CountLines(kText + "pre phase of CWinWindow::RefreshMouseShape."), 1u);
    EXPECT_EQ(fOutput.CountLines(kText + "normal phase of CWinWindow::RefreshMouseShape."), 1u);
    IViewBehavior* behavior = nullptr;
    EXPECT_EQ(View("a").IView_GetBehavior(behavior), kOK);
    const std::string address = std::to_string(reinterpret_cast<std::uintptr_t>(behavior));
    EXPECT_EQ(fOutput.CountLines("The view behavior " + address +
                                 "returned the error 100001 when IViewBehavior_OnMouseEnterExit was called. "
                                 "The error will be ignored in order to not disrupt the mouse tracking."),
              1u);

    // Who fails to enter has no turn, but counts as entered.
    Tracked(kNowhere);
    fRecorder.fAnswers = {{"b+", Fails()}};
    EXPECT_EQ(Tracked(kOverABC), "a<bc b<c c< c+ c. b+ a+ a. a?< b?< c?< c? b? a?");
    EXPECT_EQ(Tracked(kNowhere), "c- b- a-");

    // Any other value counts as handled, and is reported.
    EXPECT_EQ(fOutput.TakeAssertions(), CallLog());
    fRecorder.fAnswers = {{"b<", {2, kOK, nullptr, false}}, {"b.", {3, kOK, nullptr, false}}};
    EXPECT_EQ(Tracked(kOverABC), "a<bc b<c b+ b. a?< b?< c?< c? b? a?");
    EXPECT_EQ(fOutput.TakeAssertions(), CallLog(2, "(handled == 0) || (handled == 1)"));

    // Even what no client should do.
    fRecorder.fAnswers = {{"b.", Does([] { throw std::runtime_error("text"); })},
                          {"c?", Does([] { throw 5; })}};
    EXPECT_EQ(Sent(WM_MOUSEMOVE), "a<bc b<c c< c+ c. b. a+ a." + kShapes);
    EXPECT_EQ(fOutput.CountLines(
                  "Ignored an exception (text) in normal pass of CWinWindow::DispatchMouseTracking."),
              1u);
    EXPECT_EQ(
        fOutput.CountLines("Ignored an unknown exception in normal phase of CWinWindow::RefreshMouseShape."),
        1u);
  }});
}

TEST_F(MouseTest, OnlyTrackableViewsAreCalled) {
  constexpr std::uint32_t kTrackable = kViewEnabled | kViewMouseTrackable;
  MouseView* transparent = nullptr;
  RunWithMouse(
      [&] {
        MakeABCD();
        transparent = &Make("e", View("c"), {20, 20, 100, 100});
        transparent->fIsTransparent = true;
        Make("f", *fViews["e"], {20, 20, 60, 60}, kViewEnabled);
      },
      {[&] {
        // Neither a view without hit rectangles nor one that cannot be tracked; what is behind is found.
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
        EXPECT_EQ(Sent(WM_LBUTTONDOWN), "a47/1<bcf b47/1<cf c47/1<f f47/1< f44/1 c44/1 b44/1 a44/1");
        SetFlags("c", kViewMouseTrackable);
        EXPECT_EQ(Sent(WM_RBUTTONDOWN), "a47/2<bcf b47/2<cf b44/2 a44/2");
      }});
}

TEST_F(MouseTest, ViewsGoAndComeDuringAPass) {
  RunWithABCD(
      {[&] {
         // One that has been released has its turn all the same, and is told no more afterwards.
         fRecorder.fAnswers = {{"b<", Does([&] { Release("c"); })}};
         EXPECT_EQ(Tracked(kOverABC), "a<bc b<c c< c+ c. b+ b. a+ a. a?< b?< b? a? cx");
         fRecorder.fAnswers = {{"b.", Does([&] { Release("b"); })}};
         EXPECT_EQ(Sent(WM_MOUSEMOVE), "a<b b< b. a. bx a?< a?");
         fRecorder.fAnswers = {{"a-", Does([&] { Release("a"); })}};
         EXPECT_EQ(Tracked(kOverD), "d< d+ d. a- ax d?< d?");
         fRecorder.fAnswers = {{"d47", {}}, {"dpre", Does([&] { Release("d"); })}};
         EXPECT_EQ(Sent(WM_LBUTTONDOWN), "d47/1< d44/1 dx");
         EXPECT_EQ(Sent(WM_MOUSEMOVE), "");
         MakeABCD();
       },
       [&] {
         // Exits of views that release each other.
         Tracked(kOverABC);
         fRecorder.fAnswers = {{"c-", Does([&] {
                                  Release("c");
                                  Release("b");
                                })}};
         EXPECT_EQ(Tracked(kNowhere), "c- b- a- cx bx");
       },
       [&] {
         // Messages in the middle of a pass find it under way.
         Tracked(kOverD);
         fRecorder.fAnswers = {{"d<", Does([&] {
                                  Send(WM_MOUSEMOVE);
                                  Tick();
                                })},
                               {"d?", Does([&] { Tick(); })}};
         EXPECT_EQ(Sent(WM_MOUSEMOVE), "d< d?< d? d. d?< d?");
         fRecorder.fAnswers = {{"d-", Does([&] { PumpUntil([n = 0]() mutable { return ++n > 3; }); })}};
         EXPECT_EQ(Tracked(kNowhere).substr(0, 2), "d-");
       }});
}

TEST_F(MouseTest, AWindowOnTopTakesTheMouse) {
  HWND other = nullptr;
  const auto cover = [&] {
    RECT rect;
    GetWindowRect(Hwnd(), &rect);
    other = CreateWindowExW(WS_EX_NOACTIVATE | WS_EX_TOPMOST, L"EDIT", L"", WS_POPUP | WS_VISIBLE, rect.left,
                            rect.top, 400, 400, nullptr, nullptr, nullptr, nullptr);
  };
  const auto uncover = [&] { DestroyWindow(std::exchange(other, nullptr)); };
  // At the latest by the next tick.
  const auto after = [&](const std::function<void()>& action) {
    fRecorder.Take();
    action();
    Tick();
    return fRecorder.Take();
  };
  RunWithABCD({[&] {
    EXPECT_EQ(Tracked(kOverABC), kEnterABC);
    EXPECT_EQ(after(cover), "c- b- a-");
    EXPECT_EQ(Sent(WM_MOUSEMOVE), "");
    // Clicks do not ask.
    EXPECT_EQ(Sent(WM_LBUTTONDOWN).substr(0, 9), "a47/1<bc ");
    EXPECT_EQ(after(uncover), kEnterABC);
    // It comes up in the middle of a pass.
    fRecorder.fAnswers = {{"a.", Does(cover)}};
    EXPECT_EQ(Sent(WM_MOUSEMOVE), "a<bc b<c c< c. b. a.");
    fRecorder.fAnswers.clear();
    EXPECT_EQ(Ticked(), "c- b- a-");
    // A control of the window is part of it; a captured mouse is the other's alone.
    HWND control = nullptr;
    EXPECT_EQ(after([&] {
                uncover();
                control = CreateWindowExW(0, L"EDIT", L"", WS_CHILD | WS_VISIBLE, 0, 0, 200, 200, Hwnd(),
                                          nullptr, nullptr, nullptr);
              }),
              kEnterABC);
    SetCapture(control);
    EXPECT_EQ(Sent(WM_MOUSEMOVE), "");
    EXPECT_EQ(Tracked(kNowhere), "");
    ReleaseCapture();
    EXPECT_EQ(Ticked(), "c- b- a-");
    DestroyWindow(control);
  }});
}

TEST_F(MouseTest, ClicksGoToTheFrontAndBack) {
  const std::string kPre = "a47/1<bc b47/1<c c47/1< ";
  RunWithABCD({[&] {
    ExpectAnswers(
        {
            {{}, kPre + "c44/1 b44/1 a44/1"},
            {{{"bpre", Handles()}}, "a47/1<bc b47/1<c"},
            {{{"cpre", Handles()}}, "a47/1<bc b47/1<c c47/1<"},
            {{{"bclick", Handles()}}, kPre + "c44/1 b44/1"},
            {{{"apre", Fails()}, {"cclick", Fails()}}, kPre + "c44/1 b44/1 a44/1"},
            {{{"bclick", {7, kOK, nullptr, false}}}, kPre + "c44/1 b44/1"},
            {{{"apre", Does([] { throw 5; })}}, kPre + "c44/1 b44/1 a44/1"},
        },
        WM_LBUTTONDOWN, kOverABC);
    const std::string kWhere = " in pre-click phase of CMacRootViewBehavior::HandleClick.";
    EXPECT_EQ(fOutput.CountLines("Ignored an exception (std::exception)" + kWhere), 2u);
    EXPECT_EQ(fOutput.CountLines("Ignored an unknown exception" + kWhere), 1u);

    fRecorder.fAnswers.clear();
    Tracked(kOverD);
    EXPECT_EQ(fRecorder.fLastClick.fPosition.fX, fMouse.x);
    EXPECT_EQ(Sent(WM_LBUTTONDBLCLK), "d48/1< d45/1");
    EXPECT_EQ(Sent(WM_RBUTTONDOWN), "d47/2< d44/2");
    EXPECT_EQ(Sent(WM_RBUTTONDBLCLK), "d48/2< d45/2");
    EXPECT_EQ(Sent(WM_LBUTTONUP), "");
    EXPECT_EQ(Sent(WM_RBUTTONUP), "d49/0< d46/0");
    EXPECT_EQ(fRecorder.fLastClick.fTimeMS, static_cast<DWORD>(GetMessageTime()));
  }});
}

TEST_F(MouseTest, AClickMovesTheFocus) {
  constexpr std::uint32_t kFlags = kViewEnabled | kViewFocusable;
  const auto focusView = [&] {
    IView* view = nullptr;
    EXPECT_EQ(WindowOf(Window()).IWindow_GetConceptualFocusView(view), kOK);
    return view ? NamesOf(&view, 1) : "";
  };
  const auto setFocus = [&](IView* view) {
    EXPECT_EQ(WindowOf(Window()).IWindow_SetConceptualFocusView(view), kOK);
  };
  RunWithABCD({[&] {
    for (const char* name : {"a", "b", "d"}) SetFlags(name, kFlags);
    struct FocusCase {
      MouseAnswers fAnswers;
      std::string fFocus;
    };
    const std::vector<FocusCase> cases = {
        {{}, "b"},
        {{{"apre", Handles()}}, "a"},
        {{{"cpre", Handles()}, {"bclick", Handles()}}, "b"},
        {{{"bpre", Fails()}}, "b"},
        {{{"apre", Does([&] { setFocus(&View("d")); })}}, "b"},  // b comes later
        {{{"cpre", Does([&] { setFocus(&View("d")); })}}, "d"},
        {{{"bpre", Does([&] { setFocus(nullptr); })}}, "b"},  // nothing has changed by that
        {{{"apre", Does([&] { SetFlags("b", kViewFocusable); })}}, "a"},
        {{{"bpre", Does([&] {
             Release("c");
             Release("b");
           })}},
         ""},
    };
    for (const FocusCase& testCase : cases) {
      fRecorder.fAnswers = testCase.fAnswers;
      setFocus(nullptr);
      PutUnderMouse(kOverABC);
      Send(WM_LBUTTONDOWN);
      EXPECT_EQ(focusView(), testCase.fFocus) << (&testCase - &cases[0]);
      if (fViews.count("b")) SetFlags("b", kFlags);
    }
  }});
}

TEST_F(MouseTest, TheWheelGoesAlongTheFocusChain) {
  const auto wheel = [&](int delta) {
    fRecorder.Take();
    POINT screen = {150, 150};
    ClientToScreen(Hwnd(), &screen);
    SendMessageW(Hwnd(), WM_MOUSEWHEEL, MAKEWPARAM(0, delta), MAKELPARAM(screen.x, screen.y));
    return fRecorder.Take();
  };
  RunWithABCD({[&] {
    EXPECT_EQ(wheel(120), "");
    SetFlags("c", kViewEnabled | kViewFocusable);
    EXPECT_EQ(WindowOf(Window()).IWindow_SetConceptualFocusView(&View("c")), kOK);
    EXPECT_EQ(wheel(120), "cW1 bW1 aW1");
    EXPECT_EQ(fRecorder.fLastWheel.fType, static_cast<std::uint32_t>(kMouseEventWheel));
    EXPECT_EQ(fRecorder.fLastWheel.fPosition.fX, 150);
    EXPECT_EQ(wheel(60), "cW0 bW0 aW0");
    EXPECT_EQ(wheel(-359), "cW-2 bW-2 aW-2");
    fRecorder.fAnswers = {{"bW", Handles()}};
    EXPECT_EQ(wheel(120), "cW1 bW1");
    fRecorder.fAnswers = {{"cW", Does([&] { Release("c"); })}};
    EXPECT_EQ(wheel(120), "cW1 bW1 aW1 cx");
  }});
}

// The whole road: from the input of the system to the views.
TEST_F(MouseTest, RealInputArrives) {
  const auto press = [&](const std::vector<DWORD>& buttons) {
    POINT place = {kOverD.x + fMoved.x, kOverD.y + fMoved.y};
    ClientToScreen(Hwnd(), &place);
    Click(place, buttons);
  };
  const auto heard = [&](const std::string& words) {
    return PumpUntil(
        [&] { return (" " + fRecorder.fWords + " ").find(" " + words + " ") != std::string::npos; });
  };
  RunWithABCD({[&] {
    PutMouse({kOverD.x + fMoved.x, kOverD.y + fMoved.y});
    EXPECT_TRUE(heard("d< d+ d.")) << fRecorder.fWords;
    press({MOUSEEVENTF_LEFTDOWN, MOUSEEVENTF_LEFTUP, MOUSEEVENTF_LEFTDOWN, MOUSEEVENTF_LEFTUP});
    EXPECT_TRUE(heard("d48/1< d45/1")) << fRecorder.fWords;
    EXPECT_TRUE(heard("d47/1< d44/1")) << fRecorder.fWords;
    press({MOUSEEVENTF_RIGHTDOWN, MOUSEEVENTF_RIGHTUP});
    EXPECT_TRUE(heard("d49/0< d46/0")) << fRecorder.fWords;
    EXPECT_TRUE(heard("d47/2< d44/2")) << fRecorder.fWords;
    PutMouse({-50, 300});
    EXPECT_TRUE(heard("d-")) << fRecorder.fWords;
  }});
}

}  // namespace NSMorvaneTest
