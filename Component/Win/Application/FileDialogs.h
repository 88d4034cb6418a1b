// The file dialogs that are open: starts them, on this thread or on threads of their own, and brings their
// results to the client, on the main thread and inside the run loop.
#pragma once

#include <windows.h>

#include <boost/shared_ptr.hpp>
#include <vector>

#include "Component/Win/Platform/UtilsWinHandles.h"

namespace NSMorvane {

class CBlocking;
class CFileDialogInfo;
class CIdleCalls;
class CMessageCallListeners;
class CMessageTarget;

class CFileDialogs : CNotCopied {
 public:
  // The messages of the dialogs go to `target` and carry `sign`; `listeners` answers their questions.
  CFileDialogs(const CMessageTarget& target, WPARAM sign, CMessageCallListeners& listeners,
               CIdleCalls& idleCalls, CBlocking& blocking);

  // On this thread: returns when the dialog has ended and the client has been told. A client that fails then
  // is only logged.
  void RunBlocking(const boost::shared_ptr<CFileDialogInfo>& dialog);
  // On a thread of its own: returns when the dialog is on the screen, or has failed. Until then no part of
  // the application runs but what dialogs need. Throws std::bad_alloc if there can be no thread.
  void RunThreaded(const boost::shared_ptr<CFileDialogInfo>& dialog);

  // A result has arrived. False if it comes from no dialog that is open.
  bool OnResult(UINT message, const void* dialog);

  bool IsAnyOpen() const { return !fDialogs.empty(); }
  // Those that end in silence. After each message, in whichever loop: the system has enabled their owners. A
  // failure is delivered later.
  void ForgetEnded();

  // The run begins: dialogs may be opened.
  void Begin() { fIsEnding = false; }
  // The run ends: what is still open is closed, and nothing is opened any more. If `tellsClients`, each
  // counts as cancelled, and the first failure is thrown when all are closed.
  void EndAll(bool tellsClients);

 private:
  using TDialog = boost::shared_ptr<CFileDialogInfo>;

  void Register(CFileDialogInfo& dialog);
  void Unregister(CFileDialogInfo& dialog);
  void Remove(const TDialog& dialog);
  void RequireRun() const;
  void WaitUntilOpen(const CFileDialogInfo& dialog);
  void Close(const CFileDialogInfo& dialog);

  const CMessageTarget& fTarget;
  const WPARAM fSign;
  CMessageCallListeners& fListeners;
  CIdleCalls& fIdleCalls;
  CBlocking& fBlocking;
  bool fIsEnding = true;
  std::vector<TDialog> fDialogs;  // those with threads
};

}  // namespace NSMorvane
