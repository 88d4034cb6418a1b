#include "Component/Win/Menus/MenuBarComposition.h"

#include "Component/Win/Launch/MorvaneImplWinStartupStrings.h"
#include "Component/Win/Menus/DebugMenu.h"
#include "Component/Win/Menus/WinMenu.h"

namespace NSMorvane {

namespace {

// An item of the library in the form of a client's item.
CMenuItem MakeMenuItem(const TString& text, bool enabled, std::uint32_t command) {
  TMenuItem item = {};
  NSTextPackage::CopyChars(item.fText, text.c_str(), kMenuTextChars);
  if (enabled) item.fStateFlags = kMenuItemEnabled;
  item.fCommand = command;
  return CMenuItem(item);
}

}  // namespace

void ComposeMenuBar(CMenuBuilder& bar, const CMenuBarState& state,
                    const std::vector<TWindowMenuItem>& windowMenuItems, const TStartupStrings& strings,
                    const TDebugSettings& debugSettings, IMorvane& morvane) {
  CMenuBuilder& firstMenu = bar.AddSubmenu(strings.fFirstMenuTitle);
  firstMenu.AddMenuItems(morvane, state.GetList(kMenuApplication));
  firstMenu.MarkSeparator();
  firstMenu.AddNativeItem(strings.fQuitItem, kQuitCommand, state.QuitEnabled() ? MF_ENABLED : MF_GRAYED);

  CMenuBuilder& secondMenu = bar.AddSubmenu(strings.fSecondMenuTitle);
  secondMenu.AddMenuItems(morvane, state.GetList(kMenuDocument));
  secondMenu.MarkSeparator();
  secondMenu.AddMenuItem(
      morvane, MakeMenuItem(strings.fCloseItem, state.SecondMenuItemEnabled(), kSecondMenuItemCommand));

  for (const TMenu menu : {kMenu1, kMenu2, kMenu3, kMenu4, kMenu5, kMenu6}) {
    const std::vector<CMenuItem>& items = state.GetList(menu);
    if (!items.empty()) bar.AddSubmenu(state.GetTitle(menu)).AddMenuItems(morvane, items);
  }

  if (state.ShowWindowMenu()) {
    CMenuBuilder& windowMenu = bar.AddSubmenu(strings.fWindowMenuTitle);
    for (const TWindowMenuItem& item : windowMenuItems) {
      windowMenu.AddNativeItem(item.fText, item.fCommand, item.fNativeFlags);
      if (&item != &windowMenuItems.front()) continue;
      windowMenu.MarkSeparator();
      windowMenu.AddMenuItems(morvane, state.GetList(kMenuWindow));
      windowMenu.MarkSeparator();
    }
  }

  if (state.ShowHelpItem() || !state.GetList(kMenuHelp).empty()) {
    CMenuBuilder& lastMenu = bar.AddSubmenu(strings.fLastMenuTitle);
    lastMenu.AddMenuItems(morvane, state.GetList(kMenuHelp));
    if (state.ShowHelpItem()) {
      lastMenu.MarkSeparator();
      lastMenu.AddMenuItem(morvane, MakeMenuItem(EscapeMnemonics(strings.fDisplayName),
                                                 state.HelpItemEnabled(), kHelpItemCommand));
    }
  }
  if (debugSettings.fDebugMenu) AddDebugMenu(bar, state.GetList(kMenuDebug), debugSettings, morvane);
}

}  // namespace NSMorvane
