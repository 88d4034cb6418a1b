// Input as from a keyboard and a mouse, for SendInput, and what is seen of it.
#pragma once

#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <vector>

namespace NSMorvaneTest {

inline INPUT KeyInput(WORD key, DWORD flags = 0) {
  INPUT input = {};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = key;
  input.ki.wScan = static_cast<WORD>(MapVirtualKeyW(key, MAPVK_VK_TO_VSC));
  const bool isExtended = key >= VK_PRIOR && key <= VK_DELETE;
  input.ki.dwFlags = flags | (isExtended ? KEYEVENTF_EXTENDEDKEY : 0);
  return input;
}

// At a place of the screen. It carries it along: a display may tell of moves late, and take the mouse
// elsewhere.
inline INPUT MouseInput(const POINT& place, DWORD flags, int wheel = 0) {
  INPUT input = {};
  input.type = INPUT_MOUSE;
  input.mi.dx = (place.x * 65536 + 32768) / GetSystemMetrics(SM_CXSCREEN);
  input.mi.dy = (place.y * 65536 + 32768) / GetSystemMetrics(SM_CYSCREEN);
  input.mi.mouseData = static_cast<DWORD>(wheel);
  input.mi.dwFlags = MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE | flags;
  return input;
}

// Puts the pointer at a position of the screen with `put(position)` and waits, with `waitUntil(condition)`,
// until it is there to stay; gives what waitUntil gives.
//
// A display tells of moves late, one by one, and so takes the pointer back to where it has been: then it is
// put there again. By way of the neighbouring pixel, since a pointer that the system believes to be there
// already is not moved at all; and for a tenth of a second the system tells what it believes.
template <class TPut, class TWaitUntil>
auto PutPointer(const POINT& point, const TPut& put, const TWaitUntil& waitUntil) {
  constexpr ULONGLONG kBelief = 130;  // milliseconds
  constexpr ULONGLONG kAgain = 50;
  put(point);
  ULONGLONG lastAway = ::GetTickCount64();
  ULONGLONG lastPut = lastAway;
  return waitUntil([&] {
    POINT now = {};
    ::GetCursorPos(&now);
    const ULONGLONG time = ::GetTickCount64();
    if (now.x == point.x && now.y == point.y) return time - lastAway > kBelief;
    lastAway = time;
    if (time - lastPut > kAgain) {
      put({point.x ^ 1, point.y});
      put(point);
      lastPut = time;
    }
    return false;
  });
}

// What a context shows in a rectangle, row by row, as 0x00RRGGBB.
inline std::vector<std::uint32_t> PixelsOf(HDC hdc, const RECT& rect) {
  const int width = rect.right - rect.left;
  const int height = rect.bottom - rect.top;
  const BITMAPINFO info = {{sizeof(BITMAPINFOHEADER), width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0}, {}};
  void* bits = nullptr;
  const HBITMAP bitmap = CreateDIBSection(hdc, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  const HDC memory = CreateCompatibleDC(hdc);
  const HGDIOBJ old = SelectObject(memory, bitmap);
  BitBlt(memory, 0, 0, width, height, hdc, rect.left, rect.top, SRCCOPY);
  GdiFlush();
  std::vector<std::uint32_t> pixels(static_cast<std::size_t>(width) * height);
  std::copy_n(static_cast<const std::uint32_t*>(bits), pixels.size(), pixels.begin());
  for (std::uint32_t& pixel : pixels) pixel &= 0xFFFFFF;
  SelectObject(memory, old);
  DeleteDC(memory);
  DeleteObject(bitmap);
  return pixels;
}

}  // namespace NSMorvaneTest
