// Native menus made from the portable descriptions of a client: menus, the builder of one level of them,
// texts with mnemonics, accelerator tables.
//
// All of it belongs to the main thread. A failed call of the system goes through CheckLastError.
#pragma once

#include <windows.h>

#include <boost/shared_ptr.hpp>
#include <memory>
#include <vector>

#include "Component/Portable/Base/Scopes.h"
#include "Component/Portable/Menus/MenuBarState.h"

namespace NSMorvane {

class IMorvane;

// --- Numbers of native items

enum : UINT {
  // Items of the client: the number minus the first is the position in the window's list of items.
  kFirstClientCommand = 0xA000,
  kLastClientCommand = 0xAFFF,
  kQuitCommand = 50001,
  kHelpItemCommand = kMenuCommandHelp,
  kSecondMenuItemCommand = kMenuCommandClose,
  kStayOnTopCommand = 60001,
  // Items of the window list: the number minus the first is the position in the list of all windows.
  kFirstWindowListCommand = 0xE000,
  kLastWindowListCommand = 0xE100
};

// --- Texts

// Converts the library's mark of a mnemonic, `_` (`__` for an underscore), into that of the system, `&`. Used
// for labels of buttons, too.
TString WinPrepareMnemonic(const TString& text);

// Doubles every `_` of a name, so that it marks no mnemonic.
TString EscapeMnemonics(const TString& name);

// --- Menus

// A native menu, which is destroyed at the end if it is owned. A submenu belongs to its parent menu.
class CMenu : CNotCopied {
 public:
  CMenu(HMENU menuHandle, bool ownsHandle);
  virtual ~CMenu();

  HMENU GetHandle() const { return fMenuHandle; }
  // The caller owns the menu from here on.
  HMENU Detach();

 private:
  HMENU fMenuHandle;
  bool fOwnsHandle;
};

class CMenuBar : public CMenu {
 public:
  CMenuBar() : CMenu(CreateMenu(), true) {}
};

class CPopupMenu : public CMenu {
 public:
  CPopupMenu() : CMenu(CreatePopupMenu(), true) {}
};

// --- The builder

// Fills one menu from top to bottom. Lives for one build, together with its child builders.
class CMenuBuilder : CNotCopied {
 public:
  // Makes a menu bar. Every client item that is added to it or to a submenu is also appended to `items`,
  // which must outlive the builder, and gets the number `firstCommand` plus its position there.
  CMenuBuilder(std::vector<CMenuItem>& items, UINT firstCommand);

  // The handle of the menu as far as it is filled. That of a submenu belongs to its parent menu.
  HMENU GetHandle() const { return fMenu->GetHandle(); }
  // The finished menu bar: the caller owns it from here on.
  HMENU Detach() { return fMenu->Detach(); }

  // In a menu bar the submenu is enabled. In any other menu it is greyed until it gets its first enabled
  // item. The new builder belongs to this one, and may be used until the next item or submenu is added here.
  CMenuBuilder& AddSubmenu(const TString& name);
  // Adds an item that is not listed as the client's. `nativeFlags` are MF_GRAYED and MF_CHECKED.
  void AddNativeItem(const TString& text, UINT command, UINT nativeFlags);
  // Puts a separator before the next item, unless that is the first one.
  void MarkSeparator();
  // Consecutive items with the same submenu name make one submenu. The names of shortcut keys come from the
  // application's texts.
  void AddMenuItem(IMorvane& application, const CMenuItem& item);
  void AddMenuItems(IMorvane& application, const std::vector<CMenuItem>& items);

 private:
  CMenuBuilder(CMenuBuilder& parent, HMENU popup);

  void Append(UINT nativeFlags, UINT_PTR commandOrSubmenu, const TString& text);
  // The mark of a mnemonic in the text is that of the system.
  void AppendItem(const TString& nativeText, UINT command, UINT nativeFlags);
  void FlushSeparator();
  void EnablePath();

  std::unique_ptr<CMenu> fMenu;
  CMenuBuilder* fParent;  // null at the root
  std::vector<boost::shared_ptr<CMenuBuilder>> fSubmenuBuilders;
  TString fLastSubmenuName;
  bool fSeparatorPending;
  std::vector<CMenuItem>& fItems;
  UINT fFirstCommand;
  UINT fNativeItemCount;
  bool fIsEnabled;  // the parent's item for this menu is enabled, and so on up
};

// --- Accelerators

// The shortcuts of all enabled items, with the numbers that a builder gave them; null if there are none. The
// caller owns the table.
HACCEL MakeAcceleratorTable(const std::vector<CMenuItem>& items, UINT firstCommand);

}  // namespace NSMorvane
