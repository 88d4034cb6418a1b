// The canvas: the sheet with the document on a desk, in a buffer of its own, so that covering and uncovering
// the window, or scrolling, draws nothing twice.
//
//   canvas    buffered; what can be seen
//     desk      as large as what there is to see: desk, edge and shadow of the sheet. The canvas's only
//     subview
//       grid      the sheet and its grid
//       shapes    the shapes
//
// Scrolling is an IView_Offset of the desk: it moves the pixels inside the canvas's buffer.
#pragma once

#include <Morvane.h>
#include <MorvaneDefaults.h>

#include "SketchDocument.h"
#include "SketchGridView.h"

namespace NSSketch {

class CSketchDeskView : public NSMorvane::CDefaultViewBehavior {
 public:
  CSketchDeskView(NSMorvane::IView& view, const CSketchDocument& document)
      : fView(view), fDocument(document) {}

  NSMorvane::TError IViewBehavior_Draw(NSMorvane::IDrawTools& tools) override;

 private:
  NSMorvane::IView& fView;
  const CSketchDocument& fDocument;
};

class CSketchShapesView : public NSMorvane::CDefaultViewBehavior {
 public:
  CSketchShapesView(NSMorvane::IView& view, const CSketchDocument& document)
      : fView(view), fDocument(document) {}

  NSMorvane::TError IViewBehavior_Draw(NSMorvane::IDrawTools& tools) override;

 private:
  NSMorvane::IView& fView;
  const CSketchDocument& fDocument;
};

// The four views together. It belongs to the window's behaviour.
class CSketchCanvas {
 public:
  explicit CSketchCanvas(const CSketchDocument& document) : fDocument(document) {}

  // Throws XFailed.
  void Create(NSMorvane::IMorvane& morvane, NSMorvane::IView& superView);
  // Where the canvas stands in the window. The sheet is in the middle if there is room for it.
  void SetArea(const NSMorvane::TRect& area);

 private:
  const CSketchDocument& fDocument;
  NSMorvane::CViewOf<NSMorvane::CDefaultViewBehavior> fCanvasView;
  NSMorvane::CViewOf<CSketchDeskView> fDeskView;
  NSMorvane::CViewOf<CSketchGridView> fGridView;
  NSMorvane::CViewOf<CSketchShapesView> fShapesView;
};

}  // namespace NSSketch
