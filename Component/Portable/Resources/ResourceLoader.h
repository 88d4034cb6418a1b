// From a resource key to the bytes of one resource of the host application.
#pragma once

#include <cstdint>
#include <map>
#include <string>

struct HINSTANCE__;

namespace NSMorvane {

// A view on loaded bytes, which belong to the loader.
struct TResourceBytes {
  const std::uint8_t* data;
  std::uint32_t size;
};

// Used on the thread of the run loop only.
class IResourceLoader {
 public:
  // The key has the form "SSTR/1000" (ResourceKey.h). Each success is answered by one call of Release.
  virtual TResourceBytes Load(const std::string& key) = 0;
  virtual void Release(const TResourceBytes& bytes) = 0;
  virtual ~IResourceLoader() = default;
};

// Holds one resource for the length of its life. The loader must live as long.
class CLockedResource {
 public:
  CLockedResource(IResourceLoader& loader, const std::string& key)
      : fLoader(&loader), fBytes(loader.Load(key)) {}
  ~CLockedResource() {
    fLoader->Release(fBytes);
    fBytes = TResourceBytes{nullptr, 0};
  }
  CLockedResource(const CLockedResource&) = delete;
  CLockedResource& operator=(const CLockedResource&) = delete;

  const std::uint8_t* data() const { return fBytes.data; }
  std::uint32_t size() const { return fBytes.size; }

 private:
  IResourceLoader* fLoader;
  TResourceBytes fBytes;
};

// The resources of one module. Their bytes are those of the mapped image and stay until the process ends.
class CResourceLoader : public IResourceLoader {
 public:
  explicit CResourceLoader(HINSTANCE__* module) : fModule(module) {}

  // Failures, which are not remembered: std::invalid_argument for a key that is none or a resource that
  // cannot be loaded, XIllegalTextFormat for one that is not ASCII, std::exception for a resource that is not
  // there, std::bad_alloc for one that cannot be locked.
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
