// The life of a window, and its contract.
#include "Component/Win/Window/WinWindow.h"

#include <windows.h>
#include <algorithm>
#include <boost/make_shared.hpp>
#include <utility>

#include "Component/Portable/Views/FocusChain.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Window/Blocking.h"
#include "Component/Win/Window/WindowHost.h"
#include "Component/Win/Window/WindowRegistry.h"
#include "Component/Win/Window/WinDroppedFiles.h"
#include "Component/Win/Window/WinInputMethod.h"
#include "Component/Win/Window/WinRootViewBehavior.h"

namespace NSMorvane {

namespace {

// Drives mouse tracking, tooltip rectangles and idle calls.
enum : UINT { kTimerMS = 25 };

HWND NativeOwner(IModalOwner* owner) {
  if (!owner) return nullptr;
  TNativeWindow native = {};
  MORVANE_CHECK(owner->IModalOwner_GetNativeWindow(native));
  return native.fHwnd;
}

}  // namespace

// --- Construction

CWinWindow::CWinWindow(IWindowHost* host, TWindowKind windowKind, IModalOwner* owner, DWORD style,
                       DWORD exStyle, bool makeSizeGrip, bool listedInWindowMenu, bool hasCloseCommand)
    : TWindowCore{host, windowKind, host->GetWindowRegistry()},
      fBlocking(host->GetBlocking()),
      fRunBehavior(host->GetBehavior()),
      fOwnerHwnd(NativeOwner(owner)),
      fListedInWindowMenu(listedInWindowMenu),
      fHasCloseCommand(hasCloseCommand),
      fWindowClass(WindowClassName(windowKind), WindowStubProcCallback,
                   WindowClassHasIcon(windowKind) ? host->GetAppIcon() : nullptr),
      fInspector(*this),
      fTooltips(*this),
      fFocus(*this, *this, *this, fTooltips),
      fMouse(*this, fFocus.GetFocus(), fTooltips, fInspector),
      fKeyboard(*this, *this, fMouse.GetDispatch(), fFocus.GetFocus(), *this),
      fPlacement(*this, *this),
      fMenuBar(*this),
      fPainting(*this, fInspector),
      fAlpha(*this) {
  try {
    MakeNativeWindow(style, exStyle, makeSizeGrip);
    MakeRootView();
    fPlacement.TakeInitialState();
    fTimerID = SetTimer(fHwnd, 0, kTimerMS, nullptr);
    if (!fTimerID) MORVANE_CHECK_LAST_ERROR();
    if (fWindowKind == kWindowKindDocument) LetDroppedFilesIn(fHwnd);
  } catch (...) {
    DismantleNativeWindow();
    throw;
  }
}

HWND CWinWindow::ChooseNativeOwner() {
  if (fWindowKind == kWindowKindDocument || fWindowKind == kWindowKindFloating) return fOwnerHwnd;
  if (!fOwnerHwnd) {
    fIsAlwaysOnTop = fWindows->IsAnyAlwaysOnTop();
    const bool standsAlone =
        !fWindows->IsAnyOfKind(kWindowKindDocument) &&
        (fWindowKind == kWindowKindModelessDialog || !fWindows->IsAnyOfKind(kWindowKindModelessDialog));
    return standsAlone ? nullptr : fHost->GetHiderWindow();
  }
  const CWinWindow* const owner = fWindows->Find(fOwnerHwnd);
  fIsAlwaysOnTop = owner ? owner->fIsAlwaysOnTop : fWindows->IsAnyAlwaysOnTop();
  return fOwnerHwnd;
}

void CWinWindow::MakeNativeWindow(DWORD style, DWORD exStyle, bool makeSizeGrip) {
  const HWND nativeOwner = ChooseNativeOwner();
  const HWND hwnd = CreateWindowExW(exStyle, WinText(fWindowClass.GetName()), L"", style, 100, 100, 300, 300,
                                    nativeOwner, nullptr, GetModuleHandleW(nullptr), this);
  if (!hwnd) {
    const DWORD error = GetLastError();
    fHwnd = nullptr;
    SetLastError(error);
    MORVANE_THROW_LAST_ERROR();
  }
  RegisterHwnd(fHwnd);
  LeaveWithoutInputMethod(fHwnd);
  SendMessageW(fHwnd, WM_SETFONT, reinterpret_cast<WPARAM>(GetDefaultFont()), FALSE);
  if (makeSizeGrip) fSizeGrip.Make(fHwnd);
}

// The window procedure of the class. On WM_NCCREATE it hands the window over to a wrapper, which sees every
// message from then on. Messages before that, and what the wrapper passes on, go to DefWindowProcW here.
LRESULT CALLBACK CWinWindow::WindowStubProcCallback(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_NCCREATE) {
    const auto* const creation = reinterpret_cast<const CREATESTRUCTW*>(lParam);
    auto* const window = static_cast<CWinWindow*>(creation->lpCreateParams);
    MORVANE_ASSERT(0!=window);
    if (!window) return FALSE;
    if (!window->fNativeWindowWrapper) {
      try {
        window->fNativeWindowWrapper = boost::make_shared<CNativeWindowWrapper>(hwnd);
        window->fNativeWindowWrapper->AddProcListener(window);
        window->fHwnd = hwnd;
        return window->fNativeWindowWrapper->Dispatch(hwnd, message, wParam, lParam);
      } catch (...) {
        return FALSE;  // the creation fails
      }
    }
  }
  if (message == WM_SHOWWINDOW)
    DebugPrint("CWinWindow::WindowStubProcCallback forwarding WM_SHOWWINDOW to DefWindowProc() ");  // sic
  return DefWindowProcW(hwnd, message, wParam, lParam);
}

