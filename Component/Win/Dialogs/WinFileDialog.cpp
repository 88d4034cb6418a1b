#include "Component/Win/Dialogs/WinFileDialog.h"

// Needs windows.h before it.
#include <ole2.h>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Base/PendingErrors.h"
#include "Component/Win/Platform/LateFunctions.h"
#include "Component/Win/Platform/PrivateMessages.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Window/WindowRegistry.h"
#include "Component/Win/Window/WinWindow.h"

namespace NSMorvane {

namespace {

// Messages that programs have registered begin here.
constexpr UINT kFirstRegisteredMessage = 0xC000;

// The dialogs, and what other programs have added to them, are made of objects that every thread has to
// announce.
class COleUse : CNotCopied {
 public:
  COleUse() {
    const auto begin = FindLate<decltype(OleInitialize)>(kOleLibrary, "OleInitialize");
    const auto end = FindLate<decltype(OleUninitialize)>(kOleLibrary, "OleUninitialize");
    if (begin && end && SUCCEEDED(begin(nullptr))) fEnd = end;
  }
  ~COleUse() {
    if (fEnd) fEnd();
  }
  bool IsOn() const { return fEnd != nullptr; }

 private:
  decltype(OleUninitialize)* fEnd = nullptr;
};

bool IsOnAnyMonitor(const TRect& rect) {
  const RECT native = ToNative(rect);
  return MonitorFromRect(&native, MONITOR_DEFAULTTONULL) != nullptr;
}

}  // namespace

// --- The run

CFileDialogInfo::CFileDialogInfo(IWindowHost& host, const TFileDialogRequest& request,
                                 const TDialogMemoryPlace& place)
    : fHost(host),
      fMemoryPlace(place),
      fDialogContext(request.fDialogContext),
      fThreaded(!request.fBlocking),
      fMemory(ReadDialogMemory(host.GetStartupStrings(), place, request.fDialogContext)),
      fOwnerHwnd(host.GetHiderWindow()) {
  if (request.fModalOwner) {
    TNativeWindow owner = {};
    MORVANE_CHECK(request.fModalOwner->IModalOwner_GetNativeWindow(owner));
    if (owner.fHwnd) {
      fOwnerHwnd = owner.fHwnd;
      fAppModal = false;
      // The dialog is centred over it.
      if (IsIconic(fOwnerHwnd)) ShowWindow(fOwnerHwnd, SW_RESTORE);
    }
  }
  const CWindowRegistry& windows = *host.GetWindowRegistry();
  const CWinWindow* const owner = fAppModal ? nullptr : windows.Find(fOwnerHwnd);
  fIsTopMost = owner ? owner->IsAlwaysOnTop() : fAppModal && windows.IsAnyAlwaysOnTop();
  // The client, or what the restoring has called, can have ended the owner.
  const bool isOverOwner = !fAppModal && IsWindow(fOwnerHwnd);
  fCenter = GetPopupCenter(nullptr, isOverOwner ? fOwnerHwnd : nullptr, windows.GetShownHwndsZ());
  if (!fThreaded) return;
  fDialogOpenHandle.Reset(CreateEventW(nullptr, FALSE, FALSE, nullptr));
  if (!fDialogOpenHandle.Get()) MORVANE_THROW(XOutOfMemory());
}

CFileDialogInfo::~CFileDialogInfo() = default;

void CFileDialogInfo::SetMessageTarget(HWND hwnd, WPARAM sign) {
  fMessageHwnd = hwnd;
  fSign = sign;
}

void CFileDialogInfo::SetThread(HANDLE thread, DWORD threadID) {
  fThread.Reset(thread);
  fThreadID = threadID;
}

void CFileDialogInfo::Run() noexcept {
  const COleUse ole;
  fHasOle = ole.IsOn();
  try {
    fURL = ShowDialog();
  } catch (...) {
    DebugPrint("A file dialog has failed.");
    fURL.clear();
  }
  // A frame whose window procedure could not be overridden to the end blocks nobody any more.
  if (const HWND frame = fFrameHwnd) OnFrameDestroyed(frame);
  fHasEnded = true;
}

void CFileDialogInfo::SignalOpen() {
  if (fThreaded) SetEvent(fDialogOpenHandle.Get());
}

void CFileDialogInfo::Deliver() {
  const TError error = ErrorOf([this] {
    if (IsAccepted()) {
      WriteDialogMemory(fHost.GetStartupStrings(), fMemoryPlace, fDialogContext, fMemory);
      MORVANE_CHECK(TellAccepted(fURL.c_str()));
    } else {
      MORVANE_CHECK(TellCancelled());
    }
  });
  fHost.GetBlocking()->Refresh();
  MORVANE_CHECK(error);
}

// --- The frame

void CFileDialogInfo::OnFrameMade(HWND frame) {
  fFrameHwnd = frame;
  if (fAppModal) {
    fAppModalHwnd = frame;
    SendMessageW(fMessageHwnd, kMsgPushAppModal, fSign, reinterpret_cast<LPARAM>(frame));
  }
  if (fIsTopMost) SetWindowTopMost(frame, true);
  if (IsWindowVisible(frame)) OnFrameShowing(frame);
}

void CFileDialogInfo::OnFrameShowing(HWND frame) {
  // If the queue is full, who waits sees the frame all the same.
  if (fThreaded) PostMessageW(frame, kMsgFrameShown, fSign, 0);
}

void CFileDialogInfo::OnFrameDestroyed(HWND hwnd) {
  fFrameHwnd = nullptr;
  if (!fAppModalHwnd) return;
  MORVANE_ASSERT(fAppModalHwnd==hwnd);
  SendMessageW(fMessageHwnd, kMsgPopAppModal, fSign, reinterpret_cast<LPARAM>(fAppModalHwnd));
  fAppModalHwnd = nullptr;
}

void CFileDialogInfo::PlaceFrame(HWND frame) const {
  const TRect& remembered = fMemory.fRect;
  TPoint corner = {remembered.fLeft, remembered.fTop};
  if (remembered.fLeft == remembered.fRight || !IsOnAnyMonitor(remembered)) {
    RECT rect = {};
    GetWindowRect(frame, &rect);
    // Sic: across, it is the top that is taken off.
    corner = {fCenter.fX - (rect.right - rect.top) / 2, fCenter.fY - (rect.bottom - rect.top) / 2};
    if (!IsOnAnyMonitor(
            {corner.fX, corner.fY, corner.fX + rect.right - rect.left, corner.fY + rect.bottom - rect.top}))
      return;
  }
  SetWindowPos(frame, nullptr, corner.fX, corner.fY, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
}

void CFileDialogInfo::RememberPlace(HWND frame) {
  RECT rect = {};
  if (GetWindowRect(frame, &rect)) fMemory.fRect = FromNative(rect);
}

// --- Questions to the application

// What is sent to this thread while it waits for the answer can bring it here again: such a message is not
// blocked.
bool CFileDialogInfo::Ask(UINT call) {
  if (fIsAsking) return false;
  const CFlagScope asking(fIsAsking);
  fAnswer = false;
  SendMessageW(fMessageHwnd, call, fSign, reinterpret_cast<LPARAM>(static_cast<IMessageCallListener*>(this)));
  return fAnswer;
}

bool CFileDialogInfo::IsAutoPlayQuery(UINT message) {
  if (message < kFirstRegisteredMessage || fIsAsking) return false;
  fAskedMessage = message;
  return Ask(kMsgListenerCall3);
}

void CFileDialogInfo::OnListenerCall1() {
  if (const HWND frame = fFrameHwnd) fAnswer = fHost.GetBlocking()->OnActivationAttempt(frame);
}

void CFileDialogInfo::OnListenerCall2() {
  if (const HWND frame = fFrameHwnd) fAnswer = fHost.GetBlocking()->OnClickAttempt(frame);
}

void CFileDialogInfo::OnListenerCall3() { fAnswer = fHost.IsAutoPlayQuery(fAskedMessage); }

void CFileDialogInfo::OnActivateApp(bool flag, DWORD threadId) {
  if (fThreaded) {
    PostMessageW(fMessageHwnd, kMsgAppActivation, flag ? 1 : 0, static_cast<LPARAM>(threadId));
    return;
  }
  const TError error = ErrorOf([&] { fHost.OnAppActivation(flag, threadId); });
  if (error != kOK) KeepPendingError(error);
}

// --- The window procedure of the frame

CFileDialogFrameProcWrapper::CFileDialogFrameProcWrapper(HWND frame, CFileDialogInfo& info)
    : CWindowProcOverrider(frame), fInfo(&info) {
  info.OnFrameMade(frame);
}

LRESULT CFileDialogFrameProcWrapper::WindowProc(CNativeWindowWrapper& wrapper, HWND hwnd, UINT message,
                                                WPARAM wParam, LPARAM lParam) {
  CFileDialogInfo* const info = fInfo;
  if (!info) return CWindowProcOverrider::WindowProc(wrapper, hwnd, message, wParam, lParam);
  if (info->IsAutoPlayQuery(message)) {
    SetWindowLongPtrW(hwnd, DWLP_MSGRESULT, 1);
    return 1;
  }
  if (info->IsFrameShown(message, wParam)) {
    info->SignalOpen();
    return 0;
  }
  switch (message) {
    case WM_ACTIVATE:
      // It can come before the frame is shown. The application must be there to answer.
      if (LOWORD(wParam) == WA_ACTIVE && info->IsActivationBlocked()) return 0;
      break;
    case WM_SETCURSOR:
      if (HIWORD(lParam) == WM_LBUTTONDOWN && info->IsClickBlocked()) return TRUE;
      break;
    case WM_DESTROY:
      fInfo = nullptr;
      info->OnFrameDestroyed(hwnd);
      break;
    case WM_ACTIVATEAPP:
      info->OnActivateApp(wParam != FALSE, static_cast<DWORD>(lParam));
      break;
    default:
      break;
  }
  const LRESULT result = CWindowProcOverrider::WindowProc(wrapper, hwnd, message, wParam, lParam);
  if (message == WM_SHOWWINDOW && wParam) info->OnFrameShowing(hwnd);
  return result;
}

}  // namespace NSMorvane
