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
    EXPECT_EQ(first.fSeen.fHwnd, window.GetHwnd());
    EXPECT_EQ(first.fSeen.fWParam, 12u);
    EXPECT_EQ(first.fSeen.fLParam, 34);
    EXPECT_FALSE(third.fSeen.fHandled);

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
    send();
    EXPECT_EQ(calls, Calls());
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
    const auto countOf = [&](UINT message, WPARAM wParam, LPARAM lParam) {
      calls.clear();
      listener.fMessage = message;
      SendMessageW(hwnd, message, wParam, lParam);
      return calls.size();
    };
    NMHDR header = {control, 1, 2};
    const LPARAM controlParam = reinterpret_cast<LPARAM>(control);
    const LPARAM headerParam = reinterpret_cast<LPARAM>(&header);
    EXPECT_EQ(countOf(WM_COMMAND, 5, controlParam), 1u);
    EXPECT_EQ(listener.fSeen.fWParam, 5u);
    EXPECT_EQ(countOf(WM_HSCROLL, 0, controlParam), 1u);
    EXPECT_EQ(countOf(WM_VSCROLL, 0, controlParam), 1u);
    EXPECT_EQ(countOf(WM_NOTIFY, 1, headerParam), 1u);
    EXPECT_EQ(countOf(WM_COMMAND, 5, 0), 0u);
    EXPECT_EQ(countOf(WM_COMMAND, 5, reinterpret_cast<LPARAM>(hwnd)), 0u);
    header.hwndFrom = hwnd;
    EXPECT_EQ(countOf(WM_NOTIFY, 1, headerParam), 0u);
    header.hwndFrom = control;
    window.RemoveControlListener(control);
    EXPECT_EQ(countOf(WM_COMMAND, 5, controlParam), 0u);
    window.AddControlListener(control, &listener);
    DestroyWindow(control);
    EXPECT_EQ(countOf(WM_COMMAND, 5, controlParam), 0u);
    EXPECT_EQ(countOf(WM_NOTIFY, 1, headerParam), 0u);
    window.RemoveControlListener(control);
  });
}

TEST(WinWindowMessages, KeyMessages) {
  const auto make = [](UINT message, WPARAM wParam, LPARAM lParam) {
    return MakeKeyMessage(reinterpret_cast<HWND>(7), message, wParam, lParam);
  };
  for (const UINT message : {UINT{WM_CHAR}, UINT{WM_DEADCHAR}, UINT{WM_MOUSEMOVE}, UINT{WM_UNICHAR}})
    EXPECT_FALSE(make(message, 'A', 0)) << message;
  EXPECT_FALSE(make(WM_KEYDOWN, 255, 0));
  const struct {
    UINT fMessage;
    WPARAM fWParam;
    LPARAM fLParam;
    int fKey;
    int fScanCode;
    bool fIsRepeat;
    bool fIsExtended;
  } rows[] = {
      {WM_KEYDOWN, 'A', 0x001E0001, 'A', 0x1E, false, false},
      {WM_KEYDOWN, 'A', 0x401E0001, 'A', 0x1E, true, false},
      {WM_KEYDOWN, 0x1241, 0x011E0001, 'A', 0x1E, false, true},
      {WM_SYSKEYDOWN, VK_F10, 0x40440001, VK_F10, 0x44, true, false},
      {WM_KEYUP, VK_RIGHT, static_cast<LPARAM>(0xC14D0001), VK_RIGHT, 0x4D, false, true},
      {WM_SYSKEYUP, VK_MENU, static_cast<LPARAM>(0xC0380001), VK_MENU, 0x38, false, false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fMessage);
    const auto key = make(row.fMessage, row.fWParam, row.fLParam);
    ASSERT_TRUE(key);
    EXPECT_EQ(key->fHwnd, reinterpret_cast<HWND>(7));
    EXPECT_EQ(key->fVirtualKey, row.fKey);
    EXPECT_EQ(key->fScanCode, row.fScanCode);
    EXPECT_EQ(key->fIsRepeat, row.fIsRepeat);
    EXPECT_EQ(key->fIsExtended, row.fIsExtended);
  }
}
