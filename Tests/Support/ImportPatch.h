// Another function in the place of one that a module imports, for as long as this lives.
#pragma once

#include <windows.h>

#include <gtest/gtest.h>

#include <cstring>
#include <utility>

namespace NSMorvaneTest {

class ImportPatch {
 public:
  template <class TFunction>
  ImportPatch(const wchar_t* module, const char* name, TFunction* function)
      : fSlot(FindSlot(reinterpret_cast<BYTE*>(GetModuleHandleW(module)), name)) {
    if (fSlot) fOriginal = Exchange(reinterpret_cast<ULONG_PTR>(function));
    EXPECT_NE(fSlot, nullptr) << name;
  }
  ~ImportPatch() {
    if (fSlot) Exchange(fOriginal);
  }
  ImportPatch(const ImportPatch&) = delete;
  ImportPatch& operator=(const ImportPatch&) = delete;

 private:
  static ULONG_PTR* FindSlot(BYTE* module, const char* name) {
    const auto& dos = *reinterpret_cast<const IMAGE_DOS_HEADER*>(module);
    const auto& headers = *reinterpret_cast<const IMAGE_NT_HEADERS*>(module + dos.e_lfanew);
    const DWORD imports = headers.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    for (auto* entry = reinterpret_cast<IMAGE_IMPORT_DESCRIPTOR*>(module + imports); entry->Name; ++entry) {
      const auto* names = reinterpret_cast<const IMAGE_THUNK_DATA*>(module + entry->OriginalFirstThunk);
      auto* slots = reinterpret_cast<ULONG_PTR*>(module + entry->FirstThunk);
      for (; names->u1.AddressOfData; ++names, ++slots) {
        if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) continue;
        const auto* import = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(module + names->u1.AddressOfData);
        if (std::strcmp(reinterpret_cast<const char*>(import->Name), name) == 0) return slots;
      }
    }
    return nullptr;
  }
  ULONG_PTR Exchange(ULONG_PTR value) const {
    DWORD protection;
    VirtualProtect(fSlot, sizeof(*fSlot), PAGE_READWRITE, &protection);
    const ULONG_PTR old = std::exchange(*fSlot, value);
    VirtualProtect(fSlot, sizeof(*fSlot), protection, &protection);
    return old;
  }

  ULONG_PTR* fSlot;
  ULONG_PTR fOriginal = 0;
};

}  // namespace NSMorvaneTest
