// IMorvane_Run from start to end, as a client without windows sees it: the order of the callbacks, failures,
// messages, and idle calls.
#include "Support/ClientFixture.h"

#include <stdexcept>
#include <thread>

namespace NSMorvaneTest {

class RunLoopTest : public ClientTest {
 protected:
  static HWND FindHidden(const wchar_t* windowClass) {
    return FindWindowExW(HWND_MESSAGE, nullptr, windowClass, nullptr);
  }
  static HWND FindMessageWindow() { return FindHidden(L"Hollowbrook Message Window"); }
  // What stands during a run and is gone after it: the two hidden windows, and the record by which second
  // launches find this one.
  std::vector<bool> Standing() const {
    const HANDLE record = OpenFileMappingW(FILE_MAP_READ, FALSE, (fCompany + L"Scenario").c_str());
    if (record) CloseHandle(record);
    return {FindMessageWindow() != nullptr, FindHidden(L"Hollowbrook Hider Window") != nullptr,
            record != nullptr};
  }
  IMorvaneRunBehavior* Behavior() {
    IMorvaneRunBehavior* behavior = nullptr;
    EXPECT_EQ(fMorvane->IMorvane_GetBehavior(behavior), kOK);
    return behavior;
  }
  TError StartQuitting() { return fMorvane->IMorvane_StartQuitting(); }
  // A log that begins as one of a run without files does.
  static std::string Started(const std::string& log) { return "StartUp NoDocument:5003 " + log; }

  std::map<std::string, Hook>& fHooks = fRun.fHooks;
};

// --- Start and end

TEST_F(RunLoopTest, FilesComeInOrderBeforeTheFirstMessage) {
  fHooks["AppMessage"] = [this] { return StartQuitting(); };
  RunFrom([this] { return fMorvane->IMorvane_PostAppMessage(7, 0xFFFFFFFF); },
          L"/safe one.txt /x \"two 2.txt\" three.txt");
  EXPECT_EQ(fRun.fLog.Take(),
            "StartUp OpenURL:file://one.txt OpenURL:file://\"two 2.txt\" OpenURL:file://three.txt "
            "AppMessage:7,4294967295 CleanUp deleted");
}

// Quitting while it starts up skips the loop, and so the files.
TEST_F(RunLoopTest, WhatStandsDuringTheRun) {
  fHooks["CleanUp"] = [this] { EXPECT_TRUE(Standing()[1] && Standing()[2]); };
  RunFrom(
      [this] {
        EXPECT_EQ(Standing(), std::vector<bool>(3, true));
        EXPECT_NE(dynamic_cast<RecordingRunBehavior*>(Behavior()), nullptr);
        EXPECT_FALSE(IsQuitting());
        CTextReceiver quitItem;
        EXPECT_EQ(fMorvane->IMorvane_GetResourceString("SSTR/1000/1", quitItem), kOK);
        EXPECT_EQ(quitItem.Text(), u"E_xit");
        ExpectRunFails(kIllegalCallSequenceProgrammingError);  // there is one already
        return StartQuitting();
      },
      L"one.txt");
  EXPECT_EQ(fRun.fLog.Take(), "StartUp deleted CleanUp deleted");
  EXPECT_EQ(Standing(), std::vector<bool>(3, false));
}

// Outside the loop the run ends with the code, and the behaviour is left to the client.
TEST_F(RunLoopTest, FailuresOutsideTheLoopEndTheRun) {
  const Hook quits = [this] { return StartQuitting(); };
  const struct {
    const wchar_t* fArguments;
    std::map<std::string, Hook> fHooks;
    TError fError;
    const char* fLog;
  } rows[] = {
      {L"", {{"StartUp", TError(100123)}}, 100123, "StartUp deleted"},
      {L"one.txt two.txt",
       {{"OpenURL", kBadFormatError}},
       kBadFormatError,
       "StartUp OpenURL:file://one.txt deleted"},
      {L"", {{"NoDocument", [] { throw 5; }}}, kOtherError, "StartUp NoDocument:5003 deleted"},
      {L"", {{"StartUp", quits}, {"CleanUp", kBadFormatError}}, kBadFormatError, "StartUp CleanUp deleted"},
  };
  for (const auto& row : rows) {
    SetCommandLineOfThisProcess(L"\"app.exe\"");
    CreateMorvane(row.fArguments);
    fHooks = row.fHooks;
    ExpectRunFails(row.fError);
    EXPECT_EQ(fRun.fLog.Take(), row.fLog);
    EXPECT_EQ(Standing(), std::vector<bool>(3, false));
    EXPECT_EQ(Behavior(), nullptr);
    EXPECT_EQ(fOutput.TakeAssertions(), "0!=fBehavior; outBehavior != NULL");
    DeleteMorvane();
  }
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
  fRun.fLog.Remove("QuitEvent");
  EXPECT_EQ(fRun.fLog.Take(), Started("AppMessage:1,0 AppMessage:2,0 UnhandledError:100001 "
                                      "UnhandledError:100555 CleanUp deleted"));
  EXPECT_EQ(fOutput.TakeAssertions(), "false");
}

// Any process can send any numbers to the message window.
TEST_F(RunLoopTest, StrangersMessagesAreRefused) {
  RunFrom([this] {
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
  EXPECT_EQ(fRun.fLog.Take(), "StartUp CleanUp deleted");
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
  fRun.fLog.Remove("QuitEvent");
  EXPECT_EQ(fRun.fLog.Take(), Started(expected + "CleanUp deleted"));
}

// The application's activation as it arrives from the threads of file dialogs.
TEST_F(RunLoopTest, ActivationIsToldOnChangesOnly) {
  constexpr UINT kAppActivation = 1136;
  DWORD strangersId = 0;
  const HANDLE stranger = CreateThread(
      nullptr, 0, [](void*) -> DWORD { return 0; }, nullptr, CREATE_SUSPENDED, &strangersId);
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
  ResumeThread(stranger);
  WaitForSingleObject(stranger, INFINITE);
  CloseHandle(stranger);
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
  fHooks["Idle"] = [this] { *fRun.fIdleDelay = 0x100000000; };
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
