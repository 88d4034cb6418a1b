// The line at the bottom of a window: name of the file, count of shapes, size of the canvas.
#pragma once

#include <Morvane.h>
#include <MorvaneDefaults.h>

#include <string>

#include "SketchDocument.h"

namespace NSSketch {

class CSketchStatusView : public NSMorvane::CDefaultViewBehavior {
 public:
  CSketchStatusView(NSMorvane::IView& view, const CSketchDocument& document, std::u16string name)
      : fView(view), fDocument(document), fName(std::move(name)) {}

  NSMorvane::TError IViewBehavior_Draw(NSMorvane::IDrawTools& tools) override;

 private:
  NSMorvane::IView& fView;
  const CSketchDocument& fDocument;
  std::u16string fName;
};

}  // namespace NSSketch
