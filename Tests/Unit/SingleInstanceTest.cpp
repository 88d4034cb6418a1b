// The record of the first process. What later processes make of it is in the client tests.
#include "Component/Win/Launch/SingleInstance.h"

#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Platform/UtilsWinHandles.h"
#include "Tests/Support/PatchedImport.h"
#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;

namespace {

// The waits, which take no time here: after how many of them which process becomes the first one.
int gWaits = 0;
DWORD gWaitedMS = 0;
int gFirstComesAt = 0;
const TString* gFirstName = nullptr;
void WINAPI CountWait(DWORD ms) {
  gWaitedMS += ms;
  if (++gWaits == gFirstComesAt) TryBecomeFirstInstance(*gFirstName);
}

DWORD gAllowed = 0;
BOOL WINAPI KeepAllowed(DWORD process) {
  gAllowed = process;
  return TRUE;
}

// Another process comes between the writing and the sign that it is done.
bool gHasComeBetween = false;
BOOL WINAPI ComeBetween(DWORD) {
  if (!std::exchange(gHasComeBetween, true)) {
    EXPECT_FALSE(IsCommandLinePending());
    SendCommandLineToFirstInstance(*gFirstName, u"another");
  }
  return TRUE;
}

HANDLE WINAPI FindsNoMapping(DWORD, BOOL, LPCWSTR) {
  ::SetLastError(ERROR_FILE_NOT_FOUND);
  return nullptr;
}

class SingleInstance : public ReportingTest {
 protected:
  SingleInstance() {
    gWaits = gFirstComesAt = 0;
    gWaitedMS = gAllowed = 0;
    gFirstName = &fName;
    MSG message;  // those of the tests before
    while (::PeekMessageW(&message, nullptr, kMsgSecondInstance, kMsgSecondInstance, PM_REMOVE)) {
    }
  }
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

// The first process is told by one message, and may come to the front. What finds no room in ten seconds is
// dropped without a word.
TEST_F(SingleInstance, ABusyFirstProcessIsNotWaitedForLonger) {
  const PatchedImport wait(nullptr, "Sleep", CountWait);
  const PatchedImport allow(nullptr, "AllowSetForegroundWindow", KeepAllowed);
  ASSERT_TRUE(TryBecomeFirstInstance(fName));
  EXPECT_FALSE(IsCommandLinePending());
  for (const TString text : {u"kept", u"dropped"}) SendCommandLineToFirstInstance(fName, text);
  EXPECT_EQ("0==gFileMappingInstance; 0==gFileMappingInstance", TakeReports());
  EXPECT_EQ(gWaits, 100);
  EXPECT_EQ(gWaitedMS, 10000u);
  EXPECT_EQ(gAllowed, ::GetCurrentProcessId());
  MSG message;
  for (const BOOL isThere : {TRUE, FALSE})
    EXPECT_EQ(isThere, ::PeekMessageW(&message, nullptr, kMsgSecondInstance, kMsgSecondInstance, PM_REMOVE));
  EXPECT_TRUE(IsCommandLinePending());
  EXPECT_EQ(u"kept", TakeSentCommandLine());
  EXPECT_FALSE(IsCommandLinePending());
  EXPECT_EQ("", TakeLines());
}

TEST_F(SingleInstance, AFirstProcessThatGoesOrComesMeanwhile) {
  const PatchedImport wait(nullptr, "Sleep", CountWait);
  EXPECT_THROW(SendCommandLineToFirstInstance(fName, u"x"), std::exception);
  EXPECT_EQ(std::exchange(gWaits, 0), 100);
  EXPECT_EQ(std::exchange(gWaitedMS, 0u), 10000u);
  EXPECT_TRUE(TakeLines().starts_with("Windows error 2 at: "));
  gFirstComesAt = 3;
  SendCommandLineToFirstInstance(fName, u"x");
  EXPECT_EQ(gWaits, 3);
  EXPECT_EQ(u"x", TakeSentCommandLine());
}

TEST_F(SingleInstance, TheRecordIsWrittenByOneAtATime) {
  const PatchedImport wait(nullptr, "Sleep", CountWait);
  const PatchedImport allow(nullptr, "AllowSetForegroundWindow", ComeBetween);
  ASSERT_TRUE(TryBecomeFirstInstance(fName));
  SendCommandLineToFirstInstance(fName, u"the faster one");
  EXPECT_EQ(gWaits, 100);
  EXPECT_EQ(u"the faster one", TakeSentCommandLine());
  EXPECT_EQ("0==gFileMappingInstance; 0==gFileMappingInstance", TakeReports());
}

// Two processes begin at the same moment: neither finds the other, and one of them is the first.
TEST_F(SingleInstance, TheFasterOfTwoIsTheFirst) {
  const CFileMapping faster(fName, 4096 * 4);
  const PatchedImport patch(nullptr, "OpenFileMappingW", FindsNoMapping);
  EXPECT_FALSE(TryBecomeFirstInstance(fName));
}

// The mapping is there, and the first process has not come to write itself down.
TEST_F(SingleInstance, TheFirstProcessIsWaitedFor) {
  const PatchedImport wait(nullptr, "Sleep", CountWait);
  const CFileMapping early(fName, sizeof(TSingleInstanceRecord));
  const CFileMappingView view(early);
  SendCommandLineToFirstInstance(fName, u"x");
  EXPECT_EQ(gWaits, 100);
  EXPECT_EQ(0u, static_cast<const TSingleInstanceRecord*>(view.GetAddress())->fCommandLinePending);
}

// It belongs to someone with higher rights, or is something else.
TEST_F(SingleInstance, WhoCannotTellTheFirstProcessRunsAlone) {
  const CKernelHandle stranger(::CreateEventW(nullptr, TRUE, FALSE, WinText(fName)));
  EXPECT_TRUE(TryBecomeFirstInstance(fName));
  EXPECT_FALSE(IsCommandLinePending());
  ReleaseFirstInstance();
  EXPECT_EQ("", TakeLines());
}

TEST_F(SingleInstance, ATooSmallMappingOfAStrangerIsNotTouched) {
  CFileMapping stranger(fName, 100);
  EXPECT_FALSE(TryBecomeFirstInstance(fName));
  EXPECT_THROW(SendCommandLineToFirstInstance(fName, u"x"), std::exception);
}
