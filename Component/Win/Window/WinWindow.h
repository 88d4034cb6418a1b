// The platform window object: the common base of all kinds of windows.
//
// CWinWindow itself keeps the contract, the life and the routing of messages. Everything else is done by its
// parts. Each is a class with private state that knows only as much of the window as it is given:
//
// WinWindowFocus       focus and activation; with WindowFocus, which decides who has the focus
// WinWindowMouse       the mouse and its capture; with MouseDispatch, which decides what views hear
// WinWindowKeyboard    the keyboard; with KeyDispatch, the chain of a key press
// WinWindowPlacement   sizes and their limits, placement, title; with the arithmetic of WindowPlacement
// WinWindowMenuBar     the menu bar; with MenuBarComposition, which decides what stands in it
// WinWindowPainting    painting and invalidation
// WinWindowTooltips    tooltips
// WinViewInspector     debug layers over views; with ViewInspector, which describes the view under the mouse
// WinWindowListeners   listeners of messages
// WinNativeControl     native controls that views host
// WinWindowAlpha, WinSizeGrip, WinDroppedFiles, WinInputMethod
//
// The window's own files are WinWindow.cpp (life, contract), WinWindowMessages.cpp (the message function and
// its table) and WinWindowCommands.cpp (commands of menus). The kinds of windows that clients make are in the
// folder WindowKinds.
//
// Any callback may end the window: whoever calls out and goes on afterwards holds a copy of the client's
// reference. Everything belongs to the main thread.
#pragma once

#include <windows.h>

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>
#include <vector>

#include "Component/Portable/Base/Scopes.h"
#include "Component/Portable/Menus/MenuBarState.h"
#include "Component/Portable/Views/ViewWindow.h"
#include "Component/Portable/Windows/MorvaneGlueWindow.h"
#include "Component/Win/Platform/NativeWindowWrapper.h"
#include "Component/Win/Platform/WinMsgEventListener.h"
#include "Component/Win/Window/WindowEvents.h"
#include "Component/Win/Window/WinSizeGrip.h"
#include "Component/Win/Window/WinViewInspector.h"
#include "Component/Win/Window/WinWindowAlpha.h"
#include "Component/Win/Window/WinWindowClass.h"
#include "Component/Win/Window/WinWindowCore.h"
#include "Component/Win/Window/WinWindowFocus.h"
#include "Component/Win/Window/WinWindowKeyboard.h"
#include "Component/Win/Window/WinWindowListeners.h"
#include "Component/Win/Window/WinWindowMenuBar.h"
#include "Component/Win/Window/WinWindowMouse.h"
#include "Component/Win/Window/WinWindowPainting.h"
#include "Component/Win/Window/WinWindowPlacement.h"
#include "Component/Win/Window/WinWindowTooltips.h"
#include "Interface/MorvaneRoot.h"

