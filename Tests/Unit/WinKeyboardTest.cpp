// Readings of keys on a small layout of the test's own: A and 2 with shifted and AltGr texts, a dead key,
// keys that give no text or a long one.
#include "Component/Win/Input/WinKeyboard.h"

#include "Component/Win/Platform/UtilsWin.h"
#include "Tests/Support/PatchedImport.h"
#include "Tests/Support/RecordingMorvane.h"

using namespace NSMorvaneTest;

namespace {

constexpr std::uint32_t kS = kModifierShift, kA = kModifierAlt, kC = kModifierControl;
constexpr UINT kDeadKey = VK_OEM_3, kLongKey = VK_OEM_4;

bool gDeadKeyIsPending = false;

int WINAPI ToUnicodeOfTest(UINT key, UINT, const BYTE* state, LPWSTR out, int size, UINT flags) {
  EXPECT_EQ(size, 29);
  EXPECT_EQ(flags, 0u);
  const std::uint32_t mods =
      (state[VK_SHIFT] ? kS : 0) | (state[VK_CONTROL] ? kC : 0) | (state[VK_MENU] ? kA : 0);
  const auto give = [&](std::wstring_view text) {
    return static_cast<int>(text.copy(out, static_cast<std::size_t>(size)));
  };
  if (key == kDeadKey) {
    gDeadKeyIsPending = !gDeadKeyIsPending;
    const int length = give(mods == kS ? L"~~" : L"``");
    return gDeadKeyIsPending ? -1 : length;
  }
  // An accent that waits comes before the text, and waits no longer.
  if (std::exchange(gDeadKeyIsPending, false)) return give(L"~2");
  if (key == 'A') return give(mods == 0 ? L"a" : mods == kS ? L"A" : L"");
  if (key == '2') return give(mods == 0 ? L"2" : mods == kS ? L"@" : mods == (kC | kA) ? L"²" : L"");
  if (key == VK_NUMPAD2) return give(L"2");
  if (key == VK_RETURN) return give(L"\r");
  if (key == kLongKey) return give(L"01234567890123456");
  return 0;
}

int WINAPI SwappedButtons(int metric) { return metric == SM_SWAPBUTTON; }
SHORT WINAPI RightButtonIsDown(int key) { return key == VK_RBUTTON ? SHORT{-0x8000} : SHORT{0}; }

class WinKeyboardTest : public ReportingTest {
 protected:
  WinKeyboardTest() { gToUnicode = ToUnicodeOfTest; }
  ~WinKeyboardTest() override {
    gToUnicode = &::ToUnicode;
    EXPECT_FALSE(gDeadKeyIsPending);
  }
};

constexpr TPhysicalKeySpec Key(UINT virtualKey, bool extended = false) {
  return {static_cast<std::uint8_t>(virtualKey), 0, static_cast<std::uint16_t>(extended ? 1 : 0)};
}

TKeyInterpretation Reading(const TString& text, std::uint32_t keys, TFlag keypad = 0) {
  TKeyInterpretation result = {};
  text.copy(result.fKeyText, kKeyTextChars);
  result.fModifiers.fKeys = keys;
  result.fPhysicalTest = keypad;
  return result;
}

}  // namespace

// Each reading as its text, "/" and its modifiers; last, whether the default one is of the keypad.
TEST_F(WinKeyboardTest, Readings) {
  for (const auto& [key, mods, expected, keypad] : Rows<TPhysicalKeySpec, std::uint32_t, std::string, TFlag>{
           {Key('A'), kC | kA, "61/12", 0},
           {Key('A'), kC | kS, "61/10 41/8", 0},
           {Key('2'), kS | kC | kA, "32/14 40/12 b2/2", 0},
           {Key(VK_NUMPAD2), kS, "32/2", 1},
           {Key(kDeadKey), kS, "60/2 7e/0", 0},
           {Key(kLongKey), 0, "303132333435363738393031323334/0", 0},
           {Key(VK_F1), kS, "e001/2", 0},
           {Key(VK_F1 + 15), 0, "", 0},
           {Key(VK_RETURN, true), kS | kC | kA, "a/14", 1},
           {Key(VK_SHIFT), kS, "", 0}}) {
    SCOPED_TRACE(expected);
    std::ostringstream readings;
    const std::vector<TKeyInterpretation> list = GetKeyInterpretations({mods, 0}, key);
    for (const TKeyInterpretation& reading : list) {
      if (&reading != list.data()) readings << ' ';
      for (const TChar* unit = reading.fKeyText; *unit; ++unit) readings << std::hex << int{*unit};
      readings << '/' << std::dec << reading.fModifiers.fKeys;
      EXPECT_EQ(reading.fPhysicalTest, 0u);
      EXPECT_TRUE(CanKeyBeInterpretedAs({mods, 0}, key, reading));
    }
    EXPECT_EQ(readings.str(), expected);
    TKeyInterpretation byDefault = list.empty() ? TKeyInterpretation{} : list.back();
    byDefault.fPhysicalTest = keypad;
    const TKeyInterpretation actual = GetDefaultInterpretation({mods, 0}, key);
    EXPECT_EQ(std::memcmp(&actual, &byDefault, sizeof(actual)), 0);
  }
}

TEST_F(WinKeyboardTest, FunctionKeysAreInARow) {
  for (int i = 0; i < 15; ++i)
    EXPECT_EQ(TString(GetDefaultInterpretation({0, 0}, Key(VK_F1 + i)).fKeyText),
              TString(1, static_cast<TChar>(kKeyCharF1 + i)))
        << i;
}

