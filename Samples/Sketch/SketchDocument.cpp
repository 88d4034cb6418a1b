#include "SketchDocument.h"

#include <algorithm>
#include <numeric>
#include <stdexcept>
#include <utility>

namespace NSSketch {

TSketchRect BoundsOf(const TShape& shape) {
  if (shape.fPoints.empty()) return {};
  const TSketchPoint first = shape.fPoints.front();
  TSketchRect bounds = {first.fX, first.fY, first.fX, first.fY};
  for (const TSketchPoint& point : shape.fPoints) {
    bounds.fLeft = std::min(bounds.fLeft, point.fX);
    bounds.fTop = std::min(bounds.fTop, point.fY);
    bounds.fRight = std::max(bounds.fRight, point.fX);
    bounds.fBottom = std::max(bounds.fBottom, point.fY);
  }
  if (shape.fKind == TShapeKind::kText) {
    // No letter is wider or higher than two times its size, and a letter has one byte or more.
    const auto letters = static_cast<std::int32_t>(shape.fText.size());
    const auto lines =
        static_cast<std::int32_t>(std::count(shape.fText.begin(), shape.fText.end(), '\n')) + 1;
    const std::int32_t overhang = shape.fSize;
    return {bounds.fLeft - overhang, bounds.fTop - overhang,
            bounds.fRight + 2 * shape.fSize * letters + overhang, bounds.fBottom + 2 * shape.fSize * lines};
  }
  const std::int32_t outline = shape.fWidth / 2 + 1;
  return {bounds.fLeft - outline, bounds.fTop - outline, bounds.fRight + outline + 1,
          bounds.fBottom + outline + 1};
}

void CSketchDocument::SetCanvasSize(TSketchSize size) {
  fCanvasSize = size;
  ++fRevision;
}

void CSketchDocument::SetBackground(TSketchColor color) {
  fBackground = color;
  ++fRevision;
}

std::vector<TShape> CSketchDocument::CopyOfShapes() const {
  std::vector<TShape> shapes;
  for (const TShapeEntry& entry : fShapes) shapes.push_back(entry.fShape);
  return shapes;
}

std::size_t CSketchDocument::CountOfKind(TShapeKind kind) const {
  return static_cast<std::size_t>(
      std::count_if(fShapes.begin(), fShapes.end(),
                    [kind](const TShapeEntry& entry) { return entry.fShape.fKind == kind; }));
}

std::size_t CSketchDocument::CountOfPicturePixels() const {
  return std::accumulate(
      fShapes.begin(), fShapes.end(), std::size_t{0},
      [](std::size_t sum, const TShapeEntry& entry) { return sum + entry.fShape.fPicture.CountOfPixels(); });
}

// The comments in front of a shape, or those at the end.
std::string& CSketchDocument::NotesAt(std::size_t index) {
  return index < fShapes.size() ? fShapes[index].fNotes : fFileParts.fEndNotes;
}

void CSketchDocument::AppendShape(TShape shape) {
  fShapes.push_back({std::move(shape), std::move(fFileParts.fEndNotes), {}});
  fFileParts.fEndNotes.clear();
  ++fRevision;
}

void CSketchDocument::InsertShape(std::size_t index, TShapeEntry entry) {
  if (index > fShapes.size()) throw std::out_of_range("InsertShape");
  // Comments that stayed behind when the shape was removed are in front of it again.
  const std::size_t notesLength = entry.fNotes.size();
  const bool stayed = NotesAt(index).starts_with(entry.fNotes);
  fShapes.insert(fShapes.begin() + static_cast<std::ptrdiff_t>(index), std::move(entry));
  if (stayed) NotesAt(index + 1).erase(0, notesLength);
  ++fRevision;
}

TShapeEntry CSketchDocument::RemoveShape(std::size_t index) {
  TShapeEntry removed = fShapes.at(index);
  NotesAt(index + 1).insert(0, removed.fNotes);
  fShapes.erase(fShapes.begin() + static_cast<std::ptrdiff_t>(index));
  ++fRevision;
  return removed;
}

TShape CSketchDocument::ReplaceShape(std::size_t index, TShape shape) {
  std::swap(fShapes.at(index).fShape, shape);
  ++fRevision;
  return shape;
}

}  // namespace NSSketch
