// Quitting asks the windows to close one at a time: the next is asked when the one before has ended. After
// the last one the application may linger without a window, in case it is launched again.
//
// state      quit mode   windows   linger timer
// running    off         any       off
// closing    on          yes       off
// lingering  on          none      on
// leaving    on          none      off
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
  // Called after each message.
  void CloseNextWindowAfterMessage();
  // The application has been launched again: ends quit mode and lingering.
  void CallOff();

  // --- The main loop

  void SetLingerDuration(std::uint32_t durationMS) { fLingering.SetDuration(durationMS); }
  bool IsLingering() const { return fLingering.IsOn(); }
  void OnTimer(UINT_PTR timer) { fLingering.OnTimer(timer); }
  // Something has happened that may leave the application without a document window.
  void ExpectQuitEvent() { fIsQuitEventDue = true; }
  // Whether the loop has to turn without a message, when there is no window.
  bool IsTurnDue() const { return fIsInQuitMode ? !IsLingering() : fIsQuitEventDue; }
  // Called at the end of a turn: sends the quit event if no document window is left.
  void OnTurn();
  // Whether the loop takes its first turn, and, asked after each turn, whether it takes another one.
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
  boost::weak_ptr<CWinWindow> fQuitWindow;  // the window last asked to close
  bool fIsInQuitMode = false;
  bool fIsQuitEventDue = false;
};

}  // namespace NSMorvane
