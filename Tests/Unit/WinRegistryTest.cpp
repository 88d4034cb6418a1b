// The values that the library keeps in the registry, below a key of the test's own.
#include "Component/Win/Services/WinRegistry.h"

#include "Component/Win/Launch/MorvaneImplWinStartupStrings.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Tests/Support/HandleCounts.h"
#include "Tests/Support/PatchedImport.h"
#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;

namespace {

class WinRegistryTest : public ReportingTest {
 protected:
  WinRegistryTest() { Clear(); }
  ~WinRegistryTest() override { Clear(); }

  static void Clear() { RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\MorvaneTest"); }
  static void Put(const TString& name, DWORD type, const void* bytes, DWORD size) {
    HKEY key = nullptr;
    RegOpenKeyExW(HKEY_CURRENT_USER, L"Software\\MorvaneTest", 0, KEY_SET_VALUE, &key);
    ASSERT_EQ(RegSetValueExW(key, WinText(name), 0, type, static_cast<const BYTE*>(bytes), size),
              ERROR_SUCCESS);
    RegCloseKey(key);
  }

  const TRegPath fPath = {u"Software", u"MorvaneTest"};
};

// Another process makes a value of another type of it, between the question for its type and the reading.
LSTATUS WINAPI ChangeAndQuery(HKEY key, LPCWSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data,
                              LPDWORD size) {
  const bool isNumber = data && *size == 4;
  const bool isLongText = data && *size > 256;
  if (isNumber || isLongText) {
    HKEY writable = nullptr;
    RegOpenKeyExW(key, nullptr, 0, KEY_SET_VALUE, &writable);
    RegSetValueExW(writable, name, 0, isNumber ? REG_BINARY : REG_DWORD, reinterpret_cast<const BYTE*>("abc"),
                   4);
    RegCloseKey(writable);
  }
  return RealFunction<decltype(RegQueryValueExW)>(L"advapi32.dll", "RegQueryValueExW")(key, name, reserved,
                                                                                       type, data, size);
}

}  // namespace

TEST_F(WinRegistryTest, PathsAndValues) {
  TStartupStrings strings;
  strings.fCompanyName = u"MorvaneTest";
  strings.fProductName = u"P\xE9";
  const TRegPath path = GetPreferencesPath(strings);
  EXPECT_EQ(path, (TRegPath{u"Software", u"MorvaneTest", u"P\xE9", u"Preferences"}));
  EXPECT_FALSE(KeyPathExists(path));
  EXPECT_FALSE(CRegKey(HKEY_CURRENT_USER).HasSubKey(u"Software\\MorvaneTest"));  // nothing was made
  CRegKey key = OpenKeyPath(path, true);
  EXPECT_TRUE(KeyPathExists(path));
  for (const TString& text : {TString(), TString(u"C:\\a b\\\xD83D\xDE00"), TString(127, u'x'),
                              TString(128, u'x'), TString(3000, u'x')}) {
    key.SetString(u"Folder", text);
    EXPECT_EQ(key.GetString(u"Folder"), text);
  }
  for (const std::uint32_t number : {0u, 1u, 0xFFFFFFFFu}) {
    key.SetNumber(u"Left", number);
    EXPECT_EQ(key.GetNumber(u"Left"), number);
  }
  EXPECT_EQ(key.GetString(u"None"), u"");
  EXPECT_EQ(key.GetNumber(u"None"), 0u);
  { const CRegKey copy = key; }
  EXPECT_TRUE(key.HasValue(u"Left"));
  EXPECT_FALSE(key.FindSubKey(u"Position"));
  EXPECT_FALSE(key.HasSubKey(u"Position"));  // it was not made
  CRegKey(key, u"Position", true).SetNumber(u"Left", 7);
  EXPECT_EQ(key.FindSubKey(u"Position")->GetNumber(u"Left"), 7u);
  // One for reading cannot be written.
  EXPECT_ANY_THROW(OpenKeyPath(path, false).SetNumber(u"Left", 1));
  EXPECT_ANY_THROW(OpenKeyPath(path, false).SetString(u"Folder", u""));
  DWORD type, size;
  SetLastError(ERROR_INVALID_HANDLE);  // which is not what the registry has answered
  EXPECT_ANY_THROW(key.GetValueTypeAndSize(u"None", type, size));
  EXPECT_TRUE(fOutput.HasLine("GetValueTypeAndSize: 2 None"));
  EXPECT_EQ(TakeReports(), "false");
}

TEST_F(WinRegistryTest, ValuesOfOthers) {
  const CRegKey key = OpenKeyPath(fPath, true);
  Put(u"v", REG_DWORD, "abcd", 4);
  EXPECT_EQ(kBadFormatError, ErrorOf([&] { key.GetString(u"v"); }));
  Put(u"v", REG_SZ, L"ab", 6);
  EXPECT_EQ(kBadFormatError, ErrorOf([&] { key.GetNumber(u"v"); }));
  // Texts without a terminator, of half units, with something behind the terminator.
  const Rows<DWORD, TString> rows = {{0, u""}, {1, u""}, {3, u"a"}, {4, u"ab"}, {6, u"ab"}};
  for (const auto& [size, text] : rows) {
    Put(u"v", REG_SZ, L"ab", size);
    EXPECT_EQ(key.GetString(u"v"), text) << size;
  }
  Put(u"v", REG_SZ, L"a\0b", 8);
  EXPECT_EQ(key.GetString(u"v"), u"a");
  Put(u"v", REG_DWORD, "", 0);
  EXPECT_EQ(key.GetNumber(u"v"), 0u);
  EXPECT_EQ(TakeReports(), "");
  Put(u"v", REG_DWORD, "abcde", 5);
  EXPECT_ANY_THROW(key.GetNumber(u"v"));
  EXPECT_EQ(TakeReports(), "false");
  // Another process may change a value, or take the key away, while it is open.
  {
    const PatchedImport patch(nullptr, "RegQueryValueExW", ChangeAndQuery);
    Put(u"v", REG_DWORD, "abcd", 4);
    EXPECT_EQ(kBadFormatError, ErrorOf([&] { key.GetNumber(u"v"); }));
    Put(u"v", REG_SZ, std::wstring(200, L'a').c_str(), 402);
    EXPECT_EQ(kBadFormatError, ErrorOf([&] { key.GetString(u"v"); }));
  }
  Clear();
  EXPECT_FALSE(key.HasValue(u"v"));
  EXPECT_EQ(key.GetString(u"v"), u"");
  EXPECT_FALSE(KeyPathExists(fPath));
}

TEST_F(WinRegistryTest, NoKeyIsLeftOpen) {
  const TRegPath path = {u"Software", u"MorvaneTest", u"a", u"b"};
  std::int64_t before = 0;
  for (int i = 0; i < 500; ++i) {
    if (i == 10) before = KernelHandles();
    CRegKey key = OpenKeyPath(path, i % 2 == 0);
    const CRegKey copy = key;
    EXPECT_TRUE(KeyPathExists(path) && !key.HasSubKey(u"c"));
  }
  EXPECT_LE(KernelHandles(), before);
}
