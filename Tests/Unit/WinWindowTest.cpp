// The window object from the library's side: a kind of window that records what it is told, in a run of its
// own. What a client sees of windows is in the client tests.
#include "Component/Win/WinWindow.h"

#include <functional>
#include <memory>

#include "Component/Win/MorvaneImplWin.h"
#include "Component/Win/UtilsWin.h"
#include "Component/Win/WinWindowModality.h"
#include "Interface/MorvaneDefaults.h"
#include "Tests/Support/NativeTestWindow.h"
#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;

namespace {

constexpr DWORD kPopupStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_BORDER;

class CTestWindow : public CWinWindow {
 public:
  CTestWindow(Texts& log, TWindowKind kind, IModalOwner* owner = nullptr, DWORD style = kPopupStyle)
      : CWinWindow(CMorvaneImpl::gMorvaneImpl, kind, owner, style, 0, false, false, true), fLog(log) {}
  ~CTestWindow() override {
    PrepareDestruction();
    fLog.push_back("gone");
  }

  using CWinWindow::fAlwaysOnTop;
  using CWinWindow::fChildWindows;

 protected:
  bool OnClientSizeChanged(const TSize&, const TSize&) override { return true; }
  bool OnPlacementChanged(const TWindowPlacement&, const TWindowPlacement&) override { return true; }
  void OnActivationChanged(bool) override {}
  bool OnKeyDown(const TKeyEvent&) override { return false; }
  void OnKeyboardFocusChanged(bool) override {}
  bool OnHelpRequested() override { return false; }
  void RequestClose(TCloseReason) override { ReleaseWindow(); }
  void RequestMenuBarSetup(CMenuBarState&) override {}
  bool OnMenuCommand(const TMenuCommandEvent&) override { return false; }

 private:
  Texts& fLog;
};

using TTestWindowPtr = boost::shared_ptr<CTestWindow>;

// A foreign window as the owner of dialogs.
class CTestOwner : public IModalOwner {
 public:
  explicit CTestOwner(HWND hwnd, TError error = kOK) : fHwnd(hwnd), fError(error) {}
  TError IModalOwner_GetNativeWindow(TNativeWindow& out) override {
    out.fHwnd = fHwnd;
    return fError;
  }

 private:
  HWND fHwnd;
  TError fError;
};

// Everything process-wide that windows leave traces in.
auto Traces() {
  return std::make_tuple(gWinWindows.size(), gWindowClasses.size(), sHidddenWindows.size(),
                         GetTopLevelWindowsZ().size());
}

class WinWindowTest : public ReportingTest {
 protected:
  // Runs `body` in the start-up of an application, where everything that windows need is there.
  void InRun(const std::function<void()>& body) {
    struct CBehavior : CDefaultRunBehavior {
      explicit CBehavior(const std::function<void()>& body) : fBody(body) {}
      TError IMorvaneRunBehavior_OnStartUp() override {
        fBody();
        return CMorvaneImpl::gMorvaneImpl->IMorvane_StartQuitting();
      }
      std::function<void()> fBody;
    };
    TError error = kOtherError;
    const std::unique_ptr<IMorvane> morvane(Morvane_Create("IMorvane", &error));
    ASSERT_EQ(error, kOK);
    const auto before = Traces();
    const TStartupParams params =
        StartupParams(u"Window Test", AsciiText(std::to_string(GetCurrentProcessId())));
    EXPECT_EQ(morvane->IMorvane_Run(new CBehavior(body), params), kOK);
    EXPECT_EQ(Traces(), before) << "a window has left traces";
  }
  TTestWindowPtr Make(TWindowKind kind, IModalOwner* owner = nullptr) {
    const DWORD style = kind == kWindowKindDocument ? WS_OVERLAPPEDWINDOW : kPopupStyle;
    const TTestWindowPtr window(new CTestWindow(fLog, kind, owner, style));
    window->SetClientsWindowReference(window);
    return window;
  }
  void Release(TTestWindowPtr& window) {
    window->ReleaseWindow();
    window.reset();
  }
  std::string TakeLog() { return Joined(std::exchange(fLog, {})); }

  Texts fLog;
};

}  // namespace

