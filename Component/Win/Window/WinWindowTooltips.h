// The tooltip windows of all windows of the library. They belong to the main thread.
#pragma once

#include <windows.h>

#include <vector>

namespace NSMorvane {

// Every one there is. Each belongs to a window whose views have tooltips.
extern std::vector<HWND> gTooltipWindows;

// Shows a message of the mouse to them, before it is dispatched.
void RelayToTooltips(const MSG& message);

}  // namespace NSMorvane
