// Native menus and accelerator tables as the builder makes them, read back.
#include "Component/Win/Menus/WinMenu.h"

#include <memory>

#include "Component/Win/Application/MorvaneImplWin.h"
#include "Component/Win/Launch/MorvaneImplWinStartupStrings.h"
#include "Component/Win/Menus/MenuBarComposition.h"
#include "Interface/MorvaneDefaults.h"
#include "Tests/Support/MenuItems.h"
#include "Tests/Support/NativeMenus.h"
#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;

namespace {

constexpr std::uint32_t kGrey = 0;
constexpr std::uint32_t kEnabled = kMenuItemEnabled;

CMenuItem Item(std::u16string_view text, std::uint32_t flags, std::u16string_view submenu = u"",
               std::u16string_view keyText = u"", std::uint32_t modifiers = 0) {
  return CMenuItem(MenuItem(text, 0, flags, submenu, keyText, modifiers));
}

class WinMenuTest : public ReportingTest {
 protected:
  WinMenuTest() {
    TError error = kOtherError;
    fMorvane.reset(Morvane_Create("IMorvane", &error));
    EXPECT_EQ(error, kOK);
  }

  std::unique_ptr<IMorvane> fMorvane;
  std::vector<CMenuItem> fItems;
};

}  // namespace

TEST_F(WinMenuTest, Mnemonics) {
  const Rows<TString, TString, std::size_t> rows = {
      {u"", u"", 0},         {u"_Open", u"&Open", 0}, {u"R&D_x", u"R&&D&x", 0},
      {u"end_", u"end_", 0}, {u"___x", u"_&x", 0},    {u"__a_b___c", u"_a&b_&c", 2}};
  for (const auto& [text, wanted, lines] : rows) {
    fOutput.fLines.clear();
    EXPECT_EQ(WinPrepareMnemonic(text), wanted);
    EXPECT_EQ(fOutput.fLines.size(), lines) << NSTextPackage::StringToUTF8(text, false);
  }
}

// What a state asks for, in the place that it has in a bar. The state of a client is set before its flags.
TEST_F(WinMenuTest, WhatStandsInABar) {
  TStartupStrings strings;
  strings.fFirstMenuTitle = u"First";
  strings.fQuitItem = u"quit";
  strings.fSecondMenuTitle = u"Second";
  strings.fCloseItem = u"close";
  strings.fWindowMenuTitle = u"Windows";
  strings.fLastMenuTitle = u"Last";
  strings.fDisplayName = u"he_lp";
  const std::vector<TWindowMenuItem> windows = {{u"on top", kStayOnTopCommand, MF_CHECKED},
                                                {u"a window", kFirstWindowListCommand, MF_UNCHECKED}};
  const std::string begin = "First:|  quit C351|Second:|";
  const std::string windowMenu = "Windows:|  on top EA61 checked|  --|";
  const struct {
    const char* fName;
    TMenuBarFlags fFlags;
    std::vector<TMenu> fMenus;  // those that have an item of the client's
    std::string fLines;
    TDebugSettings fDebug = {};
  } rows[] = {
      {"nothing of the client's", {0, 0, 1, 1, 0}, {}, begin + "  close A000"},
      {"all menus of the client's own",
       {0, 0, 1, 0, 0},
       {kMenu2, kMenu1},
       begin + "  close A000 grey|1:|  item A001|2:|  item A002"},
      {"the window menu", {0, 0, 1, 1, 1}, {}, begin + "  close A000|" + windowMenu + "  a window E000"},
      {"the client's part of it",
       {0, 0, 1, 1, 1},
       {kMenuWindow},
       begin + "  close A000|" + windowMenu + "  item A001|  --|  a window E000"},
      {"a help menu of the client's", {0, 0, 1, 1, 0}, {kMenuHelp}, begin + "  close A000|Last:|  item A001"},
      {"the help item alone", {1, 1, 1, 1, 0}, {}, begin + "  close A000|Last:|  he_lp A001"},
      {"both", {1, 0, 1, 1, 0}, {kMenuHelp}, begin + "  close A000|Last:|  item A001|  --|  he_lp A002 grey"},
      {"the debug menu",
       {1, 1, 1, 1, 0},
       {},
       begin + "  close A000|Last:|  he_lp A001|&Debug:|  Draw &Invalidiation Blue 9000 checked|"
               "  Draw &Paints Red 9001|  Draw View &Bounds 9004 checked|  Draw &Mouse View Info 9003|"
               "  &Flush Views 9005 checked|  &Delay After Flushing 9006|  Open Window List 9007",
       {1, 1, 0, 1, 0, 1, 0}},
      {"the client's part of it",
       {0, 0, 1, 1, 0},
       {kMenuDebug, kMenu1},
       begin + "  close A000|1:|  item A001|&Debug:|  item A002|  Draw &Invalidiation Blue 9000|"
               "  Draw &Paints Red 9001 checked|  Draw View &Bounds 9004|"
               "  Draw &Mouse View Info 9003 checked|  &Flush Views 9005|"
               "  &Delay After Flushing 9006 checked|  Open Window List 9007",
       {1, 0, 1, 0, 1, 0, 1}},
      {"neither without its setting",
       {0, 0, 1, 1, 0},
       {kMenuDebug},
       begin + "  close A000",
       {0, 1, 1, 1, 1, 1, 1}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fName);
    CMenuBarState state;
    for (const TMenu menu : row.fMenus) SetItems(state, menu, {MenuItem(u"item")});
    EXPECT_EQ(state.IMenuBarState_SetMenuTitle(kMenu1, u"1"), kOK);
    EXPECT_EQ(state.IMenuBarState_SetMenuTitle(kMenu2, u"2"), kOK);
    EXPECT_EQ(state.IMenuBarState_SetFlags(row.fFlags), kOK);
    fItems.clear();
    CMenuBuilder bar(fItems, kFirstClientCommand);
    ComposeMenuBar(bar, state, windows, strings, row.fDebug, *fMorvane);
    EXPECT_EQ(LinesOfMenu(bar.GetHandle()), SplitLines(row.fLines));
  }
}

