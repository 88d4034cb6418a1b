// Native controls in views: edits, buttons, lists and whatever else the system or a program has a window
// class for. This header needs <windows.h> and does not include it: it is empty in a source that has not
// included that before. Where MorvaneDefaults.h came first, include <windows.h> and then
// <Defaults/HostedControl.h>.
//
//   CViewOf<CDefaultControlViewBehavior> fNameView;
//   CHostedControl fName{morvane};
//   ThrowIfFailed(fNameView.Create(morvane, RootViewOf(window), "Name", ControlViewParams()));
//   ThrowIfFailed(fName.Create(*fNameView.View(), L"EDIT", u"", WS_BORDER | ES_AUTOHSCROLL));
//   ...
//   ThrowIfFailed(SetRect(*fNameView.View(), {10, 10, 200, 34}));
//   fNameView->Follow();
//
// The control stands where its view is, cut by all super views as the view is; it is hidden while a rectangle
// on the way up is empty, and disabled while the view is. It follows by itself when the view is moved by
// IView_Offset and when it is enabled or disabled. The library does not tell of other changes of rectangles:
// call Follow after them, before the next paint. What is not followed so is noticed within 50 ms.
//
// The focus. The view gets it when the control gets the keyboard, and the control gets the keyboard when the
// view gets the focus: by a click, by IWindow_SetConceptualFocusView, by Tab if the view is in the tab order.
// Give each control that Tab is to reach a view of its own.
//
// Keys. The shortcuts of the menu bar come first, as always: a menu with Ctrl+C takes that key from an edit,
// so that the behaviour of the view has to handle the command (WM_COPY). Of all others the control gets those
// that CHostedControl::WantsKey says. The other keys go to the view, its super views, the window and the
// application as if there were no control: Tab moves the focus, Escape and Return reach the window's
// behaviour. As it stands, WantsKey leaves Tab, Escape, Return and the function keys to the window, except
// that an edit of many lines, a list view and a tree view get Return, and that a combo box gets F4, and
// Return and Escape while its list is open. Keys with Alt always go to the control and the system. Releases
// of keys go to both, for IMorvane_InstallKeyReleaseCallback.
#if defined(_WINDOWS_) && !defined(MORVANE_HOSTED_CONTROL)
#define MORVANE_HOSTED_CONTROL

#include <algorithm>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Views.h"

namespace NSMorvane {

class CHostedControl;

// The parameters of a view for a control: it can have the focus, and what lies behind it does not decide on
// the shape of the mouse over the control.
inline TViewParams ControlViewParams() {
  TViewParams params = ViewParams();
  params.fFlags |= kViewFocusable | kViewMouseTrackable;
  return params;
}

// The behaviour of a view with controls in it. It draws nothing: where the controls do not cover the view,
// one sees what lies behind it.
class CDefaultControlViewBehavior : public CDefaultHitViewBehavior {
 public:
  using CDefaultHitViewBehavior::CDefaultHitViewBehavior;
  ~CDefaultControlViewBehavior() override;

  // Brings all controls to where the view is now.
  void Follow();

  TError IViewBehavior_OnOffset(std::int32_t, std::int32_t) override;
  TError IViewBehavior_OnEffectivelyEnabledChanged(TFlag) override;
  TError IViewBehavior_GetNativeFocusTarget(TNativeWindow& out) override;
  IMouseShape* IViewBehavior_GetMouseShape(const TMouseShapeRequest& request, TMousePhase phase,
                                           TFlag& outHandled, TError& outError) override;

 private:
  friend class CHostedControl;

  // Shared, since a control may end this behaviour while it follows.
  using TControls = std::vector<CHostedControl*>;
  const std::shared_ptr<TControls> fControls = std::make_shared<TControls>();
  CHostedControl* fLastControl = nullptr;  // that had the keyboard
};

// One control. Derive from it to hear of its notifications and messages. It may end before or after its view,
// its window and the control itself, also in the middle of its own callbacks. Main thread only.
class CHostedControl : private IWinNativeControlCallback {
 public:
  // A message to the control, or to the field inside a combo box.
  struct TMessage {
    HWND fHwnd;
    UINT fMessage;
    WPARAM fWParam;
    LPARAM fLParam;
    TWinResult fOldProc;  // the control's own procedure
  };

