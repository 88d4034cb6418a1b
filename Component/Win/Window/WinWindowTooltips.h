// The tooltips of a window. Each view with a text has a tool in the window's tooltip control, and a second
// one on the native control that it hosts. The rectangles of the tools follow the views at the next tick.
//
// All of it belongs to the main thread.
#pragma once

#include <windows.h>

#include <cstdint>
#include <vector>

#include "Component/Portable/Base/Scopes.h"
#include "Component/Portable/Text/TextPackage.h"
#include "Component/Win/Window/WinWindowCore.h"

namespace NSMorvane {

class CViewImpl;
using NSTextPackage::TString;

// The tooltip controls of all windows.
extern std::vector<HWND> gTooltipWindows;

// Shows a message of the mouse to them, before it is dispatched.
void RelayToTooltips(const MSG& message);

class CWinWindowTooltips : CNotCopied {
 public:
  explicit CWinWindowTooltips(const TWindowCore& window) : fWindow(window) {}
  // The control must have gone by then: it goes before its window.
  void DestroyControl();

  // Adding and removing ask the view's behaviour, which may end the window: the caller keeps it. Add makes
  // the control if there is none yet; `isMouseCaptured` leaves it switched off. The number is never 0.
  std::uint32_t Add(CViewImpl& view, const TString& text, bool isMouseCaptured);
  void SetText(std::uint32_t toolNumber, const TString& text);
  void Remove(std::uint32_t toolNumber, CViewImpl& view);

  // While they are switched off, none appears.
  void Activate(bool active);

  void MarkRectsDirty() { fRectsAreDirty = true; }
  // Brings the rectangles of the tools up to date, if there is a reason to.
  void UpdateRects();

 private:
  void CreateControl(bool isMouseCaptured);
  void TellOfRestingMouse();

  const TWindowCore& fWindow;
  HWND fTooltipHwnd = nullptr;
  std::vector<CViewImpl*> fViews;  // those that have a tool
  bool fRectsAreDirty = true;
  bool fHasNewTools = false;  // since the rectangles were brought up to date
};

}  // namespace NSMorvane
