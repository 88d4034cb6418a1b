// Platform helpers: failed system calls, window questions, lists of windows, monitors, small owners.
#include <gtest/gtest.h>

#include "Component/Win/UtilsWin.h"
#include "Tests/Support/RecordingDebugOutput.h"

using namespace NSMorvane;
using NSMorvaneTest::RecordingDebugOutput;

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

TEST(UtilsWin, TextCrossesTheBorderUnchanged) {
  const wchar_t text[] = {L'a', 0xD834, 0xDD1E, 0x2029, 0};
  EXPECT_EQ(u"a\xD834\xDD1E\u2029", TextFromWin(text));
  EXPECT_EQ(u"a", TextFromWin(text, 1));
  EXPECT_TRUE(TextFromWin(nullptr).empty());
  EXPECT_EQ(std::wstring(text), WinText(TextFromWin(text)));
}
