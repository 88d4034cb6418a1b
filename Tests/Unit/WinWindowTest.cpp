// The window object from the library's side: a kind of window that records what it is told, in a run of its
// own. What a client sees of document windows is in the client tests.
#include "Component/Win/WinWindow.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <utility>

#include "Component/Portable/ViewImpl.h"
#include "Component/Win/MorvaneImplWin.h"
#include "Component/Win/UtilsWin.h"
#include "Component/Win/WinDocumentWindow.h"
#include "Component/Win/WinRootViewBehavior.h"
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

// What a test asks of its windows, and hears from them.
struct TestKindRecord {
  bool fTakesChanges = true;  // the answer to changes of size and placement
  std::vector<std::pair<TSize, TSize>> fSizes;
  std::vector<std::pair<TWindowPlacement, TWindowPlacement>> fPlacements;
  Texts fLog;
};

class CTestWindow : public CWinWindow {
 public:
  CTestWindow(TestKindRecord& record, TWindowKind kind, IModalOwner* owner = nullptr,
              DWORD style = kPopupStyle, bool makeSizeGrip = false)
      : CWinWindow(CMorvaneImpl::gMorvaneImpl, kind, owner, style, 0, makeSizeGrip, false, true),
        fRecord(record) {}
  ~CTestWindow() override {
    PrepareDestruction();
    fRecord.fLog.push_back("gone");
  }

  using CWinWindow::fAcceleratorTable;
  using CWinWindow::fAlwaysOnTop;
  using CWinWindow::fChildWindows;
  using CWinWindow::fIsHidden;
  using CWinWindow::fSizeGripHwnd;
  using CWinWindow::fTimerID;
  using CWinWindow::fWindowState;

 protected:
  bool OnClientSizeChanged(const TSize& oldSize, const TSize& newSize) override {
    fRecord.fSizes.emplace_back(oldSize, newSize);
    return fRecord.fTakesChanges;
  }
  bool OnPlacementChanged(const TWindowPlacement& oldPlacement,
                          const TWindowPlacement& newPlacement) override {
    fRecord.fPlacements.emplace_back(oldPlacement, newPlacement);
    return fRecord.fTakesChanges;
  }
  void OnActivationChanged(bool) override {}
  bool OnKeyDown(const TKeyEvent& event) override {
    fRecord.fLog.push_back("key " + std::to_string(event.fPhysicalKey.fVirtualKey));
    return false;
  }
  void OnKeyboardFocusChanged(bool) override {}
  bool OnHelpRequested() override { return false; }
  void RequestClose(TCloseReason reason) override {
    fRecord.fLog.push_back("close " + std::to_string(reason));
    ReleaseWindow();
  }
  void RequestMenuBarSetup(CMenuBarState&) override {}
  bool OnMenuCommand(const TMenuCommandEvent&) override { return false; }

 private:
  TestKindRecord& fRecord;
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
    class CBehavior : public CDefaultRunBehavior {
     public:
      explicit CBehavior(const std::function<void()>& body) : fBody(body) {}
      TError IMorvaneRunBehavior_OnStartUp() override {
        fBody();
        return CMorvaneImpl::gMorvaneImpl->IMorvane_StartQuitting();
      }

     private:
      std::function<void()> fBody;
    };
    TError error = kOtherError;
    const std::unique_ptr<IMorvane> morvane(Morvane_Create("IMorvane", &error));
    ASSERT_EQ(error, kOK);
    const TTraces before;
    const TStartupParams params =
        StartupParams(u"Window Test", AsciiText(std::to_string(GetCurrentProcessId())));
    bool hasRun = false;
    const auto counted = [&] {
      body();
      hasRun = true;
    };
    EXPECT_EQ(morvane->IMorvane_Run(new CBehavior(counted), params), kOK);
    EXPECT_TRUE(hasRun);
    EXPECT_EQ(TTraces(), before) << "a window has left traces";
    EXPECT_EQ(fOutput.fAssertions, Texts());
  }
  TTestWindowPtr Make(TWindowKind kind, IModalOwner* owner = nullptr, DWORD style = kPopupStyle,
                      bool makeSizeGrip = false) {
    const TTestWindowPtr window(new CTestWindow(fRecord, kind, owner, style, makeSizeGrip));
    window->SetClientsWindowReference(window);
    return window;
  }
  void Release(TTestWindowPtr& window) {
    window->ReleaseWindow();
    window.reset();
  }
  Texts TakeAssertions() {
    fOutput.fAssertFiles.clear();
    return std::exchange(fOutput.fAssertions, {});
  }
  std::ptrdiff_t CountLines(const std::string& line) const {
    return std::count(fOutput.fLines.begin(), fOutput.fLines.end(), "[Morvane] " + line);
  }
  static HWND HiderWindow() { return CMorvaneImpl::gMorvaneImpl->GetHiderWindow(); }

  RecordingDebugOutput fOutput;
  TestKindRecord fRecord;
};

