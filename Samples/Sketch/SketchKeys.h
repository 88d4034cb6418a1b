// Keys, as views want them: what a press means, and what it does to a line that is being edited.
#pragma once

#include <Morvane.h>

#include <string>

#include "SketchLineEdit.h"

namespace NSSketch {

// What a key press means.
struct TSketchKey {
  char16_t fCharacter = 0;  // as in TKeyInterpretation::fKeyText; 0 for none, and for more than one
  bool fShift = false;      // what is held beyond what the character accounts for
  bool fControl = false;
  bool fAlt = false;
  std::u16string fText;  // what it writes into a text; empty for nothing
  bool IsPlain() const { return !fControl && !fAlt; }
  bool IsLetter() const { return IsPlain() && !fText.empty(); }
};

enum : char16_t { kKeyBackspace = 8, kKeyTab = 9, kKeyReturn = 13, kKeyEscape = 27 };

TSketchKey MeaningOf(NSMorvane::IMorvane& morvane, const NSMorvane::TKeyEvent& event);

// False if the key means nothing to a line of text.
bool EditWithKey(CSketchLineEdit& line, const TSketchKey& key);

}  // namespace NSSketch
