// Quitting without windows, lingering, and second launches of the same application.
#include <algorithm>
#include <memory>

#include "Support/ClientFixture.h"

namespace NSMorvaneTest {

// --- Lingering

class LingerTest : public ClientTest {};

TEST_F(LingerTest, LingersForItsTime) {
  CreateMorvane();
  fParams.fLingerMS = 400;
  DWORD start = 0;
  fHooks.fOnStartUp = [&] {
    Then([&] {
      start = GetTickCount();
      Quit();
    });
  };
  fHooks.fOnCleanUp = [&] { EXPECT_GE(GetTickCount() - start, 380u); };
  EXPECT_EQ(Run(), kOK);
  EXPECT_EQ(fLog, (CallLog{"OnStartUp", "OnNoDocument 5003", "OnCleanUp", "deleted"}));
  EXPECT_EQ(fOutput.CountLines("Entering lingering mode..."), 1u);
  EXPECT_EQ(fOutput.CountLines("Lingering complete, exiting..."), 1u);
  EXPECT_FALSE(fOutput.HasLine("Cancelling lingering mode..."));
}

// Stopped while it lingers, the application stays up without windows and gets a quit event. The second time
// it lingers to the end.
TEST_F(LingerTest, StoppingEndsTheLingering) {
  fParams.fLingerMS = 1500;
  bool stopped = false;
  fHooks.fOnIdle = [&](std::int64_t& delay) {
    delay = 5;
    if (stopped || !fOutput.HasLine("Entering lingering mode...")) return;
    stopped = true;
    EXPECT_EQ(fMorvane->IMorvane_StopQuitting(), kOK);
    WhenThen([this] { return fOutput.HasLine("Cancelling lingering mode..."); }, [this] { Quit(); });
  };
  RunFrom([this] { Then([this] { Quit(); }); });
  EXPECT_TRUE(stopped);
  EXPECT_GE(std::count(fLog.begin(), fLog.end(), "OnQuitEvent"), 1);
  EXPECT_EQ(fOutput.CountLines("]Morvane] Exited quit mode..."), 1u);
  EXPECT_EQ(fOutput.CountLines("Entering lingering mode..."), 2u);
  EXPECT_EQ(fOutput.CountLines("Cancelling lingering mode..."), 1u);
  EXPECT_EQ(fOutput.CountLines("Lingering complete, exiting..."), 1u);
}

TEST_F(LingerTest, QuittingOutOfTurnIsReported) {
  CreateMorvane();
  fHooks.fOnStartUp = [this] {
    EXPECT_EQ(fMorvane->IMorvane_StopQuitting(), kOK);
    EXPECT_EQ(fOutput.TakeAssertions(), (std::vector<std::string>{"fIsInQuitMode"}));
    EXPECT_EQ(fMorvane->IMorvane_StartQuitting(), kOK);
    EXPECT_EQ(fMorvane->IMorvane_StartQuitting(), kOK);
    EXPECT_EQ(fOutput.TakeAssertions(), (std::vector<std::string>{"!fIsInQuitMode"}));
  };
  EXPECT_EQ(Run(), kOK);
  EXPECT_EQ(fLog, (CallLog{"OnStartUp", "OnCleanUp", "deleted"}));
}

// --- Second launches

class SecondLaunchTest : public ClientTest {
 protected:
  SecondLaunchTest() {
    fGo = CreateEventW(nullptr, TRUE, FALSE, (fCompany + L" go").c_str());
    fReady = CreateSemaphoreW(nullptr, 0, 10, (fCompany + L" ready").c_str());
  }
  ~SecondLaunchTest() override {
    CloseHandle(fGo);
    CloseHandle(fReady);
  }

