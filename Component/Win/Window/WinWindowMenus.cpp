// The menu bar of a window: what it is composed of, its exchange on the native window, and its commands.
#include <utility>

#include "Component/Portable/Views/ViewImpl.h"
#include "Component/Win/Input/WinKeyboard.h"
#include "Component/Win/Launch/MorvaneImplWinStartupStrings.h"
#include "Component/Win/Menus/WinMenu.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Window/WindowHost.h"
#include "Component/Win/Window/WindowRegistry.h"
#include "Component/Win/Window/WinWindow.h"

namespace NSMorvane {

namespace {

constexpr std::size_t kMaxListedWindows = 256;

// An item of the library's own in the place of a client's.
CMenuItem MakeMenuItem(const TString& text, bool enabled, std::uint32_t command) {
  TMenuItem item = {};
  NSTextPackage::CopyChars(item.fText, text.c_str(), kMenuTextChars);
  if (enabled) item.fStateFlags = kMenuItemEnabled;
  item.fCommand = command;
  return CMenuItem(item);
}

// A text in which `_` is nothing but an underscore.
TString EscapeText(const TString& text) {
  TMenuItem item = {};
  NSTextPackage::CopyChars(item.fText, text.c_str(), kMenuTextChars);
  return CMenuItem::WithEscapedText(item).fText;
}

// --- Menus in a bar

MENUITEMINFOW ItemInfo(UINT mask) {
  MENUITEMINFOW info = {};
  info.cbSize = sizeof(info);
  info.fMask = mask;
  return info;
}

TString TitleOfMenu(HMENU bar, int position) {
  TString title;
  const int stringLength = GetMenuStringW(bar, position, nullptr, 0, MF_BYPOSITION);
  MORVANE_ASSERT(stringLength>=0);
  if (stringLength > 0) {
    title.resize(stringLength);
    const int getStringResult =
        GetMenuStringW(bar, position, WinBuffer(title.data()), stringLength + 1, MF_BYPOSITION);
    MORVANE_ASSERT(getStringResult>0);
  }
  return title;
}

// Menus of a bar are never grey, so that their titles are all that shows.
bool HaveSameTitles(HMENU bar, HMENU other) {
  const int count = GetMenuItemCount(bar);
  if (count != GetMenuItemCount(other)) return false;
  for (int i = 0; i < count; ++i)
    if (TitleOfMenu(bar, i) != TitleOfMenu(other, i)) return false;
  return true;
}

// The caller owns the menu from here on.
HMENU TakeFirstMenu(HMENU bar) {
  const HMENU submenu = GetSubMenu(bar, 0);
  const BOOL okFlag = RemoveMenu(bar, 0, MF_BYPOSITION);
  MORVANE_ASSERT(okFlag);
  return submenu;
}

// After a failed call of the system.
void DestroyAndThrow(HMENU menu) {
  const DWORD error = GetLastError();
  DestroyMenu(menu);
  SetLastError(error);
  MORVANE_THROW_LAST_ERROR();
}

}  // namespace

// --- Set-up

std::vector<boost::shared_ptr<CViewImpl>> CWinWindow::ViewChain(CViewImpl* view) {
  std::vector<TViewImplPtr> chain;
  while (view && view->IsLive()) {
    chain.push_back(view->GetClientsViewReference());
    view = view->GetSuperView().get();
  }
  return chain;
}

void CWinWindow::RunMenuBarSetup(CMenuBarState& state) {
  RequestMenuBarSetup(state);
  if (!fClientsWindowReference) return;  // released by that
  // The focus view comes last and so has the last word.
  const std::vector<TViewImplPtr> focusChain = ViewChain(fFocus.GetView());
  for (auto view = focusChain.rbegin(); view != focusChain.rend(); ++view) {
    // An earlier one may have released it.
    IViewBehavior* const behavior = (*view)->IsLive() ? (*view)->GetBehavior() : nullptr;
    if (behavior) MORVANE_CHECK(behavior->IViewBehavior_OnSetupMenuBar(state));
  }
  ApplyMenuBarState(state);
}

// The window menu tells of more than the state does: of the titles of all windows, for one.
void CWinWindow::ApplyMenuBarState(const CMenuBarState& state) {
  if (!fMenuBarIsWhole || !(state == fMenuBarState) || MakeWindowMenuItems(state) != fWindowMenuItems)
    RebuildCompleteMenuBar(state);
}

// --- Composition

std::vector<TWindowMenuItem> CWinWindow::MakeWindowMenuItems(const CMenuBarState& state) const {
  std::vector<TWindowMenuItem> items;
  if (!state.ShowWindowMenu()) return items;
  const auto checked = [](bool flag) -> UINT { return flag ? MF_CHECKED : MF_UNCHECKED; };
  items.push_back({fHost->GetStartupStrings().fAlwaysOnTopItem, kStayOnTopCommand, checked(fAlwaysOnTop)});
  UINT command = kFirstWindowListCommand;
  for (const boost::shared_ptr<CWinWindow>& window : fWindows->GetWindows()) {
    if (window->fListedInWindowMenu && items.size() <= kMaxListedWindows && command <= kLastWindowListCommand)
      items.push_back({EscapeText(window->GetTitle()), command, checked(window.get() == this)});
    ++command;
  }
  return items;
}

void CWinWindow::ComposeMenuBar(CMenuBuilder& bar, const CMenuBarState& state,
                                const std::vector<TWindowMenuItem>& windowMenuItems) {
  const TStartupStrings& strings = fHost->GetStartupStrings();

  CMenuBuilder& firstMenu = bar.AddSubmenu(strings.fFirstMenuTitle);
  firstMenu.AddMenuItems(fHost->GetMorvane(), state.GetList(kMenuApplication));
  firstMenu.MarkSeparator();
  firstMenu.AddNativeItem(strings.fQuitItem, kQuitCommand, state.QuitEnabled() ? MF_ENABLED : MF_GRAYED);

  CMenuBuilder& secondMenu = bar.AddSubmenu(strings.fSecondMenuTitle);
  secondMenu.AddMenuItems(fHost->GetMorvane(), state.GetList(kMenuDocument));
  secondMenu.MarkSeparator();
  secondMenu.AddMenuItem(fHost->GetMorvane(), MakeMenuItem(strings.fCloseItem, state.SecondMenuItemEnabled(),
                                                           kSecondMenuItemCommand));

  for (const TMenu menu : {kMenu1, kMenu2, kMenu3, kMenu4, kMenu5, kMenu6}) {
    const std::vector<CMenuItem>& items = state.GetList(menu);
    if (!items.empty()) bar.AddSubmenu(state.GetTitle(menu)).AddMenuItems(fHost->GetMorvane(), items);
  }

  if (state.ShowWindowMenu()) {
    CMenuBuilder& windowMenu = bar.AddSubmenu(strings.fWindowMenuTitle);
    for (const TWindowMenuItem& item : windowMenuItems) {
      windowMenu.AddNativeItem(item.fText, item.fCommand, item.fNativeFlags);
      if (item.fCommand != kStayOnTopCommand) continue;
      windowMenu.MarkSeparator();
      windowMenu.AddMenuItems(fHost->GetMorvane(), state.GetList(kMenuWindow));
      windowMenu.MarkSeparator();
    }
  }

  if (state.ShowHelpItem() || !state.GetList(kMenuHelp).empty()) {
    CMenuBuilder& lastMenu = bar.AddSubmenu(strings.fLastMenuTitle);
    lastMenu.AddMenuItems(fHost->GetMorvane(), state.GetList(kMenuHelp));
    if (state.ShowHelpItem()) {
      lastMenu.MarkSeparator();
      lastMenu.AddMenuItem(fHost->GetMorvane(),
                           MakeMenuItem(strings.fDisplayName, state.HelpItemEnabled(), kHelpItemCommand));
    }
  }
  // The debug menu is not built yet: its place is here, behind all others.
}

void CWinWindow::RebuildCompleteMenuBar(const CMenuBarState& state) {
  DebugPrint("CWinWindow::RebuildCompleteMenuBar");
  const std::uint32_t rebuild = ++fMenuBarRebuilds;
  CMenuBarState ownState = state;
  std::vector<TWindowMenuItem> windowMenuItems = MakeWindowMenuItems(ownState);
  std::vector<CMenuItem> items;
  CMenuBuilder bar(items, kFirstClientCommand);
  ComposeMenuBar(bar, ownState, windowMenuItems);

  // The exchange can lead to clients and, through them, to commands: these go by the new list already. The
  // state comes last, so that a bar that could not be exchanged is built again at the next request.
  const HACCEL table = MakeAcceleratorTable(items, kFirstClientCommand);
  fMenuBarIsWhole = false;
  fMenuItems.swap(items);
  SetAcceleratorTable(table);
  SetNativeMenuBar(bar.Detach());
  // A new bar can change the size of the client area, and whoever is told of that can have the bar rebuilt;
  // with an older state, perhaps.
  if (rebuild != fMenuBarRebuilds) {
    fHost->RequestMenuBars();
    return;
  }
  fMenuBarIsWhole = true;
  fMenuBarState = std::move(ownState);
  fWindowMenuItems.swap(windowMenuItems);
}

void CWinWindow::SetAcceleratorTable(HACCEL table) {
  const HACCEL old = std::exchange(fAcceleratorTable, table);
  if (old && !DestroyAcceleratorTable(old)) MORVANE_THROW_LAST_ERROR();
}

// --- Exchange

// Takes over `bar`. The first one becomes the window's; from then on that stays the same object, and only its
// content changes.
void CWinWindow::SetNativeMenuBar(HMENU bar) {
  CMenu newBar(bar, true);
  if (!fMenuHandle) {
    fMenuHandle = newBar.Detach();  // the call below can lead here again
    if (SetMenu(fHwnd, fMenuHandle)) return;
    DestroyAndThrow(std::exchange(fMenuHandle, nullptr));
    return;
  }

  // Drawing the bar anew takes more than all the rest, and most builds leave it as it looks.
  const bool looksTheSame = HaveSameTitles(fMenuHandle, bar);
  if (!looksTheSame) {
    for (int count = GetMenuItemCount(fMenuHandle); count > 0; --count) {
      const BOOL okFlag = DeleteMenu(fMenuHandle, 0, MF_BYPOSITION);
      MORVANE_ASSERT(okFlag);
    }
  }
  const int itemCount = GetMenuItemCount(bar);
  for (int position = 0; position < itemCount; ++position) {
    if (looksTheSame)
      ReplaceMenu(position, bar);
    else
      MoveFirstMenu(bar);
  }
  BOOL okFlag = DestroyMenu(newBar.Detach());
  MORVANE_ASSERT(okFlag);
  if (looksTheSame) return;
  okFlag = DrawMenuBar(fHwnd);
  MORVANE_ASSERT(okFlag);
}

// Moves the first menu of another bar to the end of the window's.
void CWinWindow::MoveFirstMenu(HMENU bar) {
  const TString title = TitleOfMenu(bar, 0);
  MENUITEMINFOW info = ItemInfo(MIIM_STATE);
  BOOL okFlag = GetMenuItemInfoW(bar, 0, TRUE, &info);
  MORVANE_ASSERT(okFlag);
  const HMENU submenu = TakeFirstMenu(bar);
  if (!AppendMenuW(fMenuHandle, MF_POPUP, reinterpret_cast<UINT_PTR>(submenu), WinText(title)))
    DestroyAndThrow(submenu);
  okFlag = SetMenuItemInfoW(fMenuHandle, GetMenuItemCount(fMenuHandle) - 1, TRUE, &info);
  MORVANE_ASSERT(okFlag);
}

// Puts the first menu of another bar in the place of one of the window's.
void CWinWindow::ReplaceMenu(int position, HMENU bar) {
  const HMENU old = GetSubMenu(fMenuHandle, position);
  MENUITEMINFOW info = ItemInfo(MIIM_SUBMENU);
  info.hSubMenu = TakeFirstMenu(bar);
  if (!SetMenuItemInfoW(fMenuHandle, position, TRUE, &info)) DestroyAndThrow(info.hSubMenu);
  // Some systems have destroyed it by now.
  if (IsMenu(old)) DestroyMenu(old);
}

// --- Commands

void CWinWindow::OnCommand(UINT commandId) {
  if (commandId >= kFirstClientCommand && commandId <= kLastClientCommand) {
    const std::size_t position = commandId - kFirstClientCommand;
    if (position < fMenuItems.size()) DispatchMenuCommand(fMenuItems[position].fCommand);
    return;
  }
  if (commandId == kStayOnTopCommand) SetAlwaysOnTop(!fAlwaysOnTop);
  if (commandId == kQuitCommand) {
    fHost->DispatchQuitEvent();
    return;
  }
  if (commandId >= kFirstWindowListCommand && commandId <= kLastWindowListCommand) {
    const std::size_t windowIndex = commandId - kFirstWindowListCommand;
    const std::vector<boost::shared_ptr<CWinWindow>> windows = fWindows->GetWindows();
    MORVANE_ASSERT(windowIndex < windows.size());
    if (windowIndex < windows.size()) windows[windowIndex]->FocusNow();
    return;
  }
  // The debug menu is not built yet: its commands have no effect.
}

void CWinWindow::DispatchMenuCommand(std::uint32_t command) {
  const TMenuCommandEvent event = {command, GetCurrentModifiers()};
  if (OnMenuCommand(event)) return;
  // Asked for anew: the run, and its behaviour, can have ended before the window.
  IMorvaneRunBehavior* const runBehavior = fHost->GetBehavior();
  if (!runBehavior) return;
  TFlag handled = 0;
  MORVANE_CHECK(runBehavior->IMorvaneRunBehavior_OnMenuCommand(event, handled));
}

}  // namespace NSMorvane
