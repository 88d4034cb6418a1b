// Owners of the platform's drawing objects: null owns nothing, get() is the handle.
#pragma once

#include <windows.h>

#include <memory>

namespace NSMorvane {

struct TNativeObjectDeleter {
  void operator()(void* object) const { DeleteObject(object); }
};
struct TNativeContextDeleter {
  void operator()(HDC context) const { DeleteDC(context); }
};

using TRegionOwner = std::unique_ptr<HRGN__, TNativeObjectDeleter>;
using TBitmapOwner = std::unique_ptr<HBITMAP__, TNativeObjectDeleter>;
// For contexts of CreateCompatibleDC.
using TContextOwner = std::unique_ptr<HDC__, TNativeContextDeleter>;

}  // namespace NSMorvane
