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
  const struct {
    Kind fKind;
    TStyleFlags fFlags;
    DWORD fStyle;
    DWORD fExStyle;
    bool fCanClose;
    bool fHasGrip;
  } kCases[] = {
      {Kind::kDocument, 0, 0x02CA0000, 0x10, true, false},
      {Kind::kDocument, kSizing, 0x02CE0000, 0x10, true, false},
      {Kind::kDocument, kZoom | kWindowStyleBit22, 0x02CB0000, 0x10, true, false},
      {Kind::kDocument, kSizing | kWindowStyleBit23, 0x02CE0000, 0x10, true, true},
      {Kind::kModeless, 0, 0x82C80000, 0, false, false},
      {Kind::kModeless, kZoom | kWindowStyleBit23, 0x82C90000, 0, true, false},
      {Kind::kModeless, kWindowStyleBit22 | kWindowStyleBit24, 0x82C80000, 0, false, true},
      {Kind::kModeless, kModelessDialogBorderlessBit, 0x82000000, 0, false, false},
      {Kind::kModal, kSizing | kWindowStyleBit23, 0x84CC0080, 0x00010001, true, false},
      {Kind::kModal, kWindowStyleBit22, 0x84C80080, 0x00010001, false, true},
      {Kind::kFloating, 0, 0x82C80000, 0x88, false, false},
      {Kind::kFloating, kSizing | kZoom, 0x82CD0000, 0x88, false, false},
      {Kind::kFloating, kWindowStyleBit23 | kWindowStyleBit24, 0x82C80000, 0x88, true, true},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(&c - kCases);
    WindowRecord window;
    ASSERT_NE(Make(c.fKind, window, c.fFlags), nullptr);
    const HWND hwnd = window.fHwnd;
    wchar_t className[64] = {};
    GetClassNameW(hwnd, className, 64);
    EXPECT_STREQ(className, classes[static_cast<int>(c.fKind)]);
    // The system adds these to all windows that have a frame.
    const DWORD added = WS_VISIBLE | WS_CLIPSIBLINGS;
    EXPECT_EQ(static_cast<DWORD>(GetWindowLongW(hwnd, GWL_STYLE)) | added, c.fStyle | added);
    EXPECT_EQ(static_cast<DWORD>(GetWindowLongW(hwnd, GWL_EXSTYLE)) & ~DWORD{WS_EX_WINDOWEDGE}, c.fExStyle);
    if (c.fStyle & WS_SYSMENU) {
      const UINT close = GetMenuState(GetSystemMenu(hwnd, FALSE), SC_CLOSE, MF_BYCOMMAND);
      EXPECT_EQ((close & MF_GRAYED) == 0, c.fCanClose);
    }
    EXPECT_EQ(FindWindowExW(hwnd, nullptr, L"SCROLLBAR", nullptr) != nullptr, c.fHasGrip);
    EXPECT_EQ(GetWindow(hwnd, GW_OWNER), nullptr);  // no other window needs the task bar
    Release(window);
    EXPECT_FALSE(IsWindow(hwnd));
  }
}

// Each kind has those flags of the placement that it needs, and is where it is told to be.
TEST_IN_RUN(WindowKindsTest, States) {
  const TRect rect = {40, 50, 340, 290};
  const auto set = [&](auto& state) {
    CopyText(state.fTitle, u"Ki&d \u4E2D");
    state.fModified = 1;
    state.fPlacement.fUserRect = rect;
  };
  const auto check = [&](auto& window, bool minimize) {
    EXPECT_EQ(ChangeState(window, set), kOK);
    EXPECT_EQ(NativeTitle(Hwnd()), L"Ki&d \u4E2D*");
    EXPECT_EQ(NativeFrame(Hwnd()), rect);
    ShowWindow(Hwnd(), minimize ? SW_MINIMIZE : SW_MAXIMIZE);
    const auto see = [&](auto& state) {
      EXPECT_EQ(state.fPlacement.fUserRect, rect);
      if constexpr (requires { state.fPlacement.fMinimized; }) {
        EXPECT_EQ(state.fPlacement.fMinimized, minimize);
      }
      if constexpr (requires { state.fPlacement.fMaximized; }) {
        EXPECT_NE(state.fPlacement.fMaximized, minimize);
      }
    };
    EXPECT_EQ(ChangeState(window, see), kOK);
    Release(fRecord);
  };
  Open(kSizeable);
  check(*fRecord.fDocument, true);
  check(*static_cast<IModelessDialog*>(Make(Kind::kModeless, fRecord, kWindowZoomableBit)), false);
  check(*static_cast<IModalDialog*>(Make(Kind::kModal, fRecord)), true);
  check(*static_cast<IFloatingWindow*>(Make(Kind::kFloating, fRecord, kWindowZoomableBit)), false);
}

