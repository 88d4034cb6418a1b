// Windows of all four kinds, for a client that looks at them from outside: what they are natively, in which
// order they lie, which of them can be used.
#pragma once

#include <algorithm>

#include "Support/RecordingWindow.h"

namespace NSMorvaneTest {

// A window of any kind. The hook "factory" runs before the behaviour is there; "OnRequestClose" replaces the
// release. The test owns it, so that it outlives the window.
struct KindRecord {
  CallLog fLog;
  CallHooks fHooks;
  HWND fHwnd = nullptr;
  IWindow* fWindow = nullptr;
  IModalOwner* fOwner = nullptr;  // null for floating windows
  std::function<TError()> fRelease;
  std::function<TError()> fFocusNow;
  int fMenuBarSetups = 0;

  std::size_t Count(const std::string& entry) const {
    return static_cast<std::size_t>(std::count(fLog.begin(), fLog.end(), entry));
  }
  TError Call(const std::string& name) {
    fLog.push_back(name);
    return RunHook(fHooks, name);
  }
};

#define MORVANE_TEST_KIND(Kind, TakeModalOwner)                                                 \
  class Kind##Recorder : public CDefault##Kind##Behavior {                                      \
   public:                                                                                      \
    Kind##Recorder(I##Kind& window, KindRecord& record)                                         \
        : CDefault##Kind##Behavior(window), fRecord(record) {                                   \
      TNativeWindow native = {};                                                                \
      fRecord.fWindow = &WindowOf(window);                                                      \
      EXPECT_EQ(fRecord.fWindow->IWindow_GetNativeWindow(native), kOK);                         \
      fRecord.fHwnd = native.fHwnd;                                                             \
      TakeModalOwner;                                                                           \
      fRecord.fRelease = [&window] { return window.I##Kind##_Release(); };                      \
      fRecord.fFocusNow = [&window] { return window.I##Kind##_FocusNow(); };                    \
      ThrowIfFailed(RunHook(fRecord.fHooks, "factory"));                                        \
    }                                                                                           \
    ~Kind##Recorder() override { fRecord.Call("deleted"); }                                     \
    TError I##Kind##Behavior_OnPlacementChanged(const T##Kind##Placement&,                      \
                                                const T##Kind##Placement&) override {           \
      return fRecord.Call("OnPlacementChanged");                                                \
    }                                                                                           \
    TError I##Kind##Behavior_OnActivationChanged(TFlag active) override {                       \
      return fRecord.Call("OnActivationChanged " + std::to_string(active));                     \
    }                                                                                           \
    TError I##Kind##Behavior_OnSetupMenuBar(IMenuBarState&) override {                          \
      ++fRecord.fMenuBarSetups;                                                                 \
      return kOK;                                                                               \
    }                                                                                           \
    TError I##Kind##Behavior_OnRequestClose(TCloseReason reason) override {                     \
      fRecord.fLog.push_back("OnRequestClose " + std::to_string(reason));                       \
      return fRecord.fHooks.count("OnRequestClose") ? RunHook(fRecord.fHooks, "OnRequestClose") \
                                                    : fRecord.fRelease();                       \
    }                                                                                           \
                                                                                                \
   private:                                                                                     \
    KindRecord& fRecord;                                                                        \
  }

#define MORVANE_TEST_OWNER(Kind) EXPECT_EQ(window.I##Kind##_GetModalOwner(fRecord.fOwner), kOK)
MORVANE_TEST_KIND(DocumentWindow, MORVANE_TEST_OWNER(DocumentWindow));
MORVANE_TEST_KIND(ModelessDialog, MORVANE_TEST_OWNER(ModelessDialog));
MORVANE_TEST_KIND(ModalDialog, MORVANE_TEST_OWNER(ModalDialog));
MORVANE_TEST_KIND(FloatingWindow, static_cast<void>(0));
#undef MORVANE_TEST_OWNER
#undef MORVANE_TEST_KIND

enum class Kind { kDocument, kModeless, kModal, kFloating };

// The shown windows of this process, the front one first.
inline std::vector<HWND> ShownInOrder() {
  std::vector<HWND> windows;
  EnumWindows(
      [](HWND hwnd, LPARAM param) {
        DWORD process = 0;
        GetWindowThreadProcessId(hwnd, &process);
        if (process == GetCurrentProcessId() && IsWindowVisible(hwnd))
          reinterpret_cast<std::vector<HWND>*>(param)->push_back(hwnd);
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&windows));
  return windows;
}

// An application whose steps have a turn of the loop each, and which releases what is left at the end.
class WindowKindsTest : public ClientTest {
 protected:
  // Null for a window that could not be made, and for a blocking dialog, which is through then.
  void* Make(Kind kind, KindRecord& record, TStyleFlags style = 0, IModalOwner* owner = nullptr,
             TFlag blocking = 0, TError wantedError = kOK) {
    TError error = kProgrammingError;
    void* made = nullptr;
    switch (kind) {
      case Kind::kDocument: {
        CDocumentWindowFactory<DocumentWindowRecorder, KindRecord&> factory(record);
        made = fMorvane->IMorvane_CreateDocumentWindow(factory, style, 0, error);
        break;
      }
      case Kind::kModeless: {
        CModelessDialogFactory<ModelessDialogRecorder, KindRecord&> factory(record);
        made = fMorvane->IMorvane_CreateModelessDialog(factory, style, 0, error);
        break;
      }
      case Kind::kModal: {
        CModalDialogFactory<ModalDialogRecorder, KindRecord&> factory(record);
        made = fMorvane->IMorvane_CreateModalDialog(factory, owner, blocking, style, error);
        break;
      }
      case Kind::kFloating: {
        CFloatingWindowFactory<FloatingWindowRecorder, KindRecord&> factory(record);
        made = fMorvane->IMorvane_CreateFloatingWindow(factory, style, error);
        break;
      }
    }
    EXPECT_EQ(error, wantedError);
    return made;
  }
  void RunWith(const Steps& steps) {
    RunFrom([&] { RunSteps(steps); });
    EXPECT_EQ(ShownInOrder(), std::vector<HWND>());
  }
  // Not every system raises a window that becomes active.
  static void BringToFront(KindRecord& record) {
    EXPECT_EQ(record.fFocusNow(), kOK);
    SetWindowPos(record.fHwnd, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
  }
  static void Release(KindRecord& record) { EXPECT_EQ(record.fRelease(), kOK); }
};

}  // namespace NSMorvaneTest
