// String scripts and the keys of their strings, from the bytes of a resource on. The input is a key, a zero
// byte and the bytes of the bank.
//
// sources: Component/Portable/StringScript.cpp Component/Portable/ResourceStringCache.cpp
// sources: Component/Portable/ResourceKey.cpp Component/Portable/TextPackage.cpp
// sources: Component/Portable/MorvaneImplUtils.cpp
#include <algorithm>
#include <cstdlib>

#include "Component/Portable/MorvaneImplUtils.h"
#include "Component/Portable/ResourceKey.h"
#include "Component/Portable/ResourceStringCache.h"
#include "Component/Portable/StringScript.h"

using namespace NSMorvane;
using NSStringScript::TScriptEntry;
using NSTextPackage::TString;

namespace {

void Require(bool condition) {
  if (!condition) std::abort();
}

class OneBankLoader : public IResourceLoader {
 public:
  OneBankLoader(const std::uint8_t* data, std::size_t size)
      : fBytes{data, static_cast<std::uint32_t>(size)} {}
  TResourceBytes Load(const std::string& key) override {
    Require(PredefinedResourceType(NSTextPackage::ASCIIToString(ParseResourceKey(key).type, u'?')) <= 24);
    ++fHeld;
    return fBytes;
  }
  void Release(const TResourceBytes&) override { --fHeld; }

  int fHeld = 0;

 private:
  TResourceBytes fBytes;
};

// Each string stands in the script as it is, so that a script made of the entries gives the same entries.
void CheckRoundTrip(const std::vector<TScriptEntry>& entries) {
  TString script = u"// again\n";
  for (const TScriptEntry& entry : entries)
    script += NSTextPackage::NumberToString(unsigned{entry.id}) + u"{" + entry.text + u"}\n";
  const std::vector<TScriptEntry> again = NSStringScript::ParseStringScript(script);
  Require(std::equal(
      entries.begin(), entries.end(), again.begin(), again.end(),
      [](const TScriptEntry& a, const TScriptEntry& b) { return a.id == b.id && a.text == b.text; }));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::uint8_t* const keyEnd = std::find(data, data + size, std::uint8_t{0});
  const std::string key(data, keyEnd);
  const std::uint8_t* const bank = keyEnd == data + size ? data : keyEnd + 1;
  const std::size_t bankSize = static_cast<std::size_t>(data + size - bank);

  std::vector<TScriptEntry> entries;
  try {
    NSStringScript::CRawByteReader reader(bank, static_cast<std::uint32_t>(bankSize));
    entries = NSStringScript::ParseStringScript(
        NSTextPackage::ReadText(reader, 0, static_cast<std::int64_t>(bankSize), u'_'));
    CheckRoundTrip(entries);
  } catch (const XBadFormat&) {
    Require(entries.empty());
  } catch (const NSTextPackage::XIllegalTextFormat&) {
  }

  OneBankLoader loader(bank, bankSize);
  CResourceStringCache cache(loader);
  // Every string of a good bank is found, and any key is answered or refused.
  for (const TScriptEntry& entry : entries) {
    const auto first = std::find_if(entries.begin(), entries.end(),
                                    [&](const TScriptEntry& other) { return other.id == entry.id; });
    Require(cache.GetString("SSTR/1000/" + std::to_string(entry.id)) == first->text);
  }
  try {
    cache.GetString(key);
  } catch (const std::exception&) {
  }
  Require(loader.fHeld == 0);
  return 0;
}
