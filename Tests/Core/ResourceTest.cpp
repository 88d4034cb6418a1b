// Resource keys, what is a string script and what is not, and the string cache on banks made up in memory.
#include <map>

#include "Component/Portable/Resources/ResourceKey.h"
#include "Component/Portable/Resources/ResourceLoader.h"
#include "Component/Portable/Resources/ResourceStringCache.h"
#include "Component/Portable/Resources/StringScript.h"
#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;
using namespace NSStringScript;

namespace {

using TBanks = std::map<std::string, std::string>;

// Banks in memory. Everything that was loaded has to come back.
class FakeLoader : public IResourceLoader {
 public:
  explicit FakeLoader(TBanks banks = {}) : fBanks(std::move(banks)) {}
  TResourceBytes Load(const std::string& key) override {
    fLoads.push_back(key);
    const auto it = fBanks.find(key);
    if (it == fBanks.end()) throw std::exception();
    ++fHeld;
    return TResourceBytes{reinterpret_cast<const std::uint8_t*>(it->second.data()),
                          static_cast<std::uint32_t>(it->second.size())};
  }
  void Release(const TResourceBytes& bytes) override {
    for (const auto& [key, bank] : fBanks)
      if (reinterpret_cast<const std::uint8_t*>(bank.data()) == bytes.data) --fHeld;
  }

  TBanks fBanks;
  Texts fLoads;
  int fHeld = 0;
};

}  // namespace

using Resource = ReportingTest;

TEST_F(Resource, Keys) {
  const Rows<const char*, std::string, std::int32_t> good = {{"SSTR/1000", "SSTR", 1000},
                                                             {"SSTR/12x", "SSTR", 12},
                                                             {"SSTR/1000/7", "SSTR", 1000},
                                                             {"SSTR/ -5", "SSTR", -5},
                                                             {"\xE4\xE4\xE4\xE4/1", "\xE4\xE4\xE4\xE4", 1},
                                                             {"SSTR/99999999999", "SSTR", kMax}};
  for (const auto& [text, type, number] : good) {
    const TResourceKey key = ParseResourceKey(text);
    EXPECT_EQ(type, key.type);
    EXPECT_EQ(number, key.number) << text;
  }
  for (const char* key : {"", "SSTR", "SST/1000", "SSTRX/1000", "/SSTR/1000", "SSTR/", "SSTR/x", "SSTR//1",
                          "SSTR/1\xE4", "SSTR/\xE4"}) {
    EXPECT_EQ(Has(key, "\xE4") ? kOtherError : kBadInputProgrammingError,
              ErrorOf([&] { ParseResourceKey(key); }))
        << key;
  }
}

TEST_F(Resource, PredefinedTypes) {
  const Rows<TString, std::uint16_t> rows = {
      {u"ACCL", 9},  {u"ANIC", 21}, {u"ANII", 22}, {u"BITM", 2},  {u"CURS", 1},  {u"DLOG", 17},
      {u"FONT", 8},  {u"FNTD", 7},  {u"GCUR", 12}, {u"GICN", 14}, {u"HTML", 23}, {u"ICON", 3},
      {u"MNFS", 24}, {u"MENU", 4},  {u"MSGT", 11}, {u"PLGP", 19}, {u"RCDA", 10}, {u"STRT", 6},
      {u"VERS", 16}, {u"VXD ", 20}, {u"SSTR", 0},  {u"accl", 0},  {u"ACC", 0},   {u"", 0}};
  for (const auto& [type, atom] : rows)
    EXPECT_EQ(atom, PredefinedResourceType(type)) << NSTextPackage::StringToUTF8(type, false);
}

TEST_F(Resource, StringScripts) {
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

TEST_F(Resource, OneBadLineLosesTheScript) {
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

TEST_F(Resource, ReaderStaysInItsBlock) {
  std::uint8_t bytes[4] = {1, 2, 3, 4};
  CRawByteReader reader(bytes, 4);
  const Rows<std::int64_t, std::int64_t> rows = {{0, 5},  {5, 0},         {-1, 2},
                                                 {1, -1}, {1, INT64_MAX}, {INT64_MAX, 1}};
  for (const auto& [start, size] : rows)
    EXPECT_THROW(reader.ReadBytes(start, size, bytes), std::out_of_range) << start;
}

TEST_F(Resource, OneBankOfStringsIsReadOnce) {
  FakeLoader loader(
      {{"SSTR/1000", "\xEF\xBB\xBF 2 {two}\n1 {}\n2 {other two}\n65535{last}"}, {"SST/1", "2{x}"}});
  CResourceStringCache cache(loader);
  EXPECT_EQ(u"two", cache.GetString("SSTR/1000/2"));
  EXPECT_EQ(u"", cache.GetString("SSTR/1000/1"));
  EXPECT_EQ(u"last", cache.GetString("SSTR/1000/65535"));
  EXPECT_EQ("SSTR/1000", Joined(loader.fLoads));
  // A short key is reported and served.
  EXPECT_EQ(u"x", cache.GetString("SST/1/2"));
  EXPECT_EQ("key.length()>=8", TakeReports());
  // What is not there is looked for again, and what has been read stays as it was.
  EXPECT_EQ(kBadInputProgrammingError, ErrorOf([&] { cache.GetString("SSTR/1000/3"); }));
  loader.fBanks["SSTR/1000"] = "1{b}\n3{c}";
  EXPECT_EQ(u"c", cache.GetString("SSTR/1000/3"));
  EXPECT_EQ(u"", cache.GetString("SSTR/1000/1"));
  EXPECT_EQ(0, loader.fHeld);
}

TEST_F(Resource, FailuresOfStrings) {
  const Rows<const char*, std::string, TError> rows = {
      {"SSTR/1000/2", "1{a}", kBadInputProgrammingError},
      {"SSTR/1000/1x", "1{a}", kBadInputProgrammingError},
      {"SSTR/1000/1\xE4", "1{a}", kOtherError},
      {"SSTR/1000/x", "1{a", kBadFormatError},  // the script is judged first
      {"SSTR/1000/1", "1{a}\xE2\x80", kOtherError},
      {"SSTR/1000/1", "\xFF\xFE/", kOtherError}};
  for (const auto& [key, bank, thrown] : rows) {
    FakeLoader loader(TBanks{{"SSTR/1000", bank}});
    CResourceStringCache cache(loader);
    EXPECT_EQ(thrown, ErrorOf([&, key = key] { cache.GetString(key); })) << key << " in " << bank;
    EXPECT_EQ(0, loader.fHeld);
  }
  TakeReports();
  FakeLoader empty;
  CResourceStringCache cache(empty);
  EXPECT_EQ(kOtherError, ErrorOf([&] { cache.GetString("SSTR/1001/1"); }));
  EXPECT_EQ(kBadInputProgrammingError, ErrorOf([&] { cache.GetString("SSTR1000"); }));
}
