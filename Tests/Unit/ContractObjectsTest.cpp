// The contracts of views, windows, the kinds of windows, draw tools and icons, over hooks that only record.
#include <gtest/gtest.h>

#include <windows.h>

#include "Tests/Support/Contract.h"
#include "Tests/Support/FakeViewWindow.h"

namespace NSMorvaneTest {
namespace {

// clang-format off
class RecordingView : public CViewGlue, public Recorder {
 public:
  std::string fName = "name";
  TString fTooltip = u"tip";
  TViewParams fParams = {7, {}, kViewDrawDirect, kAutoInvalidationNone};
  std::vector<IView*> fSubViews;

 protected:
  bool CViewGlue_CheckInvariant() const override { return fSound; }
  IViewBehavior* CViewGlue_GetBehavior() override { Enter("GetBehavior"); return Give<IViewBehavior>("behavior"); }
  IWindow* CViewGlue_GetMotherWindow() override { Enter("GetMotherWindow"); return Give<IWindow>("window"); }
  IView* CViewGlue_GetSuperView() override { Enter("GetSuperView"); return Give<IView>("view"); }
  bool CViewGlue_IsEffectivelyEnabled() override { Enter("IsEffectivelyEnabled"); return true; }
  void CViewGlue_SetParams(const TViewParams& params) override { Enter("SetParams", params); }
  TViewParams CViewGlue_GetParams() override { Enter("GetParams"); return fParams; }
  std::string CViewGlue_GetDebugName() override { Enter("GetDebugName"); return fName; }
  TString CViewGlue_GetTooltipText() override { Enter("GetTooltipText"); return fTooltip; }
  void CViewGlue_SetTooltipText(const TString& text) override { Enter("SetTooltipText", text); }
  void CViewGlue_Offset(std::int32_t dx, std::int32_t dy) override { Enter("Offset", dx, dy); }
  std::vector<IView*> CViewGlue_GetSubViewOrder() override { Enter("GetOrder"); return fSubViews; }
  void CViewGlue_SetSubViewOrder(const std::vector<IView*>& order) override { Enter("SetOrder", order); }
  void CViewGlue_Release() override { Enter("Release"); }
};

// With a view that can have the focus.
class RecordedWindow : public FakeViewWindow, public Recorder {
 public:
  RecordedWindow() { Names()[&Root()] = "root", Names()[&fView] = "view"; }
  ~RecordedWindow() override { fView.IView_Release(); }
  CViewImpl& fView = MakeView(Root(), {0, 0, 9, 9}, "view", kViewEnabled | kViewFocusable);
  HWND fHwnd = GetDesktopWindow();

