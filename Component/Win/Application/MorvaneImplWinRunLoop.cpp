// IMorvane_Run from start to end, the message loop, and what is done around each message.
//
// The order of the steps is part of the behaviour. Nothing here holds an iterator across a callback: a
// callback may run a loop of its own and come back here.
#include <algorithm>
#include <iterator>
#include <utility>

#include "Component/Portable/Base/PendingErrors.h"
#include "Component/Portable/Menus/MenuBarState.h"
#include "Component/Win/Application/MorvaneImplWin.h"
#include "Component/Win/Application/MorvaneImplWinHiddenWindows.h"
#include "Component/Win/Input/WinMouseQueries.h"
#include "Component/Win/Launch/SingleInstance.h"
#include "Component/Win/Platform/PrivateMessages.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Platform/UtilsWinFiles.h"
#include "Component/Win/Window/Blocking.h"
#include "Component/Win/Window/WindowRegistry.h"
#include "Component/Win/Window/WinWindow.h"
#include "Component/Win/Window/WinWindowTooltips.h"

namespace NSMorvane {

using NSTextPackage::ArrayToString;

// --- The run

void CMorvaneImpl::CMorvaneGlue_Run(IMorvaneRunBehavior* behavior, const TStartupParams& params) {
  // One run at a time: a second one would take this process for another instance and end the behaviour.
  if (fMessageWindow) MORVANE_THROW(XIllegalCallSequence());
  fMainThreadId = ::GetCurrentThreadId();
  LogSystemReport();
  fStartupStrings.fCompanyName = ArrayToString(params.fCompanyName);
  fStartupStrings.fProductName = ArrayToString(params.fProductName);
  fStartupStrings.fDisplayName = ArrayToString(params.fDisplayName);
  fStartupFlag = params.fStartupFlag != 0;
  fLingerMS = params.fLingerMS;

  const TString instanceName = fStartupStrings.fCompanyName + fStartupStrings.fProductName;
  if (!TryBecomeFirstInstance(instanceName)) {
    // Paths are looked for in the current folder of the process that opens them.
    const TString commandLine =
        WithFullPaths(TextFromWin(::GetCommandLineW()), CFileSystemProbe(), kMaxSentCommandLine);
    SendCommandLineToFirstInstance(instanceName, commandLine);
    if (behavior) MORVANE_CHECK(behavior->IMorvaneRunBehavior_OnCleanUp());
    delete behavior;
    return;
  }

  try {
    fBehavior = behavior;
    FetchStartupLabels();
    MakeMessageWindow();
    fHiderWindow = std::make_unique<CHiderWindow>(GetAppIcon());
    StartIdleThread();
    if (fBehavior) MORVANE_CHECK(fBehavior->IMorvaneRunBehavior_OnStartUp());
    if (!fIsInQuitMode) {
      const bool hadFiles = OpenCommandLineFiles();
      if (!hadFiles) CallOnNoDocument(kNoDocumentAtStart);
      RunMainLoop();
    }
    EndIdleThread();
    if (fBehavior) {
      MORVANE_CHECK(fBehavior->IMorvaneRunBehavior_OnCleanUp());
    } else {
      DebugPrint("Skipping call to IMorvaneRunBehavior_OnCleanUp, since there is no behavior.");
    }
    fHiderWindow.reset();
    EndMessageWindow();
    delete std::exchange(fBehavior, nullptr);
    ReleaseFirstInstance();
  } catch (...) {
    AbandonRun();
    MORVANE_RETHROW();
  }
}

// After a failure. The behaviour stays the client's, and hears nothing of it.
void CMorvaneImpl::AbandonRun() {
  fWindows->ReleaseAll();
  EndIdleThread();
  fHiderWindow.reset();
  EndMessageWindow();
  ReleaseFirstInstance();
  fBehavior = nullptr;
}

void CMorvaneImpl::FetchStartupLabels() {
  for (const auto& [number, label] : StartupLabels(fStartupStrings)) *label = FetchLabel(*this, number);
}

void CMorvaneImpl::RunMainLoop() {
  bool keepRunning = KeepRunning();
  // The client has been asked to open something. If nothing came of it, no message tells of that.
  fIsQuitEventDue = true;
  while (keepRunning && !fLingerExpired) {
    if (!fCommandLineFiles.empty() || fReopenRequested) fIsQuitEventDue = true;
    const TError error = ErrorOf([this] {
      OpenCommandLineFiles();
      ReopenIfRequested();
      RunOneTurn();
      // When quitting has been stopped while the application lingers, the lingering ends first.
      if (!fIsInQuitMode && fLingerTimer != 0) return;
      fIsQuitEventDue = false;
      if (!fIsInQuitMode && !fWindows->IsAnyDocumentWindowLeft()) DispatchQuitEvent();
    });
    DeliverError(error);
    keepRunning = DecideOnLingering(KeepRunning());
  }
}

// --- Files of the command line

void CMorvaneImpl::ParseCommandLine(const TString& commandLine) {
  CCommandLine parsed = NSMorvane::ParseCommandLine(commandLine, CFileSystemProbe());
  fCommandLineOptions = std::move(parsed.fOptions);
  // Behind those of an earlier launch that still wait for a dialog to end: none gets lost.
  fCommandLineFiles.insert(fCommandLineFiles.end(), std::make_move_iterator(parsed.fFiles.begin()),
                           std::make_move_iterator(parsed.fFiles.end()));
}

// False if there were none.
bool CMorvaneImpl::OpenCommandLineFiles() {
  const bool hadFiles = !fCommandLineFiles.empty();
  while (!fCommandLineFiles.empty()) {
    const TString path = std::move(fCommandLineFiles.front());
    fCommandLineFiles.erase(fCommandLineFiles.begin());
    const std::string url = PathToFileURL(path);
    if (fBehavior) MORVANE_CHECK(fBehavior->IMorvaneRunBehavior_OnOpenURL(url.c_str()));
  }
  return hadFiles;
}

void CMorvaneImpl::CallOnNoDocument(TNoDocumentKind kind) {
  if (!fWindows->GetVisibleDocumentWindows().empty()) return;
  if (fBehavior) MORVANE_CHECK(fBehavior->IMorvaneRunBehavior_OnNoDocument(kind));
}

void CMorvaneImpl::ReopenIfRequested() {
  if (!fReopenRequested) return;
  fReopenRequested = false;
  CallOnNoDocument(fLingerTimer != 0 ? kNoDocumentAtStart : kNoDocumentAtReopen);
}

// --- Messages

bool CMorvaneImpl::RunOneTurn() {
  MORVANE_ASSERT(CMorvaneGlue_CheckInvariant());
  // In case that the last one goes.
  if (fWindows->IsAnyWindow()) fIsQuitEventDue = true;
  RunIdleIfDue();
  FlushMenuBarRequests();
  MSG msg = {};
  const bool isMessage = TakeMessage(msg, true) && msg.message != WM_QUIT;
  if (isMessage) HandleMessage(msg);
  MORVANE_ASSERT(CMorvaneGlue_CheckInvariant());
  return isMessage;
}

// GetMessageW would not do: it handles what is sent to this thread without coming back, and without a window,
// whose ticks turn the loop, that is all there may be. False if there is no message, but the loop has to
// turn.
bool CMorvaneImpl::TakeMessage(MSG& outMsg, bool mayWait) {
  while (!::PeekMessageW(&outMsg, nullptr, 0, 0, PM_REMOVE)) {
    if (NoticeCommandLine()) return false;
    const bool hasWindow = fWindows->IsAnyWindow();
    // In quit mode the application is about to leave, unless it lingers: then a timer runs.
    const bool isDue = fIdleDue || (fIsInQuitMode ? fLingerTimer == 0 : fIsQuitEventDue);
    if (!mayWait || (!hasWindow && isDue)) return false;
    ::MsgWaitForMultipleObjectsEx(0, nullptr, INFINITE, QS_ALLINPUT, 0);
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
  return isMessage;
}

void CMorvaneImpl::RunModalLoop(HWND hwnd) {
  DeliverError(IMorvane_WakeUpIdle());
  while (fWindows->Find(hwnd)) {
    // An idle call that fails is reported as in the main loop, and must not end this one before the dialog.
    bool hadMessage = false;
    MSG msg = {};
    DeliverError(ErrorOf([&] { hadMessage = PumpOneMessage(msg); }));
    // The idle call of the pass before the wait can have ended the last window there is: waiting for a
    // message comes only after another look.
    if (!hadMessage && fWindows->Find(hwnd))
      ::MsgWaitForMultipleObjectsEx(0, nullptr, INFINITE, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
  }
}

// Throws nothing: what goes wrong is delivered to the client.
void CMorvaneImpl::HandleMessage(const MSG& msg) {
  const TError error = ErrorOf([&] {
    MORVANE_ASSERT(CMorvaneGlue_CheckInvariant());
    if (msg.message == kMsgSecondInstance) OnSecondInstanceMessage();
    // Behind all that is posted; a view that is never done painting leaves no other time to look.
    if (msg.message == WM_PAINT) NoticeCommandLine();
    if (msg.message == kMsgAppActivation) OnAppActivation(msg.wParam != 0, static_cast<DWORD>(msg.lParam));
    if (msg.message == WM_TIMER && msg.wParam == fLingerTimer && fLingerTimer != 0) {
      DebugPrint("Lingering complete, exiting...");
      StopLingerTimer();
      fLingerExpired = true;
    }
    // These three go on to dispatch like all others.
    if (!PreTranslate(msg)) {
      ::TranslateMessage(&msg);
      const CDispatchScope scope(msg);
      ::DispatchMessageW(&msg);
    }
    CloseNextWindowAfterMessage();
  });
  DeliverError(error);
  MORVANE_ASSERT(CMorvaneGlue_CheckInvariant());
}

// The message goes to the thread, and any loop of the system's drops it. So the loop looks at the record,
// too, and has perhaps read by now what the message tells of.
void CMorvaneImpl::OnSecondInstanceMessage() {
  if (!IsCommandLinePending() && fUnannouncedCommandLines > 0)
    --fUnannouncedCommandLines;
  else
    HandleSecondInstance();
}

// False if none is waiting.
bool CMorvaneImpl::NoticeCommandLine() {
  if (!IsCommandLinePending()) return false;
  ++fUnannouncedCommandLines;
  HandleSecondInstance();
  return true;
}

// Another process of this application has been started: whatever was ending goes on living.
void CMorvaneImpl::HandleSecondInstance() {
  if (fLingerTimer != 0) {
    DebugPrint("Lingering aborted...");
    StopLingerTimer();
  }
  LeaveQuitMode();
  // Before a callback can turn the loop, which would find the command line waiting.
  ParseCommandLine(TakeSentCommandLine());
  if (fCommandLineFiles.empty()) fReopenRequested = true;
  fBlocking->RestoreOrder();
}

// True if a window has used the message up.
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

void CMorvaneImpl::CMorvaneGlue_RequestMenuBarsSetup() {
  if (fMenuBarRebuildRequests == 0) {
    DebugPrint("CMorvaneImpl::CMorvaneGlue_RequestMenuBarsSetup requested");
  }
  ++fMenuBarRebuildRequests;
}

void CMorvaneImpl::FlushMenuBarRequests() {
  MORVANE_ASSERT(CMorvaneGlue_CheckInvariant());
  const TError error = ErrorOf([this] {
    if (fMenuBarRebuildRequests != 0) RebuildRequestedMenuBars();
  });
  if (error != kOK) KeepPendingError(error);
  MORVANE_ASSERT(CMorvaneGlue_CheckInvariant());
}

void CMorvaneImpl::RebuildRequestedMenuBars() {
  if (fMenuBarRebuildRequests > 1) {
    DebugPrint("Collapsed " + NumberText(fMenuBarRebuildRequests) + " rebuild menubar requests...");
  }
  fMenuBarRebuildRequests = 0;
  if (!fBehavior) {
    DebugPrint("Ignoring request to rebuild menu bars since there is no behavior.");
    return;
  }
  DebugPrint("Rebuilding Menu Bar...");
  DebugIndentScope indent;
  for (const boost::shared_ptr<CWinWindow>& window : fWindows->GetVisibleDocumentWindows()) {
    // The window before may have ended this one.
    if (!window->IsVisible()) continue;
    SetUpMenuBar(*window);
  }
}

// The set-up sends messages by itself, can open a dialog even, and with each of them comes here again. What
// is asked for the same window meanwhile waits for its end; the other windows need not.
void CMorvaneImpl::SetUpMenuBar(CWinWindow& window) {
  if (std::find(fMenuBarsInSetUp.begin(), fMenuBarsInSetUp.end(), &window) != fMenuBarsInSetUp.end()) {
    fMenuBarWaits = true;
    return;
  }
  fMenuBarsInSetUp.push_back(&window);
  const TError error = ErrorOf([&] {
    CMenuBarState state;
    MORVANE_CHECK(fBehavior->IMorvaneRunBehavior_OnSetupMenuBar(state));
    if (window.LockClientsWindowReference()) window.SetUpMenuBar(state);
  });
  fMenuBarsInSetUp.pop_back();
  if (fMenuBarsInSetUp.empty() && std::exchange(fMenuBarWaits, false)) RequestMenuBars();
  ThrowError(error);
}

// --- Activation of the application

void CMorvaneImpl::OnAppActivation(bool flag, DWORD threadId) {
  MORVANE_ASSERT(0!=fBehavior);
  // The threads of the library own message-only windows: as long as one of them has the focus, the
  // application is active.
  const bool active = flag || ThreadOwnsUnlistedWindow(threadId);
  if (active == fAppIsActive) return;
  fAppIsActive = active;
  if (!fAppIsActive) ShowFloatingWindows(false);
  if (fBehavior) {
    MORVANE_CHECK(fBehavior->IMorvaneRunBehavior_OnAppActivation(active ? 1 : 0));
  } else {
    DebugPrint("Ignoring app activation message, since there is no behavior.");
  }
}

void CMorvaneImpl::ShowFloatingWindows(bool show) {
  // Most applications have none, and listing the windows of the desktop is costly.
  if (!fWindows->IsAnyOfKind(kWindowKindFloating)) return;
  const std::vector<HWND> handles = GetTopLevelWindowsZ();
  // The lowest first, so that their order stays.
  for (auto it = handles.rbegin(); it != handles.rend(); ++it) {
    const CWinWindow* const window = fWindows->Find(*it);
    if (!window || window->GetWindowKind() != kWindowKindFloating || !window->HasBeenShown()) continue;
    const bool isVisible = (::GetWindowLongW(*it, GWL_STYLE) & WS_VISIBLE) != 0;
    if (isVisible != show) ::ShowWindow(*it, show ? SW_SHOWNA : SW_HIDE);
  }
}

}  // namespace NSMorvane
