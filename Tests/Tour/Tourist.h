// What a tour through a program's windows needs: input as from a mouse and a keyboard, waiting for what it
// brings about, and pictures of the screen.
//
// There are no pauses: each step waits for its effect, and fails when it does not come in time. Places are
// those of the screen, colours 0x00RRGGBB.
#pragma once

#include <windows.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "../Support/Input.h"

// The step whose effect has not come.
struct XLost {
  std::string fStep;
};

class CTourist {
 public:
  // Pictures go into this folder, as bitmaps.
  explicit CTourist(std::wstring folder) : fFolder(std::move(folder)) {}

  // --- Waiting
  void WaitFor(const std::function<bool()>& isSo, const char* what = "its effect") const {
    constexpr DWORD kPatience = 15000;
    for (const DWORD start = ::GetTickCount(); !isSo(); ::Sleep(5))
      if (::GetTickCount() - start > kPatience) throw XLost{fStep + ", " + what};
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
    WaitFor(
        [&] {
          do window = ::FindWindowExW(nullptr, window, windowClass, title);
          while (window && !::IsWindowVisible(window));
          return window != nullptr;
        },
        "a window");
    return window;
  }
  void WaitUntilInFront(HWND window) const {
    WaitFor([=] { return ::GetForegroundWindow() == window; }, "a window in front");
  }

  // --- Input
  // The mouse has arrived when the window under it has handled its messages, too.
  void MoveTo(POINT point) const {
    fPoint = point;
    NSMorvaneTest::PutPointer(
        point, [](POINT place) { SendMouse(place, 0); },
        [&](const std::function<bool()>& hasArrived) {
          WaitFor(
              [&] {
                LetHandleMessages(::WindowFromPoint(point));
                return hasArrived();
              },
              "the mouse");
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
    Send(NSMorvaneTest::KeyInput(static_cast<WORD>(key), up ? KEYEVENTF_KEYUP : 0));
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
    std::vector<std::uint32_t> before;
    std::vector<std::uint32_t> now;
    int equal = 0;
    WaitFor(
        [&] {
          before = std::move(now);
          now = Look(WholeScreen());
          equal = now == before ? equal + 1 : 0;
          return equal == 5;
        },
        "a screen at rest");
    TakePictureAtOnce(name);
  }
  void TakePictureAtOnce(const std::string& name) {
    const std::vector<std::uint32_t> pixels = Look(WholeScreen());
    const RECT screen = WholeScreen();
    const BITMAPINFOHEADER info = {sizeof(info), screen.right, -screen.bottom, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    BITMAPFILEHEADER header = {};
    header.bfType = 0x4D42;
    header.bfOffBits = sizeof(header) + sizeof(info);
    header.bfSize = header.bfOffBits + static_cast<DWORD>(pixels.size() * 4);
    char number[8];
    std::snprintf(number, sizeof(number), "%02d-", ++fPictures);
    std::ofstream file(fFolder / (number + name + ".bmp"), std::ios::binary);
    file.write(reinterpret_cast<const char*>(&header), sizeof(header));
    file.write(reinterpret_cast<const char*>(&info), sizeof(info));
    if (!file.write(reinterpret_cast<const char*>(pixels.data()), pixels.size() * 4)) throw XLost{name};
    std::printf("%s%s\n", number, name.c_str());
    std::fflush(stdout);
  }
  // All pixels of a part of the screen.
  static std::vector<std::uint32_t> Look(const RECT& part) {
    const HDC screen = ::GetDC(nullptr);
    const auto pixels = NSMorvaneTest::PixelsOf(screen, part);
    ::ReleaseDC(nullptr, screen);
    return pixels;
  }
  static unsigned ColorAt(POINT point) { return Look({point.x, point.y, point.x + 1, point.y + 1})[0]; }

 protected:
  const std::filesystem::path& Folder() const { return fFolder; }

  std::string fStep;

 private:
  static RECT WholeScreen() {
    return {0, 0, ::GetSystemMetrics(SM_CXSCREEN), ::GetSystemMetrics(SM_CYSCREEN)};
  }
  static void Send(INPUT input) { ::SendInput(1, &input, sizeof(input)); }
  static void SendMouse(POINT point, DWORD button, int wheel = 0) {
    Send(NSMorvaneTest::MouseInput(point, button, wheel));
  }
  static void LetHandleMessages(HWND window) {
    DWORD_PTR result = 0;
    ::SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_ABORTIFHUNG, 1000, &result);
  }

  const std::filesystem::path fFolder;
  mutable POINT fPoint = {0, 0};  // where the mouse is meant to be
  int fPictures = 0;
};
