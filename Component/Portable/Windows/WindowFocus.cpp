#include "Component/Portable/Windows/WindowFocus.h"

#include <stdexcept>
#include <string>
#include <utility>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Views/FocusSearch.h"
#include "Interface/MorvaneWindow.h"

namespace NSMorvane {

namespace {

// More than any sensible behaviour needs: a view that refuses the focus, and a few that hand it on.
constexpr int kMaxChangesInARow = 32;

// Whatever the behaviour does, the walk goes on: changes of focus must run to their end.
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

// A change, from the request to the end.
class CWindowFocus::CRunningChange {
 public:
  CRunningChange(CWindowFocus& focus, CViewImpl* view) : fFocus(focus), fNumber(++focus.fChangeNumber) {
    fFocus.fNextView = view ? view->GetClientsViewReference() : TViewImplPtr();
    fFocus.fIsChanging = true;
    ++fFocus.fRunningChanges;
    ++fFocus.fChangesInARow;
  }
  ~CRunningChange() {
    // Nothing of one that has failed on its way is left behind.
    if (!IsOvertaken()) {
      fFocus.fIsChanging = false;
      fFocus.fNextView.reset();
    }
    if (--fFocus.fRunningChanges == 0) fFocus.fChangesInARow = 0;
  }
  CRunningChange(const CRunningChange&) = delete;
  CRunningChange& operator=(const CRunningChange&) = delete;

  // Another one has begun since, and has come to its end by now.
  bool IsOvertaken() const { return fNumber != fFocus.fChangeNumber; }

 private:
  CWindowFocus& fFocus;
  const std::uint32_t fNumber;
};

void CWindowFocus::SetView(CViewImpl* view) {
  if (view == GetNextView()) {
    // Somebody else in the window may have its keyboard.
    if (!fIsChanging && !fIsOnDuty && fWindow.IFocusWindow_IsActive()) OnActivated();
    return;
  }
  if (view && !view->IsLive()) MORVANE_THROW(std::invalid_argument(""));
  if (view && fChangesInARow >= kMaxChangesInARow) {
    DebugPrint("The focus has been passed on too often; it stays where it is.");
    MORVANE_THROW(XIllegalCallSequence());
  }
  Change(view, false);
}

void CWindowFocus::PassOn(CViewImpl* view) { SetView(fChangesInARow < kMaxChangesInARow ? view : nullptr); }

void CWindowFocus::Change(CViewImpl* view, bool isFromControl) {
  const CRunningChange change(*this, view);
  GoOffDuty();
  if (change.IsOvertaken()) return;
  // It may have been disabled while the window was not active: then it has not passed the focus on.
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
  // The old view may go with this, once the new one is in its place.
  const TViewImplPtr oldView = std::exchange(fView, std::exchange(fNextView, nullptr));
  fIsChanging = false;
  fIsFromControl = isFromControl;
  fIsOnDuty = fWindow.IFocusWindow_IsActive();
  if (!fView && fIsOnDuty) GiveKeyboard({});
  GoOnDuty();
  fWindow.IFocusWindow_OnFocusChanged();
}

// The change has failed.
void CWindowFocus::StayWithOldView() {
  fNextView.reset();
  fIsChanging = false;
  // It may be no longer what it was when it was told.
  if (fView && !CanKeepFocus()) fView.reset();
  fIsOnDuty = fIsOnDuty && fWindow.IFocusWindow_IsActive();
  if (!fView && fIsOnDuty) GiveKeyboard({});
  GoOnDuty();
  fWindow.IFocusWindow_OnFocusChanged();
}

void CWindowFocus::GiveKeyboard(const TNativeWindow& control) {
  // What the native windows tell of it is no news.
  const bool before = std::exchange(fIsGivingKeyboard, true);
  fWindow.IFocusWindow_GiveKeyboard(control);
  fIsGivingKeyboard = before;
}

bool CWindowFocus::CanKeepFocus() const {
  return fView->IsLive() && (fIsFromControl || fView->CanBeFocusTargetNow());
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
  // A walk that this one overtakes has left some behind.
  GoOffDuty();
  if (!isToBegin() || !fOnDutyViews.empty()) return;
  std::vector<TViewImplPtr> chain;
  for (TViewImplPtr view = fView; view; view = view->GetSuperView()) chain.push_back(view);
  fOnDutyViews.reserve(chain.size());
  const std::uint32_t walk = ++fWalkNumber;
  fIsGoingOnDuty = true;
  for (auto view = chain.rbegin(); view != chain.rend() && walk == fWalkNumber; ++view) {
    if (!(*view)->IsLive()) continue;  // released, it lives on behind its subviews only
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
  if (fIsChanging || !fView) return;  // the change under way sees to it
  // In a window that is not active a view keeps the focus while it cannot have it.
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