void CWinWindow::MakeRootView() {
  fRootViewReference.reset(new CViewImpl(this));
  fRootView = fRootViewReference.get();
  fRootView->SetClientsViewReference(fRootViewReference);
  fRootView->SetBehavior(boost::make_shared<CWinRootViewBehavior>());
}

// --- Wiring

void CWinWindow::SetClientsWindowReference(const boost::shared_ptr<CWinWindow>& reference) {
  MORVANE_ASSERT(0==fClientsWindowReference.get());
  CWinWindow* const parent = fWindows->Find(GetParent(fHwnd));
  fWindows->MakeRoomForOne();
  if (parent) {
    parent->AddChildWindow(reference);
    fParentWindow = parent->GetClientsWindowReference();
  }
  fWindows->Add(reference);
  fClientsWindowReference = reference;
}

boost::shared_ptr<CWinWindow> CWinWindow::GetClientsWindowReference() const {
  MORVANE_ASSERT(0!=fClientsWindowReference.get());
  return fClientsWindowReference;
}

void CWinWindow::AddChildWindow(const boost::shared_ptr<CWinWindow>& childWindow) {
  MORVANE_ASSERT(std::find(fChildWindows.begin(),fChildWindows.end(),childWindow)==fChildWindows.end());
  fChildWindows.push_back(childWindow);
}

bool CWinWindow::CWindowGlue_CheckInvariant() const {
  // Of the views, only the root view and the focus view are tested.
  if (fRunBehavior && !(fRootView && !fRootView->CheckInvariant()) &&
      !(GetFocusView() && !GetFocusView()->CheckInvariant()) && !(fHwnd && !IsWindow(fHwnd)) &&
      !(fNativeWindowWrapper && !fNativeWindowWrapper->CheckInvariantWith(fHwnd)))
    return true;
  MORVANE_UNREACHED();
  return false;
}

// --- The contract

TNativeWindow CWinWindow::CWindowGlue_GetNativeWindow() { return TNativeWindow{fHwnd}; }

TError CWinWindow::IModalOwner_GetNativeWindow(TNativeWindow& out) {
  out.fHwnd = fHwnd;
  return kOK;
}

bool CWinWindow::CWindowGlue_IsActive() { return fFocus.IsActive(); }

CViewImpl* CWinWindow::CWindowGlue_GetRootView() { return fRootView; }

CViewImpl* CWinWindow::CWindowGlue_GetConceptualFocusView() { return GetFocusView(); }

CViewImpl* CWinWindow::CWindowGlue_GetOnDutyFocusView() {
  return fFocus.IsActive() ? GetFocusView() : nullptr;
}

void CWinWindow::CWindowGlue_SetConceptualFocusView(CViewImpl* view) { fFocus.GetFocus().SetView(view); }

// A released view that subviews keep in memory is still in the list, but the client does not know of it.
std::vector<CViewImpl*> CWinWindow::CWindowGlue_GetTabViews() {
  std::vector<CViewImpl*> tabViews = fTabViews;
  std::erase_if(tabViews, [](const CViewImpl* view) { return !view->IsLive(); });
  return tabViews;
}

