// What the file dialogs make of types, extensions and typed names, and what they remember.
#include "Component/Win/Dialogs/FileNames.h"

#include "Component/Portable/Base/Geometry.h"
#include "Component/Win/Dialogs/DialogMemory.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Services/WinRegistry.h"
#include "Tests/Support/HandleCounts.h"
#include "Tests/Support/PatchedImport.h"
#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;

namespace {

const CFileType kSound = {u"Sound", u".wav;.aiff"};
const CFileType kText = {u"Text", u".txt"};
const CFileType kAll = {u"All", u".*"};
const CFileType kNone = {u"None", u""};
const std::vector<CFileType> kTypes = {kSound, kText};

class DialogMemoryTest : public ReportingTest {};

LSTATUS WINAPI RefuseToSet(HKEY, LPCWSTR, DWORD, DWORD, const BYTE*, DWORD) { return ERROR_ACCESS_DENIED; }

}  // namespace

TEST(FileNames, TypesOfDialogs) {
  const Rows<std::vector<CFileType>, TString> combined = {{{kSound}, u".wav;.aiff"},
                                                          {{kSound, kText}, u".wav;.aiff;.txt"},
                                                          {{kNone, kSound, kNone}, u".wav;.aiff"},
                                                          {{kNone, kNone}, u""}};
  for (const auto& [types, extensions] : combined) {
    const std::vector<CFileType> shown = WithCombinedType(types, u"All of them");
    EXPECT_EQ(shown.size(), types.size() == 1 ? 1 : types.size() + 1);
    EXPECT_EQ(shown.back().fExtensions, extensions);
    EXPECT_EQ(shown.back().fName, types.size() == 1 ? kSound.fName : u"All of them");
  }
  EXPECT_EQ(TypeIndexForExtensions(kTypes, u".TXT"), 2u);
  EXPECT_EQ(TypeIndexForExtensions(kTypes, u".wav"), 0u);
  const Rows<CFileType, TString> defaults = {
      {kSound, u"wav"}, {kAll, u""}, {kNone, u""}, {{u"", u"." + TString(300, u'x')}, TString(260, u'x')}};
  for (const auto& [type, extension] : defaults) EXPECT_EQ(DefaultExtension(type), extension);
}

TEST(FileNames, NamesOfTemplates) {
  const Rows<TString, TString> rows = {{u"song", u"song.wav"},
                                       {u"song.mp3", u"song.mp3"},
                                       {u"C:\\a.b\\song", u"C:\\a.b\\song.wav"},
                                       {u"C:\\a.b\\s.x", u"C:\\a.b\\s.x"},
                                       {u"", u""},
                                       {u"C:\\folder\\", u"C:\\folder\\"},
                                       {TString(1299, u'n'), TString(1299, u'n') + u"."}};
  for (const auto& [name, wanted] : rows) EXPECT_EQ(WithDefaultExtension(name, u"wav"), wanted);
  EXPECT_EQ(WithDefaultExtension(u"song", u""), u"song");
  EXPECT_EQ(WithoutForbiddenCharacters(u"C:\\a b\\Take 1: <x>?\x1"), u"C:\\a b\\Take 1_ _x___");
  EXPECT_TRUE(HasExtensionOf(u"a.TAR.gz", {u"", u".zip;.tar.gz"}));
  EXPECT_FALSE(HasExtensionOf(u".zip", {u"", u".zip"}) || HasExtensionOf(u"a", kNone));
}

TEST(FileNames, NamesThatAreTyped) {
  struct TCase {
    TString fTyped;
    CFileType fType;
    TString fWhenTypeIsChosen, fWhenAccepted;
  };
  for (const TCase& c : std::vector<TCase>{{u"song", kText, u"song", u"song.txt"},
                                           {u"song.WAV", kText, u"song.txt", u"song.WAV"},
                                           {u"song.txt", kText, u"song.txt", u"song.txt"},
                                           {u"song.xyz", kText, u"song.xyz", u"song.xyz.txt"},
                                           {u"song.", kText, u"song.", u"song.txt"},
                                           {u"song.wav ", kText, u"song.wav ", u"song.wav"},
                                           {u"\"a b\"", kText, u"\"a b\"", u"a b.txt"},
                                           {u"\"a.txt\"", kSound, u"\"a.txt\"", u"\"a.txt\""},
                                           {u"C:\\a.wav\\b", kText, u"C:\\a.wav\\b", u"C:\\a.wav\\b.txt"},
                                           {u"folder\\", kText, u"folder\\", u"folder\\"},
                                           {u"..", kText, u"..", u".."},
                                           {u"", kText, u"", u""},
                                           {u"song.wav", kAll, u"song.wav", u"song.wav"},
                                           {u"song", kNone, u"song", u"song"}}) {
    EXPECT_EQ(NameForType(c.fTyped, kTypes, c.fType), c.fWhenTypeIsChosen) << WinText(c.fTyped);
    EXPECT_EQ(CompletedName(c.fTyped, kTypes, c.fType), c.fWhenAccepted) << WinText(c.fTyped);
  }
}

