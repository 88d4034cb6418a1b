#include "SketchControls.h"

#include <windows.h>

#include <algorithm>
#include <iterator>
#include <memory>

#include "SketchTheme.h"

namespace NSSketch {

using namespace NSMorvane;

namespace {

constexpr TSketchColor kFieldColor = 0xFFFFFF;
constexpr TSketchColor kFieldEdgeColor = 0xB4BAC3;
constexpr TSketchColor kDisabledColor = 0xA8AEB8;

bool IsInside(const TPoint& point, const TRect& rect) {
  return point.fX >= rect.fLeft && point.fX < rect.fRight && point.fY >= rect.fTop && point.fY < rect.fBottom;
}

RECT Shrunk(const RECT& box, LONG by) {
  return {box.left + by, box.top + by, box.right - by, box.bottom - by};
}

}  // namespace

// --- All controls

CSketchControl::CSketchControl(IView& view, CSketchForm& form, std::u16string text)
    : CDefaultHitViewBehavior(view), fForm(form), fText(std::move(text)) {}

bool CSketchControl::IsEnabled() const {
  TFlag enabled = 0;
  return fView.IView_IsEffectivelyEnabled(enabled) == kOK && enabled == 1;
}

void CSketchControl::SetEnabled(bool enabled) {
  TViewParams params = ViewParams();
  ThrowIfFailed(fView.IView_GetParams(params));
  params.fFlags = enabled ? params.fFlags | kViewEnabled : params.fFlags & ~kViewEnabled;
  ThrowIfFailed(fView.IView_SetParams(params));
}

void CSketchControl::SetText(const std::u16string& text) {
  if (text == fText) return;
  fText = text;
  Invalidate();
}

char16_t CSketchControl::Mnemonic() const {
  const std::size_t mark = fText.find(u'_');
  if (mark == std::u16string::npos || mark + 1 >= fText.size()) return 0;
  const char16_t letter = fText[mark + 1];
  return letter >= u'A' && letter <= u'Z' ? static_cast<char16_t>(letter + (u'a' - u'A')) : letter;
}

void CSketchControl::Activate() { ThrowIfFailed(fForm.Window().IWindow_SetConceptualFocusView(&fView)); }

void CSketchControl::Invalidate() { fForm.Morvane().IMorvane_InvalidateView(fView, RectOf(fView)); }

void CSketchControl::DrawLabel(HDC port, const RECT& box, UINT format, HFONT font) const {
  std::u16string text;
  for (const char16_t c : fText) {
    if (c == u'&') text += c;
    text += c == u'_' ? u'&' : c;
  }
  const CSavedContext saved(port);
  ::SelectObject(port, font);
  ::SetBkMode(port, TRANSPARENT);
  ::SetTextColor(port, NativeColor(IsEnabled() ? kTextColor : kDisabledColor));
  RECT area = box;
  ::DrawTextW(port, WideText(text), static_cast<int>(text.size()), &area,
              format | DT_SINGLELINE | DT_VCENTER);
}

TError CSketchControl::IViewBehavior_Draw(IDrawTools& tools) {
  return Guarded([&] {
    const COpenPort port(tools);
    Paint(port, NativeRect(RectOf(fView)));
    return TError{kOK};
  });
}

TError CSketchControl::IViewBehavior_OnOnDutyFocusChanged(TFlag gained) {
  return Guarded([&] {
    fHasFocus = gained == 1;
    OnFocusChanged();
    Invalidate();
    return TError{kOK};
  });
}

TError CSketchControl::IViewBehavior_OnEffectivelyEnabledChanged(TFlag) {
  Invalidate();
  return kOK;
}

TError CSketchControl::IViewBehavior_OnMouseEnterExit(TFlag entered) {
  fIsHot = entered == 1;
  Invalidate();
  return kOK;
}

// A control that is disabled while it has the focus keeps it, and gets keys; and a press has taken the focus
// from a field, which may have had it disabled.
TError CSketchControl::IViewBehavior_HandleClick(const TMouseEvent& event, TFlag& outHandled) {
  outHandled = event.fType == kMouseEventClick || event.fType == kMouseEventDoubleClick ? 1 : 0;
  if (outHandled == 0 || event.fButtons != 1) return kOK;
  return Guarded([&] {
    if (IsEnabled()) Press(event);
    return TError{kOK};
  });
}

TError CSketchControl::IViewBehavior_OnMouseTracking(const TMouseTracking&, TMousePhase phase,
                                                     TFlag& outHandled) {
  outHandled = phase == kMousePhaseNormal ? 1 : 0;
  return kOK;
}

TError CSketchControl::IViewBehavior_HandleKeyDown(const TKeyEvent& event, TFlag& outHandled) {
  outHandled = 0;
  return Guarded([&] {
    outHandled = IsEnabled() && Key(MeaningOf(fForm.Morvane(), event)) ? 1 : 0;
    return TError{kOK};
  });
}

// --- Label

void CSketchLabel::Paint(HDC port, const RECT& box) {
  if (fStyle == TStyle::kQuiet)
    DrawTextLine(port, Text(), box, TextFont(), kQuietTextColor, DT_LEFT | DT_VCENTER | DT_END_ELLIPSIS);
  else
    DrawLabel(port, box, DT_LEFT | DT_END_ELLIPSIS,
              fStyle == TStyle::kBold    ? BoldFont()
              : fStyle == TStyle::kTitle ? TitleFont()
                                         : TextFont());
}

// --- Button

// The mouse, while it holds a button down.
class CSketchButton::CPress : public CDefaultMouseCapture {
 public:
  explicit CPress(CSketchButton& button) : fButton(&button) {}
  ~CPress() override {
    if (!fButton) return;
    fButton->fPress = nullptr;
    SetDown(false);
  }
  void Forget() { fButton = nullptr; }

