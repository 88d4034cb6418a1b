#include "Component/Win/Platform/UtilsWin.h"

#include <algorithm>
#include <cstdio>

#include "Component/Win/Platform/UtilsWinHandles.h"

namespace NSMorvane {

namespace {

// Process-wide, since the windows of file dialogs have threads of their own and know of no root object.
SRWLOCK gHwndRegistryLock = SRWLOCK_INIT;
std::vector<HWND> gHwndRegistry;

// Collects the windows that an enumeration of the system finds. No exception may unwind through the system.
struct THwndCollector {
  std::vector<HWND> fWindows;
  bool fOutOfMemory = false;

  static BOOL CALLBACK Add(HWND hWnd, LPARAM lParam) {
    auto& self = *reinterpret_cast<THwndCollector*>(lParam);
    try {
      if (hWnd) self.fWindows.push_back(hWnd);
      return TRUE;
    } catch (...) {
      self.fOutOfMemory = true;
      return FALSE;
    }
  }
  std::vector<HWND> Take(BOOL okFlag) {
    if (fOutOfMemory) MORVANE_THROW(XOutOfMemory());
    MORVANE_ASSERT(okFlag);
    return std::move(fWindows);
  }
};

std::vector<HWND> ListAllTopLevelWindows() {
  THwndCollector collector;
  const BOOL okFlag = EnumWindows(&THwndCollector::Add, reinterpret_cast<LPARAM>(&collector));
  return collector.Take(okFlag);
}

bool Contains(const std::vector<HWND>& windows, HWND hWnd) {
  return std::find(windows.begin(), windows.end(), hWnd) != windows.end();
}

// UTF-8 for the log; what cannot be encoded is replaced.
std::string LogText(const wchar_t* text, int length) {
  std::string result(static_cast<std::size_t>(length) * 3, '\0');
  const int size = length == 0 ? 0
                               : WideCharToMultiByte(CP_UTF8, 0, text, length, result.data(),
                                                     static_cast<int>(result.size()), nullptr, nullptr);
  result.resize(static_cast<std::size_t>(size));
  return result;
}

// Callback of EnumThreadWindows: a window of the library that `owner` owns loses its owner.
BOOL CALLBACK LeaveToItself(HWND hWnd, LPARAM owner) {
  if (GetWindow(hWnd, GW_OWNER) == reinterpret_cast<HWND>(owner) && IsRegisteredHwnd(hWnd))
    SetWindowLongPtrW(hWnd, GWLP_HWNDPARENT, 0);
  return TRUE;
}

// Windows of other threads are among those that are looked at. They can end at any moment, and one whose
// thread is busy answers no message.
bool CanBePopupParent(HWND hWnd) {
  if (GetWindowLongW(hWnd, GWL_EXSTYLE) & WS_EX_TOPMOST) return false;
  RECT rect;
  if (!GetWindowRect(hWnd, &rect) || IsIconic(hWnd)) return false;
  wchar_t title[2];
  return rect.left < rect.right && rect.top < rect.bottom && InternalGetWindowText(hWnd, title, 2) >= 1;
}

HWND FindPopupParent(HWND window, const std::vector<HWND>& shownWindows) {
  for (HWND hWnd : shownWindows)
    if (hWnd != window && CanBePopupParent(hWnd)) return hWnd;
  return nullptr;
}

void LogPopupParent(HWND parent, const RECT& rect) {
  wchar_t title[2048];
  SetLastError(ERROR_SUCCESS);
  const int length = InternalGetWindowText(parent, title, 2048);
  if (length > 2048) MORVANE_UNREACHED();
  if (length == 0 && IsWindow(parent)) MORVANE_ASSERT(0==::GetLastError());
  DebugPrint("Parent window name:" + LogText(title, std::min(length, 2047)));
  char text[128];
  std::snprintf(text, sizeof(text), "Parent window rect: %d, %d, %d, %d", static_cast<int>(rect.left),
                static_cast<int>(rect.top), static_cast<int>(rect.right), static_cast<int>(rect.bottom));
  DebugPrint(text);
}

// The shared font, deleted when the library is unloaded.
class CDefaultFont : CNotCopied {
 public:
  CDefaultFont() {
    LOGFONTW description = {};
    const int size = GetObjectW(GetStockObject(DEFAULT_GUI_FONT), sizeof(description), &description);
    if (size < static_cast<int>(sizeof(description))) MORVANE_THROW(std::exception());
    const CWindowDC screen(GetDesktopWindow());
    const int dpi = GetDeviceCaps(screen.Get(), LOGPIXELSY);
    description.lfHeight = MulDiv(description.lfHeight, 96, dpi);
    fFont = CreateFontIndirectW(&description);
    if (!fFont) MORVANE_THROW(std::exception());
  }
  ~CDefaultFont() {
    const BOOL okFlag = DeleteObject(fFont);
    MORVANE_ASSERT(okFlag);
  }
  HFONT fFont;
};

}  // namespace

// --- Text

std::u16string TextFromWin(const wchar_t* text) {
  return text ? TextFromWin(text, std::char_traits<wchar_t>::length(text)) : std::u16string();
}

std::u16string TextFromWin(const wchar_t* text, std::size_t length) {
  return std::u16string(text, text + length);
}

std::string NumberText(std::int64_t number) { return std::to_string(number); }

std::string HandleText(const void* handle) {
  return std::to_string(reinterpret_cast<std::uintptr_t>(handle));
}

// --- Failed system calls

void CheckLastError(const char* file, std::int32_t line) {
  const DWORD code = GetLastError();
  const auto print = [&](const std::string& name) {
    DebugPrint("Windows error " + name + " at: " + file + "(" + NumberText(line) + ")");
  };
  switch (code) {
    case ERROR_SUCCESS:
      return;
    case ERROR_INVALID_HANDLE:
      print("ERROR_INVALID_HANDLE");
      MORVANE_THROW(std::exception());
    case ERROR_NOT_ENOUGH_MEMORY:
      print("ERROR_NOT_ENOUGH_MEMORY");
      MORVANE_THROW(XOutOfMemory());
    case ERROR_OUTOFMEMORY:
      print("ERROR_OUTOFMEMORY");
      MORVANE_THROW(XOutOfMemory());
    default:
      print(NumberText(code));
      MORVANE_THROW(std::exception());
  }
}

// --- Windows

// GetVersionExW is declared deprecated, since it may report an older system than the real one. It is looked
// up by name to avoid the compiler's warning.
bool GetSystemVersion(OSVERSIONINFOW& outVersion) {
  using TGetVersion = BOOL(WINAPI*)(OSVERSIONINFOW*);
  outVersion = {};
  outVersion.dwOSVersionInfoSize = sizeof(outVersion);
  const FARPROC procedure = GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "GetVersionExW");
  const auto getVersion = reinterpret_cast<TGetVersion>(reinterpret_cast<void*>(procedure));
  return getVersion && getVersion(&outVersion);
}

