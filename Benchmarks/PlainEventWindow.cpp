#include "PlainEventWindow.h"

#include "Cells.h"
#include "Measure.h"

namespace NSBench {

namespace {

constexpr wchar_t kClassName[] = L"BenchPlainEventWindow";
constexpr DWORD kStyle = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU;

}  // namespace

CPlainEventWindow::CPlainEventWindow(THandler handler, bool isOpened) : fHandler(std::move(handler)) {
  WNDCLASSEXW windowClass = {};
  windowClass.cbSize = sizeof(windowClass);
  windowClass.lpfnWndProc = WindowProc;
  windowClass.hInstance = GetModuleHandleW(nullptr);
  windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
  windowClass.lpszClassName = kClassName;
  RegisterClassExW(&windowClass);  // fails but for the first window, which does no harm
  RECT frame = {0, 0, kClientWidth, kClientHeight};
  AdjustWindowRectEx(&frame, kStyle, FALSE, 0);
  fHwnd = CreateWindowExW(0, kClassName, L"Plain", kStyle, 30, 30, frame.right - frame.left,
                          frame.bottom - frame.top, nullptr, nullptr, windowClass.hInstance, this);
  Require(fHwnd != nullptr, "no plain window");
  if (isOpened) OpenPlainWindow(fHwnd);
}

CPlainEventWindow::~CPlainEventWindow() { DestroyWindow(fHwnd); }

void CPlainEventWindow::Show(bool shown) {
  SetWindowPos(fHwnd, shown ? HWND_TOPMOST : HWND_NOTOPMOST, 0, 0, 0, 0,
               SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | (shown ? SWP_SHOWWINDOW : SWP_HIDEWINDOW));
  if (shown) UpdateWindow(fHwnd);
}

LRESULT CALLBACK CPlainEventWindow::WindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_NCCREATE) {
    const CREATESTRUCTW* const creation = reinterpret_cast<const CREATESTRUCTW*>(lParam);
    SetWindowLongPtrW(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(creation->lpCreateParams));
  } else if (message == WM_MOUSEMOVE || message == WM_LBUTTONDOWN || message == WM_LBUTTONUP ||
             message == WM_KEYDOWN || message == WM_TIMER) {
    const CPlainEventWindow& self =
        *reinterpret_cast<const CPlainEventWindow*>(GetWindowLongPtrW(hwnd, GWLP_USERDATA));
    if (self.fHandler) self.fHandler(hwnd, message, lParam);
    return 0;
  }
  return DefWindowProcW(hwnd, message, wParam, lParam);
}

void OpenPlainWindow(HWND hwnd) {
  ShowWindow(hwnd, SW_SHOWNORMAL);
  UpdateWindow(hwnd);
}

}  // namespace NSBench
