// Every call of the system that the library makes fails once: the first, the second and the last time that it
// is made in a scenario. The client gets a code or one delivered error, nothing is left behind, and the next
// try succeeds.
#include <windows.h>

#include <commdlg.h>
#include <shlobj.h>

#include <iostream>
#include <map>
#include <set>

#include "Support/ClientWindows.h"
#include "Support/HandleCounts.h"
#include "Support/ImportFailures.h"
#include "Support/PatchedImport.h"

namespace NSMorvaneTest {

class FailuresTest : public ClientWindowTest {
 protected:
  struct Text : IData {
    std::uint32_t IData_CheckInvariant() const override { return 1; }
    TError IData_GetSize(std::uint64_t& out) override {
      out = sizeof(kBytes);
      return kOK;
    }
    TError IData_Read(std::uint64_t offset, std::uint64_t size, void* buffer) override {
      std::memcpy(buffer, kBytes + offset, static_cast<std::size_t>(size));
      return kOK;
    }
    static constexpr char kBytes[6] = {'a', 0, 'b', 0, 0, 0};
  };
  struct Getter : IClipboardDataGetter {
    IData* IClipboardDataGetter_GetData(const TClipboardFormat&, TError& outError) override {
      outError = kOK;
      return new Text;
    }
  };
  struct Painter : CDefaultViewBehavior {
    using CDefaultViewBehavior::CDefaultViewBehavior;
    TError IViewBehavior_Draw(IDrawTools& tools) override {
      TNativePort port = {};
      const TError error = tools.IDrawTools_OpenNativePort(port);
      if (error != kOK) return error;
      return tools.IDrawTools_CloseNativePort();
    }
  };
  struct Document : CDefaultDocumentWindowBehavior {
    using CDefaultDocumentWindowBehavior::CDefaultDocumentWindowBehavior;
    TError IDocumentWindowBehavior_OnSetupMenuBar(IMenuBarState& state) override {
      TMenuItem items[2] = {};
      CopyText(items[0].fText, u"One");
      CopyText(items[1].fText, u"Two");
      state.IMenuBarState_SetMenuTitle(kMenu1, u"More");
      return state.IMenuBarState_SetMenuItems(kMenu1, items, sizeof(items));
    }
  };

  // --- Scenarios. Each answers the first code, and leaves nothing behind, whatever fails.

