// Input methods. Views take keys and no composed text, so an input method is kept closed except for native
// edit controls.
#pragma once

#include <windows.h>

namespace NSMorvane {

// Called on WM_IME_NOTIFY; `command` is its wParam.
void KeepInputMethodClosed(HWND window, WPARAM command);

}  // namespace NSMorvane