 protected:
  bool CWindowGlue_CheckInvariant() const override { return fSound; }
  TNativeWindow CWindowGlue_GetNativeWindow() override { Enter("GetNativeWindow"); return {fHwnd}; }
  CViewImpl* CWindowGlue_GetOnDutyFocusView() override { Enter("GetOnDuty"); return &fView; }
  CViewImpl* CWindowGlue_GetConceptualFocusView() override { Enter("GetConceptual"); return &fView; }
  void CWindowGlue_SetConceptualFocusView(CViewImpl* view) override { Enter("SetConceptual", view); }
  std::vector<CViewImpl*> CWindowGlue_GetTabViews() override { Enter("GetTabViews"); return {&fView}; }
  void CWindowGlue_SetTabViews(const std::vector<CViewImpl*>& views) override { Enter("SetTabViews", views); }
  CViewImpl* CWindowGlue_GetRootView() override {
    Enter("GetRootView"); return fGivesNull ? nullptr : FakeViewWindow::CWindowGlue_GetRootView();
  }
  bool CWindowGlue_IsActive() override { Enter("IsActive"); return true; }
  TRect CWindowGlue_GetFrameRect() override { Enter("GetFrameRect"); return {1, 2, 3, 4}; }
  TRect CWindowGlue_FrameRectToClientRect(const TRect& r) override { Enter("ToClient", r); return {1, 2, 3, 4}; }
  TRect CWindowGlue_ClientRectToFrameRect(const TRect& r) override { Enter("ToFrame", r); return {1, 2, 3, 4}; }
  std::uint8_t CWindowGlue_GetGlobalAlpha() override { Enter("GetGlobalAlpha"); return 99; }
  void CWindowGlue_SetGlobalAlpha(std::uint8_t alpha) override { Enter("SetGlobalAlpha", alpha); }
};

// The four kinds have the same operations, save that a floating window owns no modal dialog.
#define RECORDING_KIND(Kind, ...)                                                                              \
  class Recording##Kind : public C##Kind##Glue, public Recorder {                                              \
   public:                                                                                                     \
    Recording##Kind() { fState.fMinimumClientSize = {3, 3}, fState.fPlacement.fZoomState = kWindowStateIdeal; } \
    T##Kind##State fState{};                                                                                   \
                                                                                                               \
   protected:                                                                                                  \
    bool C##Kind##Glue_CheckInvariant() const override { return fSound; }                                      \
    T##Kind##State C##Kind##Glue_GetState() override { Enter("GetState"); return fState; }                     \
    void C##Kind##Glue_SetState(const T##Kind##State& state) override { Enter("SetState", state); }            \
    IWindow* C##Kind##Glue_GetWindow() override { Enter("GetWindow"); return Give<IWindow>("window"); }        \
    void C##Kind##Glue_FocusNow() override { Enter("FocusNow"); }                                              \
    I##Kind##Behavior* C##Kind##Glue_GetBehavior() override {                                                  \
      Enter("GetBehavior"); return Give<I##Kind##Behavior>("behavior");                                        \
    }                                                                                                          \
    void C##Kind##Glue_Release() override { Enter("Release"); }                                                \
    __VA_ARGS__                                                                                                \
  };
#define MODAL_OWNER(Kind)                                                                                      \
    IModalOwner* C##Kind##Glue_GetModalOwner() override {                                                      \
      Enter("GetModalOwner"); return Give<IModalOwner>("owner");                                               \
    }
RECORDING_KIND(DocumentWindow, MODAL_OWNER(DocumentWindow))
RECORDING_KIND(ModelessDialog, MODAL_OWNER(ModelessDialog))
RECORDING_KIND(ModalDialog, MODAL_OWNER(ModalDialog))
RECORDING_KIND(FloatingWindow)

class RecordingIcon : public CIconGlue, public Recorder {
 public:
  RecordingIcon() { Names()[this] = "icon"; }

 protected:
  bool CIconGlue_CheckInvariant() const override { return fSound; }
  bool CIconGlue_AreEqual(const CIconGlue&) const override { Enter("AreEqual"); return true; }
  std::unique_ptr<IIcon> CIconGlue_Clone() const override {
    Enter("Clone"); return std::unique_ptr<IIcon>(fGivesNull ? nullptr : const_cast<RecordingIcon*>(this));
  }
};

class RecordingTools : public CDrawToolsGlue, public Recorder {
 public:
  RecordingTools(HDC dc, HRGN region) : CDrawToolsGlue({dc}, region) {}
  TNativePort CDrawToolsGlue_GetNativePort() override { Enter("Open"); return fNativePort; }
  void CDrawToolsGlue_CloseNativePort() override { Enter("Close"); }
  TRawPixels CDrawToolsGlue_OpenRawPixels() override { Enter("OpenPixels"); return {}; }
  void CDrawToolsGlue_CloseRawPixels() override { Enter("ClosePixels"); }
  void CDrawToolsGlue_FlushToScreen(bool) override { Enter("Flush"); }
};
// clang-format on

using Name = std::array<char, kDebugNameChars + 1>;
using Tooltip = std::array<TChar, kTooltipTextChars + 1>;
const TViewParams kParams = {5, {}, kViewDrawDirect, kAutoInvalidationNone};

}  // namespace

// --- Views

