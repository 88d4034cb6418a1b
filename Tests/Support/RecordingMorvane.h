// A root object with the real contract layer and hooks that only record, or do what a test wants of them.
#pragma once

#include <memory>

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
    Names()[&fIcon] = "icon";
    Names()[&fData] = "data";
    Names()[&fShape] = "shape";
    fMonitors.fMonitorCount = 1;
  }

  // What the hooks give.
  TDebugSettings fSettings{1, 0, 0, 0, 0, 0, 0};
  TMonitorList fMonitors{};
  TModifierKeys fMods{4, 0};
  bool fFlag = true;
  std::uint16_t fIndex = 1;
  std::vector<IWindow*> fWindows{&Dummy<IWindow>("window"), &Dummy<IWindow>("window")};
  FakeIcon fIcon;
  FakeData fData;
  FakeMouseShape fShape;

 protected:
  // The contract layer gives the bare pointer on.
  template <class TInterface>
  std::unique_ptr<TInterface> GiveOwn(TInterface& object) {
    return std::unique_ptr<TInterface>(fGivesNull ? nullptr : &object);
  }

  // clang-format off
  bool CMorvaneGlue_CheckInvariant() const override { return fSound; }
  void CMorvaneGlue_SetDebugSettings(const TDebugSettings& s) override { Enter("SetDebugSettings", s); }
  TDebugSettings CMorvaneGlue_GetDebugSettings() override { Enter("GetDebugSettings"); return fSettings; }
  void CMorvaneGlue_Run(IMorvaneRunBehavior* b, const TStartupParams& p) override { Enter("Run", b, p); }
  IMorvaneRunBehavior* CMorvaneGlue_GetBehavior() override {
    Enter("GetBehavior"); return Give<IMorvaneRunBehavior>("behavior");
  }
  IMorvaneRunBehavior* CMorvaneGlue_GetBehavior() const override {
    Enter("GetBehavior const"); return Give<IMorvaneRunBehavior>("behavior");
  }
  void CMorvaneGlue_StartQuitting() override { Enter("StartQuitting"); }
  void CMorvaneGlue_StopQuitting() override { Enter("StopQuitting"); }
  bool CMorvaneGlue_IsQuitting() override { Enter("IsQuitting"); return fFlag; }
  TMonitorList CMorvaneGlue_GetMonitors() override { Enter("GetMonitors"); return fMonitors; }
  bool CMorvaneGlue_IsFormatOnClipboard(const TClipboardFormat& f) override {
    Enter("IsFormatOnClipboard", f); return fFlag;
  }
  std::unique_ptr<IData> CMorvaneGlue_GetClipboardData(const TClipboardFormat& f) override {
    Enter("GetClipboardData", f); return GiveOwn<IData>(fData);
  }
  void CMorvaneGlue_ReplaceClipboardContents(const std::vector<TClipboardFormat>& formats,
                                             IClipboardDataGetter* getter) override {
    Enter("ReplaceClipboardContents", formats, getter);
  }
  TString CMorvaneGlue_GetResourceString(const std::string& key) override {
    Enter("GetResourceString", key); return u"text";
  }
  std::uint64_t CMorvaneGlue_GetCurrentMS() override { Enter("GetCurrentMS"); return 77; }
  std::uint64_t CMorvaneGlue_ConvertMSToPrecisionTicks(std::uint64_t ms) override {
    Enter("ConvertMSToPrecisionTicks", ms); return 10 * ms;
  }
  std::unique_ptr<IIcon> CMorvaneGlue_CreateBuiltInIcon(TBuiltinIcon icon) override {
    Enter("CreateBuiltInIcon", icon); return GiveOwn<IIcon>(fIcon);
  }
  std::unique_ptr<IIcon> CMorvaneGlue_CreateIconForURL(const std::string& url) override {
    Enter("CreateIconForURL", url); return GiveOwn<IIcon>(fIcon);
  }
  std::unique_ptr<IIcon> CMorvaneGlue_CreateResourceIcon(const std::string& key) override {
    Enter("CreateResourceIcon", key); return GiveOwn<IIcon>(fIcon);
  }
  std::unique_ptr<IIcon> CMorvaneGlue_CreatePixmapIcon(const void* pixels) override {
    Enter("CreatePixmapIcon", pixels); return GiveOwn<IIcon>(fIcon);
  }
  TMouseState CMorvaneGlue_SampleMouseState(IWindow* window) override {
    Enter("SampleMouseState", window); return {};
  }
  void CMorvaneGlue_SetOverrideMouseShape(IMouseShape* s) override { Enter("SetOverrideMouseShape", s); }
  void CMorvaneGlue_RequestMouseShapeArbitration() override { Enter("RequestMouseShapeArbitration"); }
  void CMorvaneGlue_AllocateMouseCapture(IWindow* window, IMouseCapture* capture) override {
    Enter("AllocateMouseCapture", window, capture);
  }
  void CMorvaneGlue_ReleaseMouseCapture() override { Enter("ReleaseMouseCapture"); }
  TClickDragResult CMorvaneGlue_CheckForClickDragOperation(IWindow& window, const TMouseEvent& event) override {
    Enter("CheckForClickDragOperation", window, event); return kClickDragHeld;
  }
  void CMorvaneGlue_AttachModifierKeyListener(IModifierKeyListener* listener) override {
    Enter("AttachModifierKeyListener", listener);
  }
  void CMorvaneGlue_DetachModifierKeyListener(IModifierKeyListener* listener) override {
    Enter("DetachModifierKeyListener", listener);
  }
  void CMorvaneGlue_InstallKeyReleaseCallback(std::uint32_t key, IKeyReleaseCallback* callback) override {
    Enter("InstallKeyReleaseCallback", key, callback);
  }
  void CMorvaneGlue_RemoveKeyReleaseCallback(std::uint32_t key, IKeyReleaseCallback* callback) override {
    Enter("RemoveKeyReleaseCallback", key, callback);
  }
  std::unique_ptr<IMouseShape> CMorvaneGlue_LoadResourceMouseShape(const std::string& key) override {
    Enter("LoadResourceMouseShape", key); return GiveOwn<IMouseShape>(fShape);
  }
  std::unique_ptr<IMouseShape> CMorvaneGlue_CreateBuiltInMouseShape(TBuiltInMouseShape shape) override {
    Enter("CreateBuiltInMouseShape", shape); return GiveOwn<IMouseShape>(fShape);
  }
  void CMorvaneGlue_Yield() override { Enter("Yield"); }
  void CMorvaneGlue_WakeUpIdle() override { Enter("WakeUpIdle"); }
  TModifierKeys CMorvaneGlue_ShortcutModsToModifiers(TShortcutModifiers mods) override {
    Enter("ShortcutModsToModifiers", mods); return fMods;
  }
  bool CMorvaneGlue_CanKeyBeInterpretedAs(const TPhysicalKeySpec& key, const TModifierKeys& mods,
                                          const TKeyInterpretation& wanted) override {
    Enter("CanKeyBeInterpretedAs", key, mods, wanted); return fFlag;
  }
  TKeyInterpretation CMorvaneGlue_GetDefaultInterpretation(const TPhysicalKeySpec& key,
                                                           const TModifierKeys& mods) override {
    Enter("GetDefaultInterpretation", key, mods); return {};
  }
  void CMorvaneGlue_RequestMenuBarsSetup() override { Enter("RequestMenuBarsSetup"); }
  bool CMorvaneGlue_DisplayPopupMenu(const std::vector<TMenuItem>& items, IWindow& window, const TPoint& point,
                                     std::uint32_t flags, std::int16_t& inOutIndex) override {
    Enter("DisplayPopupMenu", items, window, point, flags, inOutIndex);
    inOutIndex = fIndex; return fFlag;
  }
  bool CMorvaneGlue_DisplayContextualMenu(const std::vector<TMenuItem>& items, IWindow& window,
                                          const TPoint& point, std::uint32_t flags,
                                          std::uint16_t& outIndex) override {
    Enter("DisplayContextualMenu", items, window, point, flags);
    outIndex = fIndex; return fFlag;
  }
  IDocumentWindow* CMorvaneGlue_CreateDocumentWindow(IDocumentWindowBehaviorFactory& factory, TStyleFlags style,
                                                     bool listed) override {
    Enter("CreateDocumentWindow", factory, style, listed); return Give<IDocumentWindow>("document");
  }
  std::vector<IWindow*> CMorvaneGlue_GetDocumentWindowsZ() override {
    Enter("GetDocumentWindowsZ"); return fWindows;
  }
  IModelessDialog* CMorvaneGlue_CreateModelessDialog(IModelessDialogBehaviorFactory& factory, TStyleFlags style,
                                                     bool listed) override {
    Enter("CreateModelessDialog", factory, style, listed); return Give<IModelessDialog>("modeless");
  }
  std::vector<IWindow*> CMorvaneGlue_GetModelessDialogsZ() override {
    Enter("GetModelessDialogsZ"); return fWindows;
  }
  IModalDialog* CMorvaneGlue_CreateModalDialog(IModalDialogBehaviorFactory& factory, IModalOwner* owner,
                                               bool blocking, TStyleFlags style) override {
    Enter("CreateModalDialog", factory, owner, blocking, style); return Give<IModalDialog>("modal");
  }
  std::vector<IWindow*> CMorvaneGlue_GetModalDialogsZ() override { Enter("GetModalDialogsZ"); return fWindows; }
  IFloatingWindow* CMorvaneGlue_CreateFloatingWindow(IFloatingWindowBehaviorFactory& factory,
                                                     TStyleFlags style) override {
    Enter("CreateFloatingWindow", factory, style); return Give<IFloatingWindow>("floating");
  }
  std::vector<IWindow*> CMorvaneGlue_GetFloatingWindowsZ() override {
    Enter("GetFloatingWindowsZ"); return fWindows;
  }
  void CMorvaneGlue_CreateAlertBox(IModalOwner* owner, bool blocking, const TAlertSpec& spec,
                                   IAlertBoxListener* listener) override {
    Enter("CreateAlertBox", owner, blocking, TString(spec.fMessage), listener);
  }
  IView* CMorvaneGlue_CreateView(IViewBehaviorFactory& factory, IView& superView,
                                 const std::string& name) override {
    Enter("CreateView", factory, superView, name); return Give<IView>("view");
  }
  void CMorvaneGlue_InvalidateView(IView& view, const TRect& rect) override {
    Enter("InvalidateView", view, rect);
  }
  void CMorvaneGlue_CreateSaveAsDialog(ISaveAsDialogBehavior* behavior, std::uint32_t context,
                                       IModalOwner* owner, bool blocking, const TString& fileName,
                                       const std::vector<TFileType>& types, const TString& prompt) override {
    Enter("CreateSaveAsDialog", behavior, context, owner, blocking, fileName, types, prompt);
  }
  void CMorvaneGlue_CreateOpenDialog(IOpenDialogBehavior* behavior, std::uint32_t context, IModalOwner* owner,
                                     bool blocking, bool multiple, const std::vector<TFileType>& types,
                                     const TString& prompt, IOpenDialogCustomizeBehavior* custom) override {
    Enter("CreateOpenDialog", behavior, context, owner, blocking, multiple, types, prompt, custom);
  }
  void CMorvaneGlue_CreateDirectoryChooserDialog(IDirectoryChooserBehavior* behavior, std::uint32_t context,
                                                 IModalOwner* owner, bool blocking,
                                                 const TString& prompt) override {
    Enter("CreateDirectoryChooserDialog", behavior, context, owner, blocking, prompt);
  }
  void CMorvaneGlue_CreateSaveChangesDialog(ISaveChangesBehavior* behavior, IModalOwner* owner, bool blocking,
                                            const TString& document, TCloseReason reason) override {
    Enter("CreateSaveChangesDialog", behavior, owner, blocking, document, reason);
  }
  void CMorvaneGlue_DrawView(IView& view, IDrawTools& tools) override { Enter("DrawView", view, tools); }
  void CMorvaneGlue_PostAppMessage(std::uint32_t a, std::uint32_t b) override { Enter("PostAppMessage", a, b); }
  void* CMorvaneGlue_GetMacExtensions() override { Enter("GetMacExtensions"); return Give<IMorvane>("mac"); }
  IWinExtensions* CMorvaneGlue_GetWinExtensions() override {
    Enter("GetWinExtensions"); return Give<IWinExtensions>("win");
  }
  // clang-format on
};

}  // namespace NSMorvaneTest
