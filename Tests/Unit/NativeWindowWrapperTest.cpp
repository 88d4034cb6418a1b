// The chain of listeners on a native window, and what happens when parts of it go during a message.
#include "Component/Win/NativeWindowWrapper.h"

#include <gtest/gtest.h>

#include <functional>
#include <latch>
#include <new>
#include <string>
#include <thread>

#include "Tests/Support/NativeTestWindow.h"
#include "Tests/Support/RecordingDebugOutput.h"

using namespace NSMorvane;
using NSMorvaneTest::NativeTestWindow;
using NSMorvaneTest::RecordingDebugOutput;

namespace {

constexpr UINT kMessage = WM_APP + 1, kNested = WM_APP + 2;

// Who saw a message of this file, in order; "proc" is the procedure of the window itself.
std::string gTrace;

void Trace(const char* name, UINT message) {
  if (message != kMessage && message != kNested) return;
  if (!gTrace.empty()) gTrace += ' ';
  gTrace += name;
  if (message == kNested) gTrace += '2';
}

LRESULT CALLBACK TracingProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
  Trace("proc", message);
  if (message == kMessage || message == kNested) return 77;
  return DefWindowProcW(hwnd, message, wParam, lParam);
}

class Listener : public INativeWindowWrapper_ProcListener {
 public:
  using Action = std::function<LRESULT(CNativeWindowWrapper&, HWND, UINT, WPARAM, LPARAM)>;
  explicit Listener(const char* name, Action action = {}) : fName(name), fAction(std::move(action)) {}
  LRESULT WindowProc(CNativeWindowWrapper& wrapper, HWND hwnd, UINT message, WPARAM wParam,
                     LPARAM lParam) override {
    Trace(fName, message);
    if (message == kMessage && fAction) return fAction(wrapper, hwnd, message, wParam, lParam);
    return wrapper.CallNextProc(this, hwnd, message, wParam, lParam);
  }
  const char* fName;
  Action fAction;
};

class NativeWindowWrapperTest : public testing::Test {
 protected:
  NativeWindowWrapperTest() {
    gTrace.clear();
    sHookCalls = 0;
    sAtHook = {};
    gAfterNativeMessage = [] {
      ++sHookCalls;
      if (sAtHook) sAtHook();
    };
  }
  ~NativeWindowWrapperTest() override { gAfterNativeMessage = nullptr; }

  static LONG_PTR ProcOf(HWND hwnd) { return GetWindowLongPtrW(hwnd, GWLP_WNDPROC); }
  static constexpr DWORD kStyle = WS_OVERLAPPEDWINDOW;

  static int sHookCalls;
  static std::function<void()> sAtHook;
  RecordingDebugOutput fOutput;
  NativeTestWindow fWindow{kStyle, nullptr, L"test", 0, TracingProc};
};

int NativeWindowWrapperTest::sHookCalls;
std::function<void()> NativeWindowWrapperTest::sAtHook;

// A wrapper on a page of its own, which cannot be touched any more once the wrapper has been deleted.
boost::shared_ptr<CNativeWindowWrapper> MakeGuardedWrapper(HWND hwnd) {
  void* const page =
      VirtualAlloc(nullptr, sizeof(CNativeWindowWrapper), MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE);
  return boost::shared_ptr<CNativeWindowWrapper>(
      new (page) CNativeWindowWrapper(hwnd), [](CNativeWindowWrapper* wrapper) {
        wrapper->~CNativeWindowWrapper();
        DWORD before;
        VirtualProtect(wrapper, sizeof(*wrapper), PAGE_NOACCESS, &before);
      });
}

}  // namespace

