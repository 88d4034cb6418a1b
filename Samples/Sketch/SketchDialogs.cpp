#include "SketchDialogs.h"

#include <windows.h>

#include <algorithm>

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
  TError IModalDialogBehavior_OnRequestClose(TCloseReason reason) override {
    return Guarded([&] {
      if (reason == kCloseByLibrary && IsQuestion()) return fWindow.IModalDialog_FocusNow();
      Cancel();
      return TError{kOK};
    });
  }

 protected:
  virtual void Cancel() { Close(); }
  // Whether quitting has to wait for an answer.
  virtual bool IsQuestion() const { return false; }
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

// --- Message

constexpr std::int32_t kMessageWidth = 420;
constexpr std::int32_t kLineHeight = 20;

class CSketchMessageDialog : public CSketchModalDialog {
 public:
  CSketchMessageDialog(IModalDialog& window, const TDialogPlace& place, const TMessage& message,
                       std::function<void(std::size_t)>& onAnswer)
      : CSketchModalDialog(
            window, place, message.fTitle,
            {kMessageWidth, 3 * kMargin + 26 + kButtonHeight +
                                kLineHeight * static_cast<std::int32_t>(message.fLines.size())}),
        fOnAnswer(onAnswer),
        fButtons(message.fButtons.size()) {
    std::int32_t top = kMargin;
    fForm.Add(fHeading, {kMargin, top, kMessageWidth - kMargin, top + 26}, message.fHeading,
              CSketchLabel::TStyle::kTitle);
    top += 32;
    fLines.resize(message.fLines.size());
    for (std::size_t i = 0; i < fLines.size(); ++i, top += kLineHeight)
      fForm.Add(fLines[i], {kMargin, top, kMessageWidth - kMargin, top + kLineHeight}, message.fLines[i]);
    const auto count = static_cast<std::int32_t>(fButtons.size());
    for (std::int32_t i = 0; i < count; ++i) {
      const auto index = static_cast<std::size_t>(i);
      fForm.Add(fButtons[index], ButtonPlace(count - 1 - i), message.fButtons[index],
                [this, index] { Answer(index); });
    }
    fForm.SetDefault(*fButtons.front().operator->());
    fForm.SetCancel(*fButtons.back().operator->());
    fForm.Finish(*fButtons.front().View());
  }

 private:
  void Cancel() override { Answer(fButtons.size() - 1); }
  bool IsQuestion() const override { return fButtons.size() > 1; }
  void Answer(std::size_t index) {
    const std::function<void(std::size_t)> onAnswer = fOnAnswer;
    Close();
    onAnswer(index);
  }

  const std::function<void(std::size_t)> fOnAnswer;
  CViewOf<CSketchLabel> fHeading;
  std::vector<CViewOf<CSketchLabel>> fLines;
  std::vector<CViewOf<CSketchButton>> fButtons;
};

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

// --- Path

constexpr std::int32_t kPathWidth = 520;

class CSketchPathDialog : public CSketchModalDialog {
 public:
  CSketchPathDialog(IModalDialog& window, const TDialogPlace& place, const std::u16string& title,
                    const std::u16string& button, const std::u16string& path,
                    std::function<void(const std::u16string&)>& onDone, std::function<void()>& onCancel)
      : CSketchModalDialog(window, place, title, {kPathWidth, 136}), fOnDone(onDone), fOnCancel(onCancel) {
    fForm.Add(fLabel, {kMargin, 14, kPathWidth - kMargin, 14 + kRowHeight}, u"_Path of the document");
    fForm.Add(fPath, {kMargin, 40, kPathWidth - kMargin, 40 + kRowHeight},
              [this](const std::u16string& text) { fOK->SetEnabled(!text.empty()); });
    fForm.Add(fOK, ButtonPlace(1), button, [this] { Accept(); });
    fForm.Add(fCancelButton, ButtonPlace(0), u"Cancel", [this] { Cancel(); });
    fPath->SetValue(path);
    fOK->SetEnabled(!path.empty());
    fForm.SetDefault(*fOK.operator->());
    fForm.SetCancel(*fCancelButton.operator->());
    fForm.Finish(*fPath.View());
  }

 private:
  void Cancel() override {
    const std::function<void()> onCancel = fOnCancel;
    Close();
    if (onCancel) onCancel();
  }
  bool IsQuestion() const override { return static_cast<bool>(fOnCancel); }
  void Accept() {
    const std::u16string path = fPath->Value();
    const std::function<void(const std::u16string&)> onDone = fOnDone;
    Close();
    onDone(path);
  }

  const std::function<void(const std::u16string&)> fOnDone;
  const std::function<void()> fOnCancel;
  CViewOf<CSketchLabel> fLabel;
  CViewOf<CSketchTextField> fPath;
  CViewOf<CSketchButton> fOK;
  CViewOf<CSketchButton> fCancelButton;
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

void ShowMessage(const TDialogPlace& place, const TMessage& message,
                 std::function<void(std::size_t)> onAnswer) {
  ShowModal<CSketchMessageDialog>(place, message, onAnswer);
}

void ShowSettings(const TDialogPlace& place, const TDocumentSettings& settings,
                  std::function<void(const TDocumentSettings&)> onDone) {
  ShowModal<CSketchSettingsDialog>(place, settings, onDone);
}

void AskForPath(const TDialogPlace& place, const std::u16string& title, const std::u16string& button,
                const std::u16string& path, std::function<void(const std::u16string&)> onDone,
                std::function<void()> onCancel) {
  ShowModal<CSketchPathDialog>(place, title, button, path, onDone, onCancel);
}

}  // namespace NSSketch
