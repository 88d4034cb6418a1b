#include "Component/Win/Application/IdleCalls.h"

#include <algorithm>
#include <cstdint>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Win/Application/UnseenWindows.h"
#include "Component/Win/Platform/PrivateMessages.h"
#include "Interface/Morvane.h"

namespace NSMorvane {

namespace {

constexpr std::int64_t kMinimumIdleDelayMS = 1;
constexpr std::int64_t kMaximumIdleDelayMS = 0x7FFFFFFF;

// Milliseconds since the system started. The count wraps around after 49 days.
std::int64_t NowMS() { return static_cast<std::int64_t>(::GetTickCount64()); }

}  // namespace

void CIdleCalls::StartThread() {
  auto thread = std::make_unique<CIdleThread>(this);
  const CWriteLock lock(fThreadLock);
  fThread.swap(thread);
}

void CIdleCalls::EndThread() {
  std::unique_ptr<CIdleThread> ending;
  {
    const CWriteLock lock(fThreadLock);
    ending.swap(fThread);
  }
}

void CIdleCalls::RunIfDue(IMorvaneRunBehavior* behavior) {
  if (!fThread || !fIsDue) return;
  fIsDue = false;
  std::int64_t delay = kMinimumIdleDelayMS;
  TError code = kOK;
  if (behavior) code = behavior->IMorvaneRunBehavior_OnIdle(delay);
  delay = std::clamp(delay, kMinimumIdleDelayMS, kMaximumIdleDelayMS);
  MORVANE_CHECK(code);
  fThread->ScheduleNext(delay);
}

void CIdleCalls::WakeUp() {
  // The lock keeps the thread from ending during the call.
  const CReadLock lock(fThreadLock);
  if (fThread) fThread->Schedule(NowMS() - 1);
}

// Runs on the idle thread. The message only sets a flag, so the thread does not wait for its result.
void CIdleCalls::NotifyIdleDue() {
  const HWND hwnd = fTarget.GetHwnd();
  MORVANE_ASSERT_TEXT("0!=fMessageWindow", hwnd != nullptr);
  if (!hwnd) return;
  ::SendMessageCallbackW(hwnd, kMsgIdleDue, fSign, 0, nullptr, 0);
  // Each message sent that way may leave a reply in this thread's queue until the thread looks there.
  MSG msg;
  ::PeekMessageW(&msg, nullptr, WM_USER, WM_USER, PM_NOREMOVE);
}

// PeekMessageW also delivers the messages that other threads have sent.
void CIdleCalls::DrainIdleMessages() {
  MSG msg;
  while (::PeekMessageW(&msg, nullptr, kMsgIdleDue, kMsgIdleDue, PM_REMOVE)) {
    ::TranslateMessage(&msg);
    ::DispatchMessageW(&msg);
  }
}

}  // namespace NSMorvane
