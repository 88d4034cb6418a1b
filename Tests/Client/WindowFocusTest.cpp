// Activation and focus of document windows: where the keyboard is, and who is told. What else becomes of a
// change of focus is tested with the focus itself.
#include "Support/ClientWindows.h"

namespace NSMorvaneTest {

class WindowFocusTest : public ClientWindowTest {
 protected:
  std::string CallsOfFocus(const std::string& view, TError wantedError = kOK) {
    return ViewCallsOf([&] { SetFocus(view, wantedError); });
  }
  std::string CallsOfActivating(HWND hwnd) {
    return ViewCallsOf([=] { SetActiveWindow(hwnd); });
  }
};

TEST_IN_RUN(WindowFocusTest, ViewsAndTheirControls) {
  OpenWithFocusTree();
  EXPECT_EQ(CallsOfFocus("leaf"), "outer:on inner:on leaf:on");
  EXPECT_EQ(Focus() + OnDuty(), "leafleaf");
  EXPECT_EQ(CallsOfFocus("outer", kBadInputProgrammingError), "");  // it is not focusable
  EXPECT_NE(fOutput.TakeAssertions(), "");
  // The focus comes back if the native control of the next view is not to be had.
  fViewRecord.fHooks = {{"other:target", TError(100322)}};
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
  OpenWithFocusTree();
  Do("+doc");
  WindowRecord& second = fWindows["doc"];
  EXPECT_EQ(CallsOfFocus("leaf"), "");
  EXPECT_EQ(Focus() + OnDuty(), "leaf");
  EXPECT_EQ(GetActiveWindow(), second.fHwnd);
  EXPECT_EQ(GetFocus(), second.fHwnd);
  fRecord.fLog.Take();
  second.fLog.Take();
  EXPECT_EQ(CallsOfActivating(Hwnd()), "outer:on inner:on leaf:on");
  EXPECT_EQ(OnDuty(), "leaf");
  EXPECT_EQ(fRecord.fLog.Take(), "KeyboardFocusChanged:1 ActivationChanged:1");
  EXPECT_EQ(second.fLog.Take(), "ActivationChanged:0 KeyboardFocusChanged:0");
  EXPECT_EQ(CallsOfActivating(second.fHwnd), "leaf:off inner:off outer:off");
  fOther->fControl = MakeControl();
  EXPECT_EQ(CallsOfFocus("other"), "");
  EXPECT_EQ(CallsOfActivating(Hwnd()), "other:on");
  EXPECT_EQ(GetFocus(), fOther->fControl);
  // The control keeps the keyboard if the client fails.
  SetActiveWindow(second.fHwnd);
  fRecord.fHooks["ActivationChanged:1"] = TError(100324);
  EXPECT_EQ(CallsOfActivating(Hwnd()), "other:on");
  EXPECT_EQ(GetFocus(), fOther->fControl);
  ExpectReported(100324);
  fRecord.fHooks.clear();
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
  // Nobody hears twice that the window is left.
  ::SetFocus(control);
  EXPECT_EQ(ViewCallsOf([this] { Send(WM_ACTIVATE, WA_INACTIVE); }), "");
}

}  // namespace NSMorvaneTest
