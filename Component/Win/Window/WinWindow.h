// The platform window object: the common base of all kinds of windows.
//
// CWinWindow is one class in several files, cut by topic; the sections of the class stand in the same order:
//
//   WinWindow.cpp            life: construction, Show, Hide, ReleaseWindow, destruction
//   WinWindowState.cpp       sizes, placement, title
//   WinWindowFocus.cpp       activation, focus
//   WinWindowMenus.cpp       the menu bar
//   WinWindowMessages.cpp    the message function and its table, listeners
//   WinWindowSystem.cpp      system commands, size limits, dropped files, input methods
//   WinWindowPainting.cpp    painting, invalidation, global alpha
//
// What the window does by topic is done by its parts, each a class of its own: WinWindowMouse and
// WinWindowKeyboard (with MouseDispatch and KeyDispatch, which decide what views hear), WinWindowTooltips.
//
// Beside it stand WinWindowClass (native window classes), WinWindowPlacement (arithmetic on placements) and
// Blocking (what dialogs block). The kinds of windows that clients make are
// WinDocumentWindow, WinModelessDialog, WinModalDialog and WinFloatingWindow, with WinWindowKind for what
// they have in common.
//
// Any callback may end the window: whoever calls out and goes on afterwards holds a copy of the client's
// reference. Everything belongs to the main thread.
#pragma once

#include <windows.h>

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>
#include <map>
#include <memory>
#include <vector>

#include "Component/Portable/Base/Geometry.h"
#include "Component/Portable/Menus/MenuBarState.h"
#include "Component/Portable/Views/ViewWindow.h"
#include "Component/Portable/Windows/MorvaneGlueWindow.h"
#include "Component/Portable/Windows/WindowFocus.h"
#include "Component/Win/Drawing/WinPaintSamples.h"
#include "Component/Win/Platform/NativeWindowWrapper.h"
#include "Component/Win/Platform/WinMsgEventListener.h"
#include "Component/Win/Window/WindowEvents.h"
#include "Component/Win/Window/WinWindowClass.h"
#include "Component/Win/Window/WinWindowCore.h"
#include "Component/Win/Window/WinWindowKeyboard.h"
#include "Component/Win/Window/WinWindowMouse.h"
#include "Component/Win/Window/WinWindowPlacement.h"
#include "Component/Win/Window/WinWindowTooltips.h"
#include "Interface/MorvaneRoot.h"

namespace NSMorvane {

class CMenuBuilder;
class CBlocking;
class CWindowRegistry;
class COffscreenContext;
class CPaintContext;
class CRegion;
class CViewImpl;
class CWinWindow;

// An item of the library's own in the window menu.
struct TWindowMenuItem {
  TString fText;
  UINT fCommand;
  UINT fNativeFlags;

