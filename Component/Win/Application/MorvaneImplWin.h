// The root object of the toolkit on Windows. There is one in a process. The class is cut by topic; its
// sections name their files:
//
//   MorvaneImplWin.cpp                life, and the small hooks
//   MorvaneImplWinRunLoop.cpp         IMorvane_Run, the message loop, errors, menu bars, activation
//   MorvaneImplWinHiddenWindows.cpp   the two windows that nobody sees, and the private messages
//   MorvaneImplWinQuit.cpp            quitting and lingering
//   MorvaneImplWinIdle.cpp            idle calls, yielding, time
//   MorvaneImplWinMenus.cpp           popup menus
//   MorvaneImplWinWindows.cpp         making windows and views, lists of windows
//   MorvaneImplWinKeyboard.cpp        what keys mean, listeners of modifier keys, key releases
//   MorvaneImplWinMouse.cpp           the mouse: state, shape, capture
//   MorvaneImplWinExtensions.cpp      what IWinExtensions offers
//   MorvaneImplWinLater.cpp           every operation that this build does not have
//
// All of it belongs to the main thread, which is the one that runs IMorvane_Run, unless told otherwise.
#pragma once

#include <windows.h>

#include <atomic>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>
#include <list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Component/Portable/Contract/MorvaneGlueRoot.h"
#include "Component/Win/Application/IdleThread.h"
#include "Component/Win/Launch/MorvaneImplWinStartupStrings.h"
#include "Component/Win/Window/WindowHost.h"
#include "Interface/Morvane.h"

namespace NSMorvane {

class CHiderWindow;
class CMessageWindow;
class CWinWindow;

// The object behind kMsgListenerCall1 to kMsgListenerCall3.
class IMessageCallListener {
 public:
  virtual void OnListenerCall1() = 0;
  virtual void OnListenerCall2() = 0;
  virtual void OnListenerCall3() = 0;

