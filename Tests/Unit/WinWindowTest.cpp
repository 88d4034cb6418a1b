// The window object from the library's side: a kind of window that records what it is told, in a run of its
// own. What a client sees of windows is in the client tests.
#include "Component/Win/Window/WinWindow.h"

// After windows.h.
#include <imm.h>

#include <functional>
#include <memory>

#include "Component/Portable/Base/PendingErrors.h"
#include "Component/Win/Application/MorvaneImplWin.h"
#include "Component/Win/Dialogs/WinAlertBox.h"
#include "Component/Win/Input/WinKeyboard.h"
#include "Component/Win/Input/WinMouseShape.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Window/Blocking.h"
#include "Component/Win/Window/WindowRegistry.h"
#include "Component/Win/WindowKinds/WinDocumentWindow.h"
#include "Interface/MorvaneDefaults.h"
#include "Tests/Support/FailingAllocations.h"
#include "Tests/Support/FakeViewWindow.h"
#include "Tests/Support/MenuItems.h"
#include "Tests/Support/NativeTestWindow.h"
#include "Tests/Support/PatchedImport.h"
#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;

namespace {

constexpr DWORD kPopupStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_BORDER;

class CTestWindow : public CWinWindow {
 public:
  explicit CTestWindow(TWindowKind kind, IModalOwner* owner = nullptr, DWORD style = kPopupStyle)
      : CWinWindow(CMorvaneImpl::gMorvaneImpl, kind, owner, style, 0, false, false, true) {}
  ~CTestWindow() override { PrepareDestruction(); }

  bool AreFieldsSound() const { return CWinWindow::CWindowGlue_CheckInvariant(); }

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
};

using TTestWindowPtr = boost::shared_ptr<CTestWindow>;

// A foreign window as the owner of dialogs.
struct CTestOwner : IModalOwner {
  explicit CTestOwner(HWND hwnd, TError error = kOK) : fHwnd(hwnd), fError(error) {}
  TError IModalOwner_GetNativeWindow(TNativeWindow& out) override {
    out.fHwnd = fHwnd;
    return fError;
  }
  HWND fHwnd;
  TError fError;
};

const CWindowRegistry& Registry() { return *CMorvaneImpl::gMorvaneImpl->GetWindowRegistry(); }

// Everything that windows leave traces in.
auto Traces() {
  return std::make_tuple(Registry().GetWindows().size(), gWindowClasses.size(), Registry().CountHidden(),
                         GetTopLevelWindowsZ().size());
}

class WinWindowTest : public ReportingTest {
 protected:
  // Runs `body` in the start-up of an application, where everything that windows need is there.
  void InRun(const std::function<void()>& body) {
    struct CBehavior : CDefaultRunBehavior {
      CBehavior(WinWindowTest& test, const std::function<void()>& body) : fTest(test), fBody(body) {}
      TError IMorvaneRunBehavior_OnStartUp() override {
        fBody();
        for (; !fTest.fWindows.empty(); fTest.fWindows.pop_back())
          if (const TTestWindowPtr window = fTest.fWindows.back().lock()) window->ReleaseWindow();
        return CMorvaneImpl::gMorvaneImpl->IMorvane_StartQuitting();
      }
      WinWindowTest& fTest;
      const std::function<void()>& fBody;
    };
    TError error = kOtherError;
    const std::unique_ptr<IMorvane> morvane(Morvane_Create("IMorvane", &error));
    ASSERT_EQ(error, kOK);
    const auto before = Traces();
    const TStartupParams params =
        StartupParams(u"Window Test", AsciiText(std::to_string(GetCurrentProcessId())));
    EXPECT_EQ(morvane->IMorvane_Run(new CBehavior(*this, body), params), kOK);
    EXPECT_EQ(Traces(), before) << "a window has left traces";
  }
  TTestWindowPtr Make(TWindowKind kind, IModalOwner* owner = nullptr) {
    const DWORD style = kind == kWindowKindDocument ? WS_OVERLAPPEDWINDOW : kPopupStyle;
    const TTestWindowPtr window(new CTestWindow(kind, owner, style));
    window->SetClientsWindowReference(window);
    fWindows.push_back(window);
    return window;
  }
  TTestWindowPtr MakeShown(TWindowKind kind = kWindowKindDocument) {
    const TTestWindowPtr window = Make(kind);
    window->Show();
    return window;
  }
  std::string TakeLog() { return Joined(std::exchange(fLog, {})); }