  explicit CHostedControl(IMorvane& morvane) : fMorvane(morvane) {}
  virtual ~CHostedControl() { End(); }
  CHostedControl(const CHostedControl&) = delete;
  CHostedControl& operator=(const CHostedControl&) = delete;

  // Makes a control of this window class in the view, in the place of one that is there. Of the styles
  // WS_CHILD, WS_VISIBLE and WS_CLIPSIBLINGS need not be given. The font is that of the system's dialogs;
  // WM_SETFONT sets another one. Common controls (list views, tree views) need InitCommonControlsEx before.
  // kBadInputProgrammingError if the behaviour of the view does not derive from CDefaultControlViewBehavior,
  // or is not yet there; kOtherError if the system makes no such control.
  TError Create(IView& view, const wchar_t* windowClass, const std::u16string& text, DWORD style,
                DWORD exStyle = 0) {
    return Guarded([&] {
      End();
      const HWND window = WindowOf(view);
      const HWND control =
          ::CreateWindowExW(exStyle, windowClass, reinterpret_cast<const wchar_t*>(text.c_str()),
                            (style & ~static_cast<DWORD>(WS_VISIBLE)) | WS_CHILD | WS_CLIPSIBLINGS, 0, 0, 0,
                            0, window, nullptr, ::GetModuleHandleW(nullptr), nullptr);
      if (!control) throw XFailed{kOtherError};
      ::SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(::GetStockObject(DEFAULT_GUI_FONT)),
                     FALSE);
      const TError error = Guarded([&] { return Start(view, window, control); });
      fIsOwned = error == kOK;
      if (error == kOK) return error;
      End();
      ::DestroyWindow(control);
      return error;
    });
  }
  // Takes over a child of the view's window. It stays the client's: it is not destroyed at the end.
  TError Attach(IView& view, HWND control) {
    return Guarded([&] {
      End();
      const TError error = Guarded([&] { return Start(view, WindowOf(view), control); });
      if (error != kOK) End();
      return error;
    });
  }
  // Ends the hosting, and the control if it was made here. In the middle of the control's own work it only
  // disappears, and is destroyed when the loop comes to it.
  void End() {
    fInnerToken.reset();
    fToken.reset();
    Leave();
    fPlace.reset();
    const bool isOwned = std::exchange(fIsOwned, false);
    const HWND control = std::exchange(fHwnd, nullptr);
    if (!control) return;
    ::KillTimer(control, kFollowTimer);
    if (!isOwned) return;
    if (*fDepth == 0) {
      ::DestroyWindow(control);
    } else {
      ::ShowWindow(control, SW_HIDE);
      ::PostMessageW(control, WM_CLOSE, 0, 0);
    }
  }

