// What a tour through a program's windows needs: input as from a mouse and a keyboard, waiting for what it
// brings about, and pictures of the screen.
//
// There are no pauses: each step waits for its effect, and fails when it does not come in time. Places are
// those of the screen, colours 0x00RRGGBB.
#pragma once

#include <windows.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "../Support/Pointer.h"

// The step whose effect has not come.
struct XLost {
  std::string fStep;
};

class CTourist {
 public:
  // Pictures go into this folder, as bitmaps.
  explicit CTourist(std::wstring folder) : fFolder(std::move(folder)) {}

  // --- Waiting
  void WaitFor(const std::function<bool()>& isSo) const {
    constexpr DWORD kPatience = 15000;
    for (const DWORD start = ::GetTickCount(); !isSo(); ::Sleep(5))
      if (::GetTickCount() - start > kPatience) throw XLost{fStep};
  }
  // Does something, and does it again each time that its effect keeps one waiting for more than a second.
  void Insist(const std::function<bool()>& isSo, const std::function<void()>& action) const {
    DWORD last = 0;
    WaitFor([&] {
      if (last && isSo()) return true;
      if (last && ::GetTickCount() - last <= 1200) return false;
      action();
      last = ::GetTickCount();
      return isSo();
    });
  }
  // A window that is shown; null stands for any class, any title.
  HWND WaitForWindow(const wchar_t* windowClass, const wchar_t* title) const {
    HWND window = nullptr;
    WaitFor([&] {
      do window = ::FindWindowExW(nullptr, window, windowClass, title);
      while (window && !::IsWindowVisible(window));
      return window != nullptr;
    });
    return window;
  }
  void WaitUntilInFront(HWND window) const {
    WaitFor([=] { return ::GetForegroundWindow() == window; });
  }

  // --- Input
  // The mouse has arrived when the window under it has handled its messages, too.
  void MoveTo(POINT point) const {
    fPoint = point;
    NSMorvaneTest::PutPointer(
        point, [](POINT place) { SendMouse(place, 0); },
        [&](const std::function<bool()>& hasArrived) {
          WaitFor([&] {
            LetHandleMessages(::WindowFromPoint(point));
            return hasArrived();
          });
        });
  }
  // Rests the mouse there until something is so. A mouse in a hand is never quite still: after a while it
  // moves by a pixel and back.
  void HoverUntil(POINT point, const std::function<bool()>& isSo) const {
    MoveTo(point);
    Insist(isSo, [&] {
      MoveTo({point.x + 1, point.y});
      MoveTo(point);
    });
  }
  // The place goes along with the button, in case the display has just taken the mouse elsewhere.
  void Press(bool right = false) const {
    SendMouse(fPoint, right ? MOUSEEVENTF_RIGHTDOWN : MOUSEEVENTF_LEFTDOWN);
  }
  void Release(bool right = false) const {
    SendMouse(fPoint, right ? MOUSEEVENTF_RIGHTUP : MOUSEEVENTF_LEFTUP);
  }
  void Click(POINT point, bool right = false) const {
    MoveTo(point);
    Press(right);
    Release(right);
  }
  void Drag(POINT from, POINT to) const {
    MoveTo(from);
    Press();
    for (LONG i = 1; i <= 4; ++i)
      MoveTo({from.x + (to.x - from.x) * i / 4, from.y + (to.y - from.y) * i / 4});
    Release();
  }
  void Wheel(int notches) const { SendMouse(fPoint, MOUSEEVENTF_WHEEL, notches * WHEEL_DELTA); }
  // A display whose keyboard knows nothing of it lets go of a key when another window gets the focus, and
  // tells late: it is down when it stays down while the window in front handles its messages.
  void Hold(int key) const {
    int looks = 0;
    Insist(
        [&] {
          LetHandleMessages(::GetForegroundWindow());
          looks = ::GetAsyncKeyState(key) < 0 ? looks + 1 : 0;
          return looks == 15;
        },
        [&] { SendKey(key, false); });
  }
  static void SendKey(int key, bool up) {
    INPUT input = {};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = static_cast<WORD>(key);
    input.ki.wScan = static_cast<WORD>(::MapVirtualKeyW(static_cast<UINT>(key), MAPVK_VK_TO_VSC));
    input.ki.dwFlags = up ? KEYEVENTF_KEYUP : 0;
    const bool isExtended = key >= VK_PRIOR && key <= VK_DELETE;
    if (isExtended) input.ki.dwFlags |= KEYEVENTF_EXTENDEDKEY;
    ::SendInput(1, &input, sizeof(input));
  }
  // Virtual keys that are held while the last one is pressed.
  void Key(std::vector<int> keys) const {
    for (std::size_t i = 0; i + 1 < keys.size(); ++i) Hold(keys[i]);
    SendKey(keys.back(), false);
    for (; !keys.empty(); keys.pop_back()) SendKey(keys.back(), true);
  }
  void Type(const std::string& text) const {
    for (const char c : text) {
      const SHORT key = ::VkKeyScanW(static_cast<wchar_t>(c));
      Key(HIBYTE(key) & 1 ? std::vector<int>{VK_SHIFT, LOBYTE(key)} : std::vector<int>{LOBYTE(key)});
    }
  }

