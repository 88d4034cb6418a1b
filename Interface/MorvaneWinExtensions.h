// Features that exist on Windows only. IMorvane_GetWinExtensions gives their root.
#pragma once

#include "MorvaneIcon.h"
#include "MorvaneText.h"
#include "MorvaneTypes.h"
#include "MorvaneView.h"
#include "MorvaneWindow.h"

namespace NSMorvane {

// Message parameters and results as wide as a pointer.
using TWinParam = std::uintptr_t;
using TWinResult = std::intptr_t;

// Implemented by the client: gets the messages of a native control that a view hosts. The library never
// deletes it, so it must live as long as its tokens.
//
// Either operation may do anything: delete its own token, destroy the control, release the view or the
// window. What it throws or returns other than kOK is passed to IMorvaneRunBehavior_OnUnhandledError, once.
class IWinNativeControlCallback {
 public:
  // The control has sent WM_COMMAND, WM_NOTIFY, WM_HSCROLL or WM_VSCROLL to its parent, which is the window.
  // `outResult` is what the control gets as an answer; 0 after a failure. It comes from the middle of the
  // control's own work: many controls do not stand it if they are destroyed there.
  virtual TError IWinNativeControlCallback_OnControlNotification(std::uint32_t message, TWinParam wParam,
                                                                 TWinResult lParam,
                                                                 TWinResult& outResult) = 0;
  // A message to the control. `oldProc` is the control's own window procedure. Call it with CallWindowProcW,
  // unless the control must not get the message. `outResult` is the result of the message; 0 after a failure.
  virtual TError IWinNativeControlCallback_OnControlProc(HWND__* hwnd, std::uint32_t message,
                                                         TWinParam wParam, TWinResult lParam,
                                                         TWinResult oldProc, TWinResult& outResult) = 0;

 protected:
  virtual ~IWinNativeControlCallback() = default;
};

// Stands for the hosting of one native control. The client deletes it to end the hosting; the control then
// gets its messages as before. Token, control, view and window may end in any order: a token whose control
// has been destroyed does nothing any more; without the view or the window the callback goes on getting the
// messages of the control.
class IWinNativeControlCallbackToken {
 public:
  virtual ~IWinNativeControlCallbackToken() = default;
};

enum TAutoPlayCommand : std::uint32_t { kAutoPlaySuppress = 0, kAutoPlayRelease = 1 };

class IWinExtensions {
 public:
  // The native icon at 16, 32, 48 or 128 pixels. If the icon does not have that size, the next smaller one is
  // returned. The icon and its clones keep the ownership of the handle, which the last of them deletes. Null
  // on failure, with the code in `outError`: kBadInputProgrammingError for any other size and for an icon
  // that the library has not made, kUnsupportedFormatError for a file that does not exist, kOtherError for a
  // picture that does not exist.
  virtual HICON__* IWinExtensions_GetIconHandle(const IIcon& icon, std::uint32_t size, TError& outError) = 0;
  // Makes an icon out of up to four native icons, one for each size; a size that is missing is null. On
  // success the icon owns the handles. The caller deletes the icon. kBadInputProgrammingError if all handles
  // are null, if one is given twice, and if one is not an icon.
  virtual IIcon* IWinExtensions_CreateIconFromHandles(HICON__* icon16, HICON__* icon32, HICON__* icon48,
                                                      HICON__* icon128, TError& outError) = 0;
  // Calls the receiver once for each option of the command line (an argument that begins with "/"). If the
  // receiver returns a code other than kOK, no more options follow and that code is the result.
  virtual TError IWinExtensions_GetCommandLineOptions(ITextReceiver& receiver) = 0;
  // While auto-play is suppressed, the system does not start programs from inserted media. Calls nest.
  // kIllegalCallSequenceProgrammingError for a release without a suppress.
  virtual TError IWinExtensions_SuppressAutoPlay(TAutoPlayCommand command) = 0;
  // Makes a view host a native child window: every message to the control goes to the callback, and so do the
  // control's notifications. The views around the control hear of the mouse over it, and the view has the
  // focus while the control has the keyboard, whether it is focusable or not. The pointer is that of the
  // control, unless a view gives a shape.
  //
  // The control is a child of the view's window, or of such a child. The client keeps its place, its
  // visibility and its enabling in step with the view; CHostedControl of MorvaneDefaults.h does that. So that
  // the control gets the keyboard when its view gets the focus, the behaviour answers
  // IViewBehavior_GetNativeFocusTarget. Keys that the control gets do not reach the views, except for the
  // shortcuts of the menu bar, which come before the control. A view may host several controls.
  //
  // The caller deletes the token. Null on failure, with the code in `outError`: kBadInputProgrammingError if
  // `hwnd` is not a window, has no parent, belongs to another thread than the view's window or is not inside
  // that, if `callback` is null, and if the view or its window has been released;
  // kIllegalCallSequenceProgrammingError if the control has a host already; kOtherError if the system
  // refuses. The control is left as it was then.
  virtual IWinNativeControlCallbackToken* IWinExtensions_HostNativeControl(
      HWND__* hwnd, IWinNativeControlCallback* callback, IView& view, TError& outError) = 0;

 protected:
  virtual ~IWinExtensions() = default;
};

}  // namespace NSMorvane
