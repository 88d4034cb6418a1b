// Input methods. Views take keys and no composed text, so an input method is kept closed except for native
// edit controls.
#pragma once

#include <windows.h>

namespace NSMorvane {

// Takes the input method from a window, which may be open before the window has the keyboard and then sends
// no notification. Child windows keep theirs.
void LeaveWithoutInputMethod(HWND window);

// Called on WM_IME_NOTIFY; `command` is its wParam.
void KeepInputMethodClosed(HWND window, WPARAM command);

}  // namespace NSMorvane
