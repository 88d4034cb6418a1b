// Another function in the place of one that a module imports, for as long as this lives: for failures of the
// system that cannot be brought about otherwise.
#pragma once

#include <windows.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <functional>
#include <map>
#include <string>

namespace NSMorvaneTest {

// Where a module keeps the address of a function that it imports. Linkers differ in how these are aligned.
class ImportSlot {
 public:
  ImportSlot() = default;
  explicit ImportSlot(BYTE* place) : fPlace(place) {}
  explicit operator bool() const { return fPlace != nullptr; }

  // Puts in another address, and returns the one before.
  ULONG_PTR Exchange(ULONG_PTR value) const {
    DWORD protection = 0;
    VirtualProtect(fPlace, sizeof(value), PAGE_READWRITE, &protection);
    ULONG_PTR previous = 0;
    std::memcpy(&previous, fPlace, sizeof(previous));
    std::memcpy(fPlace, &value, sizeof(value));
    VirtualProtect(fPlace, sizeof(value), protection, &protection);
    return previous;
  }

 private:
  BYTE* fPlace = nullptr;
};

// Calls use(library, function, slot) for each function that the module at `base` imports by its name.
template <class TUse>
void ForEachImport(BYTE* base, TUse use) {
  const auto read = [](auto& out, const BYTE* from) { std::memcpy(&out, from, sizeof(out)); };
  IMAGE_DOS_HEADER dos;
  read(dos, base);
  IMAGE_NT_HEADERS nt;
  read(nt, base + dos.e_lfanew);
  const BYTE* entry = base + nt.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
  IMAGE_IMPORT_DESCRIPTOR library;
  for (read(library, entry); library.Name; read(library, entry += sizeof(library))) {
    const BYTE* names = base + library.OriginalFirstThunk;
    BYTE* slot = base + library.FirstThunk;
    ULONG_PTR name = 0;
    for (read(name, names); name; read(name, names += sizeof(name)), slot += sizeof(name))
      if (!IMAGE_SNAP_BY_ORDINAL(name))
        use(reinterpret_cast<const char*>(base + library.Name),
            reinterpret_cast<const char*>(base + name + offsetof(IMAGE_IMPORT_BY_NAME, Name)),
            ImportSlot(slot));
  }
}

// The functions that the module under test looks up by their names, as the library does with those of
// libraries that it loads late. A lookup is made first, and its failure remains one.
class PatchedLookups {
 public:
  // Gives each lookup its answer: (name, what was found).
  inline static std::function<FARPROC(const std::string&, FARPROC)> gAnswer;

  // To the end of the process, in the place of GetProcAddress.
  static void Install(const wchar_t* module) {
    if (gLookUp != 0) return;
    ForEachImport(reinterpret_cast<BYTE*>(GetModuleHandleW(module)),
                  [](const char*, const std::string& import, const ImportSlot& slot) {
                    if (import == "GetProcAddress")
                      gLookUp = slot.Exchange(reinterpret_cast<ULONG_PTR>(&Find));
                  });
    EXPECT_NE(gLookUp, 0u) << "no lookups by name";
  }
  static void Replace(const std::string& name, ULONG_PTR replacement) {
    gReplacements[name].fFunction = replacement;
  }
  static void Restore(const std::string& name) {
    EXPECT_TRUE(gReplacements[name].fIsUsed) << name << " is neither imported nor looked up";
    gReplacements.erase(name);
  }

 private:
  struct TReplacement {
    ULONG_PTR fFunction = 0;
    bool fIsUsed = false;
  };

  static FARPROC WINAPI Find(HMODULE module, LPCSTR name) {
    const FARPROC found = reinterpret_cast<decltype(&Find)>(gLookUp)(module, name);
    if (!found || IS_INTRESOURCE(name)) return found;
    const auto it = gReplacements.find(name);
    if (it == gReplacements.end()) return gAnswer ? gAnswer(name, found) : found;
    it->second.fIsUsed = true;
    return reinterpret_cast<FARPROC>(it->second.fFunction);
  }

  inline static std::map<std::string, TReplacement> gReplacements;
  inline static ULONG_PTR gLookUp = 0;
};

class PatchedImport {
 public:
  // A null module stands for the program. What is not in the table of imports is looked up by its name.
  template <class TFunction>
  PatchedImport(const wchar_t* module, const char* name, TFunction* replacement) {
    ForEachImport(reinterpret_cast<BYTE*>(GetModuleHandleW(module)),
                  [&](const char*, const std::string& import, const ImportSlot& slot) {
                    if (import == name) fSlot = slot;
                  });
    if (fSlot) {
      fOriginal = fSlot.Exchange(reinterpret_cast<ULONG_PTR>(replacement));
      return;
    }
    fName = name;
    PatchedLookups::Install(module);
    PatchedLookups::Replace(fName, reinterpret_cast<ULONG_PTR>(replacement));
  }
  ~PatchedImport() {
    if (fSlot)
      fSlot.Exchange(fOriginal);
    else
      PatchedLookups::Restore(fName);
  }
  PatchedImport(const PatchedImport&) = delete;
  PatchedImport& operator=(const PatchedImport&) = delete;

 private:
  ImportSlot fSlot;
  ULONG_PTR fOriginal = 0;
  std::string fName;  // if there is no slot
};

// The function itself, for a replacement in the program, where the name leads to the replacement.
template <class TFunction>
TFunction* RealFunction(const wchar_t* library, const char* name) {
  return reinterpret_cast<TFunction*>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(library), name)));
}

}  // namespace NSMorvaneTest
