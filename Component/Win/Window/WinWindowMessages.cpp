// The message function of windows: the stages that every message goes through, and the table from messages to
// their handlers. What a handler decides lives in the file of its topic.
#include <algorithm>
#include <iterator>
#include <optional>

#include "Component/Portable/Base/PendingErrors.h"
#include "Component/Win/Drawing/WinDeviceContext.h"
#include "Component/Win/Platform/PrivateMessages.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Window/Blocking.h"
#include "Component/Win/Window/WindowHost.h"
#include "Component/Win/Window/WindowRegistry.h"
#include "Component/Win/Window/WinDroppedFiles.h"
#include "Component/Win/Window/WinInputMethod.h"
#include "Component/Win/Window/WinWindow.h"

namespace NSMorvane {

namespace {

// Whether another view may be under the mouse after this message. WM_RBUTTONDOWN does not count.
bool CanMoveViewsUnderMouse(UINT message) {
  switch (message) {
    case WM_SIZE:
    case WM_ACTIVATE:
    case WM_SETCURSOR:
    case WM_WINDOWPOSCHANGED:
    case WM_NOTIFY:
    case WM_KEYDOWN:
    case WM_KEYUP:
    case WM_SYSKEYDOWN:
    case WM_SYSKEYUP:
    case WM_COMMAND:
    case WM_HSCROLL:
    case WM_VSCROLL:
    case WM_MOUSEMOVE:
    case WM_LBUTTONDOWN:
    case WM_LBUTTONUP:
    case WM_LBUTTONDBLCLK:
    case WM_RBUTTONUP:
    case WM_MOUSEWHEEL:
    case WM_MOUSELEAVE:
      return true;
    default:
      return false;
  }
}

// Whether the message is input of the user for this window. Dropped files and released keys concern the
// application.
bool IsUserInput(UINT message) {
  if (message == WM_KEYUP || message == WM_SYSKEYUP) return false;
  return message == WM_CLOSE || message == WM_HELP || message == WM_COMMAND ||
         (message >= WM_KEYFIRST && message <= WM_KEYLAST) ||
         (message >= WM_MOUSEFIRST && message <= WM_MOUSELAST);
}

// Anyone can send messages, so the memory that a message points to is checked before it is used.
constexpr DWORD kWritable = PAGE_READWRITE | PAGE_WRITECOPY | PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;
constexpr DWORD kReadable = kWritable | PAGE_READONLY | PAGE_EXECUTE_READ;

bool IsAccessible(const void* block, std::size_t size, DWORD protection) {
  const std::uintptr_t begin = reinterpret_cast<std::uintptr_t>(block);
  MEMORY_BASIC_INFORMATION info;
  if (!block || !VirtualQuery(block, &info, sizeof(info))) return false;
  if (info.State != MEM_COMMIT || !(info.Protect & protection) || (info.Protect & PAGE_GUARD)) return false;
  const std::uintptr_t end = reinterpret_cast<std::uintptr_t>(info.BaseAddress) + info.RegionSize;
  return end - begin >= size;
}

TPoint PointInMessage(LPARAM lParam) {
  return {static_cast<std::int16_t>(LOWORD(lParam)), static_cast<std::int16_t>(HIWORD(lParam))};
}

}  // namespace

// --- The table

class CWinWindow::CMessageTable {
 public:
  // With a value the message ends here, and the value is its result. Without one it is forwarded.
  using TResult = std::optional<LRESULT>;
  using THandler = TResult (*)(CWinWindow& window, TWinMessage& message);

  // Null for a message that is only forwarded.
  static THandler Find(UINT message);

 private:
  struct TRow {
    UINT fMessage;
    THandler fHandler;
  };

  static constexpr TResult kForward = std::nullopt;

  // --- Life and size

