// Desk and shapes: what the canvas shows of a document.
#pragma once

#include <Morvane.h>
#include <MorvaneDefaults.h>

#include "SketchDocument.h"
#include "SketchViewport.h"

namespace NSSketch {

// The desk around the sheet, with the sheet's edge and shadow.
class CSketchDeskView : public NSMorvane::CDefaultViewBehavior {
 public:
  CSketchDeskView(NSMorvane::IView&, const CSketchViewport& viewport) : fViewport(viewport) {}

  NSMorvane::TError IViewBehavior_Draw(NSMorvane::IDrawTools& tools) override;

 private:
  const CSketchViewport& fViewport;
};

class CSketchShapesView : public NSMorvane::CDefaultViewBehavior {
 public:
  CSketchShapesView(NSMorvane::IView&, const CSketchDocument& document, const CSketchViewport& viewport)
      : fDocument(document), fViewport(viewport) {}

  NSMorvane::TError IViewBehavior_Draw(NSMorvane::IDrawTools& tools) override;

 private:
  const CSketchDocument& fDocument;
  const CSketchViewport& fViewport;
};

}  // namespace NSSketch
