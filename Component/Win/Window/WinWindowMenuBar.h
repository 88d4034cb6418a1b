// The menu bar of a window: what it shows, and how the native bar is exchanged.
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
  // The native bar is destroyed with its window.
  ~CWinWindowMenuBar();

  // Builds the bar anew, unless it already shows this state and the current list of windows.
  void Show(const CMenuBarState& state);
  // Builds the bar in any case. A client that is told of the new size of the client area may come back here:
  // the build that began last wins.
  void Rebuild(const CMenuBarState& state);

  // False until the first build.
  bool IsThere() const { return fBar != nullptr; }
  const CMenuBarState& GetState() const { return fState; }
  // The item that a native command stands for. Null if the command is not one of the client's.
  const CMenuItem* FindClientItem(UINT command) const;

  HACCEL GetShortcuts() const { return fShortcuts; }
  // True if the message is one of the bar's shortcuts; the window has got its command then.
  bool TranslateShortcut(const MSG& message) const;

 private:
  // Empty unless the state asks for the window menu.
  std::vector<TWindowMenuItem> MakeWindowMenuItems(const CMenuBarState& state) const;
  void SetShortcuts(HACCEL table);
  void SetNativeBar(HMENU bar);
  void MoveFirstMenu(HMENU bar);
  void ReplaceMenu(int position, HMENU bar);

  const TWindowCore& fWindow;
  HMENU fBar = nullptr;           // stays the same once it is made
  HACCEL fShortcuts = nullptr;    // null if there are none
  std::vector<CMenuItem> fItems;  // the position plus 0xA000 is the native command
  CMenuBarState fState;
  std::vector<TWindowMenuItem> fWindowMenuItems;  // as of the last build
  std::uint32_t fBuilds = 0;
  bool fIsWhole = true;  // false while an exchange is under way or after it has failed
};

}  // namespace NSMorvane
