// The contract class of the root object.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Component/Portable/Text/TextPackage.h"
#include "Interface/Morvane.h"

namespace NSMorvane {

using NSTextPackage::TString;

class CMorvaneGlue : public IMorvane {
 public:
  CMorvaneGlue();
  ~CMorvaneGlue() override;

  bool IMorvane_CheckInvariant() const override;
  TError IMorvane_SetDebugOutput(IDebugOutput* output) override;
  TError IMorvane_SetDebugSettings(const TDebugSettings& settings) override;
  TError IMorvane_GetDebugSettings(TDebugSettings& outSettings) override;
  TError IMorvane_Run(IMorvaneRunBehavior* behavior, const TStartupParams& params) override;
  TError IMorvane_GetBehavior(IMorvaneRunBehavior*& outBehavior) override;
  TError IMorvane_GetBehavior(IMorvaneRunBehavior*& outBehavior) const override;
  TError IMorvane_StartQuitting() override;
  TError IMorvane_StopQuitting() override;
  TError IMorvane_IsQuitting(TFlag& outIsQuittingFlag) override;
  TError IMorvane_GetMonitors(TMonitorList& outMonitors) override;
  TError IMorvane_IsFormatOnClipboard(const TClipboardFormat& format, TFlag& outExistsFlag) override;
  IData* IMorvane_GetClipboardData(const TClipboardFormat& format, TError& outError) override;
  TError IMorvane_ReplaceClipboardContents(const TClipboardFormat* formats, std::uint32_t formatCount,
                                           IClipboardDataGetter* clipbardDataGetter) override;
  TError IMorvane_GetResourceString(const char* key, ITextReceiver& out) override;
  TError IMorvane_GetCurrentMS(std::uint64_t& out) override;
  TError IMorvane_ConvertMSToPrecisionTicks(std::uint64_t ms, std::uint64_t& out) override;
  IIcon* IMorvane_CreateBuiltInIcon(TBuiltinIcon icon, TError& outError) override;
  IIcon* IMorvane_CreateIconForURL(const char* fileOrFolderOrVolumeURL, TError& outError) override;
  IIcon* IMorvane_CreateResourceIcon(const char* key, TError& outError) override;
  IIcon* IMorvane_CreatePixmapIcon(const void* pixmapRGBA, TError& outError) override;
  TError IMorvane_SampleMouseState(TMouseState& outState, IWindow* window) override;
  TError IMorvane_SetOverrideMouseShape(IMouseShape* overrideShape) override;
  TError IMorvane_RequestMouseShapeArbitration() override;
  TError IMorvane_AllocateMouseCapture(IWindow* window, IMouseCapture* capture) override;
  TError IMorvane_ReleaseMouseCapture() override;
  TError IMorvane_CheckForClickDragOperation(IWindow& window, const TMouseEvent& event,
                                             TClickDragResult& outResult) override;
  TError IMorvane_AttachModifierKeyListener(IModifierKeyListener* listener) override;
  TError IMorvane_DetachModifierKeyListener(IModifierKeyListener* listener) override;
  TError IMorvane_InstallKeyReleaseCallback(std::uint32_t virtualKey, IKeyReleaseCallback* callback) override;
  TError IMorvane_RemoveKeyReleaseCallback(std::uint32_t virtualKey, IKeyReleaseCallback* callback) override;
  IMouseShape* IMorvane_LoadResourceMouseShape(const char* key, TError& outError) override;
  IMouseShape* IMorvane_CreateBuiltInMouseShape(TBuiltInMouseShape mouseShape, TError& outError) override;
  TError IMorvane_Yield() override;
  TError IMorvane_WakeUpIdle() override;
  TError IMorvane_ShortcutModsToModifiers(TShortcutModifiers shortcutMods, TModifierKeys& outMods) override;
  TError IMorvane_CanKeyBeInterpretedAs(const TPhysicalKeySpec& physicalKey,
                                        const TModifierKeys& physicalMods,
                                        const TKeyInterpretation& wantedInterpretation,
                                        TFlag& outFlag) override;
  TError IMorvane_GetDefaultInterpretation(const TPhysicalKeySpec& physicalKey,
                                           const TModifierKeys& physicalMods,
                                           TKeyInterpretation& outInterpretation) override;
  TError IMorvane_RequestMenuBarsSetup() override;
  TError IMorvane_DisplayPopupMenu(const TMenuItem* items, std::uint32_t itemCount, IWindow& window,
                                   const TPoint& point, std::uint32_t flags, std::int16_t& inOutSelectedIndex,
                                   TFlag& outSelectionMadeFlag) override;
  TError IMorvane_DisplayContextualMenu(const TMenuItem* items, std::uint32_t itemCount, IWindow& window,
                                        const TPoint& point, std::uint32_t flags,
                                        std::uint16_t& outSelectedIndex,
                                        TFlag& outSelectionMadeFlag) override;
  IDocumentWindow* IMorvane_CreateDocumentWindow(IDocumentWindowBehaviorFactory& factory,
                                                 TStyleFlags styleFlags, TFlag windowsMenuFlag,
                                                 TError& outError) override;
  TError IMorvane_GetDocumentWindowsZ(IWindowListReceiver& out) override;
  IModelessDialog* IMorvane_CreateModelessDialog(IModelessDialogBehaviorFactory& factory,
                                                 TStyleFlags styleFlags, TFlag windowsMenuFlag,
                                                 TError& outError) override;
  TError IMorvane_GetModelessDialogsZ(IWindowListReceiver& out) override;
  IModalDialog* IMorvane_CreateModalDialog(IModalDialogBehaviorFactory& factory, IModalOwner* owner,
                                           TFlag blockingAppModalDialogFlag, TStyleFlags styleFlags,
                                           TError& outError) override;
  TError IMorvane_GetModalDialogsZ(IWindowListReceiver& out) override;
  IFloatingWindow* IMorvane_CreateFloatingWindow(IFloatingWindowBehaviorFactory& factory,
                                                 TStyleFlags styleFlags, TError& outError) override;
  TError IMorvane_GetFloatingWindowsZ(IWindowListReceiver& out) override;
  TError IMorvane_CreateAlertBox(IModalOwner* modalOwner, TFlag blockingAppModalDialogFlag,
                                 const TAlertSpec& alertSpec, IAlertBoxListener* listener) override;
  IView* IMorvane_CreateView(IViewBehaviorFactory& factory, IView& superView, const char* debugName,
                             TError& outError) override;
  TError IMorvane_InvalidateView(IView& view, const TRect& rect) override;
  TError IMorvane_CreateSaveAsDialog(ISaveAsDialogBehavior* behavior, std::uint32_t dialogContext,
                                     IModalOwner* modalOwner, TFlag blockingAppModalDialogFlag,
                                     const TChar* templateFileName, const TFileType* types,
                                     std::uint32_t typeCount, const TChar* prompt) override;
  TError IMorvane_CreateOpenDialog(IOpenDialogBehavior* behavior, std::uint32_t dialogContext,
                                   IModalOwner* modalOwner, TFlag blockingAppModalDialogFlag,
                                   TFlag allowMultiSelectFlag, const TFileType* types,
                                   std::uint32_t typeCount, const TChar* prompt,
                                   IOpenDialogCustomizeBehavior* customizeBehavior) override;
  TError IMorvane_CreateDirectoryChooserDialog(IDirectoryChooserBehavior* behavior,
                                               std::uint32_t dialogContext, IModalOwner* modalOwner,
                                               TFlag blockingAppModalDialogFlag,
                                               const TChar* prompt) override;
  TError IMorvane_CreateSaveChangesDialog(ISaveChangesBehavior* behavior, IModalOwner* modalOwner,
                                          TFlag blockingAppModalDialogFlag, const TChar* documentName,
                                          TCloseReason reason) override;
  TError IMorvane_DrawView(IView& view, IDrawTools& tools) override;
  TError IMorvane_PostAppMessage(std::uint32_t a, std::uint32_t b) override;
  TError IMorvane_GetMacExtensions(void*& outMacExtensions) override;
  TError IMorvane_GetWinExtensions(IWinExtensions*& outWinExtensions) override;

