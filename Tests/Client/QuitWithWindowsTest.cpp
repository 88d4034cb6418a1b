// The run loop with document windows: what their end leads to, quitting with windows open, and what happens
// to them when the run fails.
#include <algorithm>

#include "Support/ClientFixture.h"

namespace NSMorvaneTest {

class DocumentRunTest : public ClientTest {
 protected:
  // Handles what waits, and a few ticks of the windows' timers.
  void LetMessagesPass() { YieldFor(100); }
  std::vector<IWindow*> DocumentWindowsZ() {
    CVectorWindowReceiver receiver;
    EXPECT_EQ(fMorvane->IMorvane_GetDocumentWindowsZ(receiver), kOK);
    return receiver.fWindows;
  }
  static bool AnyDocumentWindowLeft() {
    HWND hwnd = nullptr;
    DWORD processId = 0;
    while ((hwnd = FindWindowExW(nullptr, hwnd, L"SkerryDocumentWindow", nullptr)) != nullptr) {
      GetWindowThreadProcessId(hwnd, &processId);
      if (processId == GetCurrentProcessId()) return true;
    }
    return false;
  }
};

// --- The end of the last document window

TEST_F(DocumentRunTest, ClosingTheLastOneAsksToQuit) {
  CreateMorvane();
  fHooks.fOnStartUp = [this] {
    IDocumentWindow* const first = CreateDocument("first");
    IDocumentWindow* const last = CreateDocument("last");
    Then([=] { EXPECT_EQ(first->IDocumentWindow_Release(), kOK); });
    Then([=] { PostMessageW(HwndOf(*last), WM_CLOSE, 0, 0); });
  };
  int quitEvents = 0;
  fHooks.fOnQuitEvent = [&] {
    // Ignored the first time, it comes again with the next message.
    if (++quitEvents == 1) return fMorvane->IMorvane_PostAppMessage(1, 2);
    return fMorvane->IMorvane_StartQuitting();
  };
  EXPECT_EQ(Run(), kOK);
  EXPECT_EQ(fLog, (CallLog{"OnStartUp", "first deleted", "last OnRequestClose 0", "last deleted",
                           "OnQuitEvent", "OnAppMessage 1 2", "OnQuitEvent", "OnCleanUp", "deleted"}));
}

// --- Errors of windows

TEST_F(DocumentRunTest, FailingFactoryLeavesNoWindow) {
  struct : IDocumentWindowBehaviorFactory {
    IDocumentWindowBehavior* IDocumentWindowBehaviorFactory_CreateBehavior(IDocumentWindow&,
                                                                           TError& outError) override {
      EXPECT_TRUE(AnyDocumentWindowLeft());
      outError = 100400;
      return nullptr;
    }
  } factory;
  CreateMorvane();
  const auto expectFailure = [&](TError expected) {
    TError error = kOK;
    EXPECT_EQ(fMorvane->IMorvane_CreateDocumentWindow(factory, 0, 0, error), nullptr);
    EXPECT_EQ(error, expected);
    EXPECT_FALSE(AnyDocumentWindowLeft());
  };
  expectFailure(kIllegalCallSequenceProgrammingError);  // there is no run
  EXPECT_EQ(fOutput.TakeAssertions(), CallLog{"0!=fBehavior"});
  RunFrom([&] {
    expectFailure(100400);
    return fMorvane->IMorvane_StartQuitting();
  });
}

// The windows go, oldest first, without being asked.
TEST_F(DocumentRunTest, FailedStartUpDestroysTheWindows) {
  CreateMorvane();
  fHooks.fOnStartUp = [this] {
    CreateDocument("first");
    CreateDocument("second");
    return TError(100124);
  };
  ExpectRunFails(100124u);
  EXPECT_EQ(fLog, (CallLog{"OnStartUp", "first deleted", "second deleted"}));
  EXPECT_FALSE(AnyDocumentWindowLeft());
}

// --- Menu bars and debug settings

// A window that the set-up of another one has ended is passed over.
TEST_F(DocumentRunTest, MenuBarSetUpMayEndTheNextWindow) {
  int setUps = 0;
  IDocumentWindow* next = nullptr;
  fHooks.fOnSetupMenuBar = [&](IMenuBarState&) {
    ++setUps;
    return next ? std::exchange(next, nullptr)->IDocumentWindow_Release() : kOK;
  };
  RunFrom([&] {
    IDocumentWindow* const below = CreateDocument("below");
    CreateDocument("above");
    LetMessagesPass();
    setUps = 0;
    next = below;
    EXPECT_EQ(fMorvane->IMorvane_RequestMenuBarsSetup(), kOK);
    // The second set-up is the one that the release has asked for.
    EXPECT_TRUE(YieldUntil([&] { return setUps >= 2; }));
    EXPECT_EQ(setUps, 2);
    EXPECT_EQ(fOutput.CountLines("RequestMenuBarSetup for a behavior-less document window!!!"), 0u);
    fMorvane->IMorvane_StartQuitting();
  });
  EXPECT_EQ(fLog, (CallLog{"OnStartUp", "below deleted", "above OnRequestClose 1", "above deleted",
                           "OnCleanUp", "deleted"}));
}

TEST_F(DocumentRunTest, SettingsOfWhatIsOnTheScreenInvalidate) {
  CreateMorvane();
  fHooks.fOnStartUp = [this] {
    const HWND hwnd = HwndOf(*CreateDocument("document"));
    TDebugSettings settings;
    EXPECT_EQ(fMorvane->IMorvane_GetDebugSettings(settings), kOK);
    settings.fDrawInvalidationBlue = settings.fDrawPaintsRed = 0;
    EXPECT_EQ(fMorvane->IMorvane_SetDebugSettings(settings), kOK);
    LetMessagesPass();
    const auto isDirtyAfterSetting = [&] {
      EXPECT_EQ(fMorvane->IMorvane_SetDebugSettings(settings), kOK);
      RECT dirty = {};
      const bool isDirty = GetUpdateRect(hwnd, &dirty, FALSE) != 0;
      ValidateRect(hwnd, nullptr);
      return isDirty;
    };
    EXPECT_FALSE(isDirtyAfterSetting());
    for (TFlag* const field : {&settings.fDrawViewBounds, &settings.fDrawMouseViewInfo}) {
      *field = 1 - *field;
      EXPECT_TRUE(isDirtyAfterSetting());
    }
    return TError(100999);
  };
  ExpectRunFails(100999u);
}

// --- Quitting

// One at a time, the front window first; the next one when the one before has gone and a message has been
// handled.
TEST_F(DocumentRunTest, WindowsAreAskedOneAtATime) {
  fOnRequestClose = [] {};
  RunFrom([this] {
    CreateDocument("bottom");
    IDocumentWindow* const middle = CreateDocument("middle");
    IDocumentWindow* const top = CreateDocument("top");
    Then([=, this] {
      EXPECT_EQ(DocumentWindowsZ().size(), 3u);
      EXPECT_EQ(DocumentWindowsZ().front(), &WindowOf(*top));
      TakeLog();
      EXPECT_EQ(fMorvane->IMorvane_StartQuitting(), kOK);
      LetMessagesPass();
      EXPECT_EQ(TakeLog(), (CallLog{"top OnRequestClose 1"}));
      EXPECT_TRUE(IsQuitting());
      EXPECT_EQ(top->IDocumentWindow_Release(), kOK);
      EXPECT_EQ(TakeLog(), (CallLog{"top deleted"}));
      LetMessagesPass();
      EXPECT_EQ(TakeLog(), (CallLog{"middle OnRequestClose 1"}));
      fOnRequestClose = nullptr;  // the last one closes as soon as it is asked
      EXPECT_EQ(middle->IDocumentWindow_Release(), kOK);
    });
  });
  EXPECT_EQ(fLog,
            (CallLog{"middle deleted", "bottom OnRequestClose 1", "bottom deleted", "OnCleanUp", "deleted"}));
}

// A window that cannot be seen is not asked, but it keeps the run going.
TEST_F(DocumentRunTest, HiddenWindowHoldsTheQuitting) {
  RunFrom([this] {
    const HWND hidden = HwndOf(*CreateDocument("hidden"));
    CreateDocument("shown");
    Then([=, this] {
      ShowWindow(hidden, SW_HIDE);
      EXPECT_EQ(DocumentWindowsZ().size(), 1u);
      EXPECT_EQ(fMorvane->IMorvane_StartQuitting(), kOK);
      LetMessagesPass();
      EXPECT_TRUE(IsQuitting());
      fLog.push_back("shown again");
      ShowWindow(hidden, SW_SHOW);
    });
  });
  EXPECT_EQ(fLog, (CallLog{"OnStartUp", "shown OnRequestClose 1", "shown deleted", "shown again",
                           "hidden OnRequestClose 1", "hidden deleted", "OnCleanUp", "deleted"}));
}

// A failure at the first window comes back to the caller, one at a later window to the error report. Both end
// the quitting.
TEST_F(DocumentRunTest, FailureToCloseEndsTheQuitting) {
  bool failing = true;
  fOnRequestClose = [&](const std::string& name, IDocumentWindow& document) -> TError {
    if (failing && name == "bottom") return 100700;
    return document.IDocumentWindow_Release();
  };
  fHooks.fOnUnhandledError = [this](TError) { EXPECT_FALSE(IsQuitting()); };
  RunFrom([&] {
    CreateDocument("bottom");
    CreateDocument("top");
    Then([this] {
      TakeLog();
      EXPECT_EQ(fMorvane->IMorvane_StartQuitting(), kOK);
    });
    WhenThen([this] { return fLog.back() == "OnUnhandledError 100700"; },
             [&, this] {
               EXPECT_EQ(fOutput.CountLines("Failed to close next window, stopping quit mode!"), 1u);
               EXPECT_EQ(fMorvane->IMorvane_StartQuitting(), 100700u);
               EXPECT_FALSE(IsQuitting());
               failing = false;
               EXPECT_EQ(fMorvane->IMorvane_StartQuitting(), kOK);
             });
  });
  EXPECT_EQ(fLog, (CallLog{"top OnRequestClose 1", "top deleted", "bottom OnRequestClose 1",
                           "OnUnhandledError 100700", "bottom OnRequestClose 1", "bottom OnRequestClose 1",
                           "bottom deleted", "OnCleanUp", "deleted"}));
}

// --- The end of the session

TEST_F(DocumentRunTest, EndOfSession) {
  bool refusing = true;
  fOnRequestClose = [&](const std::string&, IDocumentWindow& document) {
    return refusing ? fMorvane->IMorvane_StopQuitting() : document.IDocumentWindow_Release();
  };
  fHooks.fOnQuitEvent = [this] { return fMorvane->IMorvane_StartQuitting(); };
  RunFrom([&] {
    const HWND bottom = HwndOf(*CreateDocument("bottom"));
    const HWND top = HwndOf(*CreateDocument("top"));
    Then([=, this, &refusing] {
      TakeLog();
      EXPECT_EQ(SendMessageW(bottom, WM_QUERYENDSESSION, 0, 0), 0);
      EXPECT_FALSE(IsQuitting());
      EXPECT_EQ(TakeLog(), (CallLog{"OnQuitEvent", "top OnRequestClose 1"}));
      // Already quitting: yes at once, whatever is open.
      fOnRequestClose = [] {};
      Quit();
      EXPECT_EQ(SendMessageW(top, WM_QUERYENDSESSION, 0, 0), 1);
      EXPECT_EQ(TakeLog(), (CallLog{"top OnRequestClose 1"}));
      EXPECT_EQ(fMorvane->IMorvane_StopQuitting(), kOK);
      // All go, from inside the message.
      fOnRequestClose = nullptr;
      EXPECT_EQ(SendMessageW(bottom, WM_QUERYENDSESSION, 0, 0), 1);
      EXPECT_EQ(TakeLog(), (CallLog{"OnQuitEvent", "top OnRequestClose 1", "top deleted",
                                    "bottom OnRequestClose 1", "bottom deleted"}));
    });
  });
  EXPECT_EQ(fLog, (CallLog{"OnCleanUp", "deleted"}));
}

// --- A run that ends before its windows

// Nothing closes a window that refuses while the application starts up. It stays behind, works, and can be
// released after the run.
// It ends when the client releases it, or at the latest with the root object.
TEST_F(DocumentRunTest, WindowLeftBehind) {
  fOnRequestClose = [] {};
  IDocumentWindow* document = nullptr;
  fHooks.fOnStartUp = [&] {
    document = CreateDocument("document");
    return fMorvane->IMorvane_StartQuitting();
  };
  for (const bool rootGoesFirst : {false, true}) {
    SCOPED_TRACE(rootGoesFirst);
    CreateMorvane();
    EXPECT_EQ(Run(), kOK);
    EXPECT_EQ(TakeLog(), (CallLog{"OnStartUp", "document OnRequestClose 1", "OnCleanUp", "deleted"}));
    InvalidateRect(HwndOf(*document), nullptr, FALSE);
    LetMessagesPass();
    if (!rootGoesFirst) {
      EXPECT_EQ(document->IDocumentWindow_Release(), kOK);
    }
    fOutput.TakeAssertions();  // the application's activation finds no behaviour
    DeleteMorvane();
    EXPECT_EQ(TakeLog(), (CallLog{"document deleted"}));
    fOutput.TakeAssertions();
  }
}

// --- Lingering

// The window brings the application back from lingering, but not out of quit mode.
TEST_F(DocumentRunTest, WindowMadeWhileLingering) {
  fParams.fLingerMS = 1000;
  bool made = false;
  fHooks.fOnIdle = [&](std::int64_t& delay) {
    delay = 5;
    if (made || !fOutput.HasLine("Entering lingering mode...")) return;
    made = true;
    CreateDocument("late");
  };
  fOnRequestClose = [this](const std::string&, IDocumentWindow& document) {
    WhenThen([this] { return fOutput.HasLine("Cancelling lingering mode..."); },
             [&document] { EXPECT_EQ(document.IDocumentWindow_Release(), kOK); });
  };
  RunFrom([this] { Then([this] { Quit(); }); });
  EXPECT_EQ(fLog, (CallLog{"OnStartUp", "OnNoDocument 5003", "late OnRequestClose 1", "late deleted",
                           "OnCleanUp", "deleted"}));
  EXPECT_EQ(fOutput.CountLines("Entering lingering mode..."), 2u);
  EXPECT_EQ(fOutput.CountLines("Cancelling lingering mode..."), 1u);
  EXPECT_EQ(fOutput.CountLines("Lingering complete, exiting..."), 1u);
}

}  // namespace NSMorvaneTest
