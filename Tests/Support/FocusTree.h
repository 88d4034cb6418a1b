// A document window with a small tree of views, for what goes along the focus chain.
//
//   root
//     outer
//       inner      focusable
//         leaf     focusable
//     other        focusable
#pragma once

#include <utility>

#include "Support/RecordingWindow.h"

namespace NSMorvaneTest {

constexpr TStyleFlags kPlain = 0;

class FocusTreeTest : public ClientWindowTest {
 protected:
  // Runs with the views in place; the log of the views starts empty with each step.
  void RunWithViews(Steps steps) {
    for (auto& step : steps)
      step = [this, step] {
        fViewLog.clear();
        step();
      };
    steps.insert(steps.begin(), [this] {
      IView& root = RootViewOf(Window());
      fOuter = Make(root, fOuterRecord, 0);
      fInner = Make(*fOuter, fInnerRecord, kViewFocusable);
      fLeaf = Make(*fInner, fLeafRecord, kViewFocusable);
      fOther = Make(root, fOtherRecord, kViewFocusable);
    });
    steps.push_back([this] {
      for (IView** view : {&fLeaf, &fInner, &fOuter, &fOther}) Release(*view);
    });
    RunWithWindow(kPlain, steps);
  }
  template <std::invocable TStep>
  void RunWithViews(TStep step) {
    RunWithViews(Steps{step});
  }
  IView* Make(IView& superView, ViewRecord& record, std::uint32_t flags) {
    CViewFactory<RecordingFocusViewBehavior, ViewRecord&> factory(record);
    TError error = kOtherError;
    IView* const view = fMorvane->IMorvane_CreateView(factory, superView, record.fName.c_str(), error);
    EXPECT_EQ(error, kOK);
    TViewParams params = ViewParams();
    params.fFlags |= flags;
    params.fRect = {10, 10, 90, 90};
    EXPECT_EQ(view->IView_SetParams(params), kOK);
    return view;
  }
  void Release(IView*& view) {
    if (IView* const released = std::exchange(view, nullptr)) {
      EXPECT_EQ(released->IView_Release(), kOK);
    }
  }
  void SetFocusView(IView* view, TError wantedError = kOK) {
    EXPECT_EQ(WindowOf(Window()).IWindow_SetConceptualFocusView(view), wantedError);
  }
  IView* FocusView() {
    IView* view = nullptr;
    EXPECT_EQ(WindowOf(Window()).IWindow_GetConceptualFocusView(view), kOK);
    return view;
  }
  IView* OnDutyView() {
    IView* view = nullptr;
    EXPECT_EQ(WindowOf(Window()).IWindow_GetOnDutyFocusView(view), kOK);
    return view;
  }
  // A native control in the window, which dies with it.
  HWND MakeControl() {
    return CreateWindowExW(0, L"EDIT", L"", WS_CHILD | WS_VISIBLE, 10, 10, 50, 20, Hwnd(), nullptr,
                           GetModuleHandleW(nullptr), nullptr);
  }
  CallLog TakeViewLog() { return std::exchange(fViewLog, {}); }

  CallLog fViewLog;
  ViewRecord fOuterRecord = {fViewLog, "outer", {}, nullptr};
  ViewRecord fInnerRecord = {fViewLog, "inner", {}, nullptr};
  ViewRecord fLeafRecord = {fViewLog, "leaf", {}, nullptr};
  ViewRecord fOtherRecord = {fViewLog, "other", {}, nullptr};
  IView* fOuter = nullptr;
  IView* fInner = nullptr;
  IView* fLeaf = nullptr;
  IView* fOther = nullptr;
};

}  // namespace NSMorvaneTest
