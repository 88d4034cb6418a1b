// The drawing of a view tree: the walk itself, and what it draws with.
#pragma once

#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <vector>

#include "Component/Portable/Base/Geometry.h"
#include "Component/Portable/Contract/MorvaneGlueDrawTools.h"
#include "Component/Portable/Surfaces/BufferBitmap.h"
#include "Interface/MorvaneDrawing.h"
#include "Interface/MorvaneRoot.h"

namespace NSMorvane {

class CViewImpl;

// --- What the walk is made of

// Cuts `bounds` into tiles, row by row from the top left. The last ones of a row and of a column are smaller.
class TTileIterator {
 public:
  TTileIterator(const TRect& bounds, const TSize& tileSize)
      : fBounds(bounds), fTileSize(tileSize), fCurrent() {}
  // False after the last tile.
  bool GetNextTile(TRect& outTile);

 private:
  TRect fBounds;
  TSize fTileSize;
  TRect fCurrent;
};

// Tells the run behaviour when drawing with `tools` begins and ends. Without a run behaviour nobody is told.
class TDrawBracket {
 public:
  TDrawBracket(IMorvaneRunBehavior* runBehavior, IDrawTools& tools);
  ~TDrawBracket();
  TDrawBracket(const TDrawBracket&) = delete;
  TDrawBracket& operator=(const TDrawBracket&) = delete;

  // Between the two the run behaviour is done with the tools, so that the walk may use their port. Only the
  // outermost pair is told.
  void Pause();
  void Resume();
  // For whoever draws after somebody else: if the run behaviour has failed in Resume it gets another chance,
  // and the result is true. Nothing is drawn, and no end is told, without a begin.
  bool BeginAgain();

 private:
  void Begin();
  void End();

  IMorvaneRunBehavior* fRunBehavior;
  IDrawTools& fTools;
  std::int32_t fPauseCount;
  bool fIsBegun;
};

// Draws into a bitmap for the length of one pass. Drawing coordinates are those of the window: the bitmap
// shows the part that starts at `origin`.
class CBufferBitmapDrawTools : public CDrawToolsGlue {
 public:
  // The region, in drawing coordinates, is what gets drawn. Nothing becomes the object's. `parentTools` is
  // where the bitmap will go, and may be null.
  CBufferBitmapDrawTools(CBufferBitmap* bitmap, TNativeRegion region, TPoint origin,
                         CDrawToolsGlue* parentTools);
  ~CBufferBitmapDrawTools() override;

  TNativePort CDrawToolsGlue_GetNativePort() override;
  void CDrawToolsGlue_CloseNativePort() override;
  TRawPixels CDrawToolsGlue_OpenRawPixels() override;
  void CDrawToolsGlue_CloseRawPixels() override;
  void CDrawToolsGlue_FlushToScreen(bool delayFlag) override;

 private:
  CBufferBitmap* fBitmap;
  TPoint fOrigin;
  void* fOpenPixelPtr;
  CDrawToolsGlue* fParentTools;
};

// --- The walk

// Draws a view and all its subviews, as far as they lie in `dirtyBounds` and in the clip of the port, each by
// way of the buffer that its draw mode names. `bracket` is the one around `tools`. However it ends, the
// context of the tools is left as it was found.
//
// What goes wrong in a subview is logged, and the next one follows. What goes wrong in `view` itself comes
// out as an exception; codes that behaviours return are only logged.
void DrawView(IMorvaneRunBehavior* runBehavior, TDrawBracket& bracket, CViewImpl& view,
              const TRect& dirtyBounds, IDrawTools& tools, const TDebugSettings& settings);

// The same for the subviews of a view alone.
void DrawSubViews(IMorvaneRunBehavior* runBehavior, TDrawBracket& bracket, CViewImpl& view,
                  const TRect& dirtyBounds, IDrawTools& tools, const TDebugSettings& settings);

}  // namespace NSMorvane
