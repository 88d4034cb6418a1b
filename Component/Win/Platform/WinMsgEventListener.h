// A native message inside the library, and the interface of listeners for the messages of a window.
#pragma once

#include <windows.h>

namespace NSMorvane {

struct TWinMessage {
  bool fHandled;  // set by a listener that has handled the message: later listeners do not see it
  HWND fHwnd;
  UINT fMessage;
  WPARAM fWParam;
  LPARAM fLParam;
};

class IWinMsgEventListener {
 public:
  // Returns the native result.
  virtual LRESULT IWinMsgEventListener_OnMessage(TWinMessage& message) = 0;

 protected:
  virtual ~IWinMsgEventListener() = default;
};

}  // namespace NSMorvane
