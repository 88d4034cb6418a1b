// Document windows.
#pragma once

#include "Component/Portable/Windows/MorvaneGlueWindowKinds.h"
#include "Component/Win/WindowKinds/WinWindowKind.h"

namespace NSMorvane {

struct TDocumentWindowKind {
  using TGlue = CDocumentWindowGlue;
  using TInterface = IDocumentWindow;
  using TBehavior = IDocumentWindowBehavior;
  using TState = TDocumentWindowState;
  static constexpr const char* kNameInLog = "document window";
  static constexpr auto kOnClientSizeChanged = &TBehavior::IDocumentWindowBehavior_OnClientSizeChanged;
  static constexpr auto kOnPlacementChanged = &TBehavior::IDocumentWindowBehavior_OnPlacementChanged;
  static constexpr auto kOnActivationChanged = &TBehavior::IDocumentWindowBehavior_OnActivationChanged;
  static constexpr auto kHandleKeyDown = &TBehavior::IDocumentWindowBehavior_HandleKeyDown;
  static constexpr auto kOnKeyboardFocusChanged = &TBehavior::IDocumentWindowBehavior_OnKeyboardFocusChanged;
  static constexpr auto kOnSetupMenuBar = &TBehavior::IDocumentWindowBehavior_OnSetupMenuBar;
  static constexpr auto kOnHelpRequested = &TBehavior::IDocumentWindowBehavior_OnHelpRequested;
  static constexpr auto kOnRequestClose = &TBehavior::IDocumentWindowBehavior_OnRequestClose;
};

class CDocumentWindowImpl final : public CWinWindowKind<TDocumentWindowKind> {
 public:
  CDocumentWindowImpl(IWindowHost* host, TStyleFlags styleFlags, bool listedInWindowMenu);
  ~CDocumentWindowImpl() override;

  // The behaviour can end the window from within these two: they keep it to their end.
  TError IDocumentWindow_SetState(const TState& state) override;
  TError IDocumentWindow_FocusNow() override;

 protected:
  bool CDocumentWindowGlue_CheckInvariant() const override { return CheckInvariant(); }
  TState CDocumentWindowGlue_GetState() override { return GetKindState(); }
  void CDocumentWindowGlue_SetState(const TState& state) override { SetKindState(state); }
  IWindow* CDocumentWindowGlue_GetWindow() override { return this; }
  IModalOwner* CDocumentWindowGlue_GetModalOwner() override { return this; }
  void CDocumentWindowGlue_FocusNow() override { FocusNow(); }
  TBehavior* CDocumentWindowGlue_GetBehavior() override { return GetKindBehavior(); }
  void CDocumentWindowGlue_Release() override { ReleaseWindow(); }

  // The views of the focus chain, the window's behaviour, then that of the run.
  bool OnMenuCommand(const TMenuCommandEvent& event) override;
};

}  // namespace NSMorvane