bool IsHidden(HWND hwnd) {
  return std::find(sHidddenWindows.begin(), sHidddenWindows.end(), hwnd) != sHidddenWindows.end();
}

TRect FrameRect(HWND hwnd) {
  RECT rect = {};
  GetWindowRect(hwnd, &rect);
  return FromNative(rect);
}

}  // namespace

// --- Life

TEST_F(WinWindowTest, TheStatesOfItsLife) {
  InRun([this] {
    TTestWindowPtr window = Make(kWindowKindModelessDialog);
    const HWND hwnd = window->GetHwnd();
    EXPECT_TRUE(window->fIsHidden);
    EXPECT_FALSE(IsHidden(hwnd));
    EXPECT_FALSE(window->IsVisible());
    EXPECT_TRUE(IsRegisteredHwnd(hwnd));
    EXPECT_NE(window->fTimerID, 0u);
    EXPECT_EQ(reinterpret_cast<HFONT>(SendMessageW(hwnd, WM_GETFONT, 0, 0)), nullptr);  // it keeps none
    EXPECT_EQ(CMorvaneImpl::gMorvaneImpl->GetWindowForHwnd(hwnd), window.get());

    window->Show();
    EXPECT_FALSE(window->fIsHidden);
    EXPECT_TRUE(window->IsVisible());
    EXPECT_EQ(CountLines("CWinWindow::Show " + HandleText(hwnd) + " 1"), 1);
    EXPECT_EQ(GetActiveWindow(), hwnd);

    window->ReleaseWindow();
    EXPECT_TRUE(window->fIsHidden);
    EXPECT_TRUE(IsHidden(hwnd));
    EXPECT_FALSE(window->IsVisible());
    EXPECT_TRUE(IsWindow(hwnd));
    EXPECT_EQ(CMorvaneImpl::gMorvaneImpl->GetWindowForHwnd(hwnd), nullptr);
    EXPECT_EQ(fRecord.fLog, Texts());

    window.reset();
    EXPECT_FALSE(IsHidden(hwnd));
    EXPECT_FALSE(IsWindow(hwnd));
    EXPECT_FALSE(IsRegisteredHwnd(hwnd));
    EXPECT_EQ(fRecord.fLog, Texts{"gone"});
  });
}

TEST_F(WinWindowTest, ShowCommands) {
  const struct {
    bool fMinimized;
    bool fMaximized;
    const char* fCommand;
  } kCases[] = {{false, false, " 1"}, {true, false, " 2"}, {false, true, " 3"}, {true, true, " 2"}};
  InRun([&] {
    for (const auto& c : kCases) {
      TTestWindowPtr window = Make(kWindowKindModelessDialog);
      window->fWindowState.fMinimized = c.fMinimized;
      window->fWindowState.fMaximized = c.fMaximized;
      window->Show();
      EXPECT_EQ(CountLines("CWinWindow::Show " + HandleText(window->GetHwnd()) + c.fCommand), 1);
      EXPECT_EQ(window->IsIconic(), c.fMinimized);
      Release(window);
    }
  });
}

