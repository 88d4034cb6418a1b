// A window without a native one, with a root view: the real contract layer, and a record of what the views
// ask of it.
#pragma once

#include <boost/weak_ptr.hpp>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Component/Portable/ViewImpl.h"
#include "Tests/Support/RecordingViewBehavior.h"

namespace NSMorvaneTest {

inline RecordingViewBehavior& BehaviorOf(CViewImpl& view) {
  return static_cast<RecordingViewBehavior&>(*view.GetBehavior());
}

inline void SetFlags(CViewImpl& view, std::uint32_t flags) {
  TViewParams params = view.GetParams();
  params.fFlags = flags;
  view.IView_SetParams(params);
}

inline TError SetRect(CViewImpl& view, const TRect& rect) {
  TViewParams params = view.GetParams();
  params.fRect = rect;
  return view.IView_SetParams(params);
}

inline TError SetModes(CViewImpl& view, TViewDrawMode drawMode, TAutoInvalidation autoInvalidation) {
  TViewParams params = view.GetParams();
  params.fDrawMode = drawMode;
  params.fAutoInvalidation = autoInvalidation;
  return view.IView_SetParams(params);
}

class FakeViewWindow : public CWindowGlue, public IImplFocusTools, public IViewWindow {
 public:
  // Takes over the behaviour of the root view; without one, it has a recording one.
  explicit FakeViewWindow(const TRect& rootRect = {0, 0, 400, 300}, IViewBehavior* rootBehavior = nullptr) {
    const TViewImplPtr root(new CViewImpl(nullptr, this));
    root->SetClientsViewReference(root);
    if (!rootBehavior) rootBehavior = new RecordingViewBehavior("root", fSharedLog);
    root->SetBehavior(boost::shared_ptr<IViewBehavior>(rootBehavior));
    root->SetBounds(rootRect);
    fRootView = root.get();
    Reset();
  }
  ~FakeViewWindow() override { EndRootView(); }

  CViewImpl& Root() { return *fRootView; }
  // Live, with a recording behaviour. Release it with IView_Release.
  CViewImpl& MakeView(CViewImpl& superView, const TRect& rect, const std::string& name,
                      std::uint32_t flags = kViewEnabled) {
    struct Factory : IViewBehaviorFactory {
      Factory(const std::string& name, const std::shared_ptr<Log>& log) : fName(name), fLog(log) {}
      IViewBehavior* IViewBehaviorFactory_CreateBehavior(IView&, TError& outError) override {
        outError = kOK;
        return new RecordingViewBehavior(fName, fLog);
      }
      const std::string& fName;
      const std::shared_ptr<Log>& fLog;
    } factory(name, fSharedLog);
    CViewImpl& view = *CViewImpl::MakeSubView(nullptr, factory, superView, name);
    SetRect(view, rect);
    if (flags != kViewEnabled) SetFlags(view, flags);
    Reset();
    return view;
  }
  // As the window's end does it, whatever views are left.
  void EndRootView() {
    if (!fRootView) return;
    if (!fRootView->GetRawSubViews().empty()) fRootView->ForgetWindow();
    fRootView->IView_Release();
    fRootView = nullptr;
  }
  // Forgets what was recorded.
  void Reset() {
    fLog.clear();
    fInvalidRects.clear();
    fInvalid = CRegion();
    fToolRectsMarked = 0;
  }

  void InvalidateRect(const TRect& rect) override {
    fInvalidRects.push_back(rect);
    fInvalid.UnionRect(rect);
  }
  void InvalidateRegion(const CRegion& region) override {
    for (const TRect& rect : region.GetRects()) InvalidateRect(rect);
  }
  void MarkToolRectsDirty() override { ++fToolRectsMarked; }
  std::uint32_t AddTool(CViewImpl& view, const TString& text) override {
    AskForNativeTarget(view);
    if (fAddToolFails) return 0;
    fTools[++fLastTool] = text;
    return fLastTool;
  }
  void UpdateToolText(std::uint32_t tool, CViewImpl&, const TString& text) override {
    fTools.at(tool) = text;
  }
  void RemoveTool(std::uint32_t tool, CViewImpl& view) override {
    AskForNativeTarget(view);
    fTools.erase(tool);
  }

  CViewImpl* IImplFocusTools_GetOnDutyFocusView() override { return fFocusView; }
  CViewImpl* IImplFocusTools_GetConceptualFocusView() override { return fFocusView; }
  void IImplFocusTools_SetConceptualFocusView(CViewImpl* view) override {
    CWindowGlue_SetConceptualFocusView(view);
  }
  void IImplFocusTools_GetTabViews(std::vector<CViewImpl*>& out) override { out = fTabViews; }
  void IImplFocusTools_SetTabViews(std::vector<CViewImpl*> tabViews) override { fTabViews = tabViews; }
  boost::shared_ptr<void> IImplFocusTools_KeepAlive() override { return fSelf.lock(); }

  // What the window is told, and what it says.
  bool fActive = true;
  bool fAddToolFails = false;
  CViewImpl* fFocusView = nullptr;
  std::vector<CViewImpl*> fTabViews;
  std::map<std::uint32_t, TString> fTools;
  boost::weak_ptr<FakeViewWindow> fSelf;  // for a window that callbacks end

  // What is recorded.
  const std::shared_ptr<Log> fSharedLog = std::make_shared<Log>();  // of all behaviours, which may outlive it
  Log& fLog = *fSharedLog;
  std::vector<TRect> fInvalidRects;
  CRegion fInvalid;
  int fToolRectsMarked = 0;

 protected:
  bool CWindowGlue_CheckInvariant() const override { return true; }
  TNativeWindow CWindowGlue_GetNativeWindow() override { return {nullptr}; }
  CViewImpl* CWindowGlue_GetOnDutyFocusView() override { return fActive ? fFocusView : nullptr; }
  CViewImpl* CWindowGlue_GetConceptualFocusView() override { return fFocusView; }
  // Tells the views alone, and not their super views.
  void CWindowGlue_SetConceptualFocusView(CViewImpl* view) override {
    if (view == fFocusView) return;
    if (fActive && fFocusView && fFocusView->GetBehavior())
      fFocusView->GetBehavior()->IViewBehavior_OnOnDutyFocusChanged(0);
    if (view) AskForNativeTarget(*view);
    fFocusView = view;
    if (fActive && view && view->GetBehavior()) view->GetBehavior()->IViewBehavior_OnOnDutyFocusChanged(1);
  }
  std::vector<CViewImpl*> CWindowGlue_GetTabViews() override { return fTabViews; }
  void CWindowGlue_SetTabViews(const std::vector<CViewImpl*>& tabViews) override { fTabViews = tabViews; }
  CViewImpl* CWindowGlue_GetRootView() override { return fRootView; }
  bool CWindowGlue_IsActive() override { return fActive; }
  TRect CWindowGlue_GetFrameRect() override { return {}; }
  TRect CWindowGlue_FrameRectToClientRect(const TRect& rect) override { return rect; }
  TRect CWindowGlue_ClientRectToFrameRect(const TRect& rect) override { return rect; }
  std::uint8_t CWindowGlue_GetGlobalAlpha() override { return 255; }
  void CWindowGlue_SetGlobalAlpha(std::uint8_t) override {}

 private:
  void AskForNativeTarget(CViewImpl& view) {
    TNativeWindow target = {};
    if (view.GetBehavior()) MORVANE_CHECK(view.GetBehavior()->IViewBehavior_GetNativeFocusTarget(target));
  }

  CViewImpl* fRootView = nullptr;
  std::uint32_t fLastTool = 0;
};

}  // namespace NSMorvaneTest
