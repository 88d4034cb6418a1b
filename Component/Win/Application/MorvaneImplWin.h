// The root object of the toolkit on Windows, one in a process. It delegates most calls of clients and windows
// to classes with a state of their own, each in the file of its name beside this one, elsewhere in
// Component/Win or in Component/Portable. It carries out the run itself:
//
// MorvaneImplWin.cpp             life, and the small hooks
// MorvaneImplWinRunLoop.cpp      IMorvane_Run, the message loop, errors
// MorvaneImplWinMessages.cpp     the private messages
// MorvaneImplWinWindows.cpp      making windows, alerts and views, lists of windows
// MorvaneImplWinPopupMenus.cpp   popup menus
// MorvaneImplWinKeyboard.cpp     interpretation of keys, key listeners
// MorvaneImplWinMouse.cpp        the mouse: state, shape, capture
// MorvaneImplWinServices.cpp     clipboard and icons
// MorvaneImplWinDialogs.cpp      file dialogs
//
// Everything here runs on the main thread, the one that runs IMorvane_Run, unless a comment says otherwise.
#pragma once

#include <windows.h>

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Component/Portable/Application/KeyReleases.h"
#include "Component/Portable/Application/ModifierKeyListeners.h"
#include "Component/Portable/Base/Scopes.h"
#include "Component/Portable/Contract/MorvaneGlueRoot.h"
#include "Component/Portable/Opening/PendingCommandLines.h"
#include "Component/Win/Application/AppActivation.h"
#include "Component/Win/Application/FileDialogs.h"
#include "Component/Win/Application/IdleCalls.h"
#include "Component/Win/Application/MenuBars.h"
#include "Component/Win/Application/Quitting.h"
#include "Component/Win/Application/UnseenWindows.h"
#include "Component/Win/Application/WinExtensions.h"
#include "Component/Win/Launch/MorvaneImplWinStartupStrings.h"
#include "Component/Win/Platform/MessageCallListeners.h"
#include "Component/Win/Window/WindowHost.h"
#include "Interface/Morvane.h"

namespace NSMorvane {

struct TAlertPlan;

class CMorvaneImpl final : public CMorvaneGlue, public IWindowHost, CNotCopied {
 public:
  // Throws std::exception if there is one already.
  CMorvaneImpl();
  // Must not be called inside IMorvane_Run.
  ~CMorvaneImpl() override;

  // On the library's heap, so that the client may delete the object.
  static void* operator new(std::size_t size) { return Morvane_New(size); }
  static void operator delete(void* block) { Morvane_Delete(block); }

  // Null while there is none. Process-wide, since the system calls window procedures without a pointer that
  // leads to the root object.
  static CMorvaneImpl* gMorvaneImpl;

