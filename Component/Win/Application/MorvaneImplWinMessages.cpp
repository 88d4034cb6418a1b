// The private messages of the root object.
#include "Component/Portable/Base/PendingErrors.h"
#include "Component/Win/Application/MorvaneImplWin.h"
#include "Component/Win/Platform/PrivateMessages.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Window/Blocking.h"

namespace NSMorvane {

// The procedure of the message window.
LRESULT CALLBACK CMorvaneImpl::MessageWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
  CMorvaneImpl* const morvane = gMorvaneImpl;
  if (!morvane) return ::DefWindowProcW(hwnd, message, wParam, lParam);
  return morvane->HandlePrivateMessage(hwnd, message, wParam, lParam);
}

LRESULT CMorvaneImpl::HandlePrivateMessage(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
  bool handled = false;
  const TError error = ErrorOf([&] { handled = DispatchPrivateMessage(message, wParam, lParam); });
  if (error != kOK) {
    KeepPendingError(error);
    if (message == kMsgIdleDue) return 1000;
  }
  if (handled) return 0;
  return ::DefWindowProcW(hwnd, message, wParam, lParam);
}

// Anyone can send messages to a window. Those of the library carry the address of this object in wParam.
bool CMorvaneImpl::IsOwnMessage(WPARAM wParam) const {
  MORVANE_ASSERT(0!=wParam);
  if (wParam == reinterpret_cast<WPARAM>(this)) return true;
  if (wParam != 0) MORVANE_UNREACHED();
  return false;
}

// True if the message was handled; its result is 0 then.
bool CMorvaneImpl::DispatchPrivateMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case kMsgAppMessage:
      OnAppMessage(static_cast<std::uint32_t>(wParam), static_cast<std::uint32_t>(lParam));
      return false;
    case kMsgAppActivation:
      OnAppActivation(wParam != 0, static_cast<DWORD>(lParam));
      return true;
    case kMsgIdleDue: {
      const bool isOwn = IsOwnMessage(wParam);
      MORVANE_ASSERT(0==lParam);
      if (isOwn) fIdleCalls.OnDue();
      return isOwn;
    }
    case kMsgListenerCall1:
    case kMsgListenerCall2:
    case kMsgListenerCall3:
    case kMsgSaveDialogAccepted:
    case kMsgSaveDialogCancelled:
    case kMsgOpenDialogAccepted:
    case kMsgOpenDialogCancelled:
    case kMsgPushAppModal:
    case kMsgPopAppModal:
    case kMsgFolderDialogAccepted:
    case kMsgFolderDialogCancelled: {
      const bool isOwn = IsOwnMessage(wParam);
      MORVANE_ASSERT(0!=lParam);
      if (!isOwn || lParam == 0) return false;
      if (message >= kMsgListenerCall1 && message <= kMsgListenerCall3)
        return fMessageCallListeners.Call(message, reinterpret_cast<IMessageCallListener*>(lParam));
      if (message == kMsgPushAppModal)
        fBlocking->PushForeignDialog(reinterpret_cast<HWND>(lParam));
      else if (message == kMsgPopAppModal)
        fBlocking->PopForeignDialog(reinterpret_cast<HWND>(lParam));
      else if (!fFileDialogs.OnResult(message, reinterpret_cast<const void*>(lParam)))
        return false;
      return true;
    }
    default:
      return false;
  }
}

void CMorvaneImpl::OnAppMessage(std::uint32_t a, std::uint32_t b) {
  IMorvaneRunBehavior* behavior = nullptr;
  MORVANE_CHECK(IMorvane_GetBehavior(behavior));
  if (behavior) MORVANE_CHECK(behavior->IMorvaneRunBehavior_OnAppMessage(a, b));
}

// Any thread may call this. If the window ends meanwhile, the post fails and nothing else happens.
void CMorvaneImpl::CMorvaneGlue_PostAppMessage(std::uint32_t a, std::uint32_t b) {
  const HWND hwnd = fMessageTarget.GetHwnd();
  MORVANE_ASSERT_TEXT("NULL != fMessageWindow", hwnd != nullptr);
  if (!hwnd) MORVANE_THROW(std::exception());
  if (!::PostMessageW(hwnd, kMsgAppMessage, a, static_cast<LPARAM>(b))) MORVANE_CHECK_LAST_ERROR();
}

}  // namespace NSMorvane
