// Whether handles are left behind.
//
// Some systems answer nothing when they are asked how many handles a process has. But each gives out a number
// again that has been given back, so that the highest of many fresh handles tells of what has been kept.
#pragma once

#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <vector>

namespace NSMorvaneTest {

// More than lie free among those in use, so that of two answers the second is higher by what was made between
// them and has not been given back.
constexpr int kFreshHandles = 1500;

// The bits of `mask` are the number.
template <class THandle>
std::int64_t HighestOf(ULONG_PTR mask, const std::function<THandle()>& make,
                       const std::function<void(THandle)>& end) {
  std::vector<THandle> handles;
  std::int64_t highest = 0;
  for (int i = 0; i < kFreshHandles; ++i) {
    handles.push_back(make());
    highest = std::max<std::int64_t>(highest, reinterpret_cast<ULONG_PTR>(handles.back()) & mask);
  }
  for (const THandle handle : handles) end(handle);
  return highest;
}

// Of keys of the registry, files, threads, events.
inline std::int64_t KernelHandles() {
  return HighestOf<HANDLE>(
      ~ULONG_PTR(0), [] { return CreateEventW(nullptr, FALSE, FALSE, nullptr); },
      [](HANDLE handle) { CloseHandle(handle); });
}
inline std::int64_t GdiHandles() {
  return HighestOf<HRGN>(
      0xFFFF, [] { return CreateRectRgn(0, 0, 1, 1); }, [](HRGN region) { DeleteObject(region); });
}
// Of windows, menus, icons. The other programs of the desktop take part in these.
inline std::int64_t UserHandles() {
  return HighestOf<HMENU>(
      0xFFFF, [] { return CreateMenu(); }, [](HMENU menu) { DestroyMenu(menu); });
}

}  // namespace NSMorvaneTest
