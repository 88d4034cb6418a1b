#include "Component/Win/Input/WinKeyboard.h"

#include <algorithm>
#include <iterator>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Win/Launch/MorvaneImplWinStartupStrings.h"
#include "Component/Win/Platform/UtilsWin.h"

namespace NSMorvane {

using NSTextPackage::ArrayToString;
using NSTextPackage::CompareText;
using NSTextPackage::CopyChars;
using NSTextPackage::kTextEqual;

decltype(&::ToUnicode) gToUnicode = &::ToUnicode;
TChar gPacketCharacter = 0;

namespace {

constexpr std::uint32_t kControlAlt = kModifierControl | kModifierAlt;
constexpr BYTE kKeyIsDown = 0x80;

// --- Special keys

// A key for which layouts have no character, or whose character has a name.
struct TSpecialKey {
  std::uint8_t fVirtualKey;
  std::uint32_t fCharacter;
  int fNameID;  // in bank 1000 of the application's texts
};

// In ascending order of virtual keys. VK_RETURN has two keys, of which the plain one comes first.
constexpr TSpecialKey kSpecialKeys[] = {
    {VK_BACK, 8, 116},
    {VK_TAB, 9, 117},
    {VK_RETURN, 13, 119},
    {VK_RETURN, kKeyCharKeypadEnter, 118},
    {VK_ESCAPE, 27, 100},
    {VK_SPACE, 32, 130},
    {VK_PRIOR, kKeyCharPageUp, 122},
    {VK_NEXT, kKeyCharPageDown, 125},
    {VK_END, kKeyCharEnd, 124},
    {VK_HOME, kKeyCharHome, 121},
    {VK_LEFT, kKeyCharLeft, 127},
    {VK_UP, kKeyCharUp, 126},
    {VK_RIGHT, kKeyCharRight, 129},
    {VK_DOWN, kKeyCharDown, 128},
    {VK_INSERT, kKeyCharInsert, 120},
    {VK_DELETE, kKeyCharDelete, 123},
    {VK_F1, kKeyCharF1, 101},
    {VK_F2, kKeyCharF1 + 1, 102},
    {VK_F3, kKeyCharF1 + 2, 103},
    {VK_F4, kKeyCharF1 + 3, 104},
    {VK_F5, kKeyCharF1 + 4, 105},
    {VK_F6, kKeyCharF1 + 5, 106},
    {VK_F7, kKeyCharF1 + 6, 107},
    {VK_F8, kKeyCharF1 + 7, 108},
    {VK_F9, kKeyCharF1 + 8, 109},
    {VK_F10, kKeyCharF1 + 9, 110},
    {VK_F11, kKeyCharF1 + 10, 111},
    {VK_F12, kKeyCharF1 + 11, 112},
    {VK_F13, kKeyCharF1 + 12, 113},
    {VK_F14, kKeyCharF1 + 13, 114},
    {VK_F15, kKeyCharF15, 115},
};

constexpr bool IsBefore(const TSpecialKey& a, const TSpecialKey& b) { return a.fVirtualKey < b.fVirtualKey; }
static_assert(std::is_sorted(std::begin(kSpecialKeys), std::end(kSpecialKeys), IsBefore));

const TSpecialKey* FindSpecialKey(std::uint8_t virtualKey) {
  const auto found = std::lower_bound(std::begin(kSpecialKeys), std::end(kSpecialKeys),
                                      TSpecialKey{virtualKey, 0, 0}, IsBefore);
  return found != std::end(kSpecialKeys) && found->fVirtualKey == virtualKey ? found : nullptr;
}

const TSpecialKey* FindSpecialKeyOfCharacter(TChar character) {
  const auto found = std::find_if(std::begin(kSpecialKeys), std::end(kSpecialKeys),
                                  [&](const TSpecialKey& key) { return key.fCharacter == character; });
  return found != std::end(kSpecialKeys) ? found : nullptr;
}

// --- Layout

constexpr bool IsExtended(const TPhysicalKeySpec& physicalKey) { return (physicalKey.fExtended & 1) != 0; }

// Asks the layout once. `outText` gets the text of the key. The result is its length, -1 for a dead key, 0
// for no text.
constexpr int kLayoutChars = 29;
int AskLayout(const TPhysicalKeySpec& physicalKey, const BYTE (&state)[256], TChar (&outText)[kLayoutChars]) {
  return gToUnicode(physicalKey.fVirtualKey, physicalKey.fScanCode, state, WinBuffer(outText), kLayoutChars,
                    0);
}

constexpr std::size_t TextLength(int numChars) {
  return static_cast<std::size_t>(std::min(numChars, kLayoutChars));
}

TKeyInterpretation MakeInterpretation(const TString& text, std::uint32_t keys) {
  TKeyInterpretation result = {};
  CopyChars(result.fKeyText, text.c_str(), kKeyTextChars);
  result.fModifiers.fKeys = keys;
  return result;
}

bool IsSameText(const TString& a, const TString& b) {
  return a.size() == 1 && b.size() == 1 ? a[0] == b[0] : CompareText(a, b) == kTextEqual;
}

// --- What is held down

// `isDown` tells whether a virtual key is down.
template <class TIsDown>
TModifierKeys CollectModifiers(const TIsDown& isDown) {
  TModifierKeys result = {};
  if (isDown(VK_SHIFT)) result.fKeys |= kModifierShift;
  if (isDown(VK_MENU)) result.fKeys |= kModifierAlt;
  if (isDown(VK_CONTROL)) result.fKeys |= kModifierControl;
  return result;
}

template <class TIsDown>
std::uint32_t CollectMouseButtons(const TIsDown& isDown) {
  std::uint32_t result = 0;
  std::uint32_t number = 0;
  for (const int button : {VK_LBUTTON, VK_RBUTTON, VK_MBUTTON, VK_XBUTTON1, VK_XBUTTON2}) {
    ++number;
    if (isDown(button)) result |= number;
  }
  return result;
}

// What GetKeyState gives for each key, read in one call.
class CKeyState {
 public:
  CKeyState() {
    if (!::GetKeyboardState(fKeys)) std::fill(std::begin(fKeys), std::end(fKeys), BYTE{0});
  }
  bool operator()(int virtualKey) const { return (fKeys[virtualKey] & kKeyIsDown) != 0; }

