// File dialogs where something is unusual: a system that does not complete names, threads that have to ask
// the application, owners that fail or end, places that no monitor shows, long names, and clients that listen
// to nothing.
#include "Support/FileDialogs.h"

namespace NSMorvaneTest {

class FileDialogCasesTest : public FileDialogFixture {
 protected:
  struct Owner : IModalOwner {
    TError IModalOwner_GetNativeWindow(TNativeWindow& out) override {
      out.fHwnd = fHwnd;
      return fError;
    }
    HWND fHwnd = nullptr;
    TError fError = kOK;
  };

  TError CreateChooser(TFlag blocking, IModalOwner* owner = nullptr) {
    return fMorvane->IMorvane_CreateDirectoryChooserDialog(&fChooser, 3, owner, blocking, u"Where to?");
  }
  // The chooser, which has no box for a name.
  HWND ShowChooser(IModalOwner* owner = nullptr) {
    EXPECT_EQ(CreateChooser(0, owner), kOK);
    EXPECT_EQ(DialogBoxes().size(), 1u) << "the call returns when it is on the screen";
    return DialogBoxes().empty() ? nullptr : DialogBoxes().front();
  }
  // One that is out of sight already can still be ending.
  void AwaitEndOf(HWND dialog) {
    EXPECT_TRUE(YieldUntil([=, this] { return !IsWindow(dialog) && IsWindowEnabled(Hwnd()); }));
    EXPECT_TRUE(DialogBoxes().empty());
  }
  TError CreateAlert(TFlag blocking) {
    TAlertSpec spec = {};
    spec.fKind = kAlertPlain;
    spec.fButtonLayout = kAlertOneButton;
    CopyText(spec.fButton1, u"OK");
    return fMorvane->IMorvane_CreateAlertBox(nullptr, blocking, spec, nullptr);
  }
  bool AwaitForeground(HWND hwnd) {
    return YieldUntil([=] { return GetForegroundWindow() == hwnd; });
  }
  static HWND HookWindowOf(HWND dialog) { return FindWindowExW(dialog, nullptr, L"#32770", nullptr); }
  std::wstring KeyOf(const std::wstring& dialog) const {
    return L"Software\\" + fCompany + L"\\Scenario\\Preferences\\" + dialog;
  }
  void Remember(const std::wstring& dialog, const TRect& place) {
    const std::wstring key = KeyOf(dialog) + L"\\Position";
    for (const auto& [name, value] : {std::pair(L"Left", place.fLeft), std::pair(L"Top", place.fTop),
                                      std::pair(L"Right", place.fRight), std::pair(L"Bottom", place.fBottom)})
      EXPECT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, key.c_str(), name, REG_DWORD, &value, 4), ERROR_SUCCESS);
  }
  void RememberFolder(const std::wstring& dialog, const std::wstring& folder) {
    EXPECT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, KeyOf(dialog).c_str(),
                              dialog.starts_with(L"Folder") ? L"Folder" : L"Initial folder", REG_SZ,
                              folder.c_str(), static_cast<DWORD>(2 * folder.size() + 2)),
              ERROR_SUCCESS);
  }
};

// --- Names that the system does not complete

