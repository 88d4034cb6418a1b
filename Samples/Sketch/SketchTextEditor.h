// The field in which a text of the document is typed where it stands: an edit of the system over the canvas.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <utility>

#include <Defaults/HostedControl.h>
#include <Morvane.h>

#include "SketchGdi.h"

namespace NSSketch {

// [text editor]
class CSketchTextEditor : public NSMorvane::CHostedControl {
 public:
  // `onTyped` is called after each change by the user, with a line feed at the end of each line but the last.
  CSketchTextEditor(NSMorvane::IMorvane& morvane, std::function<void(std::u16string)> onTyped)
      : CHostedControl(morvane), fOnTyped(std::move(onTyped)) {}

  // The behaviour of the view is a CDefaultControlViewBehavior.
  void Make(NSMorvane::IView& view, std::size_t maxLength) {
    NSMorvane::ThrowIfFailed(
        Create(view, L"EDIT", u"", ES_MULTILINE | ES_AUTOHSCROLL | ES_AUTOVSCROLL | ES_NOHIDESEL));
    Send(EM_SETLIMITTEXT, maxLength);
  }
  void Start(const std::u16string& text);
  // So that letters are as large in the field as below it.
  void SetLetterSize(int pixels);

 protected:
  // Return ends the typing, which is the canvas's matter; with Shift it begins a new line.
  bool WantsKey(WPARAM key) const override {
    return key == VK_RETURN ? ::GetKeyState(VK_SHIFT) < 0 : CHostedControl::WantsKey(key);
  }
  NSMorvane::TError OnCommand(WORD code) override {
    if (code != EN_CHANGE || fIsStarting) return NSMorvane::kOK;
    return NSMorvane::Guarded([this] {
      fOnTyped(Lines());
      return NSMorvane::TError{NSMorvane::kOK};
    });
  }
  NSMorvane::TError OnMessage(const TMessage& message, NSMorvane::TWinResult& outResult) override;

 private:
  std::u16string Lines() const;

  const std::function<void(std::u16string)> fOnTyped;
  CGdiObject<HFONT> fFont;
  int fLetterSize = 0;
  bool fIsStarting = false;
};
// [end]

}  // namespace NSSketch