WINDOWPLACEMENT GetPlacement(HWND hWnd) {
  WINDOWPLACEMENT wp = {};
  wp.length = sizeof(wp);
  if (!GetWindowPlacement(hWnd, &wp)) MORVANE_CHECK_LAST_ERROR();
  return wp;
}

void SetPlacement(HWND hWnd, const WINDOWPLACEMENT& wp) {
  MORVANE_ASSERT(wp.length == sizeof(WINDOWPLACEMENT));
  MORVANE_ASSERT(wp.rcNormalPosition.left < wp.rcNormalPosition.right);
  MORVANE_ASSERT(wp.rcNormalPosition.top < wp.rcNormalPosition.bottom);
  if (!SetWindowPlacement(hWnd, &wp)) MORVANE_CHECK_LAST_ERROR();
}

bool IsWindowMinimized(HWND hWnd) {
  MORVANE_ASSERT(::IsWindow(hWnd));
  return GetPlacement(hWnd).showCmd == SW_SHOWMINIMIZED;
}

bool IsWindowMaximized(HWND hWnd) {
  MORVANE_ASSERT(::IsWindow(hWnd));
  return GetPlacement(hWnd).showCmd == SW_SHOWMAXIMIZED;
}

void WinSetFocus(HWND hWnd) {
  DebugPrint("WinSetFocus " + HandleText(hWnd));
  MORVANE_ASSERT(::IsWindow(hWnd));
  if (SetFocus(hWnd)) return;
  const DWORD code = GetLastError();
  if (GetFocus() != hWnd) DebugPrint("WinSetFocus failed " + NumberText(code));
}

void SetWindowTopMost(HWND hWnd, bool topMost) {
  const BOOL okFlag = SetWindowPos(hWnd, topMost ? HWND_TOPMOST : HWND_NOTOPMOST, 0, 0, 0, 0,
                                   SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE);
  MORVANE_ASSERT(0!=okFlag);
}

