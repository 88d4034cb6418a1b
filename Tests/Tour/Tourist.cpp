#include "Tourist.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <vector>

#include "../Support/Pointer.h"

namespace {

constexpr DWORD kPatience = 15000;  // milliseconds

void Send(const INPUT& input) {
  INPUT copy = input;
  if (::SendInput(1, &copy, sizeof(copy)) != 1) throw XLost{"input is refused"};
}

void SendKey(int key, bool up) {
  INPUT input = {};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = static_cast<WORD>(key);
  input.ki.wScan = static_cast<WORD>(::MapVirtualKeyW(static_cast<UINT>(key), MAPVK_VK_TO_VSC));
  input.ki.dwFlags = up ? KEYEVENTF_KEYUP : 0;
  const bool isExtended = key >= VK_PRIOR && key <= VK_DELETE;
  if (isExtended) input.ki.dwFlags |= KEYEVENTF_EXTENDEDKEY;
  Send(input);
}

void SendMouse(DWORD flags, LONG x = 0, LONG y = 0, DWORD data = 0) {
  INPUT input = {};
  input.type = INPUT_MOUSE;
  input.mi.dx = x;
  input.mi.dy = y;
  input.mi.mouseData = data;
  input.mi.dwFlags = flags;
  Send(input);
}

RECT WholeScreen() { return {0, 0, ::GetSystemMetrics(SM_CXSCREEN), ::GetSystemMetrics(SM_CYSCREEN)}; }

// Moves the mouse to a place of the screen, and does something with a button there.
void SendPlace(POINT point, DWORD button) {
  const RECT screen = WholeScreen();
  SendMouse(MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE | button, (point.x * 65536 + 32768) / screen.right,
            (point.y * 65536 + 32768) / screen.bottom);
}

// A copy of a part of the screen.
class CScreenPart {
 public:
  explicit CScreenPart(const RECT& part) : fWidth(part.right - part.left), fHeight(part.bottom - part.top) {
    const HDC screen = ::GetDC(nullptr);
    fHDC = ::CreateCompatibleDC(screen);
    fInfo.bmiHeader.biSize = sizeof(fInfo.bmiHeader);
    fInfo.bmiHeader.biWidth = fWidth;
    fInfo.bmiHeader.biHeight = -fHeight;
    fInfo.bmiHeader.biPlanes = 1;
    fInfo.bmiHeader.biBitCount = 32;
    fBitmap = ::CreateDIBSection(screen, &fInfo, DIB_RGB_COLORS, &fPixels, nullptr, 0);
    const HGDIOBJ old = ::SelectObject(fHDC, fBitmap);
    ::BitBlt(fHDC, 0, 0, fWidth, fHeight, screen, part.left, part.top, SRCCOPY);
    ::GdiFlush();
    ::SelectObject(fHDC, old);
    ::ReleaseDC(nullptr, screen);
  }
  ~CScreenPart() {
    ::DeleteObject(fBitmap);
    ::DeleteDC(fHDC);
  }
  CScreenPart(const CScreenPart&) = delete;
  CScreenPart& operator=(const CScreenPart&) = delete;

  std::string Pixels() const {
    std::string pixels(static_cast<const char*>(fPixels), static_cast<std::size_t>(fWidth) * fHeight * 4);
    for (std::size_t i = 3; i < pixels.size(); i += 4) pixels[i] = 0;
    return pixels;
  }
  void Save(const std::wstring& path) const {
    const std::string pixels = Pixels();
    BITMAPFILEHEADER header = {};
    header.bfType = 0x4D42;
    header.bfOffBits = sizeof(header) + sizeof(fInfo.bmiHeader);
    header.bfSize = header.bfOffBits + static_cast<DWORD>(pixels.size());
    std::FILE* const file = ::_wfopen(path.c_str(), L"wb");
    if (!file) throw XLost{"the picture cannot be written"};
    std::fwrite(&header, sizeof(header), 1, file);
    std::fwrite(&fInfo.bmiHeader, sizeof(fInfo.bmiHeader), 1, file);
    std::fwrite(pixels.data(), 1, pixels.size(), file);
    std::fclose(file);
  }

