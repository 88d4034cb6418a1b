// Windows of every kind, and the behaviours that a client gives them.
//
// Frame rectangles are what the window covers with its frame, client rectangles what views draw in. All are
// in pixels, and in one of two coordinate systems: screen coordinates begin at the corner of the main
// monitor; work area coordinates begin at the corner of its work area, which is another place where a task
// bar stands at the left or at the top.
#pragma once

#include "MorvaneKeyboard.h"
#include "MorvaneMenu.h"
#include "MorvaneTypes.h"

namespace NSMorvane {

class IView;
class IViewListReceiver;

// The native window.
struct TNativeWindow {
  HWND__* fHwnd;
};

// What a dialog needs of its owner. Every window of the library but a floating one offers one; a client may
// implement its own for a window that the library does not know.
class IModalOwner {
 public:
  virtual TError IModalOwner_GetNativeWindow(TNativeWindow& out) = 0;

 protected:
  virtual ~IModalOwner() = default;
};

// What all kinds of windows have in common. It belongs to its window and ends with it.
class IWindow {
 public:
  virtual TError IWindow_GetNativeWindow(TNativeWindow& outNativeWindow) = 0;
  // The view that gets the keys now: null while the window is not active, or has no focus view.
  virtual TError IWindow_GetOnDutyFocusView(IView*& out) = 0;
  // The view that has the focus within this window, whether the window is active or not; or null.
  virtual TError IWindow_GetConceptualFocusView(IView*& out) = 0;
  // Null takes the focus away. kBadInputProgrammingError for a view of another window, or one that is not
  // focusable or not enabled. If the view fails when it is asked for its control, the focus stays, and its
  // code is the result.
  //
  // A view that is released, disabled or no longer focusable loses the focus. It goes to a view of the tab
  // order that can have it: to the first one, and from a view that is just not focusable any more to the next
  // one behind it. Without such a view nobody has it.
  virtual TError IWindow_SetConceptualFocusView(IView* newConceptualFocusView) = 0;
  // The views that Tab visits, in this order. The result is what the receiver returns.
  virtual TError IWindow_GetTabViews(IViewListReceiver& out) = 0;
  // Views of this window, none twice, none null; else kBadInputProgrammingError.
  virtual TError IWindow_SetTabViews(IView* const* tabViews, std::uint32_t count) = 0;
  virtual TError IWindow_GetRootView(IView*& outRootView) = 0;
  virtual TError IWindow_IsActive(TFlag& outActiveFlag) = 0;
  // The frame that the window has when it is neither minimized nor maximized, in work area coordinates; in
  // screen coordinates for a floating window. Of a maximized window what it covers, in screen coordinates.
  // The state records have all rectangles in screen coordinates.
  virtual TError IWindow_GetFrameRect(TRect& out) = 0;
  // Take off, or add, what the frame is wide on each side. The coordinate system stays. For a document window
  // that is not shown yet the frame is taken to hold a menu bar of one row: where there is none, the client
  // area comes out higher by that row.
  virtual TError IWindow_FrameRectToClientRect(const TRect& in, TRect& out) = 0;
  virtual TError IWindow_ClientRectToFrameRect(const TRect& in, TRect& out) = 0;
  // 255 is opaque.
  virtual TError IWindow_GetGlobalAlpha(std::uint8_t& outAlpha) = 0;
  virtual TError IWindow_SetGlobalAlpha(std::uint8_t alpha) = 0;

 protected:
  virtual ~IWindow() = default;
};

// Implemented by the client: gets a list of windows, front window first.
class IWindowListReceiver {
 public:
  // The array lives only for the call. The result is not looked at.
  virtual TError IWindowListReceiver_ReceiveWindows(IWindow* const* windows, std::uint32_t count) = 0;

