// The chain of a key press in one window: the mouse capture, the focus chain, the window itself, the Tab key,
// the application, and the key of the window list, until somebody takes it. A failure ends the chain.
#pragma once

#include "Component/Portable/Base/Scopes.h"
#include "Component/Portable/Windows/WindowFocus.h"
#include "Interface/MorvaneKeyboard.h"

namespace NSMorvane {

class CMouseDispatch;

// The window as its keyboard sees it. Each of these tells whether it took the key.
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

  // True if somebody took the key.
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