  static TResult OnCreate(CWinWindow& window, TWinMessage& message) {
    const LRESULT result = window.ForwardMessage(message);
    if (!window.fHasCloseCommand) window.GrayCloseCommand();
    return result;
  }
  static TResult OnDestroy(CWinWindow& window, TWinMessage&) {
    const boost::shared_ptr<CNativeWindowWrapper>& fNativeWindowWrapper = window.fNativeWindowWrapper;
    MORVANE_ASSERT(fNativeWindowWrapper.get()!=0);
    if (fNativeWindowWrapper) MORVANE_ASSERT(fNativeWindowWrapper->CheckInvariant());
    return kForward;
  }
  // The window itself does not listen any more when it destroys its native window.
  static TResult OnNcDestroy(CWinWindow& window, TWinMessage& message) {
    const LRESULT result = window.ForwardMessage(message);
    window.OnNativeWindowLost();
    return result;
  }
  static TResult OnSize(CWinWindow& window, TWinMessage&) {
    window.fPlacement.OnSize();
    window.fSizeGrip.Place();
    return kForward;
  }
  static TResult OnWindowPosChanged(CWinWindow& window, TWinMessage&) {
    window.fPlacement.OnWindowPosChanged();
    window.fSizeGrip.Adapt(window.IsZoomed());
    return kForward;
  }
  static TResult OnGetMinMaxInfo(CWinWindow& window, TWinMessage& message) {
    const auto info = reinterpret_cast<MINMAXINFO*>(message.fLParam);
    if (IsAccessible(info, sizeof(*info), kWritable)) window.fPlacement.LimitSizes(*info);
    return 0;
  }
  static TResult OnClose(CWinWindow& window, TWinMessage&) {
    if (GetWindowLongW(window.fHwnd, GWL_STYLE) & WS_SYSMENU) window.RequestClose(kCloseByUser);
    return 0;
  }
  static TResult OnDisplayChange(CWinWindow&, TWinMessage&) {
    ForgetDisplayDepth();
    return kForward;
  }

  // --- Activation and focus

  static TResult OnActivate(CWinWindow& window, TWinMessage& message) {
    const WORD state = LOWORD(message.fWParam);
    const bool minimized = HIWORD(message.fWParam) != 0;
    DebugPrint(minimized ? "WM_ACTIVATE minimized" : "WM_ACTIVATE ");
    if (state != WA_ACTIVE && state != WA_CLICKACTIVE) {
      MORVANE_ASSERT_TEXT("LOWORD(wParam) == WA_INACTIVE", state == WA_INACTIVE);
      window.fMouse.OnDeactivated();
      window.fFocus.OnDeactivated();
      return kForward;
    }
    if (minimized) return kForward;
    DebugPrint("CWinWindow::IWindowListener_OnActivated " + HandleText(window.fHwnd));
    window.fBlocking->RaiseWithOwners(window.fHwnd);
    // While a dialog blocks the application, or an alert is active, floating windows are hidden.
    window.fWindows->ShowFloatingWindows(!CBlocking::BansFloatingWindows(window) &&
                                         !window.fBlocking->IsAppBlocked());
    const TError error = ErrorOf([&] { window.fFocus.OnActivated(); });
    if (error != kOK) KeepPendingError(error);
    window.fHost->RequestMenuBars();
    // Not forwarded, after a failure neither: DefWindowProcW would move the keyboard to the window by itself.
    return 0;
  }
  static TResult OnSetFocus(CWinWindow& window, TWinMessage& message) {
    window.fFocus.OnReceivedKeyboard();
    const LRESULT uiState = SendMessageW(message.fHwnd, WM_QUERYUISTATE, 0, 0);
    SendMessageW(message.fHwnd, WM_UPDATEUISTATE, MAKEWPARAM(UIS_INITIALIZE, uiState), 0);
    return kForward;
  }
  static TResult OnKillFocus(CWinWindow& window, TWinMessage&) {
    window.fFocus.OnLostKeyboard();
    return kForward;
  }
  static TResult OnActivateApp(CWinWindow& window, TWinMessage& message) {
    window.fHost->OnAppActivation(message.fWParam == 1, static_cast<DWORD>(message.fLParam));
    return kForward;
  }

  // --- Painting

  static TResult OnPaint(CWinWindow& window, TWinMessage&) {
    window.fPainting.Paint(window.fSizeGrip.GetHwnd());
    MORVANE_ASSERT_TEXT("CheckInvariant()", window.CheckInvariant());
    return 0;
  }
  static TResult OnEraseBackground(CWinWindow&, TWinMessage&) {
    return 0;  // the whole client area is painted
  }

  // --- Mouse

