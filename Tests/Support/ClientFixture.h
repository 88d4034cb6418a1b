// What tests of the library's client side stand on: one run of an application in a process of its own.
//
// The test is a client like any other: it sees the headers of Interface/ and the shared library. A scenario
// is a set of hooks on the recording run behaviour and a list of steps, each of which runs in a turn of the
// library's own loop. Everything that the library calls is written to one list, fLog, which is compared with
// an expected list, read from top to bottom.
#pragma once

#include <windows.h>

#include <gtest/gtest.h>

#include <concepts>
#include <cwchar>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Morvane.h"
#include "MorvaneDefaults.h"

namespace NSMorvaneTest {

using namespace NSMorvane;

// How long a scenario may take, and how long a wait inside one.
constexpr DWORD kScenarioLimitMS = 45000;
constexpr DWORD kWaitLimitMS = 20000;

using CallLog = std::vector<std::string>;

inline const wchar_t* WideText(const TChar* text) { return reinterpret_cast<const wchar_t*>(text); }
inline std::u16string TextOfWide(const std::wstring& text) { return {text.begin(), text.end()}; }

// --- Debug output

// Any thread may print.
class ClientDebugOutput : public IDebugOutput {
 public:
  void IDebugOutput_Assert(const char* file, std::int32_t line, const char* expression) override {
    const Guard guard(fLock);
    fAssertions.push_back(expression);
    fAssertFiles.push_back(std::string(file) + "(" + std::to_string(line) + "): " + expression);
  }
  void IDebugOutput_Print(const char* text) override {
    const Guard guard(fLock);
    fLines.push_back(text);
  }
  void IDebugOutput_Indent() override { InterlockedIncrement(&fDepth); }
  void IDebugOutput_Unindent() override { InterlockedDecrement(&fDepth); }

  std::size_t CountLines(const std::string& line) {
    const Guard guard(fLock);
    std::size_t count = 0;
    for (const std::string& other : fLines) count += other == "[Morvane] " + line;
    return count;
  }
  bool HasLine(const std::string& line) { return CountLines(line) > 0; }
  std::vector<std::string> TakeAssertions() {
    const Guard guard(fLock);
    fAssertFiles.clear();
    return std::exchange(fAssertions, {});
  }
  // With their places, for messages.
  std::string DescribeAssertions() {
    const Guard guard(fLock);
    std::string text;
    for (const std::string& place : fAssertFiles) text += place + "\n";
    return text;
  }
  LONG GetDepth() const { return fDepth; }
  void Reset() {
    const Guard guard(fLock);
    fLines.clear();
    fAssertions.clear();
    fAssertFiles.clear();
    fDepth = 0;
  }

  // The library may print until the process ends, so this outlives everything.
  static ClientDebugOutput& Get() {
    static ClientDebugOutput* const output = new ClientDebugOutput;
    return *output;
  }

 private:
  struct Guard {
    explicit Guard(SRWLOCK& lock) : fLock(lock) { AcquireSRWLockExclusive(&fLock); }
    ~Guard() { ReleaseSRWLockExclusive(&fLock); }
    SRWLOCK& fLock;
  };

  SRWLOCK fLock = SRWLOCK_INIT;
  std::vector<std::string> fLines;
  std::vector<std::string> fAssertions;
  std::vector<std::string> fAssertFiles;
  LONG fDepth = 0;
};

// --- The run behaviour

// What a scenario does in a callback: a function of the callback's arguments, or of none, which answers a
// code or nothing; or the code alone. Empty it answers kOK.
template <class... TArguments>
class Hook {
  using Body = std::function<TError(TArguments...)>;

 public:
  Hook(std::nullptr_t = nullptr) {}
  Hook(TError error) : fBody(std::make_shared<Body>([error](TArguments...) { return error; })) {}
  template <class TBody>
  requires std::invocable<TBody&> || std::invocable<TBody&, TArguments...> Hook(TBody body)
      : fBody(std::make_shared<Body>([body](TArguments... arguments) mutable {
          const auto call = [&]() -> decltype(auto) {
            if constexpr (std::invocable<TBody&, TArguments...>)
              return body(arguments...);
            else
              return body();
          };
          if constexpr (!std::is_void_v<decltype(call())>) return TError(call());
          call();
          return TError(kOK);
        })) {}
  explicit operator bool() const { return fBody != nullptr; }
  // It may be replaced in the middle of the call.
  TError operator()(TArguments... arguments) const {
    const auto body = fBody;
    return body ? (*body)(arguments...) : kOK;
  }

