// Modeless dialogs.
#pragma once

#include "Component/Portable/Windows/MorvaneGlueWindowKinds.h"
#include "Component/Win/WindowKinds/WinWindowKind.h"

namespace NSMorvane {

struct TModelessDialogKind {
  using TGlue = CModelessDialogGlue;
  using TInterface = IModelessDialog;
  using TBehavior = IModelessDialogBehavior;
  using TState = TModelessDialogState;
  static constexpr const char* kNameInLog = "modeless dialog";
  static constexpr auto kOnClientSizeChanged = &TBehavior::IModelessDialogBehavior_OnClientSizeChanged;
  static constexpr auto kOnPlacementChanged = &TBehavior::IModelessDialogBehavior_OnPlacementChanged;
  static constexpr auto kOnActivationChanged = &TBehavior::IModelessDialogBehavior_OnActivationChanged;
  static constexpr auto kHandleKeyDown = &TBehavior::IModelessDialogBehavior_HandleKeyDown;
  static constexpr auto kOnKeyboardFocusChanged = &TBehavior::IModelessDialogBehavior_OnKeyboardFocusChanged;
  static constexpr auto kOnSetupMenuBar = &TBehavior::IModelessDialogBehavior_OnSetupMenuBar;
  static constexpr auto kOnHelpRequested = &TBehavior::IModelessDialogBehavior_OnHelpRequested;
  static constexpr auto kOnRequestClose = &TBehavior::IModelessDialogBehavior_OnRequestClose;
};

class CModelessDialogImpl final : public CWinWindowKind<TModelessDialogKind> {
 public:
  CModelessDialogImpl(IWindowHost* host, TStyleFlags styleFlags, bool listedInWindowMenu);
  ~CModelessDialogImpl() override;

  // The behaviour can end the window from within these two: they keep it to their end.
  TError IModelessDialog_SetState(const TState& state) override;
  TError IModelessDialog_FocusNow() override;

 protected:
  bool CModelessDialogGlue_CheckInvariant() const override { return CheckInvariant(); }
  TState CModelessDialogGlue_GetState() override { return GetKindState(); }
  void CModelessDialogGlue_SetState(const TState& state) override { SetKindState(state); }
  IWindow* CModelessDialogGlue_GetWindow() override { return this; }
  IModalOwner* CModelessDialogGlue_GetModalOwner() override { return this; }
  void CModelessDialogGlue_FocusNow() override { FocusNow(); }
  TBehavior* CModelessDialogGlue_GetBehavior() override { return GetKindBehavior(); }
  void CModelessDialogGlue_Release() override { ReleaseWindow(); }
};

}  // namespace NSMorvane
