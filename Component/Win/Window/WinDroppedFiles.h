// Files that the user has dropped on a window.
#pragma once

#include <windows.h>

namespace NSMorvane {

class IWindowHost;

// Has the application open what WM_DROPFILES brings, and frees it. It comes from anywhere: what is not sound
// is left alone.
void OpenDroppedFiles(HGLOBAL drop, IWindowHost& host);

}  // namespace NSMorvane
