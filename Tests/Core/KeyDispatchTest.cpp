// Who is offered a key press, and in which order; where Tab goes.
#include "Component/Portable/Windows/KeyDispatch.h"

#include "Tests/Support/DispatchFixture.h"

using namespace NSMorvaneTest;

namespace {

constexpr std::uint32_t kFocusable = kViewEnabled | kViewFocusable;

// root
//   outer
//     inner
//       leaf
//   other
class KeyDispatch : public DispatchFixture, public IKeyWindow {
 protected:
  KeyDispatch() {
    MakeView("outer", {0, 0, 9, 9}, "", kFocusable);
    MakeView("inner", {0, 0, 9, 9}, "outer", kFocusable);
    MakeView("leaf", {0, 0, 9, 9}, "inner", kFocusable);
    MakeView("other", {0, 0, 9, 9}, "", kFocusable);
  }
  std::string Pressed(std::uint8_t key, std::uint32_t modifiers = 0) {
    TKeyEvent event = {};
    event.fPhysicalKey.fVirtualKey = key;
    event.fModifiers.fKeys = modifiers;
    return CallsOf([&] { fIsTaken = fKeys.DispatchPress(event); });
  }
  // The focus after each of several presses of Tab.
  std::string Walk(int count, std::uint32_t modifiers = 0) {
    std::string names;
    for (; count > 0; --count) Pressed('\t', modifiers), names += Focus() + " ";
    return names;
  }
  void SetTabViews(const std::vector<std::string>& names) {
    fWindow.fTabViews.clear();
    for (const std::string& name : names) fWindow.fTabViews.push_back(View(name));
  }
  bool Offer(const char* word) {
    TFlag handled = 0;
    const TError error = fViewRecord.Call(word, "", &handled);
    MORVANE_CHECK(error);
    return handled != 0;
  }
  bool IKeyWindow_OfferToWindow(const TKeyEvent&) override { return Offer("window:key"); }
  bool IKeyWindow_OfferToApplication(const TKeyEvent&) override { return Offer("run:key"); }
  bool IKeyWindow_OpenWindowList(const TKeyEvent&) override { return Offer("list"); }

  bool fIsTaken = false;
  CKeyDispatch fKeys{*this, fMouse, fWindow.fFocus, fWindow};
};

}  // namespace

TEST_F(KeyDispatch, AKeyGoesUntilSomebodyTakesIt) {
  SetFocus("leaf");
  fMouse.SetCapture(boost::shared_ptr<IMouseCapture>(new RecordingCapture(fViewRecord)));
  std::string all;
  for (const char* const taker :
       {"@:key", "leaf:key", "inner:key", "outer:key", "window:key", "run:key", "list"}) {
    all += (all.empty() ? "" : " ") + std::string(taker);
    fHooks[taker].fHandled = 1;
    EXPECT_EQ(Pressed('A'), all);
    EXPECT_TRUE(fIsTaken);
    fHooks[taker].fHandled = 0;
  }
  EXPECT_EQ(Pressed('A'), all);
  EXPECT_FALSE(fIsTaken);
  fMouse.TakeCapture();
  // A failure ends the chain.
  fHooks = {{"inner:key", kClientError}};
  EXPECT_THROW(Pressed('A'), XApplicationError);
  EXPECT_EQ(fViewRecord.fLog.Take(), "leaf:key inner:key");
  // A view that ends in its own turn ends the walk along the chain; others that have ended are passed over.
  fHooks = {{"leaf:key", Releases("leaf")}};
  EXPECT_EQ(Pressed('A'), "leaf:key leaf:off inner:off outer:off leaf:x window:key run:key list");
  SetFocus("inner");
  fHooks = {{"inner:key", Releases("outer")}};
  EXPECT_EQ(Pressed('A'), "inner:key window:key run:key list");
}

TEST_F(KeyDispatch, TabFollowsTheTabViews) {
  EXPECT_EQ(Pressed('\t'), "window:key");  // taken, though there is no view to go to
  EXPECT_TRUE(fIsTaken);
  SetTabViews({"leaf", "other", "inner"});
  EXPECT_EQ(Walk(4), "leaf other inner leaf ");
  EXPECT_EQ(Walk(3, kModifierShift), "inner other leaf ");
  SetFocus("");
  EXPECT_EQ(Walk(1, kModifierShift), "inner ");
  // Those who get the key before it is a step can take it.
  fHooks["inner:key"] = Handles();
  EXPECT_EQ(Walk(1), "inner ");
  SetTabViews({"other"});
  SetFocus("other");
  EXPECT_EQ(Walk(1), "other ");
  EXPECT_EQ(TakeReports(), "view != anchorView");
}
