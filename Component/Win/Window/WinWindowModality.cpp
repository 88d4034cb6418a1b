#include "Component/Win/Window/WinWindowModality.h"

#include <algorithm>
#include <string>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Base/PendingErrors.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Platform/UtilsWinHandles.h"
#include "Component/Win/Window/WindowHost.h"
#include "Component/Win/Window/WindowRegistry.h"
#include "Component/Win/Window/WinWindow.h"

namespace NSMorvane {

std::vector<HWND> gAppModalDialogStack;

namespace {

bool Contains(const std::vector<HWND>& windows, HWND hWnd) {
  return std::find(windows.begin(), windows.end(), hWnd) != windows.end();
}

// A dialog that is shown and blocks this window alone; of several the one that was active last, or else the
// newest. Null if there is none.
HWND FindDialogOver(HWND owner) {
  const HWND lastActive = GetLastActivePopup(owner);
  HWND dialog = nullptr;
  if (!gWindowRegistry) return nullptr;
  for (const boost::shared_ptr<CWinWindow>& window : gWindowRegistry->GetWindows()) {
    if (!window->IsModal() || window->GetOwnerHwnd() != owner || !window->HasBeenShown()) continue;
    dialog = window->GetHwnd();
    if (dialog == lastActive) break;
  }
  return dialog;
}

// The window, the dialog that blocks it, the one that blocks that, and so on.
std::vector<HWND> DialogChain(HWND hWnd) {
  std::vector<HWND> chain = {hWnd};
  while (const HWND dialog = FindDialogOver(chain.back())) {
    if (Contains(chain, dialog)) break;
    chain.push_back(dialog);
  }
  return chain;
}

// Whether this window is `bottom`, or lies over it because that owns it.
bool IsOver(HWND hWnd, HWND bottom) {
  while (hWnd && hWnd != bottom) hWnd = GetWindow(hWnd, GW_OWNER);
  return hWnd != nullptr;
}

// Whether a dialog blocks the whole application, and with it this window.
bool IsBlockedByApp(HWND hWnd) {
  return !gAppModalDialogStack.empty() && !IsOver(hWnd, gAppModalDialogStack.front());
}

// The window that can be used in the place of this one. It is the window itself, unless a dialog blocks it.
HWND FindUsable(HWND hWnd) {
  return DialogChain(IsBlockedByApp(hWnd) ? gAppModalDialogStack.front() : hWnd).back();
}

// Front to back: the stack, the newest dialog first, each under what lies over it, with the window that can
// be used at the top; then the other windows. What is not said here has the order it has.
std::vector<HWND> MergeModalOrder(const std::vector<HWND>& windows, const std::vector<HWND>& modalStack) {
  std::vector<HWND> result;
  const auto add = [&](HWND hWnd) {
    if (!Contains(result, hWnd)) result.push_back(hWnd);
  };
  for (const HWND modal : modalStack) {
    if (const HWND usable = DialogChain(modal).back(); Contains(windows, usable)) add(usable);
    for (const HWND hWnd : windows)
      if (hWnd != modal && IsOver(hWnd, modal)) add(hWnd);
    add(modal);
  }
  for (const HWND hWnd : windows) add(hWnd);
  std::erase_if(result, [](HWND hWnd) { return !IsWindow(hWnd) || IsWindowHidden(hWnd); });
  return result;
}

// How many of these windows, from the front, have to be raised so that all lie in this order. All, if the
// windows of another application can lie between them.
std::size_t CountToRaise(const std::vector<HWND>& order) {
  DWORD process = 0;
  GetWindowThreadProcessId(GetForegroundWindow(), &process);
  if (process != GetCurrentProcessId()) return order.size();
  const std::vector<HWND> present = GetShownWindowsZ();
  std::size_t count = order.size();
  for (auto last = present.end(); count > 0; --count) {
    last = std::find(present.begin(), last, order[count - 1]);
    if (last == present.end() || *last != order[count - 1]) break;
  }
  return count;
}

// The windows to bring back from the task bar. Those that are minimized come back only if all are: the
// application must not stay invisible as a whole.
std::vector<HWND> FindWindowsToRestore(const std::vector<HWND>& nativeWindows) {
  std::vector<HWND> restoreList;
  MORVANE_ASSERT(nativeWindows.size() > 0);
  auto it = nativeWindows.begin();
  MORVANE_ASSERT(it!=nativeWindows.end());
  if (!gAppModalDialogStack.empty()) {
    const HWND parent = GetParent(*it++);
    // A maximized one would be made smaller.
    if (parent && Contains(nativeWindows, parent) && IsWindowMinimized(parent)) restoreList.push_back(parent);
  }
  if (!restoreList.empty()) return restoreList;
  bool allAreMinimized = true;
  for (; it != nativeWindows.end(); ++it) {
    const HWND hWnd = *it;
    if (!IsWindow(hWnd)) continue;  // one of another thread
    MORVANE_ASSERT(IsWindowShown(hWnd));
    if (IsWindowMinimized(hWnd))
      restoreList.push_back(hWnd);
    else
      allAreMinimized = false;
  }
  return allAreMinimized ? restoreList : std::vector<HWND>();
}

// Enables this window or, if a dialog blocks it, that one. Not while a dialog blocks the whole application:
// its end will.
void EnableUnlessBlocked(HWND hWnd) {
  hWnd = DialogChain(hWnd).back();
  if (!IsBlockedByApp(hWnd) || !IsRegisteredHwnd(hWnd)) EnableWindow(hWnd, TRUE);
}

// The window of a group that could be used: the newest dialog of the one given. Not a dialog that is going,
// nor one that has been hidden, which the system counts until it has gone.
HWND UsableWindow(HWND window, HWND goingDialog) {
  const HWND popup = GetLastActivePopup(window);
  return popup == goingDialog || IsWindowHidden(popup) ? window : popup;
}

void OrderWindows(const std::vector<HWND>& nativeWindows, bool activateFrontModal) {
  // It moves the windows when it goes, which is after the activations below.
  CDeferredWindowMover mover(static_cast<int>(nativeWindows.size()));
  std::string logLine = "CWinWindow::BringAppToFrontAndRestoreZOrder";
  std::vector<HWND> restoreList;
  if (activateFrontModal) {
    logLine += " activateFrontModal";
    restoreList = FindWindowsToRestore(nativeWindows);
  }
  const std::size_t raised = restoreList.empty() ? CountToRaise(nativeWindows) : nativeWindows.size();
  // From the bottom to the top, each to the top. One that lies right is not touched: some systems paint anew
  // what comes into sight in between, and take that for the order.
  for (std::size_t i = nativeWindows.size(); i-- > 0;) {
    const HWND hWnd = nativeWindows[i];
    if (!IsWindow(hWnd)) continue;  // a client has ended it, in a restore or before
    MORVANE_ASSERT(!IsWindowHidden(hWnd));
    if (Contains(restoreList, hWnd)) {
      ShowWindow(hWnd, SW_RESTORE);
      logLine += " restore:";
      if (!IsWindow(hWnd)) continue;
    }
    if (i < raised) mover.Move(hWnd, HWND_TOP, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE);
    logLine.append(" ").append(HandleText(hWnd));
  }
  if (activateFrontModal) {
    const auto front = std::find_if(nativeWindows.begin(), nativeWindows.end(), [](HWND hWnd) {
      return IsWindow(hWnd) && !IsWindowHidden(hWnd) && !IsWindowMinimized(hWnd);
    });
    if (front != nativeWindows.end()) {
      EnableUnlessBlocked(*front);
      SetForegroundWindow(DialogChain(*front).back());
      logLine += " activate: " + HandleText(*front);
    }
  }
  DebugPrint(logLine);
  if (activateFrontModal && !gAppModalDialogStack.empty())
    SetActiveWindow(FindUsable(gAppModalDialogStack.front()));
}

void BringAppToFrontAndRestoreZOrder(const std::vector<HWND>& nativeWindows, bool activateFrontModal) {
  if (nativeWindows.empty()) return;
  const std::vector<HWND> stackBefore = gAppModalDialogStack;
  OrderWindows(nativeWindows, activateFrontModal);
  // A dialog that a callback has opened meanwhile was in no list yet, and must not stay under the others.
  if (gAppModalDialogStack.empty() || Contains(stackBefore, gAppModalDialogStack.front())) return;
  EnforceAppModality();
  RefreshAppModality();
}

}  // namespace

bool IsWindowHidden(HWND hWnd) { return Contains(sHidddenWindows, hWnd); }

// --- The stack

void EnableOwner(HWND owner) {
  if (!FindDialogOver(owner)) EnableUnlessBlocked(owner);
}

void PushAppModal(HWND hWnd) {
  MORVANE_ASSERT(gAppModalDialogStack.end()==std::find(gAppModalDialogStack.begin(),gAppModalDialogStack.end(),hWnd));
  gAppModalDialogStack.insert(gAppModalDialogStack.begin(), hWnd);
  EnforceAppModality();
  RefreshAppModality();
}

void PopAppModal(HWND hWnd) {
  const auto entry = std::find(gAppModalDialogStack.begin(), gAppModalDialogStack.end(), hWnd);
  if (entry == gAppModalDialogStack.end()) return;
  gAppModalDialogStack.erase(entry);
  std::vector<HWND> windows = GetShownWindowsZ();
  std::erase(windows, hWnd);
  if (gAppModalDialogStack.empty()) {
    for (const HWND w : windows) {
      if (!gAppModalDialogStack.empty()) break;  // a callback has opened the next one
      // The dialog that is going stays as it is; what it covered can be used again.
      const HWND usable = UsableWindow(w, hWnd);
      if (IsRegisteredHwnd(usable)) EnableUnlessBlocked(usable);
    }
  } else {
    EnforceAppModality();
  }
  BringAppToFrontAndRestoreZOrder(MergeModalOrder(windows, gAppModalDialogStack), true);
}

void PopAppModalQuietly(HWND hWnd) noexcept {
  const TError error = ErrorOf([hWnd] { PopAppModal(hWnd); });
  if (error != kOK) KeepPendingError(error);
}

CAppModalInstance::CAppModalInstance(HWND hWnd) : fHwnd(hWnd) {
  try {
    PushAppModal(fHwnd);
  } catch (...) {
    PopAppModalQuietly(fHwnd);
    throw;
  }
}

// Windows that are not the library's are left alone.
void EnforceAppModality() {
  if (gAppModalDialogStack.empty()) return;
  const HWND top = FindUsable(gAppModalDialogStack.front());
  std::vector<HWND> windows = GetShownWindowsZ();
  std::erase(windows, top);
  const auto isTop = [top] {
    return !gAppModalDialogStack.empty() && FindUsable(gAppModalDialogStack.front()) == top;
  };
  for (const HWND w : windows) {
    if (!isTop()) return;  // a callback has ended the dialog or opened another, and that has been seen to
    // An owner of the top dialog cannot be used, and of any other group the window that could be.
    const HWND blocked = UsableWindow(w, top);
    if (!IsRegisteredHwnd(blocked)) continue;
    // Several dialogs can lie over the front of the stack, side by side. Another dialog, which has gone, may
    // have blocked them.
    if (!IsBlockedByApp(blocked) && !FindDialogOver(blocked)) {
      EnableWindow(blocked, TRUE);
      continue;
    }
    EnableWindow(blocked, FALSE);
    if (isTop()) continue;
    // That has been seen to, but for this window: it was told before it was disabled.
    if (FindUsable(blocked) == blocked) EnableUnlessBlocked(blocked);
    return;
  }
  if (isTop()) EnableWindow(top, TRUE);
}

void RefreshAppModality() {
  BringAppToFrontAndRestoreZOrder(MergeModalOrder(GetShownWindowsZ(), gAppModalDialogStack), true);
}

// --- To the front

void RaiseWithOwners(HWND hWnd) {
  std::vector<HWND> group;
  for (; hWnd && IsRegisteredHwnd(hWnd) && IsWindowShown(hWnd); hWnd = GetWindow(hWnd, GW_OWNER))
    group.push_back(hWnd);
  for (auto it = group.rbegin(); it != group.rend(); ++it)
    SetWindowPos(*it, HWND_TOP, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE);
}

void BringWindowToFront(HWND hWnd) {
  if (IsBlockedByApp(hWnd)) {
    RefreshAppModality();
    return;
  }
  // From the bottom to the top. Clients can end the windows meanwhile.
  std::vector<HWND> group = DialogChain(hWnd);
  for (HWND owner = GetWindow(hWnd, GW_OWNER); owner; owner = GetWindow(owner, GW_OWNER))
    group.insert(group.begin(), owner);
  for (const HWND w : group)
    if (IsRegisteredHwnd(w) && IsIconic(w)) ShowWindow(w, SW_RESTORE);
  const HWND usable = FindUsable(hWnd);
  // Floating windows that went with the application come back when one of them is activated.
  if (!IsWindow(usable) || IsWindowHidden(usable)) return;
  RaiseWithOwners(usable);
  SetActiveWindow(usable);
}

// --- Attempts

bool OnModalActivationAttempt(HWND hWnd) {
  const bool isBlocked = FindUsable(hWnd) != hWnd;
  if (!gAppModalDialogStack.empty())
    BringAppToFrontAndRestoreZOrder(MergeModalOrder(GetShownWindowsZ(), gAppModalDialogStack), isBlocked);
  else if (isBlocked)
    BringWindowToFront(hWnd);
  return isBlocked;
}

bool OnModalClickAttempt(HWND hWnd) {
  if (!OnModalActivationAttempt(hWnd)) return false;
  // Bringing the windows to the front can have ended dialogs.
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

// --- Always on top

void CWinWindow::SetAlwaysOnTop(bool flag) {
  if (flag == fAlwaysOnTop) return;
  SetWindowTopMost(fHwnd, flag);
  fAlwaysOnTop = flag;
  fHost->RequestMenuBars();
}

}  // namespace NSMorvane
