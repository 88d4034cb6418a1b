#include "Measure.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace NSBench {

namespace {

std::vector<std::string> SplitAtCommas(const std::string& text) {
  std::vector<std::string> result;
  std::size_t start = 0;
  while (start <= text.size()) {
    const std::size_t end = std::min(text.find(',', start), text.size());
    if (end > start) result.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  return result;
}

}  // namespace

bool TOptions::Wants(const std::string& row) const {
  return fRows.empty() || std::find(fRows.begin(), fRows.end(), row) != fRows.end();
}

bool ParseOptions(int argumentCount, char** arguments, TOptions& out) {
  bool good = argumentCount % 2 == 1;
  for (int i = 1; good && i < argumentCount; i += 2) {
    const char* const value = arguments[i + 1];
    if (std::strcmp(arguments[i], "--samples") == 0) {
      out.fSamples = std::atoi(value);
    } else if (std::strcmp(arguments[i], "--ms") == 0) {
      out.fSampleSeconds = std::atof(value) / 1000;
    } else if (std::strcmp(arguments[i], "--rows") == 0) {
      out.fRows = SplitAtCommas(value);
    } else {
      good = false;
    }
  }
  if (!good || out.fSamples < 1 || out.fSampleSeconds <= 0) {
    std::fprintf(stderr,
                 "usage: %s [--samples N] [--ms N] [--rows NAME,NAME...]\n"
                 "  --samples  samples of each side, whose median counts\n"
                 "  --ms       milliseconds of a sample of frames\n"
                 "  --rows     only these rows of the table\n",
                 arguments[0]);
    return false;
  }
  return true;
}

double Now() {
  static const double period = [] {
    LARGE_INTEGER frequency;
    QueryPerformanceFrequency(&frequency);
    return 1.0 / static_cast<double>(frequency.QuadPart);
  }();
  LARGE_INTEGER count;
  QueryPerformanceCounter(&count);
  return static_cast<double>(count.QuadPart) * period;
}

double FramesPerSecond(double seconds, const std::function<void()>& frame) {
  frame();
  frame();
  const double start = Now();
  double elapsed = 0;
  int frames = 0;
  do {
    frame();
    ++frames;
    elapsed = Now() - start;
  } while (elapsed < seconds);
  return frames / elapsed;
}

TComparison Compare(const TOptions& options, const TSample& library, const TSample& other) {
  TComparison result;
  for (int i = 0; i < options.fSamples; ++i) {
    result.fLibrary.push_back(library());
    result.fOther.push_back(other());
  }
  return result;
}

double Median(std::vector<double> values) {
  Require(!values.empty(), "a median of something");
  std::sort(values.begin(), values.end());
  const std::size_t middle = values.size() / 2;
  return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

void PrintTableHead() {
  std::printf("| Row | What | Ratio | Pairs, lowest to highest | Target | Morvane | Compared with |\n");
  std::printf("|---|---|---|---|---|---|---|\n");
  std::fflush(stdout);
}

void PrintRow(const TRowTexts& texts, const TComparison& comparison) {
  const double library = Median(comparison.fLibrary);
  const double other = Median(comparison.fOther);
  std::vector<double> pairs;
  for (std::size_t i = 0; i < comparison.fLibrary.size(); ++i)
    pairs.push_back(comparison.fLibrary[i] / comparison.fOther[i]);
  const auto [lowest, highest] = std::minmax_element(pairs.begin(), pairs.end());
  const int digits = std::max(library, other) < 100 ? 2 : 0;
  std::printf("| %s | %s | %.2f | %.2f to %.2f | %s | %.*f %s | %.*f %s |\n", texts.fName, texts.fWhat,
              library / other, *lowest, *highest, texts.fTarget, digits, library, texts.fUnit, digits, other,
              texts.fUnit);
  std::fflush(stdout);
}

void* OpenSignal(int argumentCount, char** arguments) {
  const std::string given = argumentCount == 2 ? arguments[1] : "";
  Require(given.starts_with(kSignalOption), "no event is named");
  const HANDLE event = OpenEventA(EVENT_MODIFY_STATE, FALSE, given.c_str() + std::strlen(kSignalOption));
  Require(event != nullptr, "the event has gone");
  return event;
}

void Progress(const std::string& text) {
  std::fprintf(stderr, "%s\n", text.c_str());
  std::fflush(stderr);
}

void Require(bool condition, const std::string& what) {
  if (condition) return;
  std::fflush(stdout);
  std::fprintf(stderr, "The measurement is void: %s\n", what.c_str());
  std::fflush(stderr);
  std::_Exit(1);
}

}  // namespace NSBench
