// IMorvane_Run from start to end, as a client without windows sees it: the order of the callbacks, failures,
// messages, and idle calls.
#include "Support/ClientFixture.h"
#include "Support/PatchedImport.h"

#include <stdexcept>
#include <thread>

namespace NSMorvaneTest {

class RunLoopTest : public ClientTest {
 protected:
  static HWND FindHidden(const wchar_t* windowClass) {
    return FindWindowExW(HWND_MESSAGE, nullptr, windowClass, nullptr);
  }
  // The call at the start; and often one after a second, if the idle thread has looked before that was asked
  // for.
  void AwaitFirstIdleCalls() {
    const ULONGLONG start = GetTickCount64();
    EXPECT_TRUE(YieldUntil([&] { return fRun.fIdleCalls > 1 || GetTickCount64() - start > 1500; }));
    EXPECT_GE(fRun.fIdleCalls, 1);
  }
  static HWND FindMessageWindow() { return FindHidden(L"Hollowbrook Message Window"); }
  // What stands during a run and is gone after it: the record by which second launches find this one, and the
  // two hidden windows with their classes.
  std::vector<bool> Standing() const {
    const HANDLE record = OpenFileMappingW(FILE_MAP_READ, FALSE, (fCompany + L"Scenario").c_str());
    if (record) CloseHandle(record);
    std::vector<bool> standing = {record != nullptr};
    for (const wchar_t* const name : {L"Hollowbrook Message Window", L"Hollowbrook Hider Window"}) {
      WNDCLASSEXW description = {};
      description.cbSize = sizeof(description);
      standing.push_back(FindHidden(name) != nullptr);
      standing.push_back(GetClassInfoExW(GetModuleHandleW(nullptr), name, &description) != 0);
    }
    return standing;
  }
  IMorvaneRunBehavior* Behavior() {
    IMorvaneRunBehavior* behavior = nullptr;
    EXPECT_EQ(fMorvane->IMorvane_GetBehavior(behavior), kOK);
    return behavior;
  }
  void ExpectNothingIsLeft() {
    EXPECT_EQ(Standing(), std::vector<bool>(5, false));
    EXPECT_EQ(Behavior(), nullptr);
    EXPECT_EQ(fOutput.TakeAssertions(), "0!=fBehavior; outBehavior != NULL");
  }
  // A log that begins as one of a run without files does.
  static std::string Started(const std::string& log) { return "StartUp NoDocument:5003 " + log; }

  static BOOL WINAPI CountPeek(MSG* message, HWND hwnd, UINT first, UINT last, UINT flags) {
    ++sPeeks;
    return PeekMessageW(message, hwnd, first, last, flags);
  }

