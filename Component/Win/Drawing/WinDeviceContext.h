// Device contexts: that of a window, that of a window being painted, and that of the offscreen buffer of a
// paint. All coordinates are client coordinates of the window.
#pragma once

#include <windows.h>

#include <array>
#include <cstdint>
#include <memory>

#include "Component/Portable/Base/Geometry.h"
#include "Component/Portable/Surfaces/Region.h"
#include "Component/Portable/Text/TextPackage.h"
#include "Component/Win/Platform/UtilsWinHandles.h"

namespace NSMorvane {

// Holds one native context. The drawing operations serve the debug layers; colours are native ones.
class CDeviceContext : CNotCopied {
 public:
  CDeviceContext() = default;
  // Deletes a context that is still attached. A context that must not be deleted has to be detached before.
  ~CDeviceContext();

  void Attach(HDC hdc);
  HDC Detach();
  HDC GetHDC() const { return fHDC; }

  void FillSolidRect(const TRect& rect, COLORREF color);
  // The frame lies inside the rectangle.
  void FrameRect(const TRect& rect, COLORREF color, int penStyle);
  // One pixel wide, without the pixel at `to`.
  void DrawLine(const TPoint& from, const TPoint& to, COLORREF color, int penStyle);
  // One line of text with its top left corner at `position`; what lies outside `clipRect` is not drawn.
  void DrawLabel(const TPoint& position, const TRect& clipRect, const NSTextPackage::TString& text,
                 COLORREF color);
  // Makes everything drawn so far reach its surface.
  static void Flush();

 private:
  HDC fHDC = nullptr;
};

// The context of a window's whole client area, outside of painting.
class CClientContext : public CDeviceContext {
 public:
  explicit CClientContext(HWND hwnd);
  ~CClientContext();

 private:
  HWND fHwnd;
};

// The device context of a window that handles WM_PAINT, from BeginPaint to EndPaint.
class CPaintContext : public CDeviceContext {
 public:
  // `excludedRect` is left out of the region.
  CPaintContext(HWND hwnd, const TRect& excludedRect);
  ~CPaintContext();

  HWND GetHwnd() const { return fHwnd; }
  // The region to paint: the dirty part of the window that is visible on the screen.
  const CRegion& GetRegion() const { return fRegion; }

 private:
  // Calls EndPaint even if the constructor of CPaintContext fails.
  class CBracket : NSMorvane::CNotCopied {
   public:
    explicit CBracket(HWND hwnd);
    ~CBracket() { End(); }
    void End();
    const PAINTSTRUCT& Get() const { return fPaintStruct; }

   private:
    HWND fHwnd;
    bool fIsOpen;
    PAINTSTRUCT fPaintStruct;
  };

  HWND fHwnd;
  CBracket fBracket;
  CRegion fRegion;
};

// A bitmap that is selected into a context of its own.
class COffscreenSurface : CNotCopied {
 public:
  // Compatible with `target`. `bitDepth` is 16 or 32. The rows of the bitmap are top-down.
  COffscreenSurface(HDC target, const TSize& size, int bitDepth);
  ~COffscreenSurface();

  HDC GetHDC() const { return fContext.GetHDC(); }
  HBITMAP GetDIB() const { return fDIB.Get(); }
  HBITMAP GetOldBitmap() const { return fOldBitmap; }
  void* GetPixels() const { return fPixels; }
  const TSize& GetSize() const { return fSize; }
  int GetBitDepth() const { return fBitDepth; }
  int GetRowBytes() const { return fRowBytes; }
  std::size_t GetByteCount() const;

  // Resets the context to the state of a new one, with the bitmap selected; the pixels stay. False if that
  // fails.
  bool Reset();

 private:
  // The part of a context's state that can be read cheaply.
  using TReadableState = std::array<std::intptr_t, 29>;

  static TReadableState ReadState(HDC hdc);
  bool ResetWhatIsUsual();
  bool SaveNewState();

  CGdiObject<HBITMAP> fDIB;
  CDeviceContext fContext;
  HBITMAP fOldBitmap = nullptr;  // the bitmap of the context before
  void* fPixels = nullptr;
  TSize fSize;
  int fBitDepth;
  int fRowBytes = 0;
  int fNewState = 0;                 // the saved state of the context when it was new
  TReadableState fNewReadableState;  // the readable part of it
  int fCheapResets = 0;              // since the last full reset
};

// Keeps a few surfaces for later paints of this size or a smaller one: a new bitmap is costly, since each of
// its pages is written to for the first time. Every Take gives another surface, so paints may nest.
class COffscreenSurfacePool : CNotCopied {
 public:
  static constexpr std::size_t kMaxSurfaces = 4;
  // For all kept surfaces together: one screen of 3840 by 2160 pixels, whose height is rounded up.
  static constexpr std::size_t kMaxBytes = 3840 * 2176 * 4;

  COffscreenSurfacePool() { fSurfaces.reserve(kMaxSurfaces + 1); }

  // Gives a surface of this depth and at least this size, kept or new. Its pixels are undefined.
  std::unique_ptr<COffscreenSurface> Take(HDC target, const TSize& size, int bitDepth);
  void GiveBack(std::unique_ptr<COffscreenSurface> surface);
  void Clear() { fSurfaces.clear(); }
  std::size_t GetCount() const { return fSurfaces.size(); }

 private:
  std::vector<std::unique_ptr<COffscreenSurface>> fSurfaces;  // the one given back last is at the end
};

// The buffer of one paint, clipped to `drawRect`. Its origin is set so that drawing into it uses the same
// coordinates as drawing to the target.
class COffscreenContext : CNotCopied {
 public:
  // The depth follows that of the display. The content is undefined. `target` must outlive this object.
  COffscreenContext(CDeviceContext& target, const TRect& drawRect);
  // `bitDepth` is 16 or 32.
  COffscreenContext(CDeviceContext& target, const TRect& drawRect, int bitDepth);
  ~COffscreenContext();

  bool CheckInvariant() const;

  CDeviceContext& GetBuffer() { return fBuffer; }
  const TRect& GetDrawRect() const { return fDrawRect; }
  const COffscreenSurface& GetSurface() const { return *fSurface; }

  // A copy that fails is only logged.
  void CopyToTarget(const TRect& rect);

 private:
  CDeviceContext& fTarget;
  TRect fDrawRect;
  std::unique_ptr<COffscreenSurface> fSurface;
  CDeviceContext fBuffer;  // the context of the surface, which owns it
};

// The depth of a buffer for a device of `deviceBitDepth` bits: 16 or 32, so that the copy to the screen needs
// no conversion.
int BufferBitDepth(int deviceBitDepth);

// Called after a change of the display: forgets its depth, that of each monitor, and the kept surfaces.
void ForgetDisplayDepth();

}  // namespace NSMorvane
