#include "SoakUse.h"

#include <windows.h>

#include <psapi.h>

#include <algorithm>
#include <cstdio>

namespace NSSoak {

namespace {

constexpr long long kAllowedGrowth = 2 * 1024 * 1024;
constexpr unsigned long kAllowedMoreObjects = 16;

// By the numbers that GetObjectType gives.
constexpr const char* kGdiKinds[] = {"",
                                     "pens",
                                     "brushes",
                                     "window DCs",
                                     "metafile DCs",
                                     "palettes",
                                     "fonts",
                                     "bitmaps",
                                     "regions",
                                     "metafiles",
                                     "memory DCs",
                                     "extended pens",
                                     "enhanced DCs",
                                     "enhanced metafiles",
                                     "colour spaces"};

// Wine counts no objects, but takes the lower half of a handle for the whole: every one can be tried.
void TryGdiHandles(TUse& use) {
  for (const char* const kind : kGdiKinds) use.fObjects[kind] = 0;
  for (ULONG_PTR handle = 1; handle < 0x10000; ++handle)
    ++use.fObjects[kGdiKinds[GetObjectType(reinterpret_cast<HGDIOBJ>(handle))]];
  use.fObjects.erase("");
}

// Takes seconds.
void TryUserHandles(TUse& use) {
  use.fObjects.insert({{"windows", 0}, {"menus", 0}, {"accelerator tables", 0}});
  for (ULONG_PTR handle = 2; handle < 0x10000; handle += 2) {
    if (IsWindow(reinterpret_cast<HWND>(handle)))
      ++use.fObjects["windows"];
    else if (IsMenu(reinterpret_cast<HMENU>(handle)))
      ++use.fObjects["menus"];
    else if (CopyAcceleratorTableW(reinterpret_cast<HACCEL>(handle), nullptr, 0) > 0)
      ++use.fObjects["accelerator tables"];
  }
}

TUse MeasureUse(bool withUserObjects) {
  const HANDLE process = GetCurrentProcess();
  TUse use = {};
  PROCESS_MEMORY_COUNTERS_EX counters = {};
  counters.cb = sizeof(counters);
  if (GetProcessMemoryInfo(process, reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&counters), sizeof(counters)))
    use.fBytes =
        static_cast<long long>(counters.PrivateUsage != 0 ? counters.PrivateUsage : counters.PagefileUsage);
  if (const DWORD gdiObjects = GetGuiResources(process, GR_GDIOBJECTS)) {
    use.fObjects = {{"GDI objects", gdiObjects}, {"USER objects", GetGuiResources(process, GR_USEROBJECTS)}};
    return use;
  }
  TryGdiHandles(use);
  if (withUserObjects) TryUserHandles(use);
  return use;
}

void Print(const std::string& what, const TUse& use) {
  std::printf("%-12s %9.1f KiB", what.c_str(), static_cast<double>(use.fBytes) / 1024);
  for (const auto& [kind, count] : use.fObjects)
    if (count != 0) std::printf(", %lu %s", count, kind.c_str());
  std::printf("\n");
  std::fflush(stdout);
}

}  // namespace

void CUseWatch::EndRound(const std::string& what) {
  ++fRound;
  const int tenth = fRounds / 10;
  const TUse use = MeasureUse(fRound == tenth || IsOver());
  if (fRound % tenth == 0) Print(what, use);
  if (fRound <= tenth) {
    fFirst.fBytes = std::max(fFirst.fBytes, use.fBytes);
    for (const auto& [kind, count] : use.fObjects)
      fFirst.fObjects[kind] = std::max(fFirst.fObjects[kind], count);
  } else if (fRound > fRounds - tenth) {
    fLast.fBytes = fLast.fBytes == 0 ? use.fBytes : std::min(fLast.fBytes, use.fBytes);
    for (const auto& [kind, count] : use.fObjects) {
      unsigned long& least = fLast.fObjects.emplace(kind, count).first->second;
      least = std::min(least, count);
    }
  }
}

bool CUseWatch::HasGrown() const {
  if (fLast.fBytes <= 0 || fLast.fBytes - fFirst.fBytes > kAllowedGrowth) return true;
  return std::any_of(fLast.fObjects.begin(), fLast.fObjects.end(), [this](const auto& last) {
    return last.second > fFirst.fObjects.at(last.first) + kAllowedMoreObjects;
  });
}

void FillSystemCaches() {
  // Wine keeps a context for each of the last 64 windows that were drawn in, and its clip region.
  HDC contexts[64];
  for (HDC& hdc : contexts) hdc = GetDC(nullptr);
  for (const HDC hdc : contexts) ReleaseDC(nullptr, hdc);
  // Shapes of the mouse that are shared have up to three bitmaps each.
  for (WORD id = 32512; id <= 32651; ++id) LoadCursorW(nullptr, MAKEINTRESOURCEW(id));
}

}  // namespace NSSoak
