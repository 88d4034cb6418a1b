// The native side of the keyboard of a window. Menu shortcuts go first and never reach a view. KeyDispatch
// decides who gets all other key presses.
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

// Empty for messages that are not presses or releases of keys, and for the keys that drivers make up.
std::optional<TWinKeyMessage> MakeKeyMessage(UINT message, WPARAM wParam, LPARAM lParam);

class CWinWindowKeyboard : private IKeyWindow, CNotCopied {
 public:
  // All of them belong to the same window.
  CWinWindowKeyboard(const TWindowCore& window, IWindowEvents& events, const CMouseDispatch& mouse,
                     CWindowFocus& focus, IImplFocusTools& tools)
      : fWindow(window), fEvents(events), fMouse(mouse), fDispatch(*this, mouse, focus, tools) {}

  // Called before a message is dispatched: tells the mouse capture, or without one the listeners, of a
  // modifier key.
  void NotifyModifierListeners(const MSG& message);
  // Before a press of VK_PACKET: keeps the character, which is in the message that follows and stays there
  // for others. What other threads have sent is handled meanwhile.
  void FetchPacketCharacter() const;
  // True if somebody handled the key.
  bool OnPress(const TWinKeyMessage& message);
  // Only callbacks that wait for the release of this key are called; views are not told.
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
