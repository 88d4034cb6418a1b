// Platform helpers: failed system calls, window questions, lists of windows, monitors, small owners.
#include "Component/Win/UtilsWin.h"

#include "Component/Portable/MorvaneImplUtilsGeometry.h"
#include "Component/Portable/Region.h"
#include "Component/Win/UtilsWinHandles.h"
#include "Tests/Support/NativeTestWindow.h"
#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;

namespace {

constexpr DWORD kShown = WS_OVERLAPPEDWINDOW | WS_VISIBLE;

// A window among those that the library has hidden.
class HiddenByLibrary {
 public:
  explicit HiddenByLibrary(HWND hWnd) { sHidddenWindows.push_back(hWnd); }
  ~HiddenByLibrary() { sHidddenWindows.pop_back(); }
};

TRect FrameOf(HWND hWnd) {
  RECT rect = {};
  GetWindowRect(hWnd, &rect);
  return FromNative(rect);
}

}  // namespace

using UtilsWin = ReportingTest;

TEST_F(UtilsWin, FailedCallsBecomeLinesAndExceptions) {
  for (const auto& [code, name, error] :
       Rows<DWORD, std::string, TError>{{6, "ERROR_INVALID_HANDLE", kOtherError},
                                        {8, "ERROR_NOT_ENOUGH_MEMORY", kOutOfMemoryError},
                                        {14, "ERROR_OUTOFMEMORY", kOutOfMemoryError},
                                        {5, "5", kOtherError},
                                        {0x80070005, "2147942405", kOtherError},
                                        {0, "", kOK}}) {
    SetLastError(code);
    EXPECT_EQ(error, ErrorOf([] { ThrowLastError("a.cpp", 7); })) << code;
    const std::string line =
        "Windows error " + name + " at: a.cpp(7); [Morvane] Exception thrown at Component/Win/";
    EXPECT_TRUE(code == 0 ? fOutput.fLines.empty() : TakeLines().starts_with(line));
  }
}

TEST_F(UtilsWin, ShownMeansVisibleAndNotHiddenByTheLibrary) {
  NativeTestWindow window(kShown);
  EXPECT_TRUE(IsWindowShown(window));
  {
    const HiddenByLibrary hidden(window);
    EXPECT_FALSE(IsWindowShown(window));
  }
  ShowWindow(window, SW_HIDE);
  EXPECT_FALSE(IsWindowShown(window));
  WINDOWPLACEMENT placement = GetPlacement(window);
  placement.length = 0;
  placement.rcNormalPosition = RECT{200, 150, 200, 150};
  EXPECT_EQ("", TakeReports());
  ErrorOf([&] { SetPlacement(window, placement); });
  EXPECT_EQ(
      "wp.length == sizeof(WINDOWPLACEMENT); wp.rcNormalPosition.left < wp.rcNormalPosition.right; "
      "wp.rcNormalPosition.top < wp.rcNormalPosition.bottom",
      TakeReports());
  const HWND gone = window;
  window.Destroy();
  EXPECT_FALSE(IsWindowShown(gone));
  SetWindowTopMost(gone, true);
  EXPECT_EQ("::IsWindow(hWnd); 0!=okFlag", TakeReports());
}

TEST_F(UtilsWin, FocusFailsOnlyWhenItIsNotThereAfterwards) {
  NativeTestWindow window(kShown);
  SetFocus(nullptr);
  WinSetFocus(window);  // no window had it, so the call gives null
  EXPECT_EQ(HWND(window), GetFocus());
  WinSetFocus(window);  // it is there already
  EXPECT_EQ("", TakeReports());
  TakeLines();
  const HWND gone = window;
  window.Destroy();
  WinSetFocus(gone);
  const std::string number = std::to_string(reinterpret_cast<std::uintptr_t>(gone));
  EXPECT_EQ("WinSetFocus " + number + "; WinSetFocus failed 1400", TakeLines());
  EXPECT_EQ("::IsWindow(hWnd)", TakeReports());
}

TEST_F(UtilsWin, TopLevelWindowsComeFrontFirst) {
  NativeTestWindow a(kShown), b(WS_OVERLAPPEDWINDOW), c(kShown), d(kShown);
  NativeTestWindow child(WS_CHILD | WS_VISIBLE, a), messageOnly(0, HWND_MESSAGE);
  for (HWND hWnd : {HWND(a), HWND(d), HWND(b), HWND(c)})
    SetWindowPos(hWnd, HWND_TOP, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE);
  const auto names = [&](const std::vector<HWND>& list) {
    std::string text;
    for (HWND hWnd : list)
      for (const auto& [window, name] :
           Rows<HWND, char>{{a, 'a'}, {b, 'b'}, {c, 'c'}, {d, 'd'}, {child, '1'}, {messageOnly, '2'}})
        if (hWnd == window) text += name;
    return text;
  };
  EXPECT_EQ("cbda", names(GetTopLevelWindowsZ()));
  EXPECT_EQ("cda", names(GetShownWindowsZ()));
  const HiddenByLibrary hidden(d);
  EXPECT_EQ("ca", names(GetShownWindowsZ()));
}