void RegisterHwnd(HWND hWnd) {
  const bool isNew = !IsRegisteredHwnd(hWnd);
  MORVANE_ASSERT_TEXT("std::find(gHwndRegistry.begin(),gHwndRegistry.end(),hWnd)==gHwndRegistry.end()", isNew);
  const CWriteLock lock(gHwndRegistryLock);
  gHwndRegistry.push_back(hWnd);
}

void UnregisterHwnd(HWND hWnd) {
  const CWriteLock lock(gHwndRegistryLock);
  const auto it = std::find(gHwndRegistry.begin(), gHwndRegistry.end(), hWnd);
  if (it != gHwndRegistry.end()) gHwndRegistry.erase(it);
}

bool IsRegisteredHwnd(HWND hWnd) {
  const CReadLock lock(gHwndRegistryLock);
  return Contains(gHwndRegistry, hWnd);
}

void DisownWindows(HWND owner) {
  EnumThreadWindows(GetCurrentThreadId(), LeaveToItself, reinterpret_cast<LPARAM>(owner));
}

std::vector<HWND> GetTopLevelWindowsZ() {
  std::vector<HWND> windows = ListAllTopLevelWindows();
  const DWORD ownProcess = GetCurrentProcessId();
  std::erase_if(windows, [&](HWND hWnd) {
    DWORD process = 0;
    GetWindowThreadProcessId(hWnd, &process);
    return process != ownProcess || (GetWindowLongW(hWnd, GWL_STYLE) & WS_CHILD);
  });
  return windows;
}

std::vector<HWND> GetThreadWindowsZ() {
  THwndCollector collector;
  const BOOL okFlag =
      EnumThreadWindows(GetCurrentThreadId(), &THwndCollector::Add, reinterpret_cast<LPARAM>(&collector));
  return collector.Take(okFlag);
}

bool IsThreadOfThisProcess(DWORD threadId) {
  const CKernelHandle thread(OpenThread(THREAD_QUERY_LIMITED_INFORMATION, FALSE, threadId));
  return thread.Get() && GetProcessIdOfThread(thread.Get()) == GetCurrentProcessId();
}

TPoint GetPopupCenter(HWND window, HWND parent, const std::vector<HWND>& shownWindows) {
  if (!parent) parent = FindPopupParent(window, shownWindows);
  RECT rect = {};
  if (parent && !GetWindowRect(parent, &rect) && !IsWindow(parent)) parent = nullptr;  // it has just ended
  if (!parent) {
    DebugPrint("GetPopupCenter, using desktop window");
    const DebugIndentScope indent;
    const BOOL okFlag = GetWindowRect(GetDesktopWindow(), &rect);
    MORVANE_ASSERT(okFlag);
  } else {
    DebugPrint("GetPopupCenter, found parent window");
    const DebugIndentScope indent;
    const BOOL okFlag = GetWindowRect(parent, &rect);
    MORVANE_ASSERT(okFlag);
    LogPopupParent(parent, rect);
  }
  return TPoint{(rect.right - rect.left) / 2 + rect.left, (rect.bottom - rect.top) / 2 + rect.top};
}

void PumpPaintMessages() {
  // Nearly always there is nothing to paint, and asking each window is costly where there are many.
  if (!(HIWORD(GetQueueStatus(QS_PAINT)) & QS_PAINT)) return;
  THwndCollector collector;
  const LPARAM out = reinterpret_cast<LPARAM>(&collector);
  EnumThreadWindows(GetCurrentThreadId(), &THwndCollector::Add, out);
  const std::vector<HWND> topLevelWindows = collector.fWindows;
  for (const HWND hWnd : topLevelWindows) EnumChildWindows(hWnd, &THwndCollector::Add, out);
  // Each window is painted once, since a window that invalidates itself while it paints would go on for ever.
  std::vector<HWND> painted;
  for (const HWND hWnd : collector.Take(TRUE)) {
    MSG message;
    if (Contains(painted, hWnd) || !PeekMessageW(&message, hWnd, WM_PAINT, WM_PAINT, PM_REMOVE)) continue;
    painted.push_back(message.hwnd);  // or a child window of hWnd
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

HFONT GetDefaultFont() {
  // Process-wide, since windows keep the handle.
  static const CDefaultFont font;
  return font.fFont;
}

}  // namespace NSMorvane
