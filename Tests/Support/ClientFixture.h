// What tests of the library's client side stand on: one run of an application in a process of its own.
//
// The test is a client like any other: it sees the headers of Interface/ and the shared library. Whatever the
// library calls is written down, one word for a call, and compared with a text of such words. A word is the
// name of the callback without its class and "On", and behind a colon its arguments: "StartUp",
// "OpenURL:file://a.txt". What a scenario wants done in a callback is a hook, which stands under the word, or
// under the part of it that is in front of the colon.
#pragma once

#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <concepts>
#include <cwchar>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "Morvane.h"
#include "MorvaneDefaults.h"
#include "Support/Input.h"
#include "Support/RecordingViews.h"
#include "Support/Rows.h"

namespace NSMorvaneTest {

using namespace NSMorvane;

constexpr DWORD kWaitLimitMS = 20000;

// A test whose body runs in a turn of the application's loop. The application quits after it.
#define TEST_IN_RUN(Fixture, Name)                                                   \
  class Fixture##_##Name : public Fixture {                                          \
    void Body() override;                                                            \
  };                                                                                 \
  [[maybe_unused]] const auto* const k##Fixture##_##Name =                           \
      ::testing::RegisterTest(#Fixture, #Name, nullptr, nullptr, __FILE__, __LINE__, \
                              []() -> Fixture* { return new Fixture##_##Name; });    \
  void Fixture##_##Name::Body()

// --- Recording

// Any thread may print.
class ClientDebugOutput : public IDebugOutput {
 public:
  void IDebugOutput_Assert(const char*, std::int32_t, const char* expression) override {
    const std::lock_guard guard(fLock);
    fAssertions += (fAssertions.empty() ? "" : "; ") + std::string(expression);
  }
  void IDebugOutput_Print(const char* text) override {
    const std::lock_guard guard(fLock);
    fLines.push_back(text);
  }
  void IDebugOutput_Indent() override { ++fDepth; }
  void IDebugOutput_Unindent() override { --fDepth; }

  int CountLines(const std::string& line) {
    const std::lock_guard guard(fLock);
    return static_cast<int>(std::count(fLines.begin(), fLines.end(), "[Morvane] " + line));
  }
  void ForgetLines() {
    const std::lock_guard guard(fLock);
    fLines.clear();
  }
  // The texts of all failed assertions, with "; " between them. They count as taken from here on.
  std::string TakeAssertions() {
    const std::lock_guard guard(fLock);
    return std::exchange(fAssertions, {});
  }

  std::mutex fLock;
  std::vector<std::string> fLines;
  std::string fAssertions;
  std::atomic<int> fDepth = 0;
};

// --- The run

// What the run behaviour was told. The last arguments are kept.
struct RunRecord : CallRecorder {
  std::deque<std::function<void()>> fSteps;
  int fIdleCalls = 0;
  std::int64_t* fIdleDelay = nullptr;
  IMenuBarState* fMenuBar = nullptr;
  TMenuCommandEvent fCommand = {};
};

// The steps of a scenario come as application messages with this number, which are not logged.
constexpr std::uint32_t kStepMessage = 0x57E9;

class RecordingRunBehavior : public CDefaultRunBehavior {
 public:
  explicit RecordingRunBehavior(RunRecord& record) : fRecord(record) {}
  ~RecordingRunBehavior() override { fRecord.fLog.Add("deleted"); }

  TError IMorvaneRunBehavior_OnStartUp() override { return fRecord.Call("StartUp"); }
  TError IMorvaneRunBehavior_OnCleanUp() override { return fRecord.Call("CleanUp"); }
  TError IMorvaneRunBehavior_OnQuitEvent() override { return fRecord.Call("QuitEvent"); }
  TError IMorvaneRunBehavior_OnThemeChanged() override { return fRecord.Call("ThemeChanged"); }
  TError IMorvaneRunBehavior_OnEnterMenuLoop() override { return fRecord.Call("EnterMenuLoop"); }
  TError IMorvaneRunBehavior_OnExitMenuLoop() override { return fRecord.Call("ExitMenuLoop"); }
  TError IMorvaneRunBehavior_OnNoDocument(TNoDocumentKind kind) override {
    return fRecord.Call("NoDocument", ":" + std::to_string(kind));
  }
  TError IMorvaneRunBehavior_OnOpenURL(const char* url) override {
    return fRecord.Call("OpenURL", ":" + std::string(url));
  }
  TError IMorvaneRunBehavior_OnMenuCommand(const TMenuCommandEvent& event, TFlag& outHandled) override {
    fRecord.fCommand = event;
    return fRecord.Call("MenuCommand", ":" + std::to_string(event.fCommand), &outHandled);
  }
  TError IMorvaneRunBehavior_OnUnhandledError(TError error) override {
    return fRecord.Call("UnhandledError", ":" + std::to_string(error));
  }
  TError IMorvaneRunBehavior_OnAppActivation(TFlag active) override {
    return fRecord.CallUnlogged("AppActivation", ":" + std::to_string(active));
  }
  TError IMorvaneRunBehavior_OnAppMessage(std::uint32_t a, std::uint32_t b) override {
    if (a != kStepMessage)
      return fRecord.Call("AppMessage", ":" + std::to_string(a) + "," + std::to_string(b));
    if (fRecord.fSteps.empty()) return kOK;
    const std::function<void()> step = std::move(fRecord.fSteps.front());
    fRecord.fSteps.pop_front();
    step();
    return kOK;
  }
  TError IMorvaneRunBehavior_OnIdle(std::int64_t& inOutDelayMS) override {
    ++fRecord.fIdleCalls;
    if (!fRecord.fHooks.contains("Idle"))
      return CDefaultRunBehavior::IMorvaneRunBehavior_OnIdle(inOutDelayMS);
    fRecord.fIdleDelay = &inOutDelayMS;
    return fRecord.CallUnlogged("Idle");
  }
  TError IMorvaneRunBehavior_OnBeginDraw(IDrawTools&) override { return fRecord.CallUnlogged("BeginDraw"); }
  TError IMorvaneRunBehavior_OnEndDraw(IDrawTools&) override { return fRecord.CallUnlogged("EndDraw"); }
  TError IMorvaneRunBehavior_HandleKeyDown(const TKeyEvent&, TFlag& outHandled) override {
    return fRecord.CallUnlogged("HandleKeyDown", "", &outHandled);
  }
  TError IMorvaneRunBehavior_OnSetupMenuBar(IMenuBarState& state) override {
    fRecord.fMenuBar = &state;
    return fRecord.CallUnlogged("SetupMenuBar");
  }

 private:
  RunRecord& fRecord;
};

// The library reads the command line when its root object is made, and the arguments of the test program are
// none of the application's: this puts another command line in the place of the real one, which is longer.
inline void SetCommandLineOfThisProcess(const std::wstring& commandLine) {
  wchar_t* const text = GetCommandLineW();
  static const std::size_t room = std::wcslen(text);
  ASSERT_LE(commandLine.size(), room) << "no room for this command line";
  std::wcscpy(text, commandLine.c_str());
}

// --- The fixture

class ClientTest : public ::testing::Test {
 protected:
  ClientTest() {
    // A second process of the same application is told the company of the first one.
    wchar_t company[256] = {};
    fIsSecondProcess = GetEnvironmentVariableW(L"MORVANE_TEST_SECOND_OF", company, 256) != 0;
    if (fIsSecondProcess) {
      fCompany = company;
    } else {
      fCompany =
          L"Client Test " + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(GetTickCount());
    }
    CopyText(fParams.fCompanyName, std::u16string(fCompany.begin(), fCompany.end()));
    CopyText(fParams.fProductName, u"Scenario");
    CopyText(fParams.fDisplayName, u"A scenario of the client tests");
  }
  ~ClientTest() override {
    DeleteMorvane();
    EXPECT_EQ(fOutput.fAssertions, "") << "the test has not taken them";
    EXPECT_EQ(fOutput.fDepth, 0);
    EXPECT_EQ(ShownInOrder(), std::vector<HWND>());
  }
  void TestBody() override {
    RunFrom([this] {
      Then([this] {
        Body();
        Leave();
        Quit();
      });
    });
    EXPECT_EQ(fRun.fLog.Take().find("UnhandledError"), std::string::npos);
  }
  virtual void Body() {}
  // What is still to do after the body.
  virtual void Leave() {}

  // `arguments` follow the program's name on the command line.
  void CreateMorvane(const std::wstring& arguments = L"") {
    if (!fIsSecondProcess)
      SetCommandLineOfThisProcess(L"\"app.exe\"" + (arguments.empty() ? L"" : L" " + arguments));
    TError error = kOtherError;
    fMorvane = Morvane_Create("IMorvane", &error);
    ASSERT_EQ(error, kOK);
    ASSERT_NE(fMorvane, nullptr);
    // As users get to see an application. What the debug layers add has tests of its own.
    fMorvane->IMorvane_SetDebugSettings({});
    fMorvane->IMorvane_SetDebugOutput(&fOutput);
  }
  void DeleteMorvane() { delete std::exchange(fMorvane, nullptr); }
  void RunFrom(const Hook& startUp, const std::wstring& arguments = L"") {
    if (!fMorvane) CreateMorvane(arguments);
    fRun.fHooks["StartUp"] = startUp;
    EXPECT_EQ(fMorvane->IMorvane_Run(new RecordingRunBehavior(fRun), fParams), kOK);
  }
  // A run from start to end, and all that it calls.
  void ExpectRun(const std::string& calls, const Hook& startUp, const std::wstring& arguments = L"") {
    RunFrom(startUp, arguments);
    EXPECT_EQ(fRun.fLog.Take(), calls);
  }
  // The calls of the run without the quit events, whose number depends on how often the loop turns.
  std::string CallsOfRun() {
    fRun.fLog.Remove("QuitEvent");
    return fRun.fLog.Take();
  }
  // A run that ends with a code leaves the behaviour to the client.
  void ExpectRunFails(TError error) {
    const RecordingRunBehavior behavior(fRun);
    EXPECT_EQ(fMorvane->IMorvane_Run(const_cast<RecordingRunBehavior*>(&behavior), fParams), error);
  }

  // --- In the run

  // Does this in a turn of the loop of its own, after all that has been asked for before.
  void Then(std::function<void()> step) {
    fRun.fSteps.push_back(std::move(step));
    EXPECT_EQ(fMorvane->IMorvane_PostAppMessage(kStepMessage, 0), kOK);
  }
  // Inside a callback: yields until the condition holds. False if that takes too long.
  bool YieldUntil(const std::function<bool()>& condition) {
    const ULONGLONG deadline = GetTickCount64() + kWaitLimitMS;
    while (!condition()) {
      if (GetTickCount64() > deadline) return false;
      EXPECT_EQ(fMorvane->IMorvane_Yield(), kOK);
      MsgWaitForMultipleObjects(0, nullptr, FALSE, 2, QS_ALLINPUT);
    }
    return true;
  }
  // Yields until whatever waits now has been handled.
  void Turn() {
    const auto isThrough = std::make_shared<bool>(false);
    Then([=] { *isThrough = true; });
    EXPECT_TRUE(YieldUntil([=] { return *isThrough; }));
  }
  // Yields until the failure is reported, which it is once. It is no longer in the log after that.
  void ExpectReported(TError error) {
    const std::string report = "UnhandledError:" + std::to_string(error);
    EXPECT_TRUE(YieldUntil([&] { return fRun.fLog.Count(report) > 0; })) << report;
    EXPECT_EQ(fRun.fLog.Count(report), 1);
    fRun.fLog.Remove(report);
  }
  // For the hook "Idle": the next call is due in so many milliseconds.
  static constexpr std::int64_t kNever = 0x7FFFFFFF;
  Hook IdleAfter(std::int64_t delayMS) {
    return [=, this] { *fRun.fIdleDelay = delayMS; };
  }
  bool IsQuitting() {
    TFlag isQuitting = 7;
    EXPECT_EQ(fMorvane->IMorvane_IsQuitting(isQuitting), kOK);
    return isQuitting == 1;
  }
  TError StartQuitting() { return fMorvane->IMorvane_StartQuitting(); }
  void Quit() {
    if (!IsQuitting()) {
      EXPECT_EQ(StartQuitting(), kOK);
    }
  }
  // Handles what waits as a loop does that is not the library's.
  static void DispatchWhatWaits() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
  }
  // Until something has been sent to this thread, without letting it in.
  static void AwaitSentMessage() {
    EXPECT_EQ(MsgWaitForMultipleObjects(0, nullptr, FALSE, kWaitLimitMS, QS_SENDMESSAGE), WAIT_OBJECT_0);
  }
  // A second process of this program that runs the same test, and knows that it is the second one. Null
  // `folder` is the folder of this process. The handle is for ExpectPassed.
  HANDLE StartProcessOfThisTest(const std::wstring& arguments = L"", const wchar_t* folder = nullptr) {
    wchar_t program[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    const ::testing::TestInfo& test = *::testing::UnitTest::GetInstance()->current_test_info();
    const std::string filter = std::string(test.test_suite_name()) + "." + test.name();
    std::wstring commandLine =
        L"\"" + std::wstring(program) + L"\"" + (arguments.empty() ? L"" : L" ") + arguments;
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process = {};
    SetEnvironmentVariableW(L"MORVANE_TEST_SECOND_OF", fCompany.c_str());
    SetEnvironmentVariableA("GTEST_FILTER", filter.c_str());
    EXPECT_TRUE(CreateProcessW(program, commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr, folder,
                               &startup, &process));
    CloseHandle(process.hThread);
    return process.hProcess;
  }
  // Waits until such a process has ended, well.
  static void ExpectPassed(HANDLE process) {
    DWORD code = 1;
    if (WaitForSingleObject(process, kWaitLimitMS) == WAIT_TIMEOUT) TerminateProcess(process, 98);
    EXPECT_TRUE(GetExitCodeProcess(process, &code) && code == 0) << "the second process has failed";
    CloseHandle(process);
  }
  // The shown windows of this process, the front one first.
  static std::vector<HWND> ShownInOrder() {
    std::vector<HWND> windows;
    DWORD process = 0;
    for (HWND hwnd = GetTopWindow(nullptr); hwnd; hwnd = GetWindow(hwnd, GW_HWNDNEXT)) {
      GetWindowThreadProcessId(hwnd, &process);
      if (process == GetCurrentProcessId() && IsWindowVisible(hwnd)) windows.push_back(hwnd);
    }
    return windows;
  }

  // --- Real input

  // One after the other, all at once.
  static void SendInputs(std::vector<INPUT> inputs) {
    const UINT count = static_cast<UINT>(inputs.size());
    EXPECT_EQ(SendInput(count, inputs.data(), sizeof(INPUT)), count);
  }
  static void SendKeys(const std::vector<WORD>& keys, DWORD flags = 0) {
    for (const WORD key : keys) SendInputs({KeyInput(key, flags)});
  }
  // Keys that are held while the last one is pressed.
  static void PressKeys(std::vector<WORD> keys) {
    SendKeys(keys);
    std::ranges::reverse(keys);
    SendKeys(keys, KEYEVENTF_KEYUP);
  }
  // Buttons at a place of the screen, all at once: two presses are a double click on a slow machine, too.
  static void Click(const POINT& place, const std::vector<DWORD>& buttons) {
    std::vector<INPUT> inputs = {MouseInput(place, 0)};
    for (const DWORD button : buttons) inputs.push_back(MouseInput(place, button));
    SendInputs(inputs);
  }
  static void ClickLeft(const POINT& place) { Click(place, {MOUSEEVENTF_LEFTDOWN, MOUSEEVENTF_LEFTUP}); }
  // Puts the mouse at a place of the screen, and waits until it is there for good.
  void PutMouse(const POINT& place) {
    EXPECT_TRUE(PutPointer(
        place, [](const POINT& next) { SetCursorPos(next.x, next.y); },
        [this](const std::function<bool()>& hasArrived) { return YieldUntil(hasArrived); }));
  }

  RunRecord fRun;
  std::wstring fCompany;
  bool fIsSecondProcess;
  ClientDebugOutput& fOutput = *new ClientDebugOutput;  // the library may print until the process ends
  TStartupParams fParams = {};
  IMorvane* fMorvane = nullptr;
};

}  // namespace NSMorvaneTest
