// Document windows.
#pragma once

#include <memory>

#include "Component/Win/WinWindow.h"

namespace NSMorvane {

class CDocumentWindowImpl : public CWinWindow, public CDocumentWindowGlue {
 public:
  CDocumentWindowImpl(CMorvaneImpl* morvane, TStyleFlags styleFlags, bool listedInWindowMenu);
  ~CDocumentWindowImpl() override;

  // Once. The window owns it.
  void SetBehavior(std::unique_ptr<IDocumentWindowBehavior> behavior);

  // The behaviour can end the window from within these two: they keep it to their end.
  TError IDocumentWindow_SetState(const TDocumentWindowState& state) override;
  TError IDocumentWindow_FocusNow() override;

 protected:
  bool CDocumentWindowGlue_CheckInvariant() const override;
  TDocumentWindowState CDocumentWindowGlue_GetState() override;
  void CDocumentWindowGlue_SetState(const TDocumentWindowState& state) override;
  IWindow* CDocumentWindowGlue_GetWindow() override;
  IModalOwner* CDocumentWindowGlue_GetModalOwner() override;
  void CDocumentWindowGlue_FocusNow() override;
  IDocumentWindowBehavior* CDocumentWindowGlue_GetBehavior() override;
  void CDocumentWindowGlue_Release() override;

  bool OnClientSizeChanged(const TSize& oldSize, const TSize& newSize) override;
  bool OnPlacementChanged(const TWindowPlacement& oldPlacement,
                          const TWindowPlacement& newPlacement) override;
  void OnActivationChanged(bool active) override;
  bool OnKeyDown(const TKeyEvent& event) override;
  void OnKeyboardFocusChanged(bool focused) override;
  bool OnHelpRequested() override;
  void RequestClose(TCloseReason reason) override;
  void RequestMenuBarSetup(CMenuBarState& state) override;
  bool OnMenuCommand(const TMenuCommandEvent& event) override;

 private:
  // What to add to a rectangle of the client's to get a native placement.
  TPoint ClientOffset() const;

  IMorvaneRunBehavior* fRunBehavior;  // a second copy
  std::unique_ptr<IDocumentWindowBehavior> fBehavior;
};

}  // namespace NSMorvane
