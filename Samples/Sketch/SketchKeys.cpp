#include "SketchKeys.h"

#include <MorvaneDefaults.h>

namespace NSSketch {

using namespace NSMorvane;

bool TSketchKey::IsLetter() const {
  return IsPlain() && fCharacter >= u' ' && fCharacter != kKeyCharDelete &&
         !(fCharacter >= kKeyCharF1 && fCharacter <= kKeyCharRight);
}

TSketchKey MeaningOf(IMorvane& morvane, const TKeyEvent& event) {
  TKeyInterpretation reading = {};
  if (morvane.IMorvane_GetDefaultInterpretation(event.fPhysicalKey, event.fModifiers, reading) != kOK)
    return {};
  const std::uint32_t keys = reading.fModifiers.fKeys;
  const bool isEnter = reading.fKeyText[0] == kKeyCharKeypadEnter;
  const char16_t character = isEnter ? char16_t{kKeyReturn} : reading.fKeyText[0];
  return {character, (keys & kModifierShift) != 0, (keys & kModifierControl) != 0,
          (keys & kModifierAlt) != 0};
}

bool EditWithKey(CSketchLineEdit& line, const TSketchKey& key) {
  if (key.fAlt) return false;
  switch (key.fCharacter) {
    case kKeyCharLeft:
    case kKeyCharRight:
      line.Move(key.fCharacter == kKeyCharLeft, key.fControl, key.fShift);
      return true;
    case kKeyCharHome:
    case kKeyCharEnd:
      line.MoveToEnd(key.fCharacter == kKeyCharHome, key.fShift);
      return true;
    case kKeyBackspace:
      line.DeleteBackwards();
      return true;
    case kKeyCharDelete:
      line.DeleteForwards();
      return true;
    default:
      if (key.fControl && key.fCharacter == u'a') {
        line.SelectAll();
        return true;
      }
      if (!key.IsLetter()) return false;
      line.Insert(std::u16string_view(&key.fCharacter, 1));
      return true;
  }
}

}  // namespace NSSketch
