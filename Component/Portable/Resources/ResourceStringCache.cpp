#include "Component/Portable/Resources/ResourceStringCache.h"

#include <boost/shared_ptr.hpp>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Resources/StringScript.h"

namespace NSMorvane {

using NSTextPackage::TString;

TString CResourceStringCache::GetString(const std::string& key) {
  MORVANE_ASSERT(key.length()>=8);
  if (const auto found = fCache.find(key); found != fCache.end()) return found->second;

  const std::string::size_type slash = key.rfind('/');
  if (slash == std::string::npos) MORVANE_THROW(std::invalid_argument(""));
  ReadBank(key.substr(0, slash), key.substr(slash + 1));

  const auto found = fCache.find(key);
  if (found == fCache.end()) MORVANE_THROW(std::invalid_argument(""));
  return found->second;
}

void CResourceStringCache::ReadBank(const std::string& bank, const std::string& idText) {
  const CLockedResource resource(*fLoader, bank);
  NSStringScript::CRawByteReader reader(resource.data(), resource.size());
  const TString script = NSTextPackage::ReadText(reader, 0, resource.size(), u'_');
  const auto entries = NSStringScript::ParseStringScript(script);

  // The value is not used: the strings are found by the text of their keys. But a key without a number at its
  // end is refused, after the script has been parsed without an error.
  std::int32_t id = 0;
  if (!NSTextPackage::ReadDecimal(NSTextPackage::ASCIIToString(idText, 0), id))
    MORVANE_THROW(std::exception());

  // If two strings have the same id, the first one is used.
  for (const auto& entry : entries) fCache.insert({bank + "/" + std::to_string(entry.id), entry.text});
}

IResourceStringCache& GetResourceStringCache(IResourceLoader& loader) {
  // Process-wide, so that all users of a loader share one cache.
  static std::map<IResourceLoader*, boost::shared_ptr<IResourceStringCache>> gCacheMap;
  auto it = gCacheMap.find(&loader);
  if (it == gCacheMap.end()) {
    gCacheMap.insert({&loader, boost::shared_ptr<IResourceStringCache>(new CResourceStringCache(loader))});
    it = gCacheMap.find(&loader);
    MORVANE_ASSERT(it!=gCacheMap.end());
  }
  return *it->second;
}

}  // namespace NSMorvane