TEST(ContractView, Operations) {
  auto& other = Dummy<IView>("view");
  static IView* const order[] = {&other};
  CheckGoodCalls<RecordingView>(
      "CViewGlue_CheckInvariant()",
      {{"IView_GetBehavior()", "GetBehavior", "behavior", "null",
        GIVE(IViewBehavior*, IView_GetBehavior(out))},
       {"IView_GetMotherWindow()", "GetMotherWindow", "window", "null",
        GIVE(IWindow*, IView_GetMotherWindow(out))},
       {"IView_GetSuperView()", "GetSuperView", "view", "null", GIVE(IView*, IView_GetSuperView(out))},
       {"IView_IsEffectivelyEnabled()", "IsEffectivelyEnabled", "1", "-",
        GIVE(TFlag, IView_IsEffectivelyEnabled(out))},
       {"IView_SetParams()", "SetParams {5}", "-", "-", CALL(IView_SetParams(kParams))},
       {"IView_GetParams()", "GetParams", "{7}", "EE", GIVE(TViewParams, IView_GetParams(out))},
       {"IView_GetDebugName()", "GetDebugName", "{110}", "-", GIVE(Name, IView_GetDebugName(out.data()))},
       {"IView_GetTooltipText()", "GetTooltipText", "{116}", "-",
        GIVE(Tooltip, IView_GetTooltipText(out.data()))},
       {"IView_SetTooltipText()", "SetTooltipText 'x'", "-", "-", CALL(IView_SetTooltipText(u"x"))},
       {"IView_Offset()", "Offset 1 2", "-", "-", CALL(IView_Offset(1, 2))},
       {"IView_GetSubViewOrder()", "GetOrder", "[view]", "-",
        [&](RecordingView& o) {
          o.fSubViews = {&other};
          return GIVE(CVectorViewReceiver, IView_GetSubViewOrder(out))(o);
        }},
       {"IView_SetSubViewOrder()", "GetOrder; SetOrder [view]", "-", "-",
        [&](RecordingView& o) {
          o.fSubViews = {&other};
          return Outcome{o.IView_SetSubViewOrder(order, 1)};
        }},
       {"IView_Release()", "Release", "-", "-", CALL(IView_Release())}});
  const auto null = [](RecordingView& v) { v.fGivesNull = true; };
  CheckResults<RecordingView>(
      {{"outWindow != NULL", null, GIVE(IWindow*, IView_GetMotherWindow(out))},
       {"ValidateViewParams(params)", [](auto& v) { v.fParams.fFlags = 0x10; },
        GIVE(TViewParams, IView_GetParams(out))},
       {"debugName.length() <= kDebugNameChars", [](auto& v) { v.fName.assign(256, 'n'); },
        GIVE(Name, IView_GetDebugName(out.data()))},
       {"tooltipText.length() <= kTooltipTextChars", [](auto& v) { v.fTooltip.assign(1024, u't'); },
        GIVE(Tooltip, IView_GetTooltipText(out.data()))}});
}

TEST(ContractView, BadCalls) {
  RecordingView view;
  // The record is tested before the object, and needs no sound one.
  view.fSound = false;
  CheckBadCalls<RecordingView>(view, {{"IView_SetParams(): ValidateViewParams(params)",
                                       CALL(IView_SetParams({0x10, {}, kViewDrawDirect, {}}))}});
  view.fSound = true;
  EXPECT_EQ(kBadInputProgrammingError, view.IView_SetTooltipText(nullptr));
  EXPECT_EQ(kBadInputProgrammingError, view.IView_GetTooltipText(nullptr));
  EXPECT_EQ(kBadInputProgrammingError, view.IView_GetDebugName(nullptr));
  EXPECT_EQ("", view.JoinedHooks());
}

TEST(ContractView, TextsAreCutToTheirBuffers) {
  RecordingView view;
  view.fName.assign(300, 'n');
  view.fTooltip.assign(2000, u't');
  char name[kDebugNameChars + 2] = {};
  TChar tooltip[kTooltipTextChars + 2] = {};
  name[kDebugNameChars + 1] = '!';
  tooltip[kTooltipTextChars + 1] = u'!';
  EXPECT_EQ(kOK, view.IView_GetDebugName(name));
  EXPECT_EQ(kOK, view.IView_GetTooltipText(tooltip));
  EXPECT_EQ(std::string(255, 'n'), name);
  EXPECT_EQ(TString(1023, u't'), tooltip);
  EXPECT_EQ('!', name[kDebugNameChars + 1]);
  EXPECT_EQ(u'!', tooltip[kTooltipTextChars + 1]);
}

