// Helpers that every platform file uses: text and geometry across the border to Win32, failed system calls,
// questions about windows, lists of windows, monitors, the default font. Owners of native resources are in
// UtilsWinHandles.h. All of it belongs to the main thread, unless told otherwise.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Interface/MorvaneMonitors.h"

namespace NSMorvane {

// --- Text

// TChar and wchar_t are both UTF-16 units here; only the type system keeps them apart.
static_assert(sizeof(TChar) == sizeof(wchar_t));

inline const wchar_t* WinText(const TChar* text) { return reinterpret_cast<const wchar_t*>(text); }
inline const wchar_t* WinText(const std::u16string& text) { return WinText(text.c_str()); }
// For calls that write into a buffer.
inline wchar_t* WinBuffer(TChar* buffer) { return reinterpret_cast<wchar_t*>(buffer); }

// Null gives the empty text.
std::u16string TextFromWin(const wchar_t* text);
std::u16string TextFromWin(const wchar_t* text, std::size_t length);

// A number as decimal text.
std::string NumberText(std::int64_t number);
// A handle or an address as decimal text.
std::string HandleText(const void* handle);

// --- Geometry

inline RECT ToNative(const TRect& r) { return RECT{r.fLeft, r.fTop, r.fRight, r.fBottom}; }
inline POINT ToNative(const TPoint& p) { return POINT{p.fX, p.fY}; }
inline SIZE ToNative(const TSize& s) { return SIZE{s.fWidth, s.fHeight}; }
inline TRect FromNative(const RECT& r) { return TRect{r.left, r.top, r.right, r.bottom}; }
inline TPoint FromNative(const POINT& p) { return TPoint{p.x, p.y}; }
inline TSize FromNative(const SIZE& s) { return TSize{s.cx, s.cy}; }

// --- Failed system calls

// Turns GetLastError() into a log line with the given position and an exception: std::bad_alloc for the two
// codes of memory shortage, std::exception for all others. Returns silently if the last error is 0; the
// caller then goes on as if its call had worked. Nothing may run between the failed call and this one. With
// MORVANE_CHECK_LAST_ERROR the position is that of the caller.
void CheckLastError(const char* file, std::int32_t line);

// --- The system

// The version that the system tells this program, which may be older than the real one. False on failure.
bool GetSystemVersion(OSVERSIONINFOW& outVersion);

// --- Windows

WINDOWPLACEMENT GetPlacement(HWND hWnd);
void SetPlacement(HWND hWnd, const WINDOWPLACEMENT& wp);
bool IsWindowMinimized(HWND hWnd);
bool IsWindowMaximized(HWND hWnd);

// Gives the keyboard to a window of this thread. A failure is only logged.
void WinSetFocus(HWND hWnd);

// Does not move, resize or activate the window.
void SetWindowTopMost(HWND hWnd, bool topMost);

// The windows that the library has made or hooked; any thread may ask and register.
void RegisterHwnd(HWND hWnd);
void UnregisterHwnd(HWND hWnd);
bool IsRegisteredHwnd(HWND hWnd);

// Takes the owner from the windows of the library that `owner` owns. The system would destroy them together
// with `owner`, but they end by themselves.
void DisownWindows(HWND owner);

// The top-level windows of this process, front window first, without child windows.
std::vector<HWND> GetTopLevelWindowsZ();
// The same of the calling thread, with windows that only messages reach. Costs less, since the windows of
// other processes are not looked at.
std::vector<HWND> GetThreadWindowsZ();

// False also for a thread that has ended.
bool IsThreadOfThisProcess(DWORD threadId);

// The point, in screen coordinates, on which a popup is to be centred: the middle of its parent. Without a
// parent it is the middle of the first of `shownWindows` that has a title and an area and is not the popup
// itself, minimized or topmost; without such a window it is the middle of the desktop. Both handles may be
// null.
TPoint GetPopupCenter(HWND window, HWND parent, const std::vector<HWND>& shownWindows);

// Handles the paint messages that are waiting for windows of this thread, one for each.
void PumpPaintMessages();

// The font of windows, made on first use. The caller must not delete it. Its height is scaled
// from the resolution of the screen to 96 dots per inch.
HFONT GetDefaultFont();

// --- Monitors

// Fills the list. False or an exception on failure; the content of the list is undefined then.
bool EnumerateMonitors(TMonitorList& outMonitors);
// Called after a change of the display. Until then the depths that have been asked for stand.
void ForgetMonitorDepths();
// The second half of EnumerateMonitors: describes the monitors in their order, kMaxMonitors at most.
bool DescribeMonitors(const std::vector<HMONITOR>& monitorVector, TMonitorList& outMonitors);

}  // namespace NSMorvane

#define MORVANE_CHECK_LAST_ERROR() ::NSMorvane::CheckLastError(__FILE__, __LINE__)

// The same for a caller that cannot go on: if the last error is 0, it throws std::exception.
#define MORVANE_THROW_LAST_ERROR() (MORVANE_CHECK_LAST_ERROR(), MORVANE_THROW(std::exception()))
