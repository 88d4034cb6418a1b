// The loader on this program's own resources.
#include "Component/Win/Platform/WinResourceLoader.h"

#include <set>

#include "Component/Portable/Resources/StringScript.h"
#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;

namespace {

std::string Text(const TResourceBytes& bytes) {
  return std::string(reinterpret_cast<const char*>(bytes.data), bytes.size);
}

}  // namespace

using WinResourceLoader = ReportingTest;

TEST_F(WinResourceLoader, ReadsTheProgramsResources) {
  IResourceLoader& loader = GetResourceLoader();
  const TResourceBytes bytes = loader.Load("SSTR/1001");
  EXPECT_EQ("// two strings\r\n1 {one}\r\n2 {}\r\n", Text(bytes));
  loader.Release(bytes);
  for (const char* key : {"SSTR/01001", "SSTR/1001/9", "SSTR/66537"})
    EXPECT_EQ(bytes.data, loader.Load(key).data) << key;
  EXPECT_EQ("raw", Text(loader.Load("RCDA/1002")));
  EXPECT_EQ("include", Text(loader.Load("DLOG/1003")));
  for (const char* key : {"SSTR/999", "RCDA/1001", "sst\xE4/1"})
    EXPECT_EQ(kOtherError, ErrorOf([&, key] { loader.Load(key); }));
}

// The shipped file, as it lies in this program.
TEST_F(WinResourceLoader, EnglishTextsAreComplete) {
  std::set<int> expected = {23};
  for (int id = 1; id <= 15; ++id) expected.insert(id);
  for (int id = 100; id <= 133; ++id) expected.insert(id);
  CLockedResource resource(GetResourceLoader(), "SSTR/1000");
  NSStringScript::CRawByteReader reader(resource.data(), resource.size());
  std::set<int> found;
  for (const auto& entry :
       NSStringScript::ParseStringScript(NSTextPackage::ReadText(reader, 0, resource.size(), u'_'))) {
    EXPECT_TRUE(found.insert(entry.id).second) << entry.id << " is there twice";
    EXPECT_FALSE(entry.text.empty()) << entry.id;
  }
  EXPECT_EQ(expected, found);
}
