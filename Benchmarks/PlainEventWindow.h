// A plain window in front of everything, whose procedure does what it is given and nothing else.
#pragma once

#include <windows.h>

#include <functional>

namespace NSBench {

class CPlainEventWindow {
 public:
  // What is done with messages of the kinds that are measured; the others go to the system.
  using THandler = std::function<void(UINT message, LPARAM lParam)>;

  explicit CPlainEventWindow(THandler handler = {}, bool isShown = true);
  ~CPlainEventWindow();
  CPlainEventWindow(const CPlainEventWindow&) = delete;
  CPlainEventWindow& operator=(const CPlainEventWindow&) = delete;

  HWND Hwnd() const { return fHwnd; }
  // Above all others, or hidden.
  void Show(bool shown);

 private:
  static LRESULT CALLBACK WindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

  THandler fHandler;
  HWND fHwnd = nullptr;
};

}  // namespace NSBench
