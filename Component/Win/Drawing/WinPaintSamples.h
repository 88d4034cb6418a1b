// How long the last paints of a window took.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace NSMorvane {

// The start and the end of one paint, in milliseconds since the system started.
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

}  // namespace NSMorvane
