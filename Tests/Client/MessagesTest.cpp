// What windows make of native messages: callbacks in their order, results, windows that end in the middle,
// failures, sizes, dropped files, and messages that nobody should have sent.
#include <windows.h>

#include <shellapi.h>
#include <shlobj.h>

#include <algorithm>
#include <cstring>

#include "Support/RecordingWindow.h"

namespace NSMorvaneTest {

class MessagesTest : public ClientWindowTest {
 protected:
  LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
    return SendMessageW(Hwnd(), message, wParam, lParam);
  }
  // The calls that one message has led to.
  CallLog CallsOf(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
    fLog.clear();
    fRecord.fLog.clear();
    Send(message, wParam, lParam);
    CallLog calls = fLog;
    calls.insert(calls.end(), fRecord.fLog.begin(), fRecord.fLog.end());
    return calls;
  }
  // How much larger the frame is than the client area.
  TSize FrameAround() const {
    RECT frame;
    GetWindowRect(Hwnd(), &frame);
    const TSize client = NativeClientSize(Hwnd());
    return {static_cast<std::int32_t>(frame.right - frame.left) - client.fWidth,
            static_cast<std::int32_t>(frame.bottom - frame.top) - client.fHeight};
  }
  void SetFrameSize(int width, int height) {
    SetWindowPos(Hwnd(), nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  }
};

// --- Results and callbacks

TEST_F(MessagesTest, ResultsOfSimpleMessages) {
  RunWithWindow(0, [this] {
    EXPECT_EQ(Send(WM_ERASEBKGND, 0), 0);
    EXPECT_EQ(Send(WM_HELP), 1);
    EXPECT_EQ(Send(WM_PAINT), 0);
    EXPECT_EQ(Send(WM_NCHITTEST, 0, MAKELPARAM(0x7000, 0x7000)), HTNOWHERE);
    EXPECT_EQ(CallsOf(WM_THEMECHANGED), (CallLog{"OnThemeChanged"}));
    EXPECT_EQ(CallsOf(WM_ENTERMENULOOP), (CallLog{"OnEnterMenuLoop"}));
    EXPECT_EQ(CallsOf(WM_EXITMENULOOP), (CallLog{"OnExitMenuLoop"}));
    EXPECT_EQ(CallsOf(WM_HELP), (CallLog{"OnHelpRequested"}));
    fRecord.fHooks["OnRequestClose 0"] = [] { return kOK; };
    EXPECT_EQ(CallsOf(WM_CLOSE), (CallLog{"OnRequestClose 0"}));
    EXPECT_EQ(CallsOf(WM_SYSCOMMAND, SC_CLOSE), (CallLog{"OnRequestClose 0"}));
    EXPECT_TRUE(IsWindow(Hwnd()));
    // Nothing can be closed that has no system menu.
    SetWindowLongW(Hwnd(), GWL_STYLE, GetWindowLongW(Hwnd(), GWL_STYLE) & ~WS_SYSMENU);
    EXPECT_EQ(CallsOf(WM_CLOSE), CallLog{});
  });
}

TEST_F(MessagesTest, ActivationAndFocus) {
  RunWithWindow(0, [this] {
    fOutput.Reset();
    EXPECT_EQ(CallsOf(WM_ACTIVATE, WA_INACTIVE), (CallLog{"OnActivationChanged 0"}));
    EXPECT_EQ(CallsOf(WM_ACTIVATE, WA_ACTIVE), (CallLog{"OnActivationChanged 1"}));
    EXPECT_EQ(CallsOf(WM_ACTIVATE, WA_CLICKACTIVE), (CallLog{"OnActivationChanged 1"}));
    EXPECT_EQ(Send(WM_ACTIVATE, WA_ACTIVE), 0);
    EXPECT_EQ(fOutput.CountLines("WM_ACTIVATE "), 4u);
    EXPECT_EQ(CallsOf(WM_ACTIVATE, MAKEWPARAM(WA_ACTIVE, 1)), CallLog{});
    EXPECT_EQ(fOutput.CountLines("WM_ACTIVATE minimized"), 1u);
    EXPECT_EQ(CallsOf(WM_ACTIVATE, 77), (CallLog{"OnActivationChanged 0"}));
    EXPECT_EQ(fOutput.TakeAssertions(), (std::vector<std::string>{"LOWORD(wParam) == WA_INACTIVE"}));
    EXPECT_EQ(CallsOf(WM_SETFOCUS), (CallLog{"OnKeyboardFocusChanged 1"}));
  });
}

TEST_F(MessagesTest, CursorOfTheWindowItself) {
  RunWithWindow(0, [this] {
    const auto cursorAfter = [this](WPARAM hwnd, int hit) {
      SetCursor(LoadCursorW(nullptr, IDC_CROSS));
      const LRESULT result = Send(WM_SETCURSOR, hwnd, MAKELPARAM(hit, WM_MOUSEMOVE));
      return std::pair(result, GetCursor());
    };
    const WPARAM self = reinterpret_cast<WPARAM>(Hwnd());
    EXPECT_EQ(cursorAfter(self, HTGROWBOX), std::pair(LRESULT{1}, LoadCursorW(nullptr, IDC_SIZENWSE)));
    // As long as nobody has chosen a shape, the class decides.
    EXPECT_EQ(cursorAfter(self, HTCLIENT).second, LoadCursorW(nullptr, IDC_ARROW));
    // The grip of somebody else is not ours to say.
    EXPECT_NE(cursorAfter(self + 4, HTGROWBOX).second, LoadCursorW(nullptr, IDC_SIZENWSE));
  });
}

TEST_F(MessagesTest, DepartureOfTheMouseIsAskedForOnce) {
  RunWithWindow(0, [this] {
    const auto isArmed = [this] {
      TRACKMOUSEEVENT query = {};
      query.cbSize = sizeof(query);
      query.dwFlags = TME_QUERY;
      return TrackMouseEvent(&query) && query.hwndTrack == Hwnd() && (query.dwFlags & TME_LEAVE);
    };
    POINT inside = {50, 50};
    ClientToScreen(Hwnd(), &inside);
    SetCursorPos(inside.x, inside.y);
    ASSERT_TRUE(YieldUntil([&] {
      Send(WM_MOUSEMOVE, 0, MAKELPARAM(50, 50));
      return isArmed();
    }));
    TRACKMOUSEEVENT cancel = {};
    cancel.cbSize = sizeof(cancel);
    cancel.dwFlags = TME_LEAVE | TME_CANCEL;
    cancel.hwndTrack = Hwnd();
    TrackMouseEvent(&cancel);
    ASSERT_FALSE(isArmed());
    Send(WM_MOUSEMOVE, 0, MAKELPARAM(51, 50));
    EXPECT_FALSE(isArmed()) << "the window believes that it is";
    Send(WM_MOUSELEAVE);
    Send(WM_MOUSEMOVE, 0, MAKELPARAM(50, 50));
    EXPECT_TRUE(isArmed());
  });
}

// --- Windows that end in the middle

TEST_F(MessagesTest, ANestedMessageMayEndTheWindowOfTheOuterOne) {
  RunWithWindow(0, [this] {
    const HWND hwnd = Hwnd();
    fRecord.fHooks["OnHelpRequested"] = [=] {
      SendMessageW(hwnd, WM_CLOSE, 0, 0);
      EXPECT_TRUE(IsWindow(hwnd)) << "the outer message still needs it";
      EXPECT_EQ(SendMessageW(hwnd, WM_ERASEBKGND, 0, 0), 0);
    };
    EXPECT_EQ(Send(WM_HELP), 1);
    EXPECT_FALSE(IsWindow(hwnd));
    EXPECT_EQ(fRecord.Count("OnRequestClose 0"), 1u);
    EXPECT_EQ(fRecord.Count("deleted"), 1u);
  });
}

// --- Failures

TEST_F(MessagesTest, OfSeveralFailuresTheOldestIsReportedOnce) {
  RunWithWindow(0, {[this] {
                      fHooks.fOnThemeChanged = TError{100001};
                      fHooks.fOnEnterMenuLoop = TError{100002};
                      fRecord.fHooks["OnHelpRequested"] = [this] {
                        Send(WM_THEMECHANGED);
                        Send(WM_ENTERMENULOOP);
                        return TError{100003};
                      };
                      EXPECT_EQ(Send(WM_HELP), 0) << "the platform's answer counts";
                      EXPECT_EQ(fLog.back(), "OnEnterMenuLoop") << "no report before the end";
                    },
                    [this] {
                      ExpectReported(100001);
                      fHooks.fOnThemeChanged = kOutOfMemoryError;
                      Send(WM_THEMECHANGED);
                    },
                    [this] { ExpectReported(kOutOfMemoryError); }});
}

// --- Sizes

TEST_F(MessagesTest, LimitsOfTheSize) {
  RunWithWindow(kWindowResizableBit, [this] {
    const TSize frame = FrameAround();
    const auto query = [this] {
      MINMAXINFO info = {};
      info.ptMinTrackSize = {1, 2};
      info.ptMaxTrackSize = {3, 4};
      EXPECT_EQ(Send(WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&info)), 0);
      return std::vector<LONG>{info.ptMinTrackSize.x, info.ptMinTrackSize.y, info.ptMaxTrackSize.x,
                               info.ptMaxTrackSize.y};
    };
    EXPECT_EQ(query(), (std::vector<LONG>{1, 2, 3, 4}));
    Change([](auto& state) {
      state.fMinimumClientSize = {200, 0};
      state.fMaximumClientSize = {0, 400};
    });
    EXPECT_EQ(query(), (std::vector<LONG>{200 + frame.fWidth, 2, 3, 400 + frame.fHeight}));
    Change([](auto& state) {
      state.fMinimumClientSize = {210, 150};
      state.fMaximumClientSize = {500, 400};
    });
    EXPECT_EQ(query(), (std::vector<LONG>{210 + frame.fWidth, 150 + frame.fHeight, 500 + frame.fWidth,
                                          400 + frame.fHeight}));
    SetFrameSize(50, 2000);
    EXPECT_EQ(NativeClientSize(Hwnd()), (TSize{210, 400}));
  });
}

