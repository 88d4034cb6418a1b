// The portable description of one window's menu bar.
#pragma once

#include <array>
#include <boost/shared_ptr.hpp>
#include <vector>

#include "Component/Portable/Text/TextPackage.h"
#include "Interface/MorvaneMenu.h"

namespace NSMorvane {

using NSTextPackage::TString;

// One item as the library holds it: texts of any length, and an icon of its own.
class CMenuItem {
 public:
  // Clones the icon; a failure goes through CheckError.
  explicit CMenuItem(const TMenuItem& item);
  // With every `_` of the text doubled, for texts in which it marks no mnemonic.
  static CMenuItem WithEscapedText(const TMenuItem& item);

  bool operator==(const CMenuItem& other) const;
  // Whether an item made from this record would be equal to this one.
  bool IsMadeFrom(const TMenuItem& item) const;

  // Fills the client's record; texts are cut to fit. This object keeps the ownership of the icon.
  void ToRecord(TMenuItem& out) const;

  TString fSubmenuName;
  TString fText;
  std::uint32_t fStateFlags;
  TKeyInterpretation fShortcut;
  std::uint32_t fCommand;
  boost::shared_ptr<IIcon> fIcon;
};

class CMenuBarState : public IMenuBarState {
 public:
  using TList = std::vector<CMenuItem>;

  CMenuBarState() = default;
  ~CMenuBarState() override = default;
  CMenuBarState(const CMenuBarState&) = default;
  CMenuBarState& operator=(const CMenuBarState&) = default;

  bool operator==(const CMenuBarState& other) const;

  TError IMenuBarState_GetFlags(TMenuBarFlags& outFlags) override;
  TError IMenuBarState_SetFlags(const TMenuBarFlags& inFlags) override;
  TError IMenuBarState_CountMenuItems(TMenu menu, std::uint32_t& outCount) override;
  TError IMenuBarState_GetMenuItems(TMenu menu, TMenuItem* outBuffer,
                                    std::uint32_t bufferSizeInBytes) override;
  TError IMenuBarState_SetMenuItems(TMenu menu, const TMenuItem* inBuffer,
                                    std::uint32_t bufferSizeInBytes) override;
  TError IMenuBarState_GetMenuTitle(TMenu menu, TChar* outTitle) override;
  TError IMenuBarState_SetMenuTitle(TMenu menu, const TChar* title) override;

  // A bad number throws std::invalid_argument.
  const TList& GetList(TMenu menu) const;
  // kMenu1 to kMenu6.
  const TString& GetTitle(TMenu menu) const;

  // Null for an empty list. Lists do not change once they are made, so that states can share them.
  using TListPtr = boost::shared_ptr<const TList>;
  TListPtr GetListPtr(TMenu menu) const { return fLists[menu]; }

  bool ShowHelpItem() const { return fShowHelpItem; }
  bool HelpItemEnabled() const { return fHelpItemEnabled; }
  bool QuitEnabled() const { return fQuitEnabled; }
  bool SecondMenuItemEnabled() const { return fSecondMenuItemEnabled; }
  bool ShowWindowMenu() const { return fShowWindowMenu; }

 protected:
  virtual TListPtr MakeList(TMenu menu, const TMenuItem* items, std::size_t count) const;

 private:
  bool CheckInvariant() const { return true; }
  bool HasSameLists(const CMenuBarState& other) const;

  std::array<TListPtr, kMenuCount> fLists;
  std::array<TString, kMenu6 - kMenu1 + 1> fTitles;
  bool fShowHelpItem = false;
  bool fHelpItemEnabled = false;
  bool fQuitEnabled = true;
  bool fSecondMenuItemEnabled = false;
  bool fShowWindowMenu = false;
  bool fReserved = true;  // compared and copied, and not reachable from outside
};

// A state that a client fills anew. It shares the menus that are as in `neighbour` or `last`, which have to
// outlive it: clients give the same items again and again, and for each window.
class CNextMenuBarState : public CMenuBarState {
 public:
  CNextMenuBarState(const CMenuBarState& neighbour, const CMenuBarState& last) : fModels{&neighbour, &last} {}

 private:
  TListPtr MakeList(TMenu menu, const TMenuItem* items, std::size_t count) const override;

  std::array<const CMenuBarState*, 2> fModels;
};

// Whether `menu` is below kMenuCount; another number is reported.
bool IsValidMenu(TMenu menu);
bool IsValidMenuBarFlags(const TMenuBarFlags& flags);

}  // namespace NSMorvane
