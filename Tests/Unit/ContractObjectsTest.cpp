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
  HOOK(IViewBehavior*, CViewGlue_GetBehavior, (), (), Give<IViewBehavior>("behavior"))
  HOOK(IWindow*, CViewGlue_GetMotherWindow, (), (), Give<IWindow>("window"))
  HOOK(IView*, CViewGlue_GetSuperView, (), (), Give<IView>("view"))
  HOOK(bool, CViewGlue_IsEffectivelyEnabled, (), (), true)
  HOOK(void, CViewGlue_SetParams, (const TViewParams& a), (a))
  HOOK(TViewParams, CViewGlue_GetParams, (), (), fParams)
  HOOK(std::string, CViewGlue_GetDebugName, (), (), fName)
  HOOK(TString, CViewGlue_GetTooltipText, (), (), fTooltip)
  HOOK(void, CViewGlue_SetTooltipText, (const TString& a), (a))
  HOOK(void, CViewGlue_Offset, (std::int32_t a, std::int32_t b), (a, b))
  HOOK(std::vector<IView*>, CViewGlue_GetSubViewOrder, (), (), fSubViews)
  HOOK(void, CViewGlue_SetSubViewOrder, (const std::vector<IView*>& a), (a))
  HOOK(void, CViewGlue_Release, (), ())
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
  HOOK(TNativeWindow, CWindowGlue_GetNativeWindow, (), (), {fHwnd})
  HOOK(CViewImpl*, CWindowGlue_GetOnDutyFocusView, (), (), &fView)
  HOOK(CViewImpl*, CWindowGlue_GetConceptualFocusView, (), (), &fView)
  HOOK(void, CWindowGlue_SetConceptualFocusView, (CViewImpl* a), (a))
  HOOK(std::vector<CViewImpl*>, CWindowGlue_GetTabViews, (), (), {&fView})
  HOOK(void, CWindowGlue_SetTabViews, (const std::vector<CViewImpl*>& a), (a))
  HOOK(CViewImpl*, CWindowGlue_GetRootView,
       (), (), fGivesNull ? nullptr : FakeViewWindow::CWindowGlue_GetRootView())
  HOOK(bool, CWindowGlue_IsActive, (), (), true)
  HOOK(TRect, CWindowGlue_GetFrameRect, (), (), {1, 2, 3, 4})
  HOOK(TRect, CWindowGlue_FrameRectToClientRect, (const TRect& a), (a), {1, 2, 3, 4})
  HOOK(TRect, CWindowGlue_ClientRectToFrameRect, (const TRect& a), (a), {1, 2, 3, 4})
  HOOK(std::uint8_t, CWindowGlue_GetGlobalAlpha, (), (), 99)
  HOOK(void, CWindowGlue_SetGlobalAlpha, (std::uint8_t a), (a))
};