  // A window with views that draw in different ways, painted, resized, and its menu bar set up anew.
  TError UseWindow() {
    CDocumentWindowFactory<Document> factory;
    TError error = kProgrammingError;
    IDocumentWindow* const window = fMorvane->IMorvane_CreateDocumentWindow(factory, kSizeable, 1, error);
    EXPECT_EQ(window != nullptr, error == kOK);
    if (!window) return error;
    std::vector<IView*> views;
    for (const std::uint32_t mode : {kViewDrawDirect, kViewDrawTemporary32, kViewDrawPermanent16}) {
      CViewFactory<Painter> viewFactory;
      TError viewError = kOK;
      IView* const view = fMorvane->IMorvane_CreateView(viewFactory, RootViewOf(*window), "view", viewError);
      if (error == kOK) error = viewError;
      if (!view) continue;
      views.push_back(view);
      view->IView_SetParams(
          {kViewEnabled, {10, 10, 200, 100}, static_cast<TViewDrawMode>(mode), kAutoInvalidationFull});
    }
    Turn();
    const TError changed =
        ChangeState(*window, [](TDocumentWindowState& state) { state.fPlacement.fUserRect.fRight += 20; });
    if (error == kOK) error = changed;
    fMorvane->IMorvane_RequestMenuBarsSetup();
    Turn();
    for (IView* const view : views) view->IView_Release();
    window->IDocumentWindow_Release();
    Turn();
    return error;
  }
  TError UseAlert() {
    TAlertSpec spec = {};
    spec.fKind = kAlertNote;
    spec.fButtonLayout = kAlertOneButton;
    CopyText(spec.fMessage, u"Message");
    CopyText(spec.fButton1, u"_OK");
    const TError error = fMorvane->IMorvane_CreateAlertBox(nullptr, 0, spec, nullptr);
    Turn();
    for (const HWND hwnd : ShownInOrder())
      if (GetDlgItem(hwnd, IDOK)) SendMessageW(hwnd, WM_CLOSE, 0, 0);
    Turn();
    return error;
  }
  TError UseClipboard() {
    const TClipboardFormat formats[] = {{"utxt"}, {"own"}};
    auto getter = std::make_unique<Getter>();
    const TError error = fMorvane->IMorvane_ReplaceClipboardContents(formats, 2, getter.get());
    if (error != kOK) return error;
    getter.release();
    TFlag exists = 0;
    const TError asked = fMorvane->IMorvane_IsFormatOnClipboard(formats[0], exists);
    if (asked != kOK || !exists) return asked == kOK ? kOtherError : asked;
    TError got = kOK;
    delete fMorvane->IMorvane_GetClipboardData(formats[0], got);
    return got;
  }
  TError UseIcons() {
    std::vector<std::uint8_t> pixels(181 * 130 * 4, 0xFF);
    TError error = kOK;
    const std::unique_ptr<IIcon> icon(fMorvane->IMorvane_CreatePixmapIcon(pixels.data(), error));
    return error;
  }
  TError UseControl() {
    CViewOf<CDefaultControlViewBehavior> view;
    CHostedControl control(*fMorvane);
    TError error = view.Create(*fMorvane, RootViewOf(*fRecord.fDocument), "view", ControlViewParams());
    if (error == kOK) error = control.Create(*view.View(), L"EDIT", u"abc", 0);
    if (error == kBadInputProgrammingError) return kOtherError;  // a parent that is not told is none
    if (error != kOK) return error;
    for (const UINT message : {WM_MOUSEMOVE, WM_MOUSELEAVE, WM_SETFOCUS, WM_KILLFOCUS})
      SendMessageW(control.Hwnd(), message, 0, 0);
    Turn();
    EXPECT_EQ(control.Text(), u"abc");
    return error;
  }
  // Counts its results.
  struct Chooser : IOpenDialogBehavior, IDirectoryChooserBehavior {
    TError IOpenDialogBehavior_OnPerform(const char* const*, std::uint32_t) override { return Count(); }
    TError IOpenDialogBehavior_OnCancel() override { return Count(); }
    TError IDirectoryChooserBehavior_OnPerform(const char*) override { return Count(); }
    TError IDirectoryChooserBehavior_OnCancel() override { return Count(); }
    TError Count() {
      ++fResults;
      return kOK;
    }
    int fResults = 0;
  };
  TError UseFileDialog(TFlag isBlocking) {
    Chooser chooser;
    TFileType type = {};
    CopyText(type.fExtensions, u".txt");
    const TError error =
        fMorvane->IMorvane_CreateOpenDialog(&chooser, 0, nullptr, isBlocking, 0, &type, 1, nullptr, nullptr);
    if (error != kOK) return error;
    EXPECT_TRUE(YieldUntil([&] { return chooser.fResults == 1; }));
    return error;
  }
  TError UseFolderChooser() {
    Chooser chooser;
    const TError error = fMorvane->IMorvane_CreateDirectoryChooserDialog(&chooser, 3, nullptr, 1, u"Where?");
    if (error != kOK) return error;
    EXPECT_TRUE(YieldUntil([&] { return chooser.fResults == 1; }));
    return error;
  }

  // --- The trial

