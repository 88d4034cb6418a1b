// A root object with the real contract layer and hooks that only record, or do what a test wants of them.
#pragma once

#include "Tests/Support/Contract.h"

namespace NSMorvaneTest {

struct FakeIcon : IIcon {
  IIcon* IIcon_Clone(TError&) const override { return nullptr; }
  TError IIcon_AreEqual(const IIcon&, TFlag&) const override { return kOK; }
  std::uint32_t IIcon_CheckInvariant() const override { return fSound; }
  std::uint32_t fSound = 1;
};
struct FakeData : IData {
  std::uint32_t IData_CheckInvariant() const override { return fSound; }
  TError IData_GetSize(std::uint64_t&) override { return kOK; }
  TError IData_Read(std::uint64_t, std::uint64_t, void*) override { return kOK; }
  std::uint32_t fSound = 1;
};
struct FakeMouseShape : IMouseShape {
  std::uint32_t IMouseShape_CheckInvariant() const override { return fSound; }
  IMouseShape* IMouseShape_Clone(TError&) const override { return nullptr; }
  std::uint32_t fSound = 1;
};

class RecordingMorvane : public CMorvaneGlue, public Recorder {
 public:
  RecordingMorvane() {
    Names()[Given<IIcon*>() = &fIcon] = "icon";
    Names()[Given<IData*>() = &fData] = "data";
    Names()[Given<IMouseShape*>() = &fShape] = "shape";
  }

  std::uint16_t fIndex = 1;  // of menu items
  FakeIcon fIcon;
  FakeData fData;
  FakeMouseShape fShape;

