// What the drawing walk keeps of a drawing context, and puts back. The platform half has the functions.
//
// A full save and restore of a context costs several times what drawing a small view does, so the walk keeps
// by hand what it must. Behind every view: clip and mapping, which tell where the next one lands. Behind
// every pass over a context: attributes and selected objects too. The clip of a context is read once for all
// the subviews of a view; the arithmetic is done here, each subview gets its clip with as few platform calls
// as possible, and the clip of the super view comes back only behind the last one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "Component/Portable/Base/Geometry.h"
#include "Component/Portable/Surfaces/NativeRegion.h"

struct HDC__;

namespace NSMorvane {

// The clip region and the window origin of a context, kept from construction and put back by destruction.
class CStateRestorer {
 public:
  explicit CStateRestorer(HDC__* hdc);
  ~CStateRestorer();
  // Puts them back ahead of time.
  void Restore() const;
  // In device coordinates; null: there was no clip. It stays this object's.
  TNativeRegion GetClipRegion() const { return fClipRegion; }
  CStateRestorer(const CStateRestorer&) = delete;
  CStateRestorer& operator=(const CStateRestorer&) = delete;

 private:
  HDC__* fHDC;
  TNativeRegion fClipRegion;
  TPoint fWindowOrigin;
};

// Where logical coordinates lie in a context. Extents and a world transform are not kept.
class CPortMapping {
 public:
  explicit CPortMapping(HDC__* hdc);
  // Writes only what differs.
  void Restore(HDC__* hdc) const;
  // Whether a logical unit is a pixel, counted to the right and down.
  bool IsPixelMapping() const;
  // The device coordinates of the logical (0, 0), under a pixel mapping.
  TPoint GetShift() const {
    return {ToCoordinate(static_cast<std::int64_t>(fViewportOrigin.fX) - fWindowOrigin.fX),
            ToCoordinate(static_cast<std::int64_t>(fViewportOrigin.fY) - fWindowOrigin.fY)};
  }

 private:
  int fGraphicsMode;
  int fMapMode;
  std::uint32_t fLayout;
  TPoint fViewportOrigin;
  TPoint fWindowOrigin;
};

// What a context has one of at a time.
enum TSelection { kSelectedFont, kSelectedPen, kSelectedBrush, kSelectedBitmap };

// Keeps the selected object of one type.
class CSelectionGuard {
 public:
  CSelectionGuard(HDC__* hdc, TSelection selection);
  ~CSelectionGuard();
  CSelectionGuard(const CSelectionGuard&) = delete;
  CSelectionGuard& operator=(const CSelectionGuard&) = delete;

 private:
  HDC__* fHDC;
  TSelection fSelection;
  void* fObject;
};

// Keeps mapping, attributes of texts and lines, font, pen and brush for the length of a pass.
class CPortGuard {
 public:
  explicit CPortGuard(HDC__* hdc);
  ~CPortGuard();
  CPortGuard(const CPortGuard&) = delete;
  CPortGuard& operator=(const CPortGuard&) = delete;

 private:
  HDC__* fHDC;
  CPortMapping fMapping;
  std::uint32_t fTextColour;
  std::uint32_t fBackgroundColour;
  int fBackgroundMode;
  int fRasterOperation;
  std::uint32_t fTextAlign;
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
  TNativeRegion GetNext(const TRect& deviceRect);

 private:
  struct TEntry {
    TRect fRect;
    TNativeRegion fRegion;
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
  explicit CPortClip(HDC__* hdc);
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

  HDC__* fHDC;
  CPortMapping fMapping;
  TShape fShape;
  TRect fBox;
  TRectList fRects;                      // from the top, in logical coordinates
  std::optional<CStateRestorer> fState;  // for kRects and kUnknown
  bool fIsIntact;                        // the clip of the context is still the one of this object
};

}  // namespace NSMorvane
