#include "SketchTools.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>
#include <vector>

namespace NSSketch {

namespace {

constexpr TShapeKind kKinds[kSketchToolCount] = {TShapeKind::kLine,      TShapeKind::kLine,
                                                 TShapeKind::kRectangle, TShapeKind::kEllipse,
                                                 TShapeKind::kPolyline,  TShapeKind::kText};
constexpr const char* kNames[kSketchToolCount] = {"", "Line", "Rectangle", "Ellipse", "Polyline", "Text"};

TShape NewShape(TSketchTool tool, const TShape& style, std::vector<TSketchPoint> points) {
  TShape shape = style;
  shape.fKind = kKinds[static_cast<std::size_t>(tool)];
  shape.fPoints = std::move(points);
  shape.fText.clear();
  const TShape defaults;
  if (shape.fKind == TShapeKind::kText) shape.fWidth = defaults.fWidth;
  if (shape.fKind != TShapeKind::kText) shape.fSize = defaults.fSize;
  // A line would not be seen without an outline, and is never filled; a new polyline is a line of lines.
  const bool isLine = shape.fKind == TShapeKind::kLine || shape.fKind == TShapeKind::kPolyline;
  if (isLine) shape.fWidth = std::max(shape.fWidth, 1);
  if (isLine || shape.fKind == TShapeKind::kText) shape.fFill.reset();
  return shape;
}

TSketchCursor CursorOfHandle(THandleKind kind) {
  switch (kind) {
    case THandleKind::kTopLeft:
    case THandleKind::kBottomRight:
      return TSketchCursor::kSizeNWSE;
    case THandleKind::kTopRight:
    case THandleKind::kBottomLeft:
      return TSketchCursor::kSizeNESW;
    case THandleKind::kTop:
    case THandleKind::kBottom:
      return TSketchCursor::kSizeNS;
    case THandleKind::kLeft:
    case THandleKind::kRight:
      return TSketchCursor::kSizeWE;
    case THandleKind::kPoint:
      return TSketchCursor::kPoint;
  }
  return TSketchCursor::kArrow;
}

// --- Select: chooses, moves and pulls

class CSelectTool : public CSketchTool {
 public:
  CSelectTool(CSketchEditor& editor, ISketchToolHost& host) : fEditor(editor), fHost(host) {}

  TSketchCursor CursorAt(const TSketchPointer& pointer) const override {
    if (fMode == TMode::kMove) return TSketchCursor::kMove;
    if (fMode == TMode::kPull) return CursorOfHandle(fHandle.fKind);
    if (fMode == TMode::kBand) return TSketchCursor::kArrow;
    if (const auto handle = HandleAt(fEditor, pointer)) return CursorOfHandle(handle->fKind);
    return FindShape(pointer) ? TSketchCursor::kMove : TSketchCursor::kArrow;
  }

  bool Press(const TSketchPointer& pointer, bool isDouble) override {
    fStart = pointer.fPosition;
    fOnlyThis.reset();
    fBefore = fEditor.Selection();
    if (const auto handle = HandleAt(fEditor, pointer)) {
      fHandle = *handle;
      fMode = TMode::kPull;
      KeepShapes();
      return true;
    }
    const auto shape = FindShape(pointer);
    if (!shape) {
      fMode = TMode::kBand;
      fBase = pointer.fShift || pointer.fControl ? fEditor.Selection() : TShapeIndices();
      fEditor.Select(fBase);
      fBand = {fStart.fX, fStart.fY, fStart.fX, fStart.fY};
      return true;
    }
    if (isDouble && fEditor.Shape(*shape).fKind == TShapeKind::kText) {
      fHost.EditText(*shape);
      return false;
    }
    if (pointer.fShift || pointer.fControl) {
      fEditor.ToggleSelected(*shape);
      if (!fEditor.IsSelected(*shape)) return false;
    } else if (!fEditor.IsSelected(*shape)) {
      fEditor.Select({*shape});
    } else {
      fOnlyThis = shape;  // unless all of the selected ones are dragged
    }
    fMode = TMode::kMove;
    KeepShapes();
    return true;
  }

  bool HasGrabbed() const override { return fMode == TMode::kMove || fMode == TMode::kPull; }

