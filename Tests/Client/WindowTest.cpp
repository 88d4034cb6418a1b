// Document windows as a client sees them: what they are made of, sizes and placements, titles, and the ways
// in which they end.
#include <optional>

#include "Support/ClientWindows.h"
#include "Support/PatchedImport.h"

namespace NSMorvaneTest {

constexpr TRect kFirstPlace = {100, 100, 400, 400};

class WindowTest : public ClientWindowTest {
 protected:
  // What the library has told, and what can be asked for, agree with the native window, which is there when
  // it is neither minimized nor maximized.
  void ExpectInStep(const TRect& userRect) {
    const TDocumentWindowPlacement placement = State().fPlacement;
    EXPECT_EQ(NativeNormalRect(Hwnd()), userRect);
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
  // Size and placement come before the window is on the screen.
  EXPECT_EQ(fRecord.fLog.Take(),
            "ClientSizeChanged PlacementChanged ActivationChanged:1 KeyboardFocusChanged:1 RequestClose:1 "
            "ActivationChanged:0 KeyboardFocusChanged:0 deleted");
}

// What it is told before it is shown is how it appears.
TEST_IN_RUN(WindowTest, ToldBeforeItIsShown) {
  const TRect rect = {200, 150, 700, 550};
  for (const std::string way : {"normal", "minimized", "maximized"}) {
    SCOPED_TRACE(way);
    fRecord.fHooks["factory"] = [&, this] {
      Place(rect, way == "minimized", way == "maximized");
      Change([](auto& state) { CopyText(state.fTitle, u"Early"); });
      EXPECT_FALSE(IsWindowVisible(Hwnd()));
    };
    Open(kSizeable);
    EXPECT_EQ(NativeTitle(Hwnd()), L"Early");
    EXPECT_EQ(IsIconic(Hwnd()) != 0, way == "minimized");
    EXPECT_EQ(IsZoomed(Hwnd()) != 0, way == "maximized");
    if (way == "normal") {
      EXPECT_EQ(fRecord.fSizes.size() + fRecord.fPlacements.size(), 2u) << "neither of them twice";
    }
    ExpectInStep(rect);
    ShowWindow(Hwnd(), SW_RESTORE);
    EXPECT_EQ(NativeFrame(Hwnd()), rect);
    Release(fRecord);
    fRecord.fSizes.clear();
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
  EXPECT_EQ(Window().IWindow_ClientRectToFrameRect(client, frame), kOK);
  EXPECT_EQ(frame, kFirstPlace);

  fRecord.fSizes.clear();
  MoveNative(Hwnd(), 40, 50);
  EXPECT_EQ(fRecord.fPlacements.back().first.fUserRect, kFirstPlace);
  SizeNative(Hwnd(), 500, 420);
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
  MoveNative(Hwnd(), 7, 8);
  ExpectReported(100001);
  fRecord.fHooks.clear();
  MoveNative(Hwnd(), 9, 9);
  EXPECT_EQ(fRecord.fPlacements.back().first.fUserRect, (TRect{40, 50, 540, 470}));
  // The native procedure does not get at a window whose closing fails.
  fRecord.fHooks["RequestClose"] = TError(100002);
  EXPECT_EQ(Send(WM_CLOSE), 0);
  ExpectReported(100002);
  EXPECT_TRUE(IsWindowVisible(Hwnd()));
  // Without a client area it is where it is.
  SizeNative(Hwnd(), 500, 0);
  EXPECT_EQ(NativeClientSize(Hwnd()).fHeight, 0);
  EXPECT_EQ(fRecord.fPlacements.back().second.fUserRect, NativeFrame(Hwnd()));
  // A client that does not like its size changes it at once, while it is being told.
  fRecord.fHooks = {{"ClientSizeChanged", [this] { Place({60, 70, 460, 370}); }}};
  SizeNative(Hwnd(), 600, 420);
  ExpectInStep({60, 70, 460, 370});
}

// The system has put the window at an edge of the screen, and goes on telling where it was before.
TEST_IN_RUN(WindowTest, TheFrameOfASnappedWindow) {
  static BOOL (*const tell)(HWND, WINDOWPLACEMENT*) = [](HWND hwnd, WINDOWPLACEMENT* out) -> BOOL {
    GetWindowPlacement(hwnd, out);
    OffsetRect(&out->rcNormalPosition, 200, 300);
    return TRUE;
  };
  Open(kSizeable);
  const PatchedImport patch(L"Morvane.dll", "GetWindowPlacement", tell);
  for (const int command : {SW_SHOW, SW_MINIMIZE, SW_MAXIMIZE}) {
    ShowWindow(Hwnd(), command);
    TRect frame = {};
    EXPECT_EQ(Window().IWindow_GetFrameRect(frame), kOK);
    EXPECT_EQ(frame, command == SW_MINIMIZE ? (TRect{300, 400, 600, 700}) : NativeFrame(Hwnd())) << command;
  }
}

TEST_IN_RUN(WindowTest, MinimizingMaximizingAndRestoring) {
  Open(kSizeable);
  for (const int command : {SW_MINIMIZE, SW_RESTORE, SW_MAXIMIZE, SW_MINIMIZE, SW_RESTORE, SW_RESTORE}) {
    ShowWindow(Hwnd(), command);
    ExpectInStep(kFirstPlace);
  }
  EXPECT_EQ(NativeFrame(Hwnd()), kFirstPlace);
  EXPECT_EQ(fRecord.fSizes.size(), 3u) << "the views keep their size while nobody can see them";
  // A title that changes meanwhile does not touch the place that the window comes back to: here its ideal
  // one.
  Change([](auto& state) {
    state.fIdealClientSize = {350, 250};
    state.fPlacement.fZoomState = kWindowStateIdeal;
  });
  MoveNative(Hwnd(), 140, 150);
  const TRect ideal = NativeFrame(Hwnd());
  for (const int command : {SW_MINIMIZE, SW_MAXIMIZE}) {
    ShowWindow(Hwnd(), command);
    Change([](auto& state) { state.fTitle[0] ^= 1; });
    ShowWindow(Hwnd(), SW_RESTORE);
    EXPECT_EQ(NativeFrame(Hwnd()), ideal);
  }
}

// --- What a state does

TEST_IN_RUN(WindowTest, StatesAreApplied) {
  Open(kSizeable);
  // To the ideal size and back.
  Change([](auto& state) {
    state.fIdealClientSize = {350, 250};
    state.fPlacement.fZoomState = kWindowStateIdeal;
  });
  EXPECT_EQ(NativeClientSize(Hwnd()), (TSize{350, 250}));
  const TRect ideal = NativeFrame(Hwnd());
  EXPECT_EQ(State().fPlacement.fIdealRect, ideal);
  EXPECT_EQ(State().fPlacement.fUserRect, kFirstPlace);
  ExpectInStep(ideal);
  Change([](auto& state) { state.fPlacement.fZoomState = kWindowStateUser; });
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
  Do("+doc");
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
  const auto showOther = [this] { SetActiveWindow(HwndOf("doc")); };
  const auto askForTabViews = [&] { Window().IWindow_GetTabViews(receiver); };
  const struct {
    const char* fOccasion;
    CallRecorder& fRecorder;
    const char* fCallback;
    std::optional<Hook> fAction = {};  // none: the window is being shown
  } rows[] = {
      {"made", fRecord, "factory"},
      {"shown, size", fRecord, "ClientSizeChanged"},
      {"shown, place", fRecord, "PlacementChanged"},
      {"shown, active", fRecord, "ActivationChanged:1"},
      {"shown, keyboard", fRecord, "KeyboardFocusChanged:1"},
      {"maximized", fRecord, "ClientSizeChanged", post(WM_SYSCOMMAND, SC_MAXIMIZE)},
      {"minimized", fRecord, "PlacementChanged", post(WM_SYSCOMMAND, SC_MINIMIZE)},
      {"placed by the client", fRecord, "PlacementChanged", change},
      {"left", fRecord, "ActivationChanged:0", post(WM_ACTIVATE, WA_INACTIVE)},
      {"left for another", fRecord, "KeyboardFocusChanged:0", showOther},
      {"menu bar", fRecord, "SetupMenuBar", post(WM_NULL)},
      {"closed", fRecord, "RequestClose", post(WM_CLOSE)},
      {"help", fRecord, "HelpRequested", post(WM_HELP)},
      {"key of the window", fRecord, "HandleKeyDown", post(WM_KEYDOWN, 'A')},
      {"key of the application", fRun, "HandleKeyDown", post(WM_KEYDOWN, 'A')},
      {"key of a view", fViewRecord, "leaf:key", post(WM_KEYDOWN, 'A')},
      {"theme", fRun, "ThemeChanged", post(WM_THEMECHANGED)},
      {"menu loop", fRun, "EnterMenuLoop", post(WM_ENTERMENULOOP)},
      {"paint begins", fRun, "BeginDraw", post(WM_PAINT)},
      {"paint ends", fRun, "EndDraw", post(WM_PAINT)},
      {"focus lost", fViewRecord, "leaf:off", focus},
      {"focus gained", fViewRecord, "other:on", focus},
      {"menu bar of a view", fViewRecord, "other:menu", focus},
      {"control of a view", fViewRecord, "other:target", focus},
      {"view disabled, focus lost", fViewRecord, "leaf:off", disable},
      {"view disabled, focus gained", fViewRecord, "other:on", disable},
      {"list of views", fRecord, "", askForTabViews},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fOccasion);
    if (row.fAction) {
      OpenWithFocusTree();
      SetFocus("leaf");
      SetTabViews({"leaf", "other"});
      SendMessageW(HwndOf("doc"), WM_NULL, 0, 0);  // fills the menu bars
    }
    receiver.fRelease = [&] {
      row.fRecorder.fHooks.erase(row.fCallback);
      fRecord.fLog.Take();
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
    EXPECT_EQ(fRecord.fLog.Count("ClientSizeChanged"), 0) << "it is of no interest any more";
    EXPECT_EQ(fOutput.TakeAssertions(), "");
    fRecord.fLog.Take();
  }
}

// A window lives on to the end of the message in which it is released; the user has left it by then. A second
// call comes while it is on its way out. The behaviour goes before the native window.
TEST_IN_RUN(WindowTest, ReleasedTwiceInAMessage) {
  Do("+doc");
  Open();
  fRecord.fHooks["RequestClose"] = [this] {
    Release(fRecord);
    fRecord.fLog.Take();
    for (const UINT message : {WM_CLOSE, WM_KEYDOWN, WM_HELP}) Send(message, 'A');
    EXPECT_EQ(fRecord.fLog.Take(), "");
  };
  fRecord.fHooks["ActivationChanged:0"] = [this] { Release(fRecord); };
  fRecord.fHooks["deleted"] = [this] {
    EXPECT_TRUE(IsWindow(Hwnd()));
    EXPECT_FALSE(IsWindowVisible(Hwnd()));
    EXPECT_EQ(Listed(), "doc");
  };
  Send(WM_CLOSE);
  EXPECT_FALSE(IsWindow(Hwnd()));
  EXPECT_EQ(fRecord.fLog.Count("deleted"), 1);
  EXPECT_EQ(fOutput.TakeAssertions(), "fClientsWindowReference.get()!=0");
}

// A client that forgets its views is told, and its pointers stay good.
TEST_IN_RUN(WindowTest, ViewsLeftOver) {
  OpenWithFocusTree();
  SetFocus("inner");
  Release(fRecord);
  EXPECT_EQ(fOutput.CountLines("View: outer"), 1);
  EXPECT_EQ(fOutput.CountLines("View: inner"), 0);
  EXPECT_EQ(fOutput.TakeAssertions(), "false");
  EXPECT_EQ(RectOf(*View("inner")), (TRect{10, 10, 90, 90}));
}

}  // namespace NSMorvaneTest
