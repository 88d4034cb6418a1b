// The open dialog, with the client's own controls in it if there is a customise behaviour.
#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "Component/Win/Dialogs/WinFileNameDialog.h"
#include "Interface/MorvaneDialogs.h"

namespace NSMorvane {

class COpenFileDialogInfo final : public CFileNameDialogInfo {
 public:
  // `behavior` stays the client's, and so does `customizeBehavior` until it is taken.
  COpenFileDialogInfo(IWindowHost& host, const TFileDialogRequest& request, IOpenDialogBehavior* behavior,
                      const std::vector<TFileType>& types, const TString& prompt,
                      IOpenDialogCustomizeBehavior* customizeBehavior);

  bool CheckInvariant() const { return !GetFileTypes().empty(); }
  // Null if there is none.
  IOpenDialogCustomizeBehavior* GetCustomizeBehavior() const { return fCustomizeBehavior; }
  // It is deleted with this object.
  void TakeCustomizeBehavior() { fOwnedCustomizeBehavior.reset(fCustomizeBehavior); }

  void OnInitDialog(HWND hookWindow, HWND frame) override;
  bool OnNotify(HWND hookWindow, HWND frame, const NMHDR& notification) override;

  UINT GetResultMessage() const override;
  const char* GetFailureLine() const override;

 protected:
  BOOL ShowSystemDialog(OPENFILENAMEW& record) override;
  TString FileForPath(TString& ioPath, const CFileType& fileType) override;
  TError TellAccepted(const char* url) override;
  TError TellCancelled() override;

 private:
  IOpenDialogBehavior* const fBehavior;
  IOpenDialogCustomizeBehavior* const fCustomizeBehavior;
  std::unique_ptr<IOpenDialogCustomizeBehavior> fOwnedCustomizeBehavior;
};

// The frame. What is typed into the box for the name counts as a change of the selection.
class COpenFileDialogParentProcWrapper final : public CFileDialogFrameProcWrapper {
 public:
  COpenFileDialogParentProcWrapper(HWND hookWindow, HWND frame, COpenFileDialogInfo& info);

  LRESULT WindowProc(CNativeWindowWrapper& wrapper, HWND hwnd, UINT message, WPARAM wParam,
                     LPARAM lParam) override;

 private:
  ~COpenFileDialogParentProcWrapper() override = default;

  const HWND fHookWindow;
  COpenFileDialogInfo* fOpenFileDialogInfo;  // null from WM_DESTROY on
};

// The hook window, which carries the client's controls: tells the customise behaviour what happens.
class COpenFileDialogProcWrapper final : public CWindowProcOverrider,
                                         public IOpenDialogInstance,
                                         public IModalOwner {
 public:
  COpenFileDialogProcWrapper(HWND hookWindow, COpenFileDialogInfo& info);

  LRESULT WindowProc(CNativeWindowWrapper& wrapper, HWND hwnd, UINT message, WPARAM wParam,
                     LPARAM lParam) override;

  TError IOpenDialogInstance_GetControlHandle(std::int32_t controlID, TNativeWindow& outHandle) override;
  TError IOpenDialogInstance_GetModalOwner(IModalOwner*& outOwner) override;
  TError IModalOwner_GetNativeWindow(TNativeWindow& out) override;

 private:
  ~COpenFileDialogProcWrapper() override = default;

  bool Handle(IOpenDialogCustomizeBehavior& behavior, UINT message, WPARAM wParam, LPARAM lParam,
              LRESULT& outResult);
  void OnNotification(IOpenDialogCustomizeBehavior& behavior, const NMHDR& notification);

  const HWND fHookWindow;
  COpenFileDialogInfo* fOpenFileDialogInfo;  // null from WM_DESTROY on
};

}  // namespace NSMorvane
