// IMorvane_Run from start to end, the message loop, and what is done around each message.
//
// The order of the steps is part of the behaviour. Nothing here holds an iterator across a callback: a
// callback may run a loop of its own and come back here.
#include <algorithm>
#include <utility>

#include "Component/Portable/Base/PendingErrors.h"
#include "Component/Win/Application/MorvaneImplWin.h"
#include "Component/Win/Input/WinMouseQueries.h"
#include "Component/Win/Launch/SingleInstance.h"
#include "Component/Win/Platform/PrivateMessages.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Platform/UtilsWinFiles.h"
#include "Component/Win/Services/WinSystemInfo.h"
#include "Component/Win/Window/Blocking.h"
#include "Component/Win/Window/WindowRegistry.h"
#include "Component/Win/Window/WinWindow.h"
#include "Component/Win/Window/WinWindowListWindow.h"
#include "Component/Win/Window/WinWindowTooltips.h"

namespace NSMorvane {

using NSTextPackage::ArrayToString;

namespace {

constexpr DWORD kFileDialogPollMS = 50;

// What the system tells the user of a window that keeps the session from ending.
class CShutdownReason : CNotCopied {
 public:
  CShutdownReason(HWND hwnd, const TString& text) : fHwnd(hwnd) {
    ::ShutdownBlockReasonCreate(fHwnd, WinText(text));
  }
  ~CShutdownReason() {
    if (::IsWindow(fHwnd)) ::ShutdownBlockReasonDestroy(fHwnd);
  }

