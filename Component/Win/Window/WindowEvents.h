// What a window tells its kind, which tells the behaviour of the client.
#pragma once

#include "Component/Portable/Windows/WindowPlacement.h"
#include "Interface/MorvaneKeyboard.h"
#include "Interface/MorvaneMenu.h"
#include "Interface/MorvaneWindow.h"

namespace NSMorvane {

class CMenuBarState;

// Each of these may end the window, so the caller holds it.
class IWindowEvents {
 public:
  // The first two return false if there was nobody to tell; the change is then told again next time.
  virtual bool OnClientSizeChanged(const TSize& oldSize, const TSize& newSize) = 0;
  virtual bool OnPlacementChanged(const TWindowPlacement& oldPlacement,
                                  const TWindowPlacement& newPlacement) = 0;
  virtual void OnActivationChanged(bool active) = 0;
  virtual void OnKeyboardFocusChanged(bool focused) = 0;
  virtual void RequestClose(TCloseReason reason) = 0;
  virtual void RequestMenuBarSetup(CMenuBarState& state) = 0;
  // These return true if the event was handled.
  virtual bool OnKeyDown(const TKeyEvent& event) = 0;
  virtual bool OnHelpRequested() = 0;
  virtual bool OnMenuCommand(const TMenuCommandEvent& event) = 0;

 protected:
  virtual ~IWindowEvents() = default;
};

}  // namespace NSMorvane
