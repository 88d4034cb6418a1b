// Timers, from the idle call of the default run behaviour.
#include "Support/ClientWindows.h"

namespace NSMorvaneTest {

class TimersTest : public ClientWindowTest {
 protected:
  // Writes a word into the log of the run.
  std::function<TError()> Say(const std::string& word) {
    return [=, this] {
      fRun.fLog.Add(word);
      return TError{kOK};
    };
  }
  int Count(const std::string& word) const { return fRun.fLog.Count(word); }
};

TEST_IN_RUN(TimersTest, OnceAndAgainAndNotAnyMore) {
  fRun.fLog.Take();
  CTimer once(*fMorvane), again(*fMorvane), stopped(*fMorvane), replaced(*fMorvane);
  auto deleted = std::make_unique<CTimer>(*fMorvane);
  const std::int64_t start = CTimerList::NowMS();
  std::int64_t onceAfter = 0, thirdAfter = 0;
  EXPECT_EQ(once.CallOnce(60,
                          [&] {
                            onceAfter = CTimerList::NowMS() - start;
                            return TError{kOK};
                          }),
            kOK);
  EXPECT_EQ(again.CallEvery(40,
                            [&, count = 0]() mutable {
                              if (++count == 3) thirdAfter = CTimerList::NowMS() - start;
                              return TError{kOK};
                            }),
            kOK);
  EXPECT_EQ(stopped.CallOnce(10, Say("stopped")), kOK);
  EXPECT_EQ(deleted->CallEvery(10, Say("deleted timer")), kOK);
  EXPECT_EQ(replaced.CallOnce(10, Say("old")), kOK);
  EXPECT_EQ(replaced.CallOnce(20, Say("new")), kOK);
  stopped.Stop();
  deleted.reset();
  EXPECT_TRUE(YieldUntil([&] { return thirdAfter > 0 && onceAfter > 0; }));
  EXPECT_GE(onceAfter, 60);
  EXPECT_GE(thirdAfter, 3 * 40);
  EXPECT_LT(thirdAfter, 2000) << "not with the idle call that comes every second";
  EXPECT_EQ(fRun.fLog.Take(), "new");
}

// The earliest first, whatever the order in which they were started; what was missed is left out.
TEST_IN_RUN(TimersTest, InTheOrderOfTheirTimes) {
  fRun.fLog.Take();
  CTimer a(*fMorvane), b(*fMorvane), c(*fMorvane), d(*fMorvane);
  EXPECT_EQ(a.CallOnce(90, Say("a")), kOK);
  EXPECT_EQ(b.CallOnce(30, Say("b")), kOK);
  EXPECT_EQ(d.CallEvery(45, Say("d")), kOK);
  EXPECT_EQ(c.CallOnce(60, Say("c")), kOK);
  Sleep(100);  // all are due in one idle call
  EXPECT_TRUE(YieldUntil([&] { return Count("a") > 0; }));
  EXPECT_EQ(fRun.fLog.Take(), "b d c a");
}

// A callback may end and start timers, its own and that of its owner too, and what it holds lives to its end.
TEST_IN_RUN(TimersTest, CallbacksThatEndTheirTimer) {
  fRun.fLog.Take();
  struct TOwner {
    explicit TOwner(IMorvane& morvane) : fTimer(morvane), fOther(morvane) {}
    CTimer fTimer, fOther;
  };
  auto owner = std::make_unique<TOwner>(*fMorvane);
  CTimer again(*fMorvane);
  EXPECT_EQ(owner->fOther.CallOnce(40, Say("other")), kOK);
  EXPECT_EQ(owner->fTimer.CallEvery(10,
                                    [&, text = std::string(100, 'x')] {
                                      owner.reset();
                                      fRun.fLog.Add(text == std::string(100, 'x') ? "gone" : "torn");
                                      // From a callback: no wake-up is needed.
                                      return again.CallOnce(1, [&] {
                                        fRun.fLog.Add("first");
                                        return again.CallOnce(1, Say("second"));
                                      });
                                    }),
            kOK);
  Sleep(60);  // both timers of the owner are due in one idle call
  EXPECT_TRUE(YieldUntil([&] { return Count("second") > 0; }));
  EXPECT_EQ(fRun.fLog.Take(), "gone first second");
}

// A failure, a thrown one too, is reported, and neither this timer nor the others stop.
TEST_F(TimersTest, CallbacksThatFail) {
  std::deque<CTimer> timers;
  std::int64_t startMS = 0;
  const auto start = [&](const std::string& word, TError (*answer)(int)) {
    timers.emplace_back(*fMorvane);
    EXPECT_EQ(timers.back().CallEvery(10,
                                      [=, this, count = 0]() mutable {
                                        fRun.fLog.Add(word);
                                        return answer(++count);
                                      }),
              kOK);
  };
  RunFrom([&] {
    Open();
    startMS = CTimerList::NowMS();
    start("failing", [](int count) { return count == 1 ? TError{100124} : TError{kOK}; });
    start("throwing", [](int count) -> TError {
      if (count >= 2 && count <= 4) throw XFailed{100125};
      return kOK;
    });
    timers.emplace_back(*fMorvane);
    EXPECT_EQ(timers.back().CallEvery(10,
                                      [&] {
                                        if (Count("failing") > 5 && Count("throwing") > 5) Quit();
                                        return TError{kOK};
                                      }),
              kOK);
  });
  EXPECT_LT(CTimerList::NowMS() - startMS, 2500) << "not with the idle call that comes every second";
  timers.clear();
  EXPECT_EQ(Count("UnhandledError:100124"), 1);
  EXPECT_EQ(Count("UnhandledError:100125"), 3);
}

// While a callback waits in a loop of its own, the others go on, also those that are started meanwhile, and
// it is not called again.
TEST_IN_RUN(TimersTest, CallbackThatWaits) {
  fRun.fLog.Take();
  CTimer waiting(*fMorvane), other(*fMorvane), late(*fMorvane);
  bool isThrough = false;
  EXPECT_EQ(other.CallEvery(15, Say("other")), kOK);
  EXPECT_EQ(
      waiting.CallEvery(10,
                        [&] {
                          fRun.fLog.Add("waiting");
                          if (isThrough) return TError{kOK};
                          other.Stop();
                          EXPECT_EQ(other.CallEvery(15, Say("again")), kOK);
                          EXPECT_EQ(late.CallOnce(20, Say("late")), kOK);
                          EXPECT_TRUE(YieldUntil([&] { return Count("again") > 2 && Count("late") > 0; }));
                          EXPECT_EQ(Count("waiting"), 1);
                          isThrough = true;
                          return TError{kOK};
                        }),
      kOK);
  EXPECT_TRUE(YieldUntil([&] { return Count("waiting") > 2; }));
}

// What timers ask for falls together: idle calls do not become more with each timer that is started.
TEST_IN_RUN(TimersTest, IdleCallsFallTogether) {
  std::deque<CTimer> timers;
  const std::int64_t start = CTimerList::NowMS();
  for (int i = 0; i < 50; ++i) {
    timers.emplace_back(*fMorvane);
    EXPECT_EQ(timers.back().CallOnce(100000 - 1000 * i, Say("never")), kOK);
    const int calls = fRun.fIdleCalls;
    EXPECT_TRUE(YieldUntil([&] { return fRun.fIdleCalls > calls; }));
  }
  EXPECT_LT(CTimerList::NowMS() - start, 20000) << "each wakes the loop up";
  // One call a second is left over from these fifty wake-ups, and not fifty.
  CTimer end(*fMorvane);
  bool isThrough = false;
  const int before = fRun.fIdleCalls;
  EXPECT_EQ(end.CallOnce(4000,
                         [&] {
                           isThrough = true;
                           return TError{kOK};
                         }),
            kOK);
  EXPECT_TRUE(YieldUntil([&] { return isThrough; }));
  EXPECT_LT(fRun.fIdleCalls - before, 20);
}

}  // namespace NSMorvaneTest
