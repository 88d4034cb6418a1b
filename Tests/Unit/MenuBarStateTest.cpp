// The portable menu bar: the two-call protocol, bad input, comparison, ownership of icons.
#include <gtest/gtest.h>

#include "Component/Portable/MorvaneGlue.h"
#include "Component/Portable/MorvaneImplUtilsMenuBarState.h"
#include "Interface/MorvaneDefaults.h"
#include "Tests/Support/RecordingDebugOutput.h"

using namespace NSMorvane;
using NSMorvaneTest::RecordingDebugOutput;

namespace {

// An icon that is equal to those of the same number, counts the living, and fails to be cloned when told to.
class NumberIcon : public CIconGlue {
 public:
  explicit NumberIcon(int number) : fNumber(number) { ++gAlive; }
  ~NumberIcon() override { --gAlive; }

  static int gAlive;
  static bool gCloneFails;

 protected:
  bool CIconGlue_AreEqual(const CIconGlue& other) const override {
    return static_cast<const NumberIcon&>(other).fNumber == fNumber;
  }
  std::unique_ptr<IIcon> CIconGlue_Clone() const override {
    if (gCloneFails) throw XUnsupportedFormat();
    return std::make_unique<NumberIcon>(fNumber);
  }

 private:
  int fNumber;
};

int NumberIcon::gAlive = 0;
bool NumberIcon::gCloneFails = false;

TMenuItem Item(std::u16string_view text, std::uint32_t command, IIcon* icon = nullptr) {
  TMenuItem item{};
  CopyText(item.fText, text);
  item.fStateFlags = kMenuItemEnabled;
  item.fCommand = command;
  item.fIcon = icon;
  return item;
}

}  // namespace

TEST(MenuBarState, BadInputChangesNothing) {
  RecordingDebugOutput output;
  CMenuBarState state;
  const TMenuItem items[1] = {Item(u"a", 1)};
  state.IMenuBarState_SetMenuItems(kMenu1, items, sizeof(items));
  state.IMenuBarState_SetMenuTitle(kMenu1, u"Title");
  const CMenuBarState before = state;
  TMenuItem read[2];
  TMenuBarFlags badFlags{0, 0, 0, 0, 2};
  const struct {
    const char* fText;
    std::function<TError()> fCall;
  } rows[] = {
      {"Bad Input to IMenuBarState_SetFlags(): IsValidMenuBarFlags(inFlags)",
       [&] { return state.IMenuBarState_SetFlags(badFlags); }},
      {"Bad Input to IMenuBarState_SetMenuItems(): (inBuffer != NULL) || (bufferSizeInBytes == 0)",
       [&] { return state.IMenuBarState_SetMenuItems(kMenu1, nullptr, sizeof(items)); }},
      {"Bad Input to IMenuBarState_SetMenuItems(): (numNewMenuItems * sizeof(TMenuItem)) == "
       "bufferSizeInBytes",
       [&] { return state.IMenuBarState_SetMenuItems(kMenu1, items, sizeof(items) - 1); }},
      {"Bad Input to IMenuBarState_SetMenuTitle(): ((menu >= kMenu1) && (menu <= kMenu6))",
       [&] { return state.IMenuBarState_SetMenuTitle(kMenuHelp, u"x"); }},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fText);
    output.Reset();
    EXPECT_EQ(kBadInputProgrammingError, row.fCall());
    ASSERT_FALSE(output.fAssertions.empty());
    EXPECT_EQ(row.fText, output.fAssertions.back());
    EXPECT_TRUE(state == before);
  }
  // These fail behind the wall: announced, without a failed clause.
  for (std::uint32_t size : {0u, static_cast<std::uint32_t>(2 * sizeof(TMenuItem))}) {
    output.Reset();
    EXPECT_EQ(kBadInputProgrammingError, state.IMenuBarState_GetMenuItems(kMenu1, read, size));
    EXPECT_TRUE(output.fAssertions.empty());
    EXPECT_TRUE(output.HasLine("Exception thrown at"));
  }
  EXPECT_EQ(kBadInputProgrammingError, state.IMenuBarState_SetMenuTitle(kMenu1, nullptr));
  EXPECT_TRUE(state == before);
}

