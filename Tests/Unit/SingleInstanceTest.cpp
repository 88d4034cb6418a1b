// The record of the first process. What later processes make of it is in the client tests.
#include "Component/Win/SingleInstance.h"

#include <gtest/gtest.h>

#include "Component/Win/UtilsWin.h"
#include "Tests/Support/RecordingDebugOutput.h"

using namespace NSMorvane;
using NSMorvaneTest::RecordingDebugOutput;
using NSTextPackage::TString;

namespace {

constexpr DWORD kDeadlineMS = 30000;

bool WaitForMessage() {
  const DWORD start = ::GetTickCount();
  MSG msg;
  while (!::PeekMessageW(&msg, nullptr, kMsgSecondInstance, kMsgSecondInstance, PM_REMOVE)) {
    const DWORD passed = ::GetTickCount() - start;
    if (passed >= kDeadlineMS) return false;
    ::MsgWaitForMultipleObjects(0, nullptr, FALSE, kDeadlineMS - passed, QS_ALLINPUT);
  }
  return true;
}

class SingleInstance : public testing::Test {
 protected:
  SingleInstance()
      : fName(u"Test Company Product " + NSTextPackage::NumberToString(::GetCurrentProcessId())) {}
  void TearDown() override { ReleaseFirstInstance(); }

  const TString fName;
};

}  // namespace

TEST_F(SingleInstance, OnlyOneIsTheFirst) {
  RecordingDebugOutput output;
  EXPECT_TRUE(TryBecomeFirstInstance(fName));
  ASSERT_NE(nullptr, gFileMappingInstance);
  EXPECT_FALSE(TryBecomeFirstInstance(fName));
  {
    CFileMapping mapping(fName);
    CFileMappingView view(mapping);
    const auto& record = *static_cast<const TSingleInstanceRecord*>(view.GetAddress());
    EXPECT_EQ(0u, record.fCommandLinePending);
    EXPECT_EQ(::GetCurrentProcessId(), record.fProcessId);
    EXPECT_EQ(::GetCurrentThreadId(), record.fThreadId);
  }
  ReleaseFirstInstance();
  EXPECT_EQ(nullptr, gFileMappingInstance);
  EXPECT_TRUE(TryBecomeFirstInstance(fName));
  ReleaseFirstInstance();
  EXPECT_TRUE(output.fAssertions.empty());
}

TEST_F(SingleInstance, WhatIsOutOfOrderIsReported) {
  RecordingDebugOutput output;
  EXPECT_EQ(u"", TakeSentCommandLine());
  EXPECT_EQ(std::vector<std::string>{"0!=gFileMappingInstance"}, output.fAssertions);

  ASSERT_TRUE(TryBecomeFirstInstance(fName));
  output.Reset();
  EXPECT_EQ(u"", TakeSentCommandLine());
  EXPECT_EQ(std::vector<std::string>{"dwordData[0]!=0"}, output.fAssertions);

  output.Reset();
  SendCommandLineToFirstInstance(fName, u"long");
  EXPECT_EQ(std::vector<std::string>{"0==gFileMappingInstance"}, output.fAssertions);
  {
    CFileMappingView view(*gFileMappingInstance);
    auto& record = *static_cast<TSingleInstanceRecord*>(view.GetAddress());
    EXPECT_EQ(1u, record.fCommandLinePending);
    record.fThreadId = 1;
    record.fProcessId = 1;
  }
  output.Reset();
  EXPECT_EQ(u"long", TakeSentCommandLine());
  EXPECT_EQ(std::vector<std::string>{"threadID==::GetCurrentThreadId()"}, output.fAssertions);
  ASSERT_TRUE(WaitForMessage());

  // A shorter text leaves nothing of a longer one.
  SendCommandLineToFirstInstance(fName, u"ab");
  EXPECT_EQ(u"ab", TakeSentCommandLine());
}

TEST_F(SingleInstance, ATooSmallMappingOfAStrangerIsNotTouched) {
  CFileMapping stranger(fName, 100);
  RecordingDebugOutput output;
  EXPECT_FALSE(TryBecomeFirstInstance(fName));
  EXPECT_THROW(SendCommandLineToFirstInstance(fName, u"x"), std::exception);
}
