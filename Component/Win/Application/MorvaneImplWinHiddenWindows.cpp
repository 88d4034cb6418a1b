#include "Component/Win/Application/MorvaneImplWinHiddenWindows.h"

#include <algorithm>

#include "Component/Portable/Base/PendingErrors.h"
#include "Component/Win/Application/MorvaneImplWin.h"
#include "Component/Win/Platform/PrivateMessages.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Window/Blocking.h"

namespace NSMorvane {

// --- The windows

LRESULT CALLBACK WinHiderWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
  return ::DefWindowProcW(hwnd, message, wParam, lParam);
}

LRESULT CALLBACK WinMessageWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
  CMorvaneImpl* const morvane = CMorvaneImpl::gMorvaneImpl;
  if (!morvane) return ::DefWindowProcW(hwnd, message, wParam, lParam);
  return morvane->HandlePrivateMessage(hwnd, message, wParam, lParam);
}

CHiddenWindow::CHiddenWindow(const wchar_t* className, WNDPROC procedure, HICON icon)
    : fClass(0), fHwnd(nullptr) {
  const HINSTANCE module = ::GetModuleHandleW(nullptr);
  WNDCLASSEXW description = {};
  description.cbSize = sizeof(description);
  description.style = CS_DBLCLKS;
  description.lpfnWndProc = procedure;
  description.hInstance = module;
  description.hIcon = icon;
  description.hbrBackground = reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(COLOR_BTNFACE + 1));
  description.lpszClassName = className;
  fClass = ::RegisterClassExW(&description);
  if (fClass) {
    fHwnd = ::CreateWindowExW(WS_EX_WINDOWEDGE, MAKEINTATOM(fClass), L"", WS_DISABLED, 0, 0, 0, 0,
                              HWND_MESSAGE, nullptr, module, nullptr);
    if (fHwnd) return;
  }
  MORVANE_UNREACHED();
  if (fClass) Unregister();
  MORVANE_THROW(std::exception());
}

CHiddenWindow::~CHiddenWindow() {
  ::DestroyWindow(fHwnd);
  Unregister();
}

CHiderWindow::~CHiderWindow() { DisownWindows(GetHwnd()); }

void CHiddenWindow::Unregister() {
  const BOOL ucResult = ::UnregisterClassW(MAKEINTATOM(fClass), ::GetModuleHandleW(nullptr));
  MORVANE_ASSERT(ucResult);
}

HWND CMorvaneImpl::GetHiderWindow() const { return fHiderWindow ? fHiderWindow->GetHwnd() : nullptr; }

// --- Private messages

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

// Anyone can send numbers to a window. Only what carries this object is the library's own.
bool CMorvaneImpl::IsOwnMessage(WPARAM wParam) const {
  MORVANE_ASSERT(0!=wParam);
  if (wParam == reinterpret_cast<WPARAM>(this)) return true;
  if (wParam != 0) MORVANE_UNREACHED();
  return false;
}

// True if the message has been dealt with and has the result 0.
bool CMorvaneImpl::DispatchPrivateMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case kMsgAppMessage:
      OnAppMessage(static_cast<std::uint32_t>(wParam), static_cast<std::uint32_t>(lParam));
      return false;
    case kMsgIdleDue: {
      const bool isOwn = IsOwnMessage(wParam);
      MORVANE_ASSERT(0==lParam);
      if (isOwn) fIdleDue = true;
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
      if (message >= kMsgListenerCall1 && message <= kMsgListenerCall3) return CallListener(message, lParam);
      if (message == kMsgPushAppModal)
        fBlocking->PushForeignDialog(reinterpret_cast<HWND>(lParam));
      else if (message == kMsgPopAppModal)
        fBlocking->PopForeignDialog(reinterpret_cast<HWND>(lParam));
      else
        OnFileDialogMessage(message, lParam);
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

void CMorvaneImpl::MakeMessageWindow() {
  fMessageWindow = std::make_unique<CMessageWindow>();
  fMessageHwnd = fMessageWindow->GetHwnd();
}

void CMorvaneImpl::EndMessageWindow() {
  fMessageHwnd = nullptr;
  fMessageWindow.reset();
}

// Any thread may come here. A window that is going away only makes the post fail.
void CMorvaneImpl::CMorvaneGlue_PostAppMessage(std::uint32_t a, std::uint32_t b) {
  const HWND hwnd = fMessageHwnd;
  MORVANE_ASSERT_TEXT("NULL != fMessageWindow", hwnd != nullptr);
  if (!hwnd) MORVANE_THROW(std::exception());
  if (!::PostMessageW(hwnd, kMsgAppMessage, a, static_cast<LPARAM>(b))) {
    MORVANE_THROW_LAST_ERROR();
  }
}

// --- Listener calls

void CMorvaneImpl::AddMessageCallListener(IMessageCallListener* listener) {
  fMessageCallListeners.push_back(listener);
}

void CMorvaneImpl::RemoveMessageCallListener(IMessageCallListener* listener) {
  std::erase(fMessageCallListeners, listener);
}

// False for an object that nobody has announced.
bool CMorvaneImpl::CallListener(UINT message, LPARAM lParam) {
  IMessageCallListener* const listener = reinterpret_cast<IMessageCallListener*>(lParam);
  if (std::find(fMessageCallListeners.begin(), fMessageCallListeners.end(), listener) ==
      fMessageCallListeners.end()) {
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