 protected:
  // clang-format off
  bool CMorvaneGlue_CheckInvariant() const override { return fSound; }
  HOOK1(void, CMorvaneGlue_SetDebugSettings, const TDebugSettings&)
  HOOK0(TDebugSettings, CMorvaneGlue_GetDebugSettings)
  HOOK2(void, CMorvaneGlue_Run, IMorvaneRunBehavior*, const TStartupParams&)
  HOOK0(IMorvaneRunBehavior*, CMorvaneGlue_GetBehavior)
  IMorvaneRunBehavior* CMorvaneGlue_GetBehavior() const override {
    return Hooked<IMorvaneRunBehavior*>("CMorvaneGlue_GetBehavior const");
  }
  HOOK0(void, CMorvaneGlue_StartQuitting)
  HOOK0(void, CMorvaneGlue_StopQuitting)
  HOOK0(bool, CMorvaneGlue_IsQuitting)
  HOOK0(TMonitorList, CMorvaneGlue_GetMonitors)
  HOOK1(bool, CMorvaneGlue_IsFormatOnClipboard, const TClipboardFormat&)
  HOOK1(std::unique_ptr<IData>, CMorvaneGlue_GetClipboardData, const TClipboardFormat&)
  HOOK2(void, CMorvaneGlue_ReplaceClipboardContents, const std::vector<TClipboardFormat>&, IClipboardDataGetter*)
  HOOK1(TString, CMorvaneGlue_GetResourceString, const std::string&)
  HOOK0(std::uint64_t, CMorvaneGlue_GetCurrentMS)
  HOOK1(std::uint64_t, CMorvaneGlue_ConvertMSToPrecisionTicks, std::uint64_t)
  HOOK1(std::unique_ptr<IIcon>, CMorvaneGlue_CreateBuiltInIcon, TBuiltinIcon)
  HOOK1(std::unique_ptr<IIcon>, CMorvaneGlue_CreateIconForURL, const std::string&)
  HOOK1(std::unique_ptr<IIcon>, CMorvaneGlue_CreateResourceIcon, const std::string&)
  HOOK1(std::unique_ptr<IIcon>, CMorvaneGlue_CreatePixmapIcon, const void*)
  HOOK1(TMouseState, CMorvaneGlue_SampleMouseState, IWindow*)
  HOOK1(void, CMorvaneGlue_SetOverrideMouseShape, IMouseShape*)
  HOOK0(void, CMorvaneGlue_RequestMouseShapeArbitration)
  HOOK2(void, CMorvaneGlue_AllocateMouseCapture, IWindow*, IMouseCapture*)
  HOOK0(void, CMorvaneGlue_ReleaseMouseCapture)
  HOOK2(TClickDragResult, CMorvaneGlue_CheckForClickDragOperation, IWindow&, const TMouseEvent&)
  HOOK1(void, CMorvaneGlue_AttachModifierKeyListener, IModifierKeyListener*)
  HOOK1(void, CMorvaneGlue_DetachModifierKeyListener, IModifierKeyListener*)
  HOOK2(void, CMorvaneGlue_InstallKeyReleaseCallback, std::uint32_t, IKeyReleaseCallback*)
  HOOK2(void, CMorvaneGlue_RemoveKeyReleaseCallback, std::uint32_t, IKeyReleaseCallback*)
  HOOK1(std::unique_ptr<IMouseShape>, CMorvaneGlue_LoadResourceMouseShape, const std::string&)
  HOOK1(std::unique_ptr<IMouseShape>, CMorvaneGlue_CreateBuiltInMouseShape, TBuiltInMouseShape)
  HOOK0(void, CMorvaneGlue_Yield)
  HOOK0(void, CMorvaneGlue_WakeUpIdle)
  HOOK1(TModifierKeys, CMorvaneGlue_ShortcutModsToModifiers, TShortcutModifiers)
  HOOK3(bool, CMorvaneGlue_CanKeyBeInterpretedAs,
        const TPhysicalKeySpec&, const TModifierKeys&, const TKeyInterpretation&)
  HOOK2(TKeyInterpretation, CMorvaneGlue_GetDefaultInterpretation, const TPhysicalKeySpec&, const TModifierKeys&)
  HOOK0(void, CMorvaneGlue_RequestMenuBarsSetup)
  bool CMorvaneGlue_DisplayPopupMenu(const std::vector<TMenuItem>& items, IWindow& window, const TPoint& point,
                                     std::uint32_t flags, std::int16_t& inOutIndex) override {
    const bool made = Hooked<bool>("CMorvaneGlue_DisplayPopupMenu", items, window, point, flags, inOutIndex);
    inOutIndex = fIndex;
    return made;
  }
  bool CMorvaneGlue_DisplayContextualMenu(const std::vector<TMenuItem>& items, IWindow& window,
                                          const TPoint& point, std::uint32_t flags,
                                          std::uint16_t& outIndex) override {
    const bool made = Hooked<bool>("CMorvaneGlue_DisplayContextualMenu", items, window, point, flags);
    outIndex = fIndex;
    return made;
  }
  HOOK3(IDocumentWindow*, CMorvaneGlue_CreateDocumentWindow, IDocumentWindowBehaviorFactory&, TStyleFlags, bool)
  HOOK0(std::vector<IWindow*>, CMorvaneGlue_GetDocumentWindowsZ)
  HOOK3(IModelessDialog*, CMorvaneGlue_CreateModelessDialog, IModelessDialogBehaviorFactory&, TStyleFlags, bool)
  HOOK0(std::vector<IWindow*>, CMorvaneGlue_GetModelessDialogsZ)
  HOOK4(IModalDialog*, CMorvaneGlue_CreateModalDialog,
        IModalDialogBehaviorFactory&, IModalOwner*, bool, TStyleFlags)
  HOOK0(std::vector<IWindow*>, CMorvaneGlue_GetModalDialogsZ)
  HOOK2(IFloatingWindow*, CMorvaneGlue_CreateFloatingWindow, IFloatingWindowBehaviorFactory&, TStyleFlags)
  HOOK0(std::vector<IWindow*>, CMorvaneGlue_GetFloatingWindowsZ)
  HOOK4(void, CMorvaneGlue_CreateAlertBox, IModalOwner*, bool, const TAlertSpec&, IAlertBoxListener*)
  HOOK3(IView*, CMorvaneGlue_CreateView, IViewBehaviorFactory&, IView&, const std::string&)
  HOOK2(void, CMorvaneGlue_InvalidateView, IView&, const TRect&)
  void CMorvaneGlue_CreateSaveAsDialog(ISaveAsDialogBehavior* a, std::uint32_t b, IModalOwner* c, bool d,
                                       const TString& e, const std::vector<TFileType>& f,
                                       const TString& g) override {
    Hooked<void>("CMorvaneGlue_CreateSaveAsDialog", a, b, c, d, e, f, g);
  }
  void CMorvaneGlue_CreateOpenDialog(IOpenDialogBehavior* a, std::uint32_t b, IModalOwner* c, bool d, bool e,
                                     const std::vector<TFileType>& f, const TString& g,
                                     IOpenDialogCustomizeBehavior* h) override {
    Hooked<void>("CMorvaneGlue_CreateOpenDialog", a, b, c, d, e, f, g, h);
  }
  HOOK5(void, CMorvaneGlue_CreateDirectoryChooserDialog,
        IDirectoryChooserBehavior*, std::uint32_t, IModalOwner*, bool, const TString&)
  HOOK5(void, CMorvaneGlue_CreateSaveChangesDialog,
        ISaveChangesBehavior*, IModalOwner*, bool, const TString&, TCloseReason)
  HOOK2(void, CMorvaneGlue_DrawView, IView&, IDrawTools&)
  HOOK2(void, CMorvaneGlue_PostAppMessage, std::uint32_t, std::uint32_t)
  void* CMorvaneGlue_GetMacExtensions() override { return Hooked<IMorvane*>("CMorvaneGlue_GetMacExtensions"); }
  HOOK0(IWinExtensions*, CMorvaneGlue_GetWinExtensions)
  // clang-format on
};

}  // namespace NSMorvaneTest
