// The native side of focus and activation of a window. WindowFocus decides which view has the focus, and who
// is told.
//
// A view is on duty when it is the focus view and its window is active and has the keyboard.
#pragma once

#include <windows.h>

#include <vector>

#include "Component/Portable/Base/Scopes.h"
#include "Component/Portable/Views/ViewWindow.h"
#include "Component/Portable/Windows/WindowFocus.h"
#include "Component/Win/Window/WinWindowCore.h"

namespace NSMorvane {

class CWinWindowTooltips;
class IWindowEvents;

class CWinWindowFocus : private IFocusWindow, CNotCopied {
 public:
  // All of them belong to the same window.
  CWinWindowFocus(const TWindowCore& window, IWindowEvents& events, IImplFocusTools& tools,
                  CWinWindowTooltips& tooltips)
      : fWindow(window), fEvents(events), fTooltips(tooltips), fFocus(*this, tools) {}

  CWindowFocus& GetFocus() { return fFocus; }
  const CWindowFocus& GetFocus() const { return fFocus; }
  bool IsActive() const { return GetActiveWindow() == fWindow.fHwnd; }

  // --- Messages

  void OnActivated();
  void OnDeactivated();
  void OnReceivedKeyboard();
  void OnLostKeyboard();

 private:
  bool IFocusWindow_IsActive() override;
  void IFocusWindow_GiveKeyboard(const TNativeWindow& control) override;
  void IFocusWindow_OnFocusChanged() override;

  const TWindowCore& fWindow;
  IWindowEvents& fEvents;
  CWinWindowTooltips& fTooltips;
  CWindowFocus fFocus;
  bool fIsDeactivating = false;
  bool fIsToldActive = false;  // what the kind was told last
};

}  // namespace NSMorvane
