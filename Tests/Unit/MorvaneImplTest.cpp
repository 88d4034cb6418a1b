// The root object without a run: its life, the small hooks, private messages, and what it does with failures
// and requests while nobody listens. Runs are in the client tests.
#include "Component/Win/MorvaneImplWin.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>

#include "Component/Win/MorvaneImplWinMessages.h"
#include "Component/Win/UtilsWin.h"
#include "Tests/Support/RecordingDebugOutput.h"

using namespace NSMorvane;
using NSMorvaneTest::RecordingDebugOutput;

namespace {

using Texts = std::vector<std::string>;

class MorvaneImplTest : public ::testing::Test {
 protected:
  MorvaneImplTest() {
    TError error = kOtherError;
    fMorvane.reset(Morvane_Create("IMorvane", &error));
    EXPECT_EQ(error, kOK);
    fOutput.Reset();
  }
  ~MorvaneImplTest() override { gPendingErrors.clear(); }

  CMorvaneImpl& Impl() { return *CMorvaneImpl::gMorvaneImpl; }
  // The assertions since the last time.
  Texts TakeAssertions() { return std::exchange(fOutput.fAssertions, {}); }
  std::ptrdiff_t CountLines(const std::string& line) const {
    return std::count(fOutput.fLines.begin(), fOutput.fLines.end(), "[Morvane] " + line);
  }
  // Has the loop handle one message.
  void TurnTheLoop() {
    ::PostThreadMessageW(::GetCurrentThreadId(), WM_APP, 0, 0);
    EXPECT_EQ(fMorvane->IMorvane_Yield(), kOK);
  }

  RecordingDebugOutput fOutput;
  std::unique_ptr<IMorvane> fMorvane;
};

}  // namespace

// --- Life

TEST_F(MorvaneImplTest, ThereIsOneRootObject) {
  TError error = kOK;
  EXPECT_EQ(Morvane_Create("IMorvane", &error), nullptr);
  EXPECT_EQ(error, TError(kOtherError));
  for (const char* name : {"iMorvane", "IMorvane ", "", "IMorvan", static_cast<const char*>(nullptr)}) {
    error = kOK;
    EXPECT_EQ(Morvane_Create(name, &error), nullptr);
    EXPECT_EQ(error, TError(kBadInputProgrammingError)) << (name ? name : "null");
  }

  fMorvane.reset();
  EXPECT_EQ(CMorvaneImpl::gMorvaneImpl, nullptr);
  fMorvane.reset(Morvane_Create("IMorvane", &error));
  EXPECT_EQ(error, TError(kOK));
  EXPECT_EQ(TakeAssertions(), Texts());
}

TEST_F(MorvaneImplTest, OutsideARun) {
  IMorvaneRunBehavior* behavior = nullptr;
  EXPECT_EQ(fMorvane->IMorvane_GetBehavior(behavior), kOK);
  EXPECT_EQ(TakeAssertions(), (Texts{"0!=fBehavior", "outBehavior != NULL"}));
  EXPECT_EQ(Impl().GetWindowForHwnd(::GetDesktopWindow()), nullptr);
  EXPECT_THROW(Impl().GetWindowForHwndChecked(::GetDesktopWindow()), std::exception);
  EXPECT_EQ(TakeAssertions(), (Texts{"false"}));
}

// --- Small hooks

TEST_F(MorvaneImplTest, AutoPlaySuppressionNests) {
  IWinExtensions* extensions = nullptr;
  ASSERT_EQ(fMorvane->IMorvane_GetWinExtensions(extensions), kOK);
  const UINT query = ::RegisterWindowMessageW(L"QueryCancelAutoPlay");
  const struct {
    std::uint32_t command;
    TError result;
    bool suppressedAfter;
  } steps[] = {{1, kIllegalCallSequenceProgrammingError, false},
               {0, kOK, true},
               {2, kBadInputProgrammingError, true},
               {0, kOK, true},
               {1, kOK, true},
               {1, kOK, false},
               {1, kIllegalCallSequenceProgrammingError, false}};
  for (const auto& step : steps) {
    EXPECT_EQ(extensions->IWinExtensions_SuppressAutoPlay(static_cast<TAutoPlayCommand>(step.command)),
              step.result);
    fOutput.fLines.clear();
    EXPECT_EQ(Impl().IsAutoPlayQuery(query), step.suppressedAfter);
    EXPECT_EQ(CountLines("Stopped an autoplay from occuring!"), step.suppressedAfter ? 1 : 0);
    EXPECT_FALSE(Impl().IsAutoPlayQuery(query + 1));
  }
  EXPECT_EQ(TakeAssertions(), Texts());
}

