// The contract of the root interface: what a bad call gives, what a failing hook gives, what is poisoned.
#include <gtest/gtest.h>

#include <cstring>

#include "Tests/Support/RecordingDebugOutput.h"
#include "Tests/Support/RecordingMorvane.h"

using namespace NSMorvane;
using NSMorvaneTest::RecordingDebugOutput;
using NSMorvaneTest::RecordingMorvane;

namespace {

// An object that is only passed on, never called.
template <class TInterface>
TInterface& Dummy() {
  alignas(16) static char storage[64];
  return *reinterpret_cast<TInterface*>(storage);
}

struct WindowReceiver : IWindowListReceiver {
  TError IWindowListReceiver_ReceiveWindows(IWindow* const* windows, std::uint32_t count) override {
    ++fCalls;
    fWindows.assign(windows, windows + count);
    return 100999;  // not looked at
  }
  int fCalls = 0;
  std::vector<IWindow*> fWindows;
};

struct TextReceiver : ITextReceiver {
  TError ITextReceiver_ReceiveText(const TChar* text) override {
    fText = text;
    return fResult;
  }
  TString fText;
  TError fResult = kOK;
};

// Everything that a member can write to.
struct Outs {
  TDebugSettings fSettings;
  TMonitorList fMonitors;
  TFlag fFlag;
  std::uint64_t fNumber;
  TMouseState fMouse;
  TClickDragResult fClickDrag;
  TModifierKeys fMods;
  TKeyInterpretation fInterpretation;
  std::int16_t fPopupIndex;
  std::uint16_t fContextualIndex;
  IMorvaneRunBehavior* fBehavior;
  void* fMac;
  IWinExtensions* fWin;
};

struct Call {
  Outs fOuts;
  WindowReceiver fWindows;
  TextReceiver fText;
  void* fResult = this;  // of members that return an object

