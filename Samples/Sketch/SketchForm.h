// The inside of a dialog: a background with controls on it, which button Return and Escape press, and letters
// with Alt. Dialogs of Sketch are made of its own small views, which work alike in every kind of window.
#pragma once

#include <Morvane.h>
#include <MorvaneDefaults.h>

#include <string>
#include <vector>

#include "SketchKeys.h"

namespace NSSketch {

class CSketchControl;
class CSketchButton;

class CSketchFormView : public NSMorvane::CDefaultViewBehavior {
 public:
  explicit CSketchFormView(NSMorvane::IView& view) : fView(view) {}
  NSMorvane::TError IViewBehavior_Draw(NSMorvane::IDrawTools& tools) override;

 private:
  NSMorvane::IView& fView;
};

// It belongs to the window's behaviour, which declares its controls after it.
class CSketchForm {
 public:
  // Controls are made under View(), and sized in coordinates of the form. Throws XFailed.
  CSketchForm(NSMorvane::IMorvane& morvane, NSMorvane::IWindow& window, NSMorvane::IView& rootView,
              const NSMorvane::TSize& size);

  // Makes a control at a place, behind those before it in the order of Tab.
  template <class TControl, class... TArguments>
  void Add(NSMorvane::CViewOf<TControl>& control, const NSMorvane::TRect& place, TArguments&&... arguments) {
    NSMorvane::TViewParams params = NSMorvane::ViewParams();
    params.fFlags |= NSMorvane::kViewMouseTrackable;
    if (TControl::kIsFocusable) params.fFlags |= NSMorvane::kViewFocusable;
    params.fRect = place;
    NSMorvane::ThrowIfFailed(control.Create(fMorvane, *fBackground.View(), "Control", params, *this,
                                            std::forward<TArguments>(arguments)...));
    Register(*control.operator->(), *control.View(), TControl::kIsFocusable);
  }
  // After the last control: the order of Tab, and the control that has the focus first.
  void Finish(NSMorvane::IView& first);
  // The buttons that Return and Escape press.
  void SetDefault(CSketchButton& button);
  void SetCancel(CSketchButton& button) { fCancel = &button; }
  bool IsDefault(const CSketchButton& button) const { return fDefault == &button; }

  // Whether letters go into a text field.
  bool IsTyping() const;
  // Has the fields take over what is typed.
  void Commit();
  // A key that the control with the focus did not want.
  bool Key(const NSMorvane::TKeyEvent& event);

  NSMorvane::IMorvane& Morvane() const { return fMorvane; }
  NSMorvane::IWindow& Window() const { return fWindow; }
  const NSMorvane::TSize& Size() const { return fSize; }

 private:
  struct TEntry {
    CSketchControl* fControl;
    NSMorvane::IView* fView;
    bool fIsFocusable;
  };

  void Register(CSketchControl& control, NSMorvane::IView& view, bool isFocusable);

  NSMorvane::IMorvane& fMorvane;
  NSMorvane::IWindow& fWindow;
  const NSMorvane::TSize fSize;
  std::vector<TEntry> fControls;
  CSketchButton* fDefault = nullptr;
  CSketchButton* fCancel = nullptr;
  NSMorvane::CViewOf<CSketchFormView> fBackground;
};

}  // namespace NSSketch
