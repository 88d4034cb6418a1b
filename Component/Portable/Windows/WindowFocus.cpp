#include "Component/Portable/Windows/WindowFocus.h"

#include <stdexcept>
#include <string>
#include <utility>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Base/Scopes.h"
#include "Component/Portable/Views/FocusSearch.h"
#include "Interface/MorvaneWindow.h"

namespace NSMorvane {

namespace {

// More than sensible behaviours need, such as a view that refuses the focus and a few that pass it on.
constexpr int kMaxChangesInARow = 32;

// A failure of the behaviour is ignored, since changes of focus must be completed.
void NotifyOnDutyFocus(const CViewImpl& view, TFlag gained) {
  IViewBehavior* const behavior = view.GetBehavior();
  if (!behavior) return;
  TError error = kOK;
  try {
    error = behavior->IViewBehavior_OnOnDutyFocusChanged(gained);
  } catch (...) {
    error = kOtherError;
  }
  if (error != kOK)
    DebugPrint("Ignored error (" + std::to_string(static_cast<std::int32_t>(error)) +
               ") returned from IViewBehavior_OnOnDutyFocusChanged");
}

}  // namespace

TNativeWindow GetNativeFocusTarget(CViewImpl& view) {
  TNativeWindow control = {};
  IViewBehavior* const behavior = view.GetBehavior();
  if (behavior) MORVANE_CHECK(behavior->IViewBehavior_GetNativeFocusTarget(control));
  return control;
}

// --- Changes

// A change of the focus, from the request to the end.
class CWindowFocus::CRunningChange : CNotCopied {
 public:
  CRunningChange(CWindowFocus& focus, CViewImpl* view) : fFocus(focus), fNumber(++focus.fChangeNumber) {
    fFocus.fNextView = view ? view->GetClientsViewReference() : TViewImplPtr();
    fFocus.fIsChanging = true;
    ++fFocus.fRunningChanges;
    ++fFocus.fChangesInARow;
  }
  ~CRunningChange() {
    // A change that has failed leaves nothing behind.
    if (!IsOvertaken()) {
      fFocus.fIsChanging = false;
      fFocus.fNextView.reset();
    }
    if (--fFocus.fRunningChanges == 0) fFocus.fChangesInARow = 0;
  }

  // Another change has begun since then, and is complete by now.
  bool IsOvertaken() const { return fNumber != fFocus.fChangeNumber; }

