// A window for the dispatch of mouse and keyboard, without a native one: views that write down what they are
// told, a mouse that stays where it is put, and a window system that answers what the test says.
#pragma once

#include "Component/Portable/Windows/MouseDispatch.h"
#include "Tests/Support/FakeViewWindow.h"
#include "Tests/Support/RecordingViews.h"
#include "Tests/Support/UnitTest.h"

namespace NSMorvaneTest {

constexpr TError kClientError = 100001;

class FakeMouseShape : public IMouseShape {
 public:
  explicit FakeMouseShape(TBuiltInMouseShape number) : fNumber(number) {}
  std::uint32_t IMouseShape_CheckInvariant() const override { return 1; }
  IMouseShape* IMouseShape_Clone(TError& outError) const override {
    outError = kOK;
    return new FakeMouseShape(fNumber);
  }
  TBuiltInMouseShape fNumber;
};

class DispatchFixture : public ReportingTest, public IMouseWindow, protected NamedViews<CViewImpl> {
 protected:
  static constexpr std::uint32_t kTrackable = kViewEnabled | kViewMouseTrackable;
  static constexpr TPoint kNowhere = {230, 230};

  DispatchFixture() {
    fViewRecord.fMakeShape = [](TBuiltInMouseShape shape) { return new FakeMouseShape(shape); };
  }
  ~DispatchFixture() override {
    fViewRecord.fHooks.clear();
    ReleaseViews();
  }

  TestView& MakeView(const std::string& name, const TRect& rect, const std::string& superView = "",
                     std::uint32_t flags = kTrackable) {
    CViewFactory<TestView, const std::string&, ViewRecord&> factory(name, fViewRecord);
    CViewImpl& super = superView.empty() ? fWindow.Root() : *View(superView);
    const TViewImplPtr view = CViewImpl::MakeSubView(factory, super, name);
    SetRect(*view, rect);
    NSMorvaneTest::SetFlags(*view, flags);
    fViews.emplace_back(name, view.get());
    return *factory.Made();
  }
  Hook Releases(const std::string& view) {
    return [=, this] { ReleaseView(view); };
  }
  void SetFlags(const std::string& name, std::uint32_t flags) { NSMorvaneTest::SetFlags(*View(name), flags); }
  void SetFocus(const std::string& name) { fWindow.fFocus.SetView(View(name)); }
  std::string Focus() const { return fWindow.FocusView() ? fWindow.FocusView()->GetDebugName() : ""; }

  // --- The mouse

  void Tick() { fMouse.CheckTracking(fPosition); }
  // As a window gets it: after a look at what the mouse is over.
  void Move() {
    Tick();
    fMouse.DispatchMove(IMouseWindow_Sample(fPosition));
  }
  void Click(TMouseEventType type = kMouseEventClick, std::uint32_t buttons = 1) {
    fMouse.DispatchClick(Event(type, buttons));
  }
  TMouseEvent Event(TMouseEventType type, std::uint32_t buttons) const {
    TMouseEvent event = {};
    event.fType = type;
    event.fButtons = buttons;
    event.fPosition = fPosition;
    return event;
  }

  // What they make the views write.
  std::string CallsOf(const std::function<void()>& action) { return fViewRecord.CallsOf(action); }
  std::string Ticked() {
    return CallsOf([this] { Tick(); });
  }
  std::string Tracked(const TPoint& point) {
    fPosition = point;
    return Ticked();
  }
  std::string Moved() {
    return CallsOf([this] { Move(); });
  }
  std::string Clicked(TMouseEventType type = kMouseEventClick, std::uint32_t buttons = 1) {
    return CallsOf([=, this] { Click(type, buttons); });
  }

  CViewImpl& IMouseWindow_GetRootView() override { return fWindow.Root(); }
  bool IMouseWindow_IsOnTopAt(const TPoint&) override { return fIsOnTop; }
  TMouseHolder IMouseWindow_GetHolder() override { return fHolder; }
  void IMouseWindow_ForgetAnswers() override { ++fForgotten; }
  void IMouseWindow_OnLook(const TPoint& point) override {
    fLooks.push_back(point);
    if (fOnLook) fOnLook();
  }
  TMouseTracking IMouseWindow_Sample(const TPoint& position) override {
    TMouseTracking event = {};
    event.fTimeMS = 4711;
    event.fState.fPosition = position;
    return event;
  }
  void IMouseWindow_ShowShape(const IMouseShape* shape, const TPoint&) override {
    fShown = shape ? static_cast<const FakeMouseShape*>(shape)->fNumber : kMouseShapeArrow;
  }

  FakeViewWindow fWindow;
  ViewRecord fViewRecord;
  std::map<std::string, Hook>& fHooks = fViewRecord.fHooks;
  TPoint fPosition = kNowhere;
  bool fIsOnTop = true;
  TMouseHolder fHolder = TMouseHolder::kNobody;
  int fForgotten = 0;
  std::vector<TPoint> fLooks;
  std::function<void()> fOnLook;
  std::uint32_t fShown = 0;
  CMouseDispatch fMouse{*this, fWindow.fFocus};
};

}  // namespace NSMorvaneTest