// The dialog is the real one, on a system that is given no default extension.
TEST_IN_RUN(FileDialogCasesTest, CompletesWhatTheSystemLeaves) {
  Open();
  static BOOL (*const withoutExtension)(OPENFILENAMEW*) = [](OPENFILENAMEW* record) -> BOOL {
    record->lpstrDefExt = nullptr;
    return RealFunction<decltype(GetSaveFileNameW)>(L"comdlg32.dll", "GetSaveFileNameW")(record);
  };
  const PatchedImport patch(L"Morvane.dll", "GetSaveFileNameW", withoutExtension);
  const std::u16string name = fFolder.u16string() + u"\\song";
  EXPECT_EQ(Accept(ShowSave(name), fFolder / L"tune", fSaver), "save:" + UrlOf(L"tune.wav") + ",Sound");
  EXPECT_EQ(Accept(ShowSave(name), fFolder / L"tune.x", fSaver), "save:" + UrlOf(L"tune.x.wav") + ",Sound");
  // The file with the completed name is there. It is not overwritten without a question.
  const HWND dialog = ShowSave(name);
  Type(dialog, fFolder / L"old");
  Press(dialog, IDOK);
  ASSERT_TRUE(YieldUntil([=] { return MessageBoxOver(dialog) != nullptr; }));
  EXPECT_EQ(std::filesystem::path(TextOf(GetDlgItem(dialog, kNameComboBox))).filename(), L"old.wav");
  Press(MessageBoxOver(dialog), IDNO);
  EXPECT_TRUE(YieldUntil([=] { return !MessageBoxOver(dialog); }));
  EXPECT_EQ(fSaver.fLog.Take(), "");
  Press(dialog, IDOK);
  ASSERT_TRUE(YieldUntil([=] { return MessageBoxOver(dialog) != nullptr; }));
  Press(MessageBoxOver(dialog), IDYES);
  EXPECT_EQ(ResultOf(fSaver), "save:" + UrlOf(L"old.wav") + ",Sound");
}

// The same notification by hand. A dialog that refuses a name twice could not be left.
TEST_IN_RUN(FileDialogCasesTest, RefusesNoNameTwice) {
  Open();
  static OPENFILENAMEW* record;
  static int pressed = 0;
  static BOOL (*const keepRecord)(OPENFILENAMEW*) = [](OPENFILENAMEW* given) -> BOOL {
    record = given;
    return RealFunction<decltype(GetSaveFileNameW)>(L"comdlg32.dll", "GetSaveFileNameW")(given);
  };
  static BOOL (*const hold)(HWND, UINT, WPARAM, LPARAM) = [](HWND hwnd, UINT message, WPARAM wParam,
                                                             LPARAM lParam) -> BOOL {
    if (message != WM_COMMAND) return PostMessageW(hwnd, message, wParam, lParam);
    const bool isOk = wParam == MAKEWPARAM(IDOK, BN_CLICKED);
    if (isOk && lParam == reinterpret_cast<LPARAM>(GetDlgItem(hwnd, IDOK))) ++pressed;
    return TRUE;
  };
  const PatchedImport patch(L"Morvane.dll", "GetSaveFileNameW", keepRecord);
  const HWND dialog = ShowSave(fFolder.u16string() + u"\\song");
  {
    const PatchedImport holding(L"Morvane.dll", "PostMessageW", hold);
    // What is typed; what the system has made of it; what stands in the box then.
    for (const auto& [typed, made, shown] : Rows<std::wstring, std::wstring, std::wstring>{
             {L"tune", L"tune", L"tune.wav"},
             {L"tune.wav", L"tune.wav", L"tune.wav"},
             {L"tune", L"tune", L"tune"},
             {L"100%# \u4E2D.x", L"100%# \u4E2D.x", L"100%# \u4E2D.x.wav"},
             {L"tune", L"tune.wav", L"tune"},
             {L"other.", L"other.", L"other.wav"},
             {L"sub\\", L"sub\\", L"sub\\"},
             {L"a.TXT", L"a.TXT", L"a.TXT"},
             {std::wstring(1300, L'n'), std::wstring(1300, L'n'), std::wstring(1300, L'n')}}) {
      Type(dialog, typed);
      std::wcscpy(record->lpstrFile, (fFolder / made).wstring().substr(0, 1300).c_str());
      OFNOTIFYW news = {{dialog, 0, CDN_FILEOK}, record, nullptr};
      pressed = 0;
      const LRESULT refused =
          SendMessageW(HookWindowOf(dialog), WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&news));
      EXPECT_EQ(TextOf(GetDlgItem(dialog, kNameComboBox)), shown);
      EXPECT_EQ(refused, shown != typed ? 1 : 0) << "typed " << typed.size() << " units";
      EXPECT_EQ(pressed, refused) << "the OK comes again by itself";
    }
  }
  EXPECT_EQ(Accept(dialog, fFolder / L"last", fSaver), "save:" + UrlOf(L"last.wav") + ",Sound");
}

// --- Questions of a dialog's thread

