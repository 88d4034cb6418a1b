// The run loop with document windows: what their end leads to, quitting with windows open, and what happens
// to them when the run fails.
#include "Support/ClientWindows.h"

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
    const HWND bottom = MakeDocument("bottom").fHwnd;
    WindowRecord& top = MakeDocument("top");
    top.fHooks["RequestClose"] = [this] { return fMorvane->IMorvane_StopQuitting(); };
    Then([=, this, &top] {
      const auto mayEnd = [this](HWND hwnd) {
        fRun.fLog.Take();
        return SendMessageW(hwnd, WM_QUERYENDSESSION, 0, 0);
      };
      EXPECT_EQ(mayEnd(bottom), 0);
      EXPECT_FALSE(IsQuitting());
      EXPECT_EQ(fRun.fLog.Take(), "QuitEvent top.RequestClose:1");
      // Already quitting: yes at once, whatever is open.
      Refuse(top);
      StartQuitting();
      EXPECT_EQ(mayEnd(top.fHwnd), 1);
      EXPECT_EQ(fRun.fLog.Take(), "");
      EXPECT_EQ(fMorvane->IMorvane_StopQuitting(), kOK);
      // All go, from inside the message.
      Agree(top);
      EXPECT_EQ(mayEnd(bottom), 1);
      EXPECT_EQ(fRun.fLog.Take(),
                "QuitEvent top.RequestClose:1 top.deleted bottom.RequestClose:1 bottom.deleted");
    });
  });
}

// --- A run that ends before its windows

// Nothing closes a window that refuses while the application starts up. It stays behind, works, and ends when
// the client releases it, or at the latest with the root object.
TEST_F(DocumentRunTest, WindowLeftBehind) {
  WindowRecord* document = nullptr;
  for (const bool rootGoesFirst : {false, true}) {
    RunFrom([&] {
      document = &MakeDocument("document");
      Refuse(*document);
      return StartQuitting();
    });
    EXPECT_EQ(fRun.fLog.Take(), "StartUp document.RequestClose:1 CleanUp deleted");
    InvalidateRect(document->fHwnd, nullptr, FALSE);
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
    if (!rootGoesFirst) Release(*document);
    DeleteMorvane();
    EXPECT_EQ(fRun.fLog.Take(), "document.deleted");
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
