// What both sides draw: cells of 20 by 24 pixels with a fill and a frame, which cover a client area of 800 by
// 600 when there are a thousand of them.
#pragma once

#include <windows.h>

#include <cstdint>

namespace NSBench {

enum : int {
  kClientWidth = 800,
  kClientHeight = 600,
  kCellWidth = 20,
  kCellHeight = 24,
  kCellColumns = kClientWidth / kCellWidth,
  kCellsInClient = kCellColumns * (kClientHeight / kCellHeight),
  kDirtyCell = 20  // the one that is drawn again where it is one
};

// Cells beyond the first thousand lie on top of those, but none lies on the dirty one.
RECT CellRect(int index);

// Draws cells, and counts them.
class CCellPainter {
 public:
  explicit CCellPainter(bool withText);
  ~CCellPainter();
  CCellPainter(const CCellPainter&) = delete;
  CCellPainter& operator=(const CCellPainter&) = delete;

  void Draw(HDC hdc, const RECT& rect, int index);
  // The number drawn since the call before.
  std::uint64_t TakeCount();

 private:
  enum { kFillCount = 8 };

  bool fWithText;
  HBRUSH fFills[kFillCount];
  HBRUSH fFrame;
  std::uint64_t fCount = 0;
};

}  // namespace NSBench
