// Command lines on a file system made up in memory.
#include "Component/Portable/Opening/CommandLine.h"

#include <map>

#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;

namespace {

class FakeFileSystem final : public IFileSystemProbe {
 public:
  TString NormalizeExistingPath(const TString& path) const override {
    ++fQuestions;
    const auto it = fPaths.find(path);
    return it == fPaths.end() ? TString() : it->second;
  }
  TString FullPath(const TString& path) const override {
    return !path.empty() && path.find(u':') == TString::npos ? u"D:\\" + path : TString();
  }
  mutable std::size_t fQuestions = 0;
  // From any spelling to the normal one.
  std::map<TString, TString> fPaths = {{u"C:\\a", u"C:\\a"},
                                       {u"C:\\a b.txt", u"C:\\a b.txt"},
                                       {u"C:\\a b.txt c", u"C:\\a b.txt c"},
                                       {u"DIR~1", u"C:\\Directory\\"},
                                       {u"x", u"X:\\x"},
                                       {u"X:\\x", u"X:\\x"}};
};

// "option, option | file, file"
std::string Parsed(const TString& commandLine) {
  const CCommandLine result = ParseCommandLine(commandLine, FakeFileSystem());
  std::string text;
  for (const std::vector<TString>* list : {&result.fOptions, &result.fFiles}) {
    for (const TString& each : *list)
      text += (&each == list->data() ? "" : ", ") + NSTextPackage::StringToUTF8(each, false);
    if (list == &result.fOptions) text += '|';
  }
  return text;
}

}  // namespace

using CommandLine = ReportingTest;

TEST_F(CommandLine, OptionsAndFiles) {
  const Rows<TString, std::string> rows = {
      // The program's name.
      {u"", "|"},
      {u"app.exe", "|app.exe"},
      {u"app.exe  x", "|X:\\x"},
      {u"\"C:\\p q\\app.exe\" x", "|X:\\x"},
      {u"\"app.exe\"x", "|X:\\x"},
      {u"C:/bin/app.exe /o", "/o|"},
      {u"C:/bin/app.exe", "/bin/app.exe|C:"},
      // Options.
      {u"app.exe /a /b  /c", "/a, /b, /c|"},
      {u"app.exe /a/b", "/a/b|"},
      {u"app.exe a/b c", "/b|ac"},  // in the middle of a word too, and the blank goes with it
      {u"app.exe /f:\"a b/c\"d x", "/f:\"a b/c\"d|X:\\x"},
      {u"app.exe /f:\"a b x", "/f:\"a b x|"},
      {u"app.exe \"a /b\" /c", "/c|\"a /b\""},
      // Files.
      {u"\"C:\\Program Files\\app.exe\" /safe C:\\a b.txt", "/safe|C:\\a b.txt"},
      {u"app.exe C:\\a b.txt d", "|C:\\a b.txt, d"},
      {u"app.exe C:\\a b.tx", "|C:\\a, b.tx"},
      {u"app.exe DIR~1   x new.txt", "|C:\\Directory\\, X:\\x, new.txt"},
      {u"app.exe x ", "|X:\\x"},
      {u"app.exe x   ", "|X:\\x"},
      {u"\"app.exe\"   ", "|"},
      {u"app.exe \"x\"", "|\"x\""},             // the quotes stay, and nothing of that name exists
      {u"app.exe \"x\" \"y\"", "|\"x\", \"y"},  // one quote at the end is taken off
      {u"app.exe \"x\"\"y\"", "|\"x\", y"},
      {u"app.exe \U0001F600 \u00E4", "|\xF0\x8F\x98\x80, \xC3\xA4"}};
  for (const auto& [commandLine, expected] : rows)
    EXPECT_EQ(expected, Parsed(commandLine)) << NSTextPackage::StringToUTF8(commandLine, false);
  EXPECT_EQ("", TakeReports());
  // An unclosed quote around the program.
  EXPECT_EQ("|app.exe, X:\\x", Parsed(u"\"app.exe x"));
  EXPECT_EQ("pos!=NSTextPackage::TString::npos", TakeReports());
}

// A path of the length that is looked for at most is found; a long line of many files is no reason to look
// for all that could stand in it.
TEST_F(CommandLine, AskForNothingThatIsTooLong) {
  FakeFileSystem files;
  const TString longest = TString(kMaxAskedPath - 2, u'p') + u" q";
  files.fPaths = {{longest, u"longest"}, {longest + u"r", u"longer"}};
  EXPECT_EQ((std::vector<TString>{u"longest", u"x"}), SplitFileArguments(longest + u" x", files));
  EXPECT_EQ(3u, SplitFileArguments(longest + u"r x", files).size());
  files.fQuestions = 0;
  TString many;
  for (int i = 0; i < 2000; ++i) many += u" C:\\folder\\file.txt";
  EXPECT_EQ(2000u, SplitFileArguments(many, files).size());
  EXPECT_LE(files.fQuestions, 2000u * 80);
}

TEST_F(CommandLine, ForAnotherFolder) {
  const Rows<TString, TString> rows = {
      // Nothing to change.
      {u"", u""},
      {u"app.exe", u"app.exe"},
      {u"\"app.exe\"", u"\"app.exe\""},
      {u"\"app.exe x", u"\"app.exe x"},
      {u"app.exe C:\\a b.txt  /o", u"app.exe C:\\a b.txt  /o"},
      {u"app.exe mailto:x", u"app.exe mailto:x"},
      // What exists, what does not, and what has quotes.
      {u"app.exe /o x new /p", u"app.exe /o /p X:\\x D:\\new"},
      {u"\"a pp.exe\" DIR~1 \"n w\" y", u"\"a pp.exe\" C:\\Directory\\ \"D:\\n w\" D:\\y"},
      {u"app.exe \"y\" \"z\"", u"app.exe \"D:\\y\" \"D:\\z\""},
      // As much as fits.
      {u"app.exe n 2345678901234567890 m", u"app.exe D:\\n D:\\2345678901234567890 m"},
      // Odd quotes would take in what follows.
      {u"app.exe n /o\"1", u"app.exe n /o\"1"}};
  for (const auto& [commandLine, expected] : rows)
    EXPECT_EQ(expected, WithFullPaths(commandLine, FakeFileSystem(), 38))
        << NSTextPackage::StringToUTF8(commandLine, false);
}