TEST_F(NativeWindowWrapperTest, MessagesRunNewestFirstAndThePreviousProcedureLast) {
  const LONG_PTR before = ProcOf(fWindow);
  {
    CNativeWindowWrapper wrapper(fWindow);
    Listener a("a"), b("b"), silent("silent", [](auto&&...) { return LRESULT{5}; });
    wrapper.AddProcListener(&a);
    wrapper.AddProcListener(&b);
    EXPECT_EQ(77, SendMessageW(fWindow, kMessage, 0, 0));
    EXPECT_EQ("b a proc", gTrace);

    wrapper.AddProcListener(&silent);
    gTrace.clear();
    EXPECT_EQ(5, SendMessageW(fWindow, kMessage, 0, 0));
    EXPECT_EQ("silent", gTrace);

    wrapper.RemoveProcListener(&b);
    wrapper.RemoveProcListener(&b);
    wrapper.RemoveProcListener(&silent);
    gTrace.clear();
    SendMessageW(fWindow, kMessage, 0, 0);
    EXPECT_EQ("a proc", gTrace);
    wrapper.RemoveProcListener(&a);
  }
  EXPECT_EQ(before, ProcOf(fWindow));
  EXPECT_TRUE(fOutput.fAssertions.empty());
}

TEST_F(NativeWindowWrapperTest, NestedMessagesAndChangesDoNotDisturbTheOuterWalk) {
  CNativeWindowWrapper wrapper(fWindow);
  Listener a("a"), c("c");
  Listener b("b", [&](CNativeWindowWrapper& w, HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    SendMessageW(hwnd, kNested, 0, 0);
    w.AddProcListener(&c);
    SendMessageW(hwnd, kNested, 0, 0);
    w.RemoveProcListener(&a);
    return w.CallNextProc(&b, hwnd, message, wParam, lParam);
  });
  wrapper.AddProcListener(&a);
  wrapper.AddProcListener(&b);
  EXPECT_EQ(77, SendMessageW(fWindow, kMessage, 0, 0));
  EXPECT_EQ("b b2 a2 proc2 c2 b2 a2 proc2 proc", gTrace);
  EXPECT_TRUE(fOutput.fAssertions.empty());

  // One that has left and still calls on.
  gTrace.clear();
  c.fAction = [&](CNativeWindowWrapper& w, HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    w.RemoveProcListener(&c);
    return w.CallNextProc(&c, hwnd, message, wParam, lParam);
  };
  EXPECT_EQ(77, SendMessageW(fWindow, kMessage, 0, 0));
  EXPECT_EQ("c proc", gTrace);
  EXPECT_EQ(std::vector<std::string>{"it!=fProcListeners.end()"}, fOutput.fAssertions);
  wrapper.RemoveProcListener(&b);
}

TEST_F(NativeWindowWrapperTest, WrongListenersAreReported) {
  CNativeWindowWrapper wrapper(fWindow);
  wrapper.AddProcListener(nullptr);
  wrapper.RemoveProcListener(nullptr);
  EXPECT_EQ((std::vector<std::string>{"0!=listener", "0!=listener"}), fOutput.fAssertions);
  Listener a("a", [](auto&&...) { return LRESULT{5}; });
  wrapper.AddProcListener(&a);
  wrapper.AddProcListener(&a);
  wrapper.RemoveProcListener(&a);  // one of the two
  EXPECT_EQ(5, SendMessageW(fWindow, kMessage, 0, 0));
  wrapper.RemoveProcListener(&a);
  EXPECT_EQ(77, SendMessageW(fWindow, kMessage, 0, 0));
}

TEST_F(NativeWindowWrapperTest, FailedSubclassingChangesNothing) {
  NativeTestWindow other;
  const HWND gone = other;
  other.Destroy();
  for (const HWND hwnd : {gone, HWND()}) {
    fOutput.Reset();
    EXPECT_THROW(CNativeWindowWrapper{hwnd}, std::bad_alloc);
    EXPECT_EQ(hwnd ? 0u : 1u, fOutput.fAssertions.size());
    EXPECT_EQ(!hwnd, fOutput.HasAssertion("0!=nativeWindow"));
  }
}

TEST_F(NativeWindowWrapperTest, WrapperOutlivingItsWindowIsReported) {
  const HWND gone = fWindow;
  {
    CNativeWindowWrapper wrapper(fWindow);
    fWindow.Destroy();
  }
  EXPECT_EQ((std::vector<std::string>{"false", "CheckInvariant()", "0!=oldProc"}), fOutput.fAssertions);
  fOutput.Reset();
  WindowProcCallback(gone, kMessage, 0, 0);
  EXPECT_TRUE(fOutput.HasAssertion("it!=gNativeWindowWrapperMap.end()"));
}