 private:
  const LONG fWidth;
  const LONG fHeight;
  BITMAPINFO fInfo = {};
  HDC fHDC = nullptr;
  HBITMAP fBitmap = nullptr;
  void* fPixels = nullptr;
};

// The smallest rectangle of the screen outside which two pictures of it are equal.
std::string WhereTheyDiffer(const std::string& before, const std::string& now) {
  const RECT screen = WholeScreen();
  RECT part = {screen.right, screen.bottom, 0, 0};
  for (std::size_t i = 0; i < now.size() && i < before.size(); ++i) {
    if (now[i] == before[i]) continue;
    const auto x = static_cast<LONG>(i / 4 % screen.right);
    const auto y = static_cast<LONG>(i / 4 / screen.right);
    part = {std::min(part.left, x), std::min(part.top, y), std::max(part.right, x + 1),
            std::max(part.bottom, y + 1)};
  }
  char text[80];
  std::snprintf(text, sizeof(text), "(%ld, %ld) to (%ld, %ld)", part.left, part.top, part.right, part.bottom);
  return text;
}

void LetHandleMessages(HWND window) {
  DWORD_PTR result = 0;
  ::SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_ABORTIFHUNG, 1000, &result);
}

std::wstring TitleOf(HWND window) {
  wchar_t title[256] = {};
  ::GetWindowTextW(window, title, 256);
  return title;
}

}  // namespace

// --- Waiting

void CTourist::WaitFor(const std::string& what, const std::function<bool()>& isSo) const {
  for (const DWORD start = ::GetTickCount(); !isSo(); ::Sleep(5))
    if (::GetTickCount() - start > kPatience) throw XLost{what};
}

void CTourist::Insist(const std::string& what, const std::function<bool()>& isSo,
                      const std::function<void()>& action) const {
  constexpr DWORD kInterval = 1200;
  action();
  DWORD last = ::GetTickCount();
  WaitFor(what, [&] {
    if (isSo()) return true;
    if (::GetTickCount() - last > kInterval) {
      action();
      last = ::GetTickCount();
    }
    return false;
  });
}

HWND CTourist::WaitForWindow(const wchar_t* windowClass, const std::wstring& title) const {
  HWND found = nullptr;
  WaitFor("a window of the class " + std::string(windowClass, windowClass + std::wcslen(windowClass)), [&] {
    for (HWND window = nullptr; (window = ::FindWindowExW(nullptr, window, windowClass, nullptr)) != nullptr;)
      if (::IsWindowVisible(window) && (title.empty() || TitleOf(window) == title)) found = window;
    return found != nullptr;
  });
  return found;
}

void CTourist::WaitUntilGone(HWND window, const std::string& what) const {
  WaitFor(what + " to go", [&] { return !::IsWindow(window) || !::IsWindowVisible(window); });
}

void CTourist::WaitUntilInFront(HWND window) const {
  WaitFor("a window to be in front", [&] { return ::GetForegroundWindow() == window; });
}

void CTourist::WaitForColor(POINT point, unsigned color, const std::string& what) const {
  WaitFor(what, [&] { return ColorAt(point) == color; });
}

void CTourist::WaitForOtherColor(POINT point, unsigned color, const std::string& what) const {
  WaitFor(what, [&] { return ColorAt(point) != color; });
}

void CTourist::WaitForTitle(HWND window, const std::wstring& title) const {
  WaitFor("a title", [&] { return TitleOf(window) == title; });
}

// --- Input

// It has arrived when the window under it has handled its messages, too.
void CTourist::MoveTo(POINT point) const {
  fPoint = point;
  NSMorvaneTest::PutPointer(
      point, [](POINT place) { SendPlace(place, 0); },
      [&](const std::function<bool()>& hasArrived) {
        WaitFor("the mouse to move", [&] {
          LetHandleMessages(::WindowFromPoint(point));
          return hasArrived();
        });
      });
}

