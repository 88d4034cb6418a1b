// Conversions, numbers and templates of texts.
#include <clocale>
#include <cstring>
#include <memory>

#include "Component/Portable/Resources/StringScript.h"
#include "Component/Portable/Text/TextPackage.h"
#include "Tests/Support/UnitTest.h"

using namespace NSTextPackage;
using namespace NSMorvaneTest;

namespace {

using TBytes = std::vector<std::uint8_t>;

// An exact allocation, so that a checker of memory sees a read behind it.
TString Decode(const TBytes& bytes) {
  const std::unique_ptr<std::uint8_t[]> block(new std::uint8_t[bytes.size()]);
  std::copy(bytes.begin(), bytes.end(), block.get());
  return DecodeUTF8(block.get(), bytes.size(), u'_');
}

TString Read(const TBytes& bytes, std::int64_t start, std::int64_t size) {
  NSStringScript::CRawByteReader reader(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
  return ReadText(reader, start, size, u'_');
}

std::string Encode(std::uint32_t codePoint) {
  std::string bytes;
  EncodeUTF8(codePoint, bytes);
  return bytes;
}

}  // namespace

using TextPackage = ReportingTest;

TEST_F(TextPackage, DecoderFollowsTheLeadByteAlone) {
  const Rows<TBytes, TString> rows = {
      {{0xC3, 0xA4}, u"\u00E4"},
      {{0xE2, 0x80, 0xA9}, u"\u2029"},
      {{0xF0, 0x9F, 0x98, 0x80}, u"\U0001F600"},
      {{0xED, 0xA0, 0x80, 'x'}, u"\xD800x"},                          // a surrogate of its own
      {{0xC3, 'A', 'b'}, u"\u00C1b"},                                 // low six bits of whatever follows
      {{0xC3, 0x00, 'b'}, u"\u00C0b"},                                // a zero there too
      {{0xC0, 0x80, 'b'}, TString(u"\0b", 2)},                        // a long form of zero ends nothing
      {{'a', 0x00, 0xFF, 'b'}, u"a"},                                 // nothing behind a zero byte exists
      {{0xF8, 0x88, 0x80, 0x80, 0x80, '!'}, u"\xDFC0\xDC00!"},        // 0x200000
      {{0xFC, 0x80, 0x80, 0x81, 0x80, 0x80, '!'}, u"\u1000!"},        // six bytes
      {{0xFD, 0xBF, 0xBF, 0xBF, 0xBF, 0xBF}, u"\xD7BF\xDFFF"},        // 0x7FFFFFFF: the high unit wraps
      {{0xFE, 0x80, 0x80, 0x80, 0x81, 0x80, 'A', 'b'}, u"\u1001Ab"},  // the seventh byte is read twice
      {{0xFE, 0x07, 0x80, 0x80, 0x80, 0x80, '@'}, u"\xD7C0\xDC00@"}   // 0xC0000000, the rest of 7 is lost
  };
  for (const auto& [bytes, text] : rows) EXPECT_EQ(text, Decode(bytes)) << testing::PrintToString(bytes);
  // What cannot lead, and what is cut short.
  for (const char* text : {"\x80", "a\xBF", "\xFF", "\xC3", "a\xE2\x80", "\xF0\x9F\x98", "\xF8\x88\x80\x80",
                           "\xFC\x80\x80\x80\x80", "\xFE\x80\x80\x80\x80\x80"}) {
    EXPECT_THROW(Decode(TBytes(text, text + std::strlen(text))), XIllegalTextFormat) << text;
  }
}

TEST_F(TextPackage, MarksInFrontOfAText) {
  const Rows<TBytes, TTextMark, std::size_t> rows = {
      {{0xFF, 0xFE, 0, 0}, kTextMarkUTF32LittleEndian, 4}, {{0, 0, 0xFE, 0xFF}, kTextMarkUTF32BigEndian, 4},
      {{0xFE, 0xFF, 0, 0}, kTextMarkUTF16BigEndian, 2},    {{0xFF, 0xFE, 0}, kTextMarkUTF16LittleEndian, 2},
      {{0xEF, 0xBB, 0xBF, 'a'}, kTextMarkUTF8, 3},         {{0xEF, 0xBB}, kTextMarkNone, 0}};
  for (const auto& [bytes, mark, length] : rows) {
    std::size_t found = 99;
    EXPECT_EQ(mark, DetectTextMark(bytes.data(), bytes.size(), found));
    EXPECT_EQ(length, found);
    if (mark == kTextMarkUTF8 || mark == kTextMarkNone) continue;
    EXPECT_THROW(Read(bytes, 0, static_cast<std::int64_t>(bytes.size())), XIllegalTextFormat);
  }
  // Texts are read behind their mark, and only there.
  const TBytes bytes = {'x', 'x', 0xEF, 0xBB, 0xBF, 'a', 'b', 'y'};
  EXPECT_EQ(u"", Read(bytes, 2, 3));
  EXPECT_EQ(u"ab", Read(bytes, 2, 5));
  EXPECT_THROW(Read(bytes, 2, 7), std::out_of_range);
  EXPECT_THROW(Read(bytes, -1, 2), std::out_of_range);
}

TEST_F(TextPackage, EncoderHasItsOwnFourByteForm) {
  const Rows<std::uint32_t, std::string> rows = {
      {0x7F, "\x7F"},
      {0x80, "\xC2\x80"},
      {0x7FF, "\xDF\xBF"},
      {0x800, "\xE0\xA0\x80"},
      {0xFFFF, "\xEF\xBF\xBF"},
      {0x10000, "\xF0\x80\x80\x80"},  // bits 16 and 17 are not written
      {0x4ABCD, "\xF0\x9A\xAF\x8D"},
      {0x3FFFFF, "\xF3\xBF\xBF\xBF"}};
  for (const auto& [codePoint, bytes] : rows) EXPECT_EQ(bytes, Encode(codePoint)) << std::hex << codePoint;
  EXPECT_THROW(Encode(0x400000), XIllegalTextFormat);
}

TEST_F(TextPackage, Strings) {
  const Rows<TString, std::string> rows = {{u"", ""},
                                           {u"\U0001F600", "\xF0\x8F\x98\x80"},  // a pair is one code point
                                           {u"\xD83D/", "\xED\xA0\xBD/"},        // and half a pair another
                                           {u"\xDE00", "\xED\xB8\x80"}};
  for (const auto& [text, bytes] : rows) {
    EXPECT_EQ(bytes, StringToUTF8(text, false));
    EXPECT_EQ("\xEF\xBB\xBF" + bytes, StringToUTF8(text, true));
  }
  EXPECT_EQ(u"\uFEFF/", UTF8ToString("\xEF\xBB\xBF/"));
  EXPECT_EQ(u"a\x7F??", ASCIIToString("a\x7F\x80\xFF", u'?'));
  EXPECT_THROW(ASCIIToString("ab\x80", 0), XIllegalTextFormat);
  EXPECT_EQ("a\x7F##", StringToASCII(u"a\x7F\x80\uFFFF", '#'));
}

TEST_F(TextPackage, NumbersAsText) {
  EXPECT_EQ(u"-2147483648", NumberToString(kMin));
  EXPECT_EQ(u"4294967295", NumberToString(std::numeric_limits<std::uint32_t>::max()));
  const Rows<double, int, TString> rows = {{1.5, 0, u"2"},         {2.5, 0, u"2"},
                                           {-0.125, 2, u"-0.12"},  {1234.5, 3, u"1234.500"},
                                           {0.1, -1, u"0.100000"}, {1e22, 1, u"10000000000000000000000.0"}};
  for (const auto& [value, places, text] : rows) EXPECT_EQ(text, FloatToString(value, places));
  // Whatever the client's locale says.
  for (const char* locale : {"German", "de_DE.UTF-8"}) std::setlocale(LC_NUMERIC, locale);
  EXPECT_EQ(u"-1.50", FloatToString(-1.5, 2));
  EXPECT_EQ(u"1.23e+06", FloatToShortString(1234567, 3));
  std::setlocale(LC_NUMERIC, "C");
  EXPECT_EQ(313u + 20, FloatToString(-std::numeric_limits<double>::max(), 22).size());
}

TEST_F(TextPackage, DecimalsAreReadAsAScanReadsThem) {
  const Rows<TString, std::int32_t> good = {{u"0012", 12},
                                            {u"1000/7", 1000},
                                            {u" \t\r\n\v\f12x", 12},
                                            {u"+7", 7},
                                            {u"-99999999999999999999999999", kMin},
                                            {u"2147483648", kMax},
                                            {u"4294967297", kMax},
                                            {u"18446744073709551617000", kMax}};
  std::int32_t value = -5;
  for (const TString text : {u"", u"  ", u"x1", u"+", u"-", u"- 1", u"+-1", u"\u00A01", u"\u0661", u"/1"}) {
    EXPECT_FALSE(ReadDecimal(text, value)) << StringToASCII(text, '?');
    EXPECT_EQ(-5, value);
  }
  for (const auto& [text, expected] : good) {
    EXPECT_TRUE(ReadDecimal(text, value)) << StringToASCII(text, '?');
    EXPECT_EQ(expected, value) << StringToASCII(text, '?');
  }
}

TEST_F(TextPackage, ArraysWithoutTerminatorAreNotOverrun) {
  EXPECT_EQ(-1, CountChars(nullptr));
  const TChar full[3] = {u'a', u'b', u'c'};
  const TChar part[4] = {u'a', 0, u'c', u'd'};
  EXPECT_EQ(3u, CountChars(full, 3));
  EXPECT_EQ(1u, CountChars(part, 4));
  EXPECT_EQ(u"a", ArrayToString(part));
  const Rows<TString, std::size_t, TString> rows = {
      {u"abcd", 2, u"ab"}, {u"ab", 2, u"ab"}, {u"a", 3, u"a"}, {u"abc", 0, u""}};
  for (const auto& [source, maximum, copied] : rows) {
    TString destination(5, u'#');
    CopyChars(destination.data(), source.c_str(), maximum);
    EXPECT_EQ(copied + u'\0' + TString(4 - copied.size(), u'#'), destination);
  }
}

TEST_F(TextPackage, Templates) {
  const std::vector<TString> arguments = {u"zero", u"^1", u"two", u"3", u"4",  u"5",
                                          u"6",    u"7",  u"8",   u"9", u"ten"};
  const Rows<TString, std::uint32_t, TString> rows = {
      {u"Save \u201C^0\u201D?", 0, u"Save \u201Czero\u201D?"},
      {u"^1^2", 0, u"^1two"},  // what is put in is not expanded again
      {u"a^b^ 0^", 0, u"a^b^ 0^"},
      {u"^^10^002", 0, u"^tentwo"},
      {u"<^18446744073709551618x>", 0, u"<x>"},
      {u"^0<^1>", 1, u"ten<>"},  // base 1 and one digit: 10
      {u"<^0>", 429496729, u"<>"}};
  for (const auto& [text, base, expanded] : rows)
    EXPECT_EQ(expanded, FormatText(text, base, arguments)) << StringToASCII(text, '?');
}
