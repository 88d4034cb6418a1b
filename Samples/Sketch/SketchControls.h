// The controls of dialogs: label, button, check box, colour swatches. Text fields have a file of their own.
//
// In the texts of labels, buttons and check boxes `_` marks the letter that, with Alt, goes to the control;
// that of a label to the control made after it.
#pragma once

#include <windows.h>

#include <Morvane.h>
#include <MorvaneDefaults.h>

#include <functional>
#include <string>

#include "SketchDocument.h"
#include "SketchForm.h"

namespace NSSketch {

class CSketchControl : public NSMorvane::CDefaultHitViewBehavior {
 public:
  CSketchControl(NSMorvane::IView& view, CSketchForm& form, std::u16string text);

  bool IsEnabled() const;
  void SetEnabled(bool enabled);
  void SetText(const std::u16string& text);
  // In lower case; 0 for none.
  char16_t Mnemonic() const;
  // What its letter does: takes the focus, unless said otherwise.
  virtual void Activate();
  // Whether it is a text, and letters go there.
  virtual bool IsTyping() const { return false; }
  // Takes over what is typed.
  virtual void Commit() {}

  NSMorvane::TError IViewBehavior_Draw(NSMorvane::IDrawTools& tools) override;
  NSMorvane::TError IViewBehavior_OnOnDutyFocusChanged(NSMorvane::TFlag gained) override;
  NSMorvane::TError IViewBehavior_OnEffectivelyEnabledChanged(NSMorvane::TFlag enabled) override;
  NSMorvane::TError IViewBehavior_OnMouseEnterExit(NSMorvane::TFlag entered) override;
  NSMorvane::TError IViewBehavior_HandleClick(const NSMorvane::TMouseEvent& event,
                                              NSMorvane::TFlag& outHandled) override;
  NSMorvane::TError IViewBehavior_OnMouseTracking(const NSMorvane::TMouseTracking& event,
                                                  NSMorvane::TMousePhase phase,
                                                  NSMorvane::TFlag& outHandled) override;
  NSMorvane::TError IViewBehavior_HandleKeyDown(const NSMorvane::TKeyEvent& event,
                                                NSMorvane::TFlag& outHandled) override;

 protected:
  virtual void Paint(HDC port, const RECT& box) = 0;
  // The left button went down on it.
  virtual void Press(const NSMorvane::TMouseEvent&) {}
  // False if the key is not its own.
  virtual bool Key(const TSketchKey&) { return false; }
  virtual void OnFocusChanged() {}

  bool HasFocus() const { return fHasFocus; }
  bool IsHot() const { return fIsHot; }  // the mouse is on it
  const std::u16string& Text() const { return fText; }
  CSketchForm& Form() const { return fForm; }
  void Invalidate();
  // The text, with its letter underlined.
  void DrawLabel(HDC port, const RECT& box, UINT format, HFONT font) const;

 private:
  CSketchForm& fForm;
  std::u16string fText;
  bool fHasFocus = false;
  bool fIsHot = false;
};

class CSketchLabel : public CSketchControl {
 public:
  static constexpr bool kIsFocusable = false;
  enum class TStyle { kPlain, kBold, kTitle, kQuiet };
  CSketchLabel(NSMorvane::IView& view, CSketchForm& form, std::u16string text, TStyle style = TStyle::kPlain)
      : CSketchControl(view, form, std::move(text)), fStyle(style) {}

 protected:
  void Paint(HDC port, const RECT& box) override;

 private:
  TStyle fStyle;
};

// Pressed with the mouse, where releasing it elsewhere takes it back, with the space bar, or with Return.
class CSketchButton : public CSketchControl {
 public:
  static constexpr bool kIsFocusable = true;
  CSketchButton(NSMorvane::IView& view, CSketchForm& form, std::u16string text, std::function<void()> action)
      : CSketchControl(view, form, std::move(text)), fAction(std::move(action)) {}
  ~CSketchButton() override;
  void Activate() override;

 protected:
  void Paint(HDC port, const RECT& box) override;
  void Press(const NSMorvane::TMouseEvent& event) override;
  bool Key(const TSketchKey& key) override;

 private:
  class CPress;
  std::function<void()> fAction;
  CPress* fPress = nullptr;  // the library's; null when the mouse does not hold it down
  bool fIsDown = false;
};

class CSketchCheckBox : public CSketchControl {
 public:
  static constexpr bool kIsFocusable = true;
  CSketchCheckBox(NSMorvane::IView& view, CSketchForm& form, std::u16string text,
                  std::function<void(bool)> onChange)
      : CSketchControl(view, form, std::move(text)), fOnChange(std::move(onChange)) {}
  bool IsChecked() const { return fIsChecked; }
  void SetChecked(bool checked);
  void Activate() override;

 protected:
  void Paint(HDC port, const RECT& box) override;
  void Press(const NSMorvane::TMouseEvent&) override { Activate(); }
  bool Key(const TSketchKey& key) override;

 private:
  std::function<void(bool)> fOnChange;
  bool fIsChecked = false;
};

// The colour of something, and others to choose from with the mouse or the arrow keys.
class CSketchSwatches : public CSketchControl {
 public:
  static constexpr bool kIsFocusable = true;
  CSketchSwatches(NSMorvane::IView& view, CSketchForm& form, std::function<void(TSketchColor)> onChange)
      : CSketchControl(view, form, {}), fOnChange(std::move(onChange)) {}
  static NSMorvane::TSize Size();
  TSketchColor Color() const { return fColor; }
  void SetColor(TSketchColor color);

 protected:
  void Paint(HDC port, const RECT& box) override;
  void Press(const NSMorvane::TMouseEvent& event) override;
  bool Key(const TSketchKey& key) override;

 private:
  void Choose(int index);

  std::function<void(TSketchColor)> fOnChange;
  TSketchColor fColor = 0;
};

}  // namespace NSSketch