  Texts fLog;
  std::vector<boost::weak_ptr<CTestWindow>> fWindows;
};

}  // namespace

TEST_F(WinWindowTest, ARefusedWindowLeavesNothingBehind) {
  NativeTestWindow foreign, dead;
  CTestOwner failingOwner(foreign, 100555), deadOwner(dead);
  dead.Destroy();
  InRun([&] {
    const auto before = Traces();
    EXPECT_THROW(CTestWindow(kWindowKindModalDialog, &failingOwner), XApplicationError);
    EXPECT_THROW(CTestWindow(kWindowKindModalDialog, &deadOwner), std::exception);
    EXPECT_EQ(TakeReports(), "");
    // No kind: no class, and no window.
    EXPECT_THROW(CTestWindow(static_cast<TWindowKind>(9)), std::exception);
    EXPECT_EQ(TakeReports(), "false; false");
    // A child window needs a parent: the system refuses it.
    EXPECT_THROW(CTestWindow(kWindowKindDocument, nullptr, WS_CHILD), std::exception);
    EXPECT_EQ(Traces(), before);
  });
}

TEST_F(WinWindowTest, NativeOwners) {
  NativeTestWindow foreign;
  CTestOwner foreignOwner(foreign);
  InRun([&] {
    const HWND hider = CMorvaneImpl::gMorvaneImpl->GetHiderWindow();
    const auto ownerOf = [&](TWindowKind kind, IModalOwner* owner = nullptr) {
      return GetWindow(Make(kind, owner)->GetHwnd(), GW_OWNER);
    };
    // Until there is a document, so that it is in the task bar.
    EXPECT_EQ(ownerOf(kWindowKindModelessDialog), nullptr);
    EXPECT_EQ(ownerOf(kWindowKindModelessDialog), nullptr);
    EXPECT_EQ(ownerOf(kWindowKindModalDialog), hider);
    TTestWindowPtr document = Make(kWindowKindDocument);
    EXPECT_EQ(GetWindow(document->GetHwnd(), GW_OWNER), nullptr);
    EXPECT_EQ(ownerOf(kWindowKindModelessDialog), hider);
    EXPECT_EQ(ownerOf(kWindowKindFloating), nullptr);
    EXPECT_EQ(ownerOf(kWindowKindModalDialog, document.get()), document->GetHwnd());
    EXPECT_EQ(ownerOf(kWindowKindAlertBox, &foreignOwner), foreign);
  });
}

TEST_F(WinWindowTest, AlwaysOnTopIsInherited) {
  InRun([&] {
    const TTestWindowPtr plain = MakeShown(), top = Make(kWindowKindDocument);
    top->SetAlwaysOnTop(true);
    EXPECT_FALSE(Make(kWindowKindModalDialog)->IsAlwaysOnTop());  // nobody sees it yet
    EXPECT_TRUE(Make(kWindowKindModalDialog, top.get())->IsAlwaysOnTop());
    top->Show();
    EXPECT_TRUE(Make(kWindowKindModelessDialog)->IsAlwaysOnTop());
    EXPECT_FALSE(Make(kWindowKindModalDialog, plain.get())->IsAlwaysOnTop());
    EXPECT_FALSE(Make(kWindowKindFloating)->IsAlwaysOnTop());
    // A dialog that blocks it is never covered by it.
    const HWND dialog = MakeShown(kWindowKindModalDialog)->GetHwnd();
    EXPECT_TRUE(GetWindowLongW(dialog, GWL_EXSTYLE) & WS_EX_TOPMOST);
  });
}

