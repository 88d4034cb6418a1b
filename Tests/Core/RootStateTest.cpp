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
  // What has become of it, the timer that runs, and what has been printed.
  const auto state = [&] {
    const char* const name = lingering.IsOn() ? "on" : lingering.IsExpired() ? "expired" : "off";
    return name + (timer.fRunning ? " timer" + std::to_string(timer.fRunning) : "") + "; " + TakeLines();
  };
  const auto decide = [&](bool hasReason) {
    const char* const answer = lingering.Decide(hasReason) ? "stay, " : "leave, ";
    return answer + state();
  };
  // Without a duration the application leaves at once.
  EXPECT_EQ(decide(true), "stay, off; ");
  EXPECT_EQ(decide(false), "leave, off; ");
  lingering.SetDuration(700);
  EXPECT_EQ(decide(false), "stay, on timer5; Entering lingering mode...");
  EXPECT_EQ(decide(false), "stay, on timer5; ");
  EXPECT_EQ(timer.fDelay, 700u);
  // There is something to run for again.
  EXPECT_EQ(decide(true), "stay, off; Cancelling lingering mode...");
  // Wanted again, which the next pass may take back.
  EXPECT_EQ(decide(false), "stay, on timer6; Entering lingering mode...");
  lingering.Abort();
  lingering.Abort();
  EXPECT_EQ(state(), "off; Lingering aborted...");
  EXPECT_EQ(decide(false), "stay, on timer7; Entering lingering mode...");
  // The timers of others mean nothing, and neither does its own when it comes late.
  for (const std::uintptr_t other : {0, 6, 8}) lingering.OnTimer(other);
  EXPECT_EQ(state(), "on timer7; ");
  lingering.OnTimer(7);
  lingering.OnTimer(7);
  EXPECT_EQ(state(), "expired; Lingering complete, exiting...");
  EXPECT_EQ(decide(false), "leave, expired; ");
  EXPECT_EQ(decide(true), "stay, off; ");
}

// --- Menu bars

TEST_F(RootStateTest, MenuBarsInTheirSetUpWait) {
  CMenuBarSchedule schedule;
  std::string log;
  const int windows[] = {1, 2};
  const auto setUp = [&](int i, const std::function<void()>& inside) {
    schedule.SetUp(&windows[i], [&] { log += "<" + std::to_string(i), inside(), log += ">"; });
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
  // What is due: files, each with a semicolon, or else a document to be opened anew.
  const auto takeDue = [&] {
    TString due;
    while (lines.IsAnyFile()) due += lines.TakeFile() + u";";
    if (lines.TakeReopenRequest()) due += u"reopen";
    return due;
  };
  lines.Add({{u"/a"}, {}});
  EXPECT_FALSE(lines.IsAnythingDue());
  // Files of a launch come behind those that wait, options take the place of those before.
  lines.Add({{u"/b"}, {u"1", u"2"}});
  lines.AddLaunch({{}, {u"3"}});
  EXPECT_TRUE(lines.IsAnythingDue());
  EXPECT_TRUE(lines.GetOptions().empty());
  EXPECT_EQ(takeDue(), u"1;2;3;");
  // A launch without files asks for a document, once; not while files wait.
  lines.AddLaunch({});
  EXPECT_TRUE(lines.IsAnythingDue());
  EXPECT_EQ(takeDue(), u"reopen");
  EXPECT_FALSE(lines.IsAnythingDue());
  lines.Add({{}, {u"4"}});
  lines.AddLaunch({});
  EXPECT_EQ(takeDue(), u"4;");
}

// The message of a launch can come before its command line is seen, after it, or never. Calls in their order,
// and whether a command line is to be read.
TEST_F(RootStateTest, LaunchesAreReadOnce) {
  enum TCall { kLook, kMessage };
  const bool kPending = true, kEmpty = false, kRead = true, kLeave = false;
  const Rows<const char*, TCall, bool, bool> rows = {
      {"nothing there", kLook, kEmpty, kLeave},
      {"seen by its message", kMessage, kPending, kRead},
      {"seen before its message", kLook, kPending, kRead},
      {"its message", kMessage, kEmpty, kLeave},
      {"a message that nobody has seen a record of", kMessage, kEmpty, kRead},
      {"the first of two", kLook, kPending, kRead},
      {"the second of two", kLook, kPending, kRead},
      {"the message of the first", kMessage, kEmpty, kLeave},
      {"that of the second finds a third", kMessage, kPending, kRead},
      {"that of the third", kMessage, kEmpty, kLeave}};
  CPendingCommandLines lines;
  for (const auto& [name, call, isPending, isRead] : rows)
    EXPECT_EQ(call == kLook ? lines.OnLook(isPending) : lines.OnMessage(isPending), isRead) << name;
}
