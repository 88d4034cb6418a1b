#include "Component/Win/WinWindowClass.h"

#include <gtest/gtest.h>

#include <memory>

#include "Component/Win/UtilsWin.h"
#include "Tests/Support/RecordingDebugOutput.h"

namespace NSMorvane {

namespace {

using NSMorvaneTest::RecordingDebugOutput;

const TString kName = u"Window Class Test";

bool IsRegistered(const TString& name) {
  WNDCLASSEXW info = {};
  info.cbSize = sizeof(info);
  return GetClassInfoExW(GetModuleHandleW(nullptr), WinText(name), &info) != 0;
}

TEST(WinWindowClass, IsRegisteredAsLongAsSomebodyUsesIt) {
  RecordingDebugOutput output;
  const std::size_t others = gWindowClasses.size();
  auto first = std::make_unique<CWindowClassRef>(kName, DefWindowProcW, nullptr);
  auto second = std::make_unique<CWindowClassRef>(kName, DefWindowProcW, nullptr);
  EXPECT_EQ(gWindowClasses.size(), others + 1);
  first.reset();
  EXPECT_TRUE(IsRegistered(kName));
  second.reset();
  EXPECT_FALSE(IsRegistered(kName));
  EXPECT_EQ(gWindowClasses.size(), others);

  // And once more from the start.
  const CWindowClassRef third(kName, DefWindowProcW, nullptr);
  EXPECT_TRUE(IsRegistered(kName));
  EXPECT_TRUE(output.fAssertions.empty());
}

// A window that is still there keeps the system from taking the class back; that is reported.
TEST(WinWindowClass, ReportsAClassStillInUse) {
  RecordingDebugOutput output;
  HWND window = nullptr;
  {
    const CWindowClassRef windowClass(kName, DefWindowProcW, nullptr);
    window = CreateWindowExW(0, WinText(kName), L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr,
                             GetModuleHandleW(nullptr), nullptr);
    ASSERT_NE(window, nullptr);
  }
  EXPECT_EQ(output.fAssertions, std::vector<std::string>{"ucResult"});
  DestroyWindow(window);
  EXPECT_TRUE(UnregisterClassW(WinText(kName), GetModuleHandleW(nullptr)));
}

}  // namespace

}  // namespace NSMorvane
