// Native controls in views: what reaches the callback of a client and what the window hears of it, who may
// end first, and CHostedControl, which keeps a control where its view is.
#include <windows.h>

#include <commctrl.h>

#include <cstring>
#include <thread>

#include "Support/MouseFixture.h"
#include "Support/PatchedImport.h"

namespace NSMorvaneTest {

namespace {

// A hosted control, as a client does it by hand. Written down are the messages below, and notifications as
// "c!273/768", with the code of WM_COMMAND or WM_NOTIFY.
const std::pair<UINT, const char*> kMessages[] = {
    {WM_SETFOCUS, "focus"}, {WM_KILLFOCUS, "blur"},     {WM_MOUSEMOVE, "move"}, {WM_MOUSELEAVE, "leave"},
    {WM_KEYDOWN, "down"},   {WM_KEYUP, "up"},           {WM_CHAR, "char"},      {WM_UPDATEUISTATE, "ui"},
    {WM_APP, "app"},        {WM_NCDESTROY, "destroyed"}};

const char* NameOfMessage(UINT message) {
  const auto* const row = std::ranges::find(kMessages, message, &std::pair<UINT, const char*>::first);
  return row == std::end(kMessages) ? nullptr : row->second;
}

std::string NotificationWord(UINT message, WPARAM wParam, LPARAM lParam) {
  const int code = message == WM_NOTIFY    ? static_cast<int>(reinterpret_cast<const NMHDR*>(lParam)->code)
                   : message == WM_COMMAND ? HIWORD(wParam)
                                           : LOWORD(wParam);
  return "!" + std::to_string(message) + "/" + std::to_string(code);
}

class Callback : public IWinNativeControlCallback {
 public:
  Callback(ViewRecord& record, const std::string& name) : fRecord(record), fName(name) {}

  TError IWinNativeControlCallback_OnControlNotification(std::uint32_t message, TWinParam wParam,
                                                         TWinResult lParam, TWinResult& outResult) override {
    EXPECT_EQ(outResult, 0);
    outResult = fAnswer;
    return fRecord.Call(fName + NotificationWord(message, wParam, lParam));
  }
  TError IWinNativeControlCallback_OnControlProc(HWND__* hwnd, std::uint32_t message, TWinParam wParam,
                                                 TWinResult lParam, TWinResult oldProc,
                                                 TWinResult& outResult) override {
    EXPECT_EQ(outResult, 0);
    if (message == WM_UPDATEUISTATE) fUIState = wParam;
    const char* const name = NameOfMessage(message);
    // The hook may end this object.
    const TError error = name                  ? fRecord.Call(fName + ":" + name)
                         : message == WM_PAINT ? fRecord.CallUnlogged(fName + ":paint")
                                               : TError{kOK};
    if (error != kOK) return error;
    outResult = CallWindowProcW(reinterpret_cast<WNDPROC>(oldProc), hwnd, message, wParam, lParam);
    return kOK;
  }

  TWinResult fAnswer = 0;
  WPARAM fUIState = 0;

 private:
  ViewRecord& fRecord;
  const std::string fName;
};

}  // namespace

class NativeControlsTest : public MouseFixture {
 protected:
  using Token = std::unique_ptr<IWinNativeControlCallbackToken>;

