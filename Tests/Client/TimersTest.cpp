// Timers, from the idle call of the default run behaviour.
#include "Support/ClientWindows.h"

namespace NSMorvaneTest {

class TimersTest : public ClientWindowTest {
 protected:
  // What a timer does, and its word in the log of the run.
  using Action = std::function<TError()>;
  Action Say(
      const std::string& word, const std::function<void()>& action = [] {}) {
    return [=, this] {
      fRun.fLog.Add(word);
      action();
      return TError{kOK};
    };
  }
  static void Once(CTimer& timer, int delayMS, const Action& action) {
    EXPECT_EQ(timer.CallOnce(delayMS, action), kOK);
  }
  static void Every(CTimer& timer, int delayMS, const Action& action) {
    EXPECT_EQ(timer.CallEvery(delayMS, action), kOK);
  }
  int Count(const std::string& word) const { return fRun.fLog.Count(word); }
  // The words until then, in which this one is the last to come.
  std::string WordsUntil(const std::string& word) {
    EXPECT_TRUE(YieldUntil([&] { return Count(word) > 0; }));
    return fRun.fLog.Take();
  }
};

TEST_IN_RUN(TimersTest, OnceAndAgainAndNotAnyMore) {
  fRun.fLog.Take();
  CTimer once(*fMorvane), again(*fMorvane), stopped(*fMorvane), replaced(*fMorvane);
  auto deleted = std::make_unique<CTimer>(*fMorvane);
  const std::int64_t start = CTimerList::NowMS();
  std::vector<std::int64_t> onceAfter, againAfter;
  const auto note = [start](std::vector<std::int64_t>& times) {
    return [&times, start] {
      times.push_back(CTimerList::NowMS() - start);
      return TError{kOK};
    };
  };
  Once(once, 60, note(onceAfter));
  Every(again, 40, note(againAfter));
  Once(stopped, 10, Say("stopped"));
  Every(*deleted, 10, Say("deleted timer"));
  Once(replaced, 10, Say("old"));
  Once(replaced, 20, Say("new"));
  stopped.Stop();
  deleted.reset();
  EXPECT_TRUE(YieldUntil([&] { return againAfter.size() >= 3 && !onceAfter.empty(); }));
  EXPECT_GE(onceAfter[0], 60);
  EXPECT_GE(againAfter[2], 3 * 40);
  EXPECT_LT(againAfter[2], 2000) << "not with the idle call that comes every second";
  EXPECT_EQ(onceAfter.size(), 1u);
  EXPECT_EQ(fRun.fLog.Take(), "new");
}

// The earliest first, whatever the order in which they were started; what was missed is left out.
TEST_IN_RUN(TimersTest, InTheOrderOfTheirTimes) {
  fRun.fLog.Take();
  CTimer a(*fMorvane), b(*fMorvane), c(*fMorvane), d(*fMorvane);
  Once(a, 90, Say("a"));
  Once(b, 30, Say("b"));
  Every(d, 45, Say("d"));
  Once(c, 60, Say("c"));
  Sleep(100);  // all are due in one idle call
  EXPECT_EQ(WordsUntil("a"), "b d c a");
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
  Once(owner->fOther, 40, Say("other"));
  Every(owner->fTimer, 10, [&, text = std::string(100, 'x')] {
    owner.reset();
    fRun.fLog.Add(text == std::string(100, 'x') ? "gone" : "torn");
    // From a callback: no wake-up is needed.
    return again.CallOnce(1, Say("first", [&] { Once(again, 1, Say("second")); }));
  });
  Sleep(60);  // both timers of the owner are due in one idle call
  EXPECT_EQ(WordsUntil("second"), "gone first second");
}

// A failure, a thrown one too, is reported, and neither this timer nor the others stop.
TEST_F(TimersTest, CallbacksThatFail) {
  std::deque<CTimer> timers;
  std::int64_t startMS = 0;
  RunFrom([&] {
    Open();
    startMS = CTimerList::NowMS();
    for (int i = 0; i < 3; ++i) timers.emplace_back(*fMorvane);
    Every(timers[0], 10, [&] {
      fRun.fLog.Add("failing");
      return Count("failing") == 1 ? TError{100124} : TError{kOK};
    });
    Every(timers[1], 10, Say("throwing", [&] {
            const int count = Count("throwing");
            if (count >= 2 && count <= 4) throw XFailed{100125};
          }));
    Every(timers[2], 10, Say("looking", [&] {
            if (Count("failing") > 5 && Count("throwing") > 5) Quit();
          }));
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
  Every(other, 15, Say("other"));
  Every(waiting, 10, Say("waiting", [&] {
          if (std::exchange(isThrough, true)) return;
          other.Stop();
          Every(other, 15, Say("again"));
          Once(late, 20, Say("late"));
          EXPECT_TRUE(YieldUntil([&] { return Count("again") > 2 && Count("late") > 0; }));
          EXPECT_EQ(Count("waiting"), 1);
        }));
  EXPECT_TRUE(YieldUntil([&] { return Count("waiting") > 2; }));
}

}  // namespace NSMorvaneTest
