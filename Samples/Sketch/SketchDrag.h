// The mouse, while a tool is dragging: all of it goes to the tool until the button goes up, or the drag is
// given up with Escape or because another window has taken the mouse.
#pragma once

#include <Morvane.h>
#include <MorvaneDefaults.h>

#include "SketchCanvasView.h"

namespace NSSketch {

class CSketchDrag : public NSMorvane::CDefaultMouseCapture {
 public:
  CSketchDrag(CSketchCanvasView& view, const NSMorvane::TPoint& point) : fView(&view), fPoint(point) {}
  ~CSketchDrag() override;
  // The canvas has gone.
  void Forget() { fView = nullptr; }
  // A step towards the mouse, if that is beyond an edge. False if it is not.
  bool Scroll();

  NSMorvane::TError IMouseCapture_OnMouseUp(const NSMorvane::TMouseEvent& event) override;
  NSMorvane::TError IMouseCapture_OnMouseMove(const NSMorvane::TMouseTracking& event) override;
  NSMorvane::TError IMouseCapture_OnModifiersChanged(const NSMorvane::TModifierKeysEvent& previous,
                                                     const NSMorvane::TModifierKeysEvent& now) override;
  NSMorvane::TError IMouseCapture_OnMouseWheel(const NSMorvane::TMouseWheelEvent& event,
                                               NSMorvane::TFlag& outHandled) override;
  NSMorvane::TError IMouseCapture_OnKeyDown(const NSMorvane::TKeyEvent& event,
                                            NSMorvane::TFlag& outHandled) override;
  NSMorvane::IMouseShape* IMouseCapture_GetMouseShape(const NSMorvane::TMouseShapeRequest& request,
                                                      NSMorvane::TError& outError) override;

 private:
  NSMorvane::TPoint Beyond() const;
  void DragTo(const NSMorvane::TPoint& point, const NSMorvane::TModifierKeys& modifiers);

  CSketchCanvasView* fView;
  NSMorvane::TPoint fPoint;
  NSMorvane::TModifierKeys fModifiers = {0, 0};
};

}  // namespace NSSketch
