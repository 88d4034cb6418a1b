// The kinds of windows, as a client sees them: what they are natively, their states, how they begin and end,
// blocking dialogs, window lists.
#include <thread>

#include "Support/ClientWindows.h"
#include "Support/PatchedImport.h"

namespace NSMorvaneTest {

using WindowKindsTest = ClientWindowTest;

TEST_IN_RUN(WindowKindsTest, StyleBitsBecomeNativeStyles) {
  constexpr TStyleFlags kSizing = kWindowResizableBit, kZoom = kWindowZoomableBit;
  const wchar_t* const classes[] = {L"SkerryDocumentWindow", L"SkerryModelessDialog", L"SkerryModalDialog",
                                    L"SkerryFloatingWindow"};
  const Rows<const char*, Kind, TStyleFlags, DWORD, DWORD, bool, bool> rows = {
      {"document", Kind::kDocument, 0, 0x02CA0000, 0x10, true, false},
      {"document to size", Kind::kDocument, kSizing, 0x02CE0000, 0x10, true, false},
      {"document to zoom", Kind::kDocument, kZoom | kWindowStyleBit22, 0x02CB0000, 0x10, true, false},
      {"document with a grip", Kind::kDocument, kSizing | kWindowStyleBit23, 0x02CE0000, 0x10, true, true},
      {"modeless", Kind::kModeless, 0, 0x82C80000, 0, false, false},
      {"modeless to zoom", Kind::kModeless, kZoom | kWindowStyleBit23, 0x82C90000, 0, true, false},
      {"modeless with a grip", Kind::kModeless, kWindowStyleBit22 | kWindowStyleBit24, 0x82C80000, 0, false,
       true},
      {"without a border", Kind::kModeless, kModelessDialogBorderlessBit, 0x82000000, 0, false, false},
      {"modal to size", Kind::kModal, kSizing | kWindowStyleBit23, 0x84CC0080, 0x00010001, true, false},
      {"modal with a grip", Kind::kModal, kWindowStyleBit22, 0x84C80080, 0x00010001, false, true},
      {"floating", Kind::kFloating, 0, 0x82C80000, 0x88, false, false},
      {"floating to zoom", Kind::kFloating, kSizing | kZoom, 0x82CD0000, 0x88, false, false},
      {"floating with a grip", Kind::kFloating, kWindowStyleBit23 | kWindowStyleBit24, 0x82C80000, 0x88, true,
       true},
  };
  for (const auto& [name, kind, flags, style, exStyle, canClose, hasGrip] : rows) {
    SCOPED_TRACE(name);
    ASSERT_NE(Make(kind, fRecord, flags), nullptr);
    const HWND hwnd = Hwnd();
    EXPECT_EQ(NativeClass(hwnd), classes[static_cast<int>(kind)]);
    // The system adds these to all windows that have a frame.
    const DWORD added = WS_VISIBLE | WS_CLIPSIBLINGS;
    EXPECT_EQ(static_cast<DWORD>(GetWindowLongW(hwnd, GWL_STYLE)) | added, style | added);
    EXPECT_EQ(static_cast<DWORD>(GetWindowLongW(hwnd, GWL_EXSTYLE)) & ~DWORD{WS_EX_WINDOWEDGE}, exStyle);
    if (style & WS_SYSMENU) {
      const UINT close = GetMenuState(GetSystemMenu(hwnd, FALSE), SC_CLOSE, MF_BYCOMMAND);
      EXPECT_EQ((close & MF_GRAYED) == 0, canClose);
    }
    EXPECT_EQ(FindWindowExW(hwnd, nullptr, L"SCROLLBAR", nullptr) != nullptr, hasGrip);
    EXPECT_EQ(GetWindow(hwnd, GW_OWNER), nullptr);  // no other window needs the task bar
    Release(fRecord);
    EXPECT_FALSE(IsWindow(hwnd));
  }
}

// Each kind has those flags of the placement that it needs, and is where it is told to be. Here a task bar
// lies at the left and the top: clients place windows on the screen, the system from the work area on, but
// not tool windows.
TEST_IN_RUN(WindowKindsTest, States) {
  static TPoint taskBar;
  taskBar = {60, 24};
  BOOL(WINAPI* const withTaskBar)
  (HMONITOR, LPMONITORINFO) = [](HMONITOR monitor, LPMONITORINFO info) {
    const BOOL result = GetMonitorInfoW(monitor, info);
    info->rcWork.left += taskBar.fX;
    info->rcWork.top += taskBar.fY;
    return result;
  };
  const PatchedImport patch(L"Morvane.dll", "GetMonitorInfoW", withTaskBar);
  const TRect onScreen = {140, 150, 440, 390}, fromWorkArea = {80, 126, 380, 366};
  const auto check = [&](auto& window, const TRect& native, bool minimize) {
    const auto change = [&](auto&& action) { EXPECT_EQ(ChangeState(window, action), kOK); };
    change([&](auto& state) {
      CopyText(state.fTitle, u"Ki&d \u4E2D");
      state.fModified = 1;
      state.fPlacement.fUserRect = onScreen;
    });
    EXPECT_EQ(NativeTitle(Hwnd()), L"Ki&d \u4E2D*");
    EXPECT_EQ(NativeNormalRect(Hwnd()), native);
    ShowWindow(Hwnd(), minimize ? SW_MINIMIZE : SW_MAXIMIZE);
    change([&](auto& state) {
      EXPECT_EQ(state.fPlacement.fUserRect, onScreen);
      if constexpr (requires { state.fPlacement.fMinimized; }) {
        EXPECT_EQ(state.fPlacement.fMinimized, minimize);
      }
      if constexpr (requires { state.fPlacement.fMaximized; }) {
        EXPECT_NE(state.fPlacement.fMaximized, minimize);
      }
    });
    // With a limit to the width it becomes as high as the work area.
    ShowWindow(Hwnd(), SW_RESTORE);
    change([](auto& state) { state.fMaximumClientSize = {250, 0}; });
    Send(WM_SYSCOMMAND, SC_MAXIMIZE);
    const TRect limited = NativeNormalRect(Hwnd());
    EXPECT_EQ(limited.fTop, native.fTop - 126);
    EXPECT_EQ(limited.fBottom, GetSystemMetrics(SM_CYSCREEN) + native.fTop - 150);
    Release(fRecord);
  };
  Open(kSizeable);
  check(*fRecord.fDocument, fromWorkArea, true);
  check(*static_cast<IModelessDialog*>(Make(Kind::kModeless, fRecord, kWindowZoomableBit)), fromWorkArea,
        false);
  check(*static_cast<IModalDialog*>(Make(Kind::kModal, fRecord)), fromWorkArea, true);
  check(*static_cast<IFloatingWindow*>(Make(Kind::kFloating, fRecord, kWindowZoomableBit)), onScreen, false);
  // The user makes it wider, in the middle of a message of the application.
  Open(kSizeable);
  const auto shown = [&] {
    TDocumentWindowState state;
    EXPECT_EQ(fRecord.fDocument->IDocumentWindow_GetState(state), kOK);
    return state.fPlacement.fUserRect.fLeft;
  };
  const std::int32_t before = shown();
  taskBar.fX = 100;
  Send(WM_SETTINGCHANGE, SPI_SETWORKAREA);
  EXPECT_EQ(shown(), before + 40);
}

// Between its construction and its behaviour a window can be closed, and asked for its menu bar; or its
// factory fails. A blocking dialog that ends so early does not hold the call.
TEST_IN_RUN(WindowKindsTest, WithoutABehaviour) {
  const std::pair<Kind, std::string> kinds[] = {{Kind::kDocument, "document window"},
                                                {Kind::kModeless, "modeless dialog"},
                                                {Kind::kModal, "modal dialog"},
                                                {Kind::kFloating, "modeless dialog"}};
  for (const auto& [kind, name] : kinds) {
    WindowRecord closed, failing;
    closed.fHooks["factory"] = [&, kind = kind] {
      ShowWindow(closed.fHwnd, kind == Kind::kDocument ? SW_SHOWNA : SW_HIDE);
      EXPECT_EQ(fMorvane->IMorvane_RequestMenuBarsSetup(), kOK);
      for (const UINT message : {WM_SIZE, WM_HELP, WM_CLOSE}) SendMessageW(closed.fHwnd, message, 0, 0);
    };
    failing.fHooks["factory"] = TError(100777);
    fOutput.ForgetLines();
    Make(kind, closed, kPlain, nullptr, kind == Kind::kModal);
    EXPECT_EQ(fOutput.CountLines("RequestClose for a behavior-less " + name + "!!!"), 1);
    EXPECT_FALSE(IsWindow(closed.fHwnd));
    EXPECT_EQ(closed.fLog.Take(), "deleted");
    EXPECT_EQ(Make(kind, failing, kPlain, nullptr, kind == Kind::kModal, 100777), nullptr);
    EXPECT_FALSE(IsWindow(failing.fHwnd));
  }
}

// --- Blocking dialogs

// The call comes back when the dialog has gone; the application lives on meanwhile.
TEST_IN_RUN(WindowKindsTest, ABlockingDialogRunsToItsEnd) {
  Then([this] {
    Then([this] {
      // An idle call that fails is reported, and the dialog goes on.
      fRun.fHooks["Idle"] = TError(100777);
      EXPECT_EQ(fMorvane->IMorvane_WakeUpIdle(), kOK);
    });
    fRun.fHooks["UnhandledError"] = [this] {
      fRun.fHooks.erase("Idle");
      PostMessageW(HwndOf("inner"), WM_CLOSE, 0, 0);
    };
    MakeNamed("inner", {}, nullptr, kWindowStyleBit23, 1);
    fRun.fLog.Add("through");
    Then([this] { Do("-outer"); });
  });
  fRun.fLog.Take();
  MakeNamed("outer", {}, nullptr, kPlain, 1);
  EXPECT_EQ(fRun.fLog.Take(),
            "UnhandledError:100777 inner.RequestClose:0 inner.deleted through outer.deleted");
}

// A dialog that is going is moved above the screen, and stays natively visible until it has gone. Its client
// does not hear of that place.
TEST_IN_RUN(WindowKindsTest, WhereADialogGoes) {
  Do("+doc");
  for (const auto& [steps, docTop, gone] :
       Rows<const char*, int, TRect>{{"+A<doc", 100, {50, -240, 250, -100}},
                                     {"+A<doc", -50, {50, -140, 250, 0}},
                                     {"+A", 100, {150, -140, 350, 0}}}) {
    MoveNative(HwndOf("doc"), 100, docTop);
    Do(steps);
    MoveNative(HwndOf("A"), 150, 120);
    SizeNative(HwndOf("A"), 200, 140);
    HooksOf("A")["deleted"] = [this, gone = gone] {
      EXPECT_EQ(NativeFrame(HwndOf("A")), gone);
      EXPECT_TRUE(IsWindowVisible(HwndOf("A")));
    };
    fWindows["A"].fLog.Take();
    Do("-A");
    EXPECT_EQ(fWindows["A"].fLog.Count("PlacementChanged"), 0);
  }
}

// --- The application in the background

// Floating windows go and come with the application; the others stay. When it quits meanwhile, they come to
// be closed.
TEST_F(WindowKindsTest, FloatingWindowsGoWithTheApplication) {
  std::string told;
  for (const char* flag : {"0", "1"})
    fRun.fHooks[std::string("AppActivation:") + flag] = [&, flag] { told += flag; };
  // Another application, as far as activation goes.
  std::atomic<HWND> stranger = nullptr;
  std::thread thread([&] {
    stranger = CreateWindowExW(0, L"STATIC", L"stranger", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 700, 500, 90, 90,
                               nullptr, nullptr, nullptr, nullptr);
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) DispatchMessageW(&message);
    DestroyWindow(stranger);
  });
  RunFrom([&] {
    Then([&] {
      Do("+doc +modeless +floating");
      const HWND floating = HwndOf("floating");
      HooksOf("floating")["RequestClose"] = [=, this] {
        EXPECT_TRUE(IsWindowVisible(floating));
        Do("-floating");
      };
      EXPECT_TRUE(YieldUntil([&] { return stranger != nullptr; }));
      for (const char* times : {"first", "second"}) {
        SetForegroundWindow(HwndOf("doc"));
        EXPECT_TRUE(YieldUntil([&] { return told.ends_with("1") && IsWindowVisible(floating); })) << times;
        SetForegroundWindow(stranger);
        EXPECT_TRUE(YieldUntil([&] { return told.ends_with("0") && !IsWindowVisible(floating); })) << times;
        EXPECT_TRUE(IsWindowVisible(HwndOf("doc")) && IsWindowVisible(HwndOf("modeless")));
      }
      EXPECT_EQ(told, "1010");
      Quit();
    });
  });
  EXPECT_EQ(fRun.fLog.Count("floating.RequestClose:1"), 1);
  PostThreadMessageW(GetWindowThreadProcessId(stranger, nullptr), WM_QUIT, 0, 0);
  thread.join();
}

