// What tests of the contract layer share: hooks that write down their arguments, and tables of calls.
//
// Arguments and results are compared as texts: objects by their names, "null" for none, records by their
// first byte in braces, "EE" for a poisoned record, "-" for an out-parameter that nobody has written to.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Component/Portable/MorvaneGlue.h"
#include "Interface/MorvaneDefaults.h"
#include "Tests/Support/RecordingDebugOutput.h"

namespace NSMorvaneTest {

using namespace NSMorvane;
using Texts = std::vector<std::string>;

inline std::map<const void*, std::string>& Names() {
  static std::map<const void*, std::string> names;
  return names;
}

// An object that is only passed on, never called.
template <class TInterface>
TInterface& Dummy(const char* name) {
  alignas(16) static char storage[64];
  Names()[storage] = name;
  return *reinterpret_cast<TInterface*>(storage);
}

template <class T>
T Untouched() {
  T value;
  if constexpr (std::is_trivially_copyable_v<T>) std::memset(static_cast<void*>(&value), 0x5A, sizeof(value));
  return value;
}

template <class T>
bool ConsistsOf(const T& value, unsigned char byte) {
  const unsigned char* const bytes = reinterpret_cast<const unsigned char*>(&value);
  return std::all_of(bytes, bytes + sizeof(value), [byte](unsigned char b) { return b == byte; });
}

inline std::string Show(const std::string& text) { return "'" + text + "'"; }
inline std::string Show(const TString& text) { return Show(NSTextPackage::StringToUTF8(text, false)); }
inline std::string Show(bool flag) { return flag ? "yes" : "no"; }
template <class T>
std::string Show(const T& value) {
  if constexpr (std::is_abstract_v<T>) {
    return Names()[&value];
  } else if constexpr (std::is_pointer_v<T>) {
    if (ConsistsOf(value, 0x5A)) return "-";
    return value ? Names()[value] : "null";
  } else {
    if (ConsistsOf(value, 0x5A)) return "-";
    if constexpr (std::is_integral_v<T> || std::is_enum_v<T>) return std::to_string(value);
    if (ConsistsOf(value, 0xEE)) return "EE";
    return "{" + std::to_string(reinterpret_cast<const unsigned char&>(value)) + "}";
  }
}
inline std::string Show(const TAlertSpec& spec) { return Show(TString(spec.fMessage)); }
inline std::string Show(const TPoint& p) { return std::to_string(p.fX) + "," + std::to_string(p.fY); }
inline std::string Show(const TRect& r) {
  return ConsistsOf(r, 0x5A) ? "-" : Show(TPoint{r.fLeft, r.fTop}) + "," + Show(TPoint{r.fRight, r.fBottom});
}
template <class T>
std::string Show(const std::vector<T>& values) {
  std::string text = "[";
  for (const T& value : values) text += (text.size() > 1 ? " " : "") + Show(value);
  return text + "]";
}
inline std::string Show(const CTextReceiver& texts) {
  return texts.fTexts.empty() ? "-" : Show(texts.fTexts);
}
inline std::string Show(const CVectorWindowReceiver& list) {
  return list.fWindows.empty() ? "-" : Show(list.fWindows);
}
inline std::string Show(const CVectorViewReceiver& list) {
  return list.fViews.empty() ? "-" : Show(list.fViews);
}

inline std::string WithoutClass(const std::string& name) { return name.substr(name.find('_') + 1); }

// The part of an object that tests steer.
class Recorder {
 public:
  bool fSound = true;
  bool fGivesNull = false;        // instead of objects
  std::function<void()> fOnHook;  // runs in every hook; may throw
  mutable Texts fHooks;           // "Name argument argument"

  std::string JoinedHooks() const {
    std::string all;
    for (const std::string& hook : fHooks) all += (all.empty() ? "" : "; ") + hook;
    return all;
  }