TEST_F(WinMenuTest, ItemsOfALevel) {
  CMenuBuilder bar(fItems, kFirstClientCommand);
  CMenuBuilder& menu = bar.AddSubmenu(u"_First");
  menu.AddMenuItems(
      *fMorvane,
      {Item(u"", kEnabled),  // no separator at the beginning
       Item(u"Bold", kEnabled | kMenuItemChecked, u"", u"\xE005", kModifierShift | kModifierControl),
       Item(u"", 0), Item(u"", 0), Item(u"Alone", kGrey, u"One"), Item(u"Deep", kGrey, u"_Two"),
       Item(u"", kEnabled, u"_Two"), Item(u"Other_", kEnabled, u"_Two", u"x", kModifierOther), Item(u"", 0),
       Item(u"Again", kEnabled, u"_Two"), Item(u"", 0, u"Only a separator"),
       Item(u"", 0)});  // no separator at the end
  menu.MarkSeparator();
  EXPECT_EQ(LinesOfMenu(bar.GetHandle()),
            SplitLines("&First:|  Bold\tCtrl+Shift+F5 A001 checked|  --|  One: grey|    Alone A004 grey|"
                       "  &Two:|    Deep A005 grey|    --|    Other_\t A007|  --|  &Two:|    Again A009|"
                       "  Only a separator: grey"));
}

TEST_F(WinMenuTest, MenusEndWithTheirOwner) {
  HMENU menu = nullptr;
  {
    CMenuBuilder bar(fItems, kFirstClientCommand);
    menu = bar.AddSubmenu(u"menu").GetHandle();
    EXPECT_TRUE(IsMenu(menu));
  }
  EXPECT_FALSE(IsMenu(menu));
}

TEST_F(WinMenuTest, NumbersBeyondTheRangeAreNobodyElses) {
  fItems.assign(0xFFF, Item(u"", 0));
  CMenuBuilder bar(fItems, kFirstClientCommand);
  bar.AddMenuItems(*fMorvane, {Item(u"last", kEnabled, u"", u"a"), Item(u"beyond", kEnabled, u"", u"b")});
  EXPECT_EQ(LinesOfMenu(bar.GetHandle()), (MenuLines{"last\tA AFFF", "beyond\tB 0"}));
  const HACCEL table = MakeAcceleratorTable(fItems, kFirstClientCommand);
  EXPECT_EQ(CopyAcceleratorTableW(table, nullptr, 0), 1);
  DestroyAcceleratorTable(table);
}

TEST_F(WinMenuTest, Accelerators) {
  fItems = {Item(u"grey", kGrey, u"", u"b", kModifierControl),
            Item(u"capital", kEnabled, u"", u"C", kModifierControl),
            Item(u"character on Shift", kEnabled, u"", u"!"),
            Item(u"", kEnabled),
            Item(u"other platform", kEnabled, u"", u"e", kModifierOther),
            Item(u"F2", kEnabled, u"", u"\xE002", kModifierAlt),
            Item(u"no such key", kEnabled, u"", u"\x4E2D")};
  const HACCEL table = MakeAcceleratorTable(fItems, kFirstClientCommand);
  ACCEL entries[32];
  Rows<int, int, int> found;
  const int count = CopyAcceleratorTableW(table, entries, 32);
  for (int i = 0; i < count; ++i)
    found.emplace_back(entries[i].fVirt & 0x1F, entries[i].key, entries[i].cmd - kFirstClientCommand);
  EXPECT_EQ(found,
            (Rows<int, int, int>{
                {FVIRTKEY | FCONTROL, 'C', 1}, {FVIRTKEY | FSHIFT, '1', 2}, {FVIRTKEY | FALT, VK_F2, 5}}));
  EXPECT_TRUE(DestroyAcceleratorTable(table));
  EXPECT_EQ(MakeAcceleratorTable({}, kFirstClientCommand), nullptr);
}
