// What the system asks of a window: closing, the commands of the system menu, size limits, the size grip,
// dropped files, and input methods.
#include <windows.h>

#include <imm.h>
#include <shellapi.h>
#include <shlobj.h>

#include <cstddef>

#include "Component/Portable/Opening/CommandLine.h"
#include "Component/Portable/Opening/DroppedFiles.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Platform/UtilsWinFiles.h"
#include "Component/Win/Window/Blocking.h"
#include "Component/Win/Window/WindowHost.h"
#include "Component/Win/Window/WinWindow.h"

namespace NSMorvane {

namespace {

// --- Dropped files

// A block of global memory with the files that were dropped, or with anything; it is freed at the end.
class CDroppedFiles : CNotCopied {
 public:
  explicit CDroppedFiles(HGLOBAL block) : fDrop(static_cast<HDROP>(block)) {}
  ~CDroppedFiles() { DragFinish(fDrop); }

  UINT GetCount() const { return DragQueryFileW(fDrop, 0xFFFFFFFF, nullptr, 0); }
  // Empty if there is no such file.
  TString GetName(UINT index) const {
    const UINT length = DragQueryFileW(fDrop, index, nullptr, 0);
    if (length == 0) return TString();
    TString name(std::size_t{length} + 2, u'\0');
    DragQueryFileW(fDrop, index, WinBuffer(name.data()), length + 2);
    name.resize(std::char_traits<TChar>::length(name.c_str()));
    return name;
  }

