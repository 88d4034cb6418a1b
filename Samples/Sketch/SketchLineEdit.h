// One line of text that is being edited: the text, the caret, what is selected. The model behind text fields,
// number fields and texts on the canvas; it knows nothing of views or keys.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace NSSketch {

class CSketchLineEdit {
 public:
  explicit CSketchLineEdit(std::size_t maxLength = 1000) : fMaxLength(maxLength) {}

  const std::u16string& Text() const { return fText; }
  // Selects all of it, so that typing replaces it.
  void SetText(std::u16string_view text);
  // Positions are in front of the unit with that index.
  std::size_t Caret() const { return fCaret; }
  std::size_t SelectionStart() const { return fCaret < fAnchor ? fCaret : fAnchor; }
  std::size_t SelectionEnd() const { return fCaret < fAnchor ? fAnchor : fCaret; }
  std::u16string Selected() const {
    return fText.substr(SelectionStart(), SelectionEnd() - SelectionStart());
  }

  // In place of what is selected. False, with nothing changed, if the text would become too long.
  bool Insert(std::u16string_view text);
  // What is selected, or else the character before the caret, or behind it.
  void DeleteBackwards();
  void DeleteForwards();
  // To the next character, or word; to the start, or the end. `extend` selects on the way.
  void Move(bool backwards, bool byWord, bool extend);
  void MoveToEnd(bool backwards, bool extend);
  void SetCaret(std::size_t position, bool extend);
  void SelectAll();

 private:
  std::size_t Next(std::size_t position, bool backwards) const;
  std::size_t NextWord(std::size_t position, bool backwards) const;

  std::u16string fText;
  std::size_t fCaret = 0;
  std::size_t fAnchor = 0;  // the other end of what is selected
  const std::size_t fMaxLength;
};

}  // namespace NSSketch
