#include "Component/Win/Window/WinWindowMenuBar.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "Component/Win/Input/WinKeyboard.h"
#include "Component/Win/Launch/MorvaneImplWinStartupStrings.h"
#include "Component/Win/Menus/WinMenu.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Window/WindowHost.h"
#include "Component/Win/Window/WinWindow.h"

namespace NSMorvane {

namespace {

constexpr std::size_t kMaxListedWindows = 256;

// --- Menus in a bar

bool HasControlAltShortcut(HACCEL table, WORD key) {
  std::vector<ACCEL> shortcuts(static_cast<std::size_t>(CopyAcceleratorTableW(table, nullptr, 0)));
  CopyAcceleratorTableW(table, shortcuts.data(), static_cast<int>(shortcuts.size()));
  return std::any_of(shortcuts.begin(), shortcuts.end(), [key](const ACCEL& shortcut) {
    return shortcut.key == key && (shortcut.fVirt & FCONTROL) && (shortcut.fVirt & FALT);
  });
}

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

// Menus of a bar are never greyed, so bars with the same titles look the same.
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

// Called after a failed system call. Keeps the error of that call and throws it.
void DestroyAndThrow(HMENU menu) {
  const DWORD error = GetLastError();
  DestroyMenu(menu);
  SetLastError(error);
  MORVANE_CHECK_LAST_ERROR();
}

}  // namespace

CWinWindowMenuBar::~CWinWindowMenuBar() {
  if (!fShortcuts) return;
  const BOOL datResult = DestroyAcceleratorTable(fShortcuts);
  MORVANE_ASSERT(datResult);
}

// --- Building

// The window menu also shows what the state does not contain, such as the titles of the other windows.
void CWinWindowMenuBar::Show(const CMenuBarState& state) {
  if (!fIsWhole || !(state == fState) || MakeWindowMenuItems(state) != fWindowMenuItems)
    Rebuild(state);
  else
    fState = state;  // it may share its menus with another window
}

std::vector<TWindowMenuItem> CWinWindowMenuBar::MakeWindowMenuItems(const CMenuBarState& state) const {
  std::vector<TWindowMenuItem> items;
  if (!state.ShowWindowMenu()) return items;
  const auto checked = [](bool flag) -> UINT { return flag ? MF_CHECKED : MF_UNCHECKED; };
  items.push_back({fWindow.fHost->GetStartupStrings().fAlwaysOnTopItem, kStayOnTopCommand,
                   checked(fWindow.fIsAlwaysOnTop)});
  UINT command = kFirstWindowListCommand;
  for (const boost::shared_ptr<CWinWindow>& window : fWindow.fWindows->GetWindows()) {
    if (window->IsListedInWindowMenu() && items.size() <= kMaxListedWindows &&
        command <= kLastWindowListCommand)
      items.push_back(
          {EscapeMnemonics(window->GetTitle()), command, checked(window->GetHwnd() == fWindow.fHwnd)});
    ++command;
  }
  return items;
}

void CWinWindowMenuBar::Rebuild(const CMenuBarState& state) {
  DebugPrint("CWinWindow::RebuildCompleteMenuBar");
  const std::uint32_t rebuild = ++fBuilds;
  CMenuBarState ownState = state;
  std::vector<TWindowMenuItem> windowMenuItems = MakeWindowMenuItems(ownState);
  std::vector<CMenuItem> items;
  CMenuBuilder bar(items, kFirstClientCommand);
  ComposeMenuBar(bar, ownState, windowMenuItems, fWindow.fHost->GetStartupStrings(),
                 fWindow.fHost->GetDebugSettings(), fWindow.fHost->GetMorvane());

  // The exchange may call clients and, through them, commands, which need the new list already. The state is
  // stored last, so that a bar that could not be exchanged is built again at the next request.
  const HACCEL table = MakeAcceleratorTable(items, kFirstClientCommand);
  fIsWhole = false;
  fItems.swap(items);
  SetShortcuts(table);
  SetNativeBar(bar.Detach());
  // A new bar may change the size of the client area, and a client that is told of that may rebuild the bar,
  // perhaps with an older state.
  if (rebuild != fBuilds) {
    fWindow.fHost->RequestMenuBars();
    return;
  }
  fIsWhole = true;
  fState = std::move(ownState);
  fWindowMenuItems.swap(windowMenuItems);
}

const CMenuItem* CWinWindowMenuBar::FindClientItem(UINT command) const {
  if (command < kFirstClientCommand || command > kLastClientCommand) return nullptr;
  const std::size_t position = command - kFirstClientCommand;
  return position < fItems.size() ? &fItems[position] : nullptr;
}

// --- Shortcuts

bool CWinWindowMenuBar::TranslateShortcut(const MSG& message) const {
  if (!fShortcuts) return false;
  // A character that is typed with AltGr is no shortcut with Control and Alt. The layout is asked only where
  // that matters, since the question takes the accent of a dead key that waits for its letter.
  const auto key = MakeKeyMessage(message.message, message.wParam, message.lParam);
  if (key && message.message == WM_KEYDOWN && HasControlAltShortcut(fShortcuts, key->fVirtualKey) &&
      IsTypedWithAltGr({key->fVirtualKey, key->fScanCode, 0}))
    return false;
  MSG copy = message;
  return TranslateAcceleratorW(fWindow.fHwnd, fShortcuts, &copy) != 0;
}

void CWinWindowMenuBar::SetShortcuts(HACCEL table) {
  const HACCEL old = std::exchange(fShortcuts, table);
  if (old && !DestroyAcceleratorTable(old)) MORVANE_CHECK_LAST_ERROR();
}

// --- Exchange

// Takes ownership of `bar`. The first bar becomes that of the window; later bars only replace its content,
// and the handle stays the same.
void CWinWindowMenuBar::SetNativeBar(HMENU bar) {
  CMenu newBar(bar, true);
  if (!fBar) {
    fBar = newBar.Detach();  // the call below may lead here again
    if (SetMenu(fWindow.fHwnd, fBar)) return;
    DestroyAndThrow(std::exchange(fBar, nullptr));
    return;
  }

  // Redrawing the bar costs more than everything else here, and most builds do not change its looks.
  const bool looksTheSame = HaveSameTitles(fBar, bar);
  if (!looksTheSame) {
    for (int count = GetMenuItemCount(fBar); count > 0; --count) {
      const BOOL okFlag = DeleteMenu(fBar, 0, MF_BYPOSITION);
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
  okFlag = DrawMenuBar(fWindow.fHwnd);
  MORVANE_ASSERT(okFlag);
}

// Moves the first menu of another bar to the end of the window's.
void CWinWindowMenuBar::MoveFirstMenu(HMENU bar) {
  const TString title = TitleOfMenu(bar, 0);
  MENUITEMINFOW info = ItemInfo(MIIM_STATE);
  BOOL okFlag = GetMenuItemInfoW(bar, 0, TRUE, &info);
  MORVANE_ASSERT(okFlag);
  const HMENU submenu = TakeFirstMenu(bar);
  if (!AppendMenuW(fBar, MF_POPUP, reinterpret_cast<UINT_PTR>(submenu), WinText(title)))
    DestroyAndThrow(submenu);
  okFlag = SetMenuItemInfoW(fBar, GetMenuItemCount(fBar) - 1, TRUE, &info);
  MORVANE_ASSERT(okFlag);
}

// Puts the first menu of another bar in the place of one of the window's.
void CWinWindowMenuBar::ReplaceMenu(int position, HMENU bar) {
  const HMENU old = GetSubMenu(fBar, position);
  MENUITEMINFOW info = ItemInfo(MIIM_SUBMENU);
  info.hSubMenu = TakeFirstMenu(bar);
  if (!SetMenuItemInfoW(fBar, position, TRUE, &info)) DestroyAndThrow(info.hSubMenu);
  // Some systems destroy the replaced menu by themselves.
  if (IsMenu(old)) DestroyMenu(old);
}

}  // namespace NSMorvane
