// The state of a drawing context that the drawing walk saves and restores. The functions are in the platform
// half.
//
// A full save and restore of a context costs several times as much as drawing a small view, so the walk saves
// only what it must. After every view it restores clip and mapping, which decide where the next view is
// drawn. After every pass over a context it also restores attributes and selected objects, and all the rest
// of the state if the context is that of a bitmap, which other views and windows draw into later. The clip of
// a context is read once for all the subviews of a view. The clips of the subviews are computed here and set
// with as few platform calls as possible: those that are one rectangle only when somebody opens the port. The
// clip of the super view is restored only after the last subview.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "Component/Portable/Base/Geometry.h"
#include "Component/Portable/Base/Scopes.h"
#include "Component/Portable/Surfaces/NativeRegion.h"

struct HDC__;
struct HFONT__;

namespace NSMorvane {

// Saves the clip region and the window origin of a context in its constructor, and restores them in its
// destructor.
class CStateRestorer : CNotCopied {
 public:
  explicit CStateRestorer(HDC__* hdc);
  ~CStateRestorer();
  // Restores them earlier.
  void Restore() const;
  // In device coordinates; null if there was no clip. This object owns it.
  TNativeRegion GetClipRegion() const { return fClipRegion; }

 private:
  HDC__* fHDC;
  TNativeRegion fClipRegion;
  TPoint fWindowOrigin;
};

// The mapping from logical to device coordinates in a context. Extents and a world transform are not saved.
class CPortMapping {
 public:
  explicit CPortMapping(HDC__* hdc);
  // Writes only what differs.
  void Restore(HDC__* hdc) const;
  // Whether a logical unit is a pixel, with x to the right and y down.
  bool IsPixelMapping() const;
  // The device coordinates of the logical point (0, 0), for a pixel mapping.
  TPoint GetShift() const {
    return {ToCoordinate(static_cast<std::int64_t>(fViewportOrigin.fX) - fWindowOrigin.fX),
            ToCoordinate(static_cast<std::int64_t>(fViewportOrigin.fY) - fWindowOrigin.fY)};
  }
  friend bool operator==(const CPortMapping& a, const CPortMapping& b) = default;

 private:
  int fGraphicsMode;
  int fMapMode;
  std::uint32_t fLayout;
  TPoint fViewportOrigin;
  TPoint fWindowOrigin;
};

bool IsFont(HFONT__* font);
HFONT__* GetSelectedFont(HDC__* hdc);
// One that has been deleted since is not selected.
void SelectFont(HDC__* hdc, HFONT__* font);

// The kinds of objects of which a context has one at a time.
enum TSelection { kSelectedFont, kSelectedPen, kSelectedBrush, kSelectedBitmap };

// Saves the selected object of one kind, and selects it again in its destructor.
class CSelectionGuard : CNotCopied {
 public:
  CSelectionGuard(HDC__* hdc, TSelection selection);
  ~CSelectionGuard();

 private:
  HDC__* fHDC;
  TSelection fSelection;
  void* fObject;
};

// Saves mapping, attributes of texts and lines, font, pen and brush, and restores them after a pass.
class CPortGuard : CNotCopied {
 public:
  explicit CPortGuard(HDC__* hdc);
  ~CPortGuard();

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

// Saves the whole state of a context with the platform, and restores it in its destructor, whatever has been
// saved on top of it. It does nothing if a view has restored a state that it had not saved: then what the
// other guards hold is all there is.
class CWholeStateGuard : CNotCopied {
 public:
  explicit CWholeStateGuard(HDC__* hdc);
  ~CWholeStateGuard();

 private:
  HDC__* fHDC;
  int fLevel;
};

// Rectangular regions to select as clips, kept from paint to paint: selecting an existing region costs half
// as much as making a new clip. Paints repeat themselves, so the n-th clip of a walk is nearly always the
// n-th clip of the walk before, and its region is looked for only there.
class CClipRegions {
 public:
  static CClipRegions& GetInstance();

  // Call this at the beginning of a walk.
  void StartOver() { fNext = 0; }
  // The region of a rectangle in device coordinates, valid until the next call. Null when the walk has used
  // all the regions that are kept.
  TNativeRegion GetNext(const TRect& deviceRect);

 private:
  struct TEntry {
    TRect fRect;
    TNativeRegion fRegion;
  };

  CClipRegions() : fNext(0) {}

  static constexpr std::size_t kMaxRegions = 1024;  // a tenth of the system's limit for a process

  std::vector<TEntry> fEntries;
  std::size_t fNext;
};

// What the walk knows of the context of tools from one use of it to the next: the mapping, and the clip that
// the next user has to find. A view that never opens its port has its clip here only, and its subviews need
// not ask the platform for clip and mapping.
class CKnownPort : CNotCopied {
 public:
  explicit CKnownPort(HDC__* hdc) : fHDC(hdc) {}

  // Call this before anybody but the walk uses the context: selects the clip. Afterwards nothing is known,
  // since the user may change everything.
  void Use() {
    if (fClip) SelectClip();
    Forget();
  }
  // Call this when clip and mapping have been set in another way.
  void Forget() {
    fClip.reset();
    fMapping.reset();
  }

  // For a clip that is one rectangle, in the logical coordinates of `mapping`. The context must have this
  // mapping, which must be in pixels.
  void SetClip(const TRect& clip, const CPortMapping& mapping) {
    fClip = clip;
    fMapping = mapping;
  }
  // Restores the mapping at once. The clip is open until it is set again.
  void RestoreMapping(const CPortMapping& mapping);

  // Without a value if it has to be read from the context.
  const std::optional<TRect>& GetClip() const { return fClip; }
  const std::optional<CPortMapping>& GetMapping() const { return fMapping; }

 private:
  void SelectClip() const;

  HDC__* fHDC;
  std::optional<TRect> fClip;  // not selected yet; only with a mapping
  std::optional<CPortMapping> fMapping;
};

// Reads the clip of a context in its constructor, and clips views within it, one after the other: Enter,
// drawing, Leave. The destructor restores the clip.
class CPortClip : CNotCopied {
 public:
  // `knownPort`, if it is not null, belongs to the context, and is told of each use of it. Then clips that
  // are one rectangle are selected by the next use only.
  explicit CPortClip(HDC__* hdc, CKnownPort* knownPort = nullptr);
  ~CPortClip();

  // The bounding box of what can be drawn, in logical coordinates. Empty if nothing can be drawn.
  const TRect& GetBox() const { return fBox; }
  // Clips to `bounds`. False if nothing inside them can be drawn; then there is nothing to leave.
  bool Enter(const TRect& bounds);
  // Clips to the bounds of an entered view again, after others may have changed the clip.
  void Renew(const TRect& bounds);
  // Ends the drawing of a view. The mapping is restored at once; the clip is changed by the next Enter or
  // restored by the destructor.
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
  CKnownPort* fKnownPort;
  CPortMapping fMapping;
  TShape fShape;
  TRect fBox;
  TRectList fRects;                      // from the top, in logical coordinates
  std::optional<CStateRestorer> fState;  // for kRects and kUnknown
  bool fIsIntact;                        // the clip is the one that the constructor found
};

}  // namespace NSMorvane
