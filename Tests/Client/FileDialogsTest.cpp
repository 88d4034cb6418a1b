// The file dialogs of the system, driven as a user does: what is given to the client, when, and what is
// remembered.
#include "Support/FileDialogs.h"

namespace NSMorvaneTest {

class FileDialogsTest : public FileDialogFixture {};

TEST_IN_RUN(FileDialogsTest, OpensWhatIsTypedAndRemembersIt) {
  Open();
  HWND dialog = ShowOpen();
  EXPECT_FALSE(IsWindowEnabled(Hwnd()));
  EXPECT_EQ(TextOf(dialog), L"Which one?");
  EXPECT_EQ(TextOf(GetDlgItem(dialog, kTypeComboBox)).find(L"All"), 0u) << "the combined type comes first";
  // A file with the extension of another type, one that the code page does not have, one without any.
  EXPECT_EQ(Accept(dialog, fFolder / L"old.wav", fOpener), "open:" + UrlOf(L"old.wav"));
  EXPECT_TRUE(YieldUntil([&] { return IsWindowEnabled(Hwnd()) && GetActiveWindow() == Hwnd(); }));
  EXPECT_EQ(Remembered(L"Open Dialog7", L"Last file type extensions"), L".wav;.aiff");
  EXPECT_EQ(Remembered(L"Open Dialog7", L"Initial folder"), fFolder.wstring() + L"\\");
  dialog = ShowOpen();
  EXPECT_EQ(SendDlgItemMessageW(dialog, kTypeComboBox, CB_GETCURSEL, 0, 0), 0);
  SetWindowPos(dialog, nullptr, 37, 41, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
  EXPECT_EQ(Accept(dialog, L"100%# \u00E4\u4E2D.txt", fOpener), "open:" + UrlOf(L"100%# \u00E4\u4E2D.txt"));
  EXPECT_EQ(Accept(ShowOpen(), L"\U0001F600.wav", fOpener), "open:" + UrlOf(L"\U0001F600.wav"));
  dialog = ShowOpen();
  EXPECT_EQ(NativeFrame(dialog).fLeft, 37);
  EXPECT_EQ(NativeFrame(dialog).fTop, 41);
  EXPECT_EQ(Accept(dialog, L"bare", fOpener), "open:" + UrlOf(L"bare"));
  // A file that is not there is asked for once more, by the system.
  dialog = ShowOpen();
  Type(dialog, L"missing.wav");
  Press(dialog, IDOK);
  EXPECT_TRUE(YieldUntil([&] { return MessageBoxOver(dialog) != nullptr; }));
  Press(MessageBoxOver(dialog), IDOK);
  EXPECT_TRUE(YieldUntil([&] { return MessageBoxOver(dialog) == nullptr; }));
  Press(dialog, IDCANCEL);
  EXPECT_EQ(ResultOf(fOpener), "cancel");
}

TEST_IN_RUN(FileDialogsTest, CancelsInEachWayAndRemembersNothing) {
  Open();
  for (const std::function<void(HWND)>& cancel : std::vector<std::function<void(HWND)>>{
           [](HWND dialog) { Press(dialog, IDCANCEL); },
           [](HWND dialog) { PostMessageW(dialog, WM_SYSCOMMAND, SC_CLOSE, 0); },
           [this](HWND dialog) {
             EXPECT_TRUE(YieldUntil([=] { return GetForegroundWindow() == dialog; }));
             SendInputs({KeyInput(VK_ESCAPE), KeyInput(VK_ESCAPE, KEYEVENTF_KEYUP)});
           }}) {
    cancel(ShowOpen());
    EXPECT_EQ(ResultOf(fOpener), "cancel");
    EXPECT_FALSE(IsAnythingRemembered());
    EXPECT_TRUE(YieldUntil([&] { return IsWindowEnabled(Hwnd()) != FALSE; }));
  }
}

TEST_IN_RUN(FileDialogsTest, SavesUnderANameWithAnExtension) {
  Open();
  const std::u16string folder = fFolder.u16string() + u"\\";
  struct TCase {
    std::u16string fTemplate;
    std::wstring fShown, fTyped, fResult;
    const char* fType;
  };
  for (const TCase& c : std::vector<TCase>{{u"song", L"song.wav", L"", L"song.wav", "Sound"},
                                           {u"a.txt", L"a.txt", L"", L"a.txt", "Text"},
                                           {u"song.wav", L"song.wav", L"tune", L"tune.wav", "Sound"},
                                           {u"song.wav", L"song.wav", L"tune.TXT", L"tune.TXT", "Text"},
                                           {u"song", L"song.txt", L"tune.x", L"tune.x.txt", "Text"}}) {
    HWND dialog = ShowSave(folder + c.fTemplate);
    EXPECT_EQ(std::filesystem::path(TextOf(GetDlgItem(dialog, kNameComboBox))).filename(), c.fShown);
    const std::wstring typed = c.fTyped.empty() ? L"" : (fFolder / c.fTyped).wstring();
    if (!typed.empty()) Type(dialog, typed);
    Press(dialog, IDOK);
    EXPECT_EQ(ResultOf(fSaver), "save:" + UrlOf(c.fResult.c_str()) + "," + c.fType);
  }
  // The type that is chosen decides, for the name as well.
  HWND dialog = ShowSave(folder + u"song.wav");
  ChooseType(dialog, 1);
  EXPECT_EQ(std::filesystem::path(TextOf(GetDlgItem(dialog, kNameComboBox))).filename(), L"song.txt");
  EXPECT_EQ(Accept(dialog, fFolder / L"new", fSaver), "save:" + UrlOf(L"new.txt") + ",Text");
  EXPECT_EQ(Remembered(L"Save Dialog7", L"Last file type extensions"), L".txt");
  // Without types; a name that no file can have; and a client that fails is told so once.
  fTypes.clear();
  fSaver.fHooks["save:"] = TError(100777);
  dialog = ShowSave(u"Take 1: intro");
  EXPECT_EQ(TextOf(GetDlgItem(dialog, kNameComboBox)), L"Take 1_ intro");
  EXPECT_EQ(Accept(dialog, fFolder / L"any", fSaver), "save:" + UrlOf(L"any") + ",");
  ExpectReported(100777);
}

TEST_IN_RUN(FileDialogsTest, AsksBeforeItOverwrites) {
  Open();
  const HWND dialog = ShowSave(fFolder.u16string() + u"\\song");
  for (const wchar_t* name : {L"old.wav", L"old"}) {
    Type(dialog, fFolder / name);
    Press(dialog, IDOK);
    ASSERT_TRUE(YieldUntil([=] { return MessageBoxOver(FileDialog()) != nullptr; })) << name;
    Press(MessageBoxOver(FileDialog()), IDNO);
    EXPECT_TRUE(YieldUntil([=] { return FileDialog() && !MessageBoxOver(FileDialog()); }));
    EXPECT_TRUE(fSaver.fLog.Last().empty());
  }
  Type(FileDialog(), fFolder / L"old");
  Press(FileDialog(), IDOK);
  EXPECT_TRUE(YieldUntil([=] { return MessageBoxOver(FileDialog()) != nullptr; }));
  Press(MessageBoxOver(FileDialog()), IDYES);
  EXPECT_EQ(ResultOf(fSaver), "save:" + UrlOf(L"old.wav") + ",Sound");
}

TEST_IN_RUN(FileDialogsTest, BlocksItsOwnerOnlyOrTheCaller) {
  Open();
  WindowRecord& other = MakeNamed("doc1");
  const HWND dialog = ShowOpen(fRecord.fOwner);
  EXPECT_FALSE(IsWindowEnabled(Hwnd()));
  EXPECT_TRUE(IsWindowEnabled(other.fHwnd));
  EXPECT_EQ(GetWindow(dialog, GW_OWNER), Hwnd());
  Press(dialog, IDCANCEL);
  EXPECT_EQ(ResultOf(fOpener), "cancel");
  EXPECT_TRUE(YieldUntil([&] { return IsWindowEnabled(Hwnd()) != FALSE; }));
  // Two over one owner, which waits for both.
  const HWND first = ShowOpen(fRecord.fOwner);
  EXPECT_EQ(CreateOpen(0, fRecord.fOwner), kOK);
  EXPECT_TRUE(YieldUntil([&] { return DialogBoxes().size() == 2; }));
  Press(first, IDCANCEL);
  EXPECT_TRUE(YieldUntil([&] { return !fOpener.fLog.Last().empty(); }));
  EXPECT_FALSE(IsWindowEnabled(Hwnd()));
  Press(FileDialog(), IDCANCEL);
  EXPECT_TRUE(YieldUntil([&] { return fOpener.fLog.Count("cancel") == 2 && !FileDialog(); }));
  EXPECT_TRUE(IsWindowEnabled(Hwnd()));
  fOpener.fLog.Take();
  // On this thread: idle calls go on, and a client that fails has nobody to tell.
  fOpener.fHooks["open:"] = kOtherError;
  fSaver.fHooks["cancel"] = kOtherError;
  const int idleCalls = fRun.fIdleCalls;
  std::thread driver = Driver([&](HWND box) {
    while (fRun.fIdleCalls == idleCalls) Sleep(5);
    EXPECT_FALSE(IsWindowEnabled(other.fHwnd));
    SetDlgItemTextW(box, kNameComboBox, (fFolder / L"old.wav").c_str());
    Press(box, IDOK);
  });
  EXPECT_EQ(CreateOpen(1), kOK);
  driver.join();
  EXPECT_EQ(fOpener.fLog.Take(), "open:" + UrlOf(L"old.wav"));
  EXPECT_EQ(fOutput.CountLines("Error performing open!"), 1);
  driver = Driver([](HWND box) { Press(box, IDCANCEL); });
  EXPECT_EQ(CreateSave(u"x", 1), kOK);
  driver.join();
  EXPECT_EQ(fSaver.fLog.Take(), "cancel");
  EXPECT_EQ(fOutput.CountLines("Error cancelling save!"), 1);
  EXPECT_TRUE(IsWindowEnabled(Hwnd()));
  EXPECT_TRUE(IsWindowEnabled(other.fHwnd));
}

// A client that asks whether to save, and then where.
TEST_IN_RUN(FileDialogsTest, BlocksItsOwnerBeyondTheAlertThatBroughtIt) {
  Open();
  struct : ISaveChangesBehavior {
    TError ISaveChangesBehavior_OnSave() override { return fOnSave(); }
    TError ISaveChangesBehavior_OnDiscard() override { return kOK; }
    TError ISaveChangesBehavior_OnCancel() override { return kOK; }
    std::function<TError()> fOnSave;
  } question;
  question.fOnSave = [this] { return CreateOpen(0, fRecord.fOwner); };
  EXPECT_EQ(fMorvane->IMorvane_CreateSaveChangesDialog(&question, fRecord.fOwner, 0, u"x", kCloseByUser),
            kOK);
  const HWND alert = GetActiveWindow();
  EXPECT_EQ(GetWindow(alert, GW_OWNER), Hwnd());
  Press(alert, IDYES);
  const HWND dialog = Shown();
  EXPECT_TRUE(YieldUntil([=] { return !IsWindow(alert); }));
  EXPECT_FALSE(IsWindowEnabled(Hwnd()));
  // Whoever wants the document gets the dialog.
  MakeNamed("doc1");
  EXPECT_EQ(fRecord.fDocument->IDocumentWindow_FocusNow(), kOK);
  EXPECT_TRUE(YieldUntil([=] { return GetForegroundWindow() == dialog; }));
  Press(dialog, IDCANCEL);
  EXPECT_EQ(ResultOf(fOpener), "cancel");
  EXPECT_TRUE(YieldUntil([&] { return IsWindowEnabled(Hwnd()) != FALSE; }));
}

TEST_IN_RUN(FileDialogsTest, SystemThatRefusesIsACancel) {
  static BOOL (*const refuse)(OPENFILENAMEW*) = [](OPENFILENAMEW*) { return FALSE; };
  {
    const PatchedImport open(L"Morvane.dll", "GetOpenFileNameW", refuse);
    EXPECT_EQ(CreateOpen(), kOK);
    EXPECT_TRUE(fOpener.fLog.Last().empty()) << "the result comes in the loop, and not within the call";
    EXPECT_EQ(ResultOf(fOpener), "cancel");
  }
  // A library of the system that does not load.
  static HMODULE (*const noLibrary)(const wchar_t*, HANDLE, DWORD) = [](auto...) { return HMODULE(); };
  {
    const PatchedImport load(L"Morvane.dll", "LoadLibraryExW", noLibrary);
    EXPECT_EQ(CreateOpen(), kOK);
    EXPECT_EQ(ResultOf(fOpener), "cancel");
    EXPECT_EQ(fMorvane->IMorvane_CreateDirectoryChooserDialog(&fChooser, 3, nullptr, 1, nullptr),
              kOutOfMemoryError);
  }
  static HANDLE (*const noThread)(SECURITY_ATTRIBUTES*, SIZE_T, LPTHREAD_START_ROUTINE, void*, DWORD,
                                  DWORD*) = [](auto...) { return HANDLE(); };
  const PatchedImport thread(L"Morvane.dll", "CreateThread", noThread);
  EXPECT_EQ(CreateOpen(), kOutOfMemoryError);
  // A filter that is too long for the system's dialog.
  fTypes.assign(3, FileType(u"", u""));
  for (TFileType& type : fTypes) CopyText(type.fExtensions, u"." + std::u16string(1000, u'x'));
  EXPECT_EQ(CreateOpen(), kOutOfMemoryError);
}

TEST_IN_RUN(FileDialogsTest, GoesWithTheApplication) {
  Open();
  ShowOpen();
  fOpener.fHooks["cancel"] = [this] {
    fRun.fLog.Add("cancelled");
    EXPECT_EQ(CreateOpen(), kIllegalCallSequenceProgrammingError);
  };
  fRun.fHooks["CleanUp"] = [this] {
    EXPECT_EQ(FileDialog(), nullptr);
    EXPECT_EQ(fRun.fLog.Count("cancelled"), 1) << "before the application is cleaned up";
  };
}

TEST_IN_RUN(FileDialogsTest, ChoosesFolders) {
  Open();
  static std::wstring given;
  static std::wstring chosen;
  // The answer is made up; the calls are real.
  static LPITEMIDLIST (*const browse)(BROWSEINFOW*) = [](BROWSEINFOW* info) -> LPITEMIDLIST {
    EXPECT_EQ(info->ulFlags, 0x51u);
    given = info->lpszTitle;
    return chosen.empty() ? nullptr : ILCreateFromPathW(chosen.c_str());
  };
  const auto choose = [&](TFlag blocking) {
    EXPECT_EQ(fMorvane->IMorvane_CreateDirectoryChooserDialog(&fChooser, 3, nullptr, blocking, u"Where to?"),
              kOK);
  };
  {
    const PatchedImport patched(L"Morvane.dll", "SHBrowseForFolderW", browse);
    chosen = fFolder;
    choose(1);
    EXPECT_EQ(fChooser.fLog.Take(), "folder:" + UrlOf(L""));
    EXPECT_EQ(given, L"Where to?");
    EXPECT_EQ(Remembered(L"Folder Chooser3", L"Folder"), fFolder.wstring() + L"\\");
    chosen = L"C:\\";
    choose(1);
    EXPECT_EQ(fChooser.fLog.Take(), "folder:file://C:\\");
    chosen.clear();
    choose(1);
    EXPECT_EQ(fChooser.fLog.Take(), "cancel");
    chosen = fFolder;
    choose(0);
  }
  // The real one, which begins with what is remembered, and blocks the application.
  std::thread driver([&] {
    const ULONGLONG deadline = GetTickCount64() + kWaitLimitMS;
    while (DialogBoxes().empty() && GetTickCount64() < deadline) Sleep(5);
    EXPECT_FALSE(IsWindowEnabled(Hwnd()));
    Press(DialogBoxes().front(), IDCANCEL);
  });
  choose(1);
  driver.join();
  EXPECT_EQ(fChooser.fLog.Take(), "cancel") << "one with a thread of its own has told nobody";
  EXPECT_TRUE(IsWindowEnabled(Hwnd()));
}

TEST_IN_RUN(FileDialogsTest, CarriesControlsOfTheClient) {
  // On the thread of the dialog.
  struct LockedRecorder : CallRecorder {
    TError Say(const std::string& name, const std::string& argument = "", TFlag* outHandled = nullptr) {
      const std::lock_guard guard(fLock);
      return Call(name, argument, outHandled);
    }
    int Count(const std::string& call) {
      const std::lock_guard guard(fLock);
      return fLog.Count(call);
    }
    std::mutex fLock;
  };
  struct Customizer : CDefaultOpenDialogCustomizeBehavior {
    explicit Customizer(LockedRecorder& record) : fRecord(record) {}
    ~Customizer() override { fRecord.Say("deleted"); }
    TError IOpenDialogCustomizeBehavior_GetTemplateID(std::uint32_t& outID) override {
      outID = 300;
      return fRecord.Say("template");
    }
    TError IOpenDialogCustomizeBehavior_OnFolderChanged(IOpenDialogInstance&, const char* url) override {
      return fRecord.Say("in:", url);
    }
    TError IOpenDialogCustomizeBehavior_OnSelectionChanged(IOpenDialogInstance&, const char* url) override {
      return fRecord.Say("at:", url);
    }
    TError IOpenDialogCustomizeBehavior_OnInitDone(IOpenDialogInstance& instance) override {
      TNativeWindow button = {}, name = {}, dialog = {};
      IModalOwner* owner = nullptr;
      EXPECT_EQ(instance.IOpenDialogInstance_GetControlHandle(301, button), kOK);
      EXPECT_EQ(instance.IOpenDialogInstance_GetControlHandle(kNameComboBox, name), kOK);
      EXPECT_EQ(instance.IOpenDialogInstance_GetModalOwner(owner), kOK);
      EXPECT_EQ(owner->IModalOwner_GetNativeWindow(dialog), kOK);
      EXPECT_EQ(TextOf(button.fHwnd), L"Preview");
      EXPECT_EQ(GetDlgItem(dialog.fHwnd, kNameComboBox), name.fHwnd);
      return fRecord.Say("init");
    }
    TError IOpenDialogCustomizeBehavior_OnCommand(IOpenDialogInstance&, std::int32_t id,
                                                  TFlag& outHandled) override {
      return fRecord.Say("command:", std::to_string(id), &outHandled);
    }
    TError IOpenDialogCustomizeBehavior_OnHelp(IOpenDialogInstance&, TFlag& outHandled) override {
      return fRecord.Say("help", "", &outHandled);
    }
    TError IOpenDialogCustomizeBehavior_OnSize(IOpenDialogInstance&, TNativeWindow, std::int32_t width,
                                               std::int32_t) override {
      EXPECT_GT(width, 0);
      return fRecord.Say("size");
    }
    TError IOpenDialogCustomizeBehavior_OnPaint(IOpenDialogInstance&, TNativeWindow) override {
      return fRecord.Say("paint");
    }
    LockedRecorder& fRecord;
  };
  Open();
  LockedRecorder record;
  EXPECT_EQ(Accept(ShowOpen(), fFolder / L"old.wav", fOpener), "open:" + UrlOf(L"old.wav"));  // the folder
  const Rows<const char*, const char*> hooks = {{"in:", "OnFolderChanged"}, {"at:", "OnSelectionChanged"},
                                                {"init", "OnInitDone"},     {"command:", "OnCommand"},
                                                {"help", "OnHelp"},         {"size", "OnSize"},
                                                {"paint", "OnPaint"}};
  // The second time each of them fails once.
  for (const bool fails : {false, true}) {
    for (const auto& [hook, name] : hooks) {
      record.fHooks[hook] = Hook([fails, first = true]() mutable -> TError {
        return std::exchange(first, false) && fails ? kOtherError : kOK;
      });
      record.fHooks[hook].fHandled = 1;
    }
    const HWND dialog = ShowOpen(nullptr, new Customizer(record));
    const HWND hookWindow = FindWindowExW(dialog, nullptr, L"#32770", nullptr);
    ASSERT_TRUE(hookWindow);
    EXPECT_TRUE(GetDlgItem(hookWindow, 301));
    Type(dialog, L"old.wav");
    SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(kNameComboBox, CBN_EDITCHANGE),
                 reinterpret_cast<LPARAM>(GetDlgItem(dialog, kNameComboBox)));
    SendMessageW(GetDlgItem(hookWindow, 301), BM_CLICK, 0, 0);
    HELPINFO help = {};
    help.cbSize = sizeof(help);
    for (const bool isSecond : {false, true})
      EXPECT_EQ(SendMessageW(hookWindow, WM_HELP, 0, reinterpret_cast<LPARAM>(&help)) == 1,
                !fails || isSecond);
    EXPECT_TRUE(YieldUntil([&] { return record.Count("paint") > 0; }));
    // What a control of the client's tells is none of the dialog's.
    struct {
      NMHDR fHeader;
      ULONG_PTR fMore[2];
    } news = {{GetDlgItem(hookWindow, 301), 301, NM_CUSTOMDRAW}, {3, 3}};
    SendMessageW(hookWindow, WM_NOTIFY, 301, reinterpret_cast<LPARAM>(&news));
    Press(dialog, IDOK);
    EXPECT_EQ(ResultOf(fOpener), "open:" + UrlOf(L"old.wav"));
    EXPECT_TRUE(YieldUntil([&] { return record.Count("deleted") == 1; }));
    EXPECT_EQ(record.Count("template"), 1);
    EXPECT_EQ(record.Count("init"), 1);
    EXPECT_EQ(record.Count("command:301"), 1);
    EXPECT_GE(record.Count("at:" + UrlOf(L"old.wav")), 1) << "typing is a change of the selection";
    record.fLog.Take();
    for (const auto& [hook, name] : hooks)
      EXPECT_EQ(fOutput.CountLines(std::string("IOpenDialogCustomizeBehavior_") + name + " failed!"), fails)
          << name;
  }
  record.fHooks["template"] = kOtherError;
  Customizer kept(record);
  EXPECT_EQ(CreateOpen(0, nullptr, &kept), kOtherError);
  EXPECT_EQ(record.fLog.Take(), "template");
}

// One that tells no number of a template has none, whatever lay in memory before.
TEST_IN_RUN(FileDialogsTest, ListensWithoutControls) {
  struct Listener : CDefaultOpenDialogCustomizeBehavior {
    TError IOpenDialogCustomizeBehavior_GetTemplateID(std::uint32_t& outID) override {
      EXPECT_EQ(outID, 0u);
      return kOK;
    }
  };
  static DWORD flags = 0;
  static HRESULT objects = S_OK;
  static BOOL (*const answer)(OPENFILENAMEW*) = [](OPENFILENAMEW* record) -> BOOL {
    flags = record->Flags;
    objects = OleInitialize(nullptr);
    OleUninitialize();
    return FALSE;
  };
  const auto soilStack = [] {
    volatile std::uint8_t bytes[16384];
    for (volatile std::uint8_t& byte : bytes) byte = 0xA5;
  };
  Open();
  const PatchedImport patch(L"Morvane.dll", "GetOpenFileNameW", answer);
  soilStack();
  EXPECT_EQ(CreateOpen(1, nullptr, new Listener), kOK);
  EXPECT_EQ(fOpener.fLog.Take(), "cancel");
  EXPECT_EQ(objects, S_FALSE) << "what others have added to the dialog finds its thread ready";
  EXPECT_EQ(flags & (OFN_ENABLETEMPLATE | OFN_ENABLEHOOK), static_cast<DWORD>(OFN_ENABLEHOOK));
}

}  // namespace NSMorvaneTest
