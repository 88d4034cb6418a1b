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
// call Follow after them, before the next paint. What is not followed so is noticed within 50 ms, or within a
// second in a window that was hidden or minimized. Where controls overlap, the one that was made or attached
// last is in front. All controls lie in front of all views, and a view that has been released and lives on
// behind its subviews still has its control: end that with the view.
//
// The focus. The view gets it when the control gets the keyboard, and the control gets the keyboard when the
// view gets the focus: by a click, by IWindow_SetConceptualFocusView, by Tab if the view is in the tab order.
// While the control is hidden or disabled the window has the keyboard instead, and the view may still have
// the focus; the control gets the keyboard back with its place. Give each control that Tab is to reach a view
// of its own. Windows inside the control (the field of a combo box, the editor of a label) count as the
// control. An edit of one line that is reached by Tab is selected as a whole.
//
// Keys. The shortcuts of the menu bar come first, as always: a menu with Ctrl+C takes that key from an edit,
// so that the behaviour of the view has to handle the command (WM_COPY). Of all others the control gets those
// that CHostedControl::WantsKey says. The other keys go to the view, its super views, the window and the
// application as if there were no control: Tab moves the focus, Escape and Return reach the window's
// behaviour. As it stands, WantsKey leaves Tab, Escape, Return and the function keys to the window, except
// that an edit of many lines, a list view and a tree view get Return, that the editor of a label and the open
// list of a combo box get Return and Escape, that a combo box gets F4, and that Return clicks a push button.
// Keys with Alt, and F10, always go to the control and the system. Releases of keys go to both, for
// IMorvane_InstallKeyReleaseCallback.
//
// Nobody does what else the message loop of a native dialog would do: the arrow keys do not lead from one
// radio button to the next, and an access key in the text of a control ("&Name") does nothing. A control that
// leaves its background to its parent, such as a group box, keeps whatever was on the screen before: draw a
// view instead.
#if defined(_WINDOWS_) && !defined(MORVANE_HOSTED_CONTROL)
#define MORVANE_HOSTED_CONTROL

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
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

  // Shared, since a control may end this behaviour while it follows. The first one has the timer for all.
  using TControls = std::vector<CHostedControl*>;
  const std::shared_ptr<TControls> fControls = std::make_shared<TControls>();
  CHostedControl* fLastControl = nullptr;  // that had the keyboard
};

