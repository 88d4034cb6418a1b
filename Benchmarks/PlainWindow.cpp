#include "PlainWindow.h"

#include <utility>

#include "Measure.h"

namespace NSBench {

namespace {

constexpr wchar_t kClassName[] = L"BenchPlainWindow";
constexpr DWORD kStyle = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU;

SIZE FrameSize(int width, int height) {
  RECT frame = {0, 0, width, height};
  AdjustWindowRectEx(&frame, kStyle, FALSE, 0);
  return {frame.right - frame.left, frame.bottom - frame.top};
}

}  // namespace

CPlainWindow::CPlainWindow(CCellPainter& painter, TCells cells, int scrollHeight)
    : fPainter(painter), fCells(std::move(cells)), fScrollHeight(scrollHeight) {
  WNDCLASSEXW windowClass = {};
  windowClass.cbSize = sizeof(windowClass);
  windowClass.lpfnWndProc = WindowProc;
  windowClass.hInstance = GetModuleHandleW(nullptr);
  windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  windowClass.lpszClassName = kClassName;
  RegisterClassExW(&windowClass);  // fails but for the first window, which does no harm
  const SIZE size = FrameSize(kClientWidth, kClientHeight);
  fHwnd = CreateWindowExW(0, kClassName, L"Plain", kStyle, 30, 30, size.cx, size.cy, nullptr, nullptr,
                          windowClass.hInstance, this);
  Require(fHwnd != nullptr, "no plain window");

  const HDC screen = GetDC(nullptr);
  fMemory = CreateCompatibleDC(screen);
  BITMAPINFO info = {};
  info.bmiHeader.biSize = sizeof(info.bmiHeader);
  info.bmiHeader.biWidth = kLargestWidth;
  info.bmiHeader.biHeight = -kLargestHeight;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  info.bmiHeader.biCompression = BI_RGB;
  void* pixels = nullptr;
  fBitmap = CreateDIBSection(screen, &info, DIB_RGB_COLORS, &pixels, nullptr, 0);
  ReleaseDC(nullptr, screen);
  Require(fMemory != nullptr && fBitmap != nullptr, "no bitmap");
  fOldBitmap = SelectObject(fMemory, fBitmap);
}

CPlainWindow::~CPlainWindow() {
  DestroyWindow(fHwnd);
  SelectObject(fMemory, fOldBitmap);
  DeleteObject(fBitmap);
  DeleteDC(fMemory);
}

void CPlainWindow::Show(bool shown) {
  SetWindowPos(fHwnd, shown ? HWND_TOPMOST : HWND_NOTOPMOST, 0, 0, 0, 0,
               SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | (shown ? SWP_SHOWWINDOW : SWP_HIDEWINDOW));
  if (shown) Paint({0, 0, kClientWidth, kClientHeight});
}

void CPlainWindow::Paint(const RECT& dirty) {
  InvalidateRect(fHwnd, &dirty, FALSE);
  UpdateWindow(fHwnd);
}

void CPlainWindow::Scroll(int dy) {
  const int height = fScrollHeight - (dy < 0 ? -dy : dy);
  const int to = dy < 0 ? 0 : dy;
  const int from = dy < 0 ? -dy : 0;
  BitBlt(fMemory, 0, to, kClientWidth, height, fMemory, 0, from, SRCCOPY);
  for (RECT& cell : fCells) OffsetRect(&cell, 0, dy);
  const RECT strip = {0, dy < 0 ? height : 0, kClientWidth, dy < 0 ? fScrollHeight : dy};
  IntersectClipRect(fMemory, strip.left, strip.top, strip.right, strip.bottom);
  DrawCells(strip);
  SelectClipRgn(fMemory, nullptr);
  fBitmapIsFresh = true;
  Paint({0, 0, kClientWidth, fScrollHeight});
  fBitmapIsFresh = false;
}

void CPlainWindow::MoveLastCell(int dx, int dy) {
  RECT dirty = fCells.back();
  OffsetRect(&fCells.back(), dx, dy);
  UnionRect(&dirty, &dirty, &fCells.back());
  Paint(dirty);
}

void CPlainWindow::Resize(int width, int height) {
  fCells = CellsFor(width, height);
  const SIZE size = FrameSize(width, height);
  SetWindowPos(fHwnd, nullptr, 0, 0, size.cx, size.cy, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  Paint({0, 0, width, height});
}

LRESULT CALLBACK CPlainWindow::WindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_NCCREATE) {
    const CREATESTRUCTW* const creation = reinterpret_cast<const CREATESTRUCTW*>(lParam);
    SetWindowLongPtrW(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(creation->lpCreateParams));
  } else if (message == WM_PAINT) {
    reinterpret_cast<CPlainWindow*>(GetWindowLongPtrW(hwnd, GWLP_USERDATA))->OnPaint();
    return 0;
  }
  return DefWindowProcW(hwnd, message, wParam, lParam);
}

void CPlainWindow::OnPaint() {
  PAINTSTRUCT paint;
  const HDC hdc = BeginPaint(fHwnd, &paint);
  const RECT& box = paint.rcPaint;
  if (!fBitmapIsFresh) {
    FillRect(fMemory, &box, GetSysColorBrush(COLOR_WINDOW));
    DrawCells(box);
  }
  BitBlt(hdc, box.left, box.top, box.right - box.left, box.bottom - box.top, fMemory, box.left, box.top,
         SRCCOPY);
  EndPaint(fHwnd, &paint);
  ++fPaintCount;
}

void CPlainWindow::DrawCells(const RECT& box) {
  int index = 0;
  for (const RECT& cell : fCells) {
    if (cell.left < box.right && box.left < cell.right && cell.top < box.bottom && box.top < cell.bottom)
      fPainter.Draw(fMemory, cell, index);
    ++index;
  }
}

}  // namespace NSBench