  // Null before Create and when the control has been destroyed.
  HWND Hwnd() const { return fHwnd; }
  std::u16string Text() const {
    if (!fHwnd) return {};
    std::u16string text(static_cast<std::size_t>(::GetWindowTextLengthW(fHwnd)) + 1, u'\0');
    const int length =
        ::GetWindowTextW(fHwnd, reinterpret_cast<wchar_t*>(text.data()), static_cast<int>(text.size()));
    text.resize(static_cast<std::size_t>(length));
    return text;
  }
  void SetText(const std::u16string& text) {
    if (fHwnd) ::SetWindowTextW(fHwnd, reinterpret_cast<const wchar_t*>(text.c_str()));
  }
  LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return fHwnd ? ::SendMessageW(fHwnd, message, wParam, lParam) : 0;
  }

  // Brings the control to where the view is now. Costs next to nothing if nothing has changed.
  void Follow() {
    if (!fHwnd || !fBehavior) return;
    const TPlace place = FindPlace();
    if (fPlace && *fPlace == place) return;
    const std::optional<TPlace> before = std::exchange(fPlace, place);
    // Each of the calls may come back to this object, or end it.
    MoveTo(fHwnd, before, place);
  }

 protected:
  // Where the control stands in its view, for a view with several controls. Both rectangles are in window
  // client coordinates.
  virtual TRect ControlRect(const TRect& viewRect) const { return viewRect; }
  // Whether the control gets the press of this virtual key; the modifiers are those of GetKeyState. See
  // above.
  virtual bool WantsKey(WPARAM key) const {
    const bool isListOpen = fKind == TKind::kComboBox && Send(CB_GETDROPPEDSTATE) != 0;
    switch (key) {
      case VK_TAB:
        return false;
      case VK_ESCAPE:
        return isListOpen;
      case VK_RETURN:
        return isListOpen || fKind == TKind::kManyLines || fKind == TKind::kListOrTree;
      case VK_F4:
        return fKind == TKind::kComboBox;
      default:
        return key < VK_F1 || key > VK_F24;
    }
  }
  // A message to the control. Whoever overrides it passes on what the control is to get, and touches nothing
  // of this object after that if a notification may have ended it. A failure is reported, and the result of
  // the message is 0 then.
  virtual TError OnMessage(const TMessage& message, TWinResult& outResult) {
    outResult = PassOn(message);
    return kOK;
  }
  static TWinResult PassOn(const TMessage& message) {
    return ::CallWindowProcW(reinterpret_cast<WNDPROC>(message.fOldProc), message.fHwnd, message.fMessage,
                             message.fWParam, message.fLParam);
  }
  // WM_COMMAND, WM_NOTIFY, WM_HSCROLL or WM_VSCROLL from the control.
  virtual TError OnNotification(UINT message, WPARAM wParam, LPARAM, TWinResult&) {
    return message == WM_COMMAND ? OnCommand(HIWORD(wParam)) : TError{kOK};
  }
  // The code of a WM_COMMAND: BN_CLICKED, EN_CHANGE, LBN_SELCHANGE...
  virtual TError OnCommand(WORD) { return kOK; }

 private:
  friend class CDefaultControlViewBehavior;

  enum class TKind { kOther, kManyLines, kComboBox, kListOrTree };
  enum : UINT_PTR { kFollowTimer = 0x4D6F7276 };  // any number that controls do not use themselves
  enum : UINT { kFollowMS = 50 };
  enum : std::int32_t { kListHeight = 200 };  // of a combo box, which counts as part of its height

  struct TPlace {
    TRect fRect;  // of the control in the window
    TRect fSeen;  // the part of it that the super views show, from its own corner
    bool fIsShown;
    bool fIsEnabled;

    bool IsCut() const { return !IsSame(fSeen, {0, 0, WidthOf(fRect), HeightOf(fRect)}); }
    bool operator==(const TPlace& other) const {
      return IsSame(fRect, other.fRect) && IsSame(fSeen, other.fSeen) && fIsShown == other.fIsShown &&
             fIsEnabled == other.fIsEnabled;
    }
  };
  // Counts the callbacks that are running, also when the object has gone meanwhile.
  struct CDepthScope {
    explicit CDepthScope(const std::shared_ptr<int>& depth) : fDepth(depth) { ++*fDepth; }
    ~CDepthScope() { --*fDepth; }
    CDepthScope(const CDepthScope&) = delete;
    CDepthScope& operator=(const CDepthScope&) = delete;
    const std::shared_ptr<int> fDepth;
  };

  static bool IsSame(const TRect& a, const TRect& b) {
    return a.fLeft == b.fLeft && a.fTop == b.fTop && a.fRight == b.fRight && a.fBottom == b.fBottom;
  }
  static bool IsEmpty(const TRect& rect) { return rect.fLeft >= rect.fRight || rect.fTop >= rect.fBottom; }
  static TRect Common(const TRect& a, const TRect& b) {
    const TRect rect = {std::max(a.fLeft, b.fLeft), std::max(a.fTop, b.fTop), std::min(a.fRight, b.fRight),
                        std::min(a.fBottom, b.fBottom)};
    return IsEmpty(rect) ? TRect{0, 0, 0, 0} : rect;
  }
  static HWND WindowOf(IView& view) {
    IWindow* window = nullptr;
    TNativeWindow native = {nullptr};
    ThrowIfFailed(view.IView_GetMotherWindow(window));
    ThrowIfFailed(window->IWindow_GetNativeWindow(native));
    return native.fHwnd;
  }
  static TKind KindOf(HWND control) {
    wchar_t name[64] = {};
    ::GetClassNameW(control, name, 64);
    const auto is = [&](const wchar_t* other) { return ::lstrcmpiW(name, other) == 0; };
    if (is(L"ComboBox")) return TKind::kComboBox;
    if (is(L"SysListView32") || is(L"SysTreeView32")) return TKind::kListOrTree;
    const bool isEdit = is(L"Edit") || ::CompareStringW(LOCALE_INVARIANT, NORM_IGNORECASE, name,
                                                        std::min(::lstrlenW(name), 8), L"RichEdit", 8) == 2;
    const bool hasManyLines = (::GetWindowLongPtrW(control, GWL_STYLE) & ES_MULTILINE) != 0;
    return isEdit && hasManyLines ? TKind::kManyLines : TKind::kOther;
  }

  // --- Start and end

  TError Start(IView& view, HWND window, HWND control) {
    IViewBehavior* behavior = nullptr;
    ThrowIfFailed(view.IView_GetBehavior(behavior));
    auto* const controlView = dynamic_cast<CDefaultControlViewBehavior*>(behavior);
    if (!controlView) return kBadInputProgrammingError;
    fKind = KindOf(control);
    fToken = Host(control, view);
    // The keyboard is in the field of a combo box, not in the combo box.
    COMBOBOXINFO combo = {};
    combo.cbSize = sizeof(combo);
    if (fKind == TKind::kComboBox && ::GetComboBoxInfo(control, &combo) && combo.hwndItem &&
        combo.hwndItem != control && ::GetParent(combo.hwndItem) == control)
      fInnerToken = Host(combo.hwndItem, view);
    controlView->fControls->push_back(this);
    fBehavior = controlView;
    fView = &view;
    fWindow = window;
    fHwnd = control;
    // So that the window does not draw over the control first.
    const LONG_PTR style = ::GetWindowLongPtrW(window, GWL_STYLE);
    if ((style & WS_CLIPCHILDREN) == 0) ::SetWindowLongPtrW(window, GWL_STYLE, style | WS_CLIPCHILDREN);
    ::SetTimer(control, kFollowTimer, kFollowMS, nullptr);
    Follow();
    return kOK;
  }
  std::unique_ptr<IWinNativeControlCallbackToken> Host(HWND control, IView& view) {
    IWinExtensions* extensions = nullptr;
    ThrowIfFailed(fMorvane.IMorvane_GetWinExtensions(extensions));
    TError error = kOK;
    std::unique_ptr<IWinNativeControlCallbackToken> token(
        extensions->IWinExtensions_HostNativeControl(control, this, view, error));
    ThrowIfFailed(error);
    return token;
  }
  void Leave() {
    if (!fBehavior) return;
    std::erase(*fBehavior->fControls, this);
    if (fBehavior->fLastControl == this) fBehavior->fLastControl = nullptr;
    fBehavior = nullptr;
    fView = nullptr;
  }
  void OnViewEnded() {
    Leave();
    fPlace.reset();
    if (fHwnd) ::ShowWindow(fHwnd, SW_HIDE);
  }

  // --- Place

  TPlace FindPlace() const {
    const TRect viewRect = RectOf(*fView);
    TPlace place = {ControlRect(viewRect), {}, true, false};
    TRect seen = place.fRect;
    place.fIsShown = !IsEmpty(seen);
    IView* view = fView;
    while (view) {
      const TRect rect = RectOf(*view);
      if (IsEmpty(rect)) place.fIsShown = false;
      seen = Common(seen, rect);
      IView* superView = nullptr;
      if (view->IView_GetSuperView(superView) != kOK) break;
      view = superView;
    }
    if (!IsEmpty(seen))
      place.fSeen = {seen.fLeft - place.fRect.fLeft, seen.fTop - place.fRect.fTop,
                     seen.fRight - place.fRect.fLeft, seen.fBottom - place.fRect.fTop};
    TFlag isEnabled = 0;
    place.fIsEnabled = fView->IView_IsEffectivelyEnabled(isEnabled) == kOK && isEnabled != 0;
    return place;
  }
  bool HasListBelow() const {
    return fKind == TKind::kComboBox && (::GetWindowLongPtrW(fHwnd, GWL_STYLE) & 3) != CBS_SIMPLE;
  }
  // While the control moves it is cut to what both places show, so that it appears nowhere for a moment where
  // it is not to be seen.
  void MoveTo(HWND control, const std::optional<TPlace>& before, const TPlace& place) {
    const std::int32_t height = HeightOf(place.fRect) + (HasListBelow() ? kListHeight : 0);
    const bool wasShown = before && before->fIsShown;
    const bool wasCut = before && before->IsCut();
    const bool isCut = place.IsCut();
    const TRect meanwhile = wasCut ? Common(before->fSeen, place.fSeen) : place.fSeen;
    if (!before || before->fIsEnabled != place.fIsEnabled)
      ::EnableWindow(control, place.fIsEnabled ? TRUE : FALSE);
    if (wasShown && !place.fIsShown) ::ShowWindow(control, SW_HIDE);
    if (isCut && !(wasCut && IsSame(meanwhile, before->fSeen))) Cut(control, meanwhile);
    ::SetWindowPos(control, nullptr, place.fRect.fLeft, place.fRect.fTop, WidthOf(place.fRect), height,
                   SWP_NOZORDER | SWP_NOOWNERZORDER | SWP_NOACTIVATE);
    if (isCut && !IsSame(meanwhile, place.fSeen)) Cut(control, place.fSeen);
    if (wasCut && !isCut) ::SetWindowRgn(control, nullptr, TRUE);
    if (!wasShown && place.fIsShown) ::ShowWindow(control, SW_SHOWNA);
  }
  // Not every system takes an empty region for one, so what cannot be seen at all shows a pixel that it has
  // not.
  static void Cut(HWND control, const TRect& seen) {
    const TRect shown = IsEmpty(seen) ? TRect{-1, -1, 0, 0} : seen;
    const HRGN region = ::CreateRectRgn(shown.fLeft, shown.fTop, shown.fRight, shown.fBottom);
    if (region && !::SetWindowRgn(control, region, TRUE)) ::DeleteObject(region);
  }

  // --- Callbacks

  TError IWinNativeControlCallback_OnControlNotification(std::uint32_t message, TWinParam wParam,
                                                         TWinResult lParam, TWinResult& outResult) override {
    const CDepthScope scope(fDepth);
    return Guarded([&] { return OnNotification(message, wParam, lParam, outResult); });
  }
  TError IWinNativeControlCallback_OnControlProc(HWND__* hwnd, std::uint32_t message, TWinParam wParam,
                                                 TWinResult lParam, TWinResult oldProc,
                                                 TWinResult& outResult) override {
    const CDepthScope scope(fDepth);
    return Guarded([&] { return HandleMessage({hwnd, message, wParam, lParam, oldProc}, outResult); });
  }
  // The object may be gone after each call of a virtual function and after each message that is sent.
  TError HandleMessage(const TMessage& message, TWinResult& outResult) {
    const HWND window = fWindow;
    switch (message.fMessage) {
      case WM_TIMER:
        if (message.fWParam != kFollowTimer || message.fHwnd != fHwnd) break;
        Follow();
        return kOK;
      case WM_SETFOCUS:
        if (fBehavior) fBehavior->fLastControl = this;
        break;
      case WM_KEYDOWN:
        fSkippedChar = 0;
        if (WantsKey(message.fWParam)) break;
        fSkippedChar = CharOf(message.fWParam);
        ::SendMessageW(window, WM_KEYDOWN, message.fWParam, message.fLParam);
        return kOK;
      case WM_CHAR:
        // The system has made it of the key before that was given to the window.
        if (fSkippedChar == 0 || message.fWParam != fSkippedChar) break;
        fSkippedChar = 0;
        return kOK;
      case WM_KEYUP: {
        const TError error = OnMessage(message, outResult);
        ::SendMessageW(window, WM_KEYUP, message.fWParam, message.fLParam);
        return error;
      }
      case WM_NCDESTROY:
        if (message.fHwnd != fHwnd) break;
        Leave();
        fHwnd = nullptr;
        break;
      default:
        break;
    }
    return OnMessage(message, outResult);
  }
  static WPARAM CharOf(WPARAM key) { return key == VK_TAB || key == VK_RETURN || key == VK_ESCAPE ? key : 0; }

  IMorvane& fMorvane;
  IView* fView = nullptr;                            // null together with the next
  CDefaultControlViewBehavior* fBehavior = nullptr;  // null when the view or the control has ended
  HWND fWindow = nullptr;
  HWND fHwnd = nullptr;
  TKind fKind = TKind::kOther;
  bool fIsOwned = false;
  WPARAM fSkippedChar = 0;
  std::optional<TPlace> fPlace;  // where the control was brought last
  const std::shared_ptr<int> fDepth = std::make_shared<int>(0);
  std::unique_ptr<IWinNativeControlCallbackToken> fToken;
  std::unique_ptr<IWinNativeControlCallbackToken> fInnerToken;  // for the field of a combo box
};