void CTourist::HoverUntil(POINT point, const std::string& what, const std::function<bool()>& isSo) const {
  MoveTo(point);
  Insist(what, isSo, [&] {
    MoveTo({point.x + 1, point.y});
    MoveTo(point);
  });
}

// The place goes along with the button, in case the display has just taken the mouse elsewhere.
void CTourist::Press(bool right) const {
  SendPlace(fPoint, right ? MOUSEEVENTF_RIGHTDOWN : MOUSEEVENTF_LEFTDOWN);
}
void CTourist::Release(bool right) const {
  SendPlace(fPoint, right ? MOUSEEVENTF_RIGHTUP : MOUSEEVENTF_LEFTUP);
}

void CTourist::Click(POINT point, bool right) const {
  MoveTo(point);
  Press(right);
  Release(right);
}

void CTourist::DoubleClick(POINT point) const {
  Click(point);
  Click(point);
}

void CTourist::Drag(POINT from, POINT to) const {
  MoveTo(from);
  Press();
  for (LONG i = 1; i <= 4; ++i) MoveTo({from.x + (to.x - from.x) * i / 4, from.y + (to.y - from.y) * i / 4});
  Release();
}

void CTourist::Wheel(int notches) const {
  SendMouse(MOUSEEVENTF_WHEEL, 0, 0, static_cast<DWORD>(notches * WHEEL_DELTA));
}

// A display whose keyboard knows nothing of it lets go of a key when another window gets the focus, and tells
// late: it is down when it stays down while the window in front handles its messages.
void CTourist::Hold(int key) const {
  int looks = 0;
  Insist(
      "a key to be down",
      [&] {
        LetHandleMessages(::GetForegroundWindow());
        looks = ::GetAsyncKeyState(key) < 0 ? looks + 1 : 0;
        return looks == 15;
      },
      [&] { SendKey(key, false); });
}
void CTourist::LetGo(int key) const { SendKey(key, true); }

void CTourist::Key(std::initializer_list<int> keys) const {
  const auto last = keys.end() - 1;
  for (auto key = keys.begin(); key != last; ++key) Hold(*key);
  SendKey(*last, false);
  for (auto key = keys.end(); key != keys.begin();) SendKey(*--key, true);
}

void CTourist::Type(const char* text) const {
  for (; *text; ++text) {
    const SHORT key = ::VkKeyScanW(static_cast<wchar_t>(*text));
    if (HIBYTE(key) & 1)
      Key({VK_SHIFT, LOBYTE(key)});
    else
      Key({LOBYTE(key)});
  }
}

// --- Looking

std::string CTourist::Look(const RECT& part) { return CScreenPart(part).Pixels(); }

unsigned CTourist::ColorAt(POINT point) {
  unsigned color = 0;
  const std::string pixel = Look({point.x, point.y, point.x + 1, point.y + 1});
  std::memcpy(&color, pixel.data(), 4);
  return color;
}

void CTourist::TakePicture(const char* name) {
  std::string before;
  std::string now;
  int equal = 0;
  try {
    WaitFor("the screen to come to rest", [&] {
      before = std::move(now);
      now = Look(WholeScreen());
      equal = now == before ? equal + 1 : 0;
      return equal == 5;
    });
  } catch (const XLost& lost) {
    throw XLost{lost.fText + " within " + WhereTheyDiffer(before, now)};
  }
  TakePictureAtOnce(name);
}

void CTourist::TakePictureAtOnce(const char* name) {
  char number[8];
  std::snprintf(number, sizeof(number), "%02d-", ++fPictures);
  const std::string file = number + std::string(name) + ".bmp";
  CScreenPart(WholeScreen()).Save(fFolder + L"\\" + std::wstring(file.begin(), file.end()));
  std::printf("%s\n", file.c_str());
  std::fflush(stdout);
}
