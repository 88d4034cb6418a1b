// The contracts of views, windows, the kinds of windows, draw tools and icons, over hooks that only record.
#include <gtest/gtest.h>

#include <windows.h>

#include <cstring>
#include <functional>

#include "Component/Portable/MorvaneGlue.h"
#include "Interface/MorvaneDefaults.h"
#include "Tests/Support/RecordingDebugOutput.h"

using namespace NSMorvane;
using NSMorvaneTest::RecordingDebugOutput;

namespace {

// What all recording objects share.
class Recorder {
 public:
  bool fSound = true;
  std::vector<std::string> fHooks;
  std::function<void()> fOnHook;

 protected:
  void Enter(const char* hook) {
    fHooks.push_back(hook);
    if (fOnHook) fOnHook();
  }
  template <class TResult>
  TResult Enter(const char* hook, TResult result) {
    Enter(hook);
    return result;
  }
};

class RecordingView : public CViewGlue, public Recorder {
 public:
  std::string fName = "name";
  TString fTooltip = u"tip";
  TViewParams fParams = {0, {}, kViewDrawDirect, kAutoInvalidationNone};
  IWindow* fWindow = nullptr;
  std::vector<IView*> fSubViews;

 protected:
  bool CViewGlue_CheckInvariant() const override { return fSound; }
  IViewBehavior* CViewGlue_GetBehavior() override {
    Enter("GetBehavior");
    return nullptr;
  }
  IWindow* CViewGlue_GetMotherWindow() override { return Enter("GetMotherWindow", fWindow); }
  IView* CViewGlue_GetSuperView() override {
    Enter("GetSuperView");
    return nullptr;
  }
  bool CViewGlue_IsEffectivelyEnabled() override { return Enter("IsEffectivelyEnabled", true); }
  void CViewGlue_SetParams(const TViewParams&) override { Enter("SetParams"); }
  TViewParams CViewGlue_GetParams() override { return Enter("GetParams", fParams); }
  std::string CViewGlue_GetDebugName() override { return Enter("GetDebugName", fName); }
  TString CViewGlue_GetTooltipText() override { return Enter("GetTooltipText", fTooltip); }
  void CViewGlue_SetTooltipText(const TString&) override { Enter("SetTooltipText"); }
  void CViewGlue_Offset(std::int32_t, std::int32_t) override { Enter("Offset"); }
  std::vector<IView*> CViewGlue_GetSubViewOrder() override { return fSubViews; }
  void CViewGlue_SetSubViewOrder(const std::vector<IView*>&) override { Enter("SetSubViewOrder"); }
  void CViewGlue_Release() override { Enter("Release"); }
};

class RecordingDocumentWindow : public CDocumentWindowGlue, public Recorder {
 public:
  TDocumentWindowState fState{};

 protected:
  bool CDocumentWindowGlue_CheckInvariant() const override { return fSound; }
  TDocumentWindowState CDocumentWindowGlue_GetState() override { return Enter("GetState", fState); }
  void CDocumentWindowGlue_SetState(const TDocumentWindowState&) override { Enter("SetState"); }
  IWindow* CDocumentWindowGlue_GetWindow() override {
    Enter("GetWindow");
    return nullptr;
  }
  IModalOwner* CDocumentWindowGlue_GetModalOwner() override {
    Enter("GetModalOwner");
    return nullptr;
  }
  void CDocumentWindowGlue_FocusNow() override { Enter("FocusNow"); }
  IDocumentWindowBehavior* CDocumentWindowGlue_GetBehavior() override {
    Enter("GetBehavior");
    return nullptr;
  }
  void CDocumentWindowGlue_Release() override { Enter("Release"); }
};

class RecordingFloatingWindow : public CFloatingWindowGlue, public Recorder {
 protected:
  bool CFloatingWindowGlue_CheckInvariant() const override { return fSound; }
  TFloatingWindowState CFloatingWindowGlue_GetState() override {
    return Enter("GetState", TFloatingWindowState{});
  }
  void CFloatingWindowGlue_SetState(const TFloatingWindowState&) override { Enter("SetState"); }
  IWindow* CFloatingWindowGlue_GetWindow() override {
    Enter("GetWindow");
    return nullptr;
  }
  void CFloatingWindowGlue_FocusNow() override { Enter("FocusNow"); }
  IFloatingWindowBehavior* CFloatingWindowGlue_GetBehavior() override {
    Enter("GetBehavior");
    return nullptr;
  }
  void CFloatingWindowGlue_Release() override { Enter("Release"); }
};

class RecordingIcon : public CIconGlue, public Recorder {
 public:
  bool fEqual = true;

