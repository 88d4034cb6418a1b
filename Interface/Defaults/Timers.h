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

  // True if no other timer, for which an idle call is under way, is due as early.
  bool Add(std::shared_ptr<TEntry> entry) {
    const auto isEarlier = [&](const auto& other) {
      return !other->fIsCalling && other->fDue <= entry->fDue;
    };
    const bool isFirst = std::none_of(fEntries.begin(), fEntries.end(), isEarlier);
    fEntries.push_back(std::move(entry));
    return isFirst;
  }
  void Remove(const std::shared_ptr<TEntry>& entry) { std::erase(fEntries, entry); }

  // Calls back what is due, the earliest first, and gives the first code that is not kOK. A callback may
  // start and end timers, its own too, and may run a blocking dialog, in which the other timers go on.
  TError RunDue() {
    TError error = kOK;
    const std::int64_t now = NowMS();
    while (const std::shared_ptr<TEntry> entry = FirstDue(now)) {
      entry->fDue += entry->fPeriodMS;
      if (entry->fPeriodMS == 0)
        Remove(entry);
      else if (entry->fDue <= now)  // what was missed is not made up for
        entry->fDue = now + entry->fPeriodMS;
      entry->fIsCalling = true;
      const TError result = Guarded(entry->fCallback);
      entry->fIsCalling = false;
      if (result == kOK) continue;
      if (error == kOK) error = result;
      // An idle call that fails has no next one.
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

// Calls back after a while, once or again and again, until it is stopped or deleted. It belongs to whoever is
// called back, and ends with it:
//   CTimer fBlink;
//   ThrowIfFailed(fBlink.CallEvery(500, [this] { return Blink(); }));
// Callbacks come on the main thread, from IMorvaneRunBehavior_OnIdle of CDefaultRunBehavior; a behaviour that
// overrides it calls that one too, and does not lengthen the delay that comes out. They come while the system
// shows a menu or the user moves a window too. They are never early, and some 25 ms late at most while the
// main thread is free; up to a second where a behaviour's own OnIdle fails. A callback may delete its timer
// and its owner. The code that it returns, or what it throws as in Guarded, is handed to
// IMorvaneRunBehavior_OnUnhandledError, and the timer goes on.
//
// All of it is for the main thread, and timers must end before the root object does.
class CTimer {
 public:
  explicit CTimer(IMorvane& morvane) : fMorvane(morvane) {}
  ~CTimer() { Stop(); }
  CTimer(const CTimer&) = delete;
  CTimer& operator=(const CTimer&) = delete;

  // Once, when `ms` milliseconds have passed; at least 1. A timer that runs already begins anew.
  TError CallOnce(std::int64_t ms, std::function<TError()> callback) {
    return Start(ms, 0, std::move(callback));
  }
  // Every `ms` milliseconds; at least 1. Calls that the application had no time for are left out. While the
  // callback runs, in a blocking dialog that it opens, it is not called again.
  TError CallEvery(std::int64_t ms, std::function<TError()> callback) {
    return Start(ms, std::max<std::int64_t>(ms, 1), std::move(callback));
  }
  // No call comes any more.
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
      // The idle call under way, or that comes now, asks for the next one in time.
      return isFirst ? fMorvane.IMorvane_WakeUpIdle() : TError{kOK};
    });
  }

  IMorvane& fMorvane;
  std::shared_ptr<CTimerList::TEntry> fEntry;
};

}  // namespace NSMorvane
