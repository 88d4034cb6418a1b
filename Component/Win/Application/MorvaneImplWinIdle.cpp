// Idle calls on the main thread, yielding, and the clock. The thread behind them is in IdleThread.h.
#include <algorithm>
#include <vector>

#include "Component/Win/Application/MorvaneImplWin.h"
#include "Component/Win/Application/MorvaneImplWinHiddenWindows.h"
#include "Component/Win/Platform/PrivateMessages.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Platform/UtilsWinHandles.h"

namespace NSMorvane {

namespace {

constexpr std::int64_t kMinimumIdleDelayMS = 1;
constexpr std::int64_t kMaximumIdleDelayMS = 0x7FFFFFFF;

// Milliseconds since the system started. The count begins anew after 49 days.
std::int64_t NowMS() { return ::GetTickCount(); }

}  // namespace

void CMorvaneImpl::RunIdleIfDue() {
  if (!fIdleThread || !fIdleDue) return;
  fIdleDue = false;
  std::int64_t delay = kMinimumIdleDelayMS;
  TError code = kOK;
  if (fBehavior) code = fBehavior->IMorvaneRunBehavior_OnIdle(delay);
  delay = std::clamp(delay, kMinimumIdleDelayMS, kMaximumIdleDelayMS);
  // After a failure nothing is scheduled: the idle thread's own heartbeat goes on.
  MORVANE_CHECK(code);
  fIdleThread->ScheduleNext(delay);
}

// On the idle thread. The message only raises a flag, and nobody waits for it.
void CMorvaneImpl::NotifyIdleDue() {
  const HWND hwnd = fMessageHwnd;
  MORVANE_ASSERT_TEXT("0!=fMessageWindow", hwnd != nullptr);
  if (!hwnd) return;
  ::SendMessageCallbackW(hwnd, kMsgIdleDue, reinterpret_cast<WPARAM>(this), 0, nullptr, 0);
  // The receipt of each such message may stay in the queue of its sender until that looks there.
  MSG msg;
  ::PeekMessageW(&msg, nullptr, WM_USER, WM_USER, PM_NOREMOVE);
}

// The look at the queue also lets in what other threads have sent.
void CMorvaneImpl::DrainIdleMessages() {
  MSG msg;
  while (::PeekMessageW(&msg, nullptr, kMsgIdleDue, kMsgIdleDue, PM_REMOVE)) {
    ::TranslateMessage(&msg);
    ::DispatchMessageW(&msg);
  }
}

// Any thread may come here, and must not find the idle thread ending under its hands.
void CMorvaneImpl::CMorvaneGlue_WakeUpIdle() {
  const CReadLock lock(fIdleThreadLock);
  if (fIdleThread) fIdleThread->Schedule(NowMS() - 1);
}

void CMorvaneImpl::StartIdleThread() {
  auto idleThread = std::make_unique<CIdleThread>(this);
  const CWriteLock lock(fIdleThreadLock);
  fIdleThread.swap(idleThread);
}

// It sends messages to the message window, which goes after it.
void CMorvaneImpl::EndIdleThread() {
  std::unique_ptr<CIdleThread> ending;
  {
    const CWriteLock lock(fIdleThreadLock);
    ending.swap(fIdleThread);
  }
}

// A paint comes when nothing else waits. Views that are never done do not keep this from ending, and each
// window has its turn.
void CMorvaneImpl::CMorvaneGlue_Yield() {
  std::vector<HWND> painted;
  for (MSG msg = {}; PumpOneMessage(msg);) {
    if (msg.message != WM_PAINT) continue;
    if (std::find(painted.begin(), painted.end(), msg.hwnd) != painted.end()) return PumpPaintMessages();
    painted.push_back(msg.hwnd);
  }
}

std::uint64_t CMorvaneImpl::CMorvaneGlue_GetCurrentMS() { return ::GetTickCount(); }

// This platform has no such clock.
std::uint64_t CMorvaneImpl::CMorvaneGlue_ConvertMSToPrecisionTicks(std::uint64_t) {
  MORVANE_UNREACHED();
  return 0;
}

}  // namespace NSMorvane
