// Document windows as a client sees them: what they are made of, sizes and placements, titles, and the ways
// in which they end.
#include "Support/ClientWindows.h"

#include <limits>

namespace NSMorvaneTest {

namespace {

constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
constexpr TRect kFirstPlace = {100, 100, 400, 400};
constexpr UINT kMove = SWP_NOSIZE | SWP_NOZORDER;
constexpr UINT kSize = SWP_NOMOVE | SWP_NOZORDER;

TRect NormalRect(HWND hwnd) {
  WINDOWPLACEMENT wp = {};
  wp.length = sizeof(wp);
  GetWindowPlacement(hwnd, &wp);
  return NativeRect(wp.rcNormalPosition);
}

}  // namespace

class WindowTest : public ClientWindowTest {
 protected:
  // What the library has told, and what can be asked for, agree with the native window, which is there when
  // it is neither minimized nor maximized.
  void ExpectInStep(const TRect& userRect) {
    const TDocumentWindowPlacement placement = State().fPlacement;
    EXPECT_EQ(NormalRect(Hwnd()), userRect);
    EXPECT_EQ(placement.fMinimized, IsIconic(Hwnd()) ? 1u : 0u);
    EXPECT_EQ(placement.fMaximized, IsZoomed(Hwnd()) ? 1u : 0u);
    const TSize size = fRecord.fSizes.back().second;
    EXPECT_EQ(RectOf(RootViewOf(*fRecord.fDocument)), (TRect{0, 0, size.fWidth, size.fHeight}));
    if (!IsIconic(Hwnd())) {
      EXPECT_EQ(size, NativeClientSize(Hwnd()));
    }
    const TDocumentWindowPlacement& told = fRecord.fPlacements.back().second;
    EXPECT_TRUE(told.fMinimized == placement.fMinimized && told.fMaximized == placement.fMaximized &&
                told.fZoomState == placement.fZoomState);
    EXPECT_EQ(told.fUserRect, placement.fUserRect);
    EXPECT_EQ(told.fIdealRect, placement.fIdealRect);
  }
  void Place(const TRect& rect, TFlag minimized = 0, TFlag maximized = 0) {
    Change([&](auto& state) {
      state.fPlacement.fMinimized = minimized;
      state.fPlacement.fMaximized = maximized;
      state.fPlacement.fUserRect = rect;
    });
  }
};

// --- Making

TEST_F(WindowTest, ANewWindow) {
  RunFrom([this] {
    Open();
    EXPECT_EQ(NativeTitle(Hwnd()), L"");
    EXPECT_TRUE(IsWindowVisible(Hwnd()));
    EXPECT_EQ(GetActiveWindow(), Hwnd());
    TFlag active = 7;
    EXPECT_EQ(Window().IWindow_IsActive(active), kOK);
    EXPECT_EQ(active, 1u);
    TNativeWindow native = {};
    EXPECT_EQ(fRecord.fOwner->IModalOwner_GetNativeWindow(native), kOK);
    EXPECT_EQ(native.fHwnd, Hwnd());
    IDocumentWindowBehavior* behavior = nullptr;
    EXPECT_EQ(fRecord.fDocument->IDocumentWindow_GetBehavior(behavior), kOK);
    EXPECT_NE(dynamic_cast<DocumentWindowRecorder*>(behavior), nullptr);
    const TDocumentWindowState state = State();
    for (const TSize& size : {state.fMinimumClientSize, state.fMaximumClientSize, state.fIdealClientSize})
      EXPECT_EQ(size, (TSize{0, 0}));
    EXPECT_EQ(state.fPlacement.fZoomState, kWindowStateUser);
    EXPECT_EQ(state.fPlacement.fUserRect, kFirstPlace);
    ExpectInStep(kFirstPlace);
    Then([this] { Quit(); });
  });
  // Size and placement come before the window is on the screen, and neither of them twice.
  EXPECT_EQ(fRecord.fLog.Take(),
            "ClientSizeChanged PlacementChanged ActivationChanged:1 KeyboardFocusChanged:1 RequestClose:1 "
            "ActivationChanged:0 KeyboardFocusChanged:0 deleted");
}

TEST_IN_RUN(WindowTest, WhatItIsToldBeforeItIsShownIsHowItAppears) {
  fRecord.fHooks["factory"] = [this] {
    Place({200, 150, 700, 550});
    Change([](auto& state) {
      CopyText(state.fTitle, u"Early");
      state.fModified = 1;
    });
    EXPECT_FALSE(IsWindowVisible(Hwnd()));
  };
  Open(kSizeable);
  EXPECT_EQ(NativeTitle(Hwnd()), L"Early*");
  EXPECT_EQ(fRecord.fSizes.size() + fRecord.fPlacements.size(), 2u);
  ExpectInStep({200, 150, 700, 550});

  WindowRecord other;
  for (const bool minimized : {true, false}) {
    other.fHooks["factory"] = [&] {
      return ChangeState(*other.fDocument, [&](auto& state) {
        (minimized ? state.fPlacement.fMinimized : state.fPlacement.fMaximized) = 1;
      });
    };
    Make(Kind::kDocument, other, kSizeable);
    EXPECT_EQ(IsIconic(other.fHwnd) != 0, minimized);
    EXPECT_EQ(IsZoomed(other.fHwnd) != 0, !minimized);
    EXPECT_EQ(other.fFocusNow(), kOK);
    EXPECT_FALSE(IsIconic(other.fHwnd));
    EXPECT_EQ(GetActiveWindow(), other.fHwnd);
    Release(other);
  }
}

TEST_IN_RUN(WindowTest, Titles) {
  const std::u16string longest(kTitleChars, u'x');
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
  Open();
  Turn();
  // Window lists show titles.
  const int setups = fRecord.fMenuBarSetups;
  Change([](auto&) {});
  Turn();
  EXPECT_EQ(fRecord.fMenuBarSetups, setups);
  for (const auto& c : kCases) {
    Change([&](TDocumentWindowState& state) {
      CopyText(state.fTitle, c.fTitle);
      state.fModified = c.fModified;
    });
    EXPECT_EQ(NativeTitle(Hwnd()), c.fNative);
    EXPECT_EQ(TextOf(State().fTitle), c.fTitle);
    EXPECT_EQ(State().fModified, c.fModified);
  }
  Turn();
  EXPECT_GT(fRecord.fMenuBarSetups, setups);
}

// --- Following the user

TEST_IN_RUN(WindowTest, MovingAndResizing) {
  Open(kSizeable);
  TRect frame = {}, client = {}, back = {};
  EXPECT_EQ(Window().IWindow_GetFrameRect(frame), kOK);
  EXPECT_EQ(frame, kFirstPlace);
  EXPECT_EQ(Window().IWindow_FrameRectToClientRect(frame, client), kOK);
  const POINT corner = OnScreen({0, 0});
  const TSize before = NativeClientSize(Hwnd());
  EXPECT_EQ(client, (TRect{corner.x, corner.y, corner.x + before.fWidth, corner.y + before.fHeight}));
  EXPECT_EQ(Window().IWindow_ClientRectToFrameRect(client, back), kOK);
  EXPECT_EQ(back, frame);

  fRecord.fSizes.clear();
  SetWindowPos(Hwnd(), nullptr, 40, 50, 0, 0, kMove);
  EXPECT_TRUE(fRecord.fSizes.empty());
  EXPECT_EQ(fRecord.fPlacements.back().first.fUserRect, kFirstPlace);
  EXPECT_EQ(fRecord.fPlacements.back().second.fUserRect, (TRect{40, 50, 340, 350}));
  SetWindowPos(Hwnd(), nullptr, 0, 0, 500, 420, kSize);
  ASSERT_EQ(fRecord.fSizes.size(), 1u);
  EXPECT_EQ(fRecord.fSizes[0].first, before);
  ExpectInStep({40, 50, 540, 470});
  // Nothing changes, nothing is told.
  const std::size_t placements = fRecord.fPlacements.size();
  SetWindowPos(Hwnd(), nullptr, 40, 50, 500, 420, SWP_NOZORDER | SWP_FRAMECHANGED);
  EXPECT_EQ(fRecord.fSizes.size(), 1u);
  EXPECT_EQ(fRecord.fPlacements.size(), placements);
  // What a failing callback was told counts as not told.
  fRecord.fHooks["PlacementChanged"] = TError(100001);
  SetWindowPos(Hwnd(), nullptr, 7, 8, 0, 0, kMove);
  ExpectReported(100001);
  fRecord.fHooks.clear();
  SetWindowPos(Hwnd(), nullptr, 9, 9, 0, 0, kMove);
  EXPECT_EQ(fRecord.fPlacements.back().first.fUserRect, (TRect{40, 50, 540, 470}));
  EXPECT_EQ(fRecord.fPlacements.back().second.fUserRect, (TRect{9, 9, 509, 429}));
  // The native procedure does not get at a window whose closing fails.
  fRecord.fHooks["RequestClose"] = TError(100002);
  EXPECT_EQ(Send(WM_CLOSE), 0);
  ExpectReported(100002);
  EXPECT_TRUE(IsWindowVisible(Hwnd()));
  EXPECT_TRUE(fRecord.fDocument->IDocumentWindow_CheckInvariant());
  fRecord.fHooks.clear();
}

// A client that does not like its size changes it at once, while it is being told; also before the window is
// on the screen.
TEST_IN_RUN(WindowTest, ResizedInsideTheCallback) {
  fRecord.fHooks["ClientSizeChanged"] = [this] { Place({60, 70, 460, 370}); };
  Open(kSizeable);
  ExpectInStep({60, 70, 460, 370});
  SetWindowPos(Hwnd(), nullptr, 0, 0, 500, 420, kSize);
  ExpectInStep({60, 70, 460, 370});
}

TEST_IN_RUN(WindowTest, MinimizingMaximizingAndRestoring) {
  Open(kSizeable);
  ShowWindow(Hwnd(), SW_MINIMIZE);
  ExpectInStep(kFirstPlace);
  EXPECT_EQ(State().fPlacement.fZoomState, kWindowStateUser);
  ShowWindow(Hwnd(), SW_RESTORE);
  ExpectInStep(kFirstPlace);
  EXPECT_EQ(fRecord.fSizes.size(), 1u) << "the views keep their size while nobody can see them";
  ShowWindow(Hwnd(), SW_MAXIMIZE);
  EXPECT_TRUE(IsZoomed(Hwnd()));
  ExpectInStep(kFirstPlace);
  TRect frame = {};
  EXPECT_EQ(Window().IWindow_GetFrameRect(frame), kOK);
  EXPECT_EQ(frame, NativeFrame(Hwnd()));
  ShowWindow(Hwnd(), SW_MINIMIZE);
  EXPECT_EQ(State().fPlacement.fMinimized, 1u);
  EXPECT_EQ(State().fPlacement.fMaximized, 0u);
  ShowWindow(Hwnd(), SW_RESTORE);
  EXPECT_EQ(State().fPlacement.fMaximized, 1u);
  ShowWindow(Hwnd(), SW_RESTORE);
  EXPECT_EQ(NativeFrame(Hwnd()), kFirstPlace);
  ExpectInStep(kFirstPlace);
}

// --- What a state does

TEST_IN_RUN(WindowTest, StatesAreApplied) {
  Open(kSizeable);
  // To the ideal size and back.
  Change([](TDocumentWindowState& state) {
    state.fIdealClientSize = {350, 250};
    state.fPlacement.fZoomState = kWindowStateIdeal;
  });
  TRect ideal = {};
  const POINT corner = OnScreen({0, 0});
  EXPECT_EQ(
      Window().IWindow_ClientRectToFrameRect({corner.x, corner.y, corner.x + 350, corner.y + 250}, ideal),
      kOK);
  EXPECT_EQ(State().fPlacement.fZoomState, kWindowStateIdeal);
  EXPECT_EQ(State().fPlacement.fIdealRect, ideal);
  EXPECT_EQ(State().fPlacement.fUserRect, kFirstPlace);
  ExpectInStep(ideal);
  Change([](TDocumentWindowState& state) { state.fPlacement.fZoomState = kWindowStateUser; });
  EXPECT_EQ(State().fPlacement.fIdealRect, ideal);
  ExpectInStep(kFirstPlace);

  // Only another rectangle moves the window.
  Place(kFirstPlace, 0, 1);
  EXPECT_FALSE(IsZoomed(Hwnd()));
  Place({50, 60, 500, 400}, 0, 1);
  EXPECT_TRUE(IsZoomed(Hwnd()));
  ExpectInStep({50, 60, 500, 400});
  Place({50, 60, 510, 400});
  EXPECT_FALSE(IsZoomed(Hwnd()));
  ExpectInStep({50, 60, 510, 400});
  Place({50, 60, 520, 400}, 1);
  EXPECT_TRUE(IsIconic(Hwnd()));
  EXPECT_EQ(State().fPlacement.fMinimized, 1u);

  // Extreme rectangles are survived.
  const TRect rects[] = {{kMin, kMin, kMax, kMax}, {kMax, kMax, kMin, kMin}, {0, 0, kMax, 1}, {5, 5, 5, 5}};
  for (const TRect& rect : rects) {
    for (const TSize& limit : {TSize{kMax, kMax}, TSize{0, 0}}) {
      TDocumentWindowState state = State();
      state.fPlacement.fUserRect = state.fPlacement.fIdealRect = rect;
      state.fMaximumClientSize = limit;
      fRecord.fDocument->IDocumentWindow_SetState(state);
      EXPECT_TRUE(IsWindow(Hwnd()));
    }
  }
  fOutput.TakeAssertions();  // rectangles without an area are reported
  Place(kFirstPlace);
  ExpectInStep(kFirstPlace);
}

// --- The end

// Whatever it or the application is being told when the client ends it, the window goes with the end of that.
// What its views are told is among the tests of the focus and of painting.
TEST_IN_RUN(WindowTest, ReleasedInsideEachCallback) {
  const struct {
    Recorder& fRecorder;
    const char* fCallback;
    UINT fMessage = 0;  // none: the window is being shown
    WPARAM fWParam = 0;
  } rows[] = {
      {fRecord, "factory"},
      {fRecord, "ClientSizeChanged"},
      {fRecord, "PlacementChanged"},
      {fRecord, "ActivationChanged:1"},
      {fRecord, "KeyboardFocusChanged:1"},
      {fRecord, "ClientSizeChanged", WM_SYSCOMMAND, SC_MAXIMIZE},
      {fRecord, "PlacementChanged", WM_SYSCOMMAND, SC_MAXIMIZE},
      {fRecord, "PlacementChanged", WM_SYSCOMMAND, SC_MINIMIZE},
      {fRecord, "PlacementChanged", WM_APP},
      {fRecord, "ActivationChanged:0", WM_ACTIVATE, WA_INACTIVE},
      {fRecord, "KeyboardFocusChanged:0", WM_KILLFOCUS},
      {fRecord, "SetupMenuBar", WM_NULL},
      {fRecord, "RequestClose", WM_CLOSE},
      {fRecord, "HelpRequested", WM_HELP},
      {fRecord, "HandleKeyDown", WM_KEYDOWN, 'A'},
      {fRun, "HandleKeyDown", WM_KEYDOWN, 'A'},
      {fRun, "ThemeChanged", WM_THEMECHANGED},
      {fRun, "EnterMenuLoop", WM_ENTERMENULOOP},
      {fRun, "ExitMenuLoop", WM_EXITMENULOOP},
      {fRun, "BeginDraw", WM_PAINT},
      {fRun, "EndDraw", WM_PAINT},
  };
  WindowRecord first;
  Make(Kind::kDocument, first);
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.fCallback) + " " + std::to_string(row.fMessage));
    const bool isShown = &row - rows >= 5;
    if (isShown) Open(kSizeable);
    row.fRecorder.fHooks[row.fCallback] = [&] {
      row.fRecorder.fHooks.erase(row.fCallback);
      return fRecord.fRelease();
    };
    if (!isShown) {
      Open(kSizeable);
    } else if (row.fMessage == WM_KILLFOCUS) {
      SetActiveWindow(first.fHwnd);
    } else if (row.fMessage == WM_APP) {
      // The state has a title too, which comes after the window has gone.
      Change([](TDocumentWindowState& state) {
        state.fPlacement.fUserRect = {1, 2, 500, 400};
        CopyText(state.fTitle, u"Late");
      });
    } else {
      InvalidateRect(Hwnd(), nullptr, FALSE);
      EXPECT_EQ(fMorvane->IMorvane_RequestMenuBarsSetup(), kOK);
      // Some messages can only be sent.
      if (!PostMessageW(Hwnd(), row.fMessage, row.fWParam, 0)) Send(row.fMessage, row.fWParam);
    }
    EXPECT_TRUE(YieldUntil([this] { return !IsWindow(Hwnd()); }));
    EXPECT_EQ(fRecord.fLog.Count("deleted"), 1);
    EXPECT_EQ(fOutput.TakeAssertions(), "");
    EXPECT_FALSE(row.fRecorder.fHooks.contains(row.fCallback));
    fRecord.fLog.Take();
  }
  EXPECT_TRUE(first.fDocument->IDocumentWindow_CheckInvariant()) << "the first window is as it was";
  Release(first);
}

