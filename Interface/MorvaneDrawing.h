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

// Passed to IViewBehavior_Draw and the other drawing callbacks, and valid only during that call. Drawing
// coordinates are those of the window's client area. Either the port or the pixels can be open, one at a
// time; what is opened must be closed before the callback returns.
//
// A call out of order changes nothing. It gives kIllegalCallSequenceProgrammingError; closing the port while
// the pixels are open, or the pixels while the port is open, gives kBadInputProgrammingError.
class IDrawTools {
 public:
  // The region to redraw, in drawing coordinates, as a native region handle (HRGN). The library owns it, and
  // it is valid until the next view is drawn. `outNativeRegion` must be null before the call.
  virtual TError IDrawTools_GetDirtyRegion(void*& outNativeRegion) = 0;
  // The native context, clipped to the view and at least to the bounding box of the dirty region. What is
  // drawn outside the region is not shown.
  //
  // Before closing the port, select the old objects back into it, above all in place of those that you
  // delete. The library restores clip and origin after each view. Everything else, such as colours,
  // background mode and text alignment, stays as it is for the views that are drawn next onto the same
  // surface: set what you need. What all views of a surface need, a font for example, is set once in
  // IMorvaneRunBehavior_OnBeginDraw, which is called for each surface: for the window, and for the bitmap of
  // each buffered view. The library undoes it after the last view.
  virtual TError IDrawTools_OpenNativePort(TNativePort& out) = 0;
  virtual TError IDrawTools_CloseNativePort() = 0;
  // Direct access to the pixels. There is no clipping: stay within the view and the dirty region.
  virtual TError IDrawTools_OpenRawPixels(TRawPixels& out) = 0;
  virtual TError IDrawTools_CloseRawPixels() = 0;
  // The native port with `font` selected, an HFONT, for as long as it is open. This is the fast way for views
  // that draw in fonts of their own, since it costs far less than selecting and putting back where one view
  // after the other wants the same: the font stays selected until somebody opens the port for another, or
  // without one, and then gets what was selected before. So do not delete it while views are being drawn.
  // kBadInputProgrammingError for what is no font.
  virtual TError IDrawTools_OpenNativePortWithFont(HFONT__* font, TNativePort& out) = 0;

 protected:
  virtual ~IDrawTools() = default;
};

}  // namespace NSMorvane
