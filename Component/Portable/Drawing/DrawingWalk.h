// The drawing of a view tree: the walk itself, and what it draws with.
#pragma once

#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <vector>

#include "Component/Portable/Base/Geometry.h"
#include "Component/Portable/Base/Scopes.h"
#include "Component/Portable/Contract/MorvaneGlueDrawTools.h"
#include "Component/Portable/Surfaces/BufferBitmap.h"
#include "Interface/MorvaneDrawing.h"
#include "Interface/MorvaneRoot.h"

namespace NSMorvane {

class CViewImpl;

// --- What the walk is made of

// Cuts `bounds` into tiles, row by row from the top left. The last tiles of a row and of a column can be
// smaller.
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

// The part of `bounds` that has to be cut into tiles so that all of `part` is in them: it begins where one of
// the tiles of `bounds` does. The zero rectangle if `part` lies outside.
TRect CutToTiles(const TRect& bounds, const TSize& tileSize, const TRect& part);

// Tells the run behaviour when drawing with `tools` begins and ends. Without a run behaviour nobody is told.
class TDrawBracket : CNotCopied {
 public:
  TDrawBracket(IMorvaneRunBehavior* runBehavior, IDrawTools& tools);
  ~TDrawBracket();

  // Between the two calls the run behaviour has finished with the tools, so that the walk can use their port.
  // Pairs can be nested; the run behaviour is told of the outermost one only.
  void Pause();
  void Resume();
  // Call this before drawing after something else was drawn. If the run behaviour has failed in Resume, it is
  // told of the begin once more, and the result is true. Without a begin nothing is drawn, and the run
  // behaviour is not told of an end.
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
  // `region`, in drawing coordinates, is what gets drawn. The object owns none of the arguments.
  // `parentTools` belong to the surface that the bitmap will be copied to, and may be null.
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

// Draws a view and all its subviews, as far as they lie in `dirtyBounds` and in the clip of the port, each
// through the buffer that its draw mode requires. `bracket` is the one around `tools`. The context of the
// tools is always restored, even after an exception.
//
// An exception in a subview is logged, and the next subview follows. An exception in `view` itself is passed
// on. Codes that behaviours return are only logged.
void DrawView(IMorvaneRunBehavior* runBehavior, TDrawBracket& bracket, CViewImpl& view,
              const TRect& dirtyBounds, IDrawTools& tools, const TDebugSettings& settings);

// The same, but only for the subviews of `view`.
void DrawSubViews(IMorvaneRunBehavior* runBehavior, TDrawBracket& bracket, CViewImpl& view,
                  const TRect& dirtyBounds, IDrawTools& tools, const TDebugSettings& settings);

}  // namespace NSMorvane