TEST_F(WinWindowTest, OneReferenceAtATime) {
  InRun([this] {
    const TTestWindowPtr window(new CTestWindow(fRecord, kWindowKindModelessDialog));
    EXPECT_EQ(window->GetClientsWindowReference(), nullptr);
    EXPECT_EQ(TakeAssertions(), Texts{"0!=fClientsWindowReference.get()"});
    window->SetClientsWindowReference(window);
    EXPECT_EQ(window->GetClientsWindowReference(), window);
    window->ReleaseWindow();
    EXPECT_EQ(TakeAssertions(), Texts());
    window->ReleaseWindow();
    EXPECT_EQ(TakeAssertions(), Texts{"fClientsWindowReference.get()!=0"});
  });
}

// A window that was made and is dropped before anybody has wired it up.
TEST_F(WinWindowTest, NeverWiredUp) {
  InRun([this] {
    HWND hwnd = nullptr;
    {
      CTestWindow window(fRecord, kWindowKindFloating);
      hwnd = window.GetHwnd();
      window.Show();  // there is nobody to show it for
      EXPECT_FALSE(IsWindowVisible(hwnd));
    }
    EXPECT_FALSE(IsWindow(hwnd));
  });
}

TEST_F(WinWindowTest, ARefusedWindowLeavesNothingBehind) {
  NativeTestWindow foreign;
  CTestOwner failingOwner(foreign, 100555);
  NativeTestWindow dead;
  CTestOwner deadOwner(dead);
  dead.Destroy();
  InRun([&] {
    const TTraces before;
    EXPECT_THROW(CTestWindow(fRecord, kWindowKindModalDialog, &failingOwner), XApplicationError);
    EXPECT_THROW(CTestWindow(fRecord, kWindowKindModalDialog, &deadOwner), std::exception);
    EXPECT_EQ(TTraces(), before);
    EXPECT_EQ(TakeAssertions(), Texts());
    // No kind: no class, and no window.
    EXPECT_THROW(CTestWindow(fRecord, static_cast<TWindowKind>(9)), std::exception);
    EXPECT_EQ(TakeAssertions(), (Texts{"false", "false"}));
    // A child window needs a parent: the system refuses it.
    EXPECT_THROW(CTestWindow(fRecord, kWindowKindDocument, nullptr, WS_CHILD), std::exception);
    EXPECT_EQ(TTraces(), before);
    EXPECT_EQ(fRecord.fLog, Texts());
  });
}

// The class procedure refuses a window that is none of the library's.
TEST_F(WinWindowTest, TheClassIsForTheLibraryAlone) {
  InRun([this] {
    TTestWindowPtr window = Make(kWindowKindFloating);
    EXPECT_EQ(CreateWindowExW(0, L"SkerryFloatingWindow", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr,
                              GetModuleHandleW(nullptr), nullptr),
              nullptr);
    EXPECT_EQ(TakeAssertions(), Texts{"0!=window"});
    Release(window);
  });
}

// --- Owners

TEST_F(WinWindowTest, NativeOwners) {
  NativeTestWindow foreign;
  CTestOwner foreignOwner(foreign);
  InRun([&] {
    const auto ownerOf = [](const TTestWindowPtr& window) { return GetWindow(window->GetHwnd(), GW_OWNER); };
    // Without other windows a dialog stands alone, so that it is in the task bar.
    for (const TWindowKind kind : {kWindowKindModelessDialog, kWindowKindModalDialog, kWindowKindAlertBox}) {
      TTestWindowPtr window = Make(kind);
      EXPECT_EQ(ownerOf(window), nullptr) << kind;
      Release(window);
    }
    {
      TTestWindowPtr modeless = Make(kWindowKindModelessDialog);
      TTestWindowPtr second = Make(kWindowKindModelessDialog);
      TTestWindowPtr modal = Make(kWindowKindModalDialog);
      TTestWindowPtr alert = Make(kWindowKindAlertBox);
      EXPECT_EQ(ownerOf(second), nullptr);
      EXPECT_EQ(ownerOf(modal), HiderWindow());
      EXPECT_EQ(ownerOf(alert), HiderWindow());
      for (TTestWindowPtr* window : {&alert, &modal, &second, &modeless}) Release(*window);
    }
    {
      TTestWindowPtr document = Make(kWindowKindDocument, nullptr, WS_OVERLAPPEDWINDOW);
      TTestWindowPtr modeless = Make(kWindowKindModelessDialog);
      TTestWindowPtr floating = Make(kWindowKindFloating);
      TTestWindowPtr modal = Make(kWindowKindModalDialog, document.get());
      TTestWindowPtr other = Make(kWindowKindAlertBox, &foreignOwner);
      EXPECT_EQ(ownerOf(document), nullptr);
      EXPECT_EQ(ownerOf(modeless), HiderWindow());
      EXPECT_EQ(ownerOf(floating), nullptr);
      EXPECT_EQ(ownerOf(modal), document->GetHwnd());
      EXPECT_EQ(ownerOf(other), foreign);
      EXPECT_EQ(document->fChildWindows, (std::vector<boost::shared_ptr<CWinWindow>>{modal}));
      for (TTestWindowPtr* window : {&other, &modal, &floating, &modeless}) Release(*window);
      EXPECT_TRUE(document->fChildWindows.empty());
      Release(document);
    }
  });
}

