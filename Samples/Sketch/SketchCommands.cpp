#include "SketchCommands.h"

#include <MorvaneDefaults.h>

namespace NSSketch {

using namespace NSMorvane;

namespace {

// An item; a line between items has no text.
struct TRow {
  TMenu fMenu;
  const char16_t* fText = u"";
  TSketchCommand fCommand = kCommandNone;
  TChar fKey = 0;
  std::uint32_t fModifiers = 0;
};

constexpr std::uint32_t kCtrl = kModifierControl;
constexpr std::uint32_t kCtrlShift = kModifierControl | kModifierShift;

constexpr TSketchCommand ToolCommand(TSketchTool tool) {
  return static_cast<TSketchCommand>(kCommandFirstTool + static_cast<std::uint32_t>(tool));
}

constexpr TMenu kMenuEdit = kMenu1;
constexpr TMenu kMenuShape = kMenu2;
constexpr TMenu kMenuView = kMenu3;
constexpr TMenu kMenuTools = kMenu4;

constexpr struct {
  TMenu fMenu;
  const char16_t* fText;
} kTitles[] = {
    {kMenuEdit, u"_Edit"}, {kMenuShape, u"_Shape"}, {kMenuView, u"_View"}, {kMenuTools, u"_Tools"}};

constexpr TRow kRows[] = {
    {kMenuApplication, u"_About Sketch", kCommandAbout, kKeyCharF1, 0},
    {kMenuDocument, u"_New", kCommandNew, u'n', kCtrl},
    {kMenuDocument, u"New _from Clipboard", kCommandNewFromClipboard, u'n', kCtrlShift},
    {kMenuDocument, u"_Open...", kCommandOpen, u'o', kCtrl},
    {kMenuDocument},
    {kMenuDocument, u"_Save", kCommandSave, u's', kCtrl},
    {kMenuDocument, u"Save _As...", kCommandSaveAs, u's', kCtrlShift},
    {kMenuDocument},
    {kMenuDocument, u"_Document Settings...", kCommandSettings, u'p', kCtrlShift},
    {kMenuEdit, u"_Undo", kCommandUndo, u'z', kCtrl},
    {kMenuEdit, u"_Redo", kCommandRedo, u'y', kCtrl},
    {kMenuEdit},
    {kMenuEdit, u"Cu_t", kCommandCut, u'x', kCtrl},
    {kMenuEdit, u"_Copy", kCommandCopy, u'c', kCtrl},
    {kMenuEdit, u"_Paste", kCommandPaste, u'v', kCtrl},
    {kMenuEdit, u"_Delete", kCommandDelete, kKeyCharDelete, 0},
    {kMenuEdit, u"Dup_licate", kCommandDuplicate, u'd', kCtrl},
    {kMenuEdit},
    {kMenuEdit, u"Select _All", kCommandSelectAll, u'a', kCtrl},
    {kMenuEdit, u"Select _None", kCommandSelectNone, u'a', kCtrlShift},
    {kMenuEdit, u"Select Ne_xt", kCommandSelectNext, kKeyCharTab, 0},
    {kMenuEdit, u"Select Pre_vious", kCommandSelectPrevious, kKeyCharTab, kModifierShift},
    {kMenuEdit},
    {kMenuEdit, u"_Mark Next", kCommandMarkNext, kKeyCharTab, kCtrl},
    {kMenuEdit, u"Mar_k Previous", kCommandMarkPrevious, kKeyCharTab, kCtrlShift},
    {kMenuEdit, u"Add _or Remove Marked", kCommandToggleMarked, u' ', kCtrl},
    {kMenuShape, u"Bring to _Front", kCommandToFront, u'f', kCtrl},
    {kMenuShape, u"Send to _Back", kCommandToBack, u'b', kCtrl},
    {kMenuShape},
    {kMenuShape, u"_Edit Points", kCommandPoints, kKeyCharF1 + 1, 0},
    {kMenuShape, u"_Properties", kCommandProperties, kKeyCharF1 + 3, 0},
    {kMenuView, u"Zoom _In", kCommandZoomIn, u'=', kCtrl},
    {kMenuView, u"Zoom _Out", kCommandZoomOut, u'-', kCtrl},
    {kMenuView, u"_Actual Size", kCommandActualSize, u'0', kCtrl},
    {kMenuView, u"_Fit in Window", kCommandFit, u'9', kCtrl},
    {kMenuView},
    {kMenuView, u"Show _Grid", kCommandGrid, u'g', kCtrl},
    {kMenuView, u"Tool _Palette", kCommandPalette, u't', kCtrl},
    {kMenuDebug, u"P_aint Everything", kCommandPaintAll},
    {kMenuDebug},
    {kMenuTools, u"_Select", ToolCommand(TSketchTool::kSelect), u'v', 0},
    {kMenuTools, u"_Line", ToolCommand(TSketchTool::kLine), u'l', 0},
    {kMenuTools, u"_Rectangle", ToolCommand(TSketchTool::kRectangle), u'r', 0},
    {kMenuTools, u"_Ellipse", ToolCommand(TSketchTool::kEllipse), u'e', 0},
    {kMenuTools, u"_Polyline", ToolCommand(TSketchTool::kPolyline), u'p', 0},
    {kMenuTools, u"_Text", ToolCommand(TSketchTool::kText), u't', 0},
};

// Keys of commands that have another one in the menus, or an item that is the library's.
constexpr TRow kMoreKeys[] = {{kMenuDocument, u"", kCommandClose, u'w', kCtrl},
                              {kMenuEdit, u"", kCommandRedo, u'z', kCtrlShift}};

constexpr TSketchCommand kContextOfShape[] = {
    kCommandCut,     kCommandCopy,   kCommandDuplicate, kCommandDelete, kCommandNone,
    kCommandToFront, kCommandToBack, kCommandNone,      kCommandPoints, kCommandProperties};
constexpr TSketchCommand kContextOfSheet[] = {kCommandPaste, kCommandSelectAll, kCommandNone,    kCommandFit,
                                              kCommandGrid,  kCommandNone,      kCommandSettings};

TKeyInterpretation ShortcutOf(const TRow& row) {
  TKeyInterpretation shortcut = {};
  shortcut.fKeyText[0] = row.fKey;
  shortcut.fModifiers.fKeys = row.fModifiers;
  return shortcut;
}

TMenuItem ItemOf(const TRow& row, const ISketchCommandTarget& target) {
  TMenuItem item = {};
  item.fCommand = row.fCommand;
  if (row.fCommand == kCommandNone) return item;
  CopyText(item.fText, target.TextOfCommand(row.fCommand, row.fText));
  item.fShortcut = ShortcutOf(row);
  if (target.IsCommandEnabled(row.fCommand)) item.fStateFlags |= kMenuItemEnabled;
  if (target.IsCommandChecked(row.fCommand)) item.fStateFlags |= kMenuItemChecked;
  return item;
}

const TRow& RowOf(TSketchCommand command) {
  for (const TRow& row : kRows)
    if (row.fCommand == command) return row;
  throw XFailed{kBadInputProgrammingError};
}

void AddRecentFiles(std::vector<TMenuItem>& items, const ISketchCommandTarget& target) {
  std::uint32_t command = kCommandFirstRecent;
  for (const std::u16string& text : target.TextsOfRecentFiles()) {
    if (command == kCommandFirstRecent) items.push_back(TMenuItem{});
    TMenuItem& item = items.emplace_back();
    item.fCommand = command++;
    CopyText(item.fText, text);
    item.fStateFlags = kMenuItemEnabled;
  }
}

}  // namespace

void FillMenuBar(IMenuBarState& state, const ISketchCommandTarget& target) {
  for (const TMenu menu :
       {kMenuApplication, kMenuDocument, kMenuEdit, kMenuShape, kMenuView, kMenuTools, kMenuDebug}) {
    std::vector<TMenuItem> items;
    for (const TRow& row : kRows)
      if (row.fMenu == menu) items.push_back(ItemOf(row, target));
    if (menu == kMenuDocument) AddRecentFiles(items, target);
    ThrowIfFailed(state.IMenuBarState_SetMenuItems(
        menu, items.data(), static_cast<std::uint32_t>(items.size() * sizeof(TMenuItem))));
  }
  for (const auto& title : kTitles) ThrowIfFailed(state.IMenuBarState_SetMenuTitle(title.fMenu, title.fText));
  TMenuBarFlags flags = {};
  flags.fQuitEnabled = 1;
  flags.fSecondMenuItemEnabled = 1;
  flags.fShowWindowMenu = 1;
  ThrowIfFailed(state.IMenuBarState_SetFlags(flags));
}

std::vector<TMenuItem> ContextItems(const ISketchCommandTarget& target, bool onShape) {
  std::vector<TMenuItem> items;
  const auto add = [&](TSketchCommand command) {
    items.push_back(command == kCommandNone ? TMenuItem{} : ItemOf(RowOf(command), target));
  };
  if (onShape)
    for (const TSketchCommand command : kContextOfShape) add(command);
  else
    for (const TSketchCommand command : kContextOfSheet) add(command);
  return items;
}

std::optional<TSketchCommand> CommandOfKey(IMorvane& morvane, const TKeyEvent& event, bool alsoPlain) {
  const auto isMeant = [&](const TRow& row) {
    TFlag meant = 0;
    return row.fKey != 0 && ((row.fModifiers & kModifierControl) != 0 || alsoPlain) &&
           morvane.IMorvane_CanKeyBeInterpretedAs(event.fPhysicalKey, event.fModifiers, ShortcutOf(row),
                                                  meant) == kOK &&
           meant == 1;
  };
  for (const TRow& row : kRows)
    if (isMeant(row)) return row.fCommand;
  for (const TRow& row : kMoreKeys)
    if (isMeant(row)) return row.fCommand;
  return std::nullopt;
}

std::u16string NameOfTool(TSketchTool tool) {
  return std::u16string(RowOf(ToolCommand(tool)).fText).substr(1);
}

char16_t LetterOfTool(TSketchTool tool) { return RowOf(ToolCommand(tool)).fKey; }

}  // namespace NSSketch
