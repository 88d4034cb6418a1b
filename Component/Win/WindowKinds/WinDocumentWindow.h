// Document windows.
#pragma once

#include "Component/Portable/Windows/MorvaneGlueWindowKinds.h"
#include "Component/Win/WindowKinds/WinWindowKind.h"

namespace NSMorvane {

MORVANE_WINDOW_KIND(DocumentWindow, "document window");

class CDocumentWindowImpl final : public CWinWindowKind<TDocumentWindowKind> {
 public:
  CDocumentWindowImpl(IWindowHost* host, TStyleFlags styleFlags, bool listedInWindowMenu);
  ~CDocumentWindowImpl() override;

 protected:
  MORVANE_WINDOW_KIND_HOOKS(DocumentWindow)
  IModalOwner* CDocumentWindowGlue_GetModalOwner() override { return this; }

  // Offers the command to the views of the focus chain, to the window's behaviour, then to the run behaviour.
  bool OnMenuCommand(const TMenuCommandEvent& event) override;
};

}  // namespace NSMorvane