  TError IMouseCapture_OnMouseMove(const TMouseTracking& event) override {
    if (fButton) SetDown(IsInside(event.fState.fPosition, RectOf(fButton->fView)));
    return kOK;
  }
  TError IMouseCapture_OnMouseUp(const TMouseEvent& event) override {
    return Guarded([&] {
      if (!fButton || event.fButtons != 1) return TError{kOK};
      IMorvane& morvane = fButton->Form().Morvane();
      CSketchButton& button = *fButton;
      const bool isInside = IsInside(event.fPosition, RectOf(button.fView));
      ThrowIfFailed(morvane.IMorvane_ReleaseMouseCapture());
      if (isInside) button.fAction();
      return TError{kOK};
    });
  }

 private:
  void SetDown(bool down) {
    if (fButton->fIsDown == down) return;
    fButton->fIsDown = down;
    fButton->Invalidate();
  }
  CSketchButton* fButton;
};

CSketchButton::~CSketchButton() {
  if (!fPress) return;
  fPress->Forget();
  Form().Morvane().IMorvane_ReleaseMouseCapture();
}

void CSketchButton::Activate() {
  const std::function<void()> action = fAction;  // which may end this button
  action();
}

void CSketchButton::Press(const TMouseEvent&) {
  // The system has the mouse while it moves the window.
  if (::GetCapture()) return;
  auto press = std::make_unique<CPress>(*this);
  ThrowIfFailed(Form().Morvane().IMorvane_AllocateMouseCapture(&Form().Window(), press.get()));
  fPress = press.release();
  fIsDown = true;
  Invalidate();
}

bool CSketchButton::Key(const TSketchKey& key) {
  if (!key.IsPlain() || (key.fCharacter != u' ' && key.fCharacter != kKeyReturn)) return false;
  Activate();
  return true;
}

void CSketchButton::Paint(HDC port, const RECT& box) {
  const bool isAccent = Form().IsDefault(*this) || HasFocus();
  FillArea(port, box, fIsDown ? kAccentTintColor : IsHot() && IsEnabled() ? 0xFAFBFC : kFieldColor);
  FrameArea(port, box, isAccent && IsEnabled() ? kAccentColor : kFieldEdgeColor);
  if (HasFocus()) FrameArea(port, Shrunk(box, 1), kAccentColor);
  DrawLabel(port, box, DT_CENTER, TextFont());
}

// --- Check box

void CSketchCheckBox::SetChecked(bool checked) {
  if (checked == fIsChecked) return;
  fIsChecked = checked;
  Invalidate();
}

void CSketchCheckBox::Activate() {
  CSketchControl::Activate();
  SetChecked(!fIsChecked);
  fOnChange(fIsChecked);
}

bool CSketchCheckBox::Key(const TSketchKey& key) {
  if (!key.IsPlain() || key.fCharacter != u' ') return false;
  Activate();
  return true;
}

void CSketchCheckBox::Paint(HDC port, const RECT& box) {
  const LONG top = (box.top + box.bottom) / 2 - 7;
  const RECT square = {box.left + 1, top, box.left + 15, top + 14};
  FillArea(port, square, kFieldColor);
  FrameArea(port, square, HasFocus() ? kAccentColor : kFieldEdgeColor);
  if (HasFocus()) FrameArea(port, Shrunk(square, 1), kAccentColor);
  if (fIsChecked) {
    const CGdiObject<HPEN> pen(
        ::CreatePen(PS_SOLID, 2, NativeColor(IsEnabled() ? kAccentColor : kDisabledColor)));
    const CSavedContext saved(port);
    ::SelectObject(port, pen.Get());
    const POINT tick[] = {
        {square.left + 3, top + 7}, {square.left + 6, top + 10}, {square.left + 11, top + 4}};
    ::Polyline(port, tick, 3);
  }
  DrawLabel(port, {box.left + 22, box.top, box.right, box.bottom}, DT_LEFT, TextFont());
}

// --- Swatches

namespace {

constexpr TSketchColor kSwatchColors[] = {0x202428, 0x5A6270, 0x8793A6, 0xC9D1DC, 0xFFFFFF, 0x8E4A2F,
                                          0xC0392B, 0xE67E22, 0xF2C14E, 0xFFF3B0, 0x27704A, 0x5BA85A,
                                          0x2F6FDE, 0x7FB2F0, 0x14213D, 0x7D5BA6};
constexpr int kColumns = 8;
constexpr int kCellSize = 18;
constexpr int kCurrentWidth = 36;
constexpr int kGap = 6;

RECT CellBox(const RECT& box, int index) {
  const LONG left = box.left + kCurrentWidth + kGap + kCellSize * (index % kColumns);
  const LONG top = box.top + kCellSize * (index / kColumns);
  return {left, top, left + kCellSize, top + kCellSize};
}

}  // namespace

TSize CSketchSwatches::Size() { return {kCurrentWidth + kGap + kColumns * kCellSize, 2 * kCellSize}; }

void CSketchSwatches::SetColor(TSketchColor color) {
  if (color == fColor) return;
  fColor = color;
  Invalidate();
}

void CSketchSwatches::Choose(int index) {
  if (index < 0 || index >= static_cast<int>(std::size(kSwatchColors))) return;
  SetColor(kSwatchColors[index]);
  fOnChange(fColor);
}

void CSketchSwatches::Press(const TMouseEvent& event) {
  for (int i = 0; i < static_cast<int>(std::size(kSwatchColors)); ++i) {
    const RECT cell = CellBox(NativeRect(RectOf(fView)), i);
    if (IsInside(event.fPosition, {cell.left, cell.top, cell.right, cell.bottom})) Choose(i);
  }
}

bool CSketchSwatches::Key(const TSketchKey& key) {
  if (!key.IsPlain() || key.fCharacter < kKeyCharUp || key.fCharacter > kKeyCharRight) return false;
  const auto* const found = std::find(std::begin(kSwatchColors), std::end(kSwatchColors), fColor);
  const int index = static_cast<int>(found - std::begin(kSwatchColors));
  if (found == std::end(kSwatchColors))
    Choose(0);
  else if (key.fCharacter == kKeyCharLeft || key.fCharacter == kKeyCharRight)
    Choose(index + (key.fCharacter == kKeyCharLeft ? -1 : 1));
  else
    Choose(index + (key.fCharacter == kKeyCharUp ? -kColumns : kColumns));
  return true;
}

void CSketchSwatches::Paint(HDC port, const RECT& box) {
  const auto shade = [&](TSketchColor color) {
    return IsEnabled() ? color : MixColors(color, kBarColor, 192);
  };
  const RECT current = {box.left, box.top, box.left + kCurrentWidth, box.bottom};
  FillArea(port, current, shade(fColor));
  FrameArea(port, current, HasFocus() ? kAccentColor : kFieldEdgeColor);
  if (HasFocus()) FrameArea(port, Shrunk(current, 1), kAccentColor);
  for (int i = 0; i < static_cast<int>(std::size(kSwatchColors)); ++i) {
    const RECT cell = CellBox(box, i);
    const bool isCurrent = kSwatchColors[i] == fColor;
    FillArea(port, Shrunk(cell, 1), shade(kSwatchColors[i]));
    FrameArea(port, Shrunk(cell, 1), isCurrent && IsEnabled() ? kAccentColor : kFieldEdgeColor);
    if (isCurrent && IsEnabled()) FrameArea(port, cell, kAccentColor);
  }
}

}  // namespace NSSketch
