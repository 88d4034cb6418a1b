// The resources of the host application, as the system has them.
#pragma once

#include <map>
#include <string>

#include "Component/Portable/Resources/ResourceLoader.h"

struct HINSTANCE__;

namespace NSMorvane {

// The resources of one module. Their bytes are those of the mapped image and stay until the process ends.
class CResourceLoader : public IResourceLoader {
 public:
  explicit CResourceLoader(HINSTANCE__* module) : fModule(module) {}

  // Throws std::invalid_argument for a malformed key or a resource that cannot be loaded, XIllegalTextFormat
  // for a key that is not ASCII, std::exception if there is no such resource, std::bad_alloc if it cannot be
  // locked. Failures are not cached.
  TResourceBytes Load(const std::string& key) override;
  // Nothing to do: the image stays mapped.
  void Release(const TResourceBytes&) override {}

 private:
  TResourceBytes LoadFromModule(const std::string& key) const;

  std::map<std::string, TResourceBytes> fCache;  // by the key as the caller spelled it; never shrinks
  HINSTANCE__* fModule;
};

// The loader of the program that runs in this process, which is the host application and not the library.
IResourceLoader& GetResourceLoader();

}  // namespace NSMorvane
