// Makes any function that a module imports fail once: the first, the second or the n-th time that the main
// thread calls it. The list of functions is the import table itself, and what the main thread looks up by
// name.
//
// In the place of each function stands a few bytes of code that count the calls and, for the one that is to
// fail, set the last error and answer the code of failure instead of going on to the function. They pass the
// arguments on untouched and so need not know them.
#pragma once

#include <windows.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "Support/PatchedImport.h"

namespace NSMorvaneTest {

class ImportFailures {
 public:
  struct Import {
    // The stub reads these five by their places.
    std::uint64_t fCalls = 0;
    std::uint64_t fFailingCall = 0;  // counted from 1; 0 for none
    ULONG_PTR fFunction = 0;
    std::uint64_t fThread = 0;
    std::uint64_t fFailure = 0;

    std::string fName;
    ImportSlot fSlot;
  };

  // For the calls of this thread. The module stays patched to the end of the process.
  explicit ImportFailures(const wchar_t* module) {
    PatchedLookups::Install(module);
    Collect(reinterpret_cast<BYTE*>(GetModuleHandleW(module)));
    fImports.reserve(fImports.size() + kMaxLookups);  // they stay where they are
    fStubs = static_cast<BYTE*>(VirtualAlloc(nullptr, fImports.capacity() * kStubRoom,
                                             MEM_COMMIT | MEM_RESERVE, PAGE_EXECUTE_READWRITE));
    for (Import& import : fImports) import.fFunction = import.fSlot.Exchange(WriteStub(import));
    PatchedLookups::gAnswer = [this, thread = GetCurrentThreadId()](const std::string& name, FARPROC found) {
      return GetCurrentThreadId() == thread ? StubOf(name, found) : found;
    };
  }

  std::vector<Import>& All() { return fImports; }
  // One that gives back: its failure is no failure of the library's.
  static bool IsOnlyCounted(const Import& import) {
    return std::find(kCounted.begin(), kCounted.end(), import.fName) != kCounted.end();
  }
  std::int64_t CallsOf(const char* name) const {
    const auto it = std::find_if(fImports.begin(), fImports.end(),
                                 [name](const Import& import) { return import.fName == name; });
    return it == fImports.end() ? 0 : static_cast<std::int64_t>(it->fCalls);
  }

 private:
  // What has no failure that a caller could tell, or whose failure is the loss itself: what gives back, what
  // turns the loop, locks, threads, and the runtime of the compiler.
  static bool IsLeftAlone(const std::string& library, const std::string& name) {
    static const std::vector<std::string> kPrefixes = {
        "Delete",  "Destroy",       "Release", "Close",   "Free",    "Remove",    "Unregister", "End",
        "Restore", "Kill",          "Unmap",   "Enter",   "Leave",   "Try",       "Acquire",    "Initialize",
        "Tls",     "Rtl",           "Virtual", "Resume",  "Suspend", "SetThread", "GetThread",  "GetCurrent",
        "GetTick", "GetSystemTime", "Wait",    "MsgWait", "Post",    "Translate", "DefWindow",  "CallWindow",
        "Is",      "PtIn"};
    static const std::vector<std::string> kNames = {"GlobalFree",
                                                    "GlobalUnlock",
                                                    "RegCloseKey",
                                                    "DragFinish",
                                                    "OleUninitialize",
                                                    "PeekMessageW",
                                                    "DispatchMessageW",
                                                    "GetLastError",
                                                    "SetLastError",
                                                    "GetModuleHandleW",
                                                    "Sleep",
                                                    "SetEvent",
                                                    "ResetEvent",
                                                    "RaiseException",
                                                    "OutputDebugStringA",
                                                    "DuplicateHandle",
                                                    "SetProcessAffinityMask",
                                                    "SetThreadContext",
                                                    "SetThreadPriority",
                                                    "CreateEventA",
                                                    "CreateSemaphoreA",
                                                    "__C_specific_handler",
                                                    "AddVectoredExceptionHandler",
                                                    "GetHandleInformation",
                                                    "GetProcessAffinityMask",
                                                    "GdiFlush",
                                                    "ShowWindow"};
    if (library == "msvcrt.dll") return true;
    if (std::find(kNames.begin(), kNames.end(), name) != kNames.end()) return true;
    return std::any_of(kPrefixes.begin(), kPrefixes.end(),
                       [&](const std::string& prefix) { return name.starts_with(prefix); });
  }
  static std::uint64_t FailureOf(const std::string& library, const std::string& name) {
    if (library == "ADVAPI32.dll") return ERROR_ACCESS_DENIED;
    if (name == "OleInitialize" || name == "SHGetMalloc") return 0x8007000E;  // E_OUTOFMEMORY
    return 0;
  }

