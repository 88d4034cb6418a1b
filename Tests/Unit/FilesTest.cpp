// Paths on a folder of this test's own, URLs, and file types.
#include "Component/Win/Platform/UtilsWinFiles.h"

#include "Component/Win/Platform/UtilsWin.h"
#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;

namespace {

// A temporary folder with a file "Some Text.txt" and a folder "Sub Folder", and it is the current one.
class FilesTest : public ReportingTest {
 protected:
  FilesTest() {
    TChar buffer[MAX_PATH + 1] = {};
    ::GetCurrentDirectoryW(MAX_PATH, WinBuffer(buffer));
    fPrevious = buffer;
    ::GetTempPathW(MAX_PATH, WinBuffer(buffer));
    fFolder = NormalizeExistingPath(buffer) + u"MorvaneFilesTest" +
              NSTextPackage::NumberToString(::GetCurrentProcessId());
    EXPECT_TRUE(::CreateDirectoryW(WinText(fFolder), nullptr));
    EXPECT_TRUE(::SetCurrentDirectoryW(WinText(fFolder)));
    fFolder += u'\\';
    EXPECT_TRUE(::CreateDirectoryW(L"Sub Folder", nullptr));
    ::CloseHandle(::CreateFileW(L"Some Text.txt", GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
  }
  ~FilesTest() override {
    ::DeleteFileW(L"Some Text.txt");
    ::RemoveDirectoryW(L"Sub Folder");
    ::SetCurrentDirectoryW(WinText(fPrevious));
    EXPECT_TRUE(::RemoveDirectoryW(WinText(fFolder)));
  }
  TString fFolder;  // with its backslash
  TString fPrevious;
};

const std::vector<CFileType> kTypes = {
    {u"Sound", u".aiff;.aif"}, {u"Anything", u""}, {u"Text", u".txt;.aif;.Tar.gz"}};

}  // namespace

TEST_F(FilesTest, WhatExistsAndItsNormalPath) {
  EXPECT_TRUE(IsExistingFolder(fFolder) && IsExistingFolder(u"Sub Folder"));
  EXPECT_TRUE(IsExistingFile(fFolder + u"Some Text.txt"));
  EXPECT_FALSE(IsExistingFile(u"Sub Folder") || IsExistingFolder(fFolder + u"Some Text.txt"));
  for (const TString path : {u"", u"C", u".", u"\"Some Text.txt\"", u"Some Text.txt\\", u"*"}) {
    EXPECT_FALSE(IsExistingFile(path) || IsExistingFolder(path));
    EXPECT_EQ(u"", NormalizeExistingPath(path));
  }
  const Rows<TString, TString> rows = {{u"Some Text.txt", fFolder + u"Some Text.txt"},
                                       {u".\\Sub Folder\\..\\Some Text.txt", fFolder + u"Some Text.txt"},
                                       {u"Sub Folder", fFolder + u"Sub Folder\\"},
                                       {u"C:\\", u"C:\\"}};
  for (const auto& [path, normal] : rows) EXPECT_EQ(normal, NormalizeExistingPath(path));
}

TEST(FileURLs, PathsAndBack) {
  EXPECT_EQ("file://C:\\\xC3\xA4 b%20", PathToFileURL(u"C:\\\u00E4 b%20"));
  // Pairs of surrogates, and half a pair, which the name of a file can have.
  EXPECT_EQ("file://\xF0\x9F\x98\x80\xED\xA0\xBDx", PathToFileURL(u"\xD83D\xDE00\xD83Dx"));
  EXPECT_EQ(u"\xD83D\xDE00", FileURLToPath("file://\xF0\x9F\x98\x80"));
  EXPECT_EQ(u"C:\\\u00E4%20", FileURLToPath("file://C:\\\xC3\xA4%20"));
  for (const char* url : {"file://", "FILE://x", "file:/x", "", "file:", " file://x", "http://x"})
    EXPECT_EQ(u"", FileURLToPath(url)) << url;
}

TEST(FileTypes, ExtensionsAndTypes) {
  const Rows<TString, TString, std::uint32_t> files = {{u"a.AIF", u".aif", 1},
                                                       {u"a.b.TXT", u".txt", 3},
                                                       {u"a.tar.gz", u"", 0},
                                                       {u"a.", u"", 0},
                                                       {u"C:\\a.txt\\b", u"", 0}};
  for (const auto& [name, extension, index] : files) {
    EXPECT_EQ(extension, FindExtensionForFile(kTypes, name));
    EXPECT_EQ(index, TypeIndexForFile(kTypes, name));
  }
  const Rows<TString, int, TString> completed = {
      {u"a.AIF", 0, u"a.AIF"}, {u"a.txt", 0, u"a.txt.aiff"}, {u"a.", 0, u"a..aiff"}, {u"a", 1, u"a"}};
  for (const auto& [name, type, result] : completed)
    EXPECT_EQ(result, AppendExtensionIfMissing(name, kTypes[type]));
  // Records need no terminator.
  TFileType record;
  std::fill(std::begin(record.fName), std::end(record.fName), u'n');
  std::fill(std::begin(record.fExtensions), std::end(record.fExtensions), u'.');
  EXPECT_EQ(TString(256, u'n'), MakeFileType(record).fName);
  EXPECT_EQ(TString(1028, u'.'), MakeFileType(record).fExtensions);
}

TEST(FileTypes, DialogFilter) {
  const RecordedOutput output;
  const std::vector<CFileType> types = {{u"Sound", u".aiff;.aif"}, {u"T", u".t.z"}};
  const TString expected(u"Sound (*.aiff;*.aif)\0*.aiff;*.aif\0T (*.t*.z)\0*.t*.z\0", 21 + 13 + 11 + 7);
  // The exact size will do, and one less will not, at any of the four texts.
  for (std::size_t size = 0; size <= expected.size(); ++size) {
    TString buffer(80, u'#');
    const TError error = ErrorOf([&] { BuildDialogFilter(types, buffer.data(), size); });
    EXPECT_EQ(size < expected.size() ? kOutOfMemoryError : kOK, error);
    EXPECT_EQ(TString(80 - size, u'#'), buffer.substr(size)) << size;
    EXPECT_TRUE(error != kOK || expected == buffer.substr(0, size));
  }
}
