// The line at the bottom of a window: name of the file, where the mouse is, zoom, count of shapes, size of
// the canvas.
#pragma once

#include <Morvane.h>
#include <MorvaneDefaults.h>

#include <optional>
#include <string>
#include <utility>

#include "SketchEditor.h"

namespace NSSketch {

class CSketchStatusView : public NSMorvane::CDefaultViewBehavior {
 public:
  CSketchStatusView(NSMorvane::IView& view, const CSketchEditor& editor, const std::u16string& name)
      : fView(view), fEditor(editor), fName(name) {}

  // False if that is what the line says already. The caller has the view drawn again.
  bool SetPosition(std::optional<TSketchPoint> position) {
    return std::exchange(fPosition, position) != position;
  }
  bool SetZoom(int percent) { return std::exchange(fZoom, percent) != percent; }

  NSMorvane::TError IViewBehavior_Draw(NSMorvane::IDrawTools& tools) override;

 private:
  NSMorvane::IView& fView;
  const CSketchEditor& fEditor;
  const std::u16string& fName;
  std::optional<TSketchPoint> fPosition;
  int fZoom = 100;
};

}  // namespace NSSketch
