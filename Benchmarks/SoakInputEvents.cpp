#include "SoakInputEvents.h"

#include <algorithm>
#include <cstdio>
#include <cwchar>
#include <iterator>

namespace NSSoak {

namespace {

// No letter but these: whatever stands in a field for a path, no drive and no other folder can be typed.
constexpr WORD kTyped[] = {'A', 'B', 'E', 'H', 'L', 'P', 'R', 'T', 'V', '0', '1', '7', VK_SPACE};
constexpr WORD kEditing[] = {VK_LEFT, VK_RIGHT,  VK_UP,   VK_DOWN,  VK_HOME,    VK_END,    VK_PRIOR, VK_NEXT,
                             VK_BACK, VK_DELETE, VK_TAB,  VK_TAB,   VK_RETURN,  VK_ESCAPE, VK_F4,    VK_F10,
                             VK_F1,   VK_F6,     VK_APPS, VK_SHIFT, VK_CONTROL, VK_MENU};
constexpr WORD kShortcuts[] = {'N', 'O', 'S', 'Z', 'Z', 'Y', 'X', 'C', 'V',         'D',         'A',
                               'F', 'B', 'G', 'T', 'W', 'P', '0', '9', VK_OEM_PLUS, VK_OEM_MINUS};
constexpr WORD kMnemonics[] = {'D', 'E', 'S', 'V', 'T', 'W', 'H', 'B', 'G', 'P', 'F', VK_SPACE, VK_OEM_MINUS};

constexpr UINT kFirstOfWindowList = 0xE000;

template <std::size_t kSize>
WORD OneOf(const WORD (&keys)[kSize], std::size_t random) {
  return keys[random % kSize];
}

BOOL CALLBACK AddWindow(HWND hwnd, LPARAM list) {
  wchar_t name[64] = {};
  GetClassNameW(hwnd, name, 64);
  if (IsWindowVisible(hwnd) && std::wcscmp(name, L"tooltips_class32") != 0)
    reinterpret_cast<std::vector<HWND>*>(list)->push_back(hwnd);
  return TRUE;
}

bool IsInFront() { return GetWindowThreadProcessId(GetForegroundWindow(), nullptr) == GetCurrentThreadId(); }

}  // namespace

std::vector<HWND> VisibleWindows() {
  std::vector<HWND> windows;
  EnumThreadWindows(GetCurrentThreadId(), AddWindow, reinterpret_cast<LPARAM>(&windows));
  return windows;
}

void CInputEvents::Note(const char* what, HWND hwnd, int a, int b) {
  fLast[static_cast<std::size_t>(fCount++) % fLast.size()] = {what, hwnd, a, b};
}

void CInputEvents::PrintLast() const {
  for (std::size_t i = 0; i < fLast.size(); ++i) {
    const TNote& note = fLast[(static_cast<std::size_t>(fCount) + i) % fLast.size()];
    if (note.fWhat)
      std::printf("    %s %p %d %d\n", note.fWhat, static_cast<void*>(note.fHwnd), note.fA, note.fB);
  }
}

void CInputEvents::SendMouse(const char* what, DWORD flags, DWORD data) {
  INPUT input = {};
  input.type = INPUT_MOUSE;
  input.mi.dwFlags = flags;
  input.mi.mouseData = data;
  Note(what, fTarget, static_cast<int>(flags), static_cast<int>(data));
  SendInput(1, &input, sizeof(input));
}

void CInputEvents::MoveTo(POINT point) {
  fPoint = {std::clamp(point.x, 0l, fScreen.cx - 1), std::clamp(point.y, 0l, fScreen.cy - 1)};
  INPUT input = {};
  input.type = INPUT_MOUSE;
  input.mi.dwFlags = MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE;
  input.mi.dx = MulDiv(point.x, 65536, fScreen.cx) + 1;
  input.mi.dy = MulDiv(point.y, 65536, fScreen.cy) + 1;
  Note("move to", fTarget, point.x, point.y);
  SendInput(1, &input, sizeof(input));
}

// Now and then beside all windows.
void CInputEvents::MoveSomewhere() {
  RECT rect = {0, 0, fScreen.cx, fScreen.cy};
  if (Random(30) != 0) GetWindowRect(fTarget, &rect);
  if (rect.right <= rect.left || rect.bottom <= rect.top) return;
  const LONG x = static_cast<LONG>(Random(static_cast<std::size_t>(rect.right - rect.left)));
  const LONG y = static_cast<LONG>(Random(static_cast<std::size_t>(rect.bottom - rect.top)));
  MoveTo({rect.left + x, rect.top + y});
}

void CInputEvents::MoveALittle() {
  for (std::size_t i = Random(4) + 1; i > 0; --i) {
    const LONG x = fPoint.x + static_cast<LONG>(Random(41)) - 20;
    const LONG y = fPoint.y + static_cast<LONG>(Random(41)) - 20;
    MoveTo({x, y});
  }
}

void CInputEvents::Click(DWORD down, DWORD up, int times) {
  Release();
  for (int i = 0; i < times; ++i) {
    SendMouse("press", down);
    SendMouse("release", up);
  }
}

void CInputEvents::Press() {
  Release();
  constexpr WORD kModifiers[] = {0, 0, 0, VK_SHIFT, VK_CONTROL, VK_MENU};
  fHeldKey = OneOf(kModifiers, Random(std::size(kModifiers)));
  if (fHeldKey != 0) PressKey(fHeldKey, true);
  const bool isRight = Random(12) == 0;
  SendMouse("press to drag", isRight ? MOUSEEVENTF_RIGHTDOWN : MOUSEEVENTF_LEFTDOWN);
  fHeldButton = isRight ? MOUSEEVENTF_RIGHTUP : MOUSEEVENTF_LEFTUP;
  // Else whoever waits to see whether it is a click waits in vain most of the time.
  if (Random(50) != 0) MoveALittle();
}

void CInputEvents::Release() {
  if (fHeldButton != 0) SendMouse("release after drag", fHeldButton);
  if (fHeldKey != 0) PressKey(fHeldKey, false);
  fHeldButton = 0;
  fHeldKey = 0;
}

void CInputEvents::PressKey(WORD key, bool down) {
  INPUT input = {};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = key;
  input.ki.wScan = static_cast<WORD>(MapVirtualKeyW(key, MAPVK_VK_TO_VSC));
  const bool isExtended = (key >= VK_PRIOR && key <= VK_DOWN) || key == VK_DELETE || key == VK_APPS;
  input.ki.dwFlags =
      static_cast<DWORD>((down ? 0 : KEYEVENTF_KEYUP) | (isExtended ? KEYEVENTF_EXTENDEDKEY : 0));
  Note(down ? "key down" : "key up", fTarget, key, 0);
  SendInput(1, &input, sizeof(input));
}

void CInputEvents::SendKey(WORD key, const std::vector<WORD>& modifiers) {
  for (const WORD modifier : modifiers) PressKey(modifier, true);
  PressKey(key, true);
  PressKey(key, false);
  for (const WORD modifier : modifiers) PressKey(modifier, false);
}

// Only for windows of this thread: other programs have nothing to do with it.
void CInputEvents::SendSomeKey() {
  if (!IsInFront()) return ChangeWindow();
  const std::size_t kind = Random(20);
  if (kind < 7) return SendKey(OneOf(kTyped, fRandom()));
  if (kind < 8) return SendKey(OneOf(kTyped, fRandom()), {VK_SHIFT});
  if (kind < 14) return SendKey(OneOf(kEditing, fRandom()));
  if (kind < 15) return SendKey(OneOf(kEditing, fRandom() % 13), {VK_SHIFT});
  if (kind < 18) return SendKey(OneOf(kShortcuts, fRandom()), {VK_CONTROL});
  if (kind < 19) return SendKey(OneOf(kShortcuts, fRandom()), {VK_CONTROL, VK_SHIFT});
  SendKey(OneOf(kMnemonics, fRandom()), {VK_MENU});
}

// As if an item of the menu bar had been chosen.
void CInputEvents::SendMenuCommand() {
  const HMENU bar = GetMenu(fTarget);
  const int menus = bar ? GetMenuItemCount(bar) : 0;
  if (menus <= 0 || !IsWindowEnabled(fTarget)) return;
  const HMENU menu = GetSubMenu(bar, static_cast<int>(Random(static_cast<std::size_t>(menus))));
  const int items = menu ? GetMenuItemCount(menu) : 0;
  if (items <= 0) return;
  const UINT item = static_cast<UINT>(Random(static_cast<std::size_t>(items)));
  const UINT id = GetMenuItemID(menu, static_cast<int>(item));
  // What stands in a list of windows is no more when one has closed.
  if (id == 0 || id >= kFirstOfWindowList || (GetMenuState(menu, item, MF_BYPOSITION) & MF_GRAYED) != 0)
    return;
  Post("menu command", fTarget, WM_COMMAND, id, 0);
}

void CInputEvents::Post(const char* what, HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
  Note(what, hwnd, static_cast<int>(wParam), static_cast<int>(lParam));
  PostMessageW(hwnd, message, wParam, lParam);
}

void CInputEvents::Resize() {
  constexpr WPARAM kCommands[] = {SC_MAXIMIZE, SC_RESTORE, SC_MINIMIZE, SC_RESTORE, SC_SIZE, SC_MOVE};
  if (!IsWindowEnabled(fTarget)) return;
  if (Random(2) == 0) {
    Post("system command", fTarget, WM_SYSCOMMAND, kCommands[Random(std::size(kCommands))], 0);
    return;
  }
  if ((GetWindowLongW(fTarget, GWL_STYLE) & WS_THICKFRAME) == 0 || IsIconic(fTarget) || IsZoomed(fTarget))
    return;
  const int width = static_cast<int>(Random(1100)) + 100;
  const int height = static_cast<int>(Random(850)) + 50;
  Note("resize", fTarget, width, height);
  SetWindowPos(fTarget, nullptr, static_cast<int>(Random(500)), static_cast<int>(Random(400)), width, height,
               SWP_NOACTIVATE | SWP_NOZORDER);
}

void CInputEvents::ChangeWindow() {
  const HWND hwnd = Random(6) == 0 ? fElsewhere : fTarget;
  if (!IsWindowEnabled(hwnd)) return;
  Note("to the front", hwnd, 0, 0);
  SetForegroundWindow(hwnd);
}

void CInputEvents::SendOne() {
  fTarget = fWindows[Random(fWindows.size())];
  if (!IsWindow(fTarget)) return;
  std::size_t kind = Random(100);
  // Most of a drag is movement.
  if (fHeldButton != 0 && kind >= 20) kind = kind < 85 ? 30 : 0;
  if (fHeldButton != 0 && kind == 0) return Release();
  if (kind < 22) return MoveSomewhere();
  if (kind < 40) return MoveALittle();
  if (kind < 52) return Click(MOUSEEVENTF_LEFTDOWN, MOUSEEVENTF_LEFTUP, Random(6) == 0 ? 2 : 1);
  if (kind < 55) return Click(MOUSEEVENTF_RIGHTDOWN, MOUSEEVENTF_RIGHTUP, 1);
  if (kind < 56) return Click(MOUSEEVENTF_MIDDLEDOWN, MOUSEEVENTF_MIDDLEUP, 1);
  if (kind < 64) return Press();
  if (kind < 69) {
    const DWORD direction = Random(8) == 0 ? MOUSEEVENTF_HWHEEL : MOUSEEVENTF_WHEEL;
    return SendMouse("wheel", direction, static_cast<DWORD>((static_cast<int>(Random(5)) - 2) * WHEEL_DELTA));
  }
  if (kind < 86) return SendSomeKey();
  if (kind < 91) return SendMenuCommand();
  if (kind < 94) return Resize();
  if (kind < 98) return ChangeWindow();
  if (Random(2) == 0) Post("close", fTarget, WM_CLOSE, 0, 0);
}

void CInputEvents::EndWait() {
  INPUT inputs[2] = {};
  inputs[0].type = inputs[1].type = INPUT_MOUSE;
  inputs[0].mi.dwFlags = MOUSEEVENTF_LEFTUP;
  inputs[1].mi.dwFlags = MOUSEEVENTF_RIGHTUP;
  SendInput(2, inputs, sizeof(INPUT));
}

void CInputEvents::SendSome() {
  fWindows = VisibleWindows();
  if (fWindows.empty()) return;
  // A slow application finds much in its queue, a quick one little.
  for (std::size_t i = Random(Random(4) == 0 ? 120 : 12) + 1; i > 0; --i) SendOne();
}

void CInputEvents::LetGo() {
  Release();
  // Wine takes a key for held when its press went to a window here, and its release elsewhere.
  for (const WORD key : {VK_SHIFT, VK_CONTROL, VK_MENU})
    if (GetKeyState(key) < 0) PressKey(key, false);
  GUITHREADINFO info = {};
  info.cbSize = sizeof(info);
  constexpr DWORD kLoops = GUI_INMENUMODE | GUI_POPUPMENUMODE | GUI_SYSTEMMENUMODE | GUI_INMOVESIZE;
  if (!GetGUIThreadInfo(GetCurrentThreadId(), &info) || (info.flags & kLoops) == 0) return;
  if (!IsInFront()) SetForegroundWindow(info.hwndMenuOwner ? info.hwndMenuOwner : info.hwndMoveSize);
  SendKey(VK_ESCAPE);
}

}  // namespace NSSoak