TEST_F(DialogMemoryTest, IsReadAndWrittenAndMayBeBroken) {
  TStartupStrings strings;
  strings.fCompanyName = u"MorvaneMemoryTest";
  strings.fProductName = u"P";
  const auto path = [&](const TChar* key) {
    TRegPath result = GetPreferencesPath(strings);
    result.push_back(key);
    return result;
  };
  for (const auto& [place, key] : {std::pair(&kOpenDialogMemory, u"Open Dialog4000000000"),
                                   std::pair(&kSaveDialogMemory, u"Save Dialog4000000000"),
                                   std::pair(&kFolderChooserMemory, u"Folder Chooser4000000000")}) {
    EXPECT_EQ(ReadDialogMemory(strings, *place, 4000000000u).fFolder, u"");
    EXPECT_FALSE(KeyPathExists(path(key)));  // reading makes nothing
    const TDialogMemory memory = {u"C:\\f\\", {-5, 6, 70, 80}, u".wav;.aiff"};
    WriteDialogMemory(strings, *place, 4000000000u, memory);
    const TDialogMemory read = ReadDialogMemory(strings, *place, 4000000000u);
    EXPECT_EQ(read.fFolder, memory.fFolder);
    EXPECT_EQ(read.fRect, memory.fRect);
    EXPECT_EQ(read.fLastExtensions, place->fExtensionsValue ? memory.fLastExtensions : TString());
    CRegKey position = OpenKeyPath(path(key), true);
    EXPECT_EQ(position.GetString(place->fFolderValue), memory.fFolder);
    position = CRegKey(position, u"Position", true);
    EXPECT_EQ(position.GetNumber(u"Bottom"), 80u);
    // One value of a wrong type, and nothing is remembered; the next result puts it right.
    position.SetString(u"Left", u"12");
    EXPECT_EQ(ReadDialogMemory(strings, *place, 4000000000u).fFolder, u"");
    EXPECT_TRUE(fOutput.HasLine("The memory of a dialog cannot be read."));
    WriteDialogMemory(strings, *place, 4000000000u, memory);
    EXPECT_EQ(ReadDialogMemory(strings, *place, 4000000000u).fRect, memory.fRect);
    // Without the right to write, what has been remembered stays.
    fOutput.fLines.clear();
    {
      const PatchedImport patch(nullptr, "RegSetValueExW", RefuseToSet);
      WriteDialogMemory(strings, *place, 4000000000u, TDialogMemory());
    }
    EXPECT_TRUE(fOutput.HasLine("The memory of a dialog cannot be written."));
    EXPECT_EQ(ReadDialogMemory(strings, *place, 4000000000u).fFolder, memory.fFolder);
  }
  EXPECT_EQ(RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\MorvaneMemoryTest"), ERROR_SUCCESS);
}

// Most applications ask for what is not there; then come those that read it, some that write it, and some
// that find it broken.
TEST_F(DialogMemoryTest, TenThousandUsesLeaveNoHandle) {
  TStartupStrings strings, others;
  strings.fCompanyName = u"MorvaneMemoryTest";
  strings.fProductName = others.fCompanyName = others.fProductName = u"None";
  TRegPath path = GetPreferencesPath(strings);
  path.insert(path.end(), {u"Open Dialog2", u"Position"});
  const TDialogMemory memory = {u"C:\\f\\", {1, 2, 3, 4}, u".wav"};
  WriteDialogMemory(strings, kOpenDialogMemory, 1, memory);
  WriteDialogMemory(strings, kOpenDialogMemory, 2, memory);
  OpenKeyPath(path, true).SetString(u"Left", u"broken");
  const std::int64_t kernel = KernelHandles(), gdi = GdiHandles(), user = UserHandles();
  for (int i = 0; i < 10000; ++i) {
    if (i % 100 == 0)
      WriteDialogMemory(strings, kOpenDialogMemory, 1, memory);
    else if (i % 100 == 1)
      EXPECT_EQ(ReadDialogMemory(strings, kOpenDialogMemory, 2).fFolder, u"");
    else if (i % 100 < 8)
      EXPECT_EQ(ReadDialogMemory(strings, kOpenDialogMemory, 1).fFolder, memory.fFolder);
    else
      EXPECT_EQ(ReadDialogMemory(others, kOpenDialogMemory, 1).fFolder, u"");
  }
  EXPECT_LE(KernelHandles(), kernel);
  EXPECT_LE(GdiHandles(), gdi);
  EXPECT_LE(UserHandles(), user + 100);
  EXPECT_EQ(RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\MorvaneMemoryTest"), ERROR_SUCCESS);
}