  Call() { std::memset(static_cast<void*>(&fOuts), 0x5A, sizeof(fOuts)); }
  bool OutsAreUntouched() const {
    const char* const bytes = reinterpret_cast<const char*>(&fOuts);
    for (std::size_t i = 0; i < sizeof(fOuts); ++i)
      if (bytes[i] != 0x5A) return false;
    return fWindows.fCalls == 0 && fText.fText.empty();
  }
};

using TCall = std::function<TError(IMorvane&, Call&)>;

// For members that return an object.
template <class TFunction>
TCall Returning(TFunction function) {
  return [function](IMorvane& m, Call& call) {
    TError error = 4711;
    call.fResult = const_cast<void*>(static_cast<const void*>(function(m, error)));
    return error;
  };
}

TStartupParams GoodParams() {
  TStartupParams params{};
  params.fCompanyName[0] = params.fProductName[0] = params.fDisplayName[0] = u'a';
  return params;
}

TAlertSpec GoodAlert() {
  TAlertSpec spec{};
  spec.fButtonLayout = kAlertOneButton;
  spec.fKind = kAlertNote;
  std::memcpy(spec.fMessage, u"Message", sizeof(u"Message"));
  std::memcpy(spec.fDetails, u"Details", sizeof(u"Details"));
  spec.fButton1[0] = u'O';
  return spec;
}

TKeyInterpretation GoodInterpretation() {
  TKeyInterpretation interpretation{};
  interpretation.fKeyText[0] = u'a';
  return interpretation;
}

const TClipboardFormat kFormat = {{'u', 't', 'x', 't', 0}};
const TKeyInterpretation kInterpretation = GoodInterpretation();
const TPhysicalKeySpec kKey{};
const TModifierKeys kMods{};
const TMenuItem kItems[2]{};
const TFileType kTypes[1]{};
const TPoint kPoint{};

// Every operation, called well. The name is the one that its messages carry.
struct GoodRow {
  const char* fName;
  const char* fHook;
  TCall fCall;
};

const std::vector<GoodRow>& GoodCalls() {
#define E(name, hook, ...)                                                          \
  {                                                                                 \
    name, hook, [](IMorvane& m, [[maybe_unused]] Call& c) { return m.__VA_ARGS__; } \
  }
#define Q(name, hook, ...)                                                          \
  {                                                                                 \
    name, hook, Returning([](IMorvane& m, TError& error) { return m.__VA_ARGS__; }) \
  }
  static const std::vector<GoodRow> rows = {
      E("IMorvane_SetDebugSettings()", "SetDebugSettings", IMorvane_SetDebugSettings(TDebugSettings{})),
      E("IMorvane_GetDebugSettings()", "GetDebugSettings", IMorvane_GetDebugSettings(c.fOuts.fSettings)),
      E("IMorvane_Run()", "Run", IMorvane_Run(nullptr, GoodParams())),
      E("IMorvane_GetBehavior()", "GetBehavior", IMorvane_GetBehavior(c.fOuts.fBehavior)),
      E("IMorvane_StartQuitting()", "StartQuitting", IMorvane_StartQuitting()),
      E("IMorvane_StopQuitting()", "StopQuitting", IMorvane_StopQuitting()),
      E("IMorvane_IsQuitting()", "IsQuitting", IMorvane_IsQuitting(c.fOuts.fFlag)),
      E("IMorvane_GetMonitors()", "GetMonitors", IMorvane_GetMonitors(c.fOuts.fMonitors)),
      E("IMorvane_IsFormatOnClipboard()", "IsFormatOnClipboard",
        IMorvane_IsFormatOnClipboard(kFormat, c.fOuts.fFlag)),
      Q("IMorvane_GetClipboardData()", "GetClipboardData", IMorvane_GetClipboardData(kFormat, error)),
      E("IMorvane_ReplaceClipboardContents()", "ReplaceClipboardContents",
        IMorvane_ReplaceClipboardContents(nullptr, 0, nullptr)),
      E("IMorvane_GetResourceString()", "GetResourceString",
        IMorvane_GetResourceString("SSTR/1000/1", c.fText)),
      E("IMorvane_GetCurrentMS()", "GetCurrentMS", IMorvane_GetCurrentMS(c.fOuts.fNumber)),
      E("IMorvane_ConvertMSToPrecisionTicks()", "ConvertMSToPrecisionTicks",
        IMorvane_ConvertMSToPrecisionTicks(5, c.fOuts.fNumber)),
      Q("IMorvane_CreateBuiltInIcon()", "CreateBuiltInIcon",
        IMorvane_CreateBuiltInIcon(kIconDocument, error)),
      Q("IMorvane_CreateIconForURL()", "CreateIconForURL", IMorvane_CreateIconForURL("file://x", error)),
      Q("IMorvane_CreateBuiltInIcon()", "CreateResourceIcon", IMorvane_CreateResourceIcon("1", error)),
      Q("IMorvane_CreateBuiltInIcon()", "CreatePixmapIcon", IMorvane_CreatePixmapIcon("x", error)),
      E("IMorvane_SampleMouseState()", "SampleMouseState",
        IMorvane_SampleMouseState(c.fOuts.fMouse, nullptr)),
      E("IMorvane_SetOverrideMouseShape()", "SetOverrideMouseShape", IMorvane_SetOverrideMouseShape(nullptr)),
      E("IMorvane_RequestMouseShapeArbitration()", "RequestMouseShapeArbitration",
        IMorvane_RequestMouseShapeArbitration()),
      E("IMorvane_AllocateMouseCapture()", "AllocateMouseCapture",
        IMorvane_AllocateMouseCapture(&Dummy<IWindow>(), &Dummy<IMouseCapture>())),
      E("IMorvane_ReleaseMouseCapture()", "ReleaseMouseCapture", IMorvane_ReleaseMouseCapture()),
      E("IMorvane_CheckForClickDragOperation()", "CheckForClickDragOperation",
        IMorvane_CheckForClickDragOperation(Dummy<IWindow>(), TMouseEvent{}, c.fOuts.fClickDrag)),
      E("IMorvane_LoadResourceMouseShape()", "AttachModifierKeyListener",
        IMorvane_AttachModifierKeyListener(&Dummy<IModifierKeyListener>())),
      E("IMorvane_DetachModifierKeyListener()", "DetachModifierKeyListener",
        IMorvane_DetachModifierKeyListener(nullptr)),
      E("IMorvane_InstallKeyReleaseCallback()", "InstallKeyReleaseCallback",
        IMorvane_InstallKeyReleaseCallback(65, nullptr)),
      E("IMorvane_RemoveKeyReleaseCallback()", "RemoveKeyReleaseCallback",
        IMorvane_RemoveKeyReleaseCallback(65, nullptr)),
      Q("IMorvane_LoadResourceMouseShape()", "LoadResourceMouseShape",
        IMorvane_LoadResourceMouseShape("1", error)),
      Q("IMorvane_CreateBuiltInMouseShape()", "CreateBuiltInMouseShape",
        IMorvane_CreateBuiltInMouseShape(kMouseShapeArrow, error)),
      E("IMorvane_Yield()", "Yield", IMorvane_Yield()),
      E("IMorvane_WakeUpIdle()", "WakeUpIdle", IMorvane_WakeUpIdle()),
      E("IMorvane_ShortcutModsToModifiers()", "ShortcutModsToModifiers",
        IMorvane_ShortcutModsToModifiers(kShortcutCommand, c.fOuts.fMods)),
      E("IMorvane_CanKeyBeInterpretedAs()", "CanKeyBeInterpretedAs",
        IMorvane_CanKeyBeInterpretedAs(kKey, kMods, kInterpretation, c.fOuts.fFlag)),
      E("IMorvane_GetDefaultInterpretation()", "GetDefaultInterpretation",
        IMorvane_GetDefaultInterpretation(kKey, kMods, c.fOuts.fInterpretation)),
      E("IMorvane_RequestMenuBarsSetup()", "RequestMenuBarsSetup", IMorvane_RequestMenuBarsSetup()),
      {"IMorvane_DisplayPopupMenu()", "DisplayPopupMenu",
       [](IMorvane& m, Call& c) {
         std::int16_t index = -1;
         return m.IMorvane_DisplayPopupMenu(kItems, 2, Dummy<IWindow>(), kPoint, 0, index, c.fOuts.fFlag);
       }},
      E("IMorvane_DisplayContextualMenu()", "DisplayContextualMenu",
        IMorvane_DisplayContextualMenu(kItems, 2, Dummy<IWindow>(), kPoint, 0, c.fOuts.fContextualIndex,
                                       c.fOuts.fFlag)),
      Q("IMorvane_CreateDocumentWindow()", "CreateDocumentWindow",
        IMorvane_CreateDocumentWindow(Dummy<IDocumentWindowBehaviorFactory>(), 0, 0, error)),
      E("IMorvane_GetDocumentWindowsZ()", "GetDocumentWindowsZ", IMorvane_GetDocumentWindowsZ(c.fWindows)),
      Q("IMorvane_CreateModelessDialog()", "CreateModelessDialog",
        IMorvane_CreateModelessDialog(Dummy<IModelessDialogBehaviorFactory>(), kModelessDialogBorderlessBit,
                                      0, error)),
      E("IMorvane_GetModelessDialogsZ()", "GetModelessDialogsZ", IMorvane_GetModelessDialogsZ(c.fWindows)),
      Q("IMorvane_CreateModalDialog()", "CreateModalDialog",
        IMorvane_CreateModalDialog(Dummy<IModalDialogBehaviorFactory>(), &Dummy<IModalOwner>(), 0, 0, error)),
      E("IMorvane_GetModalDialogsZ()", "GetModalDialogsZ", IMorvane_GetModalDialogsZ(c.fWindows)),
      Q("IMorvane_CreateFloatingWindow()", "CreateFloatingWindow",
        IMorvane_CreateFloatingWindow(Dummy<IFloatingWindowBehaviorFactory>(), 0, error)),
      E("IMorvane_GetFloatingWindowsZ()", "GetFloatingWindowsZ", IMorvane_GetFloatingWindowsZ(c.fWindows)),
      E("IMorvane_CreateAlertBox()", "CreateAlertBox",
        IMorvane_CreateAlertBox(nullptr, 1, GoodAlert(), nullptr)),
      Q("IMorvane_CreateView()", "CreateView",
        IMorvane_CreateView(Dummy<IViewBehaviorFactory>(), Dummy<IView>(), "name", error)),
      E("IMorvane_InvalidateView()", "InvalidateView", IMorvane_InvalidateView(Dummy<IView>(), TRect{})),
      E("IMorvane_CreateSaveAsDialog()", "CreateSaveAsDialog",
        IMorvane_CreateSaveAsDialog(nullptr, 0, nullptr, 1, u"", kTypes, 1, nullptr)),
      E("IMorvane_CreateOpenDialog()", "CreateOpenDialog",
        IMorvane_CreateOpenDialog(nullptr, 0, nullptr, 1, 0, kTypes, 1, u"", nullptr)),
      E("IMorvane_CreateDirectoryChooserDialog()", "CreateDirectoryChooserDialog",
        IMorvane_CreateDirectoryChooserDialog(nullptr, 0, nullptr, 1, u"")),
      E("IMorvane_CreateSaveChangesDialog()", "CreateSaveChangesDialog",
        IMorvane_CreateSaveChangesDialog(&Dummy<ISaveChangesBehavior>(), nullptr, 1, u"", kCloseByUser)),
      E("IMorvane_GetMacExtensions()", "GetMacExtensions", IMorvane_GetMacExtensions(c.fOuts.fMac)),
      E("IMorvane_GetWinExtensions()", "GetWinExtensions", IMorvane_GetWinExtensions(c.fOuts.fWin)),
  };
#undef E
#undef Q
  return rows;
}

// One bad argument each, and the whole text of the failed check.
struct BadRow {
  const char* fText;
  TCall fCall;
};

const std::vector<BadRow>& BadCalls() {
#define E(text, ...)                                                          \
  {                                                                           \
    text, [](IMorvane& m, [[maybe_unused]] Call& c) { return m.__VA_ARGS__; } \
  }
#define Q(text, ...)                                                          \
  {                                                                           \
    text, Returning([](IMorvane& m, TError& error) { return m.__VA_ARGS__; }) \
  }
  static std::int16_t indexTwo = 2;
  static std::int16_t indexMinusTwo = -2;
  static const std::vector<BadRow> rows = {
      E("Bad Input to IMorvane_SetDebugSettings(): ValidateDebugSettings(settings)",
        IMorvane_SetDebugSettings(TDebugSettings{0, 0, 0, 0, 0, 0, 2})),
      E("Bad Input to IMorvane_Run(): ValidateStartupParams(params)",
        IMorvane_Run(nullptr, TStartupParams{})),
      E("Bad Input to IMorvane_ReplaceClipboardContents(): (formatCount == 0) || (clipbardDataGetter != "
        "NULL)",
        IMorvane_ReplaceClipboardContents(&kFormat, 1, nullptr)),
      E("Bad Input to IMorvane_GetResourceString(): key != NULL",
        IMorvane_GetResourceString(nullptr, c.fText)),
      E("Bad Input to IMorvane_GetResourceString(): std::strlen(key) > 0",
        IMorvane_GetResourceString("", c.fText)),
      Q("Bad Input to IMorvane_CreateBuiltInIcon(): ValidateBuiltinIcon(icon)",
        IMorvane_CreateBuiltInIcon(static_cast<TBuiltinIcon>(3000), error)),
      Q("Bad Input to IMorvane_CreateIconForURL(): fileOrFolderOrVolumeURL[0] != 0",
        IMorvane_CreateIconForURL("", error)),
      Q("Bad Input to IMorvane_CreateIconForURL(): fileOrFolderOrVolumeURL[0] != 0",
        IMorvane_CreateIconForURL(nullptr, error)),
      Q("Bad Input to IMorvane_CreateBuiltInIcon(): std::strlen(key) > 0",
        IMorvane_CreateResourceIcon("", error)),
      Q("Bad Input to IMorvane_CreateBuiltInIcon(): std::strlen(key) > 0",
        IMorvane_CreateResourceIcon(nullptr, error)),
      Q("Bad Input to IMorvane_CreateBuiltInIcon(): pixmapRGBA != NULL",
        IMorvane_CreatePixmapIcon(nullptr, error)),
      E("Bad Input to IMorvane_AllocateMouseCapture(): window != NULL",
        IMorvane_AllocateMouseCapture(nullptr, &Dummy<IMouseCapture>())),
      E("Bad Input to IMorvane_AllocateMouseCapture(): capture != NULL",
        IMorvane_AllocateMouseCapture(&Dummy<IWindow>(), nullptr)),
      E("Bad Input to IMorvane_LoadResourceMouseShape(): listener != NULL",
        IMorvane_AttachModifierKeyListener(nullptr)),
      Q("Bad Input to IMorvane_LoadResourceMouseShape(): key != NULL",
        IMorvane_LoadResourceMouseShape(nullptr, error)),
      Q("Bad Input to IMorvane_LoadResourceMouseShape(): std::strlen(key) > 0",
        IMorvane_LoadResourceMouseShape("", error)),
      Q("Bad Input to IMorvane_CreateBuiltInMouseShape(): IsValidBuiltInMouseShape(mouseShape)",
        IMorvane_CreateBuiltInMouseShape(static_cast<TBuiltInMouseShape>(1600), error)),
      E("Bad Input to IMorvane_ShortcutModsToModifiers: ValidateShortcutModifiers(shortcutMods)",
        IMorvane_ShortcutModsToModifiers(static_cast<TShortcutModifiers>(4005), c.fOuts.fMods)),
      E("Bad Input to IMorvane_CanKeyBeInterpretedAs(): ValidateModifierKeys(physicalMods)",
        IMorvane_CanKeyBeInterpretedAs(kKey, TModifierKeys{1, 0}, kInterpretation, c.fOuts.fFlag)),
      E("Bad Input to IMorvane_CanKeyBeInterpretedAs(): ValidateKeyInterpretation(wantedInterpretation)",
        IMorvane_CanKeyBeInterpretedAs(kKey, kMods, TKeyInterpretation{}, c.fOuts.fFlag)),
      E("Bad Input to IMorvane_GetDefaultInterpretation(): ValidateModifierKeys(physicalMods)",
        IMorvane_GetDefaultInterpretation(kKey, TModifierKeys{32, 0}, c.fOuts.fInterpretation)),
      E("Bad Input to IMorvane_DisplayPopupMenu(): itemCount > 0",
        IMorvane_DisplayPopupMenu(kItems, 0, Dummy<IWindow>(), kPoint, 0, c.fOuts.fPopupIndex,
                                  c.fOuts.fFlag)),
      E("Bad Input to IMorvane_DisplayPopupMenu(): ((inOutSelectedIndex == -1) || "
        "(static_cast<std::uint32_t>(inOutSelectedIndex) < itemCount))",
        IMorvane_DisplayPopupMenu(kItems, 2, Dummy<IWindow>(), kPoint, 0, indexTwo, c.fOuts.fFlag)),
      E("Bad Input to IMorvane_DisplayPopupMenu(): ((inOutSelectedIndex == -1) || "
        "(static_cast<std::uint32_t>(inOutSelectedIndex) < itemCount))",
        IMorvane_DisplayPopupMenu(kItems, 2, Dummy<IWindow>(), kPoint, 0, indexMinusTwo, c.fOuts.fFlag)),
      E("Bad Input to IMorvane_DisplayContextualMenu(): itemCount > 0",
        IMorvane_DisplayContextualMenu(kItems, 0, Dummy<IWindow>(), kPoint, 0, c.fOuts.fContextualIndex,
                                       c.fOuts.fFlag)),
      Q("Bad Input to IMorvane_CreateDocumentWindow(): ValidateDocumentWindowStyleFlags(styleFlags)",
        IMorvane_CreateDocumentWindow(Dummy<IDocumentWindowBehaviorFactory>(), kWindowStyleBit24, 0, error)),
      Q("Bad Input to IMorvane_CreateDocumentWindow(): ValidateFlag(windowsMenuFlag)",
        IMorvane_CreateDocumentWindow(Dummy<IDocumentWindowBehaviorFactory>(), 0, 2, error)),
      Q("Bad Input to IMorvane_CreateModelessDialog(): ValidateModelessDialogStyleFlags(styleFlags)",
        IMorvane_CreateModelessDialog(Dummy<IModelessDialogBehaviorFactory>(), 0x02100000, 0, error)),
      Q("Bad Input to IMorvane_CreateModelessDialog(): ValidateFlag(windowsMenuFlag)",
        IMorvane_CreateModelessDialog(Dummy<IModelessDialogBehaviorFactory>(), 0, 2, error)),
      Q("Bad Input to IMorvane_CreateModelessDialog(): (styleFlags & kModelessDialogBorderlessBit) == 0",
        IMorvane_CreateModelessDialog(Dummy<IModelessDialogBehaviorFactory>(), kModelessDialogBorderlessBit,
                                      1, error)),
      Q("Bad Input to IMorvane_CreateModalDialog(): ValidateModalDialogStyleFlags(styleFlags)",
        IMorvane_CreateModalDialog(Dummy<IModalDialogBehaviorFactory>(), nullptr, 0, kWindowZoomableBit,
                                   error)),
      Q("Bad Input to IMorvane_CreateModalDialog(): ((owner == NULL) || (blockingAppModalDialogFlag == 0))",
        IMorvane_CreateModalDialog(Dummy<IModalDialogBehaviorFactory>(), &Dummy<IModalOwner>(), 1, 0, error)),
      Q("Bad Input to IMorvane_CreateFloatingWindow(): ValidateFloatingWindowStyleFlags(styleFlags)",
        IMorvane_CreateFloatingWindow(Dummy<IFloatingWindowBehaviorFactory>(), 0x02000000, error)),
      E("Bad Input to IMorvane_CreateAlertBox(): ValidateAlertSpec(alertSpec)",
        IMorvane_CreateAlertBox(nullptr, 0, TAlertSpec{}, nullptr)),
      E("Bad Input to IMorvane_CreateAlertBox(): ((modalOwner == NULL) || (blockingAppModalDialogFlag == 0))",
        IMorvane_CreateAlertBox(&Dummy<IModalOwner>(), 1, GoodAlert(), nullptr)),
      E("Bad Input to IMorvane_CreateSaveAsDialog(): ((modalOwner == NULL) || (blockingAppModalDialogFlag == "
        "0))",
        IMorvane_CreateSaveAsDialog(nullptr, 0, &Dummy<IModalOwner>(), 1, u"", kTypes, 1, nullptr)),
      E("Bad Input to IMorvane_CreateSaveAsDialog(): (NSTextPackage::CountChars(templateFileName)>=0)",
        IMorvane_CreateSaveAsDialog(nullptr, 0, nullptr, 1, nullptr, kTypes, 1, nullptr)),
      E("Bad Input to IMorvane_CreateSaveAsDialog(): ((blockingAppModalDialogFlag==0) || "
        "(blockingAppModalDialogFlag==1))",
        IMorvane_CreateSaveAsDialog(nullptr, 0, nullptr, 2, u"", kTypes, 1, nullptr)),
      E("Bad Input to IMorvane_CreateOpenDialog(): ((modalOwner == NULL) || (blockingAppModalDialogFlag == "
        "0))",
        IMorvane_CreateOpenDialog(nullptr, 0, &Dummy<IModalOwner>(), 1, 0, kTypes, 1, u"", nullptr)),
      E("Bad Input to IMorvane_CreateOpenDialog(): typeCount>0",
        IMorvane_CreateOpenDialog(nullptr, 0, nullptr, 1, 0, kTypes, 0, u"", nullptr)),
      E("Bad Input to IMorvane_CreateOpenDialog(): ((blockingAppModalDialogFlag==0) || "
        "(blockingAppModalDialogFlag==1))",
        IMorvane_CreateOpenDialog(nullptr, 0, nullptr, 2, 0, kTypes, 1, u"", nullptr)),
      E("Bad Input to IMorvane_CreateOpenDialog(): ((allowMultiSelectFlag==0) || (allowMultiSelectFlag==1))",
        IMorvane_CreateOpenDialog(nullptr, 0, nullptr, 1, 2, kTypes, 1, u"", nullptr)),
      E("Bad Input to IMorvane_CreateDirectoryChooserDialog(): ((modalOwner == NULL) || "
        "(blockingAppModalDialogFlag == 0))",
        IMorvane_CreateDirectoryChooserDialog(nullptr, 0, &Dummy<IModalOwner>(), 1, u"")),
      E("Bad Input to IMorvane_CreateDirectoryChooserDialog(): ((blockingAppModalDialogFlag==0) || "
        "(blockingAppModalDialogFlag==1))",
        IMorvane_CreateDirectoryChooserDialog(nullptr, 0, nullptr, 2, u"")),
      E("Bad Input to IMorvane_CreateSaveChangesDialog(): behavior != NULL",
        IMorvane_CreateSaveChangesDialog(nullptr, nullptr, 1, u"", kCloseByUser)),
      E("Bad Input to IMorvane_CreateSaveChangesDialog(): ((modalOwner == NULL) || "
        "(blockingAppModalDialogFlag == 0))",
        IMorvane_CreateSaveChangesDialog(&Dummy<ISaveChangesBehavior>(), &Dummy<IModalOwner>(), 1, u"",
                                         kCloseByUser)),
      E("Bad Input to IMorvane_CreateSaveChangesDialog(): ValidateCloseReason(reason)",
        IMorvane_CreateSaveChangesDialog(&Dummy<ISaveChangesBehavior>(), nullptr, 1, u"",
                                         static_cast<TCloseReason>(2))),
  };
#undef E
#undef Q
  return rows;
}

}  // namespace

