// Translatable strings by their keys: "SSTR/1000/1" is the string with the id 1 in the string script that is
// the resource "SSTR/1000". The whole script is read when its first string is asked for, and stays in memory.
#pragma once

#include <map>
#include <string>

#include "Component/Portable/Resources/ResourceLoader.h"
#include "Component/Portable/Text/TextPackage.h"

namespace NSMorvane {

// Used on the thread of the run loop only.
class IResourceStringCache {
 public:
  virtual NSTextPackage::TString GetString(const std::string& key) = 0;
  virtual ~IResourceStringCache() = default;
};

class CResourceStringCache : public IResourceStringCache {
 public:
  // The loader is not owned.
  explicit CResourceStringCache(IResourceLoader& loader) : fLoader(&loader) {}

  // The id in the key must be spelled in plain decimal. std::invalid_argument for a key without "/" or an id
  // that the script does not have, std::exception for an id that is not a number, XIllegalTextFormat and
  // XBadFormat for an invalid script, and whatever the loader throws.
  NSTextPackage::TString GetString(const std::string& key) override;

 private:
  void ReadBank(const std::string& bank, const std::string& idText);

  std::map<std::string, NSTextPackage::TString> fCache;  // by the full key
  IResourceLoader* fLoader;
};

// The cache of a loader, made when it is first asked for. It is found by the loader's address and lives until
// the process ends, so it is only for loaders that live as long.
IResourceStringCache& GetResourceStringCache(IResourceLoader& loader);

}  // namespace NSMorvane
