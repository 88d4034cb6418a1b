#include "SketchTextEditor.h"

#include <algorithm>
#include <utility>

#include "SketchPainter.h"

namespace NSSketch {

using namespace NSMorvane;

namespace {

constexpr WPARAM kCtrlA = 1;  // what the key gives as a character

}  // namespace

// All of it is selected, so that typing replaces it.
void CSketchTextEditor::Start(const std::u16string& text) {
  std::u16string native;
  for (const char16_t c : text) native += c == u'\n' ? std::u16string(u"\r\n") : std::u16string(1, c);
  fIsStarting = true;
  SetText(native);
  fIsStarting = false;
  Send(EM_SETSEL, 0, -1);
}

void CSketchTextEditor::SetLetterSize(int pixels) {
  if (std::exchange(fLetterSize, pixels) == pixels) return;
  CGdiObject<HFONT> font = MakeLetterFont(std::max(pixels, 1));
  Send(WM_SETFONT, reinterpret_cast<WPARAM>(font.Get()), TRUE);
  Send(EM_SETMARGINS, EC_LEFTMARGIN | EC_RIGHTMARGIN, 0);
  fFont = std::move(font);
}

std::u16string CSketchTextEditor::Lines() const {
  std::u16string text = Text();
  std::erase(text, u'\r');
  return text;
}

TError CSketchTextEditor::OnMessage(const TMessage& message, TWinResult& outResult) {
  // The wheel scrolls the canvas, whoever has the keys.
  if (message.fMessage == WM_MOUSEWHEEL) {
    outResult = ::SendMessageW(::GetParent(message.fHwnd), WM_MOUSEWHEEL, message.fWParam, message.fLParam);
    return kOK;
  }
  if (message.fMessage == WM_CHAR && message.fWParam == kCtrlA) {
    Send(EM_SETSEL, 0, -1);
    return kOK;
  }
  return CHostedControl::OnMessage(message, outResult);
}

}  // namespace NSSketch
