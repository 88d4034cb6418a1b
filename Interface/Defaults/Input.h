// Mouse and keyboard: keys by their text, and a default for the mouse capture.
#pragma once

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>

#include "Common.h"

namespace NSMorvane {

// --- Keys

namespace NSKeyNames {

// A key that writes nothing visible, or whose character is part of the notation.
struct TKeyName {
  std::u16string_view fName;
  TChar fText;
};

inline constexpr TKeyName kKeyNames[] = {{u"Escape", kKeyCharEscape},
                                         {u"Esc", kKeyCharEscape},
                                         {u"Return", kKeyCharReturn},
                                         {u"Enter", kKeyCharReturn},
                                         {u"KeypadEnter", kKeyCharKeypadEnter},
                                         {u"Tab", kKeyCharTab},
                                         {u"Space", u' '},
                                         {u"Backspace", kKeyCharBackspace},
                                         {u"Delete", kKeyCharDelete},
                                         {u"Del", kKeyCharDelete},
                                         {u"Insert", kKeyCharInsert},
                                         {u"Ins", kKeyCharInsert},
                                         {u"Home", kKeyCharHome},
                                         {u"End", kKeyCharEnd},
                                         {u"PageUp", kKeyCharPageUp},
                                         {u"PageDown", kKeyCharPageDown},
                                         {u"Up", kKeyCharUp},
                                         {u"Down", kKeyCharDown},
                                         {u"Left", kKeyCharLeft},
                                         {u"Right", kKeyCharRight}};

inline TChar Lower(TChar c) { return c >= u'A' && c <= u'Z' ? static_cast<TChar>(c - u'A' + u'a') : c; }

inline bool IsSameName(std::u16string_view a, std::u16string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](TChar x, TChar y) { return Lower(x) == Lower(y); });
}

// The key text for the name of a key; empty if there is none of that name. A single character stands for
// itself, a letter for what its key writes without Shift.
inline std::u16string TextOfName(std::u16string_view name) {
  for (const TKeyName& each : kKeyNames)
    if (IsSameName(each.fName, name)) return std::u16string(1, each.fText);
  if (name.size() >= 2 && name.size() <= 3 && Lower(name[0]) == u'f') {
    unsigned number = 0;
    for (const TChar c : name.substr(1)) {
      if (c < u'0' || c > u'9' || (number == 0 && c == u'0')) return {};
      number = number * 10 + (c - u'0');
    }
    if (number > 15) return {};
    return std::u16string(1, static_cast<TChar>(kKeyCharF1 + number - 1));
  }
  const bool isPair = name.size() == 2 && (name[0] & 0xFC00) == 0xD800 && (name[1] & 0xFC00) == 0xDC00;
  if (name.size() != 1 && !isPair) return {};
  return isPair ? std::u16string(name) : std::u16string(1, Lower(name[0]));
}

}  // namespace NSKeyNames

// The key that a text describes, for the shortcut of a menu item and for IMorvane_CanKeyBeInterpretedAs: any
// of "Ctrl", "Shift" and "Alt", then the character that the key writes without Shift, or the name of a key,
// with + between them. The names are Escape (Esc), Return (Enter), KeypadEnter, Tab, Space, Backspace, Delete
// (Del), Insert (Ins), Home, End, PageUp, PageDown, Up, Down, Left, Right, and F1 to F15. Letters from A to Z
// may be in either case:
//   KeyOf(u"Ctrl+S"), KeyOf(u"Ctrl+Shift+S"), KeyOf(u"F5"), KeyOf(u"Shift+Left"), KeyOf(u"Ctrl++")
// For any other text the result is all zero, which stands for no key.
inline TKeyInterpretation KeyOf(std::u16string_view text) {
  TKeyInterpretation key = {};
  for (;;) {
    const std::size_t plus = text.find(u'+', 1);
    if (text.empty() || plus == std::u16string_view::npos) break;
    const std::u16string_view name = text.substr(0, plus);
    std::uint32_t modifier = 0;
    if (NSKeyNames::IsSameName(name, u"Ctrl")) modifier = kModifierControl;
    if (NSKeyNames::IsSameName(name, u"Shift")) modifier = kModifierShift;
    if (NSKeyNames::IsSameName(name, u"Alt")) modifier = kModifierAlt;
    if (modifier == 0) return {};
    key.fModifiers.fKeys |= modifier;
    text.remove_prefix(plus + 1);
  }
  const std::u16string keyText = NSKeyNames::TextOfName(text);
  if (keyText.empty()) return {};
  CopyText(key.fKeyText, keyText);
  return key;
}

// Whether a key event is the key that `key` describes, with exactly those modifiers, in one of the readings
// that the keyboard layout gives it:
//   if (IsKey(fMorvane, event, u"Ctrl+S")) ...
// False for a text that KeyOf does not know.
inline bool IsKey(IMorvane& morvane, const TKeyEvent& event, std::u16string_view key) {
  const TKeyInterpretation wanted = KeyOf(key);
  TFlag isKey = 0;
  return wanted.fKeyText[0] != 0 &&
         morvane.IMorvane_CanKeyBeInterpretedAs(event.fPhysicalKey, event.fModifiers, wanted, isKey) == kOK &&
         isKey != 0;
}

// --- Defaults

class CDefaultMouseCapture : public IMouseCapture {
 public:
  TError IMouseCapture_OnMouseDown(const TMouseEvent&) override { return kOK; }
  TError IMouseCapture_OnMouseUp(const TMouseEvent&) override { return kOK; }
  TError IMouseCapture_OnMouseMove(const TMouseTracking&) override { return kOK; }
  TError IMouseCapture_OnModifiersChanged(const TModifierKeysEvent&, const TModifierKeysEvent&) override {
    return kOK;
  }
  TError IMouseCapture_OnMouseWheel(const TMouseWheelEvent&, TFlag& outHandled) override {
    outHandled = 0;
    return kOK;
  }
  TError IMouseCapture_OnKeyDown(const TKeyEvent&, TFlag& outHandled) override {
    outHandled = 0;
    return kOK;
  }
  IMouseShape* IMouseCapture_GetMouseShape(const TMouseShapeRequest&, TError& outError) override {
    outError = kOK;
    return nullptr;
  }
};

}  // namespace NSMorvane
