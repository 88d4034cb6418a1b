// The roads of the mouse, from the messages of the system to the views. What views hear of it, and in which
// order, is tested with the dispatch.
#include "Support/MouseFixture.h"

namespace NSMorvaneTest {

namespace {

constexpr POINT kOverABC = {40, 40};
constexpr POINT kOverD = {150, 150};

}  // namespace

class MouseTest : public MouseFixture {
 protected:
  void OpenABCD() {
    OpenUnderMouse();
    for (const auto& [name, rect, superView] : kMouseViews) MakeTracked(name, rect, superView);
    StartOver();
  }

  // Another window on top, over all views.
  HWND Cover() {
    const TRect frame = NativeFrame(Hwnd());
    return CreateWindowExW(WS_EX_NOACTIVATE | WS_EX_TOPMOST, L"EDIT", L"", WS_POPUP | WS_VISIBLE, frame.fLeft,
                           frame.fTop, 400, 400, nullptr, nullptr, nullptr, nullptr);
  }

  std::map<std::string, Hook>& fHooks = fViewRecord.fHooks;
};

TEST_IN_RUN(MouseTest, EveryMessageHasItsRoad) {
  OpenABCD();
  EXPECT_EQ(Tracked(kOverABC), kEnterABC);
  EXPECT_EQ(Sent(WM_MOUSEMOVE), kTrackedABC + kShapesOfABC);
  EXPECT_EQ(fViewRecord.fTracking.fTimeMS, static_cast<DWORD>(GetMessageTime()));
  EXPECT_EQ(fViewRecord.fTracking.fState.fPosition.fX, fMouse.x);
  EXPECT_EQ(fViewRecord.fShapeRequest.fPosition.fX, fMouse.x);
  EXPECT_EQ(Tracked(kNowhere), "c- b- a-");
  EXPECT_TRUE(PointerIsArrow());
  Tracked(kOverD);
  const std::pair<UINT, const char*> rows[] = {{WM_LBUTTONDOWN, "d47/1< d44/1"},
                                               {WM_LBUTTONDBLCLK, "d48/1< d45/1"},
                                               {WM_RBUTTONDOWN, "d47/2< d44/2"},
                                               {WM_RBUTTONDBLCLK, "d48/2< d45/2"},
                                               {WM_LBUTTONUP, ""},
                                               {WM_RBUTTONUP, "d49/0< d46/0"}};
  for (const auto& [message, words] : rows) EXPECT_EQ(Sent(message), words);
  EXPECT_EQ(fViewRecord.fClick.fPosition.fX, fMouse.x);
  EXPECT_EQ(fViewRecord.fClick.fTimeMS, static_cast<DWORD>(GetMessageTime()));
  SetFlags("d", kTrackable | kViewFocusable);
  SendMouse(WM_LBUTTONDOWN);
  EXPECT_EQ(Focus(), "d");
  // What a view does in the middle of a pass finds that under way, a turn of the loop included.
  fHooks = {{"d.", [this] { SendMouse(WM_MOUSEMOVE), Tick(); }}};
  EXPECT_EQ(Sent(WM_MOUSEMOVE), "d< d. d?< d? d?< d?");
  fHooks = {{"d-", [this] { Turn(); }}};
  EXPECT_EQ(Tracked(kNowhere).substr(0, 2), "d-");
}

// With nearly every message the views are asked where they can be hit. Who fails then keeps no message from
// its road.
TEST_IN_RUN(MouseTest, AViewThatFailsUnderTheMouseStopsNothing) {
  struct Behavior : CDefaultViewBehavior {
    explicit Behavior(IView&) {}
    TError IViewBehavior_GetHitRects(IRectsGetter&) override { return 100001; }
  };
  OpenABCD();
  SetFlags("d", kTrackable | kViewFocusable);
  SetFocus("d");
  PutUnderMouse(kOverABC);
  CViewFactory<Behavior> factory;
  TError error = kOtherError;
  IView* const view =
      fMorvane->IMorvane_CreateView(factory, RootViewOf(*fRecord.fDocument), "failing", error);
  EXPECT_EQ(view->IView_SetParams({kTrackable, {0, 0, 5000, 5000}, kViewDrawDirect, kAutoInvalidationFull}),
            kOK);
  EXPECT_EQ(Ticked(), kEnterABC);
  EXPECT_EQ(ViewCallsOf([this] { Send(WM_KEYDOWN, 'A'); }), "d:key");
  EXPECT_EQ(view->IView_Release(), kOK);
}

TEST_IN_RUN(MouseTest, AWindowOnTopTakesTheMouse) {
  HWND other = nullptr;
  const auto cover = [&] { other = Cover(); };
  OpenABCD();
  EXPECT_EQ(Tracked(kOverABC), kEnterABC);
  // The pointer over it is not this window's.
  const HCURSOR cross = LoadCursorW(nullptr, IDC_CROSS);
  EXPECT_EQ(Ticked([&] { cover(), SetCursor(cross); }), "c- b- a-");
  EXPECT_EQ(Sent(WM_MOUSEMOVE), "");
  EXPECT_EQ(GetCursor(), cross);
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
}

// A message of the mouse is a look at where the mouse is, and then at where the message says. Whoever is
// called at the first may take the mouse from the second.
TEST_IN_RUN(MouseTest, WhatHasChangedBetweenTwoLooks) {
  const std::string look = "d< d+ d. d?< d?", move = "a<bc b<c c< c+ c. b+ b. a+ a. d-" + kShapesOfABC;
  const HCURSOR cross = LoadCursorW(nullptr, IDC_CROSS);
  OpenABCD();
  const HWND control = MakeControl();
  ShowWindow(control, SW_HIDE);
  HWND other = nullptr;
  const std::function<void()> takeAway = [=] { SetCapture(control); }, cover = [&] { other = Cover(); };
  // While the mouse is over d, a message tells of the place where a, b and c are.
  const auto moved = [&](const std::map<std::string, Hook>& hooks) {
    StartOver();
    PutUnderMouse(kOverD);
    fHooks = hooks;
    const LONG x = fMouse.x - kOverD.x + kOverABC.x, y = fMouse.y - kOverD.y + kOverABC.y;
    const std::string words = ViewCallsOf([&] { Send(WM_MOUSEMOVE, 0, MAKELPARAM(x, y)); });
    fHooks.clear();
    ReleaseCapture();
    if (other) DestroyWindow(std::exchange(other, nullptr));
    return words;
  };
  EXPECT_EQ(moved({}), look + " " + move);
  for (const auto& [change, exit] : {std::pair(takeAway, ""), {cover, " d-"}}) {
    EXPECT_EQ(moved({{"d+", change}}), std::string("d< d+ d.") + exit);
    EXPECT_EQ(moved({{"d?", change}}), look + exit);
    EXPECT_EQ(moved({{"d?<", change}}), look + exit);
  }
  // The pointer is set twice. It may not be the first one any more.
  moved({{"a.", [=] { SetCursor(cross); }}});
  EXPECT_TRUE(PointerIsArrow());
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
  SetFlags("c", kViewEnabled | kViewFocusable);
  SetFocus("c");
  EXPECT_EQ(wheel(-359), "cW-2 bW-2 aW-2");
  // Small turns add up, in one direction and while the window is active.
  for (const auto& [delta, notches] : Rows<int, const char*>{
           {-1, "-1"}, {-119, "0"}, {60, "0"}, {60, "1"}, {119, "0"}, {0, "0"}, {250, "3"}, {100, "0"}})
    EXPECT_TRUE(wheel(delta).starts_with("cW" + std::string(notches) + " ")) << delta;
  Send(WM_ACTIVATE, WA_INACTIVE);
  EXPECT_EQ(wheel(100).substr(0, 3), "cW0");
  Send(WM_ACTIVATE, WA_ACTIVE);
  EXPECT_EQ(fViewRecord.fWheel.fPosition.fX, 150);
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
}

// The whole road: from the input of the system to the views.
TEST_IN_RUN(MouseTest, RealInputArrives) {
  OpenABCD();
  const POINT place = OnScreen({kOverD.x + fMoved.x, kOverD.y + fMoved.y});
  std::string words;
  const auto expectHeard = [&](const std::vector<std::string>& all) {
    for (const std::string& wanted : all)
      EXPECT_TRUE(YieldUntil([&] {
        words += " " + ViewCalls();
        return (words + " ").find(" " + wanted + " ") != std::string::npos;
      })) << wanted
          << " is not in" << words;
  };
  PutMouse(place);
  expectHeard({"d< d+ d."});
  Click(place, {MOUSEEVENTF_LEFTDOWN, MOUSEEVENTF_LEFTUP, MOUSEEVENTF_LEFTDOWN, MOUSEEVENTF_LEFTUP});
  expectHeard({"d47/1< d44/1", "d48/1< d45/1"});
  Click(place, {MOUSEEVENTF_RIGHTDOWN, MOUSEEVENTF_RIGHTUP});
  expectHeard({"d47/2< d44/2", "d49/0< d46/0"});
  PutMouse(OnScreen({-50, 300}));
  expectHeard({"d-"});
}

}  // namespace NSMorvaneTest