 private:
  std::shared_ptr<Body> fBody;
};

struct RunHooks {
  Hook<> fOnStartUp, fOnCleanUp, fOnQuitEvent, fOnThemeChanged;
  Hook<> fOnEnterMenuLoop, fOnExitMenuLoop, fOnBeginDraw, fOnEndDraw;
  Hook<TNoDocumentKind> fOnNoDocument;
  Hook<const std::string&> fOnOpenURL;
  Hook<IMenuBarState&> fOnSetupMenuBar;
  Hook<const TKeyEvent&, TFlag&> fHandleKeyDown;
  Hook<const TMenuCommandEvent&, TFlag&> fOnMenuCommand;
  Hook<std::int64_t&> fOnIdle;
  Hook<TFlag> fOnAppActivation;
  Hook<std::uint32_t, std::uint32_t> fOnAppMessage;
  Hook<TError> fOnUnhandledError;
};

// The steps of a scenario come as application messages with this number, which are not logged.
constexpr std::uint32_t kStepMessage = 0x57E9;

class RecordingRunBehavior : public CDefaultRunBehavior {
 public:
  RecordingRunBehavior(CallLog& log, RunHooks& hooks, std::deque<std::function<void()>>& steps)
      : fLog(log), fHooks(hooks), fSteps(steps) {}
  ~RecordingRunBehavior() override { fLog.push_back("deleted"); }

  TError IMorvaneRunBehavior_OnStartUp() override { return Call("OnStartUp", fHooks.fOnStartUp); }
  TError IMorvaneRunBehavior_OnCleanUp() override { return Call("OnCleanUp", fHooks.fOnCleanUp); }
  TError IMorvaneRunBehavior_OnQuitEvent() override { return Call("OnQuitEvent", fHooks.fOnQuitEvent); }
  TError IMorvaneRunBehavior_OnNoDocument(TNoDocumentKind kind) override {
    return Call("OnNoDocument " + std::to_string(kind), fHooks.fOnNoDocument, kind);
  }
  TError IMorvaneRunBehavior_OnOpenURL(const char* url) override {
    return Call(std::string("OnOpenURL ") + url, fHooks.fOnOpenURL, std::string(url));
  }
  TError IMorvaneRunBehavior_OnMenuCommand(const TMenuCommandEvent& event, TFlag& outHandled) override {
    outHandled = 0;
    return Call("OnMenuCommand " + std::to_string(event.fCommand), fHooks.fOnMenuCommand, event, outHandled);
  }
  TError IMorvaneRunBehavior_OnThemeChanged() override {
    return Call("OnThemeChanged", fHooks.fOnThemeChanged);
  }
  TError IMorvaneRunBehavior_OnEnterMenuLoop() override {
    return Call("OnEnterMenuLoop", fHooks.fOnEnterMenuLoop);
  }
  TError IMorvaneRunBehavior_OnExitMenuLoop() override {
    return Call("OnExitMenuLoop", fHooks.fOnExitMenuLoop);
  }
  TError IMorvaneRunBehavior_OnAppMessage(std::uint32_t a, std::uint32_t b) override {
    if (a != kStepMessage)
      return Call("OnAppMessage " + std::to_string(a) + " " + std::to_string(b), fHooks.fOnAppMessage, a, b);
    if (fSteps.empty()) return kOK;
    const std::function<void()> step = std::move(fSteps.front());
    fSteps.pop_front();
    step();
    return kOK;
  }
  TError IMorvaneRunBehavior_OnUnhandledError(TError error) override {
    return Call("OnUnhandledError " + std::to_string(error), fHooks.fOnUnhandledError, error);
  }

  // Not logged: how often they come is a matter of time.
  TError IMorvaneRunBehavior_OnIdle(std::int64_t& inOutDelayMS) override {
    ++fIdleCalls;
    return fHooks.fOnIdle ? fHooks.fOnIdle(inOutDelayMS)
                          : CDefaultRunBehavior::IMorvaneRunBehavior_OnIdle(inOutDelayMS);
  }
  TError IMorvaneRunBehavior_OnBeginDraw(IDrawTools&) override { return fHooks.fOnBeginDraw(); }
  TError IMorvaneRunBehavior_OnEndDraw(IDrawTools&) override { return fHooks.fOnEndDraw(); }
  TError IMorvaneRunBehavior_HandleKeyDown(const TKeyEvent& event, TFlag& outHandled) override {
    outHandled = 0;
    return fHooks.fHandleKeyDown(event, outHandled);
  }
  TError IMorvaneRunBehavior_OnSetupMenuBar(IMenuBarState& state) override {
    return fHooks.fOnSetupMenuBar(state);
  }
  TError IMorvaneRunBehavior_OnAppActivation(TFlag active) override {
    return fHooks.fOnAppActivation(active);
  }

