// Menu bars, described portably.
#pragma once

#include "MorvaneIcon.h"
#include "MorvaneKeyboard.h"
#include "MorvaneTypes.h"

namespace NSMorvane {

// The item lists of a menu bar. The client sets the titles of kMenu1 to kMenu6 only.
enum TMenu : std::uint32_t {
  kMenuApplication = 0,  // first menu; the library adds the quit item at its end
  kMenuDocument = 1,     // second menu; the library adds its own last item
  kMenu1 = 2,
  kMenu2 = 3,
  kMenu3 = 4,
  kMenu4 = 5,
  kMenu5 = 6,
  kMenu6 = 7,
  kMenuReserved8 = 8,  // stored, not shown on this platform
  kMenuHelp = 9,
  kMenuReserved10 = 10,  // stored, not shown on this platform
  kMenuWindow = 11,
  kMenuReserved12 = 12,  // stored, not shown on this platform
  kMenuDebug = 13        // shown before the library's items in the debug menu; see TDebugSettings
};

constexpr std::uint32_t kMenuCount = 14;

enum : std::size_t { kMenuTextChars = 255 };

// Bits of TMenuItem::fStateFlags.
enum : std::uint32_t { kMenuItemChecked = 1, kMenuItemEnabled = 2 };

// One item. In its text, `_` marks the next character as the mnemonic, and `__` is a literal underscore.
struct TMenuItem {
  TChar fSubmenuName[kMenuTextChars + 1];  // empty for none; consecutive items of one name form a submenu
  TChar fText[kMenuTextChars + 1];         // empty for a separator
  std::uint32_t fStateFlags;
  TKeyInterpretation fShortcut;  // fKeyText empty for none
  std::uint32_t fCommand;        // the client's own number
  IIcon* fIcon;                  // may be null; not owned by the record
};

// Flags of IMorvane_DisplayPopupMenu and IMorvane_DisplayContextualMenu.
enum : std::uint32_t { kPopupMenuLeftButtonOnly = 1 };  // the right mouse button does not choose an item

// A chosen menu item.
struct TMenuCommandEvent {
  std::uint32_t fCommand;
  TModifierKeys fModifiers;
};

// Commands of the library's own items. They reach IMorvaneRunBehavior_OnMenuCommand and the other command
// callbacks like the commands of the client. The library itself does nothing for them.
enum : std::uint32_t { kMenuCommandHelp = 50002, kMenuCommandClose = 50016 };

// At the start of a set-up fQuitEnabled is 1 and all others are 0.
struct TMenuBarFlags {
  TFlag fShowHelpItem;           // the last menu shows the library's item (kMenuCommandHelp)
  TFlag fHelpItemEnabled;        // that item is enabled
  TFlag fQuitEnabled;            // the quit item is enabled
  TFlag fSecondMenuItemEnabled;  // the library's item of the second menu (kMenuCommandClose) is enabled
  TFlag fShowWindowMenu;         // the window menu is shown
};

// The menu bar of one window while it is being filled. The library owns it; it is valid only during the
// callback that gets it.
//
// Every operation gives kBadInputProgrammingError and changes nothing if an argument is wrong. Buffer sizes
// are in bytes. Texts are cut to kMenuTextChars when they are read.
class IMenuBarState {
 public:
  virtual TError IMenuBarState_GetFlags(TMenuBarFlags& outFlags) = 0;
  virtual TError IMenuBarState_SetFlags(const TMenuBarFlags& inFlags) = 0;
  virtual TError IMenuBarState_CountMenuItems(TMenu menu, std::uint32_t& outCount) = 0;
  // `bufferSizeInBytes` must be the count of items times sizeof(TMenuItem). The state keeps the ownership of
  // the icons.
  virtual TError IMenuBarState_GetMenuItems(TMenu menu, TMenuItem* outBuffer,
                                            std::uint32_t bufferSizeInBytes) = 0;
  // Replaces the whole list. Icons are cloned. Size 0 empties the list.
  virtual TError IMenuBarState_SetMenuItems(TMenu menu, const TMenuItem* inBuffer,
                                            std::uint32_t bufferSizeInBytes) = 0;
  // kMenu1 to kMenu6 only. `outTitle` has room for kMenuTextChars + 1 characters.
  virtual TError IMenuBarState_GetMenuTitle(TMenu menu, TChar* outTitle) = 0;
  virtual TError IMenuBarState_SetMenuTitle(TMenu menu, const TChar* title) = 0;

 protected:
  virtual ~IMenuBarState() = default;
};

}  // namespace NSMorvane