TEST(ContractRoot, BadArgumentsReachNoHook) {
  RecordingDebugOutput output;
  RecordingMorvane morvane;
  for (const BadRow& row : BadCalls()) {
    SCOPED_TRACE(row.fText);
    output.Reset();
    Call call;
    EXPECT_EQ(kBadInputProgrammingError, row.fCall(morvane, call));
    ASSERT_FALSE(output.fAssertions.empty());
    EXPECT_EQ(row.fText, output.fAssertions.back());
    EXPECT_EQ(0u, output.fAssertFiles.back().find("Component/Portable/MorvaneGlue"));
    EXPECT_TRUE(morvane.fHooks.empty());
    EXPECT_TRUE(call.OutsAreUntouched());
    EXPECT_TRUE(call.fResult == nullptr || call.fResult == &call);
    EXPECT_FALSE(output.HasLine("Opening alert"));
  }
}

TEST(ContractRoot, BrokenObjectReachesNoHook) {
  RecordingDebugOutput output;
  RecordingMorvane morvane;
  for (const GoodRow& row : GoodCalls()) {
    SCOPED_TRACE(row.fHook);
    output.Reset();
    morvane.fSound = false;
    Call call;
    EXPECT_EQ(kBadInputProgrammingError, row.fCall(morvane, call));
    EXPECT_EQ(std::vector<std::string>{std::string("Bad Input to ") + row.fName +
                                       ": CMorvaneGlue_CheckInvariant()"},
              output.fAssertions);
    EXPECT_TRUE(morvane.fHooks.empty());
    EXPECT_TRUE(call.OutsAreUntouched());
    EXPECT_TRUE(call.fResult == nullptr || call.fResult == &call);
  }
  EXPECT_FALSE(morvane.IMorvane_CheckInvariant());
  // These two are called from the library's own callbacks and go ahead.
  EXPECT_EQ(kOK, morvane.IMorvane_PostAppMessage(1, 2));
  EXPECT_EQ(kOK, morvane.IMorvane_DrawView(Dummy<IView>(), Dummy<IDrawTools>()));
  EXPECT_EQ((std::vector<std::string>{"PostAppMessage", "DrawView"}), morvane.fHooks);
}

