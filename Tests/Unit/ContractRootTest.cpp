// The contract of the root interface: what a bad call gives, what a failing hook gives, what is poisoned.
#include <gtest/gtest.h>

#include "Tests/Support/RecordingMorvane.h"

namespace NSMorvaneTest {
namespace {

constexpr TError kBad = kBadInputProgrammingError;

auto& gWindow = Dummy<IWindow>("window");
auto& gOwner = Dummy<IModalOwner>("owner");
auto& gView = Dummy<IView>("view");
auto& gCapture = Dummy<IMouseCapture>("capture");
auto& gSaveChanges = Dummy<ISaveChangesBehavior>("changes");
auto& gModeless = Dummy<IModelessDialogBehaviorFactory>("factory");
auto& gModal = Dummy<IModalDialogBehaviorFactory>("factory");
auto& gFloating = Dummy<IFloatingWindowBehaviorFactory>("factory");
auto& gDocument = Dummy<IDocumentWindowBehaviorFactory>("factory");
auto& gListener = Dummy<IModifierKeyListener>("listener");
auto& gKeyCallback = Dummy<IKeyReleaseCallback>("callback");

TAlertSpec GoodAlert() {
  TAlertSpec spec{};
  spec.fButtonLayout = kAlertOneButton;
  spec.fKind = kAlertNote;
  CopyText(spec.fMessage, u"Message");
  CopyText(spec.fDetails, u"Details");
  CopyText(spec.fButton1, u"OK");
  return spec;
}

const TDebugSettings kSettings{1, 0, 0, 0, 0, 0, 0};
const TStartupParams kParams{u"A", u"B", u"C", 0, 0, 0};
const TClipboardFormat kFormat = {{'u', 't', 'x', 't', 0}};
const TKeyInterpretation kWanted{u"b", {}, 0};
const TPhysicalKeySpec kKey{65, 0, 0};
const TModifierKeys kMods{2, 0};
const TMenuItem kItems[2]{{u"C", u"", 0, {}, 0, nullptr}, {u"D", u"", 0, {}, 0, nullptr}};
const TMouseEvent kPress{7, 0, 0, {}, {}, 0, nullptr};
const TFileType kTypes[1]{{u"E", u""}};
const TPoint kPoint{8, 9};
FakeMouseShape gBrokenShape;

using Row = GoodRow<RecordingMorvane>;
const std::vector<Row>& GoodCalls() {
  Names()[&kParams] = "pixels";
  static const std::vector<Row> rows = {
      {"IMorvane_SetDebugSettings()", "SetDebugSettings {1}", "-", "-",
       CALL(IMorvane_SetDebugSettings(kSettings))},
      {"IMorvane_GetDebugSettings()", "GetDebugSettings", "{1}", "EE",
       GIVE(TDebugSettings, IMorvane_GetDebugSettings(out))},
      {"IMorvane_Run()", "Run behavior {65}", "-", "-",
       CALL(IMorvane_Run(&Dummy<IMorvaneRunBehavior>("behavior"), kParams))},
      {"IMorvane_GetBehavior()", "GetBehavior", "behavior", "null",
       GIVE(IMorvaneRunBehavior*, IMorvane_GetBehavior(out))},
      {"IMorvane_GetBehavior()", "GetBehavior const", "behavior", "null",
       [](const IMorvane& o) { return GIVE(IMorvaneRunBehavior*, IMorvane_GetBehavior(out))(o); }},
      {"IMorvane_StartQuitting()", "StartQuitting", "-", "-", CALL(IMorvane_StartQuitting())},
      {"IMorvane_StopQuitting()", "StopQuitting", "-", "-", CALL(IMorvane_StopQuitting())},
      {"IMorvane_IsQuitting()", "IsQuitting", "1", "-", GIVE(TFlag, IMorvane_IsQuitting(out))},
      {"IMorvane_GetMonitors()", "GetMonitors", "{1}", "-", GIVE(TMonitorList, IMorvane_GetMonitors(out))},
      {"IMorvane_IsFormatOnClipboard()", "IsFormatOnClipboard {117}", "1", "-",
       GIVE(TFlag, IMorvane_IsFormatOnClipboard(kFormat, out))},
      {"IMorvane_GetClipboardData()", "GetClipboardData {117}", "data", "-",
       MADE(IMorvane_GetClipboardData(kFormat, error))},
      {"IMorvane_ReplaceClipboardContents()", "ReplaceClipboardContents [{117}] getter", "-", "-",
       CALL(IMorvane_ReplaceClipboardContents(&kFormat, 1, &Dummy<IClipboardDataGetter>("getter")))},
      {"IMorvane_GetResourceString()", "GetResourceString 'SSTR/1000/1'", "['text']", "-",
       GIVE(CTextReceiver, IMorvane_GetResourceString("SSTR/1000/1", out))},
      {"IMorvane_GetCurrentMS()", "GetCurrentMS", "77", "0", GIVE(std::uint64_t, IMorvane_GetCurrentMS(out))},
      {"IMorvane_ConvertMSToPrecisionTicks()", "ConvertMSToPrecisionTicks 5", "50", "0",
       GIVE(std::uint64_t, IMorvane_ConvertMSToPrecisionTicks(5, out))},
      {"IMorvane_CreateBuiltInIcon()", "CreateBuiltInIcon 3001", "icon", "-",
       MADE(IMorvane_CreateBuiltInIcon(kIconDocument, error))},
      {"IMorvane_CreateIconForURL()", "CreateIconForURL 'file://x'", "icon", "-",
       MADE(IMorvane_CreateIconForURL("file://x", error))},
      {"IMorvane_CreateBuiltInIcon()", "CreateResourceIcon '1'", "icon", "-",
       MADE(IMorvane_CreateResourceIcon("1", error))},
      {"IMorvane_CreateBuiltInIcon()", "CreatePixmapIcon pixels", "icon", "-",
       MADE(IMorvane_CreatePixmapIcon(&kParams, error))},
      {"IMorvane_SampleMouseState()", "SampleMouseState window", "{0}", "-",
       GIVE(TMouseState, IMorvane_SampleMouseState(out, &gWindow))},
      {"IMorvane_SetOverrideMouseShape()", "SetOverrideMouseShape null", "-", "-",
       CALL(IMorvane_SetOverrideMouseShape(nullptr))},
      {"IMorvane_RequestMouseShapeArbitration()", "RequestMouseShapeArbitration", "-", "-",
       CALL(IMorvane_RequestMouseShapeArbitration())},
      {"IMorvane_AllocateMouseCapture()", "AllocateMouseCapture window capture", "-", "-",
       CALL(IMorvane_AllocateMouseCapture(&gWindow, &gCapture))},
      {"IMorvane_ReleaseMouseCapture()", "ReleaseMouseCapture", "-", "-",
       CALL(IMorvane_ReleaseMouseCapture())},
      {"IMorvane_CheckForClickDragOperation()", "CheckForClickDragOperation window {7}", "91", "-",
       GIVE(TClickDragResult, IMorvane_CheckForClickDragOperation(gWindow, kPress, out))},
      {"IMorvane_LoadResourceMouseShape()", "AttachModifierKeyListener listener", "-", "-",
       CALL(IMorvane_AttachModifierKeyListener(&gListener))},
      {"IMorvane_DetachModifierKeyListener()", "DetachModifierKeyListener listener", "-", "-",
       CALL(IMorvane_DetachModifierKeyListener(&gListener))},
      {"IMorvane_InstallKeyReleaseCallback()", "InstallKeyReleaseCallback 65 callback", "-", "-",
       CALL(IMorvane_InstallKeyReleaseCallback(65, &gKeyCallback))},
      {"IMorvane_RemoveKeyReleaseCallback()", "RemoveKeyReleaseCallback 65 callback", "-", "-",
       CALL(IMorvane_RemoveKeyReleaseCallback(65, &gKeyCallback))},
      {"IMorvane_LoadResourceMouseShape()", "LoadResourceMouseShape '1'", "shape", "-",
       MADE(IMorvane_LoadResourceMouseShape("1", error))},
      {"IMorvane_CreateBuiltInMouseShape()", "CreateBuiltInMouseShape 1300", "shape", "-",
       MADE(IMorvane_CreateBuiltInMouseShape(kMouseShapeArrow, error))},
      {"IMorvane_Yield()", "Yield", "-", "-", CALL(IMorvane_Yield())},
      {"IMorvane_WakeUpIdle()", "WakeUpIdle", "-", "-", CALL(IMorvane_WakeUpIdle())},
      {"IMorvane_ShortcutModsToModifiers()", "ShortcutModsToModifiers 4001", "{4}", "-",
       GIVE(TModifierKeys, IMorvane_ShortcutModsToModifiers(kShortcutCommand, out))},
      {"IMorvane_CanKeyBeInterpretedAs()", "CanKeyBeInterpretedAs {65} {2} {98}", "1", "-",
       GIVE(TFlag, IMorvane_CanKeyBeInterpretedAs(kKey, kMods, kWanted, out))},
      {"IMorvane_GetDefaultInterpretation()", "GetDefaultInterpretation {65} {2}", "{0}", "-",
       GIVE(TKeyInterpretation, IMorvane_GetDefaultInterpretation(kKey, kMods, out))},
      {"IMorvane_RequestMenuBarsSetup()", "RequestMenuBarsSetup", "-", "-",
       CALL(IMorvane_RequestMenuBarsSetup())},
      {"IMorvane_DisplayPopupMenu()", "DisplayPopupMenu [{67} {68}] window 8,9 5 -1", "index 1, flag 1", "-",
       [](auto& o) {
         std::int16_t index = -1;
         auto flag = Untouched<TFlag>();
         const TError error = o.IMorvane_DisplayPopupMenu(kItems, 2, gWindow, kPoint, 5, index, flag);
         if (index == -1 && Show(flag) == "-") return Outcome{error};
         return Outcome{error, "index " + Show(index) + ", flag " + Show(flag)};
       }},
      {"IMorvane_DisplayContextualMenu()", "DisplayContextualMenu [{67} {68}] window 8,9 5",
       "index 1, flag 1", "-",
       [](auto& o) {
         auto index = Untouched<std::uint16_t>();
         auto flag = Untouched<TFlag>();
         const TError error = o.IMorvane_DisplayContextualMenu(kItems, 2, gWindow, kPoint, 5, index, flag);
         if (Show(index) == "-" && Show(flag) == "-") return Outcome{error};
         return Outcome{error, "index " + Show(index) + ", flag " + Show(flag)};
       }},
      {"IMorvane_CreateDocumentWindow()", "CreateDocumentWindow factory 1048576 yes", "document", "-",
       MADE(IMorvane_CreateDocumentWindow(gDocument, 0x100000, 1, error))},
      {"IMorvane_GetDocumentWindowsZ()", "GetDocumentWindowsZ", "[window window]", "-",
       GIVE(CVectorWindowReceiver, IMorvane_GetDocumentWindowsZ(out))},
      {"IMorvane_CreateModelessDialog()", "CreateModelessDialog factory 1048576 yes", "modeless", "-",
       MADE(IMorvane_CreateModelessDialog(gModeless, 0x100000, 1, error))},
      {"IMorvane_GetModelessDialogsZ()", "GetModelessDialogsZ", "[window window]", "-",
       GIVE(CVectorWindowReceiver, IMorvane_GetModelessDialogsZ(out))},
      {"IMorvane_CreateModalDialog()", "CreateModalDialog factory owner no 1048576", "modal", "-",
       MADE(IMorvane_CreateModalDialog(gModal, &gOwner, 0, 0x100000, error))},
      {"IMorvane_GetModalDialogsZ()", "GetModalDialogsZ", "[window window]", "-",
       GIVE(CVectorWindowReceiver, IMorvane_GetModalDialogsZ(out))},
      {"IMorvane_CreateFloatingWindow()", "CreateFloatingWindow factory 1048576", "floating", "-",
       MADE(IMorvane_CreateFloatingWindow(gFloating, 0x100000, error))},
      {"IMorvane_GetFloatingWindowsZ()", "GetFloatingWindowsZ", "[window window]", "-",
       GIVE(CVectorWindowReceiver, IMorvane_GetFloatingWindowsZ(out))},
      {"IMorvane_CreateAlertBox()", "CreateAlertBox null yes 'Message' alert", "-", "-",
       CALL(IMorvane_CreateAlertBox(nullptr, 1, GoodAlert(), &Dummy<IAlertBoxListener>("alert")))},
      {"IMorvane_CreateView()", "CreateView factory view 'name'", "view", "-",
       MADE(IMorvane_CreateView(Dummy<IViewBehaviorFactory>("factory"), gView, "name", error))},
      {"IMorvane_InvalidateView()", "InvalidateView view 1,2,3,4", "-", "-",
       CALL(IMorvane_InvalidateView(gView, {1, 2, 3, 4}))},
      {"IMorvane_CreateSaveAsDialog()", "CreateSaveAsDialog null 3 owner no 'file' [{69}] 'prompt'", "-", "-",
       CALL(IMorvane_CreateSaveAsDialog(nullptr, 3, &gOwner, 0, u"file", kTypes, 1, u"prompt"))},
      {"IMorvane_CreateSaveAsDialog()", "CreateSaveAsDialog null 3 null yes '' [] ''", "-", "-",
       CALL(IMorvane_CreateSaveAsDialog(nullptr, 3, nullptr, 1, u"", nullptr, 0, nullptr))},
      {"IMorvane_CreateOpenDialog()", "CreateOpenDialog null 3 owner no yes [{69}] 'prompt' custom", "-", "-",
       CALL(IMorvane_CreateOpenDialog(nullptr, 3, &gOwner, 0, 1, kTypes, 1, u"prompt",
                                      &Dummy<IOpenDialogCustomizeBehavior>("custom")))},
      {"IMorvane_CreateOpenDialog()", "CreateOpenDialog null 3 null yes no [{69}] '' null", "-", "-",
       CALL(IMorvane_CreateOpenDialog(nullptr, 3, nullptr, 1, 0, kTypes, 1, nullptr, nullptr))},
      {"IMorvane_CreateDirectoryChooserDialog()", "CreateDirectoryChooserDialog null 3 null yes 'prompt'",
       "-", "-", CALL(IMorvane_CreateDirectoryChooserDialog(nullptr, 3, nullptr, 1, u"prompt"))},
      {"IMorvane_CreateSaveChangesDialog()", "CreateSaveChangesDialog changes null yes 'name' 1", "-", "-",
       CALL(IMorvane_CreateSaveChangesDialog(&gSaveChanges, nullptr, 1, u"name", kCloseByLibrary))},
      {"IMorvane_GetMacExtensions()", "GetMacExtensions", "mac", "null",
       GIVE(void*, IMorvane_GetMacExtensions(out))},
      {"IMorvane_GetWinExtensions()", "GetWinExtensions", "win", "null",
       GIVE(IWinExtensions*, IMorvane_GetWinExtensions(out))},
      // These two are called from the library's own callbacks and go ahead on a broken object.
      {nullptr, "DrawView view tools", "-", "-", CALL(IMorvane_DrawView(gView, Dummy<IDrawTools>("tools")))},
      {nullptr, "PostAppMessage 1 2", "-", "-", CALL(IMorvane_PostAppMessage(1, 2))},
  };
  return rows;
}

using Bad = BadRow<RecordingMorvane>;
const std::vector<Bad>& BadCalls() {
#define POPUP_RANGE                                              \
  "IMorvane_DisplayPopupMenu(): ((inOutSelectedIndex == -1) || " \
  "(static_cast<std::uint32_t>(inOutSelectedIndex) < itemCount))"
#define OWNED_OR_BLOCKING "((modalOwner == NULL) || (blockingAppModalDialogFlag == 0))"
#define BLOCKING_FLAG "((blockingAppModalDialogFlag==0) || (blockingAppModalDialogFlag==1))"
  static std::int16_t zero = 0, two = 2, minusTwo = -2;
  static std::uint16_t index = 0;
  static const std::vector<Bad> rows = {
      {"IMorvane_SetDebugSettings(): ValidateDebugSettings(settings)",
       CALL(IMorvane_SetDebugSettings({0, 0, 0, 0, 0, 0, 2}))},
      {"IMorvane_Run(): ValidateStartupParams(params)", CALL(IMorvane_Run(nullptr, TStartupParams{}))},
      {"IMorvane_ReplaceClipboardContents(): (formatCount == 0) || (clipbardDataGetter != NULL)",
       CALL(IMorvane_ReplaceClipboardContents(&kFormat, 1, nullptr))},
      {"IMorvane_GetResourceString(): key != NULL",
       GIVE(CTextReceiver, IMorvane_GetResourceString(nullptr, out))},
      {"IMorvane_GetResourceString(): std::strlen(key) > 0",
       GIVE(CTextReceiver, IMorvane_GetResourceString("", out))},
      {"IMorvane_CreateBuiltInIcon(): ValidateBuiltinIcon(icon)",
       MADE(IMorvane_CreateBuiltInIcon(static_cast<TBuiltinIcon>(3000), error))},
      {"IMorvane_CreateIconForURL(): fileOrFolderOrVolumeURL[0] != 0",
       MADE(IMorvane_CreateIconForURL("", error))},
      {"IMorvane_CreateIconForURL(): fileOrFolderOrVolumeURL[0] != 0",
       MADE(IMorvane_CreateIconForURL(nullptr, error))},
      {"IMorvane_CreateBuiltInIcon(): std::strlen(key) > 0", MADE(IMorvane_CreateResourceIcon("", error))},
      {"IMorvane_CreateBuiltInIcon(): std::strlen(key) > 0",
       MADE(IMorvane_CreateResourceIcon(nullptr, error))},
      {"IMorvane_CreateBuiltInIcon(): pixmapRGBA != NULL", MADE(IMorvane_CreatePixmapIcon(nullptr, error))},
      {"IMorvane_SetOverrideMouseShape(): (overrideShape == NULL) || "
       "(overrideShape->IMouseShape_CheckInvariant() != 0)",
       CALL(IMorvane_SetOverrideMouseShape(&gBrokenShape))},
      {"IMorvane_AllocateMouseCapture(): window != NULL",
       CALL(IMorvane_AllocateMouseCapture(nullptr, &gCapture))},
      {"IMorvane_AllocateMouseCapture(): capture != NULL",
       CALL(IMorvane_AllocateMouseCapture(&gWindow, nullptr))},
      {"IMorvane_LoadResourceMouseShape(): listener != NULL",
       CALL(IMorvane_AttachModifierKeyListener(nullptr))},
      {"IMorvane_LoadResourceMouseShape(): key != NULL",
       MADE(IMorvane_LoadResourceMouseShape(nullptr, error))},
      {"IMorvane_LoadResourceMouseShape(): std::strlen(key) > 0",
       MADE(IMorvane_LoadResourceMouseShape("", error))},
      {"IMorvane_CreateBuiltInMouseShape(): IsValidBuiltInMouseShape(mouseShape)",
       MADE(IMorvane_CreateBuiltInMouseShape(static_cast<TBuiltInMouseShape>(1600), error))},
      {"IMorvane_ShortcutModsToModifiers: ValidateShortcutModifiers(shortcutMods)",
       GIVE(TModifierKeys, IMorvane_ShortcutModsToModifiers(static_cast<TShortcutModifiers>(4005), out))},
      {"IMorvane_CanKeyBeInterpretedAs(): ValidateModifierKeys(physicalMods)",
       GIVE(TFlag, IMorvane_CanKeyBeInterpretedAs(kKey, {1, 0}, kWanted, out))},
      {"IMorvane_CanKeyBeInterpretedAs(): ValidateKeyInterpretation(wantedInterpretation)",
       GIVE(TFlag, IMorvane_CanKeyBeInterpretedAs(kKey, kMods, {}, out))},
      {"IMorvane_GetDefaultInterpretation(): ValidateModifierKeys(physicalMods)",
       GIVE(TKeyInterpretation, IMorvane_GetDefaultInterpretation(kKey, {32, 0}, out))},
      {"IMorvane_DisplayPopupMenu(): itemCount > 0",
       GIVE(TFlag, IMorvane_DisplayPopupMenu(kItems, 0, gWindow, kPoint, 0, zero, out))},
      {POPUP_RANGE, GIVE(TFlag, IMorvane_DisplayPopupMenu(kItems, 2, gWindow, kPoint, 0, two, out))},
      {POPUP_RANGE, GIVE(TFlag, IMorvane_DisplayPopupMenu(kItems, 2, gWindow, kPoint, 0, minusTwo, out))},
      {"IMorvane_DisplayContextualMenu(): itemCount > 0",
       GIVE(TFlag, IMorvane_DisplayContextualMenu(kItems, 0, gWindow, kPoint, 0, index, out))},
      {"IMorvane_CreateDocumentWindow(): ValidateDocumentWindowStyleFlags(styleFlags)",
       MADE(IMorvane_CreateDocumentWindow(gDocument, kWindowStyleBit24, 0, error))},
      {"IMorvane_CreateDocumentWindow(): ValidateFlag(windowsMenuFlag)",
       MADE(IMorvane_CreateDocumentWindow(gDocument, 0, 2, error))},
      {"IMorvane_CreateModelessDialog(): ValidateModelessDialogStyleFlags(styleFlags)",
       MADE(IMorvane_CreateModelessDialog(gModeless, 0x02100000, 0, error))},
      {"IMorvane_CreateModelessDialog(): ValidateFlag(windowsMenuFlag)",
       MADE(IMorvane_CreateModelessDialog(gModeless, 0, 2, error))},
      {"IMorvane_CreateModelessDialog(): (styleFlags & kModelessDialogBorderlessBit) == 0",
       MADE(IMorvane_CreateModelessDialog(gModeless, kModelessDialogBorderlessBit, 1, error))},
      {"IMorvane_CreateModalDialog(): ValidateModalDialogStyleFlags(styleFlags)",
       MADE(IMorvane_CreateModalDialog(gModal, nullptr, 0, kWindowZoomableBit, error))},
      {"IMorvane_CreateModalDialog(): ((owner == NULL) || (blockingAppModalDialogFlag == 0))",
       MADE(IMorvane_CreateModalDialog(gModal, &gOwner, 1, 0, error))},
      {"IMorvane_CreateFloatingWindow(): ValidateFloatingWindowStyleFlags(styleFlags)",
       MADE(IMorvane_CreateFloatingWindow(gFloating, 0x02000000, error))},
      {"IMorvane_CreateAlertBox(): ValidateAlertSpec(alertSpec)",
       CALL(IMorvane_CreateAlertBox(nullptr, 0, TAlertSpec{}, nullptr))},
      {"IMorvane_CreateAlertBox(): " OWNED_OR_BLOCKING,
       CALL(IMorvane_CreateAlertBox(&gOwner, 1, GoodAlert(), nullptr))},
      {"IMorvane_CreateSaveAsDialog(): " OWNED_OR_BLOCKING,
       CALL(IMorvane_CreateSaveAsDialog(nullptr, 0, &gOwner, 1, u"", kTypes, 1, nullptr))},
      {"IMorvane_CreateSaveAsDialog(): (NSTextPackage::CountChars(templateFileName)>=0)",
       CALL(IMorvane_CreateSaveAsDialog(nullptr, 0, nullptr, 1, nullptr, kTypes, 1, nullptr))},
      {"IMorvane_CreateSaveAsDialog(): " BLOCKING_FLAG,
       CALL(IMorvane_CreateSaveAsDialog(nullptr, 0, nullptr, 2, u"", kTypes, 1, nullptr))},
      {"IMorvane_CreateOpenDialog(): " OWNED_OR_BLOCKING,
       CALL(IMorvane_CreateOpenDialog(nullptr, 0, &gOwner, 1, 0, kTypes, 1, u"", nullptr))},
      {"IMorvane_CreateOpenDialog(): typeCount>0",
       CALL(IMorvane_CreateOpenDialog(nullptr, 0, nullptr, 1, 0, kTypes, 0, u"", nullptr))},
      {"IMorvane_CreateOpenDialog(): " BLOCKING_FLAG,
       CALL(IMorvane_CreateOpenDialog(nullptr, 0, nullptr, 2, 0, kTypes, 1, u"", nullptr))},
      {"IMorvane_CreateOpenDialog(): ((allowMultiSelectFlag==0) || (allowMultiSelectFlag==1))",
       CALL(IMorvane_CreateOpenDialog(nullptr, 0, nullptr, 1, 2, kTypes, 1, u"", nullptr))},
      {"IMorvane_CreateDirectoryChooserDialog(): " OWNED_OR_BLOCKING,
       CALL(IMorvane_CreateDirectoryChooserDialog(nullptr, 0, &gOwner, 1, u""))},
      {"IMorvane_CreateDirectoryChooserDialog(): " BLOCKING_FLAG,
       CALL(IMorvane_CreateDirectoryChooserDialog(nullptr, 0, nullptr, 2, u""))},
      {"IMorvane_CreateSaveChangesDialog(): behavior != NULL",
       CALL(IMorvane_CreateSaveChangesDialog(nullptr, nullptr, 1, u"", kCloseByUser))},
      {"IMorvane_CreateSaveChangesDialog(): " OWNED_OR_BLOCKING,
       CALL(IMorvane_CreateSaveChangesDialog(&gSaveChanges, &gOwner, 1, u"", kCloseByUser))},
      {"IMorvane_CreateSaveChangesDialog(): ValidateCloseReason(reason)",
       CALL(IMorvane_CreateSaveChangesDialog(&gSaveChanges, nullptr, 1, u"", static_cast<TCloseReason>(2)))},
  };
#undef POPUP_RANGE
#undef OWNED_OR_BLOCKING
#undef BLOCKING_FLAG
  return rows;
}

}  // namespace

TEST(ContractRoot, GoodCalls) { CheckGoodCalls("CMorvaneGlue_CheckInvariant()", GoodCalls()); }

TEST(ContractRoot, BadCalls) {
  gBrokenShape.fSound = 0;
  RecordingMorvane morvane;
  CheckBadCalls(morvane, BadCalls());
  EXPECT_TRUE(morvane.IMorvane_CheckInvariant());
  morvane.fSound = false;
  EXPECT_FALSE(morvane.IMorvane_CheckInvariant());
}

TEST(ContractRoot, ResultsAreChecked) {
  const auto null = [](RecordingMorvane& m) { m.fGivesNull = true; };
  const auto brokenIcon = [](RecordingMorvane& m) { m.fIcon.fSound = 0; };
  const auto icon = MADE(IMorvane_CreateBuiltInIcon(kIconStop, error));
  const auto contextual = [](RecordingMorvane& o) {
    std::uint16_t index = 0;
    return GIVE(TFlag, IMorvane_DisplayContextualMenu(kItems, 2, gWindow, kPoint, 0, index, out))(o);
  };
  CheckResults<RecordingMorvane>({
      {"ValidateDebugSettings(outSettings)", [](auto& m) { m.fSettings.fFlushViews = 3; },
       GIVE(TDebugSettings, IMorvane_GetDebugSettings(out))},
      {"ValidateMonitors(outMonitors)", [](auto& m) { m.fMonitors.fMonitorCount = 33; },
       GIVE(TMonitorList, IMorvane_GetMonitors(out))},
      {"ValidateModifierKeys(outMods)", [](auto& m) { m.fMods.fKeys = 1; },
       GIVE(TModifierKeys, IMorvane_ShortcutModsToModifiers(kShortcutNone, out))},
      {"outBehavior != NULL", null, GIVE(IMorvaneRunBehavior*, IMorvane_GetBehavior(out))},
      {"outBehavior != NULL", null, GoodCalls()[4].fCall},
      {"outMacExtensions != NULL", null, GIVE(void*, IMorvane_GetMacExtensions(out))},
      {"outWinExtensions != NULL", null, GIVE(IWinExtensions*, IMorvane_GetWinExtensions(out))},
      {"out != NULL", null, icon},
      {"out->IIcon_CheckInvariant() != 0", brokenIcon, icon},
      {"out->IIcon_CheckInvariant() != 0", brokenIcon, MADE(IMorvane_CreateIconForURL("x", error))},
      {"out->IIcon_CheckInvariant() != 0", brokenIcon, MADE(IMorvane_CreateResourceIcon("x", error))},
      {"out->IIcon_CheckInvariant() != 0", brokenIcon, MADE(IMorvane_CreatePixmapIcon("x", error))},
      {"out != NULL", null, MADE(IMorvane_GetClipboardData(kFormat, error))},
      {"out->IData_CheckInvariant() != 0", [](auto& m) { m.fData.fSound = 0; },
       MADE(IMorvane_GetClipboardData(kFormat, error))},
      {"out != NULL", null, MADE(IMorvane_CreateDocumentWindow(gDocument, 0, 0, error))},
      {"out != NULL", null, MADE(IMorvane_CreateModelessDialog(gModeless, 0, 0, error))},
      {"out != NULL", null, MADE(IMorvane_CreateModalDialog(gModal, nullptr, 0, 0, error))},
      // A blocking dialog has run to its end.
      {"out == NULL", [](auto&) {}, MADE(IMorvane_CreateModalDialog(gModal, nullptr, 1, 0, error))},
      {"out != NULL", null, MADE(IMorvane_CreateFloatingWindow(gFloating, 0, error))},
      {"outView != NULL", null,
       MADE(IMorvane_CreateView(Dummy<IViewBehaviorFactory>("factory"), gView, "", error))},
      {"resultMouseShape != NULL", null, MADE(IMorvane_LoadResourceMouseShape("1", error))},
      {"resultMouseShape != NULL", null, MADE(IMorvane_CreateBuiltInMouseShape(kMouseShapeArrow, error))},
      {"static_cast<std::uint32_t>(inOutSelectedIndex) < itemCount", [](auto& m) { m.fIndex = 2; },
       [](auto& o) {
         std::int16_t index = -1;
         return GIVE(TFlag, IMorvane_DisplayPopupMenu(kItems, 2, gWindow, kPoint, 0, index, out))(o);
       }},
      {"outSelectedIndex < itemCount", [](auto& m) { m.fIndex = 2; }, contextual},
  });
}

TEST(ContractRoot, ListsTextsAndArrays) {
  RecordingDebugOutput output;
  RecordingMorvane morvane;
  // Of receivers, the code of a text's is the result; that of windows' is not looked at.
  struct : IWindowListReceiver, ITextReceiver {
    TError IWindowListReceiver_ReceiveWindows(IWindow* const*, std::uint32_t) override { return 100999; }
    TError ITextReceiver_ReceiveText(const TChar*) override { return 100004; }
  } receiver;
  EXPECT_EQ(kOK, morvane.IMorvane_GetModalDialogsZ(receiver));
  EXPECT_EQ(100004u, morvane.IMorvane_GetResourceString("SSTR/1000/1", receiver));
  // Arrays that are not there are bad input.
  morvane.fHooks.clear();
  std::int16_t index = -1;
  TFlag flag = 0;
  EXPECT_EQ(kBad, morvane.IMorvane_DisplayPopupMenu(nullptr, 2, gWindow, kPoint, 0, index, flag));
  EXPECT_EQ(kBad, morvane.IMorvane_CreateOpenDialog(nullptr, 0, nullptr, 1, 0, nullptr, 1, u"", nullptr));
  EXPECT_EQ("", morvane.JoinedHooks());
  // A popup's index is looked at only if there is a selection.
  output.Reset();
  morvane.fIndex = 2;
  morvane.fFlag = false;
  EXPECT_EQ(kOK, morvane.IMorvane_DisplayPopupMenu(kItems, 2, gWindow, kPoint, 0, index, flag));
  EXPECT_EQ(0u, flag);
  EXPECT_TRUE(output.fAssertions.empty());
  // An alert is printed before it opens.
  morvane.fOnHook = [&] { EXPECT_EQ("[Morvane] Opening alert: Message Details", output.fLines.back()); };
  EXPECT_EQ(kOK, morvane.IMorvane_CreateAlertBox(nullptr, 0, GoodAlert(), nullptr));
}

// No out-parameter shows a stale value while a hook runs.
TEST(ContractRoot, OutsArePoisonedBeforeTheHook) {
  RecordingMorvane morvane;
  TDebugSettings settings = kSettings;
  std::uint64_t number = 5;
  TError error = kOK;
  morvane.fOnHook = [&] { EXPECT_EQ("EE", Show(settings)); };
  morvane.IMorvane_GetDebugSettings(settings);
  morvane.fOnHook = [&] { EXPECT_EQ(0u, number); };
  morvane.IMorvane_GetCurrentMS(number);
  morvane.fOnHook = [&] { EXPECT_EQ(kProgrammingError, error); };
  morvane.IMorvane_CreateBuiltInIcon(kIconFolder, error);
  EXPECT_EQ(kOK, error);
}

}  // namespace NSMorvaneTest