  void Drag(const TSketchPointer& pointer) override {
    if (fMode == TMode::kBand) {
      DragBand(pointer);
    } else if (fMode != TMode::kNone) {
      if (!fEditor.IsInGesture()) {
        if (pointer.fPosition == fStart || fHasDragged) return;
        fEditor.BeginGesture(fMode == TMode::kMove ? "Move" : "Resize");
        fHasDragged = true;
      }
      if (fMode == TMode::kMove)
        DragShapes(pointer);
      else
        fEditor.ReplaceInGesture(fShapes[0].first,
                                 WithHandleAt(fShapes[0].second, fHandle, pointer.fPosition, pointer.fShift));
    }
  }

  void Release(const TSketchPointer& pointer) override {
    Drag(pointer);
    fEditor.EndGesture();
    if (fOnlyThis && !fHasDragged) fEditor.Select({*fOnlyThis});
    Leave();
  }

  bool Cancel() override {
    if (fMode == TMode::kNone) return false;
    fEditor.CancelGesture();
    fEditor.Select(fBefore);
    Leave();
    return true;
  }

  std::optional<TSketchRect> Band() const override {
    return fMode == TMode::kBand ? std::optional(fBand) : std::nullopt;
  }

 private:
  enum class TMode { kNone, kMove, kPull, kBand };

  std::optional<std::size_t> FindShape(const TSketchPointer& pointer) const {
    return ShapeAt(fEditor.Document(), pointer.fPosition, pointer.fSlack, fEditor.Measure());
  }

  // As they are before the drag; a drag starts from them each time, so that no rounding adds up.
  void KeepShapes() {
    fHasDragged = false;
    fShapes.clear();
    for (const std::size_t index : fEditor.Selection()) fShapes.emplace_back(index, fEditor.Shape(index));
  }

  void DragShapes(const TSketchPointer& pointer) {
    TSketchPoint move = {pointer.fPosition.fX - fStart.fX, pointer.fPosition.fY - fStart.fY};
    if (pointer.fShift) (std::abs(move.fX) < std::abs(move.fY) ? move.fX : move.fY) = 0;
    for (const auto& [index, shape] : fShapes) move = PossibleMove(shape, move);
    TPlacedShapes moved = fShapes;
    for (auto& [index, shape] : moved) shape = MovedBy(shape, move.fX, move.fY);
    fEditor.ReplaceInGesture(moved);
  }

  void DragBand(const TSketchPointer& pointer) {
    const std::vector<TSketchPoint> corners = BoxPoints(fStart, pointer.fPosition);
    const TSketchRect band = {corners[0].fX, corners[0].fY, corners[1].fX, corners[1].fY};
    fHost.OnBandChanged(std::exchange(fBand, band));
    fHost.OnBandChanged(fBand);
    TShapeIndices inside = fBase;
    for (std::size_t i = 0; i < fEditor.Document().Shapes().size(); ++i)
      if (LiesWithin(fEditor.Shape(i), fBand, fEditor.Measure())) inside.push_back(i);
    std::sort(inside.begin(), inside.end());
    inside.erase(std::unique(inside.begin(), inside.end()), inside.end());
    fEditor.Select(std::move(inside));
  }

  void Leave() {
    if (std::exchange(fMode, TMode::kNone) == TMode::kBand) fHost.OnBandChanged(fBand);
    fHasDragged = false;
  }

  CSketchEditor& fEditor;
  ISketchToolHost& fHost;
  TMode fMode = TMode::kNone;
  TSketchPoint fStart;
  TPlacedShapes fShapes;
  bool fHasDragged = false;
  std::optional<std::size_t> fOnlyThis;
  THandle fHandle;
  TShapeIndices fBefore;  // what was selected before the press
  TShapeIndices fBase;    // what stays selected with the rubber band
  TSketchRect fBand;
};

// --- Line, rectangle, ellipse: from one corner to the other

class CBoxTool : public CSketchTool {
 public:
  CBoxTool(TSketchTool tool, CSketchEditor& editor, ISketchToolHost& host)
      : fTool(tool), fEditor(editor), fHost(host) {}