  // A control at a place of the window, in the view or not.
  HWND MakeControlAt(const TRect& rect, const wchar_t* windowClass = L"EDIT", DWORD style = 0) {
    const HWND control =
        CreateWindowExW(0, windowClass, L"", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | style, rect.fLeft,
                        rect.fTop, rect.fRight - rect.fLeft, rect.fBottom - rect.fTop, Hwnd(), nullptr,
                        GetModuleHandleW(nullptr), nullptr);
    EXPECT_NE(control, nullptr);
    return control;
  }
  Token HostIn(const std::string& view, HWND control, IWinNativeControlCallback* callback,
               TError wantedError = kOK) {
    IWinExtensions* extensions = nullptr;
    EXPECT_EQ(fMorvane->IMorvane_GetWinExtensions(extensions), kOK);
    TError error = kProgrammingError;
    Token token(extensions->IWinExtensions_HostNativeControl(control, callback, *View(view), error));
    EXPECT_EQ(error, wantedError);
    EXPECT_EQ(token != nullptr, wantedError == kOK);
    return token;
  }
  // A view v that names an edit as its native control, and a view w, both focusable; the edit has the name c.
  void OpenWithControl() {
    Open();
    constexpr std::uint32_t kFlags = kTrackable | kViewFocusable;
    fView = &MakeView("v", {10, 10, 110, 110}, nullptr, kFlags);
    MakeView("w", {120, 10, 210, 110}, nullptr, kFlags);
    fControl = fView->fControl = MakeControlAt({30, 30, 90, 90});
    fToken = HostIn("v", fControl, &fCallback);
    ViewCalls();
  }
  static LONG_PTR ProcOf(HWND hwnd) { return GetWindowLongPtrW(hwnd, GWLP_WNDPROC); }
  LRESULT Notify(LPARAM code) {
    const NMHDR header = {fControl, 7, static_cast<UINT>(code)};
    return Send(WM_NOTIFY, 7, reinterpret_cast<LPARAM>(&header));
  }
  void Leave() override {
    fToken.reset();
    MouseFixture::Leave();
  }

