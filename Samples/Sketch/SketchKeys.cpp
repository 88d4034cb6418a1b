#include "SketchKeys.h"

#include <windows.h>

#include <MorvaneDefaults.h>

#include <algorithm>

namespace NSSketch {

using namespace NSMorvane;

namespace {

bool IsWritten(char16_t c) {
  return c >= u' ' && c != kKeyCharDelete && !(c >= kKeyCharF1 && c <= kKeyCharRight);
}

// Readings know nothing of Caps Lock, which turns letters with two forms around.
void ApplyCapsLock(std::u16string& text) {
  if ((::GetKeyState(VK_CAPITAL) & 1) == 0) return;
  std::u16string other = text;
  ::CharUpperBuffW(reinterpret_cast<wchar_t*>(other.data()), static_cast<DWORD>(other.size()));
  if (other == text)
    ::CharLowerBuffW(reinterpret_cast<wchar_t*>(other.data()), static_cast<DWORD>(other.size()));
  text = other;
}

}  // namespace

TSketchKey MeaningOf(IMorvane& morvane, const TKeyEvent& event) {
  TKeyInterpretation reading = {};
  if (morvane.IMorvane_GetDefaultInterpretation(event.fPhysicalKey, event.fModifiers, reading) != kOK)
    return {};
  const std::uint32_t keys = reading.fModifiers.fKeys;
  TSketchKey key;
  key.fText = reading.fKeyText;
  if (key.fText.size() == 1)
    key.fCharacter = key.fText[0] == kKeyCharKeypadEnter ? char16_t{kKeyReturn} : key.fText[0];
  key.fShift = (keys & kModifierShift) != 0;
  key.fControl = (keys & kModifierControl) != 0;
  key.fAlt = (keys & kModifierAlt) != 0;
  if (!std::all_of(key.fText.begin(), key.fText.end(), IsWritten)) key.fText.clear();
  ApplyCapsLock(key.fText);
  return key;
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
      line.Insert(key.fText);
      return true;
  }
}

}  // namespace NSSketch
