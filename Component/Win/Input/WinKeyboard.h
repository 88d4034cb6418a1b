// What keys mean: every interpretation of a key press under the user's layout, the keys without a character,
// the names of keys in menus, and what is held down.
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

// --- Interpretations of a key

// The text of a key with exactly these modifiers, whatever is held down now; empty if the key gives none. A
// dead key gives its accent.
TString TranslateKey(const TModifierKeys& mods, const TPhysicalKeySpec& physicalKey);

// The character of the last press of VK_PACKET, which stands for text without a key: that of a touch
// keyboard, of dictation, of a list of symbols. No layout knows it. 0 for none. Process-wide, since the
// functions here belong to no object.
extern TChar gPacketCharacter;

// Whether the right Alt key, which is AltGr under layouts that have it, is held and makes another character
// of the key. Windows tells AltGr as Control and Alt.
bool IsTypedWithAltGr(const TPhysicalKeySpec& physicalKey);

// All interpretations; the text of the last one accounts for the most modifiers. None for modifier keys.
std::vector<TKeyInterpretation> GetKeyInterpretations(const TModifierKeys& mods,
                                                      const TPhysicalKeySpec& physicalKey);

// The last interpretation, or a record of zeros.
TKeyInterpretation GetDefaultInterpretation(const TModifierKeys& mods, const TPhysicalKeySpec& physicalKey);

bool CanKeyBeInterpretedAs(const TModifierKeys& mods, const TPhysicalKeySpec& physicalKey,
                           const TKeyInterpretation& wantedInterpretation);

bool IsModifierVirtualKey(std::uint32_t virtualKey);

// Keypad Enter is such a key, the separator key is not.
bool IsNumericKeypadKey(const TPhysicalKeySpec& physicalKey);

// --- Shortcuts

// False for a shortcut without a key, and for one that asks for a modifier of another platform.
bool IsShortcutUsable(const TKeyInterpretation& shortcut);

// The virtual key of a character in the low byte, and the modifiers that it needs in the high byte, as
// VkKeyScanW gives them: shift 1, control 2, alt 4. 0xFFFF if no key gives the character.
std::uint16_t GetKeyCharacterVirtualKey(TChar character);

// A shortcut as a menu shows it, such as "Ctrl+Shift+A"; empty for one that is not usable. The names come
// from the application's texts.
TString MakeShortcutText(IMorvane& application, const TKeyInterpretation& shortcut);

// --- What is held down

// The time of the message that is being handled, in milliseconds since the system started.
inline std::uint64_t GetMessageTimeMS() { return static_cast<std::uint32_t>(GetMessageTime()); }

// GetCurrent... tells the state at the message that is being handled, GetAsync... the state now.
TModifierKeys GetCurrentModifiers();
TModifierKeys GetAsyncModifiers();

// The numbers of the buttons that are down (left 1, right 2, middle 3, the others 4 and 5), combined with OR
// although they are not bits. 0 for none.
std::uint32_t GetCurrentMouseButtons();
std::uint32_t GetAsyncMouseButtons();

// The call that asks the user's layout, which tests replace. Process-wide, since the functions above belong
// to no object.
extern decltype(&::ToUnicode) gToUnicode;

}  // namespace NSMorvane