  static TResult OnSetCursor(CWinWindow& window, TWinMessage& message) {
    const HWND hwnd = reinterpret_cast<HWND>(message.fWParam);
    const WORD hitTest = LOWORD(message.fLParam);
    const bool isSet = hwnd == window.fHwnd
                           ? window.fMouse.OnSetCursor(hitTest)
                           : IsChild(window.fHwnd, hwnd) && window.fMouse.OnSetCursorInChild(hitTest);
    return isSet ? TResult(1) : kForward;
  }
  static TResult OnMouseMove(CWinWindow& window, TWinMessage& message) {
    window.fMouse.OnMove(PointInMessage(message.fLParam));
    return kForward;
  }
  template <int kClickCount, int kButton>
  static TResult OnButtonDown(CWinWindow& window, TWinMessage& message) {
    window.fMouse.OnPress(kClickCount, kButton, PointInMessage(message.fLParam));
    return kForward;
  }
  static TResult OnLeftButtonUp(CWinWindow& window, TWinMessage& message) {
    window.fMouse.OnRelease(kLeftButton, PointInMessage(message.fLParam));
    return kForward;
  }
  static TResult OnRightButtonUp(CWinWindow& window, TWinMessage& message) {
    window.fMouse.OnRelease(kRightButton, PointInMessage(message.fLParam));
    window.fMouse.OnContextClick(PointInMessage(message.fLParam));
    return kForward;
  }
  static TResult OnMouseWheel(CWinWindow& window, TWinMessage& message) {
    const TPoint point = ScreenToClientChecked(window.fHwnd, PointInMessage(message.fLParam));
    const std::int16_t delta = static_cast<std::int16_t>(HIWORD(message.fWParam));
    return window.fMouse.OnWheel(delta, point) ? TResult(0) : kForward;
  }
  static TResult OnMouseLeave(CWinWindow& window, TWinMessage&) {
    window.fMouse.OnLeave(PointInMessage(static_cast<LPARAM>(GetMessagePos())));
    return kForward;
  }
  static TResult OnForwardedMouseMove(CWinWindow& window, TWinMessage& message) {
    const HWND control = reinterpret_cast<HWND>(message.fWParam);
    POINT point = ToNative(PointInMessage(message.fLParam));
    RECT area;
    const bool isInside = GetClientRect(control, &area) && PtInRect(&area, point);
    if (!ClientToScreen(control, &point)) return kForward;
    window.fMouse.OnMoveOverControl(ScreenToClientChecked(window.fHwnd, FromNative(point)), isInside);
    return kForward;
  }

  // --- Keyboard and commands

  static TResult OnKey(CWinWindow& window, TWinMessage& message) {
    const auto key = MakeKeyMessage(message.fMessage, message.fWParam, message.fLParam);
    if (!key) return kForward;
    if (key->fVirtualKey == VK_PACKET && message.fMessage == WM_KEYDOWN) {
      window.fKeyboard.FetchPacketCharacter();
      if (!window.fClientsWindowReference) return kForward;  // released by that
    }
    if (message.fMessage == WM_KEYDOWN || message.fMessage == WM_SYSKEYDOWN)
      return window.fKeyboard.OnPress(*key) ? TResult(0) : kForward;
    window.fKeyboard.OnRelease(*key);
    return kForward;
  }
  static TResult OnHelp(CWinWindow& window, TWinMessage&) {
    window.OnHelpRequested();
    return 1;
  }
  static TResult OnCommand(CWinWindow& window, TWinMessage& message) {
    if (message.fLParam != 0)
      return window.fListeners.CallForControl(reinterpret_cast<HWND>(message.fLParam), message);
    window.OnCommand(LOWORD(message.fWParam));
    return kForward;
  }
  static TResult OnNotify(CWinWindow& window, TWinMessage& message) {
    const auto header = reinterpret_cast<const NMHDR*>(message.fLParam);
    if (!IsAccessible(header, sizeof(*header), kReadable)) return kForward;
    return window.fListeners.CallForControl(header->hwndFrom, message);
  }
  static TResult OnSysCommand(CWinWindow& window, TWinMessage& message) {
    return window.OnSysCommand(message);
  }
  static TResult OnInitMenu(CWinWindow& window, TWinMessage&) {
    if (window.fHost->MenuBarsAreStale()) {
      DebugPrint("Rebuilding menu bar due to WM_INITMENU");
      window.fHost->RequestMenuBars();
    }
    return kForward;
  }
  static TResult OnEnterMenuLoop(CWinWindow& window, TWinMessage&) {
    IMorvaneRunBehavior* const behavior = window.fHost->GetBehavior();
    MORVANE_ASSERT(NULL != behavior);
    if (behavior) MORVANE_CHECK(behavior->IMorvaneRunBehavior_OnEnterMenuLoop());
    return kForward;
  }
  static TResult OnExitMenuLoop(CWinWindow& window, TWinMessage&) {
    IMorvaneRunBehavior* const behavior = window.fHost->GetBehavior();
    MORVANE_ASSERT(NULL != behavior);
    if (behavior) MORVANE_CHECK(behavior->IMorvaneRunBehavior_OnExitMenuLoop());
    return kForward;
  }

