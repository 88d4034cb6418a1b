// Native controls that views host. The procedure of such a control is replaced by WinNativeControlProc, which
// keeps the mouse tracking and the focus of the window in step and then hands the message to the client's
// callback. The callback also gets what the control notifies its window of.
//
// Any callback may end everything: the token, the control, the view, the window. Whatever goes on after a
// callback works on what it held before, or looks the control up again.
#pragma once

#include <windows.h>

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>
#include <memory>

#include "Component/Portable/Base/Scopes.h"
#include "Component/Portable/Views/ViewImpl.h"
#include "Component/Win/Platform/WinMsgEventListener.h"
#include "Interface/MorvaneWinExtensions.h"

namespace NSMorvane {

class CWinWindow;

// The hosting of one control, from its construction until the client deletes it or the control is destroyed.
class CWinControlCallbackAdapter : public IWinNativeControlCallbackToken,
                                   public IWinMsgEventListener,
                                   private CNotCopied {
 public:
  // The view must be live, and the window its mother window. Throws XIllegalCallSequence if the control has a
  // host already, and std::exception if it cannot be subclassed.
  CWinControlCallbackAdapter(HWND hwnd, IWinNativeControlCallback& callback, const CViewImpl& view,
                             const boost::shared_ptr<CWinWindow>& window);
  ~CWinControlCallbackAdapter() override;

  // Throws the error of the callback.
  LRESULT HandleControlMessage(UINT message, WPARAM wParam, LPARAM lParam);
  // The control has been destroyed: nothing reaches the callback any more.
  void ForgetControl();

  // A notification. Throws the error of the callback.
  LRESULT IWinMsgEventListener_OnMessage(TWinMessage& event) override;

 private:
  void TellWindow(CWinWindow& window, const TViewImplPtr& view, UINT message, WPARAM wParam, LPARAM lParam);
  void ForwardMouse(const CWinWindow& window, LPARAM position) const;
  bool IsHostedInSameView(HWND hwnd) const;

  const boost::weak_ptr<CViewImpl> fView;
  const boost::weak_ptr<CWinWindow> fWindow;
  HWND fHwnd;  // null when the control has been destroyed
  IWinNativeControlCallback& fCallback;
  LONG_PTR fOldProc = 0;
  bool fIsMouseTracked = false;  // WM_MOUSELEAVE is requested
};

// What IWinExtensions_HostNativeControl does; see there. Throws std::invalid_argument for bad input.
std::unique_ptr<IWinNativeControlCallbackToken> HostNativeControl(HWND hwnd,
                                                                  IWinNativeControlCallback* callback,
                                                                  IView& view);

// The window procedure of every hosted control. Nothing is thrown out of it.
LRESULT CALLBACK WinNativeControlProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

}  // namespace NSMorvane
