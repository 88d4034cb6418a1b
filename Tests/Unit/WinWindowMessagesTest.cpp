// What of the message function no client can see: listeners, the order of the stages, and that the table has
// no effect on forwarding.
#include <gtest/gtest.h>

#include <functional>
#include <memory>

#include "Component/Win/MorvaneImplWin.h"
#include "Component/Win/WinDocumentWindow.h"
#include "Interface/MorvaneDefaults.h"
#include "Tests/Support/RecordingDebugOutput.h"

using namespace NSMorvane;
using NSMorvaneTest::RecordingDebugOutput;

namespace {

using Calls = std::vector<std::string>;

// Runs an application with one document window, for the length of a function.
class TestRun : public CDefaultRunBehavior {
 public:
  static void WithWindow(std::function<void(CWinWindow&)> scenario) {
    RecordingDebugOutput output;
    TError error = kOtherError;
    const std::unique_ptr<IMorvane> morvane(Morvane_Create("IMorvane", &error));
    ASSERT_EQ(error, kOK);
    TStartupParams params = {};
    CopyText(params.fCompanyName, u"Unit Test " + AsciiText(std::to_string(GetCurrentProcessId())));
    CopyText(params.fProductName, u"Messages");
    CopyText(params.fDisplayName, u"Messages");
    EXPECT_EQ(morvane->IMorvane_SetDebugSettings({}), kOK);
    EXPECT_EQ(morvane->IMorvane_Run(new TestRun(*morvane, std::move(scenario)), params), kOK);
    EXPECT_EQ(output.fAssertions, Calls());
  }

  TError IMorvaneRunBehavior_OnStartUp() override {
    CDocumentWindowFactory<CDefaultDocumentWindowBehavior> factory;
    TError error = kOtherError;
    IDocumentWindow* const window = fMorvane.IMorvane_CreateDocumentWindow(factory, 0, 0, error);
    EXPECT_EQ(error, kOK);
    CWinWindow& winWindow = dynamic_cast<CWinWindow&>(*window);
    const HWND hwnd = winWindow.GetHwnd();
    fScenario(winWindow);
    if (IsWindow(hwnd)) window->IDocumentWindow_Release();
    return fMorvane.IMorvane_StartQuitting();
  }
  TError IMorvaneRunBehavior_OnUnhandledError(TError error) override {
    ADD_FAILURE() << "unhandled error " << error;
    return kOK;
  }

 private:
  TestRun(IMorvane& morvane, std::function<void(CWinWindow&)> scenario)
      : fMorvane(morvane), fScenario(std::move(scenario)) {}

  IMorvane& fMorvane;
  std::function<void(CWinWindow&)> fScenario;
};

class Listener : public IWinMsgEventListener {
 public:
  Listener(Calls& calls, const char* name) : fCalls(calls), fName(name) {}

  LRESULT IWinMsgEventListener_OnMessage(TWinMessage& message) override {
    if (message.fMessage != fMessage) return 0;
    fCalls.push_back(fName);
    fSeen = message;
    if (fHook) fHook();
    message.fHandled = fHandles;
    return 4711;
  }

  Calls& fCalls;
  std::string fName;
  UINT fMessage = WM_GETDLGCODE;
  bool fHandles = false;
  std::function<void()> fHook;
  TWinMessage fSeen = {};
};

}  // namespace

TEST(WinWindowMessages, ListenersSeeEveryMessageUntilOneHandlesIt) {
  TestRun::WithWindow([](CWinWindow& window) {
    Calls calls;
    Listener first(calls, "first"), second(calls, "second"), third(calls, "third");
    for (Listener* listener : {&first, &second, &third}) window.AddMsgEventListener(listener);
    const auto send = [&] {
      calls.clear();
      return SendMessageW(window.GetHwnd(), first.fMessage, 12, 34);
    };
    // The result of a message that is forwarded is the platform's.
    EXPECT_EQ(send(), 0);
    EXPECT_EQ(calls, (Calls{"first", "second", "third"}));
    second.fHandles = true;
    EXPECT_EQ(send(), 0);
    EXPECT_EQ(calls, (Calls{"first", "second"}));

    // Handled or not, the table runs.
    first.fHandles = true;
    first.fMessage = WM_ERASEBKGND;
    EXPECT_EQ(send(), 0);
    first.fMessage = WM_HELP;
    EXPECT_EQ(send(), 1);
    EXPECT_EQ(calls, Calls{"first"});

    // Listeners may leave while they are called, and take others along.
    first.fMessage = WM_GETDLGCODE;
    first.fHandles = second.fHandles = false;
    first.fHook = [&] {
      window.RemoveMsgEventListener(&first);
      window.RemoveMsgEventListener(&second);
    };
    send();
    EXPECT_EQ(calls, (Calls{"first", "third"}));
    send();
    EXPECT_EQ(calls, Calls{"third"});
    window.RemoveMsgEventListener(&second);  // not there
    window.RemoveMsgEventListener(&third);
  });
}

TEST(WinWindowMessages, AListenerMayEndTheWindow) {
  TestRun::WithWindow([](CWinWindow& window) {
    Calls calls;
    Listener listener(calls, "listener");
    const HWND hwnd = window.GetHwnd();
    listener.fHook = [&] {
      window.ReleaseWindow();
      EXPECT_TRUE(IsWindow(hwnd));
    };
    window.AddMsgEventListener(&listener);
    // The message is not forwarded any more, so that the listener's result stands.
    EXPECT_EQ(SendMessageW(hwnd, listener.fMessage, 0, 0), 4711);
    EXPECT_FALSE(IsWindow(hwnd));
  });
}

TEST(WinWindowMessages, ControlsHaveListenersOfTheirOwn) {
  TestRun::WithWindow([](CWinWindow& window) {
    const HWND hwnd = window.GetHwnd();
    const HWND control =
        CreateWindowExW(0, L"BUTTON", L"", WS_CHILD, 0, 0, 10, 10, hwnd, nullptr, nullptr, nullptr);
    ASSERT_NE(control, nullptr);
    Calls calls;
    Listener listener(calls, "control");
    window.AddControlListener(control, &listener);
    NMHDR ofControl = {control, 1, 2}, ofWindow = {hwnd, 1, 2};
    const auto param = [](auto* of) { return reinterpret_cast<LPARAM>(of); };
    const struct {
      UINT fMessage;
      LPARAM fParam;
      std::size_t fCalls;
    } rows[] = {{WM_COMMAND, param(control), 1},
                {WM_HSCROLL, param(control), 1},
                {WM_VSCROLL, param(control), 1},
                {WM_NOTIFY, param(&ofControl), 1},
                {WM_COMMAND, 0, 0},
                {WM_NOTIFY, param(&ofWindow), 0}};
    for (const auto& row : rows) {
      calls.clear();
      listener.fMessage = row.fMessage;
      SendMessageW(hwnd, row.fMessage, 5, row.fParam);
      EXPECT_EQ(calls.size(), row.fCalls) << row.fMessage;
    }
    DestroyWindow(control);
    listener.fMessage = WM_NOTIFY;
    SendMessageW(hwnd, WM_NOTIFY, 1, param(&ofControl));
    EXPECT_EQ(calls, Calls());
    window.RemoveControlListener(control);
  });
}
