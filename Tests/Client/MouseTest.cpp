// What views hear of the mouse, and in which order.
//
// The views of most tests; the later of two that overlap is in front:
//
//   root
//     a        0..120
//       b     10..110
//         c   20..100
//     d       80..200
#include "Support/MouseFixture.h"

#include <stdexcept>

namespace NSMorvaneTest {

namespace {

constexpr POINT kOverABC = {40, 40};
constexpr POINT kOverAll = {90, 90};
constexpr POINT kOverD = {150, 150};

// What a fresh look at a, b and c gives.
const std::string kShapes = " a?< b?< c?< c? b? a?";
const std::string kEnterABC = "a<bc b<c c< c+ c. b+ b. a+ a." + kShapes;
const std::string kTrackedABC = "a<bc b<c c< c. b. a.";

constexpr TError kClientError = 100001;

Hook Fails() { return Handles(1, kClientError); }

}  // namespace

class MouseTest : public MouseFixture {
 protected:
  void OpenABCD() {
    OpenUnderMouse();
    MakeTracked("a", {0, 0, 120, 120});
    MakeTracked("b", {10, 10, 110, 110}, "a");
    MakeTracked("c", {20, 20, 100, 100}, "b");
    MakeTracked("d", {80, 80, 200, 200});
    StartOver();
  }
  // Each case begins with the mouse inside a, b and c, who then answer differently.
  using AnswerCase = std::pair<std::map<std::string, Hook>, std::string>;
  void ExpectAnswers(const std::vector<AnswerCase>& cases, UINT message) {
    for (const auto& [hooks, words] : cases) {
      StartOver();
      Tracked(kOverABC);
      fHooks = hooks;
      EXPECT_EQ(Sent(message), words) << (hooks.empty() ? "" : hooks.begin()->first);
    }
    StartOver();
  }
  Hook Releases(const std::string& view) {
    return [=, this] { ReleaseView(view); };
  }

