// Modeless dialogs.
#pragma once

#include "Component/Portable/Windows/MorvaneGlueWindowKinds.h"
#include "Component/Win/WindowKinds/WinWindowKind.h"

namespace NSMorvane {

MORVANE_WINDOW_KIND(ModelessDialog, "modeless dialog");

class CModelessDialogImpl final : public CWinWindowKind<TModelessDialogKind> {
 public:
  CModelessDialogImpl(IWindowHost* host, TStyleFlags styleFlags, bool listedInWindowMenu);
  ~CModelessDialogImpl() override;

 protected:
  MORVANE_WINDOW_KIND_HOOKS(ModelessDialog)
  IModalOwner* CModelessDialogGlue_GetModalOwner() override { return this; }
};

}  // namespace NSMorvane