TEST_IN_RUN(FileDialogCasesTest, ItsThreadAsksTheApplication) {
  Open();
  const HWND dialog = ShowOpen();
  EXPECT_TRUE(AwaitForeground(dialog));
  // Auto-play, at the frame and at the window of the hook.
  IWinExtensions* extensions = nullptr;
  ASSERT_EQ(fMorvane->IMorvane_GetWinExtensions(extensions), kOK);
  const UINT query = RegisterWindowMessageW(L"QueryCancelAutoPlay");
  for (const bool isSuppressed : {false, true, false}) {
    if (isSuppressed) extensions->IWinExtensions_SuppressAutoPlay(kAutoPlaySuppress);
    for (const HWND asked : {dialog, HookWindowOf(dialog)})
      EXPECT_EQ(SendMessageW(asked, query, 0, 0), isSuppressed ? 1 : 0);
    if (isSuppressed) extensions->IWinExtensions_SuppressAutoPlay(kAutoPlayRelease);
  }
  // An alert of the application blocks the dialog: who activates or clicks that gets the alert.
  static HWND flashed = nullptr;
  static BOOL (*const flash)(FLASHWINFO*) = [](FLASHWINFO* info) -> BOOL {
    flashed = info->hwnd;
    return FALSE;
  };
  const PatchedImport patch(L"Morvane.dll", "FlashWindowEx", flash);
  const auto click = [=] {
    flashed = nullptr;
    return SendMessageW(dialog, WM_SETCURSOR, reinterpret_cast<WPARAM>(dialog),
                        MAKELPARAM(HTCAPTION, WM_LBUTTONDOWN));
  };
  click();
  EXPECT_EQ(flashed, nullptr);
  EXPECT_EQ(CreateAlert(0), kOK);
  const HWND alert = GetActiveWindow();
  ASSERT_TRUE(alert != Hwnd() && AwaitForeground(alert));
  EXPECT_EQ(click(), TRUE);
  EXPECT_EQ(flashed, alert);
  SetForegroundWindow(dialog);
  EXPECT_TRUE(AwaitForeground(alert));
  SendMessageW(alert, WM_CLOSE, 0, 0);
  EXPECT_TRUE(AwaitForeground(dialog));
  click();
  EXPECT_EQ(flashed, nullptr);
  EXPECT_FALSE(IsWindowEnabled(Hwnd()));
  // What the system tells the dialog about activation, the application hears: once, and not of its own
  // threads.
  std::string told;
  fRun.fHooks["AppActivation:0"] = [&] { told += "0"; };
  fRun.fHooks["AppActivation:1"] = [&] { told += "1"; };
  const DWORD stranger = GetWindowThreadProcessId(GetDesktopWindow(), nullptr);
  SendMessageW(dialog, WM_ACTIVATEAPP, TRUE, static_cast<LPARAM>(stranger));
  Turn();
  told.clear();
  for (const auto& [flag, thread] :
       {std::pair(FALSE, GetCurrentThreadId()), std::pair(FALSE, stranger), std::pair(TRUE, stranger)})
    SendMessageW(dialog, WM_ACTIVATEAPP, static_cast<WPARAM>(flag), static_cast<LPARAM>(thread));
  EXPECT_TRUE(YieldUntil([&] { return told == "01"; })) << told;
  Press(dialog, IDCANCEL);
  EXPECT_EQ(ResultOf(fOpener), "cancel");
}

// --- Folder choosers with a thread

