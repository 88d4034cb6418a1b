// Document windows as a client sees them: what they are made of, sizes and placements, titles, and the ways
// in which they end.
#include <optional>

#include "Support/ClientWindows.h"

namespace NSMorvaneTest {

namespace {

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
    EXPECT_TRUE(IsWindowVisible(Hwnd()));
    EXPECT_EQ(GetActiveWindow(), Hwnd());
    TFlag active = 7;
    EXPECT_EQ(Window().IWindow_IsActive(active), kOK);
    EXPECT_EQ(active, 1u);
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
    Change([](auto& state) { CopyText(state.fTitle, u"Early"); });
    EXPECT_FALSE(IsWindowVisible(Hwnd()));
  };
  Open(kSizeable);
  EXPECT_EQ(NativeTitle(Hwnd()), L"Early");
  EXPECT_EQ(fRecord.fSizes.size() + fRecord.fPlacements.size(), 2u);
  ExpectInStep({200, 150, 700, 550});
}

TEST_IN_RUN(WindowTest, MinimizedOrMaximizedBeforeItIsShown) {
  for (const TFlag minimized : {1u, 0u}) {
    fRecord.fHooks["factory"] = [=, this] { Place({200, 150, 700, 550}, minimized, !minimized); };
    Open(kSizeable);
    EXPECT_EQ(IsIconic(Hwnd()) != 0, minimized != 0);
    EXPECT_EQ(IsZoomed(Hwnd()) != 0, minimized == 0);
    ExpectInStep({200, 150, 700, 550});
    ShowWindow(Hwnd(), SW_RESTORE);
    EXPECT_EQ(NativeFrame(Hwnd()), (TRect{200, 150, 700, 550}));
    Release(fRecord);
    fRecord.fPlacements.clear();
  }
}

// --- Following the user

TEST_IN_RUN(WindowTest, MovingAndResizing) {
  Open(kSizeable);
  TRect frame = {}, client = {};
  EXPECT_EQ(Window().IWindow_GetFrameRect(frame), kOK);
  EXPECT_EQ(frame, kFirstPlace);
  EXPECT_EQ(Window().IWindow_FrameRectToClientRect(frame, client), kOK);
  const POINT corner = OnScreen({0, 0});
  const TSize before = NativeClientSize(Hwnd());
  EXPECT_EQ(client, (TRect{corner.x, corner.y, corner.x + before.fWidth, corner.y + before.fHeight}));

  fRecord.fSizes.clear();
  SetWindowPos(Hwnd(), nullptr, 40, 50, 0, 0, kMove);
  EXPECT_EQ(fRecord.fPlacements.back().first.fUserRect, kFirstPlace);
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
  // The native procedure does not get at a window whose closing fails.
  fRecord.fHooks["RequestClose"] = TError(100002);
  EXPECT_EQ(Send(WM_CLOSE), 0);
  ExpectReported(100002);
  EXPECT_TRUE(IsWindowVisible(Hwnd()));
  // A client that does not like its size changes it at once, while it is being told.
  fRecord.fHooks = {{"ClientSizeChanged", [this] { Place({60, 70, 460, 370}); }}};
  SetWindowPos(Hwnd(), nullptr, 0, 0, 600, 420, kSize);
  ExpectInStep({60, 70, 460, 370});
}

TEST_IN_RUN(WindowTest, MinimizingMaximizingAndRestoring) {
  Open(kSizeable);
  for (const int command : {SW_MINIMIZE, SW_RESTORE, SW_MAXIMIZE, SW_MINIMIZE, SW_RESTORE, SW_RESTORE}) {
    ShowWindow(Hwnd(), command);
    ExpectInStep(kFirstPlace);
  }
  EXPECT_EQ(NativeFrame(Hwnd()), kFirstPlace);
  EXPECT_EQ(fRecord.fSizes.size(), 3u) << "the views keep their size while nobody can see them";
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
  Place({50, 60, 520, 400}, 1);
  EXPECT_TRUE(IsIconic(Hwnd()));
  ExpectInStep({50, 60, 520, 400});
}

// --- The end

