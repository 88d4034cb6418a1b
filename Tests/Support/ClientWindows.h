// Windows of a client, of all kinds, and views in them: behaviours that write down what they are told and do
// what a test asks for in the middle of it.
//
// Calls of windows are words like those of the run.
//
// Windows have names in some tests, which tell their kinds: doc1, modeless, floating; anything else is a
// modal dialog. What is done with them is a text of steps:
//
//   +doc1     is made                  -doc1   is released by its client
//   +A<doc1   a dialog with an owner   ^doc1   comes to the front
//
// Their closing and end stand in the log of the run, as "doc1.RequestClose:0" and "doc1.deleted". A picture
// tells of those that are shown, the front one first: "A+* doc1 doc2+". Behind a plus the window can be used,
// with a star it is the active one.
#pragma once

#include <sstream>

#include "Support/ClientFixture.h"
#include "Support/PrintGeometry.h"

namespace NSMorvane {

inline bool operator==(const TPoint& a, const TPoint& b) { return a.fX == b.fX && a.fY == b.fY; }
inline bool operator==(const TSize& a, const TSize& b) {
  return a.fWidth == b.fWidth && a.fHeight == b.fHeight;
}
inline bool operator==(const TRect& a, const TRect& b) {
  return a.fLeft == b.fLeft && a.fTop == b.fTop && a.fRight == b.fRight && a.fBottom == b.fBottom;
}

}  // namespace NSMorvane

