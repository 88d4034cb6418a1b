// The mouse capture, the shape of the mouse, and what the root object tells of the mouse.
#include "Support/RecordingMouse.h"

namespace NSMorvaneTest {

namespace {

constexpr POINT kInside = {50, 50};

}  // namespace

class MouseCaptureTest : public MouseClientTest {
 protected:
  // One view, a.
  void RunWithView(Steps steps) {
    RunWithMouse([this] { Make("a", RootViewOf(Window()), {0, 0, 100, 100}); }, std::move(steps));
  }
  TError Allocate(IMouseCapture* capture) {
    return fMorvane->IMorvane_AllocateMouseCapture(&WindowOf(Window()), capture);
  }
  void Capture() { EXPECT_EQ(Allocate(new RecordingCapture(fRecorder)), kOK); }
  TError ReleaseMouse() { return fMorvane->IMorvane_ReleaseMouseCapture(); }
  std::string After(const std::function<void()>& action) {
    fRecorder.Take();
    action();
    return fRecorder.Take();
  }
};

TEST_F(MouseCaptureTest, TheCaptureGetsEverything) {
  RunWithView({[&] {
    EXPECT_EQ(ReleaseMouse(), kOK);
    Tracked(kInside);
    SetFlags("a", kViewEnabled | kViewMouseTrackable | kViewFocusable);
    EXPECT_EQ(WindowOf(Window()).IWindow_SetConceptualFocusView(&View("a")), kOK);
    Capture();
    EXPECT_EQ(GetCapture(), Hwnd());
    EXPECT_EQ(Sent(WM_MOUSEMOVE), "@. @?");
    EXPECT_EQ(fRecorder.fLastTracking.fState.fPosition.fX, fMouse.x);
    EXPECT_EQ(Tracked(kNowhere), "");  // moving views are not its business
    EXPECT_EQ(Sent(WM_LBUTTONDOWN), "@44/1");
    EXPECT_EQ(Sent(WM_LBUTTONDBLCLK), "@45/1");
    EXPECT_EQ(Sent(WM_LBUTTONUP), "@^44/1");
    EXPECT_EQ(Sent(WM_RBUTTONUP), "@^44/2 @46/0");
    EXPECT_EQ(Sent(WM_MOUSEWHEEL, MAKEWPARAM(0, 240)), "@W2 aW2");
    fRecorder.fAnswers["@W"].fHandled = 1;
    EXPECT_EQ(Sent(WM_MOUSEWHEEL, MAKEWPARAM(0, 240)), "@W2");

    // There is only one, and a second one stays its client's.
    RecordingCapture second(fRecorder);
    EXPECT_EQ(Allocate(&second), kIllegalCallSequenceProgrammingError);
    EXPECT_TRUE(fOutput.HasLine("There can only be one mouse capture at a time."));
    EXPECT_EQ(fOutput.TakeAssertions(), CallLog{"false"});
    EXPECT_EQ(Sent(WM_LBUTTONUP), "@^44/1");

    EXPECT_EQ(After([&] { EXPECT_EQ(ReleaseMouse(), kOK); }), "@x");
    EXPECT_EQ(GetCapture(), nullptr);
    EXPECT_EQ(Sent(WM_MOUSEMOVE), "a-");
    EXPECT_EQ(ReleaseMouse(), kOK);
  }});
}

TEST_F(MouseCaptureTest, CapturesEndInManyWays) {
  HWND other = nullptr;
  RunWithView({[&] {
    other = CreateWindowExW(0, L"EDIT", L"", WS_CHILD, 0, 0, 9, 9, Hwnd(), nullptr, nullptr, nullptr);
    // Somebody else takes the mouse.
    Capture();
    EXPECT_EQ(After([&] { SetCapture(other); }), "@x");
    ReleaseCapture();
    // The next one is welcome, and ends itself in the middle of a call.
    Capture();
    fRecorder.fAnswers["@^"].fDo = [&] { EXPECT_EQ(ReleaseMouse(), kOK); };
    EXPECT_EQ(Sent(WM_LBUTTONUP), "@^44/1 @x");
    // One that loses the mouse in the middle of a call, and one that fails.
    Capture();
    fRecorder.fAnswers["@."].fDo = [&] { SetCapture(other); };
    EXPECT_EQ(Sent(WM_MOUSEMOVE), "@. @x");
    ReleaseCapture();
    fRecorder.fAnswers.clear();
    // A view takes it in a click, and so hears of no more.
    Tracked(kInside);
    fRecorder.fAnswers["aclick"].fDo = [&] { Capture(); };
    EXPECT_EQ(Sent(WM_LBUTTONDOWN), "a47/1< a44/1");
    EXPECT_EQ(Sent(WM_LBUTTONUP), "@^44/1");
    EXPECT_EQ(After([&] { ReleaseMouse(); }), "@x");
    // A view takes it in the middle of a pass.
    fRecorder.fAnswers["a<"].fDo = [&] { Capture(); };
    EXPECT_EQ(Sent(WM_MOUSEMOVE), "a< a. @?");
    EXPECT_EQ(After([&] { ReleaseMouse(); }), "@x");
    fRecorder.fAnswers.clear();
    // The system has the mouse, to move this window: a press does not come to a view that would take it.
    ReleaseCapture();
    SetCapture(Hwnd());
    EXPECT_EQ(Sent(WM_LBUTTONDOWN), "");
    EXPECT_EQ(Sent(WM_LBUTTONUP), "");
    ReleaseCapture();
    // The window ends.
    Capture();
    fRecorder.fAnswers["@x"].fDo = [&] { EXPECT_EQ(GetCapture(), nullptr); };
    Release("a");
    EXPECT_EQ(After([&] { Window().IDocumentWindow_Release(); }), "@x");
    EXPECT_EQ(ReleaseMouse(), kOK);
  }});
}

TEST_F(MouseCaptureTest, AFailingCaptureIsReported) {
  fHooks.fOnUnhandledError = [](TError error) { EXPECT_EQ(error, 100001u); };
  RunFrom([=, this] {
    Create(kWindowResizableBit, fRecord);
    Then([=, this] {
      Capture();
      fRecorder.fAnswers["@^"].fError = 100001;
      EXPECT_EQ(Sent(WM_RBUTTONUP), "@^44/2");  // and no context click
      fLog.clear();
    });
    Then([this] {
      EXPECT_EQ(fLog, CallLog{"OnUnhandledError 100001"});
      EXPECT_EQ(ReleaseMouse(), kOK);
      Quit();
    });
  });
}

TEST_F(MouseCaptureTest, TheShapeFollowsItsArbitration) {
  RunWithView({[&] {
    const auto makeShape = [&](TBuiltInMouseShape number) {
      TError error = kOtherError;
      IMouseShape* const shape = fMorvane->IMorvane_CreateBuiltInMouseShape(number, error);
      EXPECT_EQ(error, kOK);
      return std::unique_ptr<IMouseShape>(shape);
    };
    const auto arbitrate = [&] {
      return After([&] { EXPECT_EQ(fMorvane->IMorvane_RequestMouseShapeArbitration(), kOK); });
    };
    const auto setCursorMessage = [&](WORD hitCode) {
      return SendMessageW(Hwnd(), WM_SETCURSOR, reinterpret_cast<WPARAM>(Hwnd()),
                          MAKELPARAM(hitCode, WM_MOUSEMOVE));
    };
    Tracked(kInside);
    EXPECT_TRUE(PointerIsArrow());
    fRecorder.fAnswers["a?<"].fGivesShape = true;
    EXPECT_EQ(arbitrate(), "a?< a?");  // the last answer counts, and it is none
    EXPECT_TRUE(PointerIsArrow());
    fRecorder.fAnswers["a?"].fGivesShape = true;
    EXPECT_EQ(arbitrate(), "a?< a?");
    EXPECT_TRUE(PointerIs(IDC_HAND));
    fRecorder.fAnswers.clear();
    fRecorder.fAnswers["a?<"].fGivesShape = true;
    fRecorder.fAnswers["a?<"].fHandled = 1;
    EXPECT_EQ(arbitrate(), "a?<");
    EXPECT_TRUE(PointerIs(IDC_HAND));

    // The pointer comes back as it was when the system asks; the override goes before it.
    SetCursor(nullptr);
    EXPECT_EQ(setCursorMessage(HTCLIENT), 1);
    EXPECT_TRUE(PointerIs(IDC_HAND));
    std::unique_ptr<IMouseShape> wait = makeShape(kMouseShapeWait);
    EXPECT_EQ(fMorvane->IMorvane_SetOverrideMouseShape(wait.get()), kOK);
    EXPECT_TRUE(PointerIs(IDC_WAIT));
    EXPECT_EQ(arbitrate(), "a?<");
    EXPECT_TRUE(PointerIs(IDC_WAIT));
    SetCursor(nullptr);
    EXPECT_EQ(setCursorMessage(HTCLIENT), 1);
    EXPECT_TRUE(PointerIs(IDC_WAIT));
    wait.reset();  // the pointer does not need it any more
    EXPECT_EQ(fMorvane->IMorvane_SetOverrideMouseShape(nullptr), kOK);
    EXPECT_TRUE(PointerIs(IDC_WAIT));
    EXPECT_EQ(arbitrate(), "a?<");
    EXPECT_TRUE(PointerIs(IDC_HAND));

    // A capture is asked instead, and leaves the pointer as it is if it does not care.
    Capture();
    EXPECT_EQ(arbitrate(), "@?");
    EXPECT_TRUE(PointerIs(IDC_HAND));
    ReleaseMouse();
    fRecorder.fAnswers.clear();
    EXPECT_EQ(arbitrate(), "a?< a?");
    EXPECT_TRUE(PointerIsArrow());
    Capture();
    fRecorder.fAnswers["@?"].fGivesShape = true;
    EXPECT_EQ(arbitrate(), "@?");
    EXPECT_TRUE(PointerIs(IDC_HAND));
    ReleaseMouse();

    // Shapes of another make have no cursor.
    class ForeignShape : public IMouseShape {
      std::uint32_t IMouseShape_CheckInvariant() const override { return 1; }
      IMouseShape* IMouseShape_Clone(TError& outError) const override {
        outError = kOtherError;
        return nullptr;
      }
    } foreign;
    EXPECT_EQ(fMorvane->IMorvane_SetOverrideMouseShape(&foreign), kBadInputProgrammingError);
  }});
}

TEST_F(MouseCaptureTest, TheStateOfTheMouseIsSampled) {
  RunWithView({[&] {
    TMouseState state = {};
    const auto becomes = [&](std::uint32_t buttons, std::uint32_t keys) {
      return PumpUntil([&] {
        EXPECT_EQ(fMorvane->IMorvane_SampleMouseState(state, &WindowOf(Window())), kOK);
        return state.fButtons == buttons && state.fModifiers.fKeys == keys;
      });
    };
    EXPECT_TRUE(becomes(0, 0));
    EXPECT_EQ(state.fPosition.fX, fMouse.x);
    EXPECT_EQ(state.fPosition.fY, fMouse.y);
    POINT screen = fMouse;
    ClientToScreen(Hwnd(), &screen);
    EXPECT_EQ(fMorvane->IMorvane_SampleMouseState(state, nullptr), kOK);
    EXPECT_EQ(state.fPosition.fX, screen.x);
    SendInputs({KeyInput(VK_SHIFT), ButtonInput(MOUSEEVENTF_LEFTDOWN)});
    EXPECT_TRUE(becomes(1, kModifierShift));
    SendInputs({ButtonInput(MOUSEEVENTF_MIDDLEDOWN)});
    EXPECT_TRUE(becomes(3, kModifierShift));
    SendInputs({ButtonInput(MOUSEEVENTF_LEFTUP), ButtonInput(MOUSEEVENTF_MIDDLEUP),
                ButtonInput(MOUSEEVENTF_RIGHTDOWN), KeyInput(VK_SHIFT, KEYEVENTF_KEYUP)});
    EXPECT_TRUE(becomes(2, 0));
    SendInputs({ButtonInput(MOUSEEVENTF_RIGHTUP)});
    EXPECT_TRUE(becomes(0, 0));
  }});
}

TEST_F(MouseCaptureTest, PressesBecomeDragsOrNot) {
  struct DragCase {
    std::uint32_t fType;
    std::uint32_t fButtons;
    std::vector<std::pair<UINT, POINT>> fMessages;  // with the distance from the press
    TClickDragResult fResult;
    UINT fLeft;  // the message that stays in the queue
  };
  const std::vector<DragCase> cases = {
      {kMouseEventClick,
       1,
       {{WM_MOUSEMOVE, {2, 0}}, {WM_LBUTTONUP, {2, 0}}},
       kClickDragReleased,
       WM_LBUTTONUP},
      {kMouseEventDoubleClick, 1, {{WM_LBUTTONUP, {0, 0}}}, kClickDragReleased, WM_LBUTTONUP},
      {kMouseEventClick, 2, {{WM_RBUTTONUP, {9, 9}}}, kClickDragReleased, WM_RBUTTONUP},
      {kMouseEventClick, 1, {{WM_MOUSEMOVE, {3, 0}}}, kClickDragDragged, 0},
      {kMouseEventClick, 2, {{WM_MOUSEMOVE, {0, 3}}}, kClickDragDragged, 0},
      {kMouseEventClick, 1, {{WM_MOUSEMOVE, {0, -4}}}, kClickDragDragged, 0},
      {kMouseEventClick,
       1,
       {{WM_MOUSEMOVE, {-3, -3}}, {WM_LBUTTONUP, {0, 0}}},
       kClickDragReleased,
       WM_LBUTTONUP},
      {kMouseEventClick,
       1,
       {{WM_RBUTTONDOWN, {0, 0}}, {WM_LBUTTONUP, {0, 0}}},
       kClickDragReleased,
       WM_LBUTTONUP},
      {kMouseEventClick, 1, {{WM_RBUTTONUP, {0, 0}}, {WM_LBUTTONUP, {0, 0}}}, kClickDragHeld, WM_RBUTTONUP},
      {kMouseEventClick, 1, {}, kClickDragHeld, 0},
      {kMouseEventDoubleClick, 2, {{WM_RBUTTONUP, {0, 0}}}, kClickDragNotApplicable, WM_RBUTTONUP},
      {kMouseEventPreClick, 1, {}, kClickDragNotApplicable, 0},
      {kMouseEventContextClick, 0, {}, kClickDragNotApplicable, 0},
  };
  RunWithView({[&] {
    for (const DragCase& testCase : cases) {
      const auto which = &testCase - &cases[0];
      MSG message = {};
      while (PeekMessageW(&message, Hwnd(), WM_MOUSEFIRST, WM_MOUSELAST, PM_REMOVE)) continue;
      for (const auto& [number, distance] : testCase.fMessages)
        PostMessageW(Hwnd(), number, 0, MAKELPARAM(fMouse.x + distance.x, fMouse.y + distance.y));
      TMouseEvent event = {};
      event.fType = testCase.fType;
      event.fTimeMS = GetTickCount();
      event.fButtons = testCase.fButtons;
      event.fPosition = {fMouse.x, fMouse.y};
      TClickDragResult result = {};
      EXPECT_EQ(fMorvane->IMorvane_CheckForClickDragOperation(WindowOf(Window()), event, result), kOK);
      EXPECT_EQ(result, testCase.fResult) << which;
      const DWORD time = GetTickCount() - static_cast<DWORD>(event.fTimeMS);
      EXPECT_EQ(time > 500, testCase.fResult == kClickDragHeld) << which;
      message = {};
      PeekMessageW(&message, Hwnd(), WM_MOUSEFIRST, WM_MOUSELAST, PM_NOREMOVE);
      EXPECT_EQ(message.message, testCase.fLeft) << which;
    }
  }});
}

}  // namespace NSMorvaneTest