 protected:
  virtual ~IWindowListReceiver() = default;
};

// --- Styles

using TStyleFlags = std::uint32_t;

// Which bits a kind accepts: document windows all but bit 24 and borderless, modeless dialogs all, modal
// dialogs all but zoomable, bit 24 and borderless, floating windows all but borderless.
enum : TStyleFlags {
  kWindowResizableBit = 0x00100000,          // the window has a sizing frame
  kWindowZoomableBit = 0x00200000,           // the frame has a maximize box
  kWindowStyleBit22 = 0x00400000,            // modal dialogs: a size grip
  kWindowStyleBit23 = 0x00800000,            // document windows: a size grip; the others: a close command,
                                             // and modal dialogs are listed in the window menu
  kWindowStyleBit24 = 0x01000000,            // modeless dialogs and floating windows: a size grip
  kModelessDialogBorderlessBit = 0x02000000  // modeless dialogs: a bare window without a frame; alone only
};

// The same bits by what they do in each kind.
enum : TStyleFlags {
  kDocumentWindowSizeGripBit = kWindowStyleBit23,
  kModelessDialogCloseBoxBit = kWindowStyleBit23,
  kModelessDialogSizeGripBit = kWindowStyleBit24,
  kModalDialogCloseBoxBit = kWindowStyleBit23,  // and it is listed in the window menu
  kModalDialogSizeGripBit = kWindowStyleBit22,
  kFloatingWindowCloseBoxBit = kWindowStyleBit23,
  kFloatingWindowSizeGripBit = kWindowStyleBit24
};

// --- State records

// Which of its two rectangles a window shows.
enum TZoomState : std::uint32_t { kWindowStateIdeal = 2200, kWindowStateUser = 2201 };

enum : std::size_t { kTitleChars = 1023 };

// Frame rectangles of the window when it is neither minimized nor maximized, in screen coordinates: the
// user's is where the window was put, the ideal one where the content would have it. fZoomState tells which
// of them is shown.
struct TDocumentWindowPlacement {
  TFlag fMinimized;
  TFlag fMaximized;
  TZoomState fZoomState;
  TRect fUserRect;
  TRect fIdealRect;
};

using TModelessDialogPlacement = TDocumentWindowPlacement;

struct TModalDialogPlacement {
  TFlag fMinimized;
  TZoomState fZoomState;
  TRect fUserRect;
  TRect fIdealRect;
};

struct TFloatingWindowPlacement {
  TFlag fMaximized;
  TZoomState fZoomState;
  TRect fUserRect;
  TRect fIdealRect;
};

// What a window is and where. Get it, change what is to change, set it.
template <class TPlacement>
struct TWindowState {
  TSize fMinimumClientSize;  // 0 in a dimension: no limit there
  TSize fMaximumClientSize;  // 0 in a dimension: no limit there
  TSize fIdealClientSize;    // both 0: none
  TFlag fModified;           // the window shows that its content has changed
  TChar fTitle[kTitleChars + 1];
  TPlacement fPlacement;
};

using TDocumentWindowState = TWindowState<TDocumentWindowPlacement>;
using TModelessDialogState = TWindowState<TModelessDialogPlacement>;
using TModalDialogState = TWindowState<TModalDialogPlacement>;
using TFloatingWindowState = TWindowState<TFloatingWindowPlacement>;

// Why a window is asked to close.
enum TCloseReason : std::uint32_t {
  kCloseByUser = 0,    // the user closed this window
  kCloseByLibrary = 1  // the application is quitting
};

// --- The kinds of windows
//
// The four kinds have the same operations. A window lives until its _Release, or until a behaviour-less
// window is closed; all its views must have been released by then.

class IDocumentWindowBehavior;
class IModelessDialogBehavior;
class IModalDialogBehavior;
class IFloatingWindowBehavior;

// A document window. Made with IMorvane_CreateDocumentWindow.
class IDocumentWindow {
 public:
  virtual bool IDocumentWindow_CheckInvariant() const = 0;
  // What the window is now. Rectangles of a hidden or minimized window are those it returns to.
  virtual TError IDocumentWindow_GetState(TDocumentWindowState& state) = 0;
  // kBadInputProgrammingError for contradicting sizes or unknown flags. Sizes out of bounds are brought into
  // them. The window moves if the rectangle that fZoomState names is another one than it has. A shown window
  // is minimized, maximized or restored only along with such a move: fMinimized and fMaximized alone leave it
  // as it is. In a window that is not shown yet they tell how it will appear.
  virtual TError IDocumentWindow_SetState(const TDocumentWindowState& state) = 0;
  // The interface that all kinds share; it lives as long as the window.
  virtual TError IDocumentWindow_GetWindow(IWindow*& outWindow) = 0;
  // To make dialogs owned by this window.
  virtual TError IDocumentWindow_GetModalOwner(IModalOwner*& out) = 0;
  // Brings the window to the front and activates it, restoring it if it is minimized. If a modal dialog
  // blocks the window, the dialog at the end of the chain is activated instead, in front of the windows it
  // blocks.
  virtual TError IDocumentWindow_FocusNow() = 0;
  // Null for a window whose factory made none.
  virtual TError IDocumentWindow_GetBehavior(IDocumentWindowBehavior*& outBehavior) = 0;
  // Ends the window and its behaviour. From inside one of its callbacks, it ends when the callback returns.
  virtual TError IDocumentWindow_Release() = 0;

