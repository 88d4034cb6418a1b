#include "SketchDialogs.h"

#include <windows.h>

#include <MorvaneWinExtensions.h>

#include <algorithm>

#include "SketchControls.h"
#include "SketchForm.h"
#include "SketchTextField.h"
#include "SketchTheme.h"

namespace NSSketch {

using namespace NSMorvane;

namespace {

constexpr std::int32_t kMargin = 20;
constexpr std::int32_t kRowHeight = 24;
constexpr std::int32_t kRowDistance = 34;
constexpr std::int32_t kButtonWidth = 96;
constexpr std::int32_t kButtonHeight = 28;
constexpr std::int32_t kButtonGap = 10;
constexpr std::int32_t kLabelWidth = 92;

// What all modal dialogs have in common: a form, and buttons in a row at its lower right.
class CSketchModalDialog : public CDefaultModalDialogBehavior {
 public:
  CSketchModalDialog(IModalDialog& window, const TDialogPlace& place, const std::u16string& title,
                     const TSize& size)
      : CDefaultModalDialogBehavior(window),
        fForm(place.fMorvane, WindowOf(window), RootViewOf(window), size) {
    ThrowIfFailed(ChangeState(window, [&](auto& state) { CopyText(state.fTitle, title); }));
    ThrowIfFailed(SetClientSize(window, size));
  }

  TError IModalDialogBehavior_HandleKeyDown(const TKeyEvent& event, TFlag& outHandled) override {
    outHandled = 0;
    return Guarded([&] {
      outHandled = fForm.Key(event) ? 1 : 0;
      return TError{kOK};
    });
  }

 protected:
  void Close() { ThrowIfFailed(fWindow.IModalDialog_Release()); }
  // The place of a button, counted from the right.
  TRect ButtonPlace(std::int32_t fromRight) const {
    const std::int32_t right = fForm.Size().fWidth - kMargin - fromRight * (kButtonWidth + kButtonGap);
    const std::int32_t bottom = fForm.Size().fHeight - kMargin;
    return {right - kButtonWidth, bottom - kButtonHeight, right, bottom};
  }
  TRect LabelPlace(std::int32_t row) const {
    const std::int32_t top = kMargin + row * kRowDistance;
    return {kMargin, top, kMargin + kLabelWidth, top + kRowHeight};
  }
  TRect FieldPlace(std::int32_t row, std::int32_t width) const {
    const std::int32_t top = kMargin + row * kRowDistance;
    return {kMargin + kLabelWidth, top, kMargin + kLabelWidth + width, top + kRowHeight};
  }

  CSketchForm fForm;
};

template <class TDialog, class... TArguments>
void ShowModal(const TDialogPlace& place, TArguments&&... arguments) {
  ThrowIfFailed(CreateModalDialog<TDialog>(place.fMorvane, place.fOwner, kModalDialogCloseBoxBit, place,
                                           std::forward<TArguments>(arguments)...));
}

// --- Settings

class CSketchSettingsDialog : public CSketchModalDialog {
 public:
  CSketchSettingsDialog(IModalDialog& window, const TDialogPlace& place, const TDocumentSettings& settings,
                        std::function<void(const TDocumentSettings&)>& onDone)
      : CSketchModalDialog(window, place, u"Document Settings", {340, 236}), fOnDone(onDone) {
    const auto ignore = [](auto) {};
    fForm.Add(fWidthLabel, LabelPlace(0), u"_Width");
    fForm.Add(fWidth, FieldPlace(0, 90), 1, kMaxCanvasSide, ignore);
    fForm.Add(fHeightLabel, LabelPlace(1), u"_Height");
    fForm.Add(fHeight, FieldPlace(1, 90), 1, kMaxCanvasSide, ignore);
    fForm.Add(fBackgroundLabel, LabelPlace(2), u"_Background");
    TRect swatches = FieldPlace(2, CSketchSwatches::Size().fWidth);
    swatches.fBottom = swatches.fTop + CSketchSwatches::Size().fHeight;
    fForm.Add(fBackground, swatches, ignore);
    TRect grid = FieldPlace(3, 180);
    grid = {grid.fLeft, grid.fTop + 12, grid.fRight, grid.fBottom + 12};
    fForm.Add(fGrid, grid, u"Show the _grid", ignore);
    fForm.Add(fOK, ButtonPlace(1), u"OK", [this] { Accept(); });
    fForm.Add(fCancelButton, ButtonPlace(0), u"Cancel", [this] { Close(); });
    fWidth->SetNumber(settings.fCanvasSize.fWidth);
    fHeight->SetNumber(settings.fCanvasSize.fHeight);
    fBackground->SetColor(settings.fBackground);
    fGrid->SetChecked(settings.fShowGrid);
    fForm.SetDefault(*fOK.operator->());
    fForm.SetCancel(*fCancelButton.operator->());
    fForm.Finish(*fWidth.View());
  }

 private:
  void Accept() {
    fWidth->Commit();
    fHeight->Commit();
    const TDocumentSettings settings = {
        {fWidth->Number(), fHeight->Number()}, fBackground->Color(), fGrid->IsChecked()};
    const std::function<void(const TDocumentSettings&)> onDone = fOnDone;
    Close();
    onDone(settings);
  }

