// Another function in the place of one that a module imports, for as long as this lives: for failures of the
// system that cannot be brought about otherwise.
#pragma once

#include <windows.h>

#include <gtest/gtest.h>

#include <cstring>

namespace NSMorvaneTest {

class PatchedImport {
 public:
  // A null module stands for the program.
  template <class TFunction>
  PatchedImport(const wchar_t* module, const char* name, TFunction* replacement)
      : fSlot(FindSlot(reinterpret_cast<BYTE*>(GetModuleHandleW(module)), name)) {
    EXPECT_NE(fSlot, nullptr) << name << " is not imported";
    if (fSlot) fOriginal = Exchange(reinterpret_cast<ULONG_PTR>(replacement));
  }
  ~PatchedImport() {
    if (fSlot) Exchange(fOriginal);
  }
  PatchedImport(const PatchedImport&) = delete;
  PatchedImport& operator=(const PatchedImport&) = delete;

 private:
  static ULONG_PTR* FindSlot(BYTE* base, const char* name) {
    const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* const nt = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    const DWORD offset = nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    for (auto* library = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + offset); library->Name;
         ++library) {
      const auto* names = reinterpret_cast<const ULONG_PTR*>(base + library->OriginalFirstThunk);
      auto* slot = reinterpret_cast<ULONG_PTR*>(base + library->FirstThunk);
      for (; *names; ++names, ++slot) {
        if (IMAGE_SNAP_BY_ORDINAL(*names)) continue;
        const auto* const entry = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + *names);
        if (std::strcmp(reinterpret_cast<const char*>(entry->Name), name) == 0) return slot;
      }
    }
    return nullptr;
  }
  ULONG_PTR Exchange(ULONG_PTR value) {
    DWORD protection = 0;
    VirtualProtect(fSlot, sizeof(*fSlot), PAGE_READWRITE, &protection);
    const ULONG_PTR previous = *fSlot;
    *fSlot = value;
    VirtualProtect(fSlot, sizeof(*fSlot), protection, &protection);
    return previous;
  }

  ULONG_PTR* fSlot;
  ULONG_PTR fOriginal = 0;
};

// The function itself, for a replacement in the program, where the name leads to the replacement.
template <class TFunction>
TFunction* RealFunction(const wchar_t* library, const char* name) {
  return reinterpret_cast<TFunction*>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(library), name)));
}

}  // namespace NSMorvaneTest