TEST_F(WinWindowTest, AlwaysOnTopIsInherited) {
  NativeTestWindow foreign;
  CTestOwner foreignOwner(foreign);
  InRun([&] {
    TTestWindowPtr plain = Make(kWindowKindDocument, nullptr, WS_OVERLAPPEDWINDOW);
    TTestWindowPtr top = Make(kWindowKindDocument, nullptr, WS_OVERLAPPEDWINDOW);
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
    const auto isTopMost = [](const TTestWindowPtr& window) {
      return (GetWindowLongW(window->GetHwnd(), GWL_EXSTYLE) & WS_EX_TOPMOST) != 0;
    };
    top->SetAlwaysOnTop(false);
    EXPECT_FALSE(isTopMost(top));
    top->SetAlwaysOnTop(true);
    top->Show();
    EXPECT_TRUE(isTopMost(top));
    // A dialog that blocks it is never covered by it.
    TTestWindowPtr dialog = Make(kWindowKindModalDialog);
    dialog->Show();
    EXPECT_TRUE(isTopMost(dialog));
    EXPECT_EQ(GetShownWindowsZ(), (std::vector<HWND>{dialog->GetHwnd(), top->GetHwnd(), plain->GetHwnd()}));
    Release(dialog);
    EXPECT_TRUE(AnyShownWindowIsAlwaysOnTop());
    EXPECT_TRUE(inherits(kWindowKindModelessDialog, nullptr));
    EXPECT_TRUE(inherits(kWindowKindAlertBox, nullptr));
    EXPECT_TRUE(inherits(kWindowKindModalDialog, &foreignOwner));
    EXPECT_FALSE(inherits(kWindowKindModalDialog, plain.get()));
    EXPECT_FALSE(inherits(kWindowKindFloating, nullptr));
    Release(top);
    EXPECT_FALSE(AnyShownWindowIsAlwaysOnTop());
    Release(plain);
  });
}

// A dialog with an owner blocks that window, and leaves above the screen, natively visible.
TEST_F(WinWindowTest, ADialogBlocksItsOwner) {
  for (const TWindowKind kind : {kWindowKindModalDialog, kWindowKindAlertBox}) {
    InRun([&] {
      TTestWindowPtr owner = Make(kWindowKindDocument, nullptr, WS_OVERLAPPEDWINDOW);
      owner->Show();
      TTestWindowPtr dialog = Make(kind, owner.get());
      const HWND hwnd = dialog->GetHwnd();
      EXPECT_TRUE(IsWindowEnabled(owner->GetHwnd()));
      dialog->Show();
      EXPECT_FALSE(IsWindowEnabled(owner->GetHwnd()));
      const TRect shown = FrameRect(hwnd);

      dialog->ReleaseWindow();
      EXPECT_TRUE(IsWindowEnabled(owner->GetHwnd()));
      EXPECT_TRUE(IsWindowVisible(hwnd));
      EXPECT_FALSE(IsWindowShown(hwnd));
      const TRect hidden = FrameRect(hwnd);
      EXPECT_LE(hidden.fBottom, GetSystemMetrics(SM_YVIRTUALSCREEN));
      EXPECT_EQ(RectWidth(hidden), RectWidth(shown));
      EXPECT_EQ(RectHeight(hidden), RectHeight(shown));
      const std::vector<HWND> listed = GetShownWindowsZ();
      EXPECT_EQ(std::find(listed.begin(), listed.end(), hwnd), listed.end());
      dialog.reset();
      EXPECT_FALSE(IsWindow(hwnd));
      Release(owner);
    });
  }
}

