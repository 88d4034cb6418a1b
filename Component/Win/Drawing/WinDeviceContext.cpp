#include "Component/Win/Drawing/WinDeviceContext.h"

#include <algorithm>

#include "Component/Win/Platform/UtilsWin.h"

namespace NSMorvane {

namespace {

// Whether GetRandomRgn(SYSRGN) gives screen coordinates, as on Windows NT, and not client coordinates, as on
// the systems before it.
bool SystemRegionIsOnScreen() {
  static const bool result = [] {
    OSVERSIONINFOW version = {};
    return GetSystemVersion(version) && version.dwPlatformId == VER_PLATFORM_WIN32_NT;
  }();
  return result;
}

// The part of the window that drawing on `hdc` can reach, in client coordinates. It may be far smaller than
// the rectangle that BeginPaint gives.
CRegion GetSystemRegion(HDC hdc, HWND hwnd) {
  CGdiObject<HRGN> nativeRegion(CreateRectRgn(0, 0, 0, 0));
  const HRGN nativeClipRegion = nativeRegion.Get();
  MORVANE_ASSERT(nativeClipRegion != NULL);
  if (!nativeClipRegion) MORVANE_THROW(XOutOfMemory());
  GetRandomRgn(hdc, nativeClipRegion, SYSRGN);
  CRegion region(nativeClipRegion, false);
  nativeRegion.Detach();
  if (SystemRegionIsOnScreen()) {
    POINT origin = {0, 0};
    ClientToScreen(hwnd, &origin);
    region.Offset(-origin.x, -origin.y);
  }
  return region;
}

// The bit depth of the display, or 0 if it has to be asked for, which costs as much as painting a hundred
// small views. Process-wide, as there is one display.
int gDeviceBitDepth = 0;

int DeviceBitDepth(HDC target) {
  if (gDeviceBitDepth == 0) {
    const int targetDCBitDepth = GetDeviceCaps(target, BITSPIXEL);
    MORVANE_ASSERT(targetDCBitDepth >= 8 && targetDCBitDepth <=32);
    gDeviceBitDepth = targetDCBitDepth;
  }
  return gDeviceBitDepth;
}

COffscreenSurfacePool& SurfacePool() {
  // Process-wide, since the paints of all windows share the surfaces. Never destroyed, since the end of the
  // process is too late for calls of the platform.
  static COffscreenSurfacePool& pool = *new COffscreenSurfacePool;
  return pool;
}

// Clips to `drawRect`, since the surface may be larger, and to what `from` is clipped to.
void CopyClip(HDC from, HDC to, const TRect& drawRect) {
  const CGdiObject<HRGN> whole(
      CreateRectRgn(0, 0, drawRect.fRight - drawRect.fLeft, drawRect.fBottom - drawRect.fTop));
  const CGdiObject<HRGN> clip(CreateRectRgn(0, 0, 0, 0));
  if (whole.Get() == nullptr || clip.Get() == nullptr) MORVANE_THROW(XOutOfMemory());
  if (GetClipRgn(from, clip.Get()) == 1) {
    OffsetRgn(clip.Get(), -drawRect.fLeft, -drawRect.fTop);
    CombineRgn(whole.Get(), whole.Get(), clip.Get(), RGN_AND);
  }
  SelectClipRgn(to, whole.Get());
}

// A size up to which many others are rounded, so that the next paint, of nearly the same size, needs no new
// surface. What lies beyond the rectangle of a paint is never written to.
TSize RoundUp(const TSize& size) {
  const auto roundUp = [](std::int32_t length) {
    return ToCoordinate((std::int64_t{length} + 63) / 64 * 64);
  };
  return {roundUp(size.fWidth), roundUp(size.fHeight)};
}

}  // namespace

// --- CDeviceContext

CDeviceContext::~CDeviceContext() {
  if (!fHDC) return;
  const BOOL result = DeleteDC(fHDC);
  MORVANE_ASSERT(result !=0);
}

void CDeviceContext::Attach(HDC hdc) {
  MORVANE_ASSERT(fHDC == NULL);
  fHDC = hdc;
}

HDC CDeviceContext::Detach() {
  MORVANE_ASSERT(fHDC != NULL);
  return std::exchange(fHDC, nullptr);
}

void CDeviceContext::FillSolidRect(const TRect& rect, COLORREF color) {
  MORVANE_ASSERT(fHDC != NULL);
  const RECT nativeRect = ToNative(rect);
  const COLORREF oldColor = SetBkColor(fHDC, color);
  ExtTextOutW(fHDC, 0, 0, ETO_OPAQUE, &nativeRect, nullptr, 0, nullptr);
  const COLORREF ourColor = SetBkColor(fHDC, oldColor);
  MORVANE_ASSERT(ourColor == color);
}

void CDeviceContext::FrameRect(const TRect& rect, COLORREF color, int penStyle) {
  MORVANE_ASSERT(fHDC != NULL);
  const std::int32_t right = ToCoordinate(std::int64_t{rect.fRight} - 1);
  const std::int32_t bottom = ToCoordinate(std::int64_t{rect.fBottom} - 1);
  const TPoint topLeft = {rect.fLeft, rect.fTop};
  const TPoint topRight = {right, rect.fTop};
  const TPoint bottomRight = {right, bottom};
  const TPoint bottomLeft = {rect.fLeft, bottom};
  DrawLine(topLeft, topRight, color, penStyle);
  DrawLine(topRight, bottomRight, color, penStyle);
  DrawLine(bottomRight, bottomLeft, color, penStyle);
  DrawLine(bottomLeft, topLeft, color, penStyle);
}

void CDeviceContext::DrawLine(const TPoint& from, const TPoint& to, COLORREF color, int penStyle) {
  MORVANE_ASSERT(fHDC != NULL);
  const CGdiObject<HPEN> pen(CreatePen(penStyle, 1, color));
  const HGDIOBJ oldPen = SelectObject(fHDC, pen.Get());
  MoveToEx(fHDC, from.fX, from.fY, nullptr);
  LineTo(fHDC, to.fX, to.fY);
  if (SelectObject(fHDC, oldPen) != pen.Get()) MORVANE_THROW(std::exception());
}

void CDeviceContext::DrawLabel(const TPoint& position, const TRect& clipRect,
                               const NSTextPackage::TString& text, COLORREF color) {
  MORVANE_ASSERT(fHDC != NULL);
  const RECT nativeRect = ToNative(clipRect);
  const CObjectSelection font(fHDC, GetStockObject(DEFAULT_GUI_FONT));
  const int oldMode = SetBkMode(fHDC, TRANSPARENT);
  const COLORREF oldColor = SetTextColor(fHDC, color);
  ExtTextOutW(fHDC, position.fX, position.fY, ETO_CLIPPED, &nativeRect, WinText(text),
              static_cast<UINT>(text.size()), nullptr);
  SetTextColor(fHDC, oldColor);
  SetBkMode(fHDC, oldMode);
}

void CDeviceContext::Flush() { GdiFlush(); }

// --- CClientContext

CClientContext::CClientContext(HWND hwnd) : fHwnd(hwnd) {
  MORVANE_ASSERT(hwnd !=0);
  MORVANE_ASSERT(::IsWindow(fHwnd));
  const HDC hdc = GetDC(hwnd);
  if (!hdc) MORVANE_CHECK_LAST_ERROR();
  Attach(hdc);
}

CClientContext::~CClientContext() {
  const HDC hdc = Detach();
  MORVANE_ASSERT(hdc != NULL);
  const int rdcResult = ReleaseDC(fHwnd, hdc);
  MORVANE_ASSERT(rdcResult != 0);
}

// --- CPaintContext

CPaintContext::CBracket::CBracket(HWND hwnd) : fHwnd(hwnd), fIsOpen(true), fPaintStruct() {
  if (!BeginPaint(fHwnd, &fPaintStruct)) MORVANE_THROW_LAST_ERROR();
}

void CPaintContext::CBracket::End() {
  if (std::exchange(fIsOpen, false)) EndPaint(fHwnd, &fPaintStruct);
}

CPaintContext::CPaintContext(HWND hwnd, const TRect& excludedRect)
    : fHwnd(hwnd), fBracket(hwnd), fRegion(GetSystemRegion(fBracket.Get().hdc, hwnd)) {
  if (fRegion.IsEmpty()) fRegion = CRegion(FromNative(fBracket.Get().rcPaint));
  fRegion.SubtractRect(excludedRect);
  Attach(fBracket.Get().hdc);
}

CPaintContext::~CPaintContext() {
  fBracket.End();
  Detach();
}

// --- COffscreenSurface

COffscreenSurface::COffscreenSurface(HDC target, const TSize& size, int bitDepth)
    : fSize(size), fBitDepth(bitDepth) {
  const HDC hdc = CreateCompatibleDC(target);
  if (!hdc) MORVANE_CHECK_LAST_ERROR();
  fContext.Attach(hdc);

  BITMAPINFO info = {};
  info.bmiHeader.biSize = sizeof(info.bmiHeader);
  info.bmiHeader.biWidth = size.fWidth;
  info.bmiHeader.biHeight = -size.fHeight;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = static_cast<WORD>(bitDepth);
  info.bmiHeader.biCompression = BI_RGB;
  fDIB.Reset(CreateDIBSection(target, &info, DIB_RGB_COLORS, &fPixels, nullptr, 0));
  if (!fDIB.Get()) MORVANE_CHECK_LAST_ERROR();
  fOldBitmap = static_cast<HBITMAP>(SelectObject(hdc, fDIB.Get()));
  if (!fOldBitmap) MORVANE_THROW(std::exception());

  BITMAP bitmap = {};
  GetObjectW(fDIB.Get(), sizeof(bitmap), &bitmap);
  if (bitmap.bmPlanes != 1 || !bitmap.bmBits) MORVANE_THROW(std::exception());
  fRowBytes = (bitmap.bmWidthBytes + 3) / 4 * 4;
  fNewReadableState = ReadState(hdc);
  SaveNewState();
}

COffscreenSurface::~COffscreenSurface() {
  RestoreDC(GetHDC(), fNewState);
  const HGDIOBJ prevObject = SelectObject(GetHDC(), fOldBitmap);
  MORVANE_ASSERT_TEXT("prevObject == fDIB", prevObject == fDIB.Get());
  const BOOL ok = DeleteObject(fDIB.Detach());
  MORVANE_ASSERT(ok);
}

std::size_t COffscreenSurface::GetByteCount() const {
  return static_cast<std::size_t>(fRowBytes) * static_cast<std::size_t>(fSize.fHeight);
}

// A full reset costs as much as drawing several small views, and nearly always there is little to undo.
bool COffscreenSurface::Reset() {
  // A full reset now and then also undoes what cannot be read: states that were saved and never restored.
  static constexpr int kMaxCheapResets = 64;
  if (fCheapResets < kMaxCheapResets && ResetWhatIsUsual()) {
    ++fCheapResets;
    return true;
  }
  fCheapResets = 0;
  return RestoreDC(GetHDC(), fNewState) && ReadState(GetHDC()) == fNewReadableState && SaveNewState();
}

bool COffscreenSurface::SaveNewState() {
  fNewState = SaveDC(GetHDC());
  return fNewState != 0;
}

// Undoes the usual changes. False if there are others.
bool COffscreenSurface::ResetWhatIsUsual() {
  const HDC hdc = GetHDC();
  AbortPath(hdc);
  SetWindowOrgEx(hdc, 0, 0, nullptr);
  SelectClipRgn(hdc, nullptr);
  MoveToEx(hdc, 0, 0, nullptr);
  SetTextJustification(hdc, 0, 0);
  return ReadState(hdc) == fNewReadableState;
}

COffscreenSurface::TReadableState COffscreenSurface::ReadState(HDC hdc) {
  POINT windowOrigin = {};
  GetWindowOrgEx(hdc, &windowOrigin);
  POINT viewportOrigin = {};
  GetViewportOrgEx(hdc, &viewportOrigin);
  POINT brushOrigin = {};
  GetBrushOrgEx(hdc, &brushOrigin);
  RECT clipBox = {};
  const int clipShape = GetClipBox(hdc, &clipBox);
  const auto object = [hdc](UINT type) {
    return reinterpret_cast<std::intptr_t>(GetCurrentObject(hdc, type));
  };
  const auto number = [](auto value) { return static_cast<std::intptr_t>(value); };
  return {number(GetGraphicsMode(hdc)),
          number(GetMapMode(hdc)),
          number(GetLayout(hdc)),
          windowOrigin.x,
          windowOrigin.y,
          viewportOrigin.x,
          viewportOrigin.y,
          clipShape,
          clipBox.left,
          clipBox.top,
          clipBox.right,
          clipBox.bottom,
          number(GetTextColor(hdc)),
          number(GetBkColor(hdc)),
          number(GetDCBrushColor(hdc)),
          number(GetDCPenColor(hdc)),
          GetBkMode(hdc),
          GetROP2(hdc),
          number(GetTextAlign(hdc)),
          GetTextCharacterExtra(hdc),
          GetStretchBltMode(hdc),
          GetPolyFillMode(hdc),
          GetArcDirection(hdc),
          brushOrigin.x,
          brushOrigin.y,
          object(OBJ_FONT),
          object(OBJ_PEN),
          object(OBJ_BRUSH),
          object(OBJ_BITMAP)};
}

// --- COffscreenSurfacePool

std::unique_ptr<COffscreenSurface> COffscreenSurfacePool::Take(HDC target, const TSize& size, int bitDepth) {
  const auto fits = [&](const auto& surface) {
    return surface->GetSize().fWidth >= size.fWidth && surface->GetSize().fHeight >= size.fHeight &&
           surface->GetBitDepth() == bitDepth;
  };
  auto it = std::find_if(fSurfaces.begin(), fSurfaces.end(), fits);
  if (it == fSurfaces.end()) return std::make_unique<COffscreenSurface>(target, RoundUp(size), bitDepth);
  for (auto other = it; ++other != fSurfaces.end();)
    if (fits(*other) && (*other)->GetByteCount() < (*it)->GetByteCount()) it = other;
  std::unique_ptr<COffscreenSurface> result = std::move(*it);
  fSurfaces.erase(it);
  return result;
}

void COffscreenSurfacePool::GiveBack(std::unique_ptr<COffscreenSurface> surface) {
  if (surface->GetByteCount() > kMaxBytes || !surface->Reset()) return;
  fSurfaces.push_back(std::move(surface));
  std::size_t bytes = 0;
  for (const auto& kept : fSurfaces) bytes += kept->GetByteCount();
  while (fSurfaces.size() > kMaxSurfaces || bytes > kMaxBytes) {
    bytes -= fSurfaces.front()->GetByteCount();
    fSurfaces.erase(fSurfaces.begin());
  }
}

// --- COffscreenContext

COffscreenContext::COffscreenContext(CDeviceContext& target, const TRect& drawRect)
    : COffscreenContext(target, drawRect, BufferBitDepth(DeviceBitDepth(target.GetHDC()))) {}

COffscreenContext::COffscreenContext(CDeviceContext& target, const TRect& drawRect, int bitDepth)
    : fTarget(target), fDrawRect(drawRect) {
  MORVANE_ASSERT((drawRect.fRight > drawRect.fLeft) || (drawRect.fBottom > drawRect.fTop));
  const TSize size = {ToCoordinate(RectWidth(drawRect)), ToCoordinate(RectHeight(drawRect))};
  fSurface = SurfacePool().Take(fTarget.GetHDC(), size, bitDepth);
  const HDC hdc = fSurface->GetHDC();
  SetWindowOrgEx(hdc, fDrawRect.fLeft, fDrawRect.fTop, nullptr);
  CopyClip(fTarget.GetHDC(), hdc, fDrawRect);
  fBuffer.Attach(hdc);
  MORVANE_ASSERT(CheckInvariant());
}

COffscreenContext::~COffscreenContext() {
  fBuffer.Detach();
  // A client that has left its own bitmap selected is reported here; Reset puts the surface's bitmap back.
  const HGDIOBJ prevObject = GetCurrentObject(fSurface->GetHDC(), OBJ_BITMAP);
  MORVANE_ASSERT_TEXT("prevObject == fDIB", prevObject == fSurface->GetDIB());
  SurfacePool().GiveBack(std::move(fSurface));
}

bool COffscreenContext::CheckInvariant() const {
  const auto require = [](bool condition) {
    if (!condition) MORVANE_UNREACHED();
    return condition;
  };
  return require(fTarget.GetHDC() != nullptr) && require(fDrawRect.fLeft < fDrawRect.fRight) &&
         require(fDrawRect.fTop < fDrawRect.fBottom) && require(fBuffer.GetHDC() != nullptr) &&
         require(fSurface->GetPixels() != nullptr) && require(fSurface->GetDIB() != nullptr) &&
         require(fSurface->GetOldBitmap() != nullptr) &&
         require(fSurface->GetBitDepth() == 16 || fSurface->GetBitDepth() == 32);
}

void COffscreenContext::CopyToTarget(const TRect& rect) {
  if (!BitBlt(fTarget.GetHDC(), rect.fLeft, rect.fTop, rect.fRight - rect.fLeft, rect.fBottom - rect.fTop,
              fBuffer.GetHDC(), rect.fLeft, rect.fTop, SRCCOPY))
    DebugPrint("BitBlt failed. Probably due to screensaver...?");
}

int BufferBitDepth(int deviceBitDepth) { return deviceBitDepth <= 16 ? 16 : 32; }

void ForgetDisplayDepth() {
  gDeviceBitDepth = 0;
  ForgetMonitorDepths();
  SurfacePool().Clear();
}

}  // namespace NSMorvane
