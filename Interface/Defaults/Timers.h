// Timers, on top of the idle call of CDefaultRunBehavior.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "Common.h"

namespace NSMorvane {

// The timers of the application. For CTimer and CDefaultRunBehavior; on the main thread only.
class CTimerList {
 public:
  struct TEntry {
    IMorvane& fMorvane;
    std::int64_t fDue;       // in milliseconds of the clock below
    std::int64_t fPeriodMS;  // 0: once
    std::function<TError()> fCallback;
    bool fIsCalling = false;
  };

  static CTimerList& TheList() {
    static CTimerList list;
    return list;
  }
  // A clock that never goes back, in milliseconds.
  static std::int64_t NowMS() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
  }

  // True if the new timer is due before all others. Timers whose callbacks are running do not count.
  bool Add(std::shared_ptr<TEntry> entry) {
    const auto isEarlier = [&](const auto& other) {
      return !other->fIsCalling && other->fDue <= entry->fDue;
    };
    const bool isFirst = std::none_of(fEntries.begin(), fEntries.end(), isEarlier);
    fEntries.push_back(std::move(entry));
    return isFirst;
  }
  void Remove(const std::shared_ptr<TEntry>& entry) { std::erase(fEntries, entry); }

  // Calls the callbacks of the timers that are due, the earliest first, and returns the first code that is
  // not kOK. A callback may start and end timers, including its own. It may run a blocking dialog, in which
  // the other timers continue.
  TError RunDue() {
    TError error = kOK;
    const std::int64_t now = NowMS();
    while (const std::shared_ptr<TEntry> entry = FirstDue(now)) {
      entry->fDue += entry->fPeriodMS;
      if (entry->fPeriodMS == 0)
        Remove(entry);
      else if (entry->fDue <= now)  // calls that were missed are left out
        entry->fDue = now + entry->fPeriodMS;
      entry->fIsCalling = true;
      const TError result = Guarded(entry->fCallback);
      entry->fIsCalling = false;
      if (result == kOK) continue;
      if (error == kOK) error = result;
      // An idle call that fails does not ask for the next one.
      entry->fMorvane.IMorvane_WakeUpIdle();
    }
    return error;
  }
  // How long to wait for the next timer, in milliseconds; never more than `delay`.
  std::int64_t DelayToNext(std::int64_t delay) const {
    const std::int64_t now = NowMS();
    for (const auto& entry : fEntries)
      if (!entry->fIsCalling) delay = std::min(delay, std::max<std::int64_t>(entry->fDue - now, 1));
    return delay;
  }

 private:
  std::shared_ptr<TEntry> FirstDue(std::int64_t now) const {
    std::shared_ptr<TEntry> first;
    for (const auto& entry : fEntries)
      if (entry->fDue <= now && !entry->fIsCalling && (!first || entry->fDue < first->fDue)) first = entry;
    return first;
  }

  std::vector<std::shared_ptr<TEntry>> fEntries;
};

// Calls back once or repeatedly, until it is stopped or destroyed. It is a member of the object that is
// called back, and ends with it:
//   CTimer fBlink;
//   ThrowIfFailed(fBlink.CallEvery(500, [this] { return Blink(); }));
// Callbacks come on the main thread, from IMorvaneRunBehavior_OnIdle of CDefaultRunBehavior. A behaviour that
// overrides OnIdle must call that one too, and must not make the resulting delay longer. Callbacks also come
// while the system shows a menu or the user moves a window. They are never early. They are about 25 ms late
// at most while the main thread is free, or up to a second if a behaviour's own OnIdle fails. A callback may
// delete its timer and its owner. The code that it returns, or the code that Guarded makes of what it throws,
// is passed to IMorvaneRunBehavior_OnUnhandledError, and the timer continues.
//
// Use timers on the main thread only. They must end before the root object does.
class CTimer {
 public:
  explicit CTimer(IMorvane& morvane) : fMorvane(morvane) {}
  ~CTimer() { Stop(); }
  CTimer(const CTimer&) = delete;
  CTimer& operator=(const CTimer&) = delete;

  // Calls back once, after `ms` milliseconds; at least 1. A timer that is running is started again.
  TError CallOnce(std::int64_t ms, std::function<TError()> callback) {
    return Start(ms, 0, std::move(callback));
  }
  // Calls back every `ms` milliseconds; at least 1. Calls that the application had no time for are left out.
  // While the callback is running, even in a blocking dialog that it opens, it is not called again.
  TError CallEvery(std::int64_t ms, std::function<TError()> callback) {
    return Start(ms, std::max<std::int64_t>(ms, 1), std::move(callback));
  }
  // After this, no call comes.
  void Stop() {
    if (fEntry) CTimerList::TheList().Remove(fEntry);
    fEntry.reset();
  }

 private:
  TError Start(std::int64_t ms, std::int64_t periodMS, std::function<TError()> callback) {
    return Guarded([&] {
      Stop();
      constexpr std::int64_t kLongestMS = 0x7FFFFFFF;
      const std::int64_t due = CTimerList::NowMS() + std::clamp<std::int64_t>(ms, 1, kLongestMS);
      auto entry = std::make_shared<CTimerList::TEntry>(
          CTimerList::TEntry{fMorvane, due, std::min(periodMS, kLongestMS), std::move(callback)});
      const bool isFirst = CTimerList::TheList().Add(entry);
      fEntry = std::move(entry);
      // The delay that was asked for before is too long now. The idle call that is running, or the one
      // requested here, asks for a shorter one.
      return isFirst ? fMorvane.IMorvane_WakeUpIdle() : TError{kOK};
    });
  }

  IMorvane& fMorvane;
  std::shared_ptr<CTimerList::TEntry> fEntry;
};

}  // namespace NSMorvane
