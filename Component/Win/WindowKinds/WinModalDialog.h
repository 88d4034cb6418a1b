// Modal dialogs: they block their owner or, without an owner, the whole application.
#pragma once

#include "Component/Portable/Windows/MorvaneGlueWindowKinds.h"
#include "Component/Win/WindowKinds/WinWindowKind.h"

namespace NSMorvane {

MORVANE_WINDOW_KIND(ModalDialog, "modal dialog");

class CModalDialogImpl final : public CWinWindowKind<TModalDialogKind> {
 public:
  // `owner` may be null.
  CModalDialogImpl(IWindowHost* host, IModalOwner* owner, TStyleFlags styleFlags);
  ~CModalDialogImpl() override;

 protected:
  MORVANE_WINDOW_KIND_HOOKS(ModalDialog)
  IModalOwner* CModalDialogGlue_GetModalOwner() override { return this; }
};

}  // namespace NSMorvane