 private:
  BYTE fKeys[256];
};

// The system tells of the buttons as they are built, and everywhere else as the user has them.
bool IsDownNow(int virtualKey) {
  if (::GetSystemMetrics(SM_SWAPBUTTON)) {
    if (virtualKey == VK_LBUTTON)
      virtualKey = VK_RBUTTON;
    else if (virtualKey == VK_RBUTTON)
      virtualKey = VK_LBUTTON;
  }
  return ::GetAsyncKeyState(virtualKey) < 0;
}

}  // namespace

// --- Interpretations of a key

TString TranslateKey(const TModifierKeys& mods, const TPhysicalKeySpec& physicalKey) {
  if (physicalKey.fVirtualKey == VK_RETURN && IsExtended(physicalKey)) return TString(1, kKeyCharKeypadEnter);
  if (physicalKey.fVirtualKey == VK_PACKET)
    return mods.fKeys == 0 && gPacketCharacter != 0 ? TString(1, gPacketCharacter) : TString();
  BYTE state[256] = {};
  if (mods.fKeys & kModifierShift) state[VK_SHIFT] = kKeyIsDown;
  if (mods.fKeys & kModifierControl) state[VK_CONTROL] = kKeyIsDown;
  if (mods.fKeys & kModifierAlt) state[VK_MENU] = kKeyIsDown;
  TChar text[kLayoutChars] = {};
  const int numChars = AskLayout(physicalKey, state, text);
  // If a dead key was pending in the system already, its accent comes before the text, and it is no longer
  // pending. Asking again gives the text alone or, for that very key, its accent, and makes it pending as
  // before.
  if (TChar again[kLayoutChars] = {}; numChars > 1) {
    const int numAgain = AskLayout(physicalKey, state, again);
    if (numAgain != 0) return TString(again, numAgain < 0 ? 1 : TextLength(numAgain));
  }
  if (numChars > 0) return TString(text, TextLength(numChars));
  if (numChars < 0) {
    // The question has made the dead key pending. Asking again ends that, so that what the user types next is
    // not affected.
    TChar dummy[kLayoutChars] = {};
    const int numDummyChars = AskLayout(physicalKey, state, dummy);
    MORVANE_ASSERT(numDummyChars != 0);
    return TString(1, text[0]);
  }
  const TSpecialKey* const special = FindSpecialKey(physicalKey.fVirtualKey);
  if (!special) return TString();
  const std::uint32_t specialKey = special->fCharacter;
  MORVANE_ASSERT(specialKey == static_cast<TChar>(specialKey));
  return TString(1, static_cast<TChar>(specialKey));
}

std::vector<TKeyInterpretation> GetKeyInterpretations(const TModifierKeys& mods,
                                                      const TPhysicalKeySpec& physicalKey) {
  std::vector<TKeyInterpretation> result;
  if (IsModifierVirtualKey(physicalKey.fVirtualKey)) return result;
  const TString plain = TranslateKey({0, 0}, physicalKey);
  if (!plain.empty()) result.push_back(MakeInterpretation(plain, mods.fKeys));
  const auto addIfOther = [&](std::uint32_t consumedKeys) {
    const TString text = TranslateKey({consumedKeys, 0}, physicalKey);
    if (!text.empty() && text != plain)
      result.push_back(MakeInterpretation(text, mods.fKeys & ~consumedKeys));
  };
  if (mods.fKeys & kModifierShift) addIfOther(kModifierShift);
  if ((mods.fKeys & kControlAlt) == kControlAlt) addIfOther(kControlAlt);  // together they are AltGr
  return result;
}

bool IsTypedWithAltGr(const TPhysicalKeySpec& physicalKey) {
  const CKeyState isDown;
  return isDown(VK_RMENU) && isDown(VK_LCONTROL) &&
         GetKeyInterpretations({kControlAlt, 0}, physicalKey).size() > 1;
}

TKeyInterpretation GetDefaultInterpretation(const TModifierKeys& mods, const TPhysicalKeySpec& physicalKey) {
  const std::vector<TKeyInterpretation> interpretations = GetKeyInterpretations(mods, physicalKey);
  if (interpretations.empty()) return {};
  TKeyInterpretation result = interpretations.back();
  result.fPhysicalTest = IsNumericKeypadKey(physicalKey) ? 1 : 0;
  return result;
}

bool CanKeyBeInterpretedAs(const TModifierKeys& mods, const TPhysicalKeySpec& physicalKey,
                           const TKeyInterpretation& wantedInterpretation) {
  // An interpretation leaves over all modifiers, all but Shift, or all but AltGr. For anything else the
  // layout is not asked, since clients come here for each of their shortcuts.
  const std::uint32_t wantedKeys = wantedInterpretation.fModifiers.fKeys;
  if (wantedKeys != mods.fKeys && wantedKeys != (mods.fKeys & ~kModifierShift) &&
      wantedKeys != (mods.fKeys & ~kControlAlt))
    return false;
  const TString wantedText = ArrayToString(wantedInterpretation.fKeyText);
  for (const TKeyInterpretation& interpretation : GetKeyInterpretations(mods, physicalKey)) {
    if (interpretation.fModifiers.fKeys != wantedKeys) continue;
    if (!IsSameText(ArrayToString(interpretation.fKeyText), wantedText)) continue;
    return wantedInterpretation.fPhysicalTest == 0 || IsNumericKeypadKey(physicalKey);
  }
  return false;
}

bool IsModifierVirtualKey(std::uint32_t virtualKey) {
  return (virtualKey >= VK_SHIFT && virtualKey <= VK_MENU) ||
         (virtualKey >= VK_LSHIFT && virtualKey <= VK_RMENU);
}

bool IsNumericKeypadKey(const TPhysicalKeySpec& physicalKey) {
  const std::uint32_t key = physicalKey.fVirtualKey;
  return (key >= VK_NUMPAD0 && key <= VK_DIVIDE && key != VK_SEPARATOR) ||
         (key == VK_RETURN && IsExtended(physicalKey));
}

// --- Shortcuts

bool IsShortcutUsable(const TKeyInterpretation& shortcut) {
  return shortcut.fKeyText[0] != 0 && (shortcut.fModifiers.fKeys & kModifierOther) == 0;
}

std::uint16_t GetKeyCharacterVirtualKey(TChar character) {
  if (const TSpecialKey* const special = FindSpecialKeyOfCharacter(character)) return special->fVirtualKey;
  return static_cast<std::uint16_t>(::VkKeyScanW(static_cast<WCHAR>(character)));
}

TString MakeShortcutText(IMorvane& application, const TKeyInterpretation& shortcut) {
  if (!IsShortcutUsable(shortcut)) return TString();
  constexpr struct {
    std::uint32_t fModifier;
    int fNameID;
  } kModifierNames[] = {{kModifierControl, 131}, {kModifierShift, 132}, {kModifierAlt, 133}};
  TString modifierText;
  for (const auto& modifier : kModifierNames)
    if (shortcut.fModifiers.fKeys & modifier.fModifier)
      modifierText += FetchLabel(application, modifier.fNameID) + u'+';
  // CharUpperW takes a character in place of a pointer.
  const auto character = static_cast<TChar>(reinterpret_cast<std::uintptr_t>(
      ::CharUpperW(reinterpret_cast<LPWSTR>(static_cast<std::uintptr_t>(shortcut.fKeyText[0])))));
  const TSpecialKey* const special = FindSpecialKeyOfCharacter(character);
  const TString keyText = special ? FetchLabel(application, special->fNameID) : TString(1, character);
  return keyText.empty() ? TString() : modifierText + keyText;
}

// --- What is held down

TModifierKeys GetCurrentModifiers() { return CollectModifiers(CKeyState()); }
TModifierKeys GetAsyncModifiers() { return CollectModifiers(IsDownNow); }
std::uint32_t GetCurrentMouseButtons() { return CollectMouseButtons(CKeyState()); }
std::uint32_t GetAsyncMouseButtons() { return CollectMouseButtons(IsDownNow); }

}  // namespace NSMorvane
