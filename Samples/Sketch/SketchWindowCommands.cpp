// The commands of a document's window: which can be used, what they do, and the menus and keys they come
// from.
#include "SketchApplication.h"
#include "SketchClipboard.h"
#include "SketchDialogs.h"
#include "SketchFiles.h"
#include "SketchWindow.h"

namespace NSSketch {

using namespace NSMorvane;

namespace {

constexpr std::int32_t kShiftOfCopies = 10;

bool IsToolCommand(TSketchCommand command) {
  return command >= kCommandFirstTool && command < kCommandFirstTool + kSketchToolCount;
}

// Whether a shape that is made point by point can go on after the command. The tools see to it themselves.
bool LeavesShapesAlone(TSketchCommand command) {
  switch (command) {
    case kCommandAbout:
    case kCommandZoomIn:
    case kCommandZoomOut:
    case kCommandActualSize:
    case kCommandFit:
    case kCommandGrid:
    case kCommandPalette:
    case kCommandPaintAll:
      return true;
    default:
      return IsToolCommand(command);
  }
}

bool IsRecentFile(TSketchCommand command) {
  return command >= kCommandFirstRecent && command < kCommandFirstRecent + kMaxRecentFiles;
}

TSketchTool ToolOf(TSketchCommand command) { return static_cast<TSketchTool>(command - kCommandFirstTool); }

}  // namespace

// While a text is being typed its letters are no shortcuts, and the keys of the clipboard belong to the text.
bool CSketchWindow::IsCommandEnabled(TSketchCommand command) const {
  const bool isTyping = fCanvas.TextEditing().IsActive();
  const bool hasSelection = !fEditor.Selection().empty();
  if (IsToolCommand(command)) return !isTyping;
  switch (command) {
    case kCommandSave:
      return fEditor.IsModified() || fEditor.IsInGesture() || fPath.empty();
    case kCommandUndo:
      return fEditor.CanUndo();
    case kCommandRedo:
      return fEditor.CanRedo();
    case kCommandCut:
    case kCommandCopy:
    case kCommandDelete:
    case kCommandDuplicate:
    case kCommandToFront:
    case kCommandToBack:
    case kCommandSelectNone:
      return hasSelection && !isTyping;
    case kCommandPaste:
      return fApplication.CanPaste() && !isTyping;
    case kCommandNewFromClipboard:
      return fApplication.CanPaste();
    case kCommandToggleMarked:
      return fEditor.Mark() && !isTyping;
    case kCommandPoints:
      return fCanvas.CanEditPoints();
    case kCommandSelectAll:
    case kCommandMarkNext:
    case kCommandMarkPrevious:
      return !fEditor.Document().Shapes().empty() && !isTyping;
    case kCommandSelectNext:
    case kCommandSelectPrevious:
      return !fEditor.Document().Shapes().empty();
    case kCommandZoomIn:
    case kCommandZoomOut:
      return fCanvas.Viewport().NextZoom(command == kCommandZoomIn) != fCanvas.Viewport().Percent();
    default:
      return true;
  }
}

bool CSketchWindow::IsCommandChecked(TSketchCommand command) const {
  if (IsToolCommand(command)) return ToolOf(command) == fApplication.Tool();
  if (command == kCommandGrid) return fCanvas.IsGridShown();
  if (command == kCommandPoints) return fCanvas.IsEditingPoints();
  return command == kCommandPalette && fApplication.IsPaletteShown();
}

std::u16string CSketchWindow::TextOfCommand(TSketchCommand command, const std::u16string& text) const {
  if (command == kCommandUndo && fEditor.CanUndo()) return text + u" " + AsciiText(fEditor.UndoName());
  if (command == kCommandRedo && fEditor.CanRedo()) return text + u" " + AsciiText(fEditor.RedoName());
  if (command == kCommandSelectNext && fCanvas.IsEditingPoints()) return u"Ne_xt Point";
  if (command == kCommandSelectPrevious && fCanvas.IsEditingPoints()) return u"Pre_vious Point";
  return text;
}

// With a number as the key; an underscore of the name is doubled, as it is no mark of a key.
std::vector<std::u16string> CSketchWindow::TextsOfRecentFiles() const {
  std::vector<std::u16string> texts;
  for (const std::u16string& path : fApplication.RecentFiles()) {
    std::u16string text = u"_" + AsciiText(std::to_string(texts.size() + 1)) + u" ";
    for (const char16_t c : NameOfPath(path)) text.append(c == u'_' ? 2 : 1, c);
    texts.push_back(text);
  }
  return texts;
}

// Nothing else is done while the mouse is dragging.
void CSketchWindow::Perform(TSketchCommand command) {
  if (fCanvas.IsDragging()) return;
  if (LeavesShapesAlone(command))
    fCanvas.FinishText(true);
  else
    fCanvas.FinishAll();
  const CSketchViewport& viewport = fCanvas.Viewport();
  if (IsToolCommand(command)) {
    fApplication.ChooseTool(ToolOf(command));
    return;
  }
  if (IsRecentFile(command)) {
    fApplication.OpenRecentFile(command - kCommandFirstRecent);
    return;
  }
  switch (command) {
    case kCommandAbout:
      fApplication.ShowAbout();
      break;
    case kCommandNew:
      fApplication.OpenUntitled();
      break;
    case kCommandNewFromClipboard:
      fApplication.OpenFromClipboard();
      break;
    case kCommandOpen:
      fApplication.AskWhatToOpen(DialogPlace());
      break;
    case kCommandClose:
      if (!IsBlocked()) RequestClose();
      break;
    case kCommandSave:
      if (fPath.empty())
        AskWhereToSave(false);
      else
        Save();
      break;
    case kCommandSaveAs:
      AskWhereToSave(false);
      break;
    case kCommandUndo:
      fEditor.Undo();
      break;
    case kCommandRedo:
      fEditor.Redo();
      break;
    case kCommandCut:
      if (Copy()) fEditor.RemoveSelected("Cut");
      break;
    case kCommandCopy:
      Copy();
      break;
    case kCommandPaste:
      Paste("Paste", fApplication.ShapesToPaste());
      break;
    case kCommandDelete:
      fEditor.RemoveSelected("Delete");
      break;
    case kCommandDuplicate:
      Paste("Duplicate", SelectedShapes());
      break;
    case kCommandSelectAll:
      fEditor.SelectAll();
      break;
    case kCommandSelectNone:
      fEditor.Select({});
      break;
    case kCommandSelectNext:
    case kCommandSelectPrevious:
      if (fCanvas.IsEditingPoints()) {
        fCanvas.NextHandle(command == kCommandSelectPrevious);
      } else {
        fEditor.SelectNext(command == kCommandSelectPrevious);
        fCanvas.Reveal(fEditor.SelectionFrame());
      }
      break;
    case kCommandMarkNext:
    case kCommandMarkPrevious:
      fEditor.MarkNext(command == kCommandMarkPrevious);
      if (fEditor.Mark()) fCanvas.Reveal(FrameOf(fEditor.Shape(*fEditor.Mark()), fEditor.Measure()));
      break;
    case kCommandToggleMarked:
      fEditor.ToggleMarked();
      break;
    case kCommandPoints:
      fCanvas.EditPoints(!fCanvas.IsEditingPoints());
      break;
    case kCommandToFront:
    case kCommandToBack:
      fEditor.ReorderSelected(command == kCommandToFront);
      break;
    case kCommandProperties:
      fApplication.ShowProperties();
      break;
    case kCommandSettings:
      ShowSettingsDialog();
      break;
    case kCommandZoomIn:
    case kCommandZoomOut:
      fCanvas.ZoomTo(viewport.NextZoom(command == kCommandZoomIn), viewport.Middle());
      break;
    case kCommandActualSize:
      fCanvas.ZoomTo(100, viewport.Middle());
      break;
    case kCommandFit:
      fCanvas.ZoomTo(viewport.FittingZoom(), viewport.Middle());
      break;
    case kCommandGrid:
      fCanvas.ShowGrid(!fCanvas.IsGridShown());
      break;
    case kCommandPalette:
      fApplication.ShowPalette(!fApplication.IsPaletteShown());
      break;
    case kCommandPaintAll:
      Invalidate(RootViewOf(fWindow));
      break;
    default:
      break;
  }
}

std::vector<TShape> CSketchWindow::SelectedShapes() const {
  std::vector<TShape> shapes;
  for (const std::size_t index : fEditor.Selection()) shapes.push_back(fEditor.Shape(index));
  return shapes;
}

// False if that cannot be done now; the user has been told.
bool CSketchWindow::Copy() {
  const bool isCopied = CopyShapes(fMorvane, SelectedShapes(), fEditor.Document().Background());
  if (!isCopied)
    ShowAlert(DialogPlace(), kAlertCaution, u"The shapes were not copied.",
              u"Another program is using the clipboard. Try again.");
  fApplication.LookAtClipboard();
  return isCopied;
}

// A little beside what they are copies of.
void CSketchWindow::Paste(const char* name, const std::vector<TShape>& shapes) {
  if (shapes.empty()) {
    ShowNothingToPaste(DialogPlace());
    return;
  }
  if (!fEditor.HasRoomFor(shapes)) {
    ShowAlert(DialogPlace(), kAlertCaution, u"There is no room for these shapes.",
              u"A document holds " + AsciiText(std::to_string(kMaxShapes)) + u" shapes at most, with " +
                  AsciiText(std::to_string(kMaxAllPicturePixels)) + u" pixels in its pictures.");
    return;
  }
  TSketchPoint move = {kShiftOfCopies, kShiftOfCopies};
  for (const TShape& shape : shapes) move = PossibleMove(shape, move);
  std::vector<TShape> copies;
  for (const TShape& shape : shapes) copies.push_back(MovedBy(shape, move.fX, move.fY));
  fEditor.Add(name, copies);
  fCanvas.Reveal(fEditor.SelectionFrame());
}

void CSketchWindow::ShowSettingsDialog() {
  const CSketchDocument& document = fEditor.Document();
  ShowSettings(DialogPlace(), {document.CanvasSize(), document.Background(), fCanvas.IsGridShown()},
               fCallbacks.Bind([this](const TDocumentSettings& settings) {
                 fEditor.SetCanvas(settings.fCanvasSize, settings.fBackground);
                 if (settings.fShowGrid != fCanvas.IsGridShown()) fCanvas.ShowGrid(settings.fShowGrid);
               }));
}

// --- Menus and keys

// What has no place in the menus. Keys of items that cannot be chosen do nothing.
TError CSketchWindow::IDocumentWindowBehavior_HandleKeyDown(const TKeyEvent& event, TFlag& outHandled) {
  outHandled = 0;
  return Guarded([&] {
    const auto command = CommandOfKey(fMorvane, event);
    if (!command) return TError{kOK};
    outHandled = 1;
    if (IsCommandEnabled(*command)) Perform(*command);
    return TError{kOK};
  });
}

TError CSketchWindow::IDocumentWindowBehavior_OnSetupMenuBar(IMenuBarState& state) {
  return Guarded([&] {
    FillMenuBar(state, *this);
    return TError{kOK};
  });
}

TError CSketchWindow::IDocumentWindowBehavior_OnMenuCommand(const TMenuCommandEvent& event,
                                                            TFlag& outHandled) {
  outHandled = 1;
  return Guarded([&] {
    // It may have been chosen before a dialog came.
    if (!IsBlocked()) Perform(static_cast<TSketchCommand>(event.fCommand));
    return TError{kOK};
  });
}

TError CSketchWindow::IDocumentWindowBehavior_OnHelpRequested(TFlag& outHandled) {
  outHandled = 1;
  return Guarded([&] {
    if (!IsBlocked()) Perform(kCommandAbout);
    return TError{kOK};
  });
}

// The bars of all windows are filled when one asks, so this asks only for something new.
void CSketchWindow::UpdateMenus() {
  std::u16string state = TextOfCommand(kCommandUndo, {}) + u"|" + TextOfCommand(kCommandRedo, {});
  for (std::uint32_t command = kCommandNone; command < kCommandFirstTool + kSketchToolCount; ++command) {
    const auto one = static_cast<TSketchCommand>(command);
    state += static_cast<char16_t>(u'0' + (IsCommandEnabled(one) ? 1 : 0) + (IsCommandChecked(one) ? 2 : 0));
  }
  for (const std::u16string& text : TextsOfRecentFiles()) state += u'|' + text;
  if (state == fMenuState) return;
  fMenuState = state;
  fMorvane.IMorvane_RequestMenuBarsSetup();
}

void CSketchWindow::ShowContextMenu(const TPoint& point, bool onShape) {
  const std::vector<TMenuItem> items = ContextItems(*this, onShape);
  std::uint16_t selected = 0;
  TFlag isSelected = 0;
  ThrowIfFailed(fMorvane.IMorvane_DisplayContextualMenu(
      items.data(), static_cast<std::uint32_t>(items.size()), Window(), point, 0, selected, isSelected));
  if (isSelected == 1 && !IsBlocked()) Perform(static_cast<TSketchCommand>(items.at(selected).fCommand));
}

}  // namespace NSSketch
