// Paths on a folder of this test's own, URLs, and file types.
#include "Component/Win/UtilsWinFiles.h"

#include <gtest/gtest.h>

#include "Component/Win/UtilsWin.h"
#include "Tests/Support/RecordingDebugOutput.h"

using namespace NSMorvane;
using NSMorvaneTest::RecordingDebugOutput;
using NSTextPackage::TString;

namespace {

// A temporary folder with a file "Some Text.txt" and a folder "Sub Folder", and it is the current one.
class FilesTest : public testing::Test {
 protected:
  void SetUp() override {
    TChar buffer[MAX_PATH + 1] = {};
    ASSERT_NE(0u, ::GetCurrentDirectoryW(MAX_PATH, WinBuffer(buffer)));
    fPrevious = buffer;
    ASSERT_NE(0u, ::GetTempPathW(MAX_PATH, WinBuffer(buffer)));
    fFolder = NormalizeExistingPath(buffer) + u"MorvaneFilesTest" +
              NSTextPackage::NumberToString(::GetCurrentProcessId());
    ASSERT_TRUE(::CreateDirectoryW(WinText(fFolder), nullptr));
    ASSERT_TRUE(::SetCurrentDirectoryW(WinText(fFolder)));
    fFolder += u'\\';
    ASSERT_TRUE(::CreateDirectoryW(L"Sub Folder", nullptr));
    MakeFile(u"Some Text.txt");
  }
  void TearDown() override {
    ::DeleteFileW(L"Some Text.txt");
    ::RemoveDirectoryW(L"Sub Folder");
    ::SetCurrentDirectoryW(WinText(fPrevious));
    EXPECT_TRUE(::RemoveDirectoryW(WinText(fFolder)));
  }
  static void MakeFile(const TString& name) {
    const HANDLE file = ::CreateFileW(WinText(name), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    if (file != INVALID_HANDLE_VALUE) ::CloseHandle(file);
  }
  // With the short names of its parts, where the file system has them.
  static TString ShortPath(const TString& path) {
    TChar buffer[MAX_PATH] = {};
    EXPECT_NE(0u, ::GetShortPathNameW(WinText(path), WinBuffer(buffer), MAX_PATH));
    return buffer;
  }

  TString fFolder;  // with its backslash
  TString fPrevious;
};

const std::vector<CFileType> kTypes = {
    {u"Sound", u".aiff;.aif"}, {u"Anything", u""}, {u"Text", u".txt;.aif;.Tar.gz"}};

}  // namespace

TEST_F(FilesTest, WhatExists) {
  EXPECT_TRUE(IsExistingFolder(fFolder));
  EXPECT_TRUE(IsExistingFolder(u"Sub Folder"));
  EXPECT_FALSE(IsExistingFile(u"Sub Folder"));
  EXPECT_TRUE(IsExistingFile(fFolder + u"Some Text.txt"));
  EXPECT_FALSE(IsExistingFolder(fFolder + u"Some Text.txt"));
  for (const TString path : {u"", u"C", u".", u"nothing", u"\"Some Text.txt\"", u"Some Text.txt\\", u"*"}) {
    EXPECT_FALSE(IsExistingFile(path));
    EXPECT_FALSE(IsExistingFolder(path));
    EXPECT_EQ(u"", NormalizeExistingPath(path));
  }
}

TEST_F(FilesTest, NormalPaths) {
  const struct {
    TString path;
    TString normal;
  } rows[] = {{u"Some Text.txt", fFolder + u"Some Text.txt"},
              {ShortPath(u"Some Text.txt"), fFolder + u"Some Text.txt"},
              {u".\\Sub Folder\\..\\Some Text.txt", fFolder + u"Some Text.txt"},
              {ShortPath(u"Sub Folder"), fFolder + u"Sub Folder\\"},
              {u"C:\\", u"C:\\"}};
  for (const auto& row : rows) EXPECT_EQ(row.normal, NormalizeExistingPath(row.path));
}

TEST(FileURLs, PathsAndBack) {
  EXPECT_EQ("file://C:\\a b.txt", PathToFileURL(u"C:\\a b.txt"));
  EXPECT_EQ("file://C:\\\xC3\xA4%20", PathToFileURL(u"C:\\\u00E4%20"));
  EXPECT_EQ(u"C:\\\u00E4%20", FileURLToPath("file://C:\\\xC3\xA4%20"));
  for (const char* url : {"file://", "FILE://x", "file:/x", "", "file:", " file://x", "http://x"})
    EXPECT_EQ(u"", FileURLToPath(url)) << url;
}

TEST(FileTypes, RecordsNeedNoTerminator) {
  TFileType record;
  std::fill(std::begin(record.fName), std::end(record.fName), u'n');
  std::fill(std::begin(record.fExtensions), std::end(record.fExtensions), u'.');
  EXPECT_EQ(TString(256, u'n'), MakeFileType(record).fName);
  EXPECT_EQ(TString(1028, u'.'), MakeFileType(record).fExtensions);
}

TEST(FileTypes, TypeOfAFile) {
  const struct {
    TString name;
    TString extension;
    std::uint32_t index;
  } rows[] = {{u"a.AIF", u".aif", 1},   {u"a.aiff", u".aiff", 1},
              {u"a.b.TXT", u".txt", 3}, {u"a.tar.gz", u"", 0},
              {u"a", u"", 0},           {u"", u"", 0},
              {u"a.", u"", 0},          {u"C:\\a.txt\\b", u"", 0},
              {u".txt", u".txt", 3}};
  for (const auto& row : rows) {
    EXPECT_EQ(row.extension, FindExtensionForFile(kTypes, row.name));
    EXPECT_EQ(row.index, TypeIndexForFile(kTypes, row.name));
  }
  EXPECT_EQ(0u, TypeIndexForFile({}, u"a.txt"));
}

TEST(FileTypes, MissingExtensions) {
  const struct {
    TString name;
    CFileType type;
    TString result;
  } rows[] = {
      {u"a", kTypes[0], u"a.aiff"},   {u"a.AIF", kTypes[0], u"a.AIF"}, {u"a.txt", kTypes[0], u"a.txt.aiff"},
      {u"a.", kTypes[0], u"a..aiff"}, {u"a", kTypes[1], u"a"},         {u"", kTypes[0], u".aiff"}};
  for (const auto& row : rows) EXPECT_EQ(row.result, AppendExtensionIfMissing(row.name, row.type));
}

TEST(FileTypes, DialogFilter) {
  const std::vector<CFileType> types = {{u"Sound", u".aiff;.aif"}, {u"T", u".t.z"}};
  const TString expected(u"Sound (*.aiff;*.aif)\0*.aiff;*.aif\0T (*.t*.z)\0*.t*.z\0", 21 + 13 + 11 + 7);

  // What is cleared before are bytes, half as many characters.
  TString buffer(80, u'#');
  BuildDialogFilter(types, buffer.data(), 60);
  EXPECT_EQ(expected, buffer.substr(0, expected.size()));
  EXPECT_EQ(TString(28, u'#'), buffer.substr(expected.size()));
  // The exact size will do, and one less will not, at any of the four texts.
  const RecordingDebugOutput output;
  std::size_t failures = 0;
  for (std::size_t size = 0; size <= expected.size(); ++size) {
    buffer.assign(80, u'#');
    try {
      BuildDialogFilter(types, buffer.data(), size);
    } catch (const std::bad_alloc&) {
      ++failures;
    }
    EXPECT_EQ(TString(80 - size, u'#'), buffer.substr(size)) << size;
  }
  EXPECT_EQ(expected.size(), failures);
}
