// The menu bars of all document windows: when they are filled anew, and by whom.
#pragma once

#include "Component/Portable/Menus/MenuBarSchedule.h"
#include "Component/Win/Platform/UtilsWinHandles.h"

namespace NSMorvane {

class CMenuBarState;
class CWinWindow;
class IWindowHost;

class CMenuBars : CNotCopied {
 public:
  explicit CMenuBars(IWindowHost& host) : fHost(host) {}

  // Makes the next flush fill all menu bars anew.
  void Request() { fSchedule.Request(); }
  bool IsRequested() const { return fSchedule.IsRequested(); }
  // Serves the requests: for each window, the run behaviour and the window fill an empty state, which the
  // window then shows.
  void Flush();
  // Builds all menu bars again after a change of the debug settings. Windows without a menu bar get one only
  // if `makesMenuBars`.
  void Rebuild(bool makesMenuBars) const;

 private:
  // `neighbour` is the state of the window before, and then of this one.
  void SetUp(CWinWindow& window, CMenuBarState& neighbour);

  IWindowHost& fHost;
  CMenuBarSchedule fSchedule;
};

}  // namespace NSMorvane
