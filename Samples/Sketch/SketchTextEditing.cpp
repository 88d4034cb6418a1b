#include "SketchTextEditing.h"

#include <cmath>

#include "SketchGdi.h"
#include "SketchTextMeasure.h"

namespace NSSketch {

namespace {

constexpr std::size_t kMaxLength = kMaxTextBytes / 4;  // whatever the letters are, the file can hold them

}  // namespace

CSketchTextEditing::CSketchTextEditing(CSketchEditor& editor) : fEditor(editor), fLine(kMaxLength) {}

void CSketchTextEditing::Start(std::size_t index) {
  fIndex = index;
  fIsNew = false;
  fIsActive = true;
  fEditor.Select({index});
  fLine.SetText(TextFromUTF8(fEditor.Shape(index).fText));
  fEditor.BeginGesture("Edit Text");
}

void CSketchTextEditing::StartNew(const TShape& shape) {
  fIndex = fEditor.Document().Shapes().size();
  fIsNew = true;
  fIsActive = true;
  fLine.SetText({});
  fEditor.Select({});
  fEditor.BeginGesture("Text");
  fEditor.InsertInGesture(shape);
}

bool CSketchTextEditing::Key(const TSketchKey& key) {
  if (!EditWithKey(fLine, key)) return false;
  TShape shape = fEditor.Shape(fIndex);
  shape.fText = UTF8FromText(fLine.Text());
  fEditor.ReplaceInGesture(fIndex, shape);
  return true;
}

void CSketchTextEditing::Click(double distance, bool extend) {
  const std::int32_t size = fEditor.Shape(fIndex).fSize;
  std::size_t nearest = 0;
  double least = std::abs(distance);
  for (std::size_t i = 1; i <= fLine.Text().size(); ++i) {
    const double away = std::abs(distance - TextMeasure().WidthOfText(fLine.Text().substr(0, i), size));
    if (away < least) nearest = i;
    least = std::min(least, away);
  }
  fLine.SetCaret(nearest, extend);
}

void CSketchTextEditing::Finish(bool keep) {
  if (!IsActive()) return;
  fIsActive = false;
  const bool isEmpty = fLine.Text().empty();
  if (keep && !isEmpty) {
    fEditor.EndGesture();
    return;
  }
  fEditor.CancelGesture();
  if (keep && !fIsNew) fEditor.RemoveSelected("Delete");
}

}  // namespace NSSketch