TEST_IN_RUN(FileDialogCasesTest, ChooserWithAThreadEndsInSilence) {
  Open();
  const WindowRecord& other = MakeNamed("doc1");
  for (const bool hasOwner : {false, true}) {
    for (const int button : {IDCANCEL, IDOK}) {
      const HWND chooser = ShowChooser(hasOwner ? fRecord.fOwner : nullptr);
      EXPECT_FALSE(IsWindowEnabled(Hwnd()));
      EXPECT_EQ(IsWindowEnabled(other.fHwnd), hasOwner ? TRUE : FALSE);
      EXPECT_TRUE(AwaitForeground(chooser));
      Press(chooser, button);
      AwaitEndOf(chooser);
      EXPECT_TRUE(IsWindowEnabled(other.fHwnd));
    }
  }
  Turn();
  // In the loop of a dialog that blocks the application, which blocks the owner from there on.
  const HWND chooser = ShowChooser(fRecord.fOwner);
  Then([=, this] {
    const HWND alert = GetActiveWindow();
    Press(chooser, IDCANCEL);
    EXPECT_TRUE(YieldUntil([=] { return !IsWindow(chooser); }));
    EXPECT_TRUE(YieldUntil([this] { return !IsWindowEnabled(Hwnd()); }));
    SendMessageW(alert, WM_CLOSE, 0, 0);
  });
  EXPECT_EQ(CreateAlert(1), kOK);
  EXPECT_TRUE(IsWindowEnabled(Hwnd()));
  EXPECT_EQ(fChooser.fLog.Take(), "");
  EXPECT_FALSE(IsAnythingRemembered());
  // One that is open when the run ends goes with it.
  ShowChooser();
  fRun.fHooks["CleanUp"] = [] { EXPECT_TRUE(DialogBoxes().empty()); };
}

// --- Places

TEST_IN_RUN(FileDialogCasesTest, OpensWhereItCanBeSeen) {
  Open();
  for (const auto& [place, isUsed] : Rows<TRect, bool>{{{50, 60, 450, 360}, true},
                                                       {{20000, 20000, 20400, 20300}, false},
                                                       {{-32000, -32000, -31600, -31700}, false},
                                                       {{50, 60, 50, 360}, false},
                                                       {{50, 60, 2147483647, 2147483647}, true}}) {
    for (const wchar_t* dialog : {L"Open Dialog7", L"Save Dialog7", L"Folder Chooser3"})
      Remember(dialog, place);
    RememberFolder(L"Folder Chooser3", std::wstring(isUsed ? 10 : 300, L'x'));  // there is none such
    const std::function<HWND()> shows[] = {[this] { return ShowOpen(); }, [this] { return ShowSave(u"x"); },
                                           [this] { return ShowChooser(); }};
    for (const auto& show : shows) {
      const HWND box = show();
      const TRect frame = NativeFrame(box);
      EXPECT_NE(MonitorFromWindow(box, MONITOR_DEFAULTTONULL), nullptr) << ::testing::PrintToString(frame);
      EXPECT_EQ(frame.fLeft == 50 && frame.fTop == 60, isUsed) << ::testing::PrintToString(frame);
      Press(box, IDCANCEL);
      AwaitEndOf(box);
    }
  }
  EXPECT_EQ(fOutput.TakeAssertions(), "");
}

