#include "SoakUse.h"

#include <windows.h>

#include <psapi.h>

#include <cstdio>

namespace NSSoak {

namespace {

constexpr long long kAllowedGrowth = 2 * 1024 * 1024;
constexpr unsigned long kAllowedMoreObjects = 16;

// Wine counts no objects, but takes the lower half of a handle for the whole: every one can be tried.
DWORD TryGdiHandles() {
  DWORD count = 0;
  for (ULONG_PTR handle = 1; handle < 0x10000; ++handle)
    if (GetObjectType(reinterpret_cast<HGDIOBJ>(handle)) != 0) ++count;
  return count;
}

// Windows, menus and accelerator tables. Takes seconds.
DWORD TryUserHandles() {
  DWORD count = 0;
  for (ULONG_PTR handle = 2; handle < 0x10000; handle += 2)
    if (IsWindow(reinterpret_cast<HWND>(handle)) || IsMenu(reinterpret_cast<HMENU>(handle)) ||
        CopyAcceleratorTableW(reinterpret_cast<HACCEL>(handle), nullptr, 0) > 0)
      ++count;
  return count;
}

}  // namespace

TUse MeasureUse(bool withUserObjects) {
  const HANDLE process = GetCurrentProcess();
  TUse use = {};
  PROCESS_MEMORY_COUNTERS_EX counters = {};
  counters.cb = sizeof(counters);
  if (GetProcessMemoryInfo(process, reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&counters), sizeof(counters)))
    use.fBytes =
        static_cast<long long>(counters.PrivateUsage != 0 ? counters.PrivateUsage : counters.PagefileUsage);
  use.fGdiObjects = GetGuiResources(process, GR_GDIOBJECTS);
  if (use.fGdiObjects == 0) use.fGdiObjects = TryGdiHandles();
  if (withUserObjects) {
    use.fUserObjects = GetGuiResources(process, GR_USEROBJECTS);
    if (use.fUserObjects == 0) use.fUserObjects = TryUserHandles();
  }
  return use;
}

void Print(const std::string& what, const TUse& use) {
  std::printf("%-12s %9.1f KiB, %lu GDI objects", what.c_str(), static_cast<double>(use.fBytes) / 1024,
              use.fGdiObjects);
  if (use.fUserObjects != 0) std::printf(", %lu USER objects", use.fUserObjects);
  std::printf("\n");
  std::fflush(stdout);
}

bool HasGrown(const TUse& before, const TUse& after) {
  return after.fBytes <= 0 || after.fBytes - before.fBytes > kAllowedGrowth ||
         after.fGdiObjects > before.fGdiObjects + kAllowedMoreObjects ||
         after.fUserObjects > before.fUserObjects + kAllowedMoreObjects;
}

}  // namespace NSSoak
