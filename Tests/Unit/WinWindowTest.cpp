// The window object from the library's side: a kind of window that records what it is told, in a run of its
// own. What a client sees of document windows is in the client tests.
#include "Component/Win/WinWindow.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <utility>

#include "Component/Win/MorvaneImplWin.h"
#include "Component/Win/UtilsWin.h"
#include "Component/Win/WinWindowModality.h"
#include "Interface/MorvaneDefaults.h"
#include "Tests/Support/NativeTestWindow.h"
#include "Tests/Support/PrintGeometry.h"
#include "Tests/Support/RecordingDebugOutput.h"

namespace NSMorvane {

namespace {

using NSMorvaneTest::NativeTestWindow;
using NSMorvaneTest::RecordingDebugOutput;

using Texts = std::vector<std::string>;

constexpr DWORD kPopupStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_BORDER;

class CTestWindow : public CWinWindow {
 public:
  CTestWindow(Texts& log, TWindowKind kind, IModalOwner* owner = nullptr, DWORD style = kPopupStyle)
      : CWinWindow(CMorvaneImpl::gMorvaneImpl, kind, owner, style, 0, false, false, true), fLog(log) {}
  ~CTestWindow() override {
    PrepareDestruction();
    fLog.push_back("gone");
  }

  using CWinWindow::fAcceleratorTable;
  using CWinWindow::fAlwaysOnTop;
  using CWinWindow::fChildWindows;

 protected:
  bool OnClientSizeChanged(const TSize&, const TSize&) override { return true; }
  bool OnPlacementChanged(const TWindowPlacement&, const TWindowPlacement&) override { return true; }
  void OnActivationChanged(bool) override {}
  bool OnKeyDown(const TKeyEvent& event) override {
    fLog.push_back("key " + std::to_string(event.fPhysicalKey.fVirtualKey));
    return false;
  }
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
struct TTraces {
  std::size_t fWindows = gWinWindows.size();
  std::size_t fClasses = gWindowClasses.size();
  std::size_t fHidden = sHidddenWindows.size();
  std::size_t fNative = GetTopLevelWindowsZ().size();

  friend bool operator==(const TTraces&, const TTraces&) = default;
};

class WinWindowTest : public testing::Test {
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
    const TTraces before;
    const TStartupParams params =
        StartupParams(u"Window Test", AsciiText(std::to_string(GetCurrentProcessId())));
    EXPECT_EQ(morvane->IMorvane_Run(new CBehavior(body), params), kOK);
    EXPECT_EQ(TTraces(), before) << "a window has left traces";
    EXPECT_EQ(fOutput.fAssertions, Texts());
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
  Texts TakeAssertions() { return std::exchange(fOutput.fAssertions, {}); }

