// What both sides draw: cells of 20 by 24 pixels with a fill and a frame, which cover a client area of 800 by
// 600 when there are a thousand of them.
#pragma once

#include <windows.h>

#include <cstdint>
#include <vector>

namespace NSBench {

enum : int {
  kClientWidth = 800,
  kClientHeight = 600,
  kCellWidth = 20,
  kCellHeight = 24,
  kCellColumns = kClientWidth / kCellWidth,
  kCellsInClient = kCellColumns * (kClientHeight / kCellHeight),
  kDirtyCell = 20,       // the one that is drawn again where it is one
  kLargestWidth = 1000,  // of a client area that grows
  kLargestHeight = 800
};

// Cells beyond the first thousand lie on top of those, but none lies on the dirty one.
RECT CellRect(int index);
using TCells = std::vector<RECT>;
TCells Cells(int count);
// A thousand cells that fill an area of this size.
TCells CellsFor(int width, int height);
// A thousand in a hundred stacks of ten, each cell inside the one before it.
constexpr int kStackHeight = 10;
TCells StackedCells();

enum class TCellText {
  kNone,
  kPortsFont,  // in the font that is selected
  kOwnFont,    // in GetFont(), selected and put back for each cell
  kOpenedFont  // in GetFont(), with which a view of the library opens its port
};

// Draws cells, and counts them.
class CCellPainter {
 public:
  explicit CCellPainter(TCellText text);
  ~CCellPainter();
  CCellPainter(const CCellPainter&) = delete;
  CCellPainter& operator=(const CCellPainter&) = delete;

  void Draw(HDC hdc, const RECT& rect, int index);
  // The number drawn since the call before.
  std::uint64_t TakeCount();
  HFONT GetFont() const { return fFont; }
  // The font to open the port with, or null.
  HFONT GetPortFont() const { return fText == TCellText::kOpenedFont ? fFont : nullptr; }

 private:
  enum { kFillCount = 8 };

  void DrawLetters(HDC hdc, const RECT& rect, int index);

  TCellText fText;
  HFONT fFont;
  HBRUSH fFills[kFillCount];
  HBRUSH fFrame;
  std::uint64_t fCount = 0;
};

}  // namespace NSBench
