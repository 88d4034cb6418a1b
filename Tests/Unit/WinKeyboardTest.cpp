// Readings of keys on a small layout of the test's own: A and 2 with shifted and AltGr texts, a dead key,
// keys that give no text or a long one.
#include "Component/Win/WinKeyboard.h"

#include <gtest/gtest.h>

#include <cstring>

#include "Component/Win/UtilsWin.h"
#include "Tests/Support/RecordingDebugOutput.h"
#include "Tests/Support/RecordingMorvane.h"

using namespace NSMorvane;

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
    give(mods == kS ? L"~" : L"`");
    return -1;
  }
  EXPECT_FALSE(gDeadKeyIsPending);
  if (key == 'A') return give(mods == 0 ? L"a" : mods == kS ? L"A" : L"");
  if (key == '2') return give(mods == 0 ? L"2" : mods == kS ? L"@" : mods == (kC | kA) ? L"²" : L"");
  if (key == VK_NUMPAD2) return give(L"2");
  if (key == VK_RETURN) return give(L"\r");
  if (key == kLongKey) return give(L"01234567890123456");
  return 0;
}

class WinKeyboardTest : public ::testing::Test {
 protected:
  WinKeyboardTest() { gToUnicode = ToUnicodeOfTest; }
  ~WinKeyboardTest() override {
    gToUnicode = &::ToUnicode;
    EXPECT_EQ(fOutput.fAssertions, std::vector<std::string>());
    EXPECT_FALSE(gDeadKeyIsPending);
  }
  NSMorvaneTest::RecordingDebugOutput fOutput;
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

// Each reading as its text, "/" and its modifiers.
TEST_F(WinKeyboardTest, Readings) {
  const struct {
    TPhysicalKeySpec fKey;
    std::uint32_t fMods;
    const char* fReadings;
    TFlag fKeypad;  // of the default reading
  } cases[] = {
      {Key('A'), 0, "61/0", 0},
      {Key('A'), kC | kA, "61/12", 0},
      {Key('A'), kC | kS, "61/10 41/8", 0},
      {Key('2'), kS | kC | kA, "32/14 40/12 b2/2", 0},
      {Key(VK_NUMPAD2), kS, "32/2", 1},
      {Key(kDeadKey), kS, "60/2 7e/0", 0},
      {Key(kLongKey), 0, "303132333435363738393031323334/0", 0},
      {Key(VK_F1), kS, "e001/2", 0},
      {Key(VK_F1 + 15), 0, "", 0},
      {Key(VK_HOME), 0, "e012/0", 0},
      {Key(VK_RETURN), 0, "d/0", 0},
      {Key(VK_RETURN, true), kS | kC | kA, "a/14", 1},
      {Key(VK_SHIFT), kS, "", 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.fReadings);
    std::string readings;
    const std::vector<TKeyInterpretation> list = GetKeyInterpretations({c.fMods, 0}, c.fKey);
    for (const TKeyInterpretation& reading : list) {
      char number[16];
      if (!readings.empty()) readings += ' ';
      for (const TChar* unit = reading.fKeyText; *unit; ++unit) {
        std::snprintf(number, sizeof(number), "%x", static_cast<unsigned>(*unit));
        readings += number;
      }
      readings += '/' + std::to_string(reading.fModifiers.fKeys);
      EXPECT_EQ(reading.fPhysicalTest, 0u);
      EXPECT_TRUE(CanKeyBeInterpretedAs({c.fMods, 0}, c.fKey, reading));
    }
    EXPECT_EQ(readings, c.fReadings);
    TKeyInterpretation expected = list.empty() ? TKeyInterpretation{} : list.back();
    expected.fPhysicalTest = c.fKeypad;
    const TKeyInterpretation actual = GetDefaultInterpretation({c.fMods, 0}, c.fKey);
    EXPECT_EQ(std::memcmp(&actual, &expected, sizeof(actual)), 0);
  }
}

TEST_F(WinKeyboardTest, Questions) {
  const struct {
    TPhysicalKeySpec fKey;
    std::uint32_t fMods;
    TKeyInterpretation fWanted;
    bool fAnswer;
  } cases[] = {
      {Key('2'), kS, Reading(u"@", kS), false},
      {Key('2'), kS | kC, Reading(u"@", kC), true},
      {Key('2'), kC | kA, Reading(u"\u00B2", 0), true},
      {Key('2'), 0, Reading(u"2", 0, 1), false},
      {Key(VK_NUMPAD2), 0, Reading(u"2", 0, 1), true},
      {Key(VK_RETURN, true), kC, Reading(u"\n", kC, 1), true},
      {Key(VK_RETURN, true), 0, Reading(u"\r", 0), false},
      // Longer texts are compared as the user's language does, without regard to the width.
      {Key(kLongKey), 0, Reading(u"01234567890123\uFF14", 0), true},
      {Key('A'), kModifierMask, Reading(u"a", kModifierMask), true},
  };
  for (const auto& c : cases)
    EXPECT_EQ(CanKeyBeInterpretedAs({c.fMods, 0}, c.fKey, c.fWanted), c.fAnswer) << &c - cases;
}

TEST_F(WinKeyboardTest, Shortcuts) {
  // Every name is its key.
  class CNamedKeys : public NSMorvaneTest::RecordingMorvane {
    TString CMorvaneGlue_GetResourceString(const std::string& key) override {
      return key == "SSTR/1000/124" ? TString() : TString(key.begin() + 10, key.end());
    }
  } application;
  const struct {
    TKeyInterpretation fShortcut;
    const char16_t* fText;
    int fVirtualKey;  // -1: not looked at
  } cases[] = {
      {Reading(u"a", kC), u"131+A", 'A'},
      {Reading(u"A", 0), u"A", 0x100 | 'A'},
      {Reading(u"\uE005", kS | kC | kA), u"131+132+133+105", VK_F5},
      {Reading(u"\n", kA), u"133+118", VK_RETURN},
      {Reading(u"\r", kS), u"132+119", VK_RETURN},
      {Reading(u"\u007F", 0), u"123", VK_DELETE},
      {Reading(u"\uE013", kC), u"", VK_END},  // a name without a text
      {Reading(u"\u00E4", kC), u"131+\u00C4", -1},
      {Reading(u"\u3042", 0), u"\u3042", 0xFFFF},
      {Reading(u"a", kC | kModifierOther), u"", -1},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(MakeShortcutText(application, c.fShortcut), c.fText) << &c - cases;
    if (c.fVirtualKey >= 0) {
      EXPECT_EQ(GetKeyCharacterVirtualKey(c.fShortcut.fKeyText[0]), c.fVirtualKey) << &c - cases;
    }
  }
}

TEST_F(WinKeyboardTest, WhatIsHeldDown) {
  BYTE before[256];
  ASSERT_TRUE(::GetKeyboardState(before));
  const struct {
    std::vector<int> fKeys;
    std::uint32_t fModifiers, fButtons;
  } cases[] = {{{}, 0, 0},
               {{VK_SHIFT}, 2, 0},
               {{VK_MENU, VK_LBUTTON}, 4, 1},
               {{VK_CONTROL, VK_RBUTTON, VK_XBUTTON1}, 8, 6},
               {{VK_MBUTTON, VK_SHIFT, VK_CONTROL, VK_MENU}, 14, 3},
               {{VK_XBUTTON2}, 0, 5}};
  for (const auto& c : cases) {
    BYTE state[256] = {};
    for (const int key : c.fKeys) state[key] = 0x80;
    ASSERT_TRUE(::SetKeyboardState(state));
    EXPECT_EQ(GetCurrentModifiers().fKeys, c.fModifiers);
    EXPECT_EQ(GetCurrentModifiers().fReserved, 0u);
    EXPECT_EQ(GetCurrentMouseButtons(), c.fButtons);
    EXPECT_EQ(GetAsyncModifiers().fKeys, 0u);
    EXPECT_EQ(GetAsyncMouseButtons(), 0u);
  }
  ::SetKeyboardState(before);
}