namespace NSMorvane {

class CBlocking;

class CWinWindow : public CWindowGlue,
                   public IModalOwner,
                   public IImplFocusTools,
                   public INativeWindowWrapper_ProcListener,
                   public IViewWindow,
                   protected IWindowEvents,
                   private TWindowCore,
                   CNotCopied {
 public:
  ~CWinWindow() override;

  bool CheckInvariant() const { return CWindowGlue_CheckInvariant(); }
  HWND GetHwnd() const { return fHwnd; }
  TWindowKind GetWindowKind() const { return fWindowKind; }
  // A modal window blocks its owner or, without an owner, the application.
  bool IsModal() const { return fWindowKind == kWindowKindModalDialog || fWindowKind == kWindowKindAlertBox; }
  HWND GetOwnerHwnd() const { return fOwnerHwnd; }
  bool IsListedInWindowMenu() const { return fListedInWindowMenu; }
  const TString& GetTitle() const { return fPlacement.GetTitle(); }
  bool IsModified() const { return fPlacement.IsModified(); }
  bool IsAlwaysOnTop() const { return fIsAlwaysOnTop; }
  // Dialogs that are opened later inherit the setting.
  void SetAlwaysOnTop(bool flag);

  CWinWindowMouse& GetMouse() { return fMouse; }
  CWinWindowMenuBar& GetMenuBar() { return fMenuBar; }
  CWinWindowListeners& GetListeners() { return fListeners; }
  CWinWindowTooltips& GetTooltips() { return fTooltips; }
  const CPaintSamples& GetPaintSamples() const { return fPainting.GetSamples(); }

  // --- Life

  // Wires the window up: stores the reference that stands for the client's hold on it, and adds the window to
  // the registry and to the child windows of its native parent. Called once, by whoever made the window.
  void SetClientsWindowReference(const boost::shared_ptr<CWinWindow>& reference);
  // A copy; the window lives as long as one is left.
  boost::shared_ptr<CWinWindow> GetClientsWindowReference() const;
  // The same, but empty once the window has been released, which is not reported here.
  boost::shared_ptr<CWinWindow> LockClientsWindowReference() const { return fClientsWindowReference; }

  // Natively visible and not hidden by the library.
  bool IsVisible() const { return TWindowCore::IsVisible(); }
  bool IsIconic() const { return ::IsIconic(fHwnd) != 0; }
  bool IsZoomed() const { return ::IsZoomed(fHwnd) != 0; }
  // False before Show and after Hide.
  bool HasBeenShown() const { return !fIsHidden; }
  // Restores the window if it is minimized, brings it to the front and activates it. If a dialog blocks it,
  // the dialog comes to the front, with this window behind it, and is activated.
  void FocusNow();
  // A native control of the view has got the keyboard by itself; null when a control has lost it.
  void SetFocusFromNative(CViewImpl* view) { fFocus.GetFocus().OnControlFocused(view); }

  // Called once, when the window is wired up and has its behaviour.
  virtual void Show();
  void Hide();
  // Ends the window at once or, while it handles a message, after that message.
  void ReleaseWindow();
  // Asks the client to close the window, since the application is quitting.
  void RequestCloseFromLibrary();

  // --- Messages

  LRESULT WindowProc(CNativeWindowWrapper& wrapper, HWND hwnd, UINT message, WPARAM wParam,
                     LPARAM lParam) override;
  // Called with each message of this window and its child windows before it is dispatched. True if it was
  // handled and must not be dispatched.
  virtual bool PreTranslateMessage(const MSG& message);
  // Lets the kind and the views of the focus chain complete the state, and shows it.
  void SetUpMenuBar(CMenuBarState& state);

  // --- The window as its views see it. Behaviours may end it within most of these, which therefore hold it

  CViewImpl* IImplFocusTools_GetOnDutyFocusView() override { return fFocus.GetFocus().GetNextView(); }
  CViewImpl* IImplFocusTools_GetConceptualFocusView() override { return fFocus.GetFocus().GetNextView(); }
  void IImplFocusTools_SetConceptualFocusView(CViewImpl* view) override;
  void IImplFocusTools_GetTabViews(std::vector<CViewImpl*>& out) override { out = fTabViews; }
  void IImplFocusTools_RemoveTabView(const CViewImpl* view) noexcept override { std::erase(fTabViews, view); }
  boost::shared_ptr<void> IImplFocusTools_KeepAlive() override { return fClientsWindowReference; }
  void InvalidateRect(const TRect& rect) override { fPainting.InvalidateRect(rect); }
  void BeginInvalidations() override { fPainting.BeginInvalidations(); }
  void EndInvalidations() noexcept override { fPainting.EndInvalidations(); }
  void InvalidateRegion(const CRegion& region) override { fPainting.InvalidateRegion(region); }
  void MarkToolRectsDirty() override { fTooltips.MarkRectsDirty(); }
  std::uint32_t AddTool(CViewImpl& view, const TString& text) override;
  void UpdateToolText(std::uint32_t tool, CViewImpl&, const TString& text) override;
  void RemoveTool(std::uint32_t tool, CViewImpl& view) override;

  // --- IModalOwner

  TError IModalOwner_GetNativeWindow(TNativeWindow& out) override;

 protected:
  // `owner` may be null. The window is made, but neither wired up nor shown.
  CWinWindow(IWindowHost* host, TWindowKind windowKind, IModalOwner* owner, DWORD style, DWORD exStyle,
             bool makeSizeGrip, bool listedInWindowMenu, bool hasCloseCommand);

  boost::shared_ptr<void> KeepAlive() const override { return fClientsWindowReference; }
  bool CWindowGlue_CheckInvariant() const override;
  TNativeWindow CWindowGlue_GetNativeWindow() override;
  CViewImpl* CWindowGlue_GetOnDutyFocusView() override;
  CViewImpl* CWindowGlue_GetConceptualFocusView() override;
  void CWindowGlue_SetConceptualFocusView(CViewImpl* view) override;
  std::vector<CViewImpl*> CWindowGlue_GetTabViews() override;
  void CWindowGlue_SetTabViews(const std::vector<CViewImpl*>& tabViews) override;
  CViewImpl* CWindowGlue_GetRootView() override;
  bool CWindowGlue_IsActive() override;
  TRect CWindowGlue_GetFrameRect() override;
  TRect CWindowGlue_FrameRectToClientRect(const TRect& rect) override;
  TRect CWindowGlue_ClientRectToFrameRect(const TRect& rect) override;
  std::uint8_t CWindowGlue_GetGlobalAlpha() override;
  void CWindowGlue_SetGlobalAlpha(std::uint8_t alpha) override;

  // --- For the kinds

  IWindowHost& GetHost() const { return *fHost; }
  CWindowRegistry& GetRegistry() const { return *fWindows; }
  CViewImpl* GetFocusView() const { return fFocus.GetFocus().GetView(); }
  TWindowStateRecord GetWindowState() const;
  void SetWindowState(const TWindowStateRecord& state);
  // The window that natively owns this one has been released. Only alerts hear of it.
  virtual void OnOwnerReleased() {}
  // What to add to screen coordinates to get those of the native placement.
  TPoint OffsetToNativePlacement() const { return fPlacement.OffsetToNativePlacement(); }
  // The destructor of every kind calls this first, before it deletes the behaviour.
  void PrepareDestruction();

 private:
  class CMessageTable;  // from messages to handlers

  // Life
  static LRESULT CALLBACK WindowStubProcCallback(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
  HWND ChooseNativeOwner();
  void MakeNativeWindow(DWORD style, DWORD exStyle, bool makeSizeGrip);
  void MakeRootView();
  void AddChildWindow(const boost::shared_ptr<CWinWindow>& childWindow);
  void LetGoOfAlerts();
  void AddToHiddenWindows();
  void KillWindowTimer();
  void DismantleNativeWindow();
  void OnNativeWindowLost();
  void MakeStandIn();

  // Messages
  void PreDispatch(const TWinMessage& message);
  // Passes a message on to the next listener of the native window, and in the end to the native procedure.
  LRESULT ForwardMessage(const TWinMessage& message);
  LRESULT AnswerQueryEndSession();

  // Commands
  void OnCommand(UINT command);
  void DispatchMenuCommand(std::uint32_t command);
  LRESULT OnSysCommand(const TWinMessage& message);
  void GrayCloseCommand();

  boost::shared_ptr<CNativeWindowWrapper> fNativeWindowWrapper;  // empty until WM_NCCREATE
  const boost::shared_ptr<CBlocking> fBlocking;
  boost::shared_ptr<CWinWindow> fClientsWindowReference;  // empty before wiring up and after ReleaseWindow
  IMorvaneRunBehavior* fRunBehavior;                      // never called, since the run may end first
  // Keeps the root view alive if a client releases it, though it does not belong to the client.
  boost::shared_ptr<CViewImpl> fRootViewReference;
  const HWND fOwnerHwnd;  // of the owner given at creation, or null
  const bool fListedInWindowMenu;
  const bool fHasCloseCommand;
  const CWindowClassRef fWindowClass;
  boost::weak_ptr<CWinWindow> fParentWindow;                 // whose fChildWindows has this one
  std::vector<boost::shared_ptr<CWinWindow>> fChildWindows;  // the windows that this one owns natively
  std::vector<CViewImpl*> fTabViews;
  UINT_PTR fTimerID = 0;   // 0: none
  bool fIsEnding = false;  // no message reaches this object any more

  CWinViewInspector fInspector;
  CWinWindowTooltips fTooltips;
  CWinWindowFocus fFocus;
  CWinWindowMouse fMouse;
  CWinWindowKeyboard fKeyboard;
  CWinWindowPlacement fPlacement;
  CWinWindowMenuBar fMenuBar;
  CWinWindowPainting fPainting;
  CWinWindowListeners fListeners;
  CWinWindowAlpha fAlpha;
  CWinSizeGrip fSizeGrip;
};

}  // namespace NSMorvane
