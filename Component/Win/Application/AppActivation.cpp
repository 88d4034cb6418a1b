#include "Component/Win/Application/AppActivation.h"

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Window/WindowHost.h"
#include "Component/Win/Window/WindowRegistry.h"

namespace NSMorvane {

void CAppActivation::OnChange(bool flag, DWORD threadId) {
  MORVANE_ASSERT_TEXT("0!=fBehavior", fHost.GetBehavior() != nullptr);
  // The application stays active when the activation passes to a thread of its own, as that of a file dialog.
  const bool active = flag || IsThreadOfThisProcess(threadId);
  if (active == fAppIsActive) return;
  fAppIsActive = active;
  if (!fAppIsActive) fHost.GetWindowRegistry()->ShowFloatingWindows(false);
  if (IMorvaneRunBehavior* const behavior = fHost.GetBehavior()) {
    MORVANE_CHECK(behavior->IMorvaneRunBehavior_OnAppActivation(active ? 1 : 0));
  } else {
    DebugPrint("Ignoring app activation message, since there is no behavior.");
  }
}

}  // namespace NSMorvane