  const std::function<void(const TDocumentSettings&)> fOnDone;
  CViewOf<CSketchLabel> fWidthLabel;
  CViewOf<CSketchNumberField> fWidth;
  CViewOf<CSketchLabel> fHeightLabel;
  CViewOf<CSketchNumberField> fHeight;
  CViewOf<CSketchLabel> fBackgroundLabel;
  CViewOf<CSketchSwatches> fBackground;
  CViewOf<CSketchCheckBox> fGrid;
  CViewOf<CSketchButton> fOK;
  CViewOf<CSketchButton> fCancelButton;
};

// --- About

// [icon]
// An icon of the program's resources, at one of its four sizes.
class CSketchIcon : public CSketchControl {
 public:
  static constexpr bool kIsFocusable = false;
  CSketchIcon(IView& view, CSketchForm& form, IMorvane& morvane, const char* key, std::uint32_t size)
      : CSketchControl(view, form, {}), fSize(static_cast<int>(size)) {
    TError error = kOK;
    fIcon.reset(morvane.IMorvane_CreateResourceIcon(key, error));
    ThrowIfFailed(error);
    IWinExtensions* extensions = nullptr;
    ThrowIfFailed(morvane.IMorvane_GetWinExtensions(extensions));
    fHandle = extensions->IWinExtensions_GetIconHandle(*fIcon, size, error);
    ThrowIfFailed(error);
  }

 protected:
  void Paint(HDC port, const RECT& box) override {
    ::DrawIconEx(port, box.left, box.top, fHandle, fSize, fSize, 0, nullptr, DI_NORMAL);
  }

 private:
  std::unique_ptr<IIcon> fIcon;
  HICON fHandle = nullptr;  // the icon's
  const int fSize;
};
// [end]

class CSketchAboutDialog : public CSketchModalDialog {
 public:
  CSketchAboutDialog(IModalDialog& window, const TDialogPlace& place)
      : CSketchModalDialog(window, place, u"About Sketch", {400, 160}) {
    constexpr std::int32_t kLeft = kMargin + 48 + kMargin;
    fForm.Add(fIcon, {kMargin, kMargin, kMargin + 48, kMargin + 48}, place.fMorvane, "1", 48u);
    fForm.Add(fName, {kLeft, kMargin, 400 - kMargin, kMargin + 26}, u"Sketch 0.1",
              CSketchLabel::TStyle::kTitle);
    fForm.Add(fWhat, {kLeft, 54, 400 - kMargin, 74}, u"A vector drawing program.");
    fForm.Add(fWhose, {kLeft, 74, 400 - kMargin, 94}, u"The sample of a whole application of Morvane.");
    fForm.Add(fOK, ButtonPlace(0), u"OK", [this] { Close(); });
    fForm.SetDefault(*fOK.operator->());
    fForm.SetCancel(*fOK.operator->());
    fForm.Finish(*fOK.View());
  }

 private:
  CViewOf<CSketchIcon> fIcon;
  CViewOf<CSketchLabel> fName;
  CViewOf<CSketchLabel> fWhat;
  CViewOf<CSketchLabel> fWhose;
  CViewOf<CSketchButton> fOK;
};

}  // namespace

TRect DialogFrame(const TSize& size, const TPoint& middle) {
  MONITORINFO monitor = {};
  monitor.cbSize = sizeof(monitor);
  ::GetMonitorInfoW(::MonitorFromPoint({middle.fX, middle.fY}, MONITOR_DEFAULTTONEAREST), &monitor);
  const RECT& area = monitor.rcWork;
  const std::int32_t left = std::max<std::int32_t>(
      std::min<std::int32_t>(middle.fX - size.fWidth / 2, area.right - size.fWidth), area.left);
  const std::int32_t top = std::max<std::int32_t>(
      std::min<std::int32_t>(middle.fY - size.fHeight / 2, area.bottom - size.fHeight), area.top);
  return {left, top, left + size.fWidth, top + size.fHeight};
}

TRect FrameOnScreen(IWindow& window) {
  TNativeWindow native = {nullptr};
  ThrowIfFailed(window.IWindow_GetNativeWindow(native));
  RECT frame = {};
  ::GetWindowRect(native.fHwnd, &frame);
  return {frame.left, frame.top, frame.right, frame.bottom};
}

TPoint ClientCornerOnScreen(IWindow& window) {
  TNativeWindow native = {nullptr};
  ThrowIfFailed(window.IWindow_GetNativeWindow(native));
  POINT corner = {0, 0};
  ::ClientToScreen(native.fHwnd, &corner);
  return {corner.x, corner.y};
}

// [alert]
void ShowAlert(const TDialogPlace& place, TAlertKind kind, const std::u16string& message,
               const std::u16string& details) {
  ThrowIfFailed(ShowMessage(place.fMorvane, place.fOwner, kind, message, details));
}
// [end]

void ShowNothingToPaste(const TDialogPlace& place) {
  ShowAlert(place, kAlertCaution, u"There is nothing that can be pasted.",
            u"The clipboard has neither shapes of Sketch, nor a text, nor a picture of up to " +
                AsciiText(std::to_string(kMaxPicturePixels)) + u" pixels.");
}

void ShowSettings(const TDialogPlace& place, const TDocumentSettings& settings,
                  std::function<void(const TDocumentSettings&)> onDone) {
  ShowModal<CSketchSettingsDialog>(place, settings, onDone);
}

void ShowAbout(const TDialogPlace& place) { ShowModal<CSketchAboutDialog>(place); }

}  // namespace NSSketch
