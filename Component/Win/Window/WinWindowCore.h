// What the parts of a window know of it. The window owns both, and its parts only read this.
#pragma once

#include <windows.h>

#include "Component/Win/Window/WinWindowClass.h"

namespace NSMorvane {

class CViewImpl;
class IWindowHost;

struct TWindowCore {
  IWindowHost* fHost = nullptr;
  TWindowKind fWindowKind = {};
  HWND fHwnd = nullptr;            // null before WM_NCCREATE
  CViewImpl* fRootView = nullptr;  // null until the native window stands
};

}  // namespace NSMorvane