// The key has been translated before anybody asks about it, and its letter is still to come. With other
// modifiers the same key can give a letter, which is told without the accent.
TEST_F(WinKeyboardTest, ADeadKeyThatWaitsGoesOnWaiting) {
  gDeadKeyIsPending = true;
  EXPECT_EQ(TranslateKey({kS, 0}, Key(kDeadKey)), u"~");
  EXPECT_TRUE(gDeadKeyIsPending);
  EXPECT_EQ(TranslateKey({0, 0}, Key('2')), u"2");
}

// Only the right Alt key with the control key that such a layout makes of it, and only where that gives
// another character.
TEST_F(WinKeyboardTest, AltGr) {
  BYTE before[256];
  ASSERT_TRUE(::GetKeyboardState(before));
  for (const auto& [key, alt, isTyped] : Rows<UINT, int, bool>{
           {'2', VK_RMENU, true}, {'2', VK_LMENU, false}, {'A', VK_RMENU, false}, {VK_F1, VK_RMENU, false}}) {
    BYTE state[256] = {};
    for (const int down : {VK_CONTROL, VK_LCONTROL, VK_MENU, alt}) state[down] = 0x80;
    ASSERT_TRUE(::SetKeyboardState(state));
    EXPECT_EQ(IsTypedWithAltGr(Key(key)), isTyped) << key << " " << alt;
  }
  ::SetKeyboardState(before);
}

TEST_F(WinKeyboardTest, Questions) {
  for (const auto& [key, mods, wanted, answer] :
       Rows<TPhysicalKeySpec, std::uint32_t, TKeyInterpretation, bool>{
           {Key('2'), kS, Reading(u"@", kS), false},
           {Key('2'), kC | kA, Reading(u"\u00B2", 0), true},
           {Key('2'), 0, Reading(u"2", 0, 1), false},
           {Key(VK_NUMPAD2), 0, Reading(u"2", 0, 1), true},
           {Key(VK_RETURN, true), kC, Reading(u"\n", kC, 1), true},
           // Longer texts are compared as the user's language does, without regard to the width.
           {Key(kLongKey), 0, Reading(u"01234567890123\uFF14", 0), true},
           {Key('A'), kModifierMask, Reading(u"a", kModifierMask), true}})
    EXPECT_EQ(CanKeyBeInterpretedAs({mods, 0}, key, wanted), answer) << int{key.fVirtualKey} << " " << mods;
}

TEST_F(WinKeyboardTest, Shortcuts) {
  // Every name is its key.
  class CNamedKeys : public RecordingMorvane {
    TString CMorvaneGlue_GetResourceString(const std::string& key) override {
      return key == "SSTR/1000/124" ? TString() : TString(key.begin() + 10, key.end());
    }
  } application;
  for (const auto& [shortcut, text, virtualKey] :
       Rows<TKeyInterpretation, TString, int>{{Reading(u"a", kC), u"131+A", 'A'},
                                              {Reading(u"A", 0), u"A", 0x100 | 'A'},
                                              {Reading(u"\uE005", kS | kC | kA), u"131+132+133+105", VK_F5},
                                              {Reading(u"\n", kA), u"133+118", VK_RETURN},
                                              {Reading(u"\r", kS), u"132+119", VK_RETURN},
                                              {Reading(u"\u007F", 0), u"123", VK_DELETE},
                                              {Reading(u"\uE013", kC), u"", VK_END},  // a name without a text
                                              {Reading(u"\u3042", 0), u"\u3042", 0xFFFF},
                                              {Reading(u"a", kC | kModifierOther), u"", 'A'}}) {
    EXPECT_EQ(MakeShortcutText(application, shortcut), text);
    EXPECT_EQ(GetKeyCharacterVirtualKey(shortcut.fKeyText[0]), virtualKey);
  }
  EXPECT_EQ(MakeShortcutText(application, Reading(u"\u00E4", kC)), u"131+\u00C4");
}

TEST_F(WinKeyboardTest, ModifierKeys) {
  std::vector<UINT> keys;
  for (UINT key = 0; key < 300; ++key)
    if (IsModifierVirtualKey(key)) keys.push_back(key);
  EXPECT_EQ(keys, (std::vector<UINT>{16, 17, 18, 160, 161, 162, 163, 164, 165}));
}

// The user has swapped the buttons, and presses the one at the right.
TEST_F(WinKeyboardTest, SwappedButtons) {
  const PatchedImport metrics(nullptr, "GetSystemMetrics", SwappedButtons);
  const PatchedImport keys(nullptr, "GetAsyncKeyState", RightButtonIsDown);
  EXPECT_EQ(GetAsyncMouseButtons(), 1u);
}

TEST_F(WinKeyboardTest, WhatIsHeldDown) {
  BYTE before[256];
  ASSERT_TRUE(::GetKeyboardState(before));
  for (const auto& [keys, modifiers, buttons] :
       Rows<std::vector<int>, std::uint32_t, std::uint32_t>{{{VK_MENU, VK_LBUTTON}, 4, 1},
                                                            {{VK_CONTROL, VK_RBUTTON, VK_XBUTTON1}, 8, 6},
                                                            {{VK_MBUTTON, VK_XBUTTON2, VK_SHIFT}, 2, 7}}) {
    BYTE state[256] = {};
    for (const int key : keys) state[key] = 0x80;
    ASSERT_TRUE(::SetKeyboardState(state));
    EXPECT_EQ(GetCurrentModifiers().fKeys, modifiers);
    EXPECT_EQ(GetCurrentMouseButtons(), buttons);
    EXPECT_EQ(GetAsyncModifiers().fKeys + GetAsyncMouseButtons(), 0u);
  }
  ::SetKeyboardState(before);
}