void CWinWindow::CWindowGlue_SetTabViews(const std::vector<CViewImpl*>& tabViews) { fTabViews = tabViews; }

TRect CWinWindow::CWindowGlue_GetFrameRect() { return fPlacement.GetFrameRect(); }

TRect CWinWindow::CWindowGlue_FrameRectToClientRect(const TRect& rect) {
  return FrameRectToClientRect(rect, fPlacement.GetFrameInsets());
}

TRect CWinWindow::CWindowGlue_ClientRectToFrameRect(const TRect& rect) {
  return ClientRectToFrameRect(rect, fPlacement.GetFrameInsets());
}

std::uint8_t CWinWindow::CWindowGlue_GetGlobalAlpha() { return fAlpha.Get(); }

void CWinWindow::CWindowGlue_SetGlobalAlpha(std::uint8_t alpha) { fAlpha.Set(alpha); }

// --- The window as its kind and its views see it

TWindowStateRecord CWinWindow::GetWindowState() const {
  MORVANE_ASSERT(CheckInvariant());
  return fPlacement.Get();
}

void CWinWindow::SetWindowState(const TWindowStateRecord& state) {
  MORVANE_ASSERT(CheckInvariant());
  const boost::shared_ptr<CWinWindow> keepAlive = fClientsWindowReference;
  fPlacement.Set(state);
}

void CWinWindow::IImplFocusTools_SetConceptualFocusView(CViewImpl* view) {
  const boost::shared_ptr<CWinWindow> keepAlive = fClientsWindowReference;
  fFocus.GetFocus().PassOn(view);
}

std::uint32_t CWinWindow::AddTool(CViewImpl& view, const TString& text) {
  const boost::shared_ptr<CWinWindow> keepAlive = fClientsWindowReference;
  return fTooltips.Add(view, text, fMouse.IsCaptured());
}

void CWinWindow::UpdateToolText(std::uint32_t tool, CViewImpl& view, const TString& text) {
  const boost::shared_ptr<CWinWindow> keepAlive = fClientsWindowReference;
  fTooltips.SetText(tool, view, text);
}

void CWinWindow::RemoveTool(std::uint32_t tool, CViewImpl& view) {
  const boost::shared_ptr<CWinWindow> keepAlive = fClientsWindowReference;
  fTooltips.Remove(tool, view);
}

void CWinWindow::SetUpMenuBar(CMenuBarState& state) {
  RequestMenuBarSetup(state);
  if (!fClientsWindowReference) return;  // released by that
  // The focus view comes last and so has the last word.
  const std::vector<TViewImplPtr> focusChain = LiveFocusChain(GetFocusView());
  for (auto view = focusChain.rbegin(); view != focusChain.rend(); ++view) {
    // An earlier view may have released it.
    IViewBehavior* const behavior = (*view)->IsLive() ? (*view)->GetBehavior() : nullptr;
    if (behavior) MORVANE_CHECK(behavior->IViewBehavior_OnSetupMenuBar(state));
  }
  fMenuBar.Show(state);
}

// --- Showing and hiding

void CWinWindow::FocusNow() {
  const boost::shared_ptr<CWinWindow> keepAlive = fClientsWindowReference;
  if (IsIconic()) ShowWindow(fHwnd, SW_RESTORE);
  fBlocking->BringToFront(fHwnd);
}

void CWinWindow::Show() {
  // A window that has been released must not be shown any more. Painting and every callback below may release
  // it.
  const boost::shared_ptr<CWinWindow> keepAlive = fClientsWindowReference;
  const auto isReleased = [&] { return !fClientsWindowReference; };
  if (isReleased()) return;

  MORVANE_ASSERT(CheckInvariant());
  MORVANE_ASSERT(!IsVisible());
  PumpPaintMessages();
  if (isReleased()) return;
  fPlacement.ReportClientSize();
  if (isReleased()) return;
  fPlacement.ReportPlacement();
  if (isReleased()) return;

  const int showCommand = fPlacement.GetShowCommand();
  fIsHidden = false;
  fWindows->RemoveHidden(fHwnd);
  DebugPrint("CWinWindow::Show " + HandleText(fHwnd) + " " + NumberText(showCommand));
  const BOOL previouslyVisible = ShowWindow(fHwnd, showCommand);
  MORVANE_ASSERT(!previouslyVisible);
  if (isReleased()) return;
  if (!UpdateWindow(fHwnd)) MORVANE_CHECK_LAST_ERROR();
  if (isReleased() || fIsHidden) return;  // hidden if the native window was lost
  // A dialog that blocks the application may have hidden it; it comes back with the other floating windows.
  if (fWindowKind == kWindowKindFloating && fBlocking->IsAppBlocked() && !IsVisible()) return;
  if (!IsVisible()) {
    if (fWindows->IsHidden(fHwnd))
      DebugPrint("CWinWindow is STILL in the hidden list, after being RemoveFromHiddenWindows()'d!");
    else
      DebugPrint("CWinWindow HWND refuses to get WS_VISIBLE!");
    MORVANE_UNREACHED();
  }
  if (fIsAlwaysOnTop) SetWindowTopMost(fHwnd, true);
  if (isReleased()) return;
  MORVANE_ASSERT(IsVisible());
  fBlocking->OnShown(*this);
  if (!isReleased()) SetActiveWindow(fHwnd);
}

