// IMorvane_Run from start to end, as a client without windows sees it: the order of the callbacks, failures,
// messages, menu bar requests, and idle calls.
#include <algorithm>
#include <stdexcept>

#include "Support/ClientFixture.h"

namespace NSMorvaneTest {

class RunLoopTest : public ClientTest {};

// --- Start and end

TEST_F(RunLoopTest, FilesComeInOrderBeforeTheFirstMessage) {
  CreateMorvane(L"/safe one.txt /x \"two 2.txt\" three.txt");
  CTextReceiver options;
  fHooks.fOnStartUp = [&] {
    IWinExtensions* extensions = nullptr;
    EXPECT_EQ(fMorvane->IMorvane_GetWinExtensions(extensions), kOK);
    EXPECT_EQ(extensions->IWinExtensions_GetCommandLineOptions(options), kOK);
    return fMorvane->IMorvane_PostAppMessage(7, 0xFFFFFFFF);
  };
  fHooks.fOnAppMessage = [this](std::uint32_t, std::uint32_t) { return fMorvane->IMorvane_StartQuitting(); };
  EXPECT_EQ(Run(), kOK);
  EXPECT_EQ(fLog,
            (CallLog{"OnStartUp", "OnOpenURL file://one.txt", "OnOpenURL file://\"two 2.txt\"",
                     "OnOpenURL file://three.txt", "OnAppMessage 7 4294967295", "OnCleanUp", "deleted"}));
  EXPECT_EQ(options.fTexts, (std::vector<std::u16string>{u"/safe", u"/x"}));
}

TEST_F(RunLoopTest, WhatStandsDuringTheRun) {
  CreateMorvane();
  const auto isListed = [](HWND hwnd) {
    std::pair<HWND, bool> search(hwnd, false);
    EnumWindows(
        [](HWND other, LPARAM data) -> BOOL {
          auto& [wanted, found] = *reinterpret_cast<std::pair<HWND, bool>*>(data);
          found = found || other == wanted;
          return TRUE;
        },
        reinterpret_cast<LPARAM>(&search));
    return search.second;
  };
  fHooks.fOnStartUp = [&] {
    for (const HWND hwnd : {FindMessageWindow(), FindHiderWindow()}) {
      EXPECT_NE(hwnd, nullptr);
      EXPECT_FALSE(isListed(hwnd));
      EXPECT_TRUE(GetWindowLongW(hwnd, GWL_STYLE) & WS_DISABLED);
      EXPECT_EQ(GetClassLongPtrW(hwnd, GCL_STYLE), static_cast<ULONG_PTR>(CS_DBLCLKS));
    }
    EXPECT_TRUE(HoldsInstanceRecord());
    IMorvaneRunBehavior* behavior = nullptr;
    EXPECT_EQ(fMorvane->IMorvane_GetBehavior(behavior), kOK);
    EXPECT_NE(dynamic_cast<RecordingRunBehavior*>(behavior), nullptr);
    EXPECT_FALSE(IsQuitting());
    CTextReceiver quitItem;
    EXPECT_EQ(fMorvane->IMorvane_GetResourceString("SSTR/1000/1", quitItem), kOK);
    EXPECT_EQ(quitItem.Text(), u"E_xit");
    return fMorvane->IMorvane_StartQuitting();
  };
  fHooks.fOnCleanUp = [&] {
    EXPECT_NE(FindHiderWindow(), nullptr);
    EXPECT_TRUE(HoldsInstanceRecord());
  };
  EXPECT_EQ(Run(), kOK);
  EXPECT_EQ(FindMessageWindow(), nullptr);
  EXPECT_EQ(FindHiderWindow(), nullptr);
  EXPECT_FALSE(HoldsInstanceRecord());
}

// Without anyone who listens, a run ends with its first message.
TEST_F(RunLoopTest, RunWithoutBehaviour) {
  CreateMorvane();
  MSG msg;
  PeekMessageW(&msg, nullptr, WM_USER, WM_USER, PM_NOREMOVE);
  PostThreadMessageW(GetCurrentThreadId(), WM_APP, 0, 0);
  EXPECT_EQ(fMorvane->IMorvane_Run(nullptr, fParams), kOK);
  EXPECT_EQ(fOutput.CountLines("Auto-handlig quit event since there is no behavior."), 1u);
  EXPECT_EQ(fOutput.CountLines("]Morvane] Entering quit mode..."), 1u);
  EXPECT_EQ(fOutput.CountLines("Skipping call to IMorvaneRunBehavior_OnCleanUp, since there is no behavior."),
            1u);
}

// --- Failures outside the loop: the run ends with the code, and the behaviour is left to the client

TEST_F(RunLoopTest, FailuresOutsideTheLoopEndTheRun) {
  const struct {
    const wchar_t* fArguments;
    std::function<void()> fFail;
    TError fError;
    CallLog fLog;
  } rows[] = {
      {L"", [this] { fHooks.fOnStartUp = TError(100123); }, 100123, {"OnStartUp"}},
      {L"one.txt two.txt",
       [this] { fHooks.fOnOpenURL = [](const std::string&) { return kBadFormatError; }; },
       kBadFormatError,
       {"OnStartUp", "OnOpenURL file://one.txt"}},
      {L"",
       [this] { fHooks.fOnNoDocument = [](TNoDocumentKind) -> TError { throw 5; }; },
       kOtherError,
       {"OnStartUp", "OnNoDocument 5003"}},
      {L"",
       [this] {
         fHooks.fOnStartUp = [this] { return fMorvane->IMorvane_StartQuitting(); };
         fHooks.fOnCleanUp = kOutOfMemoryError;
       },
       kOutOfMemoryError,
       {"OnStartUp", "OnCleanUp"}},
  };
  for (const auto& row : rows) {
    fLog.clear();
    fHooks = {};
    SetCommandLineOfThisProcess(L"\"app.exe\"");
    CreateMorvane(row.fArguments);
    row.fFail();
    ExpectRunFails(row.fError);
    EXPECT_EQ(fLog, row.fLog);
    EXPECT_EQ(FindMessageWindow(), nullptr);
    EXPECT_FALSE(HoldsInstanceRecord());
    IMorvaneRunBehavior* none = nullptr;
    EXPECT_EQ(fMorvane->IMorvane_GetBehavior(none), kOK);
    EXPECT_EQ(none, nullptr);
    EXPECT_EQ(fOutput.TakeAssertions(), (CallLog{"0!=fBehavior", "outBehavior != NULL"}));
    DeleteMorvane();
  }
}

// Quitting while it starts up skips the loop, and so the files.
TEST_F(RunLoopTest, RunInsideARunIsRefused) {
  RecordingRunBehavior inner(fLog, fHooks, fSteps);
  RunFrom(
      [&] {
        EXPECT_EQ(fMorvane->IMorvane_Run(&inner, fParams), TError(kIllegalCallSequenceProgrammingError));
        return fMorvane->IMorvane_StartQuitting();
      },
      L"one.txt");
  EXPECT_EQ(fLog, (CallLog{"OnStartUp", "OnCleanUp", "deleted"}));
}

// --- Messages

// Nor does a quit event that nobody answers: it comes again after each message.
TEST_F(RunLoopTest, QuitMessageDoesNotEndTheRun) {
  CreateMorvane();
  fHooks.fOnStartUp = [] { PostQuitMessage(3); };
  int quitEvents = 0;
  fHooks.fOnQuitEvent = [&] {
    if (++quitEvents <= 2) return fMorvane->IMorvane_PostAppMessage(quitEvents, 2);
    return fMorvane->IMorvane_StartQuitting();
  };
  EXPECT_EQ(Run(), kOK);
  EXPECT_EQ(fLog, (CallLog{"OnStartUp", "OnNoDocument 5003", "OnQuitEvent", "OnAppMessage 1 2", "OnQuitEvent",
                           "OnAppMessage 2 2", "OnQuitEvent", "OnCleanUp", "deleted"}));
}

// A message that comes inside another one, both failing: one report, with the code of what failed first.
TEST_F(RunLoopTest, ErrorsOfOneMessageGiveOneReport) {
  CreateMorvane();
  constexpr UINT kAppMessage = 1226;
  fHooks.fOnAppMessage = [](std::uint32_t a, std::uint32_t) -> TError {
    if (a != 1) return 100001;
    SendMessageW(FindMessageWindow(), kAppMessage, 2, 0);
    throw std::bad_alloc();
  };
  fHooks.fOnUnhandledError = [this](TError) {
    Quit();
    return TError(100999);
  };
  fHooks.fOnStartUp = [this] { return fMorvane->IMorvane_PostAppMessage(1, 0); };
  EXPECT_EQ(Run(), kOK);
  EXPECT_EQ(fLog, (CallLog{"OnStartUp", "OnNoDocument 5003", "OnAppMessage 1 0", "OnAppMessage 2 0",
                           "OnUnhandledError 100001", "OnCleanUp", "deleted"}));
}

// A failing quit event is reported; an exception in the report is not.
TEST_F(RunLoopTest, FailuresOfQuitEventAndReport) {
  CreateMorvane();
  fHooks.fOnQuitEvent = TError(100555);
  fHooks.fOnUnhandledError = [this](TError) -> TError {
    Quit();
    throw std::runtime_error("in the report");
  };
  fHooks.fOnStartUp = [this] { return fMorvane->IMorvane_PostAppMessage(1, 0); };
  EXPECT_EQ(Run(), kOK);
  EXPECT_EQ(fLog, (CallLog{"OnStartUp", "OnNoDocument 5003", "OnAppMessage 1 0", "OnQuitEvent",
                           "OnUnhandledError 100555", "OnCleanUp", "deleted"}));
  EXPECT_EQ(fOutput.TakeAssertions(), CallLog{"false"});
}

// Any process can send any numbers to the message window.
TEST_F(RunLoopTest, StrangersMessagesAreRefused) {
  RunFrom([this] {
    const HWND window = FindMessageWindow();
    for (UINT message = 1125; message <= 1138; ++message) {
      if (message == 1135 || message == 1136) continue;
      const bool isIdle = message == 1129;
      SendMessageW(window, message, 0x1234, 0x5678);
      EXPECT_EQ(fOutput.TakeAssertions(), isIdle ? (CallLog{"false", "0==lParam"}) : (CallLog{"false"}))
          << message;
      SendMessageW(window, message, 0, 0);
      EXPECT_EQ(fOutput.TakeAssertions(),
                isIdle ? (CallLog{"0!=wParam"}) : (CallLog{"0!=wParam", "0!=lParam"}))
          << message;
    }
    SendMessageW(window, 1135, 1, 1);
    SendMessageW(window, 1136, 1, 1);
    return fMorvane->IMorvane_StartQuitting();
  });
  EXPECT_EQ(fLog, (CallLog{"OnStartUp", "OnCleanUp", "deleted"}));
}

TEST_F(RunLoopTest, AppMessagesFromAnotherThread) {
  CreateMorvane();
  constexpr std::uint32_t kCount = 200;
  std::uint32_t next = 0;
  HANDLE thread = nullptr;
  fHooks.fOnStartUp = [&] {
    thread = CreateThread(
        nullptr, 0,
        [](void* morvane) -> DWORD {
          for (std::uint32_t i = 0; i < kCount; ++i) {
            if (static_cast<IMorvane*>(morvane)->IMorvane_PostAppMessage(i, ~i) != kOK) return 1;
            if (static_cast<IMorvane*>(morvane)->IMorvane_WakeUpIdle() != kOK) return 2;
          }
          return 0;
        },
        fMorvane, 0, nullptr);
  };
  fHooks.fOnAppMessage = [&](std::uint32_t a, std::uint32_t b) {
    EXPECT_EQ(a, next);
    EXPECT_EQ(b, ~next);
    if (++next == kCount) {
      WaitForSingleObject(thread, INFINITE);
      Quit();
    }
  };
  EXPECT_EQ(Run(), kOK);
  DWORD code = 99;
  GetExitCodeThread(thread, &code);
  EXPECT_EQ(code, 0u);
  CloseHandle(thread);
}

// The application's activation as it arrives from the threads of file dialogs.
TEST_F(RunLoopTest, ActivationIsToldOnChangesOnly) {
  CreateMorvane();
  constexpr UINT kAppActivation = 1136;
  DWORD strangersId = 0;
  const HANDLE stranger = CreateThread(
      nullptr, 0, [](void*) -> DWORD { return 0; }, nullptr, CREATE_SUSPENDED, &strangersId);
  fHooks.fOnStartUp = [&] {
    for (const WPARAM flag : {0, 1, 1, 0, 0, 1}) PostMessageW(nullptr, kAppActivation, flag, strangersId);
    Then([this] { Quit(); });
  };
  std::vector<TFlag> told;
  fHooks.fOnAppActivation = [&](TFlag active) {
    told.push_back(active);
    return active ? kOK : TError(100777);
  };
  EXPECT_EQ(Run(), kOK);
  EXPECT_EQ(told, (std::vector<TFlag>{1, 0, 1}));
  EXPECT_EQ(std::count(fLog.begin(), fLog.end(), "OnUnhandledError 100777"), 1);
  ResumeThread(stranger);
  WaitForSingleObject(stranger, INFINITE);
  CloseHandle(stranger);
}

// --- Idle

// Too small a delay becomes 1 ms: the calls go on.
TEST_F(RunLoopTest, SmallIdleDelays) {
  fHooks.fOnIdle = [](std::int64_t& delay) {
    EXPECT_EQ(delay, 1);
    delay = IdleCalls() % 2 ? 0 : -1000;
  };
  RunFrom([this] {
    EXPECT_TRUE(YieldUntil([] { return IdleCalls() >= 6; }));
    return fMorvane->IMorvane_StartQuitting();
  });
}

// The greatest delay keeps even the calls once a second away, but for the one that was due before the first
// call had said so. Waking up brings one.
TEST_F(RunLoopTest, LargeIdleDelay) {
  fHooks.fOnIdle = [](std::int64_t& delay) { delay = 0x100000000; };
  RunFrom([&] {
    EXPECT_TRUE(YieldUntil([] { return IdleCalls() > 0; }));
    YieldFor(1400);
    const int calls = IdleCalls();
    EXPECT_LE(calls, 2);
    YieldFor(1400);
    EXPECT_EQ(IdleCalls(), calls);
    EXPECT_EQ(fMorvane->IMorvane_WakeUpIdle(), kOK);
    EXPECT_TRUE(YieldUntil([calls] { return IdleCalls() == calls + 1; }));
    return fMorvane->IMorvane_StartQuitting();
  });
}

// A failure is reported, and the calls come on after about a second.
TEST_F(RunLoopTest, FailingIdleGoesOn) {
  DWORD failed = 0;
  fHooks.fOnIdle = [&](std::int64_t& delay) -> TError {
    delay = 5;
    if (IdleCalls() == 1) {
      failed = GetTickCount();
      return 100200;
    }
    EXPECT_GT(GetTickCount() - failed, 500u);
    Quit();
    return kOK;
  };
  RunFrom([this] { WhenThen([] { return IdleCalls() >= 2; }, [] {}); });
  EXPECT_EQ(std::count(fLog.begin(), fLog.end(), "OnUnhandledError 100200"), 1);
}

// News of the idle thread that are under way must not hold up the end of the run, nor come after it.
TEST_F(RunLoopTest, WakingUpAroundTheRun) {
  CreateMorvane();
  EXPECT_EQ(fMorvane->IMorvane_WakeUpIdle(), kOK);
  RunFrom([this] {
    for (int i = 0; i < 300; ++i) EXPECT_EQ(fMorvane->IMorvane_WakeUpIdle(), kOK);
    return fMorvane->IMorvane_StartQuitting();
  });
  EXPECT_EQ(fMorvane->IMorvane_WakeUpIdle(), kOK);
  EXPECT_EQ(fMorvane->IMorvane_Yield(), kOK);
  EXPECT_EQ(IdleCalls(), 0);
}

// --- Time

TEST_F(RunLoopTest, WhatNeedsNoRun) {
  CreateMorvane();
  std::uint64_t now = ~std::uint64_t(0);
  const DWORD before = GetTickCount();
  EXPECT_EQ(fMorvane->IMorvane_GetCurrentMS(now), kOK);
  EXPECT_LE(now - before, 5000u);
  std::uint64_t ticks = 77;
  EXPECT_EQ(fMorvane->IMorvane_ConvertMSToPrecisionTicks(12, ticks), kOK);
  EXPECT_EQ(ticks, 0u);
  EXPECT_EQ(fMorvane->IMorvane_PostAppMessage(1, 2), TError(kOtherError));
  EXPECT_EQ(fOutput.TakeAssertions(), (CallLog{"false", "NULL != fMessageWindow"}));
}

}  // namespace NSMorvaneTest
