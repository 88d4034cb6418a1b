#include "Component/Win/Drawing/WinDrawTools.h"

namespace NSMorvane {

CWinDrawTools::CWinDrawTools(const TNativePort& nativePort, const CRegion& clipRegion,
                             COffscreenContext& buffer)
    : CDrawToolsGlue(nativePort, clipRegion.GetNativeRegion()), fBuffer(buffer) {
  MORVANE_ASSERT(nativePort.fHDC != NULL);
}

CWinDrawTools::~CWinDrawTools() {
  MORVANE_ASSERT(NULL == fOpenPixelsHDC);
  MORVANE_ASSERT(NULL == fOpenPixelsHBITMAP);
  MORVANE_ASSERT(NULL == fOldOpenPixelsHBITMAP);
}

TNativePort CWinDrawTools::CDrawToolsGlue_GetNativePort() { return fNativePort; }

void CWinDrawTools::CDrawToolsGlue_CloseNativePort() {
  // The port stays open as long as the tools live.
}

TRawPixels CWinDrawTools::CDrawToolsGlue_OpenRawPixels() {
  const COffscreenSurface& surface = fBuffer.GetSurface();
  TRawPixels pixels = {};
  POINT origin;
  if (!GetWindowOrgEx(surface.GetHDC(), &origin)) {
    MORVANE_UNREACHED();
    MORVANE_THROW(std::exception());
  }
  pixels.fOriginX = origin.x;
  pixels.fOriginY = origin.y;
  switch (surface.GetBitDepth()) {
    case 16:
      pixels.fPixels16 = static_cast<std::uint16_t*>(surface.GetPixels());
      break;
    case 32:
      pixels.fPixels32 = static_cast<std::uint32_t*>(surface.GetPixels());
      break;
    default:
      MORVANE_UNREACHED();
      MORVANE_THROW(std::exception());
  }
  pixels.fRowBytes = surface.GetRowBytes();
  // The surface may be larger.
  pixels.fWidth = ToCoordinate(RectWidth(fBuffer.GetDrawRect()));
  pixels.fHeight = ToCoordinate(RectHeight(fBuffer.GetDrawRect()));
  GdiFlush();  // the pixels must contain what was drawn so far
  return pixels;
}

void CWinDrawTools::CDrawToolsGlue_CloseRawPixels() {
  // Nothing to close: the pixels belong to the buffer.
}

void CWinDrawTools::CDrawToolsGlue_FlushToScreen(bool delayFlag) {
  void* nativeRegion = nullptr;
  ThrowError(IDrawTools_GetDirtyRegion(nativeRegion));
  for (const TRect& rect : CRegion(static_cast<TNativeRegion>(nativeRegion), true).GetRects())
    fBuffer.CopyToTarget(rect);
  CDeviceContext::Flush();
  if (delayFlag) Sleep(30);
}

}  // namespace NSMorvane
