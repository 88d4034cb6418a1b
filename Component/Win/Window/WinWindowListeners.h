// The listeners for the messages of a window and of its native controls. They are not owned.
#pragma once

#include <windows.h>

#include <algorithm>
#include <map>
#include <optional>
#include <vector>

#include "Component/Portable/Base/Scopes.h"
#include "Component/Win/Platform/WinMsgEventListener.h"

namespace NSMorvane {

class CWinWindowListeners : CNotCopied {
 public:
  void Add(IWinMsgEventListener* listener) { fListeners.push_back(listener); }
  // A listener that was not added is ignored.
  void Remove(IWinMsgEventListener* listener) {
    const auto it = std::find(fListeners.begin(), fListeners.end(), listener);
    if (it != fListeners.end()) fListeners.erase(it);
  }
  // The listener gets the messages by which the control notifies its window.
  void AddForControl(HWND control, IWinMsgEventListener* listener) { fControlListeners[control] = listener; }
  void RemoveForControl(HWND control) { fControlListeners.erase(control); }
  void RemoveForAllControls() { fControlListeners.clear(); }

  // Calls the listeners until one has handled the message, and gives the result of the last one called. False
  // if there is no listener.
  bool Call(TWinMessage& message, LRESULT& inOutResult) {
    if (fListeners.empty()) return false;
    // A listener may remove itself or others.
    for (IWinMsgEventListener* const listener : std::vector<IWinMsgEventListener*>(fListeners)) {
      if (message.fHandled) break;
      if (std::find(fListeners.begin(), fListeners.end(), listener) == fListeners.end()) continue;
      inOutResult = listener->IWinMsgEventListener_OnMessage(message);
    }
    return true;
  }
  // The result of the control's listener, which the control waits for; none if it has no listener.
  std::optional<LRESULT> CallForControl(HWND control, TWinMessage& message) {
    if (!control || !IsWindow(control)) return std::nullopt;
    const auto it = fControlListeners.find(control);
    if (it == fControlListeners.end()) return std::nullopt;
    return it->second->IWinMsgEventListener_OnMessage(message);
  }

 private:
  std::vector<IWinMsgEventListener*> fListeners;
  std::map<HWND, IWinMsgEventListener*> fControlListeners;
};

}  // namespace NSMorvane
