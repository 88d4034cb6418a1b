// Second launches of the same application.
#include "Support/ClientWindows.h"

namespace NSMorvaneTest {

// The second process of an application runs the same test as the first one.
class SecondLaunchTest : public ClientWindowTest {
 protected:
  SecondLaunchTest() {
    fRun.fHooks.erase("QuitEvent");
    fGo = CreateEventW(nullptr, TRUE, FALSE, (fCompany + L" go").c_str());
    fReady = CreateSemaphoreW(nullptr, 0, 10, (fCompany + L" ready").c_str());
    wchar_t folder[MAX_PATH] = {};
    GetWindowsDirectoryW(folder, MAX_PATH);
    fFolder = folder;
  }
  ~SecondLaunchTest() override {
    for (const HANDLE second : fSeconds) ExpectPassed(second);
    CloseHandle(fGo);
    CloseHandle(fReady);
  }
  // What a second process does: its run ends at once, and nothing is started or opened.
  bool RunAsSecondProcess() {
    if (!fIsSecondProcess) return false;
    CreateMorvane();
    ReleaseSemaphore(fReady, 1, nullptr);
    EXPECT_EQ(WaitForSingleObject(fGo, kWaitLimitMS), DWORD(WAIT_OBJECT_0));
    ExpectRun("CleanUp deleted", Hook());
    return true;
  }
  // Starts one, with its arguments, and waits until it stands right before its run.
  void StartSecondProcess(const std::wstring& arguments = L"") {
    fSeconds.push_back(StartProcessOfThisTest(arguments, fFolder.c_str()));
    EXPECT_EQ(WaitForSingleObject(fReady, kWaitLimitMS), DWORD(WAIT_OBJECT_0));
  }
  void LetSecondProcessesRun() { SetEvent(fGo); }
  // The call for a file of the folder that the second processes start in, which is not the one of this
  // process.
  std::string OpenURL(const std::string& name, const std::string& quote = "") const {
    return "OpenURL:file://" + quote + std::string(fFolder.begin(), fFolder.end()) + "\\" + name + quote;
  }

