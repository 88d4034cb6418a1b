// Platform helpers: failed system calls, window questions, lists of windows, monitors, small owners.
#include <gtest/gtest.h>

#include <algorithm>

#include "Component/Portable/MorvaneImplUtilsGeometry.h"
#include "Component/Win/UtilsWin.h"
#include "Component/Win/UtilsWinHandles.h"
#include "Tests/Support/NativeTestWindow.h"
#include "Tests/Support/PrintGeometry.h"
#include "Tests/Support/RecordingDebugOutput.h"
#include "Tests/Support/RecordingMorvane.h"

using namespace NSMorvane;
using NSMorvaneTest::NativeTestWindow;
using NSMorvaneTest::RecordingDebugOutput;
using NSMorvaneTest::RecordingMorvane;

namespace {

constexpr DWORD kShown = WS_OVERLAPPEDWINDOW | WS_VISIBLE;

// A window among those that the library has hidden.
class HiddenByLibrary {
 public:
  explicit HiddenByLibrary(HWND hWnd) { sHidddenWindows.push_back(hWnd); }
  ~HiddenByLibrary() { sHidddenWindows.pop_back(); }
};

// The given windows in the order in which the list has them.
std::vector<HWND> Among(const std::vector<HWND>& list, const std::vector<HWND>& wanted) {
  std::vector<HWND> result;
  for (HWND hWnd : list)
    if (std::count(wanted.begin(), wanted.end(), hWnd)) result.push_back(hWnd);
  return result;
}

void PutInFront(HWND hWnd) {
  SetWindowPos(hWnd, HWND_TOP, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE);
}

TPoint CenterOf(HWND hWnd) {
  RECT rect = {};
  GetWindowRect(hWnd, &rect);
  return TPoint{(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
}

}  // namespace

TEST(UtilsWin, FailedCallsBecomeLinesAndExceptions) {
  RecordingDebugOutput output;
  const struct {
    DWORD code;
    const char* line;
    TError error;
  } rows[] = {{6, "[Morvane] Windows error ERROR_INVALID_HANDLE at: a.cpp(7)", kOtherError},
              {8, "[Morvane] Windows error ERROR_NOT_ENOUGH_MEMORY at: a.cpp(7)", kOutOfMemoryError},
              {14, "[Morvane] Windows error ERROR_OUTOFMEMORY at: a.cpp(7)", kOutOfMemoryError},
              {5, "[Morvane] Windows error 5 at: a.cpp(7)", kOtherError},
              {0x80070005, "[Morvane] Windows error 2147942405 at: a.cpp(7)", kOtherError}};
  for (const auto& row : rows) {
    output.Reset();
    try {
      SetLastError(row.code);
      ThrowLastError("a.cpp", 7);
      ADD_FAILURE() << row.code;
    } catch (const std::exception& e) {
      EXPECT_EQ(row.error, ErrorFromException(&e)) << row.code;
    }
    ASSERT_EQ(2u, output.fLines.size());
    EXPECT_EQ(row.line, output.fLines[0]);
    EXPECT_NE(std::string::npos, output.fLines[1].find("Exception thrown at Component/Win/UtilsWin.cpp("));
  }
  output.Reset();
  SetLastError(0);
  ThrowLastError("a.cpp", 7);
  EXPECT_TRUE(output.fLines.empty());
}

TEST(UtilsWin, ShownMeansVisibleAndNotHiddenByTheLibrary) {
  RecordingDebugOutput output;
  NativeTestWindow window(kShown);
  EXPECT_TRUE(IsWindowShown(window));
  {
    const HiddenByLibrary hidden(window);
    EXPECT_FALSE(IsWindowShown(window));
  }
  ShowWindow(window, SW_HIDE);
  EXPECT_FALSE(IsWindowShown(window));
  EXPECT_TRUE(output.fAssertions.empty());
  const HWND gone = window;
  window.Destroy();
  EXPECT_FALSE(IsWindowShown(gone));
  SetWindowTopMost(gone, true);
  EXPECT_EQ((std::vector<std::string>{"::IsWindow(hWnd)", "0!=okFlag"}), output.fAssertions);
}

TEST(UtilsWin, BadPlacementsAreReported) {
  RecordingDebugOutput output;
  NativeTestWindow window(kShown);
  WINDOWPLACEMENT placement = GetPlacement(window);
  placement.length = 0;
  placement.rcNormalPosition = RECT{200, 150, 200, 150};
  try {
    SetPlacement(window, placement);
  } catch (const std::exception&) {
  }
  EXPECT_EQ((std::vector<std::string>{"wp.length == sizeof(WINDOWPLACEMENT)",
                                      "wp.rcNormalPosition.left < wp.rcNormalPosition.right",
                                      "wp.rcNormalPosition.top < wp.rcNormalPosition.bottom"}),
            output.fAssertions);
}

TEST(UtilsWin, FocusFailsOnlyWhenItIsNotThereAfterwards) {
  RecordingDebugOutput output;
  NativeTestWindow window(kShown);
  const std::string asked =
      "[Morvane] WinSetFocus " + std::to_string(reinterpret_cast<std::uintptr_t>(HWND(window)));
  SetFocus(nullptr);
  WinSetFocus(window);  // no window had it, so the call gives null
  EXPECT_EQ(HWND(window), GetFocus());
  WinSetFocus(window);  // it is there already
  EXPECT_TRUE(output.fAssertions.empty());

  output.Reset();
  const HWND gone = window;
  window.Destroy();
  WinSetFocus(gone);
  EXPECT_EQ((std::vector<std::string>{asked, "[Morvane] WinSetFocus failed 1400"}), output.fLines);
  EXPECT_EQ(std::vector<std::string>{"::IsWindow(hWnd)"}, output.fAssertions);
}

TEST(UtilsWin, TopLevelWindowsComeFrontFirst) {
  RecordingDebugOutput output;
  NativeTestWindow a(kShown), b(WS_OVERLAPPEDWINDOW), c(kShown), d(kShown);
  NativeTestWindow child(WS_CHILD | WS_VISIBLE, a);
  NativeTestWindow messageOnly(0, HWND_MESSAGE);
  for (HWND hWnd : {HWND(a), HWND(d), HWND(b), HWND(c)}) PutInFront(hWnd);
  const std::vector<HWND> all = {a, b, c, d, child, messageOnly};
  EXPECT_EQ((std::vector<HWND>{c, b, d, a}), Among(GetTopLevelWindowsZ(), all));
  EXPECT_EQ((std::vector<HWND>{c, d, a}), Among(GetShownWindowsZ(), all));
  const HiddenByLibrary hidden(d);
  EXPECT_EQ((std::vector<HWND>{c, a}), Among(GetShownWindowsZ(), all));
  EXPECT_TRUE(output.fAssertions.empty());
}

TEST(UtilsWin, PopupsAreCentredOnTheFrontmostSuitableWindow) {
  RecordingDebugOutput output;
  NativeTestWindow good(kShown, nullptr, L"caption \x00e4"), popup(kShown);
  NativeTestWindow untitled(kShown, nullptr, L""), topmost(kShown, nullptr, L"top", WS_EX_TOPMOST);
  NativeTestWindow minimized(kShown), empty(WS_POPUP | WS_VISIBLE), invisible(WS_OVERLAPPEDWINDOW);
  NativeTestWindow moved(kShown);
  const HiddenByLibrary hidden(moved);
  SetWindowPos(good, HWND_BOTTOM, -151, 90, 301, 205, SWP_NOACTIVATE);
  SetWindowPos(empty, HWND_TOP, 10, 10, 0, 0, SWP_NOACTIVATE);
  ShowWindow(minimized, SW_SHOWMINNOACTIVE);

  EXPECT_EQ((TPoint{-1, 192}), GetPopupCenter(popup, nullptr));
  EXPECT_EQ((std::vector<std::string>{"[Morvane] GetPopupCenter, found parent window",
                                      "[Morvane] Parent window name:caption \xC3\xA4",
                                      "[Morvane] Parent window rect: -151, 90, 150, 295"}),
            output.fLines);

  // A parent that is told is taken whatever it is.
  EXPECT_EQ(CenterOf(untitled), GetPopupCenter(popup, untitled));
  EXPECT_TRUE(output.HasLine("Parent window name:"));
  EXPECT_TRUE(output.fAssertions.empty());

  good.Destroy();
  output.Reset();
  EXPECT_EQ(CenterOf(GetDesktopWindow()), GetPopupCenter(popup, nullptr));
  EXPECT_EQ(std::vector<std::string>{"[Morvane] GetPopupCenter, using desktop window"}, output.fLines);
}

TEST(UtilsWin, MonitorsAreListed) {
  RecordingDebugOutput output;
  TMonitorList monitors = {};
  // More than fit: the first thirty-two.
  const HMONITOR monitor = MonitorFromPoint(POINT{0, 0}, MONITOR_DEFAULTTOPRIMARY);
  struct {
    TMonitorList fList;
    std::uint32_t fBehind = 0x5A5A5A5A;
  } guarded;
  ASSERT_TRUE(DescribeMonitors(std::vector<HMONITOR>(33, monitor), guarded.fList));
  EXPECT_EQ(32u, guarded.fList.fMonitorCount);
  EXPECT_EQ(0x5A5A5A5Au, guarded.fBehind);
  EXPECT_TRUE(output.fAssertions.empty());

  EXPECT_TRUE(DescribeMonitors({}, monitors));
  EXPECT_EQ((std::vector<std::string>{"monitorVector.size()>0", "0!=outMonitors.fMonitorCount"}),
            output.fAssertions);
}

TEST(UtilsWin, WorkspaceBeginsAtTheWorkAreaOfTheMainMonitor) {
  RecordingDebugOutput output;
  RecordingMorvane morvane;
  TMonitorList& monitors = morvane.fMonitors;
  monitors.fMonitorCount = 2;
  monitors.fMainMonitorIndex = 1;
  monitors.fMonitors[0] = TMonitor{{-800, 0, 0, 600}, {-800, 7, 0, 600}, 32};
  monitors.fMonitors[1] = TMonitor{{0, 0, 1280, 960}, {60, 24, 1280, 960}, 32};
  const TRect screen{100, 100, 300, 200}, workspace{40, 76, 240, 176};
  EXPECT_EQ(workspace, ScreenRectToWorkspace(screen, morvane));
  EXPECT_EQ(screen, WorkspaceRectToScreen(workspace, morvane));
  EXPECT_TRUE(output.fAssertions.empty());

  // What lies behind the records is not read.
  for (const std::uint32_t index : {2u, 40u, 0xEEEEEEEEu}) {
    output.Reset();
    monitors.fMainMonitorIndex = index;
    EXPECT_EQ(screen, ScreenRectToWorkspace(screen, morvane));
    EXPECT_TRUE(output.HasAssertion("mainMonitorIndex < monitors.fMonitorCount"));
  }
}

// --- Owners

TEST(UtilsWinHandles, ClipIsPutBack) {
  const CCreatedDC hdc(CreateCompatibleDC(nullptr));
  const CGdiObject<HRGN> before(CreateRectRgn(3, 4, 20, 30)), inside(CreateRectRgn(0, 0, 5, 5)),
      after(CreateRectRgn(0, 0, 0, 0));
  for (const bool withClip : {true, false}) {
    SelectClipRgn(hdc.Get(), withClip ? before.Get() : nullptr);
    {
      const CClipRegionSaver saver(hdc.Get());
      SelectClipRgn(hdc.Get(), inside.Get());
    }
    EXPECT_EQ(withClip ? 1 : 0, GetClipRgn(hdc.Get(), after.Get()));
    EXPECT_TRUE(!withClip || EqualRgn(before.Get(), after.Get()));
  }
  EXPECT_THROW(CClipRegionSaver saver(nullptr), std::exception);
}

TEST(UtilsWinHandles, DeferredMovesHappenTogetherAndNoticeFailureLate) {
  RecordingDebugOutput output;
  NativeTestWindow a(kShown), b(kShown);
  const auto left = [](HWND hWnd) {
    RECT rect = {};
    GetWindowRect(hWnd, &rect);
    return rect.left;
  };
  {
    CDeferredWindowMover mover(2);
    mover.Move(a, nullptr, 210, 80, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    mover.Move(b, nullptr, 220, 80, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    EXPECT_EQ(100, left(a));
  }
  EXPECT_EQ(210, left(a));
  EXPECT_EQ(220, left(b));
  EXPECT_TRUE(output.fAssertions.empty());

  const HWND gone = b;
  b.Destroy();
  {
    CDeferredWindowMover mover(2);
    EXPECT_NO_THROW(mover.Move(gone, nullptr, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE));
    EXPECT_THROW(mover.Move(a, nullptr, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE),
                 std::bad_alloc);
  }
  EXPECT_EQ((std::vector<std::string>{"0!=fHwdp", "FALSE!=okFlag"}), output.fAssertions);
}