  TSketchCursor CursorAt(const TSketchPointer&) const override {
    if (fTool == TSketchTool::kLine) return TSketchCursor::kPencil;
    return fTool == TSketchTool::kEllipse ? TSketchCursor::kCrosshair : TSketchCursor::kCross;
  }

  bool Press(const TSketchPointer& pointer, bool) override {
    if (!fEditor.HasRoomFor(1)) return false;
    fStart = pointer.fPosition;
    fIsDragging = true;
    fBefore = fEditor.Selection();
    fEditor.Select({});
    return true;
  }

  // Nothing is made before it has some size.
  void Drag(const TSketchPointer& pointer) override {
    const TSketchPoint point = pointer.fPosition;
    if (!fIsDragging) return;
    if (!fEditor.IsInGesture()) {
      if (std::hypot(point.fX - fStart.fX, point.fY - fStart.fY) < 3) return;
      fEditor.BeginGesture(NameOfNewShape(fTool));
      fEditor.InsertInGesture(ShapeTo(pointer));
    } else {
      fEditor.ReplaceInGesture(fEditor.Document().Shapes().size() - 1, ShapeTo(pointer));
    }
  }

  void Release(const TSketchPointer& pointer) override {
    Drag(pointer);
    const bool isMade = fEditor.IsInGesture();
    fEditor.EndGesture();
    fIsDragging = false;
    if (isMade) fHost.OnToolDone();
  }

  bool Cancel() override {
    if (!std::exchange(fIsDragging, false)) return false;
    fEditor.CancelGesture();
    fEditor.Select(fBefore);
    return true;
  }

 private:
  TShape ShapeTo(const TSketchPointer& pointer) const {
    const TShape point = NewShape(fTool, fHost.StyleOfNewShapes(), {fStart, fStart});
    const THandle handle = {fTool == TSketchTool::kLine ? THandleKind::kPoint : THandleKind::kBottomRight, 1,
                            fStart};
    return WithHandleAt(point, handle, pointer.fPosition, pointer.fShift);
  }

  const TSketchTool fTool;
  CSketchEditor& fEditor;
  ISketchToolHost& fHost;
  TSketchPoint fStart;
  TShapeIndices fBefore;  // what was selected before the press
  bool fIsDragging = false;
};

// --- Polyline: a point with each press; the last one follows the mouse

class CPolylineTool : public CSketchTool {
 public:
  CPolylineTool(CSketchEditor& editor, ISketchToolHost& host) : fEditor(editor), fHost(host) {}

  TSketchCursor CursorAt(const TSketchPointer&) const override { return TSketchCursor::kPen; }

  bool Press(const TSketchPointer& pointer, bool isDouble) override {
    if (!fEditor.IsInGesture()) {
      if (!fEditor.HasRoomFor(1)) return false;
      fPoints = {pointer.fPosition};
      fBefore = fEditor.Selection();
      fEditor.Select({});
      fEditor.BeginGesture("Polyline");
      fEditor.InsertInGesture(ShapeTo(pointer.fPosition));
    } else if (isDouble) {
      Finish();
    } else if (Placed(pointer) != fPoints.back() && fPoints.size() < kMaxPoints - 1) {
      fPoints.push_back(Placed(pointer));
      Hover(pointer);
    }
    return false;
  }

  void Hover(const TSketchPointer& pointer) override {
    if (fEditor.IsInGesture())
      fEditor.ReplaceInGesture(fEditor.Document().Shapes().size() - 1, ShapeTo(Placed(pointer)));
  }

  bool Finish() override {
    if (!fEditor.IsInGesture()) return false;
    if (fPoints.size() < 2) {
      fEditor.CancelGesture();  // with nothing selected: what comes next is not meant for other shapes
      return true;
    }
    TShape shape = NewShape(TSketchTool::kPolyline, fHost.StyleOfNewShapes(), fPoints);
    fEditor.ReplaceInGesture(fEditor.Document().Shapes().size() - 1, shape);
    fEditor.EndGesture();
    fHost.OnToolDone();
    return true;
  }

  bool Cancel() override {
    if (!fEditor.IsInGesture()) return false;
    fEditor.CancelGesture();
    fEditor.Select(fBefore);
    return true;
  }