TEST(ContractRoot, HooksThatThrowGiveTheirCode) {
  const struct {
    TError fCode;
    std::function<void()> fThrow;
  } throws[] = {{12001, [] { throw std::bad_alloc(); }},
                {12002, [] { throw std::invalid_argument("x"); }},
                {12003, [] { throw XIllegalCallSequence(); }},
                {12004, [] { throw XProgrammingError(); }},
                {12005, [] { throw XBadFormat(); }},
                {12006, [] { throw XUnsupportedFormat(); }},
                {12007, [] { throw 5; }},
                {12007, [] { throw std::out_of_range("x"); }},
                {12008, [] { throw XInvariantCorrupt(); }},
                {12009, [] { throw XUnsupportedInterface(); }},
                {100123, [] { throw XApplicationError(100123); }}};
  RecordingDebugOutput output;
  RecordingMorvane morvane;
  for (const GoodRow& row : GoodCalls()) {
    SCOPED_TRACE(row.fHook);
    for (const auto& thrown : throws) {
      morvane.fHooks.clear();
      morvane.fOnHook = thrown.fThrow;
      output.Reset();
      Call call;
      EXPECT_EQ(thrown.fCode, row.fCall(morvane, call));
      EXPECT_EQ(std::vector<std::string>{row.fHook}, morvane.fHooks);
      EXPECT_TRUE(call.fResult == nullptr || call.fResult == &call);
      EXPECT_EQ(0, call.fWindows.fCalls);
      // The wall logs nothing, and what is asserted is only that an always wanted object is missing.
      for (const std::string& assertion : output.fAssertions)
        EXPECT_TRUE(assertion == "outBehavior != NULL" || assertion == "outMacExtensions != NULL" ||
                    assertion == "outWinExtensions != NULL")
            << assertion;
    }
  }
  // A code outside the documented range is reported, and given all the same.
  morvane.fOnHook = [] { throw XUnsupportedOSVersion(); };
  output.Reset();
  EXPECT_EQ(kUnsupportedOSVersionError, morvane.IMorvane_Yield());
  EXPECT_EQ(std::vector<std::string>{"IsValidError(outError)"}, output.fAssertions);
}

