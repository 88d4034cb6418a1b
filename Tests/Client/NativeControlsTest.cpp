// The hosting of native controls: what reaches the callback of a client, what the window hears of it, and who
// may end first.
#include <cstring>
#include <thread>

#include "Support/NativeControls.h"
#include "Support/PatchedImport.h"

namespace NSMorvaneTest {

TEST_IN_RUN(NativeControlsTest, BadInput) {
  Open();
  MakeView("v", {10, 10, 110, 110});
  const HWND control = MakeControlAt({0, 0, 50, 50});
  const LONG_PTR proc = ProcOf(control);
  const HWND orphan =
      CreateWindowExW(0, L"EDIT", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
  const HWND deep = CreateWindowExW(0, L"EDIT", L"", WS_CHILD, 0, 0, 5, 5, orphan, nullptr, nullptr, nullptr);
  const HWND owned =
      CreateWindowExW(0, L"EDIT", L"", WS_POPUP, 0, 0, 10, 10, Hwnd(), nullptr, nullptr, nullptr);
  // A parent and its child of another thread, which goes on when these are done with.
  HWND foreign = nullptr;
  const HANDLE isMade = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  const HANDLE isDone = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  std::thread other([&] {
    const HWND parent =
        CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
    foreign = CreateWindowExW(0, L"STATIC", L"", WS_CHILD, 0, 0, 5, 5, parent, nullptr, nullptr, nullptr);
    SetEvent(isMade);
    WaitForSingleObject(isDone, kWaitLimitMS);
    DestroyWindow(parent);
  });
  WaitForSingleObject(isMade, kWaitLimitMS);
  const std::string noWindow = "::IsWindow(hwnd)", noParent = "::GetParent(hwnd) != NULL";
  for (const auto& [hwnd, callback, assertions] : Rows<HWND, Callback*, std::string>{
           {nullptr, &fCallback, noWindow + "; " + noParent},
           {reinterpret_cast<HWND>(0x12345671), &fCallback, noWindow + "; " + noParent},
           {orphan, &fCallback, noParent},
           {GetDesktopWindow(), &fCallback, noParent},
           {control, nullptr, "callback != NULL"},
           {deep, &fCallback, "isInWindow"},
           {owned, &fCallback, "isInWindow"},
           {foreign, &fCallback, "isOfThisThread"}}) {
    const LONG_PTR before = ProcOf(hwnd);
    HostIn("v", hwnd, callback, kBadInputProgrammingError);
    EXPECT_EQ(fOutput.TakeAssertions(), assertions);
    EXPECT_EQ(ProcOf(hwnd), before);
  }
  SetEvent(isDone);
  other.join();
  CloseHandle(isMade);
  CloseHandle(isDone);
  DestroyWindow(orphan);
  // A control has one host, and afterwards its own procedure again.
  {
    const Token token = HostIn("v", control, &fCallback);
    EXPECT_NE(ProcOf(control), proc);
    HostIn("v", control, &fCallback, kIllegalCallSequenceProgrammingError);
    SendMessageW(control, WM_APP, 0, 0);
    EXPECT_EQ(ViewCalls(), "c:app");
  }
  EXPECT_EQ(ProcOf(control), proc);
  // The system refuses.
  const PatchedImport patch(
      L"Morvane.dll", "SetWindowLongPtrW", +[](HWND, int, LONG_PTR) -> LONG_PTR { return 0; });
  HostIn("v", control, &fCallback, kOtherError);
  SendMessageW(control, WM_APP, 0, 0);
  EXPECT_EQ(ViewCalls(), "");
}

TEST_IN_RUN(NativeControlsTest, MessagesNotificationsAndErrors) {
  OpenWithControl();
  // What the control is asked and what it tells comes back with the client's answer.
  SetWindowTextW(fControl, L"abc");
  EXPECT_EQ(ViewCalls(), "c!273/1024 c!273/768");  // EN_UPDATE, EN_CHANGE
  EXPECT_EQ(GetWindowTextLengthW(fControl), 3);
  fCallback.fAnswer = 77;
  EXPECT_EQ(Notify(-12), 77);
  EXPECT_EQ(Send(WM_COMMAND, MAKEWPARAM(1, 5), reinterpret_cast<LPARAM>(fControl)), 77);
  EXPECT_EQ(Send(WM_HSCROLL, 3, reinterpret_cast<LPARAM>(fControl)), 77);
  EXPECT_EQ(Send(WM_VSCROLL, 4, reinterpret_cast<LPARAM>(fControl)), 77);
  EXPECT_EQ(ViewCalls(), "c!78/-12 c!273/5 c!276/3 c!277/4");
  EXPECT_EQ(Send(WM_COMMAND, MAKEWPARAM(1, 5), reinterpret_cast<LPARAM>(Hwnd())), 0);  // no control of ours
  // An error is delivered once, the message gives 0.
  fViewRecord.fHooks = {{"c:app", TError(100321)}, {"c!78/-12", TError(100322)}};
  EXPECT_EQ(SendMessageW(fControl, WM_APP, 0, 0), 0);
  ExpectReported(100321);
  EXPECT_EQ(Notify(-12), 0);
  ExpectReported(100322);
  fViewRecord.fHooks = {{"c:app", []() -> TError { throw 1; }}};
  EXPECT_EQ(SendMessageW(fControl, WM_APP, 0, 0), 0);
  ExpectReported(kOtherError);
  Turn();
  // A control that cannot be painted does not keep the loop from its other work.
  fViewRecord.fHooks = {{"c:paint", TError(100323)}};
  InvalidateRect(fControl, nullptr, TRUE);
  UpdateWindow(fControl);
  EXPECT_FALSE(GetUpdateRect(fControl, nullptr, FALSE));
  ExpectReported(100323);
  fViewRecord.fHooks.clear();
  // Without its view and without the window's knowledge the callback still gets what concerns it.
  ReleaseView("v");
  ViewCalls();
  SendMessageW(fControl, WM_APP, 0, 0);
  EXPECT_EQ(ViewCalls(), "c:app");
}

// --- Ends

// Token, control, view and window end in each order that the library allows: views before their window.
TEST_IN_RUN(NativeControlsTest, EveryOrderOfEnds) {
  Do("+doc");  // one window stays, so that the application does
  std::string order = "ctvw";
  int orders = 0;
  do {
    if (order.find('v') > order.find('w')) continue;
    SCOPED_TRACE(order);
    ++orders;
    OpenWithControl();
    SetFocus("v");
    EXPECT_EQ(GetFocus(), fControl);
    for (const char end : order) {
      if (end == 't') fToken.reset();
      if (end == 'c' && IsWindow(fControl)) DestroyWindow(fControl);
      if (end == 'v') ReleaseView("w"), ReleaseView("v");
      if (end == 'w') Release(fRecord);
      for (const UINT message : {WM_APP, WM_MOUSEMOVE, WM_MOUSELEAVE, WM_SETFOCUS, WM_KILLFOCUS})
        SendMessageW(fControl, message, 0, 0);
      Turn();
    }
    EXPECT_FALSE(IsWindow(fControl));
    ViewCalls();
  } while (std::next_permutation(order.begin(), order.end()));
  EXPECT_EQ(orders, 12);
}

// The same in the middle of what the callback gets. It passes the message on after that.
TEST_IN_RUN(NativeControlsTest, EndsInTheMiddle) {
  Do("+doc");
  const std::map<std::string, std::function<void()>> ends = {
      {"token", [this] { fToken.reset(); }},
      {"control", [this] { DestroyWindow(fControl); }},
      {"view", [this] { ReleaseView("v"); }},
      {"window", [this] { ReleaseViews(), Release(fRecord); }},
      {"all", [this] { fToken.reset(), ReleaseViews(), DestroyWindow(fControl), Release(fRecord); }}};
  const std::map<std::string, std::function<void()>> causes = {
      {"c:app", [this] { SendMessageW(fControl, WM_APP, 0, 0); }},
      {"c:move", [this] { SendMessageW(fControl, WM_MOUSEMOVE, 0, 0); }},
      {"c:focus", [this] { SetFocus("v"); }},
      {"c:ui", [this] { SetFocus("v"); }},
      {"v:on", [this] { ::SetFocus(fControl); }},
      {"c!78/-12", [this] { Notify(-12); }},
      {"c:destroyed", [this] { DestroyWindow(fControl); }}};
  for (const auto& [cause, make] : causes) {
    for (const auto& [name, end] : ends) {
      // The system does not stand it if what is being destroyed is destroyed.
      if (cause == "c:destroyed" && name != "token" && name != "view") continue;
      SCOPED_TRACE(cause + " ends " + name);
      OpenWithControl();
      bool isEnding = false;
      fViewRecord.fHooks[cause] = [&, end = end] {
        if (!std::exchange(isEnding, true)) end();
      };
      make();
      EXPECT_TRUE(isEnding);
      fViewRecord.fHooks.clear();
      Turn();
      fToken.reset();
      const bool hasWindow = IsWindow(Hwnd());
      ReleaseViews();
      if (hasWindow) Release(fRecord);
      ViewCalls();
    }
  }
}

namespace {

WNDPROC gProcBelow = nullptr;

LRESULT CALLBACK ForeignProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
  return CallWindowProcW(gProcBelow, hwnd, message, wParam, lParam);
}

}  // namespace

// Somebody else subclasses the control after it was hosted, and stays.
TEST_IN_RUN(NativeControlsTest, AForeignSubclassOnTop) {
  OpenWithControl();
  fToken.reset();
  const LONG_PTR original = ProcOf(fControl);
  fToken = HostIn("v", fControl, &fCallback);
  ViewCalls();
  gProcBelow = reinterpret_cast<WNDPROC>(
      SetWindowLongPtrW(fControl, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(ForeignProc)));
  for (int i = 0; i < 3; ++i) {
    // One that was there before the hosting puts back what it found, and drops our procedure with that.
    if (i == 2) SetWindowLongPtrW(fControl, GWLP_WNDPROC, original);
    fToken.reset();
    SetWindowTextW(fControl, L"abc");
    EXPECT_EQ(GetWindowTextLengthW(fControl), 3);
    EXPECT_EQ(ViewCalls(), "");
    fToken = HostIn("v", fControl, &fCallback);
    SendMessageW(fControl, WM_APP, 0, 0);
    EXPECT_EQ(ViewCalls(), "c:app");
  }
  DestroyWindow(fControl);
  EXPECT_EQ(ViewCalls(), "c:destroyed");
}

// --- Focus and mouse

TEST_IN_RUN(NativeControlsTest, TheFocusFollowsTheKeyboard) {
  OpenWithControl();
  SetFocus("w");
  ViewCalls();
  // The control takes the keyboard, and its view has the focus. The control notifies of that, too.
  ::SetFocus(fControl);
  EXPECT_EQ(ViewCalls(), "w:off v:on c:ui c:focus c!273/256");
  EXPECT_EQ(LOWORD(fCallback.fUIState), UIS_INITIALIZE);
  EXPECT_EQ(Focus() + OnDuty(), "vv");
  // It goes to a view without a control, and comes back.
  SetFocus("w");
  EXPECT_EQ(ViewCalls(), "v:off c:ui c:blur c!273/512 w:on");
  EXPECT_EQ(GetFocus(), Hwnd());
  SetFocus("v");
  EXPECT_EQ(ViewCalls(), "w:off c:ui c:focus c!273/256 v:on");
  // From one control to another of the same view nobody is told.
  Callback second(fViewRecord, "d");
  const HWND secondControl = MakeControlAt({30, 92, 90, 108});
  Token secondToken = HostIn("v", secondControl, &second);
  ::SetFocus(secondControl);
  EXPECT_EQ(ViewCalls(), "c:ui c:blur c!273/512 d:ui d:focus d!273/256");
  EXPECT_EQ(OnDuty(), "v");
  // Nor when it goes to a window inside such a control.
  const HWND inner =
      CreateWindowExW(0, L"EDIT", L"", WS_CHILD, 0, 0, 5, 5, secondControl, nullptr, nullptr, nullptr);
  ::SetFocus(inner);
  EXPECT_EQ(ViewCalls(), "d:ui d:blur d!273/512");
  ::SetFocus(secondControl);
  ViewCalls();
  // A native window that nobody hosts takes the keyboard away.
  const HWND stranger = MakeControlAt({120, 120, 130, 130});
  ::SetFocus(stranger);
  EXPECT_EQ(ViewCalls(), "v:off d:ui d:blur d!273/512");
  EXPECT_EQ(Focus(), "v");
  // The window is left and entered again.
  SetFocus("v");
  Do("+doc");
  EXPECT_TRUE(YieldUntil([this] { return GetActiveWindow() == HwndOf("doc"); }));
  ViewCalls();
  SetActiveWindow(Hwnd());
  EXPECT_EQ(GetFocus(), fControl);
  EXPECT_EQ(OnDuty(), "v");
  EXPECT_EQ(fViewRecord.fLog.Count("v:on"), 1);
  // A view that cannot have the focus any more gives it away, and the keyboard with it.
  SetTabViews({"v", "w"});
  SetFlags("v", kViewMouseTrackable | kViewFocusable);
  EXPECT_EQ(Focus(), "w");
  EXPECT_EQ(GetFocus(), Hwnd());
}

namespace {

int gTrackings = 0;

BOOL WINAPI CountTrackings(TRACKMOUSEEVENT*) {
  ++gTrackings;
  return TRUE;
}

}  // namespace

TEST_IN_RUN(NativeControlsTest, TheMouseOverAControl) {
  OpenWithControl();
  PutMouse(OnScreen({200, 200}));
  // Asked for once, until the mouse has left; told each time.
  {
    const PatchedImport patch(L"Morvane.dll", "TrackMouseEvent", CountTrackings);
    MSG posted = {};
    for (const auto& [message, position, trackings] :
         Rows<UINT, LPARAM, int>{{WM_MOUSEMOVE, MAKELPARAM(5, 6), 1},
                                 {WM_MOUSEMOVE, MAKELPARAM(7, 8), 1},
                                 {WM_MOUSELEAVE, 0, 1},
                                 {WM_MOUSEMOVE, MAKELPARAM(9, 10), 2}}) {
      SendMessageW(fControl, message, 0, position);
      EXPECT_EQ(gTrackings, trackings);
      ASSERT_TRUE(PeekMessageW(&posted, Hwnd(), 1225, 1225, PM_REMOVE));
      EXPECT_EQ(reinterpret_cast<HWND>(posted.wParam), fControl);
      // The mouse has left the control, so it is not in its corner.
      EXPECT_EQ(posted.lParam == position, message == WM_MOUSEMOVE);
    }
  }
  fToken.reset();
  fToken = HostIn("v", fControl, &fCallback);
  // The control gets its message even if the system refuses.
  {
    const PatchedImport patch(
        L"Morvane.dll", "TrackMouseEvent", +[](TRACKMOUSEEVENT*) -> BOOL {
          SetLastError(ERROR_ACCESS_DENIED);
          return FALSE;
        });
    ViewCalls();
    SendMessageW(fControl, WM_MOUSEMOVE, 0, 0);
    EXPECT_EQ(ViewCalls(), "c:move");
    ExpectReported(kOtherError);
  }
  // With the real mouse: the view stays entered while that is over its control.
  PutMouse(OnScreen({15, 15}));
  EXPECT_TRUE(YieldUntil([this] { return fViewRecord.fLog.Count("v+") > 0; }));
  ViewCalls();
  PutMouse(OnScreen({60, 60}));
  EXPECT_TRUE(YieldUntil([this] { return fViewRecord.fTracking.fState.fPosition == TPoint{60, 60}; }));
  EXPECT_EQ(fViewRecord.fLog.Count("v-"), 0);
  // The control shows its own pointer, and keeps it while the views are asked again.
  EXPECT_EQ(fMorvane->IMorvane_RequestMouseShapeArbitration(), kOK);
  EXPECT_EQ(GetCursor(), LoadCursorW(nullptr, IDC_IBEAM));
  fViewRecord.fShapes["v?"] = kMouseShapeHand;
  EXPECT_EQ(fMorvane->IMorvane_RequestMouseShapeArbitration(), kOK);
  EXPECT_NE(GetCursor(), LoadCursorW(nullptr, IDC_IBEAM));
  // The control asks its window before it shows its own; so with a shape that stands over all others.
  const auto pointerOfControl = [this] {
    SendMessageW(fControl, WM_SETCURSOR, reinterpret_cast<WPARAM>(fControl),
                 MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
    return GetCursor();
  };
  const HCURSOR hand = GetCursor();
  EXPECT_EQ(pointerOfControl(), hand);
  fViewRecord.fShapes.clear();
  EXPECT_EQ(fMorvane->IMorvane_RequestMouseShapeArbitration(), kOK);
  EXPECT_EQ(pointerOfControl(), LoadCursorW(nullptr, IDC_IBEAM));
  TError error = kOK;
  const std::unique_ptr<IMouseShape> shape(
      fMorvane->IMorvane_CreateBuiltInMouseShape(kMouseShapeHand, error));
  EXPECT_EQ(fMorvane->IMorvane_SetOverrideMouseShape(shape.get()), kOK);
  EXPECT_EQ(pointerOfControl(), hand);
  EXPECT_EQ(fMorvane->IMorvane_SetOverrideMouseShape(nullptr), kOK);
  PutMouse(OnScreen({15, 15}));
  EXPECT_TRUE(YieldUntil([] { return PointerIsArrow(); }));
  PutMouse(OnScreen({60, 60}));
  ViewCalls();
  PutMouse(OnScreen({150, 60}));
  EXPECT_TRUE(YieldUntil([this] { return fViewRecord.fLog.Count("w+") > 0; }));
  EXPECT_GE(fViewRecord.fLog.Count("v-"), 1);
  // Out of the window, straight from the control.
  PutMouse(OnScreen({60, 60}));
  EXPECT_TRUE(YieldUntil([this] { return fViewRecord.fLog.Count("v+") > 0; }));
  ViewCalls();
  PutMouse({5, 5});
  EXPECT_TRUE(YieldUntil([this] { return fViewRecord.fLog.Count("v-") > 0; }));
}

}  // namespace NSMorvaneTest
