// The window of one document: its views and where they stand, what is done with the document's file, and the
// commands of the menus.
#pragma once

#include <Morvane.h>
#include <MorvaneDefaults.h>

#include <memory>
#include <string>

#include "SketchCanvas.h"
#include "SketchCommands.h"
#include "SketchDialogs.h"
#include "SketchEditor.h"
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

  const std::u16string& Path() const { return fPath; }
  CSketchEditor& Editor() { return fEditor; }
  NSMorvane::IWindow& Window() const { return NSMorvane::WindowOf(fWindow); }
  // Brings the window to the front.
  void Focus() { NSMorvane::ThrowIfFailed(fWindow.IDocumentWindow_FocusNow()); }
  // Whether a dialog of this window's, or of the application's, is to be answered first; or the window is on
  // its way out.
  bool IsBlocked() const;
  // Ends what is being done on the canvas; see there.
  void FinishAll() { fCanvas.FinishAll(); }
  // The application has another tool.
  void OnToolChanged();
  // Has the menu bar filled anew, if anything in it is different now.
  void UpdateMenus();

  // --- SketchWindowCommands.cpp
  bool IsCommandEnabled(TSketchCommand command) const override;
  bool IsCommandChecked(TSketchCommand command) const override;
  std::u16string TextOfCommand(TSketchCommand command, const std::u16string& text) const override;
  void Perform(TSketchCommand command) override;

  NSMorvane::TError IDocumentWindowBehavior_OnClientSizeChanged(const NSMorvane::TSize& oldSize,
                                                                const NSMorvane::TSize& newSize) override;
  NSMorvane::TError IDocumentWindowBehavior_OnActivationChanged(NSMorvane::TFlag active) override;
  NSMorvane::TError IDocumentWindowBehavior_HandleKeyDown(const NSMorvane::TKeyEvent& event,
                                                          NSMorvane::TFlag& outHandled) override;
  NSMorvane::TError IDocumentWindowBehavior_OnSetupMenuBar(NSMorvane::IMenuBarState& state) override;
  NSMorvane::TError IDocumentWindowBehavior_OnMenuCommand(const NSMorvane::TMenuCommandEvent& event,
                                                          NSMorvane::TFlag& outHandled) override;
  NSMorvane::TError IDocumentWindowBehavior_OnHelpRequested(NSMorvane::TFlag& outHandled) override;
  NSMorvane::TError IDocumentWindowBehavior_OnRequestClose(NSMorvane::TCloseReason reason) override;

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
  void ChooseTool(TSketchTool tool) override;
  const TShape& StyleOfNewShapes() override;

  // --- SketchWindowCommands.cpp
  void Copy();
  void Paste(const char* name, const std::vector<TShape>& shapes);
  void ShowSettingsDialog();

  // --- SketchWindowFile.cpp
  NSMorvane::IModalOwner* ModalOwner() const;
  TDialogPlace DialogPlace() const;
  // False if it was not saved; the user has been told why. A document without a file is not saved.
  bool Save();
  bool SaveTo(const std::u16string& path);
  void AskWhereToSave(bool thenClose);
  void SaveAs(const std::u16string& path, bool thenClose);
  void AskWhetherToSave(NSMorvane::TCloseReason reason);
  void Close();

  CSketchApplication& fApplication;
  NSMorvane::IMorvane& fMorvane;
  std::u16string fPath;
  std::u16string fName;
  CSketchEditor fEditor;
  CSketchCanvas fCanvas;
  NSMorvane::CViewOf<CSketchSidePanelView> fSidePanel;
  NSMorvane::CViewOf<CSketchPreviewView> fPreview;
  NSMorvane::CViewOf<CSketchStatusView> fStatus;
  std::u16string fMenuState;  // what the menu bar was made of
  bool fIsModified = false;   // as the title has it
  CSketchLife fLife;
};

// Whether nothing may be done in the window: a dialog is to be answered first, or it has been released.
bool IsBlockedWindow(NSMorvane::IWindow& window);

// Gives a new window its title, its least size, its first size (`ideal`, as far as the main monitor has room
// for it) and its place, a little below and to the right of the window before.
void SetUpWindow(NSMorvane::IMorvane& morvane, NSMorvane::IDocumentWindow& window,
                 const std::u16string& title, const NSMorvane::TSize& minimum, NSMorvane::TSize ideal);

}  // namespace NSSketch
