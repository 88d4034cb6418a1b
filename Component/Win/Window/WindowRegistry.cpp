#include "Component/Win/Window/WindowRegistry.h"

#include <algorithm>
#include <functional>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Window/WinWindow.h"
#include "Component/Win/Window/WinWindowListWindow.h"

namespace NSMorvane {

namespace {

// A client may have put its window into another one.
bool IsTopLevel(HWND hwnd) { return GetAncestor(hwnd, GA_PARENT) == GetDesktopWindow(); }

}  // namespace

void CWindowRegistry::MakeRoomForOne() { fWindows.reserve(fWindows.size() + 1); }

void CWindowRegistry::Add(const boost::shared_ptr<CWinWindow>& window) {
  fWindows.push_back({window.get(), window});
}

void CWindowRegistry::Remove(const CWinWindow* window) {
  std::erase_if(fWindows, [&](const TEntry& entry) { return entry.fWindow == window; });
}

CWindowRegistry::TWindows CWindowRegistry::GetWindows() const {
  TWindows windows;
  for (const TEntry& entry : fWindows) {
    if (boost::shared_ptr<CWinWindow> window = entry.fReference.lock()) windows.push_back(std::move(window));
  }
  return windows;
}

bool CWindowRegistry::IsAnyWindow() const {
  return std::any_of(fWindows.begin(), fWindows.end(),
                     [](const TEntry& entry) { return !entry.fReference.expired(); });
}

bool CWindowRegistry::IsAnyOfKind(TWindowKind kind) const {
  return std::any_of(fWindows.begin(), fWindows.end(), [&](const TEntry& entry) {
    const boost::shared_ptr<CWinWindow> window = entry.fReference.lock();
    return window && window->GetWindowKind() == kind;
  });
}

bool CWindowRegistry::IsAnyAlwaysOnTop() const {
  return std::any_of(fWindows.begin(), fWindows.end(), [](const TEntry& entry) {
    const boost::shared_ptr<CWinWindow> window = entry.fReference.lock();
    MORVANE_ASSERT(NULL != window);
    return window && window->IsVisible() && window->IsAlwaysOnTop();
  });
}

CWinWindow* CWindowRegistry::Find(HWND hwnd) const {
  for (const TEntry& entry : fWindows)
    if (!entry.fReference.expired() && entry.fWindow->GetHwnd() == hwnd) return entry.fWindow;
  return nullptr;
}

// --- What is shown

bool CWindowRegistry::IsHidden(HWND hwnd) const {
  return std::find(fHidden.begin(), fHidden.end(), hwnd) != fHidden.end();
}

void CWindowRegistry::AddHidden(HWND hwnd) {
  if (!IsHidden(hwnd)) fHidden.push_back(hwnd);
}

void CWindowRegistry::RemoveHidden(HWND hwnd) {
  const auto it = std::find(fHidden.begin(), fHidden.end(), hwnd);
  if (it != fHidden.end()) fHidden.erase(it);
  // Sic: the text is output.
  MORVANE_ASSERT_TEXT(
      "sHidddenWindows.end() == std::find(sHidddenWindows.begin(), sHidddenWindows.end(), fHwnd)",
      !IsHidden(hwnd));
}

void CWindowRegistry::MakeRoomForHidden() { fHidden.reserve(fHidden.size() + 1); }

bool CWindowRegistry::IsShown(HWND hWnd) const {
  // What is visible exists.
  if (IsWindowVisible(hWnd)) return !IsHidden(hWnd);
  MORVANE_ASSERT(::IsWindow(hWnd));
  return false;
}

std::vector<HWND> CWindowRegistry::GetShownHwndsZ() const {
  std::vector<HWND> windows = GetTopLevelWindowsZ();
  // A window of another thread can have gone since it was listed.
  std::erase_if(windows,
                [this](HWND hwnd) { return IsWindowList(hwnd) || !IsWindowVisible(hwnd) || IsHidden(hwnd); });
  return windows;
}

CWindowRegistry::TWindows CWindowRegistry::GetVisibleWindowsZ() const {
  // Asked once for each window, and found by its handle: there may be hundreds of them.
  struct TShown {
    HWND fHwnd;
    const CWinWindow* fWindow;
  };
  std::vector<TShown> shown;
  shown.reserve(fWindows.size());
  for (const TEntry& entry : fWindows) {
    if (entry.fReference.expired()) continue;
    const HWND hwnd = entry.fWindow->GetHwnd();
    if (IsWindowVisible(hwnd) && !IsHidden(hwnd)) shown.push_back({hwnd, entry.fWindow});
  }
  TWindows windows;
  windows.reserve(shown.size());
  // A single window needs no order, for which the windows have to be listed.
  if (shown.size() < 2 && std::ranges::all_of(shown, IsTopLevel, &TShown::fHwnd)) {
    for (const TShown& each : shown) windows.push_back(each.fWindow->GetClientsWindowReference());
    return windows;
  }
  std::ranges::sort(shown, std::ranges::less(), &TShown::fHwnd);
  // All windows of the library belong to one thread.
  for (const HWND hwnd : GetThreadWindowsZ()) {
    const auto found = std::ranges::lower_bound(shown, hwnd, std::ranges::less(), &TShown::fHwnd);
    if (found != shown.end() && found->fHwnd == hwnd)
      windows.push_back(found->fWindow->GetClientsWindowReference());
  }
  return windows;
}

CWindowRegistry::TWindows CWindowRegistry::GetVisibleDocumentWindows() const {
  TWindows windows = GetVisibleWindowsZ();
  std::erase_if(windows, [](const boost::shared_ptr<CWinWindow>& documentWindow) {
    if (documentWindow->GetWindowKind() != kWindowKindDocument) return true;
    MORVANE_ASSERT(documentWindow->CheckInvariant());
    return false;
  });
  return windows;
}

void CWindowRegistry::ShowFloatingWindows(bool show) const {
  // Most applications have none, and listing the windows of the desktop is costly.
  if (!IsAnyOfKind(kWindowKindFloating)) return;
  const std::vector<HWND> handles = GetThreadWindowsZ();
  // The rearmost first, so that they keep their order.
  for (auto it = handles.rbegin(); it != handles.rend(); ++it) {
    const CWinWindow* const window = Find(*it);
    if (!window || window->GetWindowKind() != kWindowKindFloating || !window->HasBeenShown()) continue;
    const bool isVisible = (::GetWindowLongW(*it, GWL_STYLE) & WS_VISIBLE) != 0;
    if (isVisible != show) ::ShowWindow(*it, show ? SW_SHOWNA : SW_HIDE);
  }
}

void CWindowRegistry::ReleaseAll() {
  try {
    while (!fWindows.empty()) {
      const boost::shared_ptr<CWinWindow> window = fWindows.front().fReference.lock();
      if (window) {
        window->ReleaseWindow();
      } else {
        fWindows.erase(fWindows.begin());
      }
    }
  } catch (...) {
    MORVANE_UNREACHED();
  }
}

}  // namespace NSMorvane
