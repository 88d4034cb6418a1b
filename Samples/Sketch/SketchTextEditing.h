// A text of the document that is being edited where it stands. It is a gesture of the editor: all that is
// typed is one step of undo.
#pragma once

#include <string>

#include "SketchEditor.h"

namespace NSSketch {

class CSketchTextEditing {
 public:
  // In units of UTF-16: whatever the letters are, the file can hold them.
  static constexpr std::size_t kMaxLength = kMaxTextBytes / 4;

  explicit CSketchTextEditing(CSketchEditor& editor) : fEditor(editor) {}

  void Start(std::size_t index);
  void StartNew(const TShape& shape);
  // False also if another change has ended the gesture.
  bool IsActive() const { return fIsActive && fEditor.IsInGesture(); }
  std::size_t Index() const { return fIndex; }
  void SetText(const std::string& text);
  // A text without letters goes away.
  void Finish(bool keep);

 private:
  CSketchEditor& fEditor;
  std::size_t fIndex = 0;
  bool fIsNew = false;
  bool fIsActive = false;
};

}  // namespace NSSketch
