// What tests of the contract layer share: hooks that write down their names, and tables of calls.
#pragma once

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>
#include <cstring>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <typeindex>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Interface/MorvaneDefaults.h"
#include "Tests/Support/UnitTest.h"

namespace NSMorvaneTest {

// An object that is only passed on, never called.
template <class T>
T& Dummy() {
  alignas(16) static char storage[64];
  return *reinterpret_cast<T*>(storage);
}

inline std::string WithoutClass(const std::string& name) { return name.substr(name.find('_') + 1); }

// A native window that there is: the platform's, or what stands for one where there is no platform.
TNativeWindow AnyNativeWindow();

// The part of an object that tests steer.
class Recorder {
 public:
  bool fSound = true;
  bool fGivesNull = false;        // instead of objects
  std::function<void()> fOnHook;  // runs in every hook; may throw
  mutable Texts fHooks;           // their names
  mutable bool fIsHeld = false;   // when it was tested last; see HELD_BY_MEMBERS

  // What hooks give that have a result of this type.
  template <class T>
  T& Given() const {
    std::shared_ptr<void>& given = fGiven[typeid(T)];
    if (given) return *static_cast<T*>(given.get());
    const auto made = std::make_shared<T>();
    given = made;
    if constexpr (std::is_same_v<T, bool>) *made = true;
    if constexpr (std::is_pointer_v<T>) *made = &Dummy<std::remove_pointer_t<T>>();
    return *made;
  }

 protected:
  template <class TResult>
  TResult Hooked(const char* name) const {
    fHooks.push_back(WithoutClass(name));
    if (fOnHook) fOnHook();
    if constexpr (std::is_pointer_v<TResult>)
      if (fGivesNull) return nullptr;
    if constexpr (std::is_copy_constructible_v<TResult>)
      return Given<TResult>();
    else if constexpr (!std::is_void_v<TResult>)
      return {};
  }

  const boost::shared_ptr<void> fHold = boost::make_shared<int>();

 private:
  mutable std::map<std::type_index, std::shared_ptr<void>> fGiven;
};

// A hook that only writes its name down; behind the name, the types of its arguments.
#define HOOK(result, name, ...) \
  result name(__VA_ARGS__) override { return Hooked<result>(#name); }

// For objects that callbacks can end: their members hold them, but for Release.
#define HELD_BY_MEMBERS(glue)                                          \
  boost::shared_ptr<void> KeepAlive() const override { return fHold; } \
  bool glue##_CheckInvariant() const override {                        \
    fIsHeld = fHold.use_count() > 1;                                   \
    return fSound;                                                     \
  }

// Stands for an out-parameter of any type, and tells what has been written to it.
class COut {
 public:
  template <class T>
  operator T&() {
    if constexpr (std::is_abstract_v<T>)
      return fReceiver;
    else
      return *reinterpret_cast<T*>(fValues.emplace_back(sizeof(T), '\x5A').data());
  }
  // "-" for nothing, "EE" for a poisoned record, "0" for null and the like, "set" for anything else.
  std::string Text() const {
    for (const std::vector<char>& bytes : fValues)
      for (const auto& [byte, text] : {std::pair('\xEE', "EE"), {'\0', "0"}, {'\x5A', "set"}})
        if ((bytes == std::vector(bytes.size(), byte)) != (byte == '\x5A')) return text;
    return fReceiver.fCalled ? "set" : "-";
  }

 private:
  struct : ITextReceiver, IWindowListReceiver, IViewListReceiver {
    TError ITextReceiver_ReceiveText(const TChar*) override { return Called(); }
    TError IWindowListReceiver_ReceiveWindows(IWindow* const*, std::uint32_t) override { return Called(); }
    TError IViewListReceiver_ReceiveViews(IView* const*, std::uint32_t) override { return Called(); }
    TError Called() {
      fCalled = true;
      return kOK;
    }
    bool fCalled = false;
  } fReceiver;
  std::list<std::vector<char>> fValues;
};

// What a call gives: its code, and what its out-parameters or its returned object have become.
struct Outcome {
  TError fError;
  std::string fOut;
};
template <class TResult>
Outcome Ended(const COut& out, const TError& error, TResult result) {
  if constexpr (std::is_pointer_v<TResult>)
    return {error, result ? "set" : "-"};
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
  std::string fHook;    // what it calls
  std::string fOut;     // what it gives
  std::string fFailed;  // the same when the hook throws; behind it, if any, what is reported of a null: of
                        // one in an out-parameter, after a failure too
  Call<TObject> fCall;
};

// Rows of operations that give their own names to their messages and hooks. The names are whole ones, with
// that of the interface.
#define GOOD_ROW(name, gives, failed, ...) \
  { #name "()", WithoutClass(#name), gives, failed, CALL(name(__VA_ARGS__)) }
#define BAD_ROW(name, clause, ...) \
  { #name "(): " clause, CALL(name(__VA_ARGS__)) }

inline const Rows<TError, std::function<void()>>& Throws() {
  static const Rows<TError, std::function<void()>> rows = {{12001, [] { throw std::bad_alloc(); }},
                                                           {12002, [] { throw std::invalid_argument("x"); }},
                                                           {12003, [] { throw XIllegalCallSequence(); }},
                                                           {12004, [] { throw XProgrammingError(); }},
                                                           {12007, [] { throw 5; }},
                                                           {100123, [] { throw XApplicationError(100123); }}};
  return rows;
}

// Every operation: a broken object is refused and nothing written; what a hook throws becomes a code; a good
// call reaches its hook and gives the result to the client; damage done by the hook is reported. The object
// is held to the end of the call, its last test included.
template <class TObject>
void CheckGoodCalls(const std::string& invariant, const std::vector<GoodRow<TObject>>& rows) {
  RecordedOutput output;
  for (const auto& [name, hook, out, failed, rowCall] : rows) {
    SCOPED_TRACE(hook);
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
                  ? text(kOK, out, hook, invariant)
                  : text(kBadInputProgrammingError, "-", "", "Bad Input to " + name + ": " + invariant),
              call(false, nullptr));
    const std::string failedOut = failed.substr(0, failed.find(':'));
    const std::string missed = failedOut == failed ? "" : failed.substr(failedOut.size() + 2);
    for (const auto& [code, onHook] : Throws())
      EXPECT_EQ(text(code, failedOut, hook, failedOut == "0" ? missed : ""), call(true, onHook));
    EXPECT_EQ(text(kOK, out, hook, ""), call(true, nullptr));
    if constexpr (requires { object.KeepAlive(); }) {
      EXPECT_EQ(hook != "Release", object.fIsHeld);
    }
    // A released object may be gone.
    EXPECT_EQ(text(kOK, out, hook, hook == "Release" ? "" : invariant),
              call(true, [&] { object.fSound = false; }));
    // A code outside the documented range is given all the same, and reported.
    EXPECT_TRUE(call(true, [] { throw XUnsupportedOSVersion(); }).starts_with("12010 | "));
    EXPECT_TRUE(Has(Joined(output.fAssertions), "IsValidError(outError)"));
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
    const Outcome outcome = call(object);
    EXPECT_EQ(kBadInputProgrammingError, outcome.fError);
    EXPECT_EQ("-", outcome.fOut);
    EXPECT_TRUE(Joined(output.fAssertions).ends_with("Bad Input to " + text)) << Joined(output.fAssertions);
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
