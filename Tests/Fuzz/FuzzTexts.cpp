// Texts from their bytes on: decoding and encoding of the text package, and string scripts with the keys of
// their strings. For those, the input is a key, a zero byte and the bytes of the bank.
//
// sources: Component/Portable/Resources/StringScript.cpp Component/Portable/Resources/ResourceStringCache.cpp
// sources: Component/Portable/Resources/ResourceKey.cpp Component/Portable/Text/TextPackage.cpp
// sources: Component/Portable/Base/MorvaneImplUtils.cpp
#include <algorithm>
#include <cstdlib>
#include <memory>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Resources/ResourceKey.h"
#include "Component/Portable/Resources/ResourceStringCache.h"
#include "Component/Portable/Resources/StringScript.h"
#include "Component/Portable/Text/TextPackage.h"

using namespace NSMorvane;
using namespace NSTextPackage;
using NSStringScript::TScriptEntry;

namespace {

void Require(bool condition) {
  if (!condition) std::abort();
}

void CheckDecoding(const std::uint8_t* data, std::size_t size) {
  try {
    const TString text = DecodeUTF8(data, size, u'_');
    // What the encoder writes is readable again, and exactly so without surrogates, whose pairs have a form
    // of their own, and zeros.
    const TString again = UTF8ToString(StringToUTF8(text, false));
    if (std::none_of(text.begin(), text.end(), [](TChar c) { return c == 0 || (c >= 0xD800 && c < 0xE000); }))
      Require(again == text);
  } catch (const XIllegalTextFormat&) {
  }
}

class OneBankLoader : public IResourceLoader {
 public:
  OneBankLoader(const std::uint8_t* data, std::size_t size)
      : fBytes{data, static_cast<std::uint32_t>(size)} {}
  TResourceBytes Load(const std::string& key) override {
    Require(PredefinedResourceType(ASCIIToString(ParseResourceKey(key).type, u'?')) <= 24);
    ++fHeld;
    return fBytes;
  }
  void Release(const TResourceBytes&) override { --fHeld; }

  int fHeld = 0;

 private:
  TResourceBytes fBytes;
};

void CheckBank(const std::uint8_t* data, std::size_t size) {
  const std::uint8_t* const keyEnd = std::find(data, data + size, std::uint8_t{0});
  const std::string key(data, keyEnd);
  const std::uint8_t* const bank = keyEnd == data + size ? data : keyEnd + 1;
  const std::size_t bankSize = static_cast<std::size_t>(data + size - bank);

  std::vector<TScriptEntry> entries;
  try {
    NSStringScript::CRawByteReader reader(bank, static_cast<std::uint32_t>(bankSize));
    entries =
        NSStringScript::ParseStringScript(ReadText(reader, 0, static_cast<std::int64_t>(bankSize), u'_'));
  } catch (const XBadFormat&) {
    Require(entries.empty());
  } catch (const XIllegalTextFormat&) {
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
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  CheckBank(data, size);
  CheckDecoding(data, size);
  return 0;
}