TEST(ContractRoot, GoodCallsReachTheirHook) {
  RecordingMorvane morvane;
  for (const GoodRow& row : GoodCalls()) {
    SCOPED_TRACE(row.fHook);
    morvane.fHooks.clear();
    Call call;
    EXPECT_EQ(kOK, row.fCall(morvane, call));
    EXPECT_EQ(std::vector<std::string>{row.fHook}, morvane.fHooks);
  }
}

TEST(ContractRoot, OutParametersArePoisonedBeforeTheHook) {
  RecordingMorvane morvane;
  Outs outs;
  std::memset(static_cast<void*>(&outs), 0x5A, sizeof(outs));
  morvane.fOnHook = [&] {
    EXPECT_EQ(0xEEEEEEEEu, outs.fSettings.fDelayAfterFlushing);
    throw XBadFormat();
  };
  EXPECT_EQ(kBadFormatError, morvane.IMorvane_GetDebugSettings(outs.fSettings));
  EXPECT_EQ(0xEEEEEEEEu, outs.fSettings.fDebugMenu);
  morvane.fOnHook = [&] { EXPECT_EQ(0u, outs.fNumber); };
  EXPECT_EQ(kOK, morvane.IMorvane_GetCurrentMS(outs.fNumber));
  EXPECT_EQ(77u, outs.fNumber);
  morvane.fOnHook = [&] { EXPECT_EQ(nullptr, outs.fBehavior); };
  morvane.IMorvane_GetBehavior(outs.fBehavior);
  // A stale code never shows while a hook runs.
  TError error = kOK;
  morvane.fOnHook = [&] { EXPECT_EQ(kProgrammingError, error); };
  morvane.IMorvane_CreateBuiltInIcon(kIconFolder, error);
  EXPECT_EQ(kOK, error);
}

