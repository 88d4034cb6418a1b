// What exists on Windows only. IMorvane_GetWinExtensions gives the root of it.
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

// Implemented by the client: sees the messages of a native control that a view holds. Never deleted by the
// library.
class IWinNativeControlCallback {
 public:
  // The control has sent WM_COMMAND, WM_NOTIFY, WM_HSCROLL or WM_VSCROLL to its window.
  virtual TError IWinNativeControlCallback_OnControlNotification(std::uint32_t message, TWinParam wParam,
                                                                 TWinResult lParam,
                                                                 TWinResult& outResult) = 0;
  // A message to the control. `oldProc` is the control's own window procedure, to be called with
  // CallWindowProcW unless the message is to end here.
  virtual TError IWinNativeControlCallback_OnControlProc(HWND__* hwnd, std::uint32_t message,
                                                         TWinParam wParam, TWinResult lParam,
                                                         TWinResult oldProc, TWinResult& outResult) = 0;

 protected:
  virtual ~IWinNativeControlCallback() = default;
};

// The hosting of one native control. The client deletes it, while the control exists, to end the hosting.
class IWinNativeControlCallbackToken {
 public:
  virtual ~IWinNativeControlCallbackToken() = default;
};

enum TAutoPlayCommand : std::uint32_t { kAutoPlaySuppress = 0, kAutoPlayRelease = 1 };

class IWinExtensions {
 public:
  // The native icon at 16, 32, 48 or 128 pixels; a size that the icon does not have gives the next smaller
  // one. It stays the icon's. Null and `outError` on failure: kBadInputProgrammingError for another size and
  // an icon that is not the library's, kUnsupportedFormatError for a file that is not there.
  virtual HICON__* IWinExtensions_GetIconHandle(const IIcon& icon, std::uint32_t size, TError& outError) = 0;
  // An icon of up to four native icons, for the four sizes; the others null. With success it owns them. The
  // caller deletes it. kBadInputProgrammingError if all are null or one is given twice.
  virtual IIcon* IWinExtensions_CreateIconFromHandles(HICON__* icon16, HICON__* icon32, HICON__* icon48,
                                                      HICON__* icon128, TError& outError) = 0;
  // The options of the command line (arguments that begin with "/"), one call of the receiver each. The first
  // code that is not kOK ends the walk and is the result.
  virtual TError IWinExtensions_GetCommandLineOptions(ITextReceiver& receiver) = 0;
  // While suppressed, the system does not start programs of inserted media. Calls nest.
  // kIllegalCallSequenceProgrammingError for a release without a suppress.
  virtual TError IWinExtensions_SuppressAutoPlay(TAutoPlayCommand command) = 0;
  // Not built yet: kUnsupported. Puts a native child window under the rule of a view. The caller deletes the
  // token.
  virtual IWinNativeControlCallbackToken* IWinExtensions_HostNativeControl(
      HWND__* hwnd, IWinNativeControlCallback* callback, IView& view, TError& outError) = 0;

 protected:
  virtual ~IWinExtensions() = default;
};

}  // namespace NSMorvane