// A view that has been released, but lives on behind its subview, is the window's to know.
TEST_F(WinWindowTest, TabViewsThatAClientGetsAreItsOwn) {
  struct Factory : IViewBehaviorFactory {
    IViewBehavior* IViewBehaviorFactory_CreateBehavior(IView&, TError& outError) override {
      outError = kOK;
      return new CDefaultViewBehavior;
    }
  } factory;
  struct Receiver : IViewListReceiver {
    TError IViewListReceiver_ReceiveViews(IView* const* views, std::uint32_t count) override {
      fViews.assign(views, views + count);
      return kOK;
    }
    std::vector<IView*> fViews;
  } receiver;
  InRun([&] {
    const TTestWindowPtr window = Make(kWindowKindDocument);
    IView* root = nullptr;
    EXPECT_EQ(window->IWindow_GetRootView(root), kOK);
    const auto make = [&](CViewImpl& superView) -> CViewImpl& {
      return *CViewImpl::MakeSubView(factory, superView, "view");
    };
    CViewImpl& gone = make(dynamic_cast<CViewImpl&>(*root));
    CViewImpl& leaf = make(gone);
    CViewImpl& other = make(dynamic_cast<CViewImpl&>(*root));
    IView* const all[] = {&gone, &other};
    EXPECT_EQ(window->IWindow_SetTabViews(all, 2), kOK);
    gone.IView_Release();
    EXPECT_EQ(window->IWindow_GetTabViews(receiver), kOK);
    EXPECT_EQ(receiver.fViews, std::vector<IView*>{&other});
    EXPECT_EQ(window->IWindow_SetTabViews(receiver.fViews.data(), 1), kOK);
    leaf.IView_Release();
    // A view that ends while memory is short leaves the list as well.
    gAllocationsLeft = 0;
    other.IView_Release();
    gAllocationsLeft = -1;
    std::vector<CViewImpl*> left;
    window->IImplFocusTools_GetTabViews(left);
    EXPECT_TRUE(left.empty());
  });
}

// As a last resort the destructor gives the owner back: here of a dialog that nobody has wired up. Rather
// than throw, it does so without having looked who else blocks the owner.
TEST_F(WinWindowTest, ALostDialogFreesItsOwner) {
  InRun([&] {
    const TTestWindowPtr owner = MakeShown();
    {
      CTestWindow lost(kWindowKindModalDialog, owner.get());
      EnableWindow(owner->GetHwnd(), FALSE);
      gAllocationsLeft = 0;
      CMorvaneImpl::gMorvaneImpl->GetBlocking()->OnEnding(lost);
      gAllocationsLeft = -1;
      EXPECT_EQ(TakePendingError(), kOutOfMemoryError);
      EXPECT_TRUE(IsWindowEnabled(owner->GetHwnd()));
      EnableWindow(owner->GetHwnd(), FALSE);
    }
    EXPECT_TRUE(IsWindowEnabled(owner->GetHwnd()));
  });
}

// Dialogs that are not the library's own stand on the stack, too; one that is gone disturbs nothing.
TEST_F(WinWindowTest, ForeignDialogsOnTheStack) {
  NativeTestWindow foreign;
  InRun([&] {
    CBlocking& blocking = *CMorvaneImpl::gMorvaneImpl->GetBlocking();
    const HWND window = MakeShown()->GetHwnd();
    EXPECT_FALSE(blocking.OnActivationAttempt(window));
    ShowWindow(foreign, SW_SHOW);
    blocking.PushForeignDialog(foreign);
    blocking.PushForeignDialog(foreign);
    EXPECT_EQ(TakeReports(), "false");
    EXPECT_EQ(blocking.GetStack(), std::vector<HWND>{foreign});
    EXPECT_FALSE(IsWindowEnabled(window));
    EXPECT_TRUE(blocking.OnActivationAttempt(window));
    EXPECT_FALSE(blocking.OnActivationAttempt(foreign));
    EXPECT_EQ(GetActiveWindow(), static_cast<HWND>(foreign));
    ShowWindow(foreign, SW_HIDE);
    blocking.PopForeignDialog(foreign);
    EXPECT_FALSE(blocking.IsAppBlocked());
    EXPECT_TRUE(IsWindowEnabled(window));
    EXPECT_EQ(GetActiveWindow(), window);
  });
}

// The owner of such a dialog comes back from the task bar with it; one that is not there stays as large as it
// is.
TEST_F(WinWindowTest, TheOwnerOfAForeignDialogIsRestored) {
  InRun([&] {
    CBlocking& blocking = *CMorvaneImpl::gMorvaneImpl->GetBlocking();
    const TTestWindowPtr owner = MakeShown(), other = MakeShown();
    ShowWindow(other->GetHwnd(), SW_MINIMIZE);
    for (const int command : {SW_MINIMIZE, SW_MAXIMIZE}) {
      NativeTestWindow dialog(WS_POPUP, owner->GetHwnd());
      ShowWindow(owner->GetHwnd(), command);
      ShowWindow(dialog, SW_SHOW);
      blocking.PushForeignDialog(dialog);
      EXPECT_FALSE(owner->IsIconic());
      EXPECT_EQ(owner->IsZoomed(), command == SW_MAXIMIZE);
      EXPECT_TRUE(other->IsIconic());
      blocking.PopForeignDialog(dialog);
    }
  });
}