 private:
  const HWND fHwnd;
};

}  // namespace

// --- The run

void CMorvaneImpl::CMorvaneGlue_Run(IMorvaneRunBehavior* behavior, const TStartupParams& params) {
  // One run at a time: a second one would take this process for another instance and end the behaviour.
  if (fMessageTarget.GetHwnd()) MORVANE_THROW(XIllegalCallSequence());
  fMainThreadId = ::GetCurrentThreadId();
  LogSystemInfo();
  fStartupStrings.fCompanyName = ArrayToString(params.fCompanyName);
  fStartupStrings.fProductName = ArrayToString(params.fProductName);
  fStartupStrings.fDisplayName = ArrayToString(params.fDisplayName);
  fQuitting.SetLingerDuration(params.fLingerMS);

  TString instanceName = fStartupStrings.fCompanyName + fStartupStrings.fProductName;
  std::replace(instanceName.begin(), instanceName.end(), u'\\', u'/');  // the system allows none there
  if (!TryBecomeFirstInstance(instanceName)) {
    // The first instance would look for relative paths in its own current folder.
    const TString commandLine =
        WithFullPaths(TextFromWin(::GetCommandLineW()), CFileSystemProbe(), kMaxSentCommandLine);
    SendCommandLineToFirstInstance(instanceName, commandLine);
    if (behavior) MORVANE_CHECK(behavior->IMorvaneRunBehavior_OnCleanUp());
    delete behavior;
    return;
  }

  try {
    fBehavior = behavior;
    fFileDialogs.Begin();
    FetchStartupLabels();
    fMessageTarget.Make(MessageWindowProc);
    fHiderWindow = std::make_unique<CHiderWindow>(GetAppIcon());
    fIdleCalls.StartThread();
    if (fBehavior) MORVANE_CHECK(fBehavior->IMorvaneRunBehavior_OnStartUp());
    if (!fQuitting.IsInQuitMode()) {
      const bool hadFiles = OpenCommandLineFiles();
      if (!hadFiles) CallOnNoDocument(kNoDocumentAtStart);
      RunMainLoop();
    }
    DeliverError(ErrorOf([this] { fFileDialogs.EndAll(true); }));
    fIdleCalls.EndThread();
    if (fBehavior) {
      MORVANE_CHECK(fBehavior->IMorvaneRunBehavior_OnCleanUp());
    } else {
      DebugPrint("Skipping call to IMorvaneRunBehavior_OnCleanUp, since there is no behavior.");
    }
    CloseWindowList();
    fHiderWindow.reset();
    fMessageTarget.End();
    delete std::exchange(fBehavior, nullptr);
    ReleaseFirstInstance();
  } catch (...) {
    AbandonRun();
    MORVANE_RETHROW();
  }
}

// Cleans up after a failure. The behaviour stays the client's and gets no further calls.
void CMorvaneImpl::AbandonRun() {
  fWindows->ReleaseAll();
  fFileDialogs.EndAll(false);
  fIdleCalls.EndThread();
  CloseWindowList();
  fHiderWindow.reset();
  fMessageTarget.End();
  ReleaseFirstInstance();
  fBehavior = nullptr;
}

void CMorvaneImpl::FetchStartupLabels() {
  for (const auto& [number, label] : StartupLabels(fStartupStrings)) *label = FetchLabel(*this, number);
}

void CMorvaneImpl::RunMainLoop() {
  bool goesOn = fQuitting.MayBegin();
  // The client has been asked to open something. If it has made no window, the quit event is due, but no
  // message tells of that.
  fQuitting.ExpectQuitEvent();
  while (goesOn) {
    if (fCommandLines.IsAnythingDue()) fQuitting.ExpectQuitEvent();
    const TError error = ErrorOf([this] {
      OpenCommandLineFiles();
      ReopenIfRequested();
      RunOneTurn();
      // An application may begin with a file dialog.
      if (!fFileDialogs.IsAnyOpen()) fQuitting.OnTurn();
    });
    DeliverError(error);
    goesOn = fQuitting.MayGoOn();
  }
}

// --- Files of the command line

// False if there were none.
bool CMorvaneImpl::OpenCommandLineFiles() {
  const bool hadFiles = fCommandLines.IsAnyFile();
  while (fCommandLines.IsAnyFile()) {
    const std::string url = PathToFileURL(fCommandLines.TakeFile());
    if (fBehavior) MORVANE_CHECK(fBehavior->IMorvaneRunBehavior_OnOpenURL(url.c_str()));
  }
  return hadFiles;
}

void CMorvaneImpl::CallOnNoDocument(TNoDocumentKind kind) {
  if (!fWindows->GetVisibleDocumentWindows().empty()) return;
  if (fBehavior) MORVANE_CHECK(fBehavior->IMorvaneRunBehavior_OnNoDocument(kind));
}

void CMorvaneImpl::ReopenIfRequested() {
  if (!fCommandLines.TakeReopenRequest()) return;
  CallOnNoDocument(fQuitting.IsLingering() ? kNoDocumentAtStart : kNoDocumentAtReopen);
}

// --- Messages

bool CMorvaneImpl::RunOneTurn() {
  MORVANE_ASSERT(CMorvaneGlue_CheckInvariant());
  // The last window may end in this turn.
  if (fWindows->IsAnyWindow()) fQuitting.ExpectQuitEvent();
  RunIdleIfDue();
  FlushMenuBarRequests();
  MSG msg = {};
  const bool isMessage = TakeMessage(msg, true) && msg.message != WM_QUIT;
  if (isMessage) HandleMessage(msg);
  fFileDialogs.ForgetEnded();
  MORVANE_ASSERT(CMorvaneGlue_CheckInvariant());
  return isMessage;
}

// Returns false if there is no message but the loop has to turn. GetMessageW would not do: it handles
// messages sent by other threads without returning, and without a window, whose timer keeps the loop turning,
// no other messages may come.
bool CMorvaneImpl::TakeMessage(MSG& outMsg, bool mayWait) {
  while (!::PeekMessageW(&outMsg, nullptr, 0, 0, PM_REMOVE)) {
    if (NoticeCommandLine()) return false;
    const bool hasWindow = fWindows->IsAnyWindow();
    // In quit mode without a window the application leaves in the next turn, unless it lingers until a timer
    // fires.
    // What was sent has been handled inside the look for a message, and can have failed.
    // The quit event waits for a file dialog, whose end may come without a message.
    const bool isFileDialogOpen = !fQuitting.IsInQuitMode() && fFileDialogs.IsAnyOpen();
    const bool isDue = fIdleCalls.IsDue() || (fQuitting.IsTurnDue() && !isFileDialogOpen) || IsErrorPending();
    if (!mayWait || (!hasWindow && isDue)) return false;
    ::MsgWaitForMultipleObjectsEx(0, nullptr, isFileDialogOpen ? kFileDialogPollMS : INFINITE, QS_ALLINPUT,
                                  0);
    mayWait = hasWindow;
  }
  return true;
}

bool CMorvaneImpl::PumpOneMessage(MSG& outMsg) {
  MORVANE_ASSERT(CMorvaneGlue_CheckInvariant());
  RunIdleIfDue();
  FlushMenuBarRequests();
  const bool isMessage = TakeMessage(outMsg, false);
  if (isMessage) HandleMessage(outMsg);
  fFileDialogs.ForgetEnded();
  return isMessage;
}

void CMorvaneImpl::RunModalLoop(HWND hwnd) {
  DeliverError(IMorvane_WakeUpIdle());
  while (fWindows->Find(hwnd)) {
    // A failure of the idle call is reported as in the main loop, and must not end this loop before the
    // dialog.
    bool hadMessage = false;
    MSG msg = {};
    DeliverError(ErrorOf([&] { hadMessage = PumpOneMessage(msg); }));
    // An idle call may have ended the dialog, and with it the last window, so that no message comes any more.
    if (!hadMessage && fWindows->Find(hwnd))
      ::MsgWaitForMultipleObjectsEx(0, nullptr, INFINITE, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
  }
}

// Does not throw: failures are delivered to the client.
void CMorvaneImpl::HandleMessage(const MSG& msg) {
  ForgetPlacementOffset();
  const TError error = ErrorOf([&] {
    MORVANE_ASSERT(CMorvaneGlue_CheckInvariant());
    // A client's windows may use these numbers for something else.
    const bool isOwn = !msg.hwnd || msg.hwnd == fMessageTarget.GetHwnd();
    if (msg.message == kMsgSecondInstance && isOwn) OnSecondInstanceMessage();
    // TakeMessage looks for a command line only when the queue is empty. Views that invalidate themselves in
    // each paint never let it become empty.
    if (msg.message == WM_PAINT) NoticeCommandLine();
    if (msg.message == kMsgAppActivation && !msg.hwnd)
      OnAppActivation(msg.wParam != 0, static_cast<DWORD>(msg.lParam));
    if (msg.message == WM_TIMER) fQuitting.OnTimer(msg.wParam);
    // All of these are dispatched as well.
    if (!PreTranslate(msg)) {
      ::TranslateMessage(&msg);
      const CDispatchScope scope(msg);
      ::DispatchMessageW(&msg);
    }
    fQuitting.CloseNextWindowAfterMessage();
  });
  DeliverError(error);
  MORVANE_ASSERT(CMorvaneGlue_CheckInvariant());
}

void CMorvaneImpl::OnSecondInstanceMessage() {
  if (fCommandLines.OnMessage(IsCommandLinePending())) HandleSecondInstance();
}

bool CMorvaneImpl::NoticeCommandLine() {
  const bool isNews = fCommandLines.OnLook(IsCommandLinePending());
  if (isNews) HandleSecondInstance();
  return isNews;
}

// The application has been launched again: quitting and lingering are called off.
void CMorvaneImpl::HandleSecondInstance() {
  fQuitting.CallOff();
  // The command line is taken before any callback: a loop inside one would find it still waiting.
  fCommandLines.AddLaunch(ParseCommandLine(TakeSentCommandLine(), CFileSystemProbe()));
  fBlocking->Refresh();
}

// True if a window has handled the message.
bool CMorvaneImpl::PreTranslate(const MSG& msg) {
  RelayToTooltips(msg);
  for (HWND hwnd = msg.hwnd; hwnd; hwnd = ::GetAncestor(hwnd, GA_PARENT)) {
    CWinWindow* const window = fWindows->Find(hwnd);
    if (!window) continue;
    const boost::shared_ptr<CWinWindow> reference = window->LockClientsWindowReference();
    if (reference && reference->PreTranslateMessage(msg)) return true;
  }
  return false;
}

// --- Errors

void CMorvaneImpl::DeliverError(TError code) {
  if (const TError pending = TakePendingError(); pending != kOK) code = pending;
  if (code == kOK) return;
  try {
    if (fBehavior) {
      fBehavior->IMorvaneRunBehavior_OnUnhandledError(code);
    } else {
      DebugPrint("Ignoring unhandled error " + NumberText(static_cast<std::int32_t>(code)) +
                 " since there is no behavior.");
    }
  } catch (...) {
    MORVANE_UNREACHED();
  }
}

// --- Menu bars

void CMorvaneImpl::FlushMenuBarRequests() {
  MORVANE_ASSERT(CMorvaneGlue_CheckInvariant());
  const TError error = ErrorOf([this] { fMenuBars.Flush(); });
  if (error != kOK) KeepPendingError(error);
  MORVANE_ASSERT(CMorvaneGlue_CheckInvariant());
}

// --- End of session

bool CMorvaneImpl::OnQueryEndSession() {
  if (fQuitting.IsInQuitMode()) return true;
  // The system covers the screen with a list of what still runs, and the questions of the windows with it.
  std::vector<std::unique_ptr<CShutdownReason>> reasons;
  for (const boost::shared_ptr<CWinWindow>& window : fWindows->GetVisibleWindowsZ())
    if (window->IsModified())
      reasons.push_back(std::make_unique<CShutdownReason>(
          window->GetHwnd(),
          NSTextPackage::FormatText(fStartupStrings.fSaveChangesOnQuitQuestion, 0, {window->GetTitle()})));
  DispatchQuitEvent();
  // Failures are delivered as in the main loop and do not decide the answer.
  while (fQuitting.IsInQuitMode() && fWindows->IsAnyWindow()) DeliverError(ErrorOf([this] { RunOneTurn(); }));
  return fQuitting.IsInQuitMode() && !fWindows->IsAnyWindow();
}

}  // namespace NSMorvane
