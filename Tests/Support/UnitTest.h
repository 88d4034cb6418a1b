// What unit tests share: a record of what the library says, in which nothing may be left over, tables, texts
// of what happened, random numbers.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Text/TextPackage.h"
#include "Tests/Support/PrintGeometry.h"
#include "Tests/Support/Rows.h"

namespace NSMorvaneTest {

using namespace NSMorvane;
using NSTextPackage::TString;
using Texts = std::vector<std::string>;

constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();

// "one; two"
inline std::string Joined(const Texts& texts) {
  std::string all;
  for (const std::string& text : texts) all += (all.empty() ? "" : "; ") + text;
  return all;
}

inline bool Has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

// Records what the library says, for the length of its life.
class RecordedOutput : public IDebugOutput {
 public:
  RecordedOutput() : fPrevious(std::exchange(gDebugOutput, this)) {}
  ~RecordedOutput() override { gDebugOutput = fPrevious; }

  void IDebugOutput_Assert(const char* file, std::int32_t line, const char* expression) override {
    fAssertFiles.push_back(std::string(file) + "(" + std::to_string(line) + ")");
    fAssertions.push_back(expression);
    fTrace += fAssertions.back() + "! ";
  }
  void IDebugOutput_Print(const char* text) override {
    const std::string line = text;
    EXPECT_TRUE(line.starts_with("[Morvane] ")) << line;
    fLines.push_back(line.substr(std::min<std::size_t>(10, line.size())));
    fTrace += fLines.back() + " ";
  }
  void IDebugOutput_Indent() override { fTrace += "> "; }
  void IDebugOutput_Unindent() override { fTrace += "< "; }

  bool HasLine(const std::string& part) const {
    return std::any_of(fLines.begin(), fLines.end(),
                       [&](const std::string& line) { return Has(line, part); });
  }

  Texts fAssertions;   // the expressions
  Texts fAssertFiles;  // where each stood, "file(line)"
  Texts fLines;        // printed lines, without the prefix
  std::string fTrace;  // all together: assertions with a "!", deeper indentation as ">" and back as "<"

 private:
  IDebugOutput* fPrevious;
};

// Fails when the library has reported something that nobody asked for.
class ReportingTest : public testing::Test {
 protected:
  ~ReportingTest() override { EXPECT_EQ("", TakeReports()); }
  // The failed assertions since the last time.
  std::string TakeReports() { return Joined(std::exchange(fOutput.fAssertions, {})); }
  // The printed lines since the last time.
  std::string TakeLines() { return Joined(std::exchange(fOutput.fLines, {})); }

  RecordedOutput fOutput;
};

// The same numbers in each run, from `low` to `high`.
class Random {
 public:
  explicit Random(std::uint32_t seed) : fEngine(seed) {}
  int operator()(int low, int high) {
    return low + static_cast<int>(fEngine() % static_cast<std::uint32_t>(high - low + 1));
  }
  // At a place between `low` and `high`, and up to `size` wide and high.
  TRect Rect(int low, int high, int size) {
    const int left = (*this)(low, high), top = (*this)(low, high);
    return {left, top, left + (*this)(0, size), top + (*this)(0, size)};
  }

 private:
  std::mt19937 fEngine;
};

}  // namespace NSMorvaneTest
