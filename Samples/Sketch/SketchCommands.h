// The commands of Sketch: one table of menus, texts and shortcuts, from which the menu bar, the contextual
// menu and the meaning of keys in dialogs all come.
#pragma once

#include <Morvane.h>

#include <optional>
#include <string>
#include <vector>

#include "SketchTools.h"

namespace NSSketch {

enum TSketchCommand : std::uint32_t {
  kCommandNone = 0,
  kCommandAbout,
  kCommandNew,
  kCommandNewFromClipboard,
  kCommandOpen,
  kCommandSave,
  kCommandSaveAs,
  kCommandUndo,
  kCommandRedo,
  kCommandCut,
  kCommandCopy,
  kCommandPaste,
  kCommandDelete,
  kCommandDuplicate,
  kCommandSelectAll,
  kCommandSelectNone,
  kCommandSelectNext,
  kCommandSelectPrevious,
  kCommandMarkNext,
  kCommandMarkPrevious,
  kCommandToggleMarked,
  kCommandPoints,
  kCommandToFront,
  kCommandToBack,
  kCommandProperties,
  kCommandSettings,
  kCommandZoomIn,
  kCommandZoomOut,
  kCommandActualSize,
  kCommandFit,
  kCommandGrid,
  kCommandPalette,
  kCommandPaintAll,
  kCommandFirstTool = 100,    // one for each TSketchTool
  kCommandFirstRecent = 200,  // one for each of the recent files
  kCommandClose = 50016       // the library's own item of the second menu
};

// Who carries out commands: the window of a document.
class ISketchCommandTarget {
 public:
  virtual bool IsCommandEnabled(TSketchCommand command) const = 0;
  virtual bool IsCommandChecked(TSketchCommand command) const = 0;
  // The text of an item: as the table has it, unless the state of things has more to say.
  virtual std::u16string TextOfCommand(TSketchCommand command, const std::u16string& text) const = 0;
  // The items for the recent files, the last one first.
  virtual std::vector<std::u16string> TextsOfRecentFiles() const = 0;
  // Throws XFailed.
  virtual void Perform(TSketchCommand command) = 0;

 protected:
  virtual ~ISketchCommandTarget() = default;
};

// Fills a menu bar. Throws XFailed.
void FillMenuBar(NSMorvane::IMenuBarState& state, const ISketchCommandTarget& target);

// The items of the menu that a right click on a shape or on the sheet opens.
std::vector<NSMorvane::TMenuItem> ContextItems(const ISketchCommandTarget& target, bool onShape);

// The command whose shortcut a key press is. Windows without a menu bar ask this. Shortcuts without Control
// are those of a window in which nothing is typed: `alsoPlain`.
std::optional<TSketchCommand> CommandOfKey(NSMorvane::IMorvane& morvane, const NSMorvane::TKeyEvent& event,
                                           bool alsoPlain = false);

// What the user reads of a tool, and the letter that chooses it.
std::u16string NameOfTool(TSketchTool tool);
char16_t LetterOfTool(TSketchTool tool);

}  // namespace NSSketch
