// How often a window has painted, and for how long.
#include "Component/Portable/Windows/PaintSamples.h"

#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;

namespace {

// How long ago paints began and ended.
using Ages = std::vector<std::pair<std::uint32_t, std::uint32_t>>;

// Paints of the same length, of which the last one has ended just now.
Ages Every(std::uint32_t periodMS, std::uint32_t lengthMS, std::uint32_t count, Ages others = {}) {
  for (std::uint32_t i = 0; i < count; ++i) others.emplace_back(i * periodMS + lengthMS, i * periodMS);
  return others;
}

}  // namespace

TEST(PaintSamples, FiguresOfTheLastSeconds) {
  const Rows<Ages, std::string> rows = {{Ages(), ","},
                                        {Ages{{100, 90}}, "10 fps,10 ms"},
                                        {Every(30, 5, 120), "33.6 fps,5 ms"},
                                        {Every(30, 5, 120, Ages{{6000, 5500}}), "30 fps,5 ms"},
                                        {Every(1000, 250, 10), "1.25 fps,250 ms"},
                                        {Ages{{4010, 4000}}, "0.249 fps,10 ms"},
                                        {Ages{{4010, 4001}}, ","},
                                        {Ages{{9, 8}, {7, 5}, {4, 2}}, "333 fps,1.67 ms"},
                                        {Ages{{1, 0}}, "1e+03 fps,1 ms"},
                                        {Ages{{8000, 0}}, "0.125 fps,8e+03 ms"},
                                        // What has only just begun has no rate yet.
                                        {Ages{{0, 0}}, ",0 ms"},
                                        {Ages{{0, 0}, {50, 40}}, "40 fps,5 ms"}};
  // Also soon after the clock has wrapped, and right before it.
  for (const std::uint64_t now : {1000000u, 100u, 0xFFFFFFFFu})
    for (const auto& [ages, text] : rows) {
      std::vector<TPaintSample> samples;
      for (const auto& [start, end] : ages)
        samples.push_back({static_cast<std::uint32_t>(now - start), static_cast<std::uint32_t>(now - end)});
      const TPaintFigures figures = MeasurePaints(samples, now);
      EXPECT_EQ(NSTextPackage::StringToUTF8(figures.fFrameRate + u"," + figures.fPaintTime, false), text)
          << now;
    }
}

TEST(PaintSamples, TheLastHundredAreKept) {
  CPaintSamples samples;
  for (std::uint64_t i = 1; i <= 250; ++i) {
    samples.Add({i, i});
    std::uint64_t oldest = i;
    for (const TPaintSample& sample : samples.Get()) oldest = std::min(oldest, sample.fStartMS);
    EXPECT_EQ(samples.Get().size(), std::min<std::uint64_t>(i, 100));
    EXPECT_EQ(oldest, i <= 100 ? 1 : i - 99);
  }
}