 protected:
  bool CIconGlue_CheckInvariant() const override { return fSound; }
  bool CIconGlue_AreEqual(const CIconGlue&) const override {
    if (fOnHook) fOnHook();
    return fEqual;
  }
  std::unique_ptr<IIcon> CIconGlue_Clone() const override {
    if (fOnHook) fOnHook();
    return std::make_unique<RecordingIcon>();
  }
};

// Draw tools over a memory context.
class RecordingTools : public CDrawToolsGlue, public Recorder {
 public:
  RecordingTools(HDC dc, HRGN region) : CDrawToolsGlue({dc}, region) {}
  TNativePort CDrawToolsGlue_GetNativePort() override { return Enter("Open", fNativePort); }
  void CDrawToolsGlue_CloseNativePort() override { Enter("Close"); }
  TRawPixels CDrawToolsGlue_OpenRawPixels() override { return Enter("OpenPixels", TRawPixels{}); }
  void CDrawToolsGlue_CloseRawPixels() override { Enter("ClosePixels"); }
  void CDrawToolsGlue_FlushToScreen(bool) override { Enter("Flush"); }
};

template <class TObject>
struct Row {
  const char* fName;  // as in the messages
  std::function<TError(TObject&)> fCall;
};

// A broken object reaches no hook, and a hook that throws gives its code.
template <class TObject>
void CheckShape(const char* invariant, const std::vector<Row<TObject>>& rows) {
  RecordingDebugOutput output;
  for (const Row<TObject>& row : rows) {
    SCOPED_TRACE(row.fName);
    TObject object;
    output.Reset();
    object.fSound = false;
    EXPECT_EQ(kBadInputProgrammingError, row.fCall(object));
    EXPECT_EQ(std::vector<std::string>{std::string("Bad Input to ") + row.fName + ": " + invariant},
              output.fAssertions);
    EXPECT_TRUE(object.fHooks.empty());
    object.fSound = true;
    object.fOnHook = [] { throw XApplicationError(100123); };
    EXPECT_EQ(100123u, row.fCall(object));
    object.fOnHook = [] { throw 5; };
    EXPECT_EQ(kOtherError, row.fCall(object));
    EXPECT_EQ(2u, object.fHooks.size());
    object.fOnHook = nullptr;
    EXPECT_EQ(kOK, row.fCall(object));
  }
}

}  // namespace

