// Fields of dialogs that are typed into: texts, and whole numbers.
#pragma once

#include "SketchControls.h"
#include "SketchLineEdit.h"

namespace NSSketch {

class CSketchTextField : public CSketchControl {
 public:
  static constexpr bool kIsFocusable = true;
  // `onChange` is called after each change by the user.
  CSketchTextField(NSMorvane::IView& view, CSketchForm& form, std::function<void(std::u16string)> onChange)
      : CSketchControl(view, form, {}), fOnChange(std::move(onChange)) {}
  const std::u16string& Value() const { return fLine.Text(); }
  void SetValue(const std::u16string& text);
  bool IsTyping() const override { return HasFocus(); }

  NSMorvane::IMouseShape* IViewBehavior_GetMouseShape(const NSMorvane::TMouseShapeRequest& request,
                                                      NSMorvane::TMousePhase phase,
                                                      NSMorvane::TFlag& outHandled,
                                                      NSMorvane::TError& outError) override;

 protected:
  void Paint(HDC port, const RECT& box) override;
  void Press(const NSMorvane::TMouseEvent& event) override;
  bool Key(const TSketchKey& key) override;
  void OnFocusChanged() override;
  virtual void OnTyped() { fOnChange(fLine.Text()); }

  CSketchLineEdit fLine;

 private:
  LONG PlaceOf(HDC port, std::size_t index) const;

  std::function<void(std::u16string)> fOnChange;
  LONG fScroll = 0;  // how far the text is moved to the left, so that the caret can be seen
};

// A whole number within limits. What is typed counts when the focus leaves, or with Return; the arrow keys up
// and down change it by one, with Shift by ten, at once.
class CSketchNumberField : public CSketchTextField {
 public:
  CSketchNumberField(NSMorvane::IView& view, CSketchForm& form, std::int32_t least, std::int32_t most,
                     std::function<void(std::int32_t)> onNumber);
  std::int32_t Number() const { return fNumber; }
  void SetNumber(std::int32_t number);
  // Takes what is typed; what is no number goes back to the one before.
  void Commit() override;

 protected:
  bool Key(const TSketchKey& key) override;
  void OnFocusChanged() override;
  void OnTyped() override {}

 private:
  void Change(std::int32_t number);

  const std::int32_t fLeast;
  const std::int32_t fMost;
  std::function<void(std::int32_t)> fOnNumber;
  std::int32_t fNumber = 0;
};

}  // namespace NSSketch
