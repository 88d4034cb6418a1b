#include "Component/Win/Window/WinNativeControl.h"

#include <map>
#include <utility>

#include "Component/Portable/Base/PendingErrors.h"
#include "Component/Win/Platform/NativeWindowWrapper.h"
#include "Component/Win/Platform/PrivateMessages.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Window/WinWindow.h"

namespace NSMorvane {

namespace {

struct TSubclassedControl {
  CWinControlCallbackAdapter* fAdapter;  // null: the token has gone, but somebody still calls our procedure
  LONG_PTR fOldProc;
};

// Process-wide, since the system calls a window procedure with the handle alone. Main thread only.
std::map<HWND, TSubclassedControl> gNativeControlMap;

CWinControlCallbackAdapter* FindAdapter(HWND hwnd) {
  const auto it = gNativeControlMap.find(hwnd);
  return it == gNativeControlMap.end() ? nullptr : it->second.fAdapter;
}

LRESULT CallOldProc(LONG_PTR oldProc, HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
  return CallWindowProcW(reinterpret_cast<WNDPROC>(oldProc), hwnd, message, wParam, lParam);
}

// --- Subclassing

// Asks whether a control still calls our procedure, which alone has this answer.
UINT ProbeMessage() {
  static const UINT message = RegisterWindowMessageW(L"Morvane.NativeControlProbe");
  return message;
}
constexpr LRESULT kProbeAnswer = 0x4D6F7276;

// Somebody who subclassed the control before us, and has put back what was there before that, has dropped our
// procedure with it.
void ForgetDroppedProc(HWND hwnd) {
  const auto it = gNativeControlMap.find(hwnd);
  if (it == gNativeControlMap.end() || it->second.fAdapter) return;
  if (SendMessageW(hwnd, ProbeMessage(), 0, 0) != kProbeAnswer) gNativeControlMap.erase(hwnd);
}

// Puts our procedure in front of that of the control, and returns the latter.
LONG_PTR Subclass(HWND hwnd, CWinControlCallbackAdapter& adapter) {
  ForgetDroppedProc(hwnd);
  const auto [it, isNew] = gNativeControlMap.try_emplace(hwnd);
  TSubclassedControl& control = it->second;
  if (!isNew && control.fAdapter) MORVANE_THROW(XIllegalCallSequence());
  if (isNew) {
    control.fOldProc = GetWindowLongPtrW(hwnd, GWLP_WNDPROC);
    const bool isSubclassed =
        control.fOldProc &&
        SetWindowLongPtrW(hwnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(WinNativeControlProc));
    if (!isSubclassed) {
      gNativeControlMap.erase(it);
      MORVANE_THROW(std::exception());
    }
  }
  control.fAdapter = &adapter;
  return control.fOldProc;
}

// Puts the old procedure back. If that cannot be done, since somebody else has subclassed the control
// meanwhile and calls our procedure, that stays and passes everything on to the old one.
void Unsubclass(HWND hwnd) {
  const auto it = gNativeControlMap.find(hwnd);
  MORVANE_ASSERT_TEXT("it!=tmp.end()", it != gNativeControlMap.end());
  if (it == gNativeControlMap.end()) return;
  it->second.fAdapter = nullptr;
  const bool isOnTop =
      GetWindowLongPtrW(hwnd, GWLP_WNDPROC) == reinterpret_cast<LONG_PTR>(WinNativeControlProc);
  const bool isRestored = isOnTop && SetWindowLongPtrW(hwnd, GWLP_WNDPROC, it->second.fOldProc);
  if (isRestored || !IsWindow(hwnd)) gNativeControlMap.erase(it);
}

LRESULT Dispatch(const TSubclassedControl& control, HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
  return control.fAdapter ? control.fAdapter->HandleControlMessage(message, wParam, lParam)
                          : CallOldProc(control.fOldProc, hwnd, message, wParam, lParam);
}

void ForgetDestroyedControl(HWND hwnd) {
  if (CWinControlCallbackAdapter* const adapter = FindAdapter(hwnd)) adapter->ForgetControl();
  gNativeControlMap.erase(hwnd);
}

}  // namespace

// --- The procedure

LRESULT CALLBACK WinNativeControlProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
  const auto it = gNativeControlMap.find(hwnd);
  if (it == gNativeControlMap.end()) return 0;
  if (message == ProbeMessage()) return kProbeAnswer;
  const TSubclassedControl control = it->second;
  LRESULT result = 0;
  const TError error = ErrorOf([&] { result = Dispatch(control, hwnd, message, wParam, lParam); });
  if (error != kOK) {
    KeepPendingError(error);
    // What is not validated is asked for again at once, and timers would have no turn any more.
    if (message == WM_PAINT) ValidateRect(hwnd, nullptr);
  }
  if (message == WM_NCDESTROY) ForgetDestroyedControl(hwnd);
  MORVANE_ASSERT_TEXT("NULL != CMorvaneImpl::gMorvaneImpl", gAfterNativeMessage != nullptr);
  if (gAfterNativeMessage) gAfterNativeMessage();
  return error == kOK ? result : 0;
}