// Whatever it, a view or the application is being told when the client ends it, the window goes with the end
// of that.
TEST_IN_RUN(WindowTest, ReleasedInsideEachCallback) {
  struct Releaser : IViewListReceiver {
    TError IViewListReceiver_ReceiveViews(IView* const*, std::uint32_t) override { return fRelease(); }
    Hook fRelease;
  } receiver;
  WindowRecord first;
  Make(Kind::kDocument, first);
  const auto post = [this](UINT message, WPARAM wParam = 0) -> Hook {
    return [=, this] {
      InvalidateRect(Hwnd(), nullptr, FALSE);
      EXPECT_EQ(fMorvane->IMorvane_RequestMenuBarsSetup(), kOK);
      // Some messages can only be sent.
      if (!PostMessageW(Hwnd(), message, wParam, 0)) Send(message, wParam);
    };
  };
  const Hook focus = [this] { SetFocus("other"); };
  const Hook disable = [this] {
    SetFlags("leaf", kViewFocusable);
    EXPECT_NE(fOutput.TakeAssertions(), "");  // the view was still busy with its parameters
  };
  // The state has a title too, which comes after the window has gone.
  const Hook change = [this] {
    Change([](TDocumentWindowState& state) {
      state.fPlacement.fUserRect = {1, 2, 500, 400};
      CopyText(state.fTitle, u"Late");
    });
  };
  const struct {
    CallRecorder& fRecorder;
    const char* fCallback;
    std::optional<Hook> fAction = {};  // none: the window is being shown
  } rows[] = {
      {fRecord, "factory"},
      {fRecord, "ClientSizeChanged"},
      {fRecord, "PlacementChanged"},
      {fRecord, "ActivationChanged:1"},
      {fRecord, "KeyboardFocusChanged:1"},
      {fRecord, "ClientSizeChanged", post(WM_SYSCOMMAND, SC_MAXIMIZE)},
      {fRecord, "PlacementChanged", post(WM_SYSCOMMAND, SC_MINIMIZE)},
      {fRecord, "PlacementChanged", change},
      {fRecord, "ActivationChanged:0", post(WM_ACTIVATE, WA_INACTIVE)},
      {fRecord, "KeyboardFocusChanged:0", [&] { SetActiveWindow(first.fHwnd); }},
      {fRecord, "SetupMenuBar", post(WM_NULL)},
      {fRecord, "RequestClose", post(WM_CLOSE)},
      {fRecord, "HelpRequested", post(WM_HELP)},
      {fRecord, "HandleKeyDown", post(WM_KEYDOWN, 'A')},
      {fRun, "HandleKeyDown", post(WM_KEYDOWN, 'A')},
      {fRun, "ThemeChanged", post(WM_THEMECHANGED)},
      {fRun, "EnterMenuLoop", post(WM_ENTERMENULOOP)},
      {fRun, "BeginDraw", post(WM_PAINT)},
      {fRun, "EndDraw", post(WM_PAINT)},
      {fViewRecord, "leaf:key", post(WM_KEYDOWN, 'A')},
      {fViewRecord, "leaf:off", focus},
      {fViewRecord, "other:on", focus},
      {fViewRecord, "other:menu", focus},
      {fViewRecord, "other:target", focus},
      {fViewRecord, "leaf:off", disable},
      {fViewRecord, "other:on", disable},
      {fRecord, "", [&] { Window().IWindow_GetTabViews(receiver); }},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    if (row.fAction) {
      OpenWithFocusTree();
      SetFocus("leaf");
      SetTabViews({"leaf", "other"});
      SendMessageW(first.fHwnd, WM_NULL, 0, 0);  // fills the menu bars
    }
    receiver.fRelease = [&] {
      row.fRecorder.fHooks.erase(row.fCallback);
      ReleaseViews();
      return fRecord.fRelease();
    };
    row.fRecorder.fHooks[row.fCallback] = receiver.fRelease;
    if (row.fAction)
      (*row.fAction)();
    else
      Open(kSizeable);
    EXPECT_TRUE(YieldUntil([this] { return !IsWindow(Hwnd()); }));
    EXPECT_EQ(fRecord.fLog.Count("deleted"), 1);
    EXPECT_EQ(fOutput.TakeAssertions(), "");
    fRecord.fLog.Take();
  }
  Release(first);
}

// A window lives on to the end of the message in which it is released; the user has left it by then. A second
// call comes while it is on its way out. The behaviour goes before the native window.
TEST_IN_RUN(WindowTest, ReleasedTwiceInAMessage) {
  WindowRecord first;
  Make(Kind::kDocument, first);
  Open();
  fRecord.fHooks["RequestClose"] = [this] {
    Release(fRecord);
    fRecord.fLog.Take();
    for (const UINT message : {WM_CLOSE, WM_KEYDOWN, WM_HELP}) Send(message, 'A');
    EXPECT_EQ(fRecord.fLog.Take(), "");
  };
  fRecord.fHooks["ActivationChanged:0"] = [this] { Release(fRecord); };
  fRecord.fHooks["deleted"] = [&] {
    EXPECT_TRUE(IsWindow(Hwnd()));
    EXPECT_FALSE(IsWindowVisible(Hwnd()));
    CVectorWindowReceiver windows;
    EXPECT_EQ(fMorvane->IMorvane_GetDocumentWindowsZ(windows), kOK);
    EXPECT_EQ(windows.fWindows, std::vector<IWindow*>{first.fWindow});
  };
  Send(WM_CLOSE);
  EXPECT_FALSE(IsWindow(Hwnd()));
  EXPECT_EQ(fRecord.fLog.Count("deleted"), 1);
  EXPECT_EQ(fOutput.TakeAssertions(), "fClientsWindowReference.get()!=0");
  Release(first);
}

// A client that forgets its views is told, and its pointers stay good.
TEST_IN_RUN(WindowTest, ViewsLeftOver) {
  OpenWithFocusTree();
  SetFocus("inner");
  Release(fRecord);
  EXPECT_FALSE(IsWindow(Hwnd()));
  EXPECT_EQ(fOutput.CountLines("View: outer"), 1);
  EXPECT_EQ(fOutput.CountLines("View: inner"), 0);
  EXPECT_EQ(fOutput.TakeAssertions(), "false");
  EXPECT_EQ(RectOf(*View("inner")), (TRect{10, 10, 90, 90}));
  ReleaseViews();
  for (const char* word : {"outer:x", "inner:x", "leaf:x", "other:x"})
    EXPECT_EQ(fViewRecord.fLog.Count(word), 1);
}

}  // namespace NSMorvaneTest
