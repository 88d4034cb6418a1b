#include "Component/Win/Window/WinWindowListWindow.h"

#include <string>
#include <utility>
#include <vector>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Base/Scopes.h"
#include "Component/Portable/Windows/PaintSamples.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Platform/UtilsWinHandles.h"
#include "Component/Win/Window/WindowRegistry.h"
#include "Component/Win/Window/WinWindow.h"

namespace NSMorvane {

namespace {

// Process-wide, since there is one list, and its window procedure is not told whose it is.
ATOM gWindowClass = 0;  // registered on first use and kept
HWND gWindowListHwnd = nullptr;
HFONT gWindowListFont = nullptr;                    // made by the first paint
boost::shared_ptr<CWindowRegistry> gWindowsInList;  // while the list is open

constexpr UINT_PTR kRefreshTimerId = 1;
constexpr UINT kRefreshMS = 1000;
constexpr POINT kMinSize = {300, 100};
constexpr int kFontPoints = 10;
constexpr int kRowPadding = 4;  // over the height of a character
constexpr LONG kTextMargin = 4;

struct TListRow {
  std::u16string fTitle;
  TPaintFigures fFigures;
};

// BeginPaint and EndPaint.
class CListPaint : CNotCopied {
 public:
  explicit CListPaint(HWND hwnd) : fHwnd(hwnd), fHDC(BeginPaint(hwnd, &fPaint)) {}
  ~CListPaint() { EndPaint(fHwnd, &fPaint); }
  HDC Get() const { return fHDC; }

 private:
  HWND fHwnd;
  PAINTSTRUCT fPaint = {};
  HDC fHDC;
};

// The question for a title is a message, which can end windows, the list among them.
std::vector<TListRow> CollectRows() {
  std::vector<TListRow> rows;
  const boost::shared_ptr<CWindowRegistry> registry = gWindowsInList;
  if (!registry) return rows;
  for (const boost::shared_ptr<CWinWindow>& window : registry->GetWindows()) {
    wchar_t title[256] = {};
    GetWindowTextW(window->GetHwnd(), title, 256);
    rows.push_back({TextFromWin(title), MeasurePaints(window->GetPaintSamples().Get(), GetTickCount())});
  }
  return rows;
}

HFONT GetListFont(HDC hdc) {
  if (gWindowListFont) return gWindowListFont;
  LOGFONTW description = {};
  description.lfHeight = -MulDiv(kFontPoints, GetDeviceCaps(hdc, LOGPIXELSY), 72);
  description.lfWeight = FW_NORMAL;
  description.lfOutPrecision = OUT_TT_ONLY_PRECIS;
  description.lfQuality = PROOF_QUALITY;
  description.lfPitchAndFamily = FF_SWISS;
  return gWindowListFont = CreateFontIndirectW(&description);
}

// The window colour with less red and green, each of which may wrap.
COLORREF StripeColor(COLORREF color) {
  return RGB(GetRValue(color) - 20, GetGValue(color) - 20, GetBValue(color));
}

void DrawCell(HDC hdc, RECT cell, const std::u16string& text) {
  DrawTextW(hdc, WinText(text), static_cast<int>(text.size()), &cell,
            DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX);
}

// The title in the left half of its row, the two figures side by side in the right half.
void DrawRows(HDC hdc, int width, int rowHeight, const std::vector<TListRow>& rows) {
  const COLORREF background = GetSysColor(COLOR_WINDOW);
  const COLORREF stripe = StripeColor(background);
  const CGdiObject<HBRUSH> stripeBrush(CreateSolidBrush(stripe));
  SetTextColor(hdc, GetSysColor(COLOR_WINDOWTEXT));
  const LONG middle = width / 2;
  const LONG left = middle + kTextMargin;
  const LONG right = width - kTextMargin;
  const LONG secondFigure = left + (right - left) / 2;
  RECT row = {0, 0, width, rowHeight};
  bool isStriped = false;
  for (const auto& [title, figures] : rows) {
    FillRect(hdc, &row, isStriped ? stripeBrush.Get() : GetSysColorBrush(COLOR_WINDOW));
    SetBkColor(hdc, isStriped ? stripe : background);
    DrawCell(hdc, {kTextMargin, row.top, middle - kTextMargin, row.bottom}, title);
    DrawCell(hdc, {left, row.top, secondFigure, row.bottom}, figures.fFrameRate);
    DrawCell(hdc, {secondFigure, row.top, right, row.bottom}, figures.fPaintTime);
    OffsetRect(&row, 0, rowHeight);
    isStriped = !isStriped;
  }
}

void PaintList(HWND hwnd) {
  std::vector<TListRow> rows;
  // What cannot be collected is missing in this picture; the next one comes in a second.
  ErrorOf([&] { rows = CollectRows(); });
  if (hwnd != gWindowListHwnd) return;
  const CListPaint paint(hwnd);
  if (!paint.Get()) return;
  const CObjectSelection font(paint.Get(), GetListFont(paint.Get()));
  TEXTMETRICW metrics = {};
  RECT client = {};
  if (!GetTextMetricsW(paint.Get(), &metrics) || !GetClientRect(hwnd, &client)) return;
  DrawRows(paint.Get(), client.right, metrics.tmHeight + kRowPadding, rows);
}

void ForgetList() {
  if (gWindowListFont) DeleteObject(std::exchange(gWindowListFont, nullptr));
  gWindowListHwnd = nullptr;
  gWindowsInList.reset();
}

LRESULT CALLBACK WindowListProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_CREATE:
      SetTimer(hwnd, kRefreshTimerId, kRefreshMS, nullptr);
      return 0;
    case WM_DESTROY:
      KillTimer(hwnd, kRefreshTimerId);
      ForgetList();
      return 0;
    case WM_PAINT:
      PaintList(hwnd);
      return 0;
    case WM_GETMINMAXINFO:
      reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = kMinSize;
      return 0;
    case WM_TIMER:
      MORVANE_ASSERT(wParam == 1);
      InvalidateRect(hwnd, nullptr, TRUE);
      return 0;
    default:
      return DefWindowProcW(hwnd, message, wParam, lParam);
  }
}