  RecordingDebugOutput fOutput;
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
    EXPECT_EQ(fLog, Texts());
    window.reset();
    EXPECT_EQ(state(), "");
    EXPECT_EQ(fLog, Texts{"gone"});
  });
}

TEST_F(WinWindowTest, ARefusedWindowLeavesNothingBehind) {
  NativeTestWindow foreign, dead;
  CTestOwner failingOwner(foreign, 100555), deadOwner(dead);
  dead.Destroy();
  InRun([&] {
    const TTraces before;
    EXPECT_THROW(CTestWindow(fLog, kWindowKindModalDialog, &failingOwner), XApplicationError);
    EXPECT_THROW(CTestWindow(fLog, kWindowKindModalDialog, &deadOwner), std::exception);
    EXPECT_EQ(TakeAssertions(), Texts());
    // No kind: no class, and no window.
    EXPECT_THROW(CTestWindow(fLog, static_cast<TWindowKind>(9)), std::exception);
    EXPECT_EQ(TakeAssertions(), (Texts{"false", "false"}));
    // A child window needs a parent: the system refuses it.
    EXPECT_THROW(CTestWindow(fLog, kWindowKindDocument, nullptr, WS_CHILD), std::exception);
    EXPECT_EQ(TTraces(), before);
    // The class procedure refuses a window that is none of the library's.
    TTestWindowPtr window = Make(kWindowKindFloating);
    EXPECT_EQ(CreateWindowExW(0, L"SkerryFloatingWindow", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr,
                              GetModuleHandleW(nullptr), nullptr),
              nullptr);
    EXPECT_EQ(TakeAssertions(), Texts{"0!=window"});
    Release(window);
  });
}

TEST_F(WinWindowTest, NativeOwners) {
  NativeTestWindow foreign;
  CTestOwner foreignOwner(foreign);
  InRun([&] {
    const auto ownerOf = [](const TTestWindowPtr& window) { return GetWindow(window->GetHwnd(), GW_OWNER); };
    const HWND hider = CMorvaneImpl::gMorvaneImpl->GetHiderWindow();
    TTestWindowPtr first = Make(kWindowKindModelessDialog);  // alone, so that it is in the task bar
    TTestWindowPtr second = Make(kWindowKindModelessDialog);
    TTestWindowPtr modal = Make(kWindowKindModalDialog);
    TTestWindowPtr document = Make(kWindowKindDocument);
    TTestWindowPtr third = Make(kWindowKindModelessDialog);
    TTestWindowPtr floating = Make(kWindowKindFloating);
    TTestWindowPtr owned = Make(kWindowKindModalDialog, document.get());
    TTestWindowPtr ofForeign = Make(kWindowKindAlertBox, &foreignOwner);
    for (const TTestWindowPtr& window : {first, second, document, floating})
      EXPECT_EQ(ownerOf(window), nullptr);
    for (const TTestWindowPtr& window : {modal, third}) EXPECT_EQ(ownerOf(window), hider);
    EXPECT_EQ(ownerOf(owned), document->GetHwnd());
    EXPECT_EQ(ownerOf(ofForeign), foreign);
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

// A dialog with an owner leaves above the screen, natively visible.
TEST_F(WinWindowTest, ADialogBlocksItsOwner) {
  InRun([&] {
    TTestWindowPtr owner = Make(kWindowKindDocument);
    owner->Show();
    TTestWindowPtr dialog = Make(kWindowKindAlertBox, owner.get());
    const HWND hwnd = dialog->GetHwnd();
    const auto frame = [&] {
      RECT rect = {};
      GetWindowRect(hwnd, &rect);
      return FromNative(rect);
    };
    EXPECT_TRUE(IsWindowEnabled(owner->GetHwnd()));
    dialog->Show();
    EXPECT_FALSE(IsWindowEnabled(owner->GetHwnd()));
    const TRect shown = frame();
    dialog->ReleaseWindow();
    EXPECT_TRUE(IsWindowEnabled(owner->GetHwnd()));
    EXPECT_TRUE(IsWindowVisible(hwnd));
    EXPECT_FALSE(IsWindowShown(hwnd));
    EXPECT_LE(frame().fBottom, GetSystemMetrics(SM_YVIRTUALSCREEN));
    EXPECT_EQ(RectHeight(frame()), RectHeight(shown));
    dialog.reset();
    // As a last resort the destructor gives the owner back: here of one that nobody has wired up.
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

TEST_F(WinWindowTest, AcceleratorsComeBeforeAllElse) {
  InRun([this] {
    TTestWindowPtr window = Make(kWindowKindModelessDialog);
    ACCEL accelerator = {FVIRTKEY, VK_F5, 0xDFFF};  // a command that nobody knows
    window->fAcceleratorTable = CreateAcceleratorTableW(&accelerator, 1);
    const HWND control = CreateWindowExW(0, L"STATIC", L"", WS_CHILD, 0, 0, 10, 10, window->GetHwnd(),
                                         nullptr, nullptr, nullptr);
    for (const HWND target : {window->GetHwnd(), control}) {
      for (const WPARAM key : {VK_F5, VK_F6}) PostMessageW(target, WM_KEYDOWN, key, 1);
      EXPECT_EQ(CMorvaneImpl::gMorvaneImpl->IMorvane_Yield(), kOK);
    }
    EXPECT_EQ(fLog, Texts{"key " + std::to_string(VK_F6)});
    Release(window);
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
    EXPECT_EQ(TakeAssertions(), Texts{"false"});
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

}  // namespace NSMorvane
