// Views and captures that write down what the mouse does to them, in one text. Each call is a word: who, then
// what. For a view called a:
//
//   a<bc      tracking, pre pass, with b and c in front     a47/1<bc  pre-click, button mask 1, in front b, c
//   a.        tracking, normal pass                         a44/1     click
//   a+  a-    enter, exit                                   aW-2      wheel, by two notches
//   a?<  a?   shape, pre and normal phase                   ax        deleted
//
// For a capture the name is @, and a release of a button @^44/1.
#pragma once

#include <map>

#include "Support/Pointer.h"
#include "Support/RecordingWindow.h"

namespace NSMorvaneTest {

// What a call does and answers, by what: "<", ".", "+", "-", "?<", "?", "pre" and "click", "W", "^".
struct MouseAnswer {
  TFlag fHandled = 0;
  TError fError = kOK;
  std::function<void()> fDo;
  bool fGivesShape = false;
};
using MouseAnswers = std::map<std::string, MouseAnswer>;

struct MouseRecorder {
  std::string fWords;
  MouseAnswers fAnswers;  // by name and what, as in "a<"
  TMouseTracking fLastTracking = {};
  TMouseEvent fLastClick = {};
  TMouseShapeRequest fLastRequest = {};
  TMouseWheelEvent fLastWheel = {};
  IMorvane* fMorvane = nullptr;