TEST_F(UtilsWin, PopupsAreCentredOnTheFrontmostSuitableWindow) {
  NativeTestWindow good(kShown, nullptr, L"caption \x00e4"), popup(kShown);
  NativeTestWindow untitled(kShown, nullptr, L""), topmost(kShown, nullptr, L"top", WS_EX_TOPMOST);
  NativeTestWindow minimized(kShown), empty(WS_POPUP | WS_VISIBLE), invisible(WS_OVERLAPPEDWINDOW);
  NativeTestWindow moved(kShown);
  const HiddenByLibrary hidden(moved);
  SetWindowPos(good, HWND_BOTTOM, -151, 90, 301, 205, SWP_NOACTIVATE);
  SetWindowPos(empty, HWND_TOP, 10, 10, 0, 0, SWP_NOACTIVATE);
  ShowWindow(minimized, SW_SHOWMINNOACTIVE);
  EXPECT_EQ((TPoint{-1, 192}), GetPopupCenter(popup, nullptr));
  EXPECT_EQ(
      "GetPopupCenter, found parent window; Parent window name:caption \xC3\xA4; "
      "Parent window rect: -151, 90, 150, 295",
      TakeLines());
  const auto centerOf = [](HWND hWnd) {
    const TRect frame = FrameOf(hWnd);
    return TPoint{(frame.fLeft + frame.fRight) / 2, (frame.fTop + frame.fBottom) / 2};
  };
  // A parent that is told is taken whatever it is.
  EXPECT_EQ(centerOf(untitled), GetPopupCenter(popup, untitled));
  good.Destroy();
  TakeLines();
  EXPECT_EQ(centerOf(GetDesktopWindow()), GetPopupCenter(popup, nullptr));
  EXPECT_EQ("GetPopupCenter, using desktop window", TakeLines());
}

TEST_F(UtilsWin, PaintMessagesAreHandledAndOthersWait) {
  static int paints;
  paints = 0;
  const WNDPROC countPaints = [](HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_PAINT) ++paints;
    return DefWindowProcW(hWnd, message, wParam, lParam);
  };
  NativeTestWindow window(WS_POPUP | WS_VISIBLE, nullptr, L"", 0, countPaints);
  UpdateWindow(window);
  paints = 0;
  InvalidateRect(window, nullptr, FALSE);
  PostMessageW(window, WM_APP, 0, 0);
  PumpPaintMessages();
  EXPECT_EQ(1, paints);
  EXPECT_FALSE(GetUpdateRect(window, nullptr, FALSE));
  MSG message;
  EXPECT_TRUE(PeekMessageW(&message, window, WM_APP, WM_APP, PM_REMOVE));
}

TEST_F(UtilsWin, MonitorsAreListed) {
  // More than fit: the first thirty-two.
  const HMONITOR monitor = MonitorFromPoint(POINT{0, 0}, MONITOR_DEFAULTTOPRIMARY);
  struct {
    TMonitorList fList;
    std::uint32_t fBehind = 0x5A5A5A5A;
  } guarded;
  ASSERT_TRUE(DescribeMonitors(std::vector<HMONITOR>(33, monitor), guarded.fList));
  EXPECT_EQ(32u, guarded.fList.fMonitorCount);
  EXPECT_EQ(0x5A5A5A5Au, guarded.fBehind);
  EXPECT_EQ("", TakeReports());
  EXPECT_TRUE(DescribeMonitors({}, guarded.fList));
  EXPECT_EQ("monitorVector.size()>0; 0!=outMonitors.fMonitorCount", TakeReports());
}

// --- Owners

TEST_F(UtilsWin, ClipIsPutBack) {
  const CCreatedDC hdc(CreateCompatibleDC(nullptr));
  const CRegion before(TRect{3, 4, 20, 30}), inside(TRect{0, 0, 5, 5}), after;
  for (const bool withClip : {true, false}) {
    SelectClipRgn(hdc.Get(), withClip ? before.GetNativeRegion() : nullptr);
    {
      const CClipRegionSaver saver(hdc.Get());
      SelectClipRgn(hdc.Get(), inside.GetNativeRegion());
    }
    EXPECT_EQ(withClip ? 1 : 0, GetClipRgn(hdc.Get(), after.GetNativeRegion()));
    EXPECT_TRUE(!withClip || EqualRgn(before.GetNativeRegion(), after.GetNativeRegion()));
  }
  EXPECT_THROW(CClipRegionSaver saver(nullptr), std::exception);
}

TEST_F(UtilsWin, DeferredMovesHappenTogetherAndNoticeFailureLate) {
  NativeTestWindow a(kShown), b(kShown);
  constexpr UINT kMoveOnly = SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE;
  {
    CDeferredWindowMover mover(2);
    mover.Move(a, nullptr, 210, 80, 0, 0, kMoveOnly);
    mover.Move(b, nullptr, 220, 80, 0, 0, kMoveOnly);
    EXPECT_EQ(100, FrameOf(a).fLeft);
  }
  EXPECT_EQ(210, FrameOf(a).fLeft);
  EXPECT_EQ(220, FrameOf(b).fLeft);
  EXPECT_EQ("", TakeReports());
  const HWND gone = b;
  b.Destroy();
  {
    CDeferredWindowMover mover(2);
    EXPECT_NO_THROW(mover.Move(gone, nullptr, 0, 0, 0, 0, kMoveOnly));
    EXPECT_THROW(mover.Move(a, nullptr, 0, 0, 0, 0, kMoveOnly), std::bad_alloc);
  }
  EXPECT_EQ("0!=fHwdp; FALSE!=okFlag", TakeReports());
}