  bool IsMainThread() const { return ::GetCurrentThreadId() == fMainThreadId; }
  // Called after each native message. Does not throw.
  void FlushMenuBarRequests();
  LRESULT HandlePrivateMessage(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
  CMessageCallListeners& GetMessageCallListeners() { return fMessageCallListeners; }

  // --- IWindowHost

  IMorvane& GetMorvane() override { return *this; }
  TPoint GetPlacementOffset() override;
  void ForgetPlacementOffset() override { fPlacementOffset.reset(); }
  IMorvaneRunBehavior* GetBehavior() const override { return fBehavior; }
  const TDebugSettings& GetDebugSettings() const override { return fDebugSettings; }
  const TStartupStrings& GetStartupStrings() const override { return fStartupStrings; }
  const boost::shared_ptr<CWindowRegistry>& GetWindowRegistry() const override { return fWindows; }
  const boost::shared_ptr<CBlocking>& GetBlocking() const override { return fBlocking; }
  HICON GetAppIcon() override;
  HWND GetHiderWindow() const override { return fHiderWindow ? fHiderWindow->GetHwnd() : nullptr; }
  void RequestMenuBars() override { fMenuBars.Request(); }
  bool MenuBarsAreStale() const override { return fMenuBars.IsRequested(); }
  void NotifyModifierKeyListeners(const TModifierKeysEvent& previous, const TModifierKeysEvent& now) override;
  void OnKeyReleased(const TPhysicalKeySpec& key) override;
  TError AbandonKeyReleases() override { return fKeyReleases.Abandon(); }
  void ForgetMouseCaptureWindow() override { fMouseCaptureWindow.reset(); }
  void OnAppActivation(bool flag, DWORD threadId) override { fAppActivation.OnChange(flag, threadId); }
  void RunIdleIfDue() override { fIdleCalls.RunIfDue(fBehavior); }
  bool NoticeCommandLine() override;
  void DispatchQuitEvent() override { fQuitting.DispatchQuitEvent(); }
  bool OnQueryEndSession() override;
  bool IsAutoPlayQuery(UINT message) override {
    return fWinExtensions.GetAutoPlay().IsSuppressedQuery(message);
  }

 protected:
  // --- Hooks of the contract layer, in its order

  bool CMorvaneGlue_CheckInvariant() const override;
  void CMorvaneGlue_SetDebugSettings(const TDebugSettings& settings) override;
  TDebugSettings CMorvaneGlue_GetDebugSettings() override { return fDebugSettings; }
  void CMorvaneGlue_Run(IMorvaneRunBehavior* behavior, const TStartupParams& params) override;
  IMorvaneRunBehavior* CMorvaneGlue_GetBehavior() override;
  IMorvaneRunBehavior* CMorvaneGlue_GetBehavior() const override;
  void CMorvaneGlue_StartQuitting() override { fQuitting.Start(); }
  void CMorvaneGlue_StopQuitting() override { fQuitting.Stop(); }
  bool CMorvaneGlue_IsQuitting() override { return fQuitting.IsInQuitMode(); }
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
  void CMorvaneGlue_WakeUpIdle() override { fIdleCalls.WakeUp(); }
  TModifierKeys CMorvaneGlue_ShortcutModsToModifiers(TShortcutModifiers shortcutMods) override;
  bool CMorvaneGlue_CanKeyBeInterpretedAs(const TPhysicalKeySpec& physicalKey,
                                          const TModifierKeys& physicalMods,
                                          const TKeyInterpretation& wantedInterpretation) override;
  TKeyInterpretation CMorvaneGlue_GetDefaultInterpretation(const TPhysicalKeySpec& physicalKey,
                                                           const TModifierKeys& physicalMods) override;
  void CMorvaneGlue_RequestMenuBarsSetup() override { fMenuBars.Request(); }
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
  void* CMorvaneGlue_GetMacExtensions() override { return nullptr; }
  IWinExtensions* CMorvaneGlue_GetWinExtensions() override { return &fWinExtensions; }

 private:
  // --- Run loop
  void FetchStartupLabels();
  void RunMainLoop();
  void AbandonRun();
  bool OpenCommandLineFiles();
  void CallOnNoDocument(TNoDocumentKind kind);
  void ReopenIfRequested();
  // Does what is due, waits for one message and handles it. Returns false for WM_QUIT. Without a window there
  // is no wait while something is due, and the wait also ends when another thread sends a message, since an
  // idle call may be due then. In these cases false can also mean that there was no message.
  bool RunOneTurn();
  // The same without waiting, but also true for WM_QUIT; false if there was no message. `outMsg` is the
  // message that was handled.
  bool PumpOneMessage(MSG& outMsg);
  // Makes an idle call due, then handles messages until no window of the library has this handle any more.
  void RunModalLoop(HWND hwnd);
  bool TakeMessage(MSG& outMsg, bool mayWait);
  void HandleMessage(const MSG& msg);
  void OnSecondInstanceMessage();
  void HandleSecondInstance();
  bool PreTranslate(const MSG& msg);
  void DeliverError(TError code);

  // --- Private messages
  static LRESULT CALLBACK MessageWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
  bool IsOwnMessage(WPARAM wParam) const;
  bool DispatchPrivateMessage(UINT message, WPARAM wParam, LPARAM lParam);
  void OnAppMessage(std::uint32_t a, std::uint32_t b);

  // --- Windows
  void RequireRun() const;
  void RequireRunOnMainThread() const;
  // Returns when the dialog is on the screen or, if it blocks, when the client has its result.
  void RunFileDialog(const boost::shared_ptr<CFileDialogInfo>& dialog);
  // Returns at once or, if `blocking`, when the alert has ended.
  void ShowAlert(IModalOwner* owner, bool blocking, const TAlertPlan& plan,
                 const boost::shared_ptr<IAlertBoxListener>& listener);

  // --- Fields

  const boost::shared_ptr<CWindowRegistry> fWindows;
  const boost::shared_ptr<CBlocking> fBlocking;
  IMorvaneRunBehavior* fBehavior = nullptr;  // owned during the run; a failed run gives it back
  TStartupStrings fStartupStrings;
  TDebugSettings fDebugSettings;
  CPendingCommandLines fCommandLines;
  CModifierKeyListeners fModifierKeyListeners;
  CKeyReleases fKeyReleases;
  boost::weak_ptr<CWinWindow> fMouseCaptureWindow;
  CMessageTarget fMessageTarget;  // has a window during IMorvane_Run only
  CMessageCallListeners fMessageCallListeners;
  std::unique_ptr<CHiderWindow> fHiderWindow;  // during IMorvane_Run only
  CIdleCalls fIdleCalls;
  CFileDialogs fFileDialogs;
  CQuitting fQuitting;
  CMenuBars fMenuBars;
  CAppActivation fAppActivation;
  CWinExtensions fWinExtensions;
  HICON fAppIcon = nullptr;
  TMonitorList fMonitors = {};  // the last list that could be read
  std::optional<TPoint> fPlacementOffset;
  DWORD fMainThreadId;
};

}  // namespace NSMorvane
