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

TCells Cells(int count) {
  TCells cells;
  for (int i = 0; i < count; ++i) cells.push_back(CellRect(i));
  return cells;
}

TCells CellsFor(int width, int height) {
  constexpr int kRows = kClientHeight / kCellHeight;
  TCells cells;
  for (int row = 0; row < kRows; ++row)
    for (int column = 0; column < kCellColumns; ++column)
      cells.push_back({width * column / kCellColumns, height * row / kRows,
                       width * (column + 1) / kCellColumns, height * (row + 1) / kRows});
  return cells;
}

TCells StackedCells() {
  constexpr int kStacksInRow = kCellsInClient / kStackHeight / 10;
  constexpr int kWidth = kClientWidth / kStacksInRow;
  constexpr int kHeight = kClientHeight / 10;
  TCells cells;
  for (int i = 0; i < kCellsInClient; ++i) {
    const int stack = i / kStackHeight;
    RECT cell = {0, 0, kWidth, kHeight};
    InflateRect(&cell, -2 * (i % kStackHeight), -2 * (i % kStackHeight));
    OffsetRect(&cell, stack % kStacksInRow * kWidth, stack / kStacksInRow * kHeight);
    cells.push_back(cell);
  }
  return cells;
}

CCellPainter::CCellPainter(TCellText text)
    : fText(text),
      fFont(CreateFontW(-11, 0, 0, 0, FW_BOLD, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                        CLIP_DEFAULT_PRECIS, NONANTIALIASED_QUALITY, VARIABLE_PITCH | FF_SWISS, L"Arial")),
      fFrame(CreateSolidBrush(RGB(40, 40, 40))) {
  for (int i = 0; i < kFillCount; ++i)
    fFills[i] = CreateSolidBrush(RGB(255 - 20 * i, 128 + 15 * i, 90 + 11 * i));
}

CCellPainter::~CCellPainter() {
  for (const HBRUSH fill : fFills) DeleteObject(fill);
  DeleteObject(fFrame);
  DeleteObject(fFont);
}

void CCellPainter::Draw(HDC hdc, const RECT& rect, int index) {
  ++fCount;
  FillRect(hdc, &rect, fFills[index % kFillCount]);
  FrameRect(hdc, &rect, fFrame);
  if (fText == TCellText::kNone) return;
  const HGDIOBJ font = fText == TCellText::kOwnFont ? SelectObject(hdc, fFont) : nullptr;
  DrawLetters(hdc, rect, index);
  if (font != nullptr) SelectObject(hdc, font);
}

void CCellPainter::DrawLetters(HDC hdc, const RECT& rect, int index) {
  // Narrow letters: the text stays within its cell, whatever clips it.
  static constexpr wchar_t kLetters[] = {L'i', L'l', L'j', L'!'};
  wchar_t text[4];
  for (std::size_t i = 0; i < std::size(text); ++i) text[i] = kLetters[index >> (2 * i) & 3];
  SetBkMode(hdc, TRANSPARENT);
  TextOutW(hdc, rect.left + 2, rect.top + 3, text, static_cast<int>(std::size(text)));
}

std::uint64_t CCellPainter::TakeCount() { return std::exchange(fCount, 0); }

}  // namespace NSBench
