// File dialogs.
#include <boost/make_shared.hpp>

#include "Component/Win/Application/MorvaneImplWin.h"
#include "Component/Win/Dialogs/WinFolderChooserDialog.h"
#include "Component/Win/Dialogs/WinOpenFileDialog.h"
#include "Component/Win/Dialogs/WinSaveFileDialog.h"

namespace NSMorvane {

void CMorvaneImpl::RequireRunOnMainThread() const {
  if (!IsMainThread()) MORVANE_THROW(XIllegalCallSequence());
  RequireRun();
}

void CMorvaneImpl::RunFileDialog(const boost::shared_ptr<CFileDialogInfo>& dialog) {
  if (dialog->IsThreaded())
    fFileDialogs.RunThreaded(dialog);
  else
    fFileDialogs.RunBlocking(dialog);
}

void CMorvaneImpl::CMorvaneGlue_CreateSaveAsDialog(ISaveAsDialogBehavior* behavior,
                                                   std::uint32_t dialogContext, IModalOwner* modalOwner,
                                                   bool blocking, const TString& templateFileName,
                                                   const std::vector<TFileType>& types,
                                                   const TString& prompt) {
  RequireRunOnMainThread();
  RunFileDialog(
      boost::make_shared<CSaveFileDialogInfo>(*this, TFileDialogRequest{dialogContext, modalOwner, blocking},
                                              behavior, templateFileName, types, prompt));
}

void CMorvaneImpl::CMorvaneGlue_CreateOpenDialog(IOpenDialogBehavior* behavior, std::uint32_t dialogContext,
                                                 IModalOwner* modalOwner, bool blocking, bool,
                                                 const std::vector<TFileType>& types, const TString& prompt,
                                                 IOpenDialogCustomizeBehavior* customizeBehavior) {
  // Several files at once are not built: the dialog gives one.
  RequireRunOnMainThread();
  const auto dialog =
      boost::make_shared<COpenFileDialogInfo>(*this, TFileDialogRequest{dialogContext, modalOwner, blocking},
                                              behavior, types, prompt, customizeBehavior);
  RunFileDialog(dialog);
  dialog->TakeCustomizeBehavior();
}

void CMorvaneImpl::CMorvaneGlue_CreateDirectoryChooserDialog(IDirectoryChooserBehavior* behavior,
                                                             std::uint32_t dialogContext,
                                                             IModalOwner* modalOwner, bool blocking,
                                                             const TString& prompt) {
  RequireRunOnMainThread();
  RunFileDialog(boost::make_shared<CFolderChooserDialogInfo>(
      *this, TFileDialogRequest{dialogContext, modalOwner, blocking}, behavior, prompt));
}

}  // namespace NSMorvane
