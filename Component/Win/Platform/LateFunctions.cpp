#include "Component/Win/Platform/LateFunctions.h"

namespace NSMorvane {

// Nothing is remembered: the system does so itself, for all threads.
HMODULE LoadSystemLibrary(const wchar_t* name) {
  const HMODULE module = LoadLibraryExW(name, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
  // A Windows 7 without updates does not know the flag. These libraries are of those that it takes from its
  // own folder in any case.
  if (!module && GetLastError() == ERROR_INVALID_PARAMETER) return LoadLibraryW(name);
  return module;
}

FARPROC FindSystemFunction(const wchar_t* library, const char* name) {
  const HMODULE module = LoadSystemLibrary(library);
  return module ? GetProcAddress(module, name) : nullptr;
}

}  // namespace NSMorvane