TEST(ContractView, OrderTakesTheSameViewsOnly) {
  RecordingDebugOutput output;
  RecordingView view, a, b, c;
  view.fSubViews = {&a, &b};
  const struct {
    std::vector<IView*> fOrder;
    bool fIsGood;
  } rows[] = {{{&b, &a}, true}, {{&a}, false}, {{&a, &c}, false}, {{&a, &b, &c}, false}};
  for (const auto& row : rows) {
    output.Reset();
    view.fHooks.clear();
    const TError error =
        view.IView_SetSubViewOrder(row.fOrder.data(), static_cast<std::uint32_t>(row.fOrder.size()));
    EXPECT_EQ(row.fIsGood ? kOK : kBadInputProgrammingError, error);
    EXPECT_EQ(row.fIsGood ? 2u : 1u, view.fHooks.size());
    EXPECT_EQ(row.fIsGood
                  ? Texts()
                  : Texts{"Bad Input to IView_SetSubViewOrder(): (std::set<IView*>(oldSubViews.begin(), "
                          "oldSubViews.end()) == std::set<IView*>(newSubViews.begin(), "
                          "newSubViews.end()))"},
              output.fAssertions);
  }
  EXPECT_EQ(kBadInputProgrammingError, view.IView_SetSubViewOrder(nullptr, 2));
}

// --- Windows

TEST(ContractWindow, Operations) {
  CheckGoodCalls<RecordedWindow>(
      "CWindowGlue_CheckInvariant()",
      {{"IWindow_GetNativeWindow()", "GetNativeWindow", "desktop", "-",
        [](auto& o) {
          auto out = Untouched<TNativeWindow>();
          const TError error = o.IWindow_GetNativeWindow(out);
          return Outcome{error, out.fHwnd == GetDesktopWindow() ? "desktop" : Show(out)};
        }},
       {"IWindow_GetOnDutyFocusView()", "GetOnDuty", "view", "null",
        GIVE(IView*, IWindow_GetOnDutyFocusView(out))},
       {"IWindow_GetConceptualFocusView()", "GetConceptual", "view", "null",
        GIVE(IView*, IWindow_GetConceptualFocusView(out))},
       {"IWindow_SetConceptualFocusView()", "SetConceptual view", "-", "-",
        [](auto& o) { return Outcome{o.IWindow_SetConceptualFocusView(&o.fView)}; }},
       {"IWindow_SetConceptualFocusView()", "SetConceptual null", "-", "-",
        CALL(IWindow_SetConceptualFocusView(nullptr))},
       {"IWindow_GetTabViews()", "GetTabViews", "[view]", "-",
        GIVE(CVectorViewReceiver, IWindow_GetTabViews(out))},
       {"IWindow_GetRootView()", "GetRootView", "root", "null", GIVE(IView*, IWindow_GetRootView(out))},
       {"IWindow_IsActive()", "IsActive", "1", "-", GIVE(TFlag, IWindow_IsActive(out))},
       {"IWindow_GetFrameRect()", "GetFrameRect", "1,2,3,4", "-", GIVE(TRect, IWindow_GetFrameRect(out))},
       {"IWindow_FrameRectToClientRect()", "ToClient 5,6,7,8", "1,2,3,4", "-",
        GIVE(TRect, IWindow_FrameRectToClientRect({5, 6, 7, 8}, out))},
       {"IWindow_ClientRectToFrameRect()", "ToFrame 5,6,7,8", "1,2,3,4", "-",
        GIVE(TRect, IWindow_ClientRectToFrameRect({5, 6, 7, 8}, out))},
       {"IWindow_GetGlobalAlpha()", "GetGlobalAlpha", "99", "-",
        GIVE(std::uint8_t, IWindow_GetGlobalAlpha(out))},
       {"IWindow_SetGlobalAlpha()", "SetGlobalAlpha 98", "-", "-", CALL(IWindow_SetGlobalAlpha(98))}});
  CheckResults<RecordedWindow>({{"IsValidNativeWindow(outNativeWindow)", [](auto& w) { w.fHwnd = nullptr; },
                                 GIVE(TNativeWindow, IWindow_GetNativeWindow(out))},
                                {"outRootView != NULL", [](auto& w) { w.fGivesNull = true; },
                                 GIVE(IView*, IWindow_GetRootView(out))}});
}

