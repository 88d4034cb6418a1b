// A window without a native one, with a root view: the real contract layer, and a record of what the views
// ask of it. Its views write down what they are told.
#pragma once

#include <boost/weak_ptr.hpp>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Component/Portable/Surfaces/Region.h"
#include "Component/Portable/Views/ViewImpl.h"
#include "Component/Portable/Views/ViewWindow.h"
#include "Component/Portable/Windows/MorvaneGlueWindow.h"
#include "Component/Portable/Windows/WindowFocus.h"
#include "Interface/MorvaneDefaults.h"

namespace NSMorvaneTest {

using namespace NSMorvane;
using Log = std::vector<std::string>;

// Lines look like "name Offset 3 -1". GetHitRects and GetNativeFocusTarget come too often to be of interest,
// and drawing is counted. Several views share one log.
class RecordingViewBehavior : public CDefaultViewBehavior {
 public:
  using TDraw = std::function<TError(IDrawTools&)>;

  RecordingViewBehavior(std::string name, std::shared_ptr<Log> log)
      : fName(std::move(name)), fLog(std::move(log)) {}
  ~RecordingViewBehavior() override {
    fLog->push_back(fName + " Deleted");
    if (fOnDeleted) fOnDeleted();
  }

  TError IViewBehavior_Draw(IDrawTools& tools) override {
    ++fDraws;
    return fOnDraw ? fOnDraw(tools) : kOK;
  }
  TError IViewBehavior_PostProcessDraw(IDrawTools& tools) override {
    ++fPostProcesses;
    return fOnPostProcess ? fOnPostProcess(tools) : kOK;
  }
  TError IViewBehavior_OnOffset(std::int32_t dx, std::int32_t dy) override {
    return Called("Offset " + std::to_string(dx) + " " + std::to_string(dy));
  }
  TError IViewBehavior_OnEffectivelyEnabledChanged(TFlag enabled) override {
    return Called("Enabled " + std::to_string(enabled));
  }
  TError IViewBehavior_OnOnDutyFocusChanged(TFlag gained) override {
    return Called("Focus " + std::to_string(gained));
  }
  TError IViewBehavior_GetHitRects(IRectsGetter& out) override {
    if (!fHitRects.empty())
      out.IRectsGetter_AddRects(fHitRects.data(), static_cast<std::uint32_t>(fHitRects.size()));
    return Called();
  }
  TError IViewBehavior_GetNativeFocusTarget(TNativeWindow& out) override {
    out.fHwnd = nullptr;
    return Called();
  }

  std::vector<TRect> fHitRects;
  TError fError = kOK;            // what every call returns, save the drawing
  std::function<void()> fOnCall;  // in every such call, after the line was written; may end the view
  std::function<void()> fOnDeleted;
  TDraw fOnDraw;
  TDraw fOnPostProcess;
  int fDraws = 0;
  int fPostProcesses = 0;

 private:
  TError Called(const std::string& what = "") {
    if (!what.empty()) fLog->push_back(fName + " " + what);
    const TError error = fError;
    // A copy: the object may be gone behind the call.
    if (const std::function<void()> onCall = fOnCall) onCall();
    return error;
  }

  std::string fName;
  std::shared_ptr<Log> fLog;
};

inline RecordingViewBehavior& BehaviorOf(CViewImpl& view) {
  return static_cast<RecordingViewBehavior&>(*view.GetBehavior());
}

template <class TValue>
TError SetParam(CViewImpl& view, TValue TViewParams::*field, std::type_identity_t<TValue> value) {
  TViewParams params = view.GetParams();
  params.*field = value;
  return view.IView_SetParams(params);
}
inline TError SetFlags(CViewImpl& view, std::uint32_t flags) {
  return SetParam(view, &TViewParams::fFlags, flags);
}
inline TError SetRect(CViewImpl& view, const TRect& rect) {
  return SetParam(view, &TViewParams::fRect, rect);
}
inline TError SetMode(CViewImpl& view, TViewDrawMode mode) {
  return SetParam(view, &TViewParams::fDrawMode, mode);
}
inline TError SetInvalidation(CViewImpl& view, TAutoInvalidation invalidation) {
  return SetParam(view, &TViewParams::fAutoInvalidation, invalidation);
}

class FakeViewWindow : public CWindowGlue, public IImplFocusTools, public IFocusWindow, public IViewWindow {
 public:
  explicit FakeViewWindow(const TRect& rootRect = {0, 0, 400, 300}) {
    const TViewImplPtr root(new CViewImpl(this));
    root->SetClientsViewReference(root);
    root->SetBehavior(boost::shared_ptr<IViewBehavior>(new RecordingViewBehavior("root", fSharedLog)));
    root->SetBounds(rootRect);
    fRootView = root.get();
    Reset();
  }
  ~FakeViewWindow() override { EndRootView(); }
  // Whatever views are left, the last made first.
  void ReleaseViews() {
    for (; !fViews.empty(); fViews.pop_back())
      if (const TViewImplPtr view = fViews.back().lock(); view && view->IsLive()) view->IView_Release();
  }

