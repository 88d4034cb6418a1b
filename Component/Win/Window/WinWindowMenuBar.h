// The menu bar of a window: what it shows, and the exchange of that on the native window.
#pragma once

#include <windows.h>

#include <cstdint>
#include <vector>

#include "Component/Portable/Base/Scopes.h"
#include "Component/Portable/Menus/MenuBarState.h"
#include "Component/Win/Menus/MenuBarComposition.h"
#include "Component/Win/Window/WinWindowCore.h"

namespace NSMorvane {

class CWinWindowMenuBar : CNotCopied {
 public:
  explicit CWinWindowMenuBar(const TWindowCore& window) : fWindow(window) {}
  // The native bar goes with its window.
  ~CWinWindowMenuBar();

  // Builds the bar anew, unless it shows this state already, and the windows that there are.
  void Show(const CMenuBarState& state);
  // The same in any case. Whoever is told of the new size of the client area may come back here: the last
  // build that has begun stands.
  void Rebuild(const CMenuBarState& state);

  // False until the first build.
  bool IsThere() const { return fBar != nullptr; }
  // What it shows.
  const CMenuBarState& GetState() const { return fState; }
  // The item that a native command stands for. Null for a command that is none of the client's.
  const CMenuItem* FindClientItem(UINT command) const;

  HACCEL GetShortcuts() const { return fShortcuts; }
  // True if a message is one of the bar's shortcuts, whose command the window has got by then.
  bool TranslateShortcut(const MSG& message) const;

 private:
  // Empty unless the state asks for the window menu.
  std::vector<TWindowMenuItem> MakeWindowMenuItems(const CMenuBarState& state) const;
  void SetShortcuts(HACCEL table);
  void SetNativeBar(HMENU bar);
  void MoveFirstMenu(HMENU bar);
  void ReplaceMenu(int position, HMENU bar);

  const TWindowCore& fWindow;
  HMENU fBar = nullptr;           // the same object for good
  HACCEL fShortcuts = nullptr;    // null if there are none
  std::vector<CMenuItem> fItems;  // the position plus 0xA000 is the native command
  CMenuBarState fState;
  std::vector<TWindowMenuItem> fWindowMenuItems;  // as of the last build
  std::uint32_t fBuilds = 0;
  bool fIsWhole = true;  // false if an exchange has begun and not come to its end
};

}  // namespace NSMorvane
