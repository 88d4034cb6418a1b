// The chain of listeners on a native window, and what happens when parts of it go during a message.
#include "Component/Win/Platform/NativeWindowWrapper.h"

#include <atomic>
#include <functional>
#include <thread>

#include "Tests/Support/NativeTestWindow.h"
#include "Tests/Support/UnitTest.h"

using namespace NSMorvaneTest;

namespace {

constexpr UINT kMessage = WM_APP + 1, kNested = WM_APP + 2;

// Who saw a message of this file, in order; "proc" is the procedure of the window itself.
std::string gTrace;

void Trace(const std::string& name, UINT message) {
  if (message != kMessage && message != kNested) return;
  gTrace += (gTrace.empty() ? "" : " ") + name + (message == kNested ? "2" : "");
}

std::function<void()> gAtProc;

LRESULT CALLBACK TracingProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
  Trace("proc", message);
  if (message != kMessage && message != kNested) return DefWindowProcW(hwnd, message, wParam, lParam);
  if (gAtProc) gAtProc();
  return 77;
}

// Calls on, after an action if there is one; or ends the chain with a result.
class Listener : public INativeWindowWrapper_ProcListener {
 public:
  explicit Listener(const char* name, LRESULT result = 0) : fName(name), fResult(result) {}
  LRESULT WindowProc(CNativeWindowWrapper& wrapper, HWND hwnd, UINT message, WPARAM wParam,
                     LPARAM lParam) override {
    Trace(fName, message);
    if (message == kMessage && fAction) fAction();
    return message == kMessage && fResult ? fResult
                                          : wrapper.CallNextProc(this, hwnd, message, wParam, lParam);
  }
  const char* fName;
  LRESULT fResult;
  std::function<void()> fAction;
};

int gHookCalls;
std::function<void()> gAtHook;

class NativeWindowWrapperTest : public ReportingTest {
 protected:
  NativeWindowWrapperTest() {
    gHookCalls = 0;
    gAtHook = gAtProc = nullptr;
    gAfterNativeMessage = [] {
      ++gHookCalls;
      if (gAtHook) gAtHook();
    };
  }
  ~NativeWindowWrapperTest() override { gAfterNativeMessage = nullptr; }

  LONG_PTR Proc() const { return GetWindowLongPtrW(fWindow, GWLP_WNDPROC); }
  // The result of a message, and who saw it.
  std::string Send() {
    gTrace.clear();
    const LRESULT result = SendMessageW(fWindow, kMessage, 0, 0);
    return std::to_string(result) + ": " + gTrace;
  }

  NativeTestWindow fWindow{WS_OVERLAPPEDWINDOW, nullptr, L"test", 0, TracingProc};
};

}  // namespace

TEST_F(NativeWindowWrapperTest, NestedMessagesAndChangesDoNotDisturbTheOuterWalk) {
  CNativeWindowWrapper wrapper(fWindow);
  Listener a("a"), b("b"), c("c");
  b.fAction = [&] {
    SendMessageW(fWindow, kNested, 0, 0);
    wrapper.AddProcListener(&c);
    SendMessageW(fWindow, kNested, 0, 0);
    wrapper.RemoveProcListener(&a);
  };
  wrapper.AddProcListener(&a);
  wrapper.AddProcListener(&b);
  EXPECT_EQ("77: b b2 a2 proc2 c2 b2 a2 proc2 proc", Send());
  EXPECT_EQ("", TakeReports());
  // One that ends the chain.
  Listener silent("silent", 5);
  wrapper.AddProcListener(&silent);
  EXPECT_EQ("5: silent", Send());
  for (Listener* listener : {&b, &b, &silent, &c}) wrapper.RemoveProcListener(listener);
  EXPECT_EQ("77: proc", Send());
}

