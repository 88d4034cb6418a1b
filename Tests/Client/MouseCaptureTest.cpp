// The mouse capture, the shape of the mouse, and what the root object tells of the mouse.
#include "Support/MouseFixture.h"
#include "Support/PatchedImport.h"

namespace NSMorvaneTest {

class MouseCaptureTest : public MouseFixture {
 protected:
  static constexpr POINT kInside = {50, 50};

  // One view, a.
  void OpenWithView() {
    OpenUnderMouse();
    MakeTracked("a", {0, 0, 100, 100});
    StartOver();
  }
  TError Allocate(IMouseCapture* capture) {
    return fMorvane->IMorvane_AllocateMouseCapture(&Window(), capture);
  }
  void Capture() { EXPECT_EQ(Allocate(new RecordingCapture(fViewRecord)), kOK); }
  static LRESULT CALLBACK ReleaseOnLoss(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CAPTURECHANGED)
      Release(*reinterpret_cast<WindowRecord*>(GetWindowLongPtrW(hwnd, GWLP_USERDATA)));
    return DefWindowProcW(hwnd, message, wParam, lParam);
  }
  void ReleaseMouse() { EXPECT_EQ(fMorvane->IMorvane_ReleaseMouseCapture(), kOK); }
  std::string ReleaseCalls() {
    return ViewCallsOf([this] { ReleaseMouse(); });
  }
  std::string ArbitrationCalls() {
    return ViewCallsOf([this] { EXPECT_EQ(fMorvane->IMorvane_RequestMouseShapeArbitration(), kOK); });
  }
};

// What a capture takes is tested with the dispatch.
TEST_IN_RUN(MouseCaptureTest, TheCaptureGetsEverything) {
  OpenWithView();
  Tracked(kInside);
  SetFlags("a", kTrackable | kViewFocusable);
  SetFocus("a");
  Capture();
  EXPECT_EQ(GetCapture(), Hwnd());
  for (const auto& [message, words] : {std::pair(WM_MOUSEMOVE, "@. @?"),
                                       {WM_LBUTTONDOWN, "@44/1"},
                                       {WM_LBUTTONDBLCLK, "@45/1"},
                                       {WM_LBUTTONUP, "@^44/1"},
                                       {WM_RBUTTONUP, "@^44/2 @46/0"}})
    EXPECT_EQ(Sent(message), words);
  EXPECT_EQ(Sent(WM_MOUSEWHEEL, MAKEWPARAM(0, 240)), "@W2 aW2");
  EXPECT_EQ(fViewRecord.fTracking.fState.fPosition.fX, fMouse.x);
  // There is only one, and a second one stays its client's.
  RecordingCapture second(fViewRecord);
  EXPECT_EQ(Allocate(&second), kIllegalCallSequenceProgrammingError);
  EXPECT_EQ(fOutput.TakeAssertions(), "false");
  // A failure uses the message up, and so there is no context click.
  fViewRecord.fHooks["@^44/2"] = TError(100001);
  EXPECT_EQ(Sent(WM_RBUTTONUP), "@^44/2");
  ExpectReported(100001);

  EXPECT_EQ(ReleaseCalls(), "@:x");
  EXPECT_EQ(GetCapture(), nullptr);
  EXPECT_EQ(ReleaseCalls(), "");  // there is none
}

