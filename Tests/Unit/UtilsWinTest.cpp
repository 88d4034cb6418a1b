// Platform helpers: failed system calls, texts compared, lists of windows, monitors, moves of several
// windows.
#include "Component/Win/Platform/UtilsWin.h"

#include "Component/Portable/Base/Geometry.h"
#include "Component/Portable/Contract/MorvaneGlueValidators.h"
#include "Component/Win/Platform/UtilsWinHandles.h"
#include "Component/Win/Window/WindowRegistry.h"
#include "Tests/Support/Contract.h"
#include "Tests/Support/NativeTestWindow.h"
#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;

namespace {

constexpr DWORD kShown = WS_OVERLAPPEDWINDOW | WS_VISIBLE;

// The messages that ask for a title. Windows of threads that are busy answer none.
int gTitleQuestions = 0;
LRESULT CALLBACK CountTitleQuestions(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_GETTEXT || message == WM_GETTEXTLENGTH) ++gTitleQuestions;
  return DefWindowProcW(hWnd, message, wParam, lParam);
}

TRect FrameOf(HWND hWnd) {
  RECT rect = {};
  GetWindowRect(hWnd, &rect);
  return FromNative(rect);
}

}  // namespace

TNativeWindow NSMorvaneTest::AnyNativeWindow() { return {GetDesktopWindow()}; }

using UtilsWin = ReportingTest;

TEST_F(UtilsWin, ValidNativeWindows) {
  EXPECT_TRUE(IsValidNativeWindow(AnyNativeWindow()));
  EXPECT_EQ("", TakeReports());
  EXPECT_FALSE(IsValidNativeWindow({nullptr}));
  EXPECT_FALSE(IsValidNativeWindow({reinterpret_cast<HWND__*>(std::uintptr_t{0x7FFFFFFE})}));
  EXPECT_EQ("false; false", TakeReports());
}

TEST_F(UtilsWin, FailedCallsBecomeLinesAndExceptions) {
  for (const auto& [code, name, error] :
       Rows<DWORD, std::string, TError>{{6, "ERROR_INVALID_HANDLE", kOtherError},
                                        {8, "ERROR_NOT_ENOUGH_MEMORY", kOutOfMemoryError},
                                        {14, "ERROR_OUTOFMEMORY", kOutOfMemoryError},
                                        {5, "5", kOtherError},
                                        {0x80070005, "2147942405", kOtherError}}) {
    SetLastError(code);
    EXPECT_EQ(error, ErrorOf([] { CheckLastError("a.cpp", 7); })) << code;
    EXPECT_TRUE(TakeLines().starts_with("Windows error " + name +
                                        " at: a.cpp(7); [Morvane] Exception thrown at Component/Win/"));
  }
  SetLastError(0);
  CheckLastError("a.cpp", 7);
  EXPECT_EQ("", TakeLines());
  EXPECT_EQ(kOtherError, ErrorOf([] { MORVANE_THROW_LAST_ERROR(); }));
}

TEST_F(UtilsWin, TextsAreComparedByTheRulesOfTheLocale) {
  using namespace NSTextPackage;
  const Rows<TString, TString, TTextOrder, TTextOrder> rows = {
      {u"", u"a", kTextLess, kTextLess},
      {u".AIF", u".aif", kTextGreater, kTextEqual},
      {u".aif", u".aiff", kTextLess, kTextLess},
      {u"\u00C4", u"\u00E4", kTextGreater, kTextEqual},
      {u"\uFF21", u"A", kTextEqual, kTextEqual}  // full width
  };
  for (const auto& [a, b, plain, ignoringCase] : rows) {
    EXPECT_EQ(plain, CompareText(a, b)) << StringToUTF8(a, false);
    EXPECT_EQ(ignoringCase, CompareTextIgnoringCase(a, b)) << StringToUTF8(a, false);
  }
}

TEST_F(UtilsWin, PopupsAreCentredOnTheFrontmostSuitableWindow) {
  NativeTestWindow good(kShown, nullptr, L"caption \x00e4", 0, CountTitleQuestions), popup(kShown);
  NativeTestWindow untitled(kShown, nullptr, L""), topmost(kShown, nullptr, L"top", WS_EX_TOPMOST);
  NativeTestWindow minimized(kShown), empty(WS_POPUP | WS_VISIBLE), invisible(WS_OVERLAPPEDWINDOW);
  NativeTestWindow moved(kShown);
  CWindowRegistry registry;
  registry.AddHidden(moved);
  SetWindowPos(good, HWND_BOTTOM, -151, 90, 301, 205, SWP_NOACTIVATE);
  SetWindowPos(empty, HWND_TOP, 10, 10, 0, 0, SWP_NOACTIVATE);
  ShowWindow(minimized, SW_SHOWMINNOACTIVE);
  gTitleQuestions = 0;
  EXPECT_EQ((TPoint{-1, 192}), GetPopupCenter(popup, nullptr, registry.GetShownHwndsZ()));
  EXPECT_EQ(gTitleQuestions, 0);
  const auto centerOf = [](HWND hWnd) {
    const TRect frame = FrameOf(hWnd);
    return TPoint{(frame.fLeft + frame.fRight) / 2, (frame.fTop + frame.fBottom) / 2};
  };
  good.Destroy();
  EXPECT_EQ(centerOf(GetDesktopWindow()), GetPopupCenter(popup, nullptr, registry.GetShownHwndsZ()));
}

TEST_F(UtilsWin, PaintMessagesAreHandledAndOthersWait) {
  NativeTestWindow window(WS_POPUP | WS_VISIBLE);
  NativeTestWindow inner(WS_CHILD | WS_VISIBLE, window);
  for (const HWND hWnd : {HWND(window), HWND(inner)}) InvalidateRect(hWnd, nullptr, FALSE);
  PostMessageW(window, WM_APP, 0, 0);
  PumpPaintMessages();
  for (const HWND hWnd : {HWND(window), HWND(inner)}) EXPECT_FALSE(GetUpdateRect(hWnd, nullptr, FALSE));
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
}

TEST_F(UtilsWin, DeferredMovesHappenTogetherAndNoticeFailureLate) {
  NativeTestWindow a(kShown), b(kShown), c(kShown);
  constexpr UINT kMoveOnly = SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE;
  {
    CDeferredWindowMover mover(2);
    mover.Move(a, nullptr, 210, 80, 0, 0, kMoveOnly);
    EXPECT_EQ(100, FrameOf(a).fLeft);
  }
  EXPECT_EQ(210, FrameOf(a).fLeft);
  // Windows that end before they are named, and after, keep the others from nothing.
  const HWND gone = b;
  b.Destroy();
  {
    CDeferredWindowMover mover(3);
    mover.Move(c, nullptr, 0, 0, 0, 0, kMoveOnly);
    mover.Move(gone, nullptr, 0, 0, 0, 0, kMoveOnly);
    EXPECT_NO_THROW(mover.Move(a, nullptr, 220, 80, 0, 0, kMoveOnly));
    c.Destroy();
  }
  EXPECT_EQ(220, FrameOf(a).fLeft);
  EXPECT_EQ("", TakeReports());
  {
    CDeferredWindowMover mover(2);
    EXPECT_NO_THROW(mover.Move(GetDesktopWindow(), nullptr, 0, 0, 0, 0, kMoveOnly));
    EXPECT_THROW(mover.Move(a, nullptr, 0, 0, 0, 0, kMoveOnly), std::bad_alloc);
  }
  EXPECT_EQ("0!=fHwdp; FALSE!=okFlag", TakeReports());
}
