// The contracts of views, windows, the kinds of windows and draw tools, over hooks that only record.
#include "Component/Portable/Contract/MorvaneGlueDrawTools.h"
#include "Component/Portable/Contract/MorvaneGlueValidators.h"
#include "Component/Portable/Contract/MorvaneGlueView.h"
#include "Component/Portable/Surfaces/BufferBitmap.h"
#include "Component/Portable/Surfaces/PortState.h"
#include "Component/Portable/Windows/MorvaneGlueWindow.h"
#include "Component/Portable/Windows/MorvaneGlueWindowKinds.h"
#include "Tests/Support/Contract.h"
#include "Tests/Support/FakeViewWindow.h"
#include "Tests/Support/RecordingMorvane.h"

namespace NSMorvaneTest {
namespace {

// clang-format off
class RecordingView : public CViewGlue, public Recorder {
 public:
  RecordingView() {
    Given<TViewParams>() = {7, {}, kViewDrawDirect, kAutoInvalidationNone};
    Given<std::string>() = "name";
    Given<TString>() = u"tip";
  }
  HELD_BY_MEMBERS(CViewGlue)

 protected:
  HOOK(IViewBehavior*, CViewGlue_GetBehavior)
  HOOK(IWindow*, CViewGlue_GetMotherWindow)
  HOOK(IView*, CViewGlue_GetSuperView)
  HOOK(bool, CViewGlue_IsEffectivelyEnabled)
  HOOK(void, CViewGlue_SetParams, const TViewParams&)
  HOOK(TViewParams, CViewGlue_GetParams)
  HOOK(std::string, CViewGlue_GetDebugName)
  HOOK(TString, CViewGlue_GetTooltipText)
  HOOK(void, CViewGlue_SetTooltipText, const TString&)
  HOOK(void, CViewGlue_Offset, std::int32_t, std::int32_t)
  HOOK(std::vector<IView*>, CViewGlue_GetSubViewOrder)
  HOOK(void, CViewGlue_SetSubViewOrder, const std::vector<IView*>&)
  HOOK(void, CViewGlue_Release)
};

class RecordingWindow : public CWindowGlue, public Recorder {
 public:
  RecordingWindow() {
    Given<TNativeWindow>() = AnyNativeWindow();
    Given<TRect>() = {1, 2, 3, 4};
    Given<std::uint8_t>() = 7;
  }
  HELD_BY_MEMBERS(CWindowGlue)

