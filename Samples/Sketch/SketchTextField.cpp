#include "SketchTextField.h"

#include <algorithm>
#include <cstdlib>

#include "SketchCursors.h"
#include "SketchTheme.h"

namespace NSSketch {

using namespace NSMorvane;

namespace {

constexpr LONG kInset = 5;

}  // namespace

void CSketchTextField::SetValue(const std::u16string& text) {
  if (text == fLine.Text()) return;
  fLine.SetText(text);
  Invalidate();
}

LONG CSketchTextField::PlaceOf(HDC port, std::size_t index) const {
  return WidthOfText(port, fLine.Text().substr(0, index), TextFont());
}

void CSketchTextField::Paint(HDC port, const RECT& box) {
  FillArea(port, box, IsEnabled() ? 0xFFFFFF : kBarColor);
  FrameArea(port, box, HasFocus() ? kAccentColor : 0xB4BAC3);
  const RECT inside = {box.left + kInset, box.top + 3, box.right - kInset, box.bottom - 3};
  const LONG caret = PlaceOf(port, fLine.Caret());
  fScroll = HasFocus()
                ? std::clamp(fScroll, std::max<LONG>(caret - (inside.right - inside.left) + 1, 0), caret)
                : 0;
  const CSavedContext saved(port);
  ::IntersectClipRect(port, inside.left, inside.top, inside.right + 1, inside.bottom);
  const LONG left = inside.left - fScroll;
  if (HasFocus())
    FillArea(port,
             {left + PlaceOf(port, fLine.SelectionStart()), inside.top,
              left + PlaceOf(port, fLine.SelectionEnd()), inside.bottom},
             0xBBD3F9);
  DrawTextLine(port, fLine.Text(), {left, inside.top, left + 4000, inside.bottom}, TextFont(),
               IsEnabled() ? kTextColor : 0xA8AEB8, DT_LEFT | DT_VCENTER);
  if (HasFocus()) FillArea(port, {left + caret, inside.top, left + caret + 1, inside.bottom}, kTextColor);
}

void CSketchTextField::Press(const TMouseEvent& event) {
  if (event.fType == kMouseEventDoubleClick) {
    fLine.SelectAll();
  } else {
    const HDC screen = ::GetDC(nullptr);
    const LONG place = event.fPosition.fX - RectOf(fView).fLeft - kInset + fScroll;
    std::size_t nearest = 0;
    for (std::size_t i = 1; i <= fLine.Text().size(); ++i)
      if (std::abs(PlaceOf(screen, i) - place) < std::abs(PlaceOf(screen, nearest) - place)) nearest = i;
    ::ReleaseDC(nullptr, screen);
    fLine.SetCaret(nearest, (event.fModifiers.fKeys & kModifierShift) != 0);
  }
  Invalidate();
}

bool CSketchTextField::Key(const TSketchKey& key) {
  const std::u16string before = fLine.Text();
  if (!EditWithKey(fLine, key)) return false;
  if (fLine.Text() != before) OnTyped();
  Invalidate();
  return true;
}

// Who comes in by Tab types over what is there.
void CSketchTextField::OnFocusChanged() {
  if (HasFocus()) fLine.SelectAll();
}

IMouseShape* CSketchTextField::IViewBehavior_GetMouseShape(const TMouseShapeRequest&, TMousePhase phase,
                                                           TFlag& outHandled, TError& outError) {
  outError = kOK;
  outHandled = phase == kMousePhaseNormal ? 1 : 0;
  return outHandled == 1 ? MakeMouseShape(Form().Morvane(), TSketchCursor::kText, outError) : nullptr;
}

// --- Numbers

CSketchNumberField::CSketchNumberField(IView& view, CSketchForm& form, std::int32_t least, std::int32_t most,
                                       std::function<void(std::int32_t)> onNumber)
    : CSketchTextField(view, form, {}), fLeast(least), fMost(most), fOnNumber(std::move(onNumber)) {}

void CSketchNumberField::SetNumber(std::int32_t number) {
  fNumber = number;
  SetValue(AsciiText(std::to_string(number)));
}

void CSketchNumberField::Change(std::int32_t number) {
  number = std::clamp(number, fLeast, fMost);
  const bool isNew = number != fNumber;
  SetNumber(number);
  if (isNew) fOnNumber(number);
}

void CSketchNumberField::Commit() {
  if (Value() == AsciiText(std::to_string(fNumber))) return;  // which may lie beyond the limits
  std::string digits;
  for (const char16_t c : Value()) digits += c < 128 ? static_cast<char>(c) : '?';
  char* end = nullptr;
  const long long number = std::strtoll(digits.c_str(), &end, 10);
  const bool isNumber = !digits.empty() && *end == '\0';
  Change(isNumber ? static_cast<std::int32_t>(std::clamp<long long>(number, fLeast, fMost)) : fNumber);
}

bool CSketchNumberField::Key(const TSketchKey& key) {
  if (key.fCharacter == kKeyReturn) {
    Commit();
    fLine.SelectAll();
    Invalidate();
    return false;  // and the default button is pressed
  }
  if (key.fCharacter == kKeyCharUp || key.fCharacter == kKeyCharDown) {
    Commit();
    const std::int32_t step = key.fShift ? 10 : 1;
    Change(fNumber + (key.fCharacter == kKeyCharUp ? step : -step));
    fLine.SelectAll();
    return true;
  }
  const bool isDigit = (key.fCharacter >= u'0' && key.fCharacter <= u'9') || key.fCharacter == u'-';
  return (!key.IsLetter() || isDigit) && CSketchTextField::Key(key);
}

void CSketchNumberField::OnFocusChanged() {
  CSketchTextField::OnFocusChanged();
  if (!HasFocus()) Commit();
}

}  // namespace NSSketch
