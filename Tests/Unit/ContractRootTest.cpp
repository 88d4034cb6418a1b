// The contract of the root interface: what a bad call gives, what a failing hook gives, what is poisoned.
#include "Tests/Support/RecordingMorvane.h"

namespace NSMorvaneTest {
namespace {

constexpr TError kBad = kBadInputProgrammingError;

auto& gWindow = Dummy<IWindow>();
auto& gOwner = Dummy<IModalOwner>();
auto& gView = Dummy<IView>();
auto& gCapture = Dummy<IMouseCapture>();
auto& gSaveChanges = Dummy<ISaveChangesBehavior>();
auto& gDocument = Dummy<IDocumentWindowBehaviorFactory>();
auto& gModeless = Dummy<IModelessDialogBehaviorFactory>();
auto& gModal = Dummy<IModalDialogBehaviorFactory>();
auto& gFloating = Dummy<IFloatingWindowBehaviorFactory>();
auto& gListener = Dummy<IModifierKeyListener>();
auto& gKeyCallback = Dummy<IKeyReleaseCallback>();

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

#define GOOD(name, ...) GOOD_ROW(IMorvane_##name, __VA_ARGS__)
#define BAD(name, ...) BAD_ROW(IMorvane_##name, __VA_ARGS__)
#define OWNED_OR_BLOCKING "((modalOwner == NULL) || (blockingAppModalDialogFlag == 0))"
#define BLOCKING_FLAG "((blockingAppModalDialogFlag==0) || (blockingAppModalDialogFlag==1))"

using Row = GoodRow<RecordingMorvane>;
Row NamedAs(const char* name, Row row) {
  row.fName = name;
  return row;
}

// clang-format off
const std::vector<Row>& GoodCalls() {
  Names()[&kParams] = "pixels";
  static const std::vector<Row> rows = {
      GOOD(SetDebugSettings, " {1}", "-", "-", kSettings),
      GOOD(GetDebugSettings, "", "{0}", "EE", out),
      GOOD(Run, " IMorvaneRunBehavior {65}", "-", "-", &Dummy<IMorvaneRunBehavior>(), kParams),
      GOOD(GetBehavior, "", "IMorvaneRunBehavior", "null: outBehavior != NULL", out),
      {"IMorvane_GetBehavior()", "GetBehavior const", "IMorvaneRunBehavior", "null: outBehavior != NULL",
       [](const IMorvane& o) { return CALL(IMorvane_GetBehavior(out))(o); }},
      GOOD(StartQuitting, "", "-", "-"),
      GOOD(StopQuitting, "", "-", "-"),
      GOOD(IsQuitting, "", "1", "-", out),
      GOOD(GetMonitors, "", "{0}", "-", out),
      GOOD(IsFormatOnClipboard, " {117}", "1", "-", kFormat, out),
      GOOD(GetClipboardData, " {117}", "data", "-: out != NULL", kFormat, error),
      GOOD(ReplaceClipboardContents, " [{117}] IClipboardDataGetter", "-", "-", &kFormat, 1,
           &Dummy<IClipboardDataGetter>()),
      GOOD(GetResourceString, " 'SSTR/1000/1'", "['']", "-", "SSTR/1000/1", out),
      GOOD(GetCurrentMS, "", "77", "0", out),
      GOOD(ConvertMSToPrecisionTicks, " 5", "77", "0", 5, out),
      GOOD(CreateBuiltInIcon, " 3001", "icon", "-: out != NULL", kIconDocument, error),
      GOOD(CreateIconForURL, " 'file://x'", "icon", "-: out != NULL", "file://x", error),
      NamedAs("IMorvane_CreateBuiltInIcon()",
              GOOD(CreateResourceIcon, " '1'", "icon", "-: out != NULL", "1", error)),
      NamedAs("IMorvane_CreateBuiltInIcon()",
              GOOD(CreatePixmapIcon, " pixels", "icon", "-: out != NULL", &kParams, error)),
      GOOD(SampleMouseState, " IWindow", "{0}", "-", out, &gWindow),
      GOOD(SetOverrideMouseShape, " null", "-", "-", nullptr),
      GOOD(RequestMouseShapeArbitration, "", "-", "-"),
      GOOD(AllocateMouseCapture, " IWindow IMouseCapture", "-", "-", &gWindow, &gCapture),
      GOOD(ReleaseMouseCapture, "", "-", "-"),
      GOOD(CheckForClickDragOperation, " IWindow {7}", "0", "-", gWindow, kPress, out),
      NamedAs("IMorvane_LoadResourceMouseShape()",
              GOOD(AttachModifierKeyListener, " IModifierKeyListener", "-", "-", &gListener)),
      GOOD(DetachModifierKeyListener, " IModifierKeyListener", "-", "-", &gListener),
      GOOD(InstallKeyReleaseCallback, " 65 IKeyReleaseCallback", "-", "-", 65, &gKeyCallback),
      GOOD(RemoveKeyReleaseCallback, " 65 IKeyReleaseCallback", "-", "-", 65, &gKeyCallback),
      GOOD(LoadResourceMouseShape, " '1'", "shape", "-: resultMouseShape != NULL", "1", error),
      GOOD(CreateBuiltInMouseShape, " 1300", "shape", "-: resultMouseShape != NULL", kMouseShapeArrow, error),
      GOOD(Yield, "", "-", "-"),
      GOOD(WakeUpIdle, "", "-", "-"),
      GOOD(ShortcutModsToModifiers, " 4001", "{0}", "-", kShortcutCommand, out),
      GOOD(CanKeyBeInterpretedAs, " {65} {2} {98}", "1", "-", kKey, kMods, kWanted, out),
      GOOD(GetDefaultInterpretation, " {65} {2}", "{0}", "-", kKey, kMods, out),
      GOOD(RequestMenuBarsSetup, "", "-", "-"),
      {"IMorvane_DisplayPopupMenu()", "DisplayPopupMenu [{67} {68}] IWindow 8,9 5 -1", "1, index 1", "-",
       [](auto& o) {
         std::int16_t index = -1;
         Outcome outcome = CALL(IMorvane_DisplayPopupMenu(kItems, 2, gWindow, kPoint, 5, index, out))(o);
         if (index != -1) outcome.fOut += ", index " + Show(index);
         return outcome;
       }},
      GOOD(DisplayContextualMenu, " [{67} {68}] IWindow 8,9 5", "1 1", "-", kItems, 2, gWindow, kPoint, 5, out,
           out),
      GOOD(CreateDocumentWindow, " IDocumentWindowBehaviorFactory 1048576 yes", "IDocumentWindow",
           "-: out != NULL", gDocument, 0x100000, 1, error),
      GOOD(GetDocumentWindowsZ, "", "[IWindow]", "-", out),
      GOOD(CreateModelessDialog, " IModelessDialogBehaviorFactory 1048576 yes", "IModelessDialog",
           "-: out != NULL", gModeless, 0x100000, 1, error),
      GOOD(GetModelessDialogsZ, "", "[IWindow]", "-", out),
      GOOD(CreateModalDialog, " IModalDialogBehaviorFactory IModalOwner no 1048576", "IModalDialog",
           "-: out != NULL", gModal, &gOwner, 0, 0x100000, error),
      GOOD(GetModalDialogsZ, "", "[IWindow]", "-", out),
      GOOD(CreateFloatingWindow, " IFloatingWindowBehaviorFactory 1048576", "IFloatingWindow",
           "-: out != NULL", gFloating, 0x100000, error),
      GOOD(GetFloatingWindowsZ, "", "[IWindow]", "-", out),
      GOOD(CreateAlertBox, " null yes 'Message' IAlertBoxListener", "-", "-", nullptr, 1, GoodAlert(),
           &Dummy<IAlertBoxListener>()),
      GOOD(CreateView, " IViewBehaviorFactory IView 'name'", "IView", "-: outView != NULL",
           Dummy<IViewBehaviorFactory>(), gView, "name", error),
      GOOD(InvalidateView, " IView 1,2,3,4", "-", "-", gView, {1, 2, 3, 4}),
      GOOD(CreateSaveAsDialog, " null 3 IModalOwner no 'file' [{69}] 'prompt'", "-", "-", nullptr, 3, &gOwner, 0,
           u"file", kTypes, 1, u"prompt"),
      GOOD(CreateSaveAsDialog, " null 3 null yes '' [] ''", "-", "-", nullptr, 3, nullptr, 1, u"", nullptr, 0,
           nullptr),
      GOOD(CreateOpenDialog, " null 3 IModalOwner no yes [{69}] 'prompt' IOpenDialogCustomizeBehavior", "-", "-",
           nullptr, 3, &gOwner, 0, 1, kTypes, 1, u"prompt", &Dummy<IOpenDialogCustomizeBehavior>()),
      GOOD(CreateOpenDialog, " null 3 null yes no [{69}] '' null", "-", "-", nullptr, 3, nullptr, 1, 0,
           kTypes, 1, nullptr, nullptr),
      GOOD(CreateDirectoryChooserDialog, " null 3 null yes 'prompt'", "-", "-", nullptr, 3, nullptr, 1,
           u"prompt"),
      GOOD(CreateSaveChangesDialog, " ISaveChangesBehavior null yes 'name' 1", "-", "-", &gSaveChanges, nullptr,
           1, u"name", kCloseByLibrary),
      GOOD(GetMacExtensions, "", "IMorvane", "null: outMacExtensions != NULL", out),
      GOOD(GetWinExtensions, "", "IWinExtensions", "null: outWinExtensions != NULL", out),
      // These two are called from the library's own callbacks and go ahead on a broken object.
      {"", "DrawView IView IDrawTools", "-", "-", CALL(IMorvane_DrawView(gView, Dummy<IDrawTools>()))},
      {"", "PostAppMessage 1 2", "-", "-", CALL(IMorvane_PostAppMessage(1, 2))},
  };
  return rows;
}

const BadRows<RecordingMorvane>& BadCalls() {
  static std::int16_t zero = 0, two = 2, minusTwo = -2;
  static const std::string popupRange =
      "IMorvane_DisplayPopupMenu(): "
      "((inOutSelectedIndex == -1) || (static_cast<std::uint32_t>(inOutSelectedIndex) < itemCount))";
  static const BadRows<RecordingMorvane> rows = {
      BAD(SetDebugSettings, "ValidateDebugSettings(settings)", {0, 0, 0, 0, 0, 0, 2}),
      BAD(Run, "ValidateStartupParams(params)", nullptr, TStartupParams{}),
      BAD(ReplaceClipboardContents, "(formatCount == 0) || (clipbardDataGetter != NULL)", &kFormat, 1, nullptr),
      BAD(GetResourceString, "key != NULL", nullptr, out),
      BAD(GetResourceString, "std::strlen(key) > 0", "", out),
      BAD(CreateBuiltInIcon, "ValidateBuiltinIcon(icon)", static_cast<TBuiltinIcon>(3000), error),
      BAD(CreateIconForURL, "fileOrFolderOrVolumeURL[0] != 0", "", error),
      BAD(CreateIconForURL, "fileOrFolderOrVolumeURL[0] != 0", nullptr, error),
      {"IMorvane_CreateBuiltInIcon(): std::strlen(key) > 0", CALL(IMorvane_CreateResourceIcon("", error))},
      {"IMorvane_CreateBuiltInIcon(): std::strlen(key) > 0", CALL(IMorvane_CreateResourceIcon(nullptr, error))},
      {"IMorvane_CreateBuiltInIcon(): pixmapRGBA != NULL", CALL(IMorvane_CreatePixmapIcon(nullptr, error))},
      BAD(SetOverrideMouseShape,
          "(overrideShape == NULL) || (overrideShape->IMouseShape_CheckInvariant() != 0)", &gBrokenShape),
      BAD(AllocateMouseCapture, "window != NULL", nullptr, &gCapture),
      BAD(AllocateMouseCapture, "capture != NULL", &gWindow, nullptr),
      {"IMorvane_LoadResourceMouseShape(): listener != NULL", CALL(IMorvane_AttachModifierKeyListener(nullptr))},
      BAD(LoadResourceMouseShape, "key != NULL", nullptr, error),
      BAD(LoadResourceMouseShape, "std::strlen(key) > 0", "", error),
      BAD(CreateBuiltInMouseShape, "IsValidBuiltInMouseShape(mouseShape)", TBuiltInMouseShape(1600), error),
      {"IMorvane_ShortcutModsToModifiers: ValidateShortcutModifiers(shortcutMods)",
       CALL(IMorvane_ShortcutModsToModifiers(static_cast<TShortcutModifiers>(4005), out))},
      BAD(CanKeyBeInterpretedAs, "ValidateModifierKeys(physicalMods)", kKey, {1, 0}, kWanted, out),
      BAD(CanKeyBeInterpretedAs, "ValidateKeyInterpretation(wantedInterpretation)", kKey, kMods, {}, out),
      BAD(GetDefaultInterpretation, "ValidateModifierKeys(physicalMods)", kKey, {32, 0}, out),
      BAD(DisplayPopupMenu, "itemCount > 0", kItems, 0, gWindow, kPoint, 0, zero, out),
      {popupRange, CALL(IMorvane_DisplayPopupMenu(kItems, 2, gWindow, kPoint, 0, two, out))},
      {popupRange, CALL(IMorvane_DisplayPopupMenu(kItems, 2, gWindow, kPoint, 0, minusTwo, out))},
      BAD(DisplayContextualMenu, "itemCount > 0", kItems, 0, gWindow, kPoint, 0, out, out),
      BAD(CreateDocumentWindow, "ValidateDocumentWindowStyleFlags(styleFlags)", gDocument, kWindowStyleBit24, 0,
          error),
      BAD(CreateDocumentWindow, "ValidateFlag(windowsMenuFlag)", gDocument, 0, 2, error),
      BAD(CreateModelessDialog, "ValidateModelessDialogStyleFlags(styleFlags)", gModeless, 0x02100000, 0, error),
      BAD(CreateModelessDialog, "ValidateFlag(windowsMenuFlag)", gModeless, 0, 2, error),
      BAD(CreateModelessDialog, "(styleFlags & kModelessDialogBorderlessBit) == 0", gModeless,
          kModelessDialogBorderlessBit, 1, error),
      BAD(CreateModalDialog, "ValidateModalDialogStyleFlags(styleFlags)", gModal, nullptr, 0, kWindowZoomableBit,
          error),
      BAD(CreateModalDialog, "((owner == NULL) || (blockingAppModalDialogFlag == 0))", gModal, &gOwner, 1, 0,
          error),
      BAD(CreateFloatingWindow, "ValidateFloatingWindowStyleFlags(styleFlags)", gFloating, 0x02000000, error),
      BAD(CreateAlertBox, "ValidateAlertSpec(alertSpec)", nullptr, 0, TAlertSpec{}, nullptr),
      BAD(CreateAlertBox, OWNED_OR_BLOCKING, &gOwner, 1, GoodAlert(), nullptr),
      BAD(CreateSaveAsDialog, OWNED_OR_BLOCKING, nullptr, 0, &gOwner, 1, u"", kTypes, 1, nullptr),
      BAD(CreateSaveAsDialog, "(NSTextPackage::CountChars(templateFileName)>=0)", nullptr, 0, nullptr, 1, nullptr,
          kTypes, 1, nullptr),
      BAD(CreateSaveAsDialog, BLOCKING_FLAG, nullptr, 0, nullptr, 2, u"", kTypes, 1, nullptr),
      BAD(CreateOpenDialog, OWNED_OR_BLOCKING, nullptr, 0, &gOwner, 1, 0, kTypes, 1, u"", nullptr),
      BAD(CreateOpenDialog, "typeCount>0", nullptr, 0, nullptr, 1, 0, kTypes, 0, u"", nullptr),
      BAD(CreateOpenDialog, BLOCKING_FLAG, nullptr, 0, nullptr, 2, 0, kTypes, 1, u"", nullptr),
      BAD(CreateOpenDialog, "((allowMultiSelectFlag==0) || (allowMultiSelectFlag==1))", nullptr, 0, nullptr, 1, 2,
          kTypes, 1, u"", nullptr),
      BAD(CreateDirectoryChooserDialog, OWNED_OR_BLOCKING, nullptr, 0, &gOwner, 1, u""),
      BAD(CreateDirectoryChooserDialog, BLOCKING_FLAG, nullptr, 0, nullptr, 2, u""),
      BAD(CreateSaveChangesDialog, "behavior != NULL", nullptr, nullptr, 1, u"", kCloseByUser),
      BAD(CreateSaveChangesDialog, OWNED_OR_BLOCKING, &gSaveChanges, &gOwner, 1, u"", kCloseByUser),
      BAD(CreateSaveChangesDialog, "ValidateCloseReason(reason)", &gSaveChanges, nullptr, 1, u"", TCloseReason(2)),
  };
  return rows;
}
// clang-format on

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
  const auto brokenIcon = [](RecordingMorvane& m) { m.fIcon.fSound = 0; };
  const auto brokenData = [](RecordingMorvane& m) { m.fData.fSound = 0; };
  const auto outOfRange = [](RecordingMorvane& m) { m.fIndex = 2; };
  std::int16_t index = -1;
  CheckResults<RecordingMorvane>({
      {"ValidateDebugSettings(outSettings)",
       [](auto& m) { m.template Given<TDebugSettings>().fFlushViews = 3; },
       CALL(IMorvane_GetDebugSettings(out))},
      {"ValidateMonitors(outMonitors)", [](auto& m) { m.template Given<TMonitorList>().fMonitorCount = 33; },
       CALL(IMorvane_GetMonitors(out))},
      {"ValidateModifierKeys(outMods)", [](auto& m) { m.template Given<TModifierKeys>().fKeys = 1; },
       CALL(IMorvane_ShortcutModsToModifiers(kShortcutNone, out))},
      {"out->IIcon_CheckInvariant() != 0", brokenIcon, CALL(IMorvane_CreateBuiltInIcon(kIconStop, error))},
      {"out->IIcon_CheckInvariant() != 0", brokenIcon, CALL(IMorvane_CreateIconForURL("x", error))},
      {"out->IIcon_CheckInvariant() != 0", brokenIcon, CALL(IMorvane_CreateResourceIcon("x", error))},
      {"out->IIcon_CheckInvariant() != 0", brokenIcon, CALL(IMorvane_CreatePixmapIcon("x", error))},
      {"out->IData_CheckInvariant() != 0", brokenData, CALL(IMorvane_GetClipboardData(kFormat, error))},
      // A blocking dialog has run to its end.
      {"out == NULL", [](auto&) {}, CALL(IMorvane_CreateModalDialog(gModal, nullptr, 1, 0, error))},
      {"static_cast<std::uint32_t>(inOutSelectedIndex) < itemCount", outOfRange,
       CALL(IMorvane_DisplayPopupMenu(kItems, 2, gWindow, kPoint, 0, index, out))},
      {"outSelectedIndex < itemCount", outOfRange,
       CALL(IMorvane_DisplayContextualMenu(kItems, 2, gWindow, kPoint, 0, out, out))},
  });
}

TEST(ContractRoot, ListsTextsAndArrays) {
  RecordedOutput output;
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
  EXPECT_EQ("", Joined(morvane.fHooks));
  // A popup's index is looked at only if there is a selection.
  output.fAssertions.clear();
  morvane.fIndex = 2;
  morvane.Given<bool>() = false;
  EXPECT_EQ(kOK, morvane.IMorvane_DisplayPopupMenu(kItems, 2, gWindow, kPoint, 0, index, flag));
  EXPECT_EQ(0u, flag);
  EXPECT_EQ("", Joined(output.fAssertions));
  // An alert is printed before it opens.
  morvane.fOnHook = [&] { EXPECT_EQ("Opening alert: Message Details", output.fLines.back()); };
  EXPECT_EQ(kOK, morvane.IMorvane_CreateAlertBox(nullptr, 0, GoodAlert(), nullptr));
}

}  // namespace NSMorvaneTest
