// Menu items of a client.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string_view>
#include <vector>

#include "../../Interface/MorvaneDefaults.h"

namespace NSMorvaneTest {

using namespace NSMorvane;

inline TMenuItem MenuItem(std::u16string_view text, std::uint32_t command = 0,
                          std::uint32_t flags = kMenuItemEnabled, std::u16string_view submenu = u"",
                          std::u16string_view keyText = u"", std::uint32_t modifiers = 0) {
  TMenuItem item = {};
  CopyText(item.fText, text);
  CopyText(item.fSubmenuName, submenu);
  CopyText(item.fShortcut.fKeyText, keyText);
  item.fShortcut.fModifiers.fKeys = modifiers;
  item.fStateFlags = flags;
  item.fCommand = command;
  return item;
}

inline void SetItems(IMenuBarState& state, TMenu menu, const std::vector<TMenuItem>& items) {
  const auto size = static_cast<std::uint32_t>(items.size() * sizeof(TMenuItem));
  EXPECT_EQ(state.IMenuBarState_SetMenuItems(menu, items.data(), size), kOK);
}

}  // namespace NSMorvaneTest
