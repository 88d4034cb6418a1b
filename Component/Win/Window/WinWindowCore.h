// What the parts of a window know of it. The window owns this and its parts, and the parts only read it.
#pragma once

#include <windows.h>

#include <boost/shared_ptr.hpp>

#include "Component/Win/Window/WindowRegistry.h"
#include "Component/Win/Window/WinWindowClass.h"

namespace NSMorvane {

class CViewImpl;
class IWindowHost;

struct TWindowCore {
  IWindowHost* fHost = nullptr;
  TWindowKind fWindowKind = {};
  // Kept, since a window that is in the middle of a message can outlive the host.
  boost::shared_ptr<CWindowRegistry> fWindows;
  HWND fHwnd = nullptr;            // null before WM_NCCREATE
  CViewImpl* fRootView = nullptr;  // null until the native window is made
  bool fIsHidden = true;           // until Show, and after Hide
  bool fIsAlwaysOnTop = false;

  // Natively visible and not hidden by the library.
  bool IsVisible() const { return fWindows->IsShown(fHwnd); }
};

}  // namespace NSMorvane