// One that blocks the application is above all that stays on top, one with an owner above that.
TEST_IN_RUN(FileDialogCasesTest, IsNotCoveredByWhatStaysOnTop) {
  Open();
  const WindowRecord& onTop = MakeNamed("doc1");
  SendMessageW(onTop.fHwnd, WM_COMMAND, 60001, 0);  // the item of its menu
  const auto isTopMost = [](HWND hwnd) { return (GetWindowLongW(hwnd, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0; };
  EXPECT_TRUE(isTopMost(onTop.fHwnd));
  for (const auto& [owner, isWanted] :
       Rows<IModalOwner*, bool>{{nullptr, true}, {onTop.fOwner, true}, {fRecord.fOwner, false}}) {
    const HWND dialog = ShowOpen(owner);
    EXPECT_EQ(isTopMost(dialog), isWanted);
    Press(dialog, IDCANCEL);
    EXPECT_EQ(ResultOf(fOpener), "cancel");
  }
}

// Nobody waits for ever for the message that tells.
TEST_IN_RUN(FileDialogCasesTest, IsSeenThoughItDoesNotTell) {
  Open();
  static BOOL (*const lose)(HWND, UINT, WPARAM, LPARAM) = [](HWND hwnd, UINT message, WPARAM wParam,
                                                             LPARAM lParam) -> BOOL {
    return NativeClass(hwnd) != L"#32770" && PostMessageW(hwnd, message, wParam, lParam);
  };
  HWND dialog = nullptr;
  {
    const PatchedImport patch(L"Morvane.dll", "PostMessageW", lose);
    dialog = ShowOpen(fRecord.fOwner);
  }
  Press(dialog, IDCANCEL);
  EXPECT_EQ(ResultOf(fOpener), "cancel");
}

// --- Owners

TEST_IN_RUN(FileDialogCasesTest, OwnersThatFailOrEnd) {
  Open();
  WindowRecord& other = MakeNamed("doc1");
  Owner owner;
  owner.fError = TError(100321);
  EXPECT_EQ(CreateOpen(0, &owner), owner.fError);
  EXPECT_TRUE(DialogBoxes().empty() && IsWindowEnabled(Hwnd()));
  // Without a window it blocks the application.
  owner.fError = kOK;
  HWND dialog = ShowOpen(&owner);
  EXPECT_FALSE(IsWindowEnabled(Hwnd()) || IsWindowEnabled(other.fHwnd));
  Press(dialog, IDCANCEL);
  EXPECT_EQ(ResultOf(fOpener), "cancel");
  EXPECT_TRUE(IsWindowEnabled(Hwnd()) && IsWindowEnabled(other.fHwnd));
  // With one that has ended, and with one that ends meanwhile, the dialog works all the same.
  owner.fHwnd = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
  DestroyWindow(owner.fHwnd);
  EXPECT_EQ(Accept(ShowOpen(&owner), fFolder / L"old.wav", fOpener), "open:" + UrlOf(L"old.wav"));
  const HWND chooser = ShowChooser(&owner);
  Press(chooser, IDCANCEL);
  AwaitEndOf(chooser);
  WindowRecord& gone = MakeNamed("doc2");
  dialog = ShowOpen(gone.fOwner);
  Release(gone);
  EXPECT_FALSE(IsWindow(gone.fHwnd));
  EXPECT_EQ(Accept(dialog, fFolder / L"bare", fOpener), "open:" + UrlOf(L"bare"));
  // Whoever wants the document gets the question of the system's that lies over the dialog.
  dialog = ShowOpen(fRecord.fOwner);
  Type(dialog, L"missing.wav");
  Press(dialog, IDOK);
  EXPECT_TRUE(YieldUntil([=] { return MessageBoxOver(dialog) != nullptr; }));
  const HWND question = MessageBoxOver(dialog);
  EXPECT_TRUE(AwaitForeground(question));  // it can be seen before it has become active
  // It can become active once more when its thread has come to rest.
  EXPECT_TRUE(YieldUntil([&] {
    SetForegroundWindow(other.fHwnd);
    return GetForegroundWindow() == other.fHwnd;
  }));
  EXPECT_EQ(fRecord.fFocusNow(), kOK);
  EXPECT_TRUE(AwaitForeground(question));
  Press(question, IDOK);
  EXPECT_TRUE(YieldUntil([=] { return !IsWindow(question); }));
  Press(dialog, IDCANCEL);
  EXPECT_EQ(ResultOf(fOpener), "cancel");
  AwaitEndOf(dialog);
  EXPECT_EQ(fOutput.TakeAssertions(), "");
}

// --- Answers that are made up, since some systems cannot show such names

TEST_IN_RUN(FileDialogCasesTest, LongNamesAndNobodyWhoListens) {
  Open();
  const auto typeCount = static_cast<std::uint32_t>(fTypes.size());
  const auto openForNobody = [&, this](TFlag blocking) {
    EXPECT_EQ(fMorvane->IMorvane_CreateOpenDialog(nullptr, 7, nullptr, blocking, 0, fTypes.data(), typeCount,
                                                  u"", nullptr),
              kOK);
  };
  openForNobody(0);  // the real one
  const HWND dialog = Shown();
  Press(dialog, IDCANCEL);
  AwaitEndOf(dialog);
  static std::wstring name, folder, chosen;
  static BOOL (*const answer)(OPENFILENAMEW*) = [](OPENFILENAMEW* record) -> BOOL {
    name = record->lpstrFile;
    folder = record->lpstrInitialDir ? record->lpstrInitialDir : L"";
    if (chosen.empty() || chosen.size() >= record->nMaxFile) return FALSE;
    std::wcscpy(record->lpstrFile, chosen.c_str());
    record->nFileOffset = static_cast<WORD>(chosen.rfind(L'\\') + 1);
    record->nFilterIndex = 1;
    return TRUE;
  };
  const PatchedImport open(L"Morvane.dll", "GetOpenFileNameW", answer);
  const PatchedImport save(L"Morvane.dll", "GetSaveFileNameW", answer);
  const auto urlOf = [](const std::wstring& path) {
    const std::u8string bytes = std::filesystem::path(path).u8string();
    return "file://" + std::string(bytes.begin(), bytes.end());
  };
  // Of 1300 units, as many as there is room for: with signs that URLs escape elsewhere, and beyond U+FFFF.
  const std::wstring longFolder = fFolder.wstring() + L"\\" + std::wstring(1000, L'd') + L"\\";
  chosen = longFolder + L"100%# \u4E2D\U0001F600 ";
  chosen.resize(1296, L'n');
  const std::wstring bare = chosen + L"nnnn";
  chosen += L".wav";
  EXPECT_EQ(CreateOpen(1), kOK);
  EXPECT_EQ(fOpener.fLog.Take(), "open:" + urlOf(chosen));
  EXPECT_EQ(Remembered(L"Open Dialog7", L"Initial folder"), longFolder);
  chosen = bare;
  EXPECT_EQ(CreateSave(std::u16string(1400, u'n'), 1), kOK);
  EXPECT_EQ(name, std::wstring(1300, L'n'));
  EXPECT_EQ(fSaver.fLog.Take(), "save:" + urlOf(bare + L".wav") + ",Sound");
  EXPECT_EQ(CreateSave(u"100%# \u4E2D\xD83D\xDE00 ", 1), kOK);
  EXPECT_EQ(name, L"100%# \u4E2D\U0001F600 .wav");
  EXPECT_EQ(folder, longFolder);
  fSaver.fLog.Take();
  // A remembered folder that is longer than any is cut off.
  RememberFolder(L"Open Dialog7", std::wstring(1400, L'f'));
  chosen.clear();
  EXPECT_EQ(CreateOpen(1), kOK);
  EXPECT_EQ(folder, std::wstring(1300, L'f'));
  EXPECT_EQ(fOpener.fLog.Take(), "cancel");
  // Nobody need listen, on this thread or on the dialog's.
  static LPITEMIDLIST (*const browse)(BROWSEINFOW*) = [](BROWSEINFOW*) -> LPITEMIDLIST {
    return chosen.empty() ? nullptr : ILCreateFromPathW(L"C:\\");
  };
  const PatchedImport choose(L"Morvane.dll", "SHBrowseForFolderW", browse);
  for (const wchar_t* path : {L"", L"C:\\a\\b.txt"}) {
    chosen = path;
    for (const TFlag blocking : {0, 1}) {
      RegDeleteTreeW(HKEY_CURRENT_USER, (L"Software\\" + fCompany).c_str());
      openForNobody(blocking);
      EXPECT_EQ(fMorvane->IMorvane_CreateSaveAsDialog(nullptr, 7, nullptr, blocking, u"x", fTypes.data(),
                                                      typeCount, u""),
                kOK);
      EXPECT_EQ(fMorvane->IMorvane_CreateDirectoryChooserDialog(nullptr, 3, nullptr, blocking, u""), kOK);
      // What is chosen is remembered for the next time.
      const auto isRemembered = [&, this] {
        return Remembered(L"Open Dialog7", L"Initial folder") == L"C:\\a\\" &&
               Remembered(L"Save Dialog7", L"Initial folder") == L"C:\\a\\";
      };
      EXPECT_TRUE(chosen.empty() || YieldUntil(isRemembered));
      Turn();
    }
  }
  EXPECT_TRUE(IsWindowEnabled(Hwnd()));
  EXPECT_EQ(fOutput.TakeAssertions(), "");
}

}  // namespace NSMorvaneTest
