// Input methods. Views take keys and no composed text, so an input method is kept closed except for native
// edit controls.
#pragma once

#include <windows.h>

namespace NSMorvane {

// On WM_IME_NOTIFY, whose command it is.
void KeepInputMethodClosed(HWND window, WPARAM command);

}  // namespace NSMorvane
