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
  EXPECT_EQ(Focus(), "");
  EXPECT_EQ(CallsOfFocus("outer", kBadInputProgrammingError), "");  // it is not focusable
  EXPECT_NE(fOutput.TakeAssertions(), "");

  // A code is no reason to stop: everybody has to know.
  fViewRecord.fHooks = {{"outer:on", TError(100321)}, {"leaf:off", TError(100321)}};
  EXPECT_EQ(CallsOfFocus("leaf"), "outer:on inner:on leaf:on");
  EXPECT_EQ(CallsOfFocus("other"), "leaf:off inner:off outer:off other:on");
  EXPECT_EQ(fOutput.CountLines("Ignored error (100321) returned from IViewBehavior_OnOnDutyFocusChanged"), 2);

  // Nor is the focus another one if the native control of the next view is not to be had.
  fViewRecord.fHooks = {{"other:target", TError(100322)}};
  SetFocus("leaf");
  EXPECT_EQ(CallsOfFocus("other", 100322), "leaf:off inner:off outer:off");
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
  Release(second);
}

// Its super views are told all the same, and the focus goes on to the next view that Tab would visit.
TEST_IN_RUN(WindowFocusTest, AViewThatEndsItselfWhenItGoesOffDuty) {
  OpenWithFocusTree();
  SetTabViews({"leaf", "other", "inner"});
  SetFocus("leaf");
  fViewRecord.fHooks["leaf:off"] = [this] {
    fViewRecord.fHooks.clear();
    ReleaseView("leaf");
  };
  ViewCalls();
  SetFocus("inner");
  EXPECT_EQ(Focus(), "inner");
  EXPECT_EQ(fOutput.CountLines("Ejecting focus from view being deleted..."), 1);
  CallLog& log = fViewRecord.fLog;
  EXPECT_EQ(log.Count("leaf:x"), 1);
  EXPECT_EQ(log.Last(), "inner:on");
  // The one that has gained in between has lost again.
  EXPECT_EQ(log.Count("other:on"), 1);
  EXPECT_EQ(log.Count("other:off"), 1);
  CVectorViewReceiver tab;
  EXPECT_EQ(Window().IWindow_GetTabViews(tab), kOK);
  EXPECT_EQ(tab.fViews, (std::vector<IView*>{View("other"), View("inner")}));
  // One that is disabled, or released, while it gets the focus.
  SetTabViews({});
  fViewRecord.fHooks["inner:off"] = [this] {
    TViewParams disabled = ViewParams();
    disabled.fFlags = kViewFocusable;
    EXPECT_EQ(View("other")->IView_SetParams(disabled), kOK);
  };
  EXPECT_EQ(CallsOfFocus("other"), "inner:off outer:off");
  EXPECT_EQ(Focus(), "");
  SetFocus("inner");
  TViewParams enabled = ViewParams();
  enabled.fFlags = kViewFocusable | kViewEnabled;
  EXPECT_EQ(View("other")->IView_SetParams(enabled), kOK);
  fViewRecord.fHooks["inner:off"] = [this] { ReleaseView("other"); };
  SetFocus("other");
  EXPECT_EQ(Focus(), "");
  EXPECT_EQ(log.Last(), "other:x");
  fViewRecord.fHooks.clear();
}

// The window ends while its views are being told, and while it is working for the client.
TEST_IN_RUN(WindowFocusTest, AWindowReleasedInsideItsViewsCallbacks) {
  enum Action { kFocus, kDisabling, kKey, kTabViews };
  const struct {
    const char* fHook;
    Action fAction;
  } rows[] = {{"leaf:off", kFocus},     {"other:on", kFocus},     {"other:menu", kFocus},
              {"other:target", kFocus}, {"leaf:off", kDisabling}, {"other:on", kDisabling},
              {"leaf:key", kKey},       {"", kTabViews}};
  struct Releaser : IViewListReceiver {
    TError IViewListReceiver_ReceiveViews(IView* const*, std::uint32_t) override { return fRelease(); }
    Hook fRelease;
  } receiver;
  WindowRecord first;
  Make(Kind::kDocument, first);
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fHook);
    OpenWithFocusTree();
    SetFocus("leaf");
    SetTabViews({"leaf", "other"});
    SendMessageW(first.fHwnd, WM_NULL, 0, 0);  // fills the menu bars
    IWindow& window = Window();
    IView* const leaf = View("leaf");
    bool isReleased = false;
    receiver.fRelease = [&] {
      fViewRecord.fHooks.clear();
      isReleased = true;
      ReleaseViews();
      return fRecord.fRelease();
    };
    fViewRecord.fHooks[row.fHook] = receiver.fRelease;
    TViewParams disabled = ViewParams();
    disabled.fFlags = kViewFocusable;
    switch (row.fAction) {
      case kFocus:
        SetFocus("other");
        break;
      case kDisabling:
        EXPECT_EQ(leaf->IView_SetParams(disabled), kOK);
        break;
      case kKey:
        PostMessageW(Hwnd(), WM_KEYDOWN, 'A', 1);
        EXPECT_TRUE(YieldUntil([&] { return isReleased; }));
        break;
      case kTabViews:
        EXPECT_EQ(window.IWindow_GetTabViews(receiver), kOK);
        break;
    }
    SendMessageW(first.fHwnd, WM_NULL, 0, 0);
    EXPECT_TRUE(isReleased);
    EXPECT_FALSE(IsWindow(Hwnd()));
    EXPECT_EQ(fRecord.fLog.Count("deleted"), 1);
    fRecord.fLog.Take();
    // The old view is still busy with its parameters when the window ends.
    EXPECT_EQ(fOutput.TakeAssertions() != "", row.fAction == kDisabling);
  }
  Release(first);
}

}  // namespace NSMorvaneTest
