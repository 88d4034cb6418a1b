#include "Component/Win/Application/UnseenWindows.h"

#include <exception>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Win/Platform/UtilsWin.h"

namespace NSMorvane {

namespace {

// The procedure of the hider window, which only has to exist.
LRESULT CALLBACK WinHiderWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
  return ::DefWindowProcW(hwnd, message, wParam, lParam);
}

}  // namespace

CUnseenWindow::CUnseenWindow(const wchar_t* className, WNDPROC procedure, HICON icon)
    : fClass(0), fHwnd(nullptr) {
  const HINSTANCE module = ::GetModuleHandleW(nullptr);
  WNDCLASSEXW description = {};
  description.cbSize = sizeof(description);
  description.style = CS_DBLCLKS;
  description.lpfnWndProc = procedure;
  description.hInstance = module;
  description.hIcon = icon;
  description.hbrBackground = reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(COLOR_BTNFACE + 1));
  description.lpszClassName = className;
  fClass = ::RegisterClassExW(&description);
  if (fClass) {
    // Without a frame, whose size some systems work out from the monitors at great cost.
    fHwnd = ::CreateWindowExW(0, MAKEINTATOM(fClass), L"", WS_POPUP | WS_DISABLED, 0, 0, 0, 0, HWND_MESSAGE,
                              nullptr, module, nullptr);
    if (fHwnd) return;
  }
  MORVANE_UNREACHED();
  if (fClass) Unregister();
  MORVANE_THROW(std::exception());
}

CUnseenWindow::~CUnseenWindow() {
  ::DestroyWindow(fHwnd);
  Unregister();
}

void CUnseenWindow::Unregister() {
  const BOOL ucResult = ::UnregisterClassW(MAKEINTATOM(fClass), ::GetModuleHandleW(nullptr));
  MORVANE_ASSERT(ucResult);
}

// --- Hider window

CHiderWindow::CHiderWindow(HICON icon)
    : CUnseenWindow(L"Hollowbrook Hider Window", WinHiderWindowProc, icon) {}

CHiderWindow::~CHiderWindow() { DisownWindows(GetHwnd()); }

// --- Message window

void CMessageTarget::Make(WNDPROC procedure) {
  fWindow = std::make_unique<CUnseenWindow>(L"Hollowbrook Message Window", procedure, nullptr);
  fHwnd = fWindow->GetHwnd();
}

void CMessageTarget::End() {
  fHwnd = nullptr;
  fWindow.reset();
}

}  // namespace NSMorvane
