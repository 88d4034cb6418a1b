// Error codes, exceptions, and the exact text of debug output.
#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;

using Frame = ReportingTest;

TEST_F(Frame, CodesAndExceptionsConvertBothWays) {
  for (TError code : {12000u, 12001u, 12005u, 12006u, 12008u, 12009u, 100000u, 4000000000u}) {
    EXPECT_EQ(code, ErrorOf([&] { ThrowError(code); }));
    EXPECT_TRUE(IsValidError(code));
  }
  // One way only: these become plain logic errors.
  for (TError code : {12010u, 5u, 0u, 11999u, 12011u, 99999u}) {
    EXPECT_EQ(12007u, ErrorOf([&] { ThrowError(code); })) << code;
    EXPECT_FALSE(IsValidError(code)) << code;
  }
  EXPECT_EQ(12010u, ErrorOf([] { throw XUnsupportedOSVersion(); }));
  EXPECT_EQ(12007u, ErrorOf([] { throw std::out_of_range("x"); }));
}

TEST_F(Frame, CheckErrorSaysWhatCameFromWhere) {
  CheckError("a.cpp", 7, 12000);
  EXPECT_EQ("", TakeLines());
  const Rows<TError, std::string> rows = {{12001, "kOutOfMemoryError"},
                                          {12002, "kBadInputProgrammingError"},
                                          {12003, "kIllegalCallSequenceProgrammingError"},
                                          {12004, "kProgrammingError"},
                                          {12005, "kBadFormatError"},
                                          {12006, "kUnsupportedFormatError"},
                                          {12007, "kOtherError"},
                                          {12008, "kInvariantCorruptProgrammingError"},
                                          {12009, "kUnsupported"},
                                          {100123, "Application-specific error"}};
  for (const auto& [code, name] : rows) {
    EXPECT_EQ(code, ErrorOf([code = code] { CheckError("a.cpp", 7, code); }));
    EXPECT_EQ(name + " at a.cpp(7): " + std::to_string(code), TakeLines());
  }
  EXPECT_EQ(kOtherError, ErrorOf([] { CheckError("a.cpp", 7, 55); }));
  EXPECT_EQ("Bad error code at a.cpp(7): 55", TakeLines());
  EXPECT_EQ("false", TakeReports());
}

TEST_F(Frame, LinesAreCut) {
  for (std::size_t length : {0, 1991, 1992}) {
    DebugPrint(std::string(length, 'x'));
    EXPECT_EQ(std::string(std::min<std::size_t>(length, 1991), 'x'), TakeLines());
  }
  // Thrown lines carry the prefix twice.
  DebugThrown("a.cpp", 12);
  EXPECT_EQ("[Morvane] Exception thrown at a.cpp(12)", TakeLines());
  DebugThrown(std::string(3000, 'p').c_str(), 12);
  EXPECT_EQ(1023u, TakeLines().size());
}

TEST_F(Frame, AssertionMacroEvaluatesOnceAndKeepsTheText) {
  int calls = 0;
  if (calls == 0)
    MORVANE_ASSERT(++calls == 1);
  else
    FAIL();
  EXPECT_EQ(1, calls);
  MORVANE_ASSERT(NULL==&calls || calls > 5);
  EXPECT_EQ("NULL==&calls || calls > 5", TakeReports());
  EXPECT_TRUE(fOutput.fAssertFiles.at(0).starts_with("Tests/Core/FrameTest.cpp("));
}

TEST(WithoutOutput, NothingHappens) {
  ASSERT_EQ(nullptr, gDebugOutput);
  DebugAssert("a.cpp", 1, "x");
  DebugPrint("x");
  DebugThrown("a.cpp", 1);
  DebugIndentScope scope;
}