 protected:
  virtual ~IDocumentWindow() = default;
};

// A modeless dialog. Its operations are those of a document window. Made with IMorvane_CreateModelessDialog.
class IModelessDialog {
 public:
  virtual bool IModelessDialog_CheckInvariant() const = 0;
  virtual TError IModelessDialog_GetState(TModelessDialogState& state) = 0;
  virtual TError IModelessDialog_SetState(const TModelessDialogState& state) = 0;
  virtual TError IModelessDialog_GetWindow(IWindow*& outWindow) = 0;
  virtual TError IModelessDialog_GetModalOwner(IModalOwner*& out) = 0;
  virtual TError IModelessDialog_FocusNow() = 0;
  virtual TError IModelessDialog_GetBehavior(IModelessDialogBehavior*& outBehavior) = 0;
  virtual TError IModelessDialog_Release() = 0;

 protected:
  virtual ~IModelessDialog() = default;
};

// A modal dialog. Its operations are those of a document window. Made with IMorvane_CreateModalDialog.
//
// With an owner it blocks that window, without one the whole application. A dialog over one that blocks the
// application has no owner either: it would be blocked itself.
class IModalDialog {
 public:
  virtual bool IModalDialog_CheckInvariant() const = 0;
  virtual TError IModalDialog_GetState(TModalDialogState& state) = 0;
  virtual TError IModalDialog_SetState(const TModalDialogState& state) = 0;
  virtual TError IModalDialog_GetWindow(IWindow*& outWindow) = 0;
  virtual TError IModalDialog_GetModalOwner(IModalOwner*& out) = 0;
  virtual TError IModalDialog_FocusNow() = 0;
  virtual TError IModalDialog_GetBehavior(IModalDialogBehavior*& outBehavior) = 0;
  virtual TError IModalDialog_Release() = 0;

 protected:
  virtual ~IModalDialog() = default;
};

// A floating window: a palette above the document windows. Made with IMorvane_CreateFloatingWindow.
class IFloatingWindow {
 public:
  virtual bool IFloatingWindow_CheckInvariant() const = 0;
  virtual TError IFloatingWindow_GetState(TFloatingWindowState& state) = 0;
  virtual TError IFloatingWindow_SetState(const TFloatingWindowState& state) = 0;
  virtual TError IFloatingWindow_GetWindow(IWindow*& outWindow) = 0;
  virtual TError IFloatingWindow_FocusNow() = 0;
  virtual TError IFloatingWindow_GetBehavior(IFloatingWindowBehavior*& outBehavior) = 0;
  virtual TError IFloatingWindow_Release() = 0;

 protected:
  virtual ~IFloatingWindow() = default;
};

// --- The behaviours of windows
//
// Implemented by the client, one object for each window, deleted by the library with the window. A code other
// than kOK is reported to IMorvaneRunBehavior_OnUnhandledError.

class IDocumentWindowBehavior {
 public:
  // In pixels. Place the views anew.
  virtual TError IDocumentWindowBehavior_OnClientSizeChanged(const TSize& oldSize, const TSize& newSize) = 0;
  // The window was moved, sized, minimized, maximized or restored.
  virtual TError IDocumentWindowBehavior_OnPlacementChanged(const TDocumentWindowPlacement& oldPlacement,
                                                            const TDocumentWindowPlacement& newPlacement) = 0;
  // 1: the window is the active one now.
  virtual TError IDocumentWindowBehavior_OnActivationChanged(TFlag active) = 0;
  // A key that no view of the focus chain has taken.
  virtual TError IDocumentWindowBehavior_HandleKeyDown(const TKeyEvent& event, TFlag& outHandled) = 0;
  // 1: keys go to this window now.
  virtual TError IDocumentWindowBehavior_OnKeyboardFocusChanged(TFlag focused) = 0;
  // After the run behaviour, before the views of the focus chain.
  virtual TError IDocumentWindowBehavior_OnSetupMenuBar(IMenuBarState& state) = 0;
  // A command that no view of the focus chain has taken.
  virtual TError IDocumentWindowBehavior_OnMenuCommand(const TMenuCommandEvent& event, TFlag& outHandled) = 0;
  // F1, or the help box of the frame.
  virtual TError IDocumentWindowBehavior_OnHelpRequested(TFlag& outHandled) = 0;
  // The window does not close by itself: call _Release, ask the user first, or ignore it.
  virtual TError IDocumentWindowBehavior_OnRequestClose(TCloseReason reason) = 0;

  virtual ~IDocumentWindowBehavior() = default;
};

class IModelessDialogBehavior {
 public:
  virtual TError IModelessDialogBehavior_OnClientSizeChanged(const TSize& oldSize, const TSize& newSize) = 0;
  virtual TError IModelessDialogBehavior_OnPlacementChanged(const TModelessDialogPlacement& oldPlacement,
                                                            const TModelessDialogPlacement& newPlacement) = 0;
  virtual TError IModelessDialogBehavior_OnActivationChanged(TFlag active) = 0;
  virtual TError IModelessDialogBehavior_HandleKeyDown(const TKeyEvent& event, TFlag& outHandled) = 0;
  virtual TError IModelessDialogBehavior_OnKeyboardFocusChanged(TFlag focused) = 0;
  // Neither is called in this kind of window, which has no menu bar: commands go to the run behaviour.
  virtual TError IModelessDialogBehavior_OnSetupMenuBar(IMenuBarState& state) = 0;
  virtual TError IModelessDialogBehavior_OnMenuCommand(const TMenuCommandEvent& event, TFlag& outHandled) = 0;
  virtual TError IModelessDialogBehavior_OnHelpRequested(TFlag& outHandled) = 0;
  virtual TError IModelessDialogBehavior_OnRequestClose(TCloseReason reason) = 0;

