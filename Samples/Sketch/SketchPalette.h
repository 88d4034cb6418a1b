// The tools, in a floating window above all documents.
#pragma once

#include <Morvane.h>
#include <MorvaneDefaults.h>

#include <array>

#include "SketchForm.h"
#include "SketchTools.h"

namespace NSSketch {

class CSketchApplication;

class CSketchToolButton : public NSMorvane::CDefaultHitViewBehavior {
 public:
  CSketchToolButton(NSMorvane::IView& view, NSMorvane::IMorvane& morvane, CSketchApplication& application,
                    TSketchTool tool);

  NSMorvane::TError IViewBehavior_Draw(NSMorvane::IDrawTools& tools) override;
  NSMorvane::TError IViewBehavior_HandleClick(const NSMorvane::TMouseEvent& event,
                                              NSMorvane::TFlag& outHandled) override;
  NSMorvane::TError IViewBehavior_OnMouseTracking(const NSMorvane::TMouseTracking& event,
                                                  NSMorvane::TMousePhase phase,
                                                  NSMorvane::TFlag& outHandled) override;
  NSMorvane::TError IViewBehavior_OnMouseEnterExit(NSMorvane::TFlag entered) override;
  void Invalidate();

 private:
  NSMorvane::IMorvane& fMorvane;
  CSketchApplication& fApplication;
  const TSketchTool fTool;
  bool fIsHot = false;
};

class CSketchPalette : public NSMorvane::CDefaultFloatingWindowBehavior {
 public:
  CSketchPalette(NSMorvane::IFloatingWindow& window, NSMorvane::IMorvane& morvane,
                 CSketchApplication& application);
  ~CSketchPalette() override;

  // Another tool is the current one.
  void OnToolChanged();
  // Puts the window above all others once more. A system without a window manager of its own may let a
  // document that is activated cover it.
  void StayAbove();
  // The window may live on for a while, for the message that it is in the middle of.
  void Close();

  NSMorvane::TError IFloatingWindowBehavior_OnRequestClose(NSMorvane::TCloseReason reason) override;
  NSMorvane::TError IFloatingWindowBehavior_HandleKeyDown(const NSMorvane::TKeyEvent& event,
                                                          NSMorvane::TFlag& outHandled) override;

 private:
  NSMorvane::IMorvane& fMorvane;
  CSketchApplication& fApplication;
  NSMorvane::CViewOf<CSketchFormView> fBackground;
  std::array<NSMorvane::CViewOf<CSketchToolButton>, kSketchToolCount> fButtons;
};

}  // namespace NSSketch