  CViewImpl& Root() { return *fRootView; }
  // Live, with a recording behaviour, until ReleaseViews or its own release.
  CViewImpl& MakeView(CViewImpl& superView, const TRect& rect, const std::string& name,
                      std::uint32_t flags = kViewEnabled, TViewDrawMode mode = kViewDrawDirect) {
    struct Factory : IViewBehaviorFactory {
      Factory(const std::string& name, const std::shared_ptr<Log>& log) : fName(name), fLog(log) {}
      IViewBehavior* IViewBehaviorFactory_CreateBehavior(IView&, TError& outError) override {
        outError = kOK;
        return new RecordingViewBehavior(fName, fLog);
      }
      const std::string& fName;
      const std::shared_ptr<Log>& fLog;
    } factory(name, fSharedLog);
    const TViewImplPtr view = CViewImpl::MakeSubView(factory, superView, name);
    fViews.push_back(view);
    SetRect(*view, rect);
    if (flags != kViewEnabled) SetFlags(*view, flags);
    SetMode(*view, mode);
    Reset();
    return *view;
  }
  // As the window's end does it, whatever views are left.
  void EndRootView() {
    if (!fRootView) return;
    fFocus.Forget();
    if (!fRootView->GetRawSubViews().empty()) fRootView->ForgetWindow();
    fRootView->IView_Release();
    fRootView = nullptr;
  }
  // Forgets what was recorded.
  void Reset() {
    fLog.clear();
    fInvalidRects.clear();
    fInvalid = CRegion();
  }

  void InvalidateRect(const TRect& rect) override {
    fInvalidRects.push_back(rect);
    fInvalid.UnionRect(rect);
  }
  void BeginInvalidations() override {}
  void EndInvalidations() noexcept override {}
  void InvalidateRegion(const CRegion& region) override {
    for (const TRect& rect : region.GetRects()) InvalidateRect(rect);
  }
  void MarkToolRectsDirty() override { ++fToolRectMarks; }
  std::uint32_t AddTool(CViewImpl& view, const TString& text) override {
    GetNativeFocusTarget(view);
    if (fAddToolFails) return 0;
    fTools[++fLastTool] = text;
    return fLastTool;
  }
  void UpdateToolText(std::uint32_t tool, CViewImpl&, const TString& text) override {
    fTools.at(tool) = text;
  }
  void RemoveTool(std::uint32_t tool, CViewImpl& view) override {
    GetNativeFocusTarget(view);
    fTools.erase(tool);
  }

  CViewImpl* IImplFocusTools_GetOnDutyFocusView() override { return fFocus.GetNextView(); }
  CViewImpl* IImplFocusTools_GetConceptualFocusView() override { return fFocus.GetNextView(); }
  void IImplFocusTools_SetConceptualFocusView(CViewImpl* view) override { fFocus.PassOn(view); }
  void IImplFocusTools_GetTabViews(std::vector<CViewImpl*>& out) override { out = fTabViews; }
  void IImplFocusTools_RemoveTabView(const CViewImpl* view) noexcept override { std::erase(fTabViews, view); }
  boost::shared_ptr<void> IImplFocusTools_KeepAlive() override { return {}; }

  bool IFocusWindow_IsActive() override { return fIsActive; }
  // As the native windows tell it.
  void IFocusWindow_GiveKeyboard(const TNativeWindow&) override {
    ++fKeyboardGifts;
    fFocus.OnKeyboardLost();
  }
  void IFocusWindow_OnFocusChanged() override {}
  CViewImpl* FocusView() const { return fFocus.GetView(); }

  // What the window is told, and what it says.
  bool fAddToolFails = false;
  bool fIsActive = true;
  CWindowFocus fFocus{*this, *this};
  std::vector<CViewImpl*> fTabViews;
  std::map<std::uint32_t, TString> fTools;

  // What is recorded.
  const std::shared_ptr<Log> fSharedLog = std::make_shared<Log>();  // of all behaviours, which may outlive it
  Log& fLog = *fSharedLog;
  std::vector<TRect> fInvalidRects;
  CRegion fInvalid;
  int fToolRectMarks = 0;
  int fKeyboardGifts = 0;

 protected:
  bool CWindowGlue_CheckInvariant() const override { return true; }
  TNativeWindow CWindowGlue_GetNativeWindow() override { return {nullptr}; }
  CViewImpl* CWindowGlue_GetOnDutyFocusView() override { return fIsActive ? FocusView() : nullptr; }
  CViewImpl* CWindowGlue_GetConceptualFocusView() override { return FocusView(); }
  void CWindowGlue_SetConceptualFocusView(CViewImpl* view) override { fFocus.SetView(view); }
  std::vector<CViewImpl*> CWindowGlue_GetTabViews() override { return fTabViews; }
  void CWindowGlue_SetTabViews(const std::vector<CViewImpl*>& tabViews) override { fTabViews = tabViews; }
  CViewImpl* CWindowGlue_GetRootView() override { return fRootView; }
  bool CWindowGlue_IsActive() override { return fIsActive; }
  TRect CWindowGlue_GetFrameRect() override { return {}; }
  TRect CWindowGlue_FrameRectToClientRect(const TRect& rect) override { return rect; }
  TRect CWindowGlue_ClientRectToFrameRect(const TRect& rect) override { return rect; }
  std::uint8_t CWindowGlue_GetGlobalAlpha() override { return 255; }
  void CWindowGlue_SetGlobalAlpha(std::uint8_t) override {}

 private:
  CViewImpl* fRootView = nullptr;
  std::vector<boost::weak_ptr<CViewImpl>> fViews;
  std::uint32_t fLastTool = 0;
};

}  // namespace NSMorvaneTest
