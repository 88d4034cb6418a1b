// The tooltips of a window. Each view with a text has a tool in the window's tooltip control, and a second
// one on a native control that it hosts: on the one that is its focus target when it gets the text, and then
// on the one that the mouse comes over. The rectangles of the tools follow the views at the next tick.
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

// Relays a mouse message to all of them before it is dispatched.
void RelayToTooltips(const MSG& message);

class CWinWindowTooltips : CNotCopied {
 public:
  explicit CWinWindowTooltips(const TWindowCore& window) : fWindow(window) {}
  // Must be called before the native window is destroyed.
  void DestroyControl();

  // All three call the view's behaviour, which may end the window, so the caller holds it. Add makes the
  // tooltip control if there is none yet, inactive if `isMouseCaptured`, and returns the number of the tool,
  // which is never 0. A number without a tool is ignored by Remove.
  std::uint32_t Add(CViewImpl& view, const TString& text, bool isMouseCaptured);
  void SetText(std::uint32_t toolNumber, CViewImpl& view, const TString& text);
  void Remove(std::uint32_t toolNumber, CViewImpl& view);
  // The mouse is over a control that the view hosts.
  void MoveToControl(const CViewImpl& view, HWND control);
  // No view hosts the control any more.
  void ForgetControl(HWND control);

  // No tip appears while the tooltips are inactive.
  void Activate(bool active);

  void MarkRectsDirty() { fRectsAreDirty = true; }
  // Updates the rectangles of the tools if they are dirty, or if the mouse has moved: where tools overlap,
  // the one in front shows.
  void UpdateRects(const TPoint& mouse);

 private:
  struct TTool {
    std::uint32_t fNumber;
    const CViewImpl* fView;
    HWND fControl;    // null: no control has a tool
    bool fIsCovered;  // another one lies over it where the mouse is
  };

  void MoveTool(TTool& tool, HWND control, const TString& text);
  void AddControlTool(HWND control, const TString& text);
  void DeleteControlTool(HWND control);
  void CreateControl(bool isMouseCaptured);
  void TellOfRestingMouse();

  const TWindowCore& fWindow;
  HWND fTooltipHwnd = nullptr;
  std::vector<TTool> fTools;
  TPoint fMouse = {0, 0};
  bool fRectsAreDirty = true;
  bool fHasNewTools = false;  // since the last update of the rectangles
};

}  // namespace NSMorvane
