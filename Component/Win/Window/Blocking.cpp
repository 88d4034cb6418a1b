#include "Component/Win/Window/Blocking.h"

#include <algorithm>
#include <string>
#include <utility>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Base/PendingErrors.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Window/WindowRegistry.h"
#include "Component/Win/Window/WinWindow.h"

namespace NSMorvane {

namespace {

bool Contains(const std::vector<HWND>& windows, HWND hWnd) {
  return std::find(windows.begin(), windows.end(), hWnd) != windows.end();
}

// Whether this window is `bottom` or is owned by it, directly or through other windows.
bool IsOver(HWND hWnd, HWND bottom) {
  while (hWnd && hWnd != bottom) hWnd = GetWindow(hWnd, GW_OWNER);
  return hWnd != nullptr;
}

// Whether no other window lies above this one, but for those that are always on top. One look costs much less
// than moving the window to where it is.
bool IsInFront(HWND hWnd) {
  const auto isTopMost = [](HWND w) { return (GetWindowLongW(w, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0; };
  const HWND above = GetWindow(hWnd, GW_HWNDPREV);
  return !above || (isTopMost(above) && !isTopMost(hWnd));
}

}  // namespace

CBlocking::CBlocking(boost::shared_ptr<const CWindowRegistry> windows) : fWindows(std::move(windows)) {}

// --- Windows that come and go

void CBlocking::OnShown(const CWinWindow& window) {
  if (window.IsModal()) {
    if (window.GetOwnerHwnd())
      EnableWindow(window.GetOwnerHwnd(), FALSE);
    else
      Push(window.GetHwnd());
  }
  DisableUnderFront();
}

void CBlocking::OnHiding(const CWinWindow& window) {
  if (window.IsModal()) {
    if (window.GetOwnerHwnd())
      SettleOwner(window.GetOwnerHwnd());
    else
      Pop(window.GetHwnd());
  }
  DisableUnderFront();
}

void CBlocking::OnEnding(const CWinWindow& window) noexcept {
  if (window.GetHwnd()) PopQuietly(window.GetHwnd());
  if (window.IsModal()) SettleOwner(window.GetOwnerHwnd());
}

void CBlocking::PushForeignDialog(HWND dialog) {
  if (Contains(fForeignDialogs, dialog)) {
    MORVANE_UNREACHED();
    return;
  }
  // First, as the dialog can end while windows are disabled for it.
  fForeignDialogs.push_back(dialog);
  try {
    Push(dialog);
  } catch (...) {
    PopForeignDialog(dialog);
    throw;
  }
}

void CBlocking::PopForeignDialog(HWND dialog) {
  if (std::erase(fForeignDialogs, dialog) != 0) PopQuietly(dialog);
}

void CBlocking::PopForeignDialogs() {
  while (!fForeignDialogs.empty()) PopForeignDialog(fForeignDialogs.front());
}

void CBlocking::AddOwnedForeignDialog(const IOwnedForeignDialog* dialog) {
  fOwnedForeignDialogs.push_back(dialog);
}

void CBlocking::RemoveOwnedForeignDialog(const IOwnedForeignDialog* dialog) {
  std::erase(fOwnedForeignDialogs, dialog);
}

void CBlocking::SettleOwner(HWND owner) noexcept {
  if (!IsWindow(owner)) return;
  const TError error = ErrorOf([&] {
    if (IsBlockedByOwnedDialog(owner))
      EnableWindow(owner, FALSE);
    else
      EnableUsableInPlaceOf(owner);
  });
  if (error == kOK) return;
  KeepPendingError(error);
  EnableWindow(owner, TRUE);
}

// --- What is blocked

bool CBlocking::BansFloatingWindows(const CWinWindow& window) {
  const TWindowKind kind = window.GetWindowKind();
  return kind == kWindowKindAlertBox || (kind == kWindowKindModalDialog && !window.GetOwnerHwnd());
}

bool CBlocking::MayMinimize(const CWinWindow& window, HWND hiderWindow) {
  if (!window.IsModal()) return true;
  return window.GetOwnerHwnd() && GetParent(window.GetHwnd()) != hiderWindow;
}

// A shown dialog that is owned by this window and blocks it, one of the library's before one of the system's;
// of several, the one that was active last, or else the newest. Null if there is none. A window that somebody
// else has put over this one and that blocks nothing, such as a dialog to search for texts, does not count.
HWND CBlocking::FindDialogOver(HWND owner) const {
  // Asked only if there is a dialog: for each of many windows it would be costly.
  const auto isLastActive = [owner](HWND candidate) { return candidate == GetLastActivePopup(owner); };
  HWND dialog = nullptr;
  for (const boost::shared_ptr<CWinWindow>& window : fWindows->GetWindows()) {
    if (!window->IsModal() || window->GetOwnerHwnd() != owner || !window->HasBeenShown()) continue;
    dialog = window->GetHwnd();
    if (isLastActive(dialog)) break;
  }
  if (dialog) return dialog;
  for (const IOwnedForeignDialog* const foreign : fOwnedForeignDialogs) {
    const HWND frame = foreign->GetBlockedOwner() == owner ? foreign->GetFrameHwnd() : nullptr;
    if (frame && IsWindowVisible(frame)) dialog = frame;
    if (dialog && isLastActive(dialog)) break;
  }
  return dialog;
}

// Also by a foreign dialog that is not on the screen yet, or no longer.
bool CBlocking::IsBlockedByOwnedDialog(HWND owner) const {
  const auto blocks = [owner](const IOwnedForeignDialog* dialog) {
    return dialog->GetBlockedOwner() == owner;
  };
  return std::any_of(fOwnedForeignDialogs.begin(), fOwnedForeignDialogs.end(), blocks) ||
         FindDialogOver(owner) != nullptr;
}

// The window, the dialog that blocks it, the dialog that blocks that dialog, and so on.
std::vector<HWND> CBlocking::DialogChain(HWND hWnd) const {
  std::vector<HWND> chain = {hWnd};
  while (const HWND dialog = FindDialogOver(chain.back())) {
    if (Contains(chain, dialog)) break;
    chain.push_back(dialog);
  }
  // A question of the system's over a dialog of its own: it has disabled that.
  if (!IsRegisteredHwnd(chain.back()) && !IsWindowEnabled(chain.back())) {
    const HWND question = GetLastActivePopup(chain.back());
    if (question != chain.back() && IsWindowVisible(question)) chain.push_back(question);
  }
  return chain;
}

// Whether a dialog blocks the whole application, and with it this window.
bool CBlocking::IsBlockedByApp(HWND hWnd) const { return !fStack.empty() && !IsOver(hWnd, fStack.front()); }

// The window that can be used in the place of this one. It is the window itself, unless a dialog blocks it.
HWND CBlocking::FindUsable(HWND hWnd) const {
  return DialogChain(IsBlockedByApp(hWnd) ? fStack.front() : hWnd).back();
}

// The order from front to back: first the dialogs on the stack, newest first, each below the windows that it
// owns, of which the usable one comes first; then the other windows. Apart from that the windows keep their
// order.
std::vector<HWND> CBlocking::MergeOrder(const std::vector<HWND>& windows) const {
  std::vector<HWND> result;
  const auto add = [&](HWND hWnd) {
    if (!Contains(result, hWnd)) result.push_back(hWnd);
  };
  for (const HWND modal : fStack) {
    if (const HWND usable = DialogChain(modal).back(); Contains(windows, usable)) add(usable);
    for (const HWND hWnd : windows)
      if (hWnd != modal && IsOver(hWnd, modal)) add(hWnd);
    add(modal);
  }
  for (const HWND hWnd : windows) add(hWnd);
  std::erase_if(result, [this](HWND hWnd) { return !IsWindow(hWnd) || fWindows->IsHidden(hWnd); });
  return result;
}

// How many of these windows, counted from the front, have to be raised to establish this order. All of them
// while another application is in the foreground, since its windows may lie in between.
std::size_t CBlocking::CountToRaise(const std::vector<HWND>& order) const {
  DWORD process = 0;
  GetWindowThreadProcessId(GetForegroundWindow(), &process);
  if (process != GetCurrentProcessId()) return order.size();
  const std::vector<HWND> present = fWindows->GetShownHwndsZ();
  std::size_t count = order.size();
  for (auto last = present.end(); count > 0; --count) {
    last = std::find(present.begin(), last, order[count - 1]);
    if (last == present.end() || *last != order[count - 1]) break;
  }
  return count;
}

// The minimized windows to restore. If a dialog blocks the application and its parent is minimized, that
// parent. Otherwise all other windows, but only if every one of them is minimized: the application must not
// stay invisible as a whole.
std::vector<HWND> CBlocking::FindWindowsToRestore(const std::vector<HWND>& nativeWindows) const {
  std::vector<HWND> restoreList;
  MORVANE_ASSERT(nativeWindows.size() > 0);
  auto it = nativeWindows.begin();
  MORVANE_ASSERT(it!=nativeWindows.end());
  if (!fStack.empty()) {
    const HWND parent = GetParent(*it++);
    // A maximized parent is left alone: SW_RESTORE would make it smaller.
    if (parent && Contains(nativeWindows, parent) && IsIconic(parent)) restoreList.push_back(parent);
  }
  if (!restoreList.empty()) return restoreList;
  bool allAreMinimized = true;
  for (; it != nativeWindows.end(); ++it) {
    const HWND hWnd = *it;
    if (!IsWindow(hWnd)) continue;
    // One of another thread can end at any moment.
    MORVANE_ASSERT_TEXT("IsWindowShown(hWnd)", !IsRegisteredHwnd(hWnd) || fWindows->IsShown(hWnd));
    if (IsIconic(hWnd))
      restoreList.push_back(hWnd);
    else
      allAreMinimized = false;
  }
  return allAreMinimized ? restoreList : std::vector<HWND>();
}

// Enables the window or, if dialogs block it, the last of these. A window of the library that a dialog of the
// whole application blocks stays disabled: the end of that dialog enables it.
void CBlocking::EnableUsableInPlaceOf(HWND hWnd) {
  hWnd = DialogChain(hWnd).back();
  if (!IsBlockedByApp(hWnd) || !IsRegisteredHwnd(hWnd)) EnableWindow(hWnd, TRUE);
}

// The usable window of an owner group: the last active popup of `window`, or `window` itself if that popup is
// `goingDialog` or hidden. The system counts a hidden popup until it is destroyed. A window of the library
// can be out of sight with an inactive application and is not hidden then.
HWND CBlocking::FindUsableOfGroup(HWND window, HWND goingDialog) const {
  const HWND popup = GetLastActivePopup(window);
  const bool isHidden = IsRegisteredHwnd(popup) ? fWindows->IsHidden(popup) : !IsWindowVisible(popup);
  return popup == goingDialog || isHidden ? window : popup;
}

void CBlocking::ApplyOrder(const std::vector<HWND>& nativeWindows, bool activateFrontModal) {
  // Its destructor moves the windows, after the activations below.
  CDeferredWindowMover mover(static_cast<int>(nativeWindows.size()));
  std::string logLine = "CWinWindow::BringAppToFrontAndRestoreZOrder";  // sic
  std::vector<HWND> restoreList;
  if (activateFrontModal) {
    logLine += " activateFrontModal";
    restoreList = FindWindowsToRestore(nativeWindows);
  }
  const std::size_t raised = restoreList.empty() ? CountToRaise(nativeWindows) : nativeWindows.size();
  // Each window is raised to the top, the rearmost first. Windows that are in place already are not touched:
  // some systems paint what becomes visible in between, and take that for the order.
  for (std::size_t i = nativeWindows.size(); i-- > 0;) {
    const HWND hWnd = nativeWindows[i];
    if (!IsWindow(hWnd)) continue;  // a client has ended it meanwhile
    MORVANE_ASSERT_TEXT("!IsWindowHidden(hWnd)", !fWindows->IsHidden(hWnd));
    if (Contains(restoreList, hWnd)) {
      ShowWindow(hWnd, SW_RESTORE);
      logLine += " restore:";
      if (!IsWindow(hWnd)) continue;
    }
    if (i < raised) mover.Move(hWnd, HWND_TOP, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE);
    logLine.append(" ").append(HandleText(hWnd));
  }
  if (activateFrontModal) {
    const auto front = std::find_if(nativeWindows.begin(), nativeWindows.end(), [this](HWND hWnd) {
      return IsWindow(hWnd) && !fWindows->IsHidden(hWnd) && !IsIconic(hWnd);
    });
    if (front != nativeWindows.end()) {
      EnableUsableInPlaceOf(*front);
      SetForegroundWindow(DialogChain(*front).back());
      logLine += " activate: " + HandleText(*front);
    }
  }
  DebugPrint(logLine);
  if (activateFrontModal && !fStack.empty()) SetActiveWindow(FindUsable(fStack.front()));
}

void CBlocking::BringAppToFront(const std::vector<HWND>& nativeWindows, bool activateFrontModal) {
  if (nativeWindows.empty()) return;
  const std::vector<HWND> stackBefore = fStack;
  ApplyOrder(nativeWindows, activateFrontModal);
  // A dialog that a callback has opened meanwhile is not in the list, and must not stay below the other
  // windows.
  if (fStack.empty() || Contains(stackBefore, fStack.front())) return;
  DisableUnderFront();
  RestoreOrder();
}

// --- The stack

// Disables the other windows, brings the dialog to the front and activates it.
void CBlocking::Push(HWND hWnd) {
  // Sic: the text is output.
  MORVANE_ASSERT_TEXT(
      "gAppModalDialogStack.end()==std::find(gAppModalDialogStack.begin(),gAppModalDialogStack.end(),hWnd)",
      !Contains(fStack, hWnd));
  fStack.insert(fStack.begin(), hWnd);
  DisableUnderFront();
  RestoreOrder();
}

// Takes a dialog off the stack. Enables the windows that it blocked, except those that the next dialog
// blocks, and restores the order. Does nothing for a window that is not on the stack.
void CBlocking::Pop(HWND hWnd) {
  const auto entry = std::find(fStack.begin(), fStack.end(), hWnd);
  if (entry == fStack.end()) return;
  fStack.erase(entry);
  std::vector<HWND> windows = fWindows->GetShownHwndsZ();
  std::erase(windows, hWnd);
  if (fStack.empty()) {
    for (const HWND w : windows) {
      if (!fStack.empty()) break;  // a callback has opened another dialog
      // The ending dialog is left as it is, and the window that it covered is enabled instead.
      const HWND usable = FindUsableOfGroup(w, hWnd);
      if (IsRegisteredHwnd(usable)) EnableUsableInPlaceOf(usable);
    }
  } else {
    DisableUnderFront();
  }
  BringAppToFront(MergeOrder(windows), true);
  // They come back with the activation of another window, but a dialog that the ended one owned may stay
  // active.
  const CWinWindow* const active = fStack.empty() ? fWindows->Find(GetActiveWindow()) : nullptr;
  if (active && !BansFloatingWindows(*active)) fWindows->ShowFloatingWindows(true);
}

void CBlocking::PopQuietly(HWND hWnd) noexcept {
  const TError error = ErrorOf([&] { Pop(hWnd); });
  if (error != kOK) KeepPendingError(error);
}

// Disables the windows that the front dialog blocks, and enables the usable window. Windows that are not the
// library's are left alone.
void CBlocking::DisableUnderFront() {
  if (fStack.empty()) return;
  const HWND top = FindUsable(fStack.front());
  std::vector<HWND> windows = fWindows->GetShownHwndsZ();
  std::erase(windows, top);
  const auto isTop = [this, top] { return !fStack.empty() && FindUsable(fStack.front()) == top; };
  for (const HWND w : windows) {
    if (!isTop()) return;  // a callback has ended the dialog or opened another; that call has done the rest
    // For an owner of the top dialog this is the owner itself, for any other group its usable window.
    const HWND blocked = FindUsableOfGroup(w, top);
    if (!IsRegisteredHwnd(blocked)) continue;
    // The front dialog may own several dialogs side by side. They may have been blocked by a dialog that has
    // ended, so they are enabled.
    if (!IsBlockedByApp(blocked) && !IsBlockedByOwnedDialog(blocked)) {
      EnableWindow(blocked, TRUE);
      continue;
    }
    EnableWindow(blocked, FALSE);
    if (isTop()) continue;
    // A callback within EnableWindow has changed the top, and that call has done the rest. It ran before this
    // window was disabled, so the window has to be enabled here if it is usable.
    if (FindUsable(blocked) == blocked) EnableUsableInPlaceOf(blocked);
    return;
  }
  if (isTop()) EnableWindow(top, TRUE);
}

void CBlocking::RestoreOrder() { BringAppToFront(MergeOrder(fWindows->GetShownHwndsZ()), true); }

// --- To the front

void CBlocking::Refresh() {
  // A thread that was ended from outside has not told that its dialog has gone.
  const std::vector<HWND> foreignDialogs = fForeignDialogs;
  for (const HWND dialog : foreignDialogs)
    if (!IsWindow(dialog)) PopForeignDialog(dialog);
  DisableUnderFront();
  RestoreOrder();
}

void CBlocking::RaiseWithOwners(HWND hWnd) const {
  std::vector<HWND> group;
  for (; hWnd && IsRegisteredHwnd(hWnd) && fWindows->IsShown(hWnd); hWnd = GetWindow(hWnd, GW_OWNER))
    group.push_back(hWnd);
  if (group.size() == 1 && IsInFront(group.front())) return;
  for (auto it = group.rbegin(); it != group.rend(); ++it)
    SetWindowPos(*it, HWND_TOP, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE);
}

void CBlocking::BringToFront(HWND hWnd) {
  if (IsBlockedByApp(hWnd)) {
    RestoreOrder();
    return;
  }
  // From the rearmost window to the front. Clients may end the windows meanwhile.
  std::vector<HWND> group = DialogChain(hWnd);
  for (HWND owner = GetWindow(hWnd, GW_OWNER); owner; owner = GetWindow(owner, GW_OWNER))
    group.insert(group.begin(), owner);
  for (const HWND w : group)
    if (IsRegisteredHwnd(w) && IsIconic(w)) ShowWindow(w, SW_RESTORE);
  const HWND usable = FindUsable(hWnd);
  // Floating windows that are out of sight with an inactive application do not count as hidden: they come
  // back when one of them is activated.
  if (!IsWindow(usable) || fWindows->IsHidden(usable)) return;
  RaiseWithOwners(usable);
  if (IsRegisteredHwnd(usable))
    SetActiveWindow(usable);
  else
    SetForegroundWindow(usable);  // it can be on another thread
}

// --- Attempts to use what is blocked

bool CBlocking::SwallowsMessage(const TWinMessage& message) {
  if (message.fMessage == WM_ACTIVATE && LOWORD(message.fWParam) == WA_ACTIVE) {
    // A minimized window may become active: the dialog that it owns comes back with it. A dialog that blocks
    // the application has to come to the front at once.
    const bool isMinimized = HIWORD(message.fWParam) != 0;
    return !(isMinimized && !IsAppBlocked()) && OnActivationAttempt(message.fHwnd);
  }
  if (message.fMessage == WM_SETCURSOR && HIWORD(message.fLParam) == WM_LBUTTONDOWN)
    return OnClickAttempt(message.fHwnd);
  return false;
}

bool CBlocking::OnActivationAttempt(HWND hWnd) {
  const bool isBlocked = FindUsable(hWnd) != hWnd;
  if (!fStack.empty())
    BringAppToFront(MergeOrder(fWindows->GetShownHwndsZ()), isBlocked);
  else if (isBlocked)
    BringToFront(hWnd);
  return isBlocked;
}

bool CBlocking::OnClickAttempt(HWND hWnd) {
  if (!OnActivationAttempt(hWnd)) return false;
  // Bringing the windows to the front may have ended dialogs.
  const HWND usable = FindUsable(hWnd);
  if (usable == hWnd) return true;
  SetForegroundWindow(usable);  // the click may have come to an application in the background
  FLASHWINFO flash = {};
  flash.cbSize = sizeof(flash);
  flash.hwnd = usable;
  flash.dwFlags = FLASHW_CAPTION;
  flash.uCount = 3;
  flash.dwTimeout = 50;
  FlashWindowEx(&flash);
  return true;
}

}  // namespace NSMorvane