namespace NSMorvaneTest {

constexpr TStyleFlags kPlain = 0;
constexpr TStyleFlags kSizeable = kWindowResizableBit | kWindowZoomableBit;

inline TRect NativeRect(const RECT& rect) { return {rect.left, rect.top, rect.right, rect.bottom}; }
inline TRect NativeFrame(HWND hwnd) {
  RECT frame = {};
  GetWindowRect(hwnd, &frame);
  return NativeRect(frame);
}
inline TSize NativeClientSize(HWND hwnd) {
  RECT client = {};
  GetClientRect(hwnd, &client);
  return {client.right, client.bottom};
}
inline TRect NativeNormalRect(HWND hwnd) {
  WINDOWPLACEMENT placement = {};
  placement.length = sizeof(placement);
  GetWindowPlacement(hwnd, &placement);
  return NativeRect(placement.rcNormalPosition);
}
inline std::wstring NativeTitle(HWND hwnd) {
  wchar_t title[3000] = {};
  GetWindowTextW(hwnd, title, 3000);
  return title;
}
inline std::wstring NativeClass(HWND hwnd) {
  wchar_t name[100] = {};
  GetClassNameW(hwnd, name, 100);
  return name;
}
inline void MoveNative(HWND hwnd, int x, int y) {
  SetWindowPos(hwnd, nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}
inline void SizeNative(HWND hwnd, int width, int height) {
  SetWindowPos(hwnd, nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}
inline TPoint MiddleOf(const TRect& rect) {
  return {(rect.fLeft + rect.fRight) / 2, (rect.fTop + rect.fBottom) / 2};
}

// --- Windows

enum class Kind { kDocument, kModeless, kModal, kFloating };

// Of a window with this name.
inline Kind KindOf(const std::string& name) {
  return name.starts_with("doc")        ? Kind::kDocument
         : name.starts_with("modeless") ? Kind::kModeless
         : name.starts_with("floating") ? Kind::kFloating
                                        : Kind::kModal;
}

// What a behaviour works on. The test owns it, so that it outlives the window. The hook "factory" runs before
// the behaviour is there, with the window in the record; a code from it is what the factory answers. Without
// a hook "RequestClose" the window closes when it is asked to.
struct WindowRecord : CallRecorder {
  HWND fHwnd = nullptr;
  IWindow* fWindow = nullptr;
  IModalOwner* fOwner = nullptr;         // null for floating windows
  IDocumentWindow* fDocument = nullptr;  // null for other kinds
  std::function<TError()> fRelease;
  std::function<TError()> fFocusNow;
  std::vector<std::pair<TSize, TSize>> fSizes;
  std::vector<std::pair<TDocumentWindowPlacement, TDocumentWindowPlacement>> fPlacements;
  IMenuBarState* fMenuBar = nullptr;  // the last one
  int fMenuBarSetups = 0;
  std::string fName;
  CallLog* fEndLog = nullptr;  // where closing and end are written, too, under the name

  TError RequestClose(TCloseReason reason) {
    const bool isHooked = fHooks.contains("RequestClose");
    const TError error = CallOfEnd("RequestClose", ":" + std::to_string(reason));
    return isHooked ? error : fRelease();
  }
  TError CallOfEnd(const std::string& name, const std::string& argument = "") {
    if (fEndLog) fEndLog->Add(fName + name + argument);
    return Call(name, argument);
  }
  void Keep(const TDocumentWindowPlacement& before, const TDocumentWindowPlacement& now) {
    fPlacements.emplace_back(before, now);
  }
  template <class TPlacement>
  void Keep(const TPlacement&, const TPlacement&) {}
  void KeepDocument(IDocumentWindow& window) { fDocument = &window; }
  template <class TKind>
  void KeepDocument(TKind&) {}
};

#define MORVANE_TEST_KIND(Kind, KeepOwner)                                                               \
  class Kind##Recorder : public CDefault##Kind##Behavior {                                               \
   public:                                                                                               \
    Kind##Recorder(I##Kind& window, WindowRecord& record)                                                \
        : CDefault##Kind##Behavior(window), fRecord(record) {                                            \
      TNativeWindow native = {};                                                                         \
      record.fWindow = &WindowOf(window);                                                                \
      EXPECT_EQ(record.fWindow->IWindow_GetNativeWindow(native), kOK);                                   \
      record.fHwnd = native.fHwnd;                                                                       \
      record.KeepDocument(window);                                                                       \
      KeepOwner;                                                                                         \
      record.fRelease = [&window] { return window.I##Kind##_Release(); };                                \
      record.fFocusNow = [&window] { return window.I##Kind##_FocusNow(); };                              \
      ThrowIfFailed(record.CallUnlogged("factory"));                                                     \
    }                                                                                                    \
    ~Kind##Recorder() override { fRecord.CallOfEnd("deleted"); }                                         \
    TError I##Kind##Behavior_OnClientSizeChanged(const TSize& before, const TSize& now) override {       \
      fRecord.fSizes.emplace_back(before, now);                                                          \
      return fRecord.Call("ClientSizeChanged");                                                          \
    }                                                                                                    \
    TError I##Kind##Behavior_OnPlacementChanged(const T##Kind##Placement& before,                        \
                                                const T##Kind##Placement& now) override {                \
      fRecord.Keep(before, now);                                                                         \
      return fRecord.Call("PlacementChanged");                                                           \
    }                                                                                                    \
    TError I##Kind##Behavior_OnActivationChanged(TFlag active) override {                                \
      return fRecord.Call("ActivationChanged", ":" + std::to_string(active));                            \
    }                                                                                                    \
    TError I##Kind##Behavior_HandleKeyDown(const TKeyEvent&, TFlag& outHandled) override {               \
      return fRecord.Call("HandleKeyDown", "", &outHandled);                                             \
    }                                                                                                    \
    TError I##Kind##Behavior_OnKeyboardFocusChanged(TFlag focused) override {                            \
      return fRecord.Call("KeyboardFocusChanged", ":" + std::to_string(focused));                        \
    }                                                                                                    \
    TError I##Kind##Behavior_OnSetupMenuBar(IMenuBarState& state) override {                             \
      ++fRecord.fMenuBarSetups;                                                                          \
      fRecord.fMenuBar = &state;                                                                         \
      return fRecord.CallUnlogged("SetupMenuBar");                                                       \
    }                                                                                                    \
    TError I##Kind##Behavior_OnMenuCommand(const TMenuCommandEvent& event, TFlag& outHandled) override { \
      return fRecord.Call("MenuCommand", ":" + std::to_string(event.fCommand), &outHandled);             \
    }                                                                                                    \
    TError I##Kind##Behavior_OnHelpRequested(TFlag& outHandled) override {                               \
      return fRecord.Call("HelpRequested", "", &outHandled);                                             \
    }                                                                                                    \
    TError I##Kind##Behavior_OnRequestClose(TCloseReason reason) override {                              \
      return fRecord.RequestClose(reason);                                                               \
    }                                                                                                    \
                                                                                                         \
   private:                                                                                              \
    WindowRecord& fRecord;                                                                               \
  }

#define MORVANE_TEST_KEEP_OWNER(Kind) EXPECT_EQ(window.I##Kind##_GetModalOwner(record.fOwner), kOK)
MORVANE_TEST_KIND(DocumentWindow, MORVANE_TEST_KEEP_OWNER(DocumentWindow));
MORVANE_TEST_KIND(ModelessDialog, MORVANE_TEST_KEEP_OWNER(ModelessDialog));
MORVANE_TEST_KIND(ModalDialog, MORVANE_TEST_KEEP_OWNER(ModalDialog));
MORVANE_TEST_KIND(FloatingWindow, static_cast<void>(0));
#undef MORVANE_TEST_KEEP_OWNER
#undef MORVANE_TEST_KIND