void RegisterListClass() {
  WNDCLASSEXW windowClass = {};
  windowClass.cbSize = sizeof(windowClass);
  windowClass.style = CS_HREDRAW | CS_VREDRAW;
  windowClass.lpfnWndProc = WindowListProc;
  windowClass.hInstance = GetModuleHandleW(nullptr);
  windowClass.hIcon = LoadIconW(nullptr, IDI_APPLICATION);
  windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
  windowClass.lpszClassName = L"WindowListWindowClass";
  gWindowClass = RegisterClassExW(&windowClass);
  MORVANE_ASSERT(gWindowClass != 0);
}

}  // namespace

void OpenWindowList(const boost::shared_ptr<CWindowRegistry>& windows) {
  if (gWindowListHwnd) {
    if (IsIconic(gWindowListHwnd)) ShowWindow(gWindowListHwnd, SW_RESTORE);
    BringWindowToTop(gWindowListHwnd);
    return;
  }
  if (!gWindowClass) RegisterListClass();
  gWindowListHwnd = CreateWindowExW(WS_EX_TOPMOST | WS_EX_TOOLWINDOW | WS_EX_WINDOWEDGE,
                                    MAKEINTATOM(gWindowClass), L"Window List", WS_OVERLAPPEDWINDOW, 100, 100,
                                    400, 400, nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
  if (!gWindowListHwnd) return;
  gWindowsInList = windows;
  ShowWindow(gWindowListHwnd, SW_SHOW);
}

bool IsWindowList(HWND hwnd) { return hwnd && hwnd == gWindowListHwnd; }

void CloseWindowList() {
  if (gWindowListHwnd) DestroyWindow(gWindowListHwnd);
}

}  // namespace NSMorvane
