// Activation and focus of document windows: who is told what, and in which order.
#include "Support/FocusTree.h"

namespace NSMorvaneTest {

using WindowFocusTest = FocusTreeTest;

TEST_F(WindowFocusTest, SuperViewsAreToldToo) {
  RunWithViews([this] {
    EXPECT_EQ(FocusView(), nullptr);
    SetFocusView(fLeaf);
    EXPECT_EQ(FocusView(), fLeaf);
    EXPECT_EQ(OnDutyView(), fLeaf);
    EXPECT_EQ(TakeViewLog(), (CallLog{"outer gained", "inner gained", "leaf gained"}));
    SetFocusView(fLeaf);
    EXPECT_EQ(TakeViewLog(), CallLog());
    SetFocusView(fOther);
    EXPECT_EQ(TakeViewLog(), (CallLog{"leaf lost", "inner lost", "outer lost", "other gained"}));
    SetFocusView(nullptr);
    EXPECT_EQ(TakeViewLog(), CallLog{"other lost"});
    EXPECT_EQ(FocusView(), nullptr);
    EXPECT_EQ(GetFocus(), Hwnd());

    SetFocusView(fOuter, kBadInputProgrammingError);  // it is not focusable
    EXPECT_EQ(fOutput.TakeAssertions().size(), 1u);
    EXPECT_EQ(TakeViewLog(), CallLog());
  });
}

// A code is no reason to stop: everybody has to know.
TEST_F(WindowFocusTest, FailuresOfNotificationsAreLogged) {
  fOuterRecord.fHooks["gained"] = fLeafRecord.fHooks["lost"] = TError(100321);
  RunWithViews([this] {
    SetFocusView(fLeaf);
    SetFocusView(fOther);
    EXPECT_EQ(TakeViewLog(), (CallLog{"outer gained", "inner gained", "leaf gained", "leaf lost",
                                      "inner lost", "outer lost", "other gained"}));
    EXPECT_EQ(fOutput.CountLines("Ignored error (100321) returned from IViewBehavior_OnOnDutyFocusChanged"),
              2u);
  });
}

TEST_F(WindowFocusTest, AFailingFocusTargetChangesNothingElse) {
  fOtherRecord.fHooks["GetNativeFocusTarget"] = TError(100322);
  RunWithViews([this] {
    SetFocusView(fLeaf);
    TakeViewLog();
    SetFocusView(fOther, 100322);
    EXPECT_EQ(TakeViewLog(), (CallLog{"leaf lost", "inner lost", "outer lost"}));
    EXPECT_EQ(FocusView(), fLeaf);
  });
}

// The focus of a window that is not active waits until it is, and does not bring the window to the front.
TEST_F(WindowFocusTest, AnInactiveWindow) {
  WindowRecord second;
  RunWithViews({[&] { Create(kPlain, second); },
                [&] {
                  SetFocusView(fLeaf);
                  EXPECT_EQ(FocusView(), fLeaf);
                  EXPECT_EQ(OnDutyView(), nullptr);
                  EXPECT_EQ(TakeViewLog(), CallLog());
                  EXPECT_EQ(GetActiveWindow(), second.fHwnd);
                  EXPECT_EQ(GetFocus(), second.fHwnd);
                  fRecord.fLog.clear();
                  second.fLog.clear();
                  SetActiveWindow(Hwnd());
                  EXPECT_EQ(OnDutyView(), fLeaf);
                  EXPECT_EQ(TakeViewLog(), (CallLog{"outer gained", "inner gained", "leaf gained"}));
                  EXPECT_EQ(fRecord.fLog, (CallLog{"OnKeyboardFocusChanged 1", "OnActivationChanged 1"}));
                  EXPECT_EQ(second.fLog, (CallLog{"OnActivationChanged 0", "OnKeyboardFocusChanged 0"}));

                  SetActiveWindow(second.fHwnd);
                  EXPECT_EQ(TakeViewLog(), (CallLog{"leaf lost", "inner lost", "outer lost"}));
                  EXPECT_EQ(FocusView(), fLeaf);
                  EXPECT_EQ(OnDutyView(), nullptr);
                },
                [&] {
                  fOtherRecord.fNativeFocusTarget = MakeControl();
                  SetFocusView(fOther);
                  EXPECT_EQ(TakeViewLog(), CallLog());
                  SetActiveWindow(Hwnd());
                  EXPECT_EQ(TakeViewLog(), CallLog{"other gained"});
                  EXPECT_EQ(GetFocus(), fOtherRecord.fNativeFocusTarget);
                }});
}

// A view whose keyboard is a native control's; it goes back to the window for a view without one.
TEST_F(WindowFocusTest, ANativeControlGetsTheKeyboard) {
  RunWithViews([&] {
    const HWND control = fOtherRecord.fNativeFocusTarget = MakeControl();
    for (IView* const view : {fOther, fLeaf, fOther, static_cast<IView*>(nullptr)}) {
      SetFocusView(view);
      EXPECT_EQ(GetFocus(), view == fOther ? control : Hwnd());
      EXPECT_EQ(OnDutyView(), view);
    }
  });
}

// Its super views are told all the same, and the focus goes on to the next view that Tab would visit.
TEST_F(WindowFocusTest, AViewThatEndsItselfWhenItGoesOffDuty) {
  fLeafRecord.fHooks["lost"] = [this] {
    fLeafRecord.fHooks.clear();
    Release(fLeaf);
  };
  RunWithViews([this] {
    IView* const tabViews[] = {fLeaf, fInner, fOther};
    EXPECT_EQ(WindowOf(Window()).IWindow_SetTabViews(tabViews, 3), kOK);
    SetFocusView(fLeaf);
    TakeViewLog();
    SetFocusView(fOther);
    EXPECT_EQ(FocusView(), fOther);
    EXPECT_EQ(fOutput.CountLines("Ejecting focus from view being deleted..."), 1u);
    const CallLog log = TakeViewLog();
    EXPECT_EQ(std::count(log.begin(), log.end(), "leaf deleted"), 1);
    EXPECT_EQ(log.back(), "other gained");
    // Whoever has gained in between has lost again.
    for (const char* const name : {"inner", "outer"}) {
      EXPECT_GE(std::count(log.begin(), log.end(), name + std::string(" lost")),
                1 + std::count(log.begin(), log.end(), name + std::string(" gained")));
    }
    CVectorViewReceiver tab;
    EXPECT_EQ(WindowOf(Window()).IWindow_GetTabViews(tab), kOK);
    EXPECT_EQ(tab.fViews, (std::vector<IView*>{fInner, fOther}));
  });
}

TEST_F(WindowFocusTest, AViewThatIsReleasedWhileItGetsTheFocus) {
  fLeafRecord.fHooks["lost"] = [this] { Release(fOther); };
  RunWithViews([this] {
    SetFocusView(fLeaf);
    SetFocusView(fOther);
    EXPECT_EQ(FocusView(), nullptr);
    EXPECT_EQ(fViewLog.back(), "other deleted");
    fLeafRecord.fHooks.clear();
  });
}

// The window ends while its views are being told, and while it is working for the client.
TEST_F(WindowFocusTest, AWindowReleasedInsideItsViewsCallbacks) {
  struct Scenario {
    const char* fHook;
    bool fOfTheOldView;  // of the view that loses the focus, else of the one that gets it
    bool fByDisabling;   // the old view, which passes the focus on
    bool fByKey = false;
  };
  const Scenario kScenarios[] = {{"lost", true, false},
                                 {"gained", false, false},
                                 {"OnSetupMenuBar", false, false},
                                 {"GetNativeFocusTarget", false, false},
                                 {"lost", true, true},
                                 {"gained", false, true},
                                 {"key", true, false, true}};
  TViewParams disabled = ViewParams();
  disabled.fFlags = kViewFocusable;
  RunWithWindow(kPlain, [&] {
    for (const Scenario& scenario : kScenarios) {
      SCOPED_TRACE(scenario.fHook);
      WindowRecord record;
      Create(kPlain, record);
      IView* oldView = Make(RootViewOf(*record.fWindow), fInnerRecord, kViewFocusable);
      IView* newView = Make(RootViewOf(*record.fWindow), fOtherRecord, kViewFocusable);
      IWindow& window = WindowOf(*record.fWindow);
      EXPECT_EQ(window.IWindow_SetConceptualFocusView(oldView), kOK);
      IView* const tabViews[] = {oldView, newView};
      EXPECT_EQ(window.IWindow_SetTabViews(tabViews, 2), kOK);
      SendMessageW(Hwnd(), WM_NULL, 0, 0);  // fills the menu bars
      bool isReleased = false;
      ViewRecord& view = scenario.fOfTheOldView ? fInnerRecord : fOtherRecord;
      view.fHooks[scenario.fHook] = [&] {
        fInnerRecord.fHooks.clear();
        fOtherRecord.fHooks.clear();
        isReleased = true;
        Release(oldView);
        Release(newView);
        return record.fWindow->IDocumentWindow_Release();
      };
      if (scenario.fByKey) {
        PostMessageW(record.fHwnd, WM_KEYDOWN, 'A', 1);
        EXPECT_TRUE(YieldUntil([&] { return isReleased; }));
      } else {
        EXPECT_EQ(scenario.fByDisabling ? oldView->IView_SetParams(disabled)
                                        : window.IWindow_SetConceptualFocusView(newView),
                  kOK);
      }
      SendMessageW(Hwnd(), WM_NULL, 0, 0);
      EXPECT_TRUE(isReleased);
      EXPECT_FALSE(IsWindow(record.fHwnd));
      EXPECT_EQ(record.Count("deleted"), 1u);
      // The old view is still busy with its parameters when the window ends.
      EXPECT_EQ(fOutput.TakeAssertions().size(), scenario.fByDisabling ? 1u : 0u);
    }
  });
}

TEST_F(WindowFocusTest, AWindowReleasedByAReceiverOfItsTabViews) {
  struct Releaser : IViewListReceiver {
    explicit Releaser(IDocumentWindow& window) : fWindow(window) {}
    TError IViewListReceiver_ReceiveViews(IView* const*, std::uint32_t) override {
      return fWindow.IDocumentWindow_Release();
    }
    IDocumentWindow& fWindow;
  };
  WindowRecord record;
  RunWithWindow(kPlain, [&] {
    Create(kPlain, record);
    Releaser releaser(*record.fWindow);
    EXPECT_EQ(WindowOf(*record.fWindow).IWindow_GetTabViews(releaser), kOK);
    EXPECT_FALSE(IsWindow(record.fHwnd));
  });
}

}  // namespace NSMorvaneTest
