// The three functions that the shared library exports.
#include <windows.h>

#include <cstring>

#include "Component/Win/Application/MorvaneImplWin.h"

using NSMorvane::CMorvaneImpl;
using NSMorvane::IMorvane;
using NSMorvane::TError;

namespace {

constexpr DWORD kOldestMajorVersion = 5;

// GetVersionExW is declared deprecated, since it may report an older system than the real one. It is looked
// up by name to avoid the compiler's warning.
OSVERSIONINFOW GetSystemVersion() {
  using TGetVersion = BOOL(WINAPI*)(OSVERSIONINFOW*);
  OSVERSIONINFOW version = {};
  version.dwOSVersionInfoSize = sizeof(version);
  const FARPROC procedure = ::GetProcAddress(::GetModuleHandleW(L"kernel32.dll"), "GetVersionExW");
  const auto getVersion = reinterpret_cast<TGetVersion>(reinterpret_cast<void*>(procedure));
  if (!getVersion || !getVersion(&version)) MORVANE_THROW(NSMorvane::XUnsupportedOSVersion());
  return version;
}

}  // namespace

extern "C" void* Morvane_New(std::size_t size) { return ::operator new(size); }

extern "C" void Morvane_Delete(void* block) { ::operator delete(block); }

extern "C" IMorvane* Morvane_Create(const char* interfaceName, TError* outError) {
  if (!interfaceName || std::strcmp(interfaceName, "IMorvane") != 0) {
    *outError = NSMorvane::kBadInputProgrammingError;
    return nullptr;
  }
  IMorvane* morvane = nullptr;
  *outError = NSMorvane::ErrorOf([&] {
    const OSVERSIONINFOW version = GetSystemVersion();
    if (version.dwPlatformId != VER_PLATFORM_WIN32_NT || version.dwMajorVersion < kOldestMajorVersion) {
      MORVANE_THROW(NSMorvane::XUnsupportedOSVersion());
    }
    morvane = new CMorvaneImpl;
  });
  return morvane;
}