TEST(ContractRoot, ResultsAreChecked) {
  RecordingDebugOutput output;
  RecordingMorvane morvane;
  const struct {
    const char* fAssertion;
    std::function<void()> fBreak;
    std::function<TError()> fCall;
  } rows[] = {
      {"ValidateDebugSettings(outSettings)", [&] { morvane.fSettings.fFlushViews = 3; },
       [&] {
         TDebugSettings settings;
         return morvane.IMorvane_GetDebugSettings(settings);
       }},
      {"ValidateMonitors(outMonitors)", [&] { morvane.fMonitors.fMonitorCount = 33; },
       [&] {
         TMonitorList monitors;
         return morvane.IMorvane_GetMonitors(monitors);
       }},
      {"ValidateModifierKeys(outMods)", [&] { morvane.fMods.fKeys = 1; },
       [&] {
         TModifierKeys mods;
         return morvane.IMorvane_ShortcutModsToModifiers(kShortcutNone, mods);
       }},
      {"CMorvaneGlue_CheckInvariant()", [&] { morvane.fOnHook = [&] { morvane.fSound = false; }; },
       [&] { return morvane.IMorvane_Yield(); }},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fAssertion);
    row.fBreak();
    output.Reset();
    EXPECT_EQ(kOK, row.fCall());
    ASSERT_FALSE(output.fAssertions.empty());
    EXPECT_EQ(row.fAssertion, output.fAssertions.back());
  }
  morvane.fSound = true;
  morvane.fOnHook = nullptr;
  const struct {
    const char* fAssertion;
    TCall fCall;
  } missing[] = {
      {"outBehavior != NULL", [](IMorvane& m, Call& c) { return m.IMorvane_GetBehavior(c.fOuts.fBehavior); }},
      {"outBehavior != NULL",
       [](IMorvane& m, Call& c) {
         return static_cast<const IMorvane&>(m).IMorvane_GetBehavior(c.fOuts.fBehavior);
       }},
      {"outMacExtensions != NULL",
       [](IMorvane& m, Call& c) { return m.IMorvane_GetMacExtensions(c.fOuts.fMac); }},
      {"out != NULL",
       Returning([](IMorvane& m, TError& e) { return m.IMorvane_CreateBuiltInIcon(kIconStop, e); })},
      {"outView != NULL", Returning([](IMorvane& m, TError& e) {
         return m.IMorvane_CreateView(Dummy<IViewBehaviorFactory>(), Dummy<IView>(), "", e);
       })},
      {"resultMouseShape != NULL",
       Returning([](IMorvane& m, TError& e) { return m.IMorvane_LoadResourceMouseShape("1", e); })},
  };
  for (const auto& row : missing) {
    output.Reset();
    Call call;
    EXPECT_EQ(kOK, row.fCall(morvane, call));
    EXPECT_EQ(std::vector<std::string>{row.fAssertion}, output.fAssertions);
  }
}