  static inline int fIdleCalls = 0;

 private:
  template <class THook, class... TArguments>
  TError Call(const std::string& entry, THook& hook, TArguments&&... arguments) {
    fLog.push_back(entry);
    return hook(arguments...);
  }

  CallLog& fLog;
  RunHooks& fHooks;
  std::deque<std::function<void()>>& fSteps;
};

// --- Document windows

using CloseHook = Hook<const std::string&, IDocumentWindow&>;  // with the name

// Closes when it is asked to, unless there is a hook for that.
class RecordingDocument : public CDefaultDocumentWindowBehavior {
 public:
  RecordingDocument(IDocumentWindow& window, CallLog& log, CloseHook& onRequestClose, const std::string& name)
      : CDefaultDocumentWindowBehavior(window), fLog(log), fOnRequestClose(onRequestClose), fName(name) {}
  ~RecordingDocument() override { fLog.push_back(fName + " deleted"); }

  TError IDocumentWindowBehavior_OnRequestClose(TCloseReason reason) override {
    fLog.push_back(fName + " OnRequestClose " + std::to_string(reason));
    return fOnRequestClose ? fOnRequestClose(fName, fWindow) : fWindow.IDocumentWindow_Release();
  }

 private:
  CallLog& fLog;
  CloseHook& fOnRequestClose;
  std::string fName;
};

inline IWindow& WindowOf(IDocumentWindow& document) {
  IWindow* window = nullptr;
  EXPECT_EQ(document.IDocumentWindow_GetWindow(window), kOK);
  return *window;
}

inline HWND HwndOf(IDocumentWindow& document) {
  TNativeWindow native = {};
  EXPECT_EQ(WindowOf(document).IWindow_GetNativeWindow(native), kOK);
  return native.fHwnd;
}

// --- Processes

// A second process of the same application runs the same test with this in its environment: the company name
// of the first one.
inline std::wstring RoleOfThisProcess() {
  wchar_t company[256] = {};
  GetEnvironmentVariableW(L"MORVANE_TEST_SECOND_OF", company, 256);
  return company;
}

// The library reads the command line when its root object is made, and the arguments of the test program are
// none of the application's: this puts another command line in the place of the real one, which is longer.
inline void SetCommandLineOfThisProcess(const std::wstring& commandLine) {
  wchar_t* const text = GetCommandLineW();
  static const std::size_t room = std::wcslen(text);
  ASSERT_LE(commandLine.size(), room) << "no room for this command line";
  std::wcscpy(text, commandLine.c_str());
}

// Ends the process, with a message, when a scenario hangs.
class Watchdog {
 public:
  explicit Watchdog(CallLog& log) {
    CreateTimerQueueTimer(&fTimer, nullptr, End, &log, kScenarioLimitMS, 0, WT_EXECUTEONLYONCE);
  }
  ~Watchdog() { DeleteTimerQueueTimer(nullptr, fTimer, INVALID_HANDLE_VALUE); }
  Watchdog(const Watchdog&) = delete;
  Watchdog& operator=(const Watchdog&) = delete;

 private:
  static void CALLBACK End(void* argument, BOOLEAN) {
    const CallLog& log = *static_cast<const CallLog*>(argument);
    std::fprintf(stderr, "The scenario hangs. So far there were %u calls, the last of them: %s\n",
                 static_cast<unsigned>(log.size()), log.empty() ? "-" : log.back().c_str());
    std::fflush(stderr);
    TerminateProcess(GetCurrentProcess(), 99);
  }

