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
#define HOOK(name) CMorvaneGlue_##name
  bool HOOK(CheckInvariant)() const override { return fSound; }
  void HOOK(SetDebugSettings)(const TDebugSettings& s) override { Enter("SetDebugSettings", s); }
  TDebugSettings HOOK(GetDebugSettings)() override { Enter("GetDebugSettings"); return fSettings; }
  void HOOK(Run)(IMorvaneRunBehavior* b, const TStartupParams& p) override { Enter("Run", b, p); }
  IMorvaneRunBehavior* HOOK(GetBehavior)() override {
    Enter("GetBehavior"); return Give<IMorvaneRunBehavior>("behavior"); }
  IMorvaneRunBehavior* HOOK(GetBehavior)() const override {
    Enter("GetBehavior const"); return Give<IMorvaneRunBehavior>("behavior"); }
  void HOOK(StartQuitting)() override { Enter("StartQuitting"); }
  void HOOK(StopQuitting)() override { Enter("StopQuitting"); }
  bool HOOK(IsQuitting)() override { Enter("IsQuitting"); return fFlag; }
  TMonitorList HOOK(GetMonitors)() override { Enter("GetMonitors"); return fMonitors; }
  bool HOOK(IsFormatOnClipboard)(const TClipboardFormat& f) override {
    Enter("IsFormatOnClipboard", f); return fFlag; }
  std::unique_ptr<IData> HOOK(GetClipboardData)(const TClipboardFormat& f) override {
    Enter("GetClipboardData", f); return GiveOwn<IData>(fData); }
  void HOOK(ReplaceClipboardContents)(const std::vector<TClipboardFormat>& formats,
      IClipboardDataGetter* getter) override { Enter("ReplaceClipboardContents", formats, getter); }
  TString HOOK(GetResourceString)(const std::string& key) override {
    Enter("GetResourceString", key); return u"text"; }
  std::uint64_t HOOK(GetCurrentMS)() override { Enter("GetCurrentMS"); return 77; }
  std::uint64_t HOOK(ConvertMSToPrecisionTicks)(std::uint64_t ms) override {
    Enter("ConvertMSToPrecisionTicks", ms); return 10 * ms; }
  std::unique_ptr<IIcon> HOOK(CreateBuiltInIcon)(TBuiltinIcon icon) override {
    Enter("CreateBuiltInIcon", icon); return GiveOwn<IIcon>(fIcon); }
  std::unique_ptr<IIcon> HOOK(CreateIconForURL)(const std::string& url) override {
    Enter("CreateIconForURL", url); return GiveOwn<IIcon>(fIcon); }
  std::unique_ptr<IIcon> HOOK(CreateResourceIcon)(const std::string& key) override {
    Enter("CreateResourceIcon", key); return GiveOwn<IIcon>(fIcon); }
  std::unique_ptr<IIcon> HOOK(CreatePixmapIcon)(const void* pixels) override {
    Enter("CreatePixmapIcon", pixels); return GiveOwn<IIcon>(fIcon); }
  TMouseState HOOK(SampleMouseState)(IWindow* window) override {
    Enter("SampleMouseState", window); return {}; }
  void HOOK(SetOverrideMouseShape)(IMouseShape* s) override { Enter("SetOverrideMouseShape", s); }
  void HOOK(RequestMouseShapeArbitration)() override { Enter("RequestMouseShapeArbitration"); }
  void HOOK(AllocateMouseCapture)(IWindow* window, IMouseCapture* capture) override {
    Enter("AllocateMouseCapture", window, capture); }
  void HOOK(ReleaseMouseCapture)() override { Enter("ReleaseMouseCapture"); }
  TClickDragResult HOOK(CheckForClickDragOperation)(IWindow& window, const TMouseEvent& event) override {
    Enter("CheckForClickDragOperation", window, event); return kClickDragHeld; }
  void HOOK(AttachModifierKeyListener)(IModifierKeyListener* listener) override {
    Enter("AttachModifierKeyListener", listener); }
  void HOOK(DetachModifierKeyListener)(IModifierKeyListener* listener) override {
    Enter("DetachModifierKeyListener", listener); }
  void HOOK(InstallKeyReleaseCallback)(std::uint32_t key, IKeyReleaseCallback* callback) override {
    Enter("InstallKeyReleaseCallback", key, callback); }
  void HOOK(RemoveKeyReleaseCallback)(std::uint32_t key, IKeyReleaseCallback* callback) override {
    Enter("RemoveKeyReleaseCallback", key, callback); }
  std::unique_ptr<IMouseShape> HOOK(LoadResourceMouseShape)(const std::string& key) override {
    Enter("LoadResourceMouseShape", key); return GiveOwn<IMouseShape>(fShape); }
  std::unique_ptr<IMouseShape> HOOK(CreateBuiltInMouseShape)(TBuiltInMouseShape shape) override {
    Enter("CreateBuiltInMouseShape", shape); return GiveOwn<IMouseShape>(fShape); }
  void HOOK(Yield)() override { Enter("Yield"); }
  void HOOK(WakeUpIdle)() override { Enter("WakeUpIdle"); }
  TModifierKeys HOOK(ShortcutModsToModifiers)(TShortcutModifiers mods) override {
    Enter("ShortcutModsToModifiers", mods); return fMods; }
  bool HOOK(CanKeyBeInterpretedAs)(const TPhysicalKeySpec& key, const TModifierKeys& mods,
      const TKeyInterpretation& wanted) override {
    Enter("CanKeyBeInterpretedAs", key, mods, wanted); return fFlag; }
  TKeyInterpretation HOOK(GetDefaultInterpretation)(const TPhysicalKeySpec& key,
      const TModifierKeys& mods) override { Enter("GetDefaultInterpretation", key, mods); return {}; }
  void HOOK(RequestMenuBarsSetup)() override { Enter("RequestMenuBarsSetup"); }
  bool HOOK(DisplayPopupMenu)(const std::vector<TMenuItem>& items, IWindow& window, const TPoint& point,
      std::uint32_t flags, std::int16_t& inOutIndex) override {
    Enter("DisplayPopupMenu", items, window, point, flags, inOutIndex); inOutIndex = fIndex; return fFlag; }
  bool HOOK(DisplayContextualMenu)(const std::vector<TMenuItem>& items, IWindow& window,
      const TPoint& point, std::uint32_t flags, std::uint16_t& outIndex) override {
    Enter("DisplayContextualMenu", items, window, point, flags); outIndex = fIndex; return fFlag; }
  IDocumentWindow* HOOK(CreateDocumentWindow)(IDocumentWindowBehaviorFactory& factory, TStyleFlags style,
      bool listed) override {
    Enter("CreateDocumentWindow", factory, style, listed); return Give<IDocumentWindow>("document"); }
  std::vector<IWindow*> HOOK(GetDocumentWindowsZ)() override {
    Enter("GetDocumentWindowsZ"); return fWindows; }
  IModelessDialog* HOOK(CreateModelessDialog)(IModelessDialogBehaviorFactory& factory, TStyleFlags style,
      bool listed) override {
    Enter("CreateModelessDialog", factory, style, listed); return Give<IModelessDialog>("modeless"); }
  std::vector<IWindow*> HOOK(GetModelessDialogsZ)() override {
    Enter("GetModelessDialogsZ"); return fWindows; }
  IModalDialog* HOOK(CreateModalDialog)(IModalDialogBehaviorFactory& factory, IModalOwner* owner,
      bool blocking, TStyleFlags style) override {
    Enter("CreateModalDialog", factory, owner, blocking, style); return Give<IModalDialog>("modal"); }
  std::vector<IWindow*> HOOK(GetModalDialogsZ)() override { Enter("GetModalDialogsZ"); return fWindows; }
  IFloatingWindow* HOOK(CreateFloatingWindow)(IFloatingWindowBehaviorFactory& factory,
      TStyleFlags style) override {
    Enter("CreateFloatingWindow", factory, style); return Give<IFloatingWindow>("floating"); }
  std::vector<IWindow*> HOOK(GetFloatingWindowsZ)() override {
    Enter("GetFloatingWindowsZ"); return fWindows; }
  void HOOK(CreateAlertBox)(IModalOwner* owner, bool blocking, const TAlertSpec& spec,
      IAlertBoxListener* listener) override {
    Enter("CreateAlertBox", owner, blocking, TString(spec.fMessage), listener); }
  IView* HOOK(CreateView)(IViewBehaviorFactory& factory, IView& superView, const std::string& name) override {
    Enter("CreateView", factory, superView, name); return Give<IView>("view"); }
  void HOOK(InvalidateView)(IView& view, const TRect& rect) override { Enter("InvalidateView", view, rect); }
  void HOOK(CreateSaveAsDialog)(ISaveAsDialogBehavior* behavior, std::uint32_t context, IModalOwner* owner,
      bool blocking, const TString& fileName, const std::vector<TFileType>& types, const TString& prompt) override {
    Enter("CreateSaveAsDialog", behavior, context, owner, blocking, fileName, types, prompt); }
  void HOOK(CreateOpenDialog)(IOpenDialogBehavior* behavior, std::uint32_t context, IModalOwner* owner,
      bool blocking, bool multiple, const std::vector<TFileType>& types, const TString& prompt, IOpenDialogCustomizeBehavior* custom) override {
    Enter("CreateOpenDialog", behavior, context, owner, blocking, multiple, types, prompt, custom); }
  void HOOK(CreateDirectoryChooserDialog)(IDirectoryChooserBehavior* behavior, std::uint32_t context,
      IModalOwner* owner, bool blocking, const TString& prompt) override {
    Enter("CreateDirectoryChooserDialog", behavior, context, owner, blocking, prompt); }
  void HOOK(CreateSaveChangesDialog)(ISaveChangesBehavior* behavior, IModalOwner* owner, bool blocking,
      const TString& document, TCloseReason reason) override {
    Enter("CreateSaveChangesDialog", behavior, owner, blocking, document, reason); }
  void HOOK(DrawView)(IView& view, IDrawTools& tools) override { Enter("DrawView", view, tools); }
  void HOOK(PostAppMessage)(std::uint32_t a, std::uint32_t b) override { Enter("PostAppMessage", a, b); }
  void* HOOK(GetMacExtensions)() override { Enter("GetMacExtensions"); return Give<IMorvane>("mac"); }
  IWinExtensions* HOOK(GetWinExtensions)() override {
    Enter("GetWinExtensions"); return Give<IWinExtensions>("win"); }
#undef HOOK
  // clang-format on
};

}  // namespace NSMorvaneTest
