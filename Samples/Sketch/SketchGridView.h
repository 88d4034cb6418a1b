// The sheet and the grid on it, under the shapes.
#pragma once

#include <Morvane.h>
#include <MorvaneDefaults.h>

namespace NSSketch {

class CSketchCanvas;

class CSketchGridView : public NSMorvane::CDefaultViewBehavior {
 public:
  CSketchGridView(NSMorvane::IView&, const CSketchCanvas& canvas) : fCanvas(canvas) {}

  NSMorvane::TError IViewBehavior_Draw(NSMorvane::IDrawTools& tools) override;

 private:
  const CSketchCanvas& fCanvas;
};

}  // namespace NSSketch