TEST_F(NativeWindowWrapperTest, WhatIsWrongIsReported) {
  const LONG_PTR before = Proc();
  {
    CNativeWindowWrapper wrapper(fWindow);
    Listener a("a", 5);
    wrapper.AddProcListener(&a);
    a.fAction = [] { throw 5; };
    EXPECT_EQ("0: a", Send());
    EXPECT_EQ("false", TakeReports());
    EXPECT_EQ(0, gHookCalls);
    wrapper.RemoveProcListener(&a);
    // A second wrapper on the window.
    { CNativeWindowWrapper second(fWindow); }
    EXPECT_TRUE(Has(TakeReports(), "oldProc!=reinterpret_cast<LONG_PTR>(WindowProcCallback)"));
    EXPECT_EQ("77: proc", Send());
  }
  EXPECT_EQ(before, Proc());
  // One that outlives its window.
  const HWND gone = fWindow;
  {
    CNativeWindowWrapper wrapper(fWindow);
    fWindow.Destroy();
  }
  EXPECT_EQ("false; CheckInvariant(); 0!=oldProc", TakeReports());
  WindowProcCallback(gone, kMessage, 0, 0);
  EXPECT_TRUE(Has(TakeReports(), "it!=gNativeWindowWrapperMap.end()"));
  EXPECT_THROW(CNativeWindowWrapper{gone}, std::bad_alloc);
}

// --- Ends during a message

TEST_F(NativeWindowWrapperTest, NothingIsTouchedAfterTheWrapperHasGone) {
  const LONG_PTR before = Proc();
  // It goes in the previous procedure, in a listener further back, in the listener in front.
  for (const int place : {0, 1, 2}) {
    // On a page of its own, which cannot be touched any more once the wrapper has been deleted.
    void* const page =
        VirtualAlloc(nullptr, sizeof(CNativeWindowWrapper), MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE);
    CNativeWindowWrapper* const wrapper = new (page) CNativeWindowWrapper(fWindow);
    Listener back("back"), front("front");
    wrapper->AddProcListener(&back);
    wrapper->AddProcListener(&front);
    const auto end = [&] {
      wrapper->RemoveProcListener(&back);
      wrapper->RemoveProcListener(&front);
      wrapper->~CNativeWindowWrapper();
      DWORD protection;
      VirtualProtect(page, sizeof(CNativeWindowWrapper), PAGE_NOACCESS, &protection);
      back.fResult = front.fResult = 78;
    };
    gAtProc = nullptr;
    if (place == 0) gAtProc = end;
    if (place == 1) back.fAction = end;
    if (place == 2) front.fAction = end;
    EXPECT_EQ(place == 0 ? "77: front back proc" : place == 1 ? "78: front back" : "78: front", Send());
    EXPECT_EQ(before, Proc());
    EXPECT_EQ(place == 2, TakeReports().empty());
  }
}

TEST_F(NativeWindowWrapperTest, OverriderGoesWithItsWindow) {
  static int living = 0;
  class Overrider : public CWindowProcOverrider {
   public:
    explicit Overrider(HWND hwnd) : CWindowProcOverrider(hwnd) { ++living; }

   private:
    ~Overrider() override { --living; }
  };
  const LONG_PTR before = Proc();
  new Overrider(fWindow);
  EXPECT_EQ("77: proc", Send());
  EXPECT_EQ(1, living);
  LONG_PTR atLastMessage = 0;
  gAtHook = [&] { atLastMessage = Proc(); };
  fWindow.Destroy();
  EXPECT_EQ(0, living);
  EXPECT_EQ(before, atLastMessage);
}

TEST_F(NativeWindowWrapperTest, ThreadsHaveTheirWindowsSideBySide) {
  // One subclasses again and again while the other's messages look their wrapper up.
  std::atomic<int> waiting = 3;
  const auto meet = [&] {
    for (--waiting; waiting > 0;) std::this_thread::yield();
  };
  const auto change = [&] {
    const NativeTestWindow window(WS_POPUP);
    meet();
    for (int i = 0; i < 1000; ++i) CNativeWindowWrapper wrapper(window);
  };
  const auto use = [&] {
    const NativeTestWindow window(WS_POPUP);
    CNativeWindowWrapper wrapper(window);
    meet();
    for (int i = 0; i < 20000; ++i) SendMessageW(window, WM_NULL, 0, 0);
  };
  gAfterNativeMessage = [] {};
  std::thread first(change), second(use), third(change);
  for (std::thread* thread : {&first, &second, &third}) thread->join();
}