// --- The fixture

class ClientWindowTest : public ClientTest, protected NamedViews<IView> {
 protected:
  ClientWindowTest() {
    fRun.fHooks["QuitEvent"] = [this] { Quit(); };
  }

  // --- Windows

  // Null for a window that could not be made, and for a blocking dialog, which is through then.
  void* Make(Kind kind, WindowRecord& record, TStyleFlags style = kPlain, IModalOwner* owner = nullptr,
             TFlag blocking = 0, TError wantedError = kOK) {
    TError error = kProgrammingError;
    void* made = nullptr;
    CDocumentWindowFactory<DocumentWindowRecorder, WindowRecord&> documentFactory(record);
    CModelessDialogFactory<ModelessDialogRecorder, WindowRecord&> modelessFactory(record);
    CModalDialogFactory<ModalDialogRecorder, WindowRecord&> modalFactory(record);
    CFloatingWindowFactory<FloatingWindowRecorder, WindowRecord&> floatingFactory(record);
    switch (kind) {
      case Kind::kDocument:
        made = fMorvane->IMorvane_CreateDocumentWindow(documentFactory, style, fIsListed, error);
        break;
      case Kind::kModeless:
        made = fMorvane->IMorvane_CreateModelessDialog(modelessFactory, style, fIsDialogListed, error);
        break;
      case Kind::kModal:
        made = fMorvane->IMorvane_CreateModalDialog(modalFactory, owner, blocking, style, error);
        break;
      case Kind::kFloating:
        made = fMorvane->IMorvane_CreateFloatingWindow(floatingFactory, style, error);
        break;
    }
    EXPECT_EQ(error, wantedError);
    return made;
  }
  // The window that most of the helpers below are about.
  void Open(TStyleFlags style = kPlain) { Make(Kind::kDocument, fRecord, style); }
  static void Release(WindowRecord& record) { EXPECT_EQ(record.fRelease(), kOK); }
  static void PutAt(HWND place, WindowRecord& record) {
    SetWindowPos(record.fHwnd, place, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
  }
  // Not every system raises a window that becomes active.
  static void BringToFront(WindowRecord& record) {
    EXPECT_EQ(record.fFocusNow(), kOK);
    PutAt(HWND_TOP, record);
  }
  // --- Windows with names

  WindowRecord& MakeNamed(const std::string& name, const std::map<std::string, Hook>& hooks = {},
                          IModalOwner* owner = nullptr, TStyleFlags style = kWindowStyleBit23,
                          TFlag blocking = 0) {
    WindowRecord& record = fWindows[name];
    record = {};
    record.fName = name + ".";
    record.fEndLog = &fRun.fLog;
    record.fHooks = hooks;
    Make(KindOf(name), record, style, owner, blocking);
    return record;
  }
  void Do(const std::string& steps) {
    std::istringstream words(steps);
    for (std::string word; words >> word;) {
      const std::size_t bracket = word.find('<');
      const std::string name = word.substr(1, bracket - 1);
      if (word[0] == '+')
        MakeNamed(name, {}, bracket == word.npos ? nullptr : fWindows[word.substr(bracket + 1)].fOwner);
      if (word[0] == '-') Release(fWindows[name]);
      if (word[0] == '^') BringToFront(fWindows[name]);
    }
  }
  HWND HwndOf(const std::string& name) { return fWindows[name].fHwnd; }
  std::map<std::string, Hook>& HooksOf(const std::string& name) { return fWindows[name].fHooks; }
  // Empty for a window without one.
  std::string NameOf(HWND hwnd) const {
    for (const auto& [name, record] : fWindows)
      if (record.fHwnd == hwnd) return name;
    return "";
  }
  std::string Picture() {
    std::string text;
    for (const HWND hwnd : ShownInOrder()) {
      const std::string name = NameOf(hwnd);
      if (name.empty()) continue;
      text += (text.empty() ? "" : " ") + name;
      if (IsWindowEnabled(hwnd)) text += "+";
      if (GetActiveWindow() == hwnd) text += "*";
    }
    return text;
  }
  // The names of those that a client is told of.
  std::string Listed(
      TError (IMorvane::*list)(IWindowListReceiver&) = &IMorvane::IMorvane_GetDocumentWindowsZ) {
    CVectorWindowReceiver receiver;
    EXPECT_EQ((fMorvane->*list)(receiver), kOK);
    std::string text;
    for (IWindow* const window : receiver.fWindows) {
      TNativeWindow native = {};
      EXPECT_EQ(window->IWindow_GetNativeWindow(native), kOK);
      text += (text.empty() ? "" : " ") + NameOf(native.fHwnd);
    }
    return text;
  }

  // --- The window

  IWindow& Window() { return *fRecord.fWindow; }
  HWND Hwnd() const { return fRecord.fHwnd; }
  LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
    return SendMessageW(Hwnd(), message, wParam, lParam);
  }
  TDocumentWindowState State() {
    TDocumentWindowState state = {};
    EXPECT_EQ(fRecord.fDocument->IDocumentWindow_GetState(state), kOK);
    return state;
  }
  template <class TChange>
  void Change(TChange&& change) {
    EXPECT_EQ(ChangeState(*fRecord.fDocument, change), kOK);
  }
  // A place of the client area, on the screen.
  POINT OnScreen(POINT place) const {
    ClientToScreen(Hwnd(), &place);
    return place;
  }

