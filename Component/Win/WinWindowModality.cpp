#include "Component/Win/WinWindowModality.h"

#include <algorithm>
#include <string>

#include "Component/Portable/MorvaneImplUtils.h"
#include "Component/Win/MorvaneImplWin.h"
#include "Component/Win/UtilsWin.h"
#include "Component/Win/UtilsWinHandles.h"
#include "Component/Win/WinWindow.h"

namespace NSMorvane {

std::vector<HWND> gAppModalDialogStack;

namespace {

bool Contains(const std::vector<HWND>& windows, HWND hWnd) {
  return std::find(windows.begin(), windows.end(), hWnd) != windows.end();
}

// Front to back: the stack, the newest dialog first, then the other windows in the order they have.
std::vector<HWND> MergeModalOrder(const std::vector<HWND>& windows, const std::vector<HWND>& modalStack) {
  std::vector<HWND> result = modalStack;
  for (const HWND hWnd : windows)
    if (!Contains(modalStack, hWnd)) result.push_back(hWnd);
  std::erase_if(result, [](HWND hWnd) { return !IsWindow(hWnd) || IsWindowHidden(hWnd); });
  return result;
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
    if (parent && Contains(nativeWindows, parent)) restoreList.push_back(parent);
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

// A dialog that is shown and blocks this window alone; null if there is none.
HWND FindDialogOver(HWND owner) {
  for (const boost::weak_ptr<CWinWindow>& weakWindow : gWinWindows) {
    const boost::shared_ptr<CWinWindow> window = weakWindow.lock();
    if (window && window->IsModal() && window->GetOwnerHwnd() == owner && window->HasBeenShown())
      return window->GetHwnd();
  }
  return nullptr;
}

// Enables this window or, if a dialog blocks it, that one. Not while a dialog blocks the whole application:
// its end will.
void EnableUnlessBlocked(HWND hWnd) {
  for (std::size_t count = gWinWindows.size(); count > 0; --count) {
    const HWND dialog = FindDialogOver(hWnd);
    if (!dialog) break;
    hWnd = dialog;
  }
  const bool isAppBlocked = !gAppModalDialogStack.empty() && gAppModalDialogStack.front() != hWnd;
  if (!isAppBlocked || !IsRegisteredHwnd(hWnd)) EnableWindow(hWnd, TRUE);
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
  // From the bottom to the top, each to the top.
  for (auto it = nativeWindows.rbegin(); it != nativeWindows.rend(); ++it) {
    const HWND hWnd = *it;
    if (!IsWindow(hWnd)) continue;  // a client has ended it, in a restore or before
    MORVANE_ASSERT(!IsWindowHidden(hWnd));
    if (Contains(restoreList, hWnd)) {
      ShowWindow(hWnd, SW_RESTORE);
      logLine += " restore:";
      if (!IsWindow(hWnd)) continue;
    }
    mover.Move(hWnd, HWND_TOP, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE);
    logLine.append(" ").append(HandleText(hWnd));
  }
  if (activateFrontModal) {
    const auto front = std::find_if(nativeWindows.begin(), nativeWindows.end(), [](HWND hWnd) {
      return IsWindow(hWnd) && !IsWindowHidden(hWnd) && !IsWindowMinimized(hWnd);
    });
    if (front != nativeWindows.end()) {
      EnableUnlessBlocked(*front);
      SetForegroundWindow(*front);
      logLine += " activate: " + HandleText(*front);
    }
  }
  DebugPrint(logLine);
  if (activateFrontModal && !gAppModalDialogStack.empty()) SetActiveWindow(gAppModalDialogStack.front());
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
  const HWND top = gAppModalDialogStack.front();
  std::vector<HWND> windows = GetShownWindowsZ();
  std::erase(windows, top);
  const auto isTop = [top] { return !gAppModalDialogStack.empty() && gAppModalDialogStack.front() == top; };
  for (const HWND w : windows) {
    if (!isTop()) return;  // a callback has ended the dialog or opened another, and that has been seen to
    // An owner of the top dialog cannot be used, and of any other group the window that could be.
    const HWND blocked = UsableWindow(w, top);
    if (!IsRegisteredHwnd(blocked)) continue;
    EnableWindow(blocked, FALSE);
    if (isTop()) continue;
    // That has been seen to, but for this window: it was told before it was disabled.
    if (gAppModalDialogStack.empty() || gAppModalDialogStack.front() == blocked) EnableUnlessBlocked(blocked);
    return;
  }
  if (isTop()) EnableWindow(top, TRUE);
}

void RefreshAppModality() {
  BringAppToFrontAndRestoreZOrder(MergeModalOrder(GetShownWindowsZ(), gAppModalDialogStack), true);
}

// --- Attempts

bool OnModalActivationAttempt(HWND hWnd) {
  if (gAppModalDialogStack.empty()) return false;
  const bool isBlocked = hWnd != gAppModalDialogStack.front();
  BringAppToFrontAndRestoreZOrder(MergeModalOrder(GetShownWindowsZ(), gAppModalDialogStack), isBlocked);
  return isBlocked;
}

bool OnModalClickAttempt(HWND hWnd) {
  if (!OnModalActivationAttempt(hWnd)) return false;
  // Bringing the windows to the front can have ended dialogs.
  if (gAppModalDialogStack.empty()) return true;
  FLASHWINFO flash = {};
  flash.cbSize = sizeof(flash);
  flash.hwnd = gAppModalDialogStack.front();
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
  fMorvane->RebuildAllMenuBars();
}

bool AnyShownWindowIsAlwaysOnTop() {
  return std::any_of(gWinWindows.begin(), gWinWindows.end(), [](const auto& weakWindow) {
    const boost::shared_ptr<CWinWindow> window = weakWindow.lock();
    MORVANE_ASSERT(NULL != window);
    return window && window->IsVisible() && window->IsAlwaysOnTop();
  });
}

}  // namespace NSMorvane