  virtual ~IModelessDialogBehavior() = default;
};

class IModalDialogBehavior {
 public:
  virtual TError IModalDialogBehavior_OnClientSizeChanged(const TSize& oldSize, const TSize& newSize) = 0;
  virtual TError IModalDialogBehavior_OnPlacementChanged(const TModalDialogPlacement& oldPlacement,
                                                         const TModalDialogPlacement& newPlacement) = 0;
  virtual TError IModalDialogBehavior_OnActivationChanged(TFlag active) = 0;
  virtual TError IModalDialogBehavior_HandleKeyDown(const TKeyEvent& event, TFlag& outHandled) = 0;
  virtual TError IModalDialogBehavior_OnKeyboardFocusChanged(TFlag focused) = 0;
  // Neither is called in this kind of window, which has no menu bar: commands go to the run behaviour.
  virtual TError IModalDialogBehavior_OnSetupMenuBar(IMenuBarState& state) = 0;
  virtual TError IModalDialogBehavior_OnMenuCommand(const TMenuCommandEvent& event, TFlag& outHandled) = 0;
  virtual TError IModalDialogBehavior_OnHelpRequested(TFlag& outHandled) = 0;
  virtual TError IModalDialogBehavior_OnRequestClose(TCloseReason reason) = 0;

  virtual ~IModalDialogBehavior() = default;
};

class IFloatingWindowBehavior {
 public:
  virtual TError IFloatingWindowBehavior_OnClientSizeChanged(const TSize& oldSize, const TSize& newSize) = 0;
  virtual TError IFloatingWindowBehavior_OnPlacementChanged(const TFloatingWindowPlacement& oldPlacement,
                                                            const TFloatingWindowPlacement& newPlacement) = 0;
  virtual TError IFloatingWindowBehavior_OnActivationChanged(TFlag active) = 0;
  virtual TError IFloatingWindowBehavior_HandleKeyDown(const TKeyEvent& event, TFlag& outHandled) = 0;
  virtual TError IFloatingWindowBehavior_OnKeyboardFocusChanged(TFlag focused) = 0;
  // Neither is called in this kind of window, which has no menu bar: commands go to the run behaviour.
  virtual TError IFloatingWindowBehavior_OnSetupMenuBar(IMenuBarState& state) = 0;
  virtual TError IFloatingWindowBehavior_OnMenuCommand(const TMenuCommandEvent& event, TFlag& outHandled) = 0;
  virtual TError IFloatingWindowBehavior_OnHelpRequested(TFlag& outHandled) = 0;
  virtual TError IFloatingWindowBehavior_OnRequestClose(TCloseReason reason) = 0;

  virtual ~IFloatingWindowBehavior() = default;
};

// --- The factories
//
// Implemented by the client: makes the behaviour of a window that is being created, and keeps the window's
// interface. The library owns what is returned.

class IDocumentWindowBehaviorFactory {
 public:
  virtual IDocumentWindowBehavior* IDocumentWindowBehaviorFactory_CreateBehavior(IDocumentWindow& window,
                                                                                 TError& outError) = 0;

 protected:
  virtual ~IDocumentWindowBehaviorFactory() = default;
};

class IModelessDialogBehaviorFactory {
 public:
  virtual IModelessDialogBehavior* IModelessDialogBehaviorFactory_CreateBehavior(IModelessDialog& window,
                                                                                 TError& outError) = 0;

 protected:
  virtual ~IModelessDialogBehaviorFactory() = default;
};

class IModalDialogBehaviorFactory {
 public:
  virtual IModalDialogBehavior* IModalDialogBehaviorFactory_CreateBehavior(IModalDialog& window,
                                                                           TError& outError) = 0;

 protected:
  virtual ~IModalDialogBehaviorFactory() = default;
};

class IFloatingWindowBehaviorFactory {
 public:
  virtual IFloatingWindowBehavior* IFloatingWindowBehaviorFactory_CreateBehavior(IFloatingWindow& window,
                                                                                 TError& outError) = 0;

 protected:
  virtual ~IFloatingWindowBehaviorFactory() = default;
};

}  // namespace NSMorvane
