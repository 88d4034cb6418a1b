// The subclass of one native window: its procedure is replaced by WindowProcCallback, and each of its
// messages runs down a chain of listeners, newest first, until one of them does not pass it on. Behind the
// last listener stands the procedure that the window had before.
#pragma once

#include <windows.h>

#include <boost/shared_ptr.hpp>
#include <vector>

#include "Component/Portable/Base/Scopes.h"

namespace NSMorvane {

class CNativeWindowWrapper;

class INativeWindowWrapper_ProcListener {
 public:
  // Returns the result of the message. A listener may pass the message on by CallNextProc of the wrapper. The
  // wrapper may be gone when CallNextProc returns, if the message ended the window.
  virtual LRESULT WindowProc(CNativeWindowWrapper& wrapper, HWND hwnd, UINT message, WPARAM wParam,
                             LPARAM lParam) = 0;
  virtual ~INativeWindowWrapper_ProcListener() = default;
};

// Made, used and destroyed on the thread of its window, by the end of WM_NCDESTROY at the latest. There is at
// most one for each window. Held by shared pointers.
class CNativeWindowWrapper : CNotCopied {
 public:
  // Throws std::bad_alloc if the window cannot be subclassed.
  explicit CNativeWindowWrapper(HWND nativeWindow);
  // Puts the previous procedure back. All listeners must have left.
  ~CNativeWindowWrapper();

  // Adds a listener, which is not owned, at the front of the chain. It must not be in the chain already.
  void AddProcListener(INativeWindowWrapper_ProcListener* listener);
  // A listener that is not in the chain is ignored.
  void RemoveProcListener(INativeWindowWrapper_ProcListener* listener);

  // Passes a message on to the next listener or, after the last one, to the previous procedure. The position
  // is looked up in each call, so listeners may come and go and messages may nest.
  LRESULT CallNextProc(INativeWindowWrapper_ProcListener* listener, HWND hwnd, UINT message, WPARAM wParam,
                       LPARAM lParam);
  // Starts a message at the front of the chain.
  LRESULT Dispatch(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

  bool CheckInvariant() const { return IsSound(this, fNativeWindow); }
  // The same, for a caller who has just seen that this window exists: the system is not asked twice.
  bool CheckInvariantWith(HWND existing) const { return IsSound(this, fNativeWindow, existing); }

 private:
  friend LRESULT CALLBACK WindowProcCallback(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
  // The invariant of an object that may be gone: it is read only if the map still has it for this window.
  static bool IsSound(const CNativeWindowWrapper* wrapper, HWND nativeWindow, HWND existing = nullptr);

  std::vector<INativeWindowWrapper_ProcListener*> fProcListeners;  // in the order in which they are called
  HWND fNativeWindow;
  LONG_PTR fOldProc;  // never 0 while the object lives
};

// A listener for a window that the library did not make. It owns its wrapper and deletes itself when the
// window ends. It must be made with new, and nobody else may delete it.
class CWindowProcOverrider : public INativeWindowWrapper_ProcListener, CNotCopied {
 public:
  explicit CWindowProcOverrider(HWND hwnd);

  // Passes the message on. A derived class calls this for every message that it does not keep; after
  // WM_NCDESTROY the object is deleted.
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
