// A document window of a client, with a behaviour that records what it is told and does what a test asks for
// in the middle of it; and views of the same make.
#pragma once

#include <algorithm>
#include <map>
#include <utility>

#include "Support/ClientFixture.h"
#include "Support/PrintGeometry.h"

namespace NSMorvane {

inline bool operator==(const TSize& a, const TSize& b) {
  return a.fWidth == b.fWidth && a.fHeight == b.fHeight;
}
inline bool operator==(const TRect& a, const TRect& b) {
  return a.fLeft == b.fLeft && a.fTop == b.fTop && a.fRight == b.fRight && a.fBottom == b.fBottom;
}

}  // namespace NSMorvane

namespace NSMorvaneTest {

// By the name of the callback, without its class, what to do in it. What is not there answers kOK.
using CallHooks = std::map<std::string, Hook<>>;

inline TError RunHook(const CallHooks& hooks, const std::string& name) {
  const auto it = hooks.find(name);
  return it == hooks.end() ? kOK : it->second();
}

// What a behaviour works on. The test owns it, so that it outlives the window.
struct WindowRecord {
  // Empty for menu bar set-ups, which come in any number.
  CallLog fLog;
  CallHooks fHooks;
  std::vector<std::pair<TSize, TSize>> fSizes;
  std::vector<std::pair<TDocumentWindowPlacement, TDocumentWindowPlacement>> fPlacements;
  IDocumentWindow* fWindow = nullptr;
  HWND fHwnd = nullptr;
  int fMenuBarSetups = 0;
  TFlag fTakesKeys = 0;
  IMenuBarState* fMenuBar = nullptr;  // while it is being set up
  TMenuCommandEvent fCommand = {};    // the last one
  bool fIsDeleted = false;

  std::size_t Count(const std::string& entry) const {
    return static_cast<std::size_t>(std::count(fLog.begin(), fLog.end(), entry));
  }
};

inline std::wstring NativeTitleOf(HWND hwnd) {
  std::wstring title(static_cast<std::size_t>(GetWindowTextLengthW(hwnd)) + 1, L'\0');
  title.resize(static_cast<std::size_t>(GetWindowTextW(hwnd, title.data(), static_cast<int>(title.size()))));
  return title;
}

inline TSize NativeClientSize(HWND hwnd) {
  RECT client = {};
  GetClientRect(hwnd, &client);
  return {client.right, client.bottom};
}

class RecordingWindowBehavior : public IDocumentWindowBehavior {
 public:
  RecordingWindowBehavior(IDocumentWindow& window, WindowRecord& record) : fRecord(record) {
    fRecord.fWindow = &window;
    fRecord.fHwnd = HwndOf(window);
  }
  ~RecordingWindowBehavior() override {
    RunHook(fRecord.fHooks, "deleted");
    fRecord.fIsDeleted = true;
    fRecord.fLog.push_back("deleted");
  }

  TError IDocumentWindowBehavior_OnClientSizeChanged(const TSize& oldSize, const TSize& newSize) override {
    fRecord.fSizes.emplace_back(oldSize, newSize);
    return Call("OnClientSizeChanged");
  }
  TError IDocumentWindowBehavior_OnPlacementChanged(const TDocumentWindowPlacement& oldPlacement,
                                                    const TDocumentWindowPlacement& newPlacement) override {
    fRecord.fPlacements.emplace_back(oldPlacement, newPlacement);
    return Call("OnPlacementChanged");
  }
  TError IDocumentWindowBehavior_OnActivationChanged(TFlag active) override {
    return Call("OnActivationChanged " + std::to_string(active));
  }
  TError IDocumentWindowBehavior_HandleKeyDown(const TKeyEvent&, TFlag& outHandled) override {
    outHandled = fRecord.fTakesKeys;
    return Call("HandleKeyDown");
  }
  TError IDocumentWindowBehavior_OnKeyboardFocusChanged(TFlag focused) override {
    return Call("OnKeyboardFocusChanged " + std::to_string(focused));
  }
  TError IDocumentWindowBehavior_OnSetupMenuBar(IMenuBarState& state) override {
    ++fRecord.fMenuBarSetups;
    fRecord.fMenuBar = &state;
    return RunHook(fRecord.fHooks, "OnSetupMenuBar");
  }
  TError IDocumentWindowBehavior_OnMenuCommand(const TMenuCommandEvent& event, TFlag& outHandled) override {
    fRecord.fCommand = event;
    outHandled = 0;
    return Call("OnMenuCommand");
  }
  TError IDocumentWindowBehavior_OnHelpRequested(TFlag& outHandled) override {
    outHandled = 0;
    return Call("OnHelpRequested");
  }
  // Closes the window unless there is a hook.
  TError IDocumentWindowBehavior_OnRequestClose(TCloseReason reason) override {
    const std::string name = "OnRequestClose " + std::to_string(reason);
    fRecord.fLog.push_back(name);
    if (fRecord.fHooks.count(name)) return RunHook(fRecord.fHooks, name);
    return fRecord.fWindow->IDocumentWindow_Release();
  }

