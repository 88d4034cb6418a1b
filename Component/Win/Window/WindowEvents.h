// What a window tells its kind, which tells the behaviour of the client.
#pragma once

#include "Component/Portable/Windows/WindowPlacement.h"
#include "Interface/MorvaneKeyboard.h"
#include "Interface/MorvaneMenu.h"
#include "Interface/MorvaneWindow.h"

namespace NSMorvane {

class CMenuBarState;

// Each of these may end the window: the caller keeps it.
class IWindowEvents {
 public:
  // False from the first two: nobody was there to be told, and the change is told again next time.
  virtual bool OnClientSizeChanged(const TSize& oldSize, const TSize& newSize) = 0;
  virtual bool OnPlacementChanged(const TWindowPlacement& oldPlacement,
                                  const TWindowPlacement& newPlacement) = 0;
  virtual void OnActivationChanged(bool active) = 0;
  virtual void OnKeyboardFocusChanged(bool focused) = 0;
  virtual void RequestClose(TCloseReason reason) = 0;
  virtual void RequestMenuBarSetup(CMenuBarState& state) = 0;
  // True from these if it was taken.
  virtual bool OnKeyDown(const TKeyEvent& event) = 0;
  virtual bool OnHelpRequested() = 0;
  virtual bool OnMenuCommand(const TMenuCommandEvent& event) = 0;

 protected:
  virtual ~IWindowEvents() = default;
};

}  // namespace NSMorvane
