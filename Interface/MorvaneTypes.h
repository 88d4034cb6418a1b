// The plain types that every other header uses: error codes, flags, characters, geometry.
#pragma once

#include <cstddef>
#include <cstdint>

// Native handles cross the interface only where it is platform-specific, and then as these pointers.
struct HWND__;
struct HDC__;
struct HFONT__;
struct HICON__;

namespace NSTextPackage {

// One unit of UTF-16 text. Texts are zero-terminated arrays of these; a line break inside a text is U+2029.
using TChar = char16_t;

}  // namespace NSTextPackage

namespace NSMorvane {

using NSTextPackage::TChar;

// The result of every operation. kOK is success; the library's own failures lie from 12001 to 12010; every
// value of 100000 or more belongs to the application: a behaviour may return it from any callback, and it
// comes back unchanged from the call that led to the callback.
using TError = std::uint32_t;

enum : TError {
  kOK = 12000,
  kOutOfMemoryError = 12001,
  kBadInputProgrammingError = 12002,             // an argument is wrong, or the object is broken
  kIllegalCallSequenceProgrammingError = 12003,  // the object's state forbids this call now
  kProgrammingError = 12004,
  kBadFormatError = 12005,
  kUnsupportedFormatError = 12006,
  kOtherError = 12007,
  kInvariantCorruptProgrammingError = 12008,
  kUnsupported = 12009,                // this build does not have the operation
  kUnsupportedOSVersionError = 12010,  // only from Morvane_Create
  kFirstApplicationError = 100000
};

// A boolean: 0 or 1, and no other value.
using TFlag = std::uint32_t;

// A position in pixels.
struct TPoint {
  std::int32_t fX;
  std::int32_t fY;
};

// A width and a height in pixels.
struct TSize {
  std::int32_t fWidth;
  std::int32_t fHeight;
};

// A rectangle in pixels. fRight and fBottom are exclusive. It is empty unless fLeft < fRight and
// fTop < fBottom.
struct TRect {
  std::int32_t fLeft;
  std::int32_t fTop;
  std::int32_t fRight;
  std::int32_t fBottom;
};

}  // namespace NSMorvane
