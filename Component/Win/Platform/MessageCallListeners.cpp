#include "Component/Win/Platform/MessageCallListeners.h"

#include <algorithm>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Win/Platform/PrivateMessages.h"

namespace NSMorvane {

void CMessageCallListeners::Add(IMessageCallListener* listener) { fListeners.push_back(listener); }

void CMessageCallListeners::Remove(IMessageCallListener* listener) { std::erase(fListeners, listener); }

bool CMessageCallListeners::Call(UINT message, IMessageCallListener* listener) const {
  if (std::find(fListeners.begin(), fListeners.end(), listener) == fListeners.end()) {
    MORVANE_UNREACHED();
    return false;
  }
  switch (message) {
    case kMsgListenerCall1:
      listener->OnListenerCall1();
      break;
    case kMsgListenerCall2:
      listener->OnListenerCall2();
      break;
    default:
      listener->OnListenerCall3();
      break;
  }
  return true;
}

}  // namespace NSMorvane