// A window lives on to the end of the message in which it is released. The user has left it by then.
TEST_IN_RUN(WindowTest, NoInputAfterTheRelease) {
  Open();
  fRecord.fHooks["RequestClose"] = [this] {
    Release(fRecord);
    fRecord.fLog.Take();
    for (const UINT message : {WM_CLOSE, WM_KEYDOWN, WM_COMMAND, WM_HELP})
      Send(message, message == WM_COMMAND ? 0xA000 : 'A');
  };
  Send(WM_CLOSE);
  EXPECT_EQ(fRecord.fLog.Take(), "deleted");
}

// A second call comes while the window is on its way out. The behaviour goes before the native window.
TEST_IN_RUN(WindowTest, ReleasedTwice) {
  WindowRecord first;
  Make(Kind::kDocument, first);
  Open();
  fRecord.fHooks["ActivationChanged:0"] = [this] { Release(fRecord); };
  fRecord.fHooks["deleted"] = [&] {
    EXPECT_TRUE(IsWindow(Hwnd()));
    EXPECT_FALSE(IsWindowVisible(Hwnd()));
    CVectorWindowReceiver windows;
    EXPECT_EQ(fMorvane->IMorvane_GetDocumentWindowsZ(windows), kOK);
    EXPECT_EQ(windows.fWindows, std::vector<IWindow*>{first.fWindow});
  };
  Release(fRecord);
  EXPECT_FALSE(IsWindow(Hwnd()));
  EXPECT_EQ(fRecord.fLog.Count("deleted"), 1);
  EXPECT_EQ(fOutput.TakeAssertions(), "fClientsWindowReference.get()!=0");
  Release(first);
}

