// The floor of the row `start`: a program without the library that shows a plain window, signals the event
// that "/signal:" names once it has been painted, and ends.
#include <windows.h>

#include "Measure.h"
#include "PlainWindow.h"

using namespace NSBench;

int main(int argumentCount, char** arguments) {
  const HANDLE event = OpenSignal(argumentCount, arguments);
  CCellPainter painter(TCellText::kNone);
  CPlainWindow window(painter, Cells(kCellsInClient));
  ShowWindow(window.Hwnd(), SW_SHOWNORMAL);
  MSG message;
  while (window.PaintCount() == 0 && GetMessageW(&message, nullptr, 0, 0) > 0) DispatchMessageW(&message);
  Require(painter.TakeCount() >= kCellsInClient, "a first paint of all cells");
  SetEvent(event);
  return 0;
}
