// Placement, size limits and title of a window: keeps them, applies them to the native window, and tells the
// kind of changes. The arithmetic is in WindowPlacement.
#pragma once

#include <windows.h>

#include "Component/Portable/Base/Scopes.h"
#include "Component/Portable/Windows/WindowPlacement.h"
#include "Component/Win/Window/WinWindowCore.h"

namespace NSMorvane {

class IWindowEvents;

class CWinWindowPlacement : CNotCopied {
 public:
  // Both belong to the same window.
  CWinWindowPlacement(const TWindowCore& window, IWindowEvents& events) : fWindow(window), fEvents(events) {}

  // Reads the state of the new native window.
  void TakeInitialState();

  // --- The state as the kinds see it; rectangles are native placements

  TWindowStateRecord Get() const;
  void Set(const TWindowStateRecord& state);
  const TString& GetTitle() const { return fState.fTitle; }
  bool IsModified() const { return fState.fModified; }

  // --- What the native window says

  TRect GetFrameRect() const;
  // Measured on a shown window with a client area, computed from the style otherwise.
  TFrameInsets GetFrameInsets() const;
  // What to add to screen coordinates to get those of the native placement.
  TPoint OffsetToNativePlacement() const;

  // --- Showing

  int GetShowCommand() const;
  // Tell the kind, unless it knows already.
  void ReportClientSize();
  void ReportPlacement();

  // --- Messages

  void OnWindowPosChanged();
  void OnSize();
  // On WM_GETMINMAXINFO.
  void LimitSizes(MINMAXINFO& info) const;
  // On the maximize command: true if there are limits, and the window has been made as large as they allow.
  bool MaximizeWithinLimits();

 private:
  TRect GetNormalRect(bool minimized, bool maximized) const;
  TRect GetNormalRect(const WINDOWPLACEMENT& wp, bool minimized, bool maximized) const;
  TSize GetClientSize() const;
  bool IsIdeal(const TRect& frameRect) const;
  TZoomState GetZoomState() const;
  TWindowPlacement BuildPlacement(const TRect& normalRect) const;
  void RememberPlacementRect(const TRect& frameRect);
  void SetRootViewSize(const TSize& size);
  void ReportClientSize(const TSize& size);
  void ReportPlacement(const TWindowPlacement& placement);
  // `wp` is the present placement of the native window.
  void MoveNativeWindow(const TWindowPlacement& newWindowPlacement, WINDOWPLACEMENT wp);
  void SyncShown(const TRect& normalRect);
  TRect AdoptNativePlacement();
  void SetNativeTitle(const TString& text);

  const TWindowCore& fWindow;
  IWindowEvents& fEvents;
  TWinWindowState fState;
  TSize fToldClientSize = {};  // what the kind was told last
  TWindowPlacement fToldPlacement;
};

}  // namespace NSMorvane