 protected:
  HOOK(TNativeWindow, CWindowGlue_GetNativeWindow)
  HOOK(CViewImpl*, CWindowGlue_GetOnDutyFocusView)
  HOOK(CViewImpl*, CWindowGlue_GetConceptualFocusView)
  HOOK(void, CWindowGlue_SetConceptualFocusView, CViewImpl*)
  HOOK(std::vector<CViewImpl*>, CWindowGlue_GetTabViews)
  HOOK(void, CWindowGlue_SetTabViews, const std::vector<CViewImpl*>&)
  HOOK(CViewImpl*, CWindowGlue_GetRootView)
  HOOK(bool, CWindowGlue_IsActive)
  HOOK(TRect, CWindowGlue_GetFrameRect)
  HOOK(TRect, CWindowGlue_FrameRectToClientRect, const TRect&)
  HOOK(TRect, CWindowGlue_ClientRectToFrameRect, const TRect&)
  HOOK(std::uint8_t, CWindowGlue_GetGlobalAlpha)
  HOOK(void, CWindowGlue_SetGlobalAlpha, std::uint8_t)
};

class RecordingTools : public CDrawToolsGlue, public Recorder {
 public:
  RecordingTools(const TNativePort& port, TNativeRegion region) : CDrawToolsGlue(port, region) {}
  HOOK(TNativePort, CDrawToolsGlue_GetNativePort)
  HOOK(void, CDrawToolsGlue_CloseNativePort)
  HOOK(TRawPixels, CDrawToolsGlue_OpenRawPixels)
  HOOK(void, CDrawToolsGlue_CloseRawPixels)
  HOOK(void, CDrawToolsGlue_FlushToScreen, bool)
};
// clang-format on

constexpr TError kBad = kBadInputProgrammingError;

// The caller's buffers, as long as they have to be, and a mark behind them.
Outcome DebugNameOf(IView& view) {
  std::string out(kDebugNameChars + 2, '?');
  const TError error = view.IView_GetDebugName(out.data());
  EXPECT_EQ('?', out.back());
  return {error, error == kOK ? out.c_str() : "-"};
}
Outcome TooltipOf(IView& view) {
  TString out(kTooltipTextChars + 2, u'?');
  const TError error = view.IView_GetTooltipText(out.data());
  EXPECT_EQ(u'?', out.back());
  return {error, error == kOK ? NSTextPackage::StringToASCII(out.c_str(), '?') : "-"};
}

}  // namespace

TEST(ContractView, Operations) {
  static const TViewParams params = {5, {}, kViewDrawDirect, kAutoInvalidationNone};
  CheckGoodCalls<RecordingView>("CViewGlue_CheckInvariant()",
                                {GOOD_ROW(IView_GetBehavior, "set", "0", out),
                                 GOOD_ROW(IView_GetMotherWindow, "set", "0: outWindow != NULL", out),
                                 GOOD_ROW(IView_GetSuperView, "set", "0", out),
                                 GOOD_ROW(IView_IsEffectivelyEnabled, "set", "-", out),
                                 GOOD_ROW(IView_SetParams, "-", "-", params),
                                 GOOD_ROW(IView_GetParams, "set", "EE", out),
                                 {"IView_GetDebugName()", "GetDebugName", "name", "-", DebugNameOf},
                                 {"IView_GetTooltipText()", "GetTooltipText", "tip", "-", TooltipOf},
                                 GOOD_ROW(IView_SetTooltipText, "-", "-", u"x"),
                                 GOOD_ROW(IView_Offset, "-", "-", 1, 2),
                                 GOOD_ROW(IView_GetSubViewOrder, "set", "-", out),
                                 GOOD_ROW(IView_Release, "-", "-")});
  const auto longTexts = [](RecordingView& view) {
    view.Given<std::string>().assign(256, 'n');
    view.Given<TString>().assign(1024, u't');
  };
  CheckResults<RecordingView>(
      {{"ValidateViewParams(params)", [](auto& v) { v.template Given<TViewParams>().fFlags = 0x10; },
        CALL(IView_GetParams(out))},
       {"debugName.length() <= kDebugNameChars", longTexts, DebugNameOf},
       {"tooltipText.length() <= kTooltipTextChars", longTexts, TooltipOf}});
  RecordingView view;
  longTexts(view);
  EXPECT_EQ(std::string(255, 'n'), DebugNameOf(view).fOut);
  for (const TError error : {view.IView_SetTooltipText(nullptr), view.IView_GetTooltipText(nullptr),
                             view.IView_GetDebugName(nullptr)})
    EXPECT_EQ(kBad, error);
  view.fHooks.clear();
  // The record is tested before the object, and needs no sound one.
  view.fSound = false;
  CheckBadCalls<RecordingView>(
      view, {BAD_ROW(IView_SetParams, "ValidateViewParams(params)", {0x10, {}, kViewDrawDirect, {}})});
}

// All operations but the one that sets the tab views, which looks at real views.
TEST(ContractWindow, Operations) {
  static const TRect rect = {0, 0, 1, 1};
  CheckGoodCalls<RecordingWindow>(
      "CWindowGlue_CheckInvariant()",
      {GOOD_ROW(IWindow_GetNativeWindow, "set", "-", out),
       GOOD_ROW(IWindow_GetOnDutyFocusView, "set", "0", out),
       GOOD_ROW(IWindow_GetConceptualFocusView, "set", "0", out),
       GOOD_ROW(IWindow_SetConceptualFocusView, "-", "-", nullptr),
       GOOD_ROW(IWindow_GetTabViews, "set", "-", out),
       GOOD_ROW(IWindow_GetRootView, "set", "0: outRootView != NULL", out),
       GOOD_ROW(IWindow_IsActive, "set", "-", out), GOOD_ROW(IWindow_GetFrameRect, "set", "-", out),
       GOOD_ROW(IWindow_FrameRectToClientRect, "set", "-", rect, out),
       GOOD_ROW(IWindow_ClientRectToFrameRect, "set", "-", rect, out),
       GOOD_ROW(IWindow_GetGlobalAlpha, "set", "-", out), GOOD_ROW(IWindow_SetGlobalAlpha, "-", "-", 7)});
  CheckResults<RecordingWindow>(
      {{"IsValidNativeWindow(outNativeWindow)", [](auto& w) { w.template Given<TNativeWindow>() = {}; },
        CALL(IWindow_GetNativeWindow(out))}});
  RecordingWindow window;
  struct : IViewListReceiver {
    TError IViewListReceiver_ReceiveViews(IView* const*, std::uint32_t) override { return 100005; }
  } receiver;
  EXPECT_EQ(100005u, window.IWindow_GetTabViews(receiver));
}

TEST(ContractWindow, TabViews) {
  FakeViewWindow views;
  RecordingWindow window;
  window.Given<CViewImpl*>() = &views.Root();
  RecordedOutput output;
  // With something done in the hook that sets them.
  const auto set = [&](const std::function<void()>& inHook) {
    window.fOnHook = [&] {
      if (window.fHooks.back() == "SetTabViews") inHook();
    };
    const TError error = window.IWindow_SetTabViews(nullptr, 0);
    window.fSound = true;
    return error;
  };
  window.fSound = false;
  EXPECT_EQ(kBad, set([] { FAIL(); }));
  EXPECT_EQ(kOK, set([&] { window.fSound = false; }));
  EXPECT_EQ("Bad Input to IWindow_SetTabViews(): CWindowGlue_CheckInvariant(); CWindowGlue_CheckInvariant()",
            Joined(output.fAssertions));
  EXPECT_EQ(kBadFormatError, set([] { throw XBadFormat(); }));
  // Without its root view the window has no view that could be in the list, and none that could not.
  window.fGivesNull = true;
  EXPECT_EQ(kBad, set([] { FAIL(); }));
}

// A view is in no list any more once it, or one above it, has been released. A tree may be deep.
TEST(ContractWindow, TabViewsAreLiveUpToTheRoot) {
  RecordedOutput output;
  FakeViewWindow window;
  CViewImpl* above = &window.Root();
  for (int i = 0; i < 50000; ++i) above = &window.MakeView(*above, {}, "");
  CViewImpl& inner = window.MakeView(*above, {}, "inner");
  CViewImpl& leaf = window.MakeView(inner, {}, "leaf");
  const auto set = [&](IView* view) { return window.IWindow_SetTabViews(&view, 1); };
  EXPECT_EQ(kOK, set(&leaf));
  inner.IView_Release();
  EXPECT_EQ(kBad, set(&leaf));
  EXPECT_EQ(kBad, set(&inner));
  EXPECT_EQ(kOK, set(above));
  window.ReleaseViews();
}

TEST(ContractWindow, OnlyItsOwnViewsGetTheFocus) {
  RecordedOutput output;
  FakeViewWindow window, other;
  constexpr std::uint32_t kFocusable = kViewEnabled | kViewFocusable;
  CViewImpl& own = window.MakeView(window.Root(), {0, 0, 9, 9}, "own", kFocusable);
  IView* const view = &own;
  IView* const others = &other.MakeView(other.Root(), {0, 0, 9, 9}, "other", kFocusable);
  RecordingView foreign;  // of a client's own making
  const auto expectBad = [&](TError error, const std::string& text) {
    EXPECT_EQ(kBad, error);
    EXPECT_EQ("Bad Input to IWindow_" + text, output.fAssertions.back());
  };
  const std::string focus = "SetConceptualFocusView(): ((newConceptualFocusView == NULL) || ";
  for (IView* const bad : {others, static_cast<IView*>(&foreign)})
    expectBad(window.IWindow_SetConceptualFocusView(bad),
              focus + "(GetMotherWindow(*newConceptualFocusView) == static_cast<IWindow*>(this)))");
  const std::vector<IView*> bad[] = {{view, view}, {nullptr}, {&window.Root()}, {others}, {&foreign}};
  for (const auto& list : bad)
    expectBad(window.IWindow_SetTabViews(list.data(), static_cast<std::uint32_t>(list.size())),
              "SetTabViews(): AreValidTabViews(tabViews, this)");
  EXPECT_EQ(kBad, window.IWindow_SetTabViews(nullptr, 1));
  EXPECT_TRUE(window.fTabViews.empty());
  EXPECT_EQ(kOK, window.IWindow_SetTabViews(&view, 1));
  EXPECT_EQ(std::vector<CViewImpl*>{&own}, window.fTabViews);
  EXPECT_EQ(kOK, window.IWindow_SetTabViews(nullptr, 0));
  EXPECT_EQ(kOK, window.IWindow_SetConceptualFocusView(view));
  SetFlags(own, kViewEnabled);
  EXPECT_EQ(nullptr, window.FocusView());
  expectBad(window.IWindow_SetConceptualFocusView(view),
            focus + "dynamic_cast<CViewImpl*>(newConceptualFocusView)->CanBeFocusTargetNow())");
  window.ReleaseViews();
  other.ReleaseViews();
}

// The four kinds have the same operations, save that a floating window owns no modal dialog. GetState reports
// under the name of SetState, Release under that of FocusNow.
// clang-format off
#define CONTRACT_OF_KIND(Kind, OWNER_HOOK, OWNER_ROW)                                                         \
  class Recording##Kind : public C##Kind##Glue, public Recorder {                                             \
   public:                                                                                                    \
    Recording##Kind() { Given<T##Kind##State>().fPlacement.fZoomState = kWindowStateIdeal; }                  \
    HELD_BY_MEMBERS(C##Kind##Glue)                                                                            \
    HOOK(T##Kind##State, C##Kind##Glue_GetState)                                                              \
    HOOK(void, C##Kind##Glue_SetState, const T##Kind##State&)                                                 \
    HOOK(IWindow*, C##Kind##Glue_GetWindow)                                                                   \
    HOOK(void, C##Kind##Glue_FocusNow)                                                                        \
    HOOK(I##Kind##Behavior*, C##Kind##Glue_GetBehavior)                                                       \
    HOOK(void, C##Kind##Glue_Release)                                                                         \
    OWNER_HOOK                                                                                                \
  };                                                                                                          \
  TEST(ContractWindowKinds, Kind) {                                                                           \
    CheckGoodCalls<Recording##Kind>(                                                                          \
        "C" #Kind "Glue_CheckInvariant()",                                                                    \
        {{"I" #Kind "_SetState()", "GetState", "set", "EE", CALL(I##Kind##_GetState(out))},                   \
         GOOD_ROW(I##Kind##_SetState, "-", "-", o.template Given<T##Kind##State>()),                          \
         GOOD_ROW(I##Kind##_GetWindow, "set", "0: outWindow != NULL", out),                                   \
         GOOD_ROW(I##Kind##_FocusNow, "-", "-"),                                                              \
         GOOD_ROW(I##Kind##_GetBehavior, "set", "0: outBehavior != NULL", out),                               \
         OWNER_ROW                                                                                            \
         {"I" #Kind "_FocusNow()", "Release", "-", "-", CALL(I##Kind##_Release())}});                         \
    CheckResults<Recording##Kind>({{"Validate" #Kind "State(state)",                                          \
                                    [](auto& w) { w.template Given<T##Kind##State>().fModified = 2; },        \
                                    CALL(I##Kind##_GetState(out))}});                                         \
    Recording##Kind window;                                                                                   \
    CheckBadCalls<Recording##Kind>(                                                                           \
        window, {BAD_ROW(I##Kind##_SetState, "Validate" #Kind "State(state)", T##Kind##State{})});            \
  }
#define CONTRACT_OF_OWNING_KIND(Kind)                                     \
  CONTRACT_OF_KIND(Kind, HOOK(IModalOwner*, C##Kind##Glue_GetModalOwner), \
                   GOOD_ROW(I##Kind##_GetModalOwner, "set", "0", out) COMMA)
#define COMMA ,
#define NOTHING
CONTRACT_OF_OWNING_KIND(DocumentWindow)
CONTRACT_OF_OWNING_KIND(ModelessDialog)
CONTRACT_OF_OWNING_KIND(ModalDialog)
CONTRACT_OF_KIND(FloatingWindow, NOTHING, NOTHING)
// clang-format on

// What objects say when they come and go, and how deep.
TEST(ContractWindowKinds, TraceTheirLives) {
  RecordedOutput output;
  const auto traceOf = [&](const std::function<void()>& live) {
    output.fTrace.clear();
    live();
    return output.fTrace;
  };
  const Rows<std::string, std::function<void()>> rows = {
      {"CWindowGlue", [] { RecordingWindow(); }},
      {"CDocumentWindowGlue", [] { RecordingDocumentWindow(); }},
      {"CModelessDialogGlue", [] { RecordingModelessDialog(); }},
      {"CModalDialogGlue", [] { RecordingModalDialog(); }},
      {"CFloatingWindowGlue", [] { RecordingFloatingWindow(); }},
      {"CMorvaneGlue", [] { RecordingMorvane(); }}};
  for (const auto& [name, live] : rows)
    EXPECT_EQ(name + "::" + name + "() > < " + name + "::~" + name + "() > < ", traceOf(live));
  // Two validators hold the indentation until they are through.
  EXPECT_EQ("ValidateDebugSettings() > false! < ", traceOf([] {
              ValidateDebugSettings({0, 0, 0, 0, 0, 0, 2});
            }));
  EXPECT_EQ("ValidateStartupParams() > false! < ", traceOf([] { ValidateStartupParams({}); }));
}

class ContractDrawTools : public ReportingTest {
 protected:
  CBufferBitmap fBitmap{{1, 1}, 32};
  TNativePort fPort = fBitmap.GetNativePort();
  CRegion fAll{TRect{0, 0, 100, 100}};
  TNativeRegion fRegion = fAll.GetNativeRegion();
};

TEST_F(ContractDrawTools, OneOfPortAndPixelsAtATime) {
  {
    RecordingTools tools(fPort, fRegion);
    TNativePort port;
    TRawPixels pixels;
    HFONT__* const font = GetSelectedFont(fPort.fHDC);
    const std::map<std::string, std::function<TError()>> calls = {
        {"OpenNativePort", [&] { return tools.IDrawTools_OpenNativePort(port); }},
        {"CloseNativePort", [&] { return tools.IDrawTools_CloseNativePort(); }},
        {"OpenRawPixels", [&] { return tools.IDrawTools_OpenRawPixels(pixels); }},
        {"CloseRawPixels", [&] { return tools.IDrawTools_CloseRawPixels(); }},
        {"OpenNativePortWithFont", [&] { return tools.IDrawTools_OpenNativePortWithFont(font, port); }},
        {"WithoutAFont", [&] { return tools.IDrawTools_OpenNativePortWithFont(nullptr, port); }}};
    // One after the other: the call, its code, and in which call's name what is reported.
    for (const auto& [call, code, text] : Rows<std::string, TError, std::string>{
             {"CloseNativePort", 12003, "CloseNativePort: fNativePortIsOpen"},
             {"CloseRawPixels", 12003, "CloseRawPixels: fRawPixelsAreOpen"},
             {"WithoutAFont", 12002, "OpenNativePortWithFont: IsFont(font)"},
             {"OpenNativePortWithFont", kOK, ""},
             {"OpenNativePortWithFont", 12003, "OpenNativePortWithFont: !fNativePortIsOpen"},
             {"OpenNativePort", 12003, "OpenNativePort: !fNativePortIsOpen"},
             {"OpenRawPixels", 12003, "OpenRawPixels: !fNativePortIsOpen"},
             {"CloseRawPixels", 12002, "CloseRawPixels: !fNativePortIsOpen"},
             {"CloseNativePort", kOK, ""},
             {"OpenRawPixels", kOK, ""},
             {"OpenRawPixels", 12003, "OpenRawPixels: !fRawPixelsAreOpen"},
             {"OpenNativePort", 12003, "OpenNativePort: !fRawPixelsAreOpen"},
             {"OpenNativePortWithFont", 12003, "OpenNativePortWithFont: !fRawPixelsAreOpen"},
             {"CloseNativePort", 12002, "OpenNativePort: !fRawPixelsAreOpen"},
             {"CloseRawPixels", kOK, ""}}) {
      EXPECT_EQ(code, calls.at(call)());
      const std::string before = code == 12002 ? "Bad Input to " : "Illegal calling sequence when calling ";
      EXPECT_EQ(text.empty() ? "" : before + "CDrawToolsGlue::IDrawTools_" + text, TakeReports());
    }
    EXPECT_EQ("GetNativePort; CloseNativePort; OpenRawPixels; CloseRawPixels", Joined(tools.fHooks));
    // A hook that fails leaves the port closed.
    tools.fOnHook = [] { throw XBadFormat(); };
    EXPECT_EQ(kBadFormatError, tools.IDrawTools_OpenNativePort(port));
    tools.fOnHook = nullptr;
    EXPECT_EQ(kOK, tools.IDrawTools_OpenNativePort(port));
    TakeReports();
  }
  EXPECT_EQ("!fNativePortIsOpen", TakeReports());
}

TEST_F(ContractDrawTools, DirtyRegionIsCutToTheViewsOnTheWay) {
  RecordingTools tools(fPort, fRegion);
  const auto box = [&] {
    void* native = nullptr;
    EXPECT_EQ(kOK, tools.IDrawTools_GetDirtyRegion(native));
    return CRegion(static_cast<TNativeRegion>(native), true).GetBounds();
  };
  EXPECT_EQ((TRect{0, 0, 100, 100}), box());
  tools.PushViewBounds({10, 10, 200, 50});
  EXPECT_EQ((TRect{10, 10, 100, 50}), box());
  tools.PushViewBounds({0, 20, 30, 200});
  EXPECT_EQ((TRect{10, 20, 30, 50}), box());
  tools.PopViewBounds({0, 20, 30, 200});
  EXPECT_EQ((TRect{10, 10, 100, 50}), box());
  void* native = fRegion;
  EXPECT_EQ(kBad, tools.IDrawTools_GetDirtyRegion(native));
  EXPECT_EQ("Bad Input to CDrawToolsGlue::IDrawTools_GetDirtyRegion: (outNativeRegion == NULL)",
            TakeReports());
  tools.PopViewBounds({10, 10, 200, 51});
  EXPECT_EQ("top.fBottom == rect.fBottom", TakeReports());
}

}  // namespace NSMorvaneTest
