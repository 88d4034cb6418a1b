// What stands in a menu bar, and in which order: the menus of a client between those of the library.
#pragma once

#include <windows.h>

#include <vector>

#include "Component/Portable/Menus/MenuBarState.h"
#include "Component/Portable/Text/TextPackage.h"

namespace NSMorvane {

class CMenuBuilder;
class IMorvane;
struct TDebugSettings;
struct TStartupStrings;

using NSTextPackage::TString;

// An item of the library in the window menu.
struct TWindowMenuItem {
  TString fText;
  UINT fCommand;
  UINT fNativeFlags;

  friend bool operator==(const TWindowMenuItem&, const TWindowMenuItem&) = default;
};

// Fills an empty bar. The window menu is added only if the state asks for it; the first of `windowMenuItems`
// comes before the client's items, the others after them. The debug menu is added only if its setting says
// so. `morvane` gives the names of shortcut keys.
void ComposeMenuBar(CMenuBuilder& bar, const CMenuBarState& state,
                    const std::vector<TWindowMenuItem>& windowMenuItems, const TStartupStrings& strings,
                    const TDebugSettings& debugSettings, IMorvane& morvane);

}  // namespace NSMorvane
