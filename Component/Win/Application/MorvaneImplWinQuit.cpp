// Quitting: windows are asked to close one at a time, and only when one has really gone the next is asked.
// With the last one gone the application may linger, without any window, in case it is wanted again.
//
//   state      quit mode   windows   linger timer
//   running    off         any       0
//   closing    on          yes       0
//   lingering  on          none      not 0
//   leaving    on          none      0
#include "Component/Win/Application/MorvaneImplWin.h"
#include "Component/Win/Window/WindowRegistry.h"
#include "Component/Win/Window/WinWindow.h"

namespace NSMorvane {

void CMorvaneImpl::DispatchQuitEvent() {
  if (fBehavior) {
    MORVANE_CHECK(fBehavior->IMorvaneRunBehavior_OnQuitEvent());
  } else {
    DebugPrint("Auto-handlig quit event since there is no behavior.");  // sic
    CMorvaneGlue_StartQuitting();
  }
}

// --- Quit mode

void CMorvaneImpl::CMorvaneGlue_StartQuitting() {
  MORVANE_ASSERT(!fIsInQuitMode);
  MORVANE_ASSERT(fQuitWindow.expired());
  DebugPrint("]Morvane] Entering quit mode...");  // sic
  fIsInQuitMode = true;
  try {
    CloseNextWindow();
  } catch (...) {
    LeaveQuitMode();
    MORVANE_RETHROW();
  }
}

void CMorvaneImpl::CMorvaneGlue_StopQuitting() {
  MORVANE_ASSERT(fIsInQuitMode);
  LeaveQuitMode();
  DebugPrint("]Morvane] Exited quit mode...");  // sic
}

bool CMorvaneImpl::CMorvaneGlue_IsQuitting() { return fIsInQuitMode; }

void CMorvaneImpl::LeaveQuitMode() {
  fQuitWindow.reset();
  fIsInQuitMode = false;
  fIsQuitEventDue = true;
}

// --- Closing windows

void CMorvaneImpl::CloseNextWindow() {
  MORVANE_ASSERT(fQuitWindow.expired());
  // Those that are hidden because another application is active are to be closed as well.
  ShowFloatingWindows(true);
  std::vector<boost::shared_ptr<CWinWindow>> windows = fWindows->GetVisibleWindowsZ();
  for (const boost::shared_ptr<CWinWindow>& winWindow : windows) MORVANE_ASSERT(winWindow->CheckInvariant());
  if (windows.empty()) return;
  // The others may end while this one is asked.
  const boost::shared_ptr<CWinWindow> front = windows.front();
  windows.clear();
  fQuitWindow = front;
  front->RequestCloseFromLibrary();
}

void CMorvaneImpl::CloseNextWindowAfterMessage() {
  if (!fIsInQuitMode || !fQuitWindow.expired() || fWindows->GetVisibleWindowsZ().empty()) return;
  try {
    CloseNextWindow();
  } catch (...) {
    DebugPrint("Failed to close next window, stopping quit mode!");
    LeaveQuitMode();
    MORVANE_RETHROW();
  }
}

bool CMorvaneImpl::OnQueryEndSession() {
  if (fIsInQuitMode) return true;
  DispatchQuitEvent();
  // What fails on the way is delivered, as in the main loop, and is no answer.
  while (fIsInQuitMode && fWindows->IsAnyWindow()) DeliverError(ErrorOf([this] { RunOneTurn(); }));
  return fIsInQuitMode && !fWindows->IsAnyWindow();
}

// --- Lingering

bool CMorvaneImpl::KeepRunning() const { return !fIsInQuitMode || fWindows->IsAnyWindow(); }

// The end of a pass of the main loop: whether there is to be another one.
bool CMorvaneImpl::DecideOnLingering(bool keepRunning) {
  if (keepRunning) {
    if (fLingerTimer != 0) {
      DebugPrint("Cancelling lingering mode...");
      StopLingerTimer();
    }
    fLingerExpired = false;
    return true;
  }
  if (fLingerExpired || fLingerMS == 0) return false;
  if (fLingerTimer == 0) {
    DebugPrint("Entering lingering mode...");
    fLingerTimer = ::SetTimer(nullptr, 0, fLingerMS, nullptr);
    fLingerExpired = false;
  }
  return true;
}

void CMorvaneImpl::StopLingerTimer() {
  ::KillTimer(nullptr, fLingerTimer);
  fLingerTimer = 0;
}

}  // namespace NSMorvane