  HANDLE fGo;
  HANDLE fReady;
  std::wstring fFolder;
  std::vector<HANDLE> fSeconds;
};

TEST_F(SecondLaunchTest, HandsItsFilesOver) {
  if (RunAsSecondProcess()) return;
  // In the loop a failure is reported, and the next file follows in the next pass.
  fRun.fHooks["OpenURL"] = [this, opened = 0]() mutable -> TError {
    if (++opened == 1) return 100321;
    Quit();
    return kOK;
  };
  // The options are those of the second launch. Who refuses one gets no other.
  struct CRefuser : CTextReceiver {
    TError ITextReceiver_ReceiveText(const TChar* text) override {
      if (CTextReceiver::ITextReceiver_ReceiveText(text) == kOK && fThrows) throw std::bad_alloc();
      return 100444;
    }
    bool fThrows = false;
  };
  CTextReceiver options;
  fRun.fHooks["CleanUp"] = [&] {
    IWinExtensions* extensions = nullptr;
    EXPECT_EQ(fMorvane->IMorvane_GetWinExtensions(extensions), kOK);
    EXPECT_EQ(extensions->IWinExtensions_GetCommandLineOptions(options), kOK);
    CRefuser refuser;
    EXPECT_EQ(extensions->IWinExtensions_GetCommandLineOptions(refuser), 100444u);
    refuser.fThrows = true;
    EXPECT_EQ(extensions->IWinExtensions_GetCommandLineOptions(refuser), kOutOfMemoryError);
    EXPECT_EQ(refuser.fTexts, (std::vector<std::u16string>{u"/second", u"/second"}));
  };
  RunFrom(
      [this] {
        StartSecondProcess(L"/second \"quoted file.txt\" /third plain.txt");
        LetSecondProcessesRun();
      },
      L"/first");
  EXPECT_EQ(options.fTexts, (std::vector<std::u16string>{u"/second", u"/third"}));
  EXPECT_EQ(CallsOfRun(), "StartUp NoDocument:5003 " + OpenURL("quoted file.txt", "\"") +
                              " UnhandledError:100321 " + OpenURL("plain.txt") + " CleanUp deleted");
}

// The lingering is aborted. The quit event that follows at once is answered by quitting again, so that the
// application lingers anew while it is told that there is nothing to show, as at a start.
TEST_F(SecondLaunchTest, AbortsTheLingering) {
  if (RunAsSecondProcess()) return;
  fParams.fLingerMS = 3000;
  fRun.fHooks["Idle"] = [this] {
    *fRun.fIdleDelay = 5;
    if (fOutput.CountLines("Entering lingering mode...")) LetSecondProcessesRun();
  };
  fRun.fHooks["QuitEvent"] = [this] { return StartQuitting(); };
  ExpectRun("StartUp NoDocument:5003 QuitEvent NoDocument:5003 CleanUp deleted", [this] {
    StartSecondProcess();
    Then([this] { Quit(); });
  });
  EXPECT_EQ(fOutput.CountLines("Lingering aborted..."), 1);
  EXPECT_EQ(fOutput.CountLines("Entering lingering mode..."), 2);
}

// What was closing stays open from here on.
TEST_F(SecondLaunchTest, StopsTheClosingOfWindows) {
  if (RunAsSecondProcess()) return;
  fRun.fHooks["OpenURL"] = [this] {
    EXPECT_FALSE(IsQuitting());
    HooksOf("doc2").clear();
    Quit();
  };
  ExpectRun("StartUp doc2.RequestClose:1 " + OpenURL("new.txt") +
                " doc2.RequestClose:1 doc2.deleted doc1.RequestClose:1 doc1.deleted CleanUp deleted",
            [this] {
              Do("+doc1 +doc2");
              HooksOf("doc2")["RequestClose"] = Hook();
              StartSecondProcess(L"new.txt");
              Then([this] {
                Quit();
                LetSecondProcessesRun();
              });
            });
}

// There is room for one command line at a time: while the first process is busy, one of the others waits. A
// long command line is cut.
TEST_F(SecondLaunchTest, WaitsForTheOneBefore) {
  if (RunAsSecondProcess()) return;
  fRun.fHooks[OpenURL("b.txt")] = [this] { Quit(); };
  RunFrom([this] {
    StartSecondProcess(std::wstring(4000, L'x'));
    LetSecondProcessesRun();
    // This thread looks at no message until the first one is through.
    EXPECT_EQ(WaitForSingleObject(fSeconds[0], kWaitLimitMS), WAIT_OBJECT_0);
    StartSecondProcess(L"b.txt");
    EXPECT_EQ(WaitForSingleObject(fSeconds[1], 0), DWORD(WAIT_TIMEOUT));
  });
  wchar_t program[MAX_PATH] = {};
  const std::size_t inFront = GetModuleFileNameW(nullptr, program, MAX_PATH) + 3;  // quotes, a blank
  EXPECT_EQ(CallsOfRun(), "StartUp NoDocument:5003 OpenURL:file://" + std::string(2600 - inFront, 'x') + " " +
                              OpenURL("b.txt") + " CleanUp deleted");
}

// A loop that is not the library's drops the message: the command line is seen all the same, and the place is
// free for the next one. The message of the first is not taken for a launch when it comes after all.
TEST_F(SecondLaunchTest, ALostMessageIsNotMissed) {
  if (RunAsSecondProcess()) return;
  fRun.fHooks[OpenURL("a.txt")] = [this] {
    PostThreadMessageW(GetCurrentThreadId(), 1135, 0, 0);
    StartSecondProcess(L"b.txt");
  };
  fRun.fHooks[OpenURL("b.txt")] = [this] { Quit(); };
  RunFrom([this] {
    fRun.fHooks["Idle"] = IdleAfter(kNever);
    StartSecondProcess(L"a.txt");
    LetSecondProcessesRun();
    bool wasDropped = false;
    while (!wasDropped || WaitForSingleObject(fSeconds[0], 0) == WAIT_TIMEOUT) {
      MSG message;
      MsgWaitForMultipleObjects(1, fSeconds.data(), FALSE, kWaitLimitMS, QS_ALLINPUT);
      while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        DispatchMessageW(&message);
        wasDropped |= message.message == 1135;
      }
    }
  });
  EXPECT_EQ(CallsOfRun(),
            "StartUp NoDocument:5003 " + OpenURL("a.txt") + " " + OpenURL("b.txt") + " CleanUp deleted");
}

// As a menu, or while a window is moved: their loops lose the messages, and nobody waits for their end.
TEST_F(SecondLaunchTest, SeveralDuringALoopOfTheSystem) {
  if (RunAsSecondProcess()) return;
  RunFrom([this] {
    Do("+doc");
    for (const wchar_t* file : {L"a.txt", L"b.txt"}) StartSecondProcess(file);
    fRun.fHooks["Idle"] = [this] {
      *fRun.fIdleDelay = 1;
      const HWND box = FindWindowW(L"#32770", L"A box");
      const bool areThrough = WaitForMultipleObjects(2, fSeconds.data(), TRUE, 0) != WAIT_TIMEOUT;
      if (box && areThrough) PostMessageW(box, WM_COMMAND, IDOK, 0);
    };
    Then([this] {
      LetSecondProcessesRun();
      EXPECT_EQ(fMorvane->IMorvane_WakeUpIdle(), kOK);
      MessageBoxW(HwndOf("doc"), L"", L"A box", MB_OK);
      Then([this] { Quit(); });
    });
  });
  for (const char* file : {"a.txt", "b.txt"}) EXPECT_EQ(fRun.fLog.Count(OpenURL(file)), 1) << file;
}

// The message alone, without a command line behind it, is reported, and opens the application anew like a
// launch without files.
TEST_F(SecondLaunchTest, MessageWithoutACommandLine) {
  fRun.fHooks["NoDocument:5004"] = [this] { Quit(); };
  ExpectRun("StartUp NoDocument:5003 QuitEvent NoDocument:5004 CleanUp deleted",
            [] { PostThreadMessageW(GetCurrentThreadId(), 1135, 0, 0); });
  EXPECT_EQ(fOutput.TakeAssertions(), "dwordData[0]!=0");
}

}  // namespace NSMorvaneTest