  HANDLE fTimer = nullptr;
};

// A second process of the application, which runs this same test.
class SecondProcess {
 public:
  // `arguments` follow the program's name on its command line.
  SecondProcess(const std::wstring& company, const std::wstring& arguments) {
    wchar_t program[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    const ::testing::TestInfo& test = *::testing::UnitTest::GetInstance()->current_test_info();
    const std::string filter = std::string(test.test_suite_name()) + "." + test.name();
    SetEnvironmentVariableW(L"MORVANE_TEST_SECOND_OF", company.c_str());
    SetEnvironmentVariableA("GTEST_FILTER", filter.c_str());
    std::wstring commandLine = L"\"" + std::wstring(program) + L"\"";
    if (!arguments.empty()) commandLine += L" " + arguments;
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process = {};
    if (CreateProcessW(program, commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                       &process)) {
      CloseHandle(process.hThread);
      fProcess = process.hProcess;
    }
    SetEnvironmentVariableW(L"MORVANE_TEST_SECOND_OF", nullptr);
    SetEnvironmentVariableA("GTEST_FILTER", nullptr);
    EXPECT_NE(fProcess, nullptr) << "no second process: " << GetLastError();
  }
  ~SecondProcess() {
    if (!fProcess) return;
    if (WaitForSingleObject(fProcess, 0) == WAIT_TIMEOUT) TerminateProcess(fProcess, 98);
    CloseHandle(fProcess);
  }
  SecondProcess(const SecondProcess&) = delete;
  SecondProcess& operator=(const SecondProcess&) = delete;

  bool HasEnded() const { return WaitForSingleObject(fProcess, 0) == WAIT_OBJECT_0; }
  // Its test has passed.
  bool EndsWell() const {
    DWORD code = 1;
    return WaitForSingleObject(fProcess, kWaitLimitMS) == WAIT_OBJECT_0 &&
           GetExitCodeProcess(fProcess, &code) && code == 0;
  }

 private:
  HANDLE fProcess = nullptr;
};

// --- The fixture

class ClientTest : public ::testing::Test {
 protected:
  ClientTest() : fWatchdog(fLog), fCompany(RoleOfThisProcess()), fIsSecondProcess(!fCompany.empty()) {
    fOutput.Reset();
    RecordingRunBehavior::fIdleCalls = 0;
    if (!fIsSecondProcess) {
      fCompany =
          L"Client Test " + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(GetTickCount());
      SetCommandLineOfThisProcess(L"\"app.exe\"");
    }
    CopyText(fParams.fCompanyName, TextOfWide(fCompany));
    CopyText(fParams.fProductName, u"Scenario");
    CopyText(fParams.fDisplayName, u"A scenario of the client tests");
  }
  ~ClientTest() override {
    DeleteMorvane();
    EXPECT_EQ(fOutput.DescribeAssertions(), "") << "assertions that the test has not taken";
    EXPECT_EQ(fOutput.GetDepth(), 0);
  }

  // `arguments` follow the program's name on the command line.
  void CreateMorvane(const std::wstring& arguments = L"") {
    if (!arguments.empty()) SetCommandLineOfThisProcess(L"\"app.exe\" " + arguments);
    TError error = kOtherError;
    fMorvane = Morvane_Create("IMorvane", &error);
    ASSERT_EQ(error, kOK);
    ASSERT_NE(fMorvane, nullptr);
    fMorvane->IMorvane_SetDebugOutput(&fOutput);
  }
  void DeleteMorvane() { delete std::exchange(fMorvane, nullptr); }

  // A document window with a RecordingDocument of that name.
  IDocumentWindow* CreateDocument(const std::string& name) {
    CDocumentWindowFactory<RecordingDocument, CallLog&, CloseHook&, const std::string&> factory(
        fLog, fOnRequestClose, name);
    TError error = kOtherError;
    IDocumentWindow* const document =
        fMorvane->IMorvane_CreateDocumentWindow(factory, kWindowResizableBit | kWindowZoomableBit, 1, error);
    EXPECT_EQ(error, kOK);
    return document;
  }

  // The whole run.
  TError Run() { return fMorvane->IMorvane_Run(new RecordingRunBehavior(fLog, fHooks, fSteps), fParams); }

  void RunFrom(Hook<> onStartUp, const std::wstring& arguments = L"") {
    if (!fMorvane) CreateMorvane(arguments);
    fHooks.fOnStartUp = std::move(onStartUp);
    EXPECT_EQ(Run(), kOK);
  }

  // A run that ends with a code leaves the behaviour to the client.
  void ExpectRunFails(TError error) {
    RecordingRunBehavior* const behavior = new RecordingRunBehavior(fLog, fHooks, fSteps);
    EXPECT_EQ(fMorvane->IMorvane_Run(behavior, fParams), error);
    const CallLog log = fLog;
    delete behavior;
    fLog = log;
  }

