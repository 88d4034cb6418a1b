// The two invisible windows of the application. They are message-only windows, which lists of top-level
// windows leave out.
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

// The owner of windows that have no other, and the window for calls of the system that need one.
class CHiderWindow : public CUnseenWindow {
 public:
  explicit CHiderWindow(HICON icon);
  // Dialogs that are still open are disowned first, so that they do not end with this window.
  ~CHiderWindow();
};

// The window that private messages go to, while there is one.
class CMessageTarget : CNotCopied {
 public:
  void Make(WNDPROC procedure);
  void End();
  // Null while there is none. Any thread may call this, since any thread may post messages.
  HWND GetHwnd() const { return fHwnd; }

 private:
  std::unique_ptr<CUnseenWindow> fWindow;
  std::atomic<HWND> fHwnd = nullptr;
};

}  // namespace NSMorvane
