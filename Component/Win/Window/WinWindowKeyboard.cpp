#include "Component/Win/Window/WinWindowKeyboard.h"

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Base/PendingErrors.h"
#include "Component/Portable/Windows/MouseDispatch.h"
#include "Component/Win/Input/WinKeyboard.h"
#include "Component/Win/Window/WindowEvents.h"
#include "Component/Win/Window/WindowHost.h"
#include "Component/Win/Window/WinWindowListWindow.h"

namespace NSMorvane {

namespace {

// The last event that the modifier key listeners got. Process-wide, since there is one keyboard and the
// listeners are those of the application, whatever window has the keys.
TModifierKeysEvent gLastModifierEvent = {};

TPhysicalKeySpec PhysicalKeyOf(const TWinKeyMessage& message) {
  return {message.fVirtualKey, message.fScanCode, static_cast<std::uint16_t>(message.fIsExtended ? 1 : 0)};
}

TKeyEvent MakeKeyEvent(const TWinKeyMessage& message) {
  TKeyEvent event = {};
  event.fPhysicalKey = PhysicalKeyOf(message);
  event.fModifiers = GetCurrentModifiers();
  event.fIsRepeat = message.fIsRepeat ? 1 : 0;
  event.fTimeMS = GetMessageTimeMS();
  return event;
}

}  // namespace

std::optional<TWinKeyMessage> MakeKeyMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  const bool isDown = message == WM_KEYDOWN || message == WM_SYSKEYDOWN;
  const bool isUp = message == WM_KEYUP || message == WM_SYSKEYUP;
  constexpr std::uint8_t kNoKey = 255;
  TWinKeyMessage result = {};
  result.fVirtualKey = LOBYTE(wParam);
  if (!(isDown || isUp) || result.fVirtualKey == kNoKey) return std::nullopt;
  result.fScanCode = LOBYTE(HIWORD(lParam));
  result.fIsRepeat = isDown && (HIWORD(lParam) & KF_REPEAT);
  result.fIsExtended = HIWORD(lParam) & KF_EXTENDED;
  return result;
}

// --- Before dispatch

void CWinWindowKeyboard::NotifyModifierListeners(const MSG& message) {
  const auto key = MakeKeyMessage(message.message, message.wParam, message.lParam);
  if (!key || key->fIsRepeat || !IsModifierVirtualKey(key->fVirtualKey)) return;
  TModifierKeysEvent event = {};
  event.fModifiers = GetCurrentModifiers();
  event.fTimeMS = GetMessageTimeMS();
  const TModifierKeysEvent previous = gLastModifierEvent;
  // Process-wide, since it numbers the events of gLastModifierEvent.
  static std::uint32_t gEventCount = 0;
  const std::uint32_t number = ++gEventCount;
  if (const boost::shared_ptr<IMouseCapture> capture = fMouse.GetCapture()) {
    // A capture that fails must not keep the key from the window.
    const TError error =
        ErrorOf([&] { MORVANE_CHECK(capture->IMouseCapture_OnModifiersChanged(previous, event)); });
    if (error != kOK) KeepPendingError(error);
  } else {
    fWindow.fHost->NotifyModifierKeyListeners(previous, event);
  }
  // A listener may have handled messages, and with them a newer event, which is kept then.
  if (number == gEventCount) gLastModifierEvent = event;
}

// --- Messages

void CWinWindowKeyboard::FetchPacketCharacter() const {
  MSG next;
  const bool isThere = PeekMessageW(&next, fWindow.fHwnd, WM_CHAR, WM_CHAR, PM_NOREMOVE);
  gPacketCharacter = isThere ? static_cast<TChar>(next.wParam) : 0;
}

bool CWinWindowKeyboard::OnPress(const TWinKeyMessage& message) {
  return fDispatch.DispatchPress(MakeKeyEvent(message));
}

void CWinWindowKeyboard::OnRelease(const TWinKeyMessage& message) {
  fWindow.fHost->OnKeyReleased(PhysicalKeyOf(message));
}

// --- What the dispatch asks

bool CWinWindowKeyboard::IKeyWindow_OfferToWindow(const TKeyEvent& event) { return fEvents.OnKeyDown(event); }

bool CWinWindowKeyboard::IKeyWindow_OfferToApplication(const TKeyEvent& event) {
  IMorvaneRunBehavior* const behavior = fWindow.fHost->GetBehavior();
  if (!behavior) return false;
  TFlag handled = 0;
  MORVANE_CHECK(behavior->IMorvaneRunBehavior_HandleKeyDown(event, handled));
  return handled != 0;
}

bool CWinWindowKeyboard::IKeyWindow_OpenWindowList(const TKeyEvent& event) {
  // With all the modifier keys that this platform has.
  constexpr std::uint32_t kAllModifiers = kModifierShift | kModifierAlt | kModifierControl;
  constexpr TKeyInterpretation kWindowListKey = {{u'w'}, {kAllModifiers, 0}, 0};
  TFlag isWindowListKey = 0;
  MORVANE_CHECK(fWindow.fHost->GetMorvane().IMorvane_CanKeyBeInterpretedAs(
      event.fPhysicalKey, event.fModifiers, kWindowListKey, isWindowListKey));
  if (!isWindowListKey) return false;
  OpenWindowList(fWindow.fWindows);
  return true;
}

}  // namespace NSMorvane