TEST_F(NativeWindowWrapperTest, ThrownThingsEndInTheProcedure) {
  CNativeWindowWrapper wrapper(fWindow);
  Listener a("a", [](auto&&...) -> LRESULT { throw 5; });
  wrapper.AddProcListener(&a);
  EXPECT_EQ(0, SendMessageW(fWindow, kMessage, 0, 0));
  EXPECT_EQ(std::vector<std::string>{"false"}, fOutput.fAssertions);
  EXPECT_EQ(0, sHookCalls);
  wrapper.RemoveProcListener(&a);
}

// --- Ends during a message

TEST_F(NativeWindowWrapperTest, NothingIsTouchedAfterTheWrapperHasGone) {
  // It goes in the previous procedure, in a listener further back, in the listener in front.
  static boost::shared_ptr<CNativeWindowWrapper> wrapper;
  static std::function<void()> atEnd;
  const WNDPROC endingProc = [](HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) -> LRESULT {
    if (message == kMessage) {
      if (atEnd) atEnd();
      return 78;
    }
    return DefWindowProcW(hwnd, message, wParam, lParam);
  };
  for (const int place : {0, 1, 2}) {
    NativeTestWindow window(kStyle, nullptr, L"test", 0, endingProc);
    const LONG_PTR before = ProcOf(window);
    wrapper = MakeGuardedWrapper(window);
    Listener back("back"), front("front");
    wrapper->AddProcListener(&back);
    wrapper->AddProcListener(&front);
    const auto end = [&](auto&&...) {
      wrapper->RemoveProcListener(&back);
      wrapper->RemoveProcListener(&front);
      wrapper.reset();
      return LRESULT{78};
    };
    atEnd = {};
    if (place == 0) atEnd = end;
    if (place == 1) back.fAction = end;
    if (place == 2) front.fAction = end;
    fOutput.Reset();
    EXPECT_EQ(78, SendMessageW(window, kMessage, 0, 0));
    EXPECT_FALSE(wrapper);
    EXPECT_EQ(before, ProcOf(window));
    EXPECT_EQ(place == 2, fOutput.fAssertions.empty());
  }
  atEnd = nullptr;
}

TEST_F(NativeWindowWrapperTest, OverriderGoesWithItsWindow) {
  static int living;
  class Overrider : public CWindowProcOverrider {
   public:
    explicit Overrider(HWND hwnd) : CWindowProcOverrider(hwnd) { ++living; }

   private:
    ~Overrider() override { --living; }
  };
  living = 0;
  const HWND hwnd = fWindow;
  const LONG_PTR before = ProcOf(hwnd);
  new Overrider(hwnd);
  EXPECT_EQ(77, SendMessageW(hwnd, kMessage, 0, 0));
  EXPECT_EQ(1, living);
  LONG_PTR atLastMessage = 0;
  sAtHook = [&] { atLastMessage = ProcOf(hwnd); };
  fWindow.Destroy();
  EXPECT_EQ(0, living);
  EXPECT_EQ(before, atLastMessage);
  EXPECT_TRUE(fOutput.fAssertions.empty());
}

TEST_F(NativeWindowWrapperTest, ThreadsHaveTheirWindowsSideBySide) {
  // One subclasses again and again while the other's messages look their wrapper up.
  std::latch ready(3);
  const auto change = [&] {
    const NativeTestWindow window(WS_POPUP);
    ready.arrive_and_wait();
    for (int i = 0; i < 1000; ++i) CNativeWindowWrapper wrapper(window);
  };
  const auto use = [&] {
    const NativeTestWindow window(WS_POPUP);
    CNativeWindowWrapper wrapper(window);
    ready.arrive_and_wait();
    for (int i = 0; i < 20000; ++i) SendMessageW(window, WM_NULL, 0, 0);
  };
  gAfterNativeMessage = [] {};
  std::thread first(change), second(use), third(change);
  first.join();
  second.join();
  third.join();
  EXPECT_TRUE(fOutput.fAssertions.empty());
}