 private:
  TSketchPoint Placed(const TSketchPointer& pointer) const {
    return pointer.fShift ? ConstrainedTo45(fPoints.back(), pointer.fPosition) : pointer.fPosition;
  }
  TShape ShapeTo(TSketchPoint last) const {
    std::vector<TSketchPoint> points = fPoints;
    points.push_back(last);
    return NewShape(TSketchTool::kPolyline, fHost.StyleOfNewShapes(), std::move(points));
  }

  CSketchEditor& fEditor;
  ISketchToolHost& fHost;
  std::vector<TSketchPoint> fPoints;
  TShapeIndices fBefore;  // what was selected before the first press
};

// --- Text: a new one, or the one that is there

class CTextTool : public CSketchTool {
 public:
  CTextTool(CSketchEditor& editor, ISketchToolHost& host) : fEditor(editor), fHost(host) {}

  TSketchCursor CursorAt(const TSketchPointer&) const override { return TSketchCursor::kText; }

  bool Press(const TSketchPointer& pointer, bool) override {
    const auto shape = ShapeAt(fEditor.Document(), pointer.fPosition, pointer.fSlack, fEditor.Measure());
    if (shape && fEditor.Shape(*shape).fKind == TShapeKind::kText)
      fHost.EditText(*shape);
    else
      fHost.EditNewText(pointer.fPosition);
    return false;
  }

 private:
  CSketchEditor& fEditor;
  ISketchToolHost& fHost;
};

}  // namespace

std::unique_ptr<CSketchTool> MakeSketchTool(TSketchTool tool, CSketchEditor& editor, ISketchToolHost& host) {
  switch (tool) {
    case TSketchTool::kSelect:
      return std::make_unique<CSelectTool>(editor, host);
    case TSketchTool::kPolyline:
      return std::make_unique<CPolylineTool>(editor, host);
    case TSketchTool::kText:
      return std::make_unique<CTextTool>(editor, host);
    default:
      return std::make_unique<CBoxTool>(tool, editor, host);
  }
}

const char* NameOfNewShape(TSketchTool tool) { return kNames[static_cast<std::size_t>(tool)]; }

TShape ShapeAround(TSketchTool tool, const TShape& style, TSketchPoint center) {
  constexpr std::int32_t kWidth = 60;  // to each side
  constexpr std::int32_t kHeight = 40;
  const TSketchPoint from = {center.fX - kWidth, center.fY - kHeight};
  const TSketchPoint to = {center.fX + kWidth, center.fY + kHeight};
  if (tool == TSketchTool::kText) return NewShape(tool, style, {from});
  if (tool == TSketchTool::kPolyline)
    return NewShape(tool, style,
                    {{from.fX, to.fY}, {center.fX - 20, from.fY}, {center.fX + 20, to.fY}, {to.fX, from.fY}});
  return NewShape(tool, style, {from, to});
}

std::optional<THandle> HandleAt(const CSketchEditor& editor, const TSketchPointer& pointer) {
  if (editor.Selection().size() != 1) return std::nullopt;
  const std::vector<THandle> handles = HandlesOf(editor.Shape(editor.Selection()[0]));
  // Of those that lie together the last one, which is drawn above the others.
  for (auto handle = handles.rbegin(); handle != handles.rend(); ++handle)
    if (std::abs(handle->fPosition.fX - pointer.fPosition.fX - pointer.fBeyondX) <= pointer.fSlack &&
        std::abs(handle->fPosition.fY - pointer.fPosition.fY - pointer.fBeyondY) <= pointer.fSlack)
      return *handle;
  return std::nullopt;
}

void MoveHandle(CSketchEditor& editor, std::size_t handle, TSketchPoint move) {
  if (editor.Selection().size() != 1) return;
  const TShape& shape = editor.Shape(editor.Selection()[0]);
  const std::vector<THandle> handles = HandlesOf(shape);
  if (handle >= handles.size()) return;
  const TSketchPoint from = handles[handle].fPosition;
  const TSketchPoint to = {from.fX + move.fX, from.fY + move.fY};
  const TShape moved = WithHandleAt(shape, handles[handle], to, false);
  if (moved == shape || HandlesOf(moved)[handle].fPosition != to) return;
  editor.ChangeSelected("Resize", true, [&](TShape& changed) { changed = moved; });
}

}  // namespace NSSketch