TEST_IN_RUN(MouseCaptureTest, CapturesEndInManyWays) {
  OpenWithView();
  const HWND other = MakeControl();
  ShowWindow(other, SW_HIDE);
  const auto takeAway = [=] { SetCapture(other); };
  const Hook capture = [this] { Capture(); };
  // Somebody else takes the mouse.
  Capture();
  EXPECT_EQ(ViewCallsOf(takeAway), "@:x");
  ReleaseCapture();
  // The next one is welcome. It ends itself in the middle of a call, or loses the mouse there.
  Capture();
  fViewRecord.fHooks = {{"@^44/1", [this] { ReleaseMouse(); }}, {"@.", takeAway}};
  EXPECT_EQ(Sent(WM_LBUTTONUP), "@^44/1 @:x");
  Capture();
  EXPECT_EQ(Sent(WM_MOUSEMOVE), "@. @:x");
  ReleaseCapture();
  // A view takes it in a click, and so hears of no more; or in the middle of a pass.
  Tracked(kInside);
  fViewRecord.fHooks = {{"a44/1", capture}};
  EXPECT_EQ(Sent(WM_LBUTTONDOWN), "a47/1< a44/1");
  EXPECT_EQ(Sent(WM_LBUTTONUP), "@^44/1");
  EXPECT_EQ(ReleaseCalls(), "@:x");
  fViewRecord.fHooks = {{"a<", capture}};
  EXPECT_EQ(Sent(WM_MOUSEMOVE), "a< a. @?");
  EXPECT_EQ(ReleaseCalls(), "@:x");
  fViewRecord.fHooks.clear();
  // Somebody else has the mouse, say to move this window: presses come to the views all the same.
  SetCapture(Hwnd());
  EXPECT_EQ(Sent(WM_LBUTTONDOWN), "a47/1< a44/1");
  EXPECT_EQ(Sent(WM_LBUTTONUP), "");
  ReleaseCapture();
  // A window ends while the mouse is being taken for it.
  Do("+doc");
  WindowRecord& gone = fWindows["doc"];
  SetWindowLongPtrW(other, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&gone));
  SetWindowLongPtrW(other, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(ReleaseOnLoss));
  SetCapture(other);
  EXPECT_EQ(fMorvane->IMorvane_AllocateMouseCapture(gone.fWindow, new RecordingCapture(fViewRecord)), kOK);
  EXPECT_EQ(gone.fLog.Last(), "deleted");
  EXPECT_EQ(GetCapture(), nullptr);
  // The window ends.
  Capture();
  fViewRecord.fHooks["@:x"] = [] { EXPECT_EQ(GetCapture(), nullptr); };
  ReleaseView("a");
  EXPECT_EQ(ViewCallsOf([this] { Release(fRecord); }), "@:x");
  ReleaseMouse();
}

TEST_IN_RUN(MouseCaptureTest, TheShapeFollowsItsArbitration) {
  OpenWithView();
  const auto cursorOver = [this](int hit) {
    SetCursor(nullptr);
    EXPECT_EQ(Send(WM_SETCURSOR, reinterpret_cast<WPARAM>(Hwnd()), MAKELPARAM(hit, WM_MOUSEMOVE)), 1);
    return GetCursor();
  };
  auto& shapes = fViewRecord.fShapes;
  Tracked(kInside);
  EXPECT_TRUE(PointerIsArrow());
  shapes["a?"] = kMouseShapeHand;
  EXPECT_EQ(ArbitrationCalls(), "a?< a?");
  EXPECT_TRUE(PointerIs(IDC_HAND));
  // The pointer comes back as it was when the system asks; the override goes before it, and lasts until the
  // next arbitration.
  EXPECT_EQ(cursorOver(HTGROWBOX), LoadCursorW(nullptr, IDC_SIZENWSE));
  cursorOver(HTCLIENT);
  EXPECT_TRUE(PointerIs(IDC_HAND));
  TError error = kOtherError;
  std::unique_ptr<IMouseShape> wait(fMorvane->IMorvane_CreateBuiltInMouseShape(kMouseShapeWait, error));
  EXPECT_EQ(fMorvane->IMorvane_SetOverrideMouseShape(wait.get()), kOK);
  EXPECT_EQ(ArbitrationCalls(), "a?< a?");
  EXPECT_TRUE(PointerIs(IDC_WAIT));
  cursorOver(HTCLIENT);
  EXPECT_TRUE(PointerIs(IDC_WAIT));
  wait.reset();  // the pointer does not need it any more
  EXPECT_EQ(fMorvane->IMorvane_SetOverrideMouseShape(nullptr), kOK);
  EXPECT_TRUE(PointerIs(IDC_WAIT));
  ArbitrationCalls();
  EXPECT_TRUE(PointerIs(IDC_HAND));
  // A capture is asked instead, and leaves the pointer as it is if it does not care.
  Capture();
  EXPECT_EQ(ArbitrationCalls(), "@?");
  EXPECT_TRUE(PointerIs(IDC_HAND));
  shapes = {{"@?", kMouseShapeWait}};
  ArbitrationCalls();
  EXPECT_TRUE(PointerIs(IDC_WAIT));
  ReleaseMouse();
}