  const Hook fQuits = [this] { return StartQuitting(); };
  static inline int sPeeks;
  std::map<std::string, Hook>& fHooks = fRun.fHooks;
};

// --- Start and end

TEST_F(RunLoopTest, FilesComeInOrderBeforeTheFirstMessage) {
  fHooks["AppMessage"] = fQuits;
  ExpectRun(
      "StartUp OpenURL:file://one.txt OpenURL:file://\"two 2.txt\" OpenURL:file://three.txt "
      "AppMessage:7,4294967295 CleanUp deleted",
      [this] { return fMorvane->IMorvane_PostAppMessage(7, 0xFFFFFFFF); },
      L"/safe one.txt /x \"two 2.txt\" three.txt");
}

// Quitting while it starts up skips the loop, and so the files.
TEST_F(RunLoopTest, WhatStandsDuringTheRun) {
  fHooks["CleanUp"] = [this] { EXPECT_TRUE(Standing()[0]); };
  ExpectRun(
      "StartUp deleted CleanUp deleted",
      [this] {
        EXPECT_EQ(Standing(), std::vector<bool>(5, true));
        EXPECT_NE(dynamic_cast<RecordingRunBehavior*>(Behavior()), nullptr);
        EXPECT_FALSE(IsQuitting());
        ExpectRunFails(kIllegalCallSequenceProgrammingError);  // there is one already
        return StartQuitting();
      },
      L"one.txt");
  EXPECT_EQ(Standing(), std::vector<bool>(5, false));
}

// Outside the loop the run ends with the code, and the behaviour is left to the client.
TEST_F(RunLoopTest, FailuresOutsideTheLoopEndTheRun) {
  using Hooks = std::map<std::string, Hook>;
  const Rows<const wchar_t*, Hooks, TError, const char*> rows = {
      {L"", {{"StartUp", TError(100123)}}, 100123, "StartUp deleted"},
      {L"one.txt two.txt",
       {{"OpenURL", kBadFormatError}},
       kBadFormatError,
       "StartUp OpenURL:file://one.txt deleted"},
      {L"", {{"NoDocument", [] { throw 5; }}}, kOtherError, "StartUp NoDocument:5003 deleted"},
      {L"", {{"StartUp", fQuits}, {"CleanUp", kBadFormatError}}, kBadFormatError, "StartUp CleanUp deleted"},
  };
  for (const auto& [arguments, hooks, error, calls] : rows) {
    CreateMorvane(arguments);
    fHooks = hooks;
    ExpectRunFails(error);
    EXPECT_EQ(fRun.fLog.Take(), calls);
    ExpectNothingIsLeft();
    DeleteMorvane();
  }
}

// Here the text of the last label is missing from the program's resources.
TEST_F(RunLoopTest, AMissingLabelEndsTheStart) {
  const HRSRC resource = FindResourceW(nullptr, MAKEINTRESOURCEW(1000), L"SSTR");
  char* const script = static_cast<char*>(LockResource(LoadResource(nullptr, resource)));
  const DWORD size = SizeofResource(nullptr, resource);
  const std::size_t label = std::string_view(script, size).find("\n133 {");
  ASSERT_NE(label, std::string_view::npos);
  DWORD protection = 0;
  ASSERT_TRUE(VirtualProtect(script, size, PAGE_READWRITE, &protection));
  script[label + 1] = '9';
  CreateMorvane();
  ExpectRunFails(kBadInputProgrammingError);
  EXPECT_EQ(fRun.fLog.Take(), "deleted");
  ExpectNothingIsLeft();
}

TEST_F(RunLoopTest, ARunWithoutABehaviourEndsByItself) {
  CreateMorvane();
  EXPECT_EQ(fMorvane->IMorvane_Run(nullptr, fParams), kOK);
  for (const char* line : {"System info:", "Auto-handlig quit event since there is no behavior.",
                           "Skipping call to IMorvaneRunBehavior_OnCleanUp, since there is no behavior."})
    EXPECT_EQ(fOutput.CountLines(line), 1) << line;
  ExpectNothingIsLeft();
}

// --- Messages

// A message that comes inside another one, both failing: one report, with the code of what failed first. A
// failing quit event is reported; an exception in the report is not.
TEST_F(RunLoopTest, FailuresInTheLoopGiveOneReport) {
  fHooks["AppMessage:1,0"] = [] {
    SendMessageW(FindMessageWindow(), 1226, 2, 0);
    throw std::bad_alloc();
  };
  fHooks["AppMessage:2,0"] = TError(100001);
  fHooks["UnhandledError"] = TError(100999);
  fHooks["UnhandledError:100555"] = [this] {
    Quit();
    throw std::runtime_error("in the report");
  };
  fHooks["QuitEvent"] = [this] { return fRun.fLog.Count("UnhandledError:100001") ? TError(100555) : kOK; };
  RunFrom([this] { return fMorvane->IMorvane_PostAppMessage(1, 0); });
  EXPECT_EQ(CallsOfRun(), Started("AppMessage:1,0 AppMessage:2,0 UnhandledError:100001 UnhandledError:100555 "
                                  "CleanUp deleted"));
  EXPECT_EQ(fOutput.TakeAssertions(), "false");
}

// Any process can send any numbers to the message window.
TEST_F(RunLoopTest, StrangersMessagesAreRefused) {
  ExpectRun("StartUp CleanUp deleted", [this] {
    const auto assertionsOf = [this](UINT message, WPARAM wParam, LPARAM lParam) {
      SendMessageW(FindMessageWindow(), message, wParam, lParam);
      return fOutput.TakeAssertions();
    };
    for (UINT message = 1125; message <= 1138; ++message) {
      if (message == 1135 || message == 1136) continue;  // open to everybody
      const bool isIdle = message == 1129;
      EXPECT_EQ(assertionsOf(message, 0x1234, 0x5678), isIdle ? "false; 0==lParam" : "false") << message;
      EXPECT_EQ(assertionsOf(message, 0, 0), isIdle ? "0!=wParam" : "0!=wParam; 0!=lParam") << message;
    }
    return StartQuitting();
  });
}

TEST_F(RunLoopTest, AppMessagesFromAnotherThread) {
  std::thread thread;
  std::string expected;
  for (int i = 0; i < 200; ++i) expected += "AppMessage:" + std::to_string(i) + ",7 ";
  fHooks["AppMessage:199,7"] = [this] { Quit(); };
  RunFrom([&] {
    thread = std::thread([this] {
      for (int i = 0; i < 200; ++i) fMorvane->IMorvane_WakeUpIdle(), fMorvane->IMorvane_PostAppMessage(i, 7);
    });
  });
  thread.join();
  EXPECT_EQ(CallsOfRun(), Started(expected + "CleanUp deleted"));
}

// The application's activation as it arrives from the threads of file dialogs.
TEST_F(RunLoopTest, ActivationIsToldOnChangesOnly) {
  constexpr UINT kAppActivation = 1136;
  // A thread of another process, which owns the desktop.
  const DWORD strangersId = GetWindowThreadProcessId(GetDesktopWindow(), nullptr);
  std::string told;
  fHooks["AppActivation:1"] = [&] { told += "1"; };
  fHooks["AppActivation:0"] = [&] {
    told += "0";
    return TError(100777);
  };
  RunFrom([&] {
    for (const WPARAM flag : {0, 1, 1, 0, 0, 1}) PostMessageW(nullptr, kAppActivation, flag, strangersId);
    Then([this] { Quit(); });
  });
  EXPECT_EQ(told, "101");
  EXPECT_EQ(fRun.fLog.Count("UnhandledError:100777"), 1);
}

// --- Without a window

// Nothing posts a message, and yet idle calls come when they are due.
TEST_F(RunLoopTest, IdleCallsWithoutAWindow) {
  std::vector<DWORD> calls;
  fHooks["Idle"] = [&] {
    *fRun.fIdleDelay = 60;
    calls.push_back(GetTickCount());
    if (calls.size() == 5) Quit();
  };
  RunFrom(Hook());
  ASSERT_EQ(calls.size(), 5u);
  EXPECT_GE(calls[4] - calls[0], 4 * 60u - 20);
}

// A message that is sent does not end the wait for one by itself, and has all the same its consequences at
// once: the idle call that it announces, and the report of what fails in it.
TEST_F(RunLoopTest, WhatIsSentTurnsTheLoop) {
  std::thread thread;
  fHooks["Idle"] = IdleAfter(kNever);
  fHooks["AppMessage:5,0"] = TError(100050);
  fHooks["UnhandledError"] = [this] { Quit(); };
  RunFrom([&] {
    AwaitFirstIdleCalls();
    Then([&] {
      fHooks["Idle"] = [&] {
        *fRun.fIdleDelay = kNever;
        thread = std::thread([] { SendMessageW(FindMessageWindow(), 1226, 5, 0); });
      };
      EXPECT_EQ(fMorvane->IMorvane_WakeUpIdle(), kOK);
      AwaitSentMessage();
    });
  });
  thread.join();
  EXPECT_EQ(CallsOfRun(), Started("AppMessage:5,0 UnhandledError:100050 CleanUp deleted"));
}

// Nothing is opened, and no idle call is due: the quit event comes all the same, also after a failure, and
// after the dialog that tells of it.
TEST_F(RunLoopTest, QuitEventAfterNothingWasOpened) {
  fHooks["Idle"] = IdleAfter(kNever);
  fHooks["OpenURL"] = fHooks["NoDocument"] = [this] { AwaitFirstIdleCalls(); };
  fHooks["QuitEvent"] = fQuits;
  for (const auto& [arguments, call] :
       {std::pair{L"gone.txt", std::string("OpenURL:file://gone.txt")}, {L"", "NoDocument:5003"}}) {
    fRun.fIdleCalls = 0;
    ExpectRun("StartUp " + call + " QuitEvent CleanUp deleted", Hook(), arguments);
    DeleteMorvane();
  }
}

// --- Lingering

// The application stays for as long as it was told to, does not turn its loop all the time meanwhile, and
// stops lingering, and begins anew, when quitting is stopped.
TEST_F(RunLoopTest, LengthOfLingering) {
  fParams.fLingerMS = 900;
  const PatchedImport patch(L"Morvane.dll", "PeekMessageW", CountPeek);
  DWORD begin = 0;
  fHooks["Idle"] = [&] {
    const bool isLingering = fOutput.CountLines("Entering lingering mode...") > 0;
    *fRun.fIdleDelay = isLingering ? kNever : 20;
    if (isLingering && begin == 0) {
      EXPECT_EQ(fMorvane->IMorvane_StopQuitting(), kOK);
    }
  };
  fHooks["QuitEvent"] = [&] {
    begin = GetTickCount();
    sPeeks = 0;
    return StartQuitting();
  };
  ExpectRun(Started("QuitEvent CleanUp deleted"), [this] { Then([this] { Quit(); }); });
  const DWORD length = GetTickCount() - begin;
  EXPECT_GE(length, 880u);
  EXPECT_LT(length, 900u + 5000);
  EXPECT_LT(sPeeks, 50);
  for (const auto& [line, count] : {std::pair{"Entering lingering mode...", 2},
                                    {"Cancelling lingering mode...", 1},
                                    {"Lingering complete, exiting...", 1}})
    EXPECT_EQ(fOutput.CountLines(line), count) << line;
}

// --- Idle

// Too small a delay becomes 1 ms: the calls go on. After a failure, which is reported, they come on after
// about a second.
TEST_F(RunLoopTest, SmallIdleDelaysAndFailures) {
  DWORD failed = 0;
  fHooks["Idle"] = [&]() -> TError {
    EXPECT_EQ(*fRun.fIdleDelay, 1);
    *fRun.fIdleDelay = fRun.fIdleCalls % 2 ? 0 : -1000;
    if (fRun.fIdleCalls != 6) return kOK;
    failed = GetTickCount();
    fHooks["Idle"] = [&] {
      EXPECT_GT(GetTickCount() - failed, 500u);
      Quit();
    };
    return 100200;
  };
  const std::function<void()> keepTurning = [&] {
    Sleep(1);
    if (!IsQuitting()) Then(keepTurning);
  };
  RunFrom([&] { Then(keepTurning); });
  EXPECT_EQ(fRun.fLog.Count("UnhandledError:100200"), 1);
}

// The greatest delay keeps even the calls once a second away, but for the one that was due before the first
// call had said so. Waking up brings one.
TEST_F(RunLoopTest, LargeIdleDelay) {
  fHooks["Idle"] = IdleAfter(0x100000000);
  RunFrom([this] {
    int calls[2] = {};
    for (int& count : calls) {
      EXPECT_TRUE(YieldUntil([start = GetTickCount()] { return GetTickCount() - start > 1400; }));
      count = fRun.fIdleCalls;
    }
    EXPECT_EQ(calls[0], calls[1]);
    EXPECT_EQ(fMorvane->IMorvane_WakeUpIdle(), kOK);
    EXPECT_TRUE(YieldUntil([&] { return fRun.fIdleCalls > calls[1]; }));
    return StartQuitting();
  });
}

}  // namespace NSMorvaneTest
