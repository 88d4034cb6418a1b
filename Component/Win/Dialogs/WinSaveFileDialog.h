// The save dialog. The extension of the typed name always agrees with the chosen file type.
#pragma once

#include <windows.h>

#include <vector>

#include "Component/Win/Dialogs/WinFileNameDialog.h"
#include "Interface/MorvaneDialogs.h"

namespace NSMorvane {

class CSaveFileDialogInfo final : public CFileNameDialogInfo {
 public:
  // `behavior` stays the client's. There may be no types.
  CSaveFileDialogInfo(IWindowHost& host, const TFileDialogRequest& request, ISaveAsDialogBehavior* behavior,
                      const TString& templateName, const std::vector<TFileType>& types,
                      const TString& prompt);

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
  const CFileType& GetSelectedType();
  void OnTypeChange(HWND frame);
  bool OnFileOk(HWND frame);

  ISaveAsDialogBehavior* const fBehavior;
  const std::vector<TFileType> fTypes;  // as the client gave them
  TString fRefusedName;                 // the last one for which an OK has been refused
};

}  // namespace NSMorvane
