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
  HOOK(void, CMorvaneGlue_SetDebugSettings, (const TDebugSettings& a), (a))
  HOOK(TDebugSettings, CMorvaneGlue_GetDebugSettings, (), (), fSettings)
  HOOK(void, CMorvaneGlue_Run, (IMorvaneRunBehavior* a, const TStartupParams& b), (a, b))
  HOOK(IMorvaneRunBehavior*, CMorvaneGlue_GetBehavior, (), (), Give<IMorvaneRunBehavior>("behavior"))
  IMorvaneRunBehavior* CMorvaneGlue_GetBehavior() const override {
    Enter("GetBehavior const");
    return Give<IMorvaneRunBehavior>("behavior");
  }
  HOOK(void, CMorvaneGlue_StartQuitting, (), ())
  HOOK(void, CMorvaneGlue_StopQuitting, (), ())
  HOOK(bool, CMorvaneGlue_IsQuitting, (), (), fFlag)
  HOOK(TMonitorList, CMorvaneGlue_GetMonitors, (), (), fMonitors)
  HOOK(bool, CMorvaneGlue_IsFormatOnClipboard, (const TClipboardFormat& a), (a), fFlag)
  HOOK(std::unique_ptr<IData>, CMorvaneGlue_GetClipboardData,
       (const TClipboardFormat& a), (a), GiveOwn<IData>(fData))
  HOOK(void, CMorvaneGlue_ReplaceClipboardContents,
       (const std::vector<TClipboardFormat>& a, IClipboardDataGetter* b), (a, b))
  HOOK(TString, CMorvaneGlue_GetResourceString, (const std::string& a), (a), u"text")
  HOOK(std::uint64_t, CMorvaneGlue_GetCurrentMS, (), (), 77)
  HOOK(std::uint64_t, CMorvaneGlue_ConvertMSToPrecisionTicks, (std::uint64_t a), (a), 10 * a)
  HOOK(std::unique_ptr<IIcon>, CMorvaneGlue_CreateBuiltInIcon, (TBuiltinIcon a), (a), GiveOwn<IIcon>(fIcon))
  HOOK(std::unique_ptr<IIcon>, CMorvaneGlue_CreateIconForURL,
       (const std::string& a), (a), GiveOwn<IIcon>(fIcon))
  HOOK(std::unique_ptr<IIcon>, CMorvaneGlue_CreateResourceIcon,
       (const std::string& a), (a), GiveOwn<IIcon>(fIcon))
  HOOK(std::unique_ptr<IIcon>, CMorvaneGlue_CreatePixmapIcon, (const void* a), (a), GiveOwn<IIcon>(fIcon))
  HOOK(TMouseState, CMorvaneGlue_SampleMouseState, (IWindow* a), (a), {})
  HOOK(void, CMorvaneGlue_SetOverrideMouseShape, (IMouseShape* a), (a))
  HOOK(void, CMorvaneGlue_RequestMouseShapeArbitration, (), ())
  HOOK(void, CMorvaneGlue_AllocateMouseCapture, (IWindow* a, IMouseCapture* b), (a, b))
  HOOK(void, CMorvaneGlue_ReleaseMouseCapture, (), ())
  HOOK(TClickDragResult, CMorvaneGlue_CheckForClickDragOperation,
       (IWindow& a, const TMouseEvent& b), (a, b), kClickDragHeld)
  HOOK(void, CMorvaneGlue_AttachModifierKeyListener, (IModifierKeyListener* a), (a))
  HOOK(void, CMorvaneGlue_DetachModifierKeyListener, (IModifierKeyListener* a), (a))
  HOOK(void, CMorvaneGlue_InstallKeyReleaseCallback, (std::uint32_t a, IKeyReleaseCallback* b), (a, b))
  HOOK(void, CMorvaneGlue_RemoveKeyReleaseCallback, (std::uint32_t a, IKeyReleaseCallback* b), (a, b))
  HOOK(std::unique_ptr<IMouseShape>, CMorvaneGlue_LoadResourceMouseShape,
       (const std::string& a), (a), GiveOwn<IMouseShape>(fShape))
  HOOK(std::unique_ptr<IMouseShape>, CMorvaneGlue_CreateBuiltInMouseShape,
       (TBuiltInMouseShape a), (a), GiveOwn<IMouseShape>(fShape))
  HOOK(void, CMorvaneGlue_Yield, (), ())
  HOOK(void, CMorvaneGlue_WakeUpIdle, (), ())
  HOOK(TModifierKeys, CMorvaneGlue_ShortcutModsToModifiers, (TShortcutModifiers a), (a), fMods)
  HOOK(bool, CMorvaneGlue_CanKeyBeInterpretedAs,
       (const TPhysicalKeySpec& a, const TModifierKeys& b, const TKeyInterpretation& c), (a, b, c), fFlag)
  HOOK(TKeyInterpretation, CMorvaneGlue_GetDefaultInterpretation,
       (const TPhysicalKeySpec& a, const TModifierKeys& b), (a, b), {})
  HOOK(void, CMorvaneGlue_RequestMenuBarsSetup, (), ())
  bool CMorvaneGlue_DisplayPopupMenu(const std::vector<TMenuItem>& items, IWindow& window,
                                     const TPoint& point,
                                     std::uint32_t flags, std::int16_t& inOutIndex) override {
    Enter("DisplayPopupMenu", items, window, point, flags, inOutIndex);
    inOutIndex = fIndex;
    return fFlag;
  }
  bool CMorvaneGlue_DisplayContextualMenu(const std::vector<TMenuItem>& items, IWindow& window,
                                          const TPoint& point, std::uint32_t flags,
                                          std::uint16_t& outIndex) override {
    Enter("DisplayContextualMenu", items, window, point, flags);
    outIndex = fIndex;
    return fFlag;
  }
  HOOK(IDocumentWindow*, CMorvaneGlue_CreateDocumentWindow,
       (IDocumentWindowBehaviorFactory& a, TStyleFlags b, bool c), (a, b, c),
        Give<IDocumentWindow>("document"))
  HOOK(std::vector<IWindow*>, CMorvaneGlue_GetDocumentWindowsZ, (), (), fWindows)
  HOOK(IModelessDialog*, CMorvaneGlue_CreateModelessDialog,
       (IModelessDialogBehaviorFactory& a, TStyleFlags b, bool c), (a, b, c),
        Give<IModelessDialog>("modeless"))
  HOOK(std::vector<IWindow*>, CMorvaneGlue_GetModelessDialogsZ, (), (), fWindows)
  HOOK(IModalDialog*, CMorvaneGlue_CreateModalDialog,
       (IModalDialogBehaviorFactory& a, IModalOwner* b, bool c, TStyleFlags d), (a, b, c, d),
        Give<IModalDialog>("modal"))
  HOOK(std::vector<IWindow*>, CMorvaneGlue_GetModalDialogsZ, (), (), fWindows)
  HOOK(IFloatingWindow*, CMorvaneGlue_CreateFloatingWindow,
       (IFloatingWindowBehaviorFactory& a, TStyleFlags b), (a, b), Give<IFloatingWindow>("floating"))
  HOOK(std::vector<IWindow*>, CMorvaneGlue_GetFloatingWindowsZ, (), (), fWindows)
  HOOK(void, CMorvaneGlue_CreateAlertBox,
       (IModalOwner* a, bool b, const TAlertSpec& c, IAlertBoxListener* d), (a, b, c, d))
  HOOK(IView*, CMorvaneGlue_CreateView,
       (IViewBehaviorFactory& a, IView& b, const std::string& c), (a, b, c), Give<IView>("view"))
  HOOK(void, CMorvaneGlue_InvalidateView, (IView& a, const TRect& b), (a, b))
  HOOK(void, CMorvaneGlue_CreateSaveAsDialog,
       (ISaveAsDialogBehavior* behavior, std::uint32_t context, IModalOwner* owner, bool blocking,
        const TString& fileName, const std::vector<TFileType>& types, const TString& prompt),
       (behavior, context, owner, blocking, fileName, types, prompt))
  HOOK(void, CMorvaneGlue_CreateOpenDialog,
       (IOpenDialogBehavior* behavior, std::uint32_t context, IModalOwner* owner, bool blocking,
        bool multiple, const std::vector<TFileType>& types, const TString& prompt,
        IOpenDialogCustomizeBehavior* custom),
       (behavior, context, owner, blocking, multiple, types, prompt, custom))
  HOOK(void, CMorvaneGlue_CreateDirectoryChooserDialog,
       (IDirectoryChooserBehavior* behavior, std::uint32_t context, IModalOwner* owner, bool blocking,
        const TString& prompt),
       (behavior, context, owner, blocking, prompt))
  HOOK(void, CMorvaneGlue_CreateSaveChangesDialog,
       (ISaveChangesBehavior* behavior, IModalOwner* owner, bool blocking, const TString& document,
        TCloseReason reason),
       (behavior, owner, blocking, document, reason))
  HOOK(void, CMorvaneGlue_DrawView, (IView& a, IDrawTools& b), (a, b))
  HOOK(void, CMorvaneGlue_PostAppMessage, (std::uint32_t a, std::uint32_t b), (a, b))
  HOOK(void*, CMorvaneGlue_GetMacExtensions, (), (), Give<IMorvane>("mac"))
  HOOK(IWinExtensions*, CMorvaneGlue_GetWinExtensions, (), (), Give<IWinExtensions>("win"))
  // clang-format on
};

}  // namespace NSMorvaneTest