// The owner is ended under its dialog: that is reported, and the dialog stays a sound window.
TEST_F(WinWindowTest, AnOwnerThatEndsFirst) {
  InRun([this] {
    TTestWindowPtr owner = Make(kWindowKindModelessDialog);
    owner->Show();
    TTestWindowPtr dialog = Make(kWindowKindModalDialog, owner.get());
    dialog->Show();
    Release(owner);
    EXPECT_EQ(TakeAssertions(), Texts{"fChildWindows.size()==0"});
    EXPECT_TRUE(dialog->CheckInvariant());
    EXPECT_TRUE(dialog->IsVisible());
    Release(dialog);
  });
}

// Its destructor gives the owner back, too, as a last resort.
TEST_F(WinWindowTest, ADialogThatIsNotReleasedGivesItsOwnerBack) {
  InRun([this] {
    TTestWindowPtr owner = Make(kWindowKindDocument, nullptr, WS_OVERLAPPEDWINDOW);
    owner->Show();
    {
      CTestWindow dialog(fRecord, kWindowKindModalDialog, owner.get());
      EnableWindow(owner->GetHwnd(), FALSE);
    }
    EXPECT_TRUE(IsWindowEnabled(owner->GetHwnd()));
    Release(owner);
  });
}

// --- State

// Nobody takes the changes, so they are told each time; the views follow at once.
TEST_F(WinWindowTest, ChangesThatNobodyTakes) {
  fRecord.fTakesChanges = false;
  InRun([this] {
    TTestWindowPtr window = Make(kWindowKindModelessDialog, nullptr, kPopupStyle | WS_THICKFRAME);
    window->Show();
    const std::size_t sizes = fRecord.fSizes.size();
    const std::size_t placements = fRecord.fPlacements.size();
    EXPECT_GT(sizes, 0u);
    SetWindowPos(window->GetHwnd(), nullptr, 0, 0, 420, 380, SWP_NOMOVE | SWP_NOZORDER);
    SetWindowPos(window->GetHwnd(), nullptr, 0, 0, 421, 380, SWP_NOMOVE | SWP_NOZORDER);
    EXPECT_GE(fRecord.fSizes.size(), sizes + 2);
    EXPECT_GE(fRecord.fPlacements.size(), placements + 2);
    EXPECT_EQ(fRecord.fSizes.back().first, (TSize{0, 0}));
    EXPECT_EQ(fRecord.fPlacements.back().first, TWindowPlacement());
    const TSize told = fRecord.fSizes.back().second;
    EXPECT_EQ(window->GetRootView()->GetBounds(), (TRect{0, 0, told.fWidth, told.fHeight}));
    Release(window);
  });
}

// Before it is shown, only the views follow the native window.
TEST_F(WinWindowTest, AHiddenWindowTellsNothing) {
  InRun([this] {
    TTestWindowPtr window = Make(kWindowKindModelessDialog);
    SetWindowPos(window->GetHwnd(), nullptr, 20, 30, 420, 380, SWP_NOZORDER);
    EXPECT_TRUE(fRecord.fSizes.empty());
    EXPECT_TRUE(fRecord.fPlacements.empty());
    RECT client = {};
    GetClientRect(window->GetHwnd(), &client);
    EXPECT_EQ(window->GetRootView()->GetBounds(), FromNative(client));
    window->Show();
    EXPECT_EQ(fRecord.fSizes.size(), 1u);
    EXPECT_EQ(fRecord.fSizes.back().second, (TSize{client.right, client.bottom}));
    Release(window);
  });
}

