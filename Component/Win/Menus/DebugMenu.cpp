#include "Component/Win/Menus/DebugMenu.h"

#include <algorithm>
#include <iterator>

#include "Component/Win/Menus/WinMenu.h"

namespace NSMorvane {

namespace {

// In the order of the menu. The numbers are not; 0x9002 is nobody's.
constexpr TDebugMenuItem kItems[] = {
    {u"Draw _Invalidiation Blue", 0x9000, &TDebugSettings::fDrawInvalidationBlue},  // sic
    {u"Draw _Paints Red", 0x9001, &TDebugSettings::fDrawPaintsRed},
    {u"Draw View _Bounds", 0x9004, &TDebugSettings::fDrawViewBounds},
    {u"Draw _Mouse View Info", 0x9003, &TDebugSettings::fDrawMouseViewInfo},
    {u"_Flush Views", 0x9005, &TDebugSettings::fFlushViews},
    {u"_Delay After Flushing", 0x9006, &TDebugSettings::fDelayAfterFlushing},
    {u"Open Window List", 0x9007, nullptr},
};

}  // namespace

const TDebugMenuItem* FindDebugMenuItem(UINT command) {
  const auto found = std::find_if(std::begin(kItems), std::end(kItems),
                                  [=](const TDebugMenuItem& item) { return item.fCommand == command; });
  return found == std::end(kItems) ? nullptr : found;
}

void AddDebugMenu(CMenuBuilder& bar, const std::vector<CMenuItem>& clientItems,
                  const TDebugSettings& settings, IMorvane& morvane) {
  CMenuBuilder& menu = bar.AddSubmenu(u"_Debug");
  menu.AddMenuItems(morvane, clientItems);
  for (const TDebugMenuItem& item : kItems) {
    const bool isChecked = item.fSetting && settings.*item.fSetting;
    menu.AddNativeItem(item.fText, item.fCommand, isChecked ? MF_CHECKED : MF_UNCHECKED);
  }
}

}  // namespace NSMorvane
