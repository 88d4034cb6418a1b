// The run loop with document windows: what their end leads to, quitting with windows open, and what happens
// to them when the run fails.
#include "Support/ClientWindows.h"
#include "Support/PatchedImport.h"

#include <thread>

namespace NSMorvaneTest {

class DocumentRunTest : public ClientWindowTest {
 protected:
  DocumentRunTest() { fRun.fHooks["QuitEvent"] = fQuits; }

  // Handles what waits, and a few ticks of the windows' timers.
  void LetMessagesPass() {
    for (const ULONGLONG start = GetTickCount64(); GetTickCount64() - start < 100;) Turn();
  }
  // A window that refuses, and one that does not any more.
  void Refuse(const std::string& name) { HooksOf(name)["RequestClose"] = Hook(); }
  void Agree(const std::string& name) { HooksOf(name).erase("RequestClose"); }

  const Hook fQuits = [this] { return StartQuitting(); };
};

// --- The end of the last document window

TEST_F(DocumentRunTest, ClosingTheLastOneAsksToQuit) {
  fRun.fHooks["QuitEvent"] = [this, quitEvents = 0]() mutable {
    // Ignored the first time, it comes again with the next message.
    return ++quitEvents == 1 ? fMorvane->IMorvane_PostAppMessage(1, 2) : StartQuitting();
  };
  ExpectRun(
      "StartUp doc1.deleted doc2.RequestClose:0 doc2.deleted QuitEvent AppMessage:1,2 QuitEvent CleanUp "
      "deleted",
      [this] {
        Do("+doc1 +doc2");
        PostQuitMessage(3);  // nobody's business
        Then([this] { Do("-doc1"); });
        Then([this] { PostMessageW(HwndOf("doc2"), WM_CLOSE, 0, 0); });
      });
}

// The window ends inside a message of another thread, which wakes nobody, and no idle call is due.
TEST_F(DocumentRunTest, TheLastOneEndsInAMessageOfAnotherThread) {
  fRun.fHooks["Idle"] = IdleAfter(kNever);
  std::thread thread;
  ExpectRun("StartUp doc.RequestClose:0 doc.deleted QuitEvent CleanUp deleted", [&] {
    Do("+doc");
    EXPECT_TRUE(YieldUntil([this] { return fRun.fIdleCalls > 1; }));
    Then([&, hwnd = HwndOf("doc")] { thread = std::thread([=] { SendMessageW(hwnd, WM_CLOSE, 0, 0); }); });
  });
  thread.join();
}

// The windows go, oldest first, without being asked.
TEST_F(DocumentRunTest, FailedStartUpDestroysTheWindows) {
  CreateMorvane();
  fRun.fHooks["StartUp"] = [this] {
    Do("+doc1 +doc2");
    return TError(100124);
  };
  ExpectRunFails(100124);
  EXPECT_EQ(fRun.fLog.Take(), "StartUp doc1.deleted doc2.deleted deleted");
}

// --- Quitting

// One at a time, the front window first; the next one when the one before has gone and a message has been
// handled. A window that cannot be seen is not asked, but it keeps the run going.
TEST_F(DocumentRunTest, WindowsAreAskedOneAtATime) {
  ExpectRun("doc1.RequestClose:1 doc1.deleted CleanUp deleted", [this] {
    Do("+doc1 +doc2 +doc3");
    for (const char* name : {"doc2", "doc3"}) Refuse(name);
    Then([this] {
      ShowWindow(HwndOf("doc1"), SW_HIDE);
      EXPECT_EQ(Listed(), "doc3 doc2");
      fRun.fLog.Take();
      EXPECT_EQ(StartQuitting(), kOK);
      for (const std::string name : {"doc3", "doc2"}) {
        LetMessagesPass();
        EXPECT_EQ(fRun.fLog.Take(), name + ".RequestClose:1");
        Do("-" + name);
        EXPECT_EQ(fRun.fLog.Take(), name + ".deleted");
      }
      LetMessagesPass();
      EXPECT_TRUE(IsQuitting());
      EXPECT_EQ(fRun.fLog.Take(), "");
      ShowWindow(HwndOf("doc1"), SW_SHOW);
    });
  });
}

// One that the asked window releases ends at once.
TEST_F(DocumentRunTest, OnlyTheAskedWindowIsHeld) {
  ExpectRun("StartUp doc2.RequestClose:1 doc1.deleted doc2.deleted CleanUp deleted", [this] {
    Do("+doc1 +doc2");
    HooksOf("doc2")["RequestClose"] = [this] {
      for (const char* step : {"-doc1", "-doc2"}) {
        Do(step);
        EXPECT_EQ(fRun.fLog.Last(), "doc1.deleted");
      }
    };
    Then(fQuits);
  });
}

// A failure at the first window comes back to the caller, one at a later window to the error report. Both end
// the quitting.
TEST_F(DocumentRunTest, FailureToCloseEndsTheQuitting) {
  fRun.fHooks["UnhandledError"] = [this] { EXPECT_FALSE(IsQuitting()); };
  ExpectRun(
      "StartUp doc2.RequestClose:1 doc2.deleted doc1.RequestClose:1 UnhandledError:100700 "
      "doc1.RequestClose:1 doc1.RequestClose:1 doc1.deleted CleanUp deleted",
      [this] {
        Do("+doc1 +doc2");
        HooksOf("doc1")["RequestClose"] = TError(100700);
        Then([this] { EXPECT_EQ(StartQuitting(), kOK); });
        Then([this] {
          EXPECT_TRUE(YieldUntil([this] { return fRun.fLog.Last() == "UnhandledError:100700"; }));
          EXPECT_EQ(StartQuitting(), 100700u);
          EXPECT_FALSE(IsQuitting());
          Agree("doc1");
          EXPECT_EQ(StartQuitting(), kOK);
        });
      });
}

TEST_F(DocumentRunTest, EndOfSession) {
  const auto expectAnswer = [this](const std::string& name, LRESULT mayEnd, const std::string& calls) {
    fRun.fLog.Take();
    EXPECT_EQ(SendMessageW(HwndOf(name), WM_QUERYENDSESSION, 0, 0), mayEnd);
    EXPECT_EQ(fRun.fLog.Take(), calls);
  };
  const auto body = [&, this] {
    HooksOf("doc2")["RequestClose"] = [this] { return fMorvane->IMorvane_StopQuitting(); };
    expectAnswer("doc1", 0, "QuitEvent doc2.RequestClose:1");
    EXPECT_FALSE(IsQuitting());
    // Already quitting: yes at once, whatever is open.
    Refuse("doc2");
    StartQuitting();
    expectAnswer("doc2", 1, "");
    EXPECT_EQ(fMorvane->IMorvane_StopQuitting(), kOK);
    // A failing quit event is reported.
    fRun.fHooks["QuitEvent"] = TError(100800);
    expectAnswer("doc1", 0, "QuitEvent");
    ExpectReported(100800);
    // All go, from inside the message. An idle call that fails on the way is reported, and is no answer.
    fRun.fHooks["QuitEvent"] = fQuits;
    fRun.fHooks["Idle"] = TError(100801);
    Agree("doc2");
    HooksOf("doc1")["RequestClose"] = [this] {
      fMorvane->IMorvane_WakeUpIdle();
      AwaitSentMessage();
      MSG message;
      PeekMessageW(&message, nullptr, WM_USER, WM_USER, PM_NOREMOVE);  // lets it in
      Then([this] { Do("-doc1"); });
    };
    expectAnswer("doc1", 1,
                 "QuitEvent doc2.RequestClose:1 doc2.deleted doc1.RequestClose:1 UnhandledError:100801 "
                 "doc1.deleted");
  };
  RunFrom([&] {
    Do("+doc1 +doc2");
    Then(body);
  });
}

// The system shows it to the user, who cannot see the question of the window.
TEST_F(DocumentRunTest, WhyTheSessionCannotEnd) {
  static std::wstring reasons;
  static BOOL (*const create)(HWND, LPCWSTR) = [](HWND hwnd, LPCWSTR text) -> BOOL {
    reasons += NativeTitle(hwnd) + L": " + text;
    return TRUE;
  };
  static BOOL (*const destroy)(HWND) = [](HWND hwnd) -> BOOL {
    reasons += L" / " + NativeTitle(hwnd);
    return TRUE;
  };
  const PatchedImport creating(L"Morvane.dll", "ShutdownBlockReasonCreate", create);
  const PatchedImport destroying(L"Morvane.dll", "ShutdownBlockReasonDestroy", destroy);
  fRun.fHooks["QuitEvent"] = [] {
    EXPECT_EQ(reasons, L"Draft*: Do you want to save the changes to \"Draft\" before exiting?");
  };
  RunFrom([this] {
    Do("+doc1 +doc2");
    EXPECT_EQ(ChangeState(*fWindows["doc1"].fDocument,
                          [](auto& state) {
                            state.fModified = 1;
                            CopyText(state.fTitle, u"Draft");
                          }),
              kOK);
    Then([this] {
      EXPECT_EQ(SendMessageW(HwndOf("doc2"), WM_QUERYENDSESSION, 0, 0), 0);
      EXPECT_TRUE(reasons.ends_with(L" / Draft*"));
      fRun.fHooks["QuitEvent"] = fQuits;
      Quit();
    });
  });
}

// --- Loops that are not the library's

TEST_F(DocumentRunTest, IdleCallsInAMessageBox) {
  RunFrom([this] {
    Do("+doc");
    Then([this] {
      fRun.fHooks["Idle"] = [this, calls = 0]() mutable {
        *fRun.fIdleDelay = 1;
        const HWND box = FindWindowW(L"#32770", L"A box");
        if (box && ++calls == 3) PostMessageW(box, WM_COMMAND, IDOK, 0);
      };
      EXPECT_EQ(fMorvane->IMorvane_WakeUpIdle(), kOK);
      EXPECT_EQ(MessageBoxW(HwndOf("doc"), L"", L"A box", MB_OK), IDOK);
      Quit();
    });
  });
}

// There is no other window whose messages would wake the application.
TEST_F(DocumentRunTest, AnIdleCallEndsTheLastDialog) {
  fRun.fHooks["Idle"] = [this] {
    *fRun.fIdleDelay = kNever;
    if (!IsWindow(HwndOf("A"))) return;
    Do("-A");
    DispatchWhatWaits();
  };
  ExpectRun("StartUp A.deleted NoDocument:5003 QuitEvent CleanUp deleted", [this] {
    EXPECT_TRUE(YieldUntil([this] { return fRun.fIdleCalls > 1; }));
    MakeNamed("A", {}, nullptr, kPlain, 1);
  });
}

// --- A run that ends before its windows

// Nothing closes a window that refuses while the application starts up. It stays behind, works, and ends when
// the client releases it, or at the latest with the root object.
TEST_F(DocumentRunTest, WindowsLeftBehind) {
  const std::vector<std::string> names = {"doc", "modeless", "modal", "floating"};
  for (const bool rootGoesFirst : {false, true}) {
    ExpectRun("StartUp floating.RequestClose:1 CleanUp deleted", [&] {
      // The dialogs have another native owner for the document that is there.
      for (const std::string& name : names) MakeNamed(name, {{"RequestClose", Hook()}});
      return StartQuitting();
    });
    for (const std::string& name : names) {
      EXPECT_TRUE(IsWindowVisible(HwndOf(name)));
      InvalidateRect(HwndOf(name), nullptr, FALSE);
    }
    DispatchWhatWaits();
    if (!rootGoesFirst) {
      for (const std::string& name : names) Do("-" + name);
    }
    DeleteMorvane();
    for (const std::string& name : names) EXPECT_EQ(fRun.fLog.Count(name + ".deleted"), 1);
    fRun.fLog.Take();
    fOutput.TakeAssertions();  // the application's activation finds no behaviour
  }
}

// --- Lingering

// The window brings the application back from lingering, but not out of quit mode.
TEST_F(DocumentRunTest, WindowMadeWhileLingering) {
  fParams.fLingerMS = 1000;
  fRun.fHooks.erase("QuitEvent");
  fRun.fHooks["Idle"] = [this] {
    *fRun.fIdleDelay = 5;
    if (!fWindows.empty() || !fOutput.CountLines("Entering lingering mode...")) return;
    Do("+doc");
    HooksOf("doc")["RequestClose"] = [this] {
      Then([this] {
        EXPECT_TRUE(YieldUntil([this] { return fOutput.CountLines("Cancelling lingering mode...") > 0; }));
        Do("-doc");
      });
    };
  };
  ExpectRun("StartUp NoDocument:5003 doc.RequestClose:1 doc.deleted CleanUp deleted",
            [this] { Then([this] { Quit(); }); });
  EXPECT_EQ(fOutput.CountLines("Entering lingering mode..."), 2);
  EXPECT_EQ(fOutput.CountLines("Lingering complete, exiting..."), 1);
}

}  // namespace NSMorvaneTest
