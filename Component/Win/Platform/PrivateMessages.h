// The library's private window messages. Besides these there is kMsgSecondInstance, in SingleInstance.h.
//
// Unless told otherwise they go to the message window of the root object, with the root object itself as
// wParam: a message that carries anything else there is not the library's own and is refused.
#pragma once

#include <windows.h>

namespace NSMorvane {

enum : UINT {
  // Sent by the threads of the file dialogs, with a result record as lParam.
  kMsgSaveDialogAccepted = 1125,
  kMsgSaveDialogCancelled = 1126,
  kMsgOpenDialogAccepted = 1127,
  kMsgOpenDialogCancelled = 1128,
  // Sent by the idle thread, lParam 0.
  kMsgIdleDue = 1129,
  // Calls of the IMessageCallListener in lParam. Nothing in the library sends these.
  kMsgListenerCall1 = 1130,
  kMsgListenerCall2 = 1131,
  kMsgListenerCall3 = 1132,
  // Sent by the threads of the file dialogs, with the modal window as lParam.
  kMsgPushAppModal = 1133,
  kMsgPopAppModal = 1134,
  // Posted to the main thread, without a window: wParam tells whether the application becomes active, lParam
  // is the id of the other thread. Nothing in the library posts it.
  kMsgAppActivation = 1136,
  // Like the results of the other dialogs. Nothing in the library sends these.
  kMsgFolderDialogAccepted = 1137,
  kMsgFolderDialogCancelled = 1138,
  // Posted to a window of the library: wParam is the native control inside it, lParam the position of the
  // mouse in that control.
  kForwardedMouseMoveMessage = 1225,
  // Posted to the message window: the two numbers of IMorvane_PostAppMessage.
  kMsgAppMessage = 1226
};

}  // namespace NSMorvane
