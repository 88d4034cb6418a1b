// A root object with the real contract layer and hooks that only record, or do what a test wants of them.
#pragma once

#include "Component/Portable/Contract/MorvaneGlueRoot.h"
#include "Tests/Support/Contract.h"

namespace NSMorvaneTest {

class RecordingMorvane : public CMorvaneGlue, public Recorder {
 public:
  std::uint16_t fIndex = 1;  // of menu items

 protected:
  // clang-format off
  bool CMorvaneGlue_CheckInvariant() const override { return fSound; }
  HOOK(void, CMorvaneGlue_SetDebugSettings, const TDebugSettings&)
  HOOK(TDebugSettings, CMorvaneGlue_GetDebugSettings)
  HOOK(void, CMorvaneGlue_Run, IMorvaneRunBehavior*, const TStartupParams&)
  HOOK(IMorvaneRunBehavior*, CMorvaneGlue_GetBehavior)
  IMorvaneRunBehavior* CMorvaneGlue_GetBehavior() const override {
    return Hooked<IMorvaneRunBehavior*>("CMorvaneGlue_GetBehavior const");
  }
  HOOK(void, CMorvaneGlue_StartQuitting)
  HOOK(void, CMorvaneGlue_StopQuitting)
  HOOK(bool, CMorvaneGlue_IsQuitting)
  HOOK(TMonitorList, CMorvaneGlue_GetMonitors)
  HOOK(bool, CMorvaneGlue_IsFormatOnClipboard, const TClipboardFormat&)
  HOOK(std::unique_ptr<IData>, CMorvaneGlue_GetClipboardData, const TClipboardFormat&)
  HOOK(void, CMorvaneGlue_ReplaceClipboardContents, const std::vector<TClipboardFormat>&, IClipboardDataGetter*)
  HOOK(TString, CMorvaneGlue_GetResourceString, const std::string&)
  HOOK(std::uint64_t, CMorvaneGlue_GetCurrentMS)
  HOOK(std::uint64_t, CMorvaneGlue_ConvertMSToPrecisionTicks, std::uint64_t)
  HOOK(std::unique_ptr<IIcon>, CMorvaneGlue_CreateBuiltInIcon, TBuiltinIcon)
  HOOK(std::unique_ptr<IIcon>, CMorvaneGlue_CreateIconForURL, const std::string&)
  HOOK(std::unique_ptr<IIcon>, CMorvaneGlue_CreateResourceIcon, const std::string&)
  HOOK(std::unique_ptr<IIcon>, CMorvaneGlue_CreatePixmapIcon, const void*)
  HOOK(TMouseState, CMorvaneGlue_SampleMouseState, IWindow*)
  HOOK(void, CMorvaneGlue_SetOverrideMouseShape, IMouseShape*)
  HOOK(void, CMorvaneGlue_RequestMouseShapeArbitration)
  HOOK(void, CMorvaneGlue_AllocateMouseCapture, IWindow*, IMouseCapture*)
  HOOK(void, CMorvaneGlue_ReleaseMouseCapture)
  HOOK(TClickDragResult, CMorvaneGlue_CheckForClickDragOperation, IWindow&, const TMouseEvent&)
  HOOK(void, CMorvaneGlue_AttachModifierKeyListener, IModifierKeyListener*)
  HOOK(void, CMorvaneGlue_DetachModifierKeyListener, IModifierKeyListener*)
  HOOK(void, CMorvaneGlue_InstallKeyReleaseCallback, std::uint32_t, IKeyReleaseCallback*)
  HOOK(void, CMorvaneGlue_RemoveKeyReleaseCallback, std::uint32_t, IKeyReleaseCallback*)
  HOOK(std::unique_ptr<IMouseShape>, CMorvaneGlue_LoadResourceMouseShape, const std::string&)
  HOOK(std::unique_ptr<IMouseShape>, CMorvaneGlue_CreateBuiltInMouseShape, TBuiltInMouseShape)
  HOOK(void, CMorvaneGlue_Yield)
  HOOK(void, CMorvaneGlue_WakeUpIdle)
  HOOK(TModifierKeys, CMorvaneGlue_ShortcutModsToModifiers, TShortcutModifiers)
  HOOK(bool, CMorvaneGlue_CanKeyBeInterpretedAs,
       const TPhysicalKeySpec&, const TModifierKeys&, const TKeyInterpretation&)
  HOOK(TKeyInterpretation, CMorvaneGlue_GetDefaultInterpretation, const TPhysicalKeySpec&, const TModifierKeys&)
  HOOK(void, CMorvaneGlue_RequestMenuBarsSetup)
  bool CMorvaneGlue_DisplayPopupMenu(const std::vector<TMenuItem>&, IWindow&, const TPoint&, std::uint32_t,
                                     std::int16_t& inOutIndex) override {
    inOutIndex = fIndex;
    return Hooked<bool>("CMorvaneGlue_DisplayPopupMenu");
  }
  bool CMorvaneGlue_DisplayContextualMenu(const std::vector<TMenuItem>&, IWindow&, const TPoint&, std::uint32_t,
                                          std::uint16_t& outIndex) override {
    outIndex = fIndex;
    return Hooked<bool>("CMorvaneGlue_DisplayContextualMenu");
  }
  HOOK(IDocumentWindow*, CMorvaneGlue_CreateDocumentWindow, IDocumentWindowBehaviorFactory&, TStyleFlags, bool)
  HOOK(std::vector<IWindow*>, CMorvaneGlue_GetDocumentWindowsZ)
  HOOK(IModelessDialog*, CMorvaneGlue_CreateModelessDialog, IModelessDialogBehaviorFactory&, TStyleFlags, bool)
  HOOK(std::vector<IWindow*>, CMorvaneGlue_GetModelessDialogsZ)
  HOOK(IModalDialog*, CMorvaneGlue_CreateModalDialog,
       IModalDialogBehaviorFactory&, IModalOwner*, bool, TStyleFlags)
  HOOK(std::vector<IWindow*>, CMorvaneGlue_GetModalDialogsZ)
  HOOK(IFloatingWindow*, CMorvaneGlue_CreateFloatingWindow, IFloatingWindowBehaviorFactory&, TStyleFlags)
  HOOK(std::vector<IWindow*>, CMorvaneGlue_GetFloatingWindowsZ)
  HOOK(void, CMorvaneGlue_CreateAlertBox, IModalOwner*, bool, const TAlertSpec&, IAlertBoxListener*)
  HOOK(IView*, CMorvaneGlue_CreateView, IViewBehaviorFactory&, IView&, const std::string&)
  HOOK(void, CMorvaneGlue_InvalidateView, IView&, const TRect&)
  HOOK(void, CMorvaneGlue_CreateSaveAsDialog, ISaveAsDialogBehavior*, std::uint32_t, IModalOwner*, bool,
       const TString&, const std::vector<TFileType>&, const TString&)
  HOOK(void, CMorvaneGlue_CreateOpenDialog, IOpenDialogBehavior*, std::uint32_t, IModalOwner*, bool, bool,
       const std::vector<TFileType>&, const TString&, IOpenDialogCustomizeBehavior*)
  HOOK(void, CMorvaneGlue_CreateDirectoryChooserDialog,
       IDirectoryChooserBehavior*, std::uint32_t, IModalOwner*, bool, const TString&)
  HOOK(void, CMorvaneGlue_CreateSaveChangesDialog,
       ISaveChangesBehavior*, IModalOwner*, bool, const TString&, TCloseReason)
  HOOK(void, CMorvaneGlue_DrawView, IView&, IDrawTools&)
  HOOK(void, CMorvaneGlue_PostAppMessage, std::uint32_t, std::uint32_t)
  void* CMorvaneGlue_GetMacExtensions() override { return Hooked<IMorvane*>("CMorvaneGlue_GetMacExtensions"); }
  HOOK(IWinExtensions*, CMorvaneGlue_GetWinExtensions)
  // clang-format on
};

}  // namespace NSMorvaneTest