// --- The view

inline CDefaultControlViewBehavior::~CDefaultControlViewBehavior() {
  while (!fControls->empty()) fControls->back()->OnViewEnded();
}

inline void CDefaultControlViewBehavior::Follow() {
  const std::shared_ptr<TControls> controls = fControls;
  for (std::size_t i = 0; i < controls->size(); ++i) (*controls)[i]->Follow();
}

inline TError CDefaultControlViewBehavior::IViewBehavior_OnOffset(std::int32_t, std::int32_t) {
  Follow();
  return kOK;
}

inline TError CDefaultControlViewBehavior::IViewBehavior_OnEffectivelyEnabledChanged(TFlag) {
  Follow();
  return kOK;
}

// The control that had the keyboard last, or the first one that can have it.
inline TError CDefaultControlViewBehavior::IViewBehavior_GetNativeFocusTarget(TNativeWindow& out) {
  const auto canHaveIt = [](const CHostedControl* control) {
    return control && control->Hwnd() && ::IsWindowEnabled(control->Hwnd());
  };
  const auto first = std::find_if(fControls->begin(), fControls->end(), canHaveIt);
  out.fHwnd = canHaveIt(fLastControl)     ? fLastControl->Hwnd()
              : first != fControls->end() ? (*first)->Hwnd()
                                          : nullptr;
  return kOK;
}

// No shape over a control, which shows its own pointer.
inline IMouseShape* CDefaultControlViewBehavior::IViewBehavior_GetMouseShape(
    const TMouseShapeRequest& request, TMousePhase phase, TFlag& outHandled, TError& outError) {
  outError = kOK;
  outHandled = 0;
  if (phase != kMousePhaseNormal) return nullptr;
  for (const CHostedControl* const control : *fControls) {
    if (!control->fPlace || !control->fPlace->fIsShown) continue;
    const TRect& rect = control->fPlace->fRect;
    const TPoint& point = request.fPosition;
    if (point.fX >= rect.fLeft && point.fX < rect.fRight && point.fY >= rect.fTop && point.fY < rect.fBottom)
      outHandled = 1;
  }
  return nullptr;
}

}  // namespace NSMorvane

#endif
