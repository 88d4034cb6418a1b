#include "Component/Portable/Windows/PaintSamples.h"

#include <algorithm>

namespace NSMorvane {

using NSTextPackage::TString;

namespace {

constexpr std::uint32_t kMeasuredMS = 4000;

// The milliseconds between two times, right across a wrap of the clock too.
std::uint32_t Between(std::uint64_t earlier, std::uint64_t later) {
  return static_cast<std::uint32_t>(later - earlier);
}

TString FigureText(double value, const TString& unit) {
  return NSTextPackage::FloatToShortString(value, 3) + unit;
}

}  // namespace

TPaintFigures MeasurePaints(const std::vector<TPaintSample>& samples, std::uint64_t nowMS) {
  std::size_t count = 0;
  std::uint64_t paintingMS = 0;
  std::uint32_t earliestRelativeStartMS = 0;
  for (const TPaintSample& sample : samples) {
    if (Between(sample.fEndMS, nowMS) > kMeasuredMS) continue;
    ++count;
    paintingMS += Between(sample.fStartMS, sample.fEndMS);
    earliestRelativeStartMS = std::max(earliestRelativeStartMS, Between(sample.fStartMS, nowMS));
  }
  if (count == 0) return {};

  TPaintFigures figures;
  const auto paints = static_cast<double>(count);
  // A history that is shorter than the time measured is divided by its own length.
  const std::uint32_t lengthMS = count == samples.size() ? earliestRelativeStartMS : kMeasuredMS;
  if (lengthMS != 0) figures.fFrameRate = FigureText(paints / (lengthMS / 1000.0), u" fps");
  figures.fPaintTime = FigureText(static_cast<double>(paintingMS) / paints, u" ms");
  return figures;
}

}  // namespace NSMorvane