  std::string Take() { return std::exchange(fWords, {}); }
  TError Call(const std::string& who, const std::string& what, const std::string& word,
              TFlag* outHandled = nullptr) {
    fWords += (fWords.empty() ? "" : " ") + who + word;
    const auto found = fAnswers.find(who + what);
    const MouseAnswer answer = found == fAnswers.end() ? MouseAnswer() : found->second;
    if (outHandled) *outHandled = answer.fHandled;
    if (answer.fDo) answer.fDo();
    return answer.fError;
  }
  IMouseShape* ShapeOf(const std::string& call) {
    TError error = kOK;
    const auto found = fAnswers.find(call);
    if (found == fAnswers.end() || !found->second.fGivesShape) return nullptr;
    return fMorvane->IMorvane_CreateBuiltInMouseShape(kMouseShapeHand, error);
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

class MouseView : public CDefaultViewBehavior {
 public:
  MouseView(IView& view, const std::string& name, MouseRecorder& recorder)
      : fView(view), fName(name), fRecorder(recorder) {}
  ~MouseView() override { fRecorder.Call(fName, "x", "x"); }

  TError IViewBehavior_GetHitRects(IRectsGetter& out) override {
    TViewParams params = {};
    EXPECT_EQ(fView.IView_GetParams(params), kOK);
    return fIsTransparent ? kOK : out.IRectsGetter_AddRects(&params.fRect, 1);
  }
  TError IViewBehavior_OnMouseTracking(const TMouseTracking& event, TMousePhase phase,
                                       TFlag& outHandled) override {
    fRecorder.fLastTracking = event;
    const std::string what = phase == kMousePhasePre ? "<" : ".";
    return fRecorder.Call(fName, what, what + NamesOf(event.fState.fViews, event.fState.fViewCount),
                          &outHandled);
  }
  TError IViewBehavior_OnMouseEnterExit(TFlag entered) override {
    const std::string what = entered ? "+" : "-";
    return fRecorder.Call(fName, what, what);
  }
  IMouseShape* IViewBehavior_GetMouseShape(const TMouseShapeRequest& request, TMousePhase phase,
                                           TFlag& outHandled, TError& outError) override {
    fRecorder.fLastRequest = request;
    const std::string what = phase == kMousePhasePre ? "?<" : "?";
    outError = fRecorder.Call(fName, what, what, &outHandled);
    return fRecorder.ShapeOf(fName + what);
  }
  TError IViewBehavior_HandleClick(const TMouseEvent& event, TFlag& outHandled) override {
    fRecorder.fLastClick = event;
    const bool isPre = event.fType >= kMouseEventPreClick;
    const std::string inFront = NamesOf(event.fViews, event.fViewCount);
    return fRecorder.Call(fName, isPre ? "pre" : "click",
                          ClickWord(event) + (isPre ? "<" + inFront : inFront), &outHandled);
  }
  TError IViewBehavior_OnMouseWheel(const TMouseWheelEvent& event, TFlag& outHandled) override {
    fRecorder.fLastWheel = event;
    return fRecorder.Call(fName, "W", "W" + std::to_string(event.fDeltaNotches), &outHandled);
  }

  IView& fView;
  bool fIsTransparent = false;

 private:
  std::string fName;
  MouseRecorder& fRecorder;
};

class RecordingCapture : public IMouseCapture {
 public:
  explicit RecordingCapture(MouseRecorder& recorder) : fRecorder(recorder) {}
  ~RecordingCapture() override { fRecorder.Call("@", "x", "x"); }

  TError IMouseCapture_OnMouseDown(const TMouseEvent& event) override {
    return fRecorder.Call("@", "click", ClickWord(event));
  }
  TError IMouseCapture_OnMouseUp(const TMouseEvent& event) override {
    return fRecorder.Call("@", "^", "^" + ClickWord(event));
  }
  TError IMouseCapture_OnMouseMove(const TMouseTracking& event) override {
    fRecorder.fLastTracking = event;
    return fRecorder.Call("@", ".", ".");
  }
  TError IMouseCapture_OnModifiersChanged(const TModifierKeysEvent&, const TModifierKeysEvent&) override {
    return kOK;
  }
  TError IMouseCapture_OnMouseWheel(const TMouseWheelEvent& event, TFlag& outHandled) override {
    return fRecorder.Call("@", "W", "W" + std::to_string(event.fDeltaNotches), &outHandled);
  }
  TError IMouseCapture_OnKeyDown(const TKeyEvent&, TFlag& outHandled) override {
    outHandled = 0;
    return kOK;
  }
  IMouseShape* IMouseCapture_GetMouseShape(const TMouseShapeRequest&, TError& outError) override {
    outError = fRecorder.Call("@", "?", "?");
    return fRecorder.ShapeOf("@?");
  }

 private:
  MouseRecorder& fRecorder;
};

// A window with views that pass under a mouse that stays where it is: the pointer of the system takes its
// time, and does not always go straight. What is sent to the window goes through its message function at
// once, so that every word has its place; the road of real input has a test of its own.
class MouseClientTest : public ClientWindowTest {
 protected:
  static constexpr POINT kNowhere = {230, 230};

  // Runs with the window, and the views that `makeViews` makes; each step begins with an empty record and no
  // view under the mouse.
  void RunWithMouse(const std::function<void()>& makeViews, Steps steps) {
    for (auto& step : steps)
      step = [this, step] {
        fRecorder.fAnswers.clear();
        Tracked(kNowhere);
        step();
      };
    steps.insert(steps.begin(), [=, this] {
      fRecorder.fMorvane = fMorvane;
      PutMouse(fMouse);
      makeViews();
    });
    steps.push_back([this] { ReleaseViews(); });
    RunWithWindow(kWindowResizableBit, steps);
  }
  MouseView& Make(const std::string& name, IView& superView, const TRect& rect,
                  std::uint32_t flags = kViewEnabled | kViewMouseTrackable) {
    CViewFactory<MouseView, const std::string&, MouseRecorder&> factory(name, fRecorder);
    TError error = kOtherError;
    fMorvane->IMorvane_CreateView(factory, superView, name.c_str(), error);
    EXPECT_EQ(error, kOK);
    MouseView& view = *factory.Made();
    fViews[name] = &view.fView;
    const TRect movedRect = {rect.fLeft + fMoved.x, rect.fTop + fMoved.y, rect.fRight + fMoved.x,
                             rect.fBottom + fMoved.y};
    EXPECT_EQ(view.fView.IView_SetParams({flags, movedRect, kViewDrawDirect, kAutoInvalidationNone}), kOK);
    return view;
  }
  IView& View(const std::string& name) { return *fViews.at(name); }
  void Release(const std::string& name) {
    const auto node = fViews.extract(name);
    if (node.empty()) return;
    EXPECT_EQ(node.mapped()->IView_Release(), kOK);
  }
  void ReleaseViews() {
    while (!fViews.empty()) Release(fViews.rbegin()->first);
  }
  void SetFlags(const std::string& name, std::uint32_t flags) {
    TViewParams params = {};
    EXPECT_EQ(View(name).IView_GetParams(params), kOK);
    params.fFlags = flags;
    EXPECT_EQ(View(name).IView_SetParams(params), kOK);
  }

  // In client coordinates; waits until the pointer is there for good.
  void PutMouse(POINT point) {
    ClientToScreen(Hwnd(), &point);
    EXPECT_TRUE(PutPointer(
        point, [](const POINT& place) { SetCursorPos(place.x, place.y); },
        [&](const std::function<bool()>& hasArrived) { return PumpUntil(hasArrived); }));
  }
  // Dispatches what is waiting for the window until the condition holds; false if that takes too long.
  bool PumpUntil(const std::function<bool()>& condition) {
    const ULONGLONG deadline = GetTickCount64() + kWaitLimitMS;
    while (!condition()) {
      if (GetTickCount64() > deadline) return false;
      MSG message;
      while (PeekMessageW(&message, Hwnd(), 0, 0, PM_REMOVE)) DispatchMessageW(&message);
      MsgWaitForMultipleObjects(0, nullptr, FALSE, 2, QS_ALLINPUT);
    }
    return true;
  }
  // Moves the views until this point of theirs, as they were made, is under the mouse.
  void PutUnderMouse(const POINT& point) {
    const POINT moved = {fMouse.x - point.x, fMouse.y - point.y};
    const std::map<std::string, IView*> views = fViews;
    for (const auto& [name, view] : views) {
      IView* superView = nullptr;
      IView* nextSuperView = nullptr;
      EXPECT_EQ(view->IView_GetSuperView(superView), kOK);
      EXPECT_EQ(superView->IView_GetSuperView(nextSuperView), kOK);
      if (nextSuperView) continue;
      EXPECT_EQ(view->IView_Offset(moved.x - fMoved.x, moved.y - fMoved.y), kOK);
    }
    fMoved = moved;
  }
  LRESULT Send(UINT message, WPARAM wParam = 0) {
    return SendMessageW(Hwnd(), message, wParam, MAKELPARAM(fMouse.x, fMouse.y));
  }
  // The check that the timer of the window makes.
  void Tick() { SendMessageW(Hwnd(), WM_TIMER, 0x1234, 0); }
  // What they make the views write.
  std::string Ticked() {
    fRecorder.Take();
    Tick();
    return fRecorder.Take();
  }
  std::string Tracked(const POINT& point) {
    PutUnderMouse(point);
    return Ticked();
  }
  std::string Sent(UINT message, WPARAM wParam = 0) {
    fRecorder.Take();
    Send(message, wParam);
    return fRecorder.Take();
  }
  // What shapes load has other handles than what LoadCursorW gives.
  static bool PointerIs(const wchar_t* systemCursor) {
    return GetCursor() == LoadImageW(nullptr, systemCursor, IMAGE_CURSOR, 0, 0, LR_SHARED);
  }
  static bool PointerIsArrow() { return GetCursor() == LoadCursorW(nullptr, IDC_ARROW); }

  const POINT fMouse = {150, 120};
  POINT fMoved = {0, 0};
  MouseRecorder fRecorder;
  std::map<std::string, IView*> fViews;
};

}  // namespace NSMorvaneTest
