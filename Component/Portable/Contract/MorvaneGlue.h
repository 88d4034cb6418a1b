// The contract classes: each derives from one interface, implements its operations as contract members (see
// MorvaneGlueContract.h), and leaves the work to protected hooks that the implementation overrides.
//
// Hooks take plain library types, return their results by value, and report failure by throwing only.
#pragma once

#include <boost/shared_ptr.hpp>
#include <memory>
#include <string>
#include <vector>

#include "Component/Portable/Base/MorvaneImplUtils.h"
#include "Component/Portable/Surfaces/Region.h"
#include "Component/Portable/Text/TextPackage.h"
#include "Interface/Morvane.h"

namespace NSMorvane {

using NSTextPackage::TString;

class CViewImpl;

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

class CViewGlue : public IView {
 public:
  TError IView_GetBehavior(IViewBehavior*& out) override;
  TError IView_GetMotherWindow(IWindow*& outWindow) override;
  TError IView_GetSuperView(IView*& out) override;
  TError IView_IsEffectivelyEnabled(TFlag& outEnabledFlag) override;
  TError IView_SetParams(const TViewParams& params) override;
  TError IView_GetParams(TViewParams& params) override;
  TError IView_GetDebugName(char* out) override;
  TError IView_GetTooltipText(TChar* out) override;
  TError IView_SetTooltipText(const TChar* text) override;
  TError IView_Offset(std::int32_t dx, std::int32_t dy) override;
  TError IView_GetSubViewOrder(IViewListReceiver& out) override;
  TError IView_SetSubViewOrder(IView* const* subViews, std::uint32_t count) override;
  TError IView_Release() override;

 protected:
  virtual bool CViewGlue_CheckInvariant() const = 0;
  virtual IViewBehavior* CViewGlue_GetBehavior() = 0;
  virtual IWindow* CViewGlue_GetMotherWindow() = 0;
  virtual IView* CViewGlue_GetSuperView() = 0;
  virtual bool CViewGlue_IsEffectivelyEnabled() = 0;
  virtual void CViewGlue_SetParams(const TViewParams& params) = 0;
  virtual TViewParams CViewGlue_GetParams() = 0;
  virtual std::string CViewGlue_GetDebugName() = 0;
  virtual TString CViewGlue_GetTooltipText() = 0;
  virtual void CViewGlue_SetTooltipText(const TString& text) = 0;
  virtual void CViewGlue_Offset(std::int32_t dx, std::int32_t dy) = 0;
  virtual std::vector<IView*> CViewGlue_GetSubViewOrder() = 0;
  virtual void CViewGlue_SetSubViewOrder(const std::vector<IView*>& subViews) = 0;
  virtual void CViewGlue_Release() = 0;
};

class CWindowGlue : public IWindow {
 public:
  CWindowGlue();
  ~CWindowGlue() override;

  TError IWindow_GetNativeWindow(TNativeWindow& outNativeWindow) override;
  TError IWindow_GetOnDutyFocusView(IView*& out) override;
  TError IWindow_GetConceptualFocusView(IView*& out) override;
  TError IWindow_SetConceptualFocusView(IView* newConceptualFocusView) override;
  TError IWindow_GetTabViews(IViewListReceiver& out) override;
  TError IWindow_SetTabViews(IView* const* tabViews, std::uint32_t count) override;
  TError IWindow_GetRootView(IView*& outRootView) override;
  TError IWindow_IsActive(TFlag& outActiveFlag) override;
  TError IWindow_GetFrameRect(TRect& out) override;
  TError IWindow_FrameRectToClientRect(const TRect& in, TRect& out) override;
  TError IWindow_ClientRectToFrameRect(const TRect& in, TRect& out) override;
  TError IWindow_GetGlobalAlpha(std::uint8_t& outAlpha) override;
  TError IWindow_SetGlobalAlpha(std::uint8_t alpha) override;

 protected:
  // What is left of an object that has ended is this class, and unsound.
  virtual bool CWindowGlue_CheckInvariant() const { return false; }
  virtual TNativeWindow CWindowGlue_GetNativeWindow() = 0;
  virtual CViewImpl* CWindowGlue_GetOnDutyFocusView() = 0;
  virtual CViewImpl* CWindowGlue_GetConceptualFocusView() = 0;
  virtual void CWindowGlue_SetConceptualFocusView(CViewImpl* view) = 0;
  virtual std::vector<CViewImpl*> CWindowGlue_GetTabViews() = 0;
  virtual void CWindowGlue_SetTabViews(const std::vector<CViewImpl*>& tabViews) = 0;
  virtual CViewImpl* CWindowGlue_GetRootView() = 0;
  virtual bool CWindowGlue_IsActive() = 0;
  virtual TRect CWindowGlue_GetFrameRect() = 0;
  virtual TRect CWindowGlue_FrameRectToClientRect(const TRect& rect) = 0;
  virtual TRect CWindowGlue_ClientRectToFrameRect(const TRect& rect) = 0;
  virtual std::uint8_t CWindowGlue_GetGlobalAlpha() = 0;
  virtual void CWindowGlue_SetGlobalAlpha(std::uint8_t alpha) = 0;
};

class CDocumentWindowGlue : public IDocumentWindow {
 public:
  CDocumentWindowGlue();
  ~CDocumentWindowGlue() override;