// Whoever uses an object that has ended is told so, as long as nothing else lies in its memory. To look is
// undefined, so the tests on the host, whose sanitizers would end them, do without it.
TEST_F(WinWindowTest, UseAfterTheEnd) {
  alignas(16) static std::byte storage[sizeof(CDocumentWindowImpl)];
  static_assert(sizeof(CViewImpl) <= sizeof(storage));
  InRun([&] {
    const auto document = ::new (storage) CDocumentWindowImpl(CMorvaneImpl::gMorvaneImpl, 0, false);
    IDocumentWindow* const kind = document;
    IWindow* const window = document;
    document->~CDocumentWindowImpl();
    TFlag flag = 7;
    EXPECT_EQ(kind->IDocumentWindow_FocusNow(), kBadInputProgrammingError);
    EXPECT_EQ(window->IWindow_IsActive(flag), kBadInputProgrammingError);
    EXPECT_EQ(TakeReports(),
              "Bad Input to IDocumentWindow_FocusNow(): CDocumentWindowGlue_CheckInvariant(); "
              "Bad Input to IWindow_IsActive(): CWindowGlue_CheckInvariant()");
    // What is left of the fields, which a client does not get at.
    const auto testWindow = ::new (storage) CTestWindow(kWindowKindDocument);
    EXPECT_TRUE(testWindow->AreFieldsSound());
    testWindow->~CTestWindow();
    EXPECT_FALSE(testWindow->AreFieldsSound());
    EXPECT_EQ(TakeReports(), "false");
  });
  const auto shape = ::new (storage) CMouseShapeImpl(LoadCursorW(nullptr, IDC_ARROW));
  shape->~CMouseShapeImpl();
  EXPECT_EQ(shape->CMouseShapeImpl::IMouseShape_CheckInvariant(), 0u);
  FakeViewWindow views;
  const auto view = ::new (storage) CViewImpl(views.Root(), "view");
  EXPECT_TRUE(view->CheckInvariant());
  view->~CViewImpl();
  EXPECT_FALSE(view->CheckInvariant());
  EXPECT_EQ(666u, view->GetFlags());
  EXPECT_EQ(666u, view->GetDrawMode());
}

TEST_F(WinWindowTest, ShortcutsFollowTheMenus) {
  InRun([&] {
    const TTestWindowPtr window = Make(kWindowKindDocument);
    const auto apply = [&](const std::vector<char16_t>& keys) {
      std::vector<TMenuItem> items;
      for (const char16_t key : keys)
        items.push_back(MenuItem(u"item", 0, kMenuItemEnabled, u"", std::u16string(key ? 1 : 0, key)));
      CMenuBarState state;
      SetItems(state, kMenuDocument, items);
      window->GetMenuBar().Show(state);
      return window->GetMenuBar().GetShortcuts();
    };
    // "key/number", the first one first.
    const auto keysOf = [](HACCEL table) {
      ACCEL keys[8] = {};
      std::string text;
      for (int i = 0, count = CopyAcceleratorTableW(table, keys, 8); i < count; ++i)
        text += std::to_string(keys[i].key) + "/" + std::to_string(keys[i].cmd) + " ";
      return text;
    };
    const HACCEL first = apply({kKeyCharF1, kKeyCharF1 + 1});
    EXPECT_EQ(keysOf(first), "112/40960 113/40961 ");
    const HACCEL second = apply({kKeyCharF1 + 1, 0, kKeyCharF1});
    EXPECT_EQ(keysOf(second), "113/40960 112/40962 ");
    EXPECT_TRUE(first != second && keysOf(first).empty()) << "the old table is still there";
    EXPECT_EQ(apply({0}), nullptr);
    EXPECT_EQ(keysOf(second), "");
  });
}

