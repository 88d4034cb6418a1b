// The kinds of windows, as a client sees them: what they are natively, their states,
// how they begin and end, blocking dialogs, window lists.
#include "Support/WindowKinds.h"

namespace NSMorvaneTest {

TEST_F(WindowKindsTest, StyleBitsBecomeNativeStyles) {
  constexpr TStyleFlags kSizing = kWindowResizableBit, kZoom = kWindowZoomableBit;
  const struct {
    Kind fKind;
    TStyleFlags fFlags;
    const wchar_t* fClass;
    DWORD fStyle;
    DWORD fExStyle;
    bool fCanClose;
    bool fHasGrip;
  } kCases[] = {
      {Kind::kDocument, 0, L"SkerryDocumentWindow", 0x02CA0000, 0x10, true, false},
      {Kind::kDocument, kSizing, L"SkerryDocumentWindow", 0x02CE0000, 0x10, true, false},
      {Kind::kDocument, kZoom | kWindowStyleBit22, L"SkerryDocumentWindow", 0x02CB0000, 0x10, true, false},
      {Kind::kDocument, kSizing | kWindowStyleBit23, L"SkerryDocumentWindow", 0x02CE0000, 0x10, true, true},
      {Kind::kModeless, 0, L"SkerryModelessDialog", 0x82C80000, 0, false, false},
      {Kind::kModeless, kSizing, L"SkerryModelessDialog", 0x82CC0000, 0, false, false},
      {Kind::kModeless, kZoom | kWindowStyleBit23, L"SkerryModelessDialog", 0x82C90000, 0, true, false},
      {Kind::kModeless, kWindowStyleBit22 | kWindowStyleBit24, L"SkerryModelessDialog", 0x82C80000, 0, false,
       true},
      {Kind::kModeless, kModelessDialogBorderlessBit, L"SkerryModelessDialog", 0x82000000, 0, false, false},
      {Kind::kModal, 0, L"SkerryModalDialog", 0x84C80080, 0x00010001, false, false},
      {Kind::kModal, kSizing | kWindowStyleBit23, L"SkerryModalDialog", 0x84CC0080, 0x00010001, true, false},
      {Kind::kModal, kWindowStyleBit22, L"SkerryModalDialog", 0x84C80080, 0x00010001, false, true},
      {Kind::kFloating, 0, L"SkerryFloatingWindow", 0x82C80000, 0x88, false, false},
      {Kind::kFloating, kSizing | kZoom, L"SkerryFloatingWindow", 0x82CD0000, 0x88, false, false},
      {Kind::kFloating, kWindowStyleBit23 | kWindowStyleBit24, L"SkerryFloatingWindow", 0x82C80000, 0x88,
       true, true},
  };
  RunWith({[&] {
    for (const auto& c : kCases) {
      KindRecord window;
      ASSERT_NE(Make(c.fKind, window, c.fFlags), nullptr);
      const testing::Message name = testing::Message() << c.fClass << " " << std::hex << c.fFlags;
      wchar_t className[64] = {};
      GetClassNameW(window.fHwnd, className, 64);
      EXPECT_STREQ(className, c.fClass);
      // The system adds these to all windows that have a frame.
      const DWORD added = WS_VISIBLE | WS_CLIPSIBLINGS;
      EXPECT_EQ(static_cast<DWORD>(GetWindowLongW(window.fHwnd, GWL_STYLE)) | added, c.fStyle | added)
          << name;
      EXPECT_EQ(static_cast<DWORD>(GetWindowLongW(window.fHwnd, GWL_EXSTYLE)) & ~DWORD{WS_EX_WINDOWEDGE},
                c.fExStyle)
          << name;
      if (c.fStyle & WS_SYSMENU) {
        const UINT close = GetMenuState(GetSystemMenu(window.fHwnd, FALSE), SC_CLOSE, MF_BYCOMMAND);
        EXPECT_EQ((close & MF_GRAYED) == 0, c.fCanClose) << name;
      }
      EXPECT_EQ(FindWindowExW(window.fHwnd, nullptr, L"SCROLLBAR", nullptr) != nullptr, c.fHasGrip) << name;
      EXPECT_EQ(GetWindow(window.fHwnd, GW_OWNER), nullptr) << name;  // no other window needs the task bar
      Release(window);
      EXPECT_FALSE(IsWindow(window.fHwnd)) << name;
    }
  }});
}

// Each kind has those flags of the placement that it needs, and is where it is told to be.
TEST_F(WindowKindsTest, States) {
  RunWith({[this] {
    KindRecord record[3];
    auto* const modeless =
        static_cast<IModelessDialog*>(Make(Kind::kModeless, record[0], kWindowZoomableBit));
    auto* const modal = static_cast<IModalDialog*>(Make(Kind::kModal, record[1], 0, record[0].fOwner));
    auto* const floating =
        static_cast<IFloatingWindow*>(Make(Kind::kFloating, record[2], kWindowZoomableBit));
    const TRect rect = {40, 50, 340, 290};
    const auto change = [&](auto& state) {
      CopyText(state.fTitle, u"Kind");
      state.fModified = 1;
      state.fPlacement.fUserRect = rect;
    };
    EXPECT_EQ(ChangeState(*modeless, change), kOK);
    EXPECT_EQ(ChangeState(*modal, change), kOK);
    EXPECT_EQ(ChangeState(*floating, change), kOK);
    for (const KindRecord& r : record) {
      EXPECT_EQ(NativeTitleOf(r.fHwnd), L"Kind*");
      TRect frame = {};
      EXPECT_EQ(r.fWindow->IWindow_GetFrameRect(frame), kOK);
      EXPECT_EQ(frame, rect);
    }
    TModelessDialogState modelessState;
    TFloatingWindowState floatingState;
    TModalDialogState modalState;
    ShowWindow(record[2].fHwnd, SW_MAXIMIZE);
    EXPECT_EQ(floating->IFloatingWindow_GetState(floatingState), kOK);
    EXPECT_EQ(floatingState.fPlacement.fMaximized, 1u);
    EXPECT_EQ(floatingState.fPlacement.fUserRect, rect);
    ShowWindow(record[0].fHwnd, SW_MAXIMIZE);
    EXPECT_EQ(modeless->IModelessDialog_GetState(modelessState), kOK);
    EXPECT_EQ(modelessState.fPlacement.fMaximized, 1u);
    EXPECT_EQ(modelessState.fPlacement.fMinimized, 0u);
    ShowWindow(record[1].fHwnd, SW_MINIMIZE);
    EXPECT_EQ(modal->IModalDialog_GetState(modalState), kOK);
    EXPECT_EQ(modalState.fPlacement.fMinimized, 1u);
    EXPECT_EQ(TextOf(modalState.fTitle), u"Kind");
    for (KindRecord* r : {&record[2], &record[1], &record[0]}) Release(*r);
  }});
}

// Between its construction and its behaviour a window can be closed, and asked for its menu bar.
TEST_F(WindowKindsTest, WithoutABehaviour) {
  const struct {
    Kind fKind;
    const char* fName;
  } kCases[] = {{Kind::kDocument, "document window"},
                {Kind::kModeless, "modeless dialog"},
                {Kind::kModal, "modal dialog"},
                {Kind::kFloating, "modeless dialog"}};
  for (const auto& c : kCases) {
    KindRecord window;
    window.fHooks["factory"] = [&] {
      SendMessageW(window.fHwnd, WM_SIZE, 0, 0);
      SendMessageW(window.fHwnd, WM_HELP, 0, 0);
      SendMessageW(window.fHwnd, WM_CLOSE, 0, 0);
    };
    fOutput.Reset();
    RunWith({[&] {
      Make(c.fKind, window);
      EXPECT_EQ(fOutput.CountLines(std::string("RequestClose for a behavior-less ") + c.fName + "!!!"), 1u);
      EXPECT_FALSE(IsWindow(window.fHwnd));
      EXPECT_EQ(window.fLog, CallLog{"deleted"});  // it has never been shown
    }});
    DeleteMorvane();
  }
}

TEST_F(WindowKindsTest, AFactoryThatFails) {
  RunWith({[this] {
    for (const Kind kind : {Kind::kDocument, Kind::kModeless, Kind::kModal, Kind::kFloating}) {
      KindRecord window;
      window.fHooks["factory"] = TError(100777);
      EXPECT_EQ(Make(kind, window, 0, nullptr, kind == Kind::kModal, 100777), nullptr);
      EXPECT_FALSE(IsWindow(window.fHwnd));
    }
  }});
}

// --- Blocking dialogs

// The call comes back when the dialog has gone; the application lives on meanwhile.
TEST_F(WindowKindsTest, ABlockingDialogRunsToItsEnd) {
  KindRecord document, outer, inner;
  CallLog log;
  RunFrom([&] {
    Make(Kind::kDocument, document);
    Then([&] {
      log.push_back("outer shown");
      Then([&] {
        log.push_back("inner shown");
        EXPECT_FALSE(IsWindowEnabled(outer.fHwnd));
        EXPECT_TRUE(IsWindowEnabled(inner.fHwnd));
        // An idle call that fails is reported, and the dialog goes on.
        fHooks.fOnIdle = [calls = 0](std::int64_t&) mutable {
          return ++calls == 1 ? TError{100777} : TError{kOK};
        };
        EXPECT_EQ(fMorvane->IMorvane_WakeUpIdle(), kOK);
      });
      fHooks.fOnUnhandledError = [&](TError error) {
        log.push_back("error " + std::to_string(error));
        EXPECT_TRUE(IsWindow(inner.fHwnd));
        PostMessageW(inner.fHwnd, WM_CLOSE, 0, 0);
      };
      EXPECT_EQ(Make(Kind::kModal, inner, kWindowStyleBit23, nullptr, 1), nullptr);
      log.push_back("inner through");
      EXPECT_FALSE(IsWindow(inner.fHwnd));
      EXPECT_TRUE(IsWindowEnabled(outer.fHwnd));
      Then([&] { Release(outer); });
    });
    EXPECT_EQ(Make(Kind::kModal, outer, 0, nullptr, 1), nullptr);
    log.push_back("outer through");
    EXPECT_FALSE(IsWindow(outer.fHwnd));
    EXPECT_TRUE(IsWindowEnabled(document.fHwnd));
    Quit();
  });
  EXPECT_EQ(log, (CallLog{"outer shown", "inner shown", "error 100777", "inner through", "outer through"}));
  EXPECT_EQ(inner.Count("OnRequestClose 0"), 1u);
}

// One that ends itself before it is shown does not hold the call, nor does one that the last idle call ends:
// there is no other window whose messages would wake the application.
TEST_F(WindowKindsTest, ABlockingDialogThatEndsEarly) {
  KindRecord first, second;
  first.fHooks["factory"] = [&] { return first.fRelease(); };
  bool isOpen = false;
  fHooks.fOnIdle = [&](std::int64_t& delay) {
    delay = 1;
    return std::exchange(isOpen, false) ? second.fRelease() : kOK;
  };
  RunFrom([&] {
    EXPECT_EQ(Make(Kind::kModal, first, 0, nullptr, 1), nullptr);
    EXPECT_EQ(first.fLog, CallLog{"deleted"});
    Then([&] { isOpen = true; });
    EXPECT_EQ(Make(Kind::kModal, second, 0, nullptr, 1), nullptr);
    EXPECT_FALSE(IsWindow(second.fHwnd));
    Quit();
  });
}

// --- Window lists

TEST_F(WindowKindsTest, ListsByKindFrontWindowFirst) {
  KindRecord document[2], modeless[2], modal, floating[2];
  const auto expectLists = [&](const std::vector<IWindow*>& documents,
                               const std::vector<IWindow*>& modelesses, const std::vector<IWindow*>& modals,
                               const std::vector<IWindow*>& floatings) {
    const auto listed = [&](TError (IMorvane::*get)(IWindowListReceiver&)) {
      CVectorWindowReceiver windows;
      EXPECT_EQ((fMorvane->*get)(windows), kOK);
      return windows.fWindows;
    };
    EXPECT_EQ(listed(&IMorvane::IMorvane_GetDocumentWindowsZ), documents);
    EXPECT_EQ(listed(&IMorvane::IMorvane_GetModelessDialogsZ), modelesses);
    EXPECT_EQ(listed(&IMorvane::IMorvane_GetModalDialogsZ), modals);
    EXPECT_EQ(listed(&IMorvane::IMorvane_GetFloatingWindowsZ), floatings);
  };
  RunWith({[&] {
    for (int i : {0, 1}) {
      Make(Kind::kDocument, document[i]);
      Make(Kind::kModeless, modeless[i]);
      Make(Kind::kFloating, floating[i]);
    }
    expectLists({document[1].fWindow, document[0].fWindow}, {modeless[1].fWindow, modeless[0].fWindow}, {},
                {floating[1].fWindow, floating[0].fWindow});
    BringToFront(document[0]);
    BringToFront(modeless[0]);
    BringToFront(floating[0]);
    expectLists({document[0].fWindow, document[1].fWindow}, {modeless[0].fWindow, modeless[1].fWindow}, {},
                {floating[0].fWindow, floating[1].fWindow});
    // Floating windows are out of the way of a dialog that blocks the application.
    Make(Kind::kModal, modal);
    expectLists({document[0].fWindow, document[1].fWindow}, {modeless[0].fWindow, modeless[1].fWindow},
                {modal.fWindow}, {});
    // One that is on its way out, though natively visible, is in no list.
    modal.fHooks["OnActivationChanged 0"] = [&] {
      expectLists({document[0].fWindow, document[1].fWindow}, {modeless[0].fWindow, modeless[1].fWindow}, {},
                  {});
    };
    PostMessageW(modal.fHwnd, WM_NULL, 0, 0);
    Release(modal);
    EXPECT_EQ(modal.Count("OnActivationChanged 0"), 1u);
    expectLists({document[0].fWindow, document[1].fWindow}, {modeless[0].fWindow, modeless[1].fWindow}, {},
                {floating[0].fWindow, floating[1].fWindow});
  }});
}

}  // namespace NSMorvaneTest
