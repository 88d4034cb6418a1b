#include "Component/Win/Application/Quitting.h"

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Win/Window/WindowHost.h"
#include "Component/Win/Window/WindowRegistry.h"
#include "Component/Win/Window/WinWindow.h"

namespace NSMorvane {

void CQuitting::DispatchQuitEvent() {
  if (IMorvaneRunBehavior* const behavior = fHost.GetBehavior()) {
    MORVANE_CHECK(behavior->IMorvaneRunBehavior_OnQuitEvent());
  } else {
    DebugPrint("Auto-handlig quit event since there is no behavior.");  // sic
    Start();
  }
}

// --- Quit mode

void CQuitting::Start() {
  MORVANE_ASSERT(!fIsInQuitMode);
  MORVANE_ASSERT(fQuitWindow.expired());
  DebugPrint("]Morvane] Entering quit mode...");  // sic
  fIsInQuitMode = true;
  try {
    CloseNextWindow();
  } catch (...) {
    Leave();
    MORVANE_RETHROW();
  }
}

void CQuitting::Stop() {
  MORVANE_ASSERT(fIsInQuitMode);
  Leave();
  DebugPrint("]Morvane] Exited quit mode...");  // sic
}

void CQuitting::Leave() {
  fQuitWindow.reset();
  fIsInQuitMode = false;
  fIsQuitEventDue = true;
}

void CQuitting::CallOff() {
  fLingering.Abort();
  Leave();
}

// --- Closing windows

void CQuitting::CloseNextWindow() {
  MORVANE_ASSERT(fQuitWindow.expired());
  // Floating windows that are hidden while another application is active have to close as well.
  fHost.GetWindowRegistry()->ShowFloatingWindows(true);
  CWindowRegistry::TWindows windows = fHost.GetWindowRegistry()->GetVisibleWindowsZ();
  for (const boost::shared_ptr<CWinWindow>& winWindow : windows) MORVANE_ASSERT(winWindow->CheckInvariant());
  if (windows.empty()) return;
  // Not held any longer, so that the other windows can end while this one is asked.
  const boost::shared_ptr<CWinWindow> front = windows.front();
  windows.clear();
  fQuitWindow = front;
  front->RequestCloseFromLibrary();
}

void CQuitting::CloseNextWindowAfterMessage() {
  if (!fIsInQuitMode || !fQuitWindow.expired() || fHost.GetWindowRegistry()->GetVisibleWindowsZ().empty())
    return;
  try {
    CloseNextWindow();
  } catch (...) {
    DebugPrint("Failed to close next window, stopping quit mode!");
    Leave();
    MORVANE_RETHROW();
  }
}

// --- The main loop

bool CQuitting::HasReasonToRun() const { return !fIsInQuitMode || fHost.GetWindowRegistry()->IsAnyWindow(); }

void CQuitting::OnTurn() {
  // If quitting was stopped while the application lingers, MayGoOn ends the lingering first.
  if (!fIsInQuitMode && IsLingering()) return;
  fIsQuitEventDue = false;
  const CWindowRegistry& windows = *fHost.GetWindowRegistry();
  // An alert may be all that there is, and quitting would answer it.
  if (!fIsInQuitMode && !windows.IsAnyDocumentWindowLeft() && !windows.IsAnyOfKind(kWindowKindAlertBox))
    DispatchQuitEvent();
}

std::uintptr_t CQuitting::StartTimer(std::uint32_t delayMS) {
  return ::SetTimer(nullptr, 0, delayMS, nullptr);
}

void CQuitting::StopTimer(std::uintptr_t timer) { ::KillTimer(nullptr, timer); }

}  // namespace NSMorvane