// A layout that has a character for AltGr with E, which the system tells as Control and Alt.
TEST_F(WinWindowTest, ACharacterIsNoShortcut) {
  gToUnicode = [](UINT, UINT, const BYTE* state, LPWSTR out, int, UINT) {
    out[0] = state[VK_MENU] ? L'\u20AC' : L'e';
    return 1;
  };
  InRun([&] {
    const TTestWindowPtr window = MakeShown();
    CMenuBarState state;
    SetItems(state, kMenuDocument,
             {MenuItem(u"item", 0, kMenuItemEnabled, u"", u"e", kModifierControl | kModifierAlt)});
    window->GetMenuBar().Show(state);
    BYTE before[256];
    ASSERT_TRUE(GetKeyboardState(before));
    for (const int alt : {VK_RMENU, VK_LMENU}) {
      BYTE keys[256] = {};
      for (const int down : {VK_CONTROL, VK_LCONTROL, VK_MENU, alt}) keys[down] = 0x80;
      ASSERT_TRUE(SetKeyboardState(keys));
      const MSG message = {window->GetHwnd(), WM_KEYDOWN, 'E', 0x00120001, 0, {}};
      EXPECT_EQ(window->GetMenuBar().TranslateShortcut(message), alt == VK_LMENU);
    }
    SetKeyboardState(before);
  });
  gToUnicode = &::ToUnicode;
}

// In captions: of the same resource, and not a large one that is shrunk.
TEST_F(WinWindowTest, TheSmallIcon) {
  InRun([&] {
    const HWND hwnd = Make(kWindowKindDocument)->GetHwnd();
    ICONINFO icon = {};
    BITMAP bitmap = {};
    ASSERT_TRUE(GetIconInfo(reinterpret_cast<HICON>(GetClassLongPtrW(hwnd, GCLP_HICONSM)), &icon));
    GetObjectW(icon.hbmMask, sizeof(bitmap), &bitmap);
    EXPECT_EQ(bitmap.bmWidth, GetSystemMetrics(SM_CXSMICON));
    DeleteObject(icon.hbmMask);
    DeleteObject(icon.hbmColor);
  });
}

// --- Input methods

namespace {

// What the system answers, and what is done with it; this one has no input methods.
struct {
  HIMC fContext = nullptr;
  BOOL fIsOpen = TRUE;
  std::string fCalls;
} gInputMethod;

int WINAPI TestGetSystemMetrics(int index) { return index == SM_IMMENABLED ? 1 : 7; }
HIMC WINAPI TestGetContext(HWND) {
  gInputMethod.fCalls += "get ";
  return gInputMethod.fContext;
}
BOOL WINAPI TestGetOpenStatus(HIMC) { return gInputMethod.fIsOpen; }
BOOL WINAPI TestSetOpenStatus(HIMC, BOOL open) {
  gInputMethod.fCalls += open ? "open " : "close ";
  if (open) return FALSE;
  // It notifies of that, too.
  SendMessageW(GetActiveWindow(), WM_IME_NOTIFY, IMN_SETOPENSTATUS, 0);
  return TRUE;
}
BOOL WINAPI TestReleaseContext(HWND, HIMC context) {
  gInputMethod.fCalls += context == gInputMethod.fContext ? "release " : "? ";
  return TRUE;
}

}  // namespace

TEST_F(WinWindowTest, InputMethodsStayClosed) {
  InRun([&] {
    const HWND window = MakeShown()->GetHwnd();
    const HWND edit =
        CreateWindowExW(0, L"Edit", L"", WS_CHILD, 0, 0, 10, 10, window, nullptr, nullptr, nullptr);
    EXPECT_FALSE(ImmGetContext(window));
    EXPECT_TRUE(ImmGetContext(edit));
    const PatchedImport metrics(nullptr, "GetSystemMetrics", TestGetSystemMetrics);
    const PatchedImport get(nullptr, "ImmGetContext", TestGetContext);
    const PatchedImport isOpen(nullptr, "ImmGetOpenStatus", TestGetOpenStatus);
    const PatchedImport setOpen(nullptr, "ImmSetOpenStatus", TestSetOpenStatus);
    const PatchedImport release(nullptr, "ImmReleaseContext", TestReleaseContext);
    const auto notify = [&](WPARAM what) {
      SendMessageW(window, WM_IME_NOTIFY, what, 0);
      return std::exchange(gInputMethod.fCalls, {});
    };
    EXPECT_EQ(notify(IMN_SETOPENSTATUS), "get ");
    EXPECT_TRUE(fOutput.HasLine("Strange exception was swallowed in IME suppression handler."));
    gInputMethod.fContext = reinterpret_cast<HIMC>(4711);
    EXPECT_EQ(notify(IMN_SETOPENSTATUS), "get close release ");
    EXPECT_EQ(notify(IMN_SETCONVERSIONMODE), "");
    gInputMethod.fIsOpen = FALSE;
    EXPECT_EQ(notify(IMN_SETOPENSTATUS), "get release ");
    SetFocus(edit);
    EXPECT_EQ(notify(IMN_SETOPENSTATUS), "");
  });
}

