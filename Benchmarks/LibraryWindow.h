// A document window of the library that shows cells as views, in one of several arrangements.
#pragma once

#include <windows.h>

#include <Morvane.h>
#include <MorvaneDefaults.h>

#include <memory>
#include <vector>

#include "Cells.h"

namespace NSBench {

using namespace NSMorvane;

enum class TArrangement {
  kDirect,    // all cells under the root view, each drawn directly
  kDragged,   // the same, and the last one invalidates what it leaves and where it comes
  kBuffered,  // under one view that keeps a bitmap
  kScrolled,  // under the only subview of one that keeps a bitmap, somewhat lower than the client area
  kStacked    // each under the one before, in stacks of kStackHeight
};

enum : int { kScrolledHeight = kClientHeight - 8 };

// Draws nothing itself.
class CEmptyView : public CDefaultViewBehavior {
 public:
  explicit CEmptyView(IView&) {}
};

class CCellView : public CDefaultViewBehavior {
 public:
  CCellView(IView&, CCellPainter& painter, const RECT& rect, int index)
      : fPainter(painter), fRect(rect), fIndex(index) {}
  void SetRect(const RECT& rect) { fRect = rect; }
  TError IViewBehavior_Draw(IDrawTools& tools) override {
    if (HFONT const font = fPainter.GetPortFont()) {
      const COpenPort port(tools, font);
      fPainter.Draw(port, fRect, fIndex);
    } else {
      const COpenPort port(tools);
      fPainter.Draw(port, fRect, fIndex);
    }
    return kOK;
  }
  TError IViewBehavior_OnOffset(std::int32_t dx, std::int32_t dy) override {
    OffsetRect(&fRect, dx, dy);
    return kOK;
  }

 private:
  CCellPainter& fPainter;
  RECT fRect;
  int fIndex;
};

// Views of cells in a window, which end with this object.
class CCellScene {
 public:
  CCellScene(IMorvane& morvane, IDocumentWindow& window, TArrangement arrangement, CCellPainter& painter,
             const TCells& cells);

  HWND Hwnd() const { return fHwnd; }
  // Invalidates and paints at once: everything, the dirty cell, or the first and the last cell.
  void PaintAll();
  void PaintOne();
  void PaintFirstAndLast();
  // Moves the last cell, and paints.
  void MoveLastCell(int dx, int dy);
  // Gives the client area this size, lays the cells out for it, and paints.
  void Resize(int width, int height);
  // Moves the cells up or down, and paints.
  void Scroll(int dy);

 private:
  void Invalidate(std::size_t cell);

  IMorvane& fMorvane;
  HWND fHwnd;
  IView& fRoot;
  CViewOf<CEmptyView> fBuffer;
  CViewOf<CEmptyView> fContent;
  std::vector<CViewOf<CCellView>> fCells;
};

// A document window whose client area is as large as the cells need it. It is shown.
IDocumentWindow& CreateLibraryWindow(IMorvane& morvane);
// As the user does it.
void ResizeClient(HWND hwnd, int width, int height);
HWND HwndOf(IDocumentWindow& window);

}  // namespace NSBench
