// Activation and focus of document windows: who is told what, and in which order.
#include "Support/ClientWindows.h"

namespace NSMorvaneTest {

class WindowFocusTest : public ClientWindowTest {
 protected:
  std::string CallsOfFocus(const std::string& view, TError wantedError = kOK) {
    return ViewCallsOf([&] { SetFocus(view, wantedError); });
  }
};

TEST_IN_RUN(WindowFocusTest, SuperViewsAreToldToo) {
  OpenWithFocusTree();
  EXPECT_EQ(Focus(), "");
  EXPECT_EQ(CallsOfFocus("leaf"), "outer:on inner:on leaf:on");
  EXPECT_EQ(Focus() + OnDuty(), "leafleaf");
  EXPECT_EQ(CallsOfFocus("leaf"), "");
  EXPECT_EQ(CallsOfFocus("other"), "leaf:off inner:off outer:off other:on");
  EXPECT_EQ(CallsOfFocus(""), "other:off");
  EXPECT_EQ(CallsOfFocus("outer", kBadInputProgrammingError), "");  // it is not focusable
  EXPECT_NE(fOutput.TakeAssertions(), "");

  // A code is no reason to stop: everybody has to know.
  fViewRecord.fHooks = {{"outer:on", TError(100321)}, {"leaf:off", TError(100321)}};
  EXPECT_EQ(CallsOfFocus("leaf"), "outer:on inner:on leaf:on");
  EXPECT_EQ(CallsOfFocus("other"), "leaf:off inner:off outer:off other:on");

  // The focus comes back if the native control of the next view is not to be had.
  fViewRecord.fHooks = {{"other:target", TError(100322)}};
  SetFocus("leaf");
  EXPECT_EQ(CallsOfFocus("other", 100322), "leaf:off inner:off outer:off outer:on inner:on leaf:on");
  EXPECT_EQ(Focus(), "leaf");
  fViewRecord.fHooks.clear();

  // A view whose keyboard is a native control's; it goes back to the window for a view without one.
  fOther->fControl = MakeControl();
  for (const std::string view : {"other", "leaf", "other", ""}) {
    SetFocus(view);
    EXPECT_EQ(GetFocus(), view == "other" ? fOther->fControl : Hwnd());
    EXPECT_EQ(OnDuty(), view);
  }
}

// The focus of a window that is not active waits until it is, and does not bring the window to the front.
TEST_IN_RUN(WindowFocusTest, AnInactiveWindow) {
  WindowRecord second;
  OpenWithFocusTree();
  Make(Kind::kDocument, second);
  EXPECT_EQ(CallsOfFocus("leaf"), "");
  EXPECT_EQ(Focus() + OnDuty(), "leaf");
  EXPECT_EQ(GetActiveWindow(), second.fHwnd);
  EXPECT_EQ(GetFocus(), second.fHwnd);
  fRecord.fLog.Take();
  second.fLog.Take();
  EXPECT_EQ(ViewCallsOf([this] { SetActiveWindow(Hwnd()); }), "outer:on inner:on leaf:on");
  EXPECT_EQ(OnDuty(), "leaf");
  EXPECT_EQ(fRecord.fLog.Take(), "KeyboardFocusChanged:1 ActivationChanged:1");
  EXPECT_EQ(second.fLog.Take(), "ActivationChanged:0 KeyboardFocusChanged:0");
  EXPECT_EQ(ViewCallsOf([&] { SetActiveWindow(second.fHwnd); }), "leaf:off inner:off outer:off");
  EXPECT_EQ(Focus() + OnDuty(), "leaf");
  fOther->fControl = MakeControl();
  EXPECT_EQ(CallsOfFocus("other"), "");
  EXPECT_EQ(ViewCallsOf([this] { SetActiveWindow(Hwnd()); }), "other:on");
  EXPECT_EQ(GetFocus(), fOther->fControl);
  // While it is not active, a view keeps the focus that it could not have; no longer.
  SetActiveWindow(second.fHwnd);
  SetTabViews({"inner"});
  EXPECT_EQ(ViewCallsOf([this] { SetFlags("other", kViewFocusable); }), "");
  EXPECT_EQ(Focus(), "other");
  EXPECT_EQ(ViewCallsOf([this] { SetActiveWindow(Hwnd()); }), "outer:on inner:on");
  Release(second);
}

TEST_IN_RUN(WindowFocusTest, AControlTakesTheKeyboard) {
  OpenWithFocusTree();
  SetFocus("leaf");
  const HWND control = MakeControl();
  EXPECT_EQ(ViewCallsOf([=] { ::SetFocus(control); }), "leaf:off inner:off outer:off");
  EXPECT_EQ(Focus(), "leaf");
  EXPECT_EQ(ViewCallsOf([this] { ::SetFocus(Hwnd()); }), "outer:on inner:on leaf:on");
  ::SetFocus(control);
  EXPECT_EQ(CallsOfFocus("leaf"), "outer:on inner:on leaf:on");
  EXPECT_EQ(GetFocus(), Hwnd());
  ::SetFocus(control);
  EXPECT_EQ(CallsOfFocus("other"), "other:on");
  EXPECT_EQ(GetFocus(), Hwnd());
  // Nobody hears twice that the window is left.
  ::SetFocus(control);
  EXPECT_EQ(ViewCallsOf([this] { Send(WM_ACTIVATE, WA_INACTIVE); }), "");
}

// Its super views are told all the same. Whoever would have had the focus without the change is not.
TEST_IN_RUN(WindowFocusTest, AViewThatEndsItselfWhenItGoesOffDuty) {
  OpenWithFocusTree();
  SetTabViews({"leaf", "other", "inner"});
  SetFocus("leaf");
  fViewRecord.fHooks["leaf:off"] = [this] {
    fViewRecord.fHooks.clear();
    ReleaseView("leaf");
  };
  EXPECT_EQ(CallsOfFocus("inner"), "leaf:off inner:off outer:off outer:on inner:on leaf:x");
  EXPECT_EQ(Focus(), "inner");
  // One that is disabled, or released, while it gets the focus.
  SetTabViews({});
  fViewRecord.fHooks["inner:off"] = [this] { SetFlags("other", kViewFocusable); };
  EXPECT_EQ(CallsOfFocus("other"), "inner:off outer:off");
  EXPECT_EQ(Focus(), "");
  SetFocus("inner");
  SetFlags("other", kViewFocusable | kViewEnabled);
  fViewRecord.fHooks["inner:off"] = [this] { ReleaseView("other"); };
  SetFocus("other");
  EXPECT_EQ(Focus(), "");
  EXPECT_EQ(fViewRecord.fLog.Last(), "other:x");
  fViewRecord.fHooks.clear();
}

}  // namespace NSMorvaneTest
