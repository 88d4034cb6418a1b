// A plain window in front of everything, whose procedure does what it is given and nothing else.
#pragma once

#include <windows.h>

#include <functional>

namespace NSBench {

class CPlainEventWindow {
 public:
  // What is done with messages of the kinds that are measured; the others go to the system.
  using THandler = std::function<void(HWND hwnd, UINT message, LPARAM lParam)>;

  // Opened as an application opens a window, so that it becomes active, or hidden.
  explicit CPlainEventWindow(THandler handler = {}, bool isOpened = true);
  ~CPlainEventWindow();
  CPlainEventWindow(const CPlainEventWindow&) = delete;
  CPlainEventWindow& operator=(const CPlainEventWindow&) = delete;

  HWND Hwnd() const { return fHwnd; }
  // Above all others, without becoming active, or hidden.
  void Show(bool shown);

 private:
  static LRESULT CALLBACK WindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

  THandler fHandler;
  HWND fHwnd = nullptr;
};

// Shows, activates and paints it.
void OpenPlainWindow(HWND hwnd);

}  // namespace NSBench
