#include "Cells.h"

#include <iterator>
#include <utility>

namespace NSBench {

RECT CellRect(int index) {
  int place = index % kCellsInClient;
  if (index >= kCellsInClient && place == kDirtyCell) ++place;
  const int left = place % kCellColumns * kCellWidth;
  const int top = place / kCellColumns * kCellHeight;
  return {left, top, left + kCellWidth, top + kCellHeight};
}

CCellPainter::CCellPainter(bool withText) : fWithText(withText), fFrame(CreateSolidBrush(RGB(40, 40, 40))) {
  for (int i = 0; i < kFillCount; ++i)
    fFills[i] = CreateSolidBrush(RGB(255 - 20 * i, 128 + 15 * i, 90 + 11 * i));
}

CCellPainter::~CCellPainter() {
  for (const HBRUSH fill : fFills) DeleteObject(fill);
  DeleteObject(fFrame);
}

void CCellPainter::Draw(HDC hdc, const RECT& rect, int index) {
  ++fCount;
  FillRect(hdc, &rect, fFills[index % kFillCount]);
  FrameRect(hdc, &rect, fFrame);
  if (!fWithText) return;
  // Narrow letters: the text stays within its cell, whatever clips it.
  static constexpr wchar_t kLetters[] = {L'i', L'l', L'j', L'!'};
  wchar_t text[4];
  for (std::size_t i = 0; i < std::size(text); ++i) text[i] = kLetters[index >> (2 * i) & 3];
  SetBkMode(hdc, TRANSPARENT);
  TextOutW(hdc, rect.left + 2, rect.top + 3, text, static_cast<int>(std::size(text)));
}

std::uint64_t CCellPainter::TakeCount() { return std::exchange(fCount, 0); }

}  // namespace NSBench
