// The menu bar of a window.
#include "Component/Portable/ViewImpl.h"
#include "Component/Win/WinWindow.h"

namespace NSMorvane {

std::vector<boost::shared_ptr<CViewImpl>> CWinWindow::ViewChain(CViewImpl* view) {
  std::vector<TViewImplPtr> chain;
  while (view && view->IsLive()) {
    chain.push_back(view->GetClientsViewReference());
    view = view->GetSuperView().get();
  }
  return chain;
}

void CWinWindow::RunMenuBarSetup(CMenuBarState& state) {
  RequestMenuBarSetup(state);
  // The focus view comes last and so has the last word.
  const std::vector<TViewImplPtr> focusChain = ViewChain(fFocusView);
  for (auto view = focusChain.rbegin(); view != focusChain.rend(); ++view) {
    if (IViewBehavior* const behavior = (*view)->GetBehavior())
      MORVANE_CHECK(behavior->IViewBehavior_OnSetupMenuBar(state));
  }
  ApplyMenuBarState(state);
}

void CWinWindow::ApplyMenuBarState(const CMenuBarState& state) {
  if (!(state == fMenuBarState)) RebuildCompleteMenuBar(state);
}

// Native menus are not built yet: the state is kept, the window shows no menu bar and has no commands.

void CWinWindow::RebuildCompleteMenuBar(const CMenuBarState& state) {
  DebugPrint("CWinWindow::RebuildCompleteMenuBar");
  fMenuBarState = state;
}

void CWinWindow::OnCommand(UINT) {}

}  // namespace NSMorvane
