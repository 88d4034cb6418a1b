// The commands that the user gives to a window: those of its menu bar and its shortcuts, and those of the
// system menu.
#include <windows.h>

#include "Component/Win/Input/WinKeyboard.h"
#include "Component/Win/Menus/DebugMenu.h"
#include "Component/Win/Menus/WinMenu.h"
#include "Component/Win/Window/Blocking.h"
#include "Component/Win/Window/WindowHost.h"
#include "Component/Win/Window/WindowRegistry.h"
#include "Component/Win/Window/WinWindow.h"
#include "Component/Win/Window/WinWindowListWindow.h"

namespace NSMorvane {

namespace {

// Works whether the menu is shown or not. Other settings have all menu bars built anew.
void PerformDebugItem(IWindowHost& host, const TDebugMenuItem& item) {
  if (!item.fSetting) return OpenWindowList(host.GetWindowRegistry());
  TDebugSettings settings = host.GetDebugSettings();
  settings.*item.fSetting = settings.*item.fSetting ? 0 : 1;
  MORVANE_CHECK(host.GetMorvane().IMorvane_SetDebugSettings(settings));
}

}  // namespace

// --- The menu bar

void CWinWindow::OnCommand(UINT command) {
  if (const CMenuItem* const item = fMenuBar.FindClientItem(command)) {
    DispatchMenuCommand(item->fCommand);
    return;
  }
  if (command == kStayOnTopCommand) SetAlwaysOnTop(!fIsAlwaysOnTop);
  if (command == kQuitCommand) {
    fHost->DispatchQuitEvent();
    return;
  }
  if (command >= kFirstWindowListCommand && command <= kLastWindowListCommand) {
    const std::size_t windowIndex = command - kFirstWindowListCommand;
    const std::vector<boost::shared_ptr<CWinWindow>> windows = fWindows->GetWindows();
    MORVANE_ASSERT(windowIndex < windows.size());
    if (windowIndex < windows.size()) windows[windowIndex]->FocusNow();
    return;
  }
  if (const TDebugMenuItem* const item = FindDebugMenuItem(command)) PerformDebugItem(*fHost, *item);
}

void CWinWindow::DispatchMenuCommand(std::uint32_t command) {
  const TMenuCommandEvent event = {command, GetCurrentModifiers()};
  if (OnMenuCommand(event)) return;
  // Fetched from the host, since the run and its behaviour may have ended before the window.
  IMorvaneRunBehavior* const runBehavior = fHost->GetBehavior();
  if (!runBehavior) return;
  TFlag handled = 0;
  MORVANE_CHECK(runBehavior->IMorvaneRunBehavior_OnMenuCommand(event, handled));
}

// --- The system menu

void CWinWindow::GrayCloseCommand() {
  const HMENU menu = GetSystemMenu(fHwnd, FALSE);
  MENUITEMINFOW info = {};
  info.cbSize = sizeof(info);
  info.fMask = MIIM_STATE;
  if (!GetMenuItemInfoW(menu, SC_CLOSE, FALSE, &info)) return;
  info.fState = MFS_GRAYED;
  SetMenuItemInfoW(menu, SC_CLOSE, FALSE, &info);
}

LRESULT CWinWindow::OnSysCommand(const TWinMessage& message) {
  switch (message.fWParam & ~WPARAM{0xF}) {
    case SC_MINIMIZE:
      if (!CBlocking::MayMinimize(*this, fHost->GetHiderWindow())) return 0;
      break;
    case SC_MAXIMIZE:
      if (fPlacement.MaximizeWithinLimits()) return 0;
      break;
    case SC_RESTORE: {
      // The task bar sends this also to a window that a dialog blocks. The system does not restore a disabled
      // window, so the dialog is brought to the front here.
      const LRESULT result = ForwardMessage(message);
      if (fClientsWindowReference) fBlocking->OnActivationAttempt(fHwnd);
      return result;
    }
    default:
      break;
  }
  return ForwardMessage(message);
}

}  // namespace NSMorvane
