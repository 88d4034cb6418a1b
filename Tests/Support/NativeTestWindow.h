// A native window of a test's own, and pumping with a deadline.
#pragma once

#include <windows.h>

#include <functional>

namespace NSMorvaneTest {

// Handles messages of this thread until the condition holds; false when that takes longer than five seconds.
inline bool PumpUntil(const std::function<bool()>& condition) {
  const ULONGLONG deadline = GetTickCount64() + 5000;
  while (!condition()) {
    if (GetTickCount64() > deadline) return false;
    MSG message;
    if (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
      TranslateMessage(&message);
      DispatchMessageW(&message);
    } else {
      MsgWaitForMultipleObjects(0, nullptr, FALSE, 5, QS_ALLINPUT);
    }
  }
  return true;
}

// Destroyed at the end, unless something else has done so before.
class NativeTestWindow {
 public:
  explicit NativeTestWindow(DWORD style = WS_OVERLAPPEDWINDOW, HWND parent = nullptr,
                            const wchar_t* title = L"test", DWORD exStyle = 0,
                            WNDPROC procedure = DefWindowProcW) {
    static const ATOM windowClass = [] {
      WNDCLASSW description = {};
      description.lpfnWndProc = DefWindowProcW;
      description.hInstance = GetModuleHandleW(nullptr);
      description.lpszClassName = L"Native Test Window";
      return RegisterClassW(&description);
    }();
    fHwnd = CreateWindowExW(exStyle, MAKEINTATOM(windowClass), title, style, 100, 80, 300, 200, parent,
                            nullptr, GetModuleHandleW(nullptr), nullptr);
    SetWindowLongPtrW(fHwnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure));
  }
  ~NativeTestWindow() { Destroy(); }
  NativeTestWindow(const NativeTestWindow&) = delete;
  NativeTestWindow& operator=(const NativeTestWindow&) = delete;

  void Destroy() {
    if (fHwnd && IsWindow(fHwnd)) DestroyWindow(fHwnd);
    fHwnd = nullptr;
  }
  operator HWND() const { return fHwnd; }

 private:
  HWND fHwnd = nullptr;
};

}  // namespace NSMorvaneTest
