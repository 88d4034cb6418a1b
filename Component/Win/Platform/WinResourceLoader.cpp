#include "Component/Win/Platform/WinResourceLoader.h"

#include <windows.h>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Resources/ResourceKey.h"

namespace NSMorvane {

TResourceBytes CResourceLoader::Load(const std::string& key) {
  if (const auto found = fCache.find(key); found != fCache.end()) return found->second;
  const TResourceBytes bytes = LoadFromModule(key);
  fCache.insert({key, bytes});
  const auto it = fCache.find(key);
  MORVANE_ASSERT(it!=fCache.end());
  return bytes;
}

TResourceBytes CResourceLoader::LoadFromModule(const std::string& key) const {
  const TResourceKey parsed = ParseResourceKey(key);
  const NSTextPackage::TString type = NSTextPackage::ASCIIToString(parsed.type, 0);
  const std::uint16_t predefined = PredefinedResourceType(type);
  const wchar_t* const nativeType =
      predefined != 0 ? MAKEINTRESOURCEW(predefined) : reinterpret_cast<const wchar_t*>(type.c_str());

  // MAKEINTRESOURCEW keeps only the low 16 bits of a number.
  const HRSRC found = ::FindResourceW(fModule, MAKEINTRESOURCEW(parsed.number), nativeType);
  if (!found) MORVANE_THROW(std::exception());
  const DWORD size = ::SizeofResource(fModule, found);
  const HGLOBAL loaded = ::LoadResource(fModule, found);
  if (!loaded) MORVANE_THROW(std::invalid_argument(""));
  const void* const data = ::LockResource(loaded);
  if (!data) MORVANE_THROW(XOutOfMemory());
  return TResourceBytes{static_cast<const std::uint8_t*>(data), size};
}

IResourceLoader& GetResourceLoader() {
  // Process-wide, since a process has one program module.
  static CResourceLoader loader(::GetModuleHandleW(nullptr));
  return loader;
}

}  // namespace NSMorvane
