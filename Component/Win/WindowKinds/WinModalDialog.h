// Modal dialogs: with an owner they block that, without one the whole application.
#pragma once

#include "Component/Portable/Windows/MorvaneGlueWindowKinds.h"
#include "Component/Win/WindowKinds/WinWindowKind.h"

namespace NSMorvane {

struct TModalDialogKind {
  using TGlue = CModalDialogGlue;
  using TInterface = IModalDialog;
  using TBehavior = IModalDialogBehavior;
  using TState = TModalDialogState;
  static constexpr const char* kNameInLog = "modal dialog";
  static constexpr auto kOnClientSizeChanged = &TBehavior::IModalDialogBehavior_OnClientSizeChanged;
  static constexpr auto kOnPlacementChanged = &TBehavior::IModalDialogBehavior_OnPlacementChanged;
  static constexpr auto kOnActivationChanged = &TBehavior::IModalDialogBehavior_OnActivationChanged;
  static constexpr auto kHandleKeyDown = &TBehavior::IModalDialogBehavior_HandleKeyDown;
  static constexpr auto kOnKeyboardFocusChanged = &TBehavior::IModalDialogBehavior_OnKeyboardFocusChanged;
  static constexpr auto kOnSetupMenuBar = &TBehavior::IModalDialogBehavior_OnSetupMenuBar;
  static constexpr auto kOnHelpRequested = &TBehavior::IModalDialogBehavior_OnHelpRequested;
  static constexpr auto kOnRequestClose = &TBehavior::IModalDialogBehavior_OnRequestClose;
};

class CModalDialogImpl final : public CWinWindowKind<TModalDialogKind> {
 public:
  // `owner` may be null.
  CModalDialogImpl(IWindowHost* host, IModalOwner* owner, TStyleFlags styleFlags);
  ~CModalDialogImpl() override;

  // The behaviour can end the window from within these two: they keep it to their end.
  TError IModalDialog_SetState(const TState& state) override;
  TError IModalDialog_FocusNow() override;

 protected:
  bool CModalDialogGlue_CheckInvariant() const override { return CheckInvariant(); }
  TState CModalDialogGlue_GetState() override { return GetKindState(); }
  void CModalDialogGlue_SetState(const TState& state) override { SetKindState(state); }
  IWindow* CModalDialogGlue_GetWindow() override { return this; }
  IModalOwner* CModalDialogGlue_GetModalOwner() override { return this; }
  void CModalDialogGlue_FocusNow() override { FocusNow(); }
  TBehavior* CModalDialogGlue_GetBehavior() override { return GetKindBehavior(); }
  void CModalDialogGlue_Release() override { ReleaseWindow(); }
};

}  // namespace NSMorvane