  // --- Files and input methods

  static TResult OnDropFiles(CWinWindow& window, TWinMessage& message) {
    OpenDroppedFiles(reinterpret_cast<HGLOBAL>(message.fWParam), *window.fHost);
    return kForward;
  }
  static TResult OnImeNotify(CWinWindow& window, TWinMessage& message) {
    KeepInputMethodClosed(window.fHwnd, message.fWParam);
    return kForward;
  }
};

CWinWindow::CMessageTable::THandler CWinWindow::CMessageTable::Find(UINT message) {
  // In ascending order.
  static constexpr TRow kRows[] = {
      {WM_CREATE, OnCreate},
      {WM_DESTROY, OnDestroy},
      {WM_SIZE, OnSize},
      {WM_ACTIVATE, OnActivate},
      {WM_SETFOCUS, OnSetFocus},
      {WM_KILLFOCUS, OnKillFocus},
      {WM_PAINT, OnPaint},
      {WM_CLOSE, OnClose},
      {WM_ERASEBKGND, OnEraseBackground},
      {WM_ACTIVATEAPP, OnActivateApp},
      {WM_SETCURSOR, OnSetCursor},
      {WM_GETMINMAXINFO, OnGetMinMaxInfo},
      {WM_WINDOWPOSCHANGED, OnWindowPosChanged},
      {WM_NOTIFY, OnNotify},
      {WM_HELP, OnHelp},
      {WM_DISPLAYCHANGE, OnDisplayChange},
      {WM_NCDESTROY, OnNcDestroy},
      {WM_KEYDOWN, OnKey},
      {WM_KEYUP, OnKey},
      {WM_SYSKEYDOWN, OnKey},
      {WM_SYSKEYUP, OnKey},
      {WM_COMMAND, OnCommand},
      {WM_SYSCOMMAND, OnSysCommand},
      {WM_HSCROLL, OnCommand},
      {WM_VSCROLL, OnCommand},
      {WM_INITMENU, OnInitMenu},
      {WM_MOUSEMOVE, OnMouseMove},
      {WM_LBUTTONDOWN, OnButtonDown<1, kLeftButton>},
      {WM_LBUTTONUP, OnLeftButtonUp},
      {WM_LBUTTONDBLCLK, OnButtonDown<2, kLeftButton>},
      {WM_RBUTTONDOWN, OnButtonDown<1, kRightButton>},
      {WM_RBUTTONUP, OnRightButtonUp},
      {WM_RBUTTONDBLCLK, OnButtonDown<2, kRightButton>},
      {WM_MOUSEWHEEL, OnMouseWheel},
      {WM_ENTERMENULOOP, OnEnterMenuLoop},
      {WM_EXITMENULOOP, OnExitMenuLoop},
      {WM_DROPFILES, OnDropFiles},
      {WM_IME_NOTIFY, OnImeNotify},
      {WM_MOUSELEAVE, OnMouseLeave},
      {kForwardedMouseMoveMessage, OnForwardedMouseMove},
  };
  const auto isBefore = [](const TRow& a, const TRow& b) { return a.fMessage < b.fMessage; };
  static_assert(std::is_sorted(std::begin(kRows), std::end(kRows), isBefore));
  const TRow* const row =
      std::lower_bound(std::begin(kRows), std::end(kRows), TRow{message, nullptr}, isBefore);
  return row != std::end(kRows) && row->fMessage == message ? row->fHandler : nullptr;
}

// --- The stages

LRESULT CWinWindow::WindowProc(CNativeWindowWrapper& nativeWindow, HWND hwnd, UINT message, WPARAM wParam,
                               LPARAM lParam) {
  if (fIsEnding) return nativeWindow.CallNextProc(this, hwnd, message, wParam, lParam);
  MORVANE_ASSERT(CheckInvariant());
  MORVANE_ASSERT(0!=fHwnd);
  if (fHost->IsAutoPlayQuery(message)) {
    SetWindowLongPtrW(hwnd, DWLP_MSGRESULT, 1);
    return 1;
  }
  if (message == WM_QUERYENDSESSION) return AnswerQueryEndSession();

  TError error = kOK;
  LRESULT result = 0;
  // `self` keeps the window alive while its message is handled, whatever a callback does. After that,
  // `wrapper` tells whether the window has ended.
  const boost::weak_ptr<CNativeWindowWrapper> wrapper = fNativeWindowWrapper;
  boost::shared_ptr<CWinWindow> self = fClientsWindowReference;
  try {
    TWinMessage winMessage = {false, hwnd, message, wParam, lParam};
    if (fBlocking->SwallowsMessage(winMessage)) return 0;
    PreDispatch(winMessage);
    if (fListeners.Call(winMessage, result)) fMouse.ForgetAnswers();
    // A released window may still be in the middle of a message, in a loop of the system that dispatches more
    // messages. It takes no user input any more.
    const auto handler = self || !IsUserInput(message) ? CMessageTable::Find(message) : nullptr;
    if (handler)
      if (const auto ended = handler(*this, winMessage)) return *ended;
  } catch (const std::exception& e) {
    error = ErrorFromException(&e);
  } catch (...) {
    error = kOtherError;
  }
  if (error != kOK) KeepPendingError(error);
  // WM_CLOSE is never passed on, not even after a failure, since the native procedure would destroy the
  // window under this object. Nor is WM_HELP for a released window, since it would go to the owner.
  if (message == WM_CLOSE) return 0;
  if (message == WM_HELP && !self) return 1;

  self.reset();
  if (wrapper.expired()) return result;  // the window is gone, and so are its fields

  // A plain pointer from here on: the window, which owns the wrapper, must be able to end together with it.
  CNativeWindowWrapper* const rawWindowWrapper = wrapper.lock().get();
  MORVANE_ASSERT(rawWindowWrapper != NULL);
  result = rawWindowWrapper->CallNextProc(this, hwnd, message, wParam, lParam);
  if (!wrapper.expired()) MORVANE_ASSERT(CheckInvariant());
  return result;
}

LRESULT CWinWindow::AnswerQueryEndSession() {
  // No reference is held here, so that the window can end when it is closed.
  bool mayEnd = false;
  const TError error = ErrorOf([&] { mayEnd = fHost->OnQueryEndSession(); });
  if (error != kOK) KeepPendingError(error);
  return mayEnd ? 1 : 0;
}

void CWinWindow::PreDispatch(const TWinMessage& message) {
  fMouse.OnMessage(message.fMessage);
  // Loops of the system and of clients handle ticks too.
  if (message.fMessage == WM_TIMER || message.fMessage == WM_DISPLAYCHANGE ||
      message.fMessage == WM_SETTINGCHANGE)
    fHost->ForgetPlacementOffset();
  if (message.fMessage == WM_CAPTURECHANGED && fMouse.IsCaptured()) fMouse.OnCaptureLost();
  if (message.fMessage == WM_THEMECHANGED) {
    IMorvaneRunBehavior* const behavior = fHost->GetBehavior();
    if (behavior) MORVANE_CHECK(behavior->IMorvaneRunBehavior_OnThemeChanged());
  }
  // Asking for the position of the mouse is costly, and only these messages need it.
  const bool isTick = message.fMessage == WM_TIMER;
  const bool isLook = CanMoveViewsUnderMouse(message.fMessage) && fMouse.CanCheckTracking();
  if (!(isTick || isLook) || !IsVisible()) return;
  if (const std::optional<POINT> cursor = GetCursorForMessage(message)) {
    const TPoint mouse = ScreenToClientChecked(fHwnd, FromNative(*cursor));
    fMouse.CheckTracking(mouse);
    if (isTick) fTooltips.UpdateRects(mouse);
  }
  if (!isTick) return;
  // Loops of the system, as that of a menu, handle ticks, and lose the message of a later launch.
  fHost->NoticeCommandLine();
  fHost->RunIdleIfDue();
}

LRESULT CWinWindow::ForwardMessage(const TWinMessage& message) {
  return fNativeWindowWrapper->CallNextProc(this, message.fHwnd, message.fMessage, message.fWParam,
                                            message.fLParam);
}

bool CWinWindow::PreTranslateMessage(const MSG& message) {
  fKeyboard.NotifyModifierListeners(message);
  return fMenuBar.TranslateShortcut(message);
}

}  // namespace NSMorvane
