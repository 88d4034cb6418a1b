// Resource keys, the loader on this program's own resources, and the string cache on banks made up in memory.
#include <windows.h>

#include <gtest/gtest.h>

#include <set>

#include "Component/Portable/ResourceKey.h"
#include "Component/Portable/ResourceLoader.h"
#include "Component/Portable/ResourceStringCache.h"
#include "Component/Portable/StringScript.h"
#include "Tests/Support/RecordingDebugOutput.h"

using namespace NSMorvane;
using NSMorvaneTest::RecordingDebugOutput;
using NSTextPackage::TString;
using NSTextPackage::XIllegalTextFormat;

namespace {

// What a call ends in: the name of an exception, or "" if it returns.
template <class Function>
std::string Outcome(Function function) {
  try {
    function();
  } catch (const std::invalid_argument&) {
    return "invalid_argument";
  } catch (const XIllegalTextFormat&) {
    return "XIllegalTextFormat";
  } catch (const XBadFormat&) {
    return "XBadFormat";
  } catch (const std::exception& e) {
    return typeid(e) == typeid(std::exception) ? "exception" : "another";
  }
  return "";
}

std::string Text(const TResourceBytes& bytes) {
  return std::string(reinterpret_cast<const char*>(bytes.data), bytes.size);
}

// Banks in memory. Everything that was loaded has to come back.
class FakeLoader : public IResourceLoader {
 public:
  TResourceBytes Load(const std::string& key) override {
    fLoads.push_back(key);
    const auto it = fBanks.find(key);
    if (it == fBanks.end()) throw std::exception();
    ++fHeld;
    return TResourceBytes{reinterpret_cast<const std::uint8_t*>(it->second.data()),
                          static_cast<std::uint32_t>(it->second.size())};
  }
  void Release(const TResourceBytes& bytes) override {
    for (const auto& bank : fBanks) {
      if (reinterpret_cast<const std::uint8_t*>(bank.second.data()) == bytes.data) --fHeld;
    }
  }

  std::map<std::string, std::string> fBanks;
  std::vector<std::string> fLoads;
  int fHeld = 0;
};

}  // namespace

TEST(Resource, Keys) {
  const struct {
    const char* key;
    const char* type;
    std::int32_t number;
  } good[] = {{"SSTR/1000", "SSTR", 1000},
              {"SSTR/01000", "SSTR", 1000},
              {"SSTR/12x", "SSTR", 12},
              {"SSTR/1000/7", "SSTR", 1000},
              {"SSTR/ -5", "SSTR", -5},
              {"SSTR/66536", "SSTR", 66536},
              {"VXD /+1", "VXD ", 1},
              {"\xE4\xE4\xE4\xE4/1", "\xE4\xE4\xE4\xE4", 1},
              {"SSTR/99999999999", "SSTR", 2147483647}};
  RecordingDebugOutput output;
  for (const auto& row : good) {
    const TResourceKey key = ParseResourceKey(row.key);
    EXPECT_EQ(row.type, key.type);
    EXPECT_EQ(row.number, key.number) << row.key;
  }
  EXPECT_TRUE(output.fLines.empty());

  const std::vector<std::pair<const char*, const char*>> bad = {{"SSTR/1\xE4", "XIllegalTextFormat"},
                                                                {"SSTR/\xE4", "XIllegalTextFormat"},
                                                                {"", "invalid_argument"},
                                                                {"SSTR", "invalid_argument"},
                                                                {"SST/1000", "invalid_argument"},
                                                                {"SSTRX/1000", "invalid_argument"},
                                                                {"/SSTR/1000", "invalid_argument"},
                                                                {"SSTR/", "invalid_argument"},
                                                                {"SSTR/x", "invalid_argument"},
                                                                {"SSTR//1", "invalid_argument"}};
  for (const auto& [key, outcome] : bad) {
    output.Reset();
    EXPECT_EQ(outcome, Outcome([&] { ParseResourceKey(key); })) << key;
    EXPECT_EQ(1u, output.fLines.size());
    EXPECT_TRUE(output.HasLine("[Morvane] Exception thrown at Component/Portable/"));
  }
  EXPECT_TRUE(output.fAssertions.empty());
}

TEST(Resource, LoaderReadsTheProgramsResources) {
  IResourceLoader& loader = GetResourceLoader();
  const TResourceBytes bytes = loader.Load("SSTR/1001");
  EXPECT_EQ("// two strings\r\n1 {one}\r\n2 {}\r\n", Text(bytes));
  loader.Release(bytes);
  for (const char* key : {"SSTR/1001", "SSTR/01001", "SSTR/1001/9", "SSTR/66537"}) {
    EXPECT_EQ(bytes.data, loader.Load(key).data) << key;
    EXPECT_EQ(bytes.size, loader.Load(key).size) << key;
  }
  EXPECT_EQ("raw", Text(loader.Load("RCDA/1002")));
  EXPECT_EQ("include", Text(loader.Load("DLOG/1003")));
}

TEST(Resource, LoaderFailuresAreNotRemembered) {
  RecordingDebugOutput output;
  CResourceLoader loader(::GetModuleHandleW(nullptr));
  for (int attempt = 0; attempt < 2; ++attempt) {
    EXPECT_EQ("exception", Outcome([&] { loader.Load("SSTR/999"); }));
    EXPECT_EQ("exception", Outcome([&] { loader.Load("RCDA/1001"); }));
    EXPECT_EQ("XIllegalTextFormat", Outcome([&] { loader.Load("sst\xE4/1"); }));
  }
  EXPECT_TRUE(output.HasLine("Exception thrown at Component/Portable/ResourceLoader"));
  EXPECT_TRUE(output.fAssertions.empty());
}

