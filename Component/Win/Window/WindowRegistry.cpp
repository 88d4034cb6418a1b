#include "Component/Win/Window/WindowRegistry.h"

#include <algorithm>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Window/WinWindow.h"

namespace NSMorvane {

CWindowRegistry* gWindowRegistry = nullptr;

void CWindowRegistry::MakeRoomForOne() { fWindows.reserve(fWindows.size() + 1); }

void CWindowRegistry::Add(const boost::shared_ptr<CWinWindow>& window) { fWindows.push_back(window); }

void CWindowRegistry::Remove(const CWinWindow* window) {
  std::erase_if(fWindows, [&](const auto& entry) { return entry.lock().get() == window; });
}

CWindowRegistry::TWindows CWindowRegistry::GetWindows() const {
  TWindows windows;
  for (const boost::weak_ptr<CWinWindow>& entry : fWindows) {
    if (boost::shared_ptr<CWinWindow> window = entry.lock()) windows.push_back(std::move(window));
  }
  return windows;
}

bool CWindowRegistry::IsAnyWindow() const {
  return std::any_of(fWindows.begin(), fWindows.end(), [](const auto& entry) { return !entry.expired(); });
}

bool CWindowRegistry::IsAnyOfKind(TWindowKind kind) const {
  return std::any_of(fWindows.begin(), fWindows.end(), [&](const auto& entry) {
    const boost::shared_ptr<CWinWindow> window = entry.lock();
    return window && window->GetWindowKind() == kind;
  });
}

bool CWindowRegistry::IsAnyAlwaysOnTop() const {
  return std::any_of(fWindows.begin(), fWindows.end(), [](const auto& entry) {
    const boost::shared_ptr<CWinWindow> window = entry.lock();
    MORVANE_ASSERT(NULL != window);
    return window && window->IsVisible() && window->IsAlwaysOnTop();
  });
}

CWinWindow* CWindowRegistry::Find(HWND hwnd) const {
  for (const boost::weak_ptr<CWinWindow>& entry : fWindows) {
    const boost::shared_ptr<CWinWindow> window = entry.lock();
    if (window && window->GetHwnd() == hwnd) return window.get();
  }
  return nullptr;
}

CWindowRegistry::TWindows CWindowRegistry::GetVisibleWindowsZ() const {
  TWindows windows;
  for (const HWND hwnd : GetShownWindowsZ()) {
    if (const CWinWindow* const window = Find(hwnd)) windows.push_back(window->GetClientsWindowReference());
  }
  return windows;
}

CWindowRegistry::TWindows CWindowRegistry::GetVisibleDocumentWindows() const {
  TWindows windows;
  for (const boost::shared_ptr<CWinWindow>& documentWindow : GetVisibleWindowsZ()) {
    if (documentWindow->GetWindowKind() != kWindowKindDocument) continue;
    MORVANE_ASSERT(documentWindow->CheckInvariant());
    if (documentWindow->IsVisible()) windows.push_back(documentWindow);
  }
  return windows;
}

void CWindowRegistry::ReleaseAll() {
  try {
    while (!fWindows.empty()) {
      const boost::shared_ptr<CWinWindow> window = fWindows.front().lock();
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
