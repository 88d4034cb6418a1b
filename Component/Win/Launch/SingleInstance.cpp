#include "Component/Win/Launch/SingleInstance.h"

#include <atomic>
#include <memory>
#include <utility>

#include "Component/Win/Platform/UtilsWin.h"

namespace NSMorvane {

using NSTextPackage::TString;

CFileMapping* gFileMappingInstance = nullptr;

namespace {

// The view of gFileMappingInstance and the record in it; null without a mapping. Process-wide, since the
// record stands for the process.
CFileMappingView* gInstanceView = nullptr;
TSingleInstanceRecord* gInstanceRecord = nullptr;

constexpr int kMaxTries = 100;
constexpr DWORD kRetryMS = 100;

// The record in a view. Throws if the mapping is too small for a record, since another program has made it
// then.
TSingleInstanceRecord& RecordIn(const CFileMappingView& view) {
  if (view.GetSize() < sizeof(TSingleInstanceRecord)) MORVANE_THROW(std::exception());
  return *static_cast<TSingleInstanceRecord*>(view.GetAddress());
}

// The record is shared with another process; this flag orders the access to the rest of it.
std::atomic_ref<std::uint32_t> PendingFlag(TSingleInstanceRecord& record) {
  return std::atomic_ref<std::uint32_t>(record.fCommandLinePending);
}

std::atomic_ref<std::uint32_t> ThreadId(TSingleInstanceRecord& record) {
  return std::atomic_ref<std::uint32_t>(record.fThreadId);
}

}  // namespace

// --- Shared memory

CFileMapping::CFileMapping(const TString& name, std::uint32_t size)
    : fName(name),
      fHandle(::CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE | SEC_COMMIT, 0, size,
                                   WinText(fName))),
      fWasThere(::GetLastError() == ERROR_ALREADY_EXISTS) {
  if (!fHandle) MORVANE_CHECK_LAST_ERROR();
}

CFileMapping::CFileMapping(const TString& name) : fName(name), fHandle(nullptr), fWasThere(true) {
  for (int i = 0; i < kMaxTries && !fHandle; ++i) {
    fHandle = ::OpenFileMappingW(FILE_MAP_ALL_ACCESS, FALSE, WinText(fName));
    if (!fHandle) {
      const DWORD error = ::GetLastError();
      ::Sleep(kRetryMS);
      ::SetLastError(error);
    }
  }
  if (!fHandle) MORVANE_CHECK_LAST_ERROR();
}

CFileMapping::~CFileMapping() {
  const BOOL okFlag = ::CloseHandle(fHandle);
  MORVANE_ASSERT(TRUE==okFlag);
}

CFileMappingView::CFileMappingView(const CFileMapping& mapping)
    : fMapping(mapping), fAddress(::MapViewOfFile(fMapping.GetHandle(), FILE_MAP_ALL_ACCESS, 0, 0, 0)) {
  if (!fAddress) MORVANE_CHECK_LAST_ERROR();
}

CFileMappingView::~CFileMappingView() {
  const BOOL okFlag = ::UnmapViewOfFile(fAddress);
  MORVANE_ASSERT(TRUE==okFlag);
}

std::size_t CFileMappingView::GetSize() const {
  MEMORY_BASIC_INFORMATION info = {};
  if (!fAddress || ::VirtualQuery(fAddress, &info, sizeof(info)) == 0) return 0;
  return info.RegionSize;
}

// --- The first process and the others

bool TryBecomeFirstInstance(const TString& name) {
  if (const HANDLE existing = ::OpenFileMappingW(FILE_MAP_ALL_ACCESS, FALSE, WinText(name))) {
    const BOOL okFlag = ::CloseHandle(existing);
    MORVANE_ASSERT(TRUE==okFlag);
    return false;
  }
  // Out of reach, since the first process has higher rights, or no mapping at all: this process runs alone.
  const DWORD error = ::GetLastError();
  if (error == ERROR_ACCESS_DENIED || error == ERROR_INVALID_HANDLE) return true;
  // Declared before the view, which has to end first if something fails.
  auto mapping = std::make_unique<CFileMapping>(name, sizeof(TSingleInstanceRecord));
  if (mapping->WasThere()) return false;  // another process was faster
  auto view = std::make_unique<CFileMappingView>(*mapping);
  TSingleInstanceRecord& record = RecordIn(*view);
  // A thread has a queue that others can post to only after it has looked for messages.
  MSG msg;
  ::PeekMessageW(&msg, nullptr, WM_USER, WM_USER, PM_NOREMOVE);
  // The flag of the new record is 0 already: who is fast may have raised it before now. The thread comes
  // last, since others wait for it.
  record.fProcessId = ::GetCurrentProcessId();
  ThreadId(record).store(::GetCurrentThreadId());
  gFileMappingInstance = mapping.release();
  gInstanceView = view.release();
  gInstanceRecord = &record;
  return true;
}

void SendCommandLineToFirstInstance(const TString& name, const TString& commandLine) {
  MORVANE_ASSERT(0==gFileMappingInstance);
  for (int i = 0; i < kMaxTries; ++i) {
    {
      const CFileMapping mapping(name);
      const CFileMappingView view(mapping);
      TSingleInstanceRecord& record = RecordIn(view);
      // 0 while the first process is still making the record.
      const DWORD threadId = ThreadId(record).load();
      std::uint32_t expected = kRecordIsFree;
      if (threadId != 0 && PendingFlag(record).compare_exchange_strong(expected, kRecordIsBeingWritten)) {
        WriteCommandLine(record, commandLine);
        // Allows the first process to come to the front with what it opens, which it may do once it sees the
        // flag.
        ::AllowSetForegroundWindow(record.fProcessId);
        PendingFlag(record).store(kCommandLineWaits);
        ::PostThreadMessageW(threadId, kMsgSecondInstance, 0, 0);
        return;
      }
    }
    ::Sleep(kRetryMS);
  }
}

bool IsCommandLinePending() {
  return gInstanceRecord && PendingFlag(*gInstanceRecord).load() == kCommandLineWaits;
}

TString TakeSentCommandLine() {
  MORVANE_ASSERT(0!=gFileMappingInstance);
  if (!gFileMappingInstance) return TString();
  TSingleInstanceRecord& record = *gInstanceRecord;
  MORVANE_ASSERT_TEXT("dwordData[0]!=0", PendingFlag(record).load() != 0);
  // The process in the record is not compared. Sic: the text has one "=".
  MORVANE_ASSERT_TEXT("processID=::GetCurrentProcessId()", ::GetCurrentProcessId() != 0);
  const DWORD threadID = record.fThreadId;
  MORVANE_ASSERT(threadID==::GetCurrentThreadId());
  const TString commandLine = ReadCommandLine(record);
  PendingFlag(record).store(kRecordIsFree);
  return commandLine;
}

void ReleaseFirstInstance() {
  gInstanceRecord = nullptr;
  delete std::exchange(gInstanceView, nullptr);
  delete gFileMappingInstance;
  gFileMappingInstance = nullptr;
}

}  // namespace NSMorvane