// One control. Derive from it to hear of its notifications and messages. It may end before or after its view,
// its window and the control itself, also in the middle of its own callbacks. Main thread only.
class CHostedControl : private IWinNativeControlCallback {
 public:
  // A message to the control, or to a window inside it.
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
  // WS_CHILD, WS_VISIBLE and WS_CLIPSIBLINGS need not be given. The font is the stock font DEFAULT_GUI_FONT,
  // which does not grow with the density of the screen; WM_SETFONT sets another one. Common controls (list
  // views, tree views) need InitCommonControlsEx before.
  // kBadInputProgrammingError if the behaviour of the view does not derive from CDefaultControlViewBehavior,
  // or is not yet there; kOtherError if the system makes no such control.
  TError Create(IView& view, const wchar_t* windowClass, const std::u16string& text, DWORD style,
                DWORD exStyle = 0) {
    return Guarded([&] {
      End();
      const HWND control =
          ::CreateWindowExW(exStyle, windowClass, reinterpret_cast<const wchar_t*>(text.c_str()),
                            (style & ~static_cast<DWORD>(WS_VISIBLE)) | WS_CHILD | WS_CLIPSIBLINGS, 0, 0, 0,
                            0, WindowOf(view), nullptr, ::GetModuleHandleW(nullptr), nullptr);
      if (!control) throw XFailed{kOtherError};
      ::SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(::GetStockObject(DEFAULT_GUI_FONT)),
                     FALSE);
      const TError error = Start(view, control, true);
      if (error != kOK) ::DestroyWindow(control);
      return error;
    });
  }
  // Takes over a child of the view's window; kBadInputProgrammingError for any other one. It stays the
  // client's: it is not destroyed at the end, but left as visible and as enabled as it is then.
  TError Attach(IView& view, HWND control) {
    End();
    return Start(view, control, false);
  }
  // Ends the hosting, and the control if it was made here. In the middle of the control's own work it only
  // disappears, and is destroyed after that.
  void End() {
    fTokens.clear();
    Leave();
    const HWND control = std::exchange(fHwnd, nullptr);
    if (!control) return;
    const HWND window = fWindow;
    const std::shared_ptr<TWork> work = fWork;
    ++work->fMove;
    work->fHasEnded = true;
    // This object may be gone after the first call.
    if (!fIsOwned) {
      if (fPlace.fIsCut) ::SetWindowRgn(control, nullptr, TRUE);
    } else if (!work->fIsDestroyed) {
      LetKeyboardGo(control, window);
      if (work->fDepth > 0) {
        work->fDoomed = control;
        ::ShowWindow(control, SW_HIDE);
      } else {
        ::DestroyWindow(control);
      }
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
    if (!(fPlace == place)) MoveTo(place);
  }

 protected:
  // Where the control stands in its view, for a view with several controls. Both rectangles are in window
  // client coordinates.
  virtual TRect ControlRect(const TRect& viewRect) const { return viewRect; }
  // Whether the control gets the press of this virtual key; the modifiers are those of GetKeyState. See
  // above.
  virtual bool WantsKey(WPARAM key) const {
    const bool isListOpen = fKind == TKind::kComboBox && Send(CB_GETDROPPEDSTATE) != 0;
    const bool isLabelEdited = fKind == TKind::kListOrTree && ::IsChild(fHwnd, ::GetFocus());
    switch (key) {
      case VK_TAB:
        return false;
      case VK_ESCAPE:
        return isListOpen || isLabelEdited;
      case VK_RETURN:
        return isListOpen || fKind == TKind::kManyLines || fKind == TKind::kListOrTree || IsPushButton(fHwnd);
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
  enum : UINT { kFollowMS = 50, kUnseenFollowMS = 1000 };
  enum : std::int32_t { kListHeight = 200 };  // of a combo box, which counts as part of its height

  struct TPlace {
    TRect fRect;  // of the control in the window
    TRect fSeen;  // the part of it that the super views show, from its own corner
    bool fIsCut;  // that is not all of it
    bool fIsShown;
    bool fIsEnabled;

    bool operator==(const TPlace& other) const {
      return IsSame(fRect, other.fRect) && IsSame(fSeen, other.fSeen) && fIsCut == other.fIsCut &&
             fIsShown == other.fIsShown && fIsEnabled == other.fIsEnabled;
    }
  };
  // What goes on in one control. Who is in the middle of it holds this, since the object may go meanwhile.
  struct TWork {
    int fDepth = 0;             // callbacks that are running
    HWND fDoomed = nullptr;     // the control, to be destroyed after the last of them
    bool fIsDestroyed = false;  // the system is destroying it
    bool fHasEnded = false;     // the hosting
    std::uint32_t fMove = 0;    // the last one that has begun; more when there can be none any more
  };
  // The loop destroys a control that was ended in its own work, since windows without a host may be at work
  // still, such as the list of a combo box. Not after a key: its character would come before that.
  struct CWorkScope {
    CWorkScope(const std::shared_ptr<TWork>& work, UINT message) : fWork(work), fMessage(message) {
      ++fWork->fDepth;
    }
    ~CWorkScope() {
      if (--fWork->fDepth > 0) return;
      const HWND doomed = fWork->fDoomed;
      if (doomed && fMessage == WM_KEYDOWN) ::DestroyWindow(doomed);
      if (doomed && fMessage != WM_KEYDOWN) ::PostMessageW(doomed, WM_CLOSE, 0, 0);
    }
    CWorkScope(const CWorkScope&) = delete;
    CWorkScope& operator=(const CWorkScope&) = delete;
    const std::shared_ptr<TWork> fWork;
    const UINT fMessage;
  };
  struct TToken {
    HWND fHwnd;  // the control, or a window inside it
    std::unique_ptr<IWinNativeControlCallbackToken> fToken;
  };
  using TTokens = std::vector<TToken>;

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
    if (is(L"ComboBox") || is(L"ComboBoxEx32")) return TKind::kComboBox;
    if (is(L"SysListView32") || is(L"SysTreeView32")) return TKind::kListOrTree;
    const bool isEdit = is(L"Edit") || ::CompareStringW(LOCALE_INVARIANT, NORM_IGNORECASE, name,
                                                        std::min(::lstrlenW(name), 8), L"RichEdit", 8) == 2;
    const bool hasManyLines = (::GetWindowLongPtrW(control, GWL_STYLE) & ES_MULTILINE) != 0;
    return isEdit && hasManyLines ? TKind::kManyLines : TKind::kOther;
  }

  static bool IsPushButton(HWND control) {
    return (::SendMessageW(control, WM_GETDLGCODE, 0, 0) & (DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON)) != 0;
  }

  // --- Start and end

  // A failure leaves nothing behind, but an owned control may be gone.
  TError Start(IView& view, HWND control, bool isOwned) {
    return Guarded([&] {
      IViewBehavior* behavior = nullptr;
      ThrowIfFailed(view.IView_GetBehavior(behavior));
      auto* const controlView = dynamic_cast<CDefaultControlViewBehavior*>(behavior);
      const HWND window = WindowOf(view);
      if (!controlView || ::GetParent(control) != window) return TError{kBadInputProgrammingError};
      fWork = std::make_shared<TWork>();
      TTokens tokens;
      Host(control, view, tokens);
      controlView->fControls->push_back(this);
      fTokens = std::move(tokens);
      fKind = KindOf(control);
      fBehavior = controlView;
      fView = &view;
      fWindow = window;
      fHwnd = control;
      fIsOwned = isOwned;
      fIsNew = true;
      fPlace = {};
      ReadPlace();
      // So that the window does not draw over the control first.
      const LONG_PTR style = ::GetWindowLongPtrW(window, GWL_STYLE);
      if ((style & WS_CLIPCHILDREN) == 0) ::SetWindowLongPtrW(window, GWL_STYLE, style | WS_CLIPCHILDREN);
      if (controlView->fControls->front() == this) StartTimer(kFollowMS);
      const TError error = Guarded([this] { return Follow(), TError{kOK}; });
      if (error != kOK) End();
      return error;
    });
  }
  // The windows inside the control, too: what has the keyboard in a combo box is its field. One that has a
  // host already keeps that, and one of another thread has none.
  void Host(HWND hwnd, IView& view, TTokens& tokens, bool isInner = false) {
    if (isInner && ::GetWindowThreadProcessId(hwnd, nullptr) != ::GetCurrentThreadId()) return;
    if (std::ranges::find(fTokens, hwnd, &TToken::fHwnd) != fTokens.end()) return;
    IWinExtensions* extensions = nullptr;
    ThrowIfFailed(fMorvane.IMorvane_GetWinExtensions(extensions));
    TError error = kOK;
    TToken token = {hwnd, nullptr};
    token.fToken.reset(extensions->IWinExtensions_HostNativeControl(hwnd, this, view, error));
    if (isInner && error == kIllegalCallSequenceProgrammingError) return;
    ThrowIfFailed(error);
    tokens.push_back(std::move(token));
    for (HWND inner = ::GetWindow(hwnd, GW_CHILD); inner; inner = ::GetWindow(inner, GW_HWNDNEXT))
      Host(inner, view, tokens, true);
  }
  void Leave() {
    if (!fBehavior) return;
    CDefaultControlViewBehavior& behavior = *std::exchange(fBehavior, nullptr);
    fView = nullptr;
    std::erase(*behavior.fControls, this);
    if (behavior.fLastControl == this) behavior.fLastControl = nullptr;
    if (fTimerMS == 0) return;
    ::KillTimer(fHwnd, kFollowTimer);
    fTimerMS = 0;
    if (!behavior.fControls->empty()) behavior.fControls->front()->StartTimer(kFollowMS);
  }
  void OnViewEnded() {
    Leave();
    const HWND control = fHwnd, window = fWindow;
    ++fWork->fMove;
    fPlace.fIsShown = false;
    LetKeyboardGo(control, window);
    ::ShowWindow(control, SW_HIDE);
  }

  // --- Place

  TPlace FindPlace() const {
    const TRect viewRect = RectOf(*fView);
    TPlace place = {};
    place.fRect = ControlRect(viewRect);
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
    place.fIsCut = !IsSame(place.fSeen, {0, 0, WidthOf(place.fRect), HeightOf(place.fRect)});
    TFlag isEnabled = 0;
    place.fIsEnabled = fView->IView_IsEffectivelyEnabled(isEnabled) == kOK && isEnabled != 0;
    return place;
  }
  bool HasListBelow() const {
    return fKind == TKind::kComboBox && (::GetWindowLongPtrW(fHwnd, GWL_STYLE) & 3) != CBS_SIMPLE;
  }
  // What the system says; only a move tells where it is.
  void ReadPlace() {
    fPlace.fRect = {0, 0, -1, -1};
    fPlace.fIsShown = (::GetWindowLongPtrW(fHwnd, GWL_STYLE) & WS_VISIBLE) != 0;
    fPlace.fIsEnabled = ::IsWindowEnabled(fHwnd) != FALSE;
  }
  // While the control moves it is cut to what both places show, so that it appears nowhere for a moment where
  // it is not to be seen. Each call of the system may come back to this object, and move the control once
  // more or end it: each is noted in fPlace before it is made, and a move that another one has overtaken
  // stops.
  void MoveTo(const TPlace& place) {
    const HWND control = fHwnd, window = fWindow;
    const std::int32_t height = HeightOf(place.fRect) + (HasListBelow() ? kListHeight : 0);
    const std::shared_ptr<TWork> work = fWork;
    const std::uint32_t move = ++work->fMove;
    const auto isOvertaken = [&] { return work->fMove != move; };
    const bool couldHaveKeyboard = !fIsNew && fPlace.fIsShown && fPlace.fIsEnabled;
    const bool canHaveKeyboard = place.fIsShown && place.fIsEnabled;
    if (!canHaveKeyboard) LetKeyboardGo(control, window);
    if (isOvertaken()) return;
    if (fPlace.fIsEnabled != place.fIsEnabled) {
      fPlace.fIsEnabled = place.fIsEnabled;
      ::EnableWindow(control, place.fIsEnabled ? TRUE : FALSE);
      if (isOvertaken()) return;
    }
    if (fPlace.fIsShown && !place.fIsShown) {
      fPlace.fIsShown = false;
      ::ShowWindow(control, SW_HIDE);
      if (isOvertaken()) return MoveAgain(control, *work);
    }
    if (place.fIsCut) CutTo(fPlace.fIsCut ? Common(fPlace.fSeen, place.fSeen) : place.fSeen);
    if (isOvertaken()) return;
    if (!IsSame(fPlace.fRect, place.fRect)) {
      const bool isNew = std::exchange(fIsNew, false);
      fPlace.fRect = place.fRect;
      ::SetWindowPos(control, isNew ? FrontOf(window) : nullptr, place.fRect.fLeft, place.fRect.fTop,
                     WidthOf(place.fRect), height,
                     (isNew ? 0 : SWP_NOZORDER) | SWP_NOOWNERZORDER | SWP_NOACTIVATE);
      if (isOvertaken()) return MoveAgain(control, *work);
    }
    if (place.fIsCut) {
      CutTo(place.fSeen);
    } else {
      fPlace.fSeen = place.fSeen;
      if (std::exchange(fPlace.fIsCut, false)) ::SetWindowRgn(control, nullptr, TRUE);
    }
    if (isOvertaken()) return;
    if (!fPlace.fIsShown && place.fIsShown) {
      fPlace.fIsShown = true;
      ::ShowWindow(control, SW_SHOWNA);
      if (isOvertaken()) return MoveAgain(control, *work);
    }
    if (canHaveKeyboard && !couldHaveKeyboard) TakeKeyboard();
  }
  // The system asks before it moves, shows or hides: the call that was overtaken has had the last word.
  void MoveAgain(HWND control, const TWork& work) {
    if (work.fHasEnded ? work.fDoomed != nullptr : !fBehavior) ::ShowWindow(control, SW_HIDE);
    if (work.fHasEnded) return;
    ReadPlace();
    Follow();
  }
  void CutTo(const TRect& seen) {
    if (fPlace.fIsCut && IsSame(fPlace.fSeen, seen)) return;
    fPlace.fIsCut = true;
    fPlace.fSeen = seen;
    Cut(fHwnd, seen);
  }
  // Not every system takes an empty region for one, so what cannot be seen at all shows a pixel that it has
  // not.
  static void Cut(HWND control, const TRect& seen) {
    const TRect shown = IsEmpty(seen) ? TRect{-1, -1, 0, 0} : seen;
    const HRGN region = ::CreateRectRgn(shown.fLeft, shown.fTop, shown.fRight, shown.fBottom);
    if (region && !::SetWindowRgn(control, region, TRUE)) ::DeleteObject(region);
  }

  // Where a new control goes: in front of all others, and behind the size grip of the window.
  static HWND FrontOf(HWND window) {
    const HWND first = ::GetWindow(window, GW_CHILD);
    wchar_t name[16] = {};
    ::GetClassNameW(first, name, 16);
    const bool isGrip = ::lstrcmpiW(name, L"ScrollBar") == 0 &&
                        (::GetWindowLongPtrW(first, GWL_STYLE) & (SBS_SIZEGRIP | SBS_SIZEBOX)) != 0;
    return isGrip ? first : HWND_TOP;
  }

  void StartTimer(UINT intervalMS) {
    fTimerMS = intervalMS;
    ::SetTimer(fHwnd, kFollowTimer, intervalMS, nullptr);
  }
  void OnTimer() {
    const UINT intervalMS = ::IsWindowVisible(fWindow) && !::IsIconic(fWindow) ? kFollowMS : kUnseenFollowMS;
    if (intervalMS != fTimerMS) StartTimer(intervalMS);
    fBehavior->Follow();
  }

  // --- The keyboard

  // Before the control is hidden, disabled or destroyed, and the system gives the keyboard to nobody.
  static void LetKeyboardGo(HWND control, HWND window) {
    const HWND focus = ::GetFocus();
    if (focus && (focus == control || ::IsChild(control, focus))) ::SetFocus(window);
  }
  // After the control has appeared: the view may have had the focus before.
  void TakeKeyboard() {
    const HWND control = fHwnd;
    IWindow* window = nullptr;
    IView* focusView = nullptr;
    TNativeWindow target = {nullptr};
    if (::GetFocus() == fWindow && fView->IView_GetMotherWindow(window) == kOK &&
        window->IWindow_GetConceptualFocusView(focusView) == kOK && focusView == fView &&
        fBehavior->IViewBehavior_GetNativeFocusTarget(target) == kOK && target.fHwnd == control)
      ::SetFocus(control);
  }
  bool CanHaveKeyboard() const { return fHwnd && ::IsWindowEnabled(fHwnd) && FindPlace().fIsShown; }

  // --- Callbacks

  TError IWinNativeControlCallback_OnControlNotification(std::uint32_t message, TWinParam wParam,
                                                         TWinResult lParam, TWinResult& outResult) override {
    const CWorkScope scope(fWork, message);
    return Guarded([&] { return OnNotification(message, wParam, lParam, outResult); });
  }
  TError IWinNativeControlCallback_OnControlProc(HWND__* hwnd, std::uint32_t message, TWinParam wParam,
                                                 TWinResult lParam, TWinResult oldProc,
                                                 TWinResult& outResult) override {
    const CWorkScope scope(fWork, message);
    return Guarded([&] { return HandleMessage({hwnd, message, wParam, lParam, oldProc}, outResult); });
  }
  // The object may be gone after each call of a virtual function and after each message that is sent.
  TError HandleMessage(const TMessage& message, TWinResult& outResult) {
    const HWND window = fWindow;
    const bool isControl = message.fHwnd == fHwnd;
    switch (message.fMessage) {
      case WM_TIMER:
        if (message.fWParam != kFollowTimer || !isControl) break;
        if (fBehavior) OnTimer();
        return kOK;
      case WM_SETFOCUS: {
        if (fBehavior) fBehavior->fLastControl = this;
        const bool isReachedByTab = ::GetKeyState(VK_TAB) < 0 && ::GetKeyState(VK_MENU) >= 0;
        if (!isReachedByTab || fKind == TKind::kManyLines) break;
        const TError error = OnMessage(message, outResult);
        if (::SendMessageW(message.fHwnd, WM_GETDLGCODE, 0, 0) & DLGC_HASSETSEL)
          ::SendMessageW(message.fHwnd, EM_SETSEL, 0, -1);
        return error;
      }
      case WM_KEYDOWN: {
        fKeptKey = kNoKey;
        const bool isWanted = WantsKey(message.fWParam);
        const bool isClick = isWanted && message.fWParam == VK_RETURN && IsPushButton(message.fHwnd);
        if (isWanted && !isClick) break;
        fKeptKey = KeyOf(message.fLParam);
        const bool isRepeat = (HIWORD(message.fLParam) & KF_REPEAT) != 0;
        if (!isClick) ::SendMessageW(window, WM_KEYDOWN, message.fWParam, message.fLParam);
        if (isClick && !isRepeat) ::SendMessageW(message.fHwnd, BM_CLICK, 0, 0);
        return kOK;
      }
      case WM_CHAR:
      case WM_DEADCHAR:
        // The system has made it of the key before that was kept from the control.
        if (KeyOf(message.fLParam) != fKeptKey) break;
        return kOK;
      case WM_KEYUP:
      case WM_SYSKEYUP: {
        // A WM_SYSKEYUP would open the menu bar once more.
        const TError error = OnMessage(message, outResult);
        ::SendMessageW(window, WM_KEYUP, message.fWParam, message.fLParam);
        return error;
      }
      case WM_PARENTNOTIFY:
        if (LOWORD(message.fWParam) == WM_CREATE && fView)
          Host(reinterpret_cast<HWND>(message.fLParam), *fView, fTokens, true);
        break;
      case WM_DESTROY: {
        if (!isControl) break;
        fWork->fIsDestroyed = true;
        const TError error = OnMessage(message, outResult);
        if (::IsWindowVisible(window)) LetKeyboardGo(message.fHwnd, window);
        return error;
      }
      case WM_NCDESTROY:
        if (!isControl) {
          std::erase_if(fTokens, [&](const TToken& token) { return token.fHwnd == message.fHwnd; });
          break;
        }
        Leave();
        fHwnd = nullptr;
        break;
      default:
        break;
    }
    return OnMessage(message, outResult);
  }
  // The scan code, by which the characters of a key are known.
  static int KeyOf(LPARAM lParam) { return HIWORD(lParam) & (KF_EXTENDED | 0xFF); }

  IMorvane& fMorvane;
  IView* fView = nullptr;                            // null together with the next
  CDefaultControlViewBehavior* fBehavior = nullptr;  // null when the view or the control has ended
  HWND fWindow = nullptr;
  HWND fHwnd = nullptr;
  TKind fKind = TKind::kOther;
  bool fIsOwned = false;
  enum : int { kNoKey = -1 };
  int fKeptKey = kNoKey;  // the last key, if the control did not get it
  UINT fTimerMS = 0;      // 0: another control of the view has the timer
  bool fIsNew = true;     // it has not been moved yet
  TPlace fPlace = {};     // where the control was brought last
  std::shared_ptr<TWork> fWork = std::make_shared<TWork>();
  TTokens fTokens;
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
  return Guarded([&] {
    const CHostedControl* control = fLastControl;
    if (!control || !control->CanHaveKeyboard()) {
      const auto first = std::ranges::find_if(*fControls, &CHostedControl::CanHaveKeyboard);
      control = first != fControls->end() ? *first : nullptr;
    }
    out.fHwnd = control ? control->Hwnd() : nullptr;
    return TError{kOK};
  });
}

// No shape over a control, which shows its own pointer.
inline IMouseShape* CDefaultControlViewBehavior::IViewBehavior_GetMouseShape(
    const TMouseShapeRequest& request, TMousePhase phase, TFlag& outHandled, TError& outError) {
  outError = kOK;
  outHandled = 0;
  if (phase != kMousePhaseNormal) return nullptr;
  for (const CHostedControl* const control : *fControls) {
    if (!control->fPlace.fIsShown) continue;
    const TRect& rect = control->fPlace.fRect;
    const TPoint& point = request.fPosition;
    if (point.fX >= rect.fLeft && point.fX < rect.fRight && point.fY >= rect.fTop && point.fY < rect.fBottom)
      outHandled = 1;
  }
  return nullptr;
}

}  // namespace NSMorvane

#endif
