// Small helpers around GDI: owners, conversions, and a shape or two that every view draws.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <Morvane.h>

#include "SketchDocument.h"

namespace NSSketch {

// --- Owners

// Owns a pen, brush, font, bitmap or region.
template <class THandle>
class CGdiObject {
 public:
  explicit CGdiObject(THandle handle = nullptr) : fHandle(handle) {}
  ~CGdiObject() {
    if (fHandle) ::DeleteObject(fHandle);
  }
  CGdiObject(CGdiObject&& other) noexcept : fHandle(std::exchange(other.fHandle, nullptr)) {}
  CGdiObject& operator=(CGdiObject&& other) noexcept {
    std::swap(fHandle, other.fHandle);
    return *this;
  }
  THandle Get() const { return fHandle; }

 private:
  THandle fHandle;
};

// Has an object selected for the length of a block.
class CSelected {
 public:
  CSelected(HDC hdc, HGDIOBJ object) : fHDC(hdc), fOld(::SelectObject(hdc, object)) {}
  ~CSelected() { ::SelectObject(fHDC, fOld); }
  CSelected(const CSelected&) = delete;
  CSelected& operator=(const CSelected&) = delete;

 private:
  HDC fHDC;
  HGDIOBJ fOld;
};

// Has a context's colours, modes, objects and clip back as they were at the end of a block.
class CSavedContext {
 public:
  explicit CSavedContext(HDC hdc) : fHDC(hdc), fState(::SaveDC(hdc)) {}
  ~CSavedContext() { ::RestoreDC(fHDC, fState); }
  CSavedContext(const CSavedContext&) = delete;
  CSavedContext& operator=(const CSavedContext&) = delete;

 private:
  HDC fHDC;
  int fState;
};

// --- Conversions

inline COLORREF NativeColor(TSketchColor color) {
  return RGB((color >> 16) & 0xFF, (color >> 8) & 0xFF, color & 0xFF);
}

inline RECT NativeRect(const NSMorvane::TRect& rect) {
  return {rect.fLeft, rect.fTop, rect.fRight, rect.fBottom};
}

inline const wchar_t* WideText(const std::u16string& text) {
  return reinterpret_cast<const wchar_t*>(text.c_str());
}

std::u16string TextFromUTF8(std::string_view utf8);
std::string UTF8FromText(std::u16string_view text);

// What stands between the line feeds; one line at least.
std::vector<std::u16string> LinesOf(const std::u16string& text);

// `share` of 256 parts of `b`, the rest of `a`.
TSketchColor MixColors(TSketchColor a, TSketchColor b, std::uint32_t share);

// --- Drawing

void FillArea(HDC hdc, const RECT& area, TSketchColor color);

// The frame lies inside the area and is one pixel wide.
void FrameArea(HDC hdc, const RECT& area, TSketchColor color);

// One line of text. `format` as DrawTextW has it: DT_LEFT, DT_CENTER, DT_END_ELLIPSIS and so on.
void DrawTextLine(HDC hdc, const std::u16string& text, const RECT& box, HFONT font, TSketchColor color,
                  UINT format);
int WidthOfText(HDC hdc, const std::u16string& text, HFONT font);

// A 32-bit bitmap whose pixels the program can get at, in a context of its own. It only ever grows.
class CPixelBitmap {
 public:
  CPixelBitmap() = default;
  ~CPixelBitmap();
  CPixelBitmap(const CPixelBitmap&) = delete;
  CPixelBitmap& operator=(const CPixelBitmap&) = delete;

  // Makes room for so many pixels. What was in it is lost.
  bool Reserve(int width, int height);
  HDC Context() const { return fHDC; }
  // Rows are top-down. Flush GDI before reading or writing.
  std::uint32_t* Row(int y) const { return fPixels + static_cast<std::size_t>(y) * fWidth; }

 private:
  HDC fHDC = nullptr;
  HGDIOBJ fOldBitmap = nullptr;
  std::uint32_t* fPixels = nullptr;
  std::size_t fWidth = 0;
  std::size_t fHeight = 0;
};

}  // namespace NSSketch
