// The thread that watches the due times.
#include "Component/Win/Application/IdleThread.h"

#include <atomic>

#include "Tests/Support/NativeTestWindow.h"
#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;

namespace {

constexpr UINT kNews = WM_APP + 1;

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
    while (PeekMessageW(&message, nullptr, kNews, kNews, PM_REMOVE)) DispatchMessageW(&message);
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

using IdleThread = ReportingTest;

TEST_F(IdleThread, TellsOfTheStartOfEachDueTimeAndOnceASecond) {
  Owner owner;
  CIdleThread thread(&owner);
  ASSERT_TRUE(owner.AwaitNews(1));
  const DWORD due = GetTickCount() + 80;
  thread.Schedule(due);
  ASSERT_TRUE(owner.AwaitNews(2));
  EXPECT_GE(owner.fSentAt, due);

  // With nothing to wait for, the next one comes a second after the last; but the first such time is counted
  // from the start.
  DWORD longest = 0;
  for (const int count : {3, 4, 5}) {
    const DWORD last = owner.fSentAt;
    ASSERT_TRUE(owner.AwaitNews(count));
    longest = std::max(longest, owner.fSentAt - last);
  }
  EXPECT_GE(longest, 990u);
}

TEST_F(IdleThread, EndsWhileNewsAreUnderWay) {
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
  // At once after the start as well, whether or not the first report has been made. No handle stays open:
  // the system gives out small numbers again.
  const auto nextHandle = [] {
    const CKernelHandle event(CreateEventW(nullptr, FALSE, FALSE, nullptr));
    return reinterpret_cast<std::uintptr_t>(event.Get()) / 4;
  };
  const std::uintptr_t before = nextHandle();
  for (int i = 0; i < 20; ++i) CIdleThread thread(&owner);
  EXPECT_LT(nextHandle(), before + 20);
}