// --- Window lists

TEST_IN_RUN(WindowKindsTest, ListsByKindFrontWindowFirst) {
  const auto lists = [this] {
    return Listed() + "|" + Listed(&IMorvane::IMorvane_GetModelessDialogsZ) + "|" +
           Listed(&IMorvane::IMorvane_GetModalDialogsZ) + "|" +
           Listed(&IMorvane::IMorvane_GetFloatingWindowsZ);
  };
  // One that the client has put into another window is in no list, as long as it is there.
  Do("+doc0");
  const HWND holder = CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, 400, 400, nullptr,
                                      nullptr, nullptr, nullptr);
  SetParent(HwndOf("doc0"), holder);
  EXPECT_EQ(lists(), "|||");
  SetParent(HwndOf("doc0"), nullptr);
  EXPECT_EQ(lists(), "doc0|||");
  DestroyWindow(holder);
  Do("-doc0");

  Do("+doc1 +modeless1 +floating1 +doc2 +modeless2 +floating2");
  EXPECT_EQ(lists(), "doc2 doc1|modeless2 modeless1||floating2 floating1");
  Do("^doc1 ^modeless1 ^floating1");
  EXPECT_EQ(lists(), "doc1 doc2|modeless1 modeless2||floating1 floating2");
  // Floating windows are out of the way of a dialog that blocks the application.
  Do("+A");
  EXPECT_EQ(lists(), "doc1 doc2|modeless1 modeless2|A|");
  // One that is on its way out, though natively visible, is in no list.
  HooksOf("A")["ActivationChanged:0"] = [&] { EXPECT_EQ(lists(), "doc1 doc2|modeless1 modeless2||"); };
  PostMessageW(HwndOf("A"), WM_NULL, 0, 0);
  Do("-A");
  EXPECT_EQ(fWindows["A"].fLog.Count("ActivationChanged:0"), 1);
  EXPECT_EQ(lists(), "doc1 doc2|modeless1 modeless2||floating1 floating2");
}

}  // namespace NSMorvaneTest
