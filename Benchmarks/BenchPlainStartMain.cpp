// The floor of the row `start`: a program without the library that shows a plain window, signals the event
// that "/signal:" names once it has been painted, and ends.
#include <windows.h>

#include <cstring>

#include "Measure.h"
#include "PlainWindow.h"

using namespace NSBench;

int main(int argumentCount, char** arguments) {
  static constexpr char kOption[] = "/signal:";
  const std::size_t length = std::strlen(kOption);
  Require(argumentCount == 2 && std::strncmp(arguments[1], kOption, length) == 0, "no event is named");
  const HANDLE event = OpenEventA(EVENT_MODIFY_STATE, FALSE, arguments[1] + length);
  Require(event != nullptr, "the event has gone");
  CCellPainter painter(TCellText::kNone);
  CPlainWindow window(painter, Cells(kCellsInClient));
  ShowWindow(window.Hwnd(), SW_SHOWNORMAL);
  MSG message;
  while (window.PaintCount() == 0 && GetMessageW(&message, nullptr, 0, 0) > 0) DispatchMessageW(&message);
  Require(painter.TakeCount() >= kCellsInClient, "a first paint of all cells");
  SetEvent(event);
  return 0;
}