// Clients place windows on the screen, the system from the work area on; but not tool windows.
TEST_IN_RUN(WindowKindsTest, BesideATaskBarAtTheLeftAndTheTop) {
  BOOL(WINAPI* const withTaskBar)
  (HMONITOR, LPMONITORINFO) = [](HMONITOR monitor, LPMONITORINFO info) {
    const BOOL result = GetMonitorInfoW(monitor, info);
    info->rcWork.left += 60;
    info->rcWork.top += 24;
    return result;
  };
  const PatchedImport patch(L"Morvane.dll", "GetMonitorInfoW", withTaskBar);
  const TRect onScreen = {140, 150, 440, 390}, fromWorkArea = {80, 126, 380, 366};
  const auto check = [&](auto& window, const TRect& native) {
    const HWND hwnd = fRecord.fHwnd;
    const auto set = [&](auto& state) {
      state.fMaximumClientSize = {250, 0};
      state.fPlacement.fUserRect = onScreen;
    };
    EXPECT_EQ(ChangeState(window, set), kOK);
    WINDOWPLACEMENT wp = {};
    wp.length = sizeof(wp);
    GetWindowPlacement(hwnd, &wp);
    const TRect placed = NativeRect(wp.rcNormalPosition);
    EXPECT_EQ(placed.fLeft, native.fLeft);
    EXPECT_EQ(placed.fTop, native.fTop);
    EXPECT_EQ(placed.fBottom, native.fBottom);
    EXPECT_EQ(ChangeState(window, [&](auto& state) { EXPECT_EQ(state.fPlacement.fUserRect.fTop, 150); }),
              kOK);
    // As high as the work area.
    SendMessageW(hwnd, WM_SYSCOMMAND, SC_MAXIMIZE, 0);
    GetWindowPlacement(hwnd, &wp);
    EXPECT_EQ(wp.rcNormalPosition.top, native.fTop - 126);
    EXPECT_EQ(wp.rcNormalPosition.bottom, GetSystemMetrics(SM_CYSCREEN) + native.fTop - 150);
    Release(fRecord);
  };
  Open(kSizeable);
  check(*fRecord.fDocument, fromWorkArea);
  check(*static_cast<IModelessDialog*>(Make(Kind::kModeless, fRecord, kWindowZoomableBit)), fromWorkArea);
  check(*static_cast<IModalDialog*>(Make(Kind::kModal, fRecord)), fromWorkArea);
  check(*static_cast<IFloatingWindow*>(Make(Kind::kFloating, fRecord, kWindowZoomableBit)), onScreen);
}

// Between its construction and its behaviour a window can be closed, and asked for its menu bar; or its
// factory fails.
TEST_IN_RUN(WindowKindsTest, WithoutABehaviour) {
  const std::pair<Kind, const char*> kinds[] = {{Kind::kDocument, "document window"},
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
    Make(kind, closed);
    EXPECT_EQ(fOutput.CountLines(std::string("RequestClose for a behavior-less ") + name + "!!!"), 1);
    EXPECT_FALSE(IsWindow(closed.fHwnd));
    EXPECT_EQ(closed.fLog.Take(), "deleted");
    EXPECT_EQ(Make(kind, failing, kPlain, nullptr, kind == Kind::kModal, 100777), nullptr);
    EXPECT_FALSE(IsWindow(failing.fHwnd));
  }
}

// --- Blocking dialogs

// The call comes back when the dialog has gone; the application lives on meanwhile.
TEST_IN_RUN(WindowKindsTest, ABlockingDialogRunsToItsEnd) {
  WindowRecord outer, inner;
  CallLog log;
  Open();
  Then([&] {
    log.Add("outer");
    Then([&] {
      log.Add("inner");
      EXPECT_FALSE(IsWindowEnabled(outer.fHwnd));
      EXPECT_TRUE(IsWindowEnabled(inner.fHwnd));
      // An idle call that fails is reported, and the dialog goes on.
      fRun.fHooks["Idle"] = TError(100777);
      EXPECT_EQ(fMorvane->IMorvane_WakeUpIdle(), kOK);
    });
    fRun.fHooks["UnhandledError:100777"] = [&] {
      log.Add("error");
      fRun.fHooks.erase("Idle");
      PostMessageW(inner.fHwnd, WM_CLOSE, 0, 0);
    };
    EXPECT_EQ(Make(Kind::kModal, inner, kWindowStyleBit23, nullptr, 1), nullptr);
    log.Add("inner-through");
    EXPECT_FALSE(IsWindow(inner.fHwnd));
    EXPECT_TRUE(IsWindowEnabled(outer.fHwnd));
    Then([&] { Release(outer); });
  });
  EXPECT_EQ(Make(Kind::kModal, outer, kPlain, nullptr, 1), nullptr);
  EXPECT_FALSE(IsWindow(outer.fHwnd));
  EXPECT_TRUE(IsWindowEnabled(Hwnd()));
  EXPECT_EQ(log.Take(), "outer inner error inner-through");
  EXPECT_EQ(inner.fLog.Count("RequestClose:0"), 1);
  ExpectReported(100777);
}

