// Owners of native resources: one tiny class for each way of release, and nothing else in them. Declare
// object, context and selection in that order, so that they unwind in the right one.
#pragma once

#include <windows.h>

#include <cstddef>
#include <utility>
#include <vector>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Base/Scopes.h"

namespace NSMorvane {

// --- Owners

// DeleteObject. THandle is HBITMAP, HBRUSH, HFONT, HPEN or HRGN. Null is allowed and owns nothing.
template <class THandle>
class CGdiObject : CNotCopied {
 public:
  explicit CGdiObject(THandle object = nullptr) : fObject(object) {}
  ~CGdiObject() { Reset(); }
  void Reset(THandle object = nullptr) {
    if (fObject) DeleteObject(fObject);
    fObject = object;
  }
  // The caller owns the object from here on.
  THandle Detach() { return std::exchange(fObject, nullptr); }
  THandle Get() const { return fObject; }

 private:
  THandle fObject;
};

// DeleteDC, for contexts of CreateCompatibleDC and CreateDCW. Null is allowed and owns nothing.
class CCreatedDC : CNotCopied {
 public:
  explicit CCreatedDC(HDC hdc) : fHDC(hdc) {}
  ~CCreatedDC() {
    if (fHDC) DeleteDC(fHDC);
  }
  // The caller owns the context from here on.
  HDC Detach() { return std::exchange(fHDC, nullptr); }
  HDC Get() const { return fHDC; }

 private:
  HDC fHDC;
};

// GetDC and ReleaseDC. A null window stands for the screen. Get() is null when the system refused.
class CWindowDC : CNotCopied {
 public:
  explicit CWindowDC(HWND hwnd) : fHwnd(hwnd), fHDC(GetDC(hwnd)) {}
  ~CWindowDC() {
    if (fHDC) ReleaseDC(fHwnd, fHDC);
  }
  HDC Get() const { return fHDC; }

 private:
  HWND fHwnd;
  HDC fHDC;
};

// CloseHandle, for events, threads and file mappings. Null is allowed and owns nothing.
class CKernelHandle : CNotCopied {
 public:
  explicit CKernelHandle(HANDLE handle = nullptr) : fHandle(handle) {}
  ~CKernelHandle() { Reset(); }
  void Reset(HANDLE handle = nullptr) {
    if (fHandle) CloseHandle(fHandle);
    fHandle = handle;
  }
  HANDLE Detach() { return std::exchange(fHandle, nullptr); }
  HANDLE Get() const { return fHandle; }

 private:
  HANDLE fHandle;
};

// --- Restorers

// Selects a bitmap, brush, font or pen, and puts back at the end what was selected before. If the selection
// fails, IsSelected() is false and nothing is put back.
class CObjectSelection : CNotCopied {
 public:
  CObjectSelection(HDC hdc, HGDIOBJ object) : fHDC(hdc), fPrevious(SelectObject(hdc, object)) {}
  ~CObjectSelection() {
    if (fPrevious) SelectObject(fHDC, fPrevious);
  }
  bool IsSelected() const { return fPrevious != nullptr; }

 private:
  HDC fHDC;
  HGDIOBJ fPrevious;
};

// Saves the clip region of a context and selects it again at the end; a context without a clip gets none.
// Nothing else of the context is restored, so changes of origin, font or mode made meanwhile last.
class CClipRegionSaver : CNotCopied {
 public:
  explicit CClipRegionSaver(HDC hdc) : fHDC(hdc), fRegion(CreateRectRgn(0, 0, 0, 0)) {
    const int result = GetClipRgn(fHDC, fRegion);
    if (result == 1) return;
    if (fRegion) DeleteObject(std::exchange(fRegion, nullptr));
    if (result == 0) return;
    MORVANE_ASSERT(result == -1);
    MORVANE_THROW(std::exception());
  }
  ~CClipRegionSaver() {
    SelectClipRgn(fHDC, fRegion);
    if (fRegion) DeleteObject(fRegion);
  }

 private:
  HDC fHDC;
  HRGN fRegion;  // null: there was no clip
};

// Moves several windows in one step, which the destructor carries out. A window that ends meanwhile, on
// another thread say, spoils the whole step for the system: it is begun anew without that window.
class CDeferredWindowMover : CNotCopied {
 public:
  // `count` is only a hint to the system.
  explicit CDeferredWindowMover(int count) : fHwdp(BeginDeferWindowPos(count)) {
    if (!fHwdp) MORVANE_THROW(XOutOfMemory());
  }
  // Like SetWindowPos. The test concerns the previous call: a call that fails is noticed only by the next
  // one.
  void Move(HWND hwnd, HWND insertAfter, int x, int y, int cx, int cy, UINT flags) {
    fMoves.push_back({hwnd, insertAfter, x, y, cx, cy, flags});
    const HDWP next = Add(fHwdp, fMoves.back());
    if (!fHwdp) MORVANE_THROW(XOutOfMemory());
    fHwdp = next ? next : BeginAnew();
  }
  ~CDeferredWindowMover() {
    MORVANE_ASSERT(0!=fHwdp);
    BOOL okFlag = EndDeferWindowPos(fHwdp);
    while (!okFlag && (fHwdp = BeginAnew())) okFlag = EndDeferWindowPos(fHwdp);
    MORVANE_ASSERT(FALSE!=okFlag);
  }

 private:
  static HDWP Add(HDWP hwdp, const WINDOWPOS& move) {
    return DeferWindowPos(hwdp, move.hwnd, move.hwndInsertAfter, move.x, move.y, move.cx, move.cy,
                          move.flags);
  }
  // Null if no window has ended, so that there is another reason for the failure.
  HDWP BeginAnew() {
    const auto hasEnded = [](const WINDOWPOS& move) { return !IsWindow(move.hwnd); };
    if (std::erase_if(fMoves, hasEnded) == 0) return nullptr;
    HDWP hwdp = BeginDeferWindowPos(static_cast<int>(fMoves.size()));
    for (std::size_t i = 0; hwdp && i < fMoves.size(); ++i) hwdp = Add(hwdp, fMoves[i]);
    return hwdp ? hwdp : BeginAnew();
  }

  HDWP fHwdp;
  std::vector<WINDOWPOS> fMoves;
};

// --- Locks

// For the few tables that other threads share with the main thread. Never hold a lock across an assertion, a
// message or any other call of foreign code.
class CReadLock : CNotCopied {
 public:
  explicit CReadLock(SRWLOCK& lock) : fLock(lock) { AcquireSRWLockShared(&fLock); }
  ~CReadLock() { ReleaseSRWLockShared(&fLock); }

 private:
  SRWLOCK& fLock;
};

class CWriteLock : CNotCopied {
 public:
  explicit CWriteLock(SRWLOCK& lock) : fLock(lock) { AcquireSRWLockExclusive(&fLock); }
  ~CWriteLock() { ReleaseSRWLockExclusive(&fLock); }

 private:
  SRWLOCK& fLock;
};

}  // namespace NSMorvane
