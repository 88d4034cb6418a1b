// How long the last paints of a window took, and what is told of them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "Component/Portable/Text/TextPackage.h"

namespace NSMorvane {

// The start and the end of one paint, in milliseconds of a clock that wraps after 32 bits.
struct TPaintSample {
  std::uint64_t fStartMS;
  std::uint64_t fEndMS;
};

// The samples of the last kMaxPaintSamples paints. Beyond that number a new sample replaces the oldest one.
class CPaintSamples {
 public:
  static constexpr std::size_t kMaxPaintSamples = 100;

  void Add(const TPaintSample& sample) {
    if (fSamples.size() < kMaxPaintSamples) {
      fSamples.push_back(sample);
      fOldest = 0;
    } else {
      fSamples[fOldest] = sample;
      if (++fOldest == fSamples.size()) fOldest = 0;
    }
  }
  // Not sorted by time, once new samples have replaced the oldest ones.
  const std::vector<TPaintSample>& Get() const { return fSamples; }

 private:
  std::vector<TPaintSample> fSamples;
  std::size_t fOldest = 0;
};

// What the samples of the last four seconds amount to, each with its unit. Without such a sample both are
// empty.
struct TPaintFigures {
  NSTextPackage::TString fFrameRate;  // also empty if all of them have only just begun
  NSTextPackage::TString fPaintTime;  // the mean
};

// `nowMS` is a time of the clock of the samples, not earlier than any of them.
TPaintFigures MeasurePaints(const std::vector<TPaintSample>& samples, std::uint64_t nowMS);

}  // namespace NSMorvane