// A client that forgets its views is told, and its pointers stay good. The root view is not the client's to
// release: doing so costs its subviews their window, and nothing more.
TEST_IN_RUN(WindowTest, ViewsLeftOver) {
  OpenWithFocusTree();
  SetFocus("inner");
  Release(fRecord);
  EXPECT_FALSE(IsWindow(Hwnd()));
  EXPECT_EQ(fOutput.CountLines("Not all subview were removed!"), 1);
  EXPECT_EQ(fOutput.CountLines("View: outer"), 1);
  EXPECT_EQ(fOutput.CountLines("View: inner"), 0);
  EXPECT_EQ(fOutput.CountLines("You must release all views in a window before the window is deleted!"), 1);
  EXPECT_EQ(fOutput.TakeAssertions(), "false");
  EXPECT_EQ(RectOf(*View("inner")), (TRect{10, 10, 90, 90}));
  ReleaseViews();
  for (const char* word : {"outer:x", "inner:x", "leaf:x", "other:x"})
    EXPECT_EQ(fViewRecord.fLog.Count(word), 1);

  OpenWithFocusTree();
  SetTabViews({"other"});
  SetFocus("other");
  IView& root = RootViewOf(*fRecord.fDocument);
  EXPECT_EQ(root.IView_Release(), kOK);
  EXPECT_EQ(SetRect(*View("other"), {0, 0, 50, 50}), kOK);
  InvalidateRect(Hwnd(), nullptr, FALSE);
  UpdateWindow(Hwnd());
  SetWindowPos(Hwnd(), nullptr, 0, 0, 500, 400, kSize);
  ReleaseViews();
  EXPECT_EQ(fViewRecord.fLog.Count("other:x"), 2);
  EXPECT_EQ(Focus(), "");
  CVectorViewReceiver tabViews;
  EXPECT_EQ(Window().IWindow_GetTabViews(tabViews), kOK);
  EXPECT_TRUE(tabViews.fViews.empty());
  Release(fRecord);
  EXPECT_FALSE(IsWindow(Hwnd()));
  fOutput.TakeAssertions();
}

}  // namespace NSMorvaneTest
