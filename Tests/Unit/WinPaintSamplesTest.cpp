// The ring of paint samples.
#include <gtest/gtest.h>

#include <numeric>

#include "Component/Win/WinPaintSamples.h"

using namespace NSMorvane;

namespace {

std::vector<std::uint64_t> StartTimes(const CPaintSamples& samples) {
  std::vector<std::uint64_t> result;
  for (const TPaintSample& sample : samples.Get()) result.push_back(sample.fStartMS);
  return result;
}

std::vector<std::uint64_t> Numbers(std::uint64_t from, std::uint64_t to) {
  std::vector<std::uint64_t> result(to - from);
  std::iota(result.begin(), result.end(), from);
  return result;
}

}  // namespace

TEST(PaintSamples, TheOldestGivesWay) {
  CPaintSamples samples;
  EXPECT_TRUE(samples.Get().empty());
  for (std::uint64_t i = 0; i < 100; ++i) samples.Add({i, i + 7});
  EXPECT_EQ(Numbers(0, 100), StartTimes(samples));
  EXPECT_EQ(106u, samples.Get().back().fEndMS);

  samples.Add({100, 107});
  samples.Add({101, 108});
  std::vector<std::uint64_t> expected = Numbers(0, 100);
  expected[0] = 100;
  expected[1] = 101;
  EXPECT_EQ(expected, StartTimes(samples));
  EXPECT_EQ(108u, samples.Get()[1].fEndMS);

  // Through the end of the ring, and over its first entry again.
  for (std::uint64_t i = 102; i < 201; ++i) samples.Add({i, i});
  expected = Numbers(100, 200);
  expected[0] = 200;
  EXPECT_EQ(expected, StartTimes(samples));
}
