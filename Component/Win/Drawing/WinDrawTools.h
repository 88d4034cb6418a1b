// The draw tools of a window that is being painted.
#pragma once

#include "Component/Portable/Contract/MorvaneGlueDrawTools.h"
#include "Component/Win/Drawing/WinDeviceContext.h"

namespace NSMorvane {

class CWinDrawTools : public CDrawToolsGlue {
 public:
  // `nativePort` is that of the buffer; the region is in client coordinates. Port, region and buffer stay the
  // caller's and must live longer.
  CWinDrawTools(const TNativePort& nativePort, const CRegion& clipRegion, COffscreenContext& buffer);
  ~CWinDrawTools() override;

  TNativePort CDrawToolsGlue_GetNativePort() override;
  void CDrawToolsGlue_CloseNativePort() override;
  TRawPixels CDrawToolsGlue_OpenRawPixels() override;
  void CDrawToolsGlue_CloseRawPixels() override;
  // Copies to the screen what has been painted so far of the current dirty region. With `delayFlag`, waits 30
  // milliseconds, so that it can be seen.
  void CDrawToolsGlue_FlushToScreen(bool delayFlag) override;

 private:
  COffscreenContext& fBuffer;
  // Always null, since the raw pixels are those of the buffer.
  HDC fOpenPixelsHDC = nullptr;
  HBITMAP fOpenPixelsHBITMAP = nullptr;
  HBITMAP fOldOpenPixelsHBITMAP = nullptr;
};

}  // namespace NSMorvane
