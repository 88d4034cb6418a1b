// Those who want to see the messages of a window, or of its native controls. They stay their maker's.
#pragma once

#include <windows.h>

#include <algorithm>
#include <map>
#include <vector>

#include "Component/Portable/Base/Scopes.h"
#include "Component/Win/Platform/WinMsgEventListener.h"

namespace NSMorvane {

class CWinWindowListeners : CNotCopied {
 public:
  void Add(IWinMsgEventListener* listener) { fListeners.push_back(listener); }
  // One that is not there is ignored.
  void Remove(IWinMsgEventListener* listener) {
    const auto it = std::find(fListeners.begin(), fListeners.end(), listener);
    if (it != fListeners.end()) fListeners.erase(it);
  }
  // Sees what the control notifies its window of.
  void AddForControl(HWND control, IWinMsgEventListener* listener) { fControlListeners[control] = listener; }
  void RemoveForControl(HWND control) { fControlListeners.erase(control); }
  void RemoveForAllControls() { fControlListeners.clear(); }

  // Until one of them has handled the message; false if there is none. The result is that of the last one.
  bool Call(TWinMessage& message, LRESULT& inOutResult) {
    if (fListeners.empty()) return false;
    // A listener may take itself or others out.
    for (IWinMsgEventListener* const listener : std::vector<IWinMsgEventListener*>(fListeners)) {
      if (message.fHandled) break;
      if (std::find(fListeners.begin(), fListeners.end(), listener) == fListeners.end()) continue;
      inOutResult = listener->IWinMsgEventListener_OnMessage(message);
    }
    return true;
  }
  void CallForControl(HWND control, TWinMessage& message) {
    if (!control || !IsWindow(control)) return;
    const auto it = fControlListeners.find(control);
    if (it != fControlListeners.end()) it->second->IWinMsgEventListener_OnMessage(message);
  }

 private:
  std::vector<IWinMsgEventListener*> fListeners;
  std::map<HWND, IWinMsgEventListener*> fControlListeners;
};

}  // namespace NSMorvane
