// What a view draws with.
#pragma once

#include "MorvaneTypes.h"

namespace NSMorvane {

// The native drawing context.
struct TNativePort {
  HDC__* fHDC;
};

// The pixels of the surface that is being drawn to. Rows are top-down.
struct TRawPixels {
  std::int32_t fOriginX;  // the drawing coordinates of the first pixel
  std::int32_t fOriginY;
  std::int32_t fWidth;
  std::int32_t fHeight;
  std::int32_t fRowBytes;
  std::uint16_t* fPixels16;  // non-null only for a 16-bit surface: 5 bits each of red, green, blue
  std::uint32_t* fPixels32;  // non-null only for a 32-bit surface: 0x00RRGGBB
  TFlag fFlags;              // 0 on this platform
};

// Handed to IViewBehavior_Draw and its like, and only valid during that call. Drawing coordinates are those
// of the window's client area. Either the port or the pixels can be open, one at a time; what is opened must
// be closed before the call returns.
//
// A call out of order gives kIllegalCallSequenceProgrammingError and changes nothing.
class IDrawTools {
 public:
  // The region to redraw, in drawing coordinates, as a native region handle (HRGN). It stays the library's
  // and is valid until the next view is drawn. `outNativeRegion` must be null on the way in.
  virtual TError IDrawTools_GetDirtyRegion(void*& outNativeRegion) = 0;
  // The native context, clipped to the view and at least to the box of the dirty region; what is drawn
  // outside the region is not shown. Leave selected objects as they were found, all the more those that you
  // delete. Clip and origin are put right behind each view; everything else, such as colours, background mode
  // and text alignment, stays as it is for the views that are drawn after this one onto the same surface: set
  // what you need. What all views of a surface are to find, a font for example, is set once in
  // IMorvaneRunBehavior_OnBeginDraw, which comes for each surface: for the window, and for the bitmap of each
  // buffered view. The library takes it off behind the last one.
  virtual TError IDrawTools_OpenNativePort(TNativePort& out) = 0;
  virtual TError IDrawTools_CloseNativePort() = 0;
  // Direct access to the pixels. Nothing clips here: stay within the view and the dirty region.
  virtual TError IDrawTools_OpenRawPixels(TRawPixels& out) = 0;
  virtual TError IDrawTools_CloseRawPixels() = 0;

 protected:
  virtual ~IDrawTools() = default;
};

}  // namespace NSMorvane
