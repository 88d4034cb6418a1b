// The objects that kMsgListenerCall1 to kMsgListenerCall3 call.
#pragma once

#include <windows.h>

#include <vector>

#include "Component/Win/Platform/UtilsWinHandles.h"

namespace NSMorvane {

class IMessageCallListener {
 public:
  virtual void OnListenerCall1() = 0;
  virtual void OnListenerCall2() = 0;
  virtual void OnListenerCall3() = 0;

 protected:
  virtual ~IMessageCallListener() = default;
};

class CMessageCallListeners : CNotCopied {
 public:
  // Listeners are not owned.
  void Add(IMessageCallListener* listener);
  void Remove(IMessageCallListener* listener);
  // Reports a listener that was not added and returns false: anyone can send made-up pointers to a window.
  bool Call(UINT message, IMessageCallListener* listener) const;

 private:
  std::vector<IMessageCallListener*> fListeners;
};

}  // namespace NSMorvane
