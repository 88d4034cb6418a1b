#include "SketchTextMeasure.h"

#include "SketchPainter.h"
#include "SketchSmoothing.h"

namespace NSSketch {

CSketchTextMeasure::CSketchTextMeasure() : fHDC(::CreateCompatibleDC(nullptr)) {}

CSketchTextMeasure::~CSketchTextMeasure() { ::DeleteDC(fHDC); }

// As large as the painter draws a text at a zoom of 100.
SIZE CSketchTextMeasure::Extent(const std::u16string& text, std::int32_t letterSize) {
  // Fonts are scarce, and a drawing may use any number of sizes.
  static constexpr std::size_t kMaxFonts = 16;
  if (fFonts.size() >= kMaxFonts && fFonts.count(letterSize) == 0) fFonts.clear();
  CGdiObject<HFONT>& font = fFonts[letterSize];
  if (!font.Get()) font = MakeLetterFont(letterSize * kSmoothFactor);
  const CSelected selected(fHDC, font.Get());
  SIZE size = {0, 0};
  ::GetTextExtentPoint32W(fHDC, WideText(text), static_cast<int>(text.size()), &size);
  TEXTMETRICW metrics = {};
  ::GetTextMetricsW(fHDC, &metrics);
  size.cy = metrics.tmHeight;
  return size;
}

TSketchSize CSketchTextMeasure::SizeOfText(const std::string& text, std::int32_t letterSize) {
  const SIZE size = Extent(TextFromUTF8(text), letterSize);
  return {(size.cx + kSmoothFactor - 1) / kSmoothFactor, (size.cy + kSmoothFactor - 1) / kSmoothFactor};
}

double CSketchTextMeasure::WidthOfText(const std::u16string& text, std::int32_t letterSize) {
  return static_cast<double>(Extent(text, letterSize).cx) / kSmoothFactor;
}

CSketchTextMeasure& TextMeasure() {
  static CSketchTextMeasure measure;
  return measure;
}

}  // namespace NSSketch