 private:
  TError Call(const std::string& name) {
    fRecord.fLog.push_back(name);
    return RunHook(fRecord.fHooks, name);
  }

  WindowRecord& fRecord;
};

// The hook "factory" runs before the behaviour is made, with the window in the record; a code from it is what
// the factory answers.
class RecordingWindowFactory : public IDocumentWindowBehaviorFactory {
 public:
  explicit RecordingWindowFactory(WindowRecord& record) : fRecord(record) {}

  IDocumentWindowBehavior* IDocumentWindowBehaviorFactory_CreateBehavior(IDocumentWindow& window,
                                                                         TError& outError) override {
    fRecord.fWindow = &window;
    fRecord.fHwnd = HwndOf(window);
    outError = RunHook(fRecord.fHooks, "factory");
    return outError == kOK ? new RecordingWindowBehavior(window, fRecord) : nullptr;
  }

 private:
  WindowRecord& fRecord;
};

// Views of one test write into one log, each with its name in front.
struct ViewRecord {
  CallLog& fLog;
  std::string fName;
  CallHooks fHooks;
  HWND fNativeFocusTarget = nullptr;
  TFlag fTakesKeys = 0;
  TKeyEvent fLastKey = {};
  IMenuBarState* fMenuBar = nullptr;  // while it is being set up
};

class RecordingFocusViewBehavior : public CDefaultViewBehavior {
 public:
  RecordingFocusViewBehavior(IView&, ViewRecord& record) : fRecord(record) {}
  ~RecordingFocusViewBehavior() override { fRecord.fLog.push_back(fRecord.fName + " deleted"); }

  TError IViewBehavior_OnOnDutyFocusChanged(TFlag gained) override {
    return Call(gained == 1 ? "gained" : "lost");
  }
  TError IViewBehavior_HandleKeyDown(const TKeyEvent& event, TFlag& outHandled) override {
    fRecord.fLastKey = event;
    outHandled = fRecord.fTakesKeys;
    return Call("key");
  }
  TError IViewBehavior_GetNativeFocusTarget(TNativeWindow& out) override {
    out.fHwnd = fRecord.fNativeFocusTarget;
    return RunHook(fRecord.fHooks, "GetNativeFocusTarget");
  }
  TError IViewBehavior_OnSetupMenuBar(IMenuBarState& state) override {
    fRecord.fMenuBar = &state;
    return RunHook(fRecord.fHooks, "OnSetupMenuBar");
  }

 private:
  TError Call(const std::string& name) {
    fRecord.fLog.push_back(fRecord.fName + " " + name);
    return RunHook(fRecord.fHooks, name);
  }

  ViewRecord& fRecord;
};

// An application with one document window, whose steps have a turn of the loop each.
class ClientWindowTest : public ClientTest {
 protected:
  IDocumentWindow* Create(TStyleFlags style, WindowRecord& record, TError wantedError = kOK) {
    RecordingWindowFactory factory(record);
    TError error = kProgrammingError;
    IDocumentWindow* const window = fMorvane->IMorvane_CreateDocumentWindow(factory, style, fIsListed, error);
    EXPECT_EQ(error, wantedError);
    EXPECT_EQ(window != nullptr, wantedError == kOK);
    return window;
  }
  // Runs the application with one document window. Each step has a turn of the loop of its own; then the
  // application quits.
  void RunWithWindow(TStyleFlags style, const Steps& steps) {
    fHooks.fOnQuitEvent = [this] { Quit(); };
    RunFrom([&] {
      Create(style, fRecord);
      RunSteps(steps);
    });
    EXPECT_TRUE(fRecord.fIsDeleted);
    EXPECT_FALSE(IsWindow(fRecord.fHwnd));
    EXPECT_EQ(std::count_if(fLog.begin(), fLog.end(),
                            [](const std::string& entry) { return entry.starts_with("OnUnhandledError"); }),
              0);
  }

  template <std::invocable TStep>
  void RunWithWindow(TStyleFlags style, TStep step) {
    RunWithWindow(style, Steps{step});
  }

  IDocumentWindow& Window() { return *fRecord.fWindow; }
  HWND Hwnd() const { return fRecord.fHwnd; }
  TDocumentWindowState State() {
    TDocumentWindowState state = {};
    EXPECT_EQ(Window().IDocumentWindow_GetState(state), kOK);
    return state;
  }
  template <class TChange>
  void Change(TChange&& change, TError wantedError = kOK) {
    EXPECT_EQ(ChangeState(Window(), change), wantedError);
  }

  TFlag fIsListed = 1;  // whether window menus list the windows that are made
  WindowRecord fRecord;
};

}  // namespace NSMorvaneTest
