// The exchange between the first process of an application and later ones, which this program plays itself.
#include "Component/Win/SingleInstance.h"

#include <gtest/gtest.h>

#include "Component/Win/UtilsWin.h"
#include "Tests/Support/RecordingDebugOutput.h"

using namespace NSMorvane;
using NSMorvaneTest::RecordingDebugOutput;
using NSTextPackage::TString;

namespace {

constexpr wchar_t kNameVariable[] = L"MORVANE_TEST_INSTANCE_NAME";
constexpr wchar_t kTextVariable[] = L"MORVANE_TEST_INSTANCE_TEXT";
constexpr DWORD kDeadlineMS = 30000;

TString Variable(const wchar_t* name) {
  std::vector<TChar> buffer(4000);
  const DWORD length = ::GetEnvironmentVariableW(name, WinBuffer(buffer.data()), 4000);
  return TString(buffer.data(), length);
}

// This program once more, as the process that comes later.
class LaterProcess {
 public:
  LaterProcess(const TString& name, const TString& text) {
    ::SetEnvironmentVariableW(kNameVariable, WinText(name));
    ::SetEnvironmentVariableW(kTextVariable, WinText(text));
    wchar_t path[MAX_PATH] = {};
    ::GetModuleFileNameW(nullptr, path, MAX_PATH);
    wchar_t arguments[] =
        L"UnitTests --gtest_also_run_disabled_tests --gtest_filter=SingleInstance.DISABLED_LaterProcess "
        L"--gtest_brief=1";
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    fStarted =
        ::CreateProcessW(path, arguments, nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &fProcess);
    ::SetEnvironmentVariableW(kNameVariable, nullptr);
    ::SetEnvironmentVariableW(kTextVariable, nullptr);
  }
  ~LaterProcess() {
    if (!fStarted) return;
    ::CloseHandle(fProcess.hThread);
    ::CloseHandle(fProcess.hProcess);
  }
  // Its exit code.
  DWORD Wait() {
    DWORD code = 99;
    if (fStarted && ::WaitForSingleObject(fProcess.hProcess, kDeadlineMS) == WAIT_OBJECT_0)
      ::GetExitCodeProcess(fProcess.hProcess, &code);
    return code;
  }

 private:
  BOOL fStarted = FALSE;
  PROCESS_INFORMATION fProcess = {};
};

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
  ReleaseFirstInstance();
  EXPECT_TRUE(output.fAssertions.empty());
}

TEST_F(SingleInstance, LaterProcessesHandOverTheirCommandLines) {
  ASSERT_TRUE(TryBecomeFirstInstance(fName));
  RecordingDebugOutput output;
  LaterProcess one(fName, u"app.exe one \u00E4");
  ASSERT_TRUE(WaitForMessage());
  EXPECT_EQ(0u, one.Wait());
  // The slot is taken: this one has to wait until it is free.
  const TString longText = TString(2599, u'x') + u"yzzz";
  LaterProcess two(fName, longText);
  MSG msg;
  EXPECT_FALSE(::PeekMessageW(&msg, nullptr, kMsgSecondInstance, kMsgSecondInstance, PM_REMOVE));
  EXPECT_EQ(u"app.exe one \u00E4", TakeSentCommandLine());
  ASSERT_TRUE(WaitForMessage());
  EXPECT_EQ(longText.substr(0, 2600), TakeSentCommandLine());
  EXPECT_EQ(0u, two.Wait());
  EXPECT_TRUE(output.fAssertions.empty());
}

// Run by LaterProcess only.
TEST_F(SingleInstance, DISABLED_LaterProcess) {
  const TString name = Variable(kNameVariable);
  ASSERT_FALSE(name.empty());
  RecordingDebugOutput output;
  ASSERT_FALSE(TryBecomeFirstInstance(name));
  SendCommandLineToFirstInstance(name, Variable(kTextVariable));
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
