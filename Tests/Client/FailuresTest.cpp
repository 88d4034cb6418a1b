// Every call of the system that the library makes fails once: the first, the second and the last time that it
// is made in a scenario. The client gets a code or one delivered error, nothing is left behind, and the next
// try succeeds.
#include <iostream>
#include <set>

#include "Support/ClientWindows.h"
#include "Support/ImportFailures.h"

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
  TError UseFileDialog() {
    struct Opener : IOpenDialogBehavior {
      TError IOpenDialogBehavior_OnPerform(const char* const*, std::uint32_t) override { return kOK; }
      TError IOpenDialogBehavior_OnCancel() override {
        fHasEnded = true;
        return kOK;
      }
      bool fHasEnded = false;
    } opener;
    TFileType type = {};
    CopyText(type.fExtensions, u".txt");
    const TError error =
        fMorvane->IMorvane_CreateOpenDialog(&opener, 0, nullptr, 0, 0, &type, 1, nullptr, nullptr);
    if (error != kOK) return error;
    const auto cancel = [](HWND hwnd, LPARAM) -> BOOL {
      DWORD process = 0;
      GetWindowThreadProcessId(hwnd, &process);
      if (process == GetCurrentProcessId() && GetDlgItem(hwnd, 1148))
        PostMessageW(hwnd, WM_COMMAND, IDCANCEL, 0);
      return TRUE;
    };
    EXPECT_TRUE(YieldUntil([&] {
      EnumWindows(cancel, 0);
      return opener.fHasEnded;
    }));
    return error;
  }

  // --- What is left behind

  // What was made and not given back, by the calls that were counted.
  static std::vector<std::int64_t> Balance(const ImportFailures& imports) {
    const auto sum = [&](std::initializer_list<const char*> names) {
      std::int64_t calls = 0;
      for (const char* name : names) calls += imports.CallsOf(name);
      return calls;
    };
    return {sum({"CreateCompatibleDC", "CreateDCW"}) - sum({"DeleteDC"}),
            sum({"CreateBitmap", "CreateCompatibleBitmap", "CreateDIBSection", "CreateRectRgn", "CreatePen",
                 "CreateSolidBrush"}) -
                sum({"DeleteObject"}),
            sum({"GetDC"}) - sum({"ReleaseDC"}), sum({"OpenClipboard"}) - sum({"CloseClipboard"}),
            sum({"CreateAcceleratorTableW"}) - sum({"DestroyAcceleratorTable"})};
  }
};

TEST_IN_RUN(FailuresTest, EveryCallOfTheSystemFailsOnce) {
  struct TScenario {
    const char* fName;
    std::function<TError()> fUse;
  };
  const std::vector<TScenario> scenarios = {{"window", [this] { return UseWindow(); }},
                                            {"alert", [this] { return UseAlert(); }},
                                            {"clipboard", [this] { return UseClipboard(); }},
                                            {"icons", [this] { return UseIcons(); }},
                                            {"file dialog", [this] { return UseFileDialog(); }}};
  // A document that stays, so that nobody asks to quit.
  Open();
  ImportFailures imports(L"Morvane.dll");
  std::set<std::string> tried;
  int points = 0;
  for (const TScenario& scenario : scenarios) {
    // What is made once and kept.
    for (int i = 0; i < 2; ++i) EXPECT_EQ(scenario.fUse(), kOK) << scenario.fName;
    for (ImportFailures::Import& import : imports.All()) {
      if (imports.IsOnlyCounted(import)) continue;
      const std::uint64_t before = import.fCalls;
      EXPECT_EQ(scenario.fUse(), kOK);
      const std::uint64_t calls = import.fCalls - before;
      for (const std::uint64_t point : std::set<std::uint64_t>{1, 2, calls}) {
        if (point == 0 || point > calls) continue;
        SCOPED_TRACE(std::string(scenario.fName) + ": " + import.fName + ", call " + std::to_string(point));
        tried.insert(import.fName);
        ++points;
        fRun.fLog.Take();
        const auto balance = Balance(imports);
        import.fFailingCall = import.fCalls + point;
        const TError error = scenario.fUse();
        import.fFailingCall = 0;
        EXPECT_TRUE(error == kOK || error == kOtherError || error == kOutOfMemoryError) << error;
        std::cout << scenario.fName << " " << import.fName << " " << point << ": " << error << " ["
                  << fRun.fLog.Take() << "] " << fOutput.TakeAssertions() << std::endl;
        EXPECT_EQ(ShownInOrder(), std::vector<HWND>{Hwnd()});
        EXPECT_EQ(scenario.fUse(), kOK) << "the next try";
        EXPECT_EQ(Balance(imports), balance);
      }
    }
  }
  std::cout << tried.size() << " functions, " << points << " points" << std::endl;
}

}  // namespace NSMorvaneTest