 protected:
  virtual bool CMorvaneGlue_CheckInvariant() const = 0;
  virtual void CMorvaneGlue_SetDebugSettings(const TDebugSettings& settings) = 0;
  virtual TDebugSettings CMorvaneGlue_GetDebugSettings() = 0;
  virtual void CMorvaneGlue_Run(IMorvaneRunBehavior* behavior, const TStartupParams& params) = 0;
  virtual IMorvaneRunBehavior* CMorvaneGlue_GetBehavior() = 0;
  virtual IMorvaneRunBehavior* CMorvaneGlue_GetBehavior() const = 0;
  virtual void CMorvaneGlue_StartQuitting() = 0;
  virtual void CMorvaneGlue_StopQuitting() = 0;
  virtual bool CMorvaneGlue_IsQuitting() = 0;
  virtual TMonitorList CMorvaneGlue_GetMonitors() = 0;
  virtual bool CMorvaneGlue_IsFormatOnClipboard(const TClipboardFormat& format) = 0;
  virtual std::unique_ptr<IData> CMorvaneGlue_GetClipboardData(const TClipboardFormat& format) = 0;
  virtual void CMorvaneGlue_ReplaceClipboardContents(const std::vector<TClipboardFormat>& formats,
                                                     IClipboardDataGetter* getter) = 0;
  virtual TString CMorvaneGlue_GetResourceString(const std::string& key) = 0;
  virtual std::uint64_t CMorvaneGlue_GetCurrentMS() = 0;
  virtual std::uint64_t CMorvaneGlue_ConvertMSToPrecisionTicks(std::uint64_t ms) = 0;
  virtual std::unique_ptr<IIcon> CMorvaneGlue_CreateBuiltInIcon(TBuiltinIcon icon) = 0;
  virtual std::unique_ptr<IIcon> CMorvaneGlue_CreateIconForURL(const std::string& url) = 0;
  virtual std::unique_ptr<IIcon> CMorvaneGlue_CreateResourceIcon(const std::string& key) = 0;
  virtual std::unique_ptr<IIcon> CMorvaneGlue_CreatePixmapIcon(const void* pixmapRGBA) = 0;
  virtual TMouseState CMorvaneGlue_SampleMouseState(IWindow* window) = 0;
  virtual void CMorvaneGlue_SetOverrideMouseShape(IMouseShape* overrideShape) = 0;
  virtual void CMorvaneGlue_RequestMouseShapeArbitration() = 0;
  virtual void CMorvaneGlue_AllocateMouseCapture(IWindow* window, IMouseCapture* capture) = 0;
  virtual void CMorvaneGlue_ReleaseMouseCapture() = 0;
  virtual TClickDragResult CMorvaneGlue_CheckForClickDragOperation(IWindow& window,
                                                                   const TMouseEvent& event) = 0;
  virtual void CMorvaneGlue_AttachModifierKeyListener(IModifierKeyListener* listener) = 0;
  virtual void CMorvaneGlue_DetachModifierKeyListener(IModifierKeyListener* listener) = 0;
  virtual void CMorvaneGlue_InstallKeyReleaseCallback(std::uint32_t virtualKey,
                                                      IKeyReleaseCallback* callback) = 0;
  virtual void CMorvaneGlue_RemoveKeyReleaseCallback(std::uint32_t virtualKey,
                                                     IKeyReleaseCallback* callback) = 0;
  virtual std::unique_ptr<IMouseShape> CMorvaneGlue_LoadResourceMouseShape(const std::string& key) = 0;
  virtual std::unique_ptr<IMouseShape> CMorvaneGlue_CreateBuiltInMouseShape(
      TBuiltInMouseShape mouseShape) = 0;
  virtual void CMorvaneGlue_Yield() = 0;
  virtual void CMorvaneGlue_WakeUpIdle() = 0;
  virtual TModifierKeys CMorvaneGlue_ShortcutModsToModifiers(TShortcutModifiers shortcutMods) = 0;
  virtual bool CMorvaneGlue_CanKeyBeInterpretedAs(const TPhysicalKeySpec& physicalKey,
                                                  const TModifierKeys& physicalMods,
                                                  const TKeyInterpretation& wantedInterpretation) = 0;
  virtual TKeyInterpretation CMorvaneGlue_GetDefaultInterpretation(const TPhysicalKeySpec& physicalKey,
                                                                   const TModifierKeys& physicalMods) = 0;
  virtual void CMorvaneGlue_RequestMenuBarsSetup() = 0;
  virtual bool CMorvaneGlue_DisplayPopupMenu(const std::vector<TMenuItem>& items, IWindow& window,
                                             const TPoint& point, std::uint32_t flags,
                                             std::int16_t& inOutSelectedIndex) = 0;
  virtual bool CMorvaneGlue_DisplayContextualMenu(const std::vector<TMenuItem>& items, IWindow& window,
                                                  const TPoint& point, std::uint32_t flags,
                                                  std::uint16_t& outSelectedIndex) = 0;
  virtual IDocumentWindow* CMorvaneGlue_CreateDocumentWindow(IDocumentWindowBehaviorFactory& factory,
                                                             TStyleFlags styleFlags,
                                                             bool listedInWindowMenu) = 0;
  virtual std::vector<IWindow*> CMorvaneGlue_GetDocumentWindowsZ() = 0;
  virtual IModelessDialog* CMorvaneGlue_CreateModelessDialog(IModelessDialogBehaviorFactory& factory,
                                                             TStyleFlags styleFlags,
                                                             bool listedInWindowMenu) = 0;
  virtual std::vector<IWindow*> CMorvaneGlue_GetModelessDialogsZ() = 0;
  virtual IModalDialog* CMorvaneGlue_CreateModalDialog(IModalDialogBehaviorFactory& factory,
                                                       IModalOwner* owner, bool blocking,
                                                       TStyleFlags styleFlags) = 0;
  virtual std::vector<IWindow*> CMorvaneGlue_GetModalDialogsZ() = 0;
  virtual IFloatingWindow* CMorvaneGlue_CreateFloatingWindow(IFloatingWindowBehaviorFactory& factory,
                                                             TStyleFlags styleFlags) = 0;
  virtual std::vector<IWindow*> CMorvaneGlue_GetFloatingWindowsZ() = 0;
  virtual void CMorvaneGlue_CreateAlertBox(IModalOwner* modalOwner, bool blocking,
                                           const TAlertSpec& alertSpec, IAlertBoxListener* listener) = 0;
  virtual IView* CMorvaneGlue_CreateView(IViewBehaviorFactory& factory, IView& superView,
                                         const std::string& debugName) = 0;
  virtual void CMorvaneGlue_InvalidateView(IView& view, const TRect& rect) = 0;
  virtual void CMorvaneGlue_CreateSaveAsDialog(ISaveAsDialogBehavior* behavior, std::uint32_t dialogContext,
                                               IModalOwner* modalOwner, bool blocking,
                                               const TString& templateFileName,
                                               const std::vector<TFileType>& types,
                                               const TString& prompt) = 0;
  virtual void CMorvaneGlue_CreateOpenDialog(IOpenDialogBehavior* behavior, std::uint32_t dialogContext,
                                             IModalOwner* modalOwner, bool blocking, bool allowMultiSelect,
                                             const std::vector<TFileType>& types, const TString& prompt,
                                             IOpenDialogCustomizeBehavior* customizeBehavior) = 0;
  virtual void CMorvaneGlue_CreateDirectoryChooserDialog(IDirectoryChooserBehavior* behavior,
                                                         std::uint32_t dialogContext, IModalOwner* modalOwner,
                                                         bool blocking, const TString& prompt) = 0;
  virtual void CMorvaneGlue_CreateSaveChangesDialog(ISaveChangesBehavior* behavior, IModalOwner* modalOwner,
                                                    bool blocking, const TString& documentName,
                                                    TCloseReason reason) = 0;
  virtual void CMorvaneGlue_DrawView(IView& view, IDrawTools& tools) = 0;
  virtual void CMorvaneGlue_PostAppMessage(std::uint32_t a, std::uint32_t b) = 0;
  virtual void* CMorvaneGlue_GetMacExtensions() = 0;
  virtual IWinExtensions* CMorvaneGlue_GetWinExtensions() = 0;
};

}  // namespace NSMorvane