  // What a second process does: its run ends at once, and nothing is started or opened.
  void RunAsSecondProcess() {
    CreateMorvane();
    ReleaseSemaphore(fReady, 1, nullptr);
    ASSERT_EQ(WaitForSingleObject(fGo, kWaitLimitMS), DWORD(WAIT_OBJECT_0));
    EXPECT_EQ(Run(), kOK);
    EXPECT_EQ(fLog, (CallLog{"OnCleanUp", "deleted"}));
    EXPECT_EQ(FindMessageWindow(), nullptr);
  }
  // Starts one and waits until it stands right before its run.
  void StartSecondProcess(const std::wstring& arguments = L"") {
    fSeconds.push_back(std::make_unique<SecondProcess>(fCompany, arguments));
    EXPECT_EQ(WaitForSingleObject(fReady, kWaitLimitMS), DWORD(WAIT_OBJECT_0));
  }
  void LetSecondProcessesRun() { SetEvent(fGo); }
  int CountEnded() const {
    return static_cast<int>(std::count_if(fSeconds.begin(), fSeconds.end(),
                                          [](const auto& second) { return second->HasEnded(); }));
  }
  void ExpectSecondsEndWell() const {
    for (const auto& second : fSeconds) EXPECT_TRUE(second->EndsWell());
  }
  // The log without the quit events, whose number depends on how often the loop turns.
  CallLog LogWithoutQuitEvents() const {
    CallLog log = fLog;
    std::erase(log, "OnQuitEvent");
    return log;
  }