  ImportFailures& Imports() {
    static ImportFailures& imports = *new ImportFailures(L"Morvane.dll");  // to the end of the process
    return imports;
  }
  // What was made and not given back, by the calls that were counted. GetIconInfo makes two bitmaps.
  std::vector<std::int64_t> Balance() {
    const auto sum = [this](std::initializer_list<const char*> names) {
      std::int64_t calls = 0;
      for (const char* name : names) calls += Imports().CallsOf(name);
      return calls;
    };
    return {sum({"CreateCompatibleDC", "CreateDCW"}) - sum({"DeleteDC"}),
            sum({"CreateBitmap", "CreateCompatibleBitmap", "CreateDIBSection", "CreateRectRgn", "CreatePen",
                 "CreateSolidBrush", "GetIconInfo", "GetIconInfo"}) -
                sum({"DeleteObject"}),
            sum({"GetDC"}) - sum({"ReleaseDC"}), sum({"OpenClipboard"}) - sum({"CloseClipboard"}),
            sum({"CreateAcceleratorTableW"}) - sum({"DestroyAcceleratorTable"})};
  }
  // Of this thread, shown or not, with the windows in them.
  static std::vector<HWND> AllWindows() {
    std::vector<HWND> windows;
    const WNDENUMPROC add = [](HWND hwnd, LPARAM list) -> BOOL {
      reinterpret_cast<std::vector<HWND>*>(list)->push_back(hwnd);
      return TRUE;
    };
    EnumThreadWindows(GetCurrentThreadId(), add, reinterpret_cast<LPARAM>(&windows));
    const std::vector<HWND> topLevel = windows;
    for (const HWND hwnd : topLevel) EnumChildWindows(hwnd, add, reinterpret_cast<LPARAM>(&windows));
    std::ranges::sort(windows);
    return windows;
  }
  // Each use makes its surfaces anew, and none that is kept for later paints hides one that is lost.
  void FailEachCall(const std::function<TError()>& scenario) {
    if (!fRecord.fHwnd) Open();  // a document that stays, so that nobody is asked to quit
    const auto use = [&] {
      const TError error = scenario();
      SendMessageW(Hwnd(), WM_DISPLAYCHANGE, 32, MAKELPARAM(1280, 960));
      return error;
    };
    ImportFailures& imports = Imports();
    // What is made once and kept.
    for (int i = 0; i < 2; ++i) ASSERT_EQ(use(), kOK);
    for (ImportFailures::Import& import : imports.All()) import.fCalls = 0;
    ASSERT_EQ(use(), kOK);
    std::map<ImportFailures::Import*, std::uint64_t> callsInOneUse;
    for (ImportFailures::Import& import : imports.All())
      if (!imports.IsOnlyCounted(import) && import.fCalls > 0) callsInOneUse[&import] = import.fCalls;
    EXPECT_EQ(fOutput.TakeAssertions(), "");
    const std::vector<HWND> windows = AllWindows();
    fUntold.clear();
    // What a failure makes the library keep for good, a larger pool say, it keeps from the first pass on.
    for (const bool isFirstPass : {true, false}) {
      const std::vector<std::int64_t> balance = Balance();
      const std::int64_t kernel = KernelHandles();
      int points = 0;
      for (const auto& [import, calls] : callsInOneUse) {
        for (const std::uint64_t point : PointsOf(import->fName, calls)) {
          FailOnce(*import, point, use);
          EXPECT_EQ(AllWindows(), windows) << import->fName << ", call " << point;
          ++points;
        }
        if (isFirstPass) continue;
        SCOPED_TRACE("after " + import->fName);
        EXPECT_EQ(use(), kOK) << "the next try";
        EXPECT_EQ(fOutput.TakeAssertions(), "");
      }
      EXPECT_EQ(use(), kOK);
      fOutput.TakeAssertions();
      if (isFirstPass) continue;
      EXPECT_EQ(Balance(), balance);
      EXPECT_LE(KernelHandles(), kernel);
      for (const std::string& name : kTold)
        EXPECT_FALSE(fUntold.contains(name)) << name << " failed in silence";
      std::cout << callsInOneUse.size() << " functions failed at " << points << " points" << std::endl;
    }
  }
  // Of the calls of one function. Those that make surfaces come from different places in one use.
  static std::set<std::uint64_t> PointsOf(const std::string& name, std::uint64_t calls) {
    std::set<std::uint64_t> points = {1, std::min<std::uint64_t>(2, calls), calls};
    if (name == "CreateCompatibleDC" || name == "CreateDIBSection")
      for (std::uint64_t point = 3; point < calls; ++point) points.insert(point);
    return points;
  }
  void FailOnce(ImportFailures::Import& import, std::uint64_t point, const std::function<TError()>& use) {
    SCOPED_TRACE(import.fName + ", call " + std::to_string(point));
    fRun.fLog.Take();
    import.fFailingCall = import.fCalls + point;
    const TError error = use();
    if (import.fCalls >= std::exchange(import.fFailingCall, 0)) --import.fCalls;  // it has made nothing
    EXPECT_TRUE(error == kOK || error == kOtherError || error == kOutOfMemoryError) << error;
    const int reports = CountReports();
    EXPECT_LE(reports, 1);
    if (error == kOK && reports == 0) fUntold.insert(import.fName);
    EXPECT_EQ(ShownInOrder(), std::vector<HWND>{Hwnd()});
    fOutput.TakeAssertions();  // they tell of the failure
  }
  int CountReports() {
    const std::string log = fRun.fLog.Take();
    int count = 0;
    for (std::size_t at = log.find("UnhandledError"); at != log.npos; at = log.find("UnhandledError", at + 1))
      ++count;
    return count;
  }

