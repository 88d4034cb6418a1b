// A root object with the real contract layer and hooks that only record, or do what a test wants of them.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Component/Portable/MorvaneGlue.h"

namespace NSMorvaneTest {

using namespace NSMorvane;

class RecordingMorvane : public CMorvaneGlue {
 public:
  bool fSound = true;
  std::vector<std::string> fHooks;
  std::function<void()> fOnHook;  // runs in every hook; may throw

  // What the hooks give.
  TDebugSettings fSettings{};
  TMonitorList fMonitors{};
  IMorvaneRunBehavior* fBehavior = nullptr;
  TModifierKeys fMods{};
  TString fText = u"text";
  bool fFlag = true;
  std::int16_t fPopupIndex = 0;
  std::uint16_t fContextualIndex = 0;
  std::vector<IWindow*> fWindows;
  std::vector<TMenuItem> fItems;

 protected:
  void Enter(const char* hook) {
    fHooks.push_back(hook);
    if (fOnHook) fOnHook();
  }
  template <class TResult>
  TResult Enter(const char* hook, TResult result) {
    Enter(hook);
    return result;
  }

  bool CMorvaneGlue_CheckInvariant() const override { return fSound; }
  void CMorvaneGlue_SetDebugSettings(const TDebugSettings&) override { Enter("SetDebugSettings"); }
  TDebugSettings CMorvaneGlue_GetDebugSettings() override { return Enter("GetDebugSettings", fSettings); }
  void CMorvaneGlue_Run(IMorvaneRunBehavior*, const TStartupParams&) override { Enter("Run"); }
  IMorvaneRunBehavior* CMorvaneGlue_GetBehavior() override { return Enter("GetBehavior", fBehavior); }
  IMorvaneRunBehavior* CMorvaneGlue_GetBehavior() const override { return fBehavior; }
  void CMorvaneGlue_StartQuitting() override { Enter("StartQuitting"); }
  void CMorvaneGlue_StopQuitting() override { Enter("StopQuitting"); }
  bool CMorvaneGlue_IsQuitting() override { return Enter("IsQuitting", fFlag); }
  TMonitorList CMorvaneGlue_GetMonitors() override { return Enter("GetMonitors", fMonitors); }
  bool CMorvaneGlue_IsFormatOnClipboard(const TClipboardFormat&) override {
    return Enter("IsFormatOnClipboard", fFlag);
  }
  std::unique_ptr<IData> CMorvaneGlue_GetClipboardData(const TClipboardFormat&) override {
    return Enter("GetClipboardData", std::unique_ptr<IData>());
  }
  void CMorvaneGlue_ReplaceClipboardContents(const std::vector<TClipboardFormat>&,
                                             IClipboardDataGetter*) override {
    Enter("ReplaceClipboardContents");
  }
  TString CMorvaneGlue_GetResourceString(const std::string&) override {
    return Enter("GetResourceString", fText);
  }
  std::uint64_t CMorvaneGlue_GetCurrentMS() override { return Enter("GetCurrentMS", std::uint64_t{77}); }
  std::uint64_t CMorvaneGlue_ConvertMSToPrecisionTicks(std::uint64_t ms) override {
    return Enter("ConvertMSToPrecisionTicks", ms);
  }
  std::unique_ptr<IIcon> CMorvaneGlue_CreateBuiltInIcon(TBuiltinIcon) override {
    return Enter("CreateBuiltInIcon", std::unique_ptr<IIcon>());
  }
  std::unique_ptr<IIcon> CMorvaneGlue_CreateIconForURL(const std::string&) override {
    return Enter("CreateIconForURL", std::unique_ptr<IIcon>());
  }
  std::unique_ptr<IIcon> CMorvaneGlue_CreateResourceIcon(const std::string&) override {
    return Enter("CreateResourceIcon", std::unique_ptr<IIcon>());
  }
  std::unique_ptr<IIcon> CMorvaneGlue_CreatePixmapIcon(const void*) override {
    return Enter("CreatePixmapIcon", std::unique_ptr<IIcon>());
  }
  TMouseState CMorvaneGlue_SampleMouseState(IWindow*) override {
    return Enter("SampleMouseState", TMouseState{});
  }
  void CMorvaneGlue_SetOverrideMouseShape(IMouseShape*) override { Enter("SetOverrideMouseShape"); }
  void CMorvaneGlue_RequestMouseShapeArbitration() override { Enter("RequestMouseShapeArbitration"); }
  void CMorvaneGlue_AllocateMouseCapture(IWindow*, IMouseCapture*) override { Enter("AllocateMouseCapture"); }
  void CMorvaneGlue_ReleaseMouseCapture() override { Enter("ReleaseMouseCapture"); }
  TClickDragResult CMorvaneGlue_CheckForClickDragOperation(IWindow&, const TMouseEvent&) override {
    return Enter("CheckForClickDragOperation", kClickDragHeld);
  }
  void CMorvaneGlue_AttachModifierKeyListener(IModifierKeyListener*) override {
    Enter("AttachModifierKeyListener");
  }
  void CMorvaneGlue_DetachModifierKeyListener(IModifierKeyListener*) override {
    Enter("DetachModifierKeyListener");
  }
  void CMorvaneGlue_InstallKeyReleaseCallback(std::uint32_t, IKeyReleaseCallback*) override {
    Enter("InstallKeyReleaseCallback");
  }
  void CMorvaneGlue_RemoveKeyReleaseCallback(std::uint32_t, IKeyReleaseCallback*) override {
    Enter("RemoveKeyReleaseCallback");
  }
  std::unique_ptr<IMouseShape> CMorvaneGlue_LoadResourceMouseShape(const std::string&) override {
    return Enter("LoadResourceMouseShape", std::unique_ptr<IMouseShape>());
  }
  std::unique_ptr<IMouseShape> CMorvaneGlue_CreateBuiltInMouseShape(TBuiltInMouseShape) override {
    return Enter("CreateBuiltInMouseShape", std::unique_ptr<IMouseShape>());
  }
  void CMorvaneGlue_Yield() override { Enter("Yield"); }
  void CMorvaneGlue_WakeUpIdle() override { Enter("WakeUpIdle"); }
  TModifierKeys CMorvaneGlue_ShortcutModsToModifiers(TShortcutModifiers) override {
    return Enter("ShortcutModsToModifiers", fMods);
  }
  bool CMorvaneGlue_CanKeyBeInterpretedAs(const TPhysicalKeySpec&, const TModifierKeys&,
                                          const TKeyInterpretation&) override {
    return Enter("CanKeyBeInterpretedAs", fFlag);
  }
  TKeyInterpretation CMorvaneGlue_GetDefaultInterpretation(const TPhysicalKeySpec&,
                                                           const TModifierKeys&) override {
    return Enter("GetDefaultInterpretation", TKeyInterpretation{});
  }
  void CMorvaneGlue_RequestMenuBarsSetup() override { Enter("RequestMenuBarsSetup"); }
  bool CMorvaneGlue_DisplayPopupMenu(const std::vector<TMenuItem>& items, IWindow&, const TPoint&,
                                     std::uint32_t, std::int16_t& inOutSelectedIndex) override {
    fItems = items;
    Enter("DisplayPopupMenu");
    inOutSelectedIndex = fPopupIndex;
    return fFlag;
  }
  bool CMorvaneGlue_DisplayContextualMenu(const std::vector<TMenuItem>& items, IWindow&, const TPoint&,
                                          std::uint32_t, std::uint16_t& outSelectedIndex) override {
    fItems = items;
    Enter("DisplayContextualMenu");
    outSelectedIndex = fContextualIndex;
    return fFlag;
  }
  IDocumentWindow* CMorvaneGlue_CreateDocumentWindow(IDocumentWindowBehaviorFactory&, TStyleFlags,
                                                     bool) override {
    Enter("CreateDocumentWindow");
    return nullptr;
  }
  std::vector<IWindow*> CMorvaneGlue_GetDocumentWindowsZ() override {
    return Enter("GetDocumentWindowsZ", fWindows);
  }
  IModelessDialog* CMorvaneGlue_CreateModelessDialog(IModelessDialogBehaviorFactory&, TStyleFlags,
                                                     bool) override {
    Enter("CreateModelessDialog");
    return nullptr;
  }
  std::vector<IWindow*> CMorvaneGlue_GetModelessDialogsZ() override {
    return Enter("GetModelessDialogsZ", fWindows);
  }
  IModalDialog* CMorvaneGlue_CreateModalDialog(IModalDialogBehaviorFactory&, IModalOwner*, bool,
                                               TStyleFlags) override {
    Enter("CreateModalDialog");
    return nullptr;
  }
  std::vector<IWindow*> CMorvaneGlue_GetModalDialogsZ() override {
    return Enter("GetModalDialogsZ", fWindows);
  }
  IFloatingWindow* CMorvaneGlue_CreateFloatingWindow(IFloatingWindowBehaviorFactory&, TStyleFlags) override {
    Enter("CreateFloatingWindow");
    return nullptr;
  }
  std::vector<IWindow*> CMorvaneGlue_GetFloatingWindowsZ() override {
    return Enter("GetFloatingWindowsZ", fWindows);
  }
  void CMorvaneGlue_CreateAlertBox(IModalOwner*, bool, const TAlertSpec&, IAlertBoxListener*) override {
    Enter("CreateAlertBox");
  }
  IView* CMorvaneGlue_CreateView(IViewBehaviorFactory&, IView&, const std::string&) override {
    Enter("CreateView");
    return nullptr;
  }
  void CMorvaneGlue_InvalidateView(IView&, const TRect&) override { Enter("InvalidateView"); }
  void CMorvaneGlue_CreateSaveAsDialog(ISaveAsDialogBehavior*, std::uint32_t, IModalOwner*, bool,
                                       const TString&, const std::vector<TFileType>&,
                                       const TString&) override {
    Enter("CreateSaveAsDialog");
  }
  void CMorvaneGlue_CreateOpenDialog(IOpenDialogBehavior*, std::uint32_t, IModalOwner*, bool, bool,
                                     const std::vector<TFileType>&, const TString&,
                                     IOpenDialogCustomizeBehavior*) override {
    Enter("CreateOpenDialog");
  }
  void CMorvaneGlue_CreateDirectoryChooserDialog(IDirectoryChooserBehavior*, std::uint32_t, IModalOwner*,
                                                 bool, const TString&) override {
    Enter("CreateDirectoryChooserDialog");
  }
  void CMorvaneGlue_CreateSaveChangesDialog(ISaveChangesBehavior*, IModalOwner*, bool, const TString&,
                                            TCloseReason) override {
    Enter("CreateSaveChangesDialog");
  }
  void CMorvaneGlue_DrawView(IView&, IDrawTools&) override { Enter("DrawView"); }
  void CMorvaneGlue_PostAppMessage(std::uint32_t, std::uint32_t) override { Enter("PostAppMessage"); }
  void* CMorvaneGlue_GetMacExtensions() override {
    Enter("GetMacExtensions");
    return nullptr;
  }
  IWinExtensions* CMorvaneGlue_GetWinExtensions() override {
    Enter("GetWinExtensions");
    return nullptr;
  }
};

}  // namespace NSMorvaneTest
