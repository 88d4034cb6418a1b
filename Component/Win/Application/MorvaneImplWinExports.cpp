// The three functions that the shared library exports.
#include <windows.h>

#include <cstring>

#include "Component/Win/Application/MorvaneImplWin.h"
#include "Component/Win/Platform/UtilsWin.h"

using NSMorvane::CMorvaneImpl;
using NSMorvane::IMorvane;
using NSMorvane::TError;

namespace {

constexpr DWORD kOldestMajorVersion = 5;

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
    OSVERSIONINFOW version = {};
    if (!NSMorvane::GetSystemVersion(version) || version.dwPlatformId != VER_PLATFORM_WIN32_NT ||
        version.dwMajorVersion < kOldestMajorVersion)
      MORVANE_THROW(NSMorvane::XUnsupportedOSVersion());
    morvane = new CMorvaneImpl;
  });
  return morvane;
}
