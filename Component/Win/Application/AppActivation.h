// Whether the application is the active one.
#pragma once

#include <windows.h>

#include "Component/Win/Platform/UtilsWinHandles.h"

namespace NSMorvane {

class IWindowHost;

class CAppActivation : CNotCopied {
 public:
  explicit CAppActivation(IWindowHost& host) : fHost(host) {}

  // On WM_ACTIVATEAPP: `flag` tells whether this application becomes active, `threadId` is the thread of the
  // other window concerned. On a change, hides the floating windows if the application is no longer active,
  // and tells the client.
  void OnChange(bool flag, DWORD threadId);

 private:
  IWindowHost& fHost;
  bool fAppIsActive = false;
};

}  // namespace NSMorvane
