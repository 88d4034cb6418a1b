// What the drawing walk keeps of a drawing context, and puts back behind every view.
//
// A full save and restore of a context costs more than drawing a small view does. So the walk keeps what it
// must by hand: it reads the clip of a context once for all the subviews of a view, does the arithmetic
// itself, gives each subview its clip with as few platform calls as possible, and puts the clip of the super
// view back only behind the last one.
#pragma once

#include <windows.h>

#include <optional>

#include "Component/Portable/BufferBitmap.h"
#include "Component/Portable/MorvaneImplUtilsGeometry.h"

namespace NSMorvane {

// The plain attributes of a context: those that can be read without a call into the platform's core. Of the
// mapping that is graphics mode, layout, map mode and both origins; extents and a world transform are not
// kept.
class CPortAttributes {
 public:
  explicit CPortAttributes(HDC hdc);
  // Writes only what differs.
  void Restore(HDC hdc) const;
  // Whether a logical unit is a pixel, counted to the right and down.
  bool IsPixelMapping() const;

 private:
  int fGraphicsMode;
  int fMapMode;
  DWORD fLayout;
  POINT fViewportOrigin;
  POINT fWindowOrigin;
  COLORREF fTextColour;
  COLORREF fBackgroundColour;
  int fBackgroundMode;
  int fRasterOperation;
  UINT fTextAlign;
};

// Keeps attributes and selected objects for the length of a pass over one context.
class CPortGuard {
 public:
  explicit CPortGuard(HDC hdc);
  ~CPortGuard();
  CPortGuard(const CPortGuard&) = delete;
  CPortGuard& operator=(const CPortGuard&) = delete;

 private:
  static constexpr UINT kObjectTypes[] = {OBJ_FONT, OBJ_PEN, OBJ_BRUSH, OBJ_BITMAP};

  HDC fHDC;
  CPortAttributes fAttributes;
  HGDIOBJ fObjects[std::size(kObjectTypes)];
};

// The clip of a context as it stands when this is made, for views that are to be drawn within it, one after
// the other: Enter, drawing, Leave. The end of this object brings the clip back.
class CPortClip {
 public:
  explicit CPortClip(HDC hdc);
  ~CPortClip();
  CPortClip(const CPortClip&) = delete;
  CPortClip& operator=(const CPortClip&) = delete;

  // The box of what can be drawn at all, in logical coordinates. Empty if there is nothing.
  const TRect& GetBox() const { return fBox; }
  // Cuts the clip to `bounds`. False if nothing of it can be drawn; then there is nothing to leave.
  bool Enter(const TRect& bounds);
  // The same again for a view that has been entered, after others may have touched the clip.
  void Renew(const TRect& bounds);
  // A view is through. Its attributes are undone at once; the clip is left to the next Enter, or to the end.
  void Leave();

 private:
  enum TShape {
    kNothing,  // nothing can be drawn
    kOneRect,  // fBox
    kRects,    // fRects
    kUnknown   // only the platform knows
  };

  bool Select(const TRect& rect);
  bool SelectByPlatform(const TRect& bounds);
  bool SelectWithinRects(const TRect& bounds);
  void BringBack();

  HDC fHDC;
  CPortAttributes fAttributes;
  TShape fShape;
  TRect fBox;
  TRectList fRects;                      // from the top, in logical coordinates
  std::optional<CStateRestorer> fState;  // for kRects and kUnknown
  bool fIsIntact;                        // the clip of the context is still the one of this object
};

}  // namespace NSMorvane
