#include "Component/Portable/Windows/KeyDispatch.h"

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Views/FocusChain.h"
#include "Component/Portable/Views/FocusSearch.h"
#include "Component/Portable/Windows/MouseDispatch.h"

namespace NSMorvane {

namespace {

constexpr std::uint8_t kTabKey = 9;

}  // namespace

bool CKeyDispatch::DispatchPress(const TKeyEvent& event) {
  return OfferToCapture(event) || OfferToFocusChain(event) || fWindow.IKeyWindow_OfferToWindow(event) ||
         MoveFocusByTab(event) || fWindow.IKeyWindow_OfferToApplication(event) ||
         fWindow.IKeyWindow_OpenWindowList(event);
}

bool CKeyDispatch::OfferToCapture(const TKeyEvent& event) {
  const boost::shared_ptr<IMouseCapture> capture = fMouse.GetCapture();
  if (!capture) return false;
  TFlag handled = 0;
  MORVANE_CHECK(capture->IMouseCapture_OnKeyDown(event, handled));
  return handled != 0;
}

bool CKeyDispatch::OfferToFocusChain(const TKeyEvent& event) {
  return OfferAlongFocusChain(fFocus.GetView(), TFocusWalk::kKey,
                              [&](IViewBehavior& behavior, TFlag& outHandled) {
                                MORVANE_CHECK(behavior.IViewBehavior_HandleKeyDown(event, outHandled));
                              });
}

// Tab is handled even if there is no view to go to.
bool CKeyDispatch::MoveFocusByTab(const TKeyEvent& event) {
  if (event.fPhysicalKey.fVirtualKey != kTabKey) return false;
  const bool backwards = (event.fModifiers.fKeys & kModifierShift) != 0;
  CViewImpl* const anchor = fFocus.GetNextView();
  CViewImpl* const view =
      backwards ? FindPreviousFocusView(anchor, fTools) : FindNextFocusView(anchor, fTools);
  if (view) fFocus.SetView(view);
  return true;
}

}  // namespace NSMorvane