// It is the front one of two windows that is asked.
TEST_IN_RUN(MouseCaptureTest, TheShapeOfTwoWindows) {
  OpenWithView();
  Do("+doc");
  WindowRecord& second = fWindows["doc"];
  const TRect frame = NativeFrame(Hwnd());
  MoveNative(second.fHwnd, frame.fLeft, frame.fTop);
  MakeView("s", {0, 0, 300, 300}, &RootViewOf(*second.fDocument), kTrackable);
  PutUnderMouse(kInside);
  fViewRecord.fShapes = {{"s?", kMouseShapeHand}, {"a?", kMouseShapeText}};
  Turn();
  for (const auto& [window, words, cursor] :
       {std::tuple(&second, "s?< s?", IDC_HAND), {&fRecord, "a?< a?", IDC_IBEAM}}) {
    PutAt(HWND_TOP, *window);
    SetCursor(nullptr);
    EXPECT_EQ(ArbitrationCalls(), words);
    EXPECT_TRUE(PointerIs(cursor));
  }
}

TEST_IN_RUN(MouseCaptureTest, TheStateOfTheMouseIsSampled) {
  OpenWithView();
  TMouseState state = {};
  const auto becomes = [&](std::uint32_t buttons, std::uint32_t keys) {
    return YieldUntil([&] {
      EXPECT_EQ(fMorvane->IMorvane_SampleMouseState(state, &Window()), kOK);
      return state.fButtons == buttons && state.fModifiers.fKeys == keys;
    });
  };
  EXPECT_TRUE(becomes(0, 0));
  EXPECT_TRUE(state.fPosition.fX == fMouse.x && state.fPosition.fY == fMouse.y);
  EXPECT_EQ(fMorvane->IMorvane_SampleMouseState(state, nullptr), kOK);
  EXPECT_EQ(state.fPosition.fX, OnScreen(fMouse).x);
  const POINT place = OnScreen(fMouse);
  SendInputs({KeyInput(VK_SHIFT), MouseInput(place, MOUSEEVENTF_LEFTDOWN)});
  EXPECT_TRUE(becomes(1, kModifierShift));
  // Every record has what is held down now; presses have a button of their own.
  SetFlags("a", kTrackable | kViewFocusable);
  SetFocus("a");
  PutUnderMouse(kInside);
  for (const bool isCaptured : {false, true}) {
    if (isCaptured) Capture();
    ViewRecord& record = fViewRecord;
    record.fTracking = {}, record.fShapeRequest = {}, record.fClick = {}, record.fWheel = {};
    for (const UINT message : {WM_MOUSEMOVE, WM_RBUTTONDOWN}) SendMouse(message);
    Send(WM_MOUSEWHEEL, MAKEWPARAM(0, 120), MAKELPARAM(place.x, place.y));
    const TMouseShapeRequest& tracked = record.fTracking.fState;
    EXPECT_EQ((std::vector<std::uint32_t>{
                  tracked.fButtons, tracked.fModifiers.fKeys, record.fShapeRequest.fButtons,
                  record.fShapeRequest.fModifiers.fKeys, record.fClick.fButtons,
                  record.fClick.fModifiers.fKeys, record.fWheel.fButtons, record.fWheel.fModifiers.fKeys}),
              (std::vector<std::uint32_t>{1, 2, 1, 2, 2, 2, 1, 2}));
  }
  ReleaseMouse();
  SendInputs({MouseInput(place, MOUSEEVENTF_LEFTUP), MouseInput(place, MOUSEEVENTF_RIGHTDOWN),
              KeyInput(VK_SHIFT, KEYEVENTF_KEYUP)});
  EXPECT_TRUE(becomes(2, 0));
  SendInputs({MouseInput(place, MOUSEEVENTF_RIGHTUP)});
}