 protected:
  template <class... TArguments>
  void Enter(const char* name, const TArguments&... arguments) const {
    std::string hook = WithoutClass(name);
    ((hook += " " + Show(arguments)), ...);
    fHooks.push_back(hook);
    if (fOnHook) fOnHook();
  }
  auto Hook(const char* name) const {
    return [this, name](const auto&... arguments) { Enter(name, arguments...); };
  }
  template <class TInterface>
  TInterface* Give(const char* name) const {
    return fGivesNull ? nullptr : &Dummy<TInterface>(name);
  }
};

// A hook that only writes itself and its arguments down. What it gives stands last, if anything.
#define HOOK(result, name, parameters, arguments, ...) \
  result name parameters override {                    \
    Hook(#name) arguments;                             \
    return __VA_ARGS__;                                \
  }

// Stands for an out-parameter of any type, and shows those that have been written to.
class COut {
 public:
  template <class T>
  operator T&() {
    if constexpr (std::is_same_v<T, ITextReceiver>)
      return Hold<CTextReceiver>();
    else if constexpr (std::is_same_v<T, IWindowListReceiver>)
      return Hold<CVectorWindowReceiver>();
    else if constexpr (std::is_same_v<T, IViewListReceiver>)
      return Hold<CVectorViewReceiver>();
    else
      return Hold<T>();
  }
  std::string Text() const {
    std::string all;
    for (const auto& show : fShows)
      if (const std::string text = show(); text != "-") all += (all.empty() ? "" : " ") + text;
    return all.empty() ? "-" : all;
  }

 private:
  template <class T>
  T& Hold() {
    const auto value = std::make_shared<T>(Untouched<T>());
    fShows.push_back([value] { return Show(*value); });
    return *value;
  }
  std::vector<std::function<std::string()>> fShows;
};

// What a call gives: its code, and what its out-parameters or its returned object have become.
struct Outcome {
  TError fError;
  std::string fOut = "-";
};
template <class TResult>
Outcome Ended(const COut& out, const TError& error, TResult result) {
  if constexpr (std::is_pointer_v<TResult>)
    return {error, result ? Show(result) : "-"};
  else
    return {result, out.Text()};
}

// A call of the object `o`. Out-parameters are written `out`, the code of members that return an object
// `error`.
#define CALL(...)                            \
  [&](auto& o) {                             \
    COut out;                                \
    TError error = 4711;                     \
    return Ended(out, error, o.__VA_ARGS__); \
  }

// One operation, called well.
template <class TObject>
struct GoodRow {
  const char* fName;       // the one that its messages carry; null if the object is not tested first
  std::string fHooks;      // what it calls, with the arguments
  const char* fOut;        // what it gives
  const char* fFailedOut;  // the same when the hook throws
  std::function<Outcome(TObject&)> fCall;
};

// Rows of operations that give their own names to their messages and hooks. The names are whole ones, with
// that of the interface.
#define GOOD_ROW(name, arguments, gives, failed, ...) \
  { #name "()", WithoutClass(#name arguments), gives, failed, CALL(name(__VA_ARGS__)) }
#define BAD_ROW(name, clause, ...) \
  { #name "(): " clause, CALL(name(__VA_ARGS__)) }

struct ThrowRow {
  TError fCode;
  std::function<void()> fThrow;
};
inline const std::vector<ThrowRow>& Throws() {
  static const std::vector<ThrowRow> rows = {{12001, [] { throw std::bad_alloc(); }},
                                             {12002, [] { throw std::invalid_argument("x"); }},
                                             {12003, [] { throw XIllegalCallSequence(); }},
                                             {12004, [] { throw XProgrammingError(); }},
                                             {12005, [] { throw XBadFormat(); }},
                                             {12006, [] { throw XUnsupportedFormat(); }},
                                             {12007, [] { throw 5; }},
                                             {12007, [] { throw std::out_of_range("x"); }},
                                             {12008, [] { throw XInvariantCorrupt(); }},
                                             {12009, [] { throw XUnsupportedInterface(); }},
                                             {100123, [] { throw XApplicationError(100123); }}};
  return rows;
}

// Every operation: a broken object is refused and nothing written; what a hook throws becomes a code; a good
// call hands its arguments to its hook and the result to the client; damage done by the hook is reported.
template <class TObject>
void CheckGoodCalls(const std::string& invariant, const std::vector<GoodRow<TObject>>& rows) {
  RecordingDebugOutput output;
  for (const GoodRow<TObject>& row : rows) {
    SCOPED_TRACE(row.fHooks);
    TObject object;
    const auto call = [&](bool sound, std::function<void()> onHook) {
      object.fHooks.clear();
      output.Reset();
      object.fSound = sound;
      object.fOnHook = onHook;
      const Outcome outcome = row.fCall(object);
      object.fSound = true;
      return outcome;
    };
    const Outcome broken = call(!row.fName, nullptr);
    EXPECT_EQ(row.fName ? kBadInputProgrammingError : kOK, broken.fError);
    EXPECT_EQ(row.fName ? "-" : row.fOut, broken.fOut);
    EXPECT_EQ(row.fName ? "" : row.fHooks, object.JoinedHooks());
    EXPECT_EQ(row.fName ? Texts{std::string("Bad Input to ") + row.fName + ": " + invariant} : Texts(),
              output.fAssertions);
    for (const ThrowRow& thrown : Throws()) {
      const Outcome failed = call(true, thrown.fThrow);
      EXPECT_EQ(thrown.fCode, failed.fError);
      EXPECT_EQ(row.fFailedOut, failed.fOut);
      EXPECT_EQ(1u, object.fHooks.size());
      // The wall logs nothing; only an object that is always wanted is missed.
      for (const std::string& text : output.fAssertions) EXPECT_TRUE(text.ends_with(" != NULL")) << text;
    }
    // A code outside the documented range is given all the same, and reported behind the last hook.
    EXPECT_EQ(kUnsupportedOSVersionError, call(true, [] { throw XUnsupportedOSVersion(); }).fError);
    EXPECT_EQ(row.fHooks.find(';') == std::string::npos, output.HasAssertion("IsValidError(outError)"));
    const Outcome good = call(true, nullptr);
    EXPECT_EQ(kOK, good.fError);
    EXPECT_EQ(row.fOut, good.fOut);
    EXPECT_EQ(row.fHooks, object.JoinedHooks());
    EXPECT_EQ(Texts(), output.fAssertions);
    EXPECT_EQ(kOK, call(true, [&] { object.fSound = false; }).fError);
    // A released object may be gone.
    EXPECT_EQ(row.fHooks == "Release" ? Texts() : Texts{invariant}, output.fAssertions);
  }
}

// One bad argument each, and the text of the failed check behind "Bad Input to ": no hook runs, nothing is
// written.
template <class TObject>
struct BadRow {
  const char* fText;
  std::function<Outcome(TObject&)> fCall;
};
template <class TObject>
void CheckBadCalls(TObject& object, const std::vector<BadRow<TObject>>& rows) {
  RecordingDebugOutput output;
  for (const BadRow<TObject>& row : rows) {
    SCOPED_TRACE(row.fText);
    output.Reset();
    object.fHooks.clear();
    const Outcome outcome = row.fCall(object);
    EXPECT_EQ(kBadInputProgrammingError, outcome.fError);
    EXPECT_EQ("-", outcome.fOut);
    ASSERT_FALSE(output.fAssertions.empty());
    EXPECT_EQ(std::string("Bad Input to ") + row.fText, output.fAssertions.back());
    EXPECT_EQ(0u, output.fAssertFiles.back().find("Component/Portable/MorvaneGlue"));
    EXPECT_FALSE(output.HasLine("Opening alert"));
    EXPECT_EQ("", object.JoinedHooks());
  }
}

// Results of hooks that are reported, and given all the same. `fAssertion` is the last of the reports.
template <class TObject>
struct ResultRow {
  const char* fAssertion;
  std::function<void(TObject&)> fBreak;
  std::function<Outcome(TObject&)> fCall;
};
template <class TObject>
void CheckResults(const std::vector<ResultRow<TObject>>& rows) {
  RecordingDebugOutput output;
  for (const ResultRow<TObject>& row : rows) {
    SCOPED_TRACE(row.fAssertion);
    TObject object;
    row.fBreak(object);
    output.Reset();
    EXPECT_EQ(kOK, row.fCall(object).fError);
    ASSERT_FALSE(output.fAssertions.empty());
    EXPECT_EQ(row.fAssertion, output.fAssertions.back());
  }
}

}  // namespace NSMorvaneTest
