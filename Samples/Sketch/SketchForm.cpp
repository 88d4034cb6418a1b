#include "SketchForm.h"

#include <windows.h>

#include <algorithm>

#include "SketchControls.h"
#include "SketchTheme.h"

namespace NSSketch {

using namespace NSMorvane;

TError CSketchFormView::IViewBehavior_Draw(IDrawTools& tools) {
  const COpenPort port(tools);
  FillArea(port, NativeRect(RectOf(fView)), kBarColor);
  return kOK;
}

CSketchForm::CSketchForm(IMorvane& morvane, IWindow& window, IView& rootView, const TSize& size)
    : fMorvane(morvane), fWindow(window), fSize(size) {
  TViewParams params = ViewParams(kViewDrawTemporary32);
  params.fRect = {0, 0, size.fWidth, size.fHeight};
  ThrowIfFailed(fBackground.Create(morvane, rootView, "Form", params));
}

void CSketchForm::Register(CSketchControl& control, IView& view, bool isFocusable) {
  fControls.push_back({&control, &view, isFocusable});
}

void CSketchForm::Finish(IView& first) {
  std::vector<IView*> views;
  for (const TEntry& entry : fControls)
    if (entry.fIsFocusable) views.push_back(entry.fView);
  // Where there is one only, the Tab key has nowhere to go.
  if (views.size() < 2) views.clear();
  ThrowIfFailed(fWindow.IWindow_SetTabViews(views.data(), static_cast<std::uint32_t>(views.size())));
  ThrowIfFailed(fWindow.IWindow_SetConceptualFocusView(&first));
}

void CSketchForm::SetDefault(CSketchButton& button) { fDefault = &button; }

bool CSketchForm::IsTyping() const {
  return std::any_of(fControls.begin(), fControls.end(),
                     [](const TEntry& entry) { return entry.fControl->IsTyping(); });
}

void CSketchForm::Commit() {
  for (const TEntry& entry : fControls)
    if (entry.fControl->IsTyping()) entry.fControl->Commit();
}

bool CSketchForm::Key(const TKeyEvent& event) {
  const TSketchKey key = MeaningOf(fMorvane, event);
  if (key.fAlt && !key.fControl && key.fCharacter != 0) {
    for (std::size_t i = 0; i < fControls.size(); ++i) {
      if (fControls[i].fControl->Mnemonic() != key.fCharacter) continue;
      // The letter of a label is that of the control behind it.
      if (!fControls[i].fIsFocusable && i + 1 < fControls.size()) ++i;
      if (fControls[i].fControl->IsEnabled()) fControls[i].fControl->Activate();
      return true;
    }
    return false;
  }
  if (!key.IsPlain()) return false;
  CSketchButton* const button = key.fCharacter == kKeyReturn   ? fDefault
                                : key.fCharacter == kKeyEscape ? fCancel
                                                               : nullptr;
  if (!button || !button->IsEnabled()) return false;
  button->Activate();
  return true;
}

}  // namespace NSSketch
