// Painting of windows: from WM_PAINT to the screen, invalidation, global alpha, and what the debug settings
// add to them.
//
// A paint puts everything together in an offscreen buffer and copies the rectangles of the dirty region to
// the screen at the end. Nothing else of the screen is ever touched, unless a debug setting says so.
#include "Component/Portable/Drawing/DrawingWalk.h"
#include "Component/Portable/Surfaces/BufferBitmap.h"
#include "Component/Portable/Views/ViewImpl.h"
#include "Component/Win/Drawing/WinDeviceContext.h"
#include "Component/Win/Drawing/WinDrawTools.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Window/WindowHost.h"
#include "Component/Win/Window/WinWindow.h"

namespace NSMorvane {

namespace {

// Excludes nothing.
constexpr TRect kNowhere = {-10000, -10000, -10000, -10000};

TRect RectInClient(HWND child, HWND parent) {
  RECT rect;
  if (!GetWindowRect(child, &rect)) return kNowhere;
  MapWindowPoints(nullptr, parent, reinterpret_cast<POINT*>(&rect), 2);
  return FromNative(rect);
}

int BackgroundColor(TWindowKind kind) {
  return kind == kWindowKindDocument || kind == kWindowKindFloating ? COLOR_WINDOW : COLOR_3DFACE;
}

// Three fifths of the pixel, and two fifths of blue.
std::uint32_t TintBlue(std::uint32_t pixel) {
  const auto dim = [](std::uint32_t component) { return (component & 0xFF) * 3 / 5; };
  return dim(pixel >> 16) << 16 | dim(pixel >> 8) << 8 | (dim(pixel) + 102);
}

// Reads a rectangle of the window back from the screen and shows it tinted.
void FlashRect(HDC windowDC, const TRect& rect) {
  const TSize size = {ToCoordinate(RectWidth(rect)), ToCoordinate(RectHeight(rect))};
  if (!IsPossibleBitmapSize(size, 32)) MORVANE_THROW(XOutOfMemory());
  const int width = size.fWidth;
  const int height = size.fHeight;
  BITMAPINFO info = {};
  info.bmiHeader.biSize = sizeof(info.bmiHeader);
  info.bmiHeader.biWidth = width;
  info.bmiHeader.biHeight = -height;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  info.bmiHeader.biCompression = BI_RGB;
  void* bits = nullptr;
  const CGdiObject<HBITMAP> bitmap(CreateDIBSection(windowDC, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
  if (!bitmap.Get()) MORVANE_THROW(XOutOfMemory());
  {
    const CCreatedDC context(CreateCompatibleDC(windowDC));
    const CObjectSelection selection(context.Get(), bitmap.Get());
    BitBlt(context.Get(), 0, 0, width, height, windowDC, rect.fLeft, rect.fTop, SRCCOPY);
    GdiFlush();
    std::uint32_t* const pixels = static_cast<std::uint32_t*>(bits);
    const std::size_t count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    for (std::size_t i = 0; i < count; ++i) pixels[i] = TintBlue(pixels[i]);
    // Right and bottom, not width and height, as the size: where that is more than the bitmap holds, only as
    // much as there is gets copied.
    BitBlt(windowDC, rect.fLeft, rect.fTop, rect.fRight, rect.fBottom, context.Get(), 0, 0, SRCCOPY);
  }
  CDeviceContext::Flush();
}

// Frames a view and its subviews, as far as they can be seen.
void DrawViewBounds(CDeviceContext& context, CViewImpl& view, const TRect& clip) {
  TRect visible = view.GetBounds();
  if (IntersectRect(visible, clip)) {
    context.FrameRect(visible, 0x7F7F7F, PS_DOT);
    CDeviceContext::Flush();
  } else {
    visible = {};
  }
  for (const TViewImplPtr& subView : view.GetSubViews()) DrawViewBounds(context, *subView, visible);
}

}  // namespace

// --- From WM_PAINT to the screen

void CWinWindow::HandlePaint() {
  // The size grip paints itself.
  const TRect excluded = fSizeGripHwnd ? RectInClient(fSizeGripHwnd, fHwnd) : kNowhere;
  CPaintContext target(fHwnd, excluded);
  OnPaint(target);
  if (fSizeGripHwnd) UpdateWindow(fSizeGripHwnd);
}

void CWinWindow::OnPaint(CPaintContext& target) {
  const CRegion& region = target.GetRegion();
  if (region.IsEmpty()) return;
  if (fHost->GetDebugSettings().fDrawPaintsRed && IsVisible()) FlashPaint(target);
  const DWORD start = GetTickCount();
  COffscreenContext buffer(target, region.GetBounds());
  FillBackground(buffer);
  DrawRootView(buffer, region);
  for (const TRect& rect : region.GetRects()) buffer.CopyToTarget(rect);
  if (fHost->GetDebugSettings().fDrawViewBounds) DrawViewBounds(target, *fRootView, fRootView->GetBounds());
  DrawMouseViewInfo();
  fPaintSamples.Add({start, GetTickCount()});
  MORVANE_ASSERT(CheckInvariant());
}

void CWinWindow::FillBackground(COffscreenContext& buffer) {
  RECT clientRect;
  if (!GetClientRect(fHwnd, &clientRect)) MORVANE_THROW_LAST_ERROR();
  FillRect(buffer.GetBuffer().GetHDC(), &clientRect, GetSysColorBrush(BackgroundColor(fWindowKind)));
}

void CWinWindow::DrawRootView(COffscreenContext& buffer, const CRegion& region) {
  // Copies: callbacks may change what these are taken from.
  const CRegion dirtyRegion(region);
  const TRect bounds = fRootView->GetBounds();
  const TDebugSettings settings = fHost->GetDebugSettings();
  IMorvaneRunBehavior* const runBehavior = fHost->GetBehavior();
  CWinDrawTools tools({buffer.GetBuffer().GetHDC()}, dirtyRegion, buffer);
  TDrawBracket bracket(runBehavior, tools);
  DrawView(runBehavior, bracket, *fRootView, bounds, tools, settings);
}

// --- Invalidation

void CWinWindow::InvalidateRect(const TRect& rect) {
  if (fHost->GetDebugSettings().fDrawInvalidationBlue && !IsEmptyRect(rect)) FlashInvalidation({rect});
  NativeInvalidateRect(rect);
}

void CWinWindow::InvalidateRegion(const CRegion& region) {
  if (region.IsEmpty()) return;
  if (fHost->GetDebugSettings().fDrawInvalidationBlue) FlashInvalidation(region.GetRects());
  NativeInvalidateRegion(region);
}

void CWinWindow::NativeInvalidateRect(const TRect& rect) {
  const RECT nativeRect = ToNative(rect);
  ::InvalidateRect(fHwnd, &nativeRect, FALSE);
}

void CWinWindow::NativeInvalidateRegion(const CRegion& region) {
  ::InvalidateRgn(fHwnd, region.GetNativeRegion(), FALSE);
}

void CWinWindow::NativeUpdate() {
  if (!UpdateWindow(fHwnd)) MORVANE_THROW_LAST_ERROR();
}

// --- Debug layers

void CWinWindow::FlashInvalidation(const TRectList& rects) {
  if (!IsVisible()) return;
  const CWindowDC windowDC(fHwnd);
  for (const TRect& rect : rects) FlashRect(windowDC.Get(), rect);
  if (fHost->GetDebugSettings().fDelayAfterFlushing) Sleep(30);
}

void CWinWindow::FlashPaint(CPaintContext& target) {
  const CRegion& region = target.GetRegion();
  target.FillSolidRect(region.GetBounds(), 0x00D000);
  const CGdiObject<HBRUSH> brush(CreateSolidBrush(0x0000D0));
  if (!brush.Get()) MORVANE_THROW(std::exception());
  if (!FillRgn(target.GetHDC(), region.GetNativeRegion(), brush.Get())) MORVANE_THROW(std::exception());
  if (fHost->GetDebugSettings().fDelayAfterFlushing) Sleep(50);
}

void CWinWindow::DrawMouseViewInfo() {
  // The view inspector is not built yet.
}

// --- Paint samples

void CWinWindow::GetPaintSamples(std::vector<TPaintSample>& outSamples) const {
  outSamples = fPaintSamples.Get();
}

// --- Global alpha
//
// An opaque window is never layered.

std::uint8_t CWinWindow::CWindowGlue_GetGlobalAlpha() {
  const bool isLayered = GetWindowLongPtrW(fHwnd, GWL_EXSTYLE) & WS_EX_LAYERED;
  return isLayered ? fGlobalAlpha : 255;
}

TError CWinWindow::IWindow_SetGlobalAlpha(std::uint8_t alpha) {
  const boost::shared_ptr<CWinWindow> keepAlive = fClientsWindowReference;
  return CWindowGlue::IWindow_SetGlobalAlpha(alpha);
}

void CWinWindow::CWindowGlue_SetGlobalAlpha(std::uint8_t alpha) {
  const bool wanted = alpha != 255;
  const LONG_PTR style = GetWindowLongPtrW(fHwnd, GWL_EXSTYLE);
  const bool isLayered = style & WS_EX_LAYERED;
  if (wanted != isLayered) {
    if (!wanted && fGlobalAlpha != 255) SetLayeredWindowAttributes(fHwnd, 0, 255, LWA_ALPHA);
    const LONG_PTR newStyle = wanted ? style | WS_EX_LAYERED : style & ~LONG_PTR{WS_EX_LAYERED};
    SetWindowLongPtrW(fHwnd, GWL_EXSTYLE, newStyle);
    if (GetWindowLongPtrW(fHwnd, GWL_EXSTYLE) != newStyle) MORVANE_THROW(std::exception());
  }
  if (wanted && !SetLayeredWindowAttributes(fHwnd, 0, alpha, LWA_ALPHA)) MORVANE_THROW_LAST_ERROR();
  fGlobalAlpha = alpha;
}

}  // namespace NSMorvane