TEST(ContractWindow, OnlyItsOwnViewsGetTheFocus) {
  RecordingDebugOutput output;
  RecordedWindow window, other;
  RecordingView foreign;  // of a client's own making
  IView* const view = &window.fView;
  const std::string focus =
      "Bad Input to IWindow_SetConceptualFocusView(): ((newConceptualFocusView == NULL) || ";
  const std::string mother =
      focus + "(GetMotherWindow(*newConceptualFocusView) == static_cast<IWindow*>(this)))";
  EXPECT_EQ(kBadInputProgrammingError, window.IWindow_SetConceptualFocusView(&other.fView));
  EXPECT_EQ(mother, output.fAssertions.back());
  EXPECT_EQ(kBadInputProgrammingError, window.IWindow_SetConceptualFocusView(&foreign));
  EXPECT_EQ(mother, output.fAssertions.back());
  SetFlags(window.fView, kViewEnabled);
  EXPECT_EQ(kBadInputProgrammingError, window.IWindow_SetConceptualFocusView(view));
  EXPECT_EQ(focus + "dynamic_cast<CViewImpl*>(newConceptualFocusView)->CanBeFocusTargetNow())",
            output.fAssertions.back());
  const std::vector<IView*> bad[] = {{view, view}, {nullptr}, {&window.Root()}, {&other.fView}, {&foreign}};
  for (const auto& list : bad) {
    EXPECT_EQ(kBadInputProgrammingError,
              window.IWindow_SetTabViews(list.data(), static_cast<std::uint32_t>(list.size())));
    EXPECT_EQ("Bad Input to IWindow_SetTabViews(): AreValidTabViews(tabViews, this)",
              output.fAssertions.back());
  }
  EXPECT_EQ(kBadInputProgrammingError, window.IWindow_SetTabViews(nullptr, 1));
  for (const std::string& hook : window.fHooks) EXPECT_EQ("GetRootView", hook);
  window.fHooks.clear();
  EXPECT_EQ(kOK, window.IWindow_SetTabViews(&view, 1));
  EXPECT_EQ("GetRootView; SetTabViews [view]", window.JoinedHooks());
  EXPECT_EQ(kOK, window.IWindow_SetTabViews(nullptr, 0));
  window.fSound = false;
  EXPECT_EQ(kBadInputProgrammingError, window.IWindow_SetTabViews(&view, 1));
  EXPECT_EQ("Bad Input to IWindow_SetTabViews(): CWindowGlue_CheckInvariant()", output.fAssertions.back());
  window.fSound = true;
}