  std::map<std::string, Hook>& fHooks = fViewRecord.fHooks;
};

TEST_IN_RUN(MouseTest, ViewsAreWalkedToTheFrontAndBack) {
  OpenABCD();
  EXPECT_EQ(Tracked(kOverABC), kEnterABC);
  // A still mouse over still views is nobody's business; a movement is.
  EXPECT_EQ(Tracked(kOverABC), "");
  EXPECT_EQ(Sent(WM_MOUSEMOVE), kTrackedABC + kShapes);
  EXPECT_EQ(fViewRecord.fTracking.fTimeMS, static_cast<DWORD>(GetMessageTime()));
  EXPECT_EQ(fViewRecord.fTracking.fState.fPosition.fX, fMouse.x);
  EXPECT_EQ(fViewRecord.fShapeRequest.fPosition.fX, fMouse.x);
  EXPECT_EQ(Tracked(kOverAll), "a<bcd b<cd c<d d< d+ d. c. b. a. a?< b?< c?< d?< d? c? b? a?");
  EXPECT_EQ(Tracked(kOverD), "d< d. c- b- a- d?< d?");
  EXPECT_EQ(Tracked(kNowhere), "d-");
  EXPECT_TRUE(PointerIsArrow());

  // Neither a view without hit rectangles nor one that cannot be tracked; what is behind is found.
  MakeTracked("e", {20, 20, 100, 100}, "c").fIsTransparent = true;
  MakeTracked("f", {20, 20, 60, 60}, "e", kViewEnabled);
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
}

TEST_IN_RUN(MouseTest, ViewsClaimEventsAndFail) {
  OpenABCD();
  ExpectAnswers(
      {
          {{{"b<", Handles()}}, "a<bc b<c b. a. c-" + kShapes},
          {{{"a<", Handles()}}, "a<bc a. c- b-" + kShapes},
          {{{"b.", Handles()}}, "a<bc b<c c< c. b. a-" + kShapes},
          {{{"b<", Handles()}, {"b.", Handles()}}, "a<bc b<c b. c- a-" + kShapes},
          {{{"b?<", Handles()}}, kTrackedABC + " a?< b?<"},
          {{{"b?", Handles()}}, kTrackedABC + " a?< b?< c?< c? b?"},
          // A failure costs a view its turn, and what it has claimed, but not the rest.
          {{{"b<", Fails()}, {"c.", Fails()}}, kTrackedABC + kShapes},
          {{{"b?<", Fails()}, {"c?", Fails()}}, kTrackedABC + kShapes},
          {{{"b.", Handles()}, {"a-", Fails()}}, "a<bc b<c c< c. b. a-" + kShapes},
      },
      WM_MOUSEMOVE);
  const auto countIgnored = [this](const std::string& what, const std::string& where) {
    return fOutput.CountLines("Ignored an " + what + " in " + where + ".");
  };
  const std::string failure = "exception (std::exception)";
  for (const char* pass :
       {"pre pass of CWinWindow::DispatchMouseTracking", "normal pass of CWinWindow::DispatchMouseTracking",
        "pre phase of CWinWindow::RefreshMouseShape", "normal phase of CWinWindow::RefreshMouseShape"})
    EXPECT_EQ(countIgnored(failure, pass), 1);
  EXPECT_EQ(
      std::count_if(fOutput.fLines.begin(), fOutput.fLines.end(),
                    [](const std::string& line) {
                      return line.starts_with("[Morvane] The view behavior ") &&
                             line.ends_with(
                                 "returned the error 100001 when IViewBehavior_OnMouseEnterExit was called. "
                                 "The error will be ignored in order to not disrupt the mouse tracking.");
                    }),
      1);

  // Who fails to enter has no turn, but counts as entered.
  fHooks = {{"b+", Fails()}};
  EXPECT_EQ(Tracked(kOverABC), "a<bc b<c c< c+ c. b+ a+ a." + kShapes);
  EXPECT_EQ(Tracked(kNowhere), "c- b- a-");
  // Any other value counts as handled, and is reported.
  fHooks = {{"b<", Handles(2)}, {"b.", Handles()}};
  EXPECT_EQ(Tracked(kOverABC), "a<bc b<c b+ b." + kShapes);
  EXPECT_EQ(fOutput.TakeAssertions(), "(handled == 0) || (handled == 1)");
  // Even what no client should do.
  fHooks = {{"b.", [] { throw std::runtime_error("text"); }}, {"c?", [] { throw 5; }}};
  EXPECT_EQ(Sent(WM_MOUSEMOVE), "a<bc b<c c< c+ c. b. a+ a." + kShapes);
  EXPECT_EQ(countIgnored("exception (text)", "normal pass of CWinWindow::DispatchMouseTracking"), 1);
  EXPECT_EQ(countIgnored("unknown exception", "normal phase of CWinWindow::RefreshMouseShape"), 1);
  fHooks = {{"b-", [] { throw 5; }}};
  EXPECT_EQ(Tracked(kNowhere), "c- b- a-");
  EXPECT_EQ(Tracked(kNowhere), "");
}

TEST_IN_RUN(MouseTest, ViewsGoAndComeDuringAPass) {
  OpenABCD();
  // One that has been released has its turn all the same, and is told no more afterwards.
  fHooks = {{"b<", Releases("c")}};
  EXPECT_EQ(Tracked(kOverABC), "a<bc b<c c< c+ c. b+ b. a+ a. a?< b?< b? a? c:x");
  fHooks = {{"b.", Releases("b")}};
  EXPECT_EQ(Sent(WM_MOUSEMOVE), "a<b b< b. a. b:x a?< a?");
  fHooks = {{"a-", Releases("a")}};
  EXPECT_EQ(Tracked(kOverD), "d< d+ d. a- a:x d?< d?");
  fHooks = {{"d47/1<", Releases("d")}};
  EXPECT_EQ(Sent(WM_LBUTTONDOWN), "d47/1< d44/1 d:x");
  EXPECT_EQ(Sent(WM_MOUSEMOVE), "");
  // Exits of views that release each other.
  MakeTracked("e", {0, 0, 120, 120});
  MakeTracked("f", {0, 0, 120, 120}, "e");
  MakeTracked("g", {0, 0, 120, 120}, "f");
  Tracked(kOverABC);
  fHooks = {{"g-", [this] { ReleaseView("g"), ReleaseView("f"); }}};
  EXPECT_EQ(Tracked(kNowhere), "g- f- e- g:x f:x");
  // Messages in the middle of a pass find it under way.
  Tracked(kOverABC);
  fHooks = {{"e<", [this] { SendMouse(WM_MOUSEMOVE), Tick(); }}, {"e?", [this] { Tick(); }}};
  EXPECT_EQ(Sent(WM_MOUSEMOVE), "e< e?< e? e. e?< e?");
  fHooks = {{"e-", [this] { Turn(); }}};
  EXPECT_EQ(Tracked(kNowhere).substr(0, 2), "e-");
}

TEST_IN_RUN(MouseTest, AWindowOnTopTakesTheMouse) {
  HWND other = nullptr;
  const auto cover = [&] {
    const TRect frame = NativeFrame(Hwnd());
    other = CreateWindowExW(WS_EX_NOACTIVATE | WS_EX_TOPMOST, L"EDIT", L"", WS_POPUP | WS_VISIBLE,
                            frame.fLeft, frame.fTop, 400, 400, nullptr, nullptr, nullptr, nullptr);
  };
  OpenABCD();
  EXPECT_EQ(Tracked(kOverABC), kEnterABC);
  EXPECT_EQ(Ticked(cover), "c- b- a-");
  EXPECT_EQ(Sent(WM_MOUSEMOVE), "");
  EXPECT_EQ(Sent(WM_LBUTTONDOWN).substr(0, 9), "a47/1<bc ");  // clicks do not ask
  EXPECT_EQ(Ticked([&] { DestroyWindow(other); }), kEnterABC);
  // It comes up in the middle of a pass.
  fHooks = {{"a.", cover}};
  EXPECT_EQ(Sent(WM_MOUSEMOVE), kTrackedABC);
  fHooks.clear();
  EXPECT_EQ(Ticked(), "c- b- a-");
  // A control of the window is part of it; a captured mouse is the other's alone.
  EXPECT_EQ(Ticked([&] {
              DestroyWindow(other);
              other = MakeControl();
              MoveWindow(other, 0, 0, 200, 200, FALSE);
            }),
            kEnterABC);
  SetCapture(other);
  EXPECT_EQ(Sent(WM_MOUSEMOVE) + Tracked(kNowhere), "");
  ReleaseCapture();
  EXPECT_EQ(Ticked(), "c- b- a-");
  // It is captured while a view goes that nobody needs any more.
  fHooks = {{"c.", Releases("c")}, {"c:x", [&] { SetCapture(other); }}};
  PutUnderMouse(kOverABC);
  EXPECT_EQ(Sent(WM_MOUSEMOVE), "a<bc b<c c< c+ c. b+ b. a+ a. a?< b?< b? a? c:x");
  ReleaseCapture();
}

TEST_IN_RUN(MouseTest, ClicksGoToTheFrontAndBack) {
  const std::string pre = "a47/1<bc b47/1<c c47/1< ";
  OpenABCD();
  ExpectAnswers(
      {
          {{}, pre + "c44/1 b44/1 a44/1"},
          {{{"b47/1<", Handles()}}, "a47/1<bc b47/1<c"},
          {{{"c47/1<", Handles()}}, "a47/1<bc b47/1<c c47/1<"},
          {{{"b44/1", Handles(7)}}, pre + "c44/1 b44/1"},
          {{{"a47/1<", [] { throw 5; }}, {"c44/1", Fails()}}, pre + "c44/1 b44/1 a44/1"},
      },
      WM_LBUTTONDOWN);
  // Both passes have the same words for it.
  const std::string phase = " in pre-click phase of CMacRootViewBehavior::HandleClick.";
  EXPECT_EQ(fOutput.CountLines("Ignored an exception (std::exception)" + phase), 1);
  EXPECT_EQ(fOutput.CountLines("Ignored an unknown exception" + phase), 1);
  Tracked(kOverD);
  EXPECT_EQ(fViewRecord.fClick.fPosition.fX, fMouse.x);
  const std::pair<UINT, const char*> rows[] = {{WM_LBUTTONDBLCLK, "d48/1< d45/1"},
                                               {WM_RBUTTONDOWN, "d47/2< d44/2"},
                                               {WM_RBUTTONDBLCLK, "d48/2< d45/2"},
                                               {WM_LBUTTONUP, ""},
                                               {WM_RBUTTONUP, "d49/0< d46/0"}};
  for (const auto& [message, words] : rows) EXPECT_EQ(Sent(message), words);
  EXPECT_EQ(fViewRecord.fClick.fTimeMS, static_cast<DWORD>(GetMessageTime()));
}

TEST_IN_RUN(MouseTest, AClickMovesTheFocus) {
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
  OpenABCD();
  for (const auto& [hooks, focus] : cases) {
    for (const char* name : {"a", "b", "d"}) SetFlags(name, kFlags);
    fHooks = hooks;
    SetFocus("");
    PutUnderMouse(kOverABC);
    SendMouse(WM_LBUTTONDOWN);
    EXPECT_EQ(Focus(), focus) << (hooks.empty() ? "" : hooks.begin()->first);
  }
}

namespace {

int gWheelsOfSystem = 0;

LRESULT CALLBACK CountWheels(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
  gWheelsOfSystem += message == WM_MOUSEWHEEL;
  return DefWindowProcW(hwnd, message, wParam, lParam);
}

}  // namespace

TEST_IN_RUN(MouseTest, TheWheelGoesAlongTheFocusChain) {
  const auto wheel = [this](int delta) {
    const POINT place = OnScreen({150, 150});
    return ViewCallsOf([&] { Send(WM_MOUSEWHEEL, MAKEWPARAM(0, delta), MAKELPARAM(place.x, place.y)); });
  };
  OpenABCD();
  EXPECT_EQ(wheel(120), "");
  SetFlags("c", kViewEnabled | kViewFocusable);
  SetFocus("c");
  EXPECT_EQ(wheel(120), "cW1 bW1 aW1");
  EXPECT_EQ(fViewRecord.fWheel.fPosition.fX, 150);
  EXPECT_EQ(wheel(-359), "cW-2 bW-2 aW-2");
  // The system passes it on to a parent window, unless somebody takes it.
  const HWND parent =
      CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
  SetWindowLongPtrW(parent, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(CountWheels));
  const LONG style = GetWindowLongW(Hwnd(), GWL_STYLE);
  SetWindowLongW(Hwnd(), GWL_STYLE, style | WS_CHILD);
  SetParent(Hwnd(), parent);
  EXPECT_EQ(wheel(120), "cW1 bW1 aW1");
  EXPECT_EQ(gWheelsOfSystem, 1);
  fHooks = {{"bW", Handles()}};
  EXPECT_EQ(wheel(120), "cW1 bW1");
  EXPECT_EQ(gWheelsOfSystem, 1);
  SetParent(Hwnd(), nullptr);
  SetWindowLongW(Hwnd(), GWL_STYLE, style);
  DestroyWindow(parent);
  fHooks = {{"cW", Releases("c")}};
  EXPECT_EQ(wheel(120), "cW1 bW1 aW1 c:x");  // no longer active
}

// The whole road: from the input of the system to the views.
TEST_IN_RUN(MouseTest, RealInputArrives) {
  OpenABCD();
  const POINT place = OnScreen({kOverD.x + fMoved.x, kOverD.y + fMoved.y});
  std::string words;
  const auto heard = [&](const std::string& wanted) {
    return YieldUntil([&] {
      words += " " + ViewCalls();
      return (words + " ").find(" " + wanted + " ") != std::string::npos;
    });
  };
  PutMouse(place);
  EXPECT_TRUE(heard("d< d+ d.")) << words;
  Click(place, {MOUSEEVENTF_LEFTDOWN, MOUSEEVENTF_LEFTUP, MOUSEEVENTF_LEFTDOWN, MOUSEEVENTF_LEFTUP});
  EXPECT_TRUE(heard("d47/1< d44/1")) << words;
  EXPECT_TRUE(heard("d48/1< d45/1")) << words;
  Click(place, {MOUSEEVENTF_RIGHTDOWN, MOUSEEVENTF_RIGHTUP});
  EXPECT_TRUE(heard("d47/2< d44/2")) << words;
  EXPECT_TRUE(heard("d49/0< d46/0")) << words;
  PutMouse(OnScreen({-50, 300}));
  EXPECT_TRUE(heard("d-")) << words;
}

}  // namespace NSMorvaneTest