// The four kinds have the same operations, save that a floating window owns no modal dialog.
#define RECORDING_KIND(Kind, ...)                                                                            \
  class Recording##Kind : public C##Kind##Glue, public Recorder {                                            \
   public:                                                                                                   \
    Recording##Kind() {                                                                                      \
      fState.fMinimumClientSize = {3, 3};                                                                    \
      fState.fPlacement.fZoomState = kWindowStateIdeal;                                                      \
    }                                                                                                        \
    T##Kind##State fState{};                                                                                 \
                                                                                                             \
   protected:                                                                                                \
    bool C##Kind##Glue_CheckInvariant() const override { return fSound; }                                    \
    HOOK(T##Kind##State, C##Kind##Glue_GetState, (), (), fState)                                             \
    HOOK(void, C##Kind##Glue_SetState, (const T##Kind##State& a), (a))                                       \
    HOOK(IWindow*, C##Kind##Glue_GetWindow, (), (), Give<IWindow>("window"))                                 \
    HOOK(void, C##Kind##Glue_FocusNow, (), ())                                                               \
    HOOK(I##Kind##Behavior*, C##Kind##Glue_GetBehavior, (), (), Give<I##Kind##Behavior>("behavior"))         \
    HOOK(void, C##Kind##Glue_Release, (), ())                                                                \
    __VA_ARGS__                                                                                              \
  };
#define MODAL_OWNER(Kind) \
HOOK(IModalOwner*, C##Kind##Glue_GetModalOwner, (), (), Give<IModalOwner>("owner"))
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
  HOOK(TNativePort, CDrawToolsGlue_GetNativePort, (), (), fNativePort)
  HOOK(void, CDrawToolsGlue_CloseNativePort, (), ())
  HOOK(TRawPixels, CDrawToolsGlue_OpenRawPixels, (), (), {})
  HOOK(void, CDrawToolsGlue_CloseRawPixels, (), ())
  HOOK(void, CDrawToolsGlue_FlushToScreen, (bool a), (a))
};
// clang-format on

using Name = std::array<char, kDebugNameChars + 1>;
using Tooltip = std::array<TChar, kTooltipTextChars + 1>;
constexpr TError kBad = kBadInputProgrammingError;
const TViewParams kParams = {5, {}, kViewDrawDirect, kAutoInvalidationNone};

}  // namespace

// --- Views

TEST(ContractView, Operations) {
  auto& other = Dummy<IView>("view");
  static IView* const order[] = {&other};
  // The caller's buffers, as long as they have to be.
  static const auto name = [](auto& o) {
    auto out = Untouched<Name>();
    const TError error = o.IView_GetDebugName(out.data());
    return Outcome{error, Show(out)};
  };
  static const auto tooltip = [](auto& o) {
    auto out = Untouched<Tooltip>();
    const TError error = o.IView_GetTooltipText(out.data());
    return Outcome{error, Show(out)};
  };
  class ViewWithSubView : public RecordingView {
   public:
    ViewWithSubView() { fSubViews = {order[0]}; }
  };
  CheckGoodCalls<ViewWithSubView>("CViewGlue_CheckInvariant()",
                                  {GOOD_ROW(IView_GetBehavior, "", "behavior", "null", out),
                                   GOOD_ROW(IView_GetMotherWindow, "", "window", "null", out),
                                   GOOD_ROW(IView_GetSuperView, "", "view", "null", out),
                                   GOOD_ROW(IView_IsEffectivelyEnabled, "", "1", "-", out),
                                   GOOD_ROW(IView_SetParams, " {5}", "-", "-", kParams),
                                   GOOD_ROW(IView_GetParams, "", "{7}", "EE", out),
                                   {"IView_GetDebugName()", "GetDebugName", "{110}", "-", name},
                                   {"IView_GetTooltipText()", "GetTooltipText", "{116}", "-", tooltip},
                                   GOOD_ROW(IView_SetTooltipText, " 'x'", "-", "-", u"x"),
                                   GOOD_ROW(IView_Offset, " 1 2", "-", "-", 1, 2),
                                   GOOD_ROW(IView_GetSubViewOrder, "", "[view]", "-", out),
                                   {"IView_SetSubViewOrder()", "GetSubViewOrder; SetSubViewOrder [view]", "-",
                                    "-", CALL(IView_SetSubViewOrder(order, 1))},
                                   GOOD_ROW(IView_Release, "", "-", "-")});
  CheckResults<RecordingView>(
      {{"outWindow != NULL", [](auto& v) { v.fGivesNull = true; }, CALL(IView_GetMotherWindow(out))},
       {"ValidateViewParams(params)", [](auto& v) { v.fParams.fFlags = 0x10; }, CALL(IView_GetParams(out))},
       {"debugName.length() <= kDebugNameChars", [](auto& v) { v.fName.assign(256, 'n'); }, name},
       {"tooltipText.length() <= kTooltipTextChars", [](auto& v) { v.fTooltip.assign(1024, u't'); },
        tooltip}});
}

TEST(ContractView, BadCalls) {
  RecordingView view;
  // The record is tested before the object, and needs no sound one.
  view.fSound = false;
  CheckBadCalls<RecordingView>(
      view, {BAD_ROW(IView_SetParams, "ValidateViewParams(params)", {0x10, {}, kViewDrawDirect, {}})});
  view.fSound = true;
  EXPECT_EQ(kBad, view.IView_SetTooltipText(nullptr));
  EXPECT_EQ(kBad, view.IView_GetTooltipText(nullptr));
  EXPECT_EQ(kBad, view.IView_GetDebugName(nullptr));
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
  RecordingView view, a, b, c;
  Names()[&a] = "a", Names()[&b] = "b";
  view.fSubViews = {&a, &b};
  const std::string same =
      "Bad Input to IView_SetSubViewOrder(): (std::set<IView*>(oldSubViews.begin(), oldSubViews.end()) == "
      "std::set<IView*>(newSubViews.begin(), newSubViews.end()))";
  for (const std::vector<IView*>& bad : std::vector<std::vector<IView*>>{{&a}, {&a, &c}, {&a, &b, &c}}) {
    RecordingDebugOutput output;
    EXPECT_EQ(kBad, view.IView_SetSubViewOrder(bad.data(), static_cast<std::uint32_t>(bad.size())));
    EXPECT_EQ(Texts{same}, output.fAssertions);
  }
  EXPECT_EQ(kBad, view.IView_SetSubViewOrder(nullptr, 2));
  view.fHooks.clear();
  IView* const good[] = {&b, &a};
  EXPECT_EQ(kOK, view.IView_SetSubViewOrder(good, 2));
  EXPECT_EQ("GetSubViewOrder; SetSubViewOrder [b a]", view.JoinedHooks());
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
       GOOD_ROW(IWindow_GetOnDutyFocusView, "", "view", "null", out),
       GOOD_ROW(IWindow_GetConceptualFocusView, "", "view", "null", out),
       GOOD_ROW(IWindow_SetConceptualFocusView, " view", "-", "-", &o.fView),
       GOOD_ROW(IWindow_SetConceptualFocusView, " null", "-", "-", nullptr),
       GOOD_ROW(IWindow_GetTabViews, "", "[view]", "-", out),
       GOOD_ROW(IWindow_GetRootView, "", "root", "null", out),
       GOOD_ROW(IWindow_IsActive, "", "1", "-", out),
       GOOD_ROW(IWindow_GetFrameRect, "", "1,2,3,4", "-", out),
       GOOD_ROW(IWindow_FrameRectToClientRect, " 5,6,7,8", "1,2,3,4", "-", {5, 6, 7, 8}, out),
       GOOD_ROW(IWindow_ClientRectToFrameRect, " 5,6,7,8", "1,2,3,4", "-", {5, 6, 7, 8}, out),
       GOOD_ROW(IWindow_GetGlobalAlpha, "", "99", "-", out),
       GOOD_ROW(IWindow_SetGlobalAlpha, " 98", "-", "-", 98)});
  CheckResults<RecordedWindow>(
      {{"IsValidNativeWindow(outNativeWindow)", [](auto& w) { w.fHwnd = nullptr; },
        CALL(IWindow_GetNativeWindow(out))},
       {"outRootView != NULL", [](auto& w) { w.fGivesNull = true; }, CALL(IWindow_GetRootView(out))}});
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
  EXPECT_EQ(kBad, window.IWindow_SetConceptualFocusView(&other.fView));
  EXPECT_EQ(mother, output.fAssertions.back());
  EXPECT_EQ(kBad, window.IWindow_SetConceptualFocusView(&foreign));
  EXPECT_EQ(mother, output.fAssertions.back());
  SetFlags(window.fView, kViewEnabled);
  EXPECT_EQ(kBad, window.IWindow_SetConceptualFocusView(view));
  EXPECT_EQ(focus + "dynamic_cast<CViewImpl*>(newConceptualFocusView)->CanBeFocusTargetNow())",
            output.fAssertions.back());
  const std::vector<IView*> bad[] = {{view, view}, {nullptr}, {&window.Root()}, {&other.fView}, {&foreign}};
  for (const auto& list : bad) {
    EXPECT_EQ(kBad, window.IWindow_SetTabViews(list.data(), static_cast<std::uint32_t>(list.size())));
    EXPECT_EQ("Bad Input to IWindow_SetTabViews(): AreValidTabViews(tabViews, this)",
              output.fAssertions.back());
  }
  EXPECT_EQ(kBad, window.IWindow_SetTabViews(nullptr, 1));
  for (const std::string& hook : window.fHooks) EXPECT_EQ("GetRootView", hook);
  window.fHooks.clear();
  EXPECT_EQ(kOK, window.IWindow_SetTabViews(&view, 1));
  EXPECT_EQ("GetRootView; SetTabViews [view]", window.JoinedHooks());
  EXPECT_EQ(kOK, window.IWindow_SetTabViews(nullptr, 0));
  window.fSound = false;
  EXPECT_EQ(kBad, window.IWindow_SetTabViews(&view, 1));
  EXPECT_EQ("Bad Input to IWindow_SetTabViews(): CWindowGlue_CheckInvariant()", output.fAssertions.back());
  window.fSound = true;
}

// GetState reports under the name of SetState, Release under that of FocusNow.
#define CHECK_KIND(Kind, ...)                                                                      \
  {                                                                                                \
    SCOPED_TRACE(#Kind);                                                                           \
    CheckGoodCalls<Recording##Kind>(                                                               \
        "C" #Kind "Glue_CheckInvariant()",                                                         \
        {{"I" #Kind "_SetState()", "GetState", "{3}", "EE", CALL(I##Kind##_GetState(out))},        \
         GOOD_ROW(I##Kind##_SetState, " {3}", "-", "-", o.fState),                                 \
         GOOD_ROW(I##Kind##_GetWindow, "", "window", "null", out),                                 \
         GOOD_ROW(I##Kind##_FocusNow, "", "-", "-"),                                               \
         GOOD_ROW(I##Kind##_GetBehavior, "", "behavior", "null", out),                             \
         __VA_ARGS__{"I" #Kind "_FocusNow()", "Release", "-", "-", CALL(I##Kind##_Release())}});   \
    const auto null = [](Recording##Kind& w) { w.fGivesNull = true; };                             \
    CheckResults<Recording##Kind>(                                                                 \
        {{"outWindow != NULL", null, CALL(I##Kind##_GetWindow(out))},                              \
         {"outBehavior != NULL", null, CALL(I##Kind##_GetBehavior(out))},                          \
         {"Validate" #Kind "State(state)", [](auto& w) { w.fState.fModified = 2; },                \
          CALL(I##Kind##_GetState(out))}});                                                        \
    Recording##Kind window;                                                                        \
    CheckBadCalls<Recording##Kind>(                                                                \
        window, {BAD_ROW(I##Kind##_SetState, "Validate" #Kind "State(state)", T##Kind##State{})}); \
  }
#define MODAL_OWNER_ROW(Kind) GOOD_ROW(I##Kind##_GetModalOwner, "", "owner", "null", out),

TEST(ContractWindowKinds, Operations) {
  CHECK_KIND(DocumentWindow, MODAL_OWNER_ROW(DocumentWindow));
  CHECK_KIND(ModelessDialog, MODAL_OWNER_ROW(ModelessDialog));
  CHECK_KIND(ModalDialog, MODAL_OWNER_ROW(ModalDialog));
  CHECK_KIND(FloatingWindow);
}

// --- Icons

TEST(ContractIcon, Operations) {
  static RecordingIcon other;
  CheckGoodCalls<RecordingIcon>(
      "IIcon_CheckInvariant()",
      {GOOD_ROW(IIcon_Clone, "", "icon", "-", error), GOOD_ROW(IIcon_AreEqual, "", "1", "666", other, out)});
  CheckResults<RecordingIcon>(
      {{"out != NULL", [](auto& i) { i.fGivesNull = true; }, CALL(IIcon_Clone(error))}});
  RecordingIcon icon;
  other.fSound = false;
  CheckBadCalls<RecordingIcon>(icon, {BAD_ROW(IIcon_AreEqual, "other.IIcon_CheckInvariant()", other, out)});
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
    const auto expect = [&](TError error, const std::string& assertion, TError result) {
      EXPECT_EQ(error, result) << assertion;
      EXPECT_EQ(assertion.empty() ? Texts() : Texts{assertion}, fOutput.fAssertions);
      fOutput.Reset();
    };
    expect(12003, illegal + "CloseNativePort: fNativePortIsOpen", closePort());
    expect(12003, illegal + "CloseRawPixels: fRawPixelsAreOpen", closePixels());
    expect(12000, "", openPort());
    expect(12003, illegal + "OpenNativePort: !fNativePortIsOpen", openPort());
    expect(12003, illegal + "OpenRawPixels: !fNativePortIsOpen", openPixels());
    expect(12002, bad + "CloseRawPixels: !fNativePortIsOpen", closePixels());
    expect(12000, "", closePort());
    expect(12000, "", openPixels());
    expect(12003, illegal + "OpenRawPixels: !fRawPixelsAreOpen", openPixels());
    expect(12003, illegal + "OpenNativePort: !fRawPixelsAreOpen", openPort());
    expect(12002, bad + "OpenNativePort: !fRawPixelsAreOpen", closePort());
    expect(12000, "", closePixels());
    EXPECT_EQ("GetNativePort; CloseNativePort; OpenRawPixels; CloseRawPixels", tools.JoinedHooks());
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
  EXPECT_EQ(kBad, tools.IDrawTools_GetDirtyRegion(native));
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
