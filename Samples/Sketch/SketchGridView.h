// The grid on the sheet, under the shapes.
#pragma once

#include <Morvane.h>
#include <MorvaneDefaults.h>

#include "SketchDocument.h"

namespace NSSketch {

class CSketchGridView : public NSMorvane::CDefaultViewBehavior {
 public:
  CSketchGridView(NSMorvane::IView& view, const CSketchDocument& document)
      : fView(view), fDocument(document) {}

  NSMorvane::TError IViewBehavior_Draw(NSMorvane::IDrawTools& tools) override;

 private:
  NSMorvane::IView& fView;
  const CSketchDocument& fDocument;
};

}  // namespace NSSketch