 private:
  HDROP fDrop;
};

static_assert(sizeof(DROPFILES) == sizeof(TDroppedFilesHeader) &&
              offsetof(DROPFILES, pFiles) == offsetof(TDroppedFilesHeader, fNamesOffset) &&
              offsetof(DROPFILES, fWide) == offsetof(TDroppedFilesHeader, fIsWide));

// The message comes from anywhere.
bool IsSoundDrop(HGLOBAL block) {
  const std::size_t size = GlobalSize(block);
  if (size == 0) return false;
  const auto bytes = static_cast<const std::byte*>(GlobalLock(block));
  if (!bytes) return false;
  const bool isSound = IsSoundDroppedFilesBlock(bytes, size);
  GlobalUnlock(block);
  return isSound;
}

// --- Input methods

// Input methods notify of what is done here, too.
bool gIsSuppressingInputMethod = false;

// Names of classes come in any case.
bool IsEditControl(HWND hwnd) {
  wchar_t className[32] = {};
  GetClassNameW(hwnd, className, 32);
  return CompareStringOrdinal(className, -1, L"EDIT", -1, TRUE) == CSTR_EQUAL;
}

}  // namespace

// --- Closing and system commands

void CWinWindow::GrayCloseCommand() {
  const HMENU menu = GetSystemMenu(fHwnd, FALSE);
  MENUITEMINFOW info = {};
  info.cbSize = sizeof(info);
  info.fMask = MIIM_STATE;
  if (!GetMenuItemInfoW(menu, SC_CLOSE, FALSE, &info)) return;
  info.fState = MFS_GRAYED;
  SetMenuItemInfoW(menu, SC_CLOSE, FALSE, &info);
}

void CWinWindow::OnCloseRequest() {
  if (GetWindowLongW(fHwnd, GWL_STYLE) & WS_SYSMENU) RequestClose(kCloseByUser);
}

LRESULT CWinWindow::OnSysCommand(TWinMessage message) {
  switch (message.fWParam & ~WPARAM{0xF}) {
    case SC_MINIMIZE:
      if (!CBlocking::MayMinimize(*this, fHost->GetHiderWindow())) return 0;
      break;
    case SC_MAXIMIZE:
      if (OnMaximizeCommand()) return 0;
      break;
    case SC_RESTORE: {
      // As from the task bar, which knows nothing of dialogs: the system does not restore a window that one
      // has disabled.
      const LRESULT result = ForwardMessage(message);
      if (fClientsWindowReference) fBlocking->OnActivationAttempt(fHwnd);
      return result;
    }
    default:
      break;
  }
  return ForwardMessage(message);
}

bool CWinWindow::OnMaximizeCommand() {
  TMonitorList monitors;
  ThrowError(fHost->GetMorvane().IMorvane_GetMonitors(monitors));
  const TRect& start = GetZoomState() == kWindowStateIdeal ? fWindowState.fIdealRect : fWindowState.fUserRect;
  const std::optional<TRect> rect =
      LimitedMaximum(monitors, start, fWindowState, GetFrameInsets(), OffsetToNativePlacement());
  if (!rect) return false;
  WINDOWPLACEMENT wp = GetPlacement(fHwnd);
  wp.rcNormalPosition = ToNative(*rect);
  NSMorvane::SetPlacement(fHwnd, wp);
  return true;
}

// --- Sizes

void CWinWindow::OnGetMinMaxInfo(MINMAXINFO& info) {
  const TSize& minimum = fWindowState.fMinimumClientSize;
  const TSize& maximum = fWindowState.fMaximumClientSize;
  const TFrameInsets insets = GetFrameInsets();
  const TSize minimumFrame = ClientSizeToFrameSize(minimum, insets);
  const TSize maximumFrame = ClientSizeToFrameSize(maximum, insets);
  if (minimum.fWidth != 0) info.ptMinTrackSize.x = minimumFrame.fWidth;
  if (minimum.fHeight != 0) info.ptMinTrackSize.y = minimumFrame.fHeight;
  if (maximum.fWidth != 0) info.ptMaxTrackSize.x = maximumFrame.fWidth;
  if (maximum.fHeight != 0) info.ptMaxTrackSize.y = maximumFrame.fHeight;
}

void CWinWindow::PlaceSizeGrip() {
  RECT grip;
  RECT client;
  if (!fSizeGripHwnd || !GetWindowRect(fSizeGripHwnd, &grip) || !GetClientRect(fHwnd, &client)) return;
  const int width = grip.right - grip.left;
  const int height = grip.bottom - grip.top;
  MoveWindow(fSizeGripHwnd, client.right - width, client.bottom - height, width, height, TRUE);
}

void CWinWindow::AdaptSizeGrip() {
  if (!fSizeGripHwnd) return;
  const bool canSize = !IsZoomed();
  const auto enable = [&](bool flag) {
    if ((IsWindowEnabled(fSizeGripHwnd) != FALSE) != flag) EnableWindow(fSizeGripHwnd, flag);
  };
  if (canSize) enable(true);
  const LONG style = GetWindowLongW(fSizeGripHwnd, GWL_STYLE);
  const LONG newStyle =
      canSize ? (style & ~SBS_SIZEBOX) | SBS_SIZEGRIP : (style & ~SBS_SIZEGRIP) | SBS_SIZEBOX;
  if (newStyle != style) SetWindowLongW(fSizeGripHwnd, GWL_STYLE, newStyle);
  if (!canSize) enable(false);
}

// --- Dropped files

void CWinWindow::OnDropFiles(HGLOBAL drop) {
  if (GlobalFlags(drop) == GMEM_INVALID_HANDLE) return;  // there is nothing to be freed
  const CDroppedFiles files(drop);
  if (!IsSoundDrop(drop)) return;
  const UINT count = files.GetCount();
  for (UINT index = 0; index < count; ++index) {
    const TString name = files.GetName(index);
    for (const TString& path : SplitFileArguments(name, CFileSystemProbe())) {
      IMorvaneRunBehavior* const behavior = fHost->GetBehavior();
      if (behavior) MORVANE_CHECK(behavior->IMorvaneRunBehavior_OnOpenURL(PathToFileURL(path).c_str()));
    }
  }
}

// --- Input methods
//
// Views take keys and no composed text, so an input method is kept closed except for native edit controls.

void CWinWindow::OnImeNotify(WPARAM command) {
  if (!GetSystemMetrics(SM_IMMENABLED) || command != IMN_SETOPENSTATUS || gIsSuppressingInputMethod) return;
  const CFlagScope scope(gIsSuppressingInputMethod);
  try {
    const HWND focus = GetFocus();
    if (!focus || !IsEditControl(focus)) SuppressInputMethod();
  } catch (...) {
    DebugPrint("Strange exception was swallowed in IME suppression handler.");
  }
}

void CWinWindow::SuppressInputMethod() {
  const HIMC context = ImmGetContext(fHwnd);
  if (!context) MORVANE_THROW(std::exception());
  if (ImmGetOpenStatus(context)) ImmSetOpenStatus(context, FALSE);
  ImmReleaseContext(fHwnd, context);
}

}  // namespace NSMorvane