  // --- Looking
  // Saves what the screen shows, when it has come to rest, as "NN-name.bmp".
  void TakePicture(const std::string& name) {
    std::string before;
    std::string now;
    int equal = 0;
    WaitFor([&] {
      before = std::move(now);
      now = Look(WholeScreen());
      equal = now == before ? equal + 1 : 0;
      return equal == 5;
    });
    TakePictureAtOnce(name);
  }
  void TakePictureAtOnce(const std::string& name) {
    const std::string pixels = Look(WholeScreen());
    const BITMAPINFOHEADER info = InfoOf(WholeScreen());
    BITMAPFILEHEADER header = {};
    header.bfType = 0x4D42;
    header.bfOffBits = sizeof(header) + sizeof(info);
    header.bfSize = header.bfOffBits + static_cast<DWORD>(pixels.size());
    char number[8];
    std::snprintf(number, sizeof(number), "%02d-", ++fPictures);
    std::ofstream file(fFolder / (number + name + ".bmp"), std::ios::binary);
    file.write(reinterpret_cast<const char*>(&header), sizeof(header));
    file.write(reinterpret_cast<const char*>(&info), sizeof(info));
    if (!file.write(pixels.data(), static_cast<std::streamsize>(pixels.size()))) throw XLost{"write " + name};
    std::printf("%s%s\n", number, name.c_str());
    std::fflush(stdout);
  }
  // All pixels of a part of the screen.
  static std::string Look(const RECT& part) {
    const BITMAPINFO info = {InfoOf(part), {}};
    const LONG width = info.bmiHeader.biWidth;
    const LONG height = -info.bmiHeader.biHeight;
    void* bits = nullptr;
    const HDC screen = ::GetDC(nullptr);
    const HDC memory = ::CreateCompatibleDC(screen);
    const HBITMAP bitmap = ::CreateDIBSection(screen, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    const HGDIOBJ old = ::SelectObject(memory, bitmap);
    ::BitBlt(memory, 0, 0, width, height, screen, part.left, part.top, SRCCOPY);
    ::GdiFlush();
    std::string pixels(static_cast<const char*>(bits), static_cast<std::size_t>(width) * height * 4);
    for (std::size_t i = 3; i < pixels.size(); i += 4) pixels[i] = 0;
    ::SelectObject(memory, old);
    ::DeleteObject(bitmap);
    ::DeleteDC(memory);
    ::ReleaseDC(nullptr, screen);
    return pixels;
  }
  static unsigned ColorAt(POINT point) {
    unsigned color = 0;
    std::memcpy(&color, Look({point.x, point.y, point.x + 1, point.y + 1}).data(), 4);
    return color;
  }

 protected:
  std::string fStep;

 private:
  static RECT WholeScreen() {
    return {0, 0, ::GetSystemMetrics(SM_CXSCREEN), ::GetSystemMetrics(SM_CYSCREEN)};
  }
  static BITMAPINFOHEADER InfoOf(const RECT& part) {
    BITMAPINFOHEADER info = {};
    info.biSize = sizeof(info);
    info.biWidth = part.right - part.left;
    info.biHeight = part.top - part.bottom;
    info.biPlanes = 1;
    info.biBitCount = 32;
    return info;
  }
  // Moves the mouse there, and does something with a button or the wheel.
  static void SendMouse(POINT point, DWORD button, int wheel = 0) {
    INPUT input = {};
    input.type = INPUT_MOUSE;
    input.mi.dx = (point.x * 65536 + 32768) / WholeScreen().right;
    input.mi.dy = (point.y * 65536 + 32768) / WholeScreen().bottom;
    input.mi.mouseData = static_cast<DWORD>(wheel);
    input.mi.dwFlags = MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE | button;
    ::SendInput(1, &input, sizeof(input));
  }
  static void LetHandleMessages(HWND window) {
    DWORD_PTR result = 0;
    ::SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_ABORTIFHUNG, 1000, &result);
  }

  const std::filesystem::path fFolder;
  mutable POINT fPoint = {0, 0};  // where the mouse is meant to be
  int fPictures = 0;
};
