// The focus of one window: which view has it, and which views have been told.
//
// A view is on duty when it has the focus and its window is active and has the keyboard; its super views are
// on duty with it. Each view is told of each change once, on duty and off duty in turns: on duty from the
// root view down to the focus view, off duty in the opposite order.
//
// A behaviour that is called may move the focus again, disable or release views, or have another window
// activated. Such a nested change is completed within the call. The change that was in progress then finds
// that it has been overtaken, and stops: the last request wins. Behaviours that pass the focus on endlessly
// are stopped after a while.
#pragma once

#include <cstdint>
#include <vector>

#include "Component/Portable/Base/Scopes.h"
#include "Component/Portable/Views/ViewImpl.h"
#include "Component/Portable/Views/ViewWindow.h"

namespace NSMorvane {

// What the focus needs of the window.
class IFocusWindow {
 public:
  // Whether the window is active, so that the focus view, if there is one, gets the keys.
  virtual bool IFocusWindow_IsActive() = 0;
  // Moves the native focus to the control, or to the window itself if there is none.
  virtual void IFocusWindow_GiveKeyboard(const TNativeWindow& control) = 0;
  // Called when a change is complete.
  virtual void IFocusWindow_OnFocusChanged() = 0;

 protected:
  virtual ~IFocusWindow() = default;
};

class CWindowFocus : CNotCopied {
 public:
  // Both arguments are the window, which must stay alive during each call.
  CWindowFocus(IFocusWindow& window, IImplFocusTools& tools) : fWindow(window), fTools(tools) {}

  // The focus view, or null.
  CViewImpl* GetView() const { return fView.get(); }
  // The view that will have the focus after the change in progress; without a change, the focus view.
  CViewImpl* GetNextView() const { return (fIsChanging ? fNextView : fView).get(); }

  // Null removes the focus. Throws std::invalid_argument for a view that has been released, and
  // XIllegalCallSequence if behaviours pass the focus on endlessly. If the view fails when it is asked for
  // its native control, the focus stays where it is, and the error is thrown. The focus view gets the
  // keyboard again, wherever in the window that is.
  void SetView(CViewImpl* view);
  // Moves the focus to `view`, or removes it if that would be one change too many.
  void PassOn(CViewImpl* view);
  // Called by a window that is ending: drops all views, and tells none of them.
  void Forget();

  // --- What happens to the window

  // The focus view gets the keyboard. Throws the error of its behaviour if that fails when it is asked for
  // its control.
  void OnActivated();
  void OnDeactivated();
  // Another native window inside the window has the keyboard, or the window has it back.
  void OnKeyboardLost();
  void OnKeyboardReturned();
  // The native control of a view has got the keyboard by itself. The view need not be focusable. Null: a
  // control has lost the keyboard; the focus view stays the same.
  void OnControlFocused(CViewImpl* view);

 private:
  class CRunningChange;

  void Change(CViewImpl* view, bool isFromControl);
  void StayWithOldView();
  void ReturnKeyboard();
  void GiveKeyboard(const TNativeWindow& control);
  bool CanKeepFocus() const;
  // Both tell views until they are overtaken.
  void GoOnDuty();
  void GoOffDuty();

  IFocusWindow& fWindow;
  IImplFocusTools& fTools;
  TViewImplPtr fView;
  TViewImplPtr fNextView;  // of the change in progress
  bool fIsChanging = false;
  bool fIsFromControl = false;             // fView got the focus through its control
  bool fIsOnDuty = false;                  // the focus view, if there is one, has the keyboard
  std::vector<TViewImplPtr> fOnDutyViews;  // the views that have been told so, outermost first
  bool fIsGoingOnDuty = false;             // more of them will be told
  bool fIsGivingKeyboard = false;
  bool fIsReturningKeyboard = false;
  std::uint32_t fChangeNumber = 0;  // of the last change that has begun
  std::uint32_t fWalkNumber = 0;    // of the last walk over views that has begun
  int fRunningChanges = 0;          // nested in each other
  int fChangesInARow = 0;           // since the outermost of them has begun
};

// The native control of the view; a null handle if there is none. Throws the error of the behaviour.
TNativeWindow GetNativeFocusTarget(CViewImpl& view);

}  // namespace NSMorvane