  TestView* fView = nullptr;
  HWND fControl = nullptr;
  Callback fCallback{fViewRecord, "c"};
  Token fToken;
};

// --- The operation

TEST_IN_RUN(NativeControlsTest, BadInput) {
  Open();
  MakeView("v", {10, 10, 110, 110});
  const HWND control = MakeControlAt({0, 0, 50, 50});
  const LONG_PTR proc = ProcOf(control);
  const HWND orphan =
      CreateWindowExW(0, L"EDIT", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
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
  gProcBelow = reinterpret_cast<WNDPROC>(
      SetWindowLongPtrW(fControl, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(ForeignProc)));
  for (int i = 0; i < 2; ++i) {
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
  fViewRecord.fShapes.clear();
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

// --- CHostedControl

namespace {

class ControlView : public CDefaultControlViewBehavior {
 public:
  ControlView(IView& view, const std::string& name, ViewRecord& record)
      : CDefaultControlViewBehavior(view), fRecord(record), fName(name) {}
  TError IViewBehavior_OnOnDutyFocusChanged(TFlag gained) override {
    return fRecord.Call(fName + (gained ? ":on" : ":off"));
  }

 private:
  ViewRecord& fRecord;
  const std::string fName;
};

class Control : public CHostedControl {
 public:
  Control(IMorvane& morvane, const std::string& name, ViewRecord& record)
      : CHostedControl(morvane), fRecord(record), fName(name) {}

  bool fWantsTab = false;
  TRect fInView = {};  // from the corner of the view; empty: all of it

 protected:
  TRect ControlRect(const TRect& viewRect) const override {
    if (fInView.fRight == 0) return viewRect;
    return {viewRect.fLeft + fInView.fLeft, viewRect.fTop + fInView.fTop, viewRect.fLeft + fInView.fRight,
            viewRect.fTop + fInView.fBottom};
  }
  bool WantsKey(WPARAM key) const override {
    return (key == VK_TAB && fWantsTab) || CHostedControl::WantsKey(key);
  }
  TError OnMessage(const TMessage& message, TWinResult& outResult) override {
    const UINT kind = message.fMessage;
    if (kind == WM_KEYDOWN || kind == WM_KEYUP || kind == WM_CHAR)
      fRecord.Call(fName + ":" + NameOfMessage(kind));
    return CHostedControl::OnMessage(message, outResult);
  }
  // What is called may end this object.
  TError OnNotification(UINT message, WPARAM wParam, LPARAM lParam, TWinResult& outResult) override {
    if (message == WM_COMMAND) return CHostedControl::OnNotification(message, wParam, lParam, outResult);
    return fRecord.Call(fName + NotificationWord(message, wParam, lParam));
  }
  TError OnCommand(WORD code) override {
    return fRecord.Call(fName + NotificationWord(WM_COMMAND, MAKEWPARAM(0, code), 0));
  }

 private:
  ViewRecord& fRecord;
  const std::string fName;
};

}  // namespace

class HostedControlTest : public NativeControlsTest {
 protected:
  IView* MakeControlView(const std::string& name, const TRect& rect, const std::string& superView = "") {
    CViewFactory<ControlView, const std::string&, ViewRecord&> factory(name, fViewRecord);
    TError error = kOtherError;
    IView* const view = fMorvane->IMorvane_CreateView(
        factory, superView.empty() ? RootViewOf(*fRecord.fDocument) : *View(superView), name.c_str(), error);
    EXPECT_EQ(error, kOK);
    TViewParams params = ControlViewParams();
    params.fRect = rect;
    EXPECT_EQ(view->IView_SetParams(params), kOK);
    fViews.emplace_back(name, view);
    fBehaviors[name] = factory.Made();
    return view;
  }
  // A control in a view of its own, of the same name.
  Control& MakeHosted(const std::string& name, const TRect& rect, const wchar_t* windowClass = L"EDIT",
                      DWORD style = 0, const std::string& superView = "") {
    MakeControlView(name, rect, superView);
    auto& control = fControls[name];
    control = std::make_unique<Control>(*fMorvane, name, fViewRecord);
    EXPECT_EQ(control->Create(*View(name), windowClass, u"", style), kOK);
    return *control;
  }
  void Leave() override {
    fControls.clear();
    NativeControlsTest::Leave();
  }
  // "(left, top, right, bottom)" in the window; behind it what is wrong with a control of that rectangle that
  // can be seen whole and used: "hidden", "disabled", or the part that is left of it, from its corner.
  std::string StateOf(HWND control) const {
    TRect rect = NativeFrame(control);
    const POINT origin = OnScreen({0, 0});
    rect = {rect.fLeft - origin.x, rect.fTop - origin.y, rect.fRight - origin.x, rect.fBottom - origin.y};
    std::string text = ::testing::PrintToString(rect);
    if (!(GetWindowLongPtrW(control, GWL_STYLE) & WS_VISIBLE)) text += " hidden";
    if (!IsWindowEnabled(control)) text += " disabled";
    const HRGN region = CreateRectRgn(0, 0, 0, 0);
    RECT box = {};
    if (GetWindowRgn(control, region) != ERROR) {
      GetRgnBox(region, &box);
      text += box.right <= 0 ? " cut away" : " cut to " + ::testing::PrintToString(NativeRect(box));
    }
    DeleteObject(region);
    return text;
  }
  bool HasKeyboard(const std::string& name) {
    const HWND control = fControls[name]->Hwnd();
    return GetFocus() == control || IsChild(control, GetFocus());
  }

  std::map<std::string, ControlView*> fBehaviors;
  std::map<std::string, std::unique_ptr<Control>> fControls;
};

TEST_IN_RUN(HostedControlTest, StaysWhereItsViewIs) {
  Open(kWindowResizableBit);
  MakeView("outer", {10, 10, 210, 160});
  MakeView("desk", {10, 10, 400, 400}, View("outer"));
  const HWND control = MakeHosted("c", {20, 20, 80, 50}, L"EDIT", 0, "desk").Hwnd();
  TViewParams params = {};
  EXPECT_EQ(View("c")->IView_GetParams(params), kOK);
  using Step = std::function<void()>;
  const auto set = [this](const char* view, const TRect& rect) {
    return Step([=, this] { SetRect(*View(view), rect), fBehaviors["c"]->Follow(); });
  };
  const auto scroll = [this](int dx, int dy) {
    return Step([=, this] { EXPECT_EQ(View("desk")->IView_Offset(dx, dy), kOK); });
  };
  const auto flags = [this](const char* view, std::uint32_t value) {
    return Step([=, this] { SetFlags(view, value); });
  };
  const std::string at = "(20, 20, 80, 50)";
  for (const auto& [step, state] :
       Rows<Step, std::string>{{[] {}, at},
                               {set("c", {30, 30, 130, 60}), "(30, 30, 130, 60)"},
                               {set("c", {20, 20, 80, 50}), at},
                               // Scrolled by the super view, and cut by the one around that.
                               {scroll(0, -20), "(20, 0, 80, 30) cut to (0, 10, 60, 30)"},
                               {scroll(-30, -10), "(-10, -10, 50, 20) cut to (20, 20, 60, 30)"},
                               {scroll(-100, 0), "(-110, -10, -50, 20) cut away"},
                               {scroll(130, 30), at},
                               {set("outer", {10, 10, 60, 160}), at + " cut to (0, 0, 40, 30)"},
                               {set("outer", {10, 10, 210, 160}), at},
                               // Hidden by an empty rectangle, of its view or of one around it.
                               {set("c", {20, 20, 20, 20}), "(20, 20, 20, 20) hidden"},
                               {set("c", {20, 20, 80, 50}), at},
                               {set("outer", {0, 0, 0, 0}), at + " hidden cut away"},
                               {set("outer", {10, 10, 210, 160}), at},
                               {flags("c", kViewFocusable), at + " disabled"},
                               {flags("c", kViewFocusable | kViewEnabled), at},
                               {flags("desk", 0), at + " disabled"},
                               {flags("desk", kViewEnabled), at}}) {
    step();
    EXPECT_EQ(StateOf(control), state);
  }
  // What nobody tells of is noticed all the same.
  SetRect(*View("outer"), {10, 10, 60, 160});
  EXPECT_TRUE(YieldUntil([&] { return StateOf(control) == at + " cut to (0, 0, 40, 30)"; }))
      << StateOf(control);
  // A control of a client's own, two of them in one view, with places of their own.
  SetRect(*View("outer"), {10, 10, 210, 160});
  fBehaviors["c"]->Follow();
  const HWND own = MakeControlAt({0, 0, 5, 5}, L"BUTTON");
  auto second = std::make_unique<Control>(*fMorvane, "d", fViewRecord);
  second->fInView = {0, 35, 60, 45};
  EXPECT_EQ(second->Attach(*View("c"), own), kOK);
  SetRect(*View("c"), {20, 20, 80, 70});
  fBehaviors["c"]->Follow();
  EXPECT_EQ(StateOf(own), "(20, 55, 80, 65)");
  EXPECT_EQ(StateOf(control), "(20, 20, 80, 70)");
  ::SetFocus(own);
  SetFocus("");
  SetFocus("c");
  EXPECT_EQ(GetFocus(), own);  // the one that had it last
  // Its end leaves the control to the client; the view's end hides them.
  second.reset();
  EXPECT_TRUE(IsWindow(own));
  second = std::make_unique<Control>(*fMorvane, "d", fViewRecord);
  EXPECT_EQ(second->Attach(*View("c"), own), kOK);
  ReleaseView("c");
  EXPECT_FALSE(IsWindowVisible(own) || IsWindowVisible(control));
  second->Follow();
  Turn();
  // What is refused leaves nothing behind.
  Control refused(*fMorvane, "r", fViewRecord);
  EXPECT_EQ(refused.Create(*View("outer"), L"EDIT", u"", 0), kBadInputProgrammingError);
  MakeControlView("e", {10, 10, 20, 20});
  EXPECT_EQ(refused.Create(*View("e"), L"No such class", u"", 0), kOtherError);
  EXPECT_EQ(refused.Hwnd(), nullptr);
  EXPECT_EQ(refused.Text(), u"");
}

// A control that ends itself in the middle of its own work, with real input.
TEST_IN_RUN(HostedControlTest, EndsInItsOwnNotification) {
  Do("+doc");
  const std::string clicked = "c!273/0";
  for (const auto& [name, end] : Rows<const char*, std::function<void()>>{
           {"control", [this] { fControls.clear(); }},
           {"view", [this] { ReleaseView("c"); }},
           {"window", [this] { fControls.clear(), ReleaseViews(), Release(fRecord); }}}) {
    SCOPED_TRACE(name);
    Open();
    const HWND control = MakeHosted("c", {20, 20, 120, 50}, L"BUTTON").Hwnd();
    bool hasEnded = false;
    fViewRecord.fHooks[clicked] = [&, end = end] {
      end();
      hasEnded = true;
    };
    EXPECT_TRUE(YieldUntil([this] { return GetActiveWindow() == Hwnd(); }));
    ClickLeft(OnScreen({60, 35}));
    EXPECT_TRUE(YieldUntil([&] { return hasEnded; }));
    EXPECT_TRUE(YieldUntil([&] { return !IsWindowVisible(control); }));
    fControls.clear();
    EXPECT_TRUE(YieldUntil([&] { return !IsWindow(control); }));
    fViewRecord.fHooks.clear();
    ReleaseViews();
    if (IsWindow(Hwnd())) Release(fRecord);
  }
}

// --- Every kind of control, with real input

class ControlKindsTest : public HostedControlTest {
 protected:
  struct TRow {
    const char* fName;
    const wchar_t* fClass;
    DWORD fStyle;
    WORD fKey;                  // pressed after a click; 0: none
    const char* fNotification;  // that comes of that
  };
  static constexpr TRow kRows[] = {
      {"edit", L"EDIT", ES_AUTOHSCROLL, 'A', "!273/768"},                                // EN_CHANGE
      {"lines", L"EDIT", ES_MULTILINE | ES_AUTOVSCROLL, VK_RETURN, "!273/768"},          // EN_CHANGE
      {"button", L"BUTTON", BS_PUSHBUTTON, 0, "!273/0"},                                 // BN_CLICKED
      {"check", L"BUTTON", BS_AUTOCHECKBOX, VK_SPACE, "!273/0"},                         // BN_CLICKED
      {"list", L"LISTBOX", LBS_NOTIFY, VK_DOWN, "!273/1"},                               // LBN_SELCHANGE
      {"combo", L"COMBOBOX", CBS_DROPDOWNLIST, VK_DOWN, "!273/1"},                       // CBN_SELCHANGE
      {"field", L"COMBOBOX", CBS_DROPDOWN, 'A', "!273/5"},                               // CBN_EDITCHANGE
      {"scroll", L"SCROLLBAR", SBS_HORZ, 0, "!276/1"},                                   // SB_LINERIGHT
      {"listview", WC_LISTVIEWW, LVS_REPORT | LVS_NOCOLUMNHEADER, VK_DOWN, "!78/-101"},  // LVN_ITEMCHANGED
      {"tree", WC_TREEVIEWW, 0, VK_DOWN, "!78/-451"}};                                   // TVN_SELCHANGEDW

  // All of them below each other, 30 pixels each, with a view at either end of the tab order.
  void OpenWithAll() {
    INITCOMMONCONTROLSEX classes = {sizeof(classes), ICC_LISTVIEW_CLASSES | ICC_TREEVIEW_CLASSES};
    EXPECT_TRUE(InitCommonControlsEx(&classes));
    Open(kWindowResizableBit);
    SizeNative(Hwnd(), 320, 440);
    std::vector<std::string> tabViews = {"first"};
    MakeView("first", {10, 5, 200, 15}, nullptr, kTrackable | kViewFocusable);
    std::int32_t top = 20;
    for (const TRow& row : kRows) {
      const Control& control = MakeHosted(row.fName, {10, top, 200, top + 26}, row.fClass, row.fStyle);
      Fill(control, row.fClass);
      tabViews.push_back(row.fName);
      top += 30;
    }
    tabViews.push_back("last");
    MakeView("last", {10, top, 200, top + 10}, nullptr, kTrackable | kViewFocusable);
    SetTabViews(tabViews);
    EXPECT_TRUE(YieldUntil([this] { return GetForegroundWindow() == Hwnd() && GetFocus(); }));
  }
  static void Fill(const Control& control, const std::wstring& windowClass) {
    for (const wchar_t* text : {L"one", L"two", L"three"}) {
      const LPARAM string = reinterpret_cast<LPARAM>(text);
      if (windowClass == L"SCROLLBAR") control.Send(SBM_SETRANGE, 0, 100);
      if (windowClass == L"LISTBOX") control.Send(LB_ADDSTRING, 0, string);
      if (windowClass == L"COMBOBOX") control.Send(CB_ADDSTRING, 0, string);
      LVITEMW item = {};
      item.mask = LVIF_TEXT;
      item.pszText = const_cast<wchar_t*>(text);
      TVINSERTSTRUCTW node = {};
      node.item.mask = TVIF_TEXT;
      node.item.pszText = item.pszText;
      if (windowClass == WC_TREEVIEWW) control.Send(TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&node));
      if (windowClass != WC_LISTVIEWW) continue;
      LVCOLUMNW column = {};
      column.mask = LVCF_WIDTH;
      column.cx = 100;
      if (control.Send(LVM_GETITEMCOUNT) == 0)
        control.Send(LVM_INSERTCOLUMNW, 0, reinterpret_cast<LPARAM>(&column));
      control.Send(LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
    }
  }
  bool WaitForWord(const std::string& word) {
    return YieldUntil([&] { return fViewRecord.fLog.Count(word) > 0; });
  }
};

TEST_IN_RUN(ControlKindsTest, InputAndNotifications) {
  OpenWithAll();
  for (const TRow& row : kRows) {
    SCOPED_TRACE(row.fName);
    const TRect rect = NativeFrame(fControls[row.fName]->Hwnd());
    ViewCalls();
    // A scroll bar is clicked at its end; a list that opens is closed by its key.
    const bool isScrollBar = std::wstring(row.fClass) == L"SCROLLBAR";
    const bool isDropList = (row.fStyle & 3) == CBS_DROPDOWNLIST && std::wstring(row.fClass) == L"COMBOBOX";
    ClickLeft({isScrollBar ? rect.fRight - 5 : rect.fLeft + 12, rect.fTop + 10});
    if (!isScrollBar) {
      EXPECT_TRUE(YieldUntil([&] { return Focus() == row.fName && OnDuty() == row.fName; }));
      EXPECT_TRUE(HasKeyboard(row.fName));
    }
    if (isDropList) {
      EXPECT_TRUE(WaitForWord(std::string(row.fName) + "!273/7"));  // CBN_DROPDOWN
      PressKeys({VK_ESCAPE});
      EXPECT_TRUE(WaitForWord(std::string(row.fName) + "!273/8"));  // CBN_CLOSEUP
    }
    if (row.fKey) PressKeys({row.fKey});
    EXPECT_TRUE(WaitForWord(std::string(row.fName) + row.fNotification)) << ViewCalls();
  }
  EXPECT_EQ(fControls["edit"]->Text(), u"a");
  EXPECT_EQ(fControls["lines"]->Text(), u"\r\n");
  EXPECT_EQ(fControls["field"]->Text(), u"a");
  EXPECT_EQ(fControls["check"]->Send(BM_GETCHECK), 0);  // by the click and by the key
}

// Tab leads through all of them, either way, and into the views between them.
TEST_IN_RUN(ControlKindsTest, Tab) {
  OpenWithAll();
  std::vector<std::string> names = {"first"};
  for (const TRow& row : kRows) names.push_back(row.fName);
  names.push_back("last");
  SetFocus("first");
  ViewCalls();
  const auto expectAt = [this](const std::string& name) {
    EXPECT_TRUE(YieldUntil([&] { return Focus() == name && OnDuty() == name; })) << name << " " << Focus();
    EXPECT_TRUE(fControls.contains(name) ? HasKeyboard(name) : GetFocus() == Hwnd()) << name;
  };
  for (const std::string& name : names) {
    expectAt(name);
    PressKeys({VK_TAB});
  }
  expectAt("first");  // it goes round
  for (auto name = names.rbegin(); name != names.rend(); ++name) {
    PressKeys({VK_SHIFT, VK_TAB});
    expectAt(*name);
  }
  // Each view heard of each change in turns.
  for (const TRow& row : kRows)
    EXPECT_EQ(fViewRecord.fLog.Count(row.fName + std::string(":on")), 2) << row.fName;
  // Nothing of it was typed; and an edit that wants the key gets it.
  for (const char* name : {"edit", "lines", "field"}) EXPECT_EQ(fControls[name]->Text(), u"") << name;
  fControls["lines"]->fWantsTab = true;
  SetFocus("lines");
  PressKeys({VK_TAB});
  EXPECT_TRUE(YieldUntil([this] { return fControls["lines"]->Text() == u"\t"; }));
  EXPECT_EQ(Focus(), "lines");
  // A view that is disabled while its control has the keyboard gives both away.
  SetFlags("lines", kViewFocusable);
  expectAt("first");
  EXPECT_FALSE(IsWindowEnabled(fControls["lines"]->Hwnd()));
}

// Which keys are the control's, and which the window's.
TEST_IN_RUN(ControlKindsTest, Keys) {
  OpenWithAll();
  fRecord.fHooks["HandleKeyDown"] = [this] { fViewRecord.fLog.Add("window"); };
  for (const auto& [name, key, calls] :
       Rows<std::string, WORD, std::string>{{"edit", VK_LEFT, ":down :up"},
                                            {"edit", 'A', ":down :char :up"},
                                            {"edit", VK_RETURN, "window :up"},
                                            {"edit", VK_ESCAPE, "window :up"},
                                            {"edit", VK_F3, "window :up"},
                                            {"lines", VK_RETURN, ":down :char :up"},
                                            {"lines", VK_ESCAPE, "window :up"},
                                            {"lines", VK_UP, ":down :up"},
                                            {"button", VK_RETURN, "window :up"},
                                            {"combo", VK_F4, ":down :up"},
                                            {"combo", VK_ESCAPE, ":down :char :up"},
                                            {"combo", VK_ESCAPE, "window :up"},
                                            {"list", VK_DOWN, ":down :up"},
                                            {"listview", VK_RETURN, ":down :char :up"}}) {
    SCOPED_TRACE(name + " " + std::to_string(key));
    SetFocus(name);
    EXPECT_TRUE(YieldUntil([&, name = name] { return HasKeyboard(name); }));
    Turn();
    ViewCalls();
    PressKeys({key});
    EXPECT_TRUE(WaitForWord(name + ":up"));
    std::string heard;
    std::istringstream words(ViewCalls());
    for (std::string word; words >> word;) {
      if (word.find('!') != word.npos) continue;  // notifications
      if (word.starts_with(name + ":")) word.erase(0, name.size());
      heard += (heard.empty() ? "" : " ") + word;
    }
    EXPECT_EQ(heard, calls);
  }
  // Who waits for the release of a key hears of it, too.
  class Release : public IKeyReleaseCallback {
   public:
    TError IKeyReleaseCallback_OnKeyReleased(const TPhysicalKeySpec&, TKeyReleaseReason reason) override {
      fReason = reason;
      return kOK;
    }
    TKeyReleaseReason fReason = {};
  } release;
  SetFocus("edit");
  EXPECT_EQ(fMorvane->IMorvane_InstallKeyReleaseCallback('B', &release), kOK);
  PressKeys({'B'});
  EXPECT_TRUE(YieldUntil([&] { return release.fReason == kKeyReleaseKeyUp; }));
}

// --- The picture

namespace {

constexpr std::uint32_t kRed = 0xFF0000, kWhite = 0xFFFFFF;

}  // namespace

// While the window is resized, the control and the view around it fill it together at every moment: first the
// window without the control, then all of it.
TEST_IN_RUN(HostedControlTest, NoHoleWhileTheWindowIsResized) {
  ASSERT_EQ(GetSysColor(COLOR_WINDOW), kWhite);
  EXPECT_EQ(fMorvane->IMorvane_SetDebugSettings({}), kOK);
  for (const char* kind : {"doc", "modal"}) {
    SCOPED_TRACE(kind);
    WindowRecord& window = MakeNamed(kind, {}, nullptr, kWindowResizableBit);
    const HWND hwnd = window.fHwnd;
    IView* root = nullptr;
    EXPECT_EQ(window.fWindow->IWindow_GetRootView(root), kOK);
    const std::string backName = "back", viewName = "c";
    CViewFactory<TestView, const std::string&, ViewRecord&> backFactory(backName, fViewRecord);
    CViewFactory<ControlView, const std::string&, ViewRecord&> viewFactory(viewName, fViewRecord);
    TError error = kOK;
    CReleasePtr<IView> back(fMorvane->IMorvane_CreateView(backFactory, *root, "back", error));
    CReleasePtr<IView> view(fMorvane->IMorvane_CreateView(viewFactory, *root, "c", error));
    ASSERT_TRUE(back && view);
    EXPECT_EQ(back->IView_SetParams(ViewParams()), kOK);
    EXPECT_EQ(view->IView_SetParams(ControlViewParams()), kOK);
    Control control(*fMorvane, "c", fViewRecord);
    EXPECT_EQ(control.Create(*view, L"EDIT", u"", ES_MULTILINE), kOK);
    fViewRecord.fHooks["back:draw"] = [&] {
      const COpenPort port(*fViewRecord.fTools);
      const RECT all = {0, 0, 2000, 2000};
      const HBRUSH brush = CreateSolidBrush(RGB(255, 0, 0));
      FillRect(port.HDC(), &all, brush);
      DeleteObject(brush);
    };
    const auto layOut = [&] {
      const TSize size = NativeClientSize(hwnd);
      EXPECT_EQ(SetRect(*back, {0, 0, size.fWidth, size.fHeight}), kOK);
      EXPECT_EQ(SetRect(*view, {20, 30, size.fWidth - 25, size.fHeight - 35}), kOK);
      viewFactory.Made()->Follow();
    };
    window.fHooks["ClientSizeChanged"] = layOut;
    layOut();
    // The number of pixels that are not red around the control, and not white in it.
    const auto wrongPixels = [&](bool isControlPainted) {
      const TSize size = NativeClientSize(hwnd);
      const HDC hdc = GetDCEx(hwnd, nullptr, DCX_CACHE);  // with its child windows
      const std::vector<std::uint32_t> pixels = PixelsOf(hdc, {0, 0, size.fWidth, size.fHeight});
      ReleaseDC(hwnd, hdc);
      int wrong = 0;
      for (int y = 0; y < size.fHeight; ++y)
        for (int x = 0; x < size.fWidth; ++x) {
          const bool isControl = x >= 20 && y >= 30 && x < size.fWidth - 25 && y < size.fHeight - 35;
          if (isControl && !isControlPainted) continue;
          wrong += pixels[static_cast<std::size_t>(y) * size.fWidth + x] != (isControl ? kWhite : kRed);
        }
      return wrong;
    };
    EXPECT_TRUE(YieldUntil([&] { return wrongPixels(true) == 0; }));
    for (const auto& [width, height] :
         {std::pair(300, 300), {420, 380}, {260, 390}, {500, 210}, {240, 200}}) {
      SizeNative(hwnd, width, height);
      UpdateWindow(hwnd);
      EXPECT_EQ(wrongPixels(false), 0) << width << " x " << height;
      UpdateWindow(control.Hwnd());
      EXPECT_EQ(wrongPixels(true), 0) << width << " x " << height;
      Turn();
      EXPECT_EQ(wrongPixels(true), 0) << width << " x " << height;
    }
    fViewRecord.fHooks.clear();
    control.End();
    window.fHooks.erase("ClientSizeChanged");
    view.reset();
    back.reset();
    Release(window);
  }
}

}  // namespace NSMorvaneTest