TEST(MenuBarState, TextsAreCutOnTheWayOutAndNeverReadPastTheirArray) {
  CMenuBarState state;
  const std::u16string longTitle(300, u'x');
  EXPECT_EQ(kOK, state.IMenuBarState_SetMenuTitle(kMenu6, longTitle.c_str()));
  EXPECT_EQ(longTitle, state.GetTitle(kMenu6));
  TChar title[256];
  EXPECT_EQ(kOK, state.IMenuBarState_GetMenuTitle(kMenu6, title));
  EXPECT_EQ(std::u16string(255, u'x'), title);
  TMenuItem item{};
  std::fill(std::begin(item.fText), std::end(item.fText), u'y');  // unterminated
  std::fill(std::begin(item.fShortcut.fKeyText), std::end(item.fShortcut.fKeyText), u'k');
  item.fSubmenuName[0] = u's';
  EXPECT_EQ(kOK, state.IMenuBarState_SetMenuItems(kMenu1, &item, sizeof(item)));
  EXPECT_EQ(std::u16string(256, u'y'), state.GetList(kMenu1)[0].fText);
  TMenuItem read;
  EXPECT_EQ(kOK, state.IMenuBarState_GetMenuItems(kMenu1, &read, sizeof(read)));
  EXPECT_EQ(std::u16string(255, u'y'), TextOf(read.fText));
}

TEST(MenuBarState, ComparesByValue) {
  NumberIcon one(1), anotherOne(1), two(2);
  const auto with = [](auto change) {
    CMenuBarState state;
    TMenuItem item = Item(u"a", 1);
    change(state, item);
    state.IMenuBarState_SetMenuItems(kMenu2, &item, sizeof(item));
    return state;
  };
  const CMenuBarState plain = with([](CMenuBarState&, TMenuItem&) {});
  const CMenuBarState iconOne = with([&](CMenuBarState&, TMenuItem& item) { item.fIcon = &one; });
  EXPECT_TRUE(plain == with([](CMenuBarState&, TMenuItem&) {}));
  EXPECT_TRUE(iconOne == with([&](CMenuBarState&, TMenuItem& item) { item.fIcon = &anotherOne; }));
  EXPECT_FALSE(iconOne == with([&](CMenuBarState&, TMenuItem& item) { item.fIcon = &two; }));
  EXPECT_FALSE(plain == iconOne);
  const std::function<void(CMenuBarState&, TMenuItem&)> changes[] = {
      [](CMenuBarState& state, TMenuItem&) {
        const TMenuBarFlags flags{0, 0, 1, 0, 1};
        state.IMenuBarState_SetFlags(flags);
      },
      [](CMenuBarState& state, TMenuItem&) { state.IMenuBarState_SetMenuTitle(kMenu3, u"t"); },
      [](CMenuBarState& state, TMenuItem& item) {
        state.IMenuBarState_SetMenuItems(kMenuReserved12, &item, sizeof(item));
      },
      [](CMenuBarState&, TMenuItem& item) { item.fText[0] = u'b'; },
      [](CMenuBarState&, TMenuItem& item) { item.fSubmenuName[0] = u'b'; },
      [](CMenuBarState&, TMenuItem& item) { item.fStateFlags = 0; },
      [](CMenuBarState&, TMenuItem& item) { item.fCommand = 2; },
      [](CMenuBarState&, TMenuItem& item) { item.fShortcut.fKeyText[0] = u'q'; },
      [](CMenuBarState&, TMenuItem& item) { item.fShortcut.fModifiers.fKeys = kModifierControl; },
      [](CMenuBarState&, TMenuItem& item) { item.fShortcut.fPhysicalTest = 1; },
  };
  for (const auto& change : changes) EXPECT_FALSE(plain == with(change));
}

TEST(MenuBarState, IconsAreClonedAndAFailureLeavesTheOldList) {
  {
    CMenuBarState state;
    {
      NumberIcon icon(1);
      const TMenuItem item = Item(u"a", 1, &icon);
      EXPECT_EQ(kOK, state.IMenuBarState_SetMenuItems(kMenu1, &item, sizeof(item)));
      NumberIcon::gCloneFails = true;
      const TMenuItem items[2] = {Item(u"b", 1), item};
      EXPECT_EQ(kUnsupportedFormatError, state.IMenuBarState_SetMenuItems(kMenu1, items, sizeof(items)));
      NumberIcon::gCloneFails = false;
    }
    EXPECT_EQ(1, NumberIcon::gAlive);
    TMenuItem read;
    EXPECT_EQ(kOK, state.IMenuBarState_GetMenuItems(kMenu1, &read, sizeof(read)));
    EXPECT_EQ(u"a", TextOf(read.fText));
    EXPECT_EQ(state.GetList(kMenu1)[0].fIcon.get(), read.fIcon);
  }
  EXPECT_EQ(0, NumberIcon::gAlive);
}

TEST(MenuBarState, LibrarySide) {
  RecordingDebugOutput output;
  CMenuBarState state;
  EXPECT_THROW(state.GetList(static_cast<TMenu>(14)), std::invalid_argument);
  EXPECT_THROW(state.GetTitle(kMenuDocument), std::invalid_argument);
  EXPECT_EQ((std::vector<std::string>{"false", "false"}), output.fAssertions);
  EXPECT_EQ(u"a__b____", CMenuItem::WithEscapedText(Item(u"a_b__", 1)).fText);
  EXPECT_EQ(u"a_b__", CMenuItem(Item(u"a_b__", 1)).fText);
}
