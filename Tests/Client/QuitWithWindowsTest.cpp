// The run loop with document windows: what their end leads to, quitting with windows open, and what happens
// to them when the run fails.
#include "Support/ClientWindows.h"

#include <thread>

namespace NSMorvaneTest {

class DocumentRunTest : public ClientWindowTest {
 protected:
  DocumentRunTest() { fRun.fHooks.erase("QuitEvent"); }

  // Handles what waits, and a few ticks of the windows' timers.
  void LetMessagesPass() {
    for (const ULONGLONG start = GetTickCount64(); GetTickCount64() - start < 100;) Turn();
  }
  // A window that refuses, and one that does not any more.
  static void Refuse(WindowRecord& document) { document.fHooks["RequestClose"] = Hook(); }
  static void Agree(WindowRecord& document) { document.fHooks.erase("RequestClose"); }
  // Fills `record`, whose end is to be seen in the log of the run.
  void MakeNamed(Kind kind, WindowRecord& record, const std::string& name) {
    record.fName = name + ".";
    record.fEndLog = &fRun.fLog;
    Make(kind, record);
  }
  TError StartQuitting() { return fMorvane->IMorvane_StartQuitting(); }
  std::vector<IWindow*> DocumentWindowsZ() {
    CVectorWindowReceiver receiver;
    EXPECT_EQ(fMorvane->IMorvane_GetDocumentWindowsZ(receiver), kOK);
    return receiver.fWindows;
  }
};

// --- The end of the last document window

TEST_F(DocumentRunTest, ClosingTheLastOneAsksToQuit) {
  fRun.fHooks["QuitEvent"] = [this, quitEvents = 0]() mutable {
    // Ignored the first time, it comes again with the next message.
    return ++quitEvents == 1 ? fMorvane->IMorvane_PostAppMessage(1, 2) : StartQuitting();
  };
  RunFrom([this] {
    WindowRecord& first = MakeDocument("first");
    WindowRecord& last = MakeDocument("last");
    PostQuitMessage(3);  // nobody's business
    Then([&] { Release(first); });
    Then([&] { PostMessageW(last.fHwnd, WM_CLOSE, 0, 0); });
  });
  EXPECT_EQ(
      fRun.fLog.Take(),
      "StartUp first.deleted last.RequestClose:0 last.deleted QuitEvent AppMessage:1,2 QuitEvent CleanUp "
      "deleted");
}

// The window ends inside a message of another thread, which wakes nobody, and no idle call is due.
TEST_F(DocumentRunTest, TheLastOneEndsInAMessageOfAnotherThread) {
  fRun.fHooks["Idle"] = [this] { *fRun.fIdleDelay = 0x7FFFFFFF; };
  fRun.fHooks["QuitEvent"] = [this] { return StartQuitting(); };
  std::thread thread;
  RunFrom([&] {
    const HWND hwnd = MakeDocument("last").fHwnd;
    EXPECT_TRUE(YieldUntil([this] { return fRun.fIdleCalls > 1; }));
    Then([&thread, hwnd] { thread = std::thread([=] { SendMessageW(hwnd, WM_CLOSE, 0, 0); }); });
  });
  thread.join();
  EXPECT_EQ(fRun.fLog.Take(), "StartUp last.RequestClose:0 last.deleted QuitEvent CleanUp deleted");
}

// The windows go, oldest first, without being asked.
TEST_F(DocumentRunTest, FailedStartUpDestroysTheWindows) {
  CreateMorvane();
  fRun.fHooks["StartUp"] = [this] {
    MakeDocument("first");
    MakeDocument("second");
    return TError(100124);
  };
  ExpectRunFails(100124);
  EXPECT_EQ(fRun.fLog.Take(), "StartUp first.deleted second.deleted deleted");
}

// --- Quitting

// One at a time, the front window first; the next one when the one before has gone and a message has been
// handled. A window that cannot be seen is not asked, but it keeps the run going.
TEST_F(DocumentRunTest, WindowsAreAskedOneAtATime) {
  RunFrom([this] {
    const HWND bottom = MakeDocument("bottom").fHwnd;
    WindowRecord& middle = MakeDocument("middle");
    WindowRecord& top = MakeDocument("top");
    Refuse(middle);
    Refuse(top);
    Then([=, this, &middle, &top] {
      ShowWindow(bottom, SW_HIDE);
      EXPECT_EQ(DocumentWindowsZ(), (std::vector<IWindow*>{top.fWindow, middle.fWindow}));
      fRun.fLog.Take();
      EXPECT_EQ(StartQuitting(), kOK);
      LetMessagesPass();
      EXPECT_EQ(fRun.fLog.Take(), "top.RequestClose:1");
      EXPECT_TRUE(IsQuitting());
      Release(top);
      EXPECT_EQ(fRun.fLog.Take(), "top.deleted");
      LetMessagesPass();
      EXPECT_EQ(fRun.fLog.Take(), "middle.RequestClose:1");
      Release(middle);
      LetMessagesPass();
      EXPECT_TRUE(IsQuitting());
      EXPECT_EQ(fRun.fLog.Take(), "middle.deleted");
      ShowWindow(bottom, SW_SHOW);
    });
  });
  EXPECT_EQ(fRun.fLog.Take(), "bottom.RequestClose:1 bottom.deleted CleanUp deleted");
}

// One that the asked window releases ends at once.
TEST_F(DocumentRunTest, OnlyTheAskedWindowIsHeld) {
  RunFrom([this] {
    WindowRecord& bottom = MakeDocument("bottom");
    WindowRecord& top = MakeDocument("top");
    top.fHooks["RequestClose"] = [&, this] {
      Release(bottom);
      EXPECT_EQ(fRun.fLog.Last(), "bottom.deleted");
      Release(top);
      EXPECT_EQ(fRun.fLog.Last(), "bottom.deleted");
    };
    Then([this] { EXPECT_EQ(StartQuitting(), kOK); });
  });
  EXPECT_EQ(fRun.fLog.Take(), "StartUp top.RequestClose:1 bottom.deleted top.deleted CleanUp deleted");
}

// A failure at the first window comes back to the caller, one at a later window to the error report. Both end
// the quitting.
TEST_F(DocumentRunTest, FailureToCloseEndsTheQuitting) {
  fRun.fHooks["UnhandledError"] = [this] { EXPECT_FALSE(IsQuitting()); };
  RunFrom([this] {
    WindowRecord& bottom = MakeDocument("bottom");
    MakeDocument("top");
    bottom.fHooks["RequestClose"] = TError(100700);
    Then([this] { EXPECT_EQ(StartQuitting(), kOK); });
    Then([&, this] {
      EXPECT_TRUE(YieldUntil([this] { return fRun.fLog.Last() == "UnhandledError:100700"; }));
      EXPECT_EQ(StartQuitting(), 100700u);
      EXPECT_FALSE(IsQuitting());
      Agree(bottom);
      EXPECT_EQ(StartQuitting(), kOK);
    });
  });
  EXPECT_EQ(fRun.fLog.Take(),
            "StartUp top.RequestClose:1 top.deleted bottom.RequestClose:1 UnhandledError:100700 "
            "bottom.RequestClose:1 bottom.RequestClose:1 bottom.deleted CleanUp deleted");
}

TEST_F(DocumentRunTest, EndOfSession) {
  fRun.fHooks["QuitEvent"] = [this] { return StartQuitting(); };
  RunFrom([this] {
    WindowRecord& bottom = MakeDocument("bottom");
    WindowRecord& top = MakeDocument("top");
    top.fHooks["RequestClose"] = [this] { return fMorvane->IMorvane_StopQuitting(); };
    Then([&, this] {
      const auto mayEnd = [this](HWND hwnd) {
        fRun.fLog.Take();
        return SendMessageW(hwnd, WM_QUERYENDSESSION, 0, 0);
      };
      EXPECT_EQ(mayEnd(bottom.fHwnd), 0);
      EXPECT_FALSE(IsQuitting());
      EXPECT_EQ(fRun.fLog.Take(), "QuitEvent top.RequestClose:1");
      // Already quitting: yes at once, whatever is open.
      Refuse(top);
      StartQuitting();
      EXPECT_EQ(mayEnd(top.fHwnd), 1);
      EXPECT_EQ(fRun.fLog.Take(), "");
      EXPECT_EQ(fMorvane->IMorvane_StopQuitting(), kOK);
      // A failing quit event is reported.
      fRun.fHooks["QuitEvent"] = TError(100800);
      EXPECT_EQ(mayEnd(bottom.fHwnd), 0);
      ExpectReported(100800);
      // All go, from inside the message. An idle call that fails on the way is reported, and is no answer.
      fRun.fHooks["QuitEvent"] = [this] { return StartQuitting(); };
      fRun.fHooks["Idle"] = TError(100801);
      Agree(top);
      bottom.fHooks["RequestClose"] = [&, this] {
        fMorvane->IMorvane_WakeUpIdle();
        EXPECT_EQ(MsgWaitForMultipleObjects(0, nullptr, FALSE, kWaitLimitMS, QS_SENDMESSAGE), WAIT_OBJECT_0);
        MSG message;
        PeekMessageW(&message, nullptr, WM_USER, WM_USER, PM_NOREMOVE);  // lets it in
        Then([&] { Release(bottom); });
      };
      EXPECT_EQ(mayEnd(bottom.fHwnd), 1);
      EXPECT_EQ(fRun.fLog.Take(),
                "QuitEvent top.RequestClose:1 top.deleted bottom.RequestClose:1 UnhandledError:100801 "
                "bottom.deleted");
    });
  });
}

// --- Loops that are not the library's

TEST_F(DocumentRunTest, IdleCallsInAMessageBox) {
  fRun.fHooks["QuitEvent"] = [this] { return StartQuitting(); };
  RunFrom([this] {
    const HWND hwnd = MakeDocument("document").fHwnd;
    Then([=, this] {
      fRun.fHooks["Idle"] = [this, calls = 0]() mutable {
        *fRun.fIdleDelay = 1;
        const HWND box = FindWindowW(L"#32770", L"A box");
        if (box && ++calls == 3) PostMessageW(box, WM_COMMAND, IDOK, 0);
      };
      EXPECT_EQ(fMorvane->IMorvane_WakeUpIdle(), kOK);
      EXPECT_EQ(MessageBoxW(hwnd, L"", L"A box", MB_OK), IDOK);
      Quit();
    });
  });
}

TEST_F(DocumentRunTest, AnIdleCallEndsTheLastDialog) {
  fRun.fHooks["QuitEvent"] = [this] { return StartQuitting(); };
  WindowRecord dialog;
  fRun.fHooks["Idle"] = [&, this] {
    *fRun.fIdleDelay = 0x7FFFFFFF;
    if (!dialog.fHwnd) return;
    Release(dialog);
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
  };
  RunFrom([&] {
    EXPECT_TRUE(YieldUntil([this] { return fRun.fIdleCalls > 1; }));
    Make(Kind::kModal, dialog, kPlain, nullptr, 1);
  });
  EXPECT_EQ(fRun.fLog.Take(), "StartUp NoDocument:5003 QuitEvent CleanUp deleted");
}

// --- Another application

namespace {

// A window of a thread of its own, which has none but this: to the library it is another application's.
class StrangersWindow {
 public:
  StrangersWindow() : fThread([this] { Run(); }) {
    while (!fHwnd) SwitchToThread();
  }
  ~StrangersWindow() {
    PostMessageW(fHwnd, WM_CLOSE, 0, 0);
    fThread.join();
  }
  HWND Hwnd() const { return fHwnd; }

