#include "SketchDrag.h"

#include <algorithm>

#include "SketchCanvas.h"
#include "SketchCursors.h"

namespace NSSketch {

using namespace NSMorvane;

namespace {

constexpr std::int32_t kScrollAtOnce = 24;

// How far to scroll when the mouse is beyond an edge.
std::int32_t StepBeyond(std::int32_t position, std::int32_t first, std::int32_t last) {
  return std::clamp(std::max(first - position, 0) - std::max(position - last + 1, 0), -kScrollAtOnce,
                    kScrollAtOnce);
}

}  // namespace

CSketchDrag::~CSketchDrag() {
  if (!fView) return;
  fView->fDrag = nullptr;
  Guarded([&] {  // does nothing after a release
    fView->fCanvas.Tool().Cancel();
    return TError{kOK};
  });
}

TPoint CSketchDrag::Beyond() const {
  const TRect area = fView->fCanvas.Viewport().Area();
  return {StepBeyond(fPoint.fX, area.fLeft, area.fRight), StepBeyond(fPoint.fY, area.fTop, area.fBottom)};
}

bool CSketchDrag::Scroll() {
  if (!fView) return false;
  const TPoint step = Beyond();
  if (step.fX == 0 && step.fY == 0) return false;
  if (fView->fCanvas.Scroll(step)) DragTo(fPoint, fModifiers);
  return true;
}

void CSketchDrag::DragTo(const TPoint& point, const TModifierKeys& modifiers) {
  fPoint = point;
  fModifiers = modifiers;
  CSketchCanvas& canvas = fView->fCanvas;
  if (const TPoint step = Beyond(); step.fX != 0 || step.fY != 0) canvas.Owner().OnDraggedBeyond();
  const TSketchPointer pointer = canvas.Pointer(point, modifiers);
  canvas.Owner().OnPointerMoved(pointer.fPosition);
  canvas.Tool().Drag(pointer);
}

TError CSketchDrag::IMouseCapture_OnMouseMove(const TMouseTracking& event) {
  return Guarded([&] {
    if (fView) DragTo(event.fState.fPosition, event.fState.fModifiers);
    return TError{kOK};
  });
}

// Shift constrains, at once and not with the next move.
TError CSketchDrag::IMouseCapture_OnModifiersChanged(const TModifierKeysEvent&,
                                                     const TModifierKeysEvent& now) {
  return Guarded([&] {
    if (fView) DragTo(fPoint, now.fModifiers);
    return TError{kOK};
  });
}

// The wheel scrolls or zooms as ever, and what is dragged stays at the mouse.
TError CSketchDrag::IMouseCapture_OnMouseWheel(const TMouseWheelEvent& event, TFlag& outHandled) {
  outHandled = 1;
  return Guarded([&] {
    if (!fView) return TError{kOK};
    ThrowIfFailed(fView->IViewBehavior_OnMouseWheel(event, outHandled));
    DragTo(event.fPosition, event.fModifiers);
    return TError{kOK};
  });
}

TError CSketchDrag::IMouseCapture_OnMouseUp(const TMouseEvent& event) {
  if (!fView || event.fButtons != 1) return kOK;
  CSketchCanvas& canvas = fView->fCanvas;
  const TError error = Guarded([&] {
    canvas.Tool().Release(canvas.Pointer(event.fPosition, event.fModifiers));
    return TError{kOK};
  });
  // The mouse is free again, whatever came of it. This drag goes with it.
  const TError released = canvas.Morvane().IMorvane_ReleaseMouseCapture();
  return error == kOK ? released : error;
}

// Escape gives up; no other key does anything meanwhile.
TError CSketchDrag::IMouseCapture_OnKeyDown(const TKeyEvent& event, TFlag& outHandled) {
  outHandled = 1;
  return Guarded([&] {
    if (!fView || MeaningOf(fView->fCanvas.Morvane(), event).fCharacter != kKeyEscape) return TError{kOK};
    fView->fCanvas.Tool().Cancel();
    return fView->fCanvas.Morvane().IMorvane_ReleaseMouseCapture();
  });
}

IMouseShape* CSketchDrag::IMouseCapture_GetMouseShape(const TMouseShapeRequest& request, TError& outError) {
  outError = kOK;
  if (!fView) return nullptr;
  IMouseShape* shape = nullptr;
  outError = Guarded([&] {
    TError error = kOK;
    shape = MakeMouseShape(fView->fCanvas.Morvane(), fView->CursorAt(request), error);
    return error;
  });
  return shape;
}

}  // namespace NSSketch
