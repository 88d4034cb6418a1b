// The basis of the library: exceptions, error codes, debug output. Every other file builds on this one.
//
// Outside the library failures travel as TError codes, inside it as exceptions. ErrorFromException and
// ThrowError convert one into the other. Assertions only report: the code after a failed one is executed.
#pragma once

#include <cstdint>
#include <exception>
#include <new>
#include <stdexcept>
#include <string>
#include <type_traits>

#include "Interface/MorvaneDebugOutput.h"
#include "Interface/MorvaneTypes.h"

#include "Component/Portable/Base/Scopes.h"

namespace NSMorvane {

// --- Exceptions

// Carries a code of the application through the library, unchanged.
class XApplicationError : public std::exception {
 public:
  explicit XApplicationError(TError error) : fError(error) {}
  TError fError;
};

class XIllegalCallSequence : public std::logic_error {
 public:
  XIllegalCallSequence() : std::logic_error("Illegal call sequence") {}
};

class XProgrammingError : public std::logic_error {
 public:
  XProgrammingError() : std::logic_error("Programming error") {}
};

class XInvariantCorrupt : public std::logic_error {
 public:
  XInvariantCorrupt() : std::logic_error("Invariant corrupt") {}
};

class XBadFormat : public std::runtime_error {
 public:
  XBadFormat() : std::runtime_error("Bad format") {}
};

class XUnsupportedFormat : public std::runtime_error {
 public:
  XUnsupportedFormat() : std::runtime_error("Unsupported format") {}
};

class XUnsupportedInterface : public std::runtime_error {
 public:
  XUnsupportedInterface() : std::runtime_error("Unsupported interface") {}
};

class XUnsupportedOSVersion : public std::runtime_error {
 public:
  XUnsupportedOSVersion() : std::runtime_error("Unsupported os version") {}
};

// std::bad_alloc with the text that the table of error codes names, the same under every standard library.
class XOutOfMemory : public std::bad_alloc {
 public:
  const char* what() const noexcept override { return "bad allocation"; }
};

// --- Codes and exceptions

// The code that stands for an exception at the client boundary. Unlisted types give kOtherError.
TError ErrorFromException(const std::exception* exception);

// Throws the exception that stands for a code; does nothing for kOK. Prints no line.
void ThrowError(TError error);

// Prints a line with the code and the place, and then calls ThrowError. Does nothing for kOK. Used for every
// code that a client callback returns.
void CheckError(const char* file, std::int32_t line, TError error);

// Runs an action and returns the code of the exception that it throws, or kOK.
template <class TAction>
TError ErrorOf(TAction&& action) {
  try {
    action();
    return kOK;
  } catch (const std::exception& e) {
    return ErrorFromException(&e);
  } catch (...) {
    return kOtherError;
  }
}

// 12000 to 12009, and everything from 100000 on.
bool IsValidError(TError error);

// 0 or 1; anything else is reported and refused.
bool ValidateFlag(TFlag flag);

// --- Debug output

// The client's output object, or null. Written by IMorvane_SetDebugOutput alone.
extern IDebugOutput* gDebugOutput;

void DebugAssert(const char* file, std::int32_t line, const char* expression);
void DebugPrint(const char* text);
void DebugPrint(const std::string& text);
// Prints a line about the throw that follows it.
void DebugThrown(const char* file, std::int32_t line);

// Indents everything that is printed while this object exists.
class DebugIndentScope : CNotCopied {
 public:
  DebugIndentScope();
  ~DebugIndentScope();
};

// Marks a field of an object that is being destroyed. The compiler would drop a plain store.
template <class TField>
void PoisonField(TField& field, std::type_identity_t<TField> value) {
  *const_cast<volatile TField*>(&field) = value;
}

}  // namespace NSMorvane

// The text of a failed clause is output, exactly as it stands between the parentheses.
#define MORVANE_ASSERT(...) \
  ((__VA_ARGS__) ? void() : ::NSMorvane::DebugAssert(__FILE__, __LINE__, #__VA_ARGS__))

// Reports `text` instead of the clause.
#define MORVANE_ASSERT_TEXT(text, ...) \
  ((__VA_ARGS__) ? void() : ::NSMorvane::DebugAssert(__FILE__, __LINE__, text))

// A branch that must not be reached.
#define MORVANE_UNREACHED() ::NSMorvane::DebugAssert(__FILE__, __LINE__, "false")

// Prints a line about the throw, and throws.
#define MORVANE_THROW(...) (::NSMorvane::DebugThrown(__FILE__, __LINE__), throw __VA_ARGS__)

// Prints a line about the throw, and rethrows the exception that is being handled.
#define MORVANE_RETHROW() (::NSMorvane::DebugThrown(__FILE__, __LINE__), throw)

// Turns a code of a client callback into an exception, with a line in the log.
#define MORVANE_CHECK(...) ::NSMorvane::CheckError(__FILE__, __LINE__, __VA_ARGS__)
