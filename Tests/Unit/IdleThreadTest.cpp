// The list of due times, and the thread that watches it.
#include "Component/Win/IdleThread.h"

#include <gtest/gtest.h>

#include <atomic>
#include <random>
#include <set>
#include <vector>

#include "Tests/Support/NativeTestWindow.h"
#include "Tests/Support/RecordingDebugOutput.h"

using namespace NSMorvane;
using NSMorvaneTest::NativeTestWindow;
using NSMorvaneTest::PumpUntil;
using NSMorvaneTest::RecordingDebugOutput;

namespace {

constexpr UINT kNews = WM_APP + 1;
constexpr std::int64_t kFarAway = 1000000;

// Takes the news as the root object does: in a message-only window of the main thread.
class Owner : public IIdleThreadOwner {
 public:
  void NotifyIdleDue() override {
    fSentAt = GetTickCount();
    ++fSent;
    SendMessageCallbackW(fWindow, kNews, reinterpret_cast<WPARAM>(this), 0, nullptr, 0);
    while (fHold) SwitchToThread();
  }
  void DrainIdleMessages() override {
    ++fDrained;
    fHold = false;
    MSG message;
    while (PeekMessageW(&message, nullptr, kNews, kNews, PM_REMOVE)) {
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
  }
  bool AwaitNews(int count) {
    return PumpUntil([&] { return fReceived >= count; });
  }

  std::atomic<DWORD> fSentAt = 0;
  std::atomic<int> fSent = 0;
  std::atomic<bool> fHold = false;  // the idle thread stays in its next report until it is drained
  int fReceived = 0;
  int fDrained = 0;

 private:
  static LRESULT CALLBACK Procedure(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message != kNews) return DefWindowProcW(hwnd, message, wParam, lParam);
    ++reinterpret_cast<Owner*>(wParam)->fReceived;
    return 0;
  }
  NativeTestWindow fWindow{0, HWND_MESSAGE, L"", 0, Procedure};
};

}  // namespace

TEST(IdleSchedule, AgreesWithASet) {
  std::mt19937 random(4711);
  CIdleSchedule schedule;
  std::set<std::int64_t> expected;
  for (int i = 0; i < 5000; ++i) {
    const std::int64_t time = random() % 50;
    switch (random() % 4) {
      case 0:
        EXPECT_EQ(expected.empty() || *expected.begin() <= time - 40, schedule.RemoveDueTimes(time - 40));
        expected.erase(expected.begin(), expected.upper_bound(time - 40));
        break;
      case 1:
        if (expected.empty()) expected.insert(time + 1000);
        EXPECT_EQ(*expected.begin(), schedule.NextDueTime(time));
        break;
      default:
        schedule.Schedule(time);
        expected.insert(time);
    }
    ASSERT_TRUE(
        std::equal(expected.begin(), expected.end(), schedule.Times().begin(), schedule.Times().end()));
  }
}

TEST(IdleThread, TellsOfTheStartAndOfEachDueTime) {
  RecordingDebugOutput output;
  Owner owner;
  const DWORD started = GetTickCount();
  {
    CIdleThread thread(&owner);
    ASSERT_TRUE(owner.AwaitNews(1));

    const DWORD due = GetTickCount() + 80;
    thread.Schedule(due);
    ASSERT_TRUE(owner.AwaitNews(2));
    EXPECT_GE(owner.fSentAt, due);

    // Times that are due together give one piece of news.
    owner.fHold = true;
    thread.Schedule(0);
    ASSERT_TRUE(owner.AwaitNews(3));
    for (const int time : {1, 2, 3}) thread.Schedule(time);
    thread.Schedule(GetTickCount() + kFarAway);
    owner.fHold = false;
    ASSERT_TRUE(owner.AwaitNews(4));
  }
  const bool heartbeatMayHaveCome = GetTickCount() - started >= 900;
  EXPECT_TRUE(heartbeatMayHaveCome || owner.fSent == 4) << owner.fSent;
  EXPECT_TRUE(output.fAssertions.empty());
}

TEST(IdleThread, EndsWhileNewsAreUnderWay) {
  Owner owner;
  {
    CIdleThread thread(&owner);
    ASSERT_TRUE(owner.AwaitNews(1));
    owner.fHold = true;
    thread.Schedule(0);
    // The thread is inside its report, and stays there until the end asks for the messages.
    ASSERT_TRUE(PumpUntil([&] { return owner.fSent >= 2; }));
  }
  EXPECT_GE(owner.fDrained, 1);
  EXPECT_GE(owner.fReceived, 2);
  // At once after the start as well, whether or not the first report has been made.
  for (int i = 0; i < 20; ++i) CIdleThread thread(&owner);
}

TEST(IdleThread, EndHarmsNoDrawingObject) {
  // More of them than there are kernel handles: some system tells one from the other by the upper half alone.
  std::vector<HBRUSH> brushes;
  for (int i = 0; i < 3000; ++i) brushes.push_back(CreateSolidBrush(static_cast<COLORREF>(i)));
  Owner owner;
  { CIdleThread thread(&owner); }
  int gone = 0;
  for (HBRUSH brush : brushes) {
    if (GetObjectType(brush) != OBJ_BRUSH) ++gone;
    DeleteObject(brush);
  }
  EXPECT_EQ(0, gone);
}
