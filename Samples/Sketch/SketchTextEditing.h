// A text of the document that is being edited where it stands. It is a gesture of the editor: all that is
// typed is one step of undo.
#pragma once

#include "SketchEditor.h"
#include "SketchKeys.h"

namespace NSSketch {

class CSketchTextEditing {
 public:
  explicit CSketchTextEditing(CSketchEditor& editor);

  void Start(std::size_t index);
  void StartNew(const TShape& shape);
  // False also if another change has ended the gesture.
  bool IsActive() const { return fIsActive && fEditor.IsInGesture(); }
  std::size_t Index() const { return fIndex; }
  const CSketchLineEdit& Line() const { return fLine; }
  // A key that means something to the text.
  bool Key(const TSketchKey& key);
  // Puts the caret where a click was, told in document pixels from the start of the text.
  void Click(double distance, bool extend);
  // A text without letters goes away.
  void Finish(bool keep);

 private:
  CSketchEditor& fEditor;
  CSketchLineEdit fLine;
  std::size_t fIndex = 0;
  bool fIsNew = false;
  bool fIsActive = false;
};

}  // namespace NSSketch
