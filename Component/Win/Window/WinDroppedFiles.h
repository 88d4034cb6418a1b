// Files that the user has dropped on a window.
#pragma once

#include <windows.h>

namespace NSMorvane {

class IWindowHost;

// Asks the application to open the files that WM_DROPFILES brings, and frees the block. Anyone can send that
// message, so a malformed block is ignored.
void OpenDroppedFiles(HGLOBAL drop, IWindowHost& host);

}  // namespace NSMorvane
