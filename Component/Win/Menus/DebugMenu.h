// The debug menu: its items, and what their commands stand for.
#pragma once

#include <windows.h>

#include <vector>

#include "Interface/MorvaneDebugOutput.h"

namespace NSMorvane {

class CMenuBuilder;
class CMenuItem;
class IMorvane;

struct TDebugMenuItem {
  const TChar* fText;
  UINT fCommand;
  TFlag TDebugSettings::*fSetting;  // what the item switches; null opens the window list
};

// Null if the command is not one of the debug menu's.
const TDebugMenuItem* FindDebugMenuItem(UINT command);

// Adds the menu to a menu bar, with the client's items first. `morvane` gives the names of shortcut keys.
void AddDebugMenu(CMenuBuilder& bar, const std::vector<CMenuItem>& clientItems,
                  const TDebugSettings& settings, IMorvane& morvane);

}  // namespace NSMorvane
