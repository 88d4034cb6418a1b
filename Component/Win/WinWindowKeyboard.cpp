// Keyboard dispatch of windows. Menu shortcuts go first: what is one never reaches a view.
#include "Component/Win/WinWindow.h"

namespace NSMorvane {

std::optional<TWinKeyMessage> MakeKeyMessage(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
  const bool isDown = message == WM_KEYDOWN || message == WM_SYSKEYDOWN;
  const bool isUp = message == WM_KEYUP || message == WM_SYSKEYUP;
  constexpr std::uint8_t kNoKey = 255;
  TWinKeyMessage result = {};
  result.fHwnd = hwnd;
  result.fVirtualKey = LOBYTE(wParam);
  if (!(isDown || isUp) || result.fVirtualKey == kNoKey) return std::nullopt;
  result.fScanCode = LOBYTE(HIWORD(lParam));
  result.fIsRepeat = isDown && (HIWORD(lParam) & KF_REPEAT);
  result.fIsExtended = HIWORD(lParam) & KF_EXTENDED;
  return result;
}

bool CWinWindow::PreTranslateMessage(const MSG& message) {
  if (const auto key = MakeKeyMessage(message.hwnd, message.message, message.wParam, message.lParam))
    NotifyModifierListeners(*key);
  MSG copy = message;
  return fAcceleratorTable && TranslateAcceleratorW(fHwnd, fAcceleratorTable, &copy);
}

// Keyboard dispatch is not built yet: nobody is told of keys, and the system handles them.

void CWinWindow::NotifyModifierListeners(const TWinKeyMessage&) {}

void CWinWindow::DispatchKeyDown(const TWinKeyMessage&, bool&) {}

void CWinWindow::DispatchKeyUp(const TWinKeyMessage&, bool&) {}

}  // namespace NSMorvane