  bool IDocumentWindow_CheckInvariant() const override;
  TError IDocumentWindow_GetState(TDocumentWindowState& state) override;
  TError IDocumentWindow_SetState(const TDocumentWindowState& state) override;
  TError IDocumentWindow_GetWindow(IWindow*& outWindow) override;
  TError IDocumentWindow_GetModalOwner(IModalOwner*& out) override;
  TError IDocumentWindow_FocusNow() override;
  TError IDocumentWindow_GetBehavior(IDocumentWindowBehavior*& outBehavior) override;
  TError IDocumentWindow_Release() override;

 protected:
  // What is left of an object that has ended is this class, and unsound.
  virtual bool CDocumentWindowGlue_CheckInvariant() const { return false; }
  virtual TDocumentWindowState CDocumentWindowGlue_GetState() = 0;
  virtual void CDocumentWindowGlue_SetState(const TDocumentWindowState& state) = 0;
  virtual IWindow* CDocumentWindowGlue_GetWindow() = 0;
  virtual IModalOwner* CDocumentWindowGlue_GetModalOwner() = 0;
  virtual void CDocumentWindowGlue_FocusNow() = 0;
  virtual IDocumentWindowBehavior* CDocumentWindowGlue_GetBehavior() = 0;
  virtual void CDocumentWindowGlue_Release() = 0;
};

class CModelessDialogGlue : public IModelessDialog {
 public:
  CModelessDialogGlue();
  ~CModelessDialogGlue() override;

  bool IModelessDialog_CheckInvariant() const override;
  TError IModelessDialog_GetState(TModelessDialogState& state) override;
  TError IModelessDialog_SetState(const TModelessDialogState& state) override;
  TError IModelessDialog_GetWindow(IWindow*& outWindow) override;
  TError IModelessDialog_GetModalOwner(IModalOwner*& out) override;
  TError IModelessDialog_FocusNow() override;
  TError IModelessDialog_GetBehavior(IModelessDialogBehavior*& outBehavior) override;
  TError IModelessDialog_Release() override;

 protected:
  // What is left of an object that has ended is this class, and unsound.
  virtual bool CModelessDialogGlue_CheckInvariant() const { return false; }
  virtual TModelessDialogState CModelessDialogGlue_GetState() = 0;
  virtual void CModelessDialogGlue_SetState(const TModelessDialogState& state) = 0;
  virtual IWindow* CModelessDialogGlue_GetWindow() = 0;
  virtual IModalOwner* CModelessDialogGlue_GetModalOwner() = 0;
  virtual void CModelessDialogGlue_FocusNow() = 0;
  virtual IModelessDialogBehavior* CModelessDialogGlue_GetBehavior() = 0;
  virtual void CModelessDialogGlue_Release() = 0;
};

class CModalDialogGlue : public IModalDialog {
 public:
  CModalDialogGlue();
  ~CModalDialogGlue() override;

  bool IModalDialog_CheckInvariant() const override;
  TError IModalDialog_GetState(TModalDialogState& state) override;
  TError IModalDialog_SetState(const TModalDialogState& state) override;
  TError IModalDialog_GetWindow(IWindow*& outWindow) override;
  TError IModalDialog_GetModalOwner(IModalOwner*& out) override;
  TError IModalDialog_FocusNow() override;
  TError IModalDialog_GetBehavior(IModalDialogBehavior*& outBehavior) override;
  TError IModalDialog_Release() override;

 protected:
  // What is left of an object that has ended is this class, and unsound.
  virtual bool CModalDialogGlue_CheckInvariant() const { return false; }
  virtual TModalDialogState CModalDialogGlue_GetState() = 0;
  virtual void CModalDialogGlue_SetState(const TModalDialogState& state) = 0;
  virtual IWindow* CModalDialogGlue_GetWindow() = 0;
  virtual IModalOwner* CModalDialogGlue_GetModalOwner() = 0;
  virtual void CModalDialogGlue_FocusNow() = 0;
  virtual IModalDialogBehavior* CModalDialogGlue_GetBehavior() = 0;
  virtual void CModalDialogGlue_Release() = 0;
};

class CFloatingWindowGlue : public IFloatingWindow {
 public:
  CFloatingWindowGlue();
  ~CFloatingWindowGlue() override;

  bool IFloatingWindow_CheckInvariant() const override;
  TError IFloatingWindow_GetState(TFloatingWindowState& state) override;
  TError IFloatingWindow_SetState(const TFloatingWindowState& state) override;
  TError IFloatingWindow_GetWindow(IWindow*& outWindow) override;
  TError IFloatingWindow_FocusNow() override;
  TError IFloatingWindow_GetBehavior(IFloatingWindowBehavior*& outBehavior) override;
  TError IFloatingWindow_Release() override;