// --- Life

CWinControlCallbackAdapter::CWinControlCallbackAdapter(HWND hwnd, IWinNativeControlCallback& callback,
                                                       const CViewImpl& view,
                                                       const boost::shared_ptr<CWinWindow>& window)
    : fView(view.GetClientsViewReference()), fWindow(window), fHwnd(hwnd), fCallback(callback) {
  fOldProc = Subclass(hwnd, *this);
  try {
    window->GetListeners().AddForControl(hwnd, this);
  } catch (...) {
    Unsubclass(hwnd);
    MORVANE_RETHROW();
  }
}

CWinControlCallbackAdapter::~CWinControlCallbackAdapter() {
  if (!fHwnd) return;
  const HWND hwnd = fHwnd;
  ForgetControl();
  Unsubclass(hwnd);
}

void CWinControlCallbackAdapter::ForgetControl() {
  const HWND hwnd = std::exchange(fHwnd, nullptr);
  const boost::shared_ptr<CWinWindow> window = fWindow.lock();
  if (!window) return;
  window->GetListeners().RemoveForControl(hwnd);
  window->GetTooltips().ForgetControl(hwnd);
}

// --- Messages of the control

LRESULT CWinControlCallbackAdapter::HandleControlMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  const HWND hwnd = fHwnd;
  const LONG_PTR oldProc = fOldProc;
  // Declared before the result of the callback, so that neither ends before that is there.
  const boost::shared_ptr<CWinWindow> window = fWindow.lock();
  const TViewImplPtr view = fView.lock();
  if (window) {
    // The control gets its message even if this fails: without WM_SETFOCUS an edit would have no caret.
    const TError error = ErrorOf([&] { TellWindow(*window, view, message, wParam, lParam); });
    if (error != kOK) KeepPendingError(error);
    // The token, and this object with it, may be gone.
    if (FindAdapter(hwnd) != this) return CallOldProc(oldProc, hwnd, message, wParam, lParam);
  }
  TWinResult result = 0;
  MORVANE_CHECK(
      fCallback.IWinNativeControlCallback_OnControlProc(hwnd, message, wParam, lParam, oldProc, result));
  return result;
}

void CWinControlCallbackAdapter::TellWindow(CWinWindow& window, const TViewImplPtr& view, UINT message,
                                            WPARAM wParam, LPARAM lParam) {
  const HWND hwnd = fHwnd;
  const bool hasView = view && view->IsLive();
  switch (message) {
    case WM_MOUSEMOVE: {
      ForwardMouse(window, lParam);
      if (!fIsMouseTracked) {
        TRACKMOUSEEVENT request = {};
        request.cbSize = sizeof(request);
        request.dwFlags = TME_LEAVE;
        request.hwndTrack = hwnd;
        if (!TrackMouseEvent(&request)) MORVANE_CHECK_LAST_ERROR();
        fIsMouseTracked = true;
      }
      if (hasView) window.GetTooltips().MoveToControl(*view, hwnd);
      return;
    }
    case WM_MOUSELEAVE: {
      fIsMouseTracked = false;
      // The message itself tells no position.
      const DWORD position = GetMessagePos();
      POINT point = {static_cast<SHORT>(LOWORD(position)), static_cast<SHORT>(HIWORD(position))};
      if (!ScreenToClient(hwnd, &point)) MORVANE_CHECK_LAST_ERROR();
      ForwardMouse(window, MAKELPARAM(point.x, point.y));
      return;
    }
    case WM_SETFOCUS:
      if (hasView) window.SetFocusFromNative(view.get());
      break;
    case WM_KILLFOCUS:
      // A view stays on duty while the keyboard goes from one of its controls to another.
      if (hasView && !IsHostedInSameView(reinterpret_cast<HWND>(wParam))) window.SetFocusFromNative(nullptr);
      break;
    default:
      return;
  }
  // Behaviours have been called: no field is touched from here on.
  const LRESULT uiState = SendMessageW(hwnd, WM_QUERYUISTATE, 0, 0);
  SendMessageW(hwnd, WM_UPDATEUISTATE, MAKEWPARAM(UIS_INITIALIZE, uiState), 0);
}

