#include "SketchEditor.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <utility>

namespace NSSketch {

namespace {

// The indices of the last `count` of `size` shapes.
TShapeIndices LastIndices(std::size_t count, std::size_t size) {
  TShapeIndices indices;
  for (std::size_t i = size - count; i < size; ++i) indices.push_back(i);
  return indices;
}

}  // namespace

CSketchEditor::CSketchEditor(std::unique_ptr<CSketchDocument> document, ISketchTextMeasure& measure)
    : fDocument(std::move(document)), fMeasure(measure) {}

void CSketchEditor::TellArea(const TSketchRect& area) {
  if (fListener) fListener->OnAreaChanged(area);
}

void CSketchEditor::TellState() {
  if (fListener) fListener->OnStateChanged();
}

// --- Selection

bool CSketchEditor::IsSelected(std::size_t index) const {
  return std::binary_search(fSelection.begin(), fSelection.end(), index);
}

void CSketchEditor::SetSelection(TShapeIndices indices) {
  SetMark(std::nullopt);
  std::sort(indices.begin(), indices.end());
  std::erase_if(indices, [&](std::size_t index) { return index >= fDocument->Shapes().size(); });
  TShapeIndices changed;
  std::set_symmetric_difference(fSelection.begin(), fSelection.end(), indices.begin(), indices.end(),
                                std::back_inserter(changed));
  fSelection = std::move(indices);
  for (const std::size_t index : changed)
    if (index < fDocument->Shapes().size()) TellArea(BoundsOf(Shape(index)));
}

void CSketchEditor::Select(TShapeIndices indices) {
  if (indices == fSelection) return;
  SetSelection(std::move(indices));
  fMergeable = false;
  TellState();
}

void CSketchEditor::SelectAll() {
  const std::size_t size = fDocument->Shapes().size();
  Select(LastIndices(size, size));
}

void CSketchEditor::ToggleSelected(std::size_t index) {
  TShapeIndices indices = fSelection;
  const auto place = std::lower_bound(indices.begin(), indices.end(), index);
  if (place != indices.end() && *place == index)
    indices.erase(place);
  else
    indices.insert(place, index);
  Select(std::move(indices));
}

// The shape behind the last one of these, around the end, or the one in front of the first.
std::size_t CSketchEditor::Neighbour(const TShapeIndices& indices, bool backwards) const {
  const std::size_t count = fDocument->Shapes().size();
  if (indices.empty()) return backwards ? count - 1 : 0;
  return backwards ? (indices.front() + count - 1) % count : (indices.back() + 1) % count;
}

void CSketchEditor::SelectNext(bool backwards) {
  if (!fDocument->Shapes().empty()) Select({Neighbour(fSelection, backwards)});
}

// --- The mark

void CSketchEditor::SetMark(std::optional<std::size_t> mark) {
  for (const auto& one : {std::exchange(fMark, mark), mark})
    if (one && *one < fDocument->Shapes().size()) TellArea(BoundsOf(Shape(*one)));
}

void CSketchEditor::MarkNext(bool backwards) {
  if (fDocument->Shapes().empty()) return;
  SetMark(Neighbour(fMark ? TShapeIndices{*fMark} : fSelection, backwards));
  TellState();
}

void CSketchEditor::ClearMark() {
  SetMark(std::nullopt);
  TellState();
}

void CSketchEditor::ToggleMarked() {
  if (!fMark) return;
  const std::size_t mark = *fMark;
  ToggleSelected(mark);
  SetMark(mark);
  TellState();
}

TSketchRect CSketchEditor::SelectionFrame() const {
  TSketchRect frame;
  for (const std::size_t index : fSelection) {
    const TSketchRect one = FrameOf(Shape(index), fMeasure);
    frame = index == fSelection.front() ? one : UnionOf(frame, one);
  }
  return frame;
}

// --- Changes

void CSketchEditor::Apply(TStep& step) {
  switch (step.fKind) {
    case TStep::TKind::kInsert:
      fDocument->InsertShape(step.fIndex, std::move(step.fEntry));
      step.fEntry = {};
      step.fKind = TStep::TKind::kRemove;
      TellArea(BoundsOf(Shape(step.fIndex)));
      break;
    case TStep::TKind::kRemove:
      step.fEntry = fDocument->RemoveShape(step.fIndex);
      step.fKind = TStep::TKind::kInsert;
      TellArea(BoundsOf(step.fEntry.fShape));
      break;
    case TStep::TKind::kReplace:
      step.fEntry.fShape = fDocument->ReplaceShape(step.fIndex, std::move(step.fEntry.fShape));
      TellArea(BoundsOf(step.fEntry.fShape));
      TellArea(BoundsOf(Shape(step.fIndex)));
      break;
    case TStep::TKind::kCanvas: {
      const TSketchSize size = std::exchange(step.fCanvasSize, fDocument->CanvasSize());
      const TSketchColor background = std::exchange(step.fBackground, fDocument->Background());
      fDocument->SetCanvasSize(size);
      fDocument->SetBackground(background);
      if (fListener) fListener->OnCanvasChanged();
      break;
    }
  }
}

void CSketchEditor::Do(const char* name, std::vector<TStep> steps, TShapeIndices selectionAfter) {
  if (IsInGesture()) EndGesture();
  auto edit = std::make_unique<TEdit>(TEdit{name, std::move(steps), fSelection, selectionAfter});
  for (TStep& step : edit->fSteps) Apply(step);
  Remember(std::move(edit));
  SetSelection(std::move(selectionAfter));
  TellState();
}

// Whatever could have been redone is gone.
void CSketchEditor::Remember(std::unique_ptr<TEdit> edit) {
  if (fSaved > fDone) fSaved = SIZE_MAX;
  fEdits.resize(fDone);
  fEdits.push_back(std::move(edit));
  ++fDone;
  fMergeable = false;
}

bool CSketchEditor::CanMerge(const char* name) const {
  return fMergeable && fDone > 0 && fDone == fEdits.size() && fDone != fSaved &&
         fEdits.back()->fName == name && fEdits.back()->fSelectionAfter == fSelection;
}

// The step that inserts a shape. One at the end goes behind the last comment of the file, given as `notes`.
CSketchEditor::TStep CSketchEditor::Insertion(std::size_t index, const TShape& shape, std::string notes) {
  return {TStep::TKind::kInsert, index, {shape, std::move(notes), {}}, {}, 0};
}

bool CSketchEditor::HasRoomFor(const std::vector<TShape>& shapes) const {
  std::size_t pixels = fDocument->CountOfPicturePixels();
  for (const TShape& shape : shapes) pixels += shape.fPicture.CountOfPixels();
  return HasRoomFor(shapes.size()) && pixels <= kMaxAllPicturePixels;
}

void CSketchEditor::Add(const char* name, const std::vector<TShape>& shapes) {
  if (shapes.empty() || !HasRoomFor(shapes)) return;
  std::vector<TStep> steps;
  std::size_t index = fDocument->Shapes().size();
  std::string notes = fDocument->FileParts().fEndNotes;
  for (const TShape& shape : shapes) steps.push_back(Insertion(index++, shape, std::exchange(notes, {})));
  Do(name, std::move(steps), LastIndices(shapes.size(), index));
}

void CSketchEditor::RemoveSelected(const char* name) {
  if (fSelection.empty()) return;
  std::vector<TStep> steps;
  for (auto index = fSelection.rbegin(); index != fSelection.rend(); ++index)
    steps.push_back({TStep::TKind::kRemove, *index, {}, {}, 0});
  Do(name, std::move(steps), {});
}

void CSketchEditor::MoveSelected(TSketchPoint move) {
  for (const std::size_t index : fSelection) move = PossibleMove(Shape(index), move);
  if (move == TSketchPoint{}) return;
  ChangeSelected("Move", true, [move](TShape& shape) { shape = MovedBy(shape, move.fX, move.fY); });
}

void CSketchEditor::ReorderSelected(bool toFront) {
  const std::size_t size = fDocument->Shapes().size();
  const std::size_t count = fSelection.size();
  const TShapeIndices after = LastIndices(count, toFront ? size : count);
  if (fSelection == after) return;
  // A shape that moves away leaves its comments where they are.
  std::vector<TStep> steps;
  std::vector<TShape> shapes;
  for (std::size_t i = count; i-- > 0;) {
    steps.push_back({TStep::TKind::kRemove, fSelection[i], {}, {}, 0});
    shapes.push_back(Shape(fSelection[i]));
  }
  for (std::size_t i = 0; i < count; ++i) steps.push_back(Insertion(after[i], shapes[count - 1 - i], {}));
  Do(toFront ? "Bring to Front" : "Send to Back", std::move(steps), after);
}

void CSketchEditor::ChangeSelected(const char* name, bool merge, const std::function<void(TShape&)>& change) {
  std::vector<TStep> steps;
  for (const std::size_t index : fSelection) {
    TShape shape = Shape(index);
    change(shape);
    if (shape != Shape(index)) steps.push_back({TStep::TKind::kReplace, index, {shape, {}, {}}, {}, 0});
  }
  if (steps.empty()) return;
  if (merge && CanMerge(name) && !IsInGesture()) {
    // The edit before already holds what was there at first; only shapes that it left alone are new to it.
    TEdit& edit = *fEdits.back();
    for (TStep& step : steps) {
      Apply(step);
      AddReplacement(edit, std::move(step));
    }
    TellState();
    return;
  }
  Do(name, std::move(steps), fSelection);
  fMergeable = merge;
}

void CSketchEditor::SetCanvas(TSketchSize size, TSketchColor background) {
  if (size == fDocument->CanvasSize() && background == fDocument->Background()) return;
  Do("Document Settings", {{TStep::TKind::kCanvas, 0, {}, size, background}}, fSelection);
}

// --- Gestures

void CSketchEditor::BeginGesture(const char* name) {
  fGesture = std::make_unique<TEdit>(TEdit{name, {}, fSelection, fSelection});
}

void CSketchEditor::InsertInGesture(const TShape& shape) {
  if (!fGesture) return;
  const std::size_t index = fDocument->Shapes().size();
  fGesture->fSteps.push_back(Insertion(index, shape, fDocument->FileParts().fEndNotes));
  Apply(fGesture->fSteps.back());
  fGesture->fSelectionAfter = {index};
  SetSelection({index});
  TellState();
}

void CSketchEditor::ReplaceInGesture(const TPlacedShapes& shapes) {
  if (!fGesture) return;
  bool isChanged = false;
  for (const auto& [index, shape] : shapes) {
    if (index >= fDocument->Shapes().size() || Shape(index) == shape) continue;
    TStep step = {TStep::TKind::kReplace, index, {shape, {}, {}}, {}, 0};
    Apply(step);
    AddReplacement(*fGesture, std::move(step));
    isChanged = true;
  }
  if (isChanged) TellState();
}

void CSketchEditor::AddReplacement(TEdit& edit, TStep step) {
  const auto place = std::lower_bound(edit.fSteps.begin(), edit.fSteps.end(), step.fIndex,
                                      [](const TStep& old, std::size_t index) { return old.fIndex < index; });
  if (place == edit.fSteps.end() || place->fIndex != step.fIndex) edit.fSteps.insert(place, std::move(step));
}

void CSketchEditor::EndGesture() {
  const std::unique_ptr<TEdit> gesture = std::move(fGesture);
  if (!gesture) return;
  std::erase_if(gesture->fSteps, [&](const TStep& step) {
    return step.fKind == TStep::TKind::kReplace && step.fEntry.fShape == Shape(step.fIndex);
  });
  if (!gesture->fSteps.empty()) Remember(std::make_unique<TEdit>(*gesture));
  TellState();
}

void CSketchEditor::CancelGesture() {
  const std::unique_ptr<TEdit> gesture = std::move(fGesture);
  if (!gesture) return;
  for (auto step = gesture->fSteps.rbegin(); step != gesture->fSteps.rend(); ++step) Apply(*step);
  SetSelection(gesture->fSelectionBefore);
  TellState();
}

// --- Undo

void CSketchEditor::Undo() {
  if (!CanUndo()) return;
  TEdit& edit = *fEdits[--fDone];
  for (auto step = edit.fSteps.rbegin(); step != edit.fSteps.rend(); ++step) Apply(*step);
  fMergeable = false;
  SetSelection(edit.fSelectionBefore);
  TellState();
}

void CSketchEditor::Redo() {
  if (!CanRedo()) return;
  TEdit& edit = *fEdits[fDone++];
  for (TStep& step : edit.fSteps) Apply(step);
  fMergeable = false;
  SetSelection(edit.fSelectionAfter);
  TellState();
}

void CSketchEditor::MarkSaved() {
  fSaved = fDone;
  TellState();
}

}  // namespace NSSketch
