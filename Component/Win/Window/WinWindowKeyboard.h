// The keyboard of a window on the side of the system. Menu shortcuts go first: what is one never reaches a
// view. The way of a key press from there on is that of KeyDispatch.
#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>

#include "Component/Portable/Base/Scopes.h"
#include "Component/Portable/Windows/KeyDispatch.h"
#include "Component/Win/Window/WinWindowCore.h"

namespace NSMorvane {

class IWindowEvents;

struct TWinKeyMessage {
  std::uint8_t fVirtualKey;
  std::uint8_t fScanCode;
  bool fIsRepeat;  // of a key that is held
  bool fIsExtended;
};

// Nothing for messages that are no presses or releases of keys, and for the keys that drivers make up.
std::optional<TWinKeyMessage> MakeKeyMessage(UINT message, WPARAM wParam, LPARAM lParam);

class CWinWindowKeyboard : private IKeyWindow, CNotCopied {
 public:
  // All of them belong to the same window.
  CWinWindowKeyboard(const TWindowCore& window, IWindowEvents& events, const CMouseDispatch& mouse,
                     CWindowFocus& focus, IImplFocusTools& tools)
      : fWindow(window), fEvents(events), fMouse(mouse), fDispatch(*this, mouse, focus, tools) {}

  // Before a message is dispatched: a modifier key is told to those who listen, or to the mouse capture.
  void NotifyModifierListeners(const MSG& message);
  // True if somebody took it.
  bool OnPress(const TWinKeyMessage& message);
  // Views are not told of it, and nobody takes it.
  void OnRelease(const TWinKeyMessage& message);

 private:
  bool IKeyWindow_OfferToWindow(const TKeyEvent& event) override;
  bool IKeyWindow_OfferToApplication(const TKeyEvent& event) override;
  bool IKeyWindow_OpenWindowList(const TKeyEvent& event) override;

  const TWindowCore& fWindow;
  IWindowEvents& fEvents;
  const CMouseDispatch& fMouse;
  CKeyDispatch fDispatch;
};

}  // namespace NSMorvane
