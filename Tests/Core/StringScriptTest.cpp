// What is a string script and what is not.
#include "Component/Portable/Resources/StringScript.h"
#include "Tests/Support/UnitTest.h"

using namespace NSStringScript;
using namespace NSMorvaneTest;

using StringScript = ReportingTest;

TEST_F(StringScript, Scripts) {
  using TEntries = std::vector<std::pair<int, TString>>;
  const Rows<TString, TEntries> rows = {{u"0{}", {{0, u""}}},
                                        {u" \t 65535 \t {a} \t ", {{65535, u"a"}}},
                                        {u"2{b}\n1{a}\r2{c}", {{2, u"b"}, {1, u"a"}, {2, u"c"}}},
                                        {u"1{a}//x\u20282{b}\u20293{c}\r\n4{d}\r\r\n\n5{e}\n",
                                         {{1, u"a"}, {2, u"b"}, {3, u"c"}, {4, u"d"}, {5, u"e"}}},
                                        // No entries at all.
                                        {u"// 1{a}\n\n  // b\r\n \t\n//", {}},
                                        // The text between the braces.
                                        {u"1{ {a\nb // c\t}", {{1, u" {a\nb // c\t"}}},
                                        {u"1{\\r\\\\r\\n\\R\\}", {{1, u"\u2029\\\u2029\\n\\R\\"}}},
                                        {u"1{\u201Ca\u201D\u2018\"}", {{1, u"\"a\"\u2018\""}}},
                                        {TString(u"1{a\0b}", 6), {{1, TString(u"a\0b", 3)}}}};
  for (const auto& [script, entries] : rows) {
    TEntries parsed;
    for (const TScriptEntry& entry : ParseStringScript(script)) parsed.emplace_back(entry.id, entry.text);
    EXPECT_EQ(entries, parsed) << testing::PrintToString(script);
  }
}

TEST_F(StringScript, OneBadLineLosesTheScript) {
  const TString zero(1, u'\0');
  // clang-format off
  for (const TString& script : std::initializer_list<TString>{
           u"1", u"1 ", u"1x", u"1{", u"1{a", u"1{a\\", u"1{a\\r", u"1{a} 2{b}", u"1{a}2{b}", u"1{a} /x",
           u"1{a}/", u"1{a}}", u"{a}", u"a", u"/", u"/ /", u"1\n{a}", u"1 //\n{a}", u"1{a}\n2", u"\\", u"}", zero,
           // numbers
           u"65536{a}", u"-1{a}", u"+1{a}", u"4294967297{a}", u"2147483648{a}", u"99999999999999999999{a}",
           // what looks like a blank or a digit
           u"\u00A01{a}", u"\u0661{a}", u"\v1{a}", u"1\u00A0{a}", u"1{a}\n\uFEFF2{b}"}) {
    // clang-format on
    EXPECT_THROW(ParseStringScript(script), XBadFormat) << testing::PrintToString(script);
  }
  EXPECT_EQ("", TakeReports());
  // An empty text breaks the invariant.
  EXPECT_THROW(ParseStringScript(u""), XBadFormat);
  EXPECT_EQ("false; CheckInvariant()", TakeReports());
}

TEST_F(StringScript, ReaderStaysInItsBlock) {
  std::uint8_t bytes[4] = {1, 2, 3, 4};
  CRawByteReader reader(bytes, 4);
  const Rows<std::int64_t, std::int64_t> rows = {{0, 5},  {5, 0},         {-1, 2},
                                                 {1, -1}, {1, INT64_MAX}, {INT64_MAX, 1}};
  for (const auto& [start, size] : rows)
    EXPECT_THROW(reader.ReadBytes(start, size, bytes), std::out_of_range) << start;
}
