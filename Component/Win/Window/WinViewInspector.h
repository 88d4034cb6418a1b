// The debug layers over the views of a window: the frames of all views, and the view inspector, which marks
// the view under the mouse and has its tooltip describe it.
//
// They are drawn past the views, on what a paint has brought to the screen. What removes them again is the
// next paint.
#pragma once

#include "Component/Portable/Base/Geometry.h"
#include "Component/Portable/Base/Scopes.h"
#include "Component/Portable/Views/ViewInspector.h"
#include "Component/Win/Window/WinWindowCore.h"

namespace NSMorvane {

class CDeviceContext;

// Frames the parts of a view and of its subviews that lie in `clip` and in all their super views.
void DrawViewBounds(CDeviceContext& context, const CViewImpl& view, const TRect& clip);

// Hatches the visible part of a view, frames its rectangle, and writes its debug name into the corner.
void DrawViewInfo(CDeviceContext& context, const CViewImpl& view);

// Does nothing but test a flag while its debug setting is off.
class CWinViewInspector : CNotCopied {
 public:
  explicit CWinViewInspector(const TWindowCore& window) : fWindow(window) {}

  bool IsOn() const;
  // True if Follow would do nothing, wherever the mouse is.
  bool IsIdle() const;
  // Inspects the view at a point in client coordinates, or none if the setting is off or another window is
  // under the mouse. True if clients may have been called. The caller holds the window.
  bool Follow(const TPoint& point, bool isUnderMouse);
  // Called after a paint.
  void Draw() const;

 private:
  const TWindowCore& fWindow;
  CViewInspector fInspector;
};

}  // namespace NSMorvane