  // In the run: does this in a turn of the loop of its own, after all that has been asked for before.
  void Then(std::function<void()> step) {
    fSteps.push_back(std::move(step));
    EXPECT_EQ(fMorvane->IMorvane_PostAppMessage(kStepMessage, 0), kOK);
  }
  // The same, in the first turn in which the condition holds. The loop keeps turning until then.
  void WhenThen(std::function<bool()> condition, std::function<void()> step) {
    ThenUntil(GetTickCount64() + kWaitLimitMS, std::move(condition), std::move(step));
  }
  using Steps = std::vector<std::function<void()>>;
  // Quits after these steps. Asks for the next one only behind the one before, so that a step can turn the
  // loop itself.
  void RunSteps(const Steps& steps, std::size_t index = 0) {
    Then([=, this] {
      if (index == steps.size()) return Quit();
      steps[index]();
      RunSteps(steps, index + 1);
    });
  }
  bool IsQuitting() {
    TFlag isQuitting = 7;
    EXPECT_EQ(fMorvane->IMorvane_IsQuitting(isQuitting), kOK);
    return isQuitting == 1;
  }
  void Quit() {
    if (!IsQuitting()) {
      EXPECT_EQ(fMorvane->IMorvane_StartQuitting(), kOK);
    }
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
  void YieldFor(DWORD ms) {
    EXPECT_TRUE(YieldUntil([ms, start = GetTickCount()] { return GetTickCount() - start > ms; }));
  }
  CallLog TakeLog() { return std::exchange(fLog, {}); }
  // Yields until the failure is reported, which it is once. It is no longer in the log after that.
  void ExpectReported(TError error) {
    const std::string report = "OnUnhandledError " + std::to_string(error);
    EXPECT_TRUE(YieldUntil([&] { return std::erase(fLog, report) == 1; })) << report;
  }

  // One input after the other, all at once.
  static void SendInputs(std::vector<INPUT> inputs) {
    const UINT count = static_cast<UINT>(inputs.size());
    EXPECT_EQ(SendInput(count, inputs.data(), sizeof(INPUT)), count);
  }
  static INPUT KeyInput(WORD key, DWORD flags = 0) {
    INPUT input = {};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.wScan = static_cast<WORD>(MapVirtualKeyW(key, MAPVK_VK_TO_VSC));
    input.ki.dwFlags = flags;
    return input;
  }
  static INPUT ButtonInput(DWORD flags) {
    INPUT input = {};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = flags;
    return input;
  }
  // Buttons at a place of the screen. They carry it along, all at once: a display may tell of moves late, and
  // two presses are a double click on a slow machine, too.
  static void Click(const POINT& place, const std::vector<DWORD>& buttons) {
    std::vector<INPUT> inputs = {ButtonInput(MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE)};
    inputs[0].mi.dx = (place.x * 65536 + 32768) / GetSystemMetrics(SM_CXSCREEN);
    inputs[0].mi.dy = (place.y * 65536 + 32768) / GetSystemMetrics(SM_CYSCREEN);
    for (const DWORD button : buttons) inputs.push_back(ButtonInput(button));
    SendInputs(inputs);
  }

  // The hidden window of this class in this process.
  static HWND FindHiddenWindow(const wchar_t* className) {
    HWND hwnd = nullptr;
    DWORD processId = 0;
    while ((hwnd = FindWindowExW(HWND_MESSAGE, hwnd, className, nullptr)) != nullptr) {
      GetWindowThreadProcessId(hwnd, &processId);
      if (processId == GetCurrentProcessId()) break;
    }
    return hwnd;
  }
  static HWND FindMessageWindow() { return FindHiddenWindow(L"Hollowbrook Message Window"); }
  static HWND FindHiderWindow() { return FindHiddenWindow(L"Hollowbrook Hider Window"); }
  // Whether this application holds the record by which second launches find it.
  bool HoldsInstanceRecord() const {
    const HANDLE mapping = OpenFileMappingW(FILE_MAP_READ, FALSE, (fCompany + L"Scenario").c_str());
    if (mapping) CloseHandle(mapping);
    return mapping != nullptr;
  }
  static int IdleCalls() { return RecordingRunBehavior::fIdleCalls; }

  CallLog fLog;
  Watchdog fWatchdog;
  std::wstring fCompany;
  bool fIsSecondProcess;
  ClientDebugOutput& fOutput = ClientDebugOutput::Get();
  RunHooks fHooks;
  CloseHook fOnRequestClose;
  std::deque<std::function<void()>> fSteps;
  TStartupParams fParams = {};
  IMorvane* fMorvane = nullptr;

 private:
  void ThenUntil(ULONGLONG deadline, std::function<bool()> condition, std::function<void()> step) {
    Then([=, this] {
      if (condition()) return step();
      if (GetTickCount64() > deadline) {
        ADD_FAILURE() << "waited in vain; the last call was " << (fLog.empty() ? "none" : fLog.back());
        return Quit();
      }
      Sleep(1);
      ThenUntil(deadline, condition, step);
    });
  }
};

}  // namespace NSMorvaneTest
