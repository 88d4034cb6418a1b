// The tools, one button under the other.
#pragma once

#include <Morvane.h>
#include <MorvaneDefaults.h>

#include "SketchTools.h"

namespace NSSketch {

class CSketchToolStripView : public NSMorvane::CDefaultViewBehavior {
 public:
  explicit CSketchToolStripView(NSMorvane::IView& view) : fView(view) {}

  NSMorvane::TError IViewBehavior_Draw(NSMorvane::IDrawTools& tools) override;

 private:
  NSMorvane::IView& fView;
  TSketchTool fTool = TSketchTool::kSelect;
};

}  // namespace NSSketch