 private:
  CWindowFocus& fFocus;
  const std::uint32_t fNumber;
};

void CWindowFocus::SetView(CViewImpl* view) {
  if (view == GetNextView()) return ReturnKeyboard();
  if (view && !view->IsLive()) MORVANE_THROW(std::invalid_argument(""));
  if (view && fChangesInARow >= kMaxChangesInARow) {
    DebugPrint("The focus has been passed on too often; it stays where it is.");
    MORVANE_THROW(XIllegalCallSequence());
  }
  Change(view, false);
}

// Another native window inside the window may have the keyboard, or the window itself that of a control. The
// view is not told again if it is on duty.
void CWindowFocus::ReturnKeyboard() {
  if (fIsChanging || fIsReturningKeyboard || !fWindow.IFocusWindow_IsActive()) return;
  const CFlagScope scope(fIsReturningKeyboard);
  OnActivated();
}

void CWindowFocus::PassOn(CViewImpl* view) { SetView(fChangesInARow < kMaxChangesInARow ? view : nullptr); }

void CWindowFocus::Change(CViewImpl* view, bool isFromControl) {
  const CRunningChange change(*this, view);
  GoOffDuty();
  if (change.IsOvertaken()) return;
  // A callback may have disabled the view. While the window is not active, that does not pass the focus on.
  const auto canTakeIt = [&] {
    return !view || (view->IsLive() && (isFromControl || view->CanBeFocusTargetNow()));
  };
  if (!canTakeIt()) return EjectFocus(fTools);
  if (view && !isFromControl && fWindow.IFocusWindow_IsActive()) {
    TNativeWindow control = {};
    try {
      control = GetNativeFocusTarget(*view);
    } catch (...) {
      if (!change.IsOvertaken()) StayWithOldView();
      MORVANE_RETHROW();
    }
    if (change.IsOvertaken()) return;
    GiveKeyboard(control);
    if (change.IsOvertaken()) return;
    if (!canTakeIt()) return EjectFocus(fTools);
  }
  // This holds the old view until the end of the change. The view may end then, when the new one is in its
  // place.
  const TViewImplPtr oldView = std::exchange(fView, std::exchange(fNextView, nullptr));
  fIsChanging = false;
  fIsFromControl = isFromControl;
  fIsOnDuty = fWindow.IFocusWindow_IsActive();
  if (!fView && fIsOnDuty) GiveKeyboard({});
  GoOnDuty();
  fWindow.IFocusWindow_OnFocusChanged();
}

// Called when the change has failed.
void CWindowFocus::StayWithOldView() {
  fNextView.reset();
  fIsChanging = false;
  // The old view may have been released or disabled after it was told.
  if (fView && !CanKeepFocus()) fView.reset();
  fIsOnDuty = fIsOnDuty && fWindow.IFocusWindow_IsActive();
  if (!fView && fIsOnDuty) GiveKeyboard({});
  GoOnDuty();
  fWindow.IFocusWindow_OnFocusChanged();
}

void CWindowFocus::GiveKeyboard(const TNativeWindow& control) {
  // What the native windows report about this is ignored.
  const bool before = std::exchange(fIsGivingKeyboard, true);
  fWindow.IFocusWindow_GiveKeyboard(control);
  fIsGivingKeyboard = before;
}

// A view that has it by way of its control need not be focusable.
bool CWindowFocus::CanKeepFocus() const {
  return fView->IsLive() && fView->IsEffectivelyEnabled() && (fIsFromControl || fView->CanBeFocusTargetNow());
}

void CWindowFocus::Forget() {
  ++fChangeNumber;
  ++fWalkNumber;
  fIsChanging = fIsOnDuty = fIsGoingOnDuty = false;
  fNextView.reset();
  fView.reset();
  fOnDutyViews.clear();
}

// --- On duty and off

void CWindowFocus::GoOnDuty() {
  const auto isToBegin = [this] { return fIsOnDuty && !fIsChanging && !fIsGoingOnDuty && fView; };
  if (!isToBegin() || (!fOnDutyViews.empty() && fOnDutyViews.back() == fView)) return;
  // A walk that was overtaken may have left some views on duty.
  GoOffDuty();
  if (!isToBegin() || !fOnDutyViews.empty()) return;
  std::vector<TViewImplPtr> chain;
  for (TViewImplPtr view = fView; view; view = view->GetSuperView()) chain.push_back(view);
  fOnDutyViews.reserve(chain.size());
  const std::uint32_t walk = ++fWalkNumber;
  fIsGoingOnDuty = true;
  for (auto view = chain.rbegin(); view != chain.rend() && walk == fWalkNumber; ++view) {
    if (!(*view)->IsLive()) continue;  // released: only its subviews keep it in memory
    fOnDutyViews.push_back(*view);
    NotifyOnDutyFocus(**view, 1);
  }
  if (walk == fWalkNumber) fIsGoingOnDuty = false;
}

void CWindowFocus::GoOffDuty() {
  const std::uint32_t walk = ++fWalkNumber;
  fIsGoingOnDuty = false;
  while (!fOnDutyViews.empty() && walk == fWalkNumber) {
    const TViewImplPtr view = std::move(fOnDutyViews.back());
    fOnDutyViews.pop_back();
    NotifyOnDutyFocus(*view, 0);
  }
}

// --- What happens to the window

void CWindowFocus::OnActivated() {
  fIsOnDuty = true;
  if (fIsChanging || !fView) return;  // the change in progress handles it
  // In an inactive window, a view keeps the focus even if it can no longer have it.
  if (!CanKeepFocus()) return EjectFocus(fTools);
  const TViewImplPtr view = fView;
  const std::uint32_t changeNumber = fChangeNumber;
  const TNativeWindow control = GetNativeFocusTarget(*view);
  if (changeNumber != fChangeNumber) return;
  GiveKeyboard(control);
  GoOnDuty();
}

void CWindowFocus::OnDeactivated() {
  fIsOnDuty = false;
  GoOffDuty();
}

void CWindowFocus::OnKeyboardLost() {
  if (!fIsGivingKeyboard) OnDeactivated();
}

void CWindowFocus::OnKeyboardReturned() {
  if (fIsGivingKeyboard || !fWindow.IFocusWindow_IsActive()) return;
  fIsOnDuty = true;
  GoOnDuty();
}

void CWindowFocus::OnControlFocused(CViewImpl* view) {
  if (view && (!view->IsLive() || (fIsChanging && view == fNextView.get()))) return;
  if (!view)
    OnKeyboardLost();
  else if (view == GetNextView())
    OnKeyboardReturned();
  else if (fChangesInARow < kMaxChangesInARow)
    return Change(view, true);
  fWindow.IFocusWindow_OnFocusChanged();
}

}  // namespace NSMorvane
