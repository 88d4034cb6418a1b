// Document windows as a client sees them: what they are made of, sizes and placements, titles, and the ways
// in which they end.
#include <algorithm>
#include <limits>

#include "Support/RecordingWindow.h"

namespace NSMorvaneTest {

namespace {

constexpr TStyleFlags kPlain = 0;
constexpr TStyleFlags kSizeable = kWindowResizableBit | kWindowZoomableBit;

constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();

TRect NativeNormalRect(HWND hwnd) {
  WINDOWPLACEMENT wp = {};
  wp.length = sizeof(wp);
  GetWindowPlacement(hwnd, &wp);
  const RECT& rect = wp.rcNormalPosition;
  return {rect.left, rect.top, rect.right, rect.bottom};
}

TSize SizeOf(const TRect& rect) { return {WidthOf(rect), HeightOf(rect)}; }

}  // namespace

class WindowTest : public ClientWindowTest {
 protected:
  // The size of the window's frame around a client area.
  TSize FrameSize(const TSize& clientSize) {
    TRect frame = {};
    EXPECT_EQ(WindowOf(Window()).IWindow_ClientRectToFrameRect({0, 0, clientSize.fWidth, clientSize.fHeight},
                                                               frame),
              kOK);
    return SizeOf(frame);
  }
  // What the library has told, and what can be asked for, agree with the native window.
  void ExpectInStep() {
    const TDocumentWindowState state = State();
    EXPECT_EQ(state.fPlacement.fMinimized, IsIconic(Hwnd()) ? 1u : 0u);
    EXPECT_EQ(state.fPlacement.fMaximized, IsZoomed(Hwnd()) ? 1u : 0u);
    EXPECT_EQ(RectOf(RootViewOf(Window())),
              (TRect{0, 0, fRecord.fSizes.back().second.fWidth, fRecord.fSizes.back().second.fHeight}));
    if (!IsIconic(Hwnd())) {
      EXPECT_EQ(fRecord.fSizes.back().second, NativeClientSize(Hwnd()));
    }
    const TDocumentWindowPlacement& told = fRecord.fPlacements.back().second;
    EXPECT_EQ(told.fMinimized, state.fPlacement.fMinimized);
    EXPECT_EQ(told.fMaximized, state.fPlacement.fMaximized);
    EXPECT_EQ(told.fZoomState, state.fPlacement.fZoomState);
    EXPECT_EQ(told.fUserRect, state.fPlacement.fUserRect);
    EXPECT_EQ(told.fIdealRect, state.fPlacement.fIdealRect);
  }
};

// --- Making

TEST_F(WindowTest, ANewWindow) {
  RunWithWindow(kPlain, [this] {
    wchar_t className[64] = {};
    GetClassNameW(Hwnd(), className, 64);
    EXPECT_STREQ(className, L"SkerryDocumentWindow");
    EXPECT_TRUE(IsWindowVisible(Hwnd()));
    EXPECT_EQ(GetActiveWindow(), Hwnd());
    EXPECT_EQ(NativeTitleOf(Hwnd()), L"");
    EXPECT_EQ(NativeNormalRect(Hwnd()), (TRect{100, 100, 400, 400}));
    EXPECT_TRUE(GetWindowLongW(Hwnd(), GWL_EXSTYLE) & WS_EX_ACCEPTFILES);
    TFlag active = 7;
    EXPECT_EQ(WindowOf(Window()).IWindow_IsActive(active), kOK);
    EXPECT_EQ(active, 1u);
    IModalOwner* owner = nullptr;
    EXPECT_EQ(Window().IDocumentWindow_GetModalOwner(owner), kOK);
    TNativeWindow native = {};
    EXPECT_EQ(owner->IModalOwner_GetNativeWindow(native), kOK);
    EXPECT_EQ(native.fHwnd, Hwnd());
    IDocumentWindowBehavior* behavior = nullptr;
    EXPECT_EQ(Window().IDocumentWindow_GetBehavior(behavior), kOK);
    EXPECT_NE(dynamic_cast<RecordingWindowBehavior*>(behavior), nullptr);
    const TDocumentWindowState state = State();
    for (const TSize& size : {state.fMinimumClientSize, state.fMaximumClientSize, state.fIdealClientSize})
      EXPECT_EQ(size, (TSize{0, 0}));
    EXPECT_EQ(state.fPlacement.fZoomState, kWindowStateUser);
    EXPECT_EQ(state.fPlacement.fUserRect, (TRect{100, 100, 400, 400}));
    ExpectInStep();
  });
  // Size and placement come before the window is on the screen, and neither of them twice.
  const CallLog opening(fRecord.fLog.begin(), fRecord.fLog.begin() + 4);
  EXPECT_EQ(opening, (CallLog{"OnClientSizeChanged", "OnPlacementChanged", "OnActivationChanged 1",
                              "OnKeyboardFocusChanged 1"}));
  EXPECT_EQ(fRecord.fSizes.size(), 1u);
  EXPECT_EQ(fRecord.fPlacements.size(), 1u);
  EXPECT_EQ(fRecord.Count("OnRequestClose 1"), 1u);
  EXPECT_EQ(fRecord.fLog.back(), "deleted");
}

TEST_F(WindowTest, WhatItIsToldBeforeItIsShownIsHowItAppears) {
  fRecord.fHooks["factory"] = [this] {
    EXPECT_FALSE(IsWindowVisible(Hwnd()));
    Change([](TDocumentWindowState& state) {
      CopyText(state.fTitle, u"Early");
      state.fModified = 1;
      state.fPlacement.fUserRect = {200, 150, 700, 550};
    });
    EXPECT_FALSE(IsWindowVisible(Hwnd()));
  };
  RunWithWindow(kSizeable, [this] {
    EXPECT_EQ(NativeTitleOf(Hwnd()), L"Early*");
    EXPECT_EQ(NativeNormalRect(Hwnd()), (TRect{200, 150, 700, 550}));
    EXPECT_EQ(fRecord.fSizes.size(), 1u);
    EXPECT_EQ(fRecord.fPlacements.size(), 1u);
    ExpectInStep();
  });
}

TEST_F(WindowTest, AppearsMinimizedOrMaximizedWhenToldSo) {
  WindowRecord maximized;
  maximized.fHooks["factory"] = [&] {
    return ChangeState(*maximized.fWindow, [](auto& state) { state.fPlacement.fMaximized = 1; });
  };
  fRecord.fHooks["factory"] = [this] {
    Change([](TDocumentWindowState& state) { state.fPlacement.fMinimized = 1; });
  };
  RunWithWindow(kSizeable, {[&] {
                              EXPECT_TRUE(IsIconic(Hwnd()));
                              EXPECT_EQ(State().fPlacement.fMinimized, 1u);
                              EXPECT_EQ(Window().IDocumentWindow_FocusNow(), kOK);
                            },
                            [&] {
                              EXPECT_FALSE(IsIconic(Hwnd()));
                              EXPECT_EQ(GetActiveWindow(), Hwnd());
                              ExpectInStep();
                              Create(kSizeable, maximized);
                              EXPECT_TRUE(IsZoomed(maximized.fHwnd));
                            }});
}

// --- Titles

TEST_F(WindowTest, Titles) {
  const std::u16string longest(kTitleChars, u'x');
  RunWithWindow(kPlain, [&] {
    const struct {
      std::u16string fTitle;
      TFlag fModified;
      std::wstring fNative;
    } kCases[] = {
        {u"Plan", 0, L"Plan"},
        {u"Plan", 1, L"Plan*"},
        {u"Plan", 0, L"Plan"},
        {u"Plan*", 1, L"Plan**"},
        {u"", 1, L"*"},
        {u"\u00C4 & B_c \u4E2D", 0, L"\u00C4 & B_c \u4E2D"},
        {longest, 1, std::wstring(kTitleChars, L'x') + L"*"},
        {u"", 0, L""},
    };
    for (const auto& c : kCases) {
      Change([&](TDocumentWindowState& state) {
        CopyText(state.fTitle, c.fTitle);
        state.fModified = c.fModified;
      });
      EXPECT_EQ(NativeTitleOf(Hwnd()), c.fNative);
      EXPECT_EQ(TextOf(State().fTitle), c.fTitle);
      EXPECT_EQ(State().fModified, c.fModified);
    }
  });
}

// Window lists show titles.
TEST_F(WindowTest, ANewTitleRebuildsTheMenuBars) {
  int setups = 0;
  RunWithWindow(kPlain, {[&] {
                           setups = fRecord.fMenuBarSetups;
                           Change([](TDocumentWindowState&) {});
                         },
                         [&] {
                           EXPECT_EQ(fRecord.fMenuBarSetups, setups);
                           Change([](TDocumentWindowState& state) { state.fModified = 1; });
                         },
                         [&] { EXPECT_EQ(fRecord.fMenuBarSetups, setups + 1); }});
}

// --- Frame and client area

TEST_F(WindowTest, FrameAndClientRectangles) {
  RunWithWindow(kSizeable, [this] {
    IWindow& window = WindowOf(Window());
    TRect frame = {}, client = {}, back = {};
    EXPECT_EQ(window.IWindow_GetFrameRect(frame), kOK);
    EXPECT_EQ(frame, (TRect{100, 100, 400, 400}));
    EXPECT_EQ(window.IWindow_FrameRectToClientRect(frame, client), kOK);
    EXPECT_EQ(SizeOf(client), NativeClientSize(Hwnd()));
    POINT corner = {};
    ClientToScreen(Hwnd(), &corner);
    EXPECT_EQ(client.fLeft, corner.x);
    EXPECT_EQ(client.fTop, corner.y);
    EXPECT_EQ(window.IWindow_ClientRectToFrameRect(client, back), kOK);
    EXPECT_EQ(back, frame);
    ShowWindow(Hwnd(), SW_MAXIMIZE);
    EXPECT_EQ(window.IWindow_GetFrameRect(frame), kOK);
    RECT native = {};
    GetWindowRect(Hwnd(), &native);
    EXPECT_EQ(frame, (TRect{native.left, native.top, native.right, native.bottom}));
  });
}

// --- Following the user

TEST_F(WindowTest, MovingAndResizing) {
  RunWithWindow(kSizeable, [this] {
    fRecord.fSizes.clear();
    const TSize before = NativeClientSize(Hwnd());
    SetWindowPos(Hwnd(), nullptr, 40, 50, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    EXPECT_TRUE(fRecord.fSizes.empty());
    EXPECT_EQ(fRecord.fPlacements.back().first.fUserRect, (TRect{100, 100, 400, 400}));
    EXPECT_EQ(fRecord.fPlacements.back().second.fUserRect, (TRect{40, 50, 340, 350}));

    SetWindowPos(Hwnd(), nullptr, 0, 0, 500, 420, SWP_NOMOVE | SWP_NOZORDER);
    ASSERT_EQ(fRecord.fSizes.size(), 1u);
    EXPECT_EQ(fRecord.fSizes[0].first, before);
    EXPECT_EQ(fRecord.fPlacements.back().second.fUserRect, (TRect{40, 50, 540, 470}));
    ExpectInStep();

    // Nothing changes, nothing is told.
    const std::size_t placements = fRecord.fPlacements.size();
    SetWindowPos(Hwnd(), nullptr, 40, 50, 500, 420, SWP_NOZORDER | SWP_FRAMECHANGED);
    EXPECT_EQ(fRecord.fSizes.size(), 1u);
    EXPECT_EQ(fRecord.fPlacements.size(), placements);
  });
}

// A client that does not like its size changes it at once, while it is being told; also before the window is
// on the screen.
TEST_F(WindowTest, ResizedInsideTheCallback) {
  fRecord.fHooks["OnClientSizeChanged"] = [this] {
    Change([](TDocumentWindowState& state) { state.fPlacement.fUserRect = {60, 70, 460, 370}; });
  };
  RunWithWindow(kSizeable, {[this] {
                  EXPECT_EQ(NativeNormalRect(Hwnd()), (TRect{60, 70, 460, 370}));
                  ExpectInStep();
                  SetWindowPos(Hwnd(), nullptr, 0, 0, 500, 420, SWP_NOMOVE | SWP_NOZORDER);
                  EXPECT_EQ(NativeNormalRect(Hwnd()), (TRect{60, 70, 460, 370}));
                  ExpectInStep();
                }});
}

TEST_F(WindowTest, MinimizingAndRestoring) {
  RunWithWindow(kSizeable,
                {[this] {
                   fRecord.fSizes.clear();
                   ShowWindow(Hwnd(), SW_MINIMIZE);
                   // The views keep their size while nobody can see them.
                   EXPECT_TRUE(fRecord.fSizes.empty());
                   EXPECT_EQ(fRecord.fPlacements.back().second.fMinimized, 1u);
                   EXPECT_EQ(fRecord.fPlacements.back().second.fUserRect, (TRect{100, 100, 400, 400}));
                   EXPECT_EQ(State().fPlacement.fZoomState, kWindowStateUser);
                   EXPECT_EQ(State().fPlacement.fUserRect, (TRect{100, 100, 400, 400}));
                   ShowWindow(Hwnd(), SW_RESTORE);
                   EXPECT_TRUE(fRecord.fSizes.empty());
                   EXPECT_EQ(fRecord.fPlacements.back().second.fMinimized, 0u);
                 },
                 [this] {
                   fRecord.fSizes.emplace_back(TSize{}, NativeClientSize(Hwnd()));
                   ExpectInStep();
                 }});
}

TEST_F(WindowTest, MaximizingAndRestoring) {
  RunWithWindow(kSizeable, [this] {
    const TSize before = NativeClientSize(Hwnd());
    ShowWindow(Hwnd(), SW_MAXIMIZE);
    EXPECT_EQ(State().fPlacement.fMaximized, 1u);
    EXPECT_EQ(State().fPlacement.fUserRect, (TRect{100, 100, 400, 400}));
    EXPECT_GT(fRecord.fSizes.back().second.fWidth, before.fWidth);
    ExpectInStep();

    ShowWindow(Hwnd(), SW_MINIMIZE);
    EXPECT_EQ(State().fPlacement.fMinimized, 1u);
    EXPECT_EQ(State().fPlacement.fMaximized, 0u);
    ShowWindow(Hwnd(), SW_RESTORE);
    EXPECT_EQ(State().fPlacement.fMaximized, 1u);
    ShowWindow(Hwnd(), SW_RESTORE);
    EXPECT_EQ(NativeClientSize(Hwnd()), before);
    EXPECT_EQ(State().fPlacement.fUserRect, (TRect{100, 100, 400, 400}));
    ExpectInStep();
  });
}

// --- The ideal size

TEST_F(WindowTest, GoingToTheIdealSizeAndBack) {
  RunWithWindow(kSizeable, [this] {
    Change([](TDocumentWindowState& state) {
      state.fIdealClientSize = {350, 250};
      state.fPlacement.fZoomState = kWindowStateIdeal;
    });
    EXPECT_EQ(NativeClientSize(Hwnd()), (TSize{350, 250}));
    const TSize frame = FrameSize({350, 250});
    const TRect ideal = {100, 100, 100 + frame.fWidth, 100 + frame.fHeight};
    EXPECT_EQ(State().fPlacement.fZoomState, kWindowStateIdeal);
    EXPECT_EQ(State().fPlacement.fIdealRect, ideal);
    EXPECT_EQ(State().fPlacement.fUserRect, (TRect{100, 100, 400, 400}));
    ExpectInStep();

    Change([](TDocumentWindowState& state) { state.fPlacement.fZoomState = kWindowStateUser; });
    EXPECT_EQ(NativeNormalRect(Hwnd()), (TRect{100, 100, 400, 400}));
    EXPECT_EQ(State().fPlacement.fZoomState, kWindowStateUser);
    EXPECT_EQ(State().fPlacement.fIdealRect, ideal);
    ExpectInStep();
  });
}

// --- What a state alone does, and does not

// Only another rectangle moves the window.
TEST_F(WindowTest, MaximizedAloneIsNotApplied) {
  RunWithWindow(kSizeable, [this] {
    Change([](TDocumentWindowState& state) { state.fPlacement.fMaximized = 1; });
    EXPECT_FALSE(IsZoomed(Hwnd()));
    Change([](TDocumentWindowState& state) {
      state.fPlacement.fMaximized = 1;
      state.fPlacement.fUserRect = {50, 60, 500, 400};
    });
    EXPECT_TRUE(IsZoomed(Hwnd()));
    EXPECT_EQ(NativeNormalRect(Hwnd()), (TRect{50, 60, 500, 400}));
    ExpectInStep();
    Change([](TDocumentWindowState& state) {
      state.fPlacement.fMaximized = 0;
      state.fPlacement.fUserRect = {50, 60, 510, 400};
    });
    EXPECT_FALSE(IsZoomed(Hwnd()));
    EXPECT_EQ(NativeNormalRect(Hwnd()), (TRect{50, 60, 510, 400}));
    ExpectInStep();
    Change([](TDocumentWindowState& state) {
      state.fPlacement.fMinimized = 1;
      state.fPlacement.fUserRect = {50, 60, 520, 400};
    });
    EXPECT_TRUE(IsIconic(Hwnd()));
    EXPECT_EQ(State().fPlacement.fMinimized, 1u);
  });
}

TEST_F(WindowTest, ExtremeRectanglesAreSurvived) {
  const TRect kRects[] = {{kMin, kMin, kMax, kMax}, {kMax, kMax, kMin, kMin}, {0, 0, kMax, 1}, {5, 5, 5, 5}};
  RunWithWindow(kSizeable, [&] {
    for (const TRect& rect : kRects) {
      for (const TSize& limit : {TSize{0, 0}, TSize{kMax, kMax}}) {
        TDocumentWindowState state = State();
        state.fPlacement.fUserRect = state.fPlacement.fIdealRect = rect;
        state.fMaximumClientSize = limit;
        Window().IDocumentWindow_SetState(state);
        EXPECT_TRUE(IsWindow(Hwnd()));
        State();
      }
    }
    fOutput.TakeAssertions();  // rectangles without an area are reported
    Change([](TDocumentWindowState& state) {
      state.fMaximumClientSize = {0, 0};
      state.fPlacement.fMinimized = state.fPlacement.fMaximized = 0;
      state.fPlacement.fUserRect = {100, 100, 400, 400};
    });
    EXPECT_EQ(NativeNormalRect(Hwnd()), (TRect{100, 100, 400, 400}));
    ExpectInStep();
  });
}

// --- The end

// Closed, or asked for its menu bar, before it has a behaviour.
TEST_F(WindowTest, AWindowWithoutBehaviour) {
  WindowRecord early;
  early.fHooks["factory"] = [&] {
    const HWND hwnd = early.fHwnd;
    ShowWindow(hwnd, SW_SHOWNA);
    EXPECT_EQ(fMorvane->IMorvane_RequestMenuBarsSetup(), kOK);
    SendMessageW(hwnd, WM_NULL, 0, 0);
    EXPECT_TRUE(fOutput.HasLine("RequestMenuBarSetup for a behavior-less document window!!!"));
    ShowWindow(hwnd, SW_HIDE);
    SendMessageW(hwnd, WM_CLOSE, 0, 0);
    EXPECT_TRUE(fOutput.HasLine("RequestClose for a behavior-less document window!!!"));
  };
  RunWithWindow(kPlain, [&] {
    Create(kPlain, early);
    EXPECT_FALSE(IsWindow(early.fHwnd));
    EXPECT_EQ(early.fLog, CallLog{"deleted"});
  });
}

// Whatever it or the application is being told when the client ends it, the window goes with the end of that.
// What its views are told is among the tests of the focus and of painting.
TEST_F(WindowTest, ReleasedInsideEachCallback) {
  using Cause = std::function<void(WindowRecord&)>;
  const Cause nothing = [](WindowRecord&) {};
  const auto sending = [](UINT message, WPARAM wParam = 0) -> Cause {
    return [=](WindowRecord& record) { SendMessageW(record.fHwnd, message, wParam, 0); };
  };
  const Cause elsewhere = [this](WindowRecord&) { SetActiveWindow(Hwnd()); };
  const Cause painting = [](WindowRecord& record) {
    InvalidateRect(record.fHwnd, nullptr, FALSE);
    UpdateWindow(record.fHwnd);
  };
  const Cause key = [this](WindowRecord& record) {
    PostMessageW(record.fHwnd, WM_KEYDOWN, 'A', 1);
    EXPECT_TRUE(YieldUntil([&] { return !IsWindow(record.fHwnd); }));
  };
  const struct {
    const char* fCallback;
    bool fWhileBeingShown;
    Cause fCause;
  } rows[] = {
      {"factory", true, nothing},
      {"OnClientSizeChanged", true, nothing},
      {"OnPlacementChanged", true, nothing},
      {"OnActivationChanged 1", true, nothing},
      {"OnKeyboardFocusChanged 1", true, nothing},
      {"OnClientSizeChanged", false,
       [](WindowRecord& record) { MoveWindow(record.fHwnd, 50, 50, 350, 350, TRUE); }},
      {"OnPlacementChanged", false, [](WindowRecord& record) { ShowWindow(record.fHwnd, SW_MAXIMIZE); }},
      {"OnPlacementChanged", false, sending(WM_SYSCOMMAND, SC_MINIMIZE)},
      // The state has a title too, which comes after the window has gone.
      {"OnPlacementChanged", false,
       [](WindowRecord& record) {
         EXPECT_EQ(ChangeState(*record.fWindow,
                               [](TDocumentWindowState& state) {
                                 state.fPlacement.fUserRect = {1, 2, 500, 400};
                                 CopyText(state.fTitle, u"Late");
                               }),
                   kOK);
       }},
      {"OnActivationChanged 0", false, elsewhere},
      {"OnKeyboardFocusChanged 0", false, elsewhere},
      {"OnSetupMenuBar", false,
       [this](WindowRecord&) {
         EXPECT_EQ(fMorvane->IMorvane_RequestMenuBarsSetup(), kOK);
         SendMessageW(Hwnd(), WM_NULL, 0, 0);  // they are filled at the end of any message
       }},
      {"OnRequestClose 0", false, sending(WM_CLOSE)},
      {"OnHelpRequested", false, sending(WM_HELP)},
      {"HandleKeyDown", false, key},
      {"key of the application", false, key},
      {"theme", false, sending(WM_THEMECHANGED)},
      {"menu entered", false, sending(WM_ENTERMENULOOP)},
      {"menu left", false, sending(WM_EXITMENULOOP)},
      {"drawing begins", false, painting},
      {"drawing ends", false, painting},
  };
  RunWithWindow(kPlain, [&] {
    for (const auto& row : rows) {
      SCOPED_TRACE(row.fCallback);
      WindowRecord record;
      bool isReleased = false;
      if (!row.fWhileBeingShown) Create(kSizeable, record);
      record.fHooks[row.fCallback] = [&] {
        record.fHooks.clear();
        isReleased = true;
        return record.fWindow->IDocumentWindow_Release();
      };
      const auto run = [&](const char* name) {
        return [&record, name] { return RunHook(record.fHooks, name); };
      };
      fHooks.fHandleKeyDown = run("key of the application");
      fHooks.fOnThemeChanged = run("theme");
      fHooks.fOnEnterMenuLoop = run("menu entered");
      fHooks.fOnExitMenuLoop = run("menu left");
      fHooks.fOnBeginDraw = run("drawing begins");
      fHooks.fOnEndDraw = run("drawing ends");
      if (row.fWhileBeingShown) Create(kSizeable, record);
      row.fCause(record);
      EXPECT_TRUE(isReleased);
      EXPECT_FALSE(IsWindow(record.fHwnd));
      EXPECT_EQ(record.Count("deleted"), 1u);
      EXPECT_EQ(fOutput.DescribeAssertions(), "");
      fHooks = {};
    }
    EXPECT_TRUE(Window().IDocumentWindow_CheckInvariant()) << "the first window is as it was";
  });
}

// A second call comes while the window is on its way out. The behaviour goes before the native window.
TEST_F(WindowTest, ReleasedTwice) {
  WindowRecord record;
  RunWithWindow(kPlain, [&] {
    Create(kPlain, record);
    record.fHooks["OnActivationChanged 0"] = [&] { return record.fWindow->IDocumentWindow_Release(); };
    record.fHooks["deleted"] = [&] {
      EXPECT_TRUE(IsWindow(record.fHwnd));
      EXPECT_FALSE(IsWindowVisible(record.fHwnd));
      CVectorWindowReceiver windows;
      EXPECT_EQ(fMorvane->IMorvane_GetDocumentWindowsZ(windows), kOK);
      EXPECT_EQ(windows.fWindows, std::vector<IWindow*>{&WindowOf(Window())});
    };
    EXPECT_EQ(record.fWindow->IDocumentWindow_Release(), kOK);
    EXPECT_FALSE(IsWindow(record.fHwnd));
    EXPECT_EQ(record.Count("deleted"), 1u);
    EXPECT_EQ(fOutput.TakeAssertions(), CallLog{"fClientsWindowReference.get()!=0"});
  });
}

// A window lives on to the end of the message in which it is released. The user has left it by then.
TEST_F(WindowTest, NoInputAfterTheRelease) {
  WindowRecord record;
  RunWithWindow(kPlain, [&] {
    Create(kPlain, record);
    record.fHooks["OnRequestClose 0"] = [&] {
      EXPECT_EQ(record.fWindow->IDocumentWindow_Release(), kOK);
      record.fLog.clear();
      for (const UINT message : {WM_CLOSE, WM_KEYDOWN, WM_COMMAND, WM_HELP})
        SendMessageW(record.fHwnd, message, message == WM_COMMAND ? 0xA000 : 'A', 0);
    };
    SendMessageW(record.fHwnd, WM_CLOSE, 0, 0);
    EXPECT_EQ(record.fLog, CallLog{"deleted"});
  });
}

// A client that forgets its views is told, and its pointers stay good.
TEST_F(WindowTest, ViewsLeftOver) {
  WindowRecord record;
  CallLog viewLog;
  ViewRecord outerRecord = {viewLog, "outer", {}, nullptr};
  ViewRecord innerRecord = {viewLog, "inner", {}, nullptr};
  RunWithWindow(
      kPlain, {[&] {
        Create(kPlain, record);
        IView& root = RootViewOf(*record.fWindow);
        CViewOf<RecordingFocusViewBehavior> outer, inner;
        TViewParams params = ViewParams();
        params.fFlags |= kViewFocusable;
        params.fRect = {10, 10, 90, 90};
        ASSERT_EQ(outer.Create(*fMorvane, root, "outer view", params, outerRecord), kOK);
        ASSERT_EQ(inner.Create(*fMorvane, *outer.View(), "inner view", params, innerRecord), kOK);
        EXPECT_EQ(WindowOf(*record.fWindow).IWindow_SetConceptualFocusView(inner.View()), kOK);
        EXPECT_EQ(record.fWindow->IDocumentWindow_Release(), kOK);
        EXPECT_FALSE(IsWindow(record.fHwnd));
        EXPECT_EQ(fOutput.CountLines("Not all subview were removed!"), 1u);
        EXPECT_EQ(fOutput.CountLines("View: outer view"), 1u);
        EXPECT_EQ(fOutput.CountLines("View: inner view"), 0u);
        EXPECT_EQ(fOutput.CountLines("You must release all views in a window before the window is deleted!"),
                  1u);
        EXPECT_EQ(fOutput.TakeAssertions(), CallLog{"false"});
        EXPECT_EQ(RectOf(*inner.View()), (TRect{10, 10, 90, 90}));
      }});
  EXPECT_EQ(std::count(viewLog.begin(), viewLog.end(), "inner deleted"), 1);
  EXPECT_EQ(std::count(viewLog.begin(), viewLog.end(), "outer deleted"), 1);
}

// The root view is not the client's to release. Doing so costs its subviews their window, and nothing more.
TEST_F(WindowTest, RootViewReleasedByTheClient) {
  WindowRecord record;
  CallLog viewLog;
  ViewRecord viewRecord = {viewLog, "view", {}};
  RunWithWindow(kPlain, [&] {
    Create(kPlain, record);
    IWindow& window = WindowOf(*record.fWindow);
    IView& root = RootViewOf(*record.fWindow);
    {
      CViewOf<RecordingFocusViewBehavior> view;
      ASSERT_EQ(view.Create(*fMorvane, root, "view", ViewParams(), viewRecord), kOK);
      TViewParams params = ViewParams();
      params.fFlags |= kViewFocusable;
      EXPECT_EQ(view.View()->IView_SetParams(params), kOK);
      IView* const tabViews[] = {view.View()};
      EXPECT_EQ(window.IWindow_SetTabViews(tabViews, 1), kOK);
      EXPECT_EQ(window.IWindow_SetConceptualFocusView(view.View()), kOK);
      EXPECT_EQ(root.IView_Release(), kOK);
      EXPECT_EQ(SetRect(*view.View(), {0, 0, 50, 50}), kOK);
      InvalidateRect(record.fHwnd, nullptr, FALSE);
      UpdateWindow(record.fHwnd);
      SetWindowPos(record.fHwnd, nullptr, 0, 0, 500, 400, SWP_NOMOVE | SWP_NOZORDER);
    }
    IView* focusView = &root;
    EXPECT_EQ(window.IWindow_GetConceptualFocusView(focusView), kOK);
    EXPECT_EQ(focusView, nullptr);
    CVectorViewReceiver leftTabViews;
    EXPECT_EQ(window.IWindow_GetTabViews(leftTabViews), kOK);
    EXPECT_TRUE(leftTabViews.fViews.empty());
    EXPECT_EQ(record.fWindow->IDocumentWindow_Release(), kOK);
    EXPECT_FALSE(IsWindow(record.fHwnd));
    fOutput.TakeAssertions();
  });
  EXPECT_EQ(std::count(viewLog.begin(), viewLog.end(), "view deleted"), 1);
}

// What a failing callback was told counts as not told.
TEST_F(WindowTest, FailingCallbacksAreToldAgain) {
  RunWithWindow(kSizeable, {[this] {
                              fRecord.fHooks["OnPlacementChanged"] = TError(100001);
                              SetWindowPos(Hwnd(), nullptr, 7, 8, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
                            },
                            [this] {
                              ExpectReported(100001);
                              fRecord.fHooks.clear();
                              SetWindowPos(Hwnd(), nullptr, 9, 9, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
                              const auto& [before, after] = fRecord.fPlacements.back();
                              EXPECT_EQ(before.fUserRect, (TRect{100, 100, 400, 400}));
                              EXPECT_EQ(after.fUserRect, (TRect{9, 9, 309, 309}));
                              // The native procedure does not get at a window whose closing fails.
                              fRecord.fHooks["OnRequestClose 0"] = TError(100002);
                              EXPECT_EQ(SendMessageW(Hwnd(), WM_CLOSE, 0, 0), 0);
                              EXPECT_TRUE(IsWindowVisible(Hwnd()));
                              EXPECT_TRUE(Window().IDocumentWindow_CheckInvariant());
                            },
                            [this] { ExpectReported(100002); }});
}

}  // namespace NSMorvaneTest
