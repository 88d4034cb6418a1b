// Helpers that every platform file uses: failed system calls, text and geometry across the border to Win32.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

#include "Component/Portable/MorvaneImplUtils.h"

namespace NSMorvane {

// --- Text
// ---------------------------------------------------------------------------------------------------

// TChar and wchar_t are both UTF-16 units here; only the type system keeps them apart.
static_assert(sizeof(TChar) == sizeof(wchar_t));

inline const wchar_t* WinText(const TChar* text) { return reinterpret_cast<const wchar_t*>(text); }
inline const wchar_t* WinText(const std::u16string& text) { return WinText(text.c_str()); }
// For calls that write into a buffer.
inline wchar_t* WinBuffer(TChar* buffer) { return reinterpret_cast<wchar_t*>(buffer); }

// Null gives the empty text.
std::u16string TextFromWin(const wchar_t* text);
std::u16string TextFromWin(const wchar_t* text, std::size_t length);

// A number as decimal text.
std::string NumberText(std::int64_t number);
// A handle or an address as decimal text.
std::string HandleText(const void* handle);

// --- Geometry
// -----------------------------------------------------------------------------------------------

inline RECT ToNative(const TRect& r) { return RECT{r.fLeft, r.fTop, r.fRight, r.fBottom}; }
inline POINT ToNative(const TPoint& p) { return POINT{p.fX, p.fY}; }
inline SIZE ToNative(const TSize& s) { return SIZE{s.fWidth, s.fHeight}; }
inline TRect FromNative(const RECT& r) { return TRect{r.left, r.top, r.right, r.bottom}; }
inline TPoint FromNative(const POINT& p) { return TPoint{p.x, p.y}; }
inline TSize FromNative(const SIZE& s) { return TSize{s.cx, s.cy}; }

// --- Failed system calls
// ------------------------------------------------------------------------------------

// Turns GetLastError() into a log line with the given position and an exception: std::bad_alloc for the two
// codes of memory shortage, std::exception for all others. Returns, in silence, when the last error is 0; the
// caller then goes on as if its call had worked. Nothing may run between the failed call and this one.
void ThrowLastError(const char* file, std::int32_t line);

}  // namespace NSMorvane

#define MORVANE_THROW_LAST_ERROR() ::NSMorvane::ThrowLastError(__FILE__, __LINE__)