 protected:
  virtual ~IMessageCallListener() = default;
};

class CMorvaneImpl final : public CMorvaneGlue,
                           public IWinExtensions,
                           public IIdleThreadOwner,
                           public IWindowHost {
 public:
  // --- Life (MorvaneImplWin.cpp)

  // Throws std::exception if there is one already.
  CMorvaneImpl();
  // Outside IMorvane_Run.
  ~CMorvaneImpl() override;
  CMorvaneImpl(const CMorvaneImpl&) = delete;
  CMorvaneImpl& operator=(const CMorvaneImpl&) = delete;

  // On the library's heap, so that the client may delete the object.
  static void* operator new(std::size_t size) { return Morvane_New(size); }
  static void operator delete(void* block) { Morvane_Delete(block); }

  // Null while there is none.
  static CMorvaneImpl* gMorvaneImpl;

  // --- IWindowHost, what the files below have of it aside

  IMorvane& GetMorvane() override { return *this; }
  const TStartupStrings& GetStartupStrings() const override { return fStartupStrings; }
  const TDebugSettings& GetDebugSettings() const override { return fDebugSettings; }
  IMorvaneRunBehavior* GetBehavior() const override { return fBehavior; }
  const boost::shared_ptr<CWindowRegistry>& GetWindowRegistry() const override { return fWindows; }
  const boost::shared_ptr<CBlocking>& GetBlocking() const override { return fBlocking; }
  HICON GetAppIcon() override;
  bool IsAutoPlayQuery(UINT message) override;

  bool IsMainThread() const { return ::GetCurrentThreadId() == fMainThreadId; }

  void ForgetMouseCaptureWindow() override { fMouseCaptureWindow.reset(); }

  // --- Loop (MorvaneImplWinRunLoop.cpp)

  // Does what is due and handles one message, waiting for it; false for WM_QUIT. Without a window the wait
  // also ends when something has been sent, as an idle call may be due, and there is none while something
  // else is due: false then tells that there was no message.
  bool RunOneTurn();
  // The same without waiting, WM_QUIT included; false if there was no message. `outMsg` is the one there was.
  bool PumpOneMessage(MSG& outMsg);
  // Wakes the idle logic and handles messages until no window of the library has this handle any more.
  void RunModalLoop(HWND hwnd);

  void RequestMenuBars() override { CMorvaneGlue_RequestMenuBarsSetup(); }
  bool MenuBarsAreStale() const override { return fMenuBarRebuildRequests != 0; }
  // Throws nothing.
  void FlushMenuBarRequests();
  // After a change of the debug settings. Windows without a menu bar get one only if it `makesMenuBars`.
  void RefreshDebugMenus(bool makesMenuBars);

  void OnAppActivation(bool flag, DWORD threadId) override;
  void ShowFloatingWindows(bool show) override;

  // --- Hidden windows (MorvaneImplWinHiddenWindows.cpp)

  HWND GetHiderWindow() const override;

  // The procedure of the message window.
  LRESULT HandlePrivateMessage(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

  // kMsgListenerCall1 to kMsgListenerCall3 reach known listeners only.
  void AddMessageCallListener(IMessageCallListener* listener);
  void RemoveMessageCallListener(IMessageCallListener* listener);

  // --- Quitting (MorvaneImplWinQuit.cpp)

  void DispatchQuitEvent() override;
  bool OnQueryEndSession() override;

  // --- Idle (MorvaneImplWinIdle.cpp)

  void RunIdleIfDue() override;
  // Called by the idle thread.
  void NotifyIdleDue() override;
  // For waits that another thread's messages must pass.
  void DrainIdleMessages() override;

  // --- Keyboard (MorvaneImplWinKeyboard.cpp)

  void NotifyModifierKeyListeners(const TModifierKeysEvent& previous, const TModifierKeysEvent& now) override;
  void OnKeyReleased(const TPhysicalKeySpec& key) override;
  TError AbandonKeyReleases() override;

  // --- IWinExtensions (MorvaneImplWinExtensions.cpp)

  HICON__* IWinExtensions_GetIconHandle(const IIcon& icon, std::uint32_t size, TError& outError) override;
  IIcon* IWinExtensions_CreateIconFromHandles(HICON__* icon16, HICON__* icon32, HICON__* icon48,
                                              HICON__* icon128, TError& outError) override;
  TError IWinExtensions_GetCommandLineOptions(ITextReceiver& receiver) override;
  TError IWinExtensions_SuppressAutoPlay(TAutoPlayCommand command) override;
  IWinNativeControlCallbackToken* IWinExtensions_HostNativeControl(HWND__* hwnd,
                                                                   IWinNativeControlCallback* callback,
                                                                   IView& view, TError& outError) override;

 protected:
  // --- Hooks of the contract layer, in its order

  bool CMorvaneGlue_CheckInvariant() const override;
  void CMorvaneGlue_SetDebugSettings(const TDebugSettings& settings) override;
  TDebugSettings CMorvaneGlue_GetDebugSettings() override;
  void CMorvaneGlue_Run(IMorvaneRunBehavior* behavior, const TStartupParams& params) override;
  IMorvaneRunBehavior* CMorvaneGlue_GetBehavior() override;
  IMorvaneRunBehavior* CMorvaneGlue_GetBehavior() const override;
  void CMorvaneGlue_StartQuitting() override;
  void CMorvaneGlue_StopQuitting() override;
  bool CMorvaneGlue_IsQuitting() override;
  TMonitorList CMorvaneGlue_GetMonitors() override;
  bool CMorvaneGlue_IsFormatOnClipboard(const TClipboardFormat& format) override;
  std::unique_ptr<IData> CMorvaneGlue_GetClipboardData(const TClipboardFormat& format) override;
  void CMorvaneGlue_ReplaceClipboardContents(const std::vector<TClipboardFormat>& formats,
                                             IClipboardDataGetter* getter) override;
  TString CMorvaneGlue_GetResourceString(const std::string& key) override;
  std::uint64_t CMorvaneGlue_GetCurrentMS() override;
  std::uint64_t CMorvaneGlue_ConvertMSToPrecisionTicks(std::uint64_t ms) override;
  std::unique_ptr<IIcon> CMorvaneGlue_CreateBuiltInIcon(TBuiltinIcon icon) override;
  std::unique_ptr<IIcon> CMorvaneGlue_CreateIconForURL(const std::string& url) override;
  std::unique_ptr<IIcon> CMorvaneGlue_CreateResourceIcon(const std::string& key) override;
  std::unique_ptr<IIcon> CMorvaneGlue_CreatePixmapIcon(const void* pixmapRGBA) override;
  TMouseState CMorvaneGlue_SampleMouseState(IWindow* window) override;
  void CMorvaneGlue_SetOverrideMouseShape(IMouseShape* overrideShape) override;
  void CMorvaneGlue_RequestMouseShapeArbitration() override;
  void CMorvaneGlue_AllocateMouseCapture(IWindow* window, IMouseCapture* capture) override;
  void CMorvaneGlue_ReleaseMouseCapture() override;
  TClickDragResult CMorvaneGlue_CheckForClickDragOperation(IWindow& window,
                                                           const TMouseEvent& event) override;
  void CMorvaneGlue_AttachModifierKeyListener(IModifierKeyListener* listener) override;
  void CMorvaneGlue_DetachModifierKeyListener(IModifierKeyListener* listener) override;
  void CMorvaneGlue_InstallKeyReleaseCallback(std::uint32_t virtualKey,
                                              IKeyReleaseCallback* callback) override;
  void CMorvaneGlue_RemoveKeyReleaseCallback(std::uint32_t virtualKey,
                                             IKeyReleaseCallback* callback) override;
  std::unique_ptr<IMouseShape> CMorvaneGlue_LoadResourceMouseShape(const std::string& key) override;
  std::unique_ptr<IMouseShape> CMorvaneGlue_CreateBuiltInMouseShape(TBuiltInMouseShape mouseShape) override;
  void CMorvaneGlue_Yield() override;
  void CMorvaneGlue_WakeUpIdle() override;
  TModifierKeys CMorvaneGlue_ShortcutModsToModifiers(TShortcutModifiers shortcutMods) override;
  bool CMorvaneGlue_CanKeyBeInterpretedAs(const TPhysicalKeySpec& physicalKey,
                                          const TModifierKeys& physicalMods,
                                          const TKeyInterpretation& wantedInterpretation) override;
  TKeyInterpretation CMorvaneGlue_GetDefaultInterpretation(const TPhysicalKeySpec& physicalKey,
                                                           const TModifierKeys& physicalMods) override;
  void CMorvaneGlue_RequestMenuBarsSetup() override;
  bool CMorvaneGlue_DisplayPopupMenu(const std::vector<TMenuItem>& items, IWindow& window,
                                     const TPoint& point, std::uint32_t flags,
                                     std::int16_t& inOutSelectedIndex) override;
  bool CMorvaneGlue_DisplayContextualMenu(const std::vector<TMenuItem>& items, IWindow& window,
                                          const TPoint& point, std::uint32_t flags,
                                          std::uint16_t& outSelectedIndex) override;
  IDocumentWindow* CMorvaneGlue_CreateDocumentWindow(IDocumentWindowBehaviorFactory& factory,
                                                     TStyleFlags styleFlags,
                                                     bool listedInWindowMenu) override;
  std::vector<IWindow*> CMorvaneGlue_GetDocumentWindowsZ() override;
  IModelessDialog* CMorvaneGlue_CreateModelessDialog(IModelessDialogBehaviorFactory& factory,
                                                     TStyleFlags styleFlags,
                                                     bool listedInWindowMenu) override;
  std::vector<IWindow*> CMorvaneGlue_GetModelessDialogsZ() override;
  IModalDialog* CMorvaneGlue_CreateModalDialog(IModalDialogBehaviorFactory& factory, IModalOwner* owner,
                                               bool blocking, TStyleFlags styleFlags) override;
  std::vector<IWindow*> CMorvaneGlue_GetModalDialogsZ() override;
  IFloatingWindow* CMorvaneGlue_CreateFloatingWindow(IFloatingWindowBehaviorFactory& factory,
                                                     TStyleFlags styleFlags) override;
  std::vector<IWindow*> CMorvaneGlue_GetFloatingWindowsZ() override;
  void CMorvaneGlue_CreateAlertBox(IModalOwner* modalOwner, bool blocking, const TAlertSpec& alertSpec,
                                   IAlertBoxListener* listener) override;
  IView* CMorvaneGlue_CreateView(IViewBehaviorFactory& factory, IView& superView,
                                 const std::string& debugName) override;
  void CMorvaneGlue_InvalidateView(IView& view, const TRect& rect) override;
  void CMorvaneGlue_CreateSaveAsDialog(ISaveAsDialogBehavior* behavior, std::uint32_t dialogContext,
                                       IModalOwner* modalOwner, bool blocking,
                                       const TString& templateFileName, const std::vector<TFileType>& types,
                                       const TString& prompt) override;
  void CMorvaneGlue_CreateOpenDialog(IOpenDialogBehavior* behavior, std::uint32_t dialogContext,
                                     IModalOwner* modalOwner, bool blocking, bool allowMultiSelect,
                                     const std::vector<TFileType>& types, const TString& prompt,
                                     IOpenDialogCustomizeBehavior* customizeBehavior) override;
  void CMorvaneGlue_CreateDirectoryChooserDialog(IDirectoryChooserBehavior* behavior,
                                                 std::uint32_t dialogContext, IModalOwner* modalOwner,
                                                 bool blocking, const TString& prompt) override;
  void CMorvaneGlue_CreateSaveChangesDialog(ISaveChangesBehavior* behavior, IModalOwner* modalOwner,
                                            bool blocking, const TString& documentName,
                                            TCloseReason reason) override;
  void CMorvaneGlue_DrawView(IView& view, IDrawTools& tools) override;
  void CMorvaneGlue_PostAppMessage(std::uint32_t a, std::uint32_t b) override;
  void* CMorvaneGlue_GetMacExtensions() override;
  IWinExtensions* CMorvaneGlue_GetWinExtensions() override;

 private:
  // --- Loop
  void LogSystemReport();
  void FetchStartupLabels();
  void RunMainLoop();
  void AbandonRun();
  void MakeMessageWindow();
  void EndMessageWindow();
  void StartIdleThread();
  void EndIdleThread();
  void ParseCommandLine(const TString& commandLine);
  bool OpenCommandLineFiles();
  void CallOnNoDocument(TNoDocumentKind kind);
  void ReopenIfRequested();
  bool TakeMessage(MSG& outMsg, bool mayWait);
  void HandleMessage(const MSG& msg);
  void OnSecondInstanceMessage();
  bool NoticeCommandLine();
  void HandleSecondInstance();
  bool PreTranslate(const MSG& msg);
  void DeliverError(TError code);
  void RebuildRequestedMenuBars();
  void SetUpMenuBar(CWinWindow& window);

  // --- Hidden windows
  bool IsOwnMessage(WPARAM wParam) const;
  bool DispatchPrivateMessage(UINT message, WPARAM wParam, LPARAM lParam);
  void OnAppMessage(std::uint32_t a, std::uint32_t b);
  bool CallListener(UINT message, LPARAM lParam);
  void OnFileDialogMessage(UINT message, LPARAM lParam);

  // --- Windows
  void RequireRun() const;

  // --- Keyboard
  struct TKeyReleaseEntry {
    std::uint32_t fVirtualKey;
    IKeyReleaseCallback* fCallback;
    bool fIsCalled;  // once; it is in the list until the call returns
  };
  using TKeyReleaseList = std::list<boost::shared_ptr<TKeyReleaseEntry>>;
  // Still in the list, whatever the others did, and not called yet.
  bool IsWaiting(const boost::shared_ptr<TKeyReleaseEntry>& entry) const;
  TError CallKeyReleases(TKeyReleaseReason reason, const TPhysicalKeySpec* releasedKey);
  TError CallKeyRelease(const boost::shared_ptr<TKeyReleaseEntry>& entry, const TPhysicalKeySpec& key,
                        TKeyReleaseReason reason);

  // --- Menus
  // False if nothing was chosen.
  bool TrackPopupItems(const std::vector<TMenuItem>& items, IWindow& window, const TPoint& point,
                       std::uint32_t flags, std::int32_t& outIndex);

  // --- Quitting
  void LeaveQuitMode();
  void CloseNextWindow();
  void CloseNextWindowAfterMessage();
  bool KeepRunning() const;
  bool DecideOnLingering(bool keepRunning);
  void StopLingerTimer();

  // --- Fields

  IMorvaneRunBehavior* fBehavior;  // owned from IMorvane_Run on
  const boost::shared_ptr<CWindowRegistry> fWindows;
  const boost::shared_ptr<CBlocking> fBlocking;
  TStartupStrings fStartupStrings;
  TDebugSettings fDebugSettings;
  boost::weak_ptr<CWinWindow> fMouseCaptureWindow;
  std::list<IModifierKeyListener*> fModifierKeyListeners;  // the client's, as are the next
  TKeyReleaseList fKeyReleaseCallbacks;
  std::unique_ptr<CMessageWindow> fMessageWindow;  // these three exist during IMorvane_Run only
  std::unique_ptr<CHiderWindow> fHiderWindow;
  std::unique_ptr<CIdleThread> fIdleThread;
  // For other threads, which may post messages and wake the idle thread at any time.
  std::atomic<HWND> fMessageHwnd = nullptr;
  SRWLOCK fIdleThreadLock = SRWLOCK_INIT;
  boost::weak_ptr<CWinWindow> fQuitWindow;  // the one last asked to close
  bool fIsInQuitMode;
  bool fIsQuitEventDue;  // something has changed that may leave the application without anything to show
  HICON fAppIcon;
  std::vector<TString> fCommandLineOptions;  // with their "/"
  std::vector<TString> fCommandLineFiles;    // still to be handed to the client
  bool fAppIsActive;
  UINT_PTR fLingerTimer;  // 0: not lingering
  bool fLingerExpired;
  std::uint32_t fLingerMS;
  bool fReopenRequested;                   // a second launch came without files
  std::uint32_t fUnannouncedCommandLines;  // that were read before their message came, if it ever does
  bool fStartupFlag;
  bool fIdleDue;
  std::uint32_t fMenuBarRebuildRequests;            // since the last flush
  std::vector<const CWinWindow*> fMenuBarsInSetUp;  // the innermost last
  bool fMenuBarWaits;                               // one of these has been asked for again
  TMonitorList fMonitors;                           // the last one that could be read
  UINT fRegisteredAutoPlayMessage;                  // 0 until it is first suppressed
  std::uint32_t fAutoPlaySuppressCount;
  std::vector<IMessageCallListener*> fMessageCallListeners;
  DWORD fMainThreadId;
};

}  // namespace NSMorvane
