#include "Component/Win/Application/MenuBars.h"

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Menus/MenuBarState.h"
#include "Component/Win/Window/WindowHost.h"
#include "Component/Win/Window/WindowRegistry.h"
#include "Component/Win/Window/WinWindow.h"

namespace NSMorvane {

void CMenuBars::Flush() {
  if (!fSchedule.TakeRequests()) return;
  if (!fHost.GetBehavior()) {
    DebugPrint("Ignoring request to rebuild menu bars since there is no behavior.");
    return;
  }
  DebugPrint("Rebuilding Menu Bar...");
  DebugIndentScope indent;
  CMenuBarState neighbour;
  for (const boost::shared_ptr<CWinWindow>& window : fHost.GetWindowRegistry()->GetVisibleDocumentWindows()) {
    // The set-up of an earlier window may have ended this one.
    if (window->IsVisible()) SetUp(*window, neighbour);
  }
}

void CMenuBars::SetUp(CWinWindow& window, CMenuBarState& neighbour) {
  fSchedule.SetUp(&window, [&] {
    // Copied, since clients may end the window or have the bar built anew meanwhile.
    const CMenuBarState last = window.GetMenuBar().GetState();
    CNextMenuBarState state(neighbour, last);
    MORVANE_CHECK(fHost.GetBehavior()->IMorvaneRunBehavior_OnSetupMenuBar(state));
    if (window.LockClientsWindowReference()) window.SetUpMenuBar(state);
    neighbour = state;
  });
}

void CMenuBars::Rebuild(bool makesMenuBars) const {
  for (const boost::shared_ptr<CWinWindow>& window : fHost.GetWindowRegistry()->GetVisibleDocumentWindows()) {
    if (!makesMenuBars && !window->GetMenuBar().IsThere()) continue;
    const CMenuBarState state = window->GetMenuBar().GetState();
    window->GetMenuBar().Rebuild(state);
  }
}

}  // namespace NSMorvane