TEST_F(MessagesTest, MaximizingGoesAsFarAsTheMaximum) {
  RunWithWindow(kWindowResizableBit | kWindowZoomableBit, [this] {
    TMonitorList monitors;
    ASSERT_EQ(fMorvane->IMorvane_GetMonitors(monitors), kOK);
    const TRect work = monitors.fMonitors[monitors.fMainMonitorIndex].fWorkArea;
    const TSize frame = FrameAround();
    const auto maximizeWith = [this](const TSize& maximum) {
      Change([&](auto& state) { state.fMaximumClientSize = maximum; });
      SetWindowPos(Hwnd(), nullptr, 100, 90, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
      Send(WM_SYSCOMMAND, SC_MAXIMIZE);
      RECT rect;
      GetWindowRect(Hwnd(), &rect);
      return TRect{rect.left, rect.top, rect.right, rect.bottom};
    };
    // Smaller than the monitor: from the corner on, and no further.
    const TRect small = maximizeWith({500, 400});
    EXPECT_FALSE(IsZoomed(Hwnd()));
    EXPECT_EQ(NativeClientSize(Hwnd()), (TSize{500, 400}));
    EXPECT_EQ(small.fLeft, 100);
    EXPECT_EQ(small.fTop, 90);
    // The system menu passes coordinates in the low bits.
    Change([&](auto& state) { state.fMaximumClientSize = {320, 400}; });
    Send(WM_SYSCOMMAND, SC_MAXIMIZE | 2);
    EXPECT_EQ(NativeClientSize(Hwnd()), (TSize{320, 400}));
    EXPECT_FALSE(IsZoomed(Hwnd()));
    // Limited in one direction only: the other one takes all that there is.
    const TRect high = maximizeWith({400, 0});
    EXPECT_FALSE(IsZoomed(Hwnd()));
    EXPECT_EQ(WidthOf(high), 400 + frame.fWidth);
    EXPECT_EQ(high.fTop, work.fTop);
    EXPECT_EQ(high.fBottom, work.fBottom);
    // No limit that matters: as usual.
    for (const TSize& maximum : {TSize{5000, 4000}, TSize{0, 0}}) {
      maximizeWith(maximum);
      EXPECT_TRUE(IsZoomed(Hwnd()));
      Send(WM_SYSCOMMAND, SC_RESTORE);
    }
  });
}

// --- Dropped files

namespace {

HGLOBAL MakeDrop(const std::vector<std::wstring>& names, std::size_t cutBytes = 0) {
  std::wstring list;
  for (const std::wstring& name : names) list += name + L'\0';
  list += L'\0';
  const std::size_t size = sizeof(DROPFILES) + list.size() * sizeof(wchar_t);
  const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, size - cutBytes);
  std::string bytes(size, '\0');
  DROPFILES header = {};
  header.pFiles = sizeof(header);
  header.fWide = TRUE;
  std::memcpy(bytes.data(), &header, sizeof(header));
  std::memcpy(bytes.data() + sizeof(header), list.data(), list.size() * sizeof(wchar_t));
  std::memcpy(GlobalLock(block), bytes.data(), size - cutBytes);
  GlobalUnlock(block);
  return block;
}

}  // namespace

