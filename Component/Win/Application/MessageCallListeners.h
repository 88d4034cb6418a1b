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
  // Listeners stay their maker's.
  void Add(IMessageCallListener* listener);
  void Remove(IMessageCallListener* listener);
  // False, and a report, for an object that nobody has announced: anyone can send numbers to a window.
  bool Call(UINT message, IMessageCallListener* listener) const;

 private:
  std::vector<IMessageCallListener*> fListeners;
};

}  // namespace NSMorvane