  void Collect(BYTE* base) {
    ForEachImport(base, [this](const char* library, const std::string& name, const ImportSlot& slot) {
      const bool isCountedOnly = kCounted.end() != std::find(kCounted.begin(), kCounted.end(), name);
      if (IsLeftAlone(library, name) && !isCountedOnly) return;
      Add(library, name).fSlot = slot;
    });
  }
  Import& Add(const std::string& library, const std::string& name) {
    Import& import = fImports.emplace_back();
    import.fThread = GetCurrentThreadId();
    import.fFailure = FailureOf(library, name);
    import.fName = name;
    return import;
  }
  // The same one for each lookup of a function.
  FARPROC StubOf(const std::string& name, FARPROC found) {
    if (IsLeftAlone("", name)) return found;
    auto it = std::find_if(fImports.begin(), fImports.end(),
                           [&](const Import& import) { return import.fName == name; });
    if (it == fImports.end()) {
      if (fImports.size() == fImports.capacity()) return found;
      Add("", name).fFunction = reinterpret_cast<ULONG_PTR>(found);
      it = fImports.end() - 1;
      WriteStub(*it);
    }
    return reinterpret_cast<FARPROC>(StubPlace(*it));
  }

  BYTE* StubPlace(const Import& import) const { return fStubs + (&import - fImports.data()) * kStubRoom; }
  // Its address.
  ULONG_PTR WriteStub(const Import& import) const {
    static_assert(offsetof(Import, fFailure) == 32);
    BYTE* stub = StubPlace(import);
    const auto put = [&stub](std::initializer_list<int> bytes) {
      for (const int byte : bytes) *stub++ = static_cast<BYTE>(byte);
    };
    put({0x49, 0xBB});  // mov r11, &import
    const auto address = reinterpret_cast<std::uint64_t>(&import);
    std::memcpy(stub, &address, sizeof(address));
    stub += sizeof(address);
    put({0x65, 0x4C, 0x8B, 0x14, 0x25, 0x48, 0, 0, 0});        // mov r10, gs:[0x48], the thread
    put({0x4D, 0x3B, 0x53, 24});                               // cmp r10, [r11+24]
    put({0x75, 12});                                           // jne pass
    put({0x49, 0xFF, 0x03});                                   // inc qword [r11]
    put({0x4D, 0x8B, 0x13});                                   // mov r10, [r11]
    put({0x4D, 0x3B, 0x53, 8});                                // cmp r10, [r11+8]
    put({0x74, 4});                                            // je fail
    put({0x41, 0xFF, 0x63, 16});                               // pass: jmp [r11+16]
    put({0x65, 0xC7, 0x04, 0x25, 0x68, 0, 0, 0, 8, 0, 0, 0});  // fail: the last error, out of memory
    put({0x49, 0x8B, 0x43, 32});                               // mov rax, [r11+32]
    put({0xC3});                                               // ret
    return reinterpret_cast<ULONG_PTR>(StubPlace(import));
  }

 public:
  // Counted, and never made to fail: what gives back.
  inline static const std::vector<std::string> kCounted = {
      "DeleteObject", "DeleteDC",    "ReleaseDC",
      "GlobalFree",   "DestroyMenu", "CloseClipboard",
      "DestroyIcon",  "RegCloseKey", "DestroyAcceleratorTable"};

 private:
  static constexpr std::size_t kStubRoom = 64;
  static constexpr std::size_t kMaxLookups = 32;

  std::vector<Import> fImports;
  BYTE* fStubs = nullptr;
};

}  // namespace NSMorvaneTest
