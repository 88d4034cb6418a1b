// Keys: key presses, what they can mean, and their listeners.
#pragma once

#include "MorvaneTypes.h"

namespace NSMorvane {

// Bits of TModifierKeys::fKeys.
enum : std::uint32_t {
  kModifierShift = 2,
  kModifierAlt = 4,
  kModifierControl = 8,
  kModifierOther = 16,  // never set on this platform: a shortcut that asks for it has no effect
  kModifierMask = 0x1E
};

// A set of modifier keys.
struct TModifierKeys {
  std::uint32_t fKeys;
  std::uint32_t fReserved;  // 0
};

// The modifiers of a menu shortcut, described portably. Command is the platform's main modifier, here
// Control.
enum TShortcutModifiers : std::uint32_t {
  kShortcutNone = 4000,
  kShortcutCommand = 4001,
  kShortcutCommandShift = 4002,
  kShortcutCommandAlt = 4003,
  kShortcutCommandAltShift = 4004
};

enum : std::size_t { kKeyTextChars = 15 };

// One reading of a key press: a text, and the modifiers that the text does not account for. Shift+2 can be
// read as "2" with Shift, or as "@" without modifiers. The all-zero record means that there is no reading.
struct TKeyInterpretation {
  TChar fKeyText[kKeyTextChars + 1];  // zero-terminated; keys without a character have codes from U+E001 on
  TModifierKeys fModifiers;
  TFlag fPhysicalTest;  // in a wanted reading: the key must be on the numeric keypad; in a default one: it is
};

// Texts of keys that write nothing. Every other key has the text that the keyboard layout gives it, in which
// Shift is already taken into account.
enum : std::uint16_t {
  kKeyCharBackspace = 8,
  kKeyCharTab = 9,
  kKeyCharKeypadEnter = 10,
  kKeyCharReturn = 13,
  kKeyCharEscape = 27,
  kKeyCharDelete = 127,
  kKeyCharF1 = 0xE001,  // F1 to F15 are consecutive
  kKeyCharF15 = 0xE00F,
  kKeyCharPageUp = 0xE010,
  kKeyCharPageDown = 0xE011,
  kKeyCharHome = 0xE012,
  kKeyCharEnd = 0xE013,
  kKeyCharInsert = 0xE014,
  kKeyCharUp = 0xE016,
  kKeyCharLeft = 0xE017,
  kKeyCharDown = 0xE018,
  kKeyCharRight = 0xE019
};

// A physical key as the platform reports it. Portable code passes it on to IMorvane_CanKeyBeInterpretedAs and
// IMorvane_GetDefaultInterpretation and does not read the fields.
struct TPhysicalKeySpec {
  std::uint8_t fVirtualKey;
  std::uint8_t fScanCode;
  std::uint16_t fExtended;  // bit 0: the key is on the extended part of the keyboard
};

// A key press, given to the views along the focus chain, the window and the run behaviour.
struct TKeyEvent {
  TPhysicalKeySpec fPhysicalKey;
  TModifierKeys fModifiers;
  TFlag fIsRepeat;  // 1 if the key is being held down
  std::uint64_t fTimeMS;
};

// A change of the modifier keys.
struct TModifierKeysEvent {
  TModifierKeys fModifiers;
  std::uint64_t fTimeMS;
};

// Implemented by the client, attached with IMorvane_AttachModifierKeyListener, never deleted by the library.
class IModifierKeyListener {
 public:
  // A modifier key went down or up. The result is ignored.
  virtual TError IModifierKeyListener_OnModifiersChanged(const TModifierKeysEvent& previous,
                                                         const TModifierKeysEvent& now) = 0;

 protected:
  virtual ~IModifierKeyListener() = default;
};

// Why a key release callback is called.
enum TKeyReleaseReason : std::uint32_t {
  kKeyReleaseKeyUp = 713,       // the key went up
  kKeyReleaseDeactivated = 714  // a window with a focus view was deactivated; the key may be up already
};

// Implemented by the client, installed with IMorvane_InstallKeyReleaseCallback, never deleted by the library.
class IKeyReleaseCallback {
 public:
  // Called once. The callback is removed when it returns.
  virtual TError IKeyReleaseCallback_OnKeyReleased(const TPhysicalKeySpec& key, TKeyReleaseReason reason) = 0;

 protected:
  virtual ~IKeyReleaseCallback() = default;
};

}  // namespace NSMorvane
