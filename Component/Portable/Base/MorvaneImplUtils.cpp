#include "Component/Portable/Base/MorvaneImplUtils.h"

#include <cstdio>

namespace NSMorvane {

namespace {

constexpr char kPrefix[] = "[Morvane] ";
constexpr std::size_t kMaxPrintedChars = 1991;

const char* const kErrorLabels[] = {"kOutOfMemoryError",
                                    "kBadInputProgrammingError",
                                    "kIllegalCallSequenceProgrammingError",
                                    "kProgrammingError",
                                    "kBadFormatError",
                                    "kUnsupportedFormatError",
                                    "kOtherError",
                                    "kInvariantCorruptProgrammingError",
                                    "kUnsupported"};

const char* ErrorLabel(TError error) {
  if (error >= kOutOfMemoryError && error <= kUnsupported) return kErrorLabels[error - kOutOfMemoryError];
  if (error >= kFirstApplicationError) return "Application-specific error";
  MORVANE_UNREACHED();
  return "Bad error code";
}

}  // namespace

// Process-wide: whatever fails reports here, whether there is a root object or not.
IDebugOutput* gDebugOutput = nullptr;

TError ErrorFromException(const std::exception* exception) {
  if (dynamic_cast<const std::bad_alloc*>(exception)) return kOutOfMemoryError;
  if (dynamic_cast<const std::invalid_argument*>(exception)) return kBadInputProgrammingError;
  if (dynamic_cast<const XIllegalCallSequence*>(exception)) return kIllegalCallSequenceProgrammingError;
  if (dynamic_cast<const XProgrammingError*>(exception)) return kProgrammingError;
  if (dynamic_cast<const XInvariantCorrupt*>(exception)) return kInvariantCorruptProgrammingError;
  if (dynamic_cast<const XBadFormat*>(exception)) return kBadFormatError;
  if (dynamic_cast<const XUnsupportedFormat*>(exception)) return kUnsupportedFormatError;
  if (dynamic_cast<const XUnsupportedInterface*>(exception)) return kUnsupported;
  if (dynamic_cast<const XUnsupportedOSVersion*>(exception)) return kUnsupportedOSVersionError;
  if (auto application = dynamic_cast<const XApplicationError*>(exception)) return application->fError;
  return kOtherError;
}

void ThrowError(TError error) {
  switch (error) {
    case kOK:
      return;
    case kOutOfMemoryError:
      throw XOutOfMemory();
    case kBadInputProgrammingError:
      throw std::invalid_argument("");
    case kIllegalCallSequenceProgrammingError:
      throw XIllegalCallSequence();
    case kProgrammingError:
      throw XProgrammingError();
    case kBadFormatError:
      throw XBadFormat();
    case kUnsupportedFormatError:
      throw XUnsupportedFormat();
    case kOtherError:
      throw std::exception();
    case kInvariantCorruptProgrammingError:
      throw XInvariantCorrupt();
    case kUnsupported:
      throw XUnsupportedInterface();
  }
  if (error >= kFirstApplicationError) throw XApplicationError(error);
  throw std::logic_error("");
}

void CheckError(const char* file, std::int32_t line, TError error) {
  if (error == kOK) return;
  const char* const label = ErrorLabel(error);
  char text[1024];
  std::snprintf(text, sizeof(text), "%s at %s(%d): %d", label, file, static_cast<int>(line),
                static_cast<int>(error));
  DebugPrint(text);
  ThrowError(error);
}

bool IsValidError(TError error) {
  return (error >= kOK && error <= kUnsupported) || error >= kFirstApplicationError;
}

bool ValidateFlag(TFlag flag) {
  if (flag <= 1) return true;
  MORVANE_UNREACHED();
  return false;
}

void DebugAssert(const char* file, std::int32_t line, const char* expression) {
  if (gDebugOutput) gDebugOutput->IDebugOutput_Assert(file, line, expression);
}

void DebugPrint(const char* text) {
  if (!gDebugOutput) return;
  // Nothing is allocated here: lines are printed from destructors, and when memory has run out.
  char line[sizeof(kPrefix) + kMaxPrintedChars];
  std::snprintf(line, sizeof(line), "%s%s", kPrefix, text);
  gDebugOutput->IDebugOutput_Print(line);
}

void DebugPrint(const std::string& text) { DebugPrint(text.c_str()); }

void DebugThrown(const char* file, std::int32_t line) {
  // Sic: the prefix stands here too, so that the finished line carries it twice.
  char buffer[1024];  // not shared: any thread may throw
  std::snprintf(buffer, sizeof(buffer), "[Morvane] Exception thrown at %s(%d)", file, static_cast<int>(line));
  DebugPrint(buffer);
}

DebugIndentScope::DebugIndentScope() {
  if (gDebugOutput) gDebugOutput->IDebugOutput_Indent();
}

DebugIndentScope::~DebugIndentScope() {
  if (gDebugOutput) gDebugOutput->IDebugOutput_Unindent();
}

}  // namespace NSMorvane
