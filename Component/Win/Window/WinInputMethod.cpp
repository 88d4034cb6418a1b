#include "Component/Win/Window/WinInputMethod.h"

// Needs windows.h before it.
#include <imm.h>

#include <exception>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Base/Scopes.h"

namespace NSMorvane {

namespace {

// True while the input method is being closed here, which sends another notification. Process-wide, since the
// windows of a thread share their input method.
bool gIsSuppressingInputMethod = false;

// Class names are not case-sensitive.
bool IsEditControl(HWND hwnd) {
  wchar_t className[32] = {};
  GetClassNameW(hwnd, className, 32);
  return CompareStringOrdinal(className, -1, L"EDIT", -1, TRUE) == CSTR_EQUAL;
}

void CloseInputMethod(HWND window) {
  const HIMC context = ImmGetContext(window);
  if (!context) MORVANE_THROW(std::exception());
  if (ImmGetOpenStatus(context)) ImmSetOpenStatus(context, FALSE);
  ImmReleaseContext(window, context);
}

}  // namespace

void LeaveWithoutInputMethod(HWND window) { ImmAssociateContextEx(window, nullptr, 0); }

void KeepInputMethodClosed(HWND window, WPARAM command) {
  if (!GetSystemMetrics(SM_IMMENABLED) || command != IMN_SETOPENSTATUS || gIsSuppressingInputMethod) return;
  const CFlagScope scope(gIsSuppressingInputMethod);
  try {
    const HWND focus = GetFocus();
    if (!focus || !IsEditControl(focus)) CloseInputMethod(window);
  } catch (...) {
    DebugPrint("Strange exception was swallowed in IME suppression handler.");
  }
}

}  // namespace NSMorvane
