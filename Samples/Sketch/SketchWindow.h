// The window of one document: its views and where they stand, what is done with the document's file, and the
// commands of the menus and keys.
#pragma once

#include <Morvane.h>
#include <MorvaneDefaults.h>

#include <memory>
#include <string>

#include "SketchCanvas.h"
#include "SketchCommands.h"
#include "SketchDialogs.h"
#include "SketchEditor.h"
#include "SketchFileDialogs.h"
#include "SketchPreviewView.h"
#include "SketchSidePanelView.h"
#include "SketchStatusView.h"

namespace NSSketch {

class CSketchApplication;

class CSketchWindow : public NSMorvane::CDefaultDocumentWindowBehavior,
                      public ISketchCommandTarget,
                      private ISketchEditorListener,
                      private ISketchCanvasOwner {
 public:
  // `path` is empty for a document without a file.
  CSketchWindow(NSMorvane::IDocumentWindow& window, NSMorvane::IMorvane& morvane,
                CSketchApplication& application, std::unique_ptr<CSketchDocument> document,
                const std::u16string& path, const std::u16string& name);
  ~CSketchWindow() override;

  // Of the file; empty for a document without one.
  const std::u16string& Path() const { return fPath; }
  NSMorvane::IWindow& Window() const { return NSMorvane::WindowOf(fWindow); }
  TDialogPlace DialogPlace() const;
  // Brings the window to the front.
  void Focus() { NSMorvane::ThrowIfFailed(fWindow.IDocumentWindow_FocusNow()); }
  // Whether nothing may be done in the window: a dialog of its own, or of the application's, is to be
  // answered first, or it is on its way out.
  bool IsBlocked() const;
  // Without a question.
  void Close() { NSMorvane::ThrowIfFailed(fWindow.IDocumentWindow_Release()); }

  CSketchEditor& Editor() { return fEditor; }
  // Ends what is being done on the canvas; see there.
  void FinishAll() { fCanvas.FinishAll(); }
  bool ScrollWithDrag() { return fCanvas.ScrollWithDrag(); }
  // The application has another tool.
  void OnToolChanged();
  // Has the menu bar filled anew, if anything in it is different now.
  void UpdateMenus();

  // --- SketchWindowCommands.cpp
  bool IsCommandEnabled(TSketchCommand command) const override;
  bool IsCommandChecked(TSketchCommand command) const override;
  std::u16string TextOfCommand(TSketchCommand command, const std::u16string& text) const override;
  std::vector<std::u16string> TextsOfRecentFiles() const override;
  void Perform(TSketchCommand command) override;
  NSMorvane::TError IDocumentWindowBehavior_HandleKeyDown(const NSMorvane::TKeyEvent& event,
                                                          NSMorvane::TFlag& outHandled) override;
  NSMorvane::TError IDocumentWindowBehavior_OnSetupMenuBar(NSMorvane::IMenuBarState& state) override;
  NSMorvane::TError IDocumentWindowBehavior_OnMenuCommand(const NSMorvane::TMenuCommandEvent& event,
                                                          NSMorvane::TFlag& outHandled) override;
  NSMorvane::TError IDocumentWindowBehavior_OnHelpRequested(NSMorvane::TFlag& outHandled) override;

  NSMorvane::TError IDocumentWindowBehavior_OnClientSizeChanged(const NSMorvane::TSize& oldSize,
                                                                const NSMorvane::TSize& newSize) override;
  NSMorvane::TError IDocumentWindowBehavior_OnActivationChanged(NSMorvane::TFlag active) override;

  // --- SketchWindowFile.cpp
  NSMorvane::TError IDocumentWindowBehavior_OnRequestClose(NSMorvane::TCloseReason reason) override;
  // Asks whether to save, if that is not known yet. True if quitting has to wait for an answer.
  bool AskBeforeQuitting();
  // Quitting was given up, and with it the answers.
  void ForgetAnswer() { fDiscarded.reset(); }

 private:
  void LayOut(const NSMorvane::TSize& clientSize);
  void Invalidate(NSMorvane::IView& view);

  void OnAreaChanged(const TSketchRect& area) override;
  void OnCanvasChanged() override;
  void OnStateChanged() override;
  void OnPointerMoved(std::optional<TSketchPoint> position) override;
  void OnCanvasStateChanged() override;
  void ShowContextMenu(const NSMorvane::TPoint& point, bool onShape) override;
  void ShowProperties() override;
  void OnDraggedBeyond() override;
  void ChooseTool(TSketchTool tool) override;
  const TShape& StyleOfNewShapes() override;

  // --- SketchWindowCommands.cpp
  std::vector<TShape> SelectedShapes() const;
  bool Copy();
  void Paste(const char* name, const std::vector<TShape>& shapes);
  void ShowSettingsDialog();

  // --- SketchWindowFile.cpp
  // The user wants to close it.
  void RequestClose();
  bool HasUnsavedChanges() const;
  // False if it was not saved; the user has been told why. A document without a file is not saved.
  bool Save() { return SaveTo(fPath); }
  bool SaveTo(const std::u16string& path);
  bool Write(const std::u16string& path, const std::string& bytes);
  void AskWhereToSave(bool thenClose);
  void SaveAs(const std::u16string& path, TSketchFileType type, bool thenClose);
  void ExportPicture(const std::u16string& path, TSketchFileType type);
  void AskWhetherToSave(NSMorvane::TCloseReason reason);
  void SaveAndClose();
  void DiscardAndClose();
  void GoOnClosing();
  void GiveUpClosing();

  NSMorvane::IMorvane& fMorvane;
  CSketchApplication& fApplication;
  std::u16string fPath;
  std::u16string fName;
  CSketchEditor fEditor;
  CSketchCanvas fCanvas;
  NSMorvane::CViewOf<CSketchSidePanelView> fSidePanel;
  NSMorvane::CViewOf<CSketchPreviewView> fPreview;
  NSMorvane::CViewOf<CSketchStatusView> fStatus;
  std::u16string fMenuState;                // what the menu bar was made of
  bool fIsModified = false;                 // as the title has it
  bool fIsAsking = false;                   // whether to save, or where
  std::optional<std::uint64_t> fDiscarded;  // the revision whose changes the user does not want to keep
  NSMorvane::CCallbackScope fCallbacks;
};

}  // namespace NSSketch
