#include "Component/Win/Launch/SingleInstance.h"

#include <atomic>
#include <memory>
#include <utility>

#include "Component/Win/Platform/UtilsWin.h"

namespace NSMorvane {

using NSTextPackage::TString;

CFileMapping* gFileMappingInstance = nullptr;

namespace {

// What is in gFileMappingInstance, for as long as that is there. Process-wide: the record stands for the
// process.
CFileMappingView* gInstanceView = nullptr;
TSingleInstanceRecord* gInstanceRecord = nullptr;

constexpr int kMaxTries = 100;
constexpr DWORD kRetryMS = 100;

// The record in a view. A mapping of the same name that is too small to hold one is a stranger's.
TSingleInstanceRecord& RecordIn(const CFileMappingView& view) {
  if (view.GetSize() < sizeof(TSingleInstanceRecord)) MORVANE_THROW(std::exception());
  return *static_cast<TSingleInstanceRecord*>(view.GetAddress());
}

// The other side is another process: the flag is what orders the rest of the record.
std::atomic_ref<std::uint32_t> PendingFlag(TSingleInstanceRecord& record) {
  return std::atomic_ref<std::uint32_t>(record.fCommandLinePending);
}

}  // namespace

// --- Shared memory

CFileMapping::CFileMapping(const TString& name, std::uint32_t size)
    : fName(name),
      fHandle(::CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE | SEC_COMMIT, 0, size,
                                   WinText(fName))) {
  if (!fHandle) MORVANE_CHECK_LAST_ERROR();
}

CFileMapping::CFileMapping(const TString& name) : fName(name), fHandle(nullptr) {
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
  // Before the view, which goes first if something fails from here on.
  auto mapping = std::make_unique<CFileMapping>(name, sizeof(TSingleInstanceRecord));
  auto view = std::make_unique<CFileMappingView>(*mapping);
  TSingleInstanceRecord& record = RecordIn(*view);
  PendingFlag(record).store(0);
  record.fProcessId = ::GetCurrentProcessId();
  record.fThreadId = ::GetCurrentThreadId();
  // From its first look at its messages on, a thread has a queue that others can post to.
  MSG msg;
  ::PeekMessageW(&msg, nullptr, WM_USER, WM_USER, PM_NOREMOVE);
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
      if (PendingFlag(record).load() == 0) {
        const DWORD processId = record.fProcessId;
        const DWORD threadId = record.fThreadId;
        WriteCommandLine(record, commandLine);
        PendingFlag(record).store(1);
        // So that the first process may come to the front with what it opens.
        ::AllowSetForegroundWindow(processId);
        ::PostThreadMessageW(threadId, kMsgSecondInstance, 0, 0);
        return;
      }
    }
    ::Sleep(kRetryMS);
  }
}

bool IsCommandLinePending() { return gInstanceRecord && PendingFlag(*gInstanceRecord).load() != 0; }

TString TakeSentCommandLine() {
  MORVANE_ASSERT(0!=gFileMappingInstance);
  if (!gFileMappingInstance) return TString();
  TSingleInstanceRecord& record = *gInstanceRecord;
  MORVANE_ASSERT_TEXT("dwordData[0]!=0", PendingFlag(record).load() != 0);
  // What the record says of the process does not matter here. Sic: the text has one "=".
  MORVANE_ASSERT_TEXT("processID=::GetCurrentProcessId()", ::GetCurrentProcessId() != 0);
  const DWORD threadID = record.fThreadId;
  MORVANE_ASSERT(threadID==::GetCurrentThreadId());
  const TString commandLine = ReadCommandLine(record);
  PendingFlag(record).store(0);
  return commandLine;
}

void ReleaseFirstInstance() {
  gInstanceRecord = nullptr;
  delete std::exchange(gInstanceView, nullptr);
  delete gFileMappingInstance;
  gFileMappingInstance = nullptr;
}

}  // namespace NSMorvane