 private:
  void Run() {
    const HWND hwnd = CreateWindowExW(0, L"STATIC", L"Stranger", WS_OVERLAPPEDWINDOW, 700, 600, 200, 100,
                                      nullptr, nullptr, nullptr, nullptr);
    ShowWindow(hwnd, SW_SHOWNA);
    fHwnd = hwnd;
    MSG message;
    while (IsWindow(hwnd) && GetMessageW(&message, nullptr, 0, 0) > 0) DispatchMessageW(&message);
  }
  std::atomic<HWND> fHwnd = nullptr;
  std::thread fThread;
};

}  // namespace

// Floating windows go when another application becomes active and come back with this one. When it quits
// meanwhile, they come to be closed.
TEST_F(DocumentRunTest, FloatingWindowsFollowTheApplication) {
  std::string told;
  fRun.fHooks["AppActivation:1"] = [&] { told += "1"; };
  fRun.fHooks["AppActivation:0"] = [&] { told += "0"; };
  WindowRecord modeless, floating;
  RunFrom([&] {
    WindowRecord& document = MakeDocument("document");
    MakeNamed(Kind::kModeless, modeless, "modeless");
    MakeNamed(Kind::kFloating, floating, "floating");
    Then([&] {
      const StrangersWindow stranger;
      const auto isFloating = [&](bool flag) {
        EXPECT_TRUE(YieldUntil([&] { return (IsWindowVisible(floating.fHwnd) != 0) == flag; })) << flag;
        EXPECT_TRUE(IsWindowVisible(document.fHwnd) && IsWindowVisible(modeless.fHwnd));
      };
      isFloating(true);
      SetForegroundWindow(stranger.Hwnd());
      isFloating(false);
      SetForegroundWindow(document.fHwnd);
      isFloating(true);
      SetForegroundWindow(stranger.Hwnd());
      isFloating(false);
      EXPECT_EQ(told, "1010");
      floating.fHooks["RequestClose"] = [&] {
        EXPECT_TRUE(IsWindowVisible(floating.fHwnd));
        Release(floating);
      };
      fRun.fLog.Take();
      EXPECT_EQ(StartQuitting(), kOK);
      EXPECT_TRUE(YieldUntil([this] { return fRun.fLog.Last().ends_with("deleted"); }));
    });
  });
  const std::string log = fRun.fLog.Take();
  EXPECT_NE(log.find("floating.RequestClose:1 floating.deleted"), log.npos) << log;
}

// --- A run that ends before its windows

// Nothing closes a window that refuses while the application starts up. It stays behind, works, and ends when
// the client releases it, or at the latest with the root object.
TEST_F(DocumentRunTest, WindowsLeftBehind) {
  for (const bool rootGoesFirst : {false, true}) {
    std::deque<WindowRecord> windows(4);
    RunFrom([&] {
      // The dialogs have another native owner for the document that is there.
      for (const Kind kind : {Kind::kDocument, Kind::kModeless, Kind::kModal, Kind::kFloating}) {
        WindowRecord& record = windows[static_cast<std::size_t>(kind)];
        Refuse(record);
        Make(kind, record);
      }
      return StartQuitting();
    });
    EXPECT_EQ(fRun.fLog.Take(), "StartUp CleanUp deleted");
    for (WindowRecord& record : windows) {
      EXPECT_TRUE(IsWindowVisible(record.fHwnd));
      EXPECT_EQ(record.fLog.Count("deleted"), 0);
      InvalidateRect(record.fHwnd, nullptr, FALSE);
    }
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
    if (!rootGoesFirst) {
      for (WindowRecord& record : windows) Release(record);
    }
    DeleteMorvane();
    for (const WindowRecord& record : windows) EXPECT_EQ(record.fLog.Count("deleted"), 1);
    fOutput.TakeAssertions();  // the application's activation finds no behaviour
  }
}

// --- Lingering

// The window brings the application back from lingering, but not out of quit mode.
TEST_F(DocumentRunTest, WindowMadeWhileLingering) {
  fParams.fLingerMS = 1000;
  fRun.fHooks["Idle"] = [this] {
    *fRun.fIdleDelay = 5;
    if (!fDocuments.empty() || !fOutput.CountLines("Entering lingering mode...")) return;
    WindowRecord& late = MakeDocument("late");
    late.fHooks["RequestClose"] = [&, this] {
      Then([&, this] {
        EXPECT_TRUE(YieldUntil([this] { return fOutput.CountLines("Cancelling lingering mode...") > 0; }));
        Release(late);
      });
    };
  };
  RunFrom([this] { Then([this] { Quit(); }); });
  EXPECT_EQ(fRun.fLog.Take(), "StartUp NoDocument:5003 late.RequestClose:1 late.deleted CleanUp deleted");
  EXPECT_EQ(fOutput.CountLines("Entering lingering mode..."), 2);
  EXPECT_EQ(fOutput.CountLines("Lingering complete, exiting..."), 1);
}

}  // namespace NSMorvaneTest
