// The record of the first process. What later processes make of it is in the client tests.
#include "Component/Win/Launch/SingleInstance.h"

#include "Component/Win/Platform/UtilsWin.h"
#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;

namespace {

class SingleInstance : public ReportingTest {
 protected:
  ~SingleInstance() override { ReleaseFirstInstance(); }

  const TString fName = u"Test Company Product " + NSTextPackage::NumberToString(::GetCurrentProcessId());
};

}  // namespace

TEST_F(SingleInstance, WhatIsOutOfOrderIsReported) {
  EXPECT_EQ(u"", TakeSentCommandLine());
  EXPECT_EQ("0!=gFileMappingInstance", TakeReports());
  ASSERT_TRUE(TryBecomeFirstInstance(fName));
  EXPECT_FALSE(TryBecomeFirstInstance(fName));
  // A shorter text leaves nothing of a longer one.
  for (const TString text : {u"long", u"ab"}) {
    SendCommandLineToFirstInstance(fName, text);
    EXPECT_EQ("0==gFileMappingInstance", TakeReports());
    EXPECT_EQ(text, TakeSentCommandLine());
  }
}

TEST_F(SingleInstance, ATooSmallMappingOfAStrangerIsNotTouched) {
  CFileMapping stranger(fName, 100);
  EXPECT_FALSE(TryBecomeFirstInstance(fName));
  EXPECT_THROW(SendCommandLineToFirstInstance(fName, u"x"), std::exception);
}