// --- Failures and requests without a behaviour

TEST_F(MorvaneImplTest, OldestPendingErrorIsDelivered) {
  gPendingErrors = {kBadFormatError, 100001};
  TurnTheLoop();
  EXPECT_EQ(CountLines("Ignoring unhandled error 12005 since there is no behavior."), 1);
  EXPECT_TRUE(gPendingErrors.empty());
}

TEST_F(MorvaneImplTest, MenuBarRequestsWithoutBehaviour) {
  EXPECT_FALSE(Impl().MenuBarsAreStale());
  for (int i = 0; i < 3; ++i) EXPECT_EQ(fMorvane->IMorvane_RequestMenuBarsSetup(), kOK);
  EXPECT_TRUE(Impl().MenuBarsAreStale());
  Impl().FlushMenuBarRequests();
  EXPECT_FALSE(Impl().MenuBarsAreStale());
  Impl().FlushMenuBarRequests();
  EXPECT_EQ(fOutput.fLines,
            (Texts{"[Morvane] CMorvaneImpl::CMorvaneGlue_RequestMenuBarsSetup requested",
                   "[Morvane] Collapsed 3 rebuild menubar requests...",
                   "[Morvane] Ignoring request to rebuild menu bars since there is no behavior."}));
}

TEST_F(MorvaneImplTest, SessionEndWithoutBehaviour) {
  EXPECT_TRUE(Impl().OnQueryEndSession());
  EXPECT_EQ(fOutput.fLines, (Texts{"[Morvane] Auto-handlig quit event since there is no behavior.",
                                   "[Morvane] ]Morvane] Entering quit mode..."}));
  // Already quitting: the answer is at hand.
  EXPECT_TRUE(Impl().OnQueryEndSession());
  EXPECT_EQ(fOutput.fLines.size(), 2u);
  EXPECT_EQ(fMorvane->IMorvane_StopQuitting(), kOK);
  EXPECT_EQ(CountLines("]Morvane] Exited quit mode..."), 1);
  EXPECT_EQ(TakeAssertions(), Texts());
}

// --- Private messages

namespace {

class RecordingListener : public IMessageCallListener {
 public:
  void OnListenerCall1() override { fCalls += '1'; }
  void OnListenerCall2() override { fCalls += '2'; }
  void OnListenerCall3() override { throw XBadFormat(); }
  std::string fCalls;
};

}  // namespace

TEST_F(MorvaneImplTest, ListenerCallsReachKnownListenersOnly) {
  RecordingListener known, stranger;
  const auto send = [&](UINT message, RecordingListener& listener) {
    return Impl().HandlePrivateMessage(
        nullptr, message, reinterpret_cast<WPARAM>(&Impl()),
        reinterpret_cast<LPARAM>(static_cast<IMessageCallListener*>(&listener)));
  };
  Impl().AddMessageCallListener(&known);
  send(kMsgListenerCall1, known);
  send(kMsgListenerCall2, known);
  EXPECT_EQ(TakeAssertions(), Texts());
  send(kMsgListenerCall1, stranger);
  EXPECT_EQ(TakeAssertions(), (Texts{"false"}));
  send(kMsgListenerCall3, known);
  EXPECT_EQ(gPendingErrors, (std::vector<TError>{kBadFormatError}));
  Impl().RemoveMessageCallListener(&known);
  send(kMsgListenerCall1, known);
  EXPECT_EQ(TakeAssertions(), (Texts{"false"}));
  EXPECT_EQ(known.fCalls, "12");
  EXPECT_EQ(stranger.fCalls, "");
}
