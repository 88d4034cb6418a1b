// What keys mean: every reading that a key press can have under the user's layout, the keys without a
// character, the names of keys in menus, and what is held down.
//
// All of it belongs to the main thread.
#pragma once

#include <windows.h>

#include <cstdint>
#include <vector>

#include "Component/Portable/Text/TextPackage.h"
#include "Interface/MorvaneKeyboard.h"

namespace NSMorvane {

class IMorvane;

using NSTextPackage::TString;

// --- Readings of a key

// The text of a key under just these modifiers, whatever is held down now; empty if it gives none. A dead key
// gives its accent.
TString TranslateKey(const TModifierKeys& mods, const TPhysicalKeySpec& physicalKey);

// All readings, the last one being that whose text accounts for most of the modifiers. None for modifier
// keys.
std::vector<TKeyInterpretation> GetKeyInterpretations(const TModifierKeys& mods,
                                                      const TPhysicalKeySpec& physicalKey);

// The last reading, or the zero record.
TKeyInterpretation GetDefaultInterpretation(const TModifierKeys& mods, const TPhysicalKeySpec& physicalKey);

bool CanKeyBeInterpretedAs(const TModifierKeys& mods, const TPhysicalKeySpec& physicalKey,
                           const TKeyInterpretation& wantedInterpretation);

bool IsModifierVirtualKey(std::uint32_t virtualKey);

// Keypad Enter is such a key, the separator key is not.
bool IsNumericKeypadKey(const TPhysicalKeySpec& physicalKey);

// --- Shortcuts

// False for a shortcut without a key, and for one that asks for a modifier of another platform.
bool IsShortcutUsable(const TKeyInterpretation& shortcut);

// The virtual key that gives a character, in the low byte, and the modifiers that it takes in the high one,
// as VkKeyScanW tells them: shift 1, control 2, alt 4. 0xFFFF if no key gives it.
std::uint16_t GetKeyCharacterVirtualKey(TChar character);

// A shortcut as a menu shows it, such as "Ctrl+Shift+A"; empty for one that is not usable. The names come
// from the application's texts.
TString MakeShortcutText(IMorvane& application, const TKeyInterpretation& shortcut);

// --- What is held down

// When the message that is being handled was sent, in milliseconds since the system started.
inline std::uint64_t GetMessageTimeMS() { return static_cast<std::uint32_t>(GetMessageTime()); }

// As of the message that is being handled, and as of now.
TModifierKeys GetCurrentModifiers();
TModifierKeys GetAsyncModifiers();

// 0 for none. The numbers of the buttons (left 1, right 2, middle 3, the others 4 and 5) are put together
// with OR, though they are no bits.
std::uint32_t GetCurrentMouseButtons();
std::uint32_t GetAsyncMouseButtons();

// The layout of the user; tests put another one here.
extern decltype(&::ToUnicode) gToUnicode;

}  // namespace NSMorvane
