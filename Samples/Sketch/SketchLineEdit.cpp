#include "SketchLineEdit.h"

#include <algorithm>

namespace NSSketch {

namespace {

bool IsTrailing(char16_t c) { return c >= 0xDC00 && c < 0xE000; }

}  // namespace

void CSketchLineEdit::SetText(std::u16string_view text) {
  fText = text.substr(0, fMaxLength);
  SelectAll();
}

bool CSketchLineEdit::Insert(std::u16string_view text) {
  if (fText.size() - (SelectionEnd() - SelectionStart()) + text.size() > fMaxLength) return false;
  const std::size_t start = SelectionStart();
  fText.replace(start, SelectionEnd() - start, text);
  fCaret = fAnchor = start + text.size();
  return true;
}

void CSketchLineEdit::DeleteBackwards() {
  if (fCaret == fAnchor) fAnchor = Next(fCaret, true);
  Insert({});
}

void CSketchLineEdit::DeleteForwards() {
  if (fCaret == fAnchor) fAnchor = Next(fCaret, false);
  Insert({});
}

void CSketchLineEdit::Move(bool backwards, bool byWord, bool extend) {
  if (!extend && fCaret != fAnchor && !byWord)
    SetCaret(backwards ? SelectionStart() : SelectionEnd(), false);
  else
    SetCaret(byWord ? NextWord(fCaret, backwards) : Next(fCaret, backwards), extend);
}

void CSketchLineEdit::MoveToEnd(bool backwards, bool extend) {
  SetCaret(backwards ? 0 : fText.size(), extend);
}

void CSketchLineEdit::SetCaret(std::size_t position, bool extend) {
  fCaret = std::min(position, fText.size());
  if (!extend) fAnchor = fCaret;
}

void CSketchLineEdit::SelectAll() {
  fAnchor = 0;
  fCaret = fText.size();
}

// A pair of surrogates is one step.
std::size_t CSketchLineEdit::Next(std::size_t position, bool backwards) const {
  if (backwards ? position == 0 : position == fText.size()) return position;
  position += backwards ? static_cast<std::size_t>(-1) : 1;
  if (position > 0 && position < fText.size() && IsTrailing(fText[position]))
    position += backwards ? static_cast<std::size_t>(-1) : 1;
  return position;
}

std::size_t CSketchLineEdit::NextWord(std::size_t position, bool backwards) const {
  const auto isBlank = [this](std::size_t i) { return fText[i] == u' '; };
  if (backwards) {
    while (position > 0 && isBlank(position - 1)) --position;
    while (position > 0 && !isBlank(position - 1)) --position;
  } else {
    while (position < fText.size() && !isBlank(position)) ++position;
    while (position < fText.size() && isBlank(position)) ++position;
  }
  return position;
}

}  // namespace NSSketch