void CWinWindow::Hide() {
  MORVANE_ASSERT(CheckInvariant());
  MORVANE_ASSERT(0!=fHwnd);
  fBlocking->OnHiding(*this);
  // First, so that the kind does not hear of the place above the screen.
  fIsHidden = true;
  AddToHiddenWindows();
}

void CWinWindow::AddToHiddenWindows() {
  if (fWindows->IsHidden(fHwnd)) return;
  fWindows->MakeRoomForHidden();
  if (fWindowKind == kWindowKindModalDialog || fOwnerHwnd) {
    // Moved above the screen, where it stays natively visible.
    RECT parentRect = {};
    if (const HWND parent = GetParent(fHwnd)) GetWindowRect(parent, &parentRect);
    // The top of a parent that begins above the screen would leave a part of the window in sight.
    parentRect.top = std::max<LONG>(parentRect.top, 0);
    RECT native = {};
    GetWindowRect(fHwnd, &native);
    const TRect rect = FromNative(native);
    const std::int64_t left = static_cast<std::int64_t>(rect.fLeft) - parentRect.left;
    const std::int64_t top = static_cast<std::int64_t>(rect.fTop) - parentRect.top -
                             (static_cast<std::int64_t>(rect.fBottom) - GetSystemMetrics(SM_YVIRTUALSCREEN));
    MoveWindow(fHwnd, ToCoordinate(left), ToCoordinate(top), ToCoordinate(RectWidth(rect)),
               ToCoordinate(RectHeight(rect)), TRUE);
  } else {
    ShowWindow(fHwnd, SW_HIDE);
  }
  fWindows->AddHidden(fHwnd);
}

void CWinWindow::SetAlwaysOnTop(bool flag) {
  if (flag == fIsAlwaysOnTop) return;
  SetWindowTopMost(fHwnd, flag);
  fIsAlwaysOnTop = flag;
  fHost->RequestMenuBars();
}

// --- The end

void CWinWindow::RequestCloseFromLibrary() {
  const boost::shared_ptr<CWinWindow> keepAlive = fClientsWindowReference;
  RequestClose(kCloseByLibrary);
}

void CWinWindow::ReleaseWindow() {
  MORVANE_ASSERT(CheckInvariant());
  MORVANE_ASSERT(fClientsWindowReference.get()!=0);
  // The last reference, unless the window is in the middle of a message: the window then ends when this
  // function returns.
  const boost::shared_ptr<CWinWindow> reference = fClientsWindowReference;
  if (fClientsWindowReference && fMouse.IsCaptured()) {
    const BOOL result = ReleaseCapture();
    MORVANE_ASSERT(result);
  }
  if (!fClientsWindowReference) return;  // a callback has released it already
  // Held, so that a parent that is ending too stays alive until this window is off its list.
  const boost::shared_ptr<CWinWindow> parent = fParentWindow.lock();
  fClientsWindowReference.reset();
  fWindows->Remove(this);
  fHost->RequestMenuBars();
  LetGoOfAlerts();
  Hide();
  if (parent) std::erase(parent->fChildWindows, reference);
}

// The client can end the other children, but not an alert, which ends with its answer.
void CWinWindow::LetGoOfAlerts() {
  const auto firstAlert =
      std::stable_partition(fChildWindows.begin(), fChildWindows.end(),
                            [](const auto& child) { return child->GetWindowKind() != kWindowKindAlertBox; });
  const std::vector<boost::shared_ptr<CWinWindow>> alerts(firstAlert, fChildWindows.end());
  fChildWindows.erase(firstAlert, fChildWindows.end());
  for (const boost::shared_ptr<CWinWindow>& alert : alerts) alert->OnOwnerReleased();
}