TEST(ContractRoot, ListsTextsAndArrays) {
  RecordingDebugOutput output;
  RecordingMorvane morvane;
  // The window receiver is called once, and its code is not looked at.
  morvane.fWindows = {&Dummy<IWindow>(), &Dummy<IWindow>()};
  WindowReceiver windows;
  EXPECT_EQ(kOK, morvane.IMorvane_GetModalDialogsZ(windows));
  EXPECT_EQ(1, windows.fCalls);
  EXPECT_EQ(morvane.fWindows, windows.fWindows);
  // The text receiver's code is the result.
  TextReceiver text;
  text.fResult = 100004;
  EXPECT_EQ(100004u, morvane.IMorvane_GetResourceString("SSTR/1000/1", text));
  EXPECT_EQ(u"text", text.fText);
  // An array that is not there is bad input.
  std::int16_t index = -1;
  TFlag flag = 0;
  morvane.fHooks.clear();
  EXPECT_EQ(kBadInputProgrammingError,
            morvane.IMorvane_DisplayPopupMenu(nullptr, 2, Dummy<IWindow>(), kPoint, 0, index, flag));
  EXPECT_TRUE(morvane.fHooks.empty());
  // A selection must lie in the list; a popup's index only if there is a selection.
  output.Reset();
  morvane.fPopupIndex = 2;
  EXPECT_EQ(kOK, morvane.IMorvane_DisplayPopupMenu(kItems, 2, Dummy<IWindow>(), kPoint, 0, index, flag));
  EXPECT_EQ(1u, output.fAssertions.size());
  morvane.fFlag = false;
  index = -1;
  EXPECT_EQ(kOK, morvane.IMorvane_DisplayPopupMenu(kItems, 2, Dummy<IWindow>(), kPoint, 0, index, flag));
  EXPECT_EQ(1u, output.fAssertions.size());
  std::uint16_t contextualIndex = 0;
  morvane.fContextualIndex = 2;
  EXPECT_EQ(kOK, morvane.IMorvane_DisplayContextualMenu(kItems, 2, Dummy<IWindow>(), kPoint, 0,
                                                        contextualIndex, flag));
  EXPECT_TRUE(output.HasAssertion("outSelectedIndex < itemCount"));
  // An alert is printed before it opens.
  output.Reset();
  EXPECT_EQ(kOK, morvane.IMorvane_CreateAlertBox(nullptr, 0, GoodAlert(), nullptr));
  EXPECT_EQ("[Morvane] Opening alert: Message Details", output.fLines.back());
}

TEST(ContractRoot, LifeIsTraced) {
  RecordingDebugOutput output;
  { RecordingMorvane morvane; }
  EXPECT_EQ((std::vector<std::string>{"[Morvane] CMorvaneGlue::CMorvaneGlue()",
                                      "[Morvane] CMorvaneGlue::~CMorvaneGlue()"}),
            output.fLines);
  EXPECT_EQ(2, output.fIndents);
  EXPECT_EQ(0, output.fDepth);
}
