// Resource keys, and the string cache on banks made up in memory.
#include <map>

#include "Component/Portable/Resources/ResourceKey.h"
#include "Component/Portable/Resources/ResourceLoader.h"
#include "Component/Portable/Resources/ResourceStringCache.h"
#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;

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
