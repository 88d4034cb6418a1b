// An offscreen surface of pixels with a native context to draw into it. The functions are in the platform
// half.
#pragma once

#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <limits>
#include <vector>

#include "Component/Portable/Base/Scopes.h"
#include "Component/Portable/Surfaces/Region.h"
#include "Interface/MorvaneDrawing.h"
#include "Interface/MorvaneTypes.h"

struct HBITMAP__;

namespace NSMorvane {

class CStateRestorer;

struct TBufferBitmapInfo {
  std::int32_t fWidth;
  std::int32_t fHeight;
  std::int32_t fRowBytes;  // a multiple of 4
  std::int32_t fBitDepth;  // 16, with 5 bits for each of red, green and blue, or 32
  bool fTopDown;           // always false, though rows are top-down
};

// The platform counts the bytes of a bitmap in 32 bits; nothing that overflows them may reach it.
inline bool IsPossibleBitmapSize(const TSize& size, std::int32_t depth) {
  if (size.fWidth <= 0 || size.fHeight <= 0) return false;
  const std::int64_t rowBytes = (static_cast<std::int64_t>(size.fWidth) * depth + 31) / 32 * 4;
  return rowBytes <= std::numeric_limits<std::int32_t>::max() / size.fHeight;
}

// Coordinates given to the context are logical: the origin is the logical coordinate of the first pixel.
// Failing platform calls throw.
class CBufferBitmap : CNotCopied {
 public:
  // `depth` is 16 or 32. The content is black. Throws std::bad_alloc if a bitmap of that size cannot be made.
  CBufferBitmap(TSize size, std::int32_t depth);
  ~CBufferBitmap();

  TNativePort GetNativePort() const { return {fHDC}; }
  const TBufferBitmapInfo& GetInfo() const { return fInfo; }

  // The first pixel of the topmost row. The pixels contain all that was drawn before.
  void* OpenPixels();
  void ClosePixels(void* pixelPtr);

  // Save and restore origin and clip, while tools draw into the bitmap. They can be saved only once at a
  // time.
  void SaveState();
  void RestoreState();
  bool IsBeingDrawnInto() const { return fSaveStateCount > 0; }

  // Returns the old origin. The clip keeps its logical coordinates.
  TPoint SetOrigin(TPoint newOrigin);
  TPoint GetOrigin() const { return fCurrentOrigin; }
  // Replaces the clip by a region in logical coordinates. The caller keeps the ownership of the region, which
  // is needed only during the call.
  void ClipToRegion(TNativeRegion nativeRegion);

  // `sourceRect` is in logical coordinates of this bitmap, `destPoint` in those of the port. The port may be
  // this bitmap's own. A copy that fails is only reported.
  void CopyToPort(const TNativePort& port, TPoint destPoint, const TRect& sourceRect);

 private:
  TPoint fCurrentOrigin;
  HDC__* fHDC;
  [[maybe_unused]] HBITMAP__* fHBitmap;
  [[maybe_unused]] HBITMAP__* fOldBitmap;  // what the context held before
  void* fPixelPtr;
  std::vector<boost::shared_ptr<CStateRestorer>> fSavedStateStack;
  std::int32_t fSaveStateCount;
  TBufferBitmapInfo fInfo;
};

}  // namespace NSMorvane
