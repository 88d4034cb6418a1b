// What lies above the shapes while one works on them: frames and handles of the selection, the rubber band,
// and the frame around a text that is being typed.
#pragma once

#include <Morvane.h>
#include <MorvaneDefaults.h>

namespace NSSketch {

class CSketchCanvas;

// How far frames and handles reach beyond a shape, in pixels of the window.
constexpr std::int32_t kOverlayReach = 7;

class CSketchOverlayView : public NSMorvane::CDefaultViewBehavior {
 public:
  CSketchOverlayView(NSMorvane::IView&, const CSketchCanvas& canvas) : fCanvas(canvas) {}

  NSMorvane::TError IViewBehavior_Draw(NSMorvane::IDrawTools& tools) override;

 private:
  void DrawSelection(HDC__* port) const;
  void DrawMark(HDC__* port) const;
  void DrawTextFrame(HDC__* port) const;

  const CSketchCanvas& fCanvas;
};

}  // namespace NSSketch
