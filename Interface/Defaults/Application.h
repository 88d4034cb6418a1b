// The application: defaults for its behaviour, and a complete main program.
#pragma once

#include <memory>
#include <string_view>
#include <utility>

#include "Timers.h"

namespace NSMorvane {

// Idle calls run the timers. The next call comes when the next timer is due, and after a second at the
// latest. OnQuitEvent and OnOpenURL do nothing: override them, or derive from CDefaultApplication.
class CDefaultRunBehavior : public IMorvaneRunBehavior {
 public:
  TError IMorvaneRunBehavior_OnStartUp() override { return kOK; }
  TError IMorvaneRunBehavior_OnCleanUp() override { return kOK; }
  TError IMorvaneRunBehavior_OnQuitEvent() override { return kOK; }
  TError IMorvaneRunBehavior_OnNoDocument(TNoDocumentKind) override { return kOK; }
  TError IMorvaneRunBehavior_OnOpenURL(const char*) override { return kOK; }
  TError IMorvaneRunBehavior_OnSetupMenuBar(IMenuBarState&) override { return kOK; }
  TError IMorvaneRunBehavior_OnMenuCommand(const TMenuCommandEvent&, TFlag& outHandled) override {
    outHandled = 0;
    return kOK;
  }
  TError IMorvaneRunBehavior_HandleKeyDown(const TKeyEvent&, TFlag& outHandled) override {
    outHandled = 0;
    return kOK;
  }
  TError IMorvaneRunBehavior_OnIdle(std::int64_t& inOutDelayMS) override {
    CTimerList& timers = CTimerList::TheList();
    const TError error = timers.RunDue();
    inOutDelayMS = timers.DelayToNext(1000);
    return error;
  }
  TError IMorvaneRunBehavior_OnBeginDraw(IDrawTools&) override { return kOK; }
  TError IMorvaneRunBehavior_OnEndDraw(IDrawTools&) override { return kOK; }
  TError IMorvaneRunBehavior_OnAppActivation(TFlag) override { return kOK; }
  TError IMorvaneRunBehavior_OnThemeChanged() override { return kOK; }
  TError IMorvaneRunBehavior_OnEnterMenuLoop() override { return kOK; }
  TError IMorvaneRunBehavior_OnExitMenuLoop() override { return kOK; }
  TError IMorvaneRunBehavior_OnAppMessage(std::uint32_t, std::uint32_t) override { return kOK; }
  TError IMorvaneRunBehavior_OnUnhandledError(TError) override { return kOK; }
};

// Quits when it is asked to, and when its last document window has gone.
class CDefaultApplication : public CDefaultRunBehavior {
 public:
  explicit CDefaultApplication(IMorvane& morvane) : fMorvane(morvane), fRootObject(morvane) {}
  // Starts quitting, unless that has begun already. If there is no document window but a dialog is open, for
  // example one that reports a failure, quitting waits until the dialog has gone: then the event comes again.
  TError IMorvaneRunBehavior_OnQuitEvent() override {
    return Guarded([&]() -> TError {
      TFlag isQuitting = 0;
      ThrowIfFailed(fMorvane.IMorvane_IsQuitting(isQuitting));
      if (isQuitting || (!HasDocumentWindow() && HasDialog())) return kOK;
      return fMorvane.IMorvane_StartQuitting();
    });
  }
  // For an application that opens no files: does what the application does at a start without files, unless a
  // document window is open. If that opens no document window, it is not tried again, and the quit event
  // follows.
  TError IMorvaneRunBehavior_OnOpenURL(const char*) override {
    return Guarded([&]() -> TError {
      if (fOpensNothing || HasDocumentWindow()) return kOK;
      fOpensNothing = true;
      ThrowIfFailed(IMorvaneRunBehavior_OnNoDocument(kNoDocumentAtStart));
      fOpensNothing = !HasDocumentWindow();
      return kOK;
    });
  }

 protected:
  IMorvane& fMorvane;

 private:
  bool IsAny(TError (IMorvane::*listWindows)(IWindowListReceiver&)) {
    CVectorWindowReceiver windows;
    ThrowIfFailed((fMorvane.*listWindows)(windows));
    return !windows.fWindows.empty();
  }
  bool HasDocumentWindow() { return IsAny(&IMorvane::IMorvane_GetDocumentWindowsZ); }
  bool HasDialog() {
    return IsAny(&IMorvane::IMorvane_GetModelessDialogsZ) || IsAny(&IMorvane::IMorvane_GetModalDialogsZ);
  }

  bool fOpensNothing = false;
  CRootObjectScope fRootObject;
};

// The startup parameters of an application that ends with its last window. Users read its product name.
inline TStartupParams StartupParams(std::u16string_view company, std::u16string_view product) {
  TStartupParams params = {};
  CopyText(params.fCompanyName, company);
  CopyText(params.fProductName, product);
  CopyText(params.fDisplayName, product);
  return params;
}

// Makes a TApplication from the root object and `arguments`, and runs it to its end. The result is an exit
// code for main: 0, or the error code of what went wrong. The debug layers, which are on by default, are
// switched off.
//   int main() { return RunApplication<CHelloApplication>(StartupParams(u"Example", u"Hello")); }
template <class TApplication, class... TArguments>
int RunApplication(const TStartupParams& params, TArguments&&... arguments) {
  TError error = kOK;
  const std::unique_ptr<IMorvane> morvane(Morvane_Create("IMorvane", &error));
  if (morvane) {
    error = Guarded([&] {
      const CRootObjectScope scope(*morvane);
      ThrowIfFailed(morvane->IMorvane_SetDebugSettings(TDebugSettings{}));
      auto application = std::make_unique<TApplication>(*morvane, std::forward<TArguments>(arguments)...);
      const TError result = morvane->IMorvane_Run(application.get(), params);
      // On success IMorvane_Run has deleted the behaviour.
      if (result == kOK) static_cast<void>(application.release());
      return result;
    });
  }
  return error == kOK ? 0 : static_cast<int>(error);
}

}  // namespace NSMorvane
