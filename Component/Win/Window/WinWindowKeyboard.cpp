// Keyboard dispatch of windows. Menu shortcuts go first: what is one never reaches a view. A key press then
// goes from the mouse capture along the focus chain to the window, the Tab key, the application and the
// shortcut of the window list, until somebody takes it.
#include "Component/Portable/Views/FocusSearch.h"
#include "Component/Portable/Views/ViewImpl.h"
#include "Component/Win/Input/WinKeyboard.h"
#include "Component/Win/Window/WindowHost.h"
#include "Component/Win/Window/WinWindow.h"
#include "Component/Win/Window/WinWindowListWindow.h"

namespace NSMorvane {

namespace {

// The last event that the listeners of modifier keys got.
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

std::optional<TWinKeyMessage> MakeKeyMessage(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
  const bool isDown = message == WM_KEYDOWN || message == WM_SYSKEYDOWN;
  const bool isUp = message == WM_KEYUP || message == WM_SYSKEYUP;
  constexpr std::uint8_t kNoKey = 255;
  TWinKeyMessage result = {};
  result.fHwnd = hwnd;
  result.fVirtualKey = LOBYTE(wParam);
  if (!(isDown || isUp) || result.fVirtualKey == kNoKey) return std::nullopt;
  result.fScanCode = LOBYTE(HIWORD(lParam));
  result.fIsRepeat = isDown && (HIWORD(lParam) & KF_REPEAT);
  result.fIsExtended = HIWORD(lParam) & KF_EXTENDED;
  return result;
}

// --- Before dispatch

bool CWinWindow::PreTranslateMessage(const MSG& message) {
  if (const auto key = MakeKeyMessage(message.hwnd, message.message, message.wParam, message.lParam))
    NotifyModifierListeners(*key);
  MSG copy = message;
  return fAcceleratorTable && TranslateAcceleratorW(fHwnd, fAcceleratorTable, &copy);
}

void CWinWindow::NotifyModifierListeners(const TWinKeyMessage& message) {
  if (message.fIsRepeat || !IsModifierVirtualKey(message.fVirtualKey)) return;
  TModifierKeysEvent event = {};
  event.fModifiers = GetCurrentModifiers();
  event.fTimeMS = GetMessageTimeMS();
  const TModifierKeysEvent previous = gLastModifierEvent;
  static std::uint32_t gEventCount = 0;
  const std::uint32_t number = ++gEventCount;
  if (const boost::shared_ptr<IMouseCapture> capture = fMouseCapture)
    MORVANE_CHECK(capture->IMouseCapture_OnModifiersChanged(previous, event));
  else
    fHost->NotifyModifierKeyListeners(previous, event);
  // Not if whoever was told has handled messages, and another event with them.
  if (number == gEventCount) gLastModifierEvent = event;
}

// --- The chain of a key press
//
// Every step tells whether it took the key. A failure ends the chain.

void CWinWindow::DispatchKeyDown(const TWinKeyMessage& message, bool& outHandled) {
  const TKeyEvent event = MakeKeyEvent(message);
  outHandled = OfferKeyToMouseCapture(event) || OfferKeyToFocusChain(event) || OnKeyDown(event) ||
               MoveFocusByTab(event) || OfferKeyToApplication(event) || OpenWindowListByKey(event);
}

bool CWinWindow::OfferKeyToMouseCapture(const TKeyEvent& event) {
  const boost::shared_ptr<IMouseCapture> capture = fMouseCapture;
  if (!capture) return false;
  TFlag handled = 0;
  MORVANE_CHECK(capture->IMouseCapture_OnKeyDown(event, handled));
  return handled != 0;
}

bool CWinWindow::OfferKeyToFocusChain(const TKeyEvent& event) {
  // A view that ends itself ends the walk.
  return OfferAlongFocusChain(true, [&](IViewBehavior& behavior, TFlag& outHandled) {
    MORVANE_CHECK(behavior.IViewBehavior_HandleKeyDown(event, outHandled));
  });
}

bool CWinWindow::OfferAlongFocusChain(bool endsWithView,
                                      const std::function<void(IViewBehavior&, TFlag&)>& offer) {
  if (!fFocus.GetView() || !fFocus.GetView()->IsLive()) return false;
  // Held for the walk, and its super views with it: views can end themselves and each other.
  const TViewImplPtr focusView = fFocus.GetView()->GetClientsViewReference();
  for (CViewImpl* view = focusView.get(); view; view = view->GetSuperView().get()) {
    IViewBehavior* const behavior = view->IsLive() ? view->GetBehavior() : nullptr;
    if (!behavior) continue;
    TFlag handled = 0;
    offer(*behavior, handled);
    if (handled != 0) return true;
    if (endsWithView && !view->IsLive()) return false;
  }
  return false;
}

bool CWinWindow::MoveFocusByTab(const TKeyEvent& event) {
  if (event.fPhysicalKey.fVirtualKey != VK_TAB) return false;
  const bool backwards = (event.fModifiers.fKeys & kModifierShift) != 0;
  CViewImpl* const anchor = fFocus.GetNextView();
  CViewImpl* const view = backwards ? FindPreviousFocusView(anchor, *this) : FindNextFocusView(anchor, *this);
  if (view) CWindowGlue_SetConceptualFocusView(view);
  return true;
}

bool CWinWindow::OfferKeyToApplication(const TKeyEvent& event) {
  IMorvaneRunBehavior* const behavior = fHost->GetBehavior();
  if (!behavior) return false;
  TFlag handled = 0;
  MORVANE_CHECK(behavior->IMorvaneRunBehavior_HandleKeyDown(event, handled));
  return handled != 0;
}

bool CWinWindow::OpenWindowListByKey(const TKeyEvent& event) {
  constexpr TKeyInterpretation kWindowListKey = {{u'w'}, {kModifierMask, 0}, 0};
  TFlag isWindowListKey = 0;
  MORVANE_CHECK(fHost->GetMorvane().IMorvane_CanKeyBeInterpretedAs(event.fPhysicalKey, event.fModifiers,
                                                                   kWindowListKey, isWindowListKey));
  if (!isWindowListKey) return false;
  OpenWindowList();
  return true;
}

// --- Releases

// Views are not told of them, and nobody takes them.
void CWinWindow::DispatchKeyUp(const TWinKeyMessage& message, bool&) {
  fHost->OnKeyReleased(PhysicalKeyOf(message));
}

}  // namespace NSMorvane
