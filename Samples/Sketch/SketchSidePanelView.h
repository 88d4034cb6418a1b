// The panel at the right of a window, around the preview: headings, and what the document is made of.
#pragma once

#include <Morvane.h>
#include <MorvaneDefaults.h>

#include "SketchDocument.h"

namespace NSSketch {

class CSketchSidePanelView : public NSMorvane::CDefaultViewBehavior {
 public:
  CSketchSidePanelView(NSMorvane::IView& view, const CSketchDocument& document)
      : fView(view), fDocument(document) {}

  NSMorvane::TError IViewBehavior_Draw(NSMorvane::IDrawTools& tools) override;

  // Where the preview stands in a panel.
  static NSMorvane::TRect PreviewRect(const NSMorvane::TRect& panel, const CSketchDocument& document);

 private:
  NSMorvane::IView& fView;
  const CSketchDocument& fDocument;
};

}  // namespace NSSketch
