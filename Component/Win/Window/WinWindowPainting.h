// Painting of a window: from WM_PAINT to the screen, invalidation, and what the debug settings add to them.
//
// A paint puts everything together in an offscreen buffer and copies the rectangles of the dirty region to
// the screen at the end. Nothing else of the screen is ever touched, unless a debug setting says so.
#pragma once

#include <windows.h>

#include <optional>

#include "Component/Portable/Base/Geometry.h"
#include "Component/Portable/Base/Scopes.h"
#include "Component/Portable/Windows/PaintSamples.h"
#include "Component/Win/Window/WinWindowCore.h"

namespace NSMorvane {

class COffscreenContext;
class CPaintContext;
class CRegion;
class CWinViewInspector;

class CWinWindowPainting : CNotCopied {
 public:
  CWinWindowPainting(const TWindowCore& window, const CWinViewInspector& inspector)
      : fWindow(window), fInspector(inspector) {}

  // Called on WM_PAINT. `sizeGrip`, which may be null, paints itself.
  void Paint(HWND sizeGrip);

  // In client coordinates. The background is never erased.
  void InvalidateRect(const TRect& rect);
  void InvalidateRegion(const CRegion& region);
  // Rectangles that are invalidated between them are passed on together, with the second.
  void BeginInvalidations() { fIsGathering = true; }
  void EndInvalidations() noexcept;

  const CPaintSamples& GetSamples() const { return fSamples; }

 private:
  bool CanBeDirty() const;
  void PaintOn(CPaintContext& target);
  void FillBackground(COffscreenContext& buffer);
  void DrawRootView(COffscreenContext& buffer, const CRegion& region);
  void FlashInvalidation(const TRectList& rects);
  void FlashPaint(CPaintContext& target);
  void PassOn(const TRect& rect) const;

  const TWindowCore& fWindow;
  const CWinViewInspector& fInspector;
  CPaintSamples fSamples;
  bool fIsGathering = false;
  std::optional<TRect> fGathered;
};

}  // namespace NSMorvane
