// Behaviours of views, and a mouse capture, that write down what they are told and do what a test asks for in
// the middle of it. They know nothing but the headers of Interface/, so that tests of the library's parts and
// of its client side speak the same words.
//
// All views of a test write into one log. Each call is a word: who, then what. For a view called a:
//
//   a<bc  tracking, pre pass, with b and c in front     a47/1<bc  pre-click, button mask 1, in front b, c
//   a.    tracking, normal pass                         a44/1     click
//   a+    enter; a- exit                                aW-2      wheel, by two notches
//   a?<   shape, pre phase; a? normal phase             a:key     a key
//   a:on  gets the focus; a:off loses it                a:x       deleted
//
// Not written down, but with a hook: a:draw, a:menu, the set-up of the menu bar, and a:target, the question
// for a native control. A mouse capture has words like a view called @; a release of a button is @^44/1, a
// change of the modifier keys @0>2.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <concepts>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "../../Interface/Morvane.h"
#include "../../Interface/MorvaneDefaults.h"

namespace NSMorvaneTest {

using namespace NSMorvane;

// --- Recording

class CallLog {
 public:
  void Add(const std::string& call) { fCalls.push_back(call); }
  bool Remove(const std::string& call) { return std::erase(fCalls, call) > 0; }
  // All calls, with blanks between them. The log begins anew.
  std::string Take() {
    std::string text;
    for (const std::string& call : std::exchange(fCalls, {})) text += (text.empty() ? "" : " ") + call;
    return text;
  }
  int Count(const std::string& call) const {
    return static_cast<int>(std::count(fCalls.begin(), fCalls.end(), call));
  }
  std::string Last() const { return fCalls.empty() ? "" : fCalls.back(); }

 private:
  std::vector<std::string> fCalls;
};

// What a callback does and answers: a function, which answers a code or nothing; or the code alone.
class Hook {
 public:
  Hook(TError error = kOK) : Hook([error] { return error; }) {}
  template <std::invocable TBody>
  Hook(TBody body)
      : fBody(std::make_shared<std::function<TError()>>([body]() mutable -> TError {
          if constexpr (!std::is_void_v<decltype(body())>) return body();
          body();
          return kOK;
        })) {}
  TError operator()() const { return (*fBody)(); }

  TFlag fHandled = 0;

 private:
  std::shared_ptr<std::function<TError()>> fBody;
};

inline Hook Handles(TFlag handled = 1, TError error = kOK) {
  Hook hook(error);
  hook.fHandled = handled;
  return hook;
}

// Hooks stand under the word of their call, or under the part of it that is in front of the argument.
struct CallRecorder {
  TError Call(const std::string& name, const std::string& argument = "", TFlag* outHandled = nullptr) {
    fLog.Add(name + argument);
    return CallUnlogged(name, argument, outHandled);
  }
  // For calls whose number is a matter of time.
  TError CallUnlogged(const std::string& name, const std::string& argument = "",
                      TFlag* outHandled = nullptr) {
    auto found = fHooks.find(name + argument);
    if (found == fHooks.end()) found = fHooks.find(name);
    const Hook hook = found == fHooks.end() ? Hook() : found->second;
    if (outHandled) *outHandled = hook.fHandled;
    return hook();
  }

  // What is written down during an action.
  std::string CallsOf(const std::function<void()>& action) {
    fLog.Take();
    action();
    return fLog.Take();
  }

  CallLog fLog;
  std::map<std::string, Hook> fHooks;
};

// --- Views

// What the views of a test were told, all in one log. The last arguments are kept.
struct ViewRecord : CallRecorder {
  TMouseTracking fTracking = {};
  TMouseEvent fClick = {};
  TMouseShapeRequest fShapeRequest = {};
  TMouseWheelEvent fWheel = {};
  TKeyEvent fKey = {};
  IMenuBarState* fMenuBar = nullptr;
  IDrawTools* fTools = nullptr;
  std::map<std::string, TBuiltInMouseShape> fShapes;  // what is answered to the question of that word
  std::function<IMouseShape*(TBuiltInMouseShape)> fMakeShape;

