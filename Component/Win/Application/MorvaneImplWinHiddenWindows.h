// The two windows that nobody sees: message-only windows, which no list of top-level windows knows.
#pragma once

#include <windows.h>

#include "Component/Win/Platform/UtilsWinHandles.h"

namespace NSMorvane {

// The procedure of a window that only has to exist.
LRESULT CALLBACK WinHiderWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
// Hands private messages to the root object.
LRESULT CALLBACK WinMessageWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

class CHiddenWindow : CNotCopied {
 public:
  HWND GetHwnd() const { return fHwnd; }

 protected:
  // Throws std::exception on failure. The icon may be null.
  CHiddenWindow(const wchar_t* className, WNDPROC procedure, HICON icon);
  ~CHiddenWindow();

 private:
  void Unregister();

  ATOM fClass;
  HWND fHwnd;
};

// The owner of windows that have no other, and of what needs any window of the application.
class CHiderWindow : public CHiddenWindow {
 public:
  explicit CHiderWindow(HICON icon) : CHiddenWindow(L"Hollowbrook Hider Window", WinHiderWindowProc, icon) {}
  // Dialogs that are still open stay.
  ~CHiderWindow();
};

// The target of private messages.
class CMessageWindow : public CHiddenWindow {
 public:
  CMessageWindow() : CHiddenWindow(L"Hollowbrook Message Window", WinMessageWindowProc, nullptr) {}
};

}  // namespace NSMorvane