TEST_F(WinWindowTest, TheStatesOfItsLife) {
  InRun([this] {
    CMorvaneImpl& morvane = *CMorvaneImpl::gMorvaneImpl;
    TTestWindowPtr window = Make(kWindowKindModelessDialog);
    const HWND hwnd = window->GetHwnd();
    const auto state = [&] {
      const bool isHidden = std::count(sHidddenWindows.begin(), sHidddenWindows.end(), hwnd) != 0;
      return std::string(IsWindow(hwnd) ? "native " : "") + (IsRegisteredHwnd(hwnd) ? "registered " : "") +
             (isHidden ? "hidden " : "") + (morvane.GetWindowForHwnd(hwnd) ? "known " : "") +
             (window && window->IsVisible() ? "visible" : "");
    };
    EXPECT_EQ(state(), "native registered known ");
    window->Show();
    EXPECT_EQ(state(), "native registered known visible");
    window->ReleaseWindow();
    EXPECT_EQ(state(), "native registered hidden ");
    EXPECT_EQ(TakeLog(), "");
    window.reset();
    EXPECT_EQ(state(), "");
    EXPECT_EQ(TakeLog(), "gone");
  });
}

TEST_F(WinWindowTest, ARefusedWindowLeavesNothingBehind) {
  NativeTestWindow foreign, dead;
  CTestOwner failingOwner(foreign, 100555), deadOwner(dead);
  dead.Destroy();
  InRun([&] {
    const auto before = Traces();
    EXPECT_THROW(CTestWindow(fLog, kWindowKindModalDialog, &failingOwner), XApplicationError);
    EXPECT_THROW(CTestWindow(fLog, kWindowKindModalDialog, &deadOwner), std::exception);
    EXPECT_EQ(TakeReports(), "");
    // No kind: no class, and no window.
    EXPECT_THROW(CTestWindow(fLog, static_cast<TWindowKind>(9)), std::exception);
    EXPECT_EQ(TakeReports(), "false; false");
    // A child window needs a parent: the system refuses it.
    EXPECT_THROW(CTestWindow(fLog, kWindowKindDocument, nullptr, WS_CHILD), std::exception);
    EXPECT_EQ(Traces(), before);
    // The class procedure refuses a window that is none of the library's.
    TTestWindowPtr window = Make(kWindowKindFloating);
    EXPECT_EQ(CreateWindowExW(0, L"SkerryFloatingWindow", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr,
                              GetModuleHandleW(nullptr), nullptr),
              nullptr);
    EXPECT_EQ(TakeReports(), "0!=window");
    Release(window);
  });
}

TEST_F(WinWindowTest, NativeOwners) {
  NativeTestWindow foreign;
  CTestOwner foreignOwner(foreign);
  InRun([&] {
    const HWND hider = CMorvaneImpl::gMorvaneImpl->GetHiderWindow();
    TTestWindowPtr first = Make(kWindowKindModelessDialog);  // alone, so that it is in the task bar
    TTestWindowPtr second = Make(kWindowKindModelessDialog);
    TTestWindowPtr modal = Make(kWindowKindModalDialog);
    TTestWindowPtr document = Make(kWindowKindDocument);
    TTestWindowPtr third = Make(kWindowKindModelessDialog);
    TTestWindowPtr floating = Make(kWindowKindFloating);
    TTestWindowPtr owned = Make(kWindowKindModalDialog, document.get());
    TTestWindowPtr ofForeign = Make(kWindowKindAlertBox, &foreignOwner);
    for (const auto& [window, owner] : Rows<TTestWindowPtr, HWND>{{first, nullptr},
                                                                  {second, nullptr},
                                                                  {document, nullptr},
                                                                  {floating, nullptr},
                                                                  {modal, hider},
                                                                  {third, hider},
                                                                  {owned, document->GetHwnd()},
                                                                  {ofForeign, foreign}})
      EXPECT_EQ(GetWindow(window->GetHwnd(), GW_OWNER), owner);
    EXPECT_EQ(document->fChildWindows, (std::vector<boost::shared_ptr<CWinWindow>>{owned}));
    for (TTestWindowPtr* window : {&ofForeign, &owned, &floating, &third}) Release(*window);
    EXPECT_TRUE(document->fChildWindows.empty());
    for (TTestWindowPtr* window : {&document, &modal, &second, &first}) Release(*window);
  });
}