  // Those that have failed without the client's being told, which is right for what the library can do
  // without.
  std::set<std::string> fUntold;
  // It cannot do without these, in any scenario.
  inline static const std::set<std::string> kTold = {
      "CreateWindowExW",   "RegisterClassExW", "SetTimer",         "BeginPaint",
      "CreateMenu",        "CreatePopupMenu",  "AppendMenuW",      "SetMenu",
      "CreateThread",      "CreateEventW",     "GlobalAlloc",      "GlobalLock",
      "EmptyClipboard",    "SetClipboardData", "GetClipboardData", "RegisterClipboardFormatW",
      "CreateIconIndirect"};
};

TEST_IN_RUN(FailuresTest, Windows) {
  // With what the debug layers do when a window is painted, and the debug menu.
  EXPECT_EQ(fMorvane->IMorvane_SetDebugSettings({1, 1, 1, 1, 0, 0, 0}), kOK);
  FailEachCall([this] { return UseWindow(); });
}

TEST_IN_RUN(FailuresTest, Alerts) {
  FailEachCall([this] { return UseAlert(); });
}

TEST_IN_RUN(FailuresTest, ClipboardAndIcons) {
  FailEachCall([this] { return UseClipboard(); });
  FailEachCall([this] { return UseIcons(); });
}

TEST_IN_RUN(FailuresTest, NativeControls) {
  FailEachCall([this] { return UseControl(); });
}

// And what is remembered at their end. What the user does is made up.
TEST_IN_RUN(FailuresTest, StartsOfFileDialogs) {
  static BOOL (*const answer)(OPENFILENAMEW*) = [](OPENFILENAMEW* record) -> BOOL {
    std::wcscpy(record->lpstrFile, L"C:\\x.txt");
    record->nFileOffset = 3;
    return TRUE;
  };
  Imports();
  const PatchedImport open(L"Morvane.dll", "GetOpenFileNameW", answer);
  FailEachCall([this] { return UseFileDialog(0); });
  static LPITEMIDLIST (*const browse)(BROWSEINFOW*) = [](BROWSEINFOW*) { return LPITEMIDLIST(); };
  const PatchedImport choose(L"Morvane.dll", "SHBrowseForFolderW", browse);
  // On this thread, with functions that are looked up late.
  FailEachCall([this] { return UseFileDialog(1); });
  FailEachCall([this] { return UseFolderChooser(); });
  RegDeleteTreeW(HKEY_CURRENT_USER, (L"Software\\" + fCompany).c_str());
}

}  // namespace NSMorvaneTest
