// The portable menu bar: the two-call protocol, bad input, comparison, ownership of icons.
#include <functional>

#include "Component/Portable/Contract/MorvaneGlueIcon.h"
#include "Component/Portable/Menus/MenuBarState.h"
#include "Interface/MorvaneDefaults.h"
#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;

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

TMenuItem Item(std::u16string_view text, IIcon* icon = nullptr) {
  TMenuItem item{};
  CopyText(item.fText, text);
  item.fStateFlags = kMenuItemEnabled;
  item.fCommand = 1;
  item.fIcon = icon;
  return item;
}

class MenuBarState : public ReportingTest {
 protected:
  CMenuBarState fState;
};

}  // namespace

TEST_F(MenuBarState, BadInputChangesNothing) {
  const TMenuItem item = Item(u"a");
  fState.IMenuBarState_SetMenuItems(kMenu1, &item, sizeof(item));
  fState.IMenuBarState_SetMenuTitle(kMenu1, u"Title");
  const CMenuBarState before = fState;
  TMenuItem read[2];
  std::uint32_t count = 0;
  TMenuBarFlags badFlags{0, 0, 0, 0, 2};
  // The last two fail behind the wall: announced, without a failed clause.
  const Rows<std::string, std::function<TError()>> rows = {
      {"SetFlags(): IsValidMenuBarFlags(inFlags)", [&] { return fState.IMenuBarState_SetFlags(badFlags); }},
      {"SetMenuItems(): (inBuffer != NULL) || (bufferSizeInBytes == 0)",
       [&] { return fState.IMenuBarState_SetMenuItems(kMenu1, nullptr, sizeof(item)); }},
      {"SetMenuItems(): (numNewMenuItems * sizeof(TMenuItem)) == bufferSizeInBytes",
       [&] { return fState.IMenuBarState_SetMenuItems(kMenu1, &item, sizeof(item) - 1); }},
      {"CountMenuItems(): IsValidMenu(menu)",
       [&] { return fState.IMenuBarState_CountMenuItems(static_cast<TMenu>(14), count); }},
      {"SetMenuTitle(): ((menu >= kMenu1) && (menu <= kMenu6))",
       [&] { return fState.IMenuBarState_SetMenuTitle(kMenuHelp, u"x"); }},
      {"", [&] { return fState.IMenuBarState_GetMenuItems(kMenu1, read, sizeof(read)); }},
      {"", [&] { return fState.IMenuBarState_SetMenuTitle(kMenu1, nullptr); }}};
  for (const auto& [text, call] : rows) {
    SCOPED_TRACE(text);
    TakeLines();
    EXPECT_EQ(kBadInputProgrammingError, call());
    const std::string reports = TakeReports();
    EXPECT_TRUE(text.empty() ? reports.empty() : reports.ends_with("Bad Input to IMenuBarState_" + text));
    EXPECT_TRUE(!text.empty() || fOutput.HasLine("Exception thrown at"));
    EXPECT_TRUE(fState == before);
  }
  TakeLines();
  // Not bad at all: as many as there are, and none.
  EXPECT_EQ(kOK, fState.IMenuBarState_CountMenuItems(kMenu1, count));
  EXPECT_EQ(1u, count);
  EXPECT_EQ(kOK, fState.IMenuBarState_SetMenuItems(kMenu1, nullptr, 0));
  EXPECT_EQ(kOK, fState.IMenuBarState_CountMenuItems(kMenu1, count));
  EXPECT_EQ(0u, count);
  EXPECT_EQ(kOK, fState.IMenuBarState_GetMenuItems(kMenu1, nullptr, 0));
}

TEST_F(MenuBarState, TextsAreCutOnTheWayOutAndNeverReadPastTheirArray) {
  const std::u16string longTitle(300, u'x');
  EXPECT_EQ(kOK, fState.IMenuBarState_SetMenuTitle(kMenu6, longTitle.c_str()));
  TChar title[256];
  EXPECT_EQ(kOK, fState.IMenuBarState_GetMenuTitle(kMenu6, title));
  EXPECT_EQ(std::u16string(255, u'x'), title);
  TMenuItem item{};
  std::fill(std::begin(item.fText), std::end(item.fText), u'y');  // unterminated
  EXPECT_EQ(kOK, fState.IMenuBarState_SetMenuItems(kMenu1, &item, sizeof(item)));
  EXPECT_EQ(std::u16string(256, u'y'), fState.GetList(kMenu1)[0].fText);
  EXPECT_EQ(kOK, fState.IMenuBarState_GetMenuItems(kMenu1, &item, sizeof(item)));
  EXPECT_EQ(std::u16string(255, u'y'), TextOf(item.fText));
}

