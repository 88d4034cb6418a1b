// A document that is being worked on: what is selected, every change that can be made, and undo and redo. It
// knows nothing of windows, views or files.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "SketchDocument.h"
#include "SketchGeometry.h"

namespace NSSketch {

// Told what has changed, at once and after the change.
class ISketchEditorListener {
 public:
  // Shapes in this part of the sheet look different, or have become selected, or are no longer.
  virtual void OnAreaChanged(const TSketchRect& area) = 0;
  // The size of the canvas, or its background.
  virtual void OnCanvasChanged() = 0;
  // The selection, what can be undone, whether there are unsaved changes, or the shapes themselves.
  virtual void OnStateChanged() = 0;

 protected:
  virtual ~ISketchEditorListener() = default;
};

using TShapeIndices = std::vector<std::size_t>;  // ascending, none twice
using TPlacedShapes = std::vector<std::pair<std::size_t, TShape>>;

class CSketchEditor {
 public:
  CSketchEditor(std::unique_ptr<CSketchDocument> document, ISketchTextMeasure& measure);

  const CSketchDocument& Document() const { return *fDocument; }
  const TShape& Shape(std::size_t index) const { return fDocument->Shapes()[index].fShape; }
  ISketchTextMeasure& Measure() const { return fMeasure; }
  // Not owned; null for none.
  void SetListener(ISketchEditorListener* listener) { fListener = listener; }

  // --- Selection
  const TShapeIndices& Selection() const { return fSelection; }
  bool IsSelected(std::size_t index) const;
  void Select(TShapeIndices indices);
  void SelectAll();
  void ToggleSelected(std::size_t index);
  // The next shape in the order of drawing, around the end; or the one before.
  void SelectNext(bool backwards);
  // The shape that ToggleMarked is about, so that shapes can be chosen one by one without a mouse. It goes
  // with any other change of the selection, and with any of the document.
  std::optional<std::size_t> Mark() const { return fMark; }
  // Marks the next shape, or the one before. The first time it is the neighbour of what is selected.
  void MarkNext(bool backwards);
  void ToggleMarked();
  void ClearMark();
  // The box around everything selected, outlines aside.
  TSketchRect SelectionFrame() const;

  // --- Changes. Each is one step of undo. Those that are about the selection do nothing without one.
  // Whether the document can take so many shapes more: a file holds kMaxShapes.
  bool HasRoomFor(std::size_t count) const { return count <= kMaxShapes - fDocument->Shapes().size(); }
  // The same for these, whose pictures count, too.
  bool HasRoomFor(const std::vector<TShape>& shapes) const;
  // Puts shapes in front of all others and selects them. Nothing is done if there is no room for them.
  void Add(const char* name, const std::vector<TShape>& shapes);
  void RemoveSelected(const char* name);
  // Moves of the same selection, one directly after the other, are one step of undo.
  void MoveSelected(TSketchPoint move);
  // To the front, or to the back.
  void ReorderSelected(bool toFront);
  // Has `change` change each selected shape. Changes with the same name of the same selection, one directly
  // after the other, are one step of undo if `merge` says so.
  void ChangeSelected(const char* name, bool merge, const std::function<void(TShape&)>& change);
  void SetCanvas(TSketchSize size, TSketchColor background);

  // --- A change in progress, for a drag: a shape is inserted or shapes are replaced, as often as wanted, and
  // all of it together is one step of undo, or nothing. Any other change ends it first.
  void BeginGesture(const char* name);
  // Puts a shape in front of all others and selects it.
  void InsertInGesture(const TShape& shape);
  void ReplaceInGesture(const TPlacedShapes& shapes);
  void ReplaceInGesture(std::size_t index, const TShape& shape) { ReplaceInGesture({{index, shape}}); }
  void EndGesture();
  void CancelGesture();
  bool IsInGesture() const { return fGesture != nullptr; }

  // --- Undo
  bool CanUndo() const { return fDone > 0 && !IsInGesture(); }
  bool CanRedo() const { return fDone < fEdits.size() && !IsInGesture(); }
  // What would be undone or redone, as in "Move"; empty if nothing.
  std::string UndoName() const { return CanUndo() ? fEdits[fDone - 1]->fName : std::string(); }
  std::string RedoName() const { return CanRedo() ? fEdits[fDone]->fName : std::string(); }
  void Undo();
  void Redo();

  // Whether the document differs from what MarkSaved saw.
  bool IsModified() const { return fDone != fSaved; }
  void MarkSaved();

 private:
  // One change of the document. Applying it makes it its own reverse.
  struct TStep {
    enum class TKind { kInsert, kRemove, kReplace, kCanvas };
    TKind fKind;
    std::size_t fIndex = 0;
    TShapeEntry fEntry;
    TSketchSize fCanvasSize;
    TSketchColor fBackground = 0;
  };
  // What one undo takes back.
  struct TEdit {
    std::string fName;
    std::vector<TStep> fSteps;
    TShapeIndices fSelectionBefore;
    TShapeIndices fSelectionAfter;
  };

  // Adds a replacement to an edit, if that has not touched the shape yet. Its steps ascend by index.
  static void AddReplacement(TEdit& edit, TStep step);
  static TStep Insertion(std::size_t index, const TShape& shape, std::string notes);
  void Apply(TStep& step);
  void Do(const char* name, std::vector<TStep> steps, TShapeIndices selectionAfter);
  void Remember(std::unique_ptr<TEdit> edit);
  bool CanMerge(const char* name) const;
  void SetSelection(TShapeIndices indices);
  void SetMark(std::optional<std::size_t> mark);
  std::size_t Neighbour(const TShapeIndices& indices, bool backwards) const;
  void TellArea(const TSketchRect& area);
  void TellState();

  const std::unique_ptr<CSketchDocument> fDocument;
  ISketchTextMeasure& fMeasure;
  ISketchEditorListener* fListener = nullptr;
  TShapeIndices fSelection;
  std::optional<std::size_t> fMark;
  std::vector<std::unique_ptr<TEdit>> fEdits;
  std::size_t fDone = 0;    // how many of them are in the document
  std::size_t fSaved = 0;   // how many were, when it was saved; beyond reach if that cannot come back
  bool fMergeable = false;  // whether the last edit may grow
  std::unique_ptr<TEdit> fGesture;
};

}  // namespace NSSketch