TEST_F(MessagesTest, DroppedFilesAreOpened) {
  RunWithWindow(0, [this] {
    wchar_t folder[MAX_PATH];
    GetTempPathW(MAX_PATH, folder);
    GetLongPathNameW(folder, folder, MAX_PATH);
    const std::wstring base =
        std::wstring(folder) + L"morvane drop " + std::to_wstring(GetCurrentProcessId());
    CreateDirectoryW(base.c_str(), nullptr);
    const std::wstring plain = base + L"\\plain.txt";
    const std::wstring spaced = base + L"\\with two  blanks \u00E9.txt";
    for (const std::wstring& name : {plain, spaced})
      CloseHandle(CreateFileW(name.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    const auto url = [](const std::wstring& path) {
      char utf8[1000];
      WideCharToMultiByte(CP_UTF8, 0, path.c_str(), -1, utf8, sizeof(utf8), nullptr, nullptr);
      return std::string("OnOpenURL file://") + utf8;
    };
    const auto drop = [this](HGLOBAL block) {
      return CallsOf(WM_DROPFILES, reinterpret_cast<WPARAM>(block));
    };
    EXPECT_EQ(drop(MakeDrop({spaced, plain, base, L"C:\\none there.txt"})),
              (CallLog{url(spaced), url(plain), url(base + L"\\"), url(L"C:\\none"), url(L"there.txt")}));
    EXPECT_EQ(drop(MakeDrop({})), CallLog{});

    // A failure ends the list, and is reported.
    fHooks.fOnOpenURL = TError{100004};
    EXPECT_EQ(drop(MakeDrop({plain, spaced})), (CallLog{url(plain)}));
    ExpectReported(100004);
    for (const std::wstring& name : {plain, spaced}) EXPECT_TRUE(DeleteFileW(name.c_str()));
    EXPECT_TRUE(RemoveDirectoryW(base.c_str()));
  });
}

TEST_F(MessagesTest, DropsThatAreNoneAreIgnored) {
  RunWithWindow(0, [this] {
    EXPECT_EQ(CallsOf(WM_DROPFILES, 0), CallLog{});
    EXPECT_EQ(CallsOf(WM_DROPFILES, 0x1234), CallLog{});
    EXPECT_EQ(CallsOf(WM_DROPFILES, static_cast<WPARAM>(-1)), CallLog{});
    // Cut within the list, within the header, and with the list beyond the end.
    const std::size_t listBytes = (1 + 4 + 1) * sizeof(wchar_t);
    for (const std::size_t cut : {std::size_t{2}, std::size_t{6}, listBytes, listBytes + 4})
      EXPECT_EQ(CallsOf(WM_DROPFILES, reinterpret_cast<WPARAM>(MakeDrop({L"a.txt"}, cut))), CallLog{}) << cut;
    const HGLOBAL block = MakeDrop({L"a.txt"});
    static_cast<DROPFILES*>(GlobalLock(block))->pFiles = 0x7FFFFFFF;
    GlobalUnlock(block);
    EXPECT_EQ(CallsOf(WM_DROPFILES, reinterpret_cast<WPARAM>(block)), CallLog{});
  });
}

// --- Messages from anywhere

TEST_F(MessagesTest, NonsenseIsSurvived) {
  RunWithWindow(kWindowResizableBit | kWindowStyleBit23, [this] {
    fRecord.fHooks["OnRequestClose 0"] = [] { return kOK; };
    const LPARAM kBad = static_cast<LPARAM>(0xDEAD0000);
    const struct {
      UINT fMessage;
      WPARAM fWParam;
      LPARAM fLParam;
    } rows[] = {{WM_GETMINMAXINFO, 0, 0},
                {WM_GETMINMAXINFO, 0, 16},
                {WM_GETMINMAXINFO, 0, kBad},
                {WM_NOTIFY, 0, 0},
                {WM_NOTIFY, 5, 1},
                {WM_NOTIFY, 5, kBad},
                {WM_COMMAND, 0, kBad},
                {WM_COMMAND, 0xFFFF, 0},
                {WM_COMMAND, 0xA000, 0},
                {WM_COMMAND, 0xE000, 0},
                {WM_HSCROLL, SB_LINEDOWN, kBad},
                {WM_VSCROLL, SB_LINEDOWN, kBad},
                {WM_SETCURSOR, static_cast<WPARAM>(kBad), MAKELPARAM(HTCLIENT, WM_LBUTTONDOWN)},
                {WM_SETCURSOR, reinterpret_cast<WPARAM>(Hwnd()), MAKELPARAM(HTCLIENT, WM_LBUTTONDOWN)},
                {WM_SIZE, 99, -1},
                {WM_SYSCOMMAND, 0xFFF0, 0},
                {WM_INITMENU, static_cast<WPARAM>(kBad), 0},
                {WM_ACTIVATEAPP, 2, -1},
                {WM_ACTIVATEAPP, 1, static_cast<LPARAM>(GetCurrentThreadId())},
                {WM_TIMER, 0xFFFFFFFF, 0},
                {WM_DISPLAYCHANGE, 0, 0},
                {WM_CAPTURECHANGED, 0, kBad},
                {WM_IME_NOTIFY, 8, 0},
                {WM_MOUSEMOVE, 0xFFFF, MAKELPARAM(0x8000, 0x7FFF)},
                {WM_LBUTTONDOWN, 0, -1},
                {WM_LBUTTONUP, 0, -1},
                {WM_LBUTTONDBLCLK, 0, -1},
                {WM_RBUTTONDOWN, 0, -1},
                {WM_RBUTTONDBLCLK, 0, -1},
                {WM_MOUSEWHEEL, MAKEWPARAM(0, 0x8000), MAKELPARAM(0x8000, 0x8000)},
                {WM_MOUSELEAVE, 1, 1},
                {1225, 0, 0},
                {1225, static_cast<WPARAM>(kBad), -1},
                {WM_KEYDOWN, 255, 0},
                {WM_KEYDOWN, 0x12345678, -1},
                {WM_KEYUP, 0, 0},
                {WM_SYSKEYDOWN, VK_F24, 0},
                {WM_SYSKEYUP, VK_F24, 0},
                {WM_CHAR, 0xFFFFFFFF, -1},
                {WM_USER, 1, 1},
                {0xFFFF, 1, 1}};
    for (const auto& row : rows) {
      SCOPED_TRACE(row.fMessage);
      Send(row.fMessage, row.fWParam, row.fLParam);
      EXPECT_TRUE(IsWindow(Hwnd()));
      EXPECT_EQ(fOutput.DescribeAssertions(), "");
    }
  });
}

}  // namespace NSMorvaneTest
