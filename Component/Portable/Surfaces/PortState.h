// What the drawing walk keeps of a drawing context, and puts back.
//
// A full save and restore of a context costs several times what drawing a small view does, so the walk keeps
// by hand what it must. Behind every view: clip and mapping, which tell where the next one lands. Behind
// every pass over a context: attributes and selected objects too. The clip of a context is read once for all
// the subviews of a view; the arithmetic is done here, each subview gets its clip with as few platform calls
// as possible, and the clip of the super view comes back only behind the last one.
#pragma once

#include <windows.h>

#include <optional>
#include <vector>

#include "Component/Portable/Base/Geometry.h"
#include "Component/Portable/Surfaces/BufferBitmap.h"

namespace NSMorvane {

// Where logical coordinates lie in a context. Extents and a world transform are not kept.
class CPortMapping {
 public:
  explicit CPortMapping(HDC hdc);
  // Writes only what differs.
  void Restore(HDC hdc) const;
  // Whether a logical unit is a pixel, counted to the right and down.
  bool IsPixelMapping() const {
    return fGraphicsMode == GM_COMPATIBLE && fMapMode == MM_TEXT && fLayout == 0;
  }
  // The device coordinates of the logical (0, 0), under a pixel mapping.
  TPoint GetShift() const {
    return {ToCoordinate(static_cast<std::int64_t>(fViewportOrigin.x) - fWindowOrigin.x),
            ToCoordinate(static_cast<std::int64_t>(fViewportOrigin.y) - fWindowOrigin.y)};
  }

 private:
  int fGraphicsMode;
  int fMapMode;
  DWORD fLayout;
  POINT fViewportOrigin;
  POINT fWindowOrigin;
};

// Keeps the selected object of one type, such as OBJ_PEN.
class CSelectionGuard {
 public:
  CSelectionGuard(HDC hdc, UINT type) : fHDC(hdc), fType(type), fObject(GetCurrentObject(hdc, type)) {}
  ~CSelectionGuard() {
    if (GetCurrentObject(fHDC, fType) != fObject) SelectObject(fHDC, fObject);
  }
  CSelectionGuard(const CSelectionGuard&) = delete;
  CSelectionGuard& operator=(const CSelectionGuard&) = delete;

 private:
  HDC fHDC;
  UINT fType;
  HGDIOBJ fObject;
};

// Keeps mapping, attributes of texts and lines, font, pen and brush for the length of a pass.
class CPortGuard {
 public:
  explicit CPortGuard(HDC hdc);
  ~CPortGuard();
  CPortGuard(const CPortGuard&) = delete;
  CPortGuard& operator=(const CPortGuard&) = delete;

 private:
  HDC fHDC;
  CPortMapping fMapping;
  COLORREF fTextColour;
  COLORREF fBackgroundColour;
  int fBackgroundMode;
  int fRasterOperation;
  UINT fTextAlign;
  CSelectionGuard fFont;
  CSelectionGuard fPen;
  CSelectionGuard fBrush;
};

// Rectangular regions to select as clips, kept from paint to paint: selecting a region that is there costs
// half of making the clip anew. Paints repeat themselves, so the n-th clip of a walk is nearly always that of
// the walk before, and its region is looked for at that place only.
class CClipRegions {
 public:
  static CClipRegions& GetInstance();

  // A walk begins.
  void StartOver() { fNext = 0; }
  // The region of a rectangle in device coordinates, good until the next call. Null when the walk has had all
  // the regions that are kept.
  HRGN GetNext(const TRect& deviceRect);

 private:
  struct TEntry {
    TRect fRect;
    HRGN fRegion;
  };

  CClipRegions() : fNext(0) {}

  static constexpr std::size_t kMaxRegions = 1024;  // a tenth of what the system lets a process have

  std::vector<TEntry> fEntries;
  std::size_t fNext;
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
  // A view is through. The mapping is put back at once; the clip is left to the next Enter, or to the end.
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
  CPortMapping fMapping;
  TShape fShape;
  TRect fBox;
  TRectList fRects;                      // from the top, in logical coordinates
  std::optional<CStateRestorer> fState;  // for kRects and kUnknown
  bool fIsIntact;                        // the clip of the context is still the one of this object
};

}  // namespace NSMorvane
