// Offers a key press in one window to the mouse capture, the focus chain, the window itself, the Tab key, the
// application, and the key of the window list, one after the other, until one of them handles it. A failure
// ends the chain.
#pragma once

#include "Component/Portable/Base/Scopes.h"
#include "Component/Portable/Windows/WindowFocus.h"
#include "Interface/MorvaneKeyboard.h"

namespace NSMorvane {

class CMouseDispatch;

// What key dispatch needs of the window. Each operation returns whether it has handled the key.
class IKeyWindow {
 public:
  virtual bool IKeyWindow_OfferToWindow(const TKeyEvent& event) = 0;
  virtual bool IKeyWindow_OfferToApplication(const TKeyEvent& event) = 0;
  // Opens the window list if this is its key.
  virtual bool IKeyWindow_OpenWindowList(const TKeyEvent& event) = 0;

 protected:
  virtual ~IKeyWindow() = default;
};

class CKeyDispatch : CNotCopied {
 public:
  // All of them belong to the same window. The tools have its tab views.
  CKeyDispatch(IKeyWindow& window, const CMouseDispatch& mouse, CWindowFocus& focus, IImplFocusTools& tools)
      : fWindow(window), fMouse(mouse), fFocus(focus), fTools(tools) {}

  // True if the key was handled.
  bool DispatchPress(const TKeyEvent& event);

 private:
  bool OfferToCapture(const TKeyEvent& event);
  bool OfferToFocusChain(const TKeyEvent& event);
  bool MoveFocusByTab(const TKeyEvent& event);

  IKeyWindow& fWindow;
  const CMouseDispatch& fMouse;
  CWindowFocus& fFocus;
  IImplFocusTools& fTools;
};

}  // namespace NSMorvane
