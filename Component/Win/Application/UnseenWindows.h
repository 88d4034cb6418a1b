// The two windows that nobody sees: message-only windows, which no list of top-level windows knows.
#pragma once

#include <windows.h>

#include <atomic>
#include <memory>

#include "Component/Win/Platform/UtilsWinHandles.h"

namespace NSMorvane {

class CUnseenWindow : CNotCopied {
 public:
  // Throws std::exception on failure. The icon may be null.
  CUnseenWindow(const wchar_t* className, WNDPROC procedure, HICON icon);
  ~CUnseenWindow();

  HWND GetHwnd() const { return fHwnd; }

 private:
  void Unregister();

  ATOM fClass;
  HWND fHwnd;
};

// The owner of windows that have no other, and of what needs any window of the application.
class CHiderWindow : public CUnseenWindow {
 public:
  explicit CHiderWindow(HICON icon);
  // Dialogs that are still open stay.
  ~CHiderWindow();
};

// The window that private messages go to, while there is one.
class CMessageTarget : CNotCopied {
 public:
  void Make(WNDPROC procedure);
  void End();
  // Null while there is none. Any thread may ask: it may post messages at any time.
  HWND GetHwnd() const { return fHwnd; }

 private:
  std::unique_ptr<CUnseenWindow> fWindow;
  std::atomic<HWND> fHwnd = nullptr;
};

}  // namespace NSMorvane
