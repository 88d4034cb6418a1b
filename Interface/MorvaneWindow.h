// Windows of every kind, and the behaviours that a client gives them.
//
// A frame rectangle is what the window covers, including its frame; a client rectangle is the area that views
// draw in. All rectangles are in pixels, in one of two coordinate systems: screen coordinates begin at the
// top left corner of the main monitor; work area coordinates begin at the top left corner of that monitor's
// work area. The two differ if a task bar is at the left or at the top.
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

// What a dialog needs of its owner. Every window of the library except a floating window offers one. A client
// may offer a window of its own, which should outlive the dialog: when the system destroys that with its
// owner, the dialog blocks nothing any more and is asked to close with kCloseByUser, and an alert ends
// without an answer.
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
  // The view that gets the keys now; null while the window is not active or has no focus view.
  virtual TError IWindow_GetOnDutyFocusView(IView*& out) = 0;
  // The view that has the focus within this window, whether the window is active or not; or null.
  virtual TError IWindow_GetConceptualFocusView(IView*& out) = 0;
  // Null removes the focus. kBadInputProgrammingError for a view of another window, or one that is not
  // focusable or not enabled. If the view fails when it is asked for its native control, the focus stays
  // where it is, and the view's code is the result.
  //
  // A view that is released, disabled or made unfocusable loses the focus to a view of the tab order that can
  // have it: to the first one, or, if the old view was only made unfocusable, to the next one behind it. If
  // there is no such view, no view has the focus.
  virtual TError IWindow_SetConceptualFocusView(IView* newConceptualFocusView) = 0;
  // The views that Tab visits, in this order. The result is what the receiver returns.
  virtual TError IWindow_GetTabViews(IViewListReceiver& out) = 0;
  // Replaces that list. kBadInputProgrammingError unless all are views of this window, none is null or the
  // root view, and none is listed twice.
  virtual TError IWindow_SetTabViews(IView* const* tabViews, std::uint32_t count) = 0;
  virtual TError IWindow_GetRootView(IView*& outRootView) = 0;
  virtual TError IWindow_IsActive(TFlag& outActiveFlag) = 0;
  // The frame that the window has when it is neither minimized nor maximized, in work area coordinates, or in
  // screen coordinates for a floating window. For a maximized window: what it covers now, in screen
  // coordinates. The state records hold all rectangles in screen coordinates.
  virtual TError IWindow_GetFrameRect(TRect& out) = 0;
  // Remove or add the width of the frame on each side. The coordinate system stays the same. For a document
  // window that is not shown yet, the frame is assumed to hold a menu bar of one row; if there is no menu
  // bar, the client area turns out higher by that row.
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
  // The array is valid only during the call. The result is ignored.
  virtual TError IWindowListReceiver_ReceiveWindows(IWindow* const* windows, std::uint32_t count) = 0;

 protected:
  virtual ~IWindowListReceiver() = default;
};

// --- Styles

using TStyleFlags = std::uint32_t;

// Which bits each kind of window accepts: document windows all except bit 24 and borderless; modeless dialogs
// all; modal dialogs all except zoomable, bit 24 and borderless; floating windows all except borderless.
enum : TStyleFlags {
  kWindowResizableBit = 0x00100000,          // the window has a sizing frame
  kWindowZoomableBit = 0x00200000,           // the frame has a maximize box
  kWindowStyleBit22 = 0x00400000,            // modal dialogs: a size grip
  kWindowStyleBit23 = 0x00800000,            // document windows: a size grip; the others: a close command,
                                             // and modal dialogs are listed in the window menu
  kWindowStyleBit24 = 0x01000000,            // modeless dialogs and floating windows: a size grip
  kModelessDialogBorderlessBit = 0x02000000  // modeless dialogs: no frame at all; without any other bit
};

// The same bits, named by what they do in each kind of window.
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

// Where a window is when it is neither minimized nor maximized, as frame rectangles in screen coordinates:
// fUserRect is where it was put, fIdealRect where it has the size that suits its content, and fZoomState
// tells which of the two is in use. A new fIdealRect of another size may be replaced.
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

