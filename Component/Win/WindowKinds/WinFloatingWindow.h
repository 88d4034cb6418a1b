// Floating windows: palettes above the others, which are there only while the application is active.
#pragma once

#include "Component/Portable/Windows/MorvaneGlueWindowKinds.h"
#include "Component/Win/WindowKinds/WinWindowKind.h"

namespace NSMorvane {

struct TFloatingWindowKind {
  using TGlue = CFloatingWindowGlue;
  using TInterface = IFloatingWindow;
  using TBehavior = IFloatingWindowBehavior;
  using TState = TFloatingWindowState;
  // These windows have always called themselves so in the log.
  static constexpr const char* kNameInLog = "modeless dialog";
  static constexpr auto kOnClientSizeChanged = &TBehavior::IFloatingWindowBehavior_OnClientSizeChanged;
  static constexpr auto kOnPlacementChanged = &TBehavior::IFloatingWindowBehavior_OnPlacementChanged;
  static constexpr auto kOnActivationChanged = &TBehavior::IFloatingWindowBehavior_OnActivationChanged;
  static constexpr auto kHandleKeyDown = &TBehavior::IFloatingWindowBehavior_HandleKeyDown;
  static constexpr auto kOnKeyboardFocusChanged = &TBehavior::IFloatingWindowBehavior_OnKeyboardFocusChanged;
  static constexpr auto kOnSetupMenuBar = &TBehavior::IFloatingWindowBehavior_OnSetupMenuBar;
  static constexpr auto kOnHelpRequested = &TBehavior::IFloatingWindowBehavior_OnHelpRequested;
  static constexpr auto kOnRequestClose = &TBehavior::IFloatingWindowBehavior_OnRequestClose;
};

class CFloatingWindowImpl final : public CWinWindowKind<TFloatingWindowKind> {
 public:
  CFloatingWindowImpl(IWindowHost* host, TStyleFlags styleFlags);
  ~CFloatingWindowImpl() override;

  // The behaviour can end the window from within these two: they keep it to their end.
  TError IFloatingWindow_SetState(const TState& state) override;
  TError IFloatingWindow_FocusNow() override;

 protected:
  bool CFloatingWindowGlue_CheckInvariant() const override { return CheckInvariant(); }
  TState CFloatingWindowGlue_GetState() override { return GetKindState(); }
  void CFloatingWindowGlue_SetState(const TState& state) override { SetKindState(state); }
  IWindow* CFloatingWindowGlue_GetWindow() override { return this; }
  void CFloatingWindowGlue_FocusNow() override { FocusNow(); }
  TBehavior* CFloatingWindowGlue_GetBehavior() override { return GetKindBehavior(); }
  void CFloatingWindowGlue_Release() override { ReleaseWindow(); }
};

}  // namespace NSMorvane