TEST(ContractView, Shape) {
  IViewBehavior* behavior;
  IWindow* window;
  IView* view;
  TFlag flag;
  TViewParams params = {0, {}, kViewDrawDirect, kAutoInvalidationNone};
  char name[kDebugNameChars + 1];
  TChar tooltip[kTooltipTextChars + 1];
  CheckShape<RecordingView>(
      "CViewGlue_CheckInvariant()",
      {{"IView_GetBehavior()", [&](IView& v) { return v.IView_GetBehavior(behavior); }},
       {"IView_GetMotherWindow()", [&](IView& v) { return v.IView_GetMotherWindow(window); }},
       {"IView_GetSuperView()", [&](IView& v) { return v.IView_GetSuperView(view); }},
       {"IView_IsEffectivelyEnabled()", [&](IView& v) { return v.IView_IsEffectivelyEnabled(flag); }},
       {"IView_SetParams()",
        [&](IView& v) {
          return v.IView_SetParams({0, {}, kViewDrawDirect, {}});
        }},
       {"IView_GetParams()", [&](IView& v) { return v.IView_GetParams(params); }},
       {"IView_GetDebugName()", [&](IView& v) { return v.IView_GetDebugName(name); }},
       {"IView_GetTooltipText()", [&](IView& v) { return v.IView_GetTooltipText(tooltip); }},
       {"IView_SetTooltipText()", [&](IView& v) { return v.IView_SetTooltipText(u"x"); }},
       {"IView_Offset()", [&](IView& v) { return v.IView_Offset(1, 2); }},
       {"IView_SetSubViewOrder()", [&](IView& v) { return v.IView_SetSubViewOrder(nullptr, 0); }},
       {"IView_Release()", [&](IView& v) { return v.IView_Release(); }}});
}

TEST(ContractView, SetParamsTestsTheRecordBeforeTheObject) {
  RecordingDebugOutput output;
  RecordingView view;
  view.fSound = false;
  EXPECT_EQ(kBadInputProgrammingError, view.IView_SetParams({0x10, {}, kViewDrawDirect, {}}));
  EXPECT_EQ((std::vector<std::string>{"false", "Bad Input to IView_SetParams(): ValidateViewParams(params)"}),
            output.fAssertions);
}

TEST(ContractView, TextsAreCutToTheirBuffers) {
  RecordingDebugOutput output;
  RecordingView view;
  view.fName.assign(300, 'n');
  view.fTooltip.assign(2000, u't');
  char name[kDebugNameChars + 2] = {};
  name[kDebugNameChars + 1] = '!';
  TChar tooltip[kTooltipTextChars + 2] = {};
  tooltip[kTooltipTextChars + 1] = u'!';
  EXPECT_EQ(kOK, view.IView_GetDebugName(name));
  EXPECT_EQ(kOK, view.IView_GetTooltipText(tooltip));
  EXPECT_EQ(std::string(255, 'n'), name);
  EXPECT_EQ(TString(1023, u't'), tooltip);
  EXPECT_EQ('!', name[kDebugNameChars + 1]);
  EXPECT_EQ(u'!', tooltip[kTooltipTextChars + 1]);
  EXPECT_EQ((std::vector<std::string>{"debugName.length() <= kDebugNameChars",
                                      "tooltipText.length() <= kTooltipTextChars"}),
            output.fAssertions);
  EXPECT_EQ(kBadInputProgrammingError, view.IView_SetTooltipText(nullptr));
}

TEST(ContractView, OrderTakesTheSameViewsOnly) {
  RecordingDebugOutput output;
  RecordingView view, a, b, c;
  view.fSubViews = {&a, &b};
  IView* const permuted[] = {&b, &a};
  IView* const missing[] = {&a};
  IView* const other[] = {&a, &c};
  EXPECT_EQ(kOK, view.IView_SetSubViewOrder(permuted, 2));
  EXPECT_EQ(std::vector<std::string>{"SetSubViewOrder"}, view.fHooks);
  EXPECT_TRUE(output.fAssertions.empty());
  for (const auto& [list, count] : {std::pair{missing, 1u}, std::pair{other, 2u}}) {
    output.Reset();
    EXPECT_EQ(kBadInputProgrammingError, view.IView_SetSubViewOrder(list, count));
    EXPECT_EQ(
        std::vector<std::string>{
            "Bad Input to IView_SetSubViewOrder(): (std::set<IView*>(oldSubViews.begin(), "
            "oldSubViews.end()) == std::set<IView*>(newSubViews.begin(), newSubViews.end()))"},
        output.fAssertions);
  }
  EXPECT_EQ(kBadInputProgrammingError, view.IView_SetSubViewOrder(nullptr, 2));
  EXPECT_EQ(1u, view.fHooks.size());
  CVectorViewReceiver receiver;
  EXPECT_EQ(kOK, view.IView_GetSubViewOrder(receiver));
  EXPECT_EQ(view.fSubViews, receiver.fViews);
}

