// The shape that every contract member shares, written once.
//
// A contract class (MorvaneGlueRoot.h, MorvaneGlueView.h and so on) derives from one interface, implements
// its operations as contract members, and leaves the work to protected hooks that the implementation
// overrides. Hooks take plain library types, return their results by value, and report failure by throwing
// only.
//
// A client's call of an interface arrives in a contract member. The member tests the call, calls the hook of
// the same name inside a wall that no exception passes, and tests the result:
//
// clang-format off
//   TError CMorvaneGlue::IMorvane_GetDebugSettings(TDebugSettings& outSettings) {
//     MORVANE_REQUIRE("IMorvane_GetDebugSettings()", CMorvaneGlue_CheckInvariant());  // bad calls end here
//     TError outError;
//     Poison(outSettings);                                                            // no stale results
//     CallHook(outError, [&] { outSettings = CMorvaneGlue_GetDebugSettings(); });     // the wall
//     MORVANE_AFTER(CMorvaneGlue_CheckInvariant());                                   // reports only
//     if (outError == kOK) MORVANE_ASSERT(ValidateDebugSettings(outSettings));        // reports only
//     return outError;
//   }
// clang-format on
#pragma once

#include <boost/shared_ptr.hpp>
#include <cstring>
#include <type_traits>
#include <vector>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Text/TextPackage.h"

namespace NSMorvane {

// Runs a hook inside the exception wall. `outError` holds kProgrammingError while the hook runs, so that a
// client that looks at it from a callback never sees a stale code.
template <class THook>
void CallHook(TError& outError, THook&& hook) {
  TError pendingError = outError = kProgrammingError;
  try {
    hook();
    pendingError = kOK;
  } catch (const std::exception& e) {
    pendingError = ErrorFromException(&e);
  } catch (...) {
    pendingError = kOtherError;
  }
  outError = pendingError;
}

// The same for a hook whose own result is the code to give.
template <class THook>
void CallHookForError(TError& outError, THook&& hook) {
  TError hookError = kProgrammingError;
  CallHook(outError, [&] { hookError = hook(); });
  if (outError == kOK) outError = hookError;
}

// Fills an out-parameter with a value that no hook returns.
template <class TRecord>
void Poison(TRecord& record) {
  static_assert(std::is_trivially_copyable_v<TRecord>);
  std::memset(&record, 238, sizeof(record));
}

// A client's array as a vector. A null array is bad input, unless `count` is 0.
template <class TElement>
std::vector<TElement> CheckedArray(const TElement* elements, std::size_t count) {
  if (!elements && count > 0) MORVANE_THROW(std::invalid_argument(""));
  return count > 0 ? std::vector<TElement>(elements, elements + count) : std::vector<TElement>();
}

// A client's text as a string. Null is bad input.
inline NSTextPackage::TString CheckedText(const TChar* text) {
  if (!text) MORVANE_THROW(std::invalid_argument(""));
  return text;
}

inline NSTextPackage::TString TextOrEmpty(const TChar* text) {
  return text ? NSTextPackage::TString(text) : NSTextPackage::TString();
}

}  // namespace NSMorvane

// `operation` is a literal, with its parentheses where the message has them. The clause must be written in
// place: its text is output.

#define MORVANE_CONTRACT_FAILED(prefix, operation, text) \
  ::NSMorvane::DebugAssert(__FILE__, __LINE__, prefix operation ": " text)

// Bad input: the member returns kBadInputProgrammingError.
#define MORVANE_REQUIRE(operation, ...)                                  \
  do {                                                                   \
    if (!(__VA_ARGS__)) {                                                \
      MORVANE_CONTRACT_FAILED("Bad Input to ", operation, #__VA_ARGS__); \
      return ::NSMorvane::kBadInputProgrammingError;                     \
    }                                                                    \
  } while (false)

// The same, but reports `text` instead of the clause.
#define MORVANE_REQUIRE_TEXT(operation, text, ...)               \
  do {                                                           \
    if (!(__VA_ARGS__)) {                                        \
      MORVANE_CONTRACT_FAILED("Bad Input to ", operation, text); \
      return ::NSMorvane::kBadInputProgrammingError;             \
    }                                                            \
  } while (false)

// The same as MORVANE_REQUIRE, for the first test of a member whose object a callback can end. From here on
// the object is kept alive until the member returns, so that the tests of the result can use it. The hook
// KeepAlive() of the contract class returns the reference that holds the object, or null if the object has
// been released or has ended.
#define MORVANE_ENTER(operation, ...)                                    \
  do {                                                                   \
    if (!(__VA_ARGS__)) {                                                \
      MORVANE_CONTRACT_FAILED("Bad Input to ", operation, #__VA_ARGS__); \
      return ::NSMorvane::kBadInputProgrammingError;                     \
    }                                                                    \
  } while (false);                                                       \
  const ::boost::shared_ptr<void> keptAlive = KeepAlive()

// Bad input to a member that returns an object: the code goes to `outError`, the result is null.
#define MORVANE_REQUIRE_OUT(operation, ...)                              \
  do {                                                                   \
    if (!(__VA_ARGS__)) {                                                \
      MORVANE_CONTRACT_FAILED("Bad Input to ", operation, #__VA_ARGS__); \
      outError = ::NSMorvane::kBadInputProgrammingError;                 \
      return nullptr;                                                    \
    }                                                                    \
  } while (false)

#define MORVANE_REQUIRE_OUT_TEXT(operation, text, ...)           \
  do {                                                           \
    if (!(__VA_ARGS__)) {                                        \
      MORVANE_CONTRACT_FAILED("Bad Input to ", operation, text); \
      outError = ::NSMorvane::kBadInputProgrammingError;         \
      return nullptr;                                            \
    }                                                            \
  } while (false)

// A call that the object's state forbids: the member returns kIllegalCallSequenceProgrammingError.
#define MORVANE_REQUIRE_SEQUENCE(operation, ...)                                                  \
  do {                                                                                            \
    if (!(__VA_ARGS__)) {                                                                         \
      MORVANE_CONTRACT_FAILED("Illegal calling sequence when calling ", operation, #__VA_ARGS__); \
      return ::NSMorvane::kIllegalCallSequenceProgrammingError;                                   \
    }                                                                                             \
  } while (false)

// What every member tests after its hook: the object, and the code that it will return.
#define MORVANE_AFTER(...)                                                          \
  do {                                                                              \
    if (!(__VA_ARGS__)) ::NSMorvane::DebugAssert(__FILE__, __LINE__, #__VA_ARGS__); \
    MORVANE_ASSERT(IsValidError(outError));                                         \
  } while (false)
