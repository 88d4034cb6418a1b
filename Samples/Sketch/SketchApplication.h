// The application: opens documents and knows their windows, and has what all of them share: the current tool,
// how new shapes look, what was copied, the palette, and the dialog of properties.
#pragma once

#include <Morvane.h>
#include <MorvaneDefaults.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "SketchDebugging.h"
#include "SketchFileDialogs.h"
#include "SketchRecentFiles.h"
#include "SketchTools.h"

namespace NSSketch {

class CSketchPalette;
class CSketchPropertiesDialog;
class CSketchWindow;

class CSketchApplication : public NSMorvane::CDefaultApplication {
 public:
  explicit CSketchApplication(NSMorvane::IMorvane& morvane);

  NSMorvane::TError IMorvaneRunBehavior_OnQuitEvent() override;
  NSMorvane::TError IMorvaneRunBehavior_OnNoDocument(NSMorvane::TNoDocumentKind kind) override;
  NSMorvane::TError IMorvaneRunBehavior_OnOpenURL(const char* url) override;
  NSMorvane::TError IMorvaneRunBehavior_OnAppActivation(NSMorvane::TFlag active) override;
  NSMorvane::TError IMorvaneRunBehavior_OnAppMessage(std::uint32_t message, std::uint32_t rounds) override;
  NSMorvane::TError IMorvaneRunBehavior_OnUnhandledError(NSMorvane::TError error) override;

  // --- Documents. Everything that does something throws XFailed.
  void OpenUntitled(std::unique_ptr<CSketchDocument> document = std::make_unique<CSketchDocument>());
  // With what is on the clipboard, on a sheet of its size.
  void OpenFromClipboard();
  // Tells the user why, if that cannot be done.
  void OpenFile(const std::u16string& path);
  // What the document menu offers, the last one first.
  const std::vector<std::u16string>& RecentFiles() const { return fRecentFiles.Paths(); }
  void OpenRecentFile(std::size_t index);
  // The file at a full path was opened or saved.
  void NoteRecentFile(const std::u16string& path);
  void AskWhatToOpen(const TDialogPlace& place);
  // The file dialogs; virtual for a program that drives Sketch and answers them. The answer comes later.
  virtual void ShowOpenDialog(const TDialogPlace& place, TOnPath onChosen);
  virtual void ShowSaveDialog(const TDialogPlace& place, TSaveQuestion question);
  // The window that shows the file at a full path, other than `except`; null if there is none.
  CSketchWindow* WindowOfFile(const std::u16string& path, const CSketchWindow* except = nullptr) const;
  // Called by each window with a document, when it comes and when it goes, and when it becomes active.
  void AddWindow(CSketchWindow& window);
  void RemoveWindow(CSketchWindow& window);
  void SetFront(CSketchWindow& window);
  // The document that palette and properties are about; null if there is none.
  CSketchWindow* Front() const { return fFront; }
  void FocusFront();
  // A document, a selection or the style of new shapes has changed.
  void OnDocumentChanged(const CSketchWindow& window);
  // Carries out the command of the front document whose shortcut a key is; see CommandOfKey. False if it is
  // none.
  bool PerformShortcut(const NSMorvane::TKeyEvent& event, bool alsoPlain = false);

  // --- Quitting. The library asks the windows to close, front first. None does before all documents have
  // been asked, so that everything is as it was if the user gives up.
  bool IsQuitting() const;
  // A window is asked to close: `close` is called if the user asks, else the application is quitting. The
  // window is null for the palette and the properties.
  NSMorvane::TError OnRequestClose(NSMorvane::TCloseReason reason, CSketchWindow* window,
                                   const std::function<void()>& close);
  // To be called after each answer.
  void GoOnQuitting();
  // Does nothing if the application is not quitting.
  void StopQuitting();
  // Has a window scroll on while its ScrollWithDrag says so.
  void KeepScrolling(CSketchWindow& window);

  // --- What all documents share
  TSketchTool Tool() const { return fTool; }
  void ChooseTool(TSketchTool tool);
  TShape& Style() { return fStyle; }

  // --- The clipboard. It is looked at when it may have changed: when the user comes back, or copies.
  void LookAtClipboard();
  bool CanPaste() const { return fCanPaste; }
  // Each time a little beside those of the last time, as long as the same is on the clipboard.
  std::vector<TShape> ShapesToPaste();

  // --- Other windows
  bool IsPaletteShown() const { return fPalette != nullptr; }
  void ShowPalette(bool shown);
  void OnPaletteClosed(const CSketchPalette& palette);
  // To be called whenever a document becomes active, or no longer is.
  void KeepPaletteAbove();
  void ShowProperties();
  void OnPropertiesClosed(const CSketchPropertiesDialog& properties);
  void ShowAbout();
  // The middle of where they are to appear: inside the document in front, at its left, where there is no menu
  // and no title, and at its right. The palette's size is that of its frame.
  NSMorvane::TPoint PlaceOfPalette(const NSMorvane::TSize& size) const;
  NSMorvane::TPoint PlaceOfProperties(const NSMorvane::TSize& size) const;

 private:
  TDialogPlace PlaceOfAlert() const;
  NSMorvane::TRect FrontFrame() const;
  NSMorvane::TError ScrollOn();
  void UpdateMenus();

  const std::unique_ptr<CSketchDebugging> fDebugging;  // null for users
  std::vector<CSketchWindow*> fWindows;
  CSketchWindow* fFront = nullptr;
  CSketchWindow* fQuitWindow = nullptr;  // the last one that was asked to close by quitting
  CSketchWindow* fScrolling = nullptr;   // the one that scrolls with a drag
  NSMorvane::CTimer fScrollTimer;
  std::uint32_t fUntitledCount = 0;  // so far
  CSketchRecentFiles fRecentFiles;
  TSketchTool fTool = TSketchTool::kSelect;
  TShape fStyle;
  bool fCanPaste = false;
  std::uint32_t fPasted = 0;                       // the system's number of what was pasted last
  std::int32_t fPasteCount = 0;                    // how often
  CSketchPalette* fPalette = nullptr;              // its window's
  CSketchPropertiesDialog* fProperties = nullptr;  // its window's
  bool fIsReporting = false;                       // that something failed
  bool fWantsPalette = true;                       // it comes with the first document
};

}  // namespace NSSketch
