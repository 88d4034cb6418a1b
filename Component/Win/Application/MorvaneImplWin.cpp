#include "Component/Win/Application/MorvaneImplWin.h"

#include <commctrl.h>

#include <algorithm>
#include <boost/make_shared.hpp>

#include "Component/Portable/Base/PendingErrors.h"
#include "Component/Portable/Resources/ResourceStringCache.h"
#include "Component/Win/Platform/NativeWindowWrapper.h"
#include "Component/Win/Platform/UtilsWin.h"
#include "Component/Win/Platform/UtilsWinFiles.h"
#include "Component/Win/Platform/WinResourceLoader.h"
#include "Component/Win/Window/Blocking.h"
#include "Component/Win/Window/WindowRegistry.h"
#include "Component/Win/Window/WinWindow.h"

namespace NSMorvane {

CMorvaneImpl* CMorvaneImpl::gMorvaneImpl = nullptr;

namespace {

constexpr int kAppIconId = 1;

// Does nothing on other threads: the windows of file dialogs are wrapped too and live on threads of their
// own.
void FlushAfterNativeMessage() {
  CMorvaneImpl* morvane = CMorvaneImpl::gMorvaneImpl;
  if (morvane && morvane->IsMainThread()) morvane->FlushMenuBarRequests();
}

}  // namespace

// --- Life

CMorvaneImpl::CMorvaneImpl()
    : fWindows(boost::make_shared<CWindowRegistry>()),
      fBlocking(boost::make_shared<CBlocking>(fWindows)),
      fDebugSettings{1, 1, 1, 1, 1, 0, 0},
      fIdleCalls(fMessageTarget, reinterpret_cast<WPARAM>(this)),
      fFileDialogs(fMessageTarget, reinterpret_cast<WPARAM>(this), fMessageCallListeners, fIdleCalls,
                   *fBlocking),
      fQuitting(*this),
      fMenuBars(*this),
      fAppActivation(*this),
      fWinExtensions(fCommandLines),
      fMainThreadId(::GetCurrentThreadId()) {
  INITCOMMONCONTROLSEX controls = {};
  controls.dwSize = sizeof(controls);
  controls.dwICC = ICC_WIN95_CLASSES;
  if (!::InitCommonControlsEx(&controls)) MORVANE_THROW(std::exception());
  fCommandLines.Add(ParseCommandLine(TextFromWin(::GetCommandLineW()), CFileSystemProbe()));
  if (!EnumerateMonitors(fMonitors)) MORVANE_THROW(std::exception());
  if (gMorvaneImpl) MORVANE_THROW(std::exception());
  TakePendingError();  // drops an error that the last root object left
  // Nothing may fail from here on: gMorvaneImpl must point to a complete object.
  gMorvaneImpl = this;
  gAfterNativeMessage = FlushAfterNativeMessage;
  MORVANE_ASSERT(CMorvaneGlue_CheckInvariant());
}

CMorvaneImpl::~CMorvaneImpl() {
  MORVANE_ASSERT(CMorvaneGlue_CheckInvariant());
  MORVANE_ASSERT_TEXT("fQuitWindow.expired()", !fQuitting.IsAskingWindow());
  MORVANE_ASSERT(0==fBehavior);
  fWindows->ReleaseAll();
  fIdleCalls.EndThread();
  fHiderWindow.reset();
  fMessageTarget.End();
  gAfterNativeMessage = nullptr;
  gMorvaneImpl = nullptr;
  fBlocking->PopForeignDialogs();
}

// Other threads may post messages and wake the idle thread. There, the state of the main thread is not
// tested.
bool CMorvaneImpl::CMorvaneGlue_CheckInvariant() const {
  if (this != gMorvaneImpl) {
    MORVANE_UNREACHED();
    return false;
  }
  if (!IsMainThread()) return true;
  const boost::shared_ptr<CWinWindow> captureWindow = fMouseCaptureWindow.lock();
  if (!captureWindow) return true;
  if (!fBehavior || !captureWindow->CheckInvariant()) {
    MORVANE_UNREACHED();
    return false;
  }
  return true;
}

IMorvaneRunBehavior* CMorvaneImpl::CMorvaneGlue_GetBehavior() {
  MORVANE_ASSERT(0!=fBehavior);
  return fBehavior;
}

IMorvaneRunBehavior* CMorvaneImpl::CMorvaneGlue_GetBehavior() const {
  MORVANE_ASSERT(0!=fBehavior);
  return fBehavior;
}

HICON CMorvaneImpl::GetAppIcon() {
  if (!fAppIcon) {
    fAppIcon = ::LoadIconW(::GetModuleHandleW(nullptr), MAKEINTRESOURCEW(kAppIconId));
    if (!fAppIcon) DebugPrint("No application icon found, going with OS default...");
  }
  return fAppIcon;
}

// --- Debug settings

void CMorvaneImpl::CMorvaneGlue_SetDebugSettings(const TDebugSettings& settings) {
  const TDebugSettings& old = fDebugSettings;
  if (settings.fDrawViewBounds == old.fDrawViewBounds &&
      settings.fDrawMouseViewInfo == old.fDrawMouseViewInfo) {
    if (settings.fDebugMenu == old.fDebugMenu &&
        settings.fDrawInvalidationBlue == old.fDrawInvalidationBlue &&
        settings.fDrawPaintsRed == old.fDrawPaintsRed && settings.fFlushViews == old.fFlushViews &&
        settings.fDelayAfterFlushing == old.fDelayAfterFlushing) {
      return;
    }
  } else {
    // These two settings change what is already on the screen.
    for (const boost::shared_ptr<CWinWindow>& window : fWindows->GetWindows()) {
      RECT client = {};
      if (!::GetClientRect(window->GetHwnd(), &client)) MORVANE_CHECK_LAST_ERROR();
      window->InvalidateRect(FromNative(client));
    }
  }
  const bool showsDebugMenu = settings.fDebugMenu && !old.fDebugMenu;
  fDebugSettings = settings;
  fMenuBars.Rebuild(showsDebugMenu);
}

// --- Small hooks

TMonitorList CMorvaneImpl::CMorvaneGlue_GetMonitors() {
  TMonitorList monitors;
  bool isListed = false;
  // EnumerateMonitors may throw, if a monitor goes while it is asked, or return false.
  const TError error = ErrorOf([&] { isListed = EnumerateMonitors(monitors); });
  if (error == kOK && isListed) {
    fMonitors = monitors;
  } else {
    DebugPrint("Failed to get monitor list - reverting to last successful result...");
  }
  return fMonitors;
}

// A window that opens needs it for each look at its state, and the monitors are costly to ask.
TPoint CMorvaneImpl::GetPlacementOffset() {
  if (!fPlacementOffset) fPlacementOffset = OffsetToNativePlacement(*this, false);
  return *fPlacementOffset;
}

TString CMorvaneImpl::CMorvaneGlue_GetResourceString(const std::string& key) {
  return GetResourceStringCache(GetResourceLoader()).GetString(key);
}

// WM_PAINT comes only when no other message waits. The loop ends when one window is painted a second time,
// since a window that invalidates itself in each paint would keep it going for ever. All windows then get one
// more turn.
void CMorvaneImpl::CMorvaneGlue_Yield() {
  // Paints and timers come last, and can come for ever: a second one for the same window ends it.
  std::vector<std::pair<UINT, HWND>> seen;
  for (MSG msg = {}; PumpOneMessage(msg);) {
    if (msg.message != WM_PAINT && msg.message != WM_TIMER) continue;
    const std::pair<UINT, HWND> source(msg.message, msg.hwnd);
    if (std::find(seen.begin(), seen.end(), source) != seen.end()) return PumpPaintMessages();
    seen.push_back(source);
  }
}

std::uint64_t CMorvaneImpl::CMorvaneGlue_GetCurrentMS() { return ::GetTickCount(); }

// This platform has no such clock.
std::uint64_t CMorvaneImpl::CMorvaneGlue_ConvertMSToPrecisionTicks(std::uint64_t) {
  MORVANE_UNREACHED();
  return 0;
}

}  // namespace NSMorvane
