#include "Component/Win/Window/WinWindowPainting.h"

#include <exception>
#include <utility>

#include "Component/Portable/Drawing/DrawingWalk.h"
#include "Component/Portable/Surfaces/BufferBitmap.h"
#include "Component/Portable/Views/ViewImpl.h"
#include "Component/Win/Drawing/WinDeviceContext.h"
#include "Component/Win/Drawing/WinDrawTools.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Window/WindowHost.h"
#include "Component/Win/Window/WinViewInspector.h"

namespace NSMorvane {

namespace {

// An empty rectangle, which excludes nothing.
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
    // Sic: right and bottom stand for width and height. Where that is more than the bitmap holds, BitBlt
    // copies only what there is.
    BitBlt(windowDC, rect.fLeft, rect.fTop, rect.fRight, rect.fBottom, context.Get(), 0, 0, SRCCOPY);
  }
  CDeviceContext::Flush();
}

}  // namespace

// --- From WM_PAINT to the screen

void CWinWindowPainting::Paint(HWND sizeGrip) {
  const TRect excluded = sizeGrip ? RectInClient(sizeGrip, fWindow.fHwnd) : kNowhere;
  CPaintContext target(fWindow.fHwnd, excluded);
  PaintOn(target);
  if (sizeGrip) UpdateWindow(sizeGrip);
}

void CWinWindowPainting::PaintOn(CPaintContext& target) {
  const CRegion& region = target.GetRegion();
  if (region.IsEmpty()) return;
  if (fWindow.fHost->GetDebugSettings().fDrawPaintsRed && fWindow.IsVisible()) FlashPaint(target);
  const DWORD start = GetTickCount();
  COffscreenContext buffer(target, region.GetBounds());
  FillBackground(buffer);
  std::exception_ptr failure;
  try {
    DrawRootView(buffer, region);
  } catch (...) {
    failure = std::current_exception();
  }
  // Even then: the region counts as painted, and would go on showing what was in its place before.
  for (const TRect& rect : region.GetRects()) buffer.CopyToTarget(rect);
  if (failure) std::rethrow_exception(failure);
  if (fWindow.fHost->GetDebugSettings().fDrawViewBounds)
    DrawViewBounds(target, *fWindow.fRootView, fWindow.fRootView->GetBounds());
  fInspector.Draw();
  fSamples.Add({start, GetTickCount()});
}

void CWinWindowPainting::FillBackground(COffscreenContext& buffer) {
  RECT clientRect;
  if (!GetClientRect(fWindow.fHwnd, &clientRect)) MORVANE_CHECK_LAST_ERROR();
  FillRect(buffer.GetBuffer().GetHDC(), &clientRect, GetSysColorBrush(BackgroundColor(fWindow.fWindowKind)));
}

void CWinWindowPainting::DrawRootView(COffscreenContext& buffer, const CRegion& region) {
  // Copied, since callbacks may change the originals.
  const CRegion dirtyRegion(region);
  const TRect bounds = fWindow.fRootView->GetBounds();
  const TDebugSettings settings = fWindow.fHost->GetDebugSettings();
  IMorvaneRunBehavior* const runBehavior = fWindow.fHost->GetBehavior();
  CWinDrawTools tools({buffer.GetBuffer().GetHDC()}, dirtyRegion, buffer);
  TDrawBracket bracket(runBehavior, tools);
  DrawView(runBehavior, bracket, *fWindow.fRootView, bounds, tools, settings);
}

// --- Invalidation

// A hidden native window has no update region, and all of it is dirty when it is shown. Asked all the same,
// for each of many views that end with their window or are made before it is shown, the system takes its time
// to do nothing.
bool CWinWindowPainting::CanBeDirty() const { return IsWindowVisible(fWindow.fHwnd) != FALSE; }

void CWinWindowPainting::InvalidateRect(const TRect& rect) {
  if (fWindow.fHost->GetDebugSettings().fDrawInvalidationBlue && !IsEmptyRect(rect))
    FlashInvalidation({rect});
  if (!CanBeDirty()) return;
  if (fIsGathering && !fGathered) {
    fGathered = rect;
    return;
  }
  const std::optional<TRect> first = std::exchange(fGathered, std::nullopt);
  const TError error = ErrorOf([&] {
    if (!first) return;
    CRegion both(*first);
    both.UnionRect(rect);
    ::InvalidateRgn(fWindow.fHwnd, both.GetNativeRegion(), FALSE);
  });
  if (first && error == kOK) return;
  // Without memory for the region they are passed on one by one.
  if (first) PassOn(*first);
  PassOn(rect);
}

void CWinWindowPainting::InvalidateRegion(const CRegion& region) {
  if (region.IsEmpty()) return;
  if (fWindow.fHost->GetDebugSettings().fDrawInvalidationBlue) FlashInvalidation(region.GetRects());
  if (CanBeDirty()) ::InvalidateRgn(fWindow.fHwnd, region.GetNativeRegion(), FALSE);
}

void CWinWindowPainting::EndInvalidations() noexcept {
  fIsGathering = false;
  if (fGathered) PassOn(*fGathered);
  fGathered.reset();
}

void CWinWindowPainting::PassOn(const TRect& rect) const {
  const RECT nativeRect = ToNative(rect);
  ::InvalidateRect(fWindow.fHwnd, &nativeRect, FALSE);
}

// --- Debug layers

void CWinWindowPainting::FlashInvalidation(const TRectList& rects) {
  if (!fWindow.IsVisible()) return;
  const CWindowDC windowDC(fWindow.fHwnd);
  for (const TRect& rect : rects) FlashRect(windowDC.Get(), rect);
  if (fWindow.fHost->GetDebugSettings().fDelayAfterFlushing) Sleep(30);
}

void CWinWindowPainting::FlashPaint(CPaintContext& target) {
  const CRegion& region = target.GetRegion();
  target.FillSolidRect(region.GetBounds(), 0x00D000);
  const CGdiObject<HBRUSH> brush(CreateSolidBrush(0x0000D0));
  if (!brush.Get()) MORVANE_THROW(std::exception());
  if (!FillRgn(target.GetHDC(), region.GetNativeRegion(), brush.Get())) MORVANE_THROW(std::exception());
  if (fWindow.fHost->GetDebugSettings().fDelayAfterFlushing) Sleep(50);
}

}  // namespace NSMorvane
