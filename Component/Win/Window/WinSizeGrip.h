// The size grip in the corner of a window: a control of the system's.
#pragma once

#include <windows.h>

#include "Component/Portable/Base/Scopes.h"

namespace NSMorvane {

// Without Make there is none, and nothing below does anything.
class CWinSizeGrip : CNotCopied {
 public:
  void Make(HWND window);

  // Null if there is none.
  HWND GetHwnd() const { return fHwnd; }
  // Into the corner of the client area.
  void Place();
  // A zoomed window cannot be sized.
  void Adapt(bool isZoomed);

 private:
  HWND fHwnd = nullptr;  // goes with its window
};

}  // namespace NSMorvane
