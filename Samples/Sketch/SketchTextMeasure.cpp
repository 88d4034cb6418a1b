#include "SketchTextMeasure.h"

#include <algorithm>

#include "SketchPainter.h"
#include "SketchSmoothing.h"

namespace NSSketch {

CSketchTextMeasure::CSketchTextMeasure() : fHDC(::CreateCompatibleDC(nullptr)) {}

CSketchTextMeasure::~CSketchTextMeasure() { ::DeleteDC(fHDC); }

// As large as the painter draws a text at a zoom of 100.
TSketchSize CSketchTextMeasure::SizeOfText(const std::string& text, std::int32_t letterSize) {
  // Fonts are scarce, and a drawing may use any number of sizes.
  static constexpr std::size_t kMaxFonts = 16;
  if (fFonts.size() >= kMaxFonts && fFonts.count(letterSize) == 0) fFonts.clear();
  CGdiObject<HFONT>& font = fFonts[letterSize];
  if (!font.Get()) font = MakeLetterFont(letterSize * kSmoothFactor);
  const CSelected selected(fHDC, font.Get());
  TEXTMETRICW metrics = {};
  ::GetTextMetricsW(fHDC, &metrics);
  SIZE size = {0, 0};
  for (const std::u16string& line : LinesOf(TextFromUTF8(text))) {
    SIZE extent = {0, 0};
    ::GetTextExtentPoint32W(fHDC, WideText(line), static_cast<int>(line.size()), &extent);
    size.cx = std::max(size.cx, extent.cx);
    size.cy += metrics.tmHeight;
  }
  return {(size.cx + kSmoothFactor - 1) / kSmoothFactor, (size.cy + kSmoothFactor - 1) / kSmoothFactor};
}

CSketchTextMeasure& TextMeasure() {
  static CSketchTextMeasure measure;
  return measure;
}

}  // namespace NSSketch
