// Files that the user has dropped on a window.
#pragma once

#include <windows.h>

namespace NSMorvane {

class IWindowHost;

// Lets the user drop files on a window that has WS_EX_ACCEPTFILES from a program with lower rights too, as
// the desktop is for an application that runs as administrator. The system would keep its messages away.
void LetDroppedFilesIn(HWND window);

// Asks the application to open the files that WM_DROPFILES brings, and frees the block. Anyone can send that
// message, so a malformed block is ignored.
void OpenDroppedFiles(HGLOBAL drop, IWindowHost& host);

}  // namespace NSMorvane
