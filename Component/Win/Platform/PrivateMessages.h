// The library's private window messages. Besides these there is kMsgSecondInstance, in SingleInstance.h.
//
// Unless told otherwise they go to the message window of the root object, with the root object itself as
// wParam: a message that carries anything else there is not the library's own and is refused.
#pragma once

#include <windows.h>

namespace NSMorvane {

enum : UINT {
  // Posted by the threads of the file dialogs when they have ended, with the CFileDialogInfo as lParam.
  kMsgSaveDialogAccepted = 1125,
  kMsgSaveDialogCancelled = 1126,
  kMsgOpenDialogAccepted = 1127,
  kMsgOpenDialogCancelled = 1128,
  // Sent by the idle thread, lParam 0.
  kMsgIdleDue = 1129,
  // Sent by the threads of the file dialogs, to ask the main thread: calls of an IMessageCallListener, which
  // is lParam.
  kMsgListenerCall1 = 1130,
  kMsgListenerCall2 = 1131,
  kMsgListenerCall3 = 1132,
  // Sent by the threads of the file dialogs, with the modal window as lParam.
  kMsgPushAppModal = 1133,
  kMsgPopAppModal = 1134,
  // Posted by the threads of the file dialogs: wParam 1 or 0, lParam the id of the other thread. It may come
  // to
  // the main thread without a window, too.
  kMsgAppActivation = 1136,
  // As the results of the other dialogs. Nothing in the library posts these: a folder chooser with a thread
  // of its own ends in silence.
  kMsgFolderDialogAccepted = 1137,
  kMsgFolderDialogCancelled = 1138,
  // Posted to a window of the library: wParam is the native control inside it, lParam the position of the
  // mouse in that control.
  kForwardedMouseMoveMessage = 1225,
  // Posted to the message window: the two numbers of IMorvane_PostAppMessage.
  kMsgAppMessage = 1226,
  // Posted to the frame of a file dialog, by its own thread, with the root object as wParam.
  kMsgFrameShown = 1227
};

}  // namespace NSMorvane
