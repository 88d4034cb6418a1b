#include "Component/Portable/Surfaces/BufferBitmap.h"

#include <windows.h>

#include <boost/make_shared.hpp>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Surfaces/PortState.h"
#include "Component/Win/Platform/UtilsWinHandles.h"

namespace NSMorvane {

namespace {

constexpr COLORREF kCopyBackground = 0x02000000;

HDC MakeScreenCompatibleContext() {
  const HDC screen = GetDC(nullptr);
  const HDC context = CreateCompatibleDC(screen);
  if (screen != nullptr) ReleaseDC(nullptr, screen);
  if (context == nullptr) MORVANE_THROW(XOutOfMemory());
  return context;
}

HBITMAP MakeSection(HDC context, const TSize& size, std::int32_t depth, void*& outPixels) {
  BITMAPINFO info = {};
  info.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
  info.bmiHeader.biWidth = size.fWidth;
  info.bmiHeader.biHeight = -size.fHeight;  // top-down
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = static_cast<WORD>(depth);
  info.bmiHeader.biCompression = BI_RGB;
  return CreateDIBSection(context, &info, DIB_RGB_COLORS, &outPixels, nullptr, 0);
}

}  // namespace

CBufferBitmap::CBufferBitmap(TSize size, std::int32_t depth)
    : fCurrentOrigin(),
      fHDC(nullptr),
      fHBitmap(nullptr),
      fOldBitmap(nullptr),
      fPixelPtr(nullptr),
      fSaveStateCount(0),
      fInfo() {
  CCreatedDC context(MakeScreenCompatibleContext());

  const CGdiObject<HRGN> clip(CreateRectRgn(0, 0, size.fWidth, size.fHeight));
  if (clip.Get() == nullptr || SelectClipRgn(context.Get(), clip.Get()) == ERROR)
    MORVANE_THROW(std::exception());

  CGdiObject<HBITMAP> bitmap;
  if (IsPossibleBitmapSize(size, depth)) bitmap.Reset(MakeSection(context.Get(), size, depth, fPixelPtr));
  if (bitmap.Get() == nullptr) MORVANE_THROW(XOutOfMemory());

  DIBSECTION section = {};
  if (GetObjectW(bitmap.Get(), sizeof(section), &section) != sizeof(section)) MORVANE_THROW(std::exception());
  fInfo.fWidth = section.dsBmih.biWidth;
  fInfo.fHeight = section.dsBmih.biHeight < 0 ? -section.dsBmih.biHeight : section.dsBmih.biHeight;
  fInfo.fBitDepth = section.dsBmih.biBitCount;
  fInfo.fRowBytes = (section.dsBm.bmWidthBytes + 3) / 4 * 4;

  fOldBitmap = static_cast<HBITMAP>(SelectObject(context.Get(), bitmap.Get()));
  if (fOldBitmap == nullptr) MORVANE_THROW(std::exception());
  fHDC = context.Detach();
  fHBitmap = bitmap.Detach();
}

CBufferBitmap::~CBufferBitmap() {
  MORVANE_ASSERT(fSaveStateCount == 0);
  if (!fSavedStateStack.empty()) {
    MORVANE_UNREACHED();
    fSavedStateStack.clear();
  }
  SelectObject(fHDC, fOldBitmap);
  DeleteObject(fHBitmap);
  DeleteDC(fHDC);
}

void* CBufferBitmap::OpenPixels() {
  // GDI may still hold back drawing calls.
  GdiFlush();
  return fPixelPtr;
}

void CBufferBitmap::ClosePixels(void* pixelPtr) { MORVANE_ASSERT((NULL==pixelPtr) || (pixelPtr==fPixelPtr)); }

void CBufferBitmap::SaveState() {
  MORVANE_ASSERT(fSaveStateCount == 0);
  fSavedStateStack.push_back(boost::make_shared<CStateRestorer>(fHDC));
  ++fSaveStateCount;
}

void CBufferBitmap::RestoreState() {
  MORVANE_ASSERT(fSaveStateCount == 1);
  MORVANE_ASSERT(fSavedStateStack.size() > 0);
  if (fSavedStateStack.empty()) return;
  fSavedStateStack.pop_back();
  POINT origin = {fCurrentOrigin.fX, fCurrentOrigin.fY};
  GetWindowOrgEx(fHDC, &origin);
  fCurrentOrigin = {origin.x, origin.y};
  --fSaveStateCount;
}

TPoint CBufferBitmap::SetOrigin(TPoint newOrigin) {
  const TPoint oldOrigin = fCurrentOrigin;
  if (newOrigin == oldOrigin) return oldOrigin;
  POINT prevPoint = {};
  if (!SetWindowOrgEx(fHDC, newOrigin.fX, newOrigin.fY, &prevPoint)) MORVANE_THROW(std::exception());
  MORVANE_ASSERT((prevPoint.x == fCurrentOrigin.fX) && (prevPoint.y == fCurrentOrigin.fY));
  fCurrentOrigin = newOrigin;
  const TPoint shift = {ToCoordinate(static_cast<std::int64_t>(oldOrigin.fX) - newOrigin.fX),
                        ToCoordinate(static_cast<std::int64_t>(oldOrigin.fY) - newOrigin.fY)};
  if (OffsetClipRgn(fHDC, shift.fX, shift.fY) == ERROR) MORVANE_THROW(std::exception());
  return oldOrigin;
}

void CBufferBitmap::ClipToRegion(TNativeRegion nativeRegion) {
  if (SelectClipRgn(fHDC, nativeRegion) == ERROR) MORVANE_THROW(std::exception());
  if (fCurrentOrigin == TPoint{}) return;
  const TPoint shift = {ToCoordinate(-static_cast<std::int64_t>(fCurrentOrigin.fX)),
                        ToCoordinate(-static_cast<std::int64_t>(fCurrentOrigin.fY))};
  if (OffsetClipRgn(fHDC, shift.fX, shift.fY) == ERROR) MORVANE_THROW(std::exception());
}

void CBufferBitmap::CopyToPort(const TNativePort& port, TPoint destPoint, const TRect& sourceRect) {
  const HDC target = port.fHDC;
  const COLORREF oldBackground = SetBkColor(target, kCopyBackground);
  const int oldOperation = SetROP2(target, R2_COPYPEN);
  const int oldBackgroundMode = SetBkMode(target, TRANSPARENT);
  const int oldMapMode = SetMapMode(target, MM_TEXT);
  const BOOL okFlag =
      BitBlt(target, destPoint.fX, destPoint.fY, ToCoordinate(RectWidth(sourceRect)),
             ToCoordinate(RectHeight(sourceRect)), fHDC, sourceRect.fLeft, sourceRect.fTop, SRCCOPY);
  MORVANE_ASSERT(okFlag);
  SetROP2(target, oldOperation);
  SetBkMode(target, oldBackgroundMode);
  SetMapMode(target, oldMapMode);
  SetBkColor(target, oldBackground);
}

}  // namespace NSMorvane
