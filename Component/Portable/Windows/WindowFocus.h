// The focus of one window: which view has it, and who has been told.
//
// A view is on duty when it has the focus and its window is active and has the keyboard; its super views are
// on duty with it. Everybody is told of each change once, and in turns: on duty from the root view down to
// the focus view, off duty the other way.
//
// Whoever is called may move the focus again, disable or release views, or have another window activated.
// That comes to its end within the call. What was under way before finds itself overtaken then, and ends
// where it is: the last wish holds. Behaviours that pass the focus on without end are stopped after a while.
#pragma once

#include <cstdint>
#include <vector>

#include "Component/Portable/Views/ViewImpl.h"
#include "Component/Portable/Views/ViewWindow.h"

namespace NSMorvane {

// The window as its focus sees it.
class IFocusWindow {
 public:
  // Whether the focus view has the keys, if there is one.
  virtual bool IFocusWindow_IsActive() = 0;
  // Puts the native focus on the control, or without one on the window itself.
  virtual void IFocusWindow_GiveKeyboard(const TNativeWindow& control) = 0;
  // A change is through.
  virtual void IFocusWindow_OnFocusChanged() = 0;

 protected:
  virtual ~IFocusWindow() = default;
};

class CWindowFocus {
 public:
  // Both are the window, and stay alive during each call.
  CWindowFocus(IFocusWindow& window, IImplFocusTools& tools) : fWindow(window), fTools(tools) {}
  CWindowFocus(const CWindowFocus&) = delete;
  CWindowFocus& operator=(const CWindowFocus&) = delete;

  // The focus view, or null.
  CViewImpl* GetView() const { return fView.get(); }
  // Where the change under way leads to; without one, the focus view.
  CViewImpl* GetNextView() const { return (fIsChanging ? fNextView : fView).get(); }

  // Null takes the focus away. std::invalid_argument for a view that has been released. XIllegalCallSequence
  // if behaviours pass the focus on without end. If the view's native control is not to be had, the focus
  // stays where it is, and the error is thrown.
  void SetView(CViewImpl* view);
  // For a view that cannot keep the focus: to `view`, or to none if that would be one change too many.
  void PassOn(CViewImpl* view);
  // For the window on its way out: lets go of all views, and tells nobody.
  void Forget();

  // --- What happens to the window

  // The focus view gets the keyboard. Throws what its behaviour answers when asked for a control.
  void OnActivated();
  void OnDeactivated();
  // Somebody else in the window has the keyboard, or the window has it back.
  void OnKeyboardLost();
  void OnKeyboardReturned();
  // The native control of a view has got the keyboard by itself. The view need not be focusable. Null: it has
  // lost it; the focus view stays what it is.
  void OnControlFocused(CViewImpl* view);

 private:
  class CRunningChange;

  void Change(CViewImpl* view, bool isFromControl);
  void StayWithOldView();
  void GiveKeyboard(const TNativeWindow& control);
  bool CanKeepFocus() const;
  // Both tell until they are overtaken.
  void GoOnDuty();
  void GoOffDuty();

  IFocusWindow& fWindow;
  IImplFocusTools& fTools;
  TViewImplPtr fView;
  TViewImplPtr fNextView;  // of the change under way
  bool fIsChanging = false;
  bool fIsFromControl = false;             // fView has come by its control
  bool fIsOnDuty = false;                  // the focus view, if there is one, has the keyboard
  std::vector<TViewImplPtr> fOnDutyViews;  // those that have been told so, outermost first
  bool fIsGoingOnDuty = false;             // more of them follow
  bool fIsGivingKeyboard = false;
  std::uint32_t fChangeNumber = 0;  // of the last change that has begun
  std::uint32_t fWalkNumber = 0;    // of the last walk that has begun to tell
  int fRunningChanges = 0;          // one within the other
  int fChangesInARow = 0;           // since the outermost of them has begun
};

// The native control that stands for the view, with a null handle if there is none. Throws what the behaviour
// answers.
TNativeWindow GetNativeFocusTarget(CViewImpl& view);

}  // namespace NSMorvane
