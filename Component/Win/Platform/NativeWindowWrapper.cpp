#include "Component/Win/Platform/NativeWindowWrapper.h"

#include <algorithm>
#include <map>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Win/Platform/UtilsWinHandles.h"

namespace NSMorvane {

namespace {

// Process-wide, since the system calls a window procedure with the handle alone. The windows of file dialogs
// have threads of their own, so several threads read and change the map.
SRWLOCK gNativeWindowWrapperMapLock = SRWLOCK_INIT;
std::map<HWND, CNativeWindowWrapper*> gNativeWindowWrapperMap;

CNativeWindowWrapper* FindWrapper(HWND hwnd) {
  const CReadLock lock(gNativeWindowWrapperMapLock);
  const auto it = gNativeWindowWrapperMap.find(hwnd);
  return it == gNativeWindowWrapperMap.end() ? nullptr : it->second;
}

}  // namespace

// Process-wide, since a wrapper knows of no root object.
void (*gAfterNativeMessage)() = nullptr;

// --- CNativeWindowWrapper

CNativeWindowWrapper::CNativeWindowWrapper(HWND nativeWindow) : fNativeWindow(nativeWindow), fOldProc(0) {
  MORVANE_ASSERT(0!=nativeWindow);
  LONG_PTR oldProc = 0;
  {
    // No message of the window can arrive here before the map knows it.
    const CWriteLock lock(gNativeWindowWrapperMapLock);
    std::map<HWND, CNativeWindowWrapper*> tmp(gNativeWindowWrapperMap);
    tmp.insert({nativeWindow, this});
    SetLastError(ERROR_SUCCESS);
    oldProc = SetWindowLongPtrW(nativeWindow, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(WindowProcCallback));
    if (oldProc) {
      fOldProc = oldProc;
      tmp.swap(gNativeWindowWrapperMap);
    }
  }
  if (!oldProc) MORVANE_THROW(XOutOfMemory());
  MORVANE_ASSERT(oldProc!=reinterpret_cast<LONG_PTR>(WindowProcCallback));
  MORVANE_ASSERT(CheckInvariant());
}

CNativeWindowWrapper::~CNativeWindowWrapper() {
  MORVANE_ASSERT(CheckInvariant());
  MORVANE_ASSERT_TEXT("it!=tmp.end()", FindWrapper(fNativeWindow));
  MORVANE_ASSERT(0==fProcListeners.size());
  MORVANE_ASSERT(0!=fOldProc);
  MORVANE_ASSERT(0!=fNativeWindow);
  LONG_PTR oldProc = 0;
  {
    const CWriteLock lock(gNativeWindowWrapperMapLock);
    SetLastError(ERROR_SUCCESS);
    oldProc = SetWindowLongPtrW(fNativeWindow, GWLP_WNDPROC, fOldProc);
    // Only the entry of this object is erased, not that of another wrapper. Erasing cannot fail.
    const auto it = gNativeWindowWrapperMap.find(fNativeWindow);
    if (it != gNativeWindowWrapperMap.end() && it->second == this) gNativeWindowWrapperMap.erase(it);
  }
  MORVANE_ASSERT(0!=oldProc);
  fNativeWindow = nullptr;
}

void CNativeWindowWrapper::AddProcListener(INativeWindowWrapper_ProcListener* listener) {
  MORVANE_ASSERT(CheckInvariant());
  MORVANE_ASSERT(0!=listener);
  if (!listener) return;
  MORVANE_ASSERT(fProcListeners.end()==std::find(fProcListeners.begin(),fProcListeners.end(),listener));
  fProcListeners.insert(fProcListeners.begin(), listener);
  MORVANE_ASSERT(CheckInvariant());
}

void CNativeWindowWrapper::RemoveProcListener(INativeWindowWrapper_ProcListener* listener) {
  MORVANE_ASSERT(CheckInvariant());
  MORVANE_ASSERT(0!=listener);
  const auto it = std::find(fProcListeners.begin(), fProcListeners.end(), listener);
  if (it != fProcListeners.end()) fProcListeners.erase(it);
  MORVANE_ASSERT(CheckInvariant());
}

LRESULT CNativeWindowWrapper::CallNextProc(INativeWindowWrapper_ProcListener* listener, HWND hwnd,
                                           UINT message, WPARAM wParam, LPARAM lParam) {
  MORVANE_ASSERT(CheckInvariant());
  auto it = std::find(fProcListeners.begin(), fProcListeners.end(), listener);
  MORVANE_ASSERT(it!=fProcListeners.end());
  // A listener that has left the chain counts as the last one.
  if (it != fProcListeners.end()) ++it;
  // Either call may end this object: no field is touched after it.
  if (it == fProcListeners.end())
    return CallWindowProcW(reinterpret_cast<WNDPROC>(fOldProc), hwnd, message, wParam, lParam);
  const HWND nativeWindow = fNativeWindow;
  const LRESULT result = (*it)->WindowProc(*this, hwnd, message, wParam, lParam);
  MORVANE_ASSERT_TEXT("CheckInvariant()", IsSound(this, nativeWindow));
  return result;
}

LRESULT CNativeWindowWrapper::Dispatch(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
  MORVANE_ASSERT(CheckInvariant());
  if (fProcListeners.empty())
    return CallWindowProcW(reinterpret_cast<WNDPROC>(fOldProc), hwnd, message, wParam, lParam);
  INativeWindowWrapper_ProcListener* const firstListener = fProcListeners.front();
  MORVANE_ASSERT(0!=firstListener);
  return firstListener->WindowProc(*this, hwnd, message, wParam, lParam);
}

bool CNativeWindowWrapper::IsSound(const CNativeWindowWrapper* wrapper, HWND nativeWindow, HWND existing) {
  // The object is read last, when the map has shown that it still exists.
  if (wrapper && nativeWindow && (nativeWindow == existing || IsWindow(nativeWindow)) &&
      FindWrapper(nativeWindow) == wrapper && wrapper->fOldProc != 0)
    return true;
  MORVANE_UNREACHED();
  return false;
}

// --- CWindowProcOverrider

CWindowProcOverrider::CWindowProcOverrider(HWND hwnd) : fNativeWindowWrapper(new CNativeWindowWrapper(hwnd)) {
  fNativeWindowWrapper->AddProcListener(this);
}

CWindowProcOverrider::~CWindowProcOverrider() {
  MORVANE_ASSERT(fNativeWindowWrapper.get()==0);
  // Somebody else may keep the wrapper alive, so this listener leaves its chain.
  if (fNativeWindowWrapper) fNativeWindowWrapper->RemoveProcListener(this);
}

LRESULT CWindowProcOverrider::WindowProc(CNativeWindowWrapper& wrapper, HWND hwnd, UINT message,
                                         WPARAM wParam, LPARAM lParam) {
  const LRESULT result = wrapper.CallNextProc(this, hwnd, message, wParam, lParam);
  if (message != WM_NCDESTROY) return result;
  fNativeWindowWrapper->RemoveProcListener(this);
  fNativeWindowWrapper.reset();
  delete this;
  return result;
}

// --- The procedure

LRESULT CALLBACK WindowProcCallback(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
  try {
    CNativeWindowWrapper* const wrapper = FindWrapper(hwnd);
    MORVANE_ASSERT_TEXT("it!=gNativeWindowWrapperMap.end()", wrapper != nullptr);
    MORVANE_ASSERT(0!=wrapper);
    MORVANE_ASSERT_TEXT("wrapper->CheckInvariant()", CNativeWindowWrapper::IsSound(wrapper, hwnd));
    // A foreign subclass may go on calling this procedure after the wrapper has ended. The window then gets
    // the default handling.
    const LRESULT result = wrapper ? wrapper->Dispatch(hwnd, message, wParam, lParam)
                                   : DefWindowProcW(hwnd, message, wParam, lParam);
    MORVANE_ASSERT_TEXT("NULL != CMorvaneImpl::gMorvaneImpl", gAfterNativeMessage != nullptr);
    if (gAfterNativeMessage) gAfterNativeMessage();
    return result;
  } catch (...) {
    MORVANE_UNREACHED();
    return 0;
  }
}

}  // namespace NSMorvane