// One that ends itself before it is shown does not hold the call, nor does one that the last idle call ends:
// there is no other window whose messages would wake the application.
TEST_IN_RUN(WindowKindsTest, ABlockingDialogThatEndsEarly) {
  WindowRecord first, second;
  first.fHooks["factory"] = [&] { return first.fRelease(); };
  EXPECT_EQ(Make(Kind::kModal, first, kPlain, nullptr, 1), nullptr);
  EXPECT_EQ(first.fLog.Take(), "deleted");
  bool isOpen = false;
  fRun.fHooks["Idle"] = [&] {
    *fRun.fIdleDelay = 1;
    return std::exchange(isOpen, false) ? second.fRelease() : kOK;
  };
  Then([&] { isOpen = true; });
  EXPECT_EQ(Make(Kind::kModal, second, kPlain, nullptr, 1), nullptr);
  EXPECT_FALSE(IsWindow(second.fHwnd));
  fRun.fHooks.erase("Idle");
}

// A dialog that is going is moved above the screen, and stays natively visible until it has gone.
TEST_IN_RUN(WindowKindsTest, WhereADialogGoes) {
  WindowRecord dialog;
  Open();
  for (const bool hasOwner : {true, false}) {
    auto& window =
        *static_cast<IModalDialog*>(Make(Kind::kModal, dialog, kPlain, hasOwner ? fRecord.fOwner : nullptr));
    EXPECT_EQ(ChangeState(window,
                          [](auto& state) {
                            state.fPlacement.fUserRect = {150, 120, 350, 260};
                          }),
              kOK);
    TRect frame = {};
    dialog.fHooks["deleted"] = [&] {
      frame = NativeFrame(dialog.fHwnd);
      EXPECT_TRUE(IsWindowVisible(dialog.fHwnd));
    };
    Release(dialog);
    EXPECT_EQ(frame, hasOwner ? (TRect{50, -240, 250, -100}) : (TRect{150, -140, 350, 0}));
  }
}

// --- The application in the background

// Floating windows go and come with the application; the others stay. They come to be closed, too.
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
  WindowRecord modeless, floating;
  RunFrom([&] {
    Then([&] {
      Open();
      Make(Kind::kModeless, modeless);
      Make(Kind::kFloating, floating);
      EXPECT_TRUE(YieldUntil([&] { return stranger != nullptr; }));
      for (const bool isLast : {false, true}) {
        SetForegroundWindow(Hwnd());
        EXPECT_TRUE(YieldUntil([&] { return told.ends_with("1") && IsWindowVisible(floating.fHwnd); }));
        SetForegroundWindow(stranger);
        EXPECT_TRUE(YieldUntil([&] { return told.ends_with("0") && !IsWindowVisible(floating.fHwnd); }));
        EXPECT_TRUE(IsWindowVisible(Hwnd()) && IsWindowVisible(modeless.fHwnd));
        if (isLast) Quit();
      }
    });
  });
  EXPECT_EQ(floating.fLog.Count("RequestClose:1"), 1);
  EXPECT_EQ(told.substr(0, 4), "1010");
  PostThreadMessageW(GetWindowThreadProcessId(stranger, nullptr), WM_QUIT, 0, 0);
  thread.join();
}

// --- Window lists

TEST_IN_RUN(WindowKindsTest, ListsByKindFrontWindowFirst) {
  std::map<char, WindowRecord> windows;
  const auto lists = [&] {
    std::string text;
    for (const auto get : {&IMorvane::IMorvane_GetDocumentWindowsZ, &IMorvane::IMorvane_GetModelessDialogsZ,
                           &IMorvane::IMorvane_GetModalDialogsZ, &IMorvane::IMorvane_GetFloatingWindowsZ}) {
      CVectorWindowReceiver receiver;
      EXPECT_EQ((fMorvane->*get)(receiver), kOK);
      for (IWindow* const window : receiver.fWindows)
        for (const auto& [name, record] : windows)
          if (record.fWindow == window) text += name;
      text += "|";
    }
    return text;
  };
  for (const char* names : {"dmf", "DMF"}) {
    Make(Kind::kDocument, windows[names[0]]);
    Make(Kind::kModeless, windows[names[1]]);
    Make(Kind::kFloating, windows[names[2]]);
  }
  EXPECT_EQ(lists(), "Dd|Mm||Ff|");
  for (const char name : {'d', 'm', 'f'}) BringToFront(windows[name]);
  EXPECT_EQ(lists(), "dD|mM||fF|");
  // Floating windows are out of the way of a dialog that blocks the application.
  WindowRecord& modal = windows['x'];
  Make(Kind::kModal, modal);
  EXPECT_EQ(lists(), "dD|mM|x||");
  // One that is on its way out, though natively visible, is in no list.
  modal.fHooks["ActivationChanged:0"] = [&] { EXPECT_EQ(lists(), "dD|mM|||"); };
  PostMessageW(modal.fHwnd, WM_NULL, 0, 0);
  Release(modal);
  EXPECT_EQ(modal.fLog.Count("ActivationChanged:0"), 1);
  windows.erase('x');
  EXPECT_EQ(lists(), "dD|mM||fF|");
  for (auto& [name, record] : windows) Release(record);
}

}  // namespace NSMorvaneTest
