// What the root object keeps in classes of their own: lingering, the schedule of menu bars, command lines
// that wait.
#include <functional>
#include <string>

#include "Component/Portable/Application/Lingering.h"
#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Menus/MenuBarSchedule.h"
#include "Component/Portable/Opening/PendingCommandLines.h"
#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;

using RootStateTest = ReportingTest;

// --- Lingering

TEST_F(RootStateTest, Lingering) {
  struct CTimer : ILingerTimer {
    std::uintptr_t StartTimer(std::uint32_t delayMS) override { return fDelay = delayMS, fRunning = ++fLast; }
    void StopTimer(std::uintptr_t timer) override { fRunning = timer == fRunning ? 0 : 99; }
    std::uint32_t fDelay = 0;
    std::uintptr_t fLast = 4, fRunning = 0;
  } timer;
  CLingering lingering(timer);
  const auto state = [&] {
    return std::string(lingering.IsOn()        ? "on"
                       : lingering.IsExpired() ? "expired"
                                               : "off") +
           (timer.fRunning ? " timer" + std::to_string(timer.fRunning) : "");
  };
  // Without a duration the application leaves at once.
  EXPECT_TRUE(lingering.Decide(true));
  EXPECT_FALSE(lingering.Decide(false));
  EXPECT_EQ(state(), "off");
  lingering.SetDuration(700);
  EXPECT_TRUE(lingering.Decide(false));
  EXPECT_TRUE(lingering.Decide(false));
  EXPECT_EQ(state(), "on timer5");
  EXPECT_EQ(timer.fDelay, 700u);
  EXPECT_EQ(TakeLines(), "Entering lingering mode...");
  // There is something to run for again.
  EXPECT_TRUE(lingering.Decide(true));
  EXPECT_EQ(state(), "off");
  EXPECT_EQ(TakeLines(), "Cancelling lingering mode...");
  // Wanted again, which the next pass may take back.
  EXPECT_TRUE(lingering.Decide(false));
  lingering.Abort();
  lingering.Abort();
  EXPECT_EQ(state(), "off");
  EXPECT_EQ(TakeLines(), "Entering lingering mode...; Lingering aborted...");
  EXPECT_TRUE(lingering.Decide(false));
  TakeLines();
  // The timers of others mean nothing, and neither does its own when it comes late.
  for (const std::uintptr_t other : {0, 6, 8}) lingering.OnTimer(other);
  EXPECT_EQ(state(), "on timer7");
  lingering.OnTimer(7);
  lingering.OnTimer(7);
  EXPECT_EQ(state(), "expired");
  EXPECT_EQ(TakeLines(), "Lingering complete, exiting...");
  EXPECT_FALSE(lingering.Decide(false));
  EXPECT_EQ(state(), "expired");
  EXPECT_TRUE(lingering.Decide(true));
  EXPECT_EQ(state(), "off");
}

// --- Menu bars

TEST_F(RootStateTest, MenuBarsInTheirSetUpWait) {
  CMenuBarSchedule schedule;
  std::string log;
  const int windows[] = {1, 2};
  const auto setUp = [&](int i, const std::function<void()>& inside) {
    schedule.SetUp(&windows[i], [&log, i, inside] {
      log += "<" + std::to_string(i);
      inside();
      log += ">";
    });
  };
  // The other window need not wait; the same one is requested again, when the outermost has ended.
  setUp(0, [&] {
    setUp(1, [&] { setUp(0, [] {}); });
    EXPECT_FALSE(schedule.IsRequested());
  });
  EXPECT_EQ(log, "<0<1>>");
  EXPECT_TRUE(schedule.TakeRequests());
  // A failure goes through, and leaves nothing in its set-up.
  EXPECT_THROW(setUp(0, [] { throw XBadFormat(); }), XBadFormat);
  log.clear();
  setUp(0, [] {});
  EXPECT_EQ(log, "<0>");
  EXPECT_FALSE(schedule.IsRequested());
}

// --- Command lines

TEST_F(RootStateTest, CommandLinesWait) {
  CPendingCommandLines lines;
  const auto take = [&] {
    std::u16string files;
    while (lines.IsAnyFile()) files += lines.TakeFile() + u";";
    return files;
  };
  lines.Add({{u"/a"}, {}});
  EXPECT_FALSE(lines.IsAnythingDue());
  // Files of a launch come behind those that wait, options take the place of those before.
  lines.Add({{u"/b"}, {u"1", u"2"}});
  lines.AddLaunch({{}, {u"3"}});
  EXPECT_TRUE(lines.IsAnythingDue());
  EXPECT_TRUE(lines.GetOptions().empty());
  EXPECT_TRUE(take() == u"1;2;3;");
  EXPECT_FALSE(lines.TakeReopenRequest());
  // A launch without files asks for a document, once; not while files wait.
  lines.AddLaunch({});
  EXPECT_TRUE(lines.IsAnythingDue());
  EXPECT_TRUE(lines.TakeReopenRequest());
  EXPECT_FALSE(lines.IsAnythingDue());
  lines.Add({{}, {u"4"}});
  lines.AddLaunch({});
  EXPECT_FALSE(lines.TakeReopenRequest());
}

// The message of a launch can come before its command line is seen, after it, or never.
TEST_F(RootStateTest, LaunchesAreReadOnce) {
  CPendingCommandLines lines;
  const bool kPending = true, kEmpty = false;
  EXPECT_FALSE(lines.OnLook(kEmpty));
  EXPECT_TRUE(lines.OnMessage(kPending));
  EXPECT_TRUE(lines.OnLook(kPending));
  EXPECT_FALSE(lines.OnMessage(kEmpty));
  EXPECT_TRUE(lines.OnMessage(kEmpty));
  // Two were seen; the message of the second finds a third.
  EXPECT_TRUE(lines.OnLook(kPending));
  EXPECT_TRUE(lines.OnLook(kPending));
  EXPECT_FALSE(lines.OnMessage(kEmpty));
  EXPECT_TRUE(lines.OnMessage(kPending));
  EXPECT_FALSE(lines.OnMessage(kEmpty));
}