TEST_F(MenuBarState, ComparesByValue) {
  using TChange = std::function<void(CMenuBarState&, TMenuItem&)>;
  const CMenuBarState empty;
  const auto after = [&](const CMenuBarState& last, const TChange& change) {
    CNextMenuBarState state(empty, last);
    TMenuItem item = Item(u"a");
    change(state, item);
    state.IMenuBarState_SetMenuItems(kMenu2, &item, sizeof(item));
    return CMenuBarState(state);
  };
  const auto with = [&](const TChange& change) { return after(empty, change); };
  NumberIcon one(1), another(1), two(2);
  const auto withIcon = [&](NumberIcon& icon) {
    return with([&](CMenuBarState&, TMenuItem& item) { item.fIcon = &icon; });
  };
  const CMenuBarState plain = with([](auto&, auto&) {});
  EXPECT_TRUE(plain == with([](auto&, auto&) {}));
  EXPECT_TRUE(withIcon(one) == withIcon(another));
  EXPECT_FALSE(withIcon(one) == withIcon(two));
  EXPECT_FALSE(plain == withIcon(one));
  const Rows<const char*, TChange> changes = {
      {"flags",
       [](auto& state, auto&) {
         state.IMenuBarState_SetFlags({0, 0, 1, 0, 1});
       }},
      {"title", [](auto& state, auto&) { state.IMenuBarState_SetMenuTitle(kMenu3, u"t"); }},
      {"another menu",
       [](auto& state, auto& item) {
         state.IMenuBarState_SetMenuItems(kMenuReserved12, &item, sizeof(item));
       }},
      {"text", [](auto&, auto& item) { item.fText[0] = u'b'; }},
      {"longer text", [](auto&, auto& item) { item.fText[1] = u'b'; }},
      {"submenu", [](auto&, auto& item) { item.fSubmenuName[0] = u's'; }},
      {"key", [](auto&, auto& item) { item.fShortcut.fKeyText[0] = u'k'; }},
      {"state", [](auto&, auto& item) { item.fStateFlags = 0; }},
      {"modifiers", [](auto&, auto& item) { item.fShortcut.fModifiers.fKeys = kModifierControl; }},
      {"keypad", [](auto&, auto& item) { item.fShortcut.fPhysicalTest = 1; }}};
  for (const auto& [name, change] : changes) {
    EXPECT_FALSE(plain == with(change)) << name;
    EXPECT_FALSE(plain == after(plain, change)) << name;
  }
  // What is the same is shared, icons too.
  const CMenuBarState marked = withIcon(one);
  for (const CMenuBarState& last : {plain, marked}) {
    const CMenuBarState same = after(last, [&](auto&, TMenuItem& item) {
      if (last == marked) item.fIcon = &another;
    });
    EXPECT_EQ(same.GetListPtr(kMenu2), last.GetListPtr(kMenu2));
  }
}

TEST_F(MenuBarState, IconsAreClonedAndAFailureLeavesTheOldList) {
  {
    NumberIcon icon(1);
    const TMenuItem items[2] = {Item(u"a", &icon), Item(u"b", &icon)};
    EXPECT_EQ(kOK, fState.IMenuBarState_SetMenuItems(kMenu1, items, sizeof(items[0])));
    NumberIcon::gCloneFails = true;
    EXPECT_EQ(kUnsupportedFormatError, fState.IMenuBarState_SetMenuItems(kMenu1, items, sizeof(items)));
    NumberIcon::gCloneFails = false;
  }
  EXPECT_EQ(1, NumberIcon::gAlive);
  TMenuItem read;
  EXPECT_EQ(kOK, fState.IMenuBarState_GetMenuItems(kMenu1, &read, sizeof(read)));
  EXPECT_EQ(fState.GetList(kMenu1)[0].fIcon.get(), read.fIcon);
  fState = CMenuBarState();
  EXPECT_EQ(0, NumberIcon::gAlive);
}