  IMouseShape* AnswerShape(const std::string& word, TFlag* outHandled, TError& outError) {
    outError = Call(word, "", outHandled);
    return fShapes.contains(word) ? fMakeShape(fShapes[word]) : nullptr;
  }
};

inline std::string NamesOf(IView* const* views, std::uint32_t count) {
  std::string names;
  EXPECT_EQ(views == nullptr, count == 0);
  for (std::uint32_t i = 0; i < count; ++i) {
    char name[kDebugNameChars + 1] = {};
    EXPECT_EQ(views[i]->IView_GetDebugName(name), kOK);
    names += name;
  }
  return names;
}

inline std::string ClickWord(const TMouseEvent& event) {
  return std::to_string(event.fType) + "/" + std::to_string(event.fButtons);
}

class TestView : public CDefaultViewBehavior {
 public:
  TestView(IView& view, const std::string& name, ViewRecord& record)
      : fView(view), fName(name), fRecord(record) {}
  ~TestView() override { fRecord.Call(fName + ":x"); }

  TError IViewBehavior_GetHitRects(IRectsGetter& out) override {
    const TRect rect = RectOf(fView);
    return fIsTransparent ? kOK : out.IRectsGetter_AddRects(&rect, 1);
  }
  TError IViewBehavior_OnMouseTracking(const TMouseTracking& event, TMousePhase phase,
                                       TFlag& outHandled) override {
    fRecord.fTracking = event;
    return fRecord.Call(fName + (phase == kMousePhasePre ? "<" : "."),
                        NamesOf(event.fState.fViews, event.fState.fViewCount), &outHandled);
  }
  TError IViewBehavior_OnMouseEnterExit(TFlag entered) override {
    return fRecord.Call(fName + (entered ? "+" : "-"));
  }
  IMouseShape* IViewBehavior_GetMouseShape(const TMouseShapeRequest& request, TMousePhase phase,
                                           TFlag& outHandled, TError& outError) override {
    fRecord.fShapeRequest = request;
    return fRecord.AnswerShape(fName + (phase == kMousePhasePre ? "?<" : "?"), &outHandled, outError);
  }
  TError IViewBehavior_HandleClick(const TMouseEvent& event, TFlag& outHandled) override {
    fRecord.fClick = event;
    const char* const pass = event.fType >= kMouseEventPreClick ? "<" : "";
    return fRecord.Call(fName + ClickWord(event) + pass, NamesOf(event.fViews, event.fViewCount),
                        &outHandled);
  }
  TError IViewBehavior_OnMouseWheel(const TMouseWheelEvent& event, TFlag& outHandled) override {
    fRecord.fWheel = event;
    return fRecord.Call(fName + "W", std::to_string(event.fDeltaNotches), &outHandled);
  }
  TError IViewBehavior_OnOnDutyFocusChanged(TFlag gained) override {
    return fRecord.Call(fName + (gained ? ":on" : ":off"));
  }
  TError IViewBehavior_HandleKeyDown(const TKeyEvent& event, TFlag& outHandled) override {
    fRecord.fKey = event;
    return fRecord.Call(fName + ":key", "", &outHandled);
  }
  TError IViewBehavior_GetNativeFocusTarget(TNativeWindow& out) override {
    out.fHwnd = fControl;
    return fRecord.CallUnlogged(fName + ":target");
  }
  TError IViewBehavior_OnSetupMenuBar(IMenuBarState& state) override {
    fRecord.fMenuBar = &state;
    return fRecord.CallUnlogged(fName + ":menu");
  }
  TError IViewBehavior_OnMenuCommand(const TMenuCommandEvent&, TFlag& outHandled) override {
    return fRecord.Call(fName + ":command", "", &outHandled);
  }
  TError IViewBehavior_Draw(IDrawTools& tools) override {
    ++fDrawCalls;
    fRecord.fTools = &tools;
    return fRecord.CallUnlogged(fName + ":draw");
  }