 protected:
  // What is left of an object that has ended is this class, and unsound.
  virtual bool CFloatingWindowGlue_CheckInvariant() const { return false; }
  virtual TFloatingWindowState CFloatingWindowGlue_GetState() = 0;
  virtual void CFloatingWindowGlue_SetState(const TFloatingWindowState& state) = 0;
  virtual IWindow* CFloatingWindowGlue_GetWindow() = 0;
  virtual void CFloatingWindowGlue_FocusNow() = 0;
  virtual IFloatingWindowBehavior* CFloatingWindowGlue_GetBehavior() = 0;
  virtual void CFloatingWindowGlue_Release() = 0;
};

// The draw tools that a behaviour gets: the rule that port and pixels are open one at a time, and the dirty
// region cut to the views on the way down.
class CDrawToolsGlue : public IDrawTools {
 public:
  // Neither the port nor the region becomes the object's. `dirtyRegion` is a native region in the port's
  // coordinates.
  CDrawToolsGlue(const TNativePort& nativePort, void* dirtyRegion);
  ~CDrawToolsGlue() override;
  CDrawToolsGlue(const CDrawToolsGlue&) = delete;
  CDrawToolsGlue& operator=(const CDrawToolsGlue&) = delete;

  TError IDrawTools_GetDirtyRegion(void*& outNativeRegion) override;
  TError IDrawTools_OpenNativePort(TNativePort& out) override;
  TError IDrawTools_CloseNativePort() override;
  TError IDrawTools_OpenRawPixels(TRawPixels& out) override;
  TError IDrawTools_CloseRawPixels() override;

  // Around the drawing of one view: its bounds cut the dirty region, together with those of its super views.
  void PushViewBounds(const TRect& bounds);
  void PopViewBounds(const TRect& bounds);
  // After a behaviour has had the tools: port or pixels that it has left open are reported and closed, so
  // that the next one can draw.
  void CloseWhatIsLeftOpen();

  virtual TNativePort CDrawToolsGlue_GetNativePort() = 0;
  virtual void CDrawToolsGlue_CloseNativePort() = 0;
  virtual TRawPixels CDrawToolsGlue_OpenRawPixels() = 0;
  virtual void CDrawToolsGlue_CloseRawPixels() = 0;
  // Copies what has been drawn so far to the screen, and waits a little if `delayFlag`.
  virtual void CDrawToolsGlue_FlushToScreen(bool delayFlag) = 0;

 protected:
  TNativePort fNativePort;
  void* fDirtyRegion;
  std::vector<TRect> fCurrentViewSubtreeBounds;
  CRegion fCachedCurrentDirtyRegion;
  bool fCachedCurrentDirtyRegionIsValid = false;
  bool fNativePortIsOpen = false;
  bool fRawPixelsAreOpen = false;
};

class CIconGlue : public IIcon {
 public:
  ~CIconGlue() override;

  IIcon* IIcon_Clone(TError& outError) const override;
  TError IIcon_AreEqual(const IIcon& other, TFlag& outEqualFlag) const override;
  std::uint32_t IIcon_CheckInvariant() const override;

 protected:
  virtual bool CIconGlue_AreEqual(const CIconGlue& other) const = 0;
  // At this level every object is sound.
  virtual bool CIconGlue_CheckInvariant() const;
  virtual std::unique_ptr<IIcon> CIconGlue_Clone() const = 0;
};

// The window as the view tree sees it. All windows implement it; it never reaches the client.
class IImplFocusTools {
 public:
  // Both give the same view, whether the window is active or not: the one that will have the focus when the
  // change under way is through.
  virtual CViewImpl* IImplFocusTools_GetOnDutyFocusView() = 0;
  virtual CViewImpl* IImplFocusTools_GetConceptualFocusView() = 0;
  virtual void IImplFocusTools_SetConceptualFocusView(CViewImpl* view) = 0;
  virtual void IImplFocusTools_GetTabViews(std::vector<CViewImpl*>& out) = 0;
  virtual void IImplFocusTools_SetTabViews(std::vector<CViewImpl*> tabViews) = 0;
  // Keeps the window in memory for as long as it is held: behaviours may end it from their callbacks.
  virtual boost::shared_ptr<void> IImplFocusTools_KeepAlive() = 0;

 protected:
  virtual ~IImplFocusTools() = default;
};

// What a view needs of its window beyond the focus. All windows implement it; it never reaches the client.
class IViewWindow {
 public:
  // In client coordinates: have this part of the screen painted again.
  virtual void InvalidateRect(const TRect& rect) = 0;
  virtual void InvalidateRegion(const CRegion& region) = 0;
  // Some view has moved: tooltips follow at the next tick.
  virtual void MarkToolRectsDirty() = 0;
  // A number that stands for the tooltip, 0 on failure.
  virtual std::uint32_t AddTool(CViewImpl& view, const TString& text) = 0;
  virtual void UpdateToolText(std::uint32_t tool, CViewImpl& view, const TString& text) = 0;
  virtual void RemoveTool(std::uint32_t tool, CViewImpl& view) = 0;

 protected:
  virtual ~IViewWindow() = default;
};

}  // namespace NSMorvane