TEST(ContractView, ParamsArePoisonedAndChecked) {
  RecordingDebugOutput output;
  RecordingView view;
  TViewParams params{};
  view.fOnHook = [&] {
    EXPECT_EQ(0xEEEEEEEEu, params.fFlags);
    throw XBadFormat();
  };
  EXPECT_EQ(kBadFormatError, view.IView_GetParams(params));
  EXPECT_TRUE(output.fAssertions.empty());
  view.fOnHook = nullptr;
  view.fParams.fFlags = 0x10;
  EXPECT_EQ(kOK, view.IView_GetParams(params));
  EXPECT_EQ((std::vector<std::string>{"false", "ValidateViewParams(params)"}), output.fAssertions);
  output.Reset();
  IWindow* window = reinterpret_cast<IWindow*>(&view);
  EXPECT_EQ(kOK, view.IView_GetMotherWindow(window));
  EXPECT_EQ(std::vector<std::string>{"outWindow != NULL"}, output.fAssertions);
}

TEST(ContractWindowKinds, Shape) {
  TDocumentWindowState state{};
  state.fPlacement.fZoomState = kWindowStateUser;
  TDocumentWindowState read;
  IWindow* window;
  IModalOwner* owner;
  IDocumentWindowBehavior* behavior;
  CheckShape<RecordingDocumentWindow>(
      "CDocumentWindowGlue_CheckInvariant()",
      {{"IDocumentWindow_SetState()", [&](IDocumentWindow& w) { return w.IDocumentWindow_GetState(read); }},
       {"IDocumentWindow_SetState()", [&](IDocumentWindow& w) { return w.IDocumentWindow_SetState(state); }},
       {"IDocumentWindow_GetWindow()",
        [&](IDocumentWindow& w) { return w.IDocumentWindow_GetWindow(window); }},
       {"IDocumentWindow_GetModalOwner()",
        [&](IDocumentWindow& w) { return w.IDocumentWindow_GetModalOwner(owner); }},
       {"IDocumentWindow_FocusNow()", [&](IDocumentWindow& w) { return w.IDocumentWindow_FocusNow(); }},
       {"IDocumentWindow_GetBehavior()",
        [&](IDocumentWindow& w) { return w.IDocumentWindow_GetBehavior(behavior); }},
       {"IDocumentWindow_FocusNow()", [&](IDocumentWindow& w) { return w.IDocumentWindow_Release(); }}});
  IFloatingWindowBehavior* floatingBehavior;
  TFloatingWindowState floatingState{};
  floatingState.fPlacement.fZoomState = kWindowStateIdeal;
  CheckShape<RecordingFloatingWindow>(
      "CFloatingWindowGlue_CheckInvariant()",
      {{"IFloatingWindow_SetState()",
        [&](IFloatingWindow& w) { return w.IFloatingWindow_SetState(floatingState); }},
       {"IFloatingWindow_GetBehavior()",
        [&](IFloatingWindow& w) { return w.IFloatingWindow_GetBehavior(floatingBehavior); }},
       {"IFloatingWindow_FocusNow()", [&](IFloatingWindow& w) { return w.IFloatingWindow_Release(); }}});
}

TEST(ContractWindowKinds, StatesArePoisonedAndValidated) {
  RecordingDebugOutput output;
  RecordingDocumentWindow window;
  output.Reset();
  TDocumentWindowState state{};
  EXPECT_EQ(kBadInputProgrammingError, window.IDocumentWindow_SetState(state));
  EXPECT_EQ((std::vector<std::string>{
                "false", "Bad Input to IDocumentWindow_SetState(): ValidateDocumentWindowState(state)"}),
            output.fAssertions);
  EXPECT_TRUE(window.fHooks.empty());
  window.fOnHook = [&] { EXPECT_EQ(static_cast<TChar>(0xEEEE), state.fTitle[1023]); };
  output.Reset();
  EXPECT_EQ(kOK, window.IDocumentWindow_GetState(state));
  EXPECT_EQ((std::vector<std::string>{"false", "ValidateDocumentWindowState(state)"}), output.fAssertions);
  EXPECT_TRUE(window.IDocumentWindow_CheckInvariant());
  window.fSound = false;
  EXPECT_FALSE(window.IDocumentWindow_CheckInvariant());
}

