// What tests of the contract layer share: hooks that write down their arguments, and tables of calls.
//
// Arguments and results are compared as texts: objects by the names of their types, "null" for none, records
// by their first byte in braces, "EE" for a poisoned record, "-" for an out-parameter that nobody has written
// to.
#pragma once

#include <cstring>
#include <functional>
#include <map>
#include <memory>
#include <typeindex>

#include "Component/Portable/MorvaneGlue.h"
#include "Interface/MorvaneDefaults.h"
#include "Tests/Support/UnitTest.h"

namespace NSMorvaneTest {

inline std::map<const void*, std::string>& Names() {
  static std::map<const void*, std::string> names;
  return names;
}

// An object that is only passed on, never called.
template <class T>
T& Dummy() {
  alignas(16) static char storage[64];
  std::string name = typeid(T).name();
  if (name.ends_with('E')) name.pop_back();  // where names are mangled
  Names()[storage] = name.substr(name.find_last_of("0123456789:") + 1);
  return *reinterpret_cast<T*>(storage);
}

template <class T>
T Untouched() {
  T value;
  if constexpr (std::is_trivially_copyable_v<T>) std::memset(static_cast<void*>(&value), 0x5A, sizeof(value));
  return value;
}

template <class T>
bool ConsistsOf(const T& value, char byte) {
  const std::string bytes(reinterpret_cast<const char*>(&value), sizeof(value));
  return bytes == std::string(sizeof(value), byte);
}

inline std::string Show(const std::string& text) { return "'" + text + "'"; }
inline std::string Show(const TString& text) { return Show(NSTextPackage::StringToUTF8(text, false)); }
inline std::string Show(bool flag) { return flag ? "yes" : "no"; }
template <class T>
std::string Show(const T& value) {
  if constexpr (std::is_abstract_v<T>) {
    return Names()[&value];
  } else if (ConsistsOf(value, 0x5A)) {
    return "-";
  } else if constexpr (std::is_pointer_v<T>) {
    return value ? Names()[value] : "null";
  } else if constexpr (std::is_integral_v<T> || std::is_enum_v<T>) {
    return std::to_string(value);
  } else {
    if (ConsistsOf(value, '\xEE')) return "EE";
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
template <class T>
std::string ShowReceived(const std::vector<T>& values) {
  return values.empty() ? "-" : Show(values);
}
inline std::string Show(const CTextReceiver& texts) { return ShowReceived(texts.fTexts); }
inline std::string Show(const CVectorWindowReceiver& list) { return ShowReceived(list.fWindows); }
inline std::string Show(const CVectorViewReceiver& list) { return ShowReceived(list.fViews); }

inline std::string WithoutClass(const std::string& name) { return name.substr(name.find('_') + 1); }

// The part of an object that tests steer.
class Recorder {
 public:
  bool fSound = true;
  bool fGivesNull = false;        // instead of objects
  std::function<void()> fOnHook;  // runs in every hook; may throw
  mutable Texts fHooks;           // "Name argument argument"

  // What hooks give that have a result of this type.
  template <class T>
  T& Given() const {
    std::shared_ptr<void>& given = fGiven[typeid(T)];
    if (given) return *static_cast<T*>(given.get());
    const auto made = std::make_shared<T>();
    given = made;
    if constexpr (std::is_same_v<T, bool>) *made = true;
    if constexpr (std::is_same_v<T, std::uint64_t>) *made = 77;
    if constexpr (std::is_pointer_v<T>) *made = &Dummy<std::remove_pointer_t<T>>();
    if constexpr (std::is_same_v<T, std::vector<IWindow*>>) *made = {&Dummy<IWindow>()};
    return *made;
  }

 protected:
  template <class TResult, class... TArguments>
  TResult Hooked(const char* name, const TArguments&... arguments) const {
    std::string hook = WithoutClass(name);
    ((hook += " " + Show(arguments)), ...);
    fHooks.push_back(hook);
    if (fOnHook) fOnHook();
    if constexpr (!std::is_void_v<TResult>) return Give(std::type_identity<TResult>());
  }

 private:
  template <class T>
  T Give(std::type_identity<T>) const {
    if constexpr (std::is_pointer_v<T>)
      if (fGivesNull) return nullptr;
    return Given<T>();
  }
  // The contract layer gives the bare pointer on.
  template <class T>
  std::unique_ptr<T> Give(std::type_identity<std::unique_ptr<T>>) const {
    return std::unique_ptr<T>(fGivesNull ? nullptr : Given<T*>());
  }

  mutable std::map<std::type_index, std::shared_ptr<void>> fGiven;
};

// Hooks that only write themselves and their arguments down.
#define HOOK0(result, name) \
  result name() override { return Hooked<result>(#name); }
#define HOOK1(result, name, A) \
  result name(A a) override { return Hooked<result>(#name, a); }
#define HOOK2(result, name, A, B) \
  result name(A a, B b) override { return Hooked<result>(#name, a, b); }
#define HOOK3(result, name, A, B, C) \
  result name(A a, B b, C c) override { return Hooked<result>(#name, a, b, c); }
#define HOOK4(result, name, A, B, C, D) \
  result name(A a, B b, C c, D d) override { return Hooked<result>(#name, a, b, c, d); }
#define HOOK5(result, name, A, B, C, D, E) \
  result name(A a, B b, C c, D d, E e) override { return Hooked<result>(#name, a, b, c, d, e); }

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
  std::string fOut;
};
template <class TResult>
Outcome Ended(const COut& out, const TError& error, TResult result) {
  if constexpr (std::is_pointer_v<TResult>)
    return {error, result ? Show(result) : "-"};
  else
    return {result, out.Text()};
}
template <class TObject>
using Call = std::function<Outcome(TObject&)>;

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
  std::string fName;    // the one that its messages carry; empty if the object is not tested first
  std::string fHooks;   // what it calls, with the arguments
  std::string fOut;     // what it gives
  std::string fFailed;  // the same when the hook throws; behind it, if any, what is reported of a null: of
                        // one in an out-parameter, after a failure too
  Call<TObject> fCall;
};

// Rows of operations that give their own names to their messages and hooks. The names are whole ones, with
// that of the interface.
#define GOOD_ROW(name, arguments, gives, failed, ...) \
  { #name "()", WithoutClass(#name arguments), gives, failed, CALL(name(__VA_ARGS__)) }
#define BAD_ROW(name, clause, ...) \
  { #name "(): " clause, CALL(name(__VA_ARGS__)) }

inline const Rows<TError, std::function<void()>>& Throws() {
  static const Rows<TError, std::function<void()>> rows = {{12001, [] { throw std::bad_alloc(); }},
                                                           {12002, [] { throw std::invalid_argument("x"); }},
                                                           {12003, [] { throw XIllegalCallSequence(); }},
                                                           {12004, [] { throw XProgrammingError(); }},
                                                           {12005, [] { throw XBadFormat(); }},
                                                           {12006, [] { throw XUnsupportedFormat(); }},
                                                           {12007, [] { throw 5; }},
                                                           {12008, [] { throw XInvariantCorrupt(); }},
                                                           {12009, [] { throw XUnsupportedInterface(); }},
                                                           {100123, [] { throw XApplicationError(100123); }}};
  return rows;
}

// Every operation: a broken object is refused and nothing written; what a hook throws becomes a code; a good
// call hands its arguments to its hook and the result to the client; damage done by the hook is reported.
template <class TObject>
void CheckGoodCalls(const std::string& invariant, const std::vector<GoodRow<TObject>>& rows) {
  RecordedOutput output;
  for (const auto& [name, hooks, out, failed, rowCall] : rows) {
    SCOPED_TRACE(hooks);
    TObject object;
    // In one text what comes of a call.
    const auto text = [](TError error, const std::string& out, const std::string& hooks,
                         const std::string& reports) {
      return std::to_string(error) + " | " + out + " | " + hooks + " | " + reports;
    };
    const auto call = [&, &rowCall = rowCall](bool sound, std::function<void()> onHook) {
      object.fHooks.clear();
      output.fAssertions.clear();
      object.fSound = sound;
      object.fOnHook = onHook;
      const Outcome outcome = rowCall(object);
      object.fSound = true;
      return text(outcome.fError, outcome.fOut, Joined(object.fHooks), Joined(output.fAssertions));
    };
    EXPECT_EQ(name.empty()
                  ? text(kOK, out, hooks, invariant)
                  : text(kBadInputProgrammingError, "-", "", "Bad Input to " + name + ": " + invariant),
              call(false, nullptr));
    const std::string firstHook = hooks.substr(0, hooks.find(';'));
    const std::string failedOut = failed.substr(0, failed.find(':'));
    const std::string missed = failedOut == failed ? "" : failed.substr(failedOut.size() + 2);
    for (const auto& [code, hook] : Throws())
      EXPECT_EQ(text(code, failedOut, firstHook, failedOut == "null" ? missed : ""), call(true, hook));
    EXPECT_EQ(text(kOK, out, hooks, ""), call(true, nullptr));
    // A released object may be gone.
    EXPECT_EQ(text(kOK, out, hooks, hooks == "Release" ? "" : invariant),
              call(true, [&] { object.fSound = false; }));
    // A code outside the documented range is given all the same, and reported behind the last hook.
    EXPECT_TRUE(call(true, [] { throw XUnsupportedOSVersion(); }).starts_with("12010 | "));
    EXPECT_EQ(hooks == firstHook, Has(Joined(output.fAssertions), "IsValidError(outError)"));
    object.fGivesNull = true;
    call(true, nullptr);
    EXPECT_EQ(missed, Joined(output.fAssertions));
  }
}

// One bad argument each, and the text of the failed check behind "Bad Input to ": no hook runs, nothing is
// written.
template <class TObject>
using BadRows = Rows<std::string, Call<TObject>>;
template <class TObject>
void CheckBadCalls(TObject& object, const BadRows<TObject>& rows) {
  RecordedOutput output;
  for (const auto& [text, call] : rows) {
    SCOPED_TRACE(text);
    object.fHooks.clear();
    const Outcome outcome = call(object);
    EXPECT_EQ(kBadInputProgrammingError, outcome.fError);
    EXPECT_EQ("-", outcome.fOut);
    EXPECT_TRUE(Joined(output.fAssertions).ends_with("Bad Input to " + text)) << Joined(output.fAssertions);
    EXPECT_TRUE(output.fAssertFiles.back().starts_with("Component/Portable/MorvaneGlue"));
    EXPECT_FALSE(output.HasLine("Opening alert"));
    EXPECT_EQ("", Joined(object.fHooks));
  }
}

// Results of hooks that are reported, and given all the same. The text is the last of the reports.
template <class TObject>
void CheckResults(const Rows<std::string, std::function<void(TObject&)>, Call<TObject>>& rows) {
  RecordedOutput output;
  for (const auto& [text, spoil, call] : rows) {
    TObject object;
    spoil(object);
    EXPECT_EQ(kOK, call(object).fError);
    EXPECT_TRUE(Joined(output.fAssertions).ends_with(text)) << text;
  }
}

}  // namespace NSMorvaneTest
