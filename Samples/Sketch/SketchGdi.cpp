#include "SketchGdi.h"

#include <algorithm>

namespace NSSketch {

std::u16string TextFromUTF8(std::string_view utf8) {
  if (utf8.empty()) return {};
  const int bytes = static_cast<int>(utf8.size());
  const int length = ::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), bytes, nullptr, 0);
  std::u16string text(static_cast<std::size_t>(length), u' ');
  ::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), bytes, reinterpret_cast<wchar_t*>(text.data()), length);
  return text;
}

std::string UTF8FromText(std::u16string_view text) {
  if (text.empty()) return {};
  const auto* const wide = reinterpret_cast<const wchar_t*>(text.data());
  const int units = static_cast<int>(text.size());
  const int bytes = ::WideCharToMultiByte(CP_UTF8, 0, wide, units, nullptr, 0, nullptr, nullptr);
  std::string utf8(static_cast<std::size_t>(bytes), ' ');
  ::WideCharToMultiByte(CP_UTF8, 0, wide, units, utf8.data(), bytes, nullptr, nullptr);
  return utf8;
}

std::vector<std::u16string> LinesOf(const std::u16string& text) {
  std::vector<std::u16string> lines(1);
  for (const char16_t c : text) {
    if (c == u'\n')
      lines.emplace_back();
    else
      lines.back() += c;
  }
  return lines;
}

TSketchColor MixColors(TSketchColor a, TSketchColor b, std::uint32_t share) {
  const std::uint32_t redBlue = (a & 0xFF00FF) * (256 - share) + (b & 0xFF00FF) * share;
  const std::uint32_t green = (a & 0x00FF00) * (256 - share) + (b & 0x00FF00) * share;
  return ((redBlue >> 8) & 0xFF00FF) | ((green >> 8) & 0x00FF00);
}

void FillArea(HDC hdc, const RECT& area, TSketchColor color) {
  ::SetDCBrushColor(hdc, NativeColor(color));
  ::FillRect(hdc, &area, static_cast<HBRUSH>(::GetStockObject(DC_BRUSH)));
}

void FrameArea(HDC hdc, const RECT& area, TSketchColor color) {
  ::SetDCBrushColor(hdc, NativeColor(color));
  ::FrameRect(hdc, &area, static_cast<HBRUSH>(::GetStockObject(DC_BRUSH)));
}

void DrawTextLine(HDC hdc, const std::u16string& text, const RECT& box, HFONT font, TSketchColor color,
                  UINT format) {
  const CSelected selected(hdc, font);
  const COLORREF oldColor = ::SetTextColor(hdc, NativeColor(color));
  const int oldMode = ::SetBkMode(hdc, TRANSPARENT);
  RECT area = box;
  ::DrawTextW(hdc, WideText(text), static_cast<int>(text.size()), &area,
              format | DT_SINGLELINE | DT_NOPREFIX);
  ::SetBkMode(hdc, oldMode);
  ::SetTextColor(hdc, oldColor);
}

int WidthOfText(HDC hdc, const std::u16string& text, HFONT font) {
  const CSelected selected(hdc, font);
  SIZE size = {0, 0};
  ::GetTextExtentPoint32W(hdc, WideText(text), static_cast<int>(text.size()), &size);
  return size.cx;
}

CPixelBitmap::~CPixelBitmap() {
  if (!fHDC) return;
  if (fOldBitmap) ::DeleteObject(::SelectObject(fHDC, fOldBitmap));
  ::DeleteDC(fHDC);
}

bool CPixelBitmap::Reserve(int width, int height) {
  const auto newWidth = std::max(fWidth, static_cast<std::size_t>(std::max(width, 1)));
  const auto newHeight = std::max(fHeight, static_cast<std::size_t>(std::max(height, 1)));
  if (newWidth == fWidth && newHeight == fHeight) return true;
  if (!fHDC) fHDC = ::CreateCompatibleDC(nullptr);
  if (!fHDC) return false;

  BITMAPINFO info = {};
  info.bmiHeader.biSize = sizeof(info.bmiHeader);
  info.bmiHeader.biWidth = static_cast<LONG>(newWidth);
  info.bmiHeader.biHeight = -static_cast<LONG>(newHeight);
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  info.bmiHeader.biCompression = BI_RGB;
  void* pixels = nullptr;
  const HBITMAP bitmap = ::CreateDIBSection(fHDC, &info, DIB_RGB_COLORS, &pixels, nullptr, 0);
  if (!bitmap) return false;
  const HGDIOBJ previous = ::SelectObject(fHDC, bitmap);
  if (fOldBitmap)
    ::DeleteObject(previous);
  else
    fOldBitmap = previous;
  fPixels = static_cast<std::uint32_t*>(pixels);
  fWidth = newWidth;
  fHeight = newHeight;
  return true;
}

}  // namespace NSSketch
