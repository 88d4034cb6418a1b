// The menu bars of all document windows: when they are filled anew, and by whom.
#pragma once

#include "Component/Portable/Menus/MenuBarSchedule.h"
#include "Component/Win/Platform/UtilsWinHandles.h"

namespace NSMorvane {

class CWinWindow;
class IWindowHost;

class CMenuBars : CNotCopied {
 public:
  explicit CMenuBars(IWindowHost& host) : fHost(host) {}

  // Asks for all of them to be filled anew, by the next flush.
  void Request() { fSchedule.Request(); }
  bool IsRequested() const { return fSchedule.IsRequested(); }
  // Has the run behaviour and each window fill an empty state, which the window then shows.
  void Flush();
  // After a change of the debug settings. Windows without a menu bar get one only if it `makesMenuBars`.
  void Rebuild(bool makesMenuBars) const;

 private:
  void SetUp(CWinWindow& window);

  IWindowHost& fHost;
  CMenuBarSchedule fSchedule;
};

}  // namespace NSMorvane
