// Whether the application is the active one.
#pragma once

#include <windows.h>

#include "Component/Win/Platform/UtilsWinHandles.h"

namespace NSMorvane {

class IWindowHost;

class CAppActivation : CNotCopied {
 public:
  explicit CAppActivation(IWindowHost& host) : fHost(host) {}

  // Another application, of which `threadId` is a thread, has got or lost the activation. A change hides the
  // floating windows of an application that is left, and is told to the client.
  void OnChange(bool flag, DWORD threadId);

 private:
  IWindowHost& fHost;
  bool fAppIsActive = false;
};

}  // namespace NSMorvane
