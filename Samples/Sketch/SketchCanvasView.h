// The input of the canvas: mouse, wheel, keys. What they mean to the document is the matter of the tool.
#pragma once

#include <Morvane.h>
#include <MorvaneDefaults.h>

#include "SketchKeys.h"
#include "SketchTools.h"

namespace NSSketch {

class CSketchCanvas;
class CSketchDrag;

class CSketchCanvasView : public NSMorvane::CDefaultHitViewBehavior {
 public:
  CSketchCanvasView(NSMorvane::IView& view, CSketchCanvas& canvas)
      : CDefaultHitViewBehavior(view), fCanvas(canvas) {}
  ~CSketchCanvasView() override;
  // Whether a tool has the mouse.
  bool IsDragging() const { return fDrag != nullptr; }
  bool ScrollWithDrag();

  NSMorvane::TError IViewBehavior_HandleClick(const NSMorvane::TMouseEvent& event,
                                              NSMorvane::TFlag& outHandled) override;
  NSMorvane::TError IViewBehavior_OnMouseTracking(const NSMorvane::TMouseTracking& event,
                                                  NSMorvane::TMousePhase phase,
                                                  NSMorvane::TFlag& outHandled) override;
  NSMorvane::TError IViewBehavior_OnMouseEnterExit(NSMorvane::TFlag entered) override;
  NSMorvane::IMouseShape* IViewBehavior_GetMouseShape(const NSMorvane::TMouseShapeRequest& request,
                                                      NSMorvane::TMousePhase phase,
                                                      NSMorvane::TFlag& outHandled,
                                                      NSMorvane::TError& outError) override;
  NSMorvane::TError IViewBehavior_OnMouseWheel(const NSMorvane::TMouseWheelEvent& event,
                                               NSMorvane::TFlag& outHandled) override;
  NSMorvane::TError IViewBehavior_HandleKeyDown(const NSMorvane::TKeyEvent& event,
                                                NSMorvane::TFlag& outHandled) override;
  NSMorvane::TError IViewBehavior_OnOnDutyFocusChanged(NSMorvane::TFlag gained) override;

 private:
  friend class CSketchDrag;

  void Press(const NSMorvane::TMouseEvent& event);
  void PressRight(const NSMorvane::TMouseEvent& event);
  bool IsClick(const NSMorvane::TMouseEvent& event);
  TSketchCursor CursorAt(const NSMorvane::TMouseShapeRequest& request) const;
  bool Key(const TSketchKey& key, const NSMorvane::TKeyEvent& event);
  bool ArrowKey(const TSketchKey& key);
  bool Escape();
  bool Return();
  void ShowMenuByKey();

  CSketchCanvas& fCanvas;
  CSketchDrag* fDrag = nullptr;  // the library's; null when no drag is going on
};

}  // namespace NSSketch
