// Samples, medians and the table they end in: shared by the programs that measure.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace NSBench {

// What was asked for on the command line.
struct TOptions {
  int fSamples = 9;                // of each side, at least 1
  double fSampleSeconds = 0.25;    // the length of a sample of frames
  std::vector<std::string> fRows;  // the rows to measure, by name; all if empty

  bool Wants(const std::string& row) const;
};

// Reads --samples N, --ms N and --rows NAME,NAME. On anything else it prints what there is and returns false.
bool ParseOptions(int argumentCount, char** arguments, TOptions& out);

// Seconds since some moment.
double Now();

// Draws frames for so long, after two that do not count; frames per second.
double FramesPerSecond(double seconds, const std::function<void()>& frame);

// One side of a comparison: takes one sample, and gives a rate or a time.
using TSample = std::function<double()>;

struct TComparison {
  std::vector<double> fLibrary;
  std::vector<double> fOther;
};

// Samples of both sides, taken in turn, so that both meet the same moods of the machine.
TComparison Compare(const TOptions& options, const TSample& library, const TSample& other);

// The middle one; the mean of the middle two of an even number.
double Median(std::vector<double> values);

struct TRowTexts {
  const char* fName;  // for --rows
  const char* fWhat;
  const char* fTarget;  // of the ratio, or ""
  const char* fUnit;
};

// The head of the table, and one row: the ratio of the medians, the lowest and the highest ratio of a pair of
// samples, the target, the median of either side.
void PrintTableHead();
void PrintRow(const TRowTexts& texts, const TComparison& comparison);

// The option of a started program before the name of the event that it signals when it is ready. It looks
// like an option of the library's command line. OpenSignal opens that event.
inline constexpr char kSignalOption[] = "/signal:";
void* OpenSignal(int argumentCount, char** arguments);

// A line on the standard error.
void Progress(const std::string& text);

// Ends the program with a message if a measurement did not measure what it should.
void Require(bool condition, const std::string& what);

}  // namespace NSBench