// The window hears where the mouse is in its turn, since the message of the control comes first.
void CWinControlCallbackAdapter::ForwardMouse(const CWinWindow& window, LPARAM position) const {
  PostMessageW(window.GetHwnd(), kForwardedMouseMoveMessage, reinterpret_cast<WPARAM>(fHwnd), position);
}

// Also a window inside such a control, which need not be hosted itself.
bool CWinControlCallbackAdapter::IsHostedInSameView(HWND hwnd) const {
  const CWinControlCallbackAdapter* host = nullptr;
  for (; hwnd && !host; hwnd = GetAncestor(hwnd, GA_PARENT)) host = FindAdapter(hwnd);
  return host && !host->fView.owner_before(fView) && !fView.owner_before(host->fView);
}

// --- Notifications

LRESULT CWinControlCallbackAdapter::IWinMsgEventListener_OnMessage(TWinMessage& event) {
  MORVANE_ASSERT((event.fMessage == WM_NOTIFY || event.fMessage == WM_COMMAND || event.fMessage==WM_HSCROLL || event.fMessage==WM_VSCROLL) && event.fLParam != 0);
  const boost::shared_ptr<CWinWindow> window = fWindow.lock();
  const TViewImplPtr view = fView.lock();
  TWinResult result = 0;
  MORVANE_CHECK(fCallback.IWinNativeControlCallback_OnControlNotification(event.fMessage, event.fWParam,
                                                                          event.fLParam, result));
  return result;
}

// --- For clients

std::unique_ptr<IWinNativeControlCallbackToken> HostNativeControl(HWND hwnd,
                                                                  IWinNativeControlCallback* callback,
                                                                  IView& view) {
  MORVANE_ASSERT(::IsWindow(hwnd));
  MORVANE_ASSERT(::GetParent(hwnd) != NULL);
  MORVANE_ASSERT(callback != NULL);
  const CViewImpl* const viewImpl = dynamic_cast<const CViewImpl*>(&view);
  CWinWindow* const windowImpl =
      viewImpl && viewImpl->IsLive() ? dynamic_cast<CWinWindow*>(viewImpl->GetMotherWindow()) : nullptr;
  const boost::shared_ptr<CWinWindow> window =
      windowImpl ? windowImpl->LockClientsWindowReference() : boost::shared_ptr<CWinWindow>();
  const bool isInput = ::IsWindow(hwnd) && ::GetParent(hwnd) && callback && window;
  // A procedure can be called on the thread of its window only, which for windows of the library is this one.
  const bool isOfThisThread = isInput && GetWindowThreadProcessId(hwnd, nullptr) == GetCurrentThreadId() &&
                              GetWindowThreadProcessId(window->GetHwnd(), nullptr) == GetCurrentThreadId();
  if (isInput) MORVANE_ASSERT(isOfThisThread);
  const bool isInWindow = isOfThisThread && IsChild(window->GetHwnd(), hwnd);
  if (isOfThisThread) MORVANE_ASSERT(isInWindow);
  if (!isInWindow) MORVANE_THROW(std::invalid_argument(""));
  return std::make_unique<CWinControlCallbackAdapter>(hwnd, *callback, *viewImpl, window);
}

}  // namespace NSMorvane