TEST_F(WinWindowTest, AlwaysOnTopIsInherited) {
  NativeTestWindow foreign;
  CTestOwner foreignOwner(foreign);
  InRun([&] {
    TTestWindowPtr plain = Make(kWindowKindDocument);
    TTestWindowPtr top = Make(kWindowKindDocument);
    plain->Show();
    const auto inherits = [&](TWindowKind kind, IModalOwner* owner) {
      TTestWindowPtr window = Make(kind, owner);
      const bool result = window->fAlwaysOnTop;
      Release(window);
      return result;
    };
    top->SetAlwaysOnTop(true);
    EXPECT_FALSE(inherits(kWindowKindModalDialog, nullptr));  // nobody sees it yet
    EXPECT_TRUE(inherits(kWindowKindModalDialog, top.get()));
    top->Show();
    // A dialog that blocks it is never covered by it.
    TTestWindowPtr dialog = Make(kWindowKindModalDialog);
    dialog->Show();
    EXPECT_TRUE(GetWindowLongW(dialog->GetHwnd(), GWL_EXSTYLE) & WS_EX_TOPMOST);
    EXPECT_EQ(GetShownWindowsZ(), (std::vector<HWND>{dialog->GetHwnd(), top->GetHwnd(), plain->GetHwnd()}));
    Release(dialog);
    EXPECT_TRUE(inherits(kWindowKindModelessDialog, nullptr));
    EXPECT_TRUE(inherits(kWindowKindModalDialog, &foreignOwner));
    EXPECT_FALSE(inherits(kWindowKindModalDialog, plain.get()));
    EXPECT_FALSE(inherits(kWindowKindFloating, nullptr));
    Release(top);
    EXPECT_FALSE(AnyShownWindowIsAlwaysOnTop());
    Release(plain);
  });
}

// As a last resort the destructor gives the owner back: here of a dialog that nobody has wired up.
TEST_F(WinWindowTest, ALostDialogFreesItsOwner) {
  InRun([&] {
    TTestWindowPtr owner = Make(kWindowKindDocument);
    owner->Show();
    {
      CTestWindow lost(fLog, kWindowKindModalDialog, owner.get());
      lost.Show();
      EXPECT_FALSE(IsWindowVisible(lost.GetHwnd()));
      EnableWindow(owner->GetHwnd(), FALSE);
    }
    EXPECT_TRUE(IsWindowEnabled(owner->GetHwnd()));
    Release(owner);
  });
}

// Dialogs that are not the library's own stand on the stack, too; one that is gone disturbs nothing.
TEST_F(WinWindowTest, ForeignDialogsOnTheStack) {
  NativeTestWindow foreign;
  InRun([&] {
    CMorvaneImpl& morvane = *CMorvaneImpl::gMorvaneImpl;
    TTestWindowPtr window = Make(kWindowKindDocument);
    window->Show();
    EXPECT_FALSE(OnModalActivationAttempt(window->GetHwnd()));
    ShowWindow(foreign, SW_SHOW);
    morvane.PushAppModalInstance(foreign);
    morvane.PushAppModalInstance(foreign);
    EXPECT_EQ(TakeReports(), "false");
    EXPECT_EQ(gAppModalDialogStack, std::vector<HWND>{foreign});
    EXPECT_FALSE(IsWindowEnabled(window->GetHwnd()));
    EXPECT_TRUE(OnModalActivationAttempt(window->GetHwnd()));
    EXPECT_FALSE(OnModalActivationAttempt(foreign));
    EXPECT_EQ(GetActiveWindow(), static_cast<HWND>(foreign));
    ShowWindow(foreign, SW_HIDE);
    morvane.PopAppModalInstance(foreign);
    morvane.PopAppModalInstance(foreign);
    EXPECT_TRUE(gAppModalDialogStack.empty());
    EXPECT_TRUE(IsWindowEnabled(window->GetHwnd()));
    EXPECT_EQ(GetActiveWindow(), window->GetHwnd());
    Release(window);
  });
}

// --- What of the message function no client can see

namespace {

class Listener : public IWinMsgEventListener {
 public:
  Listener(Texts& calls, const char* name) : fCalls(calls), fName(name) {}

  LRESULT IWinMsgEventListener_OnMessage(TWinMessage& message) override {
    if (message.fMessage != fMessage) return 0;
    fCalls.push_back(fName);
    if (fHook) fHook();
    message.fHandled = fHandles;
    return 4711;
  }

  Texts& fCalls;
  std::string fName;
  UINT fMessage = WM_GETDLGCODE;
  bool fHandles = false;
  std::function<void()> fHook;
};

}  // namespace

