// Error codes, exceptions, and the exact text of debug output.
#include <gtest/gtest.h>

#include "Tests/Support/RecordingDebugOutput.h"

using namespace NSMorvane;
using NSMorvaneTest::RecordingDebugOutput;

namespace {

template <class Function>
TError CodeThrownBy(Function function) {
  try {
    function();
  } catch (const std::exception& e) {
    return ErrorFromException(&e);
  }
  return kOK;
}

}  // namespace

TEST(Frame, CodesAndExceptionsConvertBothWays) {
  for (TError code :
       {12000u, 12001u, 12002u, 12003u, 12004u, 12005u, 12006u, 12007u, 12008u, 12009u, 100000u, 4000000000u})
    EXPECT_EQ(code, CodeThrownBy([&] { ThrowError(code); }));
  // One way only: these become plain logic errors.
  for (TError code : {12010u, 5u, 0u, 11999u, 12011u, 99999u})
    EXPECT_EQ(12007u, CodeThrownBy([&] { ThrowError(code); })) << code;
  for (TError code : {12000u, 12009u, 100000u, 0xFFFFFFFFu}) EXPECT_TRUE(IsValidError(code)) << code;
  for (TError code : {12010u, 11999u, 99999u, 0u}) EXPECT_FALSE(IsValidError(code)) << code;
  EXPECT_EQ(12010u, CodeThrownBy([] { throw XUnsupportedOSVersion(); }));
  EXPECT_EQ(12007u, CodeThrownBy([] { throw std::out_of_range("x"); }));
}

TEST(Frame, CheckErrorSaysWhatCameFromWhere) {
  RecordingDebugOutput output;
  EXPECT_EQ(kOK, CodeThrownBy([] { CheckError("a.cpp", 7, 12000); }));
  EXPECT_TRUE(output.fLines.empty());
  const struct {
    TError code;
    const char* line;
  } rows[] = {{12001, "[Morvane] kOutOfMemoryError at a.cpp(7): 12001"},
              {12002, "[Morvane] kBadInputProgrammingError at a.cpp(7): 12002"},
              {12004, "[Morvane] kProgrammingError at a.cpp(7): 12004"},
              {12005, "[Morvane] kBadFormatError at a.cpp(7): 12005"},
              {12006, "[Morvane] kUnsupportedFormatError at a.cpp(7): 12006"},
              {12007, "[Morvane] kOtherError at a.cpp(7): 12007"},
              {12003, "[Morvane] kIllegalCallSequenceProgrammingError at a.cpp(7): 12003"},
              {12008, "[Morvane] kInvariantCorruptProgrammingError at a.cpp(7): 12008"},
              {12009, "[Morvane] kUnsupported at a.cpp(7): 12009"},
              {100123, "[Morvane] Application-specific error at a.cpp(7): 100123"}};
  for (const auto& row : rows) {
    output.Reset();
    EXPECT_EQ(row.code, CodeThrownBy([&] { CheckError("a.cpp", 7, row.code); }));
    EXPECT_EQ(std::vector<std::string>{row.line}, output.fLines);
    EXPECT_TRUE(output.fAssertions.empty());
  }
  output.Reset();
  EXPECT_EQ(kOtherError, CodeThrownBy([] { CheckError("a.cpp", 7, 55); }));
  EXPECT_EQ(std::vector<std::string>{"[Morvane] Bad error code at a.cpp(7): 55"}, output.fLines);
  EXPECT_EQ(std::vector<std::string>{"false"}, output.fAssertions);
}

TEST(Frame, LinesAreCut) {
  RecordingDebugOutput output;
  for (std::size_t length : {0, 1990, 1991, 1992, 5000}) {
    output.Reset();
    DebugPrint(std::string(length, 'x'));
    ASSERT_EQ(1u, output.fLines.size());
    EXPECT_EQ("[Morvane] " + std::string(std::min<std::size_t>(length, 1991), 'x'), output.fLines[0]);
  }
}

TEST(Frame, ThrownLineCarriesThePrefixTwice) {
  RecordingDebugOutput output;
  DebugThrown("a.cpp", 12);
  EXPECT_EQ(std::vector<std::string>{"[Morvane] [Morvane] Exception thrown at a.cpp(12)"}, output.fLines);
  output.Reset();
  DebugThrown(std::string(3000, 'p').c_str(), 12);
  EXPECT_EQ(std::string("[Morvane] ").size() + 1023, output.fLines.at(0).size());
}

TEST(Frame, AssertionMacroEvaluatesOnceAndKeepsTheText) {
  RecordingDebugOutput output;
  int calls = 0;
  if (calls == 0)
    MORVANE_ASSERT(++calls == 1);
  else
    FAIL();
  EXPECT_EQ(1, calls);
  MORVANE_ASSERT(NULL==&calls || calls > 5);
  EXPECT_EQ(std::vector<std::string>{"NULL==&calls || calls > 5"}, output.fAssertions);
  EXPECT_EQ(0u, output.fAssertFiles.at(0).find("Tests/Unit/FrameTest.cpp("));
}

TEST(Frame, NothingHappensWithoutAnOutputObject) {
  ASSERT_EQ(nullptr, gDebugOutput);
  DebugAssert("a.cpp", 1, "x");
  DebugPrint("x");
  DebugThrown("a.cpp", 1);
  DebugIndentScope scope;
}