  IView& fView;
  bool fIsTransparent = false;  // to the mouse
  decltype(TNativeWindow::fHwnd) fControl = nullptr;
  int fDrawCalls = 0;

 private:
  std::string fName;
  ViewRecord& fRecord;
};

// The views of a test, by their names.
template <class TView>
class NamedViews {
 protected:
  // Null for a name that is not there.
  TView* View(const std::string& name) const {
    for (const auto& [other, view] : fViews)
      if (other == name) return view;
    return nullptr;
  }
  void ReleaseView(const std::string& name) {
    TView* const view = View(name);
    std::erase_if(fViews, [&](const auto& other) { return other.second == view; });
    if (view) {
      EXPECT_EQ(view->IView_Release(), kOK);
    }
  }
  // A super view dies with its last subview only.
  void ReleaseViews() {
    while (!fViews.empty()) ReleaseView(fViews.back().first);
  }

  std::vector<std::pair<std::string, TView*>> fViews;
};

// Views for tests of the mouse, a name, a rectangle and a super view each. The later of two that overlap is
// in front:
//
//   root
//     a        0..120
//       b     10..110
//         c   20..100
//     d       80..200
struct TMouseView {
  const char* fName;
  TRect fRect;
  const char* fSuperView;
};
constexpr TMouseView kMouseViews[] = {{"a", {0, 0, 120, 120}, ""},
                                      {"b", {10, 10, 110, 110}, "a"},
                                      {"c", {20, 20, 100, 100}, "b"},
                                      {"d", {80, 80, 200, 200}, ""}};

// What a fresh look at a, b and c gives, and what a movement over them.
inline const std::string kShapesOfABC = " a?< b?< c?< c? b? a?";
inline const std::string kEnterABC = "a<bc b<c c< c+ c. b+ b. a+ a." + kShapesOfABC;
inline const std::string kTrackedABC = "a<bc b<c c< c. b. a.";

// --- The mouse capture

class RecordingCapture : public CDefaultMouseCapture {
 public:
  explicit RecordingCapture(ViewRecord& record) : fRecord(record) {}
  ~RecordingCapture() override { fRecord.Call("@:x"); }

  TError IMouseCapture_OnMouseDown(const TMouseEvent& event) override {
    fRecord.fClick = event;
    return fRecord.Call("@" + ClickWord(event));
  }
  TError IMouseCapture_OnMouseUp(const TMouseEvent& event) override {
    return fRecord.Call("@^" + ClickWord(event));
  }
  TError IMouseCapture_OnMouseMove(const TMouseTracking& event) override {
    fRecord.fTracking = event;
    return fRecord.Call("@.");
  }
  TError IMouseCapture_OnMouseWheel(const TMouseWheelEvent& event, TFlag& outHandled) override {
    fRecord.fWheel = event;
    return fRecord.Call("@W", std::to_string(event.fDeltaNotches), &outHandled);
  }
  TError IMouseCapture_OnModifiersChanged(const TModifierKeysEvent& before,
                                          const TModifierKeysEvent& now) override {
    return fRecord.Call("@",
                        std::to_string(before.fModifiers.fKeys) + ">" + std::to_string(now.fModifiers.fKeys));
  }
  TError IMouseCapture_OnKeyDown(const TKeyEvent&, TFlag& outHandled) override {
    return fRecord.Call("@:key", "", &outHandled);
  }
  IMouseShape* IMouseCapture_GetMouseShape(const TMouseShapeRequest& request, TError& outError) override {
    fRecord.fShapeRequest = request;
    return fRecord.AnswerShape("@?", nullptr, outError);
  }

 private:
  ViewRecord& fRecord;
};

}  // namespace NSMorvaneTest
