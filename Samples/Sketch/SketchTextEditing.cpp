#include "SketchTextEditing.h"

namespace NSSketch {

void CSketchTextEditing::Start(std::size_t index) {
  fIndex = index;
  fIsNew = false;
  fIsActive = true;
  fEditor.Select({index});
  fEditor.BeginGesture("Edit Text");
}

void CSketchTextEditing::StartNew(const TShape& shape) {
  fIndex = fEditor.Document().Shapes().size();
  fIsNew = true;
  fIsActive = true;
  fEditor.Select({});
  fEditor.BeginGesture("Text");
  fEditor.InsertInGesture(shape);
}

void CSketchTextEditing::SetText(const std::string& text) {
  if (!IsActive()) return;
  TShape shape = fEditor.Shape(fIndex);
  shape.fText = text;
  fEditor.ReplaceInGesture(fIndex, shape);
}

void CSketchTextEditing::Finish(bool keep) {
  if (!IsActive()) return;
  const bool isEmpty = fEditor.Shape(fIndex).fText.empty();
  fIsActive = false;
  if (keep && !isEmpty) {
    fEditor.EndGesture();
    return;
  }
  fEditor.CancelGesture();
  if (keep && !fIsNew) fEditor.RemoveSelected("Delete");
}

}  // namespace NSSketch
