// What the windows with a menu bar have in common, those of documents and those that only say why a file
// cannot be opened: the menu bar and its keys, the commands that need no document, dialogs, closing and
// quitting.
#pragma once

#include <Morvane.h>
#include <MorvaneDefaults.h>

#include <string>

#include "SketchCommands.h"

namespace NSSketch {

class CSketchApplication;
struct TDialogPlace;

class CSketchCommandWindow : public NSMorvane::CDefaultDocumentWindowBehavior, public ISketchCommandTarget {
 public:
  CSketchCommandWindow(NSMorvane::IDocumentWindow& window, NSMorvane::IMorvane& morvane,
                       CSketchApplication& application, const std::u16string& path);
  ~CSketchCommandWindow() override;

  // Of the file; empty for a document without one.
  const std::u16string& Path() const { return fPath; }
  NSMorvane::IWindow& Window() const { return NSMorvane::WindowOf(fWindow); }
  // Brings the window to the front.
  void Focus() { NSMorvane::ThrowIfFailed(fWindow.IDocumentWindow_FocusNow()); }
  // Whether nothing may be done in the window: a dialog of its own, or of the application's, is to be
  // answered first, or it is on its way out.
  bool IsBlocked() const;
  // Without a question.
  void Close() { NSMorvane::ThrowIfFailed(fWindow.IDocumentWindow_Release()); }

  bool IsCommandEnabled(TSketchCommand command) const override;
  bool IsCommandChecked(TSketchCommand) const override { return false; }
  std::u16string TextOfCommand(TSketchCommand, const std::u16string& text) const override { return text; }
  void Perform(TSketchCommand command) override;

  NSMorvane::TError IDocumentWindowBehavior_HandleKeyDown(const NSMorvane::TKeyEvent& event,
                                                          NSMorvane::TFlag& outHandled) override;
  NSMorvane::TError IDocumentWindowBehavior_OnSetupMenuBar(NSMorvane::IMenuBarState& state) override;
  NSMorvane::TError IDocumentWindowBehavior_OnMenuCommand(const NSMorvane::TMenuCommandEvent& event,
                                                          NSMorvane::TFlag& outHandled) override;
  NSMorvane::TError IDocumentWindowBehavior_OnHelpRequested(NSMorvane::TFlag& outHandled) override;
  NSMorvane::TError IDocumentWindowBehavior_OnRequestClose(NSMorvane::TCloseReason reason) override;

 protected:
  // The user wants to close it.
  virtual void RequestClose() { Close(); }
  TDialogPlace DialogPlace() const;

  NSMorvane::IMorvane& fMorvane;
  CSketchApplication& fApplication;
  std::u16string fPath;
};

// Gives a new window its title, its least size, and its first size: `ideal`, as far as the main monitor has
// room for it.
void SetUpWindow(NSMorvane::IMorvane& morvane, NSMorvane::IDocumentWindow& window,
                 const std::u16string& title, const NSMorvane::TSize& minimum, NSMorvane::TSize ideal);

}  // namespace NSSketch
