// Command lines on a file system made up in memory.
#include <gtest/gtest.h>

#include <map>

#include "Component/Portable/CommandLine.h"
#include "Tests/Support/RecordingDebugOutput.h"

using namespace NSMorvane;
using NSMorvaneTest::RecordingDebugOutput;
using NSTextPackage::TString;

namespace {

using TTexts = std::vector<TString>;

class FakeFileSystem final : public IFileSystemProbe {
 public:
  TString NormalizeExistingPath(const TString& path) const override {
    const auto it = fPaths.find(path);
    return it == fPaths.end() ? TString() : it->second;
  }
  std::map<TString, TString> fPaths;  // from any spelling to the normal one
};

}  // namespace

TEST(CommandLine, OptionsAndFiles) {
  FakeFileSystem files;
  files.fPaths = {{u"C:\\a", u"C:\\a"},
                  {u"C:\\a b.txt", u"C:\\a b.txt"},
                  {u"C:\\a b.txt c", u"C:\\a b.txt c"},
                  {u"DIR~1", u"C:\\Directory\\"},
                  {u"x", u"X:\\x"}};
  const struct {
    TString commandLine;
    TTexts options;
    TTexts files;
  } rows[] = {
      // The program's name.
      {u"", {}, {}},
      {u"app.exe", {}, {u"app.exe"}},
      {u"app.exe ", {}, {}},
      {u"app.exe x", {}, {u"X:\\x"}},
      {u"app.exe  x", {}, {u"X:\\x"}},
      {u"\"C:\\p q\\app.exe\"", {}, {}},
      {u"\"C:\\p q\\app.exe\" x", {}, {u"X:\\x"}},
      {u"\"app.exe\"x", {}, {u"X:\\x"}},
      {u"C:/bin/app.exe /o", {u"/o"}, {}},
      {u"C:/bin/app.exe", {u"/bin/app.exe"}, {u"C:"}},
      // Options.
      {u"app.exe /safe", {u"/safe"}, {}},
      {u"app.exe /a /b  /c", {u"/a", u"/b", u"/c"}, {}},
      {u"app.exe /", {u"/"}, {}},
      {u"app.exe /a/b", {u"/a/b"}, {}},
      {u"app.exe a/b c", {u"/b"}, {u"ac"}},  // in the middle of a word too, and the blank goes with it
      {u"app.exe /f:\"a b/c\"d x", {u"/f:\"a b/c\"d"}, {u"X:\\x"}},
      {u"app.exe /f:\"a b x", {u"/f:\"a b x"}, {}},
      {u"app.exe \"a /b\" /c", {u"/c"}, {u"\"a /b\""}},
      {u"app.exe \"a /b", {}, {u"\"a /b"}},
      // Files.
      {u"\"C:\\Program Files\\app.exe\" /safe C:\\a b.txt", {u"/safe"}, {u"C:\\a b.txt"}},
      {u"app.exe C:\\a b.txt c", {}, {u"C:\\a b.txt c"}},
      {u"app.exe C:\\a b.txt d", {}, {u"C:\\a b.txt", u"d"}},
      {u"app.exe C:\\a b.tx", {}, {u"C:\\a", u"b.tx"}},
      {u"app.exe DIR~1   x new.txt", {}, {u"C:\\Directory\\", u"X:\\x", u"new.txt"}},
      {u"app.exe x  x   C:\\a  x", {}, {u"X:\\x", u"X:\\x", u"C:\\a", u"X:\\x"}},
      {u"app.exe no such.txt", {}, {u"no", u"such.txt"}},
      {u"app.exe x ", {}, {u"X:\\x"}},
      {u"app.exe x  ", {}, {u"X:\\x", u""}},  // the last of the blanks stands for a file without a name
      {u"app.exe \"x\"", {}, {u"\"x\""}},     // the quotes stay, and nothing of that name exists
      {u"app.exe \"x\" x", {}, {u"\"x\"", u"X:\\x"}},
      {u"app.exe \"x\" \"y\"", {}, {u"\"x\"", u"\"y"}},  // one quote at the end is taken off
      {u"app.exe \"x\"\"y\"", {}, {u"\"x\"", u"y"}},
      {u"app.exe x\t", {}, {u"x\t"}},
      {u"app.exe \U0001F600 \u00E4", {}, {u"\U0001F600", u"\u00E4"}}};
  RecordingDebugOutput output;
  for (const auto& row : rows) {
    const CCommandLine result = ParseCommandLine(row.commandLine, files);
    EXPECT_EQ(row.options, result.fOptions) << NSTextPackage::StringToUTF8(row.commandLine, false);
    EXPECT_EQ(row.files, result.fFiles) << NSTextPackage::StringToUTF8(row.commandLine, false);
  }
  EXPECT_TRUE(output.fAssertions.empty());
}

TEST(CommandLine, AnUnclosedQuoteAroundTheProgramIsReported) {
  FakeFileSystem files;
  RecordingDebugOutput output;
  const CCommandLine result = ParseCommandLine(u"\"app.exe x", files);
  EXPECT_EQ((TTexts{u"app.exe", u"x"}), result.fFiles);
  EXPECT_EQ(std::vector<std::string>{"pos!=NSTextPackage::TString::npos"}, output.fAssertions);
}