  friend bool operator==(const TWindowMenuItem&, const TWindowMenuItem&) = default;
};

class CWinWindow : public CWindowGlue,
                   public IModalOwner,
                   public IImplFocusTools,
                   public IFocusWindow,
                   public INativeWindowWrapper_ProcListener,
                   public IViewWindow,
                   protected IWindowEvents,
                   protected TWindowCore {
 public:
  // --- Life (WinWindow.cpp)

  ~CWinWindow() override;
  CWinWindow(const CWinWindow&) = delete;
  CWinWindow& operator=(const CWinWindow&) = delete;

  bool CheckInvariant() const { return CWindowGlue_CheckInvariant(); }
  HWND GetHwnd() const { return fHwnd; }
  TWindowKind GetWindowKind() const { return fWindowKind; }
  // Blocks its owner, or without one the application.
  bool IsModal() const { return fWindowKind == kWindowKindModalDialog || fWindowKind == kWindowKindAlertBox; }
  HWND GetOwnerHwnd() const { return fOwnerHwnd; }
  CViewImpl* GetRootView() const { return fRootView; }
  bool IsListedInWindowMenu() const { return fListedInWindowMenu; }
  bool HasCloseCommand() const { return fHasCloseCommand; }

  // Wires the window up: it takes the reference that the client holds it by, stands in the registry from here
  // on, and among the child windows of its native parent. Once, by whoever made the window.
  void SetClientsWindowReference(const boost::shared_ptr<CWinWindow>& reference);
  // A copy; the window lives as long as one is left.
  boost::shared_ptr<CWinWindow> GetClientsWindowReference() const;
  // The same without a report: empty once the window has been released.
  boost::shared_ptr<CWinWindow> LockClientsWindowReference() const { return fClientsWindowReference; }

  // Natively visible and not hidden by the library.
  bool IsVisible() const;
  bool IsIconic() const;
  bool IsZoomed() const;
  // False while it is being made, and after Hide.
  bool HasBeenShown() const { return !fIsHidden; }
  void Restore();
  // To the front and active, restored if it is minimized. If a dialog blocks it, that comes to the front with
  // this one behind it, and is active.
  void FocusNow();

  // Once, when the window is wired up and has its behaviour.
  virtual void Show();
  void Hide();
  // Ends the window: at once, or when the message that it is handling is through.
  void ReleaseWindow();
  // The application is quitting.
  void RequestCloseFromLibrary();

  // --- Sizes, placement, title (WinWindowState.cpp)

  TWindowStateRecord GetWindowState() const;
  void SetWindowState(const TWindowStateRecord& state);
  TZoomState GetZoomState() const;
  TString GetNativeTitle() const;
  const TString& GetTitle() const { return fWindowState.fTitle; }
  // Measured on a shown window with a client area, computed from the style otherwise.
  TFrameInsets GetFrameInsets() const;

  // --- Activation, focus (WinWindowFocus.cpp)

  // A native control has got the keyboard, or, with null, lost it.
  void SetFocusFromNative(CViewImpl* view);

  // Behaviours can end the window from within these three: they keep it to their end.
  TError IWindow_SetConceptualFocusView(IView* newConceptualFocusView) override;
  TError IWindow_GetTabViews(IViewListReceiver& out) override;
  TError IWindow_SetGlobalAlpha(std::uint8_t alpha) override;

  CViewImpl* IImplFocusTools_GetOnDutyFocusView() override { return fFocus.GetNextView(); }
  CViewImpl* IImplFocusTools_GetConceptualFocusView() override { return fFocus.GetNextView(); }
  void IImplFocusTools_SetConceptualFocusView(CViewImpl* view) override;
  void IImplFocusTools_GetTabViews(std::vector<CViewImpl*>& out) override { out = fTabViews; }
  void IImplFocusTools_SetTabViews(std::vector<CViewImpl*> tabViews) override;
  boost::shared_ptr<void> IImplFocusTools_KeepAlive() override { return fClientsWindowReference; }

  bool IFocusWindow_IsActive() override;
  void IFocusWindow_GiveKeyboard(const TNativeWindow& control) override;
  void IFocusWindow_OnFocusChanged() override;

  TError IModalOwner_GetNativeWindow(TNativeWindow& out) override;

  // --- Tooltips; behaviours can end the window from within adding and removing: they keep it to their end

  void MarkToolRectsDirty() override { fTooltips.MarkRectsDirty(); }
  std::uint32_t AddTool(CViewImpl& view, const TString& text) override;
  void UpdateToolText(std::uint32_t tool, CViewImpl&, const TString& text) override {
    fTooltips.SetText(tool, text);
  }
  void RemoveTool(std::uint32_t tool, CViewImpl& view) override;

  // --- Menu bar (WinWindowMenus.cpp)

  // Has the kind and the views of the focus chain complete the state, and applies it.
  virtual void RunMenuBarSetup(CMenuBarState& state);
  // Rebuilds the menu bar if `state` is not what it shows already.
  virtual void ApplyMenuBarState(const CMenuBarState& state);
  void RebuildCompleteMenuBar(const CMenuBarState& state);
  const CMenuBarState& GetMenuBarState() const { return fMenuBarState; }
  bool HasMenuBar() const { return fMenuHandle != nullptr; }

  bool IsAlwaysOnTop() const { return fAlwaysOnTop; }
  // Dialogs that are opened later inherit it.
  void SetAlwaysOnTop(bool flag);

  // --- Messages (WinWindowMessages.cpp)

  LRESULT WindowProc(CNativeWindowWrapper& wrapper, HWND hwnd, UINT message, WPARAM wParam,
                     LPARAM lParam) override;
  // Listeners stay their maker's.
  void AddMsgEventListener(IWinMsgEventListener* listener);
  void RemoveMsgEventListener(IWinMsgEventListener* listener);
  void AddControlListener(HWND controlHwnd, IWinMsgEventListener* listener);
  void RemoveControlListener(HWND controlHwnd);

  // --- Painting (WinWindowPainting.cpp)

  // In client coordinates; nothing is ever erased.
  void InvalidateRect(const TRect& rect) override;
  void InvalidateRegion(const CRegion& region) override;
  void NativeInvalidateRect(const TRect& rect);
  void NativeInvalidateRegion(const CRegion& region);
  void NativeUpdate();
  void GetPaintSamples(std::vector<TPaintSample>& outSamples) const;

  // --- Mouse and keyboard

  CWinWindowMouse& GetMouse() { return fMouse; }
  // Sees a message of this window or of one inside it before it is dispatched; true uses it up.
  bool PreTranslateMessage(const MSG& message);

 protected:
  // `owner` may be null. The window is made, but neither wired up nor shown.
  CWinWindow(IWindowHost* host, TWindowKind windowKind, IModalOwner* owner, DWORD style, DWORD exStyle,
             bool makeSizeGrip, bool listedInWindowMenu, bool hasCloseCommand);

  // --- Hooks of the contract layer

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

  // What a kind may do otherwise.
  virtual LRESULT OnSysCommand(TWinMessage message);
  virtual LRESULT OnNonClientHitTest(TWinMessage message);

  // What to add to a rectangle in screen coordinates to get one in those of the native placement.
  TPoint OffsetToNativePlacement() const;

  // The first thing that the destructor of every kind does, before its behaviour goes.
  void PrepareDestruction();

  // The views from `view` up to the root view, as long as they have not been released, nearest first.
  static std::vector<boost::shared_ptr<CViewImpl>> ViewChain(CViewImpl* view);

 private:
  // --- Life

  static LRESULT CALLBACK WindowStubProcCallback(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
  HWND ChooseNativeOwner();
  void MakeNativeWindow(DWORD style, DWORD exStyle, bool makeSizeGrip);
  void MakeRootView();
  void AddChildWindow(const boost::shared_ptr<CWinWindow>& childWindow);
  void RemoveChildWindow(const CWinWindow* childWindow);
  void KillWindowTimer();
  void DismantleNativeWindow();
  void AddToHiddenWindows();

  // --- Sizes, placement, title

  void TakeInitialState();
  TRect GetNormalRect(bool minimized, bool maximized) const;
  TRect GetNormalRect(const WINDOWPLACEMENT& wp, bool minimized, bool maximized) const;
  TSize GetClientSize() const;
  bool IsIdeal(const TRect& frameRect) const;
  TWindowPlacement BuildPlacement(const TRect& normalRect) const;
  void RememberPlacementRect(const TRect& frameRect);
  void SetRootViewSize(const TSize& size);
  void SetClientSize(const TSize& size);
  void SetPlacement(const TWindowPlacement& placement);
  void SyncWindowState();        // on WM_WINDOWPOSCHANGED
  void SyncWindowStateOnSize();  // on WM_SIZE
  void SyncShownWindowState(const TRect& normalRect);
  TRect AdoptNativePlacement();
  void SetNativeTitle(const TString& text);

  // --- Activation, focus

  void OnActivated(bool& outHandled);
  void OnDeactivated();
  void OnReceivedFocus();
  void OnLostFocus();

  // --- Messages

  class CMessageTable;  // from messages to handlers

  void PreDispatch(const TWinMessage& message);
  // Passes a message on to the next listener of the native window, and so to the native procedure.
  LRESULT ForwardMessage(const TWinMessage& message);
  LRESULT AnswerQueryEndSession();
  void CallMsgEventListeners(TWinMessage& message, LRESULT& inOutResult);
  void CallControlListener(HWND controlHwnd, TWinMessage& message);

  // --- System (WinWindowSystem.cpp)

  void GrayCloseCommand();
  void OnCloseRequest();
  // True if the command has been dealt with.
  bool OnMaximizeCommand();
  void OnGetMinMaxInfo(MINMAXINFO& info);
  void OnDropFiles(HGLOBAL drop);
  void OnImeNotify(WPARAM command);
  void SuppressInputMethod();
  void PlaceSizeGrip();
  void AdaptSizeGrip();

  // --- Painting

  void HandlePaint();
  void OnPaint(CPaintContext& target);
  void FillBackground(COffscreenContext& buffer);
  void DrawRootView(COffscreenContext& buffer, const CRegion& region);
  void FlashInvalidation(const TRectList& rects);
  void FlashPaint(CPaintContext& target);
  void DrawMouseViewInfo();

  // --- Menu bar

  // Empty unless the state asks for the window menu.
  std::vector<TWindowMenuItem> MakeWindowMenuItems(const CMenuBarState& state) const;
  void ComposeMenuBar(CMenuBuilder& bar, const CMenuBarState& state,
                      const std::vector<TWindowMenuItem>& windowMenuItems);
  void SetAcceleratorTable(HACCEL table);
  void SetNativeMenuBar(HMENU bar);
  void MoveFirstMenu(HMENU bar);
  void ReplaceMenu(int position, HMENU bar);
  // A command of the menu bar, of a menu or a shortcut.
  void OnCommand(UINT commandId);
  void DispatchMenuCommand(std::uint32_t command);

  // --- Fields

 protected:
  boost::shared_ptr<CNativeWindowWrapper> fNativeWindowWrapper;  // empty until WM_NCCREATE
  const boost::shared_ptr<CWindowRegistry> fWindows;
  const boost::shared_ptr<CBlocking> fBlocking;
  boost::shared_ptr<CWinWindow> fClientsWindowReference;  // empty before wiring up and after ReleaseWindow
  IMorvaneRunBehavior* fRunBehavior;                      // never called: the run can end before the window
  std::vector<CMenuItem> fMenuItems;                      // the position plus 0xA000 is the native command
  // Keeps the root view alive for a client that releases it, though it is not the client's.
  boost::shared_ptr<CViewImpl> fRootViewReference;
  HWND fOwnerHwnd;  // of the owner given at creation, or null
  TWinWindowState fWindowState;
  bool fIsHidden;  // true until Show, and after Hide
  CWindowFocus fFocus;
  CWinWindowTooltips fTooltips;
  CWinWindowMouse fMouse;
  CWinWindowKeyboard fKeyboard;
  bool fIsDeactivating;
  std::vector<CViewImpl*> fTabViews;
  bool fListedInWindowMenu;
  UINT_PTR fTimerID;                                         // 0: none
  TSize fClientSize;                                         // as last reported to the behaviour
  TWindowPlacement fPlacement;                               // likewise
  boost::weak_ptr<CWinWindow> fParentWindow;                 // whose fChildWindows has this one
  std::vector<boost::shared_ptr<CWinWindow>> fChildWindows;  // those that this one owns natively
  HMENU fMenuHandle;
  HACCEL fAcceleratorTable;
  CWindowClassRef fWindowClass;
  std::vector<IWinMsgEventListener*> fMsgEventListeners;
  std::map<HWND, IWinMsgEventListener*> fControlListeners;
  bool fIsToldActive;  // what the behaviour was told last
  bool fHasCloseCommand;
  bool fAlwaysOnTop;
  HWND fSizeGripHwnd;
  CMenuBarState fMenuBarState;
  std::vector<TWindowMenuItem> fWindowMenuItems;  // as of the last build of the menu bar
  std::uint32_t fMenuBarRebuilds;
  bool fMenuBarIsWhole;  // false if an exchange has begun and not come to its end
  bool fIsEnding;        // no message reaches this object any more
  CPaintSamples fPaintSamples;
  std::uint8_t fGlobalAlpha;
};

}  // namespace NSMorvane