TEST(ContractIcon, EqualityAndClones) {
  RecordingDebugOutput output;
  RecordingIcon a, b;
  TFlag equal = 5;
  EXPECT_EQ(kOK, a.IIcon_AreEqual(b, equal));
  EXPECT_EQ(1u, equal);
  b.fSound = false;
  equal = 5;
  EXPECT_EQ(kBadInputProgrammingError, a.IIcon_AreEqual(b, equal));
  EXPECT_EQ(5u, equal);
  b.fSound = true;
  output.Reset();
  a.fOnHook = [&] {
    EXPECT_EQ(666u, equal);
    throw XBadFormat();
  };
  EXPECT_EQ(kBadFormatError, a.IIcon_AreEqual(b, equal));
  EXPECT_EQ(666u, equal);
  EXPECT_TRUE(output.fAssertions.empty());
  TError error = kOK;
  EXPECT_EQ(nullptr, a.IIcon_Clone(error));
  EXPECT_EQ(kBadFormatError, error);
  a.fOnHook = nullptr;
  std::unique_ptr<IIcon> clone(a.IIcon_Clone(error));
  EXPECT_NE(nullptr, clone);
  EXPECT_EQ(kOK, error);
}

TEST(ContractDrawTools, OneOfPortAndPixelsAtATime) {
  RecordingDebugOutput output;
  HDC dc = ::CreateCompatibleDC(nullptr);
  HRGN region = ::CreateRectRgn(0, 0, 10, 10);
  {
    RecordingTools tools(dc, region);
    TNativePort port;
    TRawPixels pixels;
    const struct {
      std::function<TError()> fCall;
      TError fResult;
      const char* fAssertion;
    } steps[] = {
        {[&] { return tools.IDrawTools_CloseNativePort(); }, 12003,
         "Illegal calling sequence when calling CDrawToolsGlue::IDrawTools_CloseNativePort: "
         "fNativePortIsOpen"},
        {[&] { return tools.IDrawTools_CloseRawPixels(); }, 12003,
         "Illegal calling sequence when calling CDrawToolsGlue::IDrawTools_CloseRawPixels: "
         "fRawPixelsAreOpen"},
        {[&] { return tools.IDrawTools_OpenNativePort(port); }, 12000, nullptr},
        {[&] { return tools.IDrawTools_OpenNativePort(port); }, 12003,
         "Illegal calling sequence when calling CDrawToolsGlue::IDrawTools_OpenNativePort: "
         "!fNativePortIsOpen"},
        {[&] { return tools.IDrawTools_OpenRawPixels(pixels); }, 12003,
         "Illegal calling sequence when calling CDrawToolsGlue::IDrawTools_OpenRawPixels: "
         "!fNativePortIsOpen"},
        {[&] { return tools.IDrawTools_CloseRawPixels(); }, 12002,
         "Bad Input to CDrawToolsGlue::IDrawTools_CloseRawPixels: !fNativePortIsOpen"},
        {[&] { return tools.IDrawTools_CloseNativePort(); }, 12000, nullptr},
        {[&] { return tools.IDrawTools_OpenRawPixels(pixels); }, 12000, nullptr},
        {[&] { return tools.IDrawTools_OpenRawPixels(pixels); }, 12003,
         "Illegal calling sequence when calling CDrawToolsGlue::IDrawTools_OpenRawPixels: "
         "!fRawPixelsAreOpen"},
        {[&] { return tools.IDrawTools_OpenNativePort(port); }, 12003,
         "Illegal calling sequence when calling CDrawToolsGlue::IDrawTools_OpenNativePort: "
         "!fRawPixelsAreOpen"},
        {[&] { return tools.IDrawTools_CloseNativePort(); }, 12002,
         "Bad Input to CDrawToolsGlue::IDrawTools_OpenNativePort: !fRawPixelsAreOpen"},
        {[&] { return tools.IDrawTools_CloseRawPixels(); }, 12000, nullptr},
    };
    for (std::size_t i = 0; i < std::size(steps); ++i) {
      SCOPED_TRACE(i);
      output.Reset();
      EXPECT_EQ(steps[i].fResult, steps[i].fCall());
      EXPECT_EQ(
          steps[i].fAssertion ? std::vector<std::string>{steps[i].fAssertion} : std::vector<std::string>(),
          output.fAssertions);
    }
    EXPECT_EQ((std::vector<std::string>{"Open", "Close", "OpenPixels", "ClosePixels"}), tools.fHooks);
    // A hook that fails leaves the port closed.
    tools.fOnHook = [] { throw XBadFormat(); };
    EXPECT_EQ(kBadFormatError, tools.IDrawTools_OpenNativePort(port));
    tools.fOnHook = nullptr;
    EXPECT_EQ(kOK, tools.IDrawTools_OpenNativePort(port));
    output.Reset();
  }
  EXPECT_EQ(std::vector<std::string>{"!fNativePortIsOpen"}, output.fAssertions);
  ::DeleteObject(region);
  ::DeleteDC(dc);
}