// What a window is and where it is. To change something, get the record, change it, and set it.
template <class TPlacement>
struct TWindowState {
  TSize fMinimumClientSize;  // 0 in a dimension: no limit there
  TSize fMaximumClientSize;  // 0 in a dimension: no limit there
  TSize fIdealClientSize;    // both 0: no ideal size
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
// The four kinds have the same operations. A window lives until its _Release is called, or, if it has no
// behaviour, until it is closed. All its views must have been released by then.

class IDocumentWindowBehavior;
class IModelessDialogBehavior;
class IModalDialogBehavior;
class IFloatingWindowBehavior;

// A document window. Made with IMorvane_CreateDocumentWindow.
class IDocumentWindow {
 public:
  virtual bool IDocumentWindow_CheckInvariant() const = 0;
  // The current state. For a hidden or minimized window, the rectangles are those that it returns to.
  virtual TError IDocumentWindow_GetState(TDocumentWindowState& state) = 0;
  // kBadInputProgrammingError for contradictory sizes or invalid flags. Sizes outside of the limits are
  // brought within them. The window moves if the rectangle that fZoomState selects differs from the one that
  // it has. A window that is shown is minimized, maximized or restored only together with such a move: a
  // change of fMinimized or fMaximized alone does not affect it. For a window that is not shown yet, they
  // decide how it will appear.
  virtual TError IDocumentWindow_SetState(const TDocumentWindowState& state) = 0;
  // The interface that all kinds share; it lives as long as the window.
  virtual TError IDocumentWindow_GetWindow(IWindow*& outWindow) = 0;
  // For dialogs that this window is to own.
  virtual TError IDocumentWindow_GetModalOwner(IModalOwner*& out) = 0;
  // Brings the window to the front and activates it, restoring it if it is minimized. If a modal dialog
  // blocks the window, the last dialog of the chain is activated instead, in front of the windows that the
  // chain blocks.
  virtual TError IDocumentWindow_FocusNow() = 0;
  // Null if the factory made no behaviour.
  virtual TError IDocumentWindow_GetBehavior(IDocumentWindowBehavior*& outBehavior) = 0;
  // Ends the window and its behaviour. If one of its callbacks calls this, it ends after the callback has
  // returned.
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
// With an owner it blocks that window; without one it blocks the whole application. While a dialog blocks the
// application, make another one without an owner, or with that dialog as its owner: with any other owner it
// would be blocked itself.
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
  // Sizes are in pixels. Lay out the views again.
  virtual TError IDocumentWindowBehavior_OnClientSizeChanged(const TSize& oldSize, const TSize& newSize) = 0;
  // The window was moved, sized, minimized, maximized or restored.
  virtual TError IDocumentWindowBehavior_OnPlacementChanged(const TDocumentWindowPlacement& oldPlacement,
                                                            const TDocumentWindowPlacement& newPlacement) = 0;
  // 1: the window is now the active one. 0: it no longer is.
  virtual TError IDocumentWindowBehavior_OnActivationChanged(TFlag active) = 0;
  // A key that no view of the focus chain has handled.
  virtual TError IDocumentWindowBehavior_HandleKeyDown(const TKeyEvent& event, TFlag& outHandled) = 0;
  // 1: the window now gets the keys. 0: it no longer does.
  virtual TError IDocumentWindowBehavior_OnKeyboardFocusChanged(TFlag focused) = 0;
  // Called after the run behaviour, and before the views of the focus chain.
  virtual TError IDocumentWindowBehavior_OnSetupMenuBar(IMenuBarState& state) = 0;
  // A command that no view of the focus chain has handled.
  virtual TError IDocumentWindowBehavior_OnMenuCommand(const TMenuCommandEvent& event, TFlag& outHandled) = 0;
  // F1, or the help box of the frame.
  virtual TError IDocumentWindowBehavior_OnHelpRequested(TFlag& outHandled) = 0;
  // The user or the library asks the window to close. It does not close by itself: call _Release, ask the
  // user first, or ignore the request.
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
  // These two are never called: this kind of window has no menu bar, and commands go to the run behaviour.
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
  // These two are never called: this kind of window has no menu bar, and commands go to the run behaviour.
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
  // These two are never called: this kind of window has no menu bar, and commands go to the run behaviour.
  virtual TError IFloatingWindowBehavior_OnSetupMenuBar(IMenuBarState& state) = 0;
  virtual TError IFloatingWindowBehavior_OnMenuCommand(const TMenuCommandEvent& event, TFlag& outHandled) = 0;
  virtual TError IFloatingWindowBehavior_OnHelpRequested(TFlag& outHandled) = 0;
  virtual TError IFloatingWindowBehavior_OnRequestClose(TCloseReason reason) = 0;

  virtual ~IFloatingWindowBehavior() = default;
};

// --- The factories
//
// Implemented by the client: makes the behaviour of a window that is being created. The behaviour may keep
// the reference to the window. The library owns what is returned.

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