void CWinWindow::PrepareDestruction() {
  // First, since a token that is deleted from here on does not find the window any more.
  fListeners.RemoveForAllControls();
  if (fTimerID) {
    KillWindowTimer();
    AddToHiddenWindows();
  }
}

void CWinWindow::KillWindowTimer() {
  if (!fTimerID) return;
  // Some systems keep the timer under the number 0 that SetTimer was called with, and not under its result.
  if (!KillTimer(fHwnd, fTimerID)) KillTimer(fHwnd, 0);
  fTimerID = 0;
}

CWinWindow::~CWinWindow() {
  MORVANE_ASSERT(CheckInvariant());
  fIsEnding = true;  // the derived part is destroyed already
  fFocus.GetFocus().Forget();
  if (fRootView && !fRootView->GetRawSubViews().empty()) {
    DebugPrint("Not all subview were removed!");  // sic
    for (const CViewImpl* const view : fRootView->GetRawSubViews())
      DebugPrint("View: " + view->GetDebugName());
    DebugPrint("You must release all views in a window before the window is deleted!");
    MORVANE_UNREACHED();
  }
  MORVANE_ASSERT(fChildWindows.size()==0);
  fTooltips.DestroyControl();
  fBlocking->OnEnding(*this);
  DismantleNativeWindow();
  // Makes the invariant fail on later use.
  PoisonField(fRunBehavior, nullptr);
}

void CWinWindow::DismantleNativeWindow() {
  if (fNativeWindowWrapper) {
    fNativeWindowWrapper->RemoveProcListener(this);
    fNativeWindowWrapper.reset();
  }
  KillWindowTimer();
  if (fRootView) {
    if (!fRootView->GetRawSubViews().empty()) fRootView->ForgetWindow();
    fRootView->IView_Release();
    fRootView = nullptr;
    fRootViewReference.reset();
  }
  if (fHwnd) {
    fWindows->RemoveHidden(fHwnd);
    UnregisterHwnd(fHwnd);
    // Destroying the window would destroy the windows that it owns: a dialog may still be open or in the
    // middle of a message.
    DisownWindows(fHwnd);
    const BOOL dwResult = DestroyWindow(fHwnd);
    MORVANE_ASSERT(dwResult);
    fHwnd = nullptr;
  }
}

// Somebody else is destroying the native window: its foreign owner ends, or a client has used the handle.
// What it blocked can be used again, the loop of a blocking dialog ends, and the client is asked to close
// what is left. Whoever has called that callback goes on with an object that can be used.
void CWinWindow::OnNativeWindowLost() {
  const bool wasShown = !std::exchange(fIsHidden, true);
  fBlocking->OnEnding(*this);
  MakeStandIn();
  if (!wasShown || !fClientsWindowReference) return;
  if (fWindowKind == kWindowKindAlertBox)
    OnOwnerReleased();
  else
    RequestClose(kCloseByUser);
}

// A native window like the one that is being destroyed takes its place, hidden and without an owner, so that
// nothing that the client or a part of this object still does has to look whether there is one.
void CWinWindow::MakeStandIn() {
  const HWND lost = fHwnd;
  RECT rect = {};
  GetWindowRect(lost, &rect);
  fNativeWindowWrapper->RemoveProcListener(this);
  fNativeWindowWrapper.reset();
  fWindows->RemoveHidden(lost);
  UnregisterHwnd(lost);
  fHwnd = nullptr;
  fTimerID = 0;
  fWindowClass.StayRegistered();
  const HWND hwnd = CreateWindowExW(
      static_cast<DWORD>(GetWindowLongW(lost, GWL_EXSTYLE)), WinText(fWindowClass.GetName()), L"",
      static_cast<DWORD>(GetWindowLongW(lost, GWL_STYLE) & ~WS_VISIBLE), rect.left, rect.top,
      rect.right - rect.left, rect.bottom - rect.top, nullptr, nullptr, GetModuleHandleW(nullptr), this);
  if (!hwnd) MORVANE_THROW_LAST_ERROR();
  RegisterHwnd(hwnd);
  fTimerID = SetTimer(hwnd, 0, kTimerMS, nullptr);
  fWindows->AddHidden(hwnd);
}

}  // namespace NSMorvane