  // --- Views

  // A view in the window. Null for the super view stands for the root view.
  TestView& MakeView(const std::string& name, const TRect& rect, IView* superView = nullptr,
                     std::uint32_t flags = kViewEnabled) {
    fViewRecord.fMakeShape = [this](TBuiltInMouseShape shape) {
      TError error = kOK;
      return fMorvane->IMorvane_CreateBuiltInMouseShape(shape, error);
    };
    CViewFactory<TestView, const std::string&, ViewRecord&> factory(name, fViewRecord);
    TError error = kOtherError;
    IView* const view = fMorvane->IMorvane_CreateView(
        factory, superView ? *superView : RootViewOf(*fRecord.fDocument), name.c_str(), error);
    EXPECT_EQ(error, kOK);
    EXPECT_EQ(view->IView_SetParams({flags, rect, kViewDrawDirect, kAutoInvalidationFull}), kOK);
    fViews.emplace_back(name, view);
    return *factory.Made();
  }
  void Leave() override { ReleaseViews(); }
  void SetFlags(const std::string& name, std::uint32_t flags) {
    TViewParams params = {};
    EXPECT_EQ(View(name)->IView_GetParams(params), kOK);
    params.fFlags = flags;
    EXPECT_EQ(View(name)->IView_SetParams(params), kOK);
  }
  void SetFocus(const std::string& name, TError wantedError = kOK) {
    EXPECT_EQ(Window().IWindow_SetConceptualFocusView(View(name)), wantedError);
  }
  std::string Focus() { return NameFrom(&IWindow::IWindow_GetConceptualFocusView); }
  std::string OnDuty() { return NameFrom(&IWindow::IWindow_GetOnDutyFocusView); }
  template <class TGet>
  std::string NameFrom(TGet get) {
    IView* view = nullptr;
    EXPECT_EQ((Window().*get)(view), kOK);
    return NamesOf(view ? &view : nullptr, view ? 1 : 0);
  }
  void SetTabViews(const std::vector<std::string>& names) {
    std::vector<IView*> views;
    for (const std::string& name : names) views.push_back(View(name));
    EXPECT_EQ(Window().IWindow_SetTabViews(views.data(), static_cast<std::uint32_t>(views.size())), kOK);
  }
  // A native control in the window, which dies with it.
  HWND MakeControl() {
    return CreateWindowExW(0, L"EDIT", L"", WS_CHILD | WS_VISIBLE, 10, 10, 50, 20, Hwnd(), nullptr,
                           GetModuleHandleW(nullptr), nullptr);
  }
  // For what goes along the focus chain: inner, leaf and other are focusable.
  //
  //   root
  //     outer
  //       inner
  //         leaf
  //     other
  void OpenWithFocusTree() {
    Open();
    const TRect rect = {10, 10, 90, 90};
    MakeView("outer", rect);
    MakeView("inner", rect, View("outer"), kViewEnabled | kViewFocusable);
    MakeView("leaf", rect, View("inner"), kViewEnabled | kViewFocusable);
    fOther = &MakeView("other", rect, nullptr, kViewEnabled | kViewFocusable);
  }
  // What the views write, during an action.
  std::string ViewCalls() { return fViewRecord.fLog.Take(); }
  std::string ViewCallsOf(const std::function<void()>& action) { return fViewRecord.CallsOf(action); }

  TFlag fIsListed = 1;        // whether window menus list the documents that are made
  TFlag fIsDialogListed = 0;  // and the modeless dialogs
  WindowRecord fRecord;
  std::map<std::string, WindowRecord> fWindows;
  ViewRecord fViewRecord;
  TestView* fOther = nullptr;
};

}  // namespace NSMorvaneTest
