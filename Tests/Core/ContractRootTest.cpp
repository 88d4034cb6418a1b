// The contract of the root interface: what a bad call gives, what a failing hook gives, what is poisoned.
#include "Tests/Support/RecordingMorvane.h"

namespace NSMorvaneTest {
namespace {

constexpr TError kBad = kBadInputProgrammingError;

auto& gWindow = Dummy<IWindow>();
auto& gOwner = Dummy<IModalOwner>();
auto& gSaveChanges = Dummy<ISaveChangesBehavior>();
auto& gDocument = Dummy<IDocumentWindowBehaviorFactory>();
auto& gModeless = Dummy<IModelessDialogBehaviorFactory>();
auto& gModal = Dummy<IModalDialogBehaviorFactory>();
auto& gFloating = Dummy<IFloatingWindowBehaviorFactory>();

TAlertSpec GoodAlert() {
  TAlertSpec spec{};
  spec.fButtonLayout = kAlertOneButton;
  spec.fKind = kAlertNote;
  CopyText(spec.fMessage, u"Message");
  CopyText(spec.fDetails, u"Details");
  CopyText(spec.fButton1, u"OK");
  return spec;
}

const TClipboardFormat kFormat = {{'u', 't', 'x', 't', 0}};
const TKeyInterpretation kWanted{u"b", {}, 0};
const TPhysicalKeySpec kKey{65, 0, 0};
const TModifierKeys kMods{2, 0};
const TMenuItem kItems[2]{{u"C", u"", 0, {}, 0, nullptr}, {u"D", u"", 0, {}, 0, nullptr}};
const TFileType kTypes[1]{{u"E", u""}};
const TPoint kPoint{8, 9};

#define GOOD(name, ...) GOOD_ROW(IMorvane_##name, __VA_ARGS__)
#define BAD(name, ...) BAD_ROW(IMorvane_##name, __VA_ARGS__)
#define OWNED_OR_BLOCKING "((modalOwner == NULL) || (blockingAppModalDialogFlag == 0))"
#define BLOCKING_FLAG "((blockingAppModalDialogFlag==0) || (blockingAppModalDialogFlag==1))"
#define POPUP_INDEX \
  "((inOutSelectedIndex == -1) || (static_cast<std::uint32_t>(inOutSelectedIndex) < itemCount))"

// clang-format off
// Operations that no client test calls, and some of each shape.
const std::vector<GoodRow<RecordingMorvane>>& GoodCalls() {
  static const std::vector<GoodRow<RecordingMorvane>> rows = {
      GOOD(GetDebugSettings, "0", "EE", out),
      GOOD(GetBehavior, "set", "0: outBehavior != NULL", out),
      {"IMorvane_GetBehavior()", "GetBehavior const", "set", "0: outBehavior != NULL",
       [](const IMorvane& o) { return CALL(IMorvane_GetBehavior(out))(o); }},
      GOOD(StartQuitting, "-", "-"),
      GOOD(IsFormatOnClipboard, "set", "-", kFormat, out),
      GOOD(ReplaceClipboardContents, "-", "-", &kFormat, 1, &Dummy<IClipboardDataGetter>()),
      GOOD(GetResourceString, "set", "-", "SSTR/1000/1", out),
      GOOD(GetCurrentMS, "0", "0", out),
      GOOD(ShortcutModsToModifiers, "0", "-", kShortcutCommand, out),
      GOOD(CreateDocumentWindow, "set", "-: out != NULL", gDocument, 0x100000, 1, error),
      GOOD(GetDocumentWindowsZ, "set", "-", out),
      GOOD(CreateModalDialog, "set", "-: out != NULL", gModal, &gOwner, 0, 0x100000, error),
      GOOD(CreateAlertBox, "-", "-", nullptr, 1, GoodAlert(), nullptr),
      GOOD(CreateSaveAsDialog, "-", "-", nullptr, 3, nullptr, 1, u"", nullptr, 0, nullptr),
      GOOD(CreateOpenDialog, "-", "-", nullptr, 3, &gOwner, 0, 1, kTypes, 1, u"", nullptr),
      GOOD(CreateSaveChangesDialog, "-", "-", &gSaveChanges, nullptr, 1, u"name", kCloseByLibrary),
      GOOD(GetMacExtensions, "set", "0: outMacExtensions != NULL", out),
      // These two are called from the library's own callbacks and go ahead on a broken object.
      {"", "DrawView", "-", "-", CALL(IMorvane_DrawView(Dummy<IView>(), Dummy<IDrawTools>()))},
      {"", "PostAppMessage", "-", "-", CALL(IMorvane_PostAppMessage(1, 2))},
  };
  return rows;
}

const BadRows<RecordingMorvane>& BadCalls() {
  static std::int16_t zero = 0, two = 2, minusTwo = -2;
  static const BadRows<RecordingMorvane> rows = {
      BAD(SetDebugSettings, "ValidateDebugSettings(settings)", {0, 0, 0, 0, 0, 0, 2}),
      BAD(Run, "ValidateStartupParams(params)", nullptr, TStartupParams{}),
      BAD(ReplaceClipboardContents, "(formatCount == 0) || (clipbardDataGetter != NULL)", &kFormat, 1, nullptr),
      BAD(GetResourceString, "key != NULL", nullptr, out),
      BAD(GetResourceString, "std::strlen(key) > 0", "", out),
      BAD(CreateBuiltInIcon, "ValidateBuiltinIcon(icon)", static_cast<TBuiltinIcon>(3000), error),
      BAD(CreateIconForURL, "fileOrFolderOrVolumeURL[0] != 0", "", error),
      // These report under the names of others.
      {"IMorvane_CreateBuiltInIcon(): std::strlen(key) > 0", CALL(IMorvane_CreateResourceIcon(nullptr, error))},
      {"IMorvane_CreateBuiltInIcon(): pixmapRGBA != NULL", CALL(IMorvane_CreatePixmapIcon(nullptr, error))},
      {"IMorvane_LoadResourceMouseShape(): listener != NULL", CALL(IMorvane_AttachModifierKeyListener(nullptr))},
      {"IMorvane_ShortcutModsToModifiers: ValidateShortcutModifiers(shortcutMods)",
       CALL(IMorvane_ShortcutModsToModifiers(static_cast<TShortcutModifiers>(4005), out))},
      BAD(AllocateMouseCapture, "window != NULL", nullptr, &Dummy<IMouseCapture>()),
      BAD(AllocateMouseCapture, "capture != NULL", &gWindow, nullptr),
      BAD(CanKeyBeInterpretedAs, "ValidateModifierKeys(physicalMods)", kKey, {1, 0}, kWanted, out),
      BAD(CanKeyBeInterpretedAs, "ValidateKeyInterpretation(wantedInterpretation)", kKey, kMods, {}, out),
      BAD(GetDefaultInterpretation, "ValidateModifierKeys(physicalMods)", kKey, {32, 0}, out),
      BAD(DisplayPopupMenu, "itemCount > 0", kItems, 0, gWindow, kPoint, 0, zero, out),
      BAD(DisplayPopupMenu, POPUP_INDEX, kItems, 2, gWindow, kPoint, 0, two, out),
      BAD(DisplayPopupMenu, POPUP_INDEX, kItems, 2, gWindow, kPoint, 0, minusTwo, out),
      BAD(DisplayContextualMenu, "itemCount > 0", kItems, 0, gWindow, kPoint, 0, out, out),
      BAD(CreateDocumentWindow, "ValidateDocumentWindowStyleFlags(styleFlags)", gDocument, 1 << 24, 0, error),
      BAD(CreateDocumentWindow, "ValidateFlag(windowsMenuFlag)", gDocument, 0, 2, error),
      BAD(CreateModelessDialog, "ValidateModelessDialogStyleFlags(styleFlags)", gModeless, 0x02100000, 0, error),
      BAD(CreateModelessDialog, "ValidateFlag(windowsMenuFlag)", gModeless, 0, 2, error),
      BAD(CreateModelessDialog, "(styleFlags & kModelessDialogBorderlessBit) == 0", gModeless,
          kModelessDialogBorderlessBit, 1, error),
      BAD(CreateModalDialog, "ValidateModalDialogStyleFlags(styleFlags)", gModal, nullptr, 0, 1 << 21, error),
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
  RecordingMorvane morvane;
  CheckBadCalls(morvane, BadCalls());
}

TEST(ContractRoot, ResultsAreChecked) {
  const auto outOfRange = [](RecordingMorvane& m) { m.fIndex = 2; };
  std::int16_t index = -1;
  CheckResults<RecordingMorvane>({
      // A blocking dialog has run to its end.
      {"out == NULL", [](auto&) {}, CALL(IMorvane_CreateModalDialog(gModal, nullptr, 1, 0, error))},
      {"static_cast<std::uint32_t>(inOutSelectedIndex) < itemCount", outOfRange,
       CALL(IMorvane_DisplayPopupMenu(kItems, 2, gWindow, kPoint, 0, index, out))},
      {"outSelectedIndex < itemCount", outOfRange,
       CALL(IMorvane_DisplayContextualMenu(kItems, 2, gWindow, kPoint, 0, out, out))},
  });
}

// A client that looks at its code from a callback sees neither a stale one nor success.
TEST(ContractRoot, CodeOfACallThatIsOnItsWay) {
  RecordingMorvane morvane;
  TError error;
  morvane.fOnHook = [&] { EXPECT_EQ(kProgrammingError, error) << morvane.fHooks.back(); };
  const std::function<void()> calls[] = {
      [&] { morvane.IMorvane_GetClipboardData(kFormat, error); },
      [&] { morvane.IMorvane_CreateBuiltInIcon(static_cast<TBuiltinIcon>(3001), error); },
      [&] { morvane.IMorvane_CreateIconForURL("file://C:\\", error); },
      [&] { morvane.IMorvane_CreateResourceIcon("GICN/1", error); },
      [&] { morvane.IMorvane_CreatePixmapIcon("", error); },
      [&] { morvane.IMorvane_LoadResourceMouseShape("GCUR/1", error); },
      [&] { morvane.IMorvane_CreateBuiltInMouseShape(static_cast<TBuiltInMouseShape>(1300), error); },
      [&] { morvane.IMorvane_CreateDocumentWindow(gDocument, 0, 0, error); },
      [&] { morvane.IMorvane_CreateModelessDialog(gModeless, 0, 0, error); },
      [&] { morvane.IMorvane_CreateModalDialog(gModal, nullptr, 0, 0, error); },
      [&] { morvane.IMorvane_CreateFloatingWindow(gFloating, 0, error); },
      [&] { morvane.IMorvane_CreateView(Dummy<IViewBehaviorFactory>(), Dummy<IView>(), "", error); }};
  for (const auto& call : calls) {
    error = 100001;
    call();
    EXPECT_EQ(kOK, error);
  }
  EXPECT_EQ(std::size(calls), morvane.fHooks.size());
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
