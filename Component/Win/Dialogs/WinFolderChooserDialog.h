// The folder chooser.
#pragma once

#include <windows.h>

#include <shlobj.h>

#include <string>

#include "Component/Win/Dialogs/WinFileDialog.h"
#include "Interface/MorvaneDialogs.h"

namespace NSMorvane {

class CFolderChooserDialogInfo final : public CFileDialogInfo {
 public:
  // `behavior` stays the client's.
  CFolderChooserDialogInfo(IWindowHost& host, const TFileDialogRequest& request,
                           IDirectoryChooserBehavior* behavior, const TString& prompt);
  ~CFolderChooserDialogInfo() override;

  void OnFrameDestroyed(HWND frame) override;

  // A chooser with a thread of its own ends in silence.
  bool ReportsFromThread() const override { return false; }
  UINT GetResultMessage() const override;
  const char* GetFailureLine() const override;

 protected:
  std::string ShowDialog() override;
  TError TellAccepted(const char* url) override;
  TError TellCancelled() override;

 private:
  static int CALLBACK BrowseProc(HWND hwnd, UINT message, LPARAM lParam, LPARAM data);
  void OnInitialized(HWND frame);

  IDirectoryChooserBehavior* const fBehavior;
  const TString fPrompt;
  IMalloc* fShellMalloc = nullptr;
};

}  // namespace NSMorvane
