// Quitting: windows are asked to close one at a time, and only when one has really gone the next is asked.
// With the last one gone the application may linger, without any window, in case it is wanted again.
//
//   state      quit mode   windows   linger timer
//   running    off         any       off
//   closing    on          yes       off
//   lingering  on          none      on
//   leaving    on          none      off
#pragma once

#include <windows.h>

#include <boost/weak_ptr.hpp>
#include <cstdint>

#include "Component/Portable/Application/Lingering.h"
#include "Component/Win/Platform/UtilsWinHandles.h"

namespace NSMorvane {

class CWinWindow;
class IWindowHost;

class CQuitting : CNotCopied, private ILingerTimer {
 public:
  explicit CQuitting(IWindowHost& host) : fHost(host), fLingering(*this) {}

  // Tells the client that the user or the system wants the application to quit. Without a behaviour it quits.
  void DispatchQuitEvent();

  // --- Quit mode

  void Start();
  void Stop();
  bool IsInQuitMode() const { return fIsInQuitMode; }
  // Whether a window that has been asked to close is still there.
  bool IsAskingWindow() const { return !fQuitWindow.expired(); }
  // After each message.
  void CloseNextWindowAfterMessage();
  // The application is wanted again: it neither lingers nor quits.
  void CallOff();

  // --- The main loop

  void SetLingerDuration(std::uint32_t durationMS) { fLingering.SetDuration(durationMS); }
  bool IsLingering() const { return fLingering.IsOn(); }
  void OnTimer(UINT_PTR timer) { fLingering.OnTimer(timer); }
  // Something has changed that may leave the application without anything to show.
  void ExpectQuitEvent() { fIsQuitEventDue = true; }
  // Whether the loop has to turn though there is no message and no window.
  bool IsTurnDue() const { return fIsInQuitMode ? !IsLingering() : fIsQuitEventDue; }
  // The end of a turn: the quit event, if there is no document window any more.
  void OnTurn();
  // Whether there is to be a first turn, and after each whether there is to be another one.
  bool MayBegin() const { return HasReasonToRun() && !fLingering.IsExpired(); }
  bool MayGoOn() { return fLingering.Decide(HasReasonToRun()) && !fLingering.IsExpired(); }

 private:
  bool HasReasonToRun() const;
  void Leave();
  void CloseNextWindow();
  std::uintptr_t StartTimer(std::uint32_t delayMS) override;
  void StopTimer(std::uintptr_t timer) override;

  IWindowHost& fHost;
  CLingering fLingering;
  boost::weak_ptr<CWinWindow> fQuitWindow;  // the one last asked to close
  bool fIsInQuitMode = false;
  bool fIsQuitEventDue = false;
};

}  // namespace NSMorvane