// GetState reports under the name of SetState, Release under that of FocusNow.
#define CHECK_KIND(Kind)                                                                                    \
  {                                                                                                         \
    SCOPED_TRACE(#Kind);                                                                                    \
    CheckGoodCalls<Recording##Kind>(                                                                        \
        "C" #Kind "Glue_CheckInvariant()",                                                                  \
        {{"I" #Kind "_SetState()", "GetState", "{3}", "EE", GIVE(T##Kind##State, I##Kind##_GetState(out))}, \
         {"I" #Kind "_SetState()", "SetState {3}", "-", "-",                                                \
          [](auto& o) { return Outcome{o.I##Kind##_SetState(o.fState)}; }},                                 \
         {"I" #Kind "_GetWindow()", "GetWindow", "window", "null",                                          \
          GIVE(IWindow*, I##Kind##_GetWindow(out))},                                                        \
         {"I" #Kind "_FocusNow()", "FocusNow", "-", "-", CALL(I##Kind##_FocusNow())},                       \
         {"I" #Kind "_GetBehavior()", "GetBehavior", "behavior", "null",                                    \
          GIVE(I##Kind##Behavior*, I##Kind##_GetBehavior(out))},                                            \
         {"I" #Kind "_FocusNow()", "Release", "-", "-", CALL(I##Kind##_Release())}});                       \
    const auto null = [](Recording##Kind& w) { w.fGivesNull = true; };                                      \
    CheckResults<Recording##Kind>(                                                                          \
        {{"outWindow != NULL", null, GIVE(IWindow*, I##Kind##_GetWindow(out))},                             \
         {"outBehavior != NULL", null, GIVE(I##Kind##Behavior*, I##Kind##_GetBehavior(out))},               \
         {"Validate" #Kind "State(state)", [](auto& w) { w.fState.fModified = 2; },                         \
          GIVE(T##Kind##State, I##Kind##_GetState(out))}});                                                 \
    Recording##Kind window;                                                                                 \
    CheckBadCalls<Recording##Kind>(window, {{"I" #Kind "_SetState(): Validate" #Kind "State(state)",        \
                                             CALL(I##Kind##_SetState(T##Kind##State{}))}});                 \
    EXPECT_TRUE(window.I##Kind##_CheckInvariant());                                                         \
    window.fSound = false;                                                                                  \
    EXPECT_FALSE(window.I##Kind##_CheckInvariant());                                                        \
  }
#define CHECK_MODAL_OWNER(Kind)                                                                     \
  CheckGoodCalls<Recording##Kind>("C" #Kind "Glue_CheckInvariant()",                                \
                                  {{"I" #Kind "_GetModalOwner()", "GetModalOwner", "owner", "null", \
                                    GIVE(IModalOwner*, I##Kind##_GetModalOwner(out))}});

TEST(ContractWindowKinds, Operations){CHECK_KIND(DocumentWindow) CHECK_MODAL_OWNER(DocumentWindow)
                                          CHECK_KIND(ModelessDialog) CHECK_MODAL_OWNER(ModelessDialog)
                                              CHECK_KIND(ModalDialog) CHECK_MODAL_OWNER(ModalDialog)
                                                  CHECK_KIND(FloatingWindow)}

// --- Icons

TEST(ContractIcon, Operations) {
  static RecordingIcon other;
  CheckGoodCalls<RecordingIcon>(
      "IIcon_CheckInvariant()",
      {{"IIcon_Clone()", "Clone", "icon", "-", MADE(IIcon_Clone(error))},
       {"IIcon_AreEqual()", "AreEqual", "1", "666", GIVE(TFlag, IIcon_AreEqual(other, out))}});
  CheckResults<RecordingIcon>(
      {{"out != NULL", [](auto& i) { i.fGivesNull = true; }, MADE(IIcon_Clone(error))}});
  RecordingIcon icon;
  other.fSound = false;
  CheckBadCalls<RecordingIcon>(
      icon, {{"IIcon_AreEqual(): other.IIcon_CheckInvariant()", GIVE(TFlag, IIcon_AreEqual(other, out))}});
  other.fSound = true;
}

// --- Draw tools

class ContractDrawTools : public testing::Test {
 protected:
  ~ContractDrawTools() override {
    ::DeleteObject(fRegion);
    ::DeleteDC(fDC);
  }
  HDC fDC = ::CreateCompatibleDC(nullptr);
  HRGN fRegion = ::CreateRectRgn(0, 0, 100, 100);
  RecordingDebugOutput fOutput;
};

TEST_F(ContractDrawTools, OneOfPortAndPixelsAtATime) {
  const std::string illegal = "Illegal calling sequence when calling CDrawToolsGlue::IDrawTools_";
  const std::string bad = "Bad Input to CDrawToolsGlue::IDrawTools_";
  {
    RecordingTools tools(fDC, fRegion);
    TNativePort port;
    TRawPixels pixels;
    const auto openPort = [&] { return tools.IDrawTools_OpenNativePort(port); };
    const auto closePort = [&] { return tools.IDrawTools_CloseNativePort(); };
    const auto openPixels = [&] { return tools.IDrawTools_OpenRawPixels(pixels); };
    const auto closePixels = [&] { return tools.IDrawTools_CloseRawPixels(); };
    const struct {
      std::function<TError()> fCall;
      TError fResult;
      std::string fAssertion;
    } steps[] = {
        {closePort, 12003, illegal + "CloseNativePort: fNativePortIsOpen"},
        {closePixels, 12003, illegal + "CloseRawPixels: fRawPixelsAreOpen"},
        {openPort, 12000, ""},
        {openPort, 12003, illegal + "OpenNativePort: !fNativePortIsOpen"},
        {openPixels, 12003, illegal + "OpenRawPixels: !fNativePortIsOpen"},
        {closePixels, 12002, bad + "CloseRawPixels: !fNativePortIsOpen"},
        {closePort, 12000, ""},
        {openPixels, 12000, ""},
        {openPixels, 12003, illegal + "OpenRawPixels: !fRawPixelsAreOpen"},
        {openPort, 12003, illegal + "OpenNativePort: !fRawPixelsAreOpen"},
        {closePort, 12002, bad + "OpenNativePort: !fRawPixelsAreOpen"},
        {closePixels, 12000, ""},
    };
    for (std::size_t i = 0; i < std::size(steps); ++i) {
      SCOPED_TRACE(i);
      fOutput.Reset();
      EXPECT_EQ(steps[i].fResult, steps[i].fCall());
      EXPECT_EQ(steps[i].fAssertion.empty() ? Texts() : Texts{steps[i].fAssertion}, fOutput.fAssertions);
    }
    EXPECT_EQ("Open; Close; OpenPixels; ClosePixels", tools.JoinedHooks());
    // A hook that fails leaves the port closed.
    tools.fOnHook = [] { throw XBadFormat(); };
    EXPECT_EQ(kBadFormatError, openPort());
    tools.fOnHook = nullptr;
    EXPECT_EQ(kOK, openPort());
    fOutput.Reset();
  }
  EXPECT_EQ(Texts{"!fNativePortIsOpen"}, fOutput.fAssertions);
}

TEST_F(ContractDrawTools, DirtyRegionIsCutToTheViewsOnTheWay) {
  const auto boxOf = [](void* region) {
    RECT r;
    ::GetRgnBox(static_cast<HRGN>(region), &r);
    return Show(TRect{r.left, r.top, r.right, r.bottom});
  };
  RecordingTools tools(fDC, fRegion);
  const auto box = [&] {
    void* native = nullptr;
    EXPECT_EQ(kOK, tools.IDrawTools_GetDirtyRegion(native));
    return boxOf(native);
  };
  EXPECT_EQ("0,0,100,100", box());
  tools.PushViewBounds({10, 10, 200, 50});
  EXPECT_EQ("10,10,100,50", box());
  tools.PushViewBounds({0, 20, 30, 200});
  EXPECT_EQ("10,20,30,50", box());
  EXPECT_EQ("10,20,30,50", box());
  tools.PopViewBounds({0, 20, 30, 200});
  EXPECT_EQ("10,10,100,50", box());
  EXPECT_TRUE(fOutput.fAssertions.empty());
  void* native = fRegion;
  EXPECT_EQ(kBadInputProgrammingError, tools.IDrawTools_GetDirtyRegion(native));
  EXPECT_EQ(Texts{"Bad Input to CDrawToolsGlue::IDrawTools_GetDirtyRegion: (outNativeRegion == NULL)"},
            fOutput.fAssertions);
  fOutput.Reset();
  tools.PopViewBounds({10, 10, 200, 51});
  EXPECT_EQ(1u, fOutput.fAssertions.size());
  fOutput.Reset();
  tools.PopViewBounds({0, 0, 1, 1});
  EXPECT_EQ(Texts{"fCurrentViewSubtreeBounds.size() > 0"}, fOutput.fAssertions);
  EXPECT_EQ("0,0,100,100", boxOf(fRegion)) << "the owner's region has been written to";
}

}  // namespace NSMorvaneTest