  HANDLE fGo;
  HANDLE fReady;
  std::vector<std::unique_ptr<SecondProcess>> fSeconds;
};

TEST_F(SecondLaunchTest, HandsItsFilesOver) {
  if (fIsSecondProcess) return RunAsSecondProcess();
  CreateMorvane(L"/first");
  fHooks.fOnStartUp = [this] {
    StartSecondProcess(L"/second \"quoted file.txt\" /third plain.txt");
    LetSecondProcessesRun();
  };
  int opened = 0;
  fHooks.fOnOpenURL = [&](const std::string&) -> TError {
    if (++opened == 1) return 100321;  // in the loop: reported, and the next file follows in the next pass
    Quit();
    return kOK;
  };
  fHooks.fOnCleanUp = [this] {
    IWinExtensions* extensions = nullptr;
    EXPECT_EQ(fMorvane->IMorvane_GetWinExtensions(extensions), kOK);
    CTextReceiver options;
    EXPECT_EQ(extensions->IWinExtensions_GetCommandLineOptions(options), kOK);
    EXPECT_EQ(options.fTexts, (std::vector<std::u16string>{u"/second", u"/third"}));
  };
  EXPECT_EQ(Run(), kOK);
  EXPECT_EQ(LogWithoutQuitEvents(),
            (CallLog{"OnStartUp", "OnNoDocument 5003", "OnOpenURL file://\"quoted file.txt\"",
                     "OnUnhandledError 100321", "OnOpenURL file://plain.txt", "OnCleanUp", "deleted"}));
  ExpectSecondsEndWell();
}

// The lingering is aborted. The quit event that follows at once is answered by quitting again, so that the
// application lingers anew while it is told that there is nothing to show, as at a start.
TEST_F(SecondLaunchTest, AbortsTheLingering) {
  if (fIsSecondProcess) return RunAsSecondProcess();
  CreateMorvane();
  fParams.fLingerMS = 3000;
  fHooks.fOnIdle = [this](std::int64_t& delay) {
    delay = 5;
    if (fOutput.HasLine("Entering lingering mode...")) LetSecondProcessesRun();
  };
  fHooks.fOnStartUp = [this] {
    StartSecondProcess();
    Then([this] { Quit(); });
  };
  fHooks.fOnQuitEvent = [this] { return fMorvane->IMorvane_StartQuitting(); };
  EXPECT_EQ(Run(), kOK);
  EXPECT_EQ(fLog, (CallLog{"OnStartUp", "OnNoDocument 5003", "OnQuitEvent", "OnNoDocument 5003", "OnCleanUp",
                           "deleted"}));
  EXPECT_EQ(fOutput.CountLines("Lingering aborted..."), 1u);
  EXPECT_EQ(fOutput.CountLines("Entering lingering mode..."), 2u);
  EXPECT_EQ(fOutput.CountLines("Lingering complete, exiting..."), 1u);
  ExpectSecondsEndWell();
}

// What was closing stays open from here on.
TEST_F(SecondLaunchTest, StopsTheClosingOfWindows) {
  if (fIsSecondProcess) return RunAsSecondProcess();
  CreateMorvane();
  fHooks.fOnStartUp = [this] {
    CreateDocument("bottom");
    CreateDocument("top");
    StartSecondProcess(L"new.txt");
    Then([this] {
      Quit();
      LetSecondProcessesRun();
    });
  };
  fOnRequestClose = [] {};
  fHooks.fOnOpenURL = [this](const std::string&) {
    TFlag isQuitting = 7;
    EXPECT_EQ(fMorvane->IMorvane_IsQuitting(isQuitting), kOK);
    EXPECT_EQ(isQuitting, 0u);
    fOnRequestClose = nullptr;
    Quit();
  };
  EXPECT_EQ(Run(), kOK);
  EXPECT_EQ(fLog,
            (CallLog{"OnStartUp", "top OnRequestClose 1", "OnOpenURL file://new.txt", "top OnRequestClose 1",
                     "top deleted", "bottom OnRequestClose 1", "bottom deleted", "OnCleanUp", "deleted"}));
  EXPECT_FALSE(fOutput.HasLine("Lingering aborted..."));
  ExpectSecondsEndWell();
}

// There is room for one command line at a time: while the first process is busy, one of the others waits.
TEST_F(SecondLaunchTest, WaitsForTheOneBefore) {
  if (fIsSecondProcess) return RunAsSecondProcess();
  CreateMorvane();
  fHooks.fOnStartUp = [this] {
    StartSecondProcess(L"a.txt");
    LetSecondProcessesRun();
    // This thread looks at no message until the first one is through.
    fSeconds.front()->EndsWell();
    StartSecondProcess(L"b.txt");
    EXPECT_EQ(CountEnded(), 1);
  };
  fHooks.fOnOpenURL = [this](const std::string& url) {
    if (url == "file://b.txt") Quit();
  };
  EXPECT_EQ(Run(), kOK);
  EXPECT_EQ(LogWithoutQuitEvents(), (CallLog{"OnStartUp", "OnNoDocument 5003", "OnOpenURL file://a.txt",
                                             "OnOpenURL file://b.txt", "OnCleanUp", "deleted"}));
  ExpectSecondsEndWell();
}

TEST_F(SecondLaunchTest, LongCommandLineIsCut) {
  if (fIsSecondProcess) return RunAsSecondProcess();
  CreateMorvane();
  wchar_t program[MAX_PATH] = {};
  const std::size_t inFront = GetModuleFileNameW(nullptr, program, MAX_PATH) + 3;  // quotes, a blank
  std::string opened;
  fHooks.fOnStartUp = [this] {
    StartSecondProcess(std::wstring(4000, L'x'));
    LetSecondProcessesRun();
  };
  fHooks.fOnOpenURL = [&](const std::string& url) {
    opened = url;
    Quit();
  };
  EXPECT_EQ(Run(), kOK);
  EXPECT_EQ(opened, "file://" + std::string(2600 - inFront, 'x'));
  ExpectSecondsEndWell();
}

// The message alone, without a command line behind it, is reported, and opens the application anew like a
// launch without files.
TEST_F(SecondLaunchTest, MessageWithoutACommandLine) {
  CreateMorvane();
  fHooks.fOnStartUp = [] { PostThreadMessageW(GetCurrentThreadId(), 1135, 0, 0); };
  fHooks.fOnNoDocument = [this](TNoDocumentKind kind) {
    if (kind == kNoDocumentAtReopen) Quit();
  };
  EXPECT_EQ(Run(), kOK);
  EXPECT_EQ(fLog, (CallLog{"OnStartUp", "OnNoDocument 5003", "OnQuitEvent", "OnNoDocument 5004", "OnCleanUp",
                           "deleted"}));
  EXPECT_EQ(fOutput.TakeAssertions(), (std::vector<std::string>{"dwordData[0]!=0"}));
}

}  // namespace NSMorvaneTest