TEST_IN_RUN(MouseCaptureTest, PressesBecomeDragsOrNot) {
  constexpr UINT kMove = WM_MOUSEMOVE, kUp = WM_LBUTTONUP, kRightUp = WM_RBUTTONUP;
  using Messages = std::vector<std::pair<UINT, POINT>>;  // with the distance from the press
  // Behind the result, the message that stays in the queue.
  const Rows<const char*, std::uint32_t, std::uint32_t, Messages, TClickDragResult, UINT> rows = {
      {"a short way", kMouseEventClick, 1, {{kMove, {2, 0}}, {kUp, {2, 0}}}, kClickDragReleased, kUp},
      {"to the right", kMouseEventClick, 1, {{kMove, {3, 0}}}, kClickDragDragged, 0},
      {"down", kMouseEventClick, 2, {{kMove, {0, 3}}}, kClickDragDragged, 0},
      {"released far away", kMouseEventClick, 2, {{kRightUp, {9, 9}}}, kClickDragReleased, kRightUp},
      {"the other button", kMouseEventClick, 1, {{kRightUp, {}}, {kUp, {}}}, kClickDragHeld, kRightUp},
      {"double click", kMouseEventDoubleClick, 1, {{kMove, {-3, -3}}, {kUp, {}}}, kClickDragReleased, kUp},
      {"right double click", kMouseEventDoubleClick, 2, {{kRightUp, {}}}, kClickDragNotApplicable, kRightUp},
      {"context click", kMouseEventContextClick, 0, {}, kClickDragNotApplicable, 0},
      {"nothing", kMouseEventClick, 1, {}, kClickDragHeld, 0},
  };
  OpenWithView();
  MSG message = {};
  // Who waits for the user leaves the processor to others.
  static int looks = 0;
  static BOOL (*const look)(MSG*, HWND, UINT, UINT, UINT) = [](MSG* out, HWND hwnd, UINT first, UINT last,
                                                               UINT flags) {
    ++looks;
    return PeekMessageW(out, hwnd, first, last, flags);
  };
  const PatchedImport patch(L"Morvane.dll", "PeekMessageW", look);
  for (const auto& [name, type, buttons, messages, wanted, left] : rows) {
    SCOPED_TRACE(name);
    while (PeekMessageW(&message, Hwnd(), WM_MOUSEFIRST, WM_MOUSELAST, PM_REMOVE)) continue;
    for (const auto& [number, distance] : messages)
      PostMessageW(Hwnd(), number, 0, MAKELPARAM(fMouse.x + distance.x, fMouse.y + distance.y));
    const DWORD now = GetTickCount();
    const TMouseEvent event = {type, now, buttons, {fMouse.x, fMouse.y}, {}, 0, nullptr};
    TClickDragResult result = {};
    looks = 0;
    EXPECT_EQ(fMorvane->IMorvane_CheckForClickDragOperation(Window(), event, result), kOK);
    EXPECT_LT(looks, 300);
    EXPECT_EQ(result, wanted);
    EXPECT_EQ(GetTickCount() - now > 500, wanted == kClickDragHeld);
    message = {};
    PeekMessageW(&message, Hwnd(), WM_MOUSEFIRST, WM_MOUSELAST, PM_NOREMOVE);
    EXPECT_EQ(message.message, left);
  }
}

}  // namespace NSMorvaneTest
