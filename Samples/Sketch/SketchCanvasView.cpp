#include "SketchCanvasView.h"

#include <windows.h>

#include <algorithm>

#include "SketchCanvas.h"
#include "SketchCursors.h"
#include "SketchDrag.h"

namespace NSSketch {

using namespace NSMorvane;

namespace {

constexpr std::int32_t kPixelsPerNotch = 60;
constexpr std::int32_t kScrollByKey = 40;

bool Has(const TModifierKeys& modifiers, std::uint32_t bit) { return (modifiers.fKeys & bit) != 0; }

}  // namespace

CSketchCanvasView::~CSketchCanvasView() {
  if (!fDrag) return;
  fDrag->Forget();
  fCanvas.Morvane().IMorvane_ReleaseMouseCapture();
}

// --- Mouse

TError CSketchCanvasView::IViewBehavior_HandleClick(const TMouseEvent& event, TFlag& outHandled) {
  outHandled = 0;
  const bool isContext = event.fType == kMouseEventContextClick;
  const bool isPress = event.fType == kMouseEventClick || event.fType == kMouseEventDoubleClick;
  if (!isContext && !isPress) return kOK;
  outHandled = 1;
  return Guarded([&] {
    if (isContext) {
      fCanvas.Owner().ShowContextMenu(event.fPosition, !fCanvas.Editor().Selection().empty());
    } else if (event.fButtons == 2) {
      PressRight(event);
    } else {
      fCanvas.FinishText(true);
      Press(event);
    }
    return TError{kOK};
  });
}

void CSketchCanvasView::Press(const TMouseEvent& event) {
  // The system has the mouse while it moves the window.
  if (fDrag || ::GetCapture()) return;
  const TSketchPointer pointer = fCanvas.Pointer(event.fPosition, event.fModifiers);
  if (!fCanvas.Tool().Press(pointer, event.fType == kMouseEventDoubleClick)) return;
  if (fCanvas.Tool().HasGrabbed() && IsClick(event)) {
    fCanvas.Tool().Release(pointer);
    return;
  }
  auto drag = std::make_unique<CSketchDrag>(*this, event.fPosition);
  fDrag = drag.get();
  const TError error = fCanvas.Morvane().IMorvane_AllocateMouseCapture(&fCanvas.Window(), drag.get());
  if (error == kOK) static_cast<void>(drag.release());
  ThrowIfFailed(error);
}

// Whether the button went up again without a move. What the press has selected is shown before the wait.
bool CSketchCanvasView::IsClick(const TMouseEvent& event) {
  TNativeWindow window = {nullptr};
  ThrowIfFailed(fCanvas.Window().IWindow_GetNativeWindow(window));
  ::UpdateWindow(window.fHwnd);
  TClickDragResult result = kClickDragNotApplicable;
  ThrowIfFailed(fCanvas.Morvane().IMorvane_CheckForClickDragOperation(fCanvas.Window(), event, result));
  return result == kClickDragReleased;
}

// The right button selects what the menu, which comes when it goes up, is about.
void CSketchCanvasView::PressRight(const TMouseEvent& event) {
  if (fDrag) return;
  fCanvas.FinishText(true);
  fCanvas.Tool().Cancel();
  CSketchEditor& editor = fCanvas.Editor();
  const TSketchPointer pointer = fCanvas.Pointer(event.fPosition, event.fModifiers);
  const auto shape = ShapeAt(editor.Document(), pointer.fPosition, pointer.fSlack, editor.Measure());
  if (!shape)
    editor.Select({});
  else if (!editor.IsSelected(*shape))
    editor.Select({*shape});
}

TError CSketchCanvasView::IViewBehavior_OnMouseTracking(const TMouseTracking& event, TMousePhase phase,
                                                        TFlag& outHandled) {
  outHandled = phase == kMousePhaseNormal ? 1 : 0;
  if (outHandled == 0) return kOK;
  return Guarded([&] {
    const TSketchPointer pointer = fCanvas.Pointer(event.fState.fPosition, event.fState.fModifiers);
    fCanvas.Tool().Hover(pointer);
    fCanvas.Owner().OnPointerMoved(pointer.fPosition);
    return TError{kOK};
  });
}

TError CSketchCanvasView::IViewBehavior_OnMouseEnterExit(TFlag entered) {
  if (entered == 0) fCanvas.Owner().OnPointerMoved(std::nullopt);
  return kOK;
}

TSketchCursor CSketchCanvasView::CursorAt(const TMouseShapeRequest& request) const {
  return fCanvas.Tool().CursorAt(fCanvas.Pointer(request.fPosition, request.fModifiers));
}

IMouseShape* CSketchCanvasView::IViewBehavior_GetMouseShape(const TMouseShapeRequest& request,
                                                            TMousePhase phase, TFlag& outHandled,
                                                            TError& outError) {
  outError = kOK;
  outHandled = phase == kMousePhaseNormal ? 1 : 0;
  if (outHandled == 0) return nullptr;
  IMouseShape* shape = nullptr;
  outError = Guarded([&] {
    TError error = kOK;
    shape = MakeMouseShape(fCanvas.Morvane(), CursorAt(request), error);
    return error;
  });
  return shape;
}

// The wheel scrolls, with Shift sideways; with Control it zooms around the mouse.
TError CSketchCanvasView::IViewBehavior_OnMouseWheel(const TMouseWheelEvent& event, TFlag& outHandled) {
  outHandled = 1;
  return Guarded([&] {
    const std::int32_t distance = event.fDeltaNotches * kPixelsPerNotch;
    if (Has(event.fModifiers, kModifierControl)) {
      for (std::int32_t i = 0; i < std::abs(event.fDeltaNotches); ++i)
        fCanvas.ZoomTo(fCanvas.Viewport().NextZoom(event.fDeltaNotches > 0), event.fPosition);
    } else if (Has(event.fModifiers, kModifierShift)) {
      fCanvas.Scroll({distance, 0});
    } else {
      fCanvas.Scroll({0, distance});
    }
    return TError{kOK};
  });
}

bool CSketchCanvasView::ScrollWithDrag() { return fDrag && fDrag->Scroll(); }

// --- Keys

TError CSketchCanvasView::IViewBehavior_HandleKeyDown(const TKeyEvent& event, TFlag& outHandled) {
  outHandled = 0;
  return Guarded([&] {
    outHandled = Key(MeaningOf(fCanvas.Morvane(), event), event) ? 1 : 0;
    return TError{kOK};
  });
}

bool CSketchCanvasView::Key(const TSketchKey& key, const TKeyEvent& event) {
  if (key.fCharacter == kKeyEscape) return Escape();
  if (key.fCharacter == kKeyReturn && key.IsPlain()) return Return();
  const TRect& area = fCanvas.Viewport().Area();
  switch (key.fCharacter) {
    case kKeyCharUp:
    case kKeyCharDown:
    case kKeyCharLeft:
    case kKeyCharRight:
      return !fCanvas.TextEditing().IsActive() && !key.fAlt && ArrowKey(key);
    case kKeyCharPageUp:
    case kKeyCharPageDown:
      if (key.fShift)
        fCanvas.Scroll({key.fCharacter == kKeyCharPageUp ? WidthOf(area) : -WidthOf(area), 0});
      else
        fCanvas.Scroll({0, key.fCharacter == kKeyCharPageUp ? HeightOf(area) : -HeightOf(area)});
      return true;
    case kKeyCharF1 + 9:
      if (key.fShift) ShowMenuByKey();
      return key.fShift;
    default:
      if (event.fPhysicalKey.fVirtualKey != VK_APPS) return false;
      ShowMenuByKey();
      return true;
  }
}

// Moves the selection or the current point, with Shift by ten; with Control the selection's lower right
// corner. Without a selection, scrolls.
bool CSketchCanvasView::ArrowKey(const TSketchKey& key) {
  CSketchEditor& editor = fCanvas.Editor();
  const std::int32_t step = key.fShift ? 10 : 1;
  TSketchPoint move;
  if (key.fCharacter == kKeyCharUp || key.fCharacter == kKeyCharDown)
    move.fY = key.fCharacter == kKeyCharUp ? -step : step;
  else
    move.fX = key.fCharacter == kKeyCharLeft ? -step : step;
  if (editor.Selection().empty())
    return fCanvas.Scroll({-move.fX * kScrollByKey, -move.fY * kScrollByKey}) || true;
  if (fCanvas.IsEditingPoints() && !key.fControl) {
    fCanvas.MoveCurrentHandle(move);
    return true;
  }
  if (key.fControl) {
    editor.ChangeSelected("Resize", true, [&](TShape& shape) {
      TSketchRect frame = FrameOf(shape, editor.Measure());
      frame.fRight = std::max(frame.fRight + move.fX, frame.fLeft);
      frame.fBottom = std::max(frame.fBottom + move.fY, frame.fTop);
      shape = WithFrame(shape, frame, editor.Measure());
    });
  } else {
    editor.MoveSelected(move);
  }
  fCanvas.Reveal(editor.SelectionFrame());
  return true;
}

// One thing after the other: what is being done, the tool, the selection, the mark.
bool CSketchCanvasView::Escape() {
  if (fCanvas.TextEditing().IsActive())
    fCanvas.FinishText(false);
  else if (fCanvas.Tool().Cancel())
    ;
  else if (fCanvas.IsEditingPoints())
    fCanvas.EditPoints(false);
  else if (fCanvas.ToolKind() != TSketchTool::kSelect)
    fCanvas.Owner().ChooseTool(TSketchTool::kSelect);
  else if (!fCanvas.Editor().Selection().empty())
    fCanvas.Editor().Select({});
  else if (fCanvas.Editor().Mark())
    fCanvas.Editor().ClearMark();
  else
    return false;
  return true;
}

// Finishes what is being done. Otherwise: a tool makes its shape, a text is edited, another shape shows its
// properties.
bool CSketchCanvasView::Return() {
  const CSketchEditor& editor = fCanvas.Editor();
  if (fCanvas.TextEditing().IsActive())
    fCanvas.FinishText(true);
  else if (fCanvas.Tool().Finish())
    ;
  else if (fCanvas.IsEditingPoints())
    fCanvas.EditPoints(false);
  else if (fCanvas.ToolKind() != TSketchTool::kSelect)
    fCanvas.MakeShape();
  else if (editor.Selection().size() == 1 && editor.Shape(editor.Selection()[0]).fKind == TShapeKind::kText)
    fCanvas.EditText(editor.Selection()[0]);
  else if (!editor.Selection().empty())
    fCanvas.Owner().ShowProperties();
  else
    return false;
  return true;
}

void CSketchCanvasView::ShowMenuByKey() {
  fCanvas.FinishText(true);
  const bool onShape = !fCanvas.Editor().Selection().empty();
  const TSketchRect frame = fCanvas.Editor().SelectionFrame();
  const TRect& area = fCanvas.Viewport().Area();
  TPoint point = onShape ? fCanvas.Viewport().ToWindow(TSketchPoint{frame.fRight, frame.fBottom})
                         : fCanvas.Viewport().Middle();
  point = {std::clamp(point.fX, area.fLeft, std::max(area.fLeft, area.fRight - 1)),
           std::clamp(point.fY, area.fTop, std::max(area.fTop, area.fBottom - 1))};
  fCanvas.Owner().ShowContextMenu(point, onShape);
}

TError CSketchCanvasView::IViewBehavior_OnOnDutyFocusChanged(TFlag gained) {
  return Guarded([&] {
    fCanvas.SetOnDuty(gained == 1);
    return TError{kOK};
  });
}

}  // namespace NSSketch
