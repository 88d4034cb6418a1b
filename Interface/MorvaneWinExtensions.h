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
// deletes it.
class IWinNativeControlCallback {
 public:
  // The control has sent WM_COMMAND, WM_NOTIFY, WM_HSCROLL or WM_VSCROLL to its window.
  virtual TError IWinNativeControlCallback_OnControlNotification(std::uint32_t message, TWinParam wParam,
                                                                 TWinResult lParam,
                                                                 TWinResult& outResult) = 0;
  // A message to the control. `oldProc` is the control's own window procedure. Call it with CallWindowProcW,
  // unless the control must not get the message.
  virtual TError IWinNativeControlCallback_OnControlProc(HWND__* hwnd, std::uint32_t message,
                                                         TWinParam wParam, TWinResult lParam,
                                                         TWinResult oldProc, TWinResult& outResult) = 0;

 protected:
  virtual ~IWinNativeControlCallback() = default;
};

// Stands for the hosting of one native control. To end the hosting, the client deletes it while the control
// still exists.
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
  // Not built yet: gives kUnsupported. Makes a view host a native child window. The caller deletes the token.
  virtual IWinNativeControlCallbackToken* IWinExtensions_HostNativeControl(
      HWND__* hwnd, IWinNativeControlCallback* callback, IView& view, TError& outError) = 0;

 protected:
  virtual ~IWinExtensions() = default;
};

}  // namespace NSMorvane