// --- Alerts

namespace {

int gControlsLeft = 0;
HWND WINAPI MakeControlsLeft(DWORD exStyle, LPCWSTR className, LPCWSTR title, DWORD style, int x, int y,
                             int width, int height, HWND parent, HMENU menu, HINSTANCE module, LPVOID param) {
  if ((style & WS_CHILD) && gControlsLeft-- <= 0) return nullptr;
  static const auto create = RealFunction<decltype(CreateWindowExW)>(L"user32.dll", "CreateWindowExW");
  return create(exStyle, className, title, style, x, y, width, height, parent, menu, module, param);
}

}  // namespace

// Without a button nobody could answer; and any control can be refused.
TEST_F(WinWindowTest, AlertsThatCannotBeMade) {
  InRun([&] {
    const auto errorOf = [](const TAlertPlan& plan) {
      return ErrorOf([&] {
        const boost::shared_ptr<IAlertBoxListener> listener(new CAlertMediator(nullptr));
        const CAlertBoxImpl alert(CMorvaneImpl::gMorvaneImpl, nullptr, plan, listener);
      });
    };
    EXPECT_EQ(errorOf({kAlertSaveChanges, u"Text", {}, 0}), kOtherError);
    EXPECT_EQ(TakeReports(), "fButtonHwnds.size()>0");
    const PatchedImport patch(nullptr, "CreateWindowExW", MakeControlsLeft);
    for (int controls = 0; controls <= 4; ++controls) {
      gControlsLeft = controls;
      EXPECT_EQ(errorOf({kAlertTwoButtonsFirstDefault, u"Text", {u"One", u"Two"}, 32513}),
                controls < 4 ? kOutOfMemoryError : kOK)
          << controls;
    }
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
    for (Listener* listener : {&first, &second, &third}) window->GetListeners().Add(listener);
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
    first.fMessage = WM_HELP;
    EXPECT_EQ(send(), "1: first");
    // Listeners may leave while they are called, and take others along.
    first.fMessage = WM_GETDLGCODE;
    first.fHandles = second.fHandles = false;
    first.fHook = [&] {
      for (Listener* listener : {&first, &second}) window->GetListeners().Remove(listener);
    };
    EXPECT_EQ(send(), "0: first; third");
    EXPECT_EQ(send(), "0: third");
    for (Listener* listener : {&second, &third}) window->GetListeners().Remove(listener);  // one is not there
    // A listener may end the window: the message is not forwarded any more, so that its result stands.
    first.fHook = [&] {
      window->ReleaseWindow();
      EXPECT_TRUE(IsWindow(window->GetHwnd()));
      window.reset();
    };
    window->GetListeners().Add(&first);
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
    window->GetListeners().AddForControl(control, &listener);
    NMHDR ofControl = {control, 1, 2}, ofWindow = {hwnd, 1, 2};
    const auto param = [](auto* of) { return reinterpret_cast<LPARAM>(of); };
    for (const auto& [message, parameter, calls] :
         Rows<UINT, LPARAM, std::string>{{WM_HSCROLL, param(control), "control"},
                                         {WM_COMMAND, 0, ""},
                                         {WM_NOTIFY, param(&ofWindow), ""},
                                         {WM_NOTIFY, param(&ofControl), "control"}}) {
      listener.fMessage = message;
      SendMessageW(hwnd, message, 5, parameter);
      EXPECT_EQ(TakeLog(), calls) << message;
    }
    window->GetListeners().RemoveForControl(control);
  });
}
