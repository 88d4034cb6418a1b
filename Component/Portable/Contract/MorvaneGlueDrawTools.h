// The contract class of the draw tools.
#pragma once

#include <deque>
#include <optional>

#include "Component/Portable/Base/Scopes.h"
#include "Component/Portable/Surfaces/PortState.h"
#include "Component/Portable/Surfaces/Region.h"
#include "Interface/MorvaneDrawing.h"

namespace NSMorvane {

// The draw tools that a behaviour gets. This class makes sure that port and pixels are open one at a time,
// and clips the dirty region to the views that are being drawn.
class CDrawToolsGlue : public IDrawTools, CNotCopied {
 public:
  // The object owns neither the port nor the region. `dirtyRegion` is a native region in the port's
  // coordinates.
  CDrawToolsGlue(const TNativePort& nativePort, void* dirtyRegion);
  ~CDrawToolsGlue() override;

  TError IDrawTools_GetDirtyRegion(void*& outNativeRegion) override;
  TError IDrawTools_OpenNativePort(TNativePort& out) override;
  TError IDrawTools_CloseNativePort() override;
  TError IDrawTools_OpenRawPixels(TRawPixels& out) override;
  TError IDrawTools_CloseRawPixels() override;
  TError IDrawTools_OpenNativePortWithFont(HFONT__* font, TNativePort& out) override;

  // Called before and after the drawing of one view: clip the dirty region to its bounds, in addition to
  // those of its super views.
  void PushViewBounds(const TRect& bounds);
  void PopViewBounds(const TRect& bounds);
  // Called when a behaviour has used the tools: reports and closes the port or the pixels that it has left
  // open, so that the next behaviour can draw.
  void CloseWhatIsLeftOpen();
  // The port, with the clip of the view that is being drawn. Whoever wants to use it gets it from here.
  TNativePort UsePort();
  CKnownPort& GetKnownPort() { return fKnownPort; }

  virtual TNativePort CDrawToolsGlue_GetNativePort() = 0;
  virtual void CDrawToolsGlue_CloseNativePort() = 0;
  virtual TRawPixels CDrawToolsGlue_OpenRawPixels() = 0;
  virtual void CDrawToolsGlue_CloseRawPixels() = 0;
  // Copies what has been drawn so far to the screen, and waits a little if `delayFlag`.
  virtual void CDrawToolsGlue_FlushToScreen(bool delayFlag) = 0;

 protected:
  TNativePort fNativePort;
  void* fDirtyRegion;
  bool fNativePortIsOpen = false;
  bool fRawPixelsAreOpen = false;

 private:
  // A view that is being drawn, inside those before it.
  struct TLevel {
    TRect fBounds;
    std::optional<CRegion> fDirtyRegion;  // what is dirty in it, once somebody has asked
  };

  const CRegion& GetCurrentDirtyRegion();
  void PutFontBack();

  std::optional<CRegion> fWholeDirtyRegion;
  std::deque<TLevel> fLevels;  // regions that have been told stay where they are

  CKnownPort fKnownPort;
  // The font that was opened with last and is still selected, or null; and the one to select in its place.
  HFONT__* fLentFont = nullptr;
  HFONT__* fFontBefore = nullptr;
};

}  // namespace NSMorvane
