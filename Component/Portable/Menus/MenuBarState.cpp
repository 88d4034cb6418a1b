#include "Component/Portable/Menus/MenuBarState.h"

#include <algorithm>
#include <boost/make_shared.hpp>
#include <tuple>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Contract/MorvaneGlueContract.h"

namespace NSMorvane {

namespace {

// Whether two arrays have the same text, each up to its end or its terminator.
template <std::size_t kLimit>
bool HaveSameText(const TChar (&a)[kLimit], const TChar (&b)[kLimit]) {
  const auto [inA, inB] = std::mismatch(a, a + kLimit, b, [](TChar x, TChar y) { return x == y && x != 0; });
  return inA == a + kLimit || *inA == *inB;
}

bool AreEqual(const TKeyInterpretation& a, const TKeyInterpretation& b) {
  return HaveSameText(a.fKeyText, b.fKeyText) && a.fModifiers.fKeys == b.fModifiers.fKeys &&
         a.fModifiers.fReserved == b.fModifiers.fReserved && a.fPhysicalTest == b.fPhysicalTest;
}

// Whether the array has this text, which has no terminator inside. The text is short and the array is long,
// so nothing is counted.
template <std::size_t kLimit>
bool HasText(const TChar (&array)[kLimit], const TString& text) {
  const std::size_t size = text.size();
  return size <= kLimit && std::equal(text.begin(), text.end(), array) &&
         (size == kLimit || array[size] == 0);
}

bool AreEqual(const IIcon* a, const IIcon* b) {
  if (!a || !b) return a == b;
  TFlag equal = 0;
  MORVANE_CHECK(a->IIcon_AreEqual(*b, equal));
  return equal == 1;
}

boost::shared_ptr<IIcon> CloneIcon(const IIcon* icon) {
  if (!icon) return {};
  TError error = kOK;
  boost::shared_ptr<IIcon> clone(icon->IIcon_Clone(error));
  MORVANE_CHECK(error);
  return clone;
}

}  // namespace

CMenuItem::CMenuItem(const TMenuItem& item)
    : fSubmenuName(NSTextPackage::ArrayToString(item.fSubmenuName)),
      fText(NSTextPackage::ArrayToString(item.fText)),
      fStateFlags(item.fStateFlags),
      fShortcut(item.fShortcut),
      fCommand(item.fCommand),
      fIcon(CloneIcon(item.fIcon)) {}

CMenuItem CMenuItem::WithEscapedText(const TMenuItem& item) {
  CMenuItem result(item);
  TString escaped;
  for (TChar c : result.fText) escaped.append(c == u'_' ? 2 : 1, c);
  result.fText = escaped;
  return result;
}

bool CMenuItem::operator==(const CMenuItem& other) const {
  return fSubmenuName == other.fSubmenuName && fText == other.fText && fStateFlags == other.fStateFlags &&
         fCommand == other.fCommand && AreEqual(fShortcut, other.fShortcut) &&
         AreEqual(fIcon.get(), other.fIcon.get());
}

bool CMenuItem::IsMadeFrom(const TMenuItem& item) const {
  return fCommand == item.fCommand && fStateFlags == item.fStateFlags && HasText(item.fText, fText) &&
         HasText(item.fSubmenuName, fSubmenuName) && AreEqual(fShortcut, item.fShortcut) &&
         AreEqual(fIcon.get(), item.fIcon);
}

void CMenuItem::ToRecord(TMenuItem& out) const {
  NSTextPackage::CopyChars(out.fSubmenuName, fSubmenuName.c_str(), kMenuTextChars);
  NSTextPackage::CopyChars(out.fText, fText.c_str(), kMenuTextChars);
  out.fStateFlags = fStateFlags;
  out.fShortcut = fShortcut;
  out.fCommand = fCommand;
  out.fIcon = fIcon.get();
}

bool IsValidMenu(TMenu menu) {
  if (menu < kMenuCount) return true;
  MORVANE_UNREACHED();
  return false;
}

bool IsValidMenuBarFlags(const TMenuBarFlags& flags) {
  return ValidateFlag(flags.fShowHelpItem) && ValidateFlag(flags.fHelpItemEnabled) &&
         ValidateFlag(flags.fQuitEnabled) && ValidateFlag(flags.fSecondMenuItemEnabled) &&
         ValidateFlag(flags.fShowWindowMenu);
}

bool CMenuBarState::operator==(const CMenuBarState& other) const {
  const auto values = [](const CMenuBarState& s) {
    return std::tie(s.fTitles, s.fShowHelpItem, s.fHelpItemEnabled, s.fQuitEnabled, s.fSecondMenuItemEnabled,
                    s.fShowWindowMenu, s.fReserved);
  };
  return values(*this) == values(other) && HasSameLists(other);
}

bool CMenuBarState::HasSameLists(const CMenuBarState& other) const {
  for (TMenu menu = {}; menu < kMenuCount; menu = static_cast<TMenu>(menu + 1))
    if (fLists[menu] != other.fLists[menu] && !(GetList(menu) == other.GetList(menu))) return false;
  return true;
}

CMenuBarState::TListPtr CMenuBarState::MakeList(TMenu, const TMenuItem* items, std::size_t count) const {
  if (count == 0) return {};
  const auto list = boost::make_shared<TList>();
  list->reserve(count);
  for (std::size_t i = 0; i < count; ++i) list->emplace_back(items[i]);
  return list;
}

CMenuBarState::TListPtr CNextMenuBarState::MakeList(TMenu menu, const TMenuItem* items,
                                                    std::size_t count) const {
  for (const CMenuBarState* const model : fModels) {
    const TList& list = model->GetList(menu);
    if (std::equal(list.begin(), list.end(), items, items + count,
                   [](const CMenuItem& item, const TMenuItem& record) { return item.IsMadeFrom(record); }))
      return model->GetListPtr(menu);
  }
  return CMenuBarState::MakeList(menu, items, count);
}

const CMenuBarState::TList& CMenuBarState::GetList(TMenu menu) const {
  static const TList empty;
  if (menu < kMenuCount) return fLists[menu] ? *fLists[menu] : empty;
  MORVANE_UNREACHED();
  MORVANE_THROW(std::invalid_argument("invalid menu"));
}

const TString& CMenuBarState::GetTitle(TMenu menu) const {
  if (menu >= kMenu1 && menu <= kMenu6) return fTitles[menu - kMenu1];
  MORVANE_UNREACHED();
  MORVANE_THROW(std::invalid_argument("invalid menu"));
}

TError CMenuBarState::IMenuBarState_GetFlags(TMenuBarFlags& outFlags) {
  MORVANE_REQUIRE("IMenuBarState_GetFlags()", CheckInvariant());
  outFlags = TMenuBarFlags{};
  TError outError;
  CallHook(outError, [&] {
    outFlags = {fShowHelpItem, fHelpItemEnabled, fQuitEnabled, fSecondMenuItemEnabled, fShowWindowMenu};
  });
  MORVANE_AFTER(CheckInvariant());
  MORVANE_ASSERT(IsValidMenuBarFlags(outFlags));
  return outError;
}

TError CMenuBarState::IMenuBarState_SetFlags(const TMenuBarFlags& inFlags) {
  MORVANE_REQUIRE("IMenuBarState_SetFlags()", CheckInvariant());
  MORVANE_REQUIRE("IMenuBarState_SetFlags()", IsValidMenuBarFlags(inFlags));
  TError outError;
  CallHook(outError, [&] {
    fShowHelpItem = inFlags.fShowHelpItem == 1;
    fHelpItemEnabled = inFlags.fHelpItemEnabled == 1;
    fQuitEnabled = inFlags.fQuitEnabled == 1;
    fSecondMenuItemEnabled = inFlags.fSecondMenuItemEnabled == 1;
    fShowWindowMenu = inFlags.fShowWindowMenu == 1;
  });
  MORVANE_AFTER(CheckInvariant());
  return outError;
}

TError CMenuBarState::IMenuBarState_CountMenuItems(TMenu menu, std::uint32_t& outCount) {
  MORVANE_REQUIRE("IMenuBarState_CountMenuItems()", CheckInvariant());
  MORVANE_REQUIRE("IMenuBarState_CountMenuItems()", IsValidMenu(menu));
  TError outError;
  CallHook(outError, [&] { outCount = static_cast<std::uint32_t>(GetList(menu).size()); });
  MORVANE_AFTER(CheckInvariant());
  return outError;
}

TError CMenuBarState::IMenuBarState_GetMenuItems(TMenu menu, TMenuItem* outBuffer,
                                                 std::uint32_t bufferSizeInBytes) {
  MORVANE_REQUIRE("IMenuBarState_GetMenuItems()", CheckInvariant());
  MORVANE_REQUIRE("IMenuBarState_GetMenuItems()", IsValidMenu(menu));
  MORVANE_REQUIRE("IMenuBarState_GetMenuItems()", (outBuffer != NULL) || (bufferSizeInBytes == 0));
  TError outError;
  CallHook(outError, [&] {
    const TList& items = GetList(menu);
    if (bufferSizeInBytes != items.size() * sizeof(TMenuItem))
      MORVANE_THROW(std::invalid_argument("bad buffer size"));
    for (const CMenuItem& item : items) item.ToRecord(*outBuffer++);
  });
  MORVANE_AFTER(CheckInvariant());
  return outError;
}

TError CMenuBarState::IMenuBarState_SetMenuItems(TMenu menu, const TMenuItem* inBuffer,
                                                 std::uint32_t bufferSizeInBytes) {
  MORVANE_REQUIRE("IMenuBarState_SetMenuItems()", CheckInvariant());
  MORVANE_REQUIRE("IMenuBarState_SetMenuItems()", IsValidMenu(menu));
  MORVANE_REQUIRE("IMenuBarState_SetMenuItems()", (inBuffer != NULL) || (bufferSizeInBytes == 0));
  const std::size_t numNewMenuItems = bufferSizeInBytes / sizeof(TMenuItem);
  MORVANE_REQUIRE("IMenuBarState_SetMenuItems()", (numNewMenuItems * sizeof(TMenuItem)) == bufferSizeInBytes);
  TError outError;
  CallHook(outError, [&] { fLists[menu] = MakeList(menu, inBuffer, numNewMenuItems); });
  MORVANE_AFTER(CheckInvariant());
  return outError;
}

TError CMenuBarState::IMenuBarState_GetMenuTitle(TMenu menu, TChar* outTitle) {
  MORVANE_REQUIRE("IMenuBarState_GetMenuTitle()", CheckInvariant());
  MORVANE_REQUIRE("IMenuBarState_GetMenuTitle()", ((menu >= kMenu1) && (menu <= kMenu6)));
  TError outError;
  CallHook(outError, [&] {
    if (!outTitle) MORVANE_THROW(std::invalid_argument(""));
    outTitle[0] = 0;
    NSTextPackage::CopyChars(outTitle, GetTitle(menu).c_str(), kMenuTextChars);
  });
  MORVANE_AFTER(CheckInvariant());
  return outError;
}

TError CMenuBarState::IMenuBarState_SetMenuTitle(TMenu menu, const TChar* title) {
  MORVANE_REQUIRE("IMenuBarState_SetMenuTitle()", CheckInvariant());
  MORVANE_REQUIRE("IMenuBarState_SetMenuTitle()", ((menu >= kMenu1) && (menu <= kMenu6)));
  TError outError;
  CallHook(outError, [&] { fTitles[menu - kMenu1] = CheckedText(title); });
  MORVANE_AFTER(CheckInvariant());
  return outError;
}

}  // namespace NSMorvane
