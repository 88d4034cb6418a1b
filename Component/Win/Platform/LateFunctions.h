// Functions of those libraries of the system that only a dialog, a drop or an icon needs. If this library
// were linked with them, every program would load them when it starts, along with others that they need
// themselves; so each is loaded when it is first needed.
//
// Any thread may use these. A library that has been loaded stays to the end of the process.
#pragma once

#include <windows.h>

namespace NSMorvane {

inline constexpr wchar_t kCommonDialogLibrary[] = L"comdlg32.dll";
inline constexpr wchar_t kOleLibrary[] = L"ole32.dll";
inline constexpr wchar_t kShellLibrary[] = L"shell32.dll";

// Null if the system does not have it, or cannot load it; the last error then tells why.
HMODULE LoadSystemLibrary(const wchar_t* name);
FARPROC FindSystemFunction(const wchar_t* library, const char* name);

// The same with the function's type: FindLate<decltype(GetOpenFileNameW)>(kCommonDialogLibrary,
// "GetOpenFileNameW").
template <class TFunction>
TFunction* FindLate(const wchar_t* library, const char* name) {
  // By way of a pointer to anything, since compilers mind the direct one.
  return reinterpret_cast<TFunction*>(reinterpret_cast<void*>(FindSystemFunction(library, name)));
}

}  // namespace NSMorvane
