// What the open dialog, the save dialog and the folder chooser have in common: the run, on the main thread or
// on a thread of the dialog's own, and the frame of the system's dialog, whose window procedure is
// overridden.
//
// A dialog on a thread of its own touches what it holds itself, and the client's customise behaviour. For
// everything of the application it asks the main thread by a sent message.
#pragma once

#include <windows.h>

#include <atomic>
#include <cstdint>
#include <string>

#include "Component/Win/Dialogs/DialogMemory.h"
#include "Component/Win/Platform/MessageCallListeners.h"
#include "Component/Win/Platform/NativeWindowWrapper.h"
#include "Component/Win/Platform/PrivateMessages.h"
#include "Component/Win/Platform/UtilsWinHandles.h"
#include "Component/Win/Window/Blocking.h"
#include "Component/Win/Window/WindowHost.h"

namespace NSMorvane {

// How a dialog is asked for.
struct TFileDialogRequest {
  std::uint32_t fDialogContext;
  IModalOwner* fModalOwner;  // null for a dialog that blocks the application
  bool fBlocking;            // on the main thread
};

// All that one run of a dialog needs. Made on the main thread, which gets it back with the result.
class CFileDialogInfo : public IMessageCallListener, public IOwnedForeignDialog, CNotCopied {
 public:
  // Throws what the client's owner fails with.
  CFileDialogInfo(IWindowHost& host, const TFileDialogRequest& request, const TDialogMemoryPlace& place);
  ~CFileDialogInfo() override;

  bool IsThreaded() const { return fThreaded; }
  // Where private messages go, and what they carry to show that they are the library's own.
  void SetMessageTarget(HWND hwnd, WPARAM sign);

  // --- On the thread of the dialog

  // Shows the system's dialog until the user has ended it. Throws nothing; what goes wrong is a cancel.
  void Run() noexcept;
  // The dialog is on the screen, or will never be.
  void SignalOpen();

  // --- On the main thread, after the run

  // Whether the result of a thread is told to anybody.
  virtual bool ReportsFromThread() const { return true; }
  bool HasEnded() const { return fHasEnded; }
  bool IsAccepted() const { return fHasEnded && !fURL.empty(); }
  virtual UINT GetResultMessage() const = 0;
  // Remembers what was chosen and tells the client. Throws what that fails with.
  void Deliver();
  // The debug line for a blocking dialog whose client has failed.
  virtual const char* GetFailureLine() const = 0;

  // Null for a dialog that blocks the application.
  HWND GetBlockedOwner() const override { return fAppModal ? nullptr : fOwnerHwnd; }
  HWND GetFrameHwnd() const override { return fFrameHwnd; }

  // Of a dialog with a thread; each may be waited for.
  HANDLE GetOpenEvent() const { return fDialogOpenHandle.Get(); }
  HANDLE GetThread() const { return fThread.Get(); }
  DWORD GetThreadID() const { return fThreadID; }
  void SetThread(HANDLE thread, DWORD threadID);

  // --- What the frame asks for, on the thread of the dialog

  void OnFrameMade(HWND frame);
  // The frame is being shown. What comes with that, activation and the questions that it asks the
  // application, is over when a posted message arrives: then the dialog is on the screen.
  void OnFrameShowing(HWND frame);
  // Whether a message is that one.
  bool IsFrameShown(UINT message, WPARAM wParam) const {
    return message == kMsgFrameShown && wParam == fSign;
  }
  // Puts the frame where it was the last time, or into the middle.
  void PlaceFrame(HWND frame) const;
  // The frame is about to go.
  virtual void OnFrameDestroyed(HWND frame);
  // Whether a message tries to activate or to click what another dialog blocks; it must be swallowed then.
  bool IsActivationBlocked() { return Ask(kMsgListenerCall1); }
  bool IsClickBlocked() { return Ask(kMsgListenerCall2); }
  bool IsAutoPlayQuery(UINT message);
  void OnActivateApp(bool flag, DWORD threadId);

  // --- Answers, on the main thread

  void OnListenerCall1() override;
  void OnListenerCall2() override;
  void OnListenerCall3() override;

 protected:
  // Shows the system's dialog and waits for its end: the URL of what was chosen, or nothing.
  virtual std::string ShowDialog() = 0;
  virtual TError TellAccepted(const char* url) = 0;
  virtual TError TellCancelled() = 0;

  // Null if it has gone meanwhile: the system shows no dialog over such a window.
  HWND GetOwnerHwnd() const { return IsWindow(fOwnerHwnd) ? fOwnerHwnd : nullptr; }
  TDialogMemory& GetMemory() { return fMemory; }
  // Whether the thread of the dialog can make the objects that newer dialogs are made of.
  bool HasOle() const { return fHasOle; }
  // So that the dialog opens in this place the next time, if it ends with a result.
  void RememberPlace(HWND frame);

 private:
  bool Ask(UINT call);

  IWindowHost& fHost;  // main thread only
  const TDialogMemoryPlace& fMemoryPlace;
  const std::uint32_t fDialogContext;
  const bool fThreaded;
  TDialogMemory fMemory;
  HWND fOwnerHwnd;
  bool fAppModal = true;  // without a real owner
  bool fIsTopMost;
  bool fHasOle = false;
  TPoint fCenter;
  HWND fMessageHwnd = nullptr;
  WPARAM fSign = 0;
  std::string fURL;  // of what was chosen; empty for a cancel
  std::atomic<bool> fHasEnded = false;
  std::atomic<HWND> fFrameHwnd = nullptr;
  HWND fAppModalHwnd = nullptr;  // the frame while it blocks the application
  CKernelHandle fDialogOpenHandle;
  CKernelHandle fThread;
  DWORD fThreadID = 0;
  // Of the question that is being asked.
  bool fIsAsking = false;
  UINT fAskedMessage = 0;
  bool fAnswer = false;
};

// The window procedure of a dialog's frame.
class CFileDialogFrameProcWrapper : public CWindowProcOverrider {
 public:
  CFileDialogFrameProcWrapper(HWND frame, CFileDialogInfo& info);

  LRESULT WindowProc(CNativeWindowWrapper& wrapper, HWND hwnd, UINT message, WPARAM wParam,
                     LPARAM lParam) override;

 protected:
  ~CFileDialogFrameProcWrapper() override = default;

 private:
  CFileDialogInfo* fInfo;  // null from WM_DESTROY on
};

}  // namespace NSMorvane
