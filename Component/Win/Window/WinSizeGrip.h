// The size grip in the corner of a window: a control of the system's.
#pragma once

#include <windows.h>

#include "Component/Portable/Base/Scopes.h"

namespace NSMorvane {

// There is no grip until Make is called; the other operations do nothing then.
class CWinSizeGrip : CNotCopied {
 public:
  void Make(HWND window);

  // Null if there is none.
  HWND GetHwnd() const { return fHwnd; }
  // Moves the grip into the corner of the client area.
  void Place();
  // Disables the grip of a maximized window, which cannot be sized.
  void Adapt(bool isZoomed);

 private:
  HWND fHwnd = nullptr;  // destroyed with its window
};

}  // namespace NSMorvane