TEST(ResourceStrings, OneBankIsReadOnce) {
  FakeLoader loader;
  loader.fBanks["SSTR/1000"] = "\xEF\xBB\xBF 2 {two}\n1 {}\n2 {other two}\n65535{last}";
  loader.fBanks["SST/1"] = "2{x}";
  CResourceStringCache cache(loader);
  RecordingDebugOutput output;
  EXPECT_EQ(u"two", cache.GetString("SSTR/1000/2"));
  EXPECT_EQ(u"", cache.GetString("SSTR/1000/1"));
  EXPECT_EQ(u"last", cache.GetString("SSTR/1000/65535"));
  EXPECT_EQ(std::vector<std::string>{"SSTR/1000"}, loader.fLoads);
  EXPECT_TRUE(output.fAssertions.empty());
  EXPECT_TRUE(output.fLines.empty());
  // A short key is reported and served.
  EXPECT_EQ(u"x", cache.GetString("SST/1/2"));
  EXPECT_EQ(std::vector<std::string>{"key.length()>=8"}, output.fAssertions);
  EXPECT_EQ(0, loader.fHeld);
}

TEST(ResourceStrings, Failures) {
  const struct {
    const char* key;
    std::string bank;
    const char* outcome;
  } rows[] = {{"SSTR/1000/2", "1{a}", "invalid_argument"},
              {"SSTR/1000/01", "1{a}", "invalid_argument"},
              {"SSTR/1000/1x", "1{a}", "invalid_argument"},
              {"SSTR/1000/x", "1{a}", "exception"},
              {"SSTR/1000/", "1{a}", "exception"},
              {"SSTR/1000/1\xE4", "1{a}", "XIllegalTextFormat"},
              {"SSTR/1000/x", "1{a", "XBadFormat"},  // the script is judged first
              {"SSTR/1000/1", "", "XBadFormat"},
              {"SSTR/1000/1", "1{a}\xE2\x80", "XIllegalTextFormat"},
              {"SSTR/1000/1", "\xFF\xFE/", "XIllegalTextFormat"}};
  for (const auto& row : rows) {
    FakeLoader loader;
    loader.fBanks["SSTR/1000"] = row.bank;
    CResourceStringCache cache(loader);
    for (int attempt = 0; attempt < 2; ++attempt) {
      EXPECT_EQ(row.outcome, Outcome([&] { cache.GetString(row.key); })) << row.key << " in " << row.bank;
    }
    EXPECT_EQ(2u, loader.fLoads.size()) << row.key;
    EXPECT_EQ(0, loader.fHeld);
  }
  FakeLoader empty;
  CResourceStringCache cache(empty);
  EXPECT_EQ("exception", Outcome([&] { cache.GetString("SSTR/1001/1"); }));
  EXPECT_EQ("invalid_argument", Outcome([&] { cache.GetString("SSTR1000"); }));
  EXPECT_EQ(std::vector<std::string>{"SSTR/1001"}, empty.fLoads);
}

TEST(ResourceStrings, WhatABankHadStaysAfterAFailure) {
  FakeLoader loader;
  loader.fBanks["SSTR/1000"] = "1{a}";
  CResourceStringCache cache(loader);
  RecordingDebugOutput output;
  EXPECT_THROW(cache.GetString("SSTR/1000/2"), std::invalid_argument);
  EXPECT_TRUE(output.HasLine("Exception thrown at Component/Portable/ResourceStringCache.cpp("));
  EXPECT_EQ(u"a", cache.GetString("SSTR/1000/1"));
  EXPECT_EQ(1u, loader.fLoads.size());
  // A key that only became one later is read anew: the bank is not remembered as complete.
  loader.fBanks["SSTR/1000"] = "1{b}\n2{c}";
  EXPECT_EQ(u"c", cache.GetString("SSTR/1000/2"));
  EXPECT_EQ(u"a", cache.GetString("SSTR/1000/1"));
}

TEST(ResourceStrings, EachLoaderHasOneCache) {
  static FakeLoader other;
  other.fBanks["SSTR/1001"] = "1{other}";
  IResourceStringCache& cache = GetResourceStringCache(GetResourceLoader());
  EXPECT_EQ(&cache, &GetResourceStringCache(GetResourceLoader()));
  EXPECT_NE(&cache, &GetResourceStringCache(other));
  EXPECT_EQ(u"one", cache.GetString("SSTR/1001/1"));
  EXPECT_EQ(u"other", GetResourceStringCache(other).GetString("SSTR/1001/1"));
}

// The shipped file, as it lies in this program.
TEST(ResourceStrings, EnglishTextsAreComplete) {
  std::set<int> expected = {23};
  for (int id = 1; id <= 15; ++id) expected.insert(id);
  for (int id = 100; id <= 133; ++id) expected.insert(id);
  CLockedResource resource(GetResourceLoader(), "SSTR/1000");
  NSStringScript::CRawByteReader reader(resource.data(), resource.size());
  const auto entries =
      NSStringScript::ParseStringScript(NSTextPackage::ReadText(reader, 0, resource.size(), u'_'));
  std::set<int> found;
  for (const auto& entry : entries) {
    EXPECT_TRUE(found.insert(entry.id).second) << entry.id << " is there twice";
    EXPECT_FALSE(entry.text.empty()) << entry.id;
    EXPECT_LE(std::count(entry.text.begin(), entry.text.end(), u'_'), 1) << entry.id;
  }
  EXPECT_EQ(expected, found);
  for (const char* key : {"SSTR/1000/11", "SSTR/1000/12"}) {
    const TString text = GetResourceStringCache(GetResourceLoader()).GetString(key);
    EXPECT_NE(TString::npos, NSTextPackage::FormatText(text, 0, {u"Untitled"}).find(u"\"Untitled\"")) << key;
  }
}
