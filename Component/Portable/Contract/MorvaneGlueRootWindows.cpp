// The contract members of the root interface: windows, dialogs, views.
#include <cstring>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Contract/MorvaneGlueContract.h"
#include "Component/Portable/Contract/MorvaneGlueRoot.h"
#include "Component/Portable/Contract/MorvaneGlueValidators.h"
#include "Component/Portable/Text/TextPackage.h"

namespace NSMorvane {

namespace {

// The receiver's result is ignored.
void GiveWindows(const std::vector<IWindow*>& windows, IWindowListReceiver& out) {
  out.IWindowListReceiver_ReceiveWindows(windows.data(), static_cast<std::uint32_t>(windows.size()));
}

void PrintAlert(const TAlertSpec& spec) {
  if (!gDebugOutput) return;
  DebugPrint("Opening alert: " + NSTextPackage::StringToUTF8(spec.fMessage, false) + " " +
             NSTextPackage::StringToUTF8(spec.fDetails, false));
}

}  // namespace

// --- Windows

IDocumentWindow* CMorvaneGlue::IMorvane_CreateDocumentWindow(IDocumentWindowBehaviorFactory& factory,
                                                             TStyleFlags styleFlags, TFlag windowsMenuFlag,
                                                             TError& outError) {
  MORVANE_REQUIRE_OUT("IMorvane_CreateDocumentWindow()", CMorvaneGlue_CheckInvariant());
  MORVANE_REQUIRE_OUT("IMorvane_CreateDocumentWindow()", ValidateDocumentWindowStyleFlags(styleFlags));
  MORVANE_REQUIRE_OUT("IMorvane_CreateDocumentWindow()", ValidateFlag(windowsMenuFlag));
  IDocumentWindow* out = NULL;
  CallHook(outError,
           [&] { out = CMorvaneGlue_CreateDocumentWindow(factory, styleFlags, windowsMenuFlag == 1); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  if (outError == kOK) MORVANE_ASSERT(out != NULL);
  if (outError != kOK) MORVANE_ASSERT(out == NULL);
  return out;
}

TError CMorvaneGlue::IMorvane_GetDocumentWindowsZ(IWindowListReceiver& out) {
  MORVANE_REQUIRE("IMorvane_GetDocumentWindowsZ()", CMorvaneGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] { GiveWindows(CMorvaneGlue_GetDocumentWindowsZ(), out); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  return outError;
}

IModelessDialog* CMorvaneGlue::IMorvane_CreateModelessDialog(IModelessDialogBehaviorFactory& factory,
                                                             TStyleFlags styleFlags, TFlag windowsMenuFlag,
                                                             TError& outError) {
  MORVANE_REQUIRE_OUT("IMorvane_CreateModelessDialog()", CMorvaneGlue_CheckInvariant());
  MORVANE_REQUIRE_OUT("IMorvane_CreateModelessDialog()", ValidateModelessDialogStyleFlags(styleFlags));
  MORVANE_REQUIRE_OUT("IMorvane_CreateModelessDialog()", ValidateFlag(windowsMenuFlag));
  if (windowsMenuFlag == 1)
    MORVANE_REQUIRE_OUT("IMorvane_CreateModelessDialog()", (styleFlags & kModelessDialogBorderlessBit) == 0);
  IModelessDialog* out = NULL;
  CallHook(outError,
           [&] { out = CMorvaneGlue_CreateModelessDialog(factory, styleFlags, windowsMenuFlag == 1); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  if (outError == kOK) MORVANE_ASSERT(out != NULL);
  if (outError != kOK) MORVANE_ASSERT(out == NULL);
  return out;
}

TError CMorvaneGlue::IMorvane_GetModelessDialogsZ(IWindowListReceiver& out) {
  MORVANE_REQUIRE("IMorvane_GetModelessDialogsZ()", CMorvaneGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] { GiveWindows(CMorvaneGlue_GetModelessDialogsZ(), out); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  return outError;
}

IModalDialog* CMorvaneGlue::IMorvane_CreateModalDialog(IModalDialogBehaviorFactory& factory,
                                                       IModalOwner* owner, TFlag blockingAppModalDialogFlag,
                                                       TStyleFlags styleFlags, TError& outError) {
  MORVANE_REQUIRE_OUT("IMorvane_CreateModalDialog()", CMorvaneGlue_CheckInvariant());
  MORVANE_REQUIRE_OUT("IMorvane_CreateModalDialog()", ValidateModalDialogStyleFlags(styleFlags));
  MORVANE_REQUIRE_OUT("IMorvane_CreateModalDialog()", ((owner == NULL) || (blockingAppModalDialogFlag == 0)));
  IModalDialog* out = NULL;
  CallHook(outError, [&] {
    out = CMorvaneGlue_CreateModalDialog(factory, owner, blockingAppModalDialogFlag != 0, styleFlags);
  });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  // A blocking dialog has ended by now, so there is nothing to return.
  if (outError == kOK && blockingAppModalDialogFlag == 0) MORVANE_ASSERT(out != NULL);
  if (outError != kOK || blockingAppModalDialogFlag != 0) MORVANE_ASSERT(out == NULL);
  return out;
}

TError CMorvaneGlue::IMorvane_GetModalDialogsZ(IWindowListReceiver& out) {
  MORVANE_REQUIRE("IMorvane_GetModalDialogsZ()", CMorvaneGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] { GiveWindows(CMorvaneGlue_GetModalDialogsZ(), out); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  return outError;
}

IFloatingWindow* CMorvaneGlue::IMorvane_CreateFloatingWindow(IFloatingWindowBehaviorFactory& factory,
                                                             TStyleFlags styleFlags, TError& outError) {
  MORVANE_REQUIRE_OUT("IMorvane_CreateFloatingWindow()", CMorvaneGlue_CheckInvariant());
  MORVANE_REQUIRE_OUT("IMorvane_CreateFloatingWindow()", ValidateFloatingWindowStyleFlags(styleFlags));
  IFloatingWindow* out = NULL;
  CallHook(outError, [&] { out = CMorvaneGlue_CreateFloatingWindow(factory, styleFlags); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  if (outError == kOK) MORVANE_ASSERT(out != NULL);
  if (outError != kOK) MORVANE_ASSERT(out == NULL);
  return out;
}

TError CMorvaneGlue::IMorvane_GetFloatingWindowsZ(IWindowListReceiver& out) {
  MORVANE_REQUIRE("IMorvane_GetFloatingWindowsZ()", CMorvaneGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] { GiveWindows(CMorvaneGlue_GetFloatingWindowsZ(), out); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  return outError;
}

// --- Dialogs

TError CMorvaneGlue::IMorvane_CreateAlertBox(IModalOwner* modalOwner, TFlag blockingAppModalDialogFlag,
                                             const TAlertSpec& alertSpec, IAlertBoxListener* listener) {
  MORVANE_REQUIRE("IMorvane_CreateAlertBox()", CMorvaneGlue_CheckInvariant());
  MORVANE_REQUIRE("IMorvane_CreateAlertBox()", ValidateAlertSpec(alertSpec));
  MORVANE_REQUIRE("IMorvane_CreateAlertBox()", ((modalOwner == NULL) || (blockingAppModalDialogFlag == 0)));
  TError outError;
  CallHook(outError, [&] {
    PrintAlert(alertSpec);
    CMorvaneGlue_CreateAlertBox(modalOwner, blockingAppModalDialogFlag != 0, alertSpec, listener);
  });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  return outError;
}

TError CMorvaneGlue::IMorvane_CreateSaveAsDialog(ISaveAsDialogBehavior* behavior, std::uint32_t dialogContext,
                                                 IModalOwner* modalOwner, TFlag blockingAppModalDialogFlag,
                                                 const TChar* templateFileName, const TFileType* types,
                                                 std::uint32_t typeCount, const TChar* prompt) {
  MORVANE_REQUIRE("IMorvane_CreateSaveAsDialog()", CMorvaneGlue_CheckInvariant());
  MORVANE_REQUIRE("IMorvane_CreateSaveAsDialog()", ((modalOwner == NULL) || (blockingAppModalDialogFlag == 0)));
  MORVANE_REQUIRE("IMorvane_CreateSaveAsDialog()", (NSTextPackage::CountChars(templateFileName)>=0));
  MORVANE_REQUIRE("IMorvane_CreateSaveAsDialog()", ((blockingAppModalDialogFlag==0) || (blockingAppModalDialogFlag==1)));
  TError outError;
  CallHook(outError, [&] {
    CMorvaneGlue_CreateSaveAsDialog(behavior, dialogContext, modalOwner, blockingAppModalDialogFlag != 0,
                                    templateFileName, CheckedArray(types, typeCount), TextOrEmpty(prompt));
  });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  return outError;
}

TError CMorvaneGlue::IMorvane_CreateOpenDialog(IOpenDialogBehavior* behavior, std::uint32_t dialogContext,
                                               IModalOwner* modalOwner, TFlag blockingAppModalDialogFlag,
                                               TFlag allowMultiSelectFlag, const TFileType* types,
                                               std::uint32_t typeCount, const TChar* prompt,
                                               IOpenDialogCustomizeBehavior* customizeBehavior) {
  MORVANE_REQUIRE("IMorvane_CreateOpenDialog()", CMorvaneGlue_CheckInvariant());
  MORVANE_REQUIRE("IMorvane_CreateOpenDialog()", ((modalOwner == NULL) || (blockingAppModalDialogFlag == 0)));
  MORVANE_REQUIRE("IMorvane_CreateOpenDialog()", typeCount>0);
  MORVANE_REQUIRE("IMorvane_CreateOpenDialog()", ((blockingAppModalDialogFlag==0) || (blockingAppModalDialogFlag==1)));
  MORVANE_REQUIRE("IMorvane_CreateOpenDialog()", ((allowMultiSelectFlag==0) || (allowMultiSelectFlag==1)));
  TError outError;
  CallHook(outError, [&] {
    CMorvaneGlue_CreateOpenDialog(behavior, dialogContext, modalOwner, blockingAppModalDialogFlag != 0,
                                  allowMultiSelectFlag != 0, CheckedArray(types, typeCount),
                                  TextOrEmpty(prompt), customizeBehavior);
  });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  return outError;
}

TError CMorvaneGlue::IMorvane_CreateDirectoryChooserDialog(IDirectoryChooserBehavior* behavior,
                                                           std::uint32_t dialogContext,
                                                           IModalOwner* modalOwner,
                                                           TFlag blockingAppModalDialogFlag,
                                                           const TChar* prompt) {
  MORVANE_REQUIRE("IMorvane_CreateDirectoryChooserDialog()", CMorvaneGlue_CheckInvariant());
  MORVANE_REQUIRE("IMorvane_CreateDirectoryChooserDialog()", ((modalOwner == NULL) || (blockingAppModalDialogFlag == 0)));
  MORVANE_REQUIRE("IMorvane_CreateDirectoryChooserDialog()", ((blockingAppModalDialogFlag==0) || (blockingAppModalDialogFlag==1)));
  TError outError;
  CallHook(outError, [&] {
    CMorvaneGlue_CreateDirectoryChooserDialog(behavior, dialogContext, modalOwner,
                                              blockingAppModalDialogFlag != 0, TextOrEmpty(prompt));
  });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  return outError;
}

TError CMorvaneGlue::IMorvane_CreateSaveChangesDialog(ISaveChangesBehavior* behavior, IModalOwner* modalOwner,
                                                      TFlag blockingAppModalDialogFlag,
                                                      const TChar* documentName, TCloseReason reason) {
  MORVANE_REQUIRE("IMorvane_CreateSaveChangesDialog()", CMorvaneGlue_CheckInvariant());
  MORVANE_REQUIRE("IMorvane_CreateSaveChangesDialog()", behavior != NULL);
  MORVANE_REQUIRE("IMorvane_CreateSaveChangesDialog()", ((modalOwner == NULL) || (blockingAppModalDialogFlag == 0)));
  MORVANE_REQUIRE("IMorvane_CreateSaveChangesDialog()", ValidateCloseReason(reason));
  TError outError;
  CallHook(outError, [&] {
    CMorvaneGlue_CreateSaveChangesDialog(behavior, modalOwner, blockingAppModalDialogFlag != 0,
                                         TextOrEmpty(documentName), reason);
  });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  return outError;
}

// --- Views

IView* CMorvaneGlue::IMorvane_CreateView(IViewBehaviorFactory& factory, IView& superView,
                                         const char* debugName, TError& outError) {
  MORVANE_REQUIRE_OUT("IMorvane_CreateView()", CMorvaneGlue_CheckInvariant());
  IView* outView = NULL;
  CallHook(outError,
           [&] { outView = CMorvaneGlue_CreateView(factory, superView, debugName ? debugName : ""); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  if (outError == kOK) MORVANE_ASSERT(outView != NULL);
  if (outError != kOK) MORVANE_ASSERT(outView == NULL);
  return outView;
}

TError CMorvaneGlue::IMorvane_InvalidateView(IView& view, const TRect& rect) {
  MORVANE_REQUIRE("IMorvane_InvalidateView()", CMorvaneGlue_CheckInvariant());
  TError outError;
  CallHook(outError, [&] { CMorvaneGlue_InvalidateView(view, rect); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  return outError;
}

TError CMorvaneGlue::IMorvane_DrawView(IView& view, IDrawTools& tools) {
  TError outError;
  CallHook(outError, [&] { CMorvaneGlue_DrawView(view, tools); });
  MORVANE_AFTER(CMorvaneGlue_CheckInvariant());
  return outError;
}

}  // namespace NSMorvane
