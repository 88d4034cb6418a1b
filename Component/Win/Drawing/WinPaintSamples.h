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

// The samples of the last kMaxPaintSamples paints. Once there are that many, the oldest gives way.
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
  // Not in the order of time: where the newest has been written over the oldest, it stands in its place.
  const std::vector<TPaintSample>& Get() const { return fSamples; }

 private:
  std::vector<TPaintSample> fSamples;
  std::size_t fOldest = 0;
};

}  // namespace NSMorvane
