// The window of one document: its views, and where they stand.
#pragma once

#include <Morvane.h>
#include <MorvaneDefaults.h>

#include <memory>
#include <string>

#include "SketchCanvasView.h"
#include "SketchDocument.h"
#include "SketchPreviewView.h"
#include "SketchSidePanelView.h"
#include "SketchStatusView.h"
#include "SketchToolStripView.h"

namespace NSSketch {

class CSketchApplication;

class CSketchWindow : public NSMorvane::CDefaultDocumentWindowBehavior {
 public:
  // `path` is empty for a document without a file.
  CSketchWindow(NSMorvane::IDocumentWindow& window, NSMorvane::IMorvane& morvane,
                CSketchApplication& application, std::unique_ptr<CSketchDocument> document,
                const std::u16string& path, const std::u16string& name);
  ~CSketchWindow() override;

  const std::u16string& Path() const { return fPath; }
  // Brings the window to the front.
  NSMorvane::TError Focus() { return fWindow.IDocumentWindow_FocusNow(); }

  NSMorvane::TError IDocumentWindowBehavior_OnClientSizeChanged(const NSMorvane::TSize& oldSize,
                                                                const NSMorvane::TSize& newSize) override;

 private:
  void LayOut(const NSMorvane::TSize& clientSize);

  CSketchApplication& fApplication;
  const std::u16string fPath;
  const std::unique_ptr<CSketchDocument> fDocument;
  NSMorvane::CViewOf<CSketchToolStripView> fToolStrip;
  CSketchCanvas fCanvas;
  NSMorvane::CViewOf<CSketchSidePanelView> fSidePanel;
  NSMorvane::CViewOf<CSketchPreviewView> fPreview;
  NSMorvane::CViewOf<CSketchStatusView> fStatus;
};

// Gives a new window its title, its least size, its first size (`ideal`, as far as the main monitor has room
// for it) and its place, a little below and to the right of the window before.
void SetUpWindow(NSMorvane::IMorvane& morvane, NSMorvane::IDocumentWindow& window,
                 const std::u16string& title, const NSMorvane::TSize& minimum, NSMorvane::TSize ideal);

}  // namespace NSSketch
