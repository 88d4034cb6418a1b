// Receivers of the debug output: of nothing, or only of what went wrong.
#pragma once

#include <algorithm>
#include <functional>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>

#include "Common.h"

namespace NSMorvane {

// Ignores everything.
class CDefaultDebugOutput : public IDebugOutput {
 public:
  virtual ~CDefaultDebugOutput() = default;
  void IDebugOutput_Assert(const char*, std::int32_t, const char*) override {}
  void IDebugOutput_Print(const char*) override {}
  void IDebugOutput_Indent() override {}
  void IDebugOutput_Unindent() override {}
};

// Whether a line of IDebugOutput_Print reports a failure, such as an error code that came back, an exception,
// a system call that failed, or views that were not released. Lines about the normal work of windows and menu
// bars are no failures.
inline bool IsFailureLine(std::string_view line) {
  constexpr std::string_view kFailures[] = {"Error at ",
                                            "kUnsupported at ",
                                            "Application-specific error at ",
                                            "Bad error code at ",
                                            "Exception thrown at ",
                                            "Windows error ",
                                            "returned the error ",
                                            "Ignored an ",
                                            "Ignored error (",
                                            "Ignoring unhandled error ",
                                            "Strange exception ",
                                            "Failed to ",
                                            " failed",
                                            " refuses ",
                                            " passed on too often",
                                            " STILL ",
                                            "There can only be one mouse capture",
                                            " called with a ",
                                            " for a behavior-less ",
                                            "Not all subview were removed!",
                                            "View: ",
                                            "You must release all views",
                                            "In WinPrepareMnemonic, ",
                                            "Bad bounds for ",
                                            "Bad bit depth for "};
  return std::any_of(std::begin(kFailures), std::end(kFailures),
                     [&](std::string_view each) { return line.find(each) != line.npos; });
}

// From its construction to its destruction, passes assertions and failures to `hear`, each as one line of
// text. There is one debug output in a process: this one replaces the one that was installed, and afterwards
// none is installed.
//   CFailureOutput fFailures{fMorvane,
//                            [](const std::string& line) { std::fprintf(stderr, "%s\n", line.c_str()); }};
// `hear` is called in the middle of the library's work, nearly always on the main thread: it must not call
// back into the library. An exception that it throws is ignored.
class CFailureOutput : public CDefaultDebugOutput {
 public:
  CFailureOutput(IMorvane& morvane, std::function<void(const std::string&)> hear)
      : fMorvane(morvane), fHear(std::move(hear)) {
    fMorvane.IMorvane_SetDebugOutput(this);
  }
  ~CFailureOutput() override { fMorvane.IMorvane_SetDebugOutput(nullptr); }
  CFailureOutput(const CFailureOutput&) = delete;
  CFailureOutput& operator=(const CFailureOutput&) = delete;
  void IDebugOutput_Assert(const char* file, std::int32_t line, const char* expression) override {
    Tell([&] { return std::string(file) + "(" + std::to_string(line) + "): " + expression; });
  }
  void IDebugOutput_Print(const char* text) override {
    if (IsFailureLine(text)) Tell([&] { return std::string(text); });
  }

 private:
  template <class TText>
  void Tell(TText&& text) {
    Guarded([&] {
      fHear(text());
      return TError{kOK};
    });
  }

  IMorvane& fMorvane;
  const std::function<void(const std::string&)> fHear;
};

}  // namespace NSMorvane
