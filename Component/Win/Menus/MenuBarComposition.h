// What stands in a menu bar, and in which order: the menus of a client between those of the library.
#pragma once

#include <windows.h>

#include <vector>

#include "Component/Portable/Menus/MenuBarState.h"
#include "Component/Portable/Text/TextPackage.h"

namespace NSMorvane {

class CMenuBuilder;
class IMorvane;
struct TStartupStrings;

using NSTextPackage::TString;

// An item of the library's own in the window menu.
struct TWindowMenuItem {
  TString fText;
  UINT fCommand;
  UINT fNativeFlags;

  friend bool operator==(const TWindowMenuItem&, const TWindowMenuItem&) = default;
};

// Fills a bar from its beginning to its end. Of the items for the window menu, which is there if the state
// asks for it, the first one stands over the client's and the others under them. Shortcuts are named as
// `morvane` names keys.
void ComposeMenuBar(CMenuBuilder& bar, const CMenuBarState& state,
                    const std::vector<TWindowMenuItem>& windowMenuItems, const TStartupStrings& strings,
                    IMorvane& morvane);

}  // namespace NSMorvane
