#include "Component/Win/UtilsWin.h"

namespace NSMorvane {

// --- Text
// ---------------------------------------------------------------------------------------------------

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
// ------------------------------------------------------------------------------------

void ThrowLastError(const char* file, std::int32_t line) {
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

}  // namespace NSMorvane
