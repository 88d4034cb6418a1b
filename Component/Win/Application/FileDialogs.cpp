#include "Component/Win/Application/FileDialogs.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Win/Application/IdleCalls.h"
#include "Component/Win/Application/UnseenWindows.h"
#include "Component/Win/Dialogs/WinFileDialog.h"
#include "Component/Win/Platform/MessageCallListeners.h"

namespace NSMorvane {

namespace {

constexpr DWORD kOpenPollMS = 10;
constexpr DWORD kClosePollMS = 50;
constexpr int kClosePolls = 100;  // a client's behaviour that hangs keeps nobody from quitting

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

// The dialog itself, and a question that it may be asking.
BOOL CALLBACK CancelWindow(HWND hwnd, LPARAM) {
  if (IsWindowVisible(hwnd)) {
    PostMessageW(hwnd, WM_COMMAND, IDNO, 0);
    PostMessageW(hwnd, WM_COMMAND, IDCANCEL, 0);
  }
  return TRUE;
}

}  // namespace

CFileDialogs::CFileDialogs(const CMessageTarget& target, WPARAM sign, CMessageCallListeners& listeners,
                           CIdleCalls& idleCalls)
    : fTarget(target), fSign(sign), fListeners(listeners), fIdleCalls(idleCalls) {}

void CFileDialogs::RunBlocking(const TDialog& dialog) {
  fIdleCalls.WakeUp();
  dialog->SetMessageTarget(fTarget.GetHwnd(), fSign);
  fListeners.Add(dialog.get());
  dialog->Run();
  fListeners.Remove(dialog.get());
  if (ErrorOf([&] { dialog->Deliver(); }) != kOK) DebugPrint(dialog->GetFailureLine());
}

void CFileDialogs::RunThreaded(const TDialog& dialog) {
  ForgetEnded();
  dialog->SetMessageTarget(fTarget.GetHwnd(), fSign);
  auto threadInstance = std::make_unique<TDialogThread>(TDialogThread{dialog, fTarget.GetHwnd(), fSign});
  Add(dialog);
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

// What the dialog sends is handled inside DrainIdleMessages.
void CFileDialogs::WaitUntilOpen(const CFileDialogInfo& dialog) {
  while (WaitForSingleObject(dialog.GetOpenEvent(), kOpenPollMS) == WAIT_TIMEOUT)
    fIdleCalls.DrainIdleMessages();
}

bool CFileDialogs::OnResult(UINT message, const void* source) {
  const auto it = std::find_if(fDialogs.begin(), fDialogs.end(),
                               [source](const TDialog& dialog) { return dialog.get() == source; });
  // Anyone can send numbers to a window.
  if (it == fDialogs.end() || !(*it)->HasEnded() || (*it)->GetResultMessage() != message) {
    MORVANE_UNREACHED();
    return false;
  }
  const TDialog dialog = *it;
  Remove(dialog);
  dialog->Deliver();
  return true;
}

void CFileDialogs::EndAll(bool tellsClients) {
  TError firstError = kOK;
  while (!fDialogs.empty()) {
    const TDialog dialog = fDialogs.front();
    Close(*dialog);
    Remove(dialog);
    if (!tellsClients || !dialog->ReportsFromThread()) continue;
    const TError error = ErrorOf([&] { dialog->Deliver(); });
    if (firstError == kOK) firstError = error;
  }
  MORVANE_CHECK(firstError);
}

void CFileDialogs::Close(const CFileDialogInfo& dialog) {
  for (int i = 0; i < kClosePolls; ++i) {
    if (WaitForSingleObject(dialog.GetThread(), i == 0 ? 0 : kClosePollMS) == WAIT_OBJECT_0) return;
    EnumThreadWindows(dialog.GetThreadID(), CancelWindow, 0);
    fIdleCalls.DrainIdleMessages();
  }
  MORVANE_UNREACHED();
}

void CFileDialogs::Add(const TDialog& dialog) {
  fDialogs.push_back(dialog);
  fListeners.Add(dialog.get());
}

void CFileDialogs::Remove(const TDialog& dialog) {
  const TDialog removed = dialog;  // the argument may stand in the list
  std::erase(fDialogs, removed);
  fListeners.Remove(removed.get());
}

// Those that end in silence.
void CFileDialogs::ForgetEnded() {
  const std::vector<TDialog> dialogs = fDialogs;
  for (const TDialog& dialog : dialogs)
    if (!dialog->ReportsFromThread() && WaitForSingleObject(dialog->GetThread(), 0) == WAIT_OBJECT_0)
      Remove(dialog);
}

}  // namespace NSMorvane
