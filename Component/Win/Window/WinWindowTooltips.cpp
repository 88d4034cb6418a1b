#include "Component/Win/Window/WinWindowTooltips.h"

// Needs windows.h before it.
#include <commctrl.h>

#include <algorithm>
#include <utility>

#include "Component/Portable/Base/Geometry.h"
#include "Component/Portable/Views/ViewImpl.h"
#include "Component/Portable/Windows/WindowFocus.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Interface/MorvaneWindow.h"

namespace NSMorvane {

// Process-wide, since the message loop relays each message to the tooltips of all windows.
std::vector<HWND> gTooltipWindows;

namespace {

// Process-wide, so that no two tools have the same number, in whatever window they are.
std::uint32_t gNextToolId = 1;

constexpr LPARAM kMaxTipWidth = 300;

// The tool of a view, by its number.
TTTOOLINFOW MakeToolInfo(HWND window, std::uint32_t toolNumber) {
  TTTOOLINFOW info = {};
  info.cbSize = TTTOOLINFOW_V2_SIZE;
  info.hwnd = window;
  info.uId = toolNumber;
  return info;
}

// The tool of a native control.
TTTOOLINFOW MakeControlToolInfo(HWND window, HWND control) {
  TTTOOLINFOW info = MakeToolInfo(window, 0);
  info.uFlags = TTF_IDISHWND;
  info.uId = reinterpret_cast<UINT_PTR>(control);
  return info;
}

LRESULT SendToolMessage(HWND tooltip, UINT message, TTTOOLINFOW& info) {
  return SendMessageW(tooltip, message, 0, reinterpret_cast<LPARAM>(&info));
}

// Replaces paragraph separators by line breaks, which the control understands.
TString TipText(const TString& text) {
  TString result;
  for (const TChar unit : text) unit == 0x2029 ? result += u"\r\n" : result += unit;
  return result;
}

// The control copies the text.
LRESULT SendToolText(HWND tooltip, UINT message, TTTOOLINFOW& info, const TString& text) {
  const TString tipText = TipText(text);
  info.lpszText = const_cast<wchar_t*>(WinText(tipText));
  return SendToolMessage(tooltip, message, info);
}

void AddNativeTool(HWND tooltip, TTTOOLINFOW& info, const TString& text) {
  if (!SendToolText(tooltip, TTM_ADDTOOLW, info, text)) ThrowError(kOtherError);
}

RECT ToolRect(const CViewImpl& view) { return ToNative(view.GetClipBounds()); }

void UpdateToolRect(HWND window, HWND toolTipWindow, std::uint32_t toolTipHandle, const RECT& rect) {
  MORVANE_ASSERT(0!=window);
  MORVANE_ASSERT(0!=toolTipWindow);
  MORVANE_ASSERT(0!=toolTipHandle);
  TTTOOLINFOW info = MakeToolInfo(window, toolTipHandle);
  info.rect = rect;
  SendToolMessage(toolTipWindow, TTM_NEWTOOLRECTW, info);
}

// The number of the front-most tool at a point in the view, or 0. Calls no behaviour.
std::uint32_t TopToolAt(const CViewImpl& view, const TPoint& point) {
  if (!view.IsLive() || !IsPointInRect(point, view.GetBounds())) return 0;
  const std::vector<CViewImpl*>& subViews = view.GetRawSubViews();
  for (auto subView = subViews.rbegin(); subView != subViews.rend(); ++subView)
    if (const std::uint32_t tool = TopToolAt(**subView, point)) return tool;
  return view.GetTooltipHandle();
}

// The release that must follow a press, so that the tooltips see a whole click; 0 for all other messages.
UINT ReleaseAfter(UINT message) {
  switch (message) {
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
      return WM_LBUTTONUP;
    case WM_RBUTTONDOWN:
      return WM_RBUTTONUP;
    case WM_MBUTTONDOWN:
      return WM_MBUTTONUP;
    default:
      return 0;
  }
}

bool IsRelayed(UINT message) {
  return message == WM_MOUSEMOVE || message == WM_LBUTTONUP || message == WM_RBUTTONUP ||
         message == WM_MBUTTONUP || ReleaseAfter(message) != 0;
}

}  // namespace

void RelayToTooltips(const MSG& message) {
  if (!IsRelayed(message.message)) return;
  // By index, since clients that are notified of a tip may make or end windows.
  for (std::size_t i = 0; i < gTooltipWindows.size(); ++i) {
    const HWND tooltip = gTooltipWindows[i];
    MSG relayed = message;
    SendMessageW(tooltip, TTM_RELAYEVENT, 0, reinterpret_cast<LPARAM>(&relayed));
    relayed.message = ReleaseAfter(message.message);
    if (relayed.message != 0) SendMessageW(tooltip, TTM_RELAYEVENT, 0, reinterpret_cast<LPARAM>(&relayed));
  }
}

// --- The tooltip control

void CWinWindowTooltips::CreateControl(bool isMouseCaptured) {
  if (fTooltipHwnd) return;
  INITCOMMONCONTROLSEX controls = {};
  controls.dwSize = sizeof(controls);
  controls.dwICC = ICC_WIN95_CLASSES;
  if (!InitCommonControlsEx(&controls)) MORVANE_THROW(std::exception());
  gTooltipWindows.reserve(gTooltipWindows.size() + 1);  // so that nothing can fail after the creation
  const HWND tooltip =
      CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP,
                      CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, fWindow.fHwnd, nullptr,
                      GetModuleHandleW(nullptr), nullptr);
  if (!tooltip) MORVANE_THROW_LAST_ERROR();
  fTooltipHwnd = tooltip;
  gTooltipWindows.push_back(tooltip);
  SetWindowPos(tooltip, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
  // The end of the capture activates it.
  SendMessageW(tooltip, TTM_ACTIVATE, isMouseCaptured ? FALSE : TRUE, 0);
  SendMessageW(tooltip, TTM_SETMAXTIPWIDTH, 0, kMaxTipWidth);
}

void CWinWindowTooltips::DestroyControl() {
  if (!fTooltipHwnd) return;
  std::erase(gTooltipWindows, fTooltipHwnd);
  // The control has gone already if somebody else has destroyed the window.
  const BOOL okFlag = !IsWindow(fTooltipHwnd) || DestroyWindow(fTooltipHwnd);
  MORVANE_ASSERT(0!=okFlag);
  fTooltipHwnd = nullptr;
}

void CWinWindowTooltips::Activate(bool active) {
  if (fTooltipHwnd) SendMessageW(fTooltipHwnd, TTM_ACTIVATE, active ? TRUE : FALSE, 0);
}

// --- Tools

std::uint32_t CWinWindowTooltips::Add(CViewImpl& view, const TString& text, bool isMouseCaptured) {
  CreateControl(isMouseCaptured);
  const HWND control = GetNativeFocusTarget(view).fHwnd;
  if (control) AddControlTool(control, text);
  const std::uint32_t toolNumber = gNextToolId++;
  TTTOOLINFOW info = MakeToolInfo(fWindow.fHwnd, toolNumber);
  info.rect = ToolRect(view);
  try {
    AddNativeTool(fTooltipHwnd, info, text);
    fTools.push_back({toolNumber, &view, control, false});
  } catch (...) {
    SendToolMessage(fTooltipHwnd, TTM_DELTOOLW, info);
    DeleteControlTool(control);
    MORVANE_RETHROW();
  }
  fRectsAreDirty = fHasNewTools = true;
  return toolNumber;
}

void CWinWindowTooltips::SetText(std::uint32_t toolTipHandle, CViewImpl& view, const TString& text) {
  MORVANE_ASSERT(0!=toolTipHandle);
  MORVANE_ASSERT(0!=fTooltipHwnd);
  const HWND target = GetNativeFocusTarget(view).fHwnd;
  TTTOOLINFOW info = MakeToolInfo(fWindow.fHwnd, toolTipHandle);
  SendToolText(fTooltipHwnd, TTM_UPDATETIPTEXTW, info, text);
  const auto tool = std::ranges::find(fTools, toolTipHandle, &TTool::fNumber);
  if (tool == fTools.end()) return;
  if (!IsWindow(tool->fControl)) return MoveTool(*tool, target, text);
  TTTOOLINFOW controlInfo = MakeControlToolInfo(fWindow.fHwnd, tool->fControl);
  SendToolText(fTooltipHwnd, TTM_UPDATETIPTEXTW, controlInfo, text);
}

void CWinWindowTooltips::Remove(std::uint32_t toolNumber, CViewImpl& view) {
  // As with the other two, a view that fails keeps what it has.
  if (toolNumber != 0 && fTooltipHwnd) GetNativeFocusTarget(view);
  const auto it = std::ranges::find(fTools, toolNumber, &TTool::fNumber);
  if (it == fTools.end()) return;
  const TTool tool = *it;
  fTools.erase(it);
  fRectsAreDirty = true;  // it may have covered others
  if (!fTooltipHwnd) return;
  TTTOOLINFOW info = MakeToolInfo(fWindow.fHwnd, toolNumber);
  SendToolMessage(fTooltipHwnd, TTM_DELTOOLW, info);
  DeleteControlTool(tool.fControl);
}

// --- The tool of a control

void CWinWindowTooltips::MoveToControl(const CViewImpl& view, HWND control) {
  const auto tool = std::ranges::find(fTools, &view, &TTool::fView);
  if (tool != fTools.end() && tool->fControl != control) MoveTool(*tool, control, view.GetTooltipText());
}

void CWinWindowTooltips::ForgetControl(HWND control) {
  const auto tool = std::ranges::find(fTools, control, &TTool::fControl);
  if (tool != fTools.end()) MoveTool(*tool, nullptr, TString());
}

// The list may change when the old tip disappears, so it is not touched after that.
void CWinWindowTooltips::MoveTool(TTool& tool, HWND control, const TString& text) {
  if (control) {
    AddControlTool(control, text);
    fRectsAreDirty = fHasNewTools = true;
  }
  DeleteControlTool(std::exchange(tool.fControl, control));
}

void CWinWindowTooltips::AddControlTool(HWND control, const TString& text) {
  TTTOOLINFOW info = MakeControlToolInfo(fWindow.fHwnd, control);
  AddNativeTool(fTooltipHwnd, info, text);
}

void CWinWindowTooltips::DeleteControlTool(HWND control) {
  if (!control || !fTooltipHwnd) return;
  TTTOOLINFOW info = MakeControlToolInfo(fWindow.fHwnd, control);
  SendToolMessage(fTooltipHwnd, TTM_DELTOOLW, info);
}

// --- The rectangles

// Of two tools at one place the tooltip control takes any. So while the mouse is over the one in front, the
// others there have no place.
void CWinWindowTooltips::UpdateRects(const TPoint& mouse) {
  if (!fTooltipHwnd || (!fRectsAreDirty && mouse == fMouse)) return;
  fMouse = mouse;
  const bool areAllDirty = std::exchange(fRectsAreDirty, false);
  const std::uint32_t topTool = TopToolAt(*fWindow.fRootView, mouse);
  bool hasOtherTop = false;
  const std::size_t count = fTools.size();
  // By index, since the window is notified when a tip disappears, and clients may then change the list.
  for (std::size_t i = 0; i < fTools.size(); ++i) {
    const std::uint32_t number = fTools[i].fNumber;
    const CViewImpl& view = *fTools[i].fView;
    MORVANE_ASSERT(view.CheckInvariant());
    const RECT rect = ToolRect(view);
    const bool isCovered = topTool != 0 && number != topTool && IsPointInRect(mouse, FromNative(rect));
    const bool wasCovered = std::exchange(fTools[i].fIsCovered, isCovered);
    if (isCovered != wasCovered) hasOtherTop = true;
    if (areAllDirty || isCovered != wasCovered)
      UpdateToolRect(fWindow.fHwnd, fTooltipHwnd, number, isCovered ? RECT{} : rect);
  }
  if (fTools.size() != count) fRectsAreDirty = true;
  if (std::exchange(fHasNewTools, false) || hasOtherTop) TellOfRestingMouse();
}

// The control notices the mouse only when it moves, so a movement is made up for a tool that comes under a
// resting mouse.
void CWinWindowTooltips::TellOfRestingMouse() {
  MSG move = {};
  if (!GetCursorPos(&move.pt)) return;
  move.hwnd = WindowFromPoint(move.pt);
  if (move.hwnd != fWindow.fHwnd && !IsChild(fWindow.fHwnd, move.hwnd)) return;
  POINT place = move.pt;
  if (!ScreenToClient(move.hwnd, &place)) return;
  move.message = WM_MOUSEMOVE;
  move.lParam = MAKELPARAM(place.x, place.y);
  move.time = GetTickCount();
  SendMessageW(fTooltipHwnd, TTM_RELAYEVENT, 0, reinterpret_cast<LPARAM>(&move));
}

}  // namespace NSMorvane
