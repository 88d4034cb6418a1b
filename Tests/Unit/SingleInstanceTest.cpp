// The record of the first process. What later processes make of it is in the client tests.
#include "Component/Win/SingleInstance.h"

#include "Component/Win/UtilsWin.h"
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
  EXPECT_EQ(u"", TakeSentCommandLine());
  EXPECT_EQ("dwordData[0]!=0", TakeReports());
  SendCommandLineToFirstInstance(fName, u"long");
  EXPECT_EQ("0==gFileMappingInstance", TakeReports());
  {
    CFileMappingView view(*gFileMappingInstance);
    static_cast<TSingleInstanceRecord*>(view.GetAddress())->fThreadId = 1;
  }
  EXPECT_EQ(u"long", TakeSentCommandLine());
  EXPECT_EQ("threadID==::GetCurrentThreadId()", TakeReports());
  // A shorter text leaves nothing of a longer one.
  SendCommandLineToFirstInstance(fName, u"ab");
  EXPECT_EQ(u"ab", TakeSentCommandLine());
  TakeReports();
}

TEST_F(SingleInstance, ATooSmallMappingOfAStrangerIsNotTouched) {
  CFileMapping stranger(fName, 100);
  EXPECT_FALSE(TryBecomeFirstInstance(fName));
  EXPECT_THROW(SendCommandLineToFirstInstance(fName, u"x"), std::exception);
}
