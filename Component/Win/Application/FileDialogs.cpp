#include "Component/Win/Application/FileDialogs.h"

#include <algorithm>
#include <cwchar>
#include <iterator>
#include <memory>
#include <utility>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Base/PendingErrors.h"
#include "Component/Win/Application/IdleCalls.h"
#include "Component/Win/Application/UnseenWindows.h"
#include "Component/Win/Dialogs/WinFileDialog.h"
#include "Component/Win/Platform/MessageCallListeners.h"
#include "Component/Win/Window/Blocking.h"

namespace NSMorvane {

namespace {

constexpr DWORD kOpenPollMS = 10;
constexpr DWORD kClosePollMS = 50;
// Nobody waits longer than that for a thread that hangs.
constexpr ULONGLONG kThreadLimitMS = 20000;
// A dialog that is in sight for that long and has not told yet is busy, in a slow folder say.
constexpr ULONGLONG kBusyLimitMS = 1000;

// What a thread takes along.
struct TDialogThread {
  boost::shared_ptr<CFileDialogInfo> fDialog;
  HWND fTarget;
  WPARAM fSign;
};

DWORD WINAPI DialogThreadProc(void* argument) {
  const std::unique_ptr<TDialogThread> threadInstance(static_cast<TDialogThread*>(argument));
  MORVANE_ASSERT(0!=threadInstance);
  CFileDialogInfo& dialog = *threadInstance->fDialog;
  dialog.Run();
  dialog.SignalOpen();
  if (!dialog.ReportsFromThread()) return 0;
  // A full queue must not lose the result.
  const auto post = [&] {
    return PostMessageW(threadInstance->fTarget, dialog.GetResultMessage(), threadInstance->fSign,
                        reinterpret_cast<LPARAM>(&dialog));
  };
  while (!post() && IsWindow(threadInstance->fTarget)) Sleep(kOpenPollMS);
  return 0;
}

// The dialog, and before it a question that lies over it.
BOOL CALLBACK CancelDialog(HWND hwnd, LPARAM) {
  wchar_t name[8] = {};
  GetClassNameW(hwnd, name, static_cast<int>(std::size(name)));
  if (!IsWindowVisible(hwnd) || std::wcscmp(name, L"#32770") != 0) return TRUE;
  const bool isQuestion = GetDlgItem(hwnd, IDNO) != nullptr;
  PostMessageW(hwnd, WM_COMMAND, isQuestion ? IDNO : IDCANCEL, 0);
  return TRUE;
}

}  // namespace

CFileDialogs::CFileDialogs(const CMessageTarget& target, WPARAM sign, CMessageCallListeners& listeners,
                           CIdleCalls& idleCalls, CBlocking& blocking)
    : fTarget(target), fSign(sign), fListeners(listeners), fIdleCalls(idleCalls), fBlocking(blocking) {}

void CFileDialogs::RequireRun() const {
  if (fIsEnding) MORVANE_THROW(XIllegalCallSequence());
}

void CFileDialogs::RunBlocking(const TDialog& dialog) {
  RequireRun();
  fIdleCalls.WakeUp();
  dialog->SetMessageTarget(fTarget.GetHwnd(), fSign);
  Register(*dialog);
  dialog->Run();
  Unregister(*dialog);
  fBlocking.SettleOwner(dialog->GetBlockedOwner());
  if (ErrorOf([&] { dialog->Deliver(); }) != kOK) DebugPrint(dialog->GetFailureLine());
}

void CFileDialogs::RunThreaded(const TDialog& dialog) {
  RequireRun();
  dialog->SetMessageTarget(fTarget.GetHwnd(), fSign);
  auto threadInstance = std::make_unique<TDialogThread>(TDialogThread{dialog, fTarget.GetHwnd(), fSign});
  fDialogs.reserve(fDialogs.size() + 1);
  Register(*dialog);
  fDialogs.push_back(dialog);
  DWORD threadID = 0;
  const HANDLE thread =
      CreateThread(nullptr, 0, DialogThreadProc, threadInstance.get(), CREATE_SUSPENDED, &threadID);
  if (!thread) {
    Remove(dialog);
    MORVANE_THROW(XOutOfMemory());
  }
  threadInstance.release();  // the thread's
  dialog->SetThread(thread, threadID);
  ResumeThread(thread);
  WaitUntilOpen(*dialog);
}

// What the dialog sends wakes this thread, and is handled inside DrainIdleMessages.
void CFileDialogs::WaitUntilOpen(const CFileDialogInfo& dialog) {
  const HANDLE signs[] = {dialog.GetOpenEvent(), dialog.GetThread()};
  const ULONGLONG begin = GetTickCount64();
  ULONGLONG now = begin, seen = 0;
  while (now - begin < kThreadLimitMS && (seen == 0 || now - seen < kBusyLimitMS)) {
    const DWORD sign = MsgWaitForMultipleObjects(2, signs, FALSE, kOpenPollMS, QS_SENDMESSAGE);
    if (sign != WAIT_TIMEOUT && sign != WAIT_OBJECT_0 + 2) return;
    fIdleCalls.DrainIdleMessages();
    now = GetTickCount64();
    if (!IsWindowVisible(dialog.GetFrameHwnd()))
      seen = 0;
    else if (seen == 0)
      seen = now;
  }
}

bool CFileDialogs::OnResult(UINT message, const void* source) {
  const auto it = std::find_if(fDialogs.begin(), fDialogs.end(),
                               [source](const TDialog& dialog) { return dialog.get() == source; });
  // Anyone can send numbers to a window, and what has been closed is told already.
  if (it == fDialogs.end() || !(*it)->HasEnded() || (*it)->GetResultMessage() != message) return false;
  const TDialog dialog = *it;
  Close(*dialog);  // the thread has nothing more to do, and goes first
  Remove(dialog);
  fBlocking.SettleOwner(dialog->GetBlockedOwner());
  dialog->Deliver();
  return true;
}

void CFileDialogs::EndAll(bool tellsClients) {
  fIsEnding = true;
  TError firstError = kOK;
  while (!fDialogs.empty()) {
    const TDialog dialog = fDialogs.front();
    Close(*dialog);
    Remove(dialog);
    fBlocking.SettleOwner(dialog->GetBlockedOwner());
    if (!tellsClients || !dialog->ReportsFromThread()) continue;
    const TError error = ErrorOf([&] { dialog->Deliver(); });
    if (firstError == kOK) firstError = error;
  }
  fBlocking.PopForeignDialogs();
  MORVANE_CHECK(firstError);
}

// Waits for the end of the thread. A client's behaviour that hangs keeps nobody from quitting.
void CFileDialogs::Close(const CFileDialogInfo& dialog) {
  const HANDLE thread = dialog.GetThread();
  const ULONGLONG begin = GetTickCount64();
  for (ULONGLONG now = begin, nextCancel = begin; now - begin < kThreadLimitMS; now = GetTickCount64()) {
    // Not each time that something wakes this thread.
    if (now >= nextCancel && !dialog.HasEnded()) {
      EnumThreadWindows(dialog.GetThreadID(), CancelDialog, 0);
      nextCancel = now + kClosePollMS;
    }
    if (MsgWaitForMultipleObjects(1, &thread, FALSE, kClosePollMS, QS_SENDMESSAGE) == WAIT_OBJECT_0) return;
    fIdleCalls.DrainIdleMessages();
  }
  MORVANE_UNREACHED();
}

void CFileDialogs::Register(CFileDialogInfo& dialog) {
  try {
    fListeners.Add(&dialog);
    if (dialog.GetBlockedOwner()) fBlocking.AddOwnedForeignDialog(&dialog);
  } catch (...) {
    Unregister(dialog);
    throw;
  }
}

void CFileDialogs::Unregister(CFileDialogInfo& dialog) {
  fListeners.Remove(&dialog);
  fBlocking.RemoveOwnedForeignDialog(&dialog);
}

void CFileDialogs::Remove(const TDialog& dialog) {
  const TDialog removed = dialog;  // the argument may stand in the list
  std::erase(fDialogs, removed);
  Unregister(*removed);
}

void CFileDialogs::ForgetEnded() {
  for (std::size_t i = fDialogs.size(); i-- > 0;) {
    if (i >= fDialogs.size()) continue;  // a callback has told or closed some
    const TDialog dialog = fDialogs[i];
    if (dialog->ReportsFromThread() || WaitForSingleObject(dialog->GetThread(), 0) != WAIT_OBJECT_0) continue;
    Remove(dialog);
    fBlocking.SettleOwner(dialog->GetBlockedOwner());
    const TError error = ErrorOf([this] { fBlocking.Refresh(); });
    if (error != kOK) KeepPendingError(error);
  }
}

}  // namespace NSMorvane
