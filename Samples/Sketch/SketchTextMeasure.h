// How large texts are, in the font that the painter draws them with.
#pragma once

#include <map>
#include <string>

#include "SketchGdi.h"
#include "SketchGeometry.h"

namespace NSSketch {

class CSketchTextMeasure : public ISketchTextMeasure {
 public:
  CSketchTextMeasure();
  ~CSketchTextMeasure();

  TSketchSize SizeOfText(const std::string& text, std::int32_t letterSize) override;

 private:
  HDC fHDC;
  std::map<std::int32_t, CGdiObject<HFONT>> fFonts;  // by size of letters
};

// The one for all windows.
CSketchTextMeasure& TextMeasure();

}  // namespace NSSketch