TEST_F(WinWindowTest, ListenersSeeEveryMessageUntilOneHandlesIt) {
  InRun([this] {
    TTestWindowPtr window = Make(kWindowKindDocument);
    Listener first(fLog, "first"), second(fLog, "second"), third(fLog, "third");
    for (Listener* listener : {&first, &second, &third}) window->AddMsgEventListener(listener);
    const auto send = [&] {
      const LRESULT result = SendMessageW(window->GetHwnd(), first.fMessage, 12, 34);
      return std::to_string(result) + ": " + TakeLog();
    };
    // The result of a message that is forwarded is the platform's.
    EXPECT_EQ(send(), "0: first; second; third");
    second.fHandles = true;
    EXPECT_EQ(send(), "0: first; second");
    // Handled or not, the table runs.
    first.fHandles = true;
    first.fMessage = WM_ERASEBKGND;
    EXPECT_EQ(send(), "0: first");
    first.fMessage = WM_HELP;
    EXPECT_EQ(send(), "1: first");
    // Listeners may leave while they are called, and take others along.
    first.fMessage = WM_GETDLGCODE;
    first.fHandles = second.fHandles = false;
    first.fHook = [&] {
      for (Listener* listener : {&first, &second}) window->RemoveMsgEventListener(listener);
    };
    EXPECT_EQ(send(), "0: first; third");
    EXPECT_EQ(send(), "0: third");
    for (Listener* listener : {&second, &third})
      window->RemoveMsgEventListener(listener);  // one is not there
    // A listener may end the window: the message is not forwarded any more, so that its result stands.
    first.fHook = [&] {
      window->ReleaseWindow();
      EXPECT_TRUE(IsWindow(window->GetHwnd()));
      window.reset();
    };
    window->AddMsgEventListener(&first);
    const HWND hwnd = window->GetHwnd();
    EXPECT_EQ(SendMessageW(hwnd, first.fMessage, 0, 0), 4711);
    EXPECT_FALSE(IsWindow(hwnd));
  });
}

TEST_F(WinWindowTest, ControlsHaveListenersOfTheirOwn) {
  InRun([this] {
    TTestWindowPtr window = Make(kWindowKindDocument);
    const HWND hwnd = window->GetHwnd();
    const HWND control =
        CreateWindowExW(0, L"BUTTON", L"", WS_CHILD, 0, 0, 10, 10, hwnd, nullptr, nullptr, nullptr);
    Listener listener(fLog, "control");
    window->AddControlListener(control, &listener);
    NMHDR ofControl = {control, 1, 2}, ofWindow = {hwnd, 1, 2};
    const auto param = [](auto* of) { return reinterpret_cast<LPARAM>(of); };
    for (const auto& [message, parameter, calls] :
         Rows<UINT, LPARAM, std::string>{{WM_COMMAND, param(control), "control"},
                                         {WM_HSCROLL, param(control), "control"},
                                         {WM_VSCROLL, param(control), "control"},
                                         {WM_COMMAND, 0, ""},
                                         {WM_NOTIFY, param(&ofWindow), ""},
                                         {WM_NOTIFY, param(&ofControl), "control"}}) {
      listener.fMessage = message;
      SendMessageW(hwnd, message, 5, parameter);
      EXPECT_EQ(TakeLog(), calls) << message;
    }
    DestroyWindow(control);
    SendMessageW(hwnd, WM_NOTIFY, 1, param(&ofControl));
    EXPECT_EQ(TakeLog(), "");
    window->RemoveControlListener(control);
    Release(window);
  });
}

// --- Classes

TEST_F(WinWindowTest, AClassIsRegisteredAsLongAsSomebodyUsesIt) {
  const TString name = u"Window Class Test";
  const auto isRegistered = [&] {
    WNDCLASSEXW info = {};
    info.cbSize = sizeof(info);
    return GetClassInfoExW(GetModuleHandleW(nullptr), WinText(name), &info) != 0;
  };
  const std::size_t others = gWindowClasses.size();
  auto first = std::make_unique<CWindowClassRef>(name, DefWindowProcW, nullptr);
  auto second = std::make_unique<CWindowClassRef>(name, DefWindowProcW, nullptr);
  EXPECT_EQ(gWindowClasses.size(), others + 1);
  first.reset();
  EXPECT_TRUE(isRegistered());
  second.reset();
  EXPECT_FALSE(isRegistered());
  EXPECT_EQ(gWindowClasses.size(), others);
  // And once more from the start. A window that is still there keeps the system from taking the class back.
  first = std::make_unique<CWindowClassRef>(name, DefWindowProcW, nullptr);
  const HWND window = CreateWindowExW(0, WinText(name), L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr,
                                      GetModuleHandleW(nullptr), nullptr);
  ASSERT_NE(window, nullptr);
  first.reset();
  EXPECT_EQ(TakeReports(), "ucResult");
  DestroyWindow(window);
  EXPECT_TRUE(UnregisterClassW(WinText(name), GetModuleHandleW(nullptr)));
}
