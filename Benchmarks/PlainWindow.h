// The floor: a plain window that draws the same cells with the platform alone. It keeps one bitmap warm,
// draws into it every cell that meets the dirty box, and copies the dirty box to the screen.
#pragma once

#include <windows.h>

#include "Cells.h"

namespace NSBench {

class CPlainWindow {
 public:
  // Hidden. `scrollHeight` is what Scroll moves, counted from the top.
  CPlainWindow(CCellPainter& painter, TCells cells, int scrollHeight = kClientHeight);
  ~CPlainWindow();
  CPlainWindow(const CPlainWindow&) = delete;
  CPlainWindow& operator=(const CPlainWindow&) = delete;

  HWND Hwnd() const { return fHwnd; }
  // In front of everything, with its content painted, or gone. It never becomes active.
  void Show(bool shown);
  // Invalidates and paints at once.
  void Paint(const RECT& dirty);
  // Moves the cells up or down inside the bitmap, draws what comes into sight, and paints.
  void Scroll(int dy);
  // Moves the last cell, and paints where it was and where it is.
  void MoveLastCell(int dx, int dy);
  // Gives the client area this size, lays the cells out for it, and paints.
  void Resize(int width, int height);
  // The font in which cells are drawn that do not select their own.
  void SelectFont(HFONT font) { SelectObject(fMemory, font); }
  int PaintCount() const { return fPaintCount; }

 private:
  static LRESULT CALLBACK WindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
  void OnPaint();
  void DrawCells(const RECT& box);

  CCellPainter& fPainter;
  TCells fCells;
  int fScrollHeight;
  bool fBitmapIsFresh = false;  // nothing is to be drawn, only copied
  int fPaintCount = 0;
  HWND fHwnd = nullptr;
  HDC fMemory = nullptr;
  HBITMAP fBitmap = nullptr;
  HGDIOBJ fOldBitmap = nullptr;
};

}  // namespace NSBench
