// Loading the bytes of a resource by its key.
#pragma once

#include <cstdint>
#include <string>

#include "Component/Portable/Base/Scopes.h"

namespace NSMorvane {

// A view on loaded bytes, which belong to the loader.
struct TResourceBytes {
  const std::uint8_t* data;
  std::uint32_t size;
};

// Used on the thread of the run loop only.
class IResourceLoader {
 public:
  // The key has the form "SSTR/1000" (ResourceKey.h). Each successful call needs one call of Release.
  virtual TResourceBytes Load(const std::string& key) = 0;
  virtual void Release(const TResourceBytes& bytes) = 0;
  virtual ~IResourceLoader() = default;
};

// Holds one resource as long as it exists. The loader must live as long.
class CLockedResource : CNotCopied {
 public:
  CLockedResource(IResourceLoader& loader, const std::string& key)
      : fLoader(&loader), fBytes(loader.Load(key)) {}
  ~CLockedResource() {
    fLoader->Release(fBytes);
    fBytes = TResourceBytes{nullptr, 0};
  }

  const std::uint8_t* data() const { return fBytes.data; }
  std::uint32_t size() const { return fBytes.size; }

 private:
  IResourceLoader* fLoader;
  TResourceBytes fBytes;
};

}  // namespace NSMorvane
