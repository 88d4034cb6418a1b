// Records what the library says, for the length of its life.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "Component/Portable/MorvaneImplUtils.h"

namespace NSMorvaneTest {

class RecordingDebugOutput : public NSMorvane::IDebugOutput {
 public:
  RecordingDebugOutput() : fPrevious(NSMorvane::gDebugOutput) { NSMorvane::gDebugOutput = this; }
  ~RecordingDebugOutput() override { NSMorvane::gDebugOutput = fPrevious; }

  void IDebugOutput_Assert(const char* file, std::int32_t line, const char* expression) override {
    fAssertFiles.push_back(std::string(file) + "(" + std::to_string(line) + ")");
    fAssertions.push_back(expression);
  }
  void IDebugOutput_Print(const char* text) override { fLines.push_back(text); }
  void IDebugOutput_Indent() override { ++fIndents, ++fDepth; }
  void IDebugOutput_Unindent() override { --fDepth; }

  void Reset() {
    fAssertions.clear();
    fAssertFiles.clear();
    fLines.clear();
    fIndents = 0;
  }
  bool HasLine(const std::string& text) const {
    return std::any_of(fLines.begin(), fLines.end(),
                       [&](const std::string& line) { return line.find(text) != std::string::npos; });
  }
  bool HasAssertion(const std::string& text) const {
    return std::find(fAssertions.begin(), fAssertions.end(), text) != fAssertions.end();
  }

  std::vector<std::string> fAssertions;   // the expressions
  std::vector<std::string> fAssertFiles;  // where each stood, "file(line)"
  std::vector<std::string> fLines;        // printed lines, prefix included
  int fIndents = 0;
  int fDepth = 0;

 private:
  NSMorvane::IDebugOutput* fPrevious;
};

}  // namespace NSMorvaneTest