TEST_F(WinWindowTest, ContradictingStatesAreReported) {
  InRun([this] {
    TTestWindowPtr window = Make(kWindowKindModelessDialog);
    TWindowStateRecord state = window->GetWindowState();
    state.fPlacement.fZoomState = static_cast<TZoomState>(1);
    state.fMinimumClientSize = {200, 200};
    state.fMaximumClientSize = {100, 100};
    state.fPlacement.fMinimized = state.fPlacement.fMaximized = true;
    window->SetWindowState(state);
    EXPECT_EQ(TakeAssertions(),
              (Texts{"state.fPlacement.fZoomState==kWindowStateIdeal || "
                     "state.fPlacement.fZoomState==kWindowStateUser",
                     "(state.fMinimumClientSize.fHeight <= state.fMaximumClientSize.fHeight) || "
                     "(0==state.fMaximumClientSize.fHeight)",
                     "(state.fMinimumClientSize.fWidth <= state.fMaximumClientSize.fWidth) || "
                     "(0==state.fMaximumClientSize.fWidth)",
                     "!(state.fPlacement.fMinimized && state.fPlacement.fMaximized)",
                     "newWindowPlacement.fZoomState==kWindowStateUser"}));
    Release(window);
  });
}

// --- What is broken is reported

TEST_F(WinWindowTest, ALostNativeWindowIsReported) {
  InRun([this] {
    TTestWindowPtr window = Make(kWindowKindFloating);
    EXPECT_TRUE(window->CheckInvariant());
    DestroyWindow(window->GetHwnd());
    TakeAssertions();
    EXPECT_FALSE(window->CheckInvariant());
    EXPECT_EQ(TakeAssertions(), Texts{"false"});
    Release(window);
    TakeAssertions();
    EXPECT_EQ(fRecord.fLog, Texts{"gone"});
  });
}

// --- Menu bar and tooltips, as far as they are built

TEST_F(WinWindowTest, TheSameMenuBarIsNotBuiltTwice) {
  InRun([this] {
    TTestWindowPtr window = Make(kWindowKindDocument, nullptr, WS_OVERLAPPEDWINDOW);
    CMenuBarState state;
    window->RunMenuBarSetup(state);
    EXPECT_EQ(CountLines("CWinWindow::RebuildCompleteMenuBar"), 0);
    TMenuBarFlags flags = {};
    flags.fShowWindowMenu = 1;
    EXPECT_EQ(state.IMenuBarState_SetFlags(flags), kOK);
    window->RunMenuBarSetup(state);
    window->RunMenuBarSetup(state);
    EXPECT_EQ(CountLines("CWinWindow::RebuildCompleteMenuBar"), 1);
    EXPECT_TRUE(window->GetMenuBarState() == state);
    Release(window);
  });
}

// --- Keys

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
    EXPECT_EQ(fRecord.fLog, Texts{"key " + std::to_string(VK_F6)});
    Release(window);
  });
}

// --- Application modality without a blocking dialog

TEST_F(WinWindowTest, NothingIsBlockedByAnEmptyStack) {
  InRun([this] {
    TTestWindowPtr window = Make(kWindowKindDocument, nullptr, WS_OVERLAPPEDWINDOW);
    window->Show();
    EnforceAppModality();
    EXPECT_FALSE(OnModalActivationAttempt(window->GetHwnd()));
    EXPECT_FALSE(OnModalClickAttempt(window->GetHwnd()));
    PopAppModal(window->GetHwnd());
    EXPECT_TRUE(IsWindowEnabled(window->GetHwnd()));
    Release(window);
  });
}

// Dialogs that are not the library's own stand on the stack, too; one that is gone disturbs nothing.
TEST_F(WinWindowTest, ForeignDialogsOnTheStack) {
  NativeTestWindow foreign;
  InRun([&] {
    TTestWindowPtr window = Make(kWindowKindDocument, nullptr, WS_OVERLAPPEDWINDOW);
    window->Show();
    ShowWindow(foreign, SW_SHOW);
    {
      CMorvaneImpl& morvane = *CMorvaneImpl::gMorvaneImpl;
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
    }
    EXPECT_TRUE(gAppModalDialogStack.empty());
    EXPECT_TRUE(IsWindowEnabled(window->GetHwnd()));
    EXPECT_EQ(GetActiveWindow(), window->GetHwnd());
    Release(window);
  });
}

