// CHostedControl, which keeps a control where its view is: every kind of control, with real input.
#include <windows.h>

#include <commctrl.h>

#include <map>

#include "Support/NativeControls.h"

namespace NSMorvaneTest {

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
  RECT fBoxWhileMoving = {};
  std::function<void(UINT)> fOnMessage;  // before the control gets it; may end this object

  bool WantsKey(WPARAM key) const override {
    return (key == VK_TAB && fWantsTab) || CHostedControl::WantsKey(key);
  }

 protected:
  TRect ControlRect(const TRect& viewRect) const override {
    if (fInView.fRight == 0) return viewRect;
    return {viewRect.fLeft + fInView.fLeft, viewRect.fTop + fInView.fTop, viewRect.fLeft + fInView.fRight,
            viewRect.fTop + fInView.fBottom};
  }
  TError OnMessage(const TMessage& message, TWinResult& outResult) override {
    const UINT kind = message.fMessage;
    if (kind == WM_KEYDOWN || kind == WM_KEYUP || kind == WM_CHAR)
      fRecord.Call(fName + ":" + NameOfMessage(kind));
    if (kind == WM_TIMER && message.fWParam == 7) fRecord.Call(fName + ":timer");
    if (kind == WM_MOVE) GetWindowRgnBox(message.fHwnd, &fBoxWhileMoving);
    if (const auto onMessage = fOnMessage) onMessage(kind);
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
                               {scroll(0, 5), "(-10, -5, 50, 25) cut to (20, 15, 60, 30)"},
                               {scroll(-100, -5), "(-110, -10, -50, 20) cut away"},
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
    // On the way to there it shows no more than in either place.
    if (state.starts_with("(-10, -5")) {
      EXPECT_EQ(NativeRect(fControls["c"]->fBoxWhileMoving), (TRect{20, 20, 60, 30}));
    }
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
}

// How a control is made, taken over and refused, and what is left behind.
TEST_IN_RUN(HostedControlTest, BeginAndEnd) {
  Open();
  MakeView("plain", {10, 10, 20, 20});
  MakeControlView("v", {10, 10, 10, 40});
  Control control(*fMorvane, "c", fViewRecord), refused(*fMorvane, "r", fViewRecord);
  EXPECT_EQ(control.Create(*View("v"), L"EDIT", u"", WS_VISIBLE), kOK);
  const HWND first = control.Hwnd();
  EXPECT_EQ(StateOf(first), "(10, 10, 10, 40) hidden cut away");
  EXPECT_EQ(control.Send(WM_GETFONT), reinterpret_cast<LRESULT>(GetStockObject(DEFAULT_GUI_FONT)));
  // Each takes the place of the one before.
  EXPECT_EQ(control.Create(*View("v"), L"BUTTON", u"", 0), kOK);
  EXPECT_FALSE(IsWindow(first));
  const HWND own = MakeControlAt({0, 0, 5, 5}, L"BUTTON");
  EXPECT_EQ(control.Attach(*View("v"), own), kOK);
  EXPECT_EQ(refused.Attach(*View("v"), own), kIllegalCallSequenceProgrammingError);
  EXPECT_EQ(refused.Create(*View("plain"), L"EDIT", u"", 0), kBadInputProgrammingError);
  EXPECT_EQ(refused.Create(*View("v"), L"No such class", u"", 0), kOtherError);
  const HWND deep = CreateWindowExW(0, L"EDIT", L"", WS_CHILD, 0, 0, 5, 5, own, nullptr, nullptr, nullptr);
  EXPECT_EQ(refused.Attach(*View("v"), deep), kBadInputProgrammingError);
  EXPECT_EQ(refused.Hwnd(), nullptr);
  EXPECT_EQ(refused.Text(), u"");
  // Of a key that the window gets, the control gets no character, but all others.
  ViewCalls();
  for (const auto& [message, key, scanCode] : Rows<UINT, WPARAM, LPARAM>{{WM_KEYDOWN, VK_ESCAPE, 1},
                                                                         {WM_CHAR, 'x', 0},
                                                                         {WM_CHAR, VK_ESCAPE, 1},
                                                                         {WM_DEADCHAR, '^', 1},
                                                                         {WM_CHAR, 10, 1},  // with Ctrl
                                                                         {WM_CHAR, 'y', 2},
                                                                         {WM_KEYDOWN, 'M', 50},
                                                                         {WM_CHAR, VK_RETURN, 50},
                                                                         {WM_CHAR, VK_ESCAPE, 1}})
    SendMessageW(own, message, key, scanCode << 16);
  EXPECT_EQ(ViewCalls(), "c:char c:char c:down c:char c:char");
  // A control keeps its own timers, and no other one.
  SendMessageW(own, WM_TIMER, 7, 0);
  EXPECT_EQ(ViewCalls(), "c:timer");
  EXPECT_EQ(StateOf(own), "(10, 10, 10, 40) hidden cut away");
  control.End();
  EXPECT_EQ(StateOf(own), "(10, 10, 10, 40) hidden");
  EXPECT_FALSE(KillTimer(own, 0x4D6F7276));
  EXPECT_EQ(GetWindow(Hwnd(), GW_CHILD), own);
  EXPECT_EQ(GetWindow(own, GW_HWNDNEXT), nullptr);
}

// What depends on the kind of a control: the Return key, and the room for the list of a combo box.
TEST_IN_RUN(HostedControlTest, KindsOfControls) {
  INITCOMMONCONTROLSEX classes = {sizeof(classes), ICC_LISTVIEW_CLASSES | ICC_TREEVIEW_CLASSES};
  EXPECT_TRUE(InitCommonControlsEx(&classes));
  WNDCLASSW rich = {};
  EXPECT_TRUE(GetClassInfoW(nullptr, L"EDIT", &rich));
  rich.lpszClassName = L"RICHEDIT50T";
  EXPECT_TRUE(RegisterClassW(&rich));
  Open();
  MakeControlView("v", {10, 10, 110, 40});
  Control control(*fMorvane, "c", fViewRecord);
  for (const auto& [windowClass, style, wantsReturn, hasList] :
       Rows<const wchar_t*, DWORD, bool, bool>{{L"EDIT", 0, false, false},
                                               {L"EDIT", ES_MULTILINE, true, false},
                                               {L"RICHEDIT50T", 0, false, false},
                                               {L"RICHEDIT50T", ES_MULTILINE, true, false},
                                               {L"BUTTON", BS_RADIOBUTTON, false, false},
                                               {L"BUTTON", BS_PUSHBUTTON, true, false},
                                               {WC_LISTVIEWW, 0, true, false},
                                               {WC_TREEVIEWW, 0, true, false},
                                               {L"COMBOBOX", CBS_SIMPLE, false, false},
                                               {L"COMBOBOX", CBS_DROPDOWN, false, true}}) {
    EXPECT_EQ(control.Create(*View("v"), windowClass, u"", style), kOK);
    EXPECT_EQ(control.WantsKey(VK_RETURN), wantsReturn) << windowClass << style;
    RECT list = {};
    control.Send(CB_GETDROPPEDCONTROLRECT, 0, reinterpret_cast<LPARAM>(&list));
    EXPECT_EQ(list.bottom - list.top >= 150, hasList) << windowClass << style;
  }
}

// A control shows its own pointer, whatever the views behind it want.
TEST_IN_RUN(HostedControlTest, ThePointer) {
  Open();
  MakeView("behind", {0, 0, 200, 200}, nullptr, kTrackable);
  MakeHosted("c", {20, 20, 80, 50});
  fViewRecord.fShapes["behind?"] = kMouseShapeHand;
  const HCURSOR own = LoadCursorW(nullptr, IDC_IBEAM);
  PutMouse(OnScreen({50, 35}));
  EXPECT_TRUE(YieldUntil([=] { return GetCursor() == own; }));
  EXPECT_EQ(fMorvane->IMorvane_RequestMouseShapeArbitration(), kOK);
  EXPECT_EQ(GetCursor(), own);
  // Where there is none, the view shows what lies behind it.
  fControls["c"]->fInView = {0, 0, 10, 10};
  fBehaviors["c"]->Follow();
  EXPECT_EQ(fMorvane->IMorvane_RequestMouseShapeArbitration(), kOK);
  EXPECT_NE(GetCursor(), own);
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
      // A loop in there does not destroy the control under its own procedure.
      MSG message;
      while (PeekMessageW(&message, control, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
      EXPECT_TRUE(IsWindow(control));
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

// The control loses the keyboard with its place and gets it back, whatever happens to it.
TEST_IN_RUN(HostedControlTest, TheKeyboardComesBack) {
  Open();
  MakeControlView("c", {20, 20, 120, 50});
  MakeView("w", {20, 60, 120, 90}, nullptr, kTrackable | kViewFocusable);
  SetFocus("c");
  auto& control = fControls["c"];
  control = std::make_unique<Control>(*fMorvane, "c", fViewRecord);
  const auto expectKeyboard = [&](const char* when, bool has) {
    EXPECT_EQ(HasKeyboard("c"), has) << when;
    EXPECT_EQ(GetFocus() == Hwnd(), !has) << when;
    EXPECT_EQ(Focus() + OnDuty(), "cc") << when;
  };
  for (const auto& [windowClass, style] :
       Rows<const wchar_t*, DWORD>{{L"EDIT", 0}, {L"COMBOBOX", CBS_DROPDOWN}}) {
    EXPECT_EQ(control->Create(*View("c"), windowClass, u"", style), kOK);
    expectKeyboard("made in a view that has the focus", true);
    SetRect(*View("c"), {});
    fBehaviors["c"]->Follow();
    expectKeyboard("hidden", false);
    SetFocus("w");
    SetFocus("c");
    expectKeyboard("the view gets the focus meanwhile", false);
    SetRect(*View("c"), {20, 20, 120, 50});
    fBehaviors["c"]->Follow();
    expectKeyboard("shown again", true);
    ::SetFocus(Hwnd());
    expectKeyboard("taken away", false);
    SetFocus("c");
    expectKeyboard("asked for", true);
  }
  // Ended by somebody else, or by itself.
  DestroyWindow(control->Hwnd());
  expectKeyboard("destroyed", false);
  EXPECT_EQ(control->Create(*View("c"), L"COMBOBOX", u"", CBS_DROPDOWN), kOK);
  control->End();
  expectKeyboard("ended", false);
}

// Calls of the system come back to the control, which then is moved once more, or ends.
TEST_IN_RUN(HostedControlTest, MovedWhileItMoves) {
  Open();
  MakeControlView("v", {10, 10, 60, 40});
  for (const UINT message : {WM_ENABLE, WM_SHOWWINDOW, WM_WINDOWPOSCHANGING}) {
    for (const bool isEnd : {false, true}) {
      SCOPED_TRACE(message);
      Control control(*fMorvane, "c", fViewRecord);
      SetFlags("v", kViewFocusable);
      SetRect(*View("v"), {});
      EXPECT_EQ(control.Create(*View("v"), L"EDIT", u"", 0), kOK);
      const HWND hwnd = control.Hwnd();
      int calls = 0;
      control.fOnMessage = [&](UINT kind) {
        if (kind != message || ++calls > 1) return;
        if (isEnd) return control.End();
        control.fInView = {5, 5, 25, 25};
        control.Follow();
      };
      SetRect(*View("v"), {10, 10, 60, 40});
      SetFlags("v", kViewFocusable | kViewEnabled);
      control.Follow();
      EXPECT_GE(calls, 1);
      if (!isEnd) {
        EXPECT_EQ(StateOf(hwnd), "(15, 15, 35, 35)");
        continue;
      }
      EXPECT_FALSE(IsWindowVisible(hwnd));
      EXPECT_TRUE(YieldUntil([=] { return !IsWindow(hwnd); }));
    }
  }
  // Ended by a key, whose character finds nobody any more, and while the system destroys it.
  for (const UINT message : {WM_KEYDOWN, WM_DESTROY}) {
    Control control(*fMorvane, "c", fViewRecord);
    EXPECT_EQ(control.Create(*View("v"), L"EDIT", u"", 0), kOK);
    control.fOnMessage = [&](UINT kind) {
      if (kind == message) control.End();
    };
    const HWND hwnd = control.Hwnd();
    if (message == WM_KEYDOWN) SendMessageW(hwnd, message, 'A', 0);
    if (message == WM_DESTROY) DestroyWindow(hwnd);
    EXPECT_FALSE(IsWindow(hwnd));
    EXPECT_EQ(control.Hwnd(), nullptr);
  }
}

// The control that was made last is in front, as its view is, and has no timer of its own.
TEST_IN_RUN(HostedControlTest, SeveralControls) {
  Open(kWindowResizableBit);
  MakeControlView("v", {10, 10, 60, 40});
  Control first(*fMorvane, "a", fViewRecord), second(*fMorvane, "b", fViewRecord);
  const HWND grip = MakeControlAt({0, 0, 10, 10}, L"SCROLLBAR", SBS_SIZEGRIP);
  for (Control* const control : {&first, &second})
    EXPECT_EQ(control->Create(*View("v"), L"EDIT", u"", 0), kOK);
  std::vector<HWND> order;
  for (HWND child = GetWindow(Hwnd(), GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
    order.push_back(child);
  EXPECT_EQ(order, (std::vector<HWND>{grip, second.Hwnd(), first.Hwnd()}));
  EXPECT_FALSE(KillTimer(second.Hwnd(), 0x4D6F7276));
  first.End();
  SetRect(*View("v"), {20, 20, 60, 40});
  EXPECT_TRUE(YieldUntil([&] { return StateOf(second.Hwnd()) == "(20, 20, 60, 40)"; }));
}

// What has the keyboard is a window inside the control, which may come later.
TEST_IN_RUN(HostedControlTest, WindowsInsideTheControl) {
  INITCOMMONCONTROLSEX classes = {sizeof(classes),
                                  ICC_TREEVIEW_CLASSES | ICC_INTERNET_CLASSES | ICC_USEREX_CLASSES};
  EXPECT_TRUE(InitCommonControlsEx(&classes));
  Open();
  MakeView("w", {20, 160, 220, 190}, nullptr, kTrackable | kViewFocusable);
  const Control& address = MakeHosted("ip", {20, 20, 160, 45}, L"SysIPAddress32");
  const Control& tree = MakeHosted("tree", {20, 50, 220, 150}, WC_TREEVIEWW, TVS_EDITLABELS);
  const Control& extended = MakeHosted("ex", {230, 20, 260, 45}, WC_COMBOBOXEXW, CBS_DROPDOWN);
  EXPECT_TRUE(extended.WantsKey(VK_F4));
  SetTabViews({"w", "ip", "tree"});
  SetFocus("w");
  const HWND field = GetWindow(address.Hwnd(), GW_CHILD);
  ASSERT_NE(field, nullptr);
  ::SetFocus(field);
  EXPECT_EQ(Focus() + OnDuty(), "ipip");
  SendMessageW(field, WM_KEYDOWN, VK_TAB, 0);
  EXPECT_EQ(Focus() + OnDuty(), "treetree");
  TVINSERTSTRUCTW node = {};
  node.item.mask = TVIF_TEXT;
  node.item.pszText = const_cast<wchar_t*>(L"one");
  const LRESULT item = tree.Send(TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&node));
  ViewCalls();
  const HWND editor = reinterpret_cast<HWND>(tree.Send(TVM_EDITLABELW, 0, item));
  EXPECT_EQ(GetFocus(), editor);
  EXPECT_EQ(fViewRecord.fLog.Count("tree:off"), 0);
  // The editor gets the keys that end it, and the view the others.
  SendMessageW(editor, WM_KEYDOWN, VK_RETURN, 0);
  EXPECT_EQ(tree.Send(TVM_GETEDITCONTROL), 0);
  EXPECT_TRUE(HasKeyboard("tree"));
  ::SetFocus(reinterpret_cast<HWND>(tree.Send(TVM_EDITLABELW, 0, item)));
  SendMessageW(GetFocus(), WM_KEYDOWN, VK_TAB, 0);
  EXPECT_EQ(Focus() + OnDuty(), "ww");
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
  // An edit of one line is selected as a whole.
  fControls["edit"]->SetText(u"abc");
  SetFocus("first");
  PressKeys({VK_TAB});
  expectAt("edit");
  EXPECT_EQ(fControls["edit"]->Send(EM_GETSEL), MAKELONG(0, 3));
  SetFocus("lines");
  // A view that is disabled while its control has the keyboard gives both away.
  SetFlags("lines", kViewFocusable);
  expectAt("first");
  EXPECT_FALSE(IsWindowEnabled(fControls["lines"]->Hwnd()));
}

// Which keys are the control's, and which the window's.
TEST_IN_RUN(ControlKindsTest, Keys) {
  OpenWithAll();
  int clicks = 0;
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
                                            {"button", VK_RETURN, ":up"},
                                            {"combo", VK_F4, ":down :up"},
                                            {"combo", VK_ESCAPE, ":down :char :up"},
                                            {"combo", VK_ESCAPE, "window :up"},
                                            {"combo", VK_F4, ":down :up"},
                                            {"combo", VK_RETURN, ":down :char :up"},
                                            {"combo", VK_RETURN, "window :up"},
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
      if (word == "button!273/0") ++clicks;
      if (word.find('!') != word.npos) continue;  // notifications
      if (word.starts_with(name + ":")) word.erase(0, name.size());
      heard += (heard.empty() ? "" : " ") + word;
    }
    EXPECT_EQ(heard, calls);
  }
  EXPECT_EQ(clicks, 1);
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
  release.fReason = {};
  EXPECT_EQ(fMorvane->IMorvane_InstallKeyReleaseCallback('B', &release), kOK);
  SendMessageW(fControls["edit"]->Hwnd(), WM_SYSKEYUP, 'B', 1 << 29);
  EXPECT_EQ(release.fReason, kKeyReleaseKeyUp);
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
