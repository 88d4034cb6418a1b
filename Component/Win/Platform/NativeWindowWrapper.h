// The subclass of one native window: its procedure is replaced by WindowProcCallback, and each of its
// messages runs down a chain of listeners, newest first, until one of them does not pass it on. Behind the
// last listener stands the procedure that the window had before.
#pragma once

#include <windows.h>

#include <boost/shared_ptr.hpp>
#include <vector>

namespace NSMorvane {

class CNativeWindowWrapper;

class INativeWindowWrapper_ProcListener {
 public:
  // Returns the result of the message. Passing on is CallNextProc of the wrapper, at any time or never. The
  // wrapper may be gone when CallNextProc returns, if the message ended the window.
  virtual LRESULT WindowProc(CNativeWindowWrapper& wrapper, HWND hwnd, UINT message, WPARAM wParam,
                             LPARAM lParam) = 0;
  virtual ~INativeWindowWrapper_ProcListener() = default;
};

// Made, used and ended on the thread of its window, and gone by the end of WM_NCDESTROY. At most one for each
// window. Held by shared pointers.
class CNativeWindowWrapper {
 public:
  // Throws std::bad_alloc if the window cannot be subclassed.
  explicit CNativeWindowWrapper(HWND nativeWindow);
  // Puts the previous procedure back. All listeners must have left.
  ~CNativeWindowWrapper();
  CNativeWindowWrapper(const CNativeWindowWrapper&) = delete;
  CNativeWindowWrapper& operator=(const CNativeWindowWrapper&) = delete;

  // Puts a listener in front of the chain. It stays the caller's, and must not be in the chain already.
  void AddProcListener(INativeWindowWrapper_ProcListener* listener);
  // A listener that is not in the chain is ignored.
  void RemoveProcListener(INativeWindowWrapper_ProcListener* listener);

  // Passes a message on to what stands behind the listener. The place is searched for at each call, so that
  // listeners may come and go and messages may nest.
  LRESULT CallNextProc(INativeWindowWrapper_ProcListener* listener, HWND hwnd, UINT message, WPARAM wParam,
                       LPARAM lParam);
  // Starts a message at the front of the chain.
  LRESULT Dispatch(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

  bool CheckInvariant() const { return IsSound(this, fNativeWindow); }

 private:
  friend LRESULT CALLBACK WindowProcCallback(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
  // The invariant of an object that may be gone: it is looked at only if it is still known for this window.
  static bool IsSound(const CNativeWindowWrapper* wrapper, HWND nativeWindow);

  std::vector<INativeWindowWrapper_ProcListener*> fProcListeners;  // the first runs first
  HWND fNativeWindow;
  LONG_PTR fOldProc;  // never 0 while the object lives
};

// A listener for a window that the library did not make. It owns its wrapper and deletes itself with the
// window, so it is made with new and kept by nobody; it must not end in any other way.
class CWindowProcOverrider : public INativeWindowWrapper_ProcListener {
 public:
  explicit CWindowProcOverrider(HWND hwnd);
  CWindowProcOverrider(const CWindowProcOverrider&) = delete;
  CWindowProcOverrider& operator=(const CWindowProcOverrider&) = delete;

  // Passes the message on first. A derived class does its own work and calls this for everything that it does
  // not keep; after WM_NCDESTROY the object is gone.
  LRESULT WindowProc(CNativeWindowWrapper& wrapper, HWND hwnd, UINT message, WPARAM wParam,
                     LPARAM lParam) override;

 protected:
  ~CWindowProcOverrider() override;

 private:
  boost::shared_ptr<CNativeWindowWrapper> fNativeWindowWrapper;
};

// The window procedure of every wrapped window. Nothing is thrown out of it.
LRESULT CALLBACK WindowProcCallback(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

// Called at the end of each message of a wrapped window, on the thread of that window, which for the file
// dialogs is not the main thread. Set by the root object, which flushes its menu bar requests there, and null
// only while there is no root object.
extern void (*gAfterNativeMessage)();

}  // namespace NSMorvane
