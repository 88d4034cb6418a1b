#include "SketchTheme.h"

namespace NSSketch {

namespace {

CGdiObject<HFONT> MakeFont(int height, int weight) {
  NONCLIENTMETRICSW metrics = {};
  metrics.cbSize = sizeof(metrics);
  LOGFONTW font = {};
  if (::SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, metrics.cbSize, &metrics, 0))
    font = metrics.lfMessageFont;
  font.lfHeight = -height;
  font.lfWidth = 0;
  font.lfWeight = weight;
  font.lfQuality = CLEARTYPE_QUALITY;
  return CGdiObject<HFONT>(::CreateFontIndirectW(&font));
}

}  // namespace

HFONT TextFont() {
  static const CGdiObject<HFONT> font = MakeFont(12, FW_NORMAL);
  return font.Get();
}

HFONT BoldFont() {
  static const CGdiObject<HFONT> font = MakeFont(12, FW_BOLD);
  return font.Get();
}

HFONT TitleFont() {
  static const CGdiObject<HFONT> font = MakeFont(20, FW_NORMAL);
  return font.Get();
}

}  // namespace NSSketch