// The application comes to the front in the order its windows have; minimized ones only if all are.
TEST_F(WinWindowTest, RefreshingTheOrder) {
  InRun([this] {
    RefreshAppModality();  // no windows, nothing to do
    TTestWindowPtr back = Make(kWindowKindDocument, nullptr, WS_OVERLAPPEDWINDOW);
    TTestWindowPtr front = Make(kWindowKindDocument, nullptr, WS_OVERLAPPEDWINDOW);
    back->Show();
    front->Show();
    const HWND backHwnd = back->GetHwnd();
    const HWND frontHwnd = front->GetHwnd();
    RefreshAppModality();
    EXPECT_EQ(GetShownWindowsZ(), (std::vector<HWND>{frontHwnd, backHwnd}));
    EXPECT_EQ(GetActiveWindow(), frontHwnd);
    EXPECT_EQ(
        CountLines("CWinWindow::BringAppToFrontAndRestoreZOrder activateFrontModal " + HandleText(backHwnd) +
                   " " + HandleText(frontHwnd) + " activate: " + HandleText(frontHwnd)),
        1);

    ShowWindow(frontHwnd, SW_MINIMIZE);
    RefreshAppModality();
    EXPECT_TRUE(::IsIconic(frontHwnd));
    EXPECT_EQ(GetActiveWindow(), backHwnd);

    ShowWindow(backHwnd, SW_MINIMIZE);
    RefreshAppModality();
    EXPECT_FALSE(::IsIconic(frontHwnd));
    EXPECT_FALSE(::IsIconic(backHwnd));
    Release(front);
    Release(back);
  });
}

// --- The root view's behaviour

TEST(WinRootViewBehavior, TakesNothing) {
  struct : IRectsGetter {
    TError IRectsGetter_AddRects(const TRect*, std::uint32_t count) override {
      fCalls.push_back(count);
      return kOK;
    }
    std::vector<std::uint32_t> fCalls;
  } hitRects;
  CWinRootViewBehavior behavior;
  EXPECT_EQ(behavior.IViewBehavior_GetHitRects(hitRects), kOK);
  EXPECT_EQ(hitRects.fCalls, std::vector<std::uint32_t>{0});
  EXPECT_EQ(behavior.IViewBehavior_OnOffset(1, 2), TError(kOtherError));
  TError error = kOtherError;
  TFlag handled = 7;
  EXPECT_EQ(behavior.IViewBehavior_GetMouseShape({}, kMousePhaseNormal, handled, error), nullptr);
  EXPECT_EQ(std::exchange(handled, 7), 0u);
  const TError results[] = {error, behavior.IViewBehavior_OnMouseEnterExit(1),
                            behavior.IViewBehavior_OnEffectivelyEnabledChanged(1),
                            behavior.IViewBehavior_OnOnDutyFocusChanged(1)};
  for (const TError result : results) EXPECT_EQ(result, kOK);
  const std::function<TError()> questions[] = {
      [&] { return behavior.IViewBehavior_HandleClick({}, handled); },
      [&] { return behavior.IViewBehavior_OnMouseWheel({}, handled); },
      [&] { return behavior.IViewBehavior_OnMouseTracking({}, kMousePhasePre, handled); },
      [&] { return behavior.IViewBehavior_HandleKeyDown({}, handled); },
      [&] { return behavior.IViewBehavior_OnMenuCommand({}, handled); },
  };
  for (const auto& ask : questions) {
    EXPECT_EQ(ask(), kOK);
    EXPECT_EQ(std::exchange(handled, 7), 0u);
  }
  TNativeWindow native = {reinterpret_cast<HWND>(1)};
  EXPECT_EQ(behavior.IViewBehavior_GetNativeFocusTarget(native), kOK);
  EXPECT_EQ(native.fHwnd, nullptr);
}

}  // namespace NSMorvane