TEST(ContractDrawTools, DirtyRegionIsCutToTheViewsOnTheWay) {
  RecordingDebugOutput output;
  HDC dc = ::CreateCompatibleDC(nullptr);
  HRGN region = ::CreateRectRgn(0, 0, 100, 100);
  {
    RecordingTools tools(dc, region);
    const auto box = [&] {
      void* native = nullptr;
      EXPECT_EQ(kOK, tools.IDrawTools_GetDirtyRegion(native));
      RECT r;
      ::GetRgnBox(static_cast<HRGN>(native), &r);
      return std::vector<LONG>{r.left, r.top, r.right, r.bottom};
    };
    EXPECT_EQ((std::vector<LONG>{0, 0, 100, 100}), box());
    tools.PushViewBounds({10, 10, 200, 50});
    EXPECT_EQ((std::vector<LONG>{10, 10, 100, 50}), box());
    tools.PushViewBounds({0, 20, 30, 200});
    EXPECT_EQ((std::vector<LONG>{10, 20, 30, 50}), box());
    EXPECT_EQ((std::vector<LONG>{10, 20, 30, 50}), box());
    tools.PopViewBounds({0, 20, 30, 200});
    EXPECT_EQ((std::vector<LONG>{10, 10, 100, 50}), box());
    EXPECT_TRUE(output.fAssertions.empty());
    void* native = region;
    EXPECT_EQ(kBadInputProgrammingError, tools.IDrawTools_GetDirtyRegion(native));
    EXPECT_EQ(
        std::vector<std::string>{
            "Bad Input to CDrawToolsGlue::IDrawTools_GetDirtyRegion: (outNativeRegion == NULL)"},
        output.fAssertions);
    output.Reset();
    tools.PopViewBounds({10, 10, 200, 51});
    EXPECT_EQ(1u, output.fAssertions.size());
    output.Reset();
    tools.PopViewBounds({0, 0, 1, 1});
    EXPECT_EQ(std::vector<std::string>{"fCurrentViewSubtreeBounds.size() > 0"}, output.fAssertions);
  }
  // The client's region has not been written to.
  RECT r;
  EXPECT_EQ(SIMPLEREGION, ::GetRgnBox(region, &r));
  EXPECT_EQ(100, r.right);
  ::DeleteObject(region);
  ::DeleteDC(dc);
}
